// The emulator program is killed, as a USB adapter is pulled, during a run, a jog and while
// idle, on the real line. The link must raise the hardware alarm once, not spin on the dead
// device, keep the position it counted from what it sent, and take "Work Offline".
#include "guide/stream_world.h"
#include "link/emulator_process.h"
#include "link/keycontrol.h"
#include "link/stream.h"
#include "platform/keystate.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <array>

#include <gtest/gtest.h>

namespace {

// Steps on X, Y, Z in a run of frames (spindle records have a low bit set).
std::array<int64_t, 3> StepsIn(const QByteArray &frames)
{
    std::array<int64_t, 3> net{0, 0, 0};
    for (qsizetype at = 0; at < frames.size(); at += static_cast<uint8_t>(frames[at])) {
        for (qsizetype r = at + 1; r + 2 < at + static_cast<uint8_t>(frames[at]) && r + 2 < frames.size(); r += 3) {
            const uint8_t cmd = static_cast<uint8_t>(frames[r]);
            for (size_t axis = 0; axis < 3 && (cmd & 3) == 0; ++axis)
                if (cmd & (4 << axis))
                    net[axis] += (cmd & (32 << axis)) ? 1 : -1;
        }
    }
    return net;
}

// A link world whose COM1 is the emulator program; the alarm records the position and what
// had been sent.
struct PulledLine {
    EmulatorProcess emu;
    std::array<int64_t, 3> posAtAlarm{}, sentAtAlarm{};
    RealLine real;

    explicit PulledLine(LinkWorld &w)
        : real(w, emu.path, true, [this] {
              posAtAlarm = {glngPosX, glngPosY, glngPosZ};
              sentAtAlarm = StepsIn(real.line->sent);
          })
    {
        EXPECT_FALSE(emu.path.isEmpty()) << "no emulator program";
    }
    // What every pulled line must show afterwards.
    void expectAlarmOnceAndOffline(const LinkWorld &w)
    {
        ASSERT_EQ(w.skullTexts.size(), 1) << w.skullTexts.join(u'|').toStdString();
        EXPECT_TRUE(w.skullTexts[0].startsWith(QStringLiteral("There is a problem with the hardware.")));
        EXPECT_FALSE(gblnOnline);
        EXPECT_TRUE(real.line->deviceLost());
        // The dead descriptor was closed at the first error: no flood of them.
        EXPECT_LE(real.line->errorsSeen(), 5);
        // The count is that of the steps handed to the line, nothing lost, nothing reset.
        EXPECT_EQ(posAtAlarm, sentAtAlarm);
    }
};

} // namespace

TEST(PulledAdapter, DuringARunTheAlarmComesOnceAndTheRunGoesOnOfflineWithItsCount)
{
    // The whole program's count, rehearsed offline first.
    std::array<int64_t, 3> whole{};
    {
        StreamWorld ref;
        ref.setUp();
        ASSERT_TRUE(ref.compile(kTwoToolProgram));
        gblnOnline = false;
        gintCurrentTool = gintNextTool = 0;
        ref.run();
        whole = {glngPosX, glngPosY, glngPosZ};
        UnloadForms();
    }
    StreamWorld w;
    w.setUp();
    ASSERT_TRUE(w.compile(kTwoToolProgram));
    PulledLine pulled(w);
    w.goOnline();
    ASSERT_TRUE(w.skullTexts.isEmpty());
    gintCurrentTool = gintNextTool = 0;
    glngPosX = glngPosY = glngPosZ = 0;
    bool killed = false;
    w.onPump = [&] {
        if (!killed && glngRunCommand >= 6) {   // cutting N60, with frames out
            killed = true;
            pulled.emu.kill();
        }
    };
    w.run();
    EXPECT_TRUE(killed);
    pulled.expectAlarmOnceAndOffline(w);
    // The rest went on offline: the whole program is counted, once.
    EXPECT_EQ((std::array<int64_t, 3>{glngPosX, glngPosY, glngPosZ}), whole);
    EXPECT_EQ(gintBuffersOut, 0);
    UnloadForms();
}

TEST(PulledAdapter, DuringAJogTheAlarmComesOnceAndTheKeysGoOnOffline)
{
    LinkWorld w;
    FakeKeyState keys;
    ScopedKeyState scoped(&keys);
    gsngRapidSpeed = 500.0f;
    ResetKeyControl();
    PulledLine pulled(w);
    w.goOnline();
    ASSERT_TRUE(w.skullTexts.isEmpty());
    keys.Press(VK_RIGHT);
    keys.Press(VK_NUMPAD9);   // 90 mm/min: 108 steps a second
    QTimer::singleShot(400, [&] { pulled.emu.kill(); });
    QTimer::singleShot(1000, [&] { keys.ReleaseAll(); });
    QTimer::singleShot(1300, [] { gblnKeyLoop = false; });
    gblnKeyLoop = true;
    KeyControl();
    pulled.expectAlarmOnceAndOffline(w);
    EXPECT_GT(pulled.posAtAlarm[0], 5);
    // The keys held on after the alarm moved on from the count, offline.
    EXPECT_GT(glngPosX, pulled.posAtAlarm[0]);
    EXPECT_EQ(gintBuffersOut, 0);
    ResetKeyControl();
}

TEST(PulledAdapter, WhileIdleTheLineGoesQuietAndTheWatchdogRaisesTheAlarm)
{
    LinkWorld w;
    PulledLine pulled(w);
    w.goOnline();
    pulled.emu.kill();
    // Nothing is out: only the event loop turns, as the program waits for the operator.
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < 300)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    EXPECT_TRUE(w.skullTexts.isEmpty());
    // The watchdog's next tick finds no controller: the alarm, and offline as ticked.
    tmrOnline_Timer();
    pulled.expectAlarmOnceAndOffline(w);
}
