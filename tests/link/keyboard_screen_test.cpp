// The manual screen in the main window: ShowKeyboard, the loop started by frmSplash's timer,
// Done, the spindle controls, and the way back.
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
        SetPumpHook({});
        SetClock(nullptr);
        UiTest::TearDown();
        ResetKeyControl();
    }
    FrmMain *f = nullptr;
    FakeKeyState keys;
    ScopedKeyState scoped{&keys};
};

TEST_F(ManualScreen, FreeControlFromTheMenuJogsShowsAndEndsOnDone)
{
    gsngRapidSpeed = 500.0f;
    glngPosX = 72;
    f->MenuAction(QStringLiteral("Keyboard"));
    PicKeyboard *k = f->picKeyboard;
    EXPECT_EQ(gintMode, 2);
    EXPECT_TRUE(k->fraTask->isHidden());   // free control: no task
    EXPECT_TRUE(frmSplash()->tmrKeyControl->isActive());
    EXPECT_EQ(k->lblPos[0]->text(), QStringLiteral("1.00"));
    EXPECT_FALSE(f->mnuMStop->isEnabled());

    bool lit = false, spindleShown = false;
    QString speed;
    int n = 0;
    // Offline the loop paces its frames by the clock: a fake one keeps the rounds machine-independent.
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
        if (n == 200) {
            lit = !k->imgArrows[0]->isHidden() && k->imgArrows[1]->isHidden();
            speed = k->lblSpeed[0]->isHidden() ? QString() : k->lblSpeed[0]->text();
            keys.ReleaseAll();
        }
        // Done once the keys are up, the line is quiet and the final position is on screen.
        if (n > 200 && gintBuffersOut == 0 && glngDisplayX != 72 &&
            k->lblPos[0]->text() == strDistanceLabel(glngDisplayX))
            k->cmdDone->click();
        if (n == 20000)
            k->cmdDone->click();   // never reached unless the loop misbehaves
    });
    frmSplash()->tmrKeyControl_Timer();   // the tick, without waiting for it
    SetPumpHook({});
    SetClock(nullptr);
    EXPECT_LT(n, 20000);
    EXPECT_FALSE(gblnKeyLoop);
    EXPECT_EQ(k->cmdDoneTag, QStringLiteral("Done"));
    EXPECT_TRUE(spindleShown);
    EXPECT_TRUE(lit);
    EXPECT_EQ(speed, QStringLiteral("70"));
    EXPECT_GT(glngPosX, 72);
    EXPECT_EQ(k->lblPos[0]->text(), strDistanceLabel(glngDisplayX));
    // The spindle stops with the loop; free control ends on the wizard's step 10, which
    // tells the operator to turn the spindle switch to 0.
    EXPECT_FALSE(gblnSpindleOn);
    EXPECT_TRUE(k->picSpindleStart->isEnabled());
    EXPECT_EQ(gintMode, 3);
    EXPECT_EQ(gintSetStep, 10);
}

// A spindle request left from another screen ("Start Spindle" in the Mill menu while
// machining) is forgotten: the manual screen must not start the spindle unasked.
TEST_F(ManualScreen, WithoutSpindleTheControlsAreHiddenAndAnOldRequestForgotten)
{
    gblnRapidUseDot = !gblnRapidUseDot;
    gblnSpindleStartReq = gblnSpindleStopReq = true;
    ShowKeyboard(false);
    EXPECT_FALSE(gblnSpindleStartReq || gblnSpindleStopReq);
    PicKeyboard *k = f->picKeyboard;
    EXPECT_TRUE(k->picStartText->isHidden());
    EXPECT_TRUE(k->picSpindleStart->isHidden());
    EXPECT_TRUE(k->picSpindleStop->isHidden());
    EXPECT_FALSE(f->mnuMStart->isEnabled());
    EXPECT_FALSE(f->mnuMStop->isEnabled());
    EXPECT_EQ(k->imgKeybd->pixmap().toImage(),
              ilsKeypad(gblnRapidUseDot ? QStringLiteral("NumpadDot") : QStringLiteral("Numpad")).toImage());
    frmSplash()->tmrKeyControl->stop();
}

TEST_F(ManualScreen, ATaskEndedGoesBackToItsWizardAndHidesTheTask)
{
    ShowKeyboard(true);
    frmSplash()->tmrKeyControl->stop();
    PicKeyboard *k = f->picKeyboard;
    k->fraTask->show();
    gblnSetupWizard = true;
    gblnKeyLoop = false;
    KeyControl();   // the loop ends at once, as after Done
    EXPECT_TRUE(k->fraTask->isHidden());
    // The wizard's page comes back over the manual screen, without a change of mode.
    EXPECT_FALSE(f->picSetMill->isHidden());
    EXPECT_TRUE(k->isHidden());
    EXPECT_EQ(gintMode, 2);
}

TEST_F(ManualScreen, DoneWaitsForEnterToComeUpAndTheResetButtonsWork)
{
    ShowKeyboard(true);
    frmSplash()->tmrKeyControl->stop();
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
    // The reset buttons zero the shown position only, one axis or all.
    glngPosZ = 720;
    DistanceSet(1, -36);
    DistanceSet(2, 720);
    EXPECT_EQ(k->lblPos[2]->text(), QStringLiteral("10.00"));
    k->cmdReset[2]->click();
    EXPECT_EQ(k->lblPos[2]->text(), QStringLiteral("0.00"));
    EXPECT_EQ(k->lblPos[1]->text(), QStringLiteral("-0.50"));
    k->cmdReset[3]->click();
    EXPECT_EQ(k->lblPos[1]->text(), QStringLiteral("0.00"));
    EXPECT_EQ(glngDisplayY, 0);
    EXPECT_EQ(glngPosZ, 720);   // the machine position is not the display
}

} // namespace
