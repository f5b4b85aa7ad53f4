// The set-up wizard's words, its ways out and its bad inputs, and the subsequent-part choice.
// The flows run on the real forms with the emulator on the fake clock (wizard_world.h).
#include "guide/wizard_world.h"

#include "core/hooks.h"
#include "files/filechoice.h"
#include "guide/setmill_pages.h"
#include "link/keyboard_panel.h"
#include "tools/toolgrid.h"
#include "tools/tooltable.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QTextDocument>
#include <QTextEdit>

#include <gtest/gtest.h>

namespace {

QString Plain(const QString &html)
{
    QTextDocument d;
    d.setHtml(html);
    return d.toPlainText();
}

const QByteArray kSmall = "%\r\n* Billet length 40\r\n* Billet width 30\r\n* Billet depth 0\r\n"
                          "N10 T2\r\nN20 S1000\r\nN30 G0 X2 Y2 Z1\r\nN40 G1 Z-0.2 F100\r\nN50 G0 Z2\r\n";

// To step 3's page, the billet secured: menu, Mill, Next, the file, Yes, Next, the task.
void ToToolStep(WizardWorld &w)
{
    w.setUp();
    w.goOnline();
    w.toMill(kSmall);
    w.nav(3);
    w.nav(3);
    w.nav(3);
    w.task();
}

} // namespace

TEST(WizardPages, TheSafetyBeforeStartWordForWordWithItsColours)
{
    EXPECT_EQ(Plain(strSetStepPage(7, true, false, false)).toStdString(),
              "Safety: be vigilant during machining, especially at the start and immediately after a tool change. If "
              "things do not go as expected hit the red Emergency Stop Button on the machine or Esc on the PC "
              "keyboard.\nWhile this window is displayed:\n1) check the spindle motor switch is in position CNC;\n"
              "2) safety: note the red Emergency Stop Button..\nClick START when you are ready to begin machining.\n"
              "or click BACK to raise the cutter\nor click CANCEL to return to the Main Menu.");
    // Safety in red; on the warning above the origin steps, "must" in bold italic.
    EXPECT_TRUE(strSetStepPage(7, true, false, false)
                    .contains(QStringLiteral("color:#ff0000\">safety: note the red Emergency Stop Button.</span>.")));
    EXPECT_TRUE(strSetWarning().contains(QStringLiteral("<b><i>must</i></b>")));
}

TEST(WizardFlow, ACancelledDialogComesBackToStepOneAndAFaultyFileIsCorrectedAndReadAgain)
{
    WizardWorld w;
    w.setUp();
    w.toMill();
    EXPECT_EQ(w.f->focusWidget(), w.f->picSetMill);   // not the hidden menu's entry
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(w.f->picSetMill, &enter);   // Enter presses Next; the dialog answers Cancel
    EXPECT_EQ(w.dialogTitles.size(), 1);
    EXPECT_EQ(gintSetStep, 0);
    EXPECT_FALSE(w.f->picSetMill->cmdSetNav[2]->isEnabled());

    // A bad word on line 3: the correction window mends the file, the reader reads it again.
    w.chosenFile = w.writeFile(QStringLiteral("bad.brx"), QByteArray(kSmall).replace("N40 G1", "N40 G7"));
    QStringList faults;
    uiHooks().correctFile = [&](const QString &, const QString &error, const QString &) {
        faults << error;
        w.writeFile(QStringLiteral("bad.brx"), kSmall);
        return QStringLiteral("Ok");
    };
    w.nav(3);
    EXPECT_EQ(faults.size(), 1);
    EXPECT_EQ(gintSetStep, 1);

    // Given up in the correction window: the menu.
    w.nav(2);
    EXPECT_EQ(gintSetStep, 0);
    w.writeFile(QStringLiteral("bad.brx"), QByteArray(kSmall).replace("N40 G1", "N40 G7"));
    uiHooks().correctFile = [](const QString &, const QString &, const QString &) { return QStringLiteral("Cancel"); };
    w.nav(3);
    EXPECT_EQ(gintMode, 1);
    // Esc presses Cancel: from step 1 back to the menu.
    w.f->MenuAction(QStringLiteral("Mill"));
    QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(w.f->picSetMill, &esc);
    EXPECT_EQ(gintMode, 1);
}

