// frmSettings: the one place where the operator changes how the program and the machine
// work together. A modal dialog with four pages over the main window, opened from the
// menu and, on the first run, by MainProcess. It edits copies in its controls: nothing
// reaches the shared settings or the store before blnSaveSettings has passed.
//
// It reaches the rest of the program only through the link (SetupComms, CloseComms,
// the status panels in linkHooks), the store, the password and the rate test.
#pragma once

#include "platform/forms.h"

#include <QCheckBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTimer>
#include <QToolButton>

#include <array>
#include <cstdint>

class QStackedLayout;

// An up-down control beside a number box: up and down arrows that step the box's number
// by 1 within min..max (what the arrows do; the box itself takes whatever is typed).
class UpDown : public QWidget {
    Q_OBJECT
public:
    UpDown(QLineEdit *buddy, int min, int max, const QString &axis, QWidget *parent);
    void step(int delta);
    QToolButton *up;
    QToolButton *down;

private:
    QLineEdit *m_buddy;
    int m_min;
    int m_max;
};

class FrmSettings : public QDialog, public Form {
    Q_OBJECT
public:
    FrmSettings();
    ~FrmSettings() override;

    QTabBar *tbsOptions;
    std::array<QWidget *, 4> picOptions{};
    // Page "Mill Control".
    QCheckBox *chkOnline;
    QGroupBox *fraComms;
    std::array<QRadioButton *, 4> optComms{};
    std::array<QLabel *, 4> lblDevice{};     // the Linux device behind each "Com n"
    QLabel *lblComms;
    QCheckBox *chkShowTime;
    QCheckBox *chkWoodworker;
    QCheckBox *chkKeepFiles;
    // Page "Machining".
    QGroupBox *fraPlay;
    std::array<QLabel *, 4> lblPlay{};
    std::array<QLineEdit *, 3> txtPlay{};
    std::array<UpDown *, 3> updPlay{};
    QLabel *lblRapid;
    QLineEdit *txtRapid;
    QPushButton *cmdRateTest;
    // Page "Keyboard".
    std::array<QRadioButton *, 2> optRapid{};
    QLabel *lblKeyTip;
    // Page "Password".
    std::array<QLabel *, 3> lblHelp{};
    std::array<QLineEdit *, 2> txtPass{};
    QPushButton *cmdPswd;
    QLabel *lblOops;
    // Below the pages.
    QPushButton *cmdOk;
    QPushButton *cmdCancel;
    // Runs the password page's check once, after the tab click has finished.
    QTimer *tmrPassword;

    int16_t intTabCurrent = 1;    // the tab now showing, from 1
    int16_t intTabPrevious = 1;   // the tab shown before it (the password page's way back)

    // optComms(index) with the control array's bounds: an index without a button is a fault.
    QRadioButton *opt(int index);

    void Form_Load() override;
    void Form_Activate();
    void Form_KeyDown(int intKeyCode, int intShift);
    void tbsOptions_Click();
    void SelectTab(int16_t intTab);   // selects a tab from code (fires tbsOptions_Click)
    void chkOnline_Click();
    bool blnSaveSettings();
    void cmdOk_Click();
    void cmdCancel_Click();
    void cmdRateTest_Click();
    void cmdPswd_Click();
    void tmrPassword_Timer();

    // The Linux additions beside the ports: each button's device, the ports that exist.
    void ShowSerialDevices();

protected:
    bool event(QEvent *e) override;
    void reject() override;   // Esc and the close box: as Cancel

private:
    QStackedLayout *m_pages = nullptr;   // holds picOptions(0..3), one shown at a time
    void BuildMillPage(QWidget *page);
    void BuildMachiningPage(QWidget *page);
    void BuildKeyboardPage(QWidget *page);
    void BuildPasswordPage(QWidget *page);
};

FrmSettings *frmSettings();
bool frmSettingsLoaded();

// Hides frmSplash and shows frmSettings modally (the menu's Settings and the first run).
// Returns true when the settings were saved.
bool ShowSettingsDialog();
