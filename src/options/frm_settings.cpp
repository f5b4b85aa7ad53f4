#include "options/frm_settings.h"

#include "core/frm_splash.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "core/state.h"
#include "core/store.h"
#include "core/vb.h"
#include "link/comms.h"
#include "link/frm_rate_test.h"
#include "link/link_screen.h"
#include "options/frm_pass.h"
#include "options/password.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeySequence>
#include <QShortcut>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <cmath>

namespace {
FrmSettings *g_frmSettings = nullptr;
bool gblnSettingsSaved = false;   // the last opening ended with the settings saved

// The pages in order: caption and key.
struct TabInfo {
    const char *caption;
    const char *key;
};
constexpr TabInfo kTabs[4] = {
    {"Mill Control", "Mill"}, {"Machining", "Machining"}, {"Keyboard", "Keyboard"}, {"Password", "Password"}};

// The 16-bit number in a box (leading-number parse, half to even; beyond 16 bits a fault).
int16_t intBoxNumber(const QLineEdit *box) { return vb::CInt(vb::Val(box->text())); }
} // namespace

FrmSettings *frmSettings() { return FormInstance(g_frmSettings); }
bool frmSettingsLoaded() { return g_frmSettings != nullptr; }

FrmSettings::FrmSettings()
{
    setObjectName(QStringLiteral("frmSettings"));
    setWindowTitle(QStringLiteral("Brantok Settings"));
    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(14, 12, 14, 12);
    lay->setSpacing(0);
    tbsOptions = new QTabBar(this);
    tbsOptions->setObjectName(QStringLiteral("tbsOptions"));
    tbsOptions->setDrawBase(false);
    for (const TabInfo &t : kTabs) {
        int i = tbsOptions->addTab(QString::fromLatin1(t.caption));
        tbsOptions->setTabData(i, QString::fromLatin1(t.key));
    }
    lay->addWidget(tbsOptions);
    // The pages share one framed place under the tabs, as large as the largest page; only
    // the selected one is shown.
    auto *frame = new QFrame(this);
    frame->setFrameShape(QFrame::StyledPanel);
    frame->setMinimumSize(470, 250);
    m_pages = new QStackedLayout(frame);
    m_pages->setContentsMargins(14, 10, 14, 10);
    for (int i = 0; i < 4; ++i) {
        picOptions[i] = new QWidget(frame);
        picOptions[i]->setObjectName(QStringLiteral("picOptions%1").arg(i));
        picOptions[i]->setAccessibleName(QString::fromLatin1(kTabs[i].caption));
        m_pages->addWidget(picOptions[i]);
    }
    BuildMillPage(picOptions[0]);
    BuildMachiningPage(picOptions[1]);
    BuildKeyboardPage(picOptions[2]);
    BuildPasswordPage(picOptions[3]);
    lay->addWidget(frame, 1);
    auto *buttons = new QHBoxLayout;
    buttons->setContentsMargins(0, 10, 0, 0);
    buttons->addStretch();
    cmdOk = new QPushButton(QStringLiteral("&Save Settings"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setAutoDefault(false);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setAutoDefault(false);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    lay->addLayout(buttons);
    tmrPassword = new QTimer(this);
    tmrPassword->setInterval(1);
    connect(tmrPassword, &QTimer::timeout, this, [this] { tmrPassword_Timer(); });
    connect(tbsOptions, &QTabBar::currentChanged, this, [this] { tbsOptions_Click(); });
    connect(chkOnline, &QCheckBox::clicked, this, [this] { chkOnline_Click(); });
    connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    connect(cmdRateTest, &QPushButton::clicked, this, [this] { cmdRateTest_Click(); });
    connect(cmdPswd, &QPushButton::clicked, this, [this] { cmdPswd_Click(); });
    // Ctrl+Tab turns the pages wherever the focus is (the form sees the key first).
    auto *ctrlTab = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab), this);
    connect(ctrlTab, &QShortcut::activated, this, [this] { Form_KeyDown(9, 2); });
}

FrmSettings::~FrmSettings()
{
    if (g_frmSettings == this)
        g_frmSettings = nullptr;
}

