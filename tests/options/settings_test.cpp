// The settings dialog on the real form: what it refuses, what it stores and in which case,
// the password on its page and on saving, the pages, and the ports.
#include "core/msgbox.h"
#include "core/store.h"
#include "core/ui_fixture.h"
#include "link/comms.h"
#include "link/link_screen.h"
#include "options/frm_pass.h"
#include "options/frm_settings.h"
#include "options/password.h"
#include "platform/serial_port.h"

#include <unistd.h>

#include "link/frm_rate_test.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

namespace {

class Settings : public UiTest {};

// Answers frmPass with each text in turn, every few milliseconds; the word "Cancel" clicks Cancel.
struct PasswordTyper {
    explicit PasswordTyper(QStringList tries) : answers(std::move(tries))
    {
        QObject::connect(&timer, &QTimer::timeout, [this] {
            if (!frmPassLoaded() || !frmPass()->isVisible() || !frmPass()->cmdOk->isEnabled() || answers.isEmpty())
                return;
            const QString next = answers.takeFirst();
            oopsBefore << frmPass()->lblOops->isVisible();
            if (next == QLatin1String("Cancel"))
                return frmPass()->cmdCancel_Click();
            frmPass()->txtPass->setText(next);
            frmPass()->cmdOk_Click();
        });
        timer.start(2);
    }
    QStringList answers;
    QList<bool> oopsBefore;   // lblOops as each try found it
    QTimer timer;
};

TEST_F(Settings, ValidationTable)
{
    struct Case {
        const char *rapid, *playX;
        int fault;            // 0: no fault; else the fault that ends in the trap
        const char *stored;   // RapidSpeed afterwards (BacklashX then "0"); null: refused with the message
    } cases[] = {
        {"abc", "0", 0, nullptr}, {"99.4", "0", 0, nullptr}, {"700.9", "0", 0, nullptr},
        {"99.6", "0", 0, "99"},   // the range test rounds, the store takes the integer part
        {"700", "0", 0, "700"},   {"100", "abc", 0, "100"}, {"99999", "0", 6, nullptr}, {"450", "70000", 6, nullptr},
    };
    for (const Case &c : cases) {
        store->writeRaw("");
        ResetSharedState();
        ReadStartSettings();
        boxes->clear();
        FrmSettings *s = frmSettings();
        s->txtRapid->setText(QString::fromLatin1(c.rapid));
        s->txtPlay[0]->setText(QString::fromLatin1(c.playX));
        if (c.fault) {
            TrapRecorder trap;
            EXPECT_THROW(s->blnSaveSettings(), TrapEnded) << c.rapid;
            EXPECT_EQ(trap.report(), ExpectedTrap("frmSettings", "blnSaveSettings", c.fault, vb::faultDescription(c.fault)));
        } else if (!c.stored) {
            EXPECT_FALSE(s->blnSaveSettings()) << c.rapid;
            ASSERT_EQ(boxes->shown().size(), 1u) << c.rapid;
            EXPECT_EQ(boxes->last().text, QStringLiteral("Rapid Speed must be from 100 to 700 mm/min"));
            EXPECT_EQ(s->intTabCurrent, 2);
        } else {
            EXPECT_TRUE(s->blnSaveSettings()) << c.rapid;
            EXPECT_EQ(StoredText("RapidSpeed"), QString::fromLatin1(c.stored)) << c.rapid;
            EXPECT_EQ(StoredText("BacklashX"), QStringLiteral("0")) << c.rapid;
            continue;
        }
        // Refused: nothing at all reached the store or the settings.
        EXPECT_EQ(store->readRaw().trimmed(), QByteArray()) << c.rapid;
        EXPECT_EQ(gsngRapidSpeed, 500.0f);
        Unload(s);
    }
}

TEST_F(Settings, NoChangeStoresOnlySetAndAsksNoPassword)
{
    gstrPassword = strEncrypt(QStringLiteral("pw"));
    EXPECT_TRUE(frmSettings()->blnSaveSettings());
    EXPECT_FALSE(frmPassLoaded());
    EXPECT_EQ(store->readRaw().trimmed(), QByteArray("[General]\nSet=Yes"));
}

TEST_F(Settings, PasswordSetOnThePageThenProvedOnALaterVisit)
{
    FrmSettings *s = frmSettings();
    s->show();
    s->SelectTab(2);
    s->SelectTab(4);
    PumpUntil([] { return !frmSettings()->tmrPassword->isActive(); });
    // A confirmation that differs: the boxes empty, nothing set.
    s->txtPass[0]->setText(QStringLiteral("Ab1"));
    s->txtPass[1]->setText(QStringLiteral("ab1"));
    s->cmdPswd_Click();
    EXPECT_TRUE(s->lblOops->isVisible());
    EXPECT_EQ(gstrPassword, QStringLiteral("None"));
    s->txtPass[0]->setText(QStringLiteral("Ab1"));
    s->txtPass[1]->setText(QStringLiteral("Ab1"));
    s->cmdPswd_Click();
    EXPECT_EQ(StoredText("Password"), strEncrypt(QStringLiteral("Ab1")));
    EXPECT_EQ(s->intTabCurrent, 2);   // back where the operator came from
    // Set on this visit: the save that follows doesn't ask.
    s->chkKeepFiles->setChecked(false);
    EXPECT_TRUE(s->blnSaveSettings());
    EXPECT_FALSE(frmPassLoaded());
    Unload(s);

    // A later visit: a wrong try shows "Oops! try again ...", the right one saves.
    s = frmSettings();
    s->chkWoodworker->setChecked(true);
    {
        PasswordTyper op({QStringLiteral("ab1"), QStringLiteral("Ab1")});
        EXPECT_TRUE(s->blnSaveSettings());
        EXPECT_EQ(op.oopsBefore, (QList<bool>{false, true}));
    }
    EXPECT_EQ(StoredText("Woodworker"), QStringLiteral("Yes"));
    // A wrong try, then Cancel: nothing changes anywhere, and the buttons come back.
    s->chkShowTime->setChecked(false);
    {
        PasswordTyper op({QStringLiteral("x"), QStringLiteral("Cancel")});
        EXPECT_FALSE(s->blnSaveSettings());
    }
    EXPECT_TRUE(gblnShowTime);
    EXPECT_EQ(StoredText("ShowTime"), QStringLiteral("Yes"));
    Unload(s);
}

TEST_F(Settings, ThePasswordPageAsksAndCancelGoesBackAndEmptyBoxesRemoveIt)
{
    gstrPassword = strEncrypt(QStringLiteral("k"));
    FrmSettings *s = frmSettings();
    s->show();
    s->SelectTab(3);
    {
        PasswordTyper op({QStringLiteral("Cancel")});
        s->SelectTab(4);
        PumpUntil([s] { return s->intTabCurrent == 3 && !frmPassLoaded(); });
    }
    EXPECT_EQ(s->intTabCurrent, 3);
    {
        PasswordTyper op({QStringLiteral("k")});
        s->SelectTab(4);
        PumpUntil([s] { return !frmPassLoaded() && !s->tmrPassword->isActive(); });
    }
    EXPECT_EQ(s->intTabCurrent, 4);
    // Both boxes empty: removal, asked first.
    boxes->answer(vbCancel);
    s->cmdPswd_Click();
    EXPECT_EQ(gstrPassword, strEncrypt(QStringLiteral("k")));
    s->cmdPswd_Click();   // the scripted box answers OK
    EXPECT_EQ(boxes->last().text, QStringLiteral("This will remove password protection!"));
    EXPECT_EQ(StoredText("Password"), QStringLiteral("None"));
}

TEST_F(Settings, PortsFromTheStoreGoingOnlineAndOffline)
{
    QStringList online;
    linkHooks().setPanel = [&](const QString &k, const QString &t) {
        if (k == QLatin1String("online"))
            online << t;
    };
    RegistryValuePut(QStringLiteral("Comport"), QStringLiteral("COM2"));
    qputenv("BRANTOK_COM3", "emulator");
    FrmSettings *s = frmSettings();
    EXPECT_TRUE(s->optComms[1]->isChecked());
    EXPECT_EQ(s->lblDevice[2]->text(), QStringLiteral("built-in emulator"));
    // Online on COM3 sets the link up; the rate test may then be used.
    s->chkOnline->click();
    EXPECT_TRUE(s->cmdRateTest->isEnabled());
    s->optComms[2]->setChecked(true);
    EXPECT_TRUE(s->blnSaveSettings());
    ASSERT_TRUE(comSerial() && comSerial()->isOpen());
    EXPECT_EQ(StoredText("Comport"), QStringLiteral("COM3"));
    Unload(s);
    // Offline closes the port and sets nothing up.
    s = frmSettings();
    SerialPort *port = comSerial();
    s->chkOnline->click();
    EXPECT_TRUE(s->blnSaveSettings());
    EXPECT_FALSE(port->isOpen());
    EXPECT_EQ(online, (QStringList{"Working Online", "Working Offline"}));
    qunsetenv("BRANTOK_COM3");
    ResetComms();
    Unload(s);
    // A port that has no button ends in the trap when the dialog opens.
    RegistryValuePut(QStringLiteral("Comport"), QStringLiteral("COM7"));
    EXPECT_EQ(TrapReport([] { frmSettings(); }),
              ExpectedTrap("frmSettings", "Form_Load", 340, "Control array element '6' doesn't exist"));
}

TEST(SerialPorts, ADeviceWithoutPermissionNamesItAndTheDialoutGroup)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "root may open any device";
    QTemporaryDir dir;
    const QString dev = dir.path() + QStringLiteral("/ttyUSB9");
    QFile f(dev);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.close();
    f.setPermissions(QFileDevice::Permissions());
    const QString text = SerialOpenFailureText(dev, QStringLiteral("Permission error"));
    EXPECT_TRUE(text.startsWith(QStringLiteral("Permission denied on ") + dev)) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("'dialout' group")));
    EXPECT_EQ(SerialOpenFailureText(QStringLiteral("/dev/ttyS9"), QStringLiteral("No such file or directory")),
              QStringLiteral("No such file or directory (/dev/ttyS9)"));
}

} // namespace
