// frmSettings as the first run needs it: the controller connection and the machine, saved
// to the store with "Set" = "Yes". The settings part replaces this form with the full
// dialog (four pages, backlash, rapid keys, password); its callers stay the same.
#pragma once

#include "platform/forms.h"

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include <array>

class FrmSettings : public QDialog, public Form {
    Q_OBJECT
public:
    FrmSettings();
    ~FrmSettings() override;
    QCheckBox *chkOnline;
    std::array<QRadioButton *, 4> optComms{};
    QCheckBox *chkShowTime;
    QCheckBox *chkWoodworker;
    QCheckBox *chkKeepFiles;
    QLineEdit *txtRapid;
    QPushButton *cmdOk;
    QPushButton *cmdCancel;
    QString Tag;   // "Ok" once saved, else "Cancel"

    void Form_Load() override;
    bool blnSaveSettings();
    void cmdOk_Click();
    void cmdCancel_Click();
protected:
    void reject() override;
};

FrmSettings *frmSettings();
bool frmSettingsLoaded();

// Hides frmSplash and shows frmSettings modally; what Options > Settings and the first
// run call. Returns true when the settings were saved.
bool ShowSettingsDialog();
