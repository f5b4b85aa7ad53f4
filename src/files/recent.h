// The recent-files list: at most four NC files, most recent first. The list lives in the
// main window's menu (mnuMMru, each entry's data the full path, its text "&1 path"); while
// the code editor is loaded, the editor's menu (mnuFMru) mirrors it entry for entry.
#pragma once

#include <QString>

#include <cstdint>

class QMenu;
class QAction;

void MRUGetFileList();                                  // fills the list from the store (start)
void MRUSaveFileList();                                 // writes the list to the store (shutdown)
void MRUAddItem(const QString &strFile);                // brings a file to the top, adding it if new
void MRURemoveItem(const QString &strFile);             // takes a file out
void MRUReorderList(const QString &strFile, int16_t intIndex);
void mnuMMru_Click(int intIndex);                       // LaunchFile(its path, its index)

// The editor's mirror. The editor calls MRUAttachEditorMenu on load with the menu that
// holds its recent entries and the action they stand before, then MRUSetEditingMenu; on
// unload MRUDetachEditorMenu. pfnClick is called with the index of a clicked entry.
void MRUAttachEditorMenu(QMenu *mnuFile, QAction *actBefore, void (*pfnClick)(int intIndex));
void MRUSetEditingMenu();
void MRUDetachEditorMenu();
