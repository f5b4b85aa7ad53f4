// frmPass: the settings password prompt. Shown modally by blnValidUser (saving a changed
// setting) and by the settings dialog's tmrPassword (entering the page "Password"). It
// answers through its Tag, "Ok" or "Cancel"; whoever showed it reads the Tag and unloads it.
#pragma once

#include "platform/forms.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

class FrmPass : public QDialog, public Form {
    Q_OBJECT
public:
    FrmPass();
    ~FrmPass() override;
    QLabel *lblPass;
    QLineEdit *txtPass;     // masked, at most 6 characters
    QPushButton *cmdOk;
    QPushButton *cmdCancel;
    QLabel *lblOops;        // "Oops! try again ...", hidden until a wrong entry
    QString Tag;            // "Ok" or "Cancel"

    void Form_Load() override;
    void Form_Activate();
    void cmdOk_Click();
    void cmdCancel_Click();

protected:
    bool event(QEvent *e) override;
    void reject() override;   // Esc and the close box: as Cancel
};

FrmPass *frmPass();
bool frmPassLoaded();

// May the operator change settings now? True without a password, and once after the
// password was set or proved on this visit; otherwise frmPass asks (any number of tries).
bool blnValidUser();
