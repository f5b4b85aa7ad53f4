// Spindle switching and the door interlock, against the emulator on a fake clock.
#include "link/link_world.h"

#include "link/spindle.h"

#include <gtest/gtest.h>

TEST(Spindle, StartAndStopSendOneRecordEachAndSetEveryControl)
{
    LinkWorld w;
    w.goOnline();
    gintMode = 2;
    SpindleStart();
    EXPECT_TRUE(gblnSpindleOn);
    EXPECT_TRUE(w.emu->controller().spindleOn());
    EXPECT_EQ(w.emu->written(), SpindleFrame(true));
    EXPECT_EQ(gintBuffersOut, 0);
    const SpindleControls &c = gSpindleControls;
    EXPECT_EQ(w.panel[QStringLiteral("spindle")], QStringLiteral("Spindle Rotating"));
    EXPECT_FALSE(c.picSpindleStartEnabled || c.mnuMStartEnabled);
    EXPECT_TRUE(c.picSpindleStopEnabled && c.mnuMStopEnabled);

    SpindleStop();
    EXPECT_FALSE(gblnSpindleOn);
    EXPECT_FALSE(w.emu->controller().spindleOn());
    EXPECT_EQ(w.emu->controller().spindleRecords(), 2);
    EXPECT_EQ(w.panel[QStringLiteral("spindle")], QStringLiteral("Spindle Stopped"));
    EXPECT_TRUE(c.picSpindleStartEnabled && c.mnuMStartEnabled);
    EXPECT_FALSE(c.picSpindleStopEnabled || c.mnuMStopEnabled);
}

TEST(Spindle, RefusedWithTheDoorOpen)
{
    LinkWorld w;
    w.configure = [](ControllerEmulator &e) { e.openDoor(); };
    w.goOnline();
    ASSERT_TRUE(gblnDoorOpen);
    SpindleStop();
    EXPECT_FALSE(gSpindleControls.picSpindleStartEnabled);
    EXPECT_FALSE(gSpindleControls.mnuMStartEnabled);
    const int64_t sent = w.emu->controller().framesReceived();
    gSpindleControls.picStoppedVisible = true;
    SpindleStart();
    // One frame goes out, the controller refuses, and only the warning is hidden.
    EXPECT_EQ(w.emu->controller().framesReceived(), sent + 1);
    EXPECT_EQ(w.emu->controller().spindleRefused(), 1);
    EXPECT_FALSE(gblnSpindleOn || gSpindleControls.picStoppedVisible || gSpindleControls.picSpindleStopEnabled);
    EXPECT_EQ(w.panel[QStringLiteral("spindle")], QStringLiteral("Spindle Stopped"));
    // The door closes: "S" opens the start control, and now it starts.
    w.emu->controller().closeDoor();
    w.run(5);
    EXPECT_FALSE(gblnDoorOpen);
    EXPECT_TRUE(gSpindleControls.picSpindleStartEnabled);
    SpindleStart();
    EXPECT_TRUE(w.emu->controller().spindleOn());
}

// Offline the start opens no port and only puts the play due; the door counts as closed.
TEST(Spindle, OfflineTheDoorCountsAsClosed)
{
    LinkWorld w;
    gblnOnline = false;
    gintBacklashY = 3;
    SetupComms();
    EXPECT_EQ(comSerial(), nullptr);
    EXPECT_EQ(gintPlayY, 3);
    gblnDoorOpen = true;
    SpindleStart();
    EXPECT_TRUE(gblnSpindleOn);
    EXPECT_FALSE(gblnDoorOpen);
    EXPECT_EQ(gintBuffersOut, 0);
    EXPECT_EQ(w.panel[QStringLiteral("spindle")], QStringLiteral("Spindle Rotating"));
}

TEST(Spindle, StoppedByItselfWhileRunning)
{
    LinkWorld w;
    w.goOnline();
    SpindleStart();
    w.emu->controller().stopSpindleByItself();
    w.run(5);
    EXPECT_FALSE(gblnSpindleOn);
    EXPECT_TRUE(gSpindleControls.picStoppedVisible);
    EXPECT_EQ(gSpindleControls.lblStopped,
              QStringLiteral("Spindle has been stopped automatically. Click the green button to restart."));
    EXPECT_EQ(w.emu->controller().spindleRecords(), 1);   // no stop record follows
}
