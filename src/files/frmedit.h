// frmEdit: the window in which the operator corrects a faulty NC program.
//
// The reader (ReadError) shows it modally through uiHooks().correctFile: the file in rtbEdit,
// the fault in txtError across the top, the faulty line's first occurrence in red. OK saves
// the text over the file and the reader reads the file again from the top; Cancel gives up.
// Its answer is its Tag, "Ok" or "Cancel", read by the caller before it unloads the form.
#pragma once

#include <QDialog>
#include <QString>

class QPlainTextEdit;
class QPushButton;

class FrmEdit : public QDialog {
    Q_OBJECT
public:
    explicit FrmEdit(QWidget *parent = nullptr);

    // Centres the window over the main window, takes its icon, loads the file into rtbEdit
    // and puts the path in the caption. A file that can't be read leaves rtbEdit empty and
    // OK disabled: there is nothing to save over it.
    void Form_Load(const QString &strFile);
    // The fault: txtError's text (CR LF breaks) and the line to mark in red.
    void ShowFault(const QString &strError, const QString &strLine);

    QPlainTextEdit *txtError = nullptr;   // the fault, read-only, across the top
    QPlainTextEdit *rtbEdit = nullptr;    // the NC program as plain text
    QPushButton *cmdOk = nullptr;
    QPushButton *cmdCancel = nullptr;
    QString Tag;                          // "Ok" once saved, "Cancel", or "" when closed otherwise
    QString strFile;                      // the file shown

    void cmdOk_Click();
    void cmdCancel_Click();

protected:
    void reject() override;   // Esc and the close box answer as Cancel
};

// The one instance, made on first use.
FrmEdit *frmEdit();
// Destroys the instance; the next frmEdit() makes a fresh one.
void UnloadFrmEdit();

// The correction window behind uiHooks().correctFile: loads the form, shows the fault,
// waits modally, unloads it and returns its tag.
QString strCorrectFileWithFrmEdit(const QString &strFile, const QString &strError, const QString &strLine);
// Installs it (called by InstallGuiHooks).
void InstallFrmEditHook();
