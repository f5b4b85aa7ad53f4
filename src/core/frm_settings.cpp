#include "core/frm_settings.h"

#include "core/frm_main.h"
#include "core/frm_splash.h"
#include "core/logger.h"
#include "core/msgbox.h"
#include "core/pending.h"
#include "link/comms.h"
#include "core/state.h"
#include "core/store.h"
#include "core/vb.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <cmath>

namespace {
FrmSettings *g_frmSettings = nullptr;
}

FrmSettings *frmSettings() { return FormInstance(g_frmSettings); }
bool frmSettingsLoaded() { return g_frmSettings != nullptr; }

FrmSettings::FrmSettings()
{
    setObjectName(QStringLiteral("frmSettings"));
    setWindowTitle(QStringLiteral("Program Settings"));
    setAccessibleName(QStringLiteral("Program Settings"));
    auto name = [](QWidget *w, const char *n, const QString &a) {
        w->setObjectName(QString::fromLatin1(n));
        w->setAccessibleName(a);
    };
    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(18, 16, 18, 14);
    lay->setSpacing(9);
    chkOnline = new QCheckBox(QStringLiteral("Use Mill Controller  "), this);
    name(chkOnline, "chkOnline", QStringLiteral("Use Mill Controller"));
    chkOnline->setToolTip(QStringLiteral("Check this box if you have the Lovetch Lathe Controller connected to your "
                                         "PC. Clear this box to work 'off-line'."));
    lay->addWidget(chkOnline);
    auto *fraComms = new QGroupBox(QStringLiteral("Serial Port Connection"), this);
    name(fraComms, "fraComms", QStringLiteral("Serial Port Connection"));
    auto *comms = new QHBoxLayout(fraComms);
    for (int i = 0; i < 4; ++i) {
        optComms[i] = new QRadioButton(QStringLiteral("Com %1").arg(i + 1), fraComms);
        name(optComms[i], "optComms", QStringLiteral("Com %1").arg(i + 1));
        optComms[i]->setToolTip(QStringLiteral("Indicate which Com Port your Lathe Controller is connected to."));
        comms->addWidget(optComms[i]);
    }
    lay->addWidget(fraComms);
    auto *lblComms = new QLabel(QStringLiteral("For Brantok to control your F1 Mill, check 'Use Mill Controller' and "
                                               "select the appropriate Comms Port. Uncheck 'Use Mill Controller' for "
                                               "offline simulation."),
                                this);
    name(lblComms, "lblComms", QStringLiteral("Connection help"));
    lblComms->setWordWrap(true);
    lay->addWidget(lblComms);
    chkShowTime = new QCheckBox(QStringLiteral("Show elapsed machining time"), this);
    name(chkShowTime, "chkShowTime", chkShowTime->text());
    chkWoodworker = new QCheckBox(QStringLiteral("Mill is an F1 WoodWorker"), this);
    name(chkWoodworker, "chkWoodworker", chkWoodworker->text());
    chkKeepFiles = new QCheckBox(QStringLiteral("Retain calculated Mill steps  "), this);
    name(chkKeepFiles, "chkKeepFiles", QStringLiteral("Retain calculated Mill steps"));
    lay->addWidget(chkShowTime);
    lay->addWidget(chkWoodworker);
    lay->addWidget(chkKeepFiles);
    auto *rapid = new QHBoxLayout;
    auto *lblRapid = new QLabel(QStringLiteral("Rapid Traverse speed (mm/min)"), this);
    name(lblRapid, "lblRapid", lblRapid->text());
    txtRapid = new QLineEdit(this);
    name(txtRapid, "txtRapid", QStringLiteral("Rapid Traverse speed (mm/min)"));
    txtRapid->setMaximumWidth(90);
    rapid->addWidget(lblRapid);
    rapid->addWidget(txtRapid);
    rapid->addStretch();
    lay->addLayout(rapid);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    cmdOk = new QPushButton(QStringLiteral("&Save Settings"), this);
    name(cmdOk, "cmdOk", QStringLiteral("Save Settings"));
    cmdOk->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    name(cmdCancel, "cmdCancel", QStringLiteral("Cancel"));
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);
    lay->addLayout(buttons);
    connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    Tag = QStringLiteral("Cancel");
    setMinimumWidth(440);
}

