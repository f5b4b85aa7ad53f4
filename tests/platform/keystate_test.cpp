// The key read: matching releases to presses, auto-repeat, deactivation, the keypad.
#include "platform/eventkeystate.h"
#include "platform/keystate.h"

#include <QKeyEvent>
#include <QThread>
#include <QWidget>
#include <QApplication>

#include <gtest/gtest.h>

#include <memory>
#include <set>

namespace {

// X11 key codes (evdev + 8) of the keys used below.
constexpr quint32 kScan8 = 17, kScanShift = 50, kScanRight = 114, kScanUp = 111, kScanEnter = 36;
constexpr quint32 kScanKp8 = 80, kScanKp0 = 90, kScanKpDot = 91;

class KeyEvents : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_window = std::make_unique<QWidget>();
        m_child = new QWidget(m_window.get());   // ignores keys: they travel on to the window
        m_keys = std::make_unique<EventKeyState>(true, KeymapReader(), nullptr);
        SetKeyState(m_keys.get());
    }
    void TearDown() override
    {
        m_keys.reset();
        m_window.reset();
    }
    // A key event as X11 delivers it, to the child (the filter sees it twice on its way up).
    void Send(QEvent::Type type, int qtKey, Qt::KeyboardModifiers mods, quint32 scan, bool autoRepeat = false,
              QWidget *to = nullptr)
    {
        QKeyEvent e(type, qtKey, mods, scan, 0, 0, QString(), autoRepeat);
        QCoreApplication::sendEvent(to ? to : m_child, &e);
    }
    void Press(int qtKey, quint32 scan, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        Send(QEvent::KeyPress, qtKey, mods, scan);
    }
    void Release(int qtKey, quint32 scan, Qt::KeyboardModifiers mods = Qt::NoModifier)
    {
        Send(QEvent::KeyRelease, qtKey, mods, scan);
    }
    void ApplicationState(Qt::ApplicationState state)
    {
        QApplicationStateChangeEvent e(state);
        QCoreApplication::sendEvent(qApp, &e);
    }

    std::unique_ptr<QWidget> m_window;
    QWidget *m_child = nullptr;
    std::unique_ptr<EventKeyState> m_keys;
};

} // namespace

TEST(KeyMapping, KeypadKeysAreDigitsWhateverTheNumLockAndNeverDirections)
{
    // One row per keypad key: what it sends with NumLock on, with NumLock off, its X11 code.
    struct Row { int numLockOn; int numLockOff; quint32 scan; int vk; };
    const Row rows[] = {
        {Qt::Key_0, Qt::Key_Insert, 90, VK_NUMPAD0},   {Qt::Key_1, Qt::Key_End, 87, VK_NUMPAD1},
        {Qt::Key_2, Qt::Key_Down, 88, VK_NUMPAD2},     {Qt::Key_3, Qt::Key_PageDown, 89, VK_NUMPAD3},
        {Qt::Key_4, Qt::Key_Left, 83, VK_NUMPAD4},     {Qt::Key_5, Qt::Key_Clear, 84, VK_NUMPAD5},
        {Qt::Key_6, Qt::Key_Right, 85, VK_NUMPAD6},    {Qt::Key_7, Qt::Key_Home, 79, VK_NUMPAD7},
        {Qt::Key_8, Qt::Key_Up, 80, VK_NUMPAD8},       {Qt::Key_9, Qt::Key_PageUp, 81, VK_NUMPAD9},
        {Qt::Key_Period, Qt::Key_Delete, 91, VK_DECIMAL}, {Qt::Key_Comma, Qt::Key_Delete, 91, VK_DECIMAL},
        {Qt::Key_Enter, Qt::Key_Enter, 104, VK_RETURN},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(r.vk);
        for (bool evdev : {true, false}) {
            for (quint32 scan : {r.scan, quint32{0}}) {
                EXPECT_EQ(intVirtualKey(r.numLockOn, Qt::KeypadModifier, scan, evdev), r.vk);
                EXPECT_EQ(intVirtualKey(r.numLockOff, Qt::KeypadModifier, scan, evdev), r.vk);
                EXPECT_EQ(intVirtualKey(r.numLockOff, Qt::KeypadModifier | Qt::ShiftModifier, scan, evdev), r.vk);
            }
        }
        // On X11 the scan code alone is enough, even without the keypad mark.
        EXPECT_EQ(intVirtualKey(r.numLockOff, Qt::NoModifier, r.scan, true), r.vk);
    }
}

