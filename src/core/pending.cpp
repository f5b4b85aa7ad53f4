// Stand-ins for procedures that other parts of the program provide (see pending.h).
// Each is replaced, and deleted here, when its part is built.
#include "core/pending.h"

#include "core/frm_main.h"
#include "core/state.h"

#include <QFile>

void MRUGetFileList() {}   // no recent files yet: gintMRUCount stays 0
void MRUSaveFileList() {}
void MRUAddItem(const QString &) {}
void MRURemoveItem(const QString &) {}
void MRUReorderList(const QString &, int16_t) {}
void mnuMMru_Click(int) {}
void MRUAttachEditorMenu(QMenu *, QAction *, void (*)(int)) {}
void MRUSetEditingMenu() {}
void MRUDetachEditorMenu() {}

// Until the open dialog is built only a test's script can choose a file.
static FileDialogScript gfnFileDialogScript;
void SetFileDialogScript(FileDialogScript fnScript) { gfnFileDialogScript = std::move(fnScript); }
QString strGetFile(const QString &strTitle)
{
    return gfnFileDialogScript ? gfnFileDialogScript(strTitle, QString()) : QString();
}
void LaunchFile(const QString &, int16_t) {}
void mnuTimport_Click() {}


void ShowBillet(const QString &) {}


// The editor's unload gives the main menu back with SetMode(1); with no editor, at once.
void ShowCodeEditor() { SetMode(1); }
void CodeEditorDeactivated() {}