FrmSettings::~FrmSettings()
{
    if (g_frmSettings == this)
        g_frmSettings = nullptr;
}

void FrmSettings::Form_Load() try {
    gstrComport = strRegistryValueGet(QStringLiteral("Comport"), QStringLiteral("COM1"));
    int n = vb::CInt(vb::Val(gstrComport.mid(3)));
    if (n >= 1 && n <= 4)
        optComms[n - 1]->setChecked(true);
    else
        optComms[0]->setChecked(true);
    chkOnline->setChecked(gblnOnline);
    txtRapid->setText(vb::FormatGeneral(std::trunc(static_cast<double>(gsngRapidSpeed))));
    chkKeepFiles->setChecked(gblnKeepFiles);
    chkWoodworker->setChecked(gblnWoodworker);
    chkShowTime->setChecked(gblnShowTime);
    adjustSize();
    CentreOverMain(this);
} catch (...) {
    LogError("frmSettings", "Form_Load");
}

bool FrmSettings::blnSaveSettings() try {
    double rapid = vb::Val(txtRapid->text());
    if (rapid <= 0) {
        StdMsgBox(QStringLiteral("Please enter a Rapid Traverse speed above 0 mm/min"), vbExclamation,
                  QStringLiteral("Program Settings"));
        txtRapid->setFocus();
        return false;
    }
    int port = 1;
    for (int i = 0; i < 4; ++i)
        if (optComms[i]->isChecked())
            port = i + 1;
    gblnOnline = chkOnline->isChecked();
    gstrComport = QStringLiteral("COM") + QString::number(port);
    gblnShowTime = chkShowTime->isChecked();
    gblnWoodworker = chkWoodworker->isChecked();
    gblnKeepFiles = chkKeepFiles->isChecked();
    gsngRapidSpeed = static_cast<float>(rapid);
    RegistryValuePut(QStringLiteral("Online"), YesNo(gblnOnline));
    RegistryValuePut(QStringLiteral("Comport"), gstrComport);
    RegistryValuePut(QStringLiteral("ShowTime"), YesNo(gblnShowTime));
    RegistryValuePut(QStringLiteral("Woodworker"), YesNo(gblnWoodworker));
    RegistryValuePut(QStringLiteral("KeepFiles"), YesNo(gblnKeepFiles));
    RegistryValuePut(QStringLiteral("RapidSpeed"), vb::FormatGeneral(gsngRapidSpeed));
    RegistryValuePut(QStringLiteral("Set"), QStringLiteral("Yes"));
    if (frmMainLoaded())
        frmMain()->stbPanel(QStringLiteral("online"))->setText(gblnOnline ? QStringLiteral("Working Online")
                                                                          : QStringLiteral("Working Offline"));
    CloseComms();
    SetupComms();
    return true;
} catch (...) {
    LogError("frmSettings", "blnSaveSettings");
}

void FrmSettings::cmdOk_Click() try {
    if (!blnSaveSettings())
        return;
    Tag = QStringLiteral("Ok");
    cmdOk->setEnabled(false);
    cmdCancel->setEnabled(false);
    DeferredClose(this, QStringLiteral("Hide"));
} catch (...) {
    LogError("frmSettings", "cmdOk_Click");
}

void FrmSettings::cmdCancel_Click() try {
    Tag = QStringLiteral("Cancel");
    cmdOk->setEnabled(false);
    cmdCancel->setEnabled(false);
    DeferredClose(this, QStringLiteral("Hide"));
} catch (...) {
    LogError("frmSettings", "cmdCancel_Click");
}

void FrmSettings::reject() { cmdCancel_Click(); }

bool ShowSettingsDialog()
{
    if (frmSplashLoaded())
        frmSplash()->hide();
    FrmSettings *dlg = frmSettings();
    ShowModal(dlg, frmMainLoaded() ? frmMain() : nullptr);
    bool saved = IsLoaded(dlg) && dlg->Tag == QLatin1String("Ok");
    Unload(dlg);
    return saved;
}
