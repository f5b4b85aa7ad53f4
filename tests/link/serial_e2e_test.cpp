// End to end through the real QSerialPort: the link talks to the emulator program on a
// pseudo-terminal, on the real clock.
#include "core/hooks.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/store.h"
#include "link/comms.h"
#include "link/link_screen.h"
#include "link/spindle.h"
#include "platform/clock.h"
#include "platform/qt_serial_port.h"
#include "support/test_support.h"
#include "link/emulator_process.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace {

struct ShutdownCalled : TrapEnded {};

QByteArray RapidFrame(int records)
{
    const int timer = 65536 - 1097;   // 700 mm/min, X positive
    QByteArray f;
    f.append(char(records * 3 + 1));
    for (int i = 0; i < records; ++i)
        f.append(char(4 | 32)).append(char(timer & 0xFF)).append(char(timer >> 8));
    return f;
}

struct RealLink {
    TempStore store;
    ScriptedBoxes boxes;
    QStringList skullTexts;
    QMap<QString, QString> panel;
    RealLink(const QString &device, bool assumeDsr)
    {
        ResetSharedState();
        ResetComms();
        ResetLinkHooks();
        SetClock(nullptr);
        qputenv("BRANTOK_COM1", device.toLocal8Bit());
        if (assumeDsr)
            qputenv("BRANTOK_ASSUME_DSR", "1");
        else
            qunsetenv("BRANTOK_ASSUME_DSR");
        InstallSerialDevices();
        linkHooks().shutdown = [] { throw ShutdownCalled(); };
        linkHooks().showSkull = [this] {
            skullTexts << frmSkull.lblSkull;
            frmSkull.chkOffline = true;   // never wait for a cable in a test
            frmSkull_cmdOk_Click();
        };
        linkHooks().setPanel = [this](const QString &k, const QString &t) { panel[k] = t; };
        RegistryValuePut(QStringLiteral("Comport"), QStringLiteral("COM1"));
        gblnOnline = true;
    }
    ~RealLink()
    {
        ResetComms();
        ResetLinkHooks();
        SetSerialDeviceFactory({});
        qunsetenv("BRANTOK_COM1");
        qunsetenv("BRANTOK_ASSUME_DSR");
        ResetSharedState();
    }
};

// Sends `frames` frames of 16 steps, never more than two out, and waits for every reply.
bool StreamFrames(int frames)
{
    for (int i = 0; i < frames; ++i) {
        if (gintBuffersOut >= 2 && !blnGetReplies(false))
            return false;
        SendFrame(RapidFrame(16));
    }
    return blnGetReplies(true);
}

// Pumps until `done` or `ms` have passed.
template <typename F> bool PumpUntil(F done, int ms)
{
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < ms)
        DoEvents();
    return done();
}

} // namespace

TEST(SerialEndToEnd, StreamSpindleAndDoorThroughAPseudoTerminal)
{
    EmulatorProcess emu;
    ASSERT_FALSE(emu.path.isEmpty());
    RealLink link(emu.path, true);
    SetupComms();
    ASSERT_TRUE(link.skullTexts.isEmpty()) << link.skullTexts.join(QStringLiteral("|")).toStdString();
    EXPECT_EQ(link.panel[QStringLiteral("door")], QStringLiteral("Door Closed"));
    EXPECT_EQ(emu.status("resets"), 1);

    const int frames = 30;
    ASSERT_TRUE(StreamFrames(frames));
    EXPECT_EQ(gintBuffersOut, 0);
    EXPECT_EQ(emu.status("pos"), frames * 16);
    EXPECT_EQ(emu.status("maxheld"), 2);
    EXPECT_EQ(emu.status("overflows"), 0);

    SpindleStart();
    EXPECT_TRUE(gblnSpindleOn);
    EXPECT_EQ(emu.status("spindle"), 1);

    emu.command("door open");
    EXPECT_TRUE(PumpUntil([] { return gblnDoorOpen; }, 3000));
    EXPECT_FALSE(gblnSpindleOn);
    EXPECT_TRUE(gblnDoorStopped);
    EXPECT_EQ(emu.status("spindle"), 0);
    emu.command("door close");
    EXPECT_TRUE(PumpUntil([] { return !gblnDoorOpen; }, 3000));
    EXPECT_TRUE(link.skullTexts.isEmpty());
}

TEST(SerialEndToEnd, APseudoTerminalWithoutTheOptionHasNoController)
{
    EmulatorProcess emu;
    ASSERT_FALSE(emu.path.isEmpty());
    RealLink link(emu.path, false);
    // No DSR: the alarm; "Work Offline" at start ends the program.
    EXPECT_THROW(SetupComms(), ShutdownCalled);
    ASSERT_EQ(link.skullTexts.size(), 1);
    EXPECT_TRUE(link.skullTexts[0].startsWith(QStringLiteral("There is a problem with the hardware.")));
    EXPECT_FALSE(gblnOnline);
}

TEST(SerialEndToEnd, AMissingDeviceCannotOpen)
{
    RealLink link(QStringLiteral("/dev/brantok-no-such-port"), true);
    EXPECT_THROW(SetupComms(), ShutdownCalled);
    ASSERT_EQ(link.skullTexts.size(), 1);
    EXPECT_TRUE(link.skullTexts[0].startsWith(
        QStringLiteral("An error occurred during initialization of the COM settings.\r\nCom Port 1 ")));
}

TEST(SerialEndToEnd, TheBuiltInEmulatorRunsOnTheRealClock)
{
    RealLink link(QStringLiteral("emulator"), false);
    SetupComms();
    ASSERT_TRUE(link.skullTexts.isEmpty());
    EXPECT_EQ(link.panel[QStringLiteral("door")], QStringLiteral("Door Closed"));
    ASSERT_TRUE(StreamFrames(6));
    SpindleStart();
    EXPECT_TRUE(gblnSpindleOn);
    SpindleStop();
    EXPECT_FALSE(gblnSpindleOn);
    EXPECT_TRUE(link.skullTexts.isEmpty());
}
