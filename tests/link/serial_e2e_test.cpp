// End to end through the real QSerialPort: the link talks to the emulator program on a
// pseudo-terminal, on the real clock.
#include "link/emulator_process.h"
#include "link/spindle.h"

#include <gtest/gtest.h>

TEST(SerialEndToEnd, StreamSpindleAndDoorThroughAPseudoTerminal)
{
    EmulatorProcess emu;
    ASSERT_FALSE(emu.path.isEmpty());
    LinkWorld w;
    RealLine real(w, emu.path, true);
    w.goOnline();
    ASSERT_TRUE(w.skullTexts.isEmpty()) << w.skullTexts.join(u'|').toStdString();
    EXPECT_EQ(w.panel[QStringLiteral("door")], QStringLiteral("Door Closed"));
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
    EXPECT_TRUE(w.skullTexts.isEmpty());
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
        LinkWorld w;
        RealLine real(w, device, device != emu.path);
        EXPECT_THROW(w.goOnline(), ShutdownCalled);
        ASSERT_EQ(w.skullTexts.size(), 1);
        EXPECT_TRUE(w.skullTexts[0].startsWith(QString::fromLatin1(text))) << w.skullTexts[0].toStdString();
    }
}
