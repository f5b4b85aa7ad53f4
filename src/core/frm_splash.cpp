#include "core/frm_splash.h"

#include "link/comms.h"
#include "link/keycontrol.h"

#include "core/artwork.h"
#include "core/f1mill.h"
#include "core/frm_main.h"
#include "core/logger.h"
#include "core/state.h"
#include "platform/keystate.h"

#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

namespace {
FrmSplash *g_frmSplash = nullptr;
}

QPointer<QWidget> gfrmToClose;

FrmSplash *frmSplash() { return FormInstance(g_frmSplash); }
bool frmSplashLoaded() { return g_frmSplash != nullptr; }

QString VersionText() { return QStringLiteral("Version ") + AppVersion(); }

FrmSplash::FrmSplash() : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmSplash"));
    setAccessibleDescription(QStringLiteral("Brantok is starting"));
    setWindowTitle(AppTitle());
    setWindowIcon(AppIcon());
    setFixedSize(420, 240);
    setAutoFillBackground(true);
    QPalette pal = palette();
    pal.setColor(QPalette::Window, QColor(0xfb, 0xfc, 0xfd));
    setPalette(pal);
    setStyleSheet(QStringLiteral("FrmSplash { border: 1px solid #7d8b99; }"));

    auto *lay = new QVBoxLayout(this);
    lay->setContentsMargins(24, 24, 24, 18);
    imgHead = new QLabel(this);
    imgHead->setObjectName(QStringLiteral("imgHead"));
    imgHead->setAccessibleName(QStringLiteral("Brantok"));
    imgHead->setPixmap(HeadArt(370, 110));
    imgHead->setAlignment(Qt::AlignCenter);
    lblTitle = new QLabel(QStringLiteral("Step-motor control for the EMCO F1 milling machine"), this);
    lblTitle->setObjectName(QStringLiteral("lblTitle"));
    lblTitle->setAlignment(Qt::AlignCenter);
    lblVersion = new QLabel(this);
    lblVersion->setObjectName(QStringLiteral("lblVersion"));
    lblVersion->setAccessibleDescription(QStringLiteral("Version"));
    lblVersion->setAlignment(Qt::AlignCenter);
    lay->addWidget(imgHead);
    lay->addWidget(lblTitle);
    lay->addStretch();
    lay->addWidget(lblVersion);

    auto timer = [this](int ms, bool single) {
        auto *t = new QTimer(this);
        t->setInterval(ms);
        t->setSingleShot(single);
        return t;
    };
    tmrShow = timer(100, true);
    tmrKeyControl = timer(20, true);
    tmrKeyRelease = timer(5, false);
    tmrOnline = &::tmrOnline();   // the link's port watch, hosted here for the whole run
    tmrCaret = timer(50, true);
    connect(tmrShow, &QTimer::timeout, this, [] { tmrShow_Timer(); });
    connect(tmrKeyControl, &QTimer::timeout, this, [this] { tmrKeyControl_Timer(); });
    connect(tmrKeyRelease, &QTimer::timeout, this, [this] { tmrKeyRelease_Timer(); });
    connect(tmrCaret, &QTimer::timeout, this, [this] { tmrCaret_Timer(); });
}

FrmSplash::~FrmSplash()
{
    tmrOnline->stop();
    if (g_frmSplash == this)
        g_frmSplash = nullptr;
}

void FrmSplash::Form_Load() try {
    lblVersion->setText(VersionText());
    if (QScreen *s = QGuiApplication::primaryScreen())
        move(s->availableGeometry().center() - QPoint(width() / 2, height() / 2));
    tmrOnline->start();
} catch (...) {
    LogError("frmSplash", "Form_Load");
}

void FrmSplash::tmrKeyControl_Timer() try {
    tmrKeyControl->stop();
    gblnKeyLoop = true;
    KeyControl();
} catch (...) {
    LogError("frmSplash", "tmrKeyControl_Timer");
}

void FrmSplash::tmrKeyRelease_Timer() try {
    if (KeyIsDown(13) || KeyIsDown(32) || KeyIsDown(27))
        return;
    tmrKeyRelease->stop();
    QWidget *form = gfrmToClose;
    gfrmToClose = nullptr;
    if (!form)
        return;
    if (tmrKeyReleaseTag == QLatin1String("Unload"))
        Unload(form);
    else
        form->hide();
} catch (...) {
    LogError("frmSplash", "tmrKeyRelease_Timer");
}

void FrmSplash::tmrCaret_Timer() try {
    tmrCaret->stop();
    HideCaret();
} catch (...) {
    LogError("frmSplash", "tmrCaret_Timer");
}

void DeferredClose(QWidget *form, const QString &strTag)
{
    gfrmToClose = form;
    frmSplash()->tmrKeyReleaseTag = strTag;
    frmSplash()->tmrKeyRelease->start();
}
