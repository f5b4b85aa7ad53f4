// Stand-ins for procedures that other parts of the program provide (see pending.h).
// Each is replaced, and deleted here, when its part is built.
#include "core/pending.h"

#include "core/frm_main.h"
#include "core/state.h"

#include <QFile>

void MRUGetFileList() {}   // no recent files yet: gintMRUCount stays 0
void MRUSaveFileList() {}
void mnuMMru_Click(int) {}

void LaunchFile(const QString &, int16_t) {}
void mnuTimport_Click() {}


void ShowKeyboard(bool) {}
void ShowSetMill() {}
void SetSetStep(int16_t) { PageTurnStop(); }   // every step change stops the busy book
void ShowOffset() {}
void SetOffStep(int16_t) {}
void ShowBillet(const QString &) {}
void SendToMill() {}


// The editor's unload gives the main menu back with SetMode(1); with no editor, at once.
void ShowCodeEditor() { SetMode(1); }
void CodeEditorDeactivated() {}
