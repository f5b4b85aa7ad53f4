// The link protocol against the controller emulator on a fake clock.
#include "link/link_world.h"

#include "link/spindle.h"

#include <gtest/gtest.h>

const QString kAlarm = QStringLiteral(
    "There is a problem with the hardware.\r\n\r\nIs the controller connected to the computer and powered on?"
    "\r\n\r\nCheck the connections and click Ok to try again\r\nor tick the box below and click Ok to work offline.");
const QString kResetFailed = QStringLiteral(
    "The controller has failed to respond to a reset command.\r\n\r\nPlease check the connections and restart the program.");

// The start: the reset's answer gives the door; without the controller, the alarm window's
// texts in order, then the start goes on (cured, or offline) or the program ends. "Work
// Offline" is stored for the next start. Only the last character of the port name counts.
TEST(Comms, TheStartResetsTheControllerOrAlarmsThenGoesOnOrEnds)
{
    const QString kNoPort = QStringLiteral(
        "An error occurred during initialization of the COM settings.\r\nCom Port 1 No such file or directory\r\n"
        "Please check the serial connection and restart the program.");
    enum Fault { None, DoorOpen, Silent, NoDsr, NoPort };
    struct Case {
        const char *name;
        Fault fault;
        int cureAt;   // the alarm at which the cable is repaired (0: never)
        bool tick;    // "Work Offline" ticked
        QStringList texts;
        bool ends;
    } cases[] = {
        {"COM1, the door closed", None, 0, false, {}, false},
        {"COM12 is port 2; the door open", DoorOpen, 0, false, {}, false},
        {"no answer to the reset, Ok", Silent, 0, false, {kResetFailed}, true},
        {"no answer to the reset, offline", Silent, 0, true, {kResetFailed}, false},
        {"no DSR, cured at the second alarm", NoDsr, 2, false, {kAlarm, kAlarm}, false},
        {"no DSR, offline", NoDsr, 0, true, {kAlarm}, true},
        {"the port does not open", NoPort, 0, false, {kNoPort}, true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        LinkWorld w;
        w.configure = [&](ControllerEmulator &e) {
            e.setSilentAfterReset(c.fault == Silent);
            e.setDsr(c.fault != NoDsr);
            if (c.fault == DoorOpen)
                e.openDoor();
        };
        if (c.fault == NoPort) {
            SetSerialPortOverride([](int16_t) {
                auto p = std::make_unique<ScriptPort>();
                p->openOk = false;
                p->openError = QStringLiteral("No such file or directory");
                return p;
            });
        }
        w.onSkull = [&] {
            frmSkull.chkOffline = c.tick;
            if (w.skullTexts.size() == c.cureAt)
                w.emu->controller().setDsr(true);
        };
        gintBacklashX = 5;
        gintPlayX = 0;
        gintLastDirX = 1;
        RegistryValuePut(QStringLiteral("Comport"), QString::fromLatin1(c.fault == DoorOpen ? "COM12" : "COM1"));
        gblnOnline = true;
        const int64_t start = w.clock.msecs();
        if (c.ends) {
            EXPECT_THROW(SetupComms(), ShutdownCalled);
        } else {
            SetupComms();
        }
        EXPECT_EQ(w.skullTexts, c.texts);
        EXPECT_EQ(gblnOnline, !c.tick);
        EXPECT_EQ(strRegistryValueGet(QStringLiteral("Online"), QString()), QString::fromLatin1(c.tick ? "No" : ""));
        if (c.fault == Silent) {
            // The wait ends on a whole second, 1.5 to 2.5 s after it began; the alarm window's
            // unload starts the watchdog.
            EXPECT_GE(w.clock.msecs() - start, 1500);
            EXPECT_LE(w.clock.msecs() - start, 2600);
            EXPECT_TRUE(tmrOnline().isActive());
            EXPECT_EQ(w.emu->isOpen(), !c.tick);
        } else if (!c.ends) {   // the reset answered
            EXPECT_EQ(w.portAskedFor, c.fault == DoorOpen ? 2 : 1);
            EXPECT_EQ(w.emu->controller().resets(), 1);
            EXPECT_EQ(gblnDoorOpen, c.fault == DoorOpen);
            EXPECT_EQ(w.panel[QStringLiteral("door")], QString::fromLatin1(c.fault == DoorOpen ? "Door Open" : "Door Closed"));
            EXPECT_TRUE(gstrReplies.isEmpty());
            EXPECT_EQ(gintLastDirX, -1);   // the play is due again after a reset
            EXPECT_EQ(gintPlayX, 5);
        }
    }
}

TEST(Comms, NeverMoreThanTwoFramesOutAndEveryStepIsExecuted)
{
    LinkWorld w;
    w.goOnline();
    ASSERT_TRUE(StreamFrames(40));
    const ControllerEmulator &c = w.emu->controller();
    EXPECT_EQ(c.posX(), 40 * 16);
    EXPECT_EQ(c.maxFramesHeld(), 2);
    EXPECT_EQ(c.overflows(), 0);
    EXPECT_TRUE(w.skullTexts.isEmpty());
}

// No reply within ten seconds of the whole wait raises the alarm (which clears the door
// panel): a lost reply, and replies at 6 s and 12 s; replies at 9.9 s are in time.
TEST(Comms, TheTenSecondsAreForTheWholeWait)
{
    struct Case {
        int delayFirstMs, delaySecondMs;
        bool lose, ok;
    } cases[] = {{9900, 0, false, true}, {0, 0, true, false}, {6000, 12000, false, false}};
    for (const Case &c : cases) {
        LinkWorld w;
        w.goOnline();
        ControllerEmulator &e = w.emu->controller();
        if (c.lose)
            e.loseReplies(1);
        e.delayNextReply(c.delayFirstMs * 1000000LL);
        SendFrame(StepFrame(1));
        // The second frame's reply is held back from the moment it has run.
        w.run(5);
        e.delayNextReply(c.delaySecondMs * 1000000LL);
        if (c.delaySecondMs)
            SendFrame(StepFrame(1));
        const int64_t start = w.clock.msecs();
        int64_t alarmAt = -1;
        w.onSkull = [&] { alarmAt = w.clock.msecs(); };
        EXPECT_EQ(blnGetReplies(true), c.ok) << c.delayFirstMs << " " << c.delaySecondMs;
        EXPECT_EQ(w.skullTexts, c.ok ? QStringList{} : QStringList{kAlarm});
        if (c.lose) {
            EXPECT_GE(alarmAt - start, 10000 - 5);
            EXPECT_LE(alarmAt - start, 10010);
            EXPECT_EQ(gintBuffersOut, 0);
            EXPECT_EQ(w.panel[QStringLiteral("door")], QString());
        }
    }
}

TEST(Comms, CancelEndsTheWaitWithoutAlarmAndStaysSet)
{
    LinkWorld w;
    w.goOnline();
    // Nothing out: true at once, the cancel flag untouched.
    gblnCancel = true;
    EXPECT_TRUE(blnGetReplies(true));
    EXPECT_TRUE(gblnCancel);
    // A cancel from before does not cut the wait short, and is given back.
    SendFrame(StepFrame(2));
    EXPECT_TRUE(blnGetReplies(true));
    EXPECT_TRUE(gblnCancel);
    EXPECT_EQ(gintBuffersOut, 0);
    // A cancel during the wait ends it, with no alarm.
    gblnCancel = false;
    w.emu->controller().loseReplies(1);
    SendFrame(StepFrame(2));
    QTimer::singleShot(0, [] { gblnCancel = true; });
    EXPECT_TRUE(blnGetReplies(true));
    EXPECT_TRUE(gblnCancel);
    EXPECT_TRUE(w.skullTexts.isEmpty());
    EXPECT_EQ(gintBuffersOut, 1);
}

TEST(Comms, DsrLostWhileIdleRaisesTheAlarmAndOkResets)
{
    LinkWorld w;
    w.goOnline();
    ControllerEmulator &e = w.emu->controller();
    e.setDsr(false);
    // Frames out: the watchdog leaves the line to the waits.
    gintBuffersOut = 1;
    tmrOnline_Timer();
    EXPECT_TRUE(w.skullTexts.isEmpty());
    gintBuffersOut = 0;
    bool timerWasOff = false;
    w.onSkull = [&] {
        timerWasOff = !tmrOnline().isActive();
        e.setDsr(true);   // the operator plugs the cable back in and clicks Ok
    };
    tmrOnline().start();
    tmrOnline_Timer();
    EXPECT_EQ(w.skullTexts, QStringList{kAlarm});
    EXPECT_TRUE(timerWasOff);
    EXPECT_TRUE(tmrOnline().isActive());
    EXPECT_EQ(e.resets(), 2);
    EXPECT_EQ(w.panel[QStringLiteral("door")], QStringLiteral("Door Closed"));
    // Lost while waiting: the alarm inside the wait, and the polling goes on.
    e.setDsr(false);
    w.onSkull = [&] { e.setDsr(true); };
    SendFrame(StepFrame(16));
    EXPECT_TRUE(blnGetReplies(true));
    EXPECT_EQ(w.skullTexts.size(), 2);
    EXPECT_EQ(e.posX(), 16);
}

TEST(Comms, ReceivedStringsAreTakenInTheirFixedOrder)
{
    LinkWorld w;
    w.useScriptPort = true;
    w.goOnline();
    ScriptPort &p = *w.script;
    // "OA" with the spindle running and a frame out: the door opens and one reply counts.
    gblnSpindleOn = true;
    SendFrame(StepFrame(1));
    p.feed("OA");
    EXPECT_TRUE(gblnDoorOpen && gblnDoorStopped);
    EXPECT_FALSE(gblnSpindleOn);
    EXPECT_EQ(gSpindleControls.lblStopped,
              QStringLiteral("Spindle has been stopped. Close door and Click the green button to restart."));
    EXPECT_FALSE(gSpindleControls.picSpindleStartEnabled);   // no start with the door open
    EXPECT_EQ(p.written, StepFrame(1));                      // no spindle record: the flag was already clear
    EXPECT_EQ(w.panel[QStringLiteral("door")], QStringLiteral("Door Open"));
    EXPECT_EQ(gstrReplies, QByteArray("A"));
    EXPECT_TRUE(blnGetReplies(true));

    // "SO": the door is handled open first, then shut, whatever the order of arrival.
    gintMode = 2;
    w.panelHistory.clear();
    p.feed("SO");
    EXPECT_FALSE(gblnDoorOpen);
    EXPECT_EQ(w.panelHistory[QStringLiteral("door")],
              (QStringList{QStringLiteral("Door Open"), QStringLiteral("Door Closed")}));
    EXPECT_TRUE(gSpindleControls.picSpindleStartEnabled);
    EXPECT_TRUE(gSpindleControls.mnuMStartEnabled);   // mode 2 and the start text enabled
    EXPECT_TRUE(gstrReplies.isEmpty());

    // Stray characters with no frame out are dropped; a lone reset answer passes.
    const std::pair<const char *, const char *> strays[] = {{"A", ""}, {"D", ""}, {"G", "G"}, {"AG", ""}, {"GO", "G"}};
    for (const auto &[in, kept] : strays) {
        gstrReplies.clear();
        gintBuffersOut = 0;
        p.feed(in);
        EXPECT_EQ(gstrReplies, QByteArray(kept)) << in;
    }
    p.feed("S");

    // "P", the spindle stopped by itself, when it was already stopped: no warning.
    gstrReplies.clear();
    gSpindleControls.picStoppedVisible = false;
    p.feed("P");
    EXPECT_FALSE(gSpindleControls.picStoppedVisible);

    // Line errors change nothing.
    for (int16_t ev : {1001, 1008, 1011})
        comSerial_OnComm(ev);
    EXPECT_TRUE(gstrReplies.isEmpty());
    EXPECT_FALSE(gblnDoorOpen);
}

TEST(Comms, DoorOpenedWhileCuttingStopsMotionAndRepliesD)
{
    LinkWorld w;
    w.goOnline();
    ControllerEmulator &e = w.emu->controller();
    SpindleStart();
    ASSERT_TRUE(gblnSpindleOn);
    e.openDoorAtStep(30);   // in the second frame, once the third has arrived
    SendFrame(StepFrame(16));
    SendFrame(StepFrame(16));
    EXPECT_TRUE(blnGetReplies(false));   // the first frame ran out: "A"
    SendFrame(StepFrame(16));            // waits behind the second
    EXPECT_TRUE(blnGetReplies(true));
    EXPECT_TRUE(gblnDoorOpen);
    EXPECT_FALSE(e.spindleOn());
    EXPECT_EQ(e.posX(), 30);             // nothing moved after the door opened
    EXPECT_EQ(e.droppedSteps(), 2 + 16);
    EXPECT_TRUE(w.skullTexts.isEmpty());
    EXPECT_EQ(gintBuffersOut, 0);
}

TEST(Comms, FaultsEndInTheTrapUnderTheProcedureName)
{
    struct Case {
        const char *module;
        const char *procedure;
        std::function<void(ScriptPort &)> act;
    } cases[] = {
        {"frmSplash", "comSerial_OnComm", [](ScriptPort &p) { p.feed("A"); }},
        {"frmSplash", "tmrOnline_Timer", [](ScriptPort &) { tmrOnline_Timer(); }},
        {"modComms", "blnControllerAvailable", [](ScriptPort &) { blnControllerAvailable(); }},
    };
    for (const Case &c : cases) {
        LinkWorld w;
        w.useScriptPort = true;
        w.goOnline();
        TrapRecorder trap;
        w.script->faultOnUse = true;
        EXPECT_THROW(c.act(*w.script), TrapEnded) << c.procedure;
        ASSERT_TRUE(trap.fired()) << c.procedure;
        EXPECT_EQ(trap.report(), ExpectedTrap(c.module, c.procedure, 52, QStringLiteral("Bad file name or number")));
    }
}