QRadioButton *FrmSettings::opt(int index)
{
    if (index < 0 || index >= static_cast<int>(optComms.size()))
        vb::Err(340, QStringLiteral("Control array element '%1' doesn't exist").arg(index));
    return optComms[static_cast<size_t>(index)];
}

void FrmSettings::Form_Load() try {
    adjustSize();
    CentreOverMain(this);
    gstrComport = strRegistryValueGet(QStringLiteral("Comport"), QStringLiteral("COM1"));
    opt(vb::CInt(vb::Val(vb::Mid(gstrComport, 4))) - 1)->setChecked(true);
    chkOnline->setChecked(gblnOnline);
    txtRapid->setText(vb::FormatGeneral(std::trunc(static_cast<double>(gsngRapidSpeed))));
    chkKeepFiles->setChecked(gblnKeepFiles);
    chkWoodworker->setChecked(gblnWoodworker);
    chkShowTime->setChecked(gblnShowTime);
    optRapid[gblnRapidUseDot ? 0 : 1]->setChecked(true);
    txtPlay[0]->setText(QString::number(gintBacklashX));
    txtPlay[1]->setText(QString::number(gintBacklashY));
    txtPlay[2]->setText(QString::number(gintBacklashZ));
    ShowSerialDevices();
    intTabCurrent = 1;
    SelectTab(1);
} catch (...) {
    LogError("frmSettings", "Form_Load");
}

void FrmSettings::Form_Activate() try {
    // Closing already (the deferred close waits for the keys): the buttons stay off, so a
    // second click can't act on a form that is going.
    if (gfrmToClose == this)
        return;
    cmdOk->setEnabled(true);
    cmdCancel->setEnabled(true);
    // Given back only with a controller: offline there is nothing to test, and the test
    // must not stream into a closed port.
    cmdRateTest->setEnabled(chkOnline->isChecked());
} catch (...) {
    LogError("frmSettings", "Form_Activate");
}

void FrmSettings::Form_KeyDown(int intKeyCode, int intShift) try {
    if (intKeyCode == 9 && intShift == 2)
        SelectTab(static_cast<int16_t>(tbsOptions->currentIndex() + 1 >= tbsOptions->count()
                                           ? 1
                                           : tbsOptions->currentIndex() + 2));
} catch (...) {
    LogError("frmSettings", "Form_KeyDown");
}

void FrmSettings::SelectTab(int16_t intTab)
{
    // Selecting the tab that already shows fires the click as well.
    if (tbsOptions->currentIndex() == intTab - 1)
        tbsOptions_Click();
    else
        tbsOptions->setCurrentIndex(intTab - 1);
}

void FrmSettings::tbsOptions_Click() try {
    intTabPrevious = intTabCurrent;
    const int selected = tbsOptions->currentIndex();
    m_pages->setCurrentIndex(selected);
    for (int i = 0; i < 4; ++i)
        picOptions[i]->setVisible(i == selected);
    intTabCurrent = static_cast<int16_t>(selected + 1);
    QWidget *page = picOptions[static_cast<size_t>(selected)];
    if (page->isVisible() && page->isEnabled()) {
        switch (intTabCurrent) {
        case 1: chkOnline->setFocus(); break;
        case 2:
            cmdRateTest->setEnabled(chkOnline->isChecked());
            txtRapid->setFocus();
            break;
        case 3: optRapid[optRapid[0]->isChecked() ? 0 : 1]->setFocus(); break;
        default: txtPass[0]->setFocus(); break;
        }
    }
    tmrPassword->start();
} catch (...) {
    LogError("frmSettings", "tbsOptions_Click");
}

void FrmSettings::chkOnline_Click() try {
    cmdRateTest->setEnabled(chkOnline->isChecked());
} catch (...) {
    LogError("frmSettings", "chkOnline_Click");
}

