// A short road through the real QSerialPort: the wizard and a run against the emulator
// program on a pseudo-terminal, on the real clock. No jogging: every origin is set where
// the machine stands.
#include "guide/wizard_world.h"

#include "link/emulator_process.h"
#include "platform/qt_serial_port.h"

#include <gtest/gtest.h>

namespace {

const QByteArray kShort = "%\r\n* short\r\nN10 T1\r\nN20 S1000\r\nN30 G0 X1 Y1 Z1\r\nN40 G1 Z-0.2 F200\r\n"
                          "N50 G2 X2 Y2 I1 J0 F300\r\nN60 G0 Z1\r\nN70 T2\r\nN80 S1500\r\nN90 G1 X1 Y1 F300\r\n";

} // namespace

TEST(WizardSerial, AShortRoadThroughAPseudoTerminal)
{
    EmulatorProcess emu;
    ASSERT_FALSE(emu.path.isEmpty());
    WizardWorld w;
    SetClock(nullptr);
    SetSerialPortOverride([&emu](int16_t n) -> std::unique_ptr<SerialPort> {
        return std::make_unique<QtSerialLine>(SerialDevice{n, emu.path, false, true});
    });
    w.setUp();
    w.goOnline();
    ASSERT_TRUE(w.skullTexts.isEmpty()) << w.skullTexts.join(u'|').toStdString();
    w.toMill(kShort);
    w.nav(3);   // the file
    w.nav(3);   // the offsets, the analysis
    for (int step = 3; step <= 7; ++step) {
        w.nav(3);
        w.task();
    }
    ASSERT_EQ(gintSetStep, 7);
    w.nav(4);
    w.runStarted();
    EXPECT_EQ(gintMode, 8);
    EXPECT_TRUE(w.skullTexts.isEmpty());
    // The machine ends where the PC counts it, the X origin half the 6 mm cutter outside the
    // edge where it stood; never more than two frames out.
    EXPECT_EQ(emu.status("pos"), glngPosX + 216);
    EXPECT_LE(emu.status("maxheld"), 2);
    EXPECT_LE(w.maxOut, 2);
}
