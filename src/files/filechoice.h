// The way from a file on disk into the program: the open dialog with its side panel
// (recent files and the header of the file under the cursor), the start of work on a
// file from the recent list or the command line, and the import of a file.
#pragma once

#include <QString>

#include <cstdint>
#include <functional>

// Shows the open dialog titled strTitle; the chosen file's full path, or "" when the
// operator chose nothing. Callers: the set-up wizard and the editor's Open.
QString strGetFile(const QString &strTitle);

// Tests answer the open dialog instead of an operator: given the title and the start
// folder, the function returns the chosen path ("" for Cancel). An empty function puts
// the real dialog back.
using FileDialogScript = std::function<QString(const QString &strTitle, const QString &strStartFolder)>;
void SetFileDialogScript(FileDialogScript fnScript);

// Starts work on strFile: from a recent entry (its index) or the command line (index 0).
void LaunchFile(const QString &strFile, int16_t intMRUIndex);

void mnuTimport_Click();                                // Mill > Import
