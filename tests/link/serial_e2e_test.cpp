// End to end through the real QSerialPort: the link talks to the emulator program on a
// pseudo-terminal, on the real clock.
#include "link/emulator_process.h"
#include "link/link_world.h"
#include "link/spindle.h"
#include "platform/qt_serial_port.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace {

// The link world on the real clock with COM1 the given device; the alarm is answered
// "Work Offline", never waiting for a cable in a test.
struct RealLink : LinkWorld {
    RealLink(const QString &device, bool assumeDsr)
    {
        SetClock(nullptr);
        SetPumpHook({});
        SetSerialPortOverride({});
        qputenv("BRANTOK_COM1", device.toLocal8Bit());
        qputenv("BRANTOK_ASSUME_DSR", assumeDsr ? "1" : "0");
        InstallSerialDevices();
        onSkull = [] { frmSkull.chkOffline = true; };
        RegistryValuePut(QStringLiteral("Comport"), QStringLiteral("COM1"));
        gblnOnline = true;
    }
    ~RealLink()
    {
        ResetComms();
        SetSerialDeviceFactory({});
        qunsetenv("BRANTOK_COM1");
        qunsetenv("BRANTOK_ASSUME_DSR");
    }
};

bool PumpUntil(const std::function<bool()> &done)
{
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < 3000)
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
    ASSERT_TRUE(StreamFrames(30));
    EXPECT_EQ(emu.status("pos"), 30 * 16);
    EXPECT_EQ(emu.status("maxheld"), 2);
    EXPECT_EQ(emu.status("overflows"), 0);

    SpindleStart();
    EXPECT_EQ(emu.status("spindle"), 1);
    emu.command("door open");
    EXPECT_TRUE(PumpUntil([] { return gblnDoorOpen; }));
    EXPECT_FALSE(gblnSpindleOn);
    EXPECT_EQ(emu.status("spindle"), 0);
    emu.command("door close");
    EXPECT_TRUE(PumpUntil([] { return !gblnDoorOpen; }));
    EXPECT_TRUE(link.skullTexts.isEmpty());
}

// No DSR on a pseudo-terminal without the option, and a device that isn't there: the alarm
// (or the port's message) once, and the start ends.
TEST(SerialEndToEnd, NoControllerOrNoDeviceEndsTheStart)
{
    EmulatorProcess emu;
    ASSERT_FALSE(emu.path.isEmpty());
    const std::pair<QString, const char *> cases[] = {
        {emu.path, "There is a problem with the hardware."},
        {QStringLiteral("/dev/brantok-no-such-port"),
         "An error occurred during initialization of the COM settings.\r\nCom Port 1 "},
    };
    for (const auto &[device, text] : cases) {
        RealLink link(device, device != emu.path);
        EXPECT_THROW(SetupComms(), ShutdownCalled);
        ASSERT_EQ(link.skullTexts.size(), 1);
        EXPECT_TRUE(link.skullTexts[0].startsWith(QString::fromLatin1(text))) << link.skullTexts[0].toStdString();
    }
}

TEST(SerialEndToEnd, TheBuiltInEmulatorRunsOnTheRealClock)
{
    RealLink link(QStringLiteral("emulator"), false);
    SetupComms();
    ASSERT_TRUE(StreamFrames(6));
    SpindleStart();
    EXPECT_TRUE(gblnSpindleOn);
    EXPECT_TRUE(link.skullTexts.isEmpty());
}
