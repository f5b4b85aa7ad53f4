// A short road through the real QSerialPort: the wizard and a run against the emulator
// program on a pseudo-terminal, on the real clock. No jogging: every origin is set where
// the machine stands.
#include "guide/wizard_world.h"

#include "link/comms.h"
#include "platform/clock.h"
#include "platform/qt_serial_port.h"
#include "tools/tooltable.h"

#include <QElapsedTimer>
#include <QProcess>

#include <gtest/gtest.h>

namespace {

const QByteArray kShort = "%\r\n* short\r\nN10 T1\r\nN20 S1000\r\nN30 G0 X1 Y1 Z1\r\nN40 G1 Z-0.2 F200\r\n"
                          "N50 G2 X2 Y2 I1 J0 F300\r\nN60 G0 Z1\r\nN70 T2\r\nN80 S1500\r\nN90 G1 X1 Y1 F300\r\n";

// "pos X Y Z ..." of the emulator program's status line.
std::array<long long, 3> EmulatorPosition(QProcess &p)
{
    p.write("status\n");
    QByteArray line;
    QElapsedTimer t;
    t.start();
    while (!line.endsWith('\n') && t.elapsed() < 5000) {
        p.waitForReadyRead(100);
        line += p.readLine();
    }
    const QList<QByteArray> w = line.trimmed().split(' ');
    if (w.size() < 4 || w[0] != "pos")
        return {-1, -1, -1};
    return {w[1].toLongLong(), w[2].toLongLong(), w[3].toLongLong()};
}

} // namespace

TEST(WizardSerial, AShortRoadThroughAPseudoTerminal)
{
    QProcess emulator;
    emulator.setProgram(QStringLiteral(BRANTOK_BINARY_DIR "/brantok-emulator"));
    emulator.start();
    ASSERT_TRUE(emulator.waitForStarted(5000) && emulator.waitForReadyRead(5000));
    const QByteArray device = emulator.readLine().trimmed();
    {
        WizardWorld w;
        SetClock(nullptr);
        SetSerialPortOverride({});
        qputenv("BRANTOK_COM1", device);
        qputenv("BRANTOK_ASSUME_DSR", "1");
        InstallSerialDevices();
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
        // Origins at the start position: X and Y half the 6 mm cutter outside, Z at the top.
        const auto pos = EmulatorPosition(emulator);
        EXPECT_EQ(pos[0], glngPosX + 216);
        EXPECT_EQ(pos[1], glngPosY + 216);
        EXPECT_EQ(pos[2], glngPosZ);
        EXPECT_LE(w.maxOut, 2);
    }
    SetSerialDeviceFactory({});
    qunsetenv("BRANTOK_COM1");
    qunsetenv("BRANTOK_ASSUME_DSR");
    emulator.write("quit\n");
    if (!emulator.waitForFinished(3000))
        emulator.kill();
}