TEST(KeyMapping, MainKeys)
{
    struct Row { int qtKey; quint32 scan; bool evdev; int vk; };
    const Row rows[] = {
        {Qt::Key_Right, 114, true, VK_RIGHT},   {Qt::Key_Left, 113, true, VK_LEFT},
        {Qt::Key_PageUp, 112, true, VK_PRIOR},  {Qt::Key_PageDown, 117, true, VK_NEXT},
        {Qt::Key_Space, 65, true, VK_SPACE},    {Qt::Key_Escape, 9, true, VK_ESCAPE},
        {Qt::Key_A, 38, true, 0x41},            {Qt::Key_Asterisk, 17, true, 0},   // unknown: not kept
        // Elsewhere the scan codes mean other keys (80 is Down in the PC's own set): not used.
        {Qt::Key_Down, 80, false, VK_DOWN},     {Qt::Key_Up, 0, false, VK_UP},
    };
    for (const Row &r : rows)
        EXPECT_EQ(intVirtualKey(r.qtKey, Qt::NoModifier, r.scan, r.evdev), r.vk) << r.qtKey;
}

TEST_F(KeyEvents, ReleaseIsMatchedByThePhysicalKeyWhateverTheModifiers)
{
    Press(Qt::Key_8, kScan8);
    Press(Qt::Key_Shift, kScanShift, Qt::ShiftModifier);
    Release(Qt::Key_Asterisk, kScan8, Qt::ShiftModifier);   // the same key comes up as '*'
    EXPECT_FALSE(KeyIsDown(0x38));
    EXPECT_TRUE(KeyIsDown(VK_SHIFT));
    Release(Qt::Key_Shift, kScanShift);

    // The keypad with NumLock on: 8 goes down as a digit, comes up under Shift as "Up".
    Press(Qt::Key_8, kScanKp8, Qt::KeypadModifier);
    Press(Qt::Key_Shift, kScanShift, Qt::ShiftModifier);
    Release(Qt::Key_Up, kScanKp8, Qt::KeypadModifier | Qt::ShiftModifier);
    Release(Qt::Key_Shift, kScanShift);
    EXPECT_EQ(m_keys->intKeysHeld(), 0);

    // Keypad 4 with NumLock off is never Left (no jog); NumLock switched on while it is held:
    // it comes up as the digit.
    Press(Qt::Key_Left, 83, Qt::KeypadModifier);
    EXPECT_FALSE(KeyIsDown(VK_LEFT));
    EXPECT_TRUE(KeyIsDown(VK_NUMPAD4));
    Release(Qt::Key_4, 83, Qt::KeypadModifier);
    EXPECT_EQ(m_keys->intKeysHeld(), 0);

    // The same without scan codes (not X11): the keypad mark alone matches them.
    Press(Qt::Key_8, 0, Qt::KeypadModifier);
    EXPECT_TRUE(KeyIsDown(VK_NUMPAD8));
    Release(Qt::Key_Up, 0, Qt::KeypadModifier | Qt::ShiftModifier);
    EXPECT_EQ(m_keys->intKeysHeld(), 0);
}

TEST_F(KeyEvents, AutoRepeatIsIgnoredAndEventsSeenTwiceCountOnce)
{
    Press(Qt::Key_Right, kScanRight);
    // Auto-repeat as release/press pairs and as lone presses: the key stays down.
    for (int i = 0; i < 3; ++i) {
        Send(QEvent::KeyRelease, Qt::Key_Right, Qt::NoModifier, kScanRight, true);
        EXPECT_TRUE(KeyIsDown(VK_RIGHT));
        Send(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier, kScanRight, true);
    }
    // The press travelled through child and window (seen twice); the release reaches the
    // window only (seen once). One release is enough.
    Send(QEvent::KeyRelease, Qt::Key_Right, Qt::NoModifier, kScanRight, false, m_window.get());
    EXPECT_FALSE(KeyIsDown(VK_RIGHT));
    // A repeat of a key that was never seen going down doesn't press it.
    Send(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier, kScanUp, true);
    EXPECT_FALSE(KeyIsDown(VK_UP));
}

TEST_F(KeyEvents, DeactivationReleasesEveryKey)
{
    Press(Qt::Key_Right, kScanRight);
    Press(Qt::Key_0, kScanKp0, Qt::KeypadModifier);
    Press(Qt::Key_Period, kScanKpDot, Qt::KeypadModifier);
    EXPECT_TRUE(KeyIsDown(VK_DECIMAL));
    ApplicationState(Qt::ApplicationInactive);
    // Right is let go in the other window: the release never comes.
    EXPECT_EQ(m_keys->intKeysHeld(), 0);
    ApplicationState(Qt::ApplicationActive);
    // Still physically held: its repeats arrive, but only a new press counts.
    Send(QEvent::KeyPress, Qt::Key_Right, Qt::NoModifier, kScanRight, true);
    EXPECT_FALSE(KeyIsDown(VK_RIGHT));
    // A stray release after the return does no harm; a new press counts again.
    Release(Qt::Key_Enter, kScanEnter);
    Press(Qt::Key_Right, kScanRight);
    EXPECT_TRUE(KeyIsDown(VK_RIGHT));
    // The older deactivation event does the same.
    QEvent deactivate(QEvent::ApplicationDeactivate);
    QCoreApplication::sendEvent(qApp, &deactivate);
    EXPECT_FALSE(KeyIsDown(VK_RIGHT));
}