TEST(WizardFlow, AnUnknownOffsetBarsStepTwoExceptThroughGetOffsets)
{
    WizardWorld w;
    w.setUp();
    gtypTools(2).sngOffset = -2000.0f;
    w.toMill(kSmall);
    w.nav(3);
    ASSERT_EQ(gintSetStep, 1);
    PicSetMill *p = w.f->picSetMill;
    EXPECT_FALSE(p->cmdSetNav[3]->isEnabled());
    EXPECT_FALSE(p->cmdSetNav[0]->isHidden());
    EXPECT_EQ(gintToolRows, 1);   // only the program's tool is listed
    EXPECT_TRUE(w.page().startsWith(QStringLiteral("WARNING: at least one required tool has an unknown offset.")));
    w.nav(0);
    EXPECT_FALSE(gblnSetupWizard);
    PumpUntil([] { return gintMode == 7; });   // tmrGetOffset: 100 ms of real time, then the offset wizard
    EXPECT_EQ(gintMode, 7);
}

TEST(WizardFlow, EscStopsTheReadingAndTheAnalysisOfALongProgram)
{
    QByteArray big = "%\r\n* long\r\nN1 T1\r\nN2 S1000\r\nN3 G0 X0 Y0 Z1\r\nN4 G1 Z-0.1 F300\r\n";
    for (int i = 0; i < 20000; ++i)
        big += "N" + QByteArray::number(i + 5) + " G1 X" + QByteArray::number(i % 2 ? 10 : 0) + " Y" +
               QByteArray::number((i % 200) * 0.1) + "\r\n";
    for (int stage : {8, 9}) {
        WizardWorld w;
        w.setUp();
        w.toMill(big);
        if (stage == 9) {
            w.nav(3);
            ASSERT_EQ(gintSetStep, 1);
        }
        // Esc a few turns of the loop into the reading, or into the analysis under its bar.
        int turns = 0, escAt = 0;
        w.onPump = [&] {
            const bool busy = stage == 8 || !w.f->picSetMill->pgbProgress->isHidden();
            if (busy && ++turns == 5) {
                escAt = gintSetStep;
                w.f->Form_KeyDown(27, 0);
            }
        };
        w.nav(3);
        w.onPump = nullptr;
        EXPECT_EQ(escAt, stage);
        if (stage == 9) {
            EXPECT_TRUE(w.f->tmrShowMenu->isActive());
            w.f->tmrShowMenu_Timer();
        }
        EXPECT_EQ(gintMode, 1) << stage;
    }
}

TEST(WizardFlow, EscInATaskStepsBackAndCancelAfterTheToolWentInAsksForTheSpindleSwitch)
{
    WizardWorld w;
    ToToolStep(w);
    ASSERT_EQ(gintSetStep, 3);
    w.nav(3);
    w.task({VK_NEXT, VK_NUMPAD9}, 200);   // Z set at the top
    w.nav(3);
    w.task({VK_RIGHT, VK_NUMPAD9}, 200);  // X set
    ASSERT_EQ(gintSetStep, 5);
    EXPECT_EQ(glngPosX, -108);   // the program's first tool, T2, is 3 mm across
    // Esc while locating the front, after moving X: back to step 5's page, which sets X
    // again where the cutter now stands.
    w.nav(3);
    const int64_t xBefore = w.emu->controller().posX();
    w.task({VK_RIGHT, VK_NUMPAD9}, 100, true);
    EXPECT_GT(w.emu->controller().posX(), xBefore);
    EXPECT_EQ(gintSetStep, 5);
    EXPECT_EQ(glngPosX, -108);
    EXPECT_TRUE(w.f->picKeyboard->isHidden());
    EXPECT_FALSE(w.f->picSetMill->rtbWarn->isHidden());
    // Cancel: the spindle switch first, then only Ok, which leads to the menu.
    gblnCancel = false;
    w.nav(1);
    EXPECT_EQ(gintSetStep, 10);
    EXPECT_FALSE(gblnToolInserted);
    EXPECT_TRUE(gblnCancel);
    EXPECT_EQ(w.title(), QStringLiteral("Cancel: Return to Menu"));
    EXPECT_TRUE(w.page().startsWith(QStringLiteral("Safety: turn the spindle motor switch to position 0.")));
    for (int i : {0, 1, 2, 4})
        EXPECT_TRUE(w.f->picSetMill->cmdSetNav[static_cast<size_t>(i)]->isHidden()) << i;
    w.nav(3);
    EXPECT_EQ(gintMode, 1);
}

