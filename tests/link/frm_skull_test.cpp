// The alarm window as the operator sees it: texts, buttons, the "Work Offline" tick.
#include "core/state.h"
#include "core/store.h"
#include "link/comms.h"
#include "link/frm_skull.h"
#include "link/link_screen.h"
#include "support/test_support.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

namespace {

// Runs `act` on the alarm window once it is up.
void WhenSkullIsUp(std::function<void(FrmSkull &)> act)
{
    QTimer::singleShot(0, [act] {
        auto *dlg = qobject_cast<FrmSkull *>(QApplication::activeModalWidget());
        ASSERT_NE(dlg, nullptr);
        act(*dlg);
    });
}

class FrmSkullTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ResetSharedState();
        ResetComms();
        ResetLinkHooks();
        InstallLinkUi(nullptr);
    }
    void TearDown() override
    {
        ResetComms();
        ResetLinkHooks();
        SetSerialDeviceFactory({});
        ResetSharedState();
    }
    TempStore store;
};

} // namespace

TEST_F(FrmSkullTest, TheAlarmShowsItsTextAndWorkOfflineGoesOffline)
{
    QString panelOnline;
    linkHooks().setPanel = [&](const QString &k, const QString &t) {
        if (k == QStringLiteral("online"))
            panelOnline = t;
    };
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
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("Online"), QString()), QStringLiteral("No"));
    EXPECT_EQ(panelOnline, QStringLiteral("Working Offline"));
    EXPECT_TRUE(tmrOnline().isActive());
}

TEST_F(FrmSkullTest, CancelSetsTheCancelFlag)
{
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
