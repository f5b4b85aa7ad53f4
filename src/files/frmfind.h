// frmFind: find and replace in the code editor's text. One dialog serves both commands: Find
// shows the upper half, Replace all of it. Shown modally over the editor, whose child it is,
// so it stays in front of it; it goes when the editor goes or the program loses the
// foreground.
//
// The search state lives here at module level, so that the editor's "Find Next" goes on
// after the dialog has gone. Every search ignores case and wraps round at the end of the
// text without a word.
#pragma once

#include "platform/forms.h"

#include <QDialog>
#include <QString>

#include <cstdint>

class FrmCNCEdit;
class QLabel;
class QLineEdit;
class QPushButton;

extern QString gstrFindText;   // text of the last search
extern int32_t glngFindPos;    // character position of the last hit from 0, -1 for none

class FrmFind : public QDialog, public Form {
    Q_OBJECT
public:
    FrmFind();
    ~FrmFind() override;

    QLabel *lblFind;
    QLineEdit *txtFind;
    QPushButton *cmdFind;
    QPushButton *cmdCancel;
    QLabel *lblReplace;
    QLineEdit *txtReplace;
    QPushButton *cmdReplace;
    QPushButton *cmdReplaceAll;

    void Form_Load() override;
    void Form_Activate();
    void txtFind_Change();
    void txtReplace_Change();
    void cmdFind_Click();
    void cmdReplace_Click();
    void cmdReplaceAll_Click();
    void cmdCancel_Click();

protected:
    bool event(QEvent *e) override;
    void reject() override;   // Esc and the close box: Cancel
};

FrmFind *frmFind();
bool frmFindLoaded();
// Unloads the dialog when it is loaded (the editor's unload, the program losing the foreground).
void UnloadFrmFind();

// The editor's Find ... (blnReplace false) and Replace ... (true): loads the dialog over
// `editor` with its lower half hidden or shown and shows it modally.
void ShowFind(FrmCNCEdit *editor, bool blnReplace);

// Primes the search: a text that isn't empty becomes the text searched from lngStart;
// an empty one clears the search (position -1).
void FindSetup(const QString &strText, int32_t lngStart);
// Searches the editor's text and selects the hit. The same text as before (or "") goes on
// after the last hit and wraps round to the top; a new text searches from the top. With a
// text given, Replace and Replace All are enabled exactly when there was a hit.
void FindNext(const QString &strText);

// The text area's find: the first hit of strText at or after lngStart, case ignored, is
// selected in the editor; its position, or -1 when there is none (nothing is selected then).
int32_t lngEditorFind(const QString &strText, int32_t lngStart);

// The search state back to its start (tests).
void ResetFind();
