// The manual key loop against the controller emulator on a fake clock, with fake keys:
// what moves for which keys, the rapid's ramp, the single step, the play on the display,
// the door, Esc, the spindle, the two-frame limit, and what the controller really did.
#include "link/link_world.h"

#include "link/keycontrol.h"
#include "link/spindle.h"
#include "nc/stepcode.h"
#include "platform/eventkeystate.h"
#include "platform/keystate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

#include <gtest/gtest.h>

#include <map>

namespace {

// A jog session: the emulator online, keys that the test holds, and actions at given times
// (ms from the start of the loop). The loop ends at the given time, as Done would end it.
struct Jog {
    LinkWorld w;
    FakeKeyState keys;
    ScopedKeyState scoped{&keys};
    std::multimap<int64_t, std::function<void()>> at;
    int maxOut = 0;
    int loopEnds = 0;

    explicit Jog(int16_t backlashX = 0)
    {
        gintBacklashX = backlashX;
        gsngRapidSpeed = 500.0f;
        ResetStepState();
        ResetKeyControl();
        w.goOnline();
        keyboardHooks().loopEnded = [this] { ++loopEnds; };
    }
    ~Jog() { ResetKeyControl(); }

    void hold(std::initializer_list<int> vks)
    {
        for (int vk : vks)
            keys.Press(vk);
    }
    void run(int64_t ms)
    {
        const int64_t start = w.clock.msecs();
        const int id = w.clock.addListener([this, start, ms](int64_t nowNs) {
            maxOut = std::max<int>(maxOut, gintBuffersOut);
            const int64_t t = nowNs / 1000000 - start;
            while (!at.empty() && at.begin()->first <= t) {
                auto f = at.begin()->second;
                at.erase(at.begin());
                f();
            }
            if (t >= ms)
                gblnKeyLoop = false;
        });
        gblnKeyLoop = true;
        KeyControl();
        w.clock.removeListener(id);
    }
    // `f` runs when the PC hears the door open.
    void onDoorOpen(std::function<void()> f)
    {
        linkHooks().setPanel = [panel = linkHooks().setPanel, f](const QString &k, const QString &t) {
            panel(k, t);
            if (t == QLatin1String("Door Open"))
                f();
        };
    }
    ControllerEmulator &emu() { return w.emu->controller(); }
    // Every run: never more than two frames out, none lost, and the controller made
    // exactly the steps the position counts.
    void expectSound()
    {
        EXPECT_LE(maxOut, 2);
        EXPECT_LE(emu().maxFramesHeld(), 2);
        EXPECT_EQ(emu().overflows(), 0);
        EXPECT_EQ(gintBuffersOut, 0);
        EXPECT_EQ(emu().posX(), glngPosX);
        EXPECT_EQ(emu().posY(), glngPosY);
        EXPECT_EQ(emu().posZ(), glngPosZ);
        EXPECT_EQ(loopEnds, 1);
    }
};

int Sign(int64_t v) { return v > 0 ? 1 : (v < 0 ? -1 : 0); }

} // namespace

