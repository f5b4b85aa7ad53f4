// frmCNCEdit: the code editor for NC programs, opened modally from the main menu.
//
// A plain text editor: a menu, the toolbar tlbEdit, the text area rtbCNCEdit (fixed-pitch,
// no wrap) and the status bar stbEdit ("Lines", "CAPS", "NUM", "INS"). Files are read and
// written as the reader reads them: one byte a character (Latin-1), every line written with
// CR LF, saved atomically. While it is up the main window's Mill, Tools and Options menus are
// off, so the machine can't be driven from behind it.
//
// The text's dirty state is the enabled state of the toolbar button "Save" (mnuFSave kept
// equal): every test of unsaved work reads that button.
//
// Beyond the plain editor, "Check Program" reads the text with the program's own NC reader,
// exactly as the set-up wizard will, and shows where it stops (editor_check.cpp).
//
// Built in cncedit.cpp (the form, its menus and events) and cncedit_file.cpp (new, open,
// save, save as and the question about unsaved work).
#pragma once

#include "platform/forms.h"

#include <QMainWindow>
#include <QString>

#include <cstdint>
#include <functional>
#include <map>

class QAction;
class QLabel;
class QMenu;
class QPlainTextEdit;
class QStatusBar;
class QTimer;
class QToolBar;

class FrmCNCEdit : public QMainWindow, public Form {
    Q_OBJECT
public:
    FrmCNCEdit();
    ~FrmCNCEdit() override;

    // --- Menus.
    QMenu *mnuFile, *mnuEdit;
    QAction *mnuFNew, *mnuFOpen, *mnuFSave, *mnuFSaveAs, *mnuFsep1, *mnuFsep2, *mnuFExit;
    QAction *mnuECut, *mnuECopy, *mnuEPaste, *mnuEsep1, *mnuEFind, *mnuEFindNext, *mnuEReplace;
    QAction *mnuEsep2, *mnuECheck;   // our own: read the text as milling would

    // --- Toolbar: buttons by key ("New", "Open", "Save", "Cut", "Copy", "Paste", "Find", "Check").
    QToolBar *tlbEdit;
    QAction *tlbButton(const QString &strKey) const;

    QPlainTextEdit *rtbCNCEdit;

    // --- Status bar: panels by key ("Lines", "CAPS", "NUM", "INS").
    QStatusBar *stbEdit;
    QLabel *stbPanel(const QString &strKey) const;
    QTimer *tmrKeys;   // 300 ms: the lock-key panels follow the keyboard

    // --- The form's state.
    QString strFileName;          // full path of the file in the editor, "" for an untitled text
    int32_t lngLineCount = 0;     // lines in the text at the last status update
    int32_t lngCurrentLine = 0;   // line of the caret from 0; -1 after a load forces an update
    bool blnCtrlHeld = false;     // Ctrl is down: selection changes leave Cut and Copy alone

    // --- Events and procedures.
    void Form_Load() override;
    bool Form_QueryUnload(int intUnloadMode) override;
    void Form_Unload() override;
    void Form_KeyDown(int intKeyCode, int intShift);
    void Form_KeyUp(int intKeyCode, int intShift);
    // False when the file could not be read: the operator was told and nothing changed.
    bool LoadFile(const QString &strFile);
    void DisplayPosition();
    void FileSaveAs();
    void mnuFNew_Click();
    void mnuFOpen_Click();
    void mnuFSave_Click();
    void mnuFSaveAs_Click();
    void mnuFExit_Click();
    void mnuFMru_Click(int intIndex);
    void mnuECut_Click();
    void mnuECopy_Click();
    void mnuEPaste_Click();
    void mnuEFind_Click();
    void mnuEFindNext_Click();
    void mnuEReplace_Click();
    void mnuECheck_Click();
    void rtbCNCEdit_Change();
    void rtbCNCEdit_SelChange();
    void tlbEdit_ButtonClick(const QString &strKey);
    // The lock-key panels "CAPS", "NUM" and the insert/overwrite panel "INS".
    void ShowKeyPanels();

    // True while "Check Program" reads the text: the window takes no input meanwhile.
    bool blnChecking = false;

protected:
    void closeEvent(QCloseEvent *e) override;
    bool eventFilter(QObject *watched, QEvent *e) override;

private:
    void buildMenus();
    void buildToolbar();
    void buildStatusBar();
    // Saves the text to strFileName and marks it clean; on failure the operator is told and
    // the text stays dirty. True when saved.
    bool blnSaveText(const QString &strFile);
    // The tool states of a fresh text: not dirty, nothing selected, menu paste on.
    void SetCleanStates();
    std::map<QString, QAction *> m_buttons;
    std::map<QString, QLabel *> m_panels;
};

// The global instance: loads frmCNCEdit on first use.
FrmCNCEdit *frmCNCEdit();
bool frmCNCEditLoaded();

// From frmCNCEdit's load to its unload.
extern bool gblnEditorLoaded;

// The main menu's "Edit": shows the editor modally and returns once it has been unloaded.
void ShowCodeEditor();
// The application lost the foreground: the find dialog goes, so it doesn't float over other
// programs (called by the window hook).
void CodeEditorDeactivated();

// Tests answer the save dialog instead of an operator: given the title and the start folder,
// the function returns the chosen path ("" for Cancel). An empty function puts the real
// dialog back. The real dialog asks before it overwrites a file.
using SaveDialogScript = std::function<QString(const QString &strTitle, const QString &strStartFolder)>;
void SetSaveDialogScript(SaveDialogScript fnScript);