TEST(WizardFlow, TheControllerLostDuringATaskSendsNothingUntilItIsBackAndTheTaskGoesOn)
{
    WizardWorld w;
    ToToolStep(w);
    w.nav(3);   // the top's task, Page Down held until the alarm
    ControllerEmulator &c = w.emu->controller();
    qsizetype sentAtLoss = -1, sentWhileLost = 0;
    w.onSkull = [&] {
        // The operator lets go, plugs the cable back in and clicks Ok.
        sentWhileLost = w.emu->written().size() - sentAtLoss;
        w.keys.ReleaseAll();
        c.setDsr(true);
    };
    w.task({VK_NEXT, VK_NUMPAD9}, 1 << 30, false, [&](int n) {
        if (n == 300) {
            sentAtLoss = w.emu->written().size();
            c.setDsr(false);
        }
        return n > 300 && !w.skullTexts.isEmpty();
    });
    ASSERT_FALSE(w.skullTexts.isEmpty());
    EXPECT_TRUE(w.skullTexts.first().startsWith(QStringLiteral("There is a problem with the hardware.")));
    EXPECT_EQ(sentWhileLost, 0);
    // Done after the alarm: the origin is set and the wizard goes on at step 4's page.
    EXPECT_EQ(gintSetStep, 4);
    EXPECT_EQ(glngPosZ, 0);
    EXPECT_FALSE(w.f->picSetMill->isHidden());
}

TEST(WizardFlow, TheDoorOpenedDuringATaskStopsTheSpindleAndTheTaskStillEndsByDone)
{
    WizardWorld w;
    ToToolStep(w);
    w.nav(3);   // the top's task, with the spindle
    ControllerEmulator &c = w.emu->controller();
    int64_t zAtOpen = 0;
    bool spindleRan = false;
    w.task({VK_NEXT, VK_NUMPAD9}, 1 << 30, false, [&](int n) {
        if (n == 5)
            gblnSpindleStartReq = true;
        if (n == 400) {   // the door opens; the operator lets go of the keys
            spindleRan = c.spindleOn();
            c.openDoor();
            zAtOpen = c.posZ();
            w.keys.ReleaseAll();
        }
        return n > 400;
    });
    EXPECT_TRUE(spindleRan);
    EXPECT_FALSE(c.spindleOn());
    EXPECT_LE(zAtOpen - c.posZ(), 32);   // at most the two frames already out
    EXPECT_EQ(gintSetStep, 4);
    EXPECT_FALSE(w.f->picSetMill->isHidden());
}

TEST(WizardFlow, AFileFromTheRecentListOrTheCommandLineEntersAtTheReadingStep)
{
    WizardWorld w;
    w.setUp();
    SetMode(1);
    LaunchFile(w.writeFile(QStringLiteral("small.brx"), kSmall), 0);
    EXPECT_TRUE(w.dialogTitles.isEmpty());   // no file dialog
    EXPECT_EQ(gintSetStep, 1);
    EXPECT_TRUE(gblnSetupWizard);
}
