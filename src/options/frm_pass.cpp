#include "options/frm_pass.h"

#include "core/frm_splash.h"
#include "core/logger.h"
#include "core/state.h"
#include "options/password.h"

#include <QEvent>
#include <QGridLayout>

namespace {
FrmPass *g_frmPass = nullptr;
}

FrmPass *frmPass() { return FormInstance(g_frmPass); }
bool frmPassLoaded() { return g_frmPass != nullptr; }

FrmPass::FrmPass()
{
    setObjectName(QStringLiteral("frmPass"));
    setWindowTitle(QStringLiteral("Brantok - password"));
    lblPass = new QLabel(QStringLiteral("Please enter your password, then click 'Ok'"), this);
    lblPass->setObjectName(QStringLiteral("lblPass"));
    txtPass = new QLineEdit(this);
    txtPass->setObjectName(QStringLiteral("txtPass"));
    txtPass->setEchoMode(QLineEdit::Password);
    txtPass->setMaxLength(6);
    lblPass->setBuddy(txtPass);
    lblOops = new QLabel(QStringLiteral("Oops! try again ..."), this);
    lblOops->setObjectName(QStringLiteral("lblOops"));
    lblOops->setStyleSheet(QStringLiteral("color: #c00000; font-weight: bold;"));
    lblOops->setVisible(false);
    cmdOk = new QPushButton(QStringLiteral("Ok"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    auto *lay = new QGridLayout(this);
    lay->setContentsMargins(16, 14, 16, 12);
    lay->addWidget(lblPass, 0, 0, 1, 3);
    lay->addWidget(txtPass, 1, 0, 1, 1);
    lay->addWidget(lblOops, 1, 1, 1, 2);
    lay->addWidget(cmdOk, 2, 1);
    lay->addWidget(cmdCancel, 2, 2);
    lay->setColumnStretch(0, 1);
    connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOk_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    Tag = QStringLiteral("Cancel");
}

FrmPass::~FrmPass()
{
    if (g_frmPass == this)
        g_frmPass = nullptr;
}

void FrmPass::Form_Load() try {
    adjustSize();
    setFixedSize(std::max(width(), 340), height());
    CentreOverMain(this);
} catch (...) {
    LogError("frmPass", "Form_Load");
}

void FrmPass::Form_Activate() try {
    // Closing already (the deferred close waits for the keys): the buttons stay off, so a
    // second click can't act on a form that is going.
    if (gfrmToClose == this)
        return;
    cmdOk->setEnabled(true);
    cmdCancel->setEnabled(true);
} catch (...) {
    LogError("frmPass", "Form_Activate");
}

void FrmPass::cmdOk_Click() try {
    // Binary comparison: case and every character count.
    if (strEncrypt(txtPass->text()) == gstrPassword) {
        Tag = QStringLiteral("Ok");
        cmdOk->setEnabled(false);
        cmdCancel->setEnabled(false);
        DeferredClose(this, QStringLiteral("Hide"));
    } else {
        lblOops->setVisible(true);
        txtPass->clear();
        txtPass->setFocus();
    }
} catch (...) {
    LogError("frmPass", "cmdOk_Click");
}

void FrmPass::cmdCancel_Click() try {
    Tag = QStringLiteral("Cancel");
    cmdOk->setEnabled(false);
    cmdCancel->setEnabled(false);
    DeferredClose(this, QStringLiteral("Hide"));
} catch (...) {
    LogError("frmPass", "cmdCancel_Click");
}

bool FrmPass::event(QEvent *e)
{
    if (e->type() == QEvent::WindowActivate)
        Form_Activate();
    return QDialog::event(e);
}

void FrmPass::reject()
{
    // The close box or Esc while the prompt is already closing: nothing more to do.
    if (cmdCancel->isEnabled())
        cmdCancel_Click();
}

bool blnValidUser() try {
    if (gstrPassword == QLatin1String("None") || gblnPasswordPassed) {
        gblnPasswordPassed = false;
        return true;
    }
    FrmPass *pass = frmPass();
    ShowModal(pass);
    const bool ok = IsLoaded(pass) && pass->Tag == QLatin1String("Ok");
    Unload(pass);
    return ok;
} catch (...) {
    LogError("frmSettings", "blnValidUser");
}
