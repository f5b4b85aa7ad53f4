// The machining stream and the in-run prompts, run against the controller emulator on the
// fake clock, with frmMill's real buttons pressed by a watcher and the boxes answered by the
// test; and the spindle controls on the main window, which follow the link's state.
#include "guide/stream_world.h"

#include "core/filenum.h"
#include "core/frm_main.h"
#include "core/msgbox.h"
#include "guide/frm_mill.h"
#include "link/machining_screen.h"
#include "link/spindle.h"
#include "link/stream.h"
#include "nc/stepcode.h"
#include "platform/keystate.h"

#include <QAction>
#include <QCoreApplication>
#include <QFile>
#include <QMouseEvent>
#include <QPushButton>
#include <QTextEdit>

#include <gtest/gtest.h>

namespace {

const QString kContinue = QStringLiteral(
    "Do you want to continue machining?\r\nClick YES to carry on \r\nor NO to return to Main Menu");

class StreamTest : public ::testing::Test {
protected:
    void TearDown() override { UnloadForms(); }
};

} // namespace

TEST_F(StreamTest, WholeProgramOnlineRunsToTheEndPromptsAndTheMachineDidWhatWasCounted)
{
    StreamWorld w;
    ASSERT_NO_FATAL_FAILURE(w.startOnline(2));
    // Every page of the prompt as shown, its title and its lines but the closing one.
    QStringList pages;
    bool redChange = false;
    w.onPrompt = [&](int step) {
        const FrmMill *f = frmMill();
        pages << f->lblStepTitle->text() + u':' + f->rtbMill->toPlainText().section(u'\n', 0, -2).replace(u'\n', u'|');
        redChange = redChange || (step == 0 && f->rtbMill->toHtml().contains(QStringLiteral("#ff0000")));
        return 1;
    };
    w.run();
    EXPECT_EQ(pages.join(u'\n').toStdString(),
              "Insert Tool:1) Insert tool Number 1 (End mill 6 mm)|2) Close the machine door.\n"
              "Start the Spindle:1) Set the spindle switch to the CNC position.|2) Set the speed control to minimum.\n"
              "Set Spindle Speed:Set the spindle speed to 1000\n"
              "Prepare to Change Tool:1) Safety: set the spindle switch to position 0;|2) Open the machine door.\n"
              "Change Tool:1) Change to tool Number 2 (Ball end 3 mm)|2) Close the machine door.\n"
              "Start the Spindle:1) Set the spindle switch to the CNC position.|2) Set the speed control to minimum.\n"
              "Set Spindle Speed:Set the spindle speed to 2000\n"
              "Step 11: End of NC code:While this window is displayed:|1) safety: set the spindle switch to off, "
              "position 0;|2) open the machine door;|3) safety: remove the cutter from the milling head.\n"
              "Step 12: Machining is complete:While this window is displayed:|1) remove the finished work (safety: "
              "only when the cutter has been removed);|2) clean the machine;");
    EXPECT_TRUE(redChange);   // the safety line in red
    EXPECT_TRUE(w.seen.empty());
    EXPECT_EQ(w.showMethod, 1);
    EXPECT_EQ(gintCurrentTool, 2);
    // The count of the machine against the PC's, and the steps dropped: the road checks them.
    const ControllerEmulator &c = w.emu->controller();
    EXPECT_GT(c.stepRecords(), 300);
    // Never more than two frames out; every frame 1 to 16 records.
    EXPECT_LE(w.maxOut, 2);
    EXPECT_LE(c.maxFramesHeld(), 2);
    EXPECT_EQ(c.overflows(), 0);
    EXPECT_EQ(c.badLengthBytes(), 0);
    // The run is over: spindle off, no tool in, the play as after a reset, files closed, the
    // work file deleted by the last Done.
    EXPECT_FALSE(c.spindleOn());
    EXPECT_FALSE(gblnSpindleOn || gblnToolInserted || gblnToolInMachine);
    EXPECT_EQ(gintLastDirX, -1);
    EXPECT_EQ(gintPlayX, 2);
    EXPECT_EQ(gintAnalysedFile, 0);
    EXPECT_EQ(gintWorkFile, 0);
    EXPECT_FALSE(QFile::exists(gstrWorkFile));
    // The machining time: the fake clock's seconds of the run, shown as hh:mm:ss.
    EXPECT_EQ(w.panel["timer"], QStringLiteral("Machining Time: ") + strMachiningTime(glngMachiningTime) +
                                    QStringLiteral("  "));
    EXPECT_GE(glngMachiningTime, 2);
    EXPECT_LE(glngMachiningTime, w.clock.msecs() / 1000 + 1);
    EXPECT_EQ(strMachiningTime(36000 + 3725), QStringLiteral("11:02:05"));
}

