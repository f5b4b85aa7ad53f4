// The start and the stop: Main's order, the first run, the window's place, Shutdown once.
#include "core/frm_about.h"
#include "options/frm_settings.h"
#include "core/frm_splash.h"
#include "core/store.h"
#include "core/window_hook.h"
#include "link/comms.h"
#include "ui_fixture.h"

#include <QTemporaryDir>
#include <QTimer>

namespace {

class Start : public UiTest {};

// Answers the first-run dialogs as the operator would: Ok on the welcome, then Save or
// Cancel on the settings.
class FirstRunOperator {
public:
    explicit FirstRunOperator(bool save) : m_save(save)
    {
        m_timer.setInterval(5);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { act(); });
        m_timer.start();
    }
    bool welcomeShown = false;
    QStringList order;

private:
    void act()
    {
        if (frmAboutLoaded() && frmAbout()->isVisible()) {
            welcomeShown = frmAbout()->picFirst->isVisible();
            order << QStringLiteral("about");
            frmAbout()->cmdOk_Click();
        } else if (frmSettingsLoaded() && frmSettings()->isVisible() && frmSettings()->cmdOk->isEnabled()) {
            order << QStringLiteral("settings");
            if (m_save)
                frmSettings()->cmdOk_Click();
            else
                frmSettings()->cmdCancel_Click();
        }
    }
    bool m_save;
    QTimer m_timer;
};

// A cancelled first run comes again; a saved one writes only "Set" and ends it; any other
// text than "No" is no first run.
TEST_F(Start, FirstRunShowsTheWelcomeThenTheSettingsUntilTheyAreSaved)
{
    for (bool save : {false, false, true}) {
        FirstRunOperator op(save);
        SetCommandLine(QStringLiteral("/parts/ignored.brx"));
        MainProcess();
        EXPECT_EQ(op.order, (QStringList{"about", "settings"})) << save;
        EXPECT_TRUE(op.welcomeShown);
        EXPECT_EQ(StoredText("Set", "No"), QLatin1String(save ? "Yes" : "No"));
    }
    EXPECT_EQ(StoredText("Online"), QStringLiteral("absent"));
    SetCommandLine(QString());
    for (const char *set : {"Yes", ""}) {
        RegistryValuePut(QStringLiteral("Set"), QString::fromLatin1(set));
        FirstRunOperator op(true);
        MainProcess();
        EXPECT_TRUE(op.order.isEmpty()) << set;
    }
}

TEST_F(Start, MainReadsTheSettingsLoadsTheFormsAndArmsTheFirstTick)
{
    QTemporaryDir runtime;
    qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
    store->writeRaw("[General]\nSet=Yes\nRapidSpeed=750\nOnline=No\nBacklashZ=3\nToolCount=1\n"
                    "Tool01=4|End mill|6.000|-2000.000\n");
    Main();
    ASSERT_TRUE(frmSplashLoaded() && frmMainLoaded());
    EXPECT_TRUE(frmSplash()->tmrOnline->isActive());
    EXPECT_EQ(gintToolCount, 1);
    // The splash is first in the collection, the main window after it.
    EXPECT_EQ(FormIndex(frmSplash()), FormIndex(frmMain()) - 1);
    // The first tick: the main window up, the splash hidden, the menu 10 ms later.
    tmrShow_Timer();
    EXPECT_TRUE(frmMain()->isVisible() && !frmSplash()->isVisible());
    PumpUntil([] { return gintMode == 1; });
    EXPECT_EQ(gintMode, 1);
}

TEST_F(Start, WindowPlaceComesFromTheStoreInTwipsAndIsSavedOnUnloadUnlessMinimised)
{
    store->writeRaw("[General]\nMainLeft=1500\nMainTop=750\nMainWidth=13500\nMainHeight=9750\n");
    FrmMain *f = frmMain();
    EXPECT_EQ(f->geometry(), QRect(100, 50, 900, 650));
    f->move(120, 60);
    f->resize(960, 700);
    Unload(f);
    EXPECT_EQ((QStringList{StoredText("MainLeft"), StoredText("MainTop"), StoredText("MainWidth")}),
              (QStringList{"1800", "900", "14400"}));
    // A minimised window keeps the place of the run before.
    f = frmMain();
    f->show();
    f->move(300, 300);
    f->setWindowState(Qt::WindowMinimized);
    Unload(f);
    EXPECT_EQ(StoredText("MainLeft"), QStringLiteral("1800"));
}

TEST_F(Start, EmptyDamagedOrOffScreenPlacesFallBackToTheDefault)
{
    const QRect def(1000 / 15, 1000 / 15, 800, 600);
    EXPECT_EQ(frmMain()->geometry(), def);   // an empty store
    const std::pair<const char *, bool> cases[] = {
        {"MainLeft=1e20\nMainTop=-1e20\n", true},
        {"MainLeft=900000\nMainTop=900000\n", true},
        {"MainLeft=abc\nMainTop=\n", false},   // text that isn't a number is 0: the top left corner
    };
    for (const auto &[ini, isDefault] : cases) {
        store->writeRaw(QByteArray("[General]\n") + ini);
        EXPECT_EQ(StoredWindowPlace(15) == def, isDefault) << ini;
    }
}

TEST_F(Start, ShutdownUnloadsEveryFormAndRunsOnceAndTheCloseBoxAndExitMeanIt)
{
    int ends = 0;
    uiHooks().endProcess = [&](int code) {
        ++ends;
        EXPECT_EQ(code, 0);
    };
    frmSplash();
    frmMain();
    frmAbout();
    Shutdown();
    EXPECT_EQ(ends, 1);
    EXPECT_TRUE(Forms().isEmpty());
    // The position was saved on the way (the window wasn't minimised).
    EXPECT_NE(StoredText("MainLeft"), QStringLiteral("absent"));
    frmMain();
    Shutdown();   // a second entry returns at once
    EXPECT_EQ(ends, 1);
    // The close box and the menu's Exit mean Shutdown.
    ResetShutdown();
    FrmMain *f = frmMain();
    f->show();
    f->close();
    EXPECT_EQ(ends, 2);
    ResetShutdown();
    frmMain()->MenuAction(QStringLiteral("Exit"));
    EXPECT_EQ(ends, 3);
}

} // namespace
