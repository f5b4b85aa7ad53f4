// The open dialog of the program and the start of work on a file from the recent list or
// the command line. The import (mnuTimport_Click) is in import.cpp.
#include "files/filechoice.h"

#include "core/frm_main.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "guide/setmill.h"
#include "core/state.h"
#include "core/store.h"
#include "files/file_dialog.h"
#include "files/file_open.h"
#include "files/recent.h"
#include "nc/reader.h"

#include <QFileInfo>
#include <QPlainTextEdit>

const QString kNcFilter = QStringLiteral("Brantok files (*.brx)|*.brx|CNC Files (*.cnc)|*.cnc");

bool blnOpenWithPanel(const QString &strTitle, const QString &strFilter, const QString &strStartFolder,
                      QString &strFile, QString &strFolder) try {
    QString strStart = strStartFolder;
    QString strStartFile;
    for (;;) {
        // A fresh side panel for every showing: the recent list as it stands now.
        FrmControls *controls = frmControls();
        controls->Tag.clear();
        controls->rtbHeader->clear();
        FileDialog dlgFiles;
        controls->dlgFiles = &dlgFiles;
        dlgFiles.panel = controls;
        dlgFiles.FileBrowse = [](const QString &f) { dlgFiles_FileBrowse(f); };
        dlgFiles.DialogTitle = strTitle;
        dlgFiles.DefaultExt = QStringLiteral("brx");
        dlgFiles.Filter = strFilter;
        dlgFiles.FilterIndex = 1;
        dlgFiles.InitDir = strStart;
        dlgFiles.FileName = strStartFile;
        dlgFiles.MaxFileSize = 200;
        const bool blnChosen = dlgFiles.Show();
        const QString strPicked = controls->Tag;
        controls->dlgFiles = nullptr;
        Unload(controls);
        if (blnChosen) {
            strFile = dlgFiles.FileName;
            strFolder = dlgFiles.Folder();
            return true;
        }
        if (strPicked.isEmpty())
            return false;
        // A recent file picked in the panel: the dialog again, in its folder, with it selected.
        const QFileInfo fi(strPicked);
        strStart = fi.absolutePath();
        strStartFile = fi.fileName();
    }
} catch (...) {
    LogError("modFiles", "blnOpenWithPanel");
}

QString strGetFile(const QString &strTitle) try {
    const QString strStart = strRegistryValueGet(QStringLiteral("CNC File Path"), SampleFolder());
    QString strFile;
    QString strFolder;
    if (!blnOpenWithPanel(strTitle, kNcFilter, strStart, strFile, strFolder))
        return QString();
    RegistryValuePut(QStringLiteral("CNC File Path"), strFolder);
    gblnAnalysedToTemp = blnRemovableMedia(strFile);
    MRUAddItem(strFile);
    return strFile;
} catch (...) {
    LogError("modFiles", "strGetFile");
}

void LaunchFile(const QString &strFile, int16_t intMRUIndex) try {
    gstrMillFile = strFile;
    for (;;) {
        if (blnStdFileExists(strFile)) {
            gblnAnalysedToTemp = blnRemovableMedia(strFile);
            MRUReorderList(strFile, intMRUIndex);
            gblnCancel = false;
            gblnSetupWizard = true;
            gstrHeader = strHeader(strFile);
            frmMain()->picKeyboard->cmdDoneTag = QStringLiteral("Done");
            SetMode(3);
            ReturnToSetMill(8);
            return;
        }
        // Retry goes round again: a stick put in meanwhile. Anything else gives the file up.
        const int16_t intAnswer = intStdMsgBox(QStringLiteral("Cannot find file ") + strFile, vbRetryCancel + vbExclamation,
                                               QStringLiteral("File not found"));
        if (intAnswer != vbRetry) {
            MRURemoveItem(strFile);
            return;
        }
    }
} catch (...) {
    LogError("modFiles", "LaunchFile");
}
