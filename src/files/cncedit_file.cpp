// frmCNCEdit's file commands: New, Open, Save, Save As, the recent entries and the question
// about unsaved work on the way out.
//
// Files are the reader's own kind: one byte a character, CR LF line ends (a file with LF or
// CR ends reads the same and is written back with CR LF). A save goes to a temporary file
// beside the target that replaces it only when all of it is written, so a save that fails
// (disk full, medium gone, no right to write) leaves the old file whole; the operator is
// told and the text stays in the editor, still marked as not saved.
#include "files/cncedit.h"

#include "core/frm_main.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "core/store.h"
#include "files/filechoice.h"
#include "files/recent.h"
#include "nc/textfile.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QTextDocument>

namespace {

const QString kCrLf = QStringLiteral("\r\n");
const QString kCaption = QStringLiteral("Brantok Code Editor - ");
const QString kUnsaved = QStringLiteral("The file has not been saved; save it now?");

SaveDialogScript gfnSaveDialogScript;

// The save dialog: the chosen path, or "" when cancelled. It asks before overwriting.
QString strSaveDialog(QWidget *owner, const QString &strTitle, const QString &strStartFolder)
{
    if (gfnSaveDialogScript)
        return gfnSaveDialogScript(strTitle, strStartFolder);
    QFileDialog dialog(owner, strTitle, QFileInfo(strStartFolder).isDir() ? strStartFolder : QString());
    dialog.setObjectName(QStringLiteral("dlgSaveAs"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(QStringLiteral("brx"));
    dialog.setNameFilters({QStringLiteral("Brantok files (*.brx)"), QStringLiteral("CNC Files (*.cnc)")});
    dialog.selectNameFilter(QStringLiteral("Brantok files (*.brx)"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    return dialog.selectedFiles().constFirst();
}

// A long file takes a moment to read, write or lay out: the pointer says so meanwhile.
struct BusyPointer {
    BusyPointer() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~BusyPointer() { QApplication::restoreOverrideCursor(); }
};

} // namespace

void SetSaveDialogScript(SaveDialogScript fnScript) { gfnSaveDialogScript = std::move(fnScript); }

void FrmCNCEdit::SetCleanStates()
{
    for (QAction *a : {tlbButton(QStringLiteral("Save")), tlbButton(QStringLiteral("Cut")),
                       tlbButton(QStringLiteral("Copy")), mnuFSave, mnuECut, mnuECopy})
        a->setEnabled(false);
    // Paste is a menu and keyboard command: the toolbar's button stays off for good.
    mnuEPaste->setEnabled(true);
    tlbButton(QStringLiteral("Paste"))->setEnabled(false);
}

void FrmCNCEdit::mnuFNew_Click() try {
    // No question here: a changed text is dropped without a word.
    strFileName.clear();
    setWindowTitle(kCaption + QStringLiteral("Untitled"));
    rtbCNCEdit->setPlainText(QString());
    SetCleanStates();
} catch (...) {
    LogError("frmCNCEdit", "mnuFNew_Click");
}

bool FrmCNCEdit::LoadFile(const QString &strFile) try {
    if (strFile.isEmpty())
        return false;   // the open dialog was cancelled: the text stays as it is
    QString strText;
    bool blnRead = false;
    {
        BusyPointer busy;
        blnRead = blnTextFileLoad(strFile, strText);
    }
    if (!blnRead) {
        // The same words as the reader's: the file went (a medium taken out, deleted
        // meanwhile) or can't be read. The text in the editor stays.
        const QFileInfo info(strFile);
        if (!info.exists()) {
            StdMsgBox(QStringLiteral("Cannot find file ") + strFile, vbExclamation, QStringLiteral("File not found"));
        } else {
            QFile probe(strFile);
            const QString strWhy = info.isDir() ? QStringLiteral("It is a folder.")
                                   : probe.open(QIODevice::ReadOnly) ? QStringLiteral("Read error.")
                                                                     : probe.errorString();
            StdMsgBox(QStringLiteral("Cannot read file ") + strFile + kCrLf + strWhy, vbExclamation,
                      QStringLiteral("File not readable"));
        }
        return false;
    }
    strFileName = strFile;
    setWindowTitle(kCaption + strFile);
    {
        BusyPointer busy;
        rtbCNCEdit->setPlainText(strText);
    }
    lngLineCount = 0;
    lngCurrentLine = -1;
    DisplayPosition();
    SetCleanStates();
    return true;
} catch (...) {
    LogError("frmCNCEdit", "LoadFile");
}

bool FrmCNCEdit::blnSaveText(const QString &strFile)
{
    QString strError;
    bool blnSaved = false;
    {
        BusyPointer busy;
        blnSaved = blnTextFileSave(strFile, rtbCNCEdit->document()->toRawText(), strError);
    }
    if (!blnSaved) {
        StdMsgBox(QStringLiteral("Cannot save file ") + strFile + kCrLf + strError, vbExclamation,
                  QStringLiteral("File not saved"));
        return false;
    }
    tlbButton(QStringLiteral("Save"))->setEnabled(false);
    mnuFSave->setEnabled(false);
    return true;
}

void FrmCNCEdit::mnuFOpen_Click() try {
    if (tlbButton(QStringLiteral("Save"))->isEnabled()) {
        if (intStdMsgBox(kUnsaved, vbYesNo + vbQuestion, QStringLiteral("Code Editor")) == vbYes) {
            if (strFileName.isEmpty())
                FileSaveAs();
            else
                blnSaveText(strFileName);
        }
    }
    // Still not saved (No, a cancelled save dialog, a failed save): the operator saves or
    // undoes first, and no file is opened over the text.
    if (tlbButton(QStringLiteral("Save"))->isEnabled())
        return;
    LoadFile(strGetFile(QStringLiteral("Select file to be edited")));
} catch (...) {
    LogError("frmCNCEdit", "mnuFOpen_Click");
}

void FrmCNCEdit::mnuFSave_Click() try {
    if (!strFileName.isEmpty())
        blnSaveText(strFileName);
    else
        FileSaveAs();
    if (!strFileName.isEmpty())
        MRUAddItem(strFileName);
} catch (...) {
    LogError("frmCNCEdit", "mnuFSave_Click");
}

void FrmCNCEdit::mnuFSaveAs_Click() try {
    FileSaveAs();
} catch (...) {
    LogError("frmCNCEdit", "mnuFSaveAs_Click");
}

void FrmCNCEdit::FileSaveAs() try {
    const QString strStart =
        strRegistryValueGet(QStringLiteral("CNC File Path"), QCoreApplication::applicationDirPath());
    const QString strFile = strSaveDialog(this, QStringLiteral("Save NC File As"), strStart);
    // Cancelled, or the save failed: nothing has changed and "Save" stays on for the callers.
    if (strFile.isEmpty() || !blnSaveText(strFile))
        return;
    strFileName = strFile;
    setWindowTitle(kCaption + strFile);
    MRUAddItem(strFile);
} catch (...) {
    LogError("frmCNCEdit", "FileSaveAs");
}

bool FrmCNCEdit::Form_QueryUnload(int) try {
    if (!tlbButton(QStringLiteral("Save"))->isEnabled())
        return false;
    if (intStdMsgBox(kUnsaved, vbYesNo + vbQuestion, QStringLiteral("Code Editor")) != vbYes)
        return false;   // No: the window closes and the changes are dropped
    if (!strFileName.isEmpty()) {
        blnSaveText(strFileName);
        MRUAddItem(strFileName);
    } else {
        FileSaveAs();
    }
    // A cancelled save dialog or a failed save keeps the window and its text.
    return tlbButton(QStringLiteral("Save"))->isEnabled();
} catch (...) {
    LogError("frmCNCEdit", "Form_QueryUnload");
}

void FrmCNCEdit::mnuFMru_Click(int intIndex) try {
    // The entry's path is the main list's (the editor's entries mirror it).
    if (!frmMainLoaded())
        return;
    const std::vector<QAction *> &entries = frmMain()->mnuMMru;
    if (intIndex < 0 || intIndex >= static_cast<int>(entries.size()))
        return;
    // No question about unsaved work here, as with New.
    if (LoadFile(entries[static_cast<size_t>(intIndex)]->data().toString()))
        MRUReorderList(strFileName, static_cast<int16_t>(intIndex));
} catch (...) {
    LogError("frmCNCEdit", "mnuFMru_Click");
}
