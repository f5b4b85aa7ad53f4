// A world for the link's tests: a fake clock that moves 1 ms on every turn of the message
// loop, the controller emulator behind the serial port, scripted alarm windows, recorded
// status panels and a Shutdown that unwinds the test instead of ending it.
#pragma once

#include "core/hooks.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/store.h"
#include "core/vb.h"
#include "link/comms.h"
#include "link/link_screen.h"
#include "platform/clock.h"
#include "platform/emulator_port.h"
#include "support/test_support.h"

#include <QStringList>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>
#include <utility>

// Thrown by the test's Shutdown; passes the error trap untouched like the trap's own ending.
struct ShutdownCalled : TrapEnded {};

// A port whose received bytes the test gives (in one piece, as the controller sends them),
// and which records what was written. The reset answer "G" follows RTS going high.
class ScriptPort : public SerialPort {
public:
    bool openOk = true;
    QString openError = QStringLiteral("Device not found");
    bool faultOnUse = false;   // reading or asking DSR raises a run-time fault
    QByteArray written;

    bool open() override { return m_open = openOk; }
    void close() override { m_open = false; }
    bool isOpen() const override { return m_open; }
    QString errorString() const override { return openError; }
    void write(const QByteArray &b) override { written.append(b); }
    int64_t bytesToWrite() const override { return 0; }
    QByteArray readAll() override { fault(); return std::exchange(m_in, {}); }
    void setRts(bool high) override
    {
        if (high)
            QTimer::singleShot(0, this, [this] { feed("G"); });
    }
    bool dsr() override { fault(); return true; }
    QString deviceName() const override { return QStringLiteral("script"); }
    void feed(const QByteArray &b) { m_in.append(b); emit received(); }

private:
    void fault() const
    {
        if (faultOnUse)
            vb::Err(vb::kBadFileNumber);
    }
    bool m_open = false;
    QByteArray m_in;
};

struct LinkWorld {
    TempStore store;
    ScriptedBoxes boxes;
    FakeClock clock;
    // The emulator made by the last SetupComms (or null when a ScriptPort was asked for).
    EmulatorPort *emu = nullptr;
    ScriptPort *script = nullptr;
    bool useScriptPort = false;
    std::function<void(ControllerEmulator &)> configure;   // applied to each new emulator
    int16_t portAskedFor = -1;
    // Status panels by key, and every text each was given.
    std::map<QString, QString> panel;
    std::map<QString, QStringList> panelHistory;
    // The alarm window: what it said each time, and what the operator does (default: Ok).
    QStringList skullTexts;
    std::function<void()> onSkull;

    LinkWorld()
    {
        ResetSharedState();
        ResetComms();
        ResetLinkHooks();
        SetClock(&clock);
        SetPumpHook([this] { clock.advanceMs(1); });
        SetSerialPortOverride([this](int16_t n) -> std::unique_ptr<SerialPort> {
            portAskedFor = n;
            if (useScriptPort) {
                auto p = std::make_unique<ScriptPort>();
                script = p.get();
                return p;
            }
            auto p = std::make_unique<EmulatorPort>(clock);
            emu = p.get();
            if (configure)
                configure(p->controller());
            return p;
        });
        linkHooks().setPanel = [this](const QString &k, const QString &t) {
            panel[k] = t;
            panelHistory[k] << t;
        };
        linkHooks().showSkull = [this] {
            skullTexts << frmSkull.lblSkull;
            if (skullTexts.size() > 100)   // a test that forgot to cure the alarm: get out
                frmSkull.chkOffline = true;
            if (onSkull)
                onSkull();
            if (frmSkull.Tag.isEmpty())
                frmSkull_cmdOk_Click();
        };
        linkHooks().shutdown = [] { throw ShutdownCalled(); };
    }

    ~LinkWorld()
    {
        ResetComms();
        SetPumpHook({});
        SetSerialPortOverride({});
        SetClock(nullptr);
        ResetLinkHooks();
        ResetSharedState();
    }

    // Online at port COM1 through SetupComms; the emulator answers the reset.
    void goOnline()
    {
        RegistryValuePut(QStringLiteral("Comport"), QStringLiteral("COM1"));
        gblnOnline = true;
        SetupComms();
    }

    // Lets `ms` of fake time pass, pumping.
    void run(int ms)
    {
        for (int i = 0; i < ms; ++i)
            DoEvents();
    }
};

// One frame of `records` step records, X positive at 700 mm/min.
QByteArray StepFrame(int records);
// Sends `frames` such frames of 16 records, two out at most as every sender keeps them, then
// waits for every reply; false when a wait failed.
bool StreamFrames(int frames);
