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


void ShowSetMill() {}
// Every step change stops the busy book. Step 10 ("Cancel: Return to Menu") leads to the
// menu: without the wizard's page, at once.
void SetSetStep(int16_t intStep)
{
    PageTurnStop();
    if (intStep == 10)
        ShowMenu(QString());
}
void ShowOffset() {}
void SetOffStep(int16_t) {}
// Without the wizards a task can't have been theirs; should one end here, the menu.
void ReturnToSetMill(int16_t) { ShowMenu(QString()); }
void ReturnToOffset() { ShowMenu(QString()); }
void ShowBillet(const QString &) {}
void ShowMethod() { SetMode(8); }   // the subsequent-part screen, as it stands

