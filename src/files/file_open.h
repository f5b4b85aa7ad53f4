// The open dialog with its side panel, shared by the file choice and the import.
#pragma once

#include <QString>

// "Brantok files (*.brx)|*.brx|CNC Files (*.cnc)|*.cnc"
extern const QString kNcFilter;

// Shows the open dialog titled strTitle with the side panel, starting in strStartFolder.
// A recent file picked in the panel shows the dialog again in that file's folder with the
// file selected. True with the chosen file and its folder; false when cancelled.
bool blnOpenWithPanel(const QString &strTitle, const QString &strFilter, const QString &strStartFolder,
                      QString &strFile, QString &strFolder);
