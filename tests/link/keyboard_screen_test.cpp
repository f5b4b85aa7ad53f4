// The manual screen in the main window: ShowKeyboard, the loop started by frmSplash's timer,
// Done, the spindle controls, the reset buttons. (A task's way back is the wizards' tests'.)
#include "core/ui_fixture.h"

#include "core/frm_splash.h"
#include "link/keyboard_panel.h"
#include "link/keycontrol.h"
#include "link/link_screen.h"
#include "platform/clock.h"
#include "platform/keystate.h"

#include <QAction>
#include <QGroupBox>
#include <QPushButton>

namespace {

class ManualScreen : public UiTest {
protected:
    void SetUp() override
    {
        UiTest::SetUp();
        ResetKeyControl();
        gSpindleControls = SpindleControls();
        f = frmMain();
        f->tmrShowMenu->stop();   // its tick would bring the menu back over the screen under test
        SetMode(1);
    }
    void TearDown() override
    {
        frmSplash()->tmrKeyControl->stop();
        SetPumpHook({});
        SetClock(nullptr);
        UiTest::TearDown();
        ResetKeyControl();
    }
    FrmMain *f = nullptr;
    FakeKeyState keys;
    ScopedKeyState scoped{&keys};
};

// Offline, on a fake clock that moves 1 ms a turn of the message loop (the loop paces its
// frames by the clock: the same rounds on any machine).
TEST_F(ManualScreen, FreeControlFromTheMenuJogsShowsAndEndsOnDone)
{
    glngPosX = 72;
    // A spindle request left from another screen ("Start Spindle" in the Mill menu while
    // machining) is forgotten: the manual screen must not start the spindle unasked.
    gblnSpindleStartReq = gblnSpindleStopReq = true;
    f->MenuAction(QStringLiteral("Keyboard"));
    EXPECT_FALSE(gblnSpindleStartReq || gblnSpindleStopReq);
    PicKeyboard *k = f->picKeyboard;
    EXPECT_EQ(gintMode, 2);
    EXPECT_TRUE(k->fraTask->isHidden());   // free control: no task
    EXPECT_TRUE(frmSplash()->tmrKeyControl->isActive());
    EXPECT_EQ(k->lblPos[0]->text(), QStringLiteral("1.00"));
    EXPECT_FALSE(f->mnuMStop->isEnabled());

    bool lit = false, spindleShown = false;
    QString speed;
    int n = 0;
    FakeClock clock;
    SetClock(&clock);
    SetPumpHook([&] {
        ++n;
        clock.advanceMs(1);
        if (n == 5)
            gblnSpindleStartReq = true;
        if (n == 20) {
            spindleShown = !k->picSpindleStart->isEnabled() && f->mnuMStop->isEnabled();
            keys.Press(VK_RIGHT);
            keys.Press(VK_NUMPAD7);
        }
        if (n == 320) {
            lit = !k->imgArrows[0]->isHidden() && k->imgArrows[1]->isHidden();
            speed = k->lblSpeed[0]->isHidden() ? QString() : k->lblSpeed[0]->text();
            keys.ReleaseAll();
        }
        // Done once the keys are up, the line is quiet and the final position is on screen.
        if (n > 320 && gintBuffersOut == 0 && glngDisplayX != 72 &&
            k->lblPos[0]->text() == strDistanceLabel(glngDisplayX))
            k->cmdDone->click();
        if (n == 20000)
            k->cmdDone->click();   // never reached unless the loop misbehaves
    });
    frmSplash()->tmrKeyControl_Timer();   // the tick, without waiting for it
    EXPECT_LT(n, 20000);
    EXPECT_FALSE(gblnKeyLoop);
    EXPECT_TRUE(spindleShown);
    EXPECT_TRUE(lit);
    EXPECT_EQ(speed, QStringLiteral("70"));
    // 70 mm/min for 0.3 s is 25 steps, and a frame goes ahead: offline the count goes at the
    // machine's pace.
    EXPECT_GE(glngPosX - 72, 20);
    EXPECT_LE(glngPosX - 72, 40);
    EXPECT_EQ(gintBuffersOut, 0);
    EXPECT_EQ(k->lblPos[0]->text(), strDistanceLabel(glngDisplayX));
    // The spindle stops with the loop; free control ends on the wizard's step 10, which
    // tells the operator to turn the spindle switch to 0.
    EXPECT_FALSE(gblnSpindleOn);
    EXPECT_TRUE(k->picSpindleStart->isEnabled());
    EXPECT_EQ(gintMode, 3);
    EXPECT_EQ(gintSetStep, 10);
}

// A task that needs no spindle leaves no way to start it.
// The keypad drawn shows whether the rapid needs the dot.
TEST_F(ManualScreen, WithoutSpindleTheControlsAreHiddenAndTheMenuEntriesOff)
{
    gblnRapidUseDot = !gblnRapidUseDot;
    ShowKeyboard(false);
    PicKeyboard *k = f->picKeyboard;
    EXPECT_TRUE(k->picStartText->isHidden() && k->picSpindleStart->isHidden() && k->picSpindleStop->isHidden());
    EXPECT_FALSE(f->mnuMStart->isEnabled() || f->mnuMStop->isEnabled());
    const QImage dot = ilsKeypad(QStringLiteral("NumpadDot")).toImage();
    EXPECT_NE(dot, ilsKeypad(QStringLiteral("Numpad")).toImage());
    EXPECT_EQ(k->imgKeybd->pixmap().toImage() == dot, gblnRapidUseDot);
}

// Done clicked with Enter waits for Enter to come up, lest the next screen take it.
TEST_F(ManualScreen, DoneWaitsForEnterToComeUpAndTheResetButtonsZeroTheDisplayOnly)
{
    ShowKeyboard(true);
    frmSplash()->tmrKeyControl->stop();   // no loop under the wait
    PicKeyboard *k = f->picKeyboard;
    keys.Press(VK_RETURN);
    int looks = 0;
    keys.onQuery = [&](int vk) {
        if (vk == VK_RETURN && ++looks == 3)
            keys.Release(VK_RETURN);
    };
    gblnKeyLoop = true;
    k->cmdDone_Click();
    EXPECT_GE(looks, 3);
    EXPECT_FALSE(gblnKeyLoop);
    keys.onQuery = nullptr;
    glngPosZ = 720;
    DistanceSet(1, -36);
    DistanceSet(2, 720);
    k->cmdReset[2]->click();
    EXPECT_EQ(k->lblPos[2]->text(), QStringLiteral("0.00"));
    EXPECT_EQ(k->lblPos[1]->text(), QStringLiteral("-0.50"));
    k->cmdReset[3]->click();   // all
    EXPECT_EQ(k->lblPos[1]->text(), QStringLiteral("0.00"));
    EXPECT_EQ(glngDisplayY, 0);
    EXPECT_EQ(glngPosZ, 720);   // the machine's count is not the display
}

} // namespace