bool FrmSettings::blnSaveSettings() try {
    // 1. The range of rapid, on the rounded number.
    const int16_t intRapid = intBoxNumber(txtRapid);
    if (intRapid < 100 || intRapid > 700) {
        SelectTab(2);
        StdMsgBox(QStringLiteral("Rapid Speed must be from 100 to 700 mm/min"), vbExclamation,
                  QStringLiteral("Brantok Settings"));
        txtRapid->setSelection(0, 99);
        txtRapid->setFocus();
        return false;
    }
    // 2. No second click while saving.
    cmdOk->setEnabled(false);
    cmdCancel->setEnabled(false);
    cmdRateTest->setEnabled(false);
    // 3. The new values, and whether any differs. Rapid keeps only its integer part.
    int intPort = 1;
    for (int i = 0; i < 4; ++i)
        if (optComms[i]->isChecked())
            intPort = i + 1;
    const bool blnOnline = chkOnline->isChecked();
    const QString strComport = QStringLiteral("COM") + QString::number(intPort);
    const float sngRapid = static_cast<float>(std::trunc(vb::Val(txtRapid->text())));
    const bool blnWoodworker = chkWoodworker->isChecked();
    const bool blnKeepFiles = chkKeepFiles->isChecked();
    const bool blnShowTime = chkShowTime->isChecked();
    const bool blnRapidUseDot = optRapid[0]->isChecked();
    const int16_t intPlayX = intBoxNumber(txtPlay[0]);
    const int16_t intPlayY = intBoxNumber(txtPlay[1]);
    const int16_t intPlayZ = intBoxNumber(txtPlay[2]);
    const bool blnChanged = blnOnline != gblnOnline || strComport != gstrComport || sngRapid != gsngRapidSpeed ||
                            blnWoodworker != gblnWoodworker || blnKeepFiles != gblnKeepFiles ||
                            blnShowTime != gblnShowTime || blnRapidUseDot != gblnRapidUseDot ||
                            intPlayX != gintBacklashX || intPlayY != gintBacklashY || intPlayZ != gintBacklashZ;
    // 4. Nothing changed: the first run is over, and nothing else is written.
    if (!blnChanged) {
        RegistryValuePut(QStringLiteral("Set"), QStringLiteral("Yes"));
        return true;
    }
    // 5. The password before anything is written. Form_Activate gives the buttons back.
    if (!blnValidUser())
        return false;
    // 6. The port.
    bool blnSetup = false;
    if (!blnOnline && gblnOnline) {
        CloseComms();
    } else if (blnOnline && gblnOnline && strComport != gstrComport) {
        CloseComms();
        blnSetup = true;
    } else if (blnOnline && !gblnOnline) {
        blnSetup = true;
    }
    // 7. The shared settings.
    gblnOnline = blnOnline;
    gstrComport = strComport;
    gsngRapidSpeed = sngRapid;
    gblnWoodworker = blnWoodworker;
    gblnKeepFiles = blnKeepFiles;
    gblnShowTime = blnShowTime;
    gblnRapidUseDot = blnRapidUseDot;
    gintBacklashX = intPlayX;
    gintBacklashY = intPlayY;
    gintBacklashZ = intPlayZ;
    // 8. The status bar.
    if (linkHooks().setPanel)
        linkHooks().setPanel(QStringLiteral("online"),
                             gblnOnline ? QStringLiteral("Working Online") : QStringLiteral("Working Offline"));
    // 9. The store, in this order.
    RegistryValuePut(QStringLiteral("Online"), YesNo(gblnOnline));
    RegistryValuePut(QStringLiteral("Comport"), gstrComport);
    RegistryValuePut(QStringLiteral("RapidSpeed"), vb::FormatGeneral(gsngRapidSpeed));
    RegistryValuePut(QStringLiteral("Woodworker"), YesNo(gblnWoodworker));
    RegistryValuePut(QStringLiteral("KeepFiles"), YesNo(gblnKeepFiles));
    RegistryValuePut(QStringLiteral("ShowTime"), YesNo(gblnShowTime));
    RegistryValuePut(QStringLiteral("RapidUseDot"), YesNo(gblnRapidUseDot));
    RegistryValuePut(QStringLiteral("BacklashX"), QString::number(gintBacklashX));
    RegistryValuePut(QStringLiteral("BacklashY"), QString::number(gintBacklashY));
    RegistryValuePut(QStringLiteral("BacklashZ"), QString::number(gintBacklashZ));
    // 10. The link, when it has to be set up (a failure is dealt with there).
    if (blnSetup)
        SetupComms();
    // 11.
    RegistryValuePut(QStringLiteral("Set"), QStringLiteral("Yes"));
    return true;
} catch (...) {
    LogError("frmSettings", "blnSaveSettings");
}

