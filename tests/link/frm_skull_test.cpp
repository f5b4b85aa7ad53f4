// The alarm window as the operator sees it: texts, buttons, the "Work Offline" tick.
#include "link/link_world.h"

#include "link/frm_skull.h"

#include <QApplication>
#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

// A link world whose alarm is the real window.
struct SkullWorld : LinkWorld {
    SkullWorld() { InstallLinkUi(nullptr); }
    ~SkullWorld() { SetSerialDeviceFactory({}); }
};

// Runs `act` on the alarm window once it is up.
void WhenSkullIsUp(std::function<void(FrmSkull &)> act)
{
    QTimer::singleShot(0, [act] {
        auto *dlg = qobject_cast<FrmSkull *>(QApplication::activeModalWidget());
        ASSERT_NE(dlg, nullptr);
        act(*dlg);
    });
}

} // namespace

TEST(FrmSkull, TheAlarmShowsItsTextAndWorkOfflineGoesOffline)
{
    SkullWorld w;
    gblnOnline = true;
    bool seen = false;
    WhenSkullIsUp([&](FrmSkull &dlg) {
        seen = true;
        EXPECT_TRUE(dlg.lblSkull->text().startsWith(QStringLiteral("There is a problem with the hardware.\n\n")));
        EXPECT_FALSE(dlg.cmdCancel->isVisible());
        QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(&dlg, &esc);     // does nothing
        EXPECT_TRUE(dlg.isVisible());
        dlg.chkOffline->setChecked(true);
        dlg.cmdOk->click();
    });
    ShowAlarm();
    EXPECT_TRUE(seen);
    EXPECT_FALSE(gblnOnline);
    EXPECT_EQ(w.panel[QStringLiteral("online")], QStringLiteral("Working Offline"));
}

TEST(FrmSkull, CancelSetsTheCancelFlag)
{
    SkullWorld w;
    frmSkullLoad();
    frmSkull.lblSkull = QStringLiteral("Line one\r\nLine two");
    WhenSkullIsUp([](FrmSkull &dlg) {
        EXPECT_EQ(dlg.lblSkull->text(), QStringLiteral("Line one\nLine two"));
        EXPECT_TRUE(dlg.cmdCancel->isVisible());
        dlg.cmdCancel->click();
    });
    frmSkullShowModal();
    EXPECT_EQ(frmSkull.Tag, QStringLiteral("Cancel"));
    EXPECT_TRUE(gblnCancel);
    frmSkullUnload();
}
