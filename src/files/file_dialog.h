// dlgFiles, the program's file dialog, and frmControls, the side panel that sits in it.
//
// The dialog is Qt's own (non-native) QFileDialog, so that a panel can be put beside the
// file list: the recent files (cboMRU) and the header of the file under the cursor
// (rtbHeader). Used by the open dialog (strGetFile), the import and its save step. When a
// test has set a dialog script (SetFileDialogScript) the script answers instead of the
// dialog; everything around the answer runs as for an operator.
#pragma once

#include "platform/forms.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

class QComboBox;
#include <QFileDialog>
class QFrame;
class QLabel;
class QPlainTextEdit;

class FileDialog {
public:
    FileDialog();
    ~FileDialog();
    FileDialog(const FileDialog &) = delete;
    FileDialog &operator=(const FileDialog &) = delete;

    // Set before Show.
    QString DialogTitle;
    QString DefaultExt;           // "brx": added to a name typed without an extension
    QString Filter;               // "Brantok files (*.brx)|*.brx|CNC Files (*.cnc)|*.cnc"
    int FilterIndex = 1;          // the first filter shown, from 1
    QString InitDir;              // the start folder; one that doesn't exist gives the home folder
    QString FileName;             // the start file name; after Show, the chosen full path
    int MaxFileSize = 200;        // the longest path, in characters, the dialog gives back
    bool blnSave = false;         // save mode: any name, and a prompt before overwriting

    // Beside the file list (not owned; taken out again before the dialog goes).
    QWidget *panel = nullptr;
    // Called with the path under the cursor as the operator moves through the list.
    std::function<void(const QString &strFile)> FileBrowse;

    // Runs the dialog modally. True when a file was chosen (FileName, Folder()); false when
    // it was cancelled or closed by Close().
    bool Show();
    // The chosen file's folder.
    QString Folder() const;
    // Closes the dialog as a cancel (the side panel's pick of a recent file).
    void Close();
    // The dialog while it is up (tests drive it).
    QFileDialog *dialog() const { return m_dialog; }

private:
    bool ShowOnce(QString &strChosen);
    QPointer<QFileDialog> m_dialog;
};

// frmControls: the side panel, loaded for one showing of the dialog and unloaded after it.
class FrmControls : public QWidget, public Form {
    Q_OBJECT
public:
    FrmControls();
    void Form_Load() override;   // fills cboMRU from the recent list

    QFrame *picHeader = nullptr;
    QLabel *lblMRU = nullptr;            // "Recently used Files"
    QComboBox *cboMRU = nullptr;         // file names; item data: the recent entry's index
    QLabel *lblHeader = nullptr;         // "File Header"
    QPlainTextEdit *rtbHeader = nullptr; // the header of the file under the cursor, read-only
    QString Tag;                         // the path picked from cboMRU
    FileDialog *dlgFiles = nullptr;      // the dialog the panel sits in, while it is up

    void cboMRU_Click(int intListIndex);
};

FrmControls *frmControls();
bool frmControlsLoaded();

// The dialog's file-browse event: shows the header of the file under the cursor.
void dlgFiles_FileBrowse(const QString &strFile);

// The script set by SetFileDialogScript, or an empty function.
const std::function<QString(const QString &, const QString &)> &FileDialogScriptInForce();

// The folder of the sample files beside the program.
QString SampleFolder();