TEST_F(StreamTest, ToolPromptsStartAtTheRightStep)
{
    struct Case {
        const char *name;
        int16_t current, next;
        bool inserted, inMachine;
        QByteArray program;
        QStringList tags;
        std::vector<int> steps;
    };
    const QByteArray sameTool = "%\r\nN10 T1\r\nN20 S800\r\nN30 G0 X1 Y1 Z1\r\nN40 G1 Z0 F100\r\n"
                                "N50 T1\r\nN55 S800\r\nN60 G1 X2\r\nN70 G0 Z1\r\n";
    const Case cases[] = {
        {"empty spindle", 0, 0, false, false, kTwoToolProgram, {"1", "0", "5"}, {1, 2, 4, 0, 1, 2, 4, 5, 6}},
        {"first tool in from the set-up", 1, 1, true, true, kTwoToolProgram, {"2", "0", "5"}, {2, 4, 0, 1, 2, 4, 5, 6}},
        {"a tool called again", 0, 0, false, false, sameTool, {"1", "5"}, {1, 2, 4, 5, 6}},
    };
    for (const Case &k : cases) {
        SCOPED_TRACE(k.name);
        StreamWorld w;
        w.setUp();
        ASSERT_TRUE(w.compile(k.program));
        gblnOnline = false;
        gblnDoorOpen = true;   // offline the door counts as closed
        gblnShowTime = false;
        gintCurrentTool = k.current;
        gintNextTool = k.next;
        gblnToolInserted = k.inserted;
        gblnToolInMachine = k.inMachine;
        w.run();
        EXPECT_EQ(w.promptTags, k.tags);
        EXPECT_EQ(w.promptSteps, k.steps);
        EXPECT_EQ(w.showMethod, 1);
        EXPECT_TRUE(w.seen.empty());
        EXPECT_EQ(w.panelHistory.count(QStringLiteral("timer")), 0u);   // ShowTime off: no time shown
        UnloadForms();
    }
}

TEST_F(StreamTest, DoorOpenedAtAFrameBoundaryAsksDoorOpenAndSendsNothingUntilAnswered)
{
    StreamWorld w;
    ASSERT_NO_FATAL_FAILURE(w.startOnline());
    ControllerEmulator &c = w.emu->controller();
    w.watchDoor = true;
    int64_t framesAtArm = -1, writtenAtOpen = -1;
    w.onPump = [&] {
        // Once the spindle runs and cutting is under way, open the door the moment a frame
        // has run out: its "A" is on the wire ahead of the "O" and the "D".
        if (framesAtArm < 0 && c.spindleOn() && c.framesRun() > 4)
            framesAtArm = c.framesRun();
        if (framesAtArm >= 0 && writtenAtOpen < 0 && c.framesRun() > framesAtArm && c.framesHeld() > 0) {
            c.openDoor();
            writtenAtOpen = w.emu->written().size();
        }
    };
    w.onBox = [&](const BoxSeen &b) -> int16_t {
        if (b.title == QLatin1String("Door Open")) {
            // Nothing went out between the door opening and the question.
            EXPECT_EQ(b.writtenAtBox, writtenAtOpen);
            EXPECT_TRUE(gblnDoorOpen);
            c.closeDoor();
            return vbYes;
        }
        return 0;
    };
    w.run();
    ASSERT_GE(w.seen.size(), 2u);
    EXPECT_EQ(w.seen[0].title, QStringLiteral("Door Open"));
    EXPECT_EQ(w.seen[0].text, kContinue);
    EXPECT_EQ(w.seen[0].flags, vbYesNo + vbQuestion + vbDefaultButton2);
    EXPECT_EQ(w.seen.back().title, QStringLiteral("Machining interrupted"));
    EXPECT_EQ(w.seen.back().text, QStringLiteral("Please confirm that the spindle speed control knob is set to 1000\r\n"
                                                 "Click OK to carry on or CANCEL to return to Main Menu"));
    EXPECT_EQ(w.stepsWhileDoorOpen, 0);
    EXPECT_GT(c.droppedSteps(), 0);
    EXPECT_EQ(w.showMethod, 1);   // and the run went on to its end
}