TEST(KeyStateAccess, NoneInstalledOrDestroyedMeansEveryKeyUp)
{
    SetKeyState(nullptr);
    EXPECT_FALSE(KeyIsDown(VK_RETURN));
    {
        EventKeyState keys(true, KeymapReader(), nullptr);
        SetKeyState(&keys);
        QKeyEvent e(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, 65, 0, 0);
        QCoreApplication::sendEvent(qApp, &e);
        EXPECT_TRUE(KeyIsDown(VK_SPACE));
    }
    EXPECT_FALSE(KeyIsDown(VK_SPACE));
}

TEST(KeyStateAccess, WaitEnterSpaceUpReturnsOnceBothAreUp)
{
    FakeKeyState fake;
    ScopedKeyState scoped(&fake);
    WaitEnterSpaceUp();   // nothing held: at once
    fake.Press(VK_RETURN);
    fake.Press(VK_SPACE);
    int looks = 0;
    fake.onQuery = [&](int vk) {
        ++looks;
        if (looks == 5)
            fake.Release(VK_RETURN);
        if (looks >= 9 && vk == VK_SPACE)
            fake.Release(VK_SPACE);
    };
    WaitEnterSpaceUp();
    EXPECT_FALSE(KeyIsDown(VK_RETURN));
    EXPECT_FALSE(KeyIsDown(VK_SPACE));
    EXPECT_GE(looks, 9);
}

namespace {

// The key state with a stand-in for the X server's keyboard state.
class ServerKeyEvents : public KeyEvents {
protected:
    void SetUp() override
    {
        KeyEvents::SetUp();
        m_keys = std::make_unique<EventKeyState>(
            true,
            [this](std::array<uint8_t, 32> &keys) {
                ++m_reads;
                if (!m_serverAnswers)
                    return false;
                keys.fill(0);
                for (quint32 code : m_serverDown)
                    keys[code / 8] |= static_cast<uint8_t>(1u << (code % 8));
                return true;
            },
            nullptr);
        SetKeyState(m_keys.get());
    }
    // Past the time a reading of the server may be reused.
    static void Later() { QThread::msleep(3); }

    std::set<quint32> m_serverDown;
    bool m_serverAnswers = true;
    int m_reads = 0;
};

} // namespace

TEST_F(ServerKeyEvents, AReleaseThatNeverArrivedIsCaughtByTheServer)
{
    m_serverDown = {kScanRight};
    Press(Qt::Key_Right, kScanRight);
    EXPECT_TRUE(KeyIsDown(VK_RIGHT));
    // Released while a modal window was coming up: no event, but the server knows.
    m_serverDown.clear();
    Later();
    EXPECT_FALSE(KeyIsDown(VK_RIGHT));
    EXPECT_EQ(m_keys->intKeysHeld(), 0);
}

TEST_F(ServerKeyEvents, AnUnmarkedAutoRepeatPairKeepsTheKeyDown)
{
    m_serverDown = {kScanRight};
    Press(Qt::Key_Right, kScanRight);
    for (int i = 0; i < 3; ++i) {
        Release(Qt::Key_Right, kScanRight);   // not marked as a repeat, key still down
        EXPECT_TRUE(KeyIsDown(VK_RIGHT));
        Press(Qt::Key_Right, kScanRight);
    }
    m_serverDown.clear();
    Release(Qt::Key_Right, kScanRight);
    EXPECT_FALSE(KeyIsDown(VK_RIGHT));
}

TEST_F(ServerKeyEvents, TheServerNeverMakesAKeyDownByItself)
{
    m_serverDown = {kScanUp, kScanEnter};
    EXPECT_FALSE(KeyIsDown(VK_UP));
    EXPECT_FALSE(KeyIsDown(VK_RETURN));
    EXPECT_EQ(m_reads, 0);   // no key held by the events: nothing to ask
    // A server that doesn't answer leaves the events in charge.
    m_serverAnswers = false;
    Press(Qt::Key_Up, kScanUp);
    m_serverDown.clear();
    EXPECT_TRUE(KeyIsDown(VK_UP));
    Release(Qt::Key_Up, kScanUp);
    EXPECT_FALSE(KeyIsDown(VK_UP));
}

TEST(KeyStateAccess, TheProgramsKeyStateHearsTheApplication)
{
    InstallEventKeyState();
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, 0, 0, 0);
    QCoreApplication::sendEvent(qApp, &press);
    EXPECT_TRUE(KeyIsDown(VK_ESCAPE));
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_Escape, Qt::NoModifier, 0, 0, 0);
    QCoreApplication::sendEvent(qApp, &release);
    EXPECT_FALSE(KeyIsDown(VK_ESCAPE));
    SetKeyState(nullptr);
}
