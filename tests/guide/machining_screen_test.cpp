// The spindle controls on the main window follow the link's state; clicks only ask.
#include "guide/stream_world.h"

#include "core/frm_main.h"
#include "link/machining_screen.h"
#include "link/spindle.h"

#include <QAction>
#include <QCoreApplication>
#include <QMouseEvent>

#include <gtest/gtest.h>

TEST(MachiningScreen, SpindleControlsFollowTheSpindleAndTheDoor)
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
    UnloadForms();
}