TEST_F(StreamTest, DoorOpenedMidFrameStopsEverythingUntilTheDoorIsClosedAndTheOperatorAgrees)
{
    // The "O" and the "D"s of the interrupted frames come together: depending on which the
    // stream meets first, it asks "Door Open" or stops at the prompt whose spindle start
    // the open door refuses. Either way nothing moves while the door is open.
    StreamWorld w;
    ASSERT_NO_FATAL_FAILURE(w.startOnline());
    ControllerEmulator &c = w.emu->controller();
    c.openDoorAtStep(200);
    w.watchDoor = true;
    w.onPrompt = [&](int step) {
        if (step == 3) {
            EXPECT_FALSE(gblnSpindleOn);   // refused while the door is open
            c.closeDoor();
        }
        return 1;
    };
    w.onBox = [&](const BoxSeen &b) -> int16_t {
        if (b.title == QLatin1String("Door Open"))
            c.closeDoor();
        return 0;
    };
    w.run();
    ASSERT_GE(w.doorOpenings, 1);
    EXPECT_EQ(w.stepsWhileDoorOpen, 0);
    const bool asked = !w.seen.empty() && w.seen[0].title == QLatin1String("Door Open");
    const bool prompted = std::find(w.promptSteps.begin(), w.promptSteps.end(), 3) != w.promptSteps.end();
    EXPECT_TRUE(asked || prompted);
    EXPECT_GE(c.spindleRefused() + (asked ? 1 : 0), 1);
    EXPECT_EQ(w.showMethod, 1);
}

TEST_F(StreamTest, EscAsksMachiningInterruptedAndYesGoesOnFromTheNextRecord)
{
    StreamWorld w;
    ASSERT_NO_FATAL_FAILURE(w.startOnline(2));
    frmMain()->show();
    ControllerEmulator &c = w.emu->controller();
    bool pressed = false, spindleAtBox = true;
    w.onPump = [&] {
        if (!pressed && c.spindleOn() && c.stepRecords() > 150) {
            pressed = true;
            StreamWorld::postEsc();
        }
    };
    w.onBox = [&](const BoxSeen &b) -> int16_t {
        if (b.text == kContinue)
            spindleAtBox = c.spindleOn();
        return 0;   // Yes, then Ok to the knob
    };
    w.run();
    ASSERT_EQ(w.seen.size(), 2u);
    EXPECT_EQ(w.seen[0].title, QStringLiteral("Machining interrupted"));
    EXPECT_EQ(w.seen[0].text, kContinue);
    EXPECT_FALSE(spindleAtBox);   // stopped before the question
    EXPECT_EQ(w.seen[1].title, QStringLiteral("Machining interrupted"));
    EXPECT_EQ(w.showMethod, 1);
    // Nothing lost, nothing repeated: from the origin the lead-in reaches X2 Y1 Z1 and the last
    // G0 leaves the tool at X3 Y2 Z2, with the play of 2 steps taken up on each axis's first
    // move up. The machine made exactly that, and the PC counted it.
    const std::array<int64_t, 3> end{3 * 72 + 2, 2 * 72 + 2, 2 * 72 + 2};
    EXPECT_EQ((std::array<int64_t, 3>{c.posX(), c.posY(), c.posZ()}), end);
    EXPECT_EQ((std::array<int64_t, 3>{glngPosX, glngPosY, glngPosZ}), end);
}