void FrmSettings::cmdOk_Click() try {
    if (!blnSaveSettings())
        return;
    gblnSettingsSaved = true;
    DeferredClose(this, QStringLiteral("Unload"));
} catch (...) {
    LogError("frmSettings", "cmdOk_Click");
}

void FrmSettings::cmdCancel_Click() try {
    gblnPasswordPassed = false;
    cmdCancel->setEnabled(false);
    cmdOk->setEnabled(false);
    DeferredClose(this, QStringLiteral("Unload"));
} catch (...) {
    LogError("frmSettings", "cmdCancel_Click");
}

void FrmSettings::cmdRateTest_Click() try {
    if (!blnSaveSettings())
        return;
    FrmRateTest *test = frmRateTest();
    // The recommendation goes into the rapid box; the operator still saves it.
    test->onRecommended = [this](int16_t intRate) { txtRapid->setText(QString::number(intRate)); };
    ShowModal(test, this);
    if (IsLoaded(test))
        Unload(test);
} catch (...) {
    LogError("frmSettings", "cmdRateTest_Click");
}

void FrmSettings::cmdPswd_Click() try {
    const QString strNew = txtPass[0]->text();
    if (!strNew.isEmpty()) {
        if (txtPass[1]->text() != strNew) {
            lblOops->setVisible(true);
            txtPass[0]->clear();
            txtPass[1]->clear();
            txtPass[0]->setFocus();
            return;
        }
        // In force at once: cancelling the dialog afterwards doesn't undo it.
        gstrPassword = strEncrypt(strNew);
        RegistryValuePut(QStringLiteral("Password"), gstrPassword);
        gblnPasswordPassed = true;
        SelectTab(intTabPrevious);
        return;
    }
    if (gstrPassword == QLatin1String("None"))
        return;
    if (intStdMsgBox(QStringLiteral("This will remove password protection!"), vbOKCancel | vbExclamation,
                     windowTitle()) != vbOK)
        return;
    gstrPassword = QStringLiteral("None");
    RegistryValuePut(QStringLiteral("Password"), gstrPassword);
    SelectTab(intTabPrevious);
} catch (...) {
    LogError("frmSettings", "cmdPswd_Click");
}

void FrmSettings::tmrPassword_Timer() try {
    tmrPassword->stop();
    if (tbsOptions->tabData(tbsOptions->currentIndex()).toString() != QLatin1String("Password"))
        return;
    if (gstrPassword == QLatin1String("None")) {
        lblHelp[0]->setText(
            QStringLiteral("You may use a password to prevent unauthorised changes to the Program Settings."));
        return;
    }
    FrmPass *pass = frmPass();
    ShowModal(pass, this);
    if (IsLoaded(pass) && pass->Tag == QLatin1String("Ok")) {
        lblHelp[0]->setText(
            QStringLiteral("Enter a new password (or leave the boxes empty to remove password control)."));
        Unload(pass);
        return;
    }
    // The page is never left open to someone who failed.
    Unload(pass);
    DoEvents();
    SelectTab(intTabPrevious);
} catch (...) {
    LogError("frmSettings", "tmrPassword_Timer");
}

bool FrmSettings::event(QEvent *e)
{
    if (e->type() == QEvent::WindowActivate)
        Form_Activate();
    return QDialog::event(e);
}

// Esc and the close box are Cancel: nothing is saved; the dialog goes by the deferred close.
void FrmSettings::reject()
{
    if (cmdCancel->isEnabled())
        cmdCancel_Click();
}

bool ShowSettingsDialog()
{
    if (frmSplashLoaded())
        frmSplash()->hide();
    gblnSettingsSaved = false;
    FrmSettings *dlg = frmSettings();
    ShowModal(dlg);
    if (IsLoaded(dlg))
        Unload(dlg);
    return gblnSettingsSaved;
}
