// The settings dialog, the password prompt and the rate test in a chosen state, left on the
// screen for the screenshots (scripts/screenshots.sh):
//     settings_showcase mill | machining | keyboard | password | pass | ratetest
// Not a test. "ratetest" runs all seven presets against the built-in controller emulator on
// a clock that moves a millisecond a turn of the message loop, so the run takes seconds,
// and stays on the recommendation.
#include "core/hooks.h"
#include "core/state.h"
#include "core/store.h"
#include "link/comms.h"
#include "link/frm_rate_test.h"
#include "options/frm_pass.h"
#include "options/frm_settings.h"
#include "options/password.h"
#include "platform/clock.h"
#include "platform/emulator_port.h"
#include "platform/gui_hooks.h"

#include <QApplication>
#include <QTimer>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    InstallGuiHooks();
    ReadStartSettings();
    const QString scene = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("mill");
    static FakeClock clock;
    if (scene == QLatin1String("ratetest")) {
        SetClock(&clock);
        SetSerialPortOverride([](int16_t) -> std::unique_ptr<SerialPort> { return std::make_unique<EmulatorPort>(clock); });
        RegistryValuePut(QStringLiteral("Comport"), QStringLiteral("COM1"));
        gblnOnline = true;
        SetPumpHook([] { clock.advanceMs(1); });
        SetupComms();
        FrmRateTest *f = frmRateTest();
        // tmrProgress on the moving clock: a tick every 500 ms of it.
        SetPumpHook([f] {
            clock.advanceMs(1);
            if (clock.msecs() % 500 == 0 && f->tmrProgress->isActive())
                f->tmrProgress_Timer();
        });
        f->show();
        QTimer::singleShot(500, f, [f] { f->cmdStart_Click(); });
        return QApplication::exec();
    }
    if (scene == QLatin1String("password"))
        gstrPassword = QStringLiteral("None");
    gblnOnline = true;
    FrmSettings *s = frmSettings();
    s->show();
    const int tab = scene == QLatin1String("machining") ? 2
                    : scene == QLatin1String("keyboard") ? 3
                    : scene == QLatin1String("password") ? 4
                                                         : 1;
    s->SelectTab(static_cast<int16_t>(tab));
    if (scene == QLatin1String("pass")) {
        gstrPassword = strEncrypt(QStringLiteral("Mill42"));
        QTimer::singleShot(300, [] {
            FrmPass *p = frmPass();
            p->show();
            p->txtPass->setText(QStringLiteral("mill42"));
            p->cmdOk_Click();   // wrong: case matters
        });
    }
    return QApplication::exec();
}