TEST_F(StreamTest, LostReplyRaisesTheAlarmAfterTenSecondsAndNoGoesBackToTheWizard)
{
    StreamWorld w;
    ASSERT_NO_FATAL_FAILURE(w.startOnline());
    ControllerEmulator &c = w.emu->controller();
    int64_t armedAt = -1, alarmAt = -1, lastStepAt = -1, lastSteps = 0;
    w.onPump = [&] {
        if (armedAt < 0 && c.spindleOn() && c.framesRun() > 6) {
            c.loseReplies(1);
            armedAt = w.clock.msecs();
        }
        if (c.stepRecords() != lastSteps) {
            lastSteps = c.stepRecords();
            lastStepAt = w.clock.msecs();
        }
    };
    w.onSkull = [&] { alarmAt = w.clock.msecs(); };
    w.onBox = [&](const BoxSeen &) -> int16_t { return vbNo; };
    w.run();
    ASSERT_EQ(w.skullTexts.size(), 1);
    EXPECT_TRUE(w.skullTexts[0].startsWith(QStringLiteral("There is a problem with the hardware.")));
    // The PC waited 10 s from the start of its wait; the machine ran out what it held
    // (well under a second) and then stood still until the alarm.
    EXPECT_GE(alarmAt - armedAt, 10000);
    EXPECT_GT(alarmAt - lastStepAt, 9000);
    EXPECT_LE(alarmAt - lastStepAt, 10000);
    ASSERT_EQ(w.seen.size(), 1u);
    EXPECT_EQ(w.seen[0].title, QStringLiteral("Machining interrupted"));
    EXPECT_EQ(w.seen[0].text, kContinue);
    EXPECT_EQ(w.backToWizard, 1);
    EXPECT_EQ(w.showMethod, 0);
    EXPECT_EQ(gintAnalysedFile, 0);
    EXPECT_FALSE(QFile::exists(gstrWorkFile));
    EXPECT_FALSE(c.spindleOn());
}

TEST_F(StreamTest, CancelInAPromptIsHandledAsEscAndSendsNoStep)
{
    StreamWorld w;
    ASSERT_NO_FATAL_FAILURE(w.startOnline());
    ControllerEmulator &c = w.emu->controller();
    int64_t stepsAtCancel = -1;
    w.onPrompt = [&](int step) {
        if (step == 0 && stepsAtCancel < 0) {   // the tool change: the operator gives up
            stepsAtCancel = c.stepRecords();
            return 0;
        }
        return 1;
    };
    int64_t stepsAtBox = -1;
    w.onBox = [&](const BoxSeen &b) -> int16_t {
        if (stepsAtBox < 0)
            stepsAtBox = c.stepRecords();
        return b.text == kContinue ? vbNo : vbOK;
    };
    w.run();
    ASSERT_EQ(w.seen.size(), 1u);
    EXPECT_EQ(w.seen[0].title, QStringLiteral("Machining interrupted"));
    EXPECT_EQ(stepsAtBox, stepsAtCancel);
    EXPECT_EQ(w.backToWizard, 1);
}

// A spindle start whose reply is lost: the alarm, and the spindle counts as not running, so the
// prompt stays at "Close Door" and the continue path asks again instead of resuming.
TEST_F(StreamTest, ASpindleStartThatTimesOutDoesNotCountAsRunning)
{
    const QString kRetry = QStringLiteral(
        "Please close the door and click RETRY to carry on\r\nor CANCEL to return to Main Menu");
    for (const bool inPrompt : {true, false}) {
        SCOPED_TRACE(inPrompt ? "prompt" : "continue");
        StreamWorld w;
        ASSERT_NO_FATAL_FAILURE(w.startOnline());
        frmMain()->show();
        ControllerEmulator &c = w.emu->controller();
        bool armed = false, pressed = false;
        int64_t stepsAtAlarm = -1;
        w.onSkull = [&] { stepsAtAlarm = c.stepRecords(); };
        w.onPrompt = [&](int step) {
            if (inPrompt && step == 2 && !armed) {
                armed = true;
                c.loseReplies(1);   // the start record's reply
            }
            return 1;
        };
        w.onPump = [&] {
            if (!inPrompt && !pressed && c.spindleOn() && c.stepRecords() > 150) {
                pressed = true;
                StreamWorld::postEsc();
            }
        };
        int64_t stepsAtRetry = -1;
        w.onBox = [&](const BoxSeen &b) -> int16_t {
            if (b.text == kContinue) {
                c.loseReplies(1);
                return vbYes;
            }
            if (b.text == kRetry)
                stepsAtRetry = c.stepRecords();
            return 0;
        };
        w.run();
        EXPECT_EQ(w.skullTexts.size(), 1);
        if (inPrompt) {
            EXPECT_EQ(w.promptSteps, (std::vector<int>{1, 2, 3, 4, 0, 1, 2, 4, 5, 6}));
        } else {
            ASSERT_EQ(w.seen.size(), 3u);
            EXPECT_EQ(w.seen[1].text, kRetry);   // not the knob: the run did not go on
            EXPECT_EQ(stepsAtRetry, stepsAtAlarm);
        }
        EXPECT_EQ(w.showMethod, 1);
        UnloadForms();
    }
}