// Held for 0.6 s, then let go: which axes went which way, the lamps and the speed shown.
TEST(KeyControl, KeysMoveWhatTheTablesSay)
{
    struct Case {
        const char *name;
        std::vector<int> keys;
        bool rapidUseDot;
        int dir[3];              // the way each axis went (0: it didn't move)
        int exactSteps;          // steps in all when exact (-1: any number)
        const char *speedLabel;  // the speed shown while held ("" hidden)
    } cases[] = {
        {"Right and Left move right", {VK_RIGHT, VK_LEFT, VK_NUMPAD5}, false, {1, 0, 0}, -1, "50"},
        {"Up wins over Down", {VK_UP, VK_DOWN, VK_NUMPAD3}, false, {0, 1, 0}, -1, "30"},
        {"Page Up wins over Page Down", {VK_PRIOR, VK_NEXT, VK_NUMPAD9}, false, {0, 0, 1}, -1, "90"},
        {"diagonal at a speed", {VK_LEFT, VK_DOWN, VK_NUMPAD2}, false, {-1, -1, 0}, -1, "20"},
        {"rapid with Right and Up moves X only", {VK_NUMPAD0, VK_RIGHT, VK_UP}, false, {1, 0, 0}, -1, "500"},
        {"Numpad 0 with 5 is rapid only", {VK_NUMPAD0, VK_NUMPAD5, VK_LEFT}, false, {-1, 0, 0}, -1, "500"},
        {"a speed key alone moves nothing", {VK_NUMPAD5}, false, {0, 0, 0}, 0, ""},
        {"an arrow alone is one single step", {VK_LEFT}, false, {-1, 0, 0}, 1, ""},
        {"Numpad 0 without the dot is neither rapid nor speed", {VK_NUMPAD0, VK_RIGHT}, true, {1, 0, 0}, 1, ""},
        {"Numpad 0 and the dot are rapid", {VK_NUMPAD0, VK_DECIMAL, VK_RIGHT}, true, {1, 0, 0}, -1, "500"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Jog j;
        gblnRapidUseDot = c.rapidUseDot;
        std::array<bool, 6> lamps{};
        QString label;
        j.at.emplace(10, [&] {
            for (int vk : c.keys)
                j.keys.Press(vk);
        });
        j.at.emplace(600, [&] {
            lamps = gKeyboard.imgArrows;
            if (std::count(gKeyboard.lblSpeedVisible.begin(), gKeyboard.lblSpeedVisible.end(), true))
                label = gKeyboard.lblSpeed;
            j.keys.ReleaseAll();
        });
        j.run(1200);
        j.expectSound();
        const int32_t pos[3] = {glngPosX, glngPosY, glngPosZ};
        const int32_t shown[3] = {glngDisplayX, glngDisplayY, glngDisplayZ};
        for (size_t axis = 0; axis < 3; ++axis) {
            EXPECT_EQ(Sign(pos[axis]), c.dir[axis]) << "axis " << axis;
            // The lamps of the directions that moved were on; the speed was shown beside them.
            EXPECT_EQ(lamps[axis * 2], c.dir[axis] > 0) << "axis " << axis;
            EXPECT_EQ(lamps[axis * 2 + 1], c.dir[axis] < 0) << "axis " << axis;
            EXPECT_EQ(gKeyboard.lblPos[axis], strDistanceLabel(shown[axis])) << "axis " << axis;
        }
        if (c.exactSteps >= 0) {
            EXPECT_EQ(std::abs(pos[0]) + std::abs(pos[1]) + std::abs(pos[2]), c.exactSteps);
        }
        EXPECT_EQ(label, QString::fromLatin1(c.speedLabel));
        EXPECT_EQ(gKeyboard.imgArrows, (std::array<bool, 6>{}));   // let go: the lamps off
    }
}

// A rapid let go or turned to another axis first ramps down to rest: 500 / 64 off each step,
// the 64th reaches rest. The arrow still held then makes one single step, alone in its frame;
// the new axis takes off from rest.
TEST(KeyControl, ARapidLetGoOrTurnedRampsDownToRestFirst)
{
    for (bool turn : {false, true}) {
        SCOPED_TRACE(turn ? "turned to Y" : "Numpad 0 let go");
        Jog j;
        j.hold({VK_NUMPAD0, VK_RIGHT});
        int32_t atChange = 0;
        j.at.emplace(1500, [&] {
            EXPECT_EQ(gsngRampSpeed, 500.0f);   // at speed
            atChange = glngPosX;
            j.keys.Release(turn ? VK_RIGHT : VK_NUMPAD0);
            if (turn)
                j.keys.Press(VK_UP);
        });
        j.run(3500);
        j.expectSound();
        EXPECT_EQ(glngPosX - atChange, turn ? 63 : 64);
        if (turn) {
            EXPECT_GT(glngPosY, 0);
        } else {
            EXPECT_EQ(static_cast<uint8_t>(j.w.emu->written().right(4)[0]), 4);
        }
    }
}

// The position shown is the machine's count less the play. After the reset the play lies to
// the positive side: moving left counts at once; back to the right, the display stands still
// for the five steps of a backlash of five.
TEST(KeyControl, TheDisplayLeavesOutThePlayAfterAReversal)
{
    Jog j(5);
    j.hold({VK_LEFT, VK_NUMPAD1});
    int32_t posAtTurn = 0;
    j.at.emplace(400, [&] {
        posAtTurn = glngPosX;
        EXPECT_EQ(glngDisplayX, glngPosX);
        j.keys.ReleaseAll();
        j.hold({VK_RIGHT, VK_NUMPAD1});
    });
    j.at.emplace(800, [&] { j.keys.ReleaseAll(); });
    j.run(1100);
    j.expectSound();
    EXPECT_LT(posAtTurn, 0);
    ASSERT_GT(glngPosX - posAtTurn, 5);
    EXPECT_EQ(glngDisplayX, glngPosX - 5);
    EXPECT_EQ(gKeyboard.lblPos[0], strDistanceLabel(glngDisplayX));
}

// From the moment the PC hears the door open nothing more is sent (a rapid's ramp-down
// neither) until the door is closed and, when the spindle ran, the door message answered;
// then the keys still held move again. Esc stops at once. Either way the machine made every
// step counted, but for those the door cut out of the frames it already held.
TEST(KeyControl, NoMotionFrameOnceTheDoorOpensAndTheCountIsWhatTheMachineMade)
{
    struct Case {
        const char *name;
        std::vector<int> keys;
        bool door;   // else Esc
        bool spindle;
    } cases[] = {
        {"door during a held jog", {VK_RIGHT, VK_NUMPAD9}, true, false},
        {"door during a jog with the spindle running", {VK_RIGHT, VK_NUMPAD5}, true, true},
        {"door during a rapid's ramp", {VK_NUMPAD0, VK_RIGHT}, true, false},
        {"Esc during a jog", {VK_RIGHT, VK_NUMPAD9}, false, false},
        {"Esc during a rapid", {VK_NUMPAD0, VK_RIGHT}, false, false},
    };
    for (const Case &k : cases) {
        SCOPED_TRACE(k.name);
        Jog j;
        if (k.spindle) {
            SpindleStart();
            ASSERT_TRUE(gblnSpindleOn);
        }
        for (int vk : k.keys)
            j.keys.Press(vk);
        qsizetype writtenAtOpen = -1, writtenAtClose = -1;
        j.onDoorOpen([&] {
            if (writtenAtOpen < 0)
                writtenAtOpen = j.w.emu->written().size();
        });
        j.at.emplace(300, [&] {
            if (k.keys[0] == VK_NUMPAD0) {
                EXPECT_LT(gsngRampSpeed, gsngRapidSpeed);   // still ramping up
            }
            if (k.door) {
                j.emu().openDoor();
            } else {
                gblnCancel = true;   // what Esc does on the main window
                gblnKeyLoop = false;
            }
        });
        j.at.emplace(900, [&] {
            writtenAtClose = j.w.emu->written().size();
            j.emu().closeDoor();
        });
        j.run(k.door ? 1200 : 100000);
        EXPECT_EQ(gintBuffersOut, 0);
        EXPECT_EQ(j.emu().posX() + j.emu().droppedSteps(), glngPosX);
        ASSERT_EQ(j.w.boxes.shown().size(), k.spindle ? 1u : 0u);
        if (k.spindle) {
            EXPECT_EQ(j.w.boxes.last().text, QStringLiteral("The spindle has been stopped because the door was opened"));
            EXPECT_EQ(j.w.boxes.last().title, QStringLiteral("Door Status"));
            EXPECT_FALSE(gblnSpindleOn);
        }
        if (k.door) {
            ASSERT_GE(writtenAtOpen, 0);
            EXPECT_EQ(writtenAtClose, writtenAtOpen);
            EXPECT_GT(j.w.emu->written().size(), writtenAtClose);
        } else {
            EXPECT_EQ(j.emu().droppedSteps(), 0);
            EXPECT_GT(glngPosX, 0);
        }
    }
}

TEST(KeyControl, SpindleRequestsAreServedWithTheLineQuiet)
{
    Jog j;
    j.hold({VK_RIGHT, VK_NUMPAD9});
    j.at.emplace(200, [&] { gblnSpindleStartReq = true; });
    // At 90 mm/min a frame of 10 steps runs 93 ms: the start waits for both frames out.
    j.at.emplace(700, [&] { gblnSpindleStopReq = true; });
    bool onAt600 = false;
    int32_t xAt600 = 0;
    j.at.emplace(600, [&] {
        onAt600 = j.emu().spindleOn();
        xAt600 = glngPosX;
    });
    j.at.emplace(1000, [&] { j.keys.ReleaseAll(); });
    j.run(1200);
    j.expectSound();
    EXPECT_TRUE(onAt600);
    EXPECT_GT(glngPosX, xAt600);   // the jog goes on after the start
    EXPECT_FALSE(j.emu().spindleOn());
    EXPECT_FALSE(gblnSpindleStartReq || gblnSpindleStopReq);
}

// The program's own key state: a key held while the program loses the focus is released at
// the other window, which the program never hears. The deactivation clears it.
TEST(KeyControl, AKeyReleasedWhileTheWindowIsInactiveStopsTheMotion)
{
    Jog j;
    EventKeyState real(false, KeymapReader(), nullptr);
    ScopedKeyState scoped(&real);
    QWidget window;
    j.at.emplace(10, [&] {
        QKeyEvent right(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier, 114, 0, 0);
        QKeyEvent five(QEvent::KeyPress, Qt::Key_5, Qt::KeypadModifier, 84, 0, 0);
        QCoreApplication::sendEvent(&window, &right);
        QCoreApplication::sendEvent(&window, &five);
    });
    bool movingBefore = false;
    j.at.emplace(300, [&] {
        movingBefore = gKeyboard.imgArrows[0] && KeyIsDown(VK_RIGHT);
        QApplicationStateChangeEvent e(Qt::ApplicationInactive);
        QCoreApplication::sendEvent(qApp, &e);
    });
    int32_t settled = 0;
    j.at.emplace(400, [&] { settled = glngPosX; });
    j.run(1000);
    j.expectSound();
    EXPECT_TRUE(movingBefore);
    EXPECT_FALSE(KeyIsDown(VK_RIGHT));
    EXPECT_GT(settled, 0);
    EXPECT_EQ(glngPosX, settled);
    EXPECT_FALSE(gKeyboard.imgArrows[0]);
}