// frmMill on its own: a second click while Enter is still down is ignored.
TEST_F(StreamTest, ASecondPromptClickWhileTheKeysAreStillDownIsIgnored)
{
    StreamWorld w;
    w.setUp();
    FakeKeyState keys;
    ScopedKeyState scope(&keys);
    FrmMill *f = frmMill();
    gintNextTool = 1;
    f->SetStep(0);
    keys.Press(13);
    int queries = 0;
    keys.onQuery = [&](int) {
        if (++queries == 3)
            f->cmdNav[1]->click();   // the operator clicks again while Enter is held
        if (queries == 6)
            keys.Release(13);
    };
    f->cmdNav[1]->click();
    EXPECT_EQ(f->intStep, 1);   // one step on, not two
}

TEST_F(StreamTest, TheSpindleControlsFollowTheSpindleAndTheDoorAndClicksOnlyAsk)
{
    StreamWorld w;
    w.setUp();
    FrmMain *f = frmMain();
    InstallMachiningUi();
    w.goOnline();
    PicKeyboard *k = f->picKeyboard;
    auto lamps = [&](int start, int stop) {
        return k->picSpindleStart->pixmap().toImage() == f->ilsSpindle(start).toImage() &&
               k->picSpindleStop->pixmap().toImage() == f->ilsSpindle(stop).toImage();
    };

    SpindleStart();
    EXPECT_TRUE(gblnSpindleOn);
    EXPECT_TRUE(lamps(2, 3));
    EXPECT_FALSE(k->picSpindleStart->isEnabled());
    EXPECT_TRUE(k->picSpindleStop->isEnabled());
    EXPECT_FALSE(f->mnuMStart->isEnabled());
    EXPECT_TRUE(f->mnuMStop->isEnabled());

    // The door opens while the spindle turns: stopped, start refused, the warning shown.
    w.emu->controller().openDoor();
    w.LinkWorld::run(5);
    EXPECT_FALSE(gblnSpindleOn);
    EXPECT_TRUE(lamps(1, 4));
    EXPECT_FALSE(k->picSpindleStart->isEnabled());
    EXPECT_FALSE(f->mnuMStart->isEnabled());
    EXPECT_FALSE(f->mnuMStop->isEnabled());
    EXPECT_TRUE(k->picStopped->isVisibleTo(k));
    EXPECT_EQ(k->lblStopped->text(),
              QStringLiteral("Spindle has been stopped. Close door and Click the green button to restart."));

    // Closed again: the start picture may be used.
    w.emu->controller().closeDoor();
    w.LinkWorld::run(5);
    EXPECT_TRUE(k->picSpindleStart->isEnabled());

    // Clicks and menu entries only ask; the key loop acts.
    gblnSpindleStartReq = gblnSpindleStopReq = false;
    const int before = w.emu->controller().spindleRecords();
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(k->picSpindleStart, &release);
    EXPECT_TRUE(gblnSpindleStartReq);
    f->mnuMStop->setEnabled(true);
    f->mnuMStop->trigger();
    EXPECT_TRUE(gblnSpindleStopReq);
    w.LinkWorld::run(5);
    EXPECT_EQ(w.emu->controller().spindleRecords(), before);
}
