// The rate test: the walk back on scripted Test Factors, and whole runs against the
// controller emulator on the fake clock (seven minutes of test in a few seconds).
#include "core/ui_fixture.h"
#include "link/frm_rate_test.h"
#include "link/link_world.h"
#include "options/frm_settings.h"

#include <QTimer>

#include <gtest/gtest.h>

namespace {

TEST(RateTest, WalkBackFromTheTopStopsAtTheFirstPassAndNeverBelow300)
{
    using R = std::array<QString, kRatePresets>;
    struct Case {
        R results;
        int rate;
    } cases[] = {
        {{"20", "15", "12", "9", "10", "9", "3"}, 500},    // a failure below the pass doesn't matter
        {{"5", "4", "3", "2", "1", "0", "0"}, 300},        // 300 even when it failed
        {{"10", "10", "10", "9", "9", "9", "9"}, 400},     // 10 passes, 9 fails
        {{"30", "", "", "", "", "", ""}, 300},             // no result reads as 0
        {{"30", "30", "30", "30", "30", "30", "1000000"}, 600},   // no reply ever came
    };
    for (const Case &c : cases)
        EXPECT_EQ(intPresetRate(intRecommendedPreset(c.results)), c.rate) << c.results[6].toStdString();
}

struct RateRun {
    LinkWorld world;
    FrmRateTest *form = nullptr;
    int16_t recommended = 0;
    QStringList results;
    QList<bool> ticks;

    RateRun()
    {
        world.goOnline();
        form = frmRateTest();
        form->onRecommended = [this](int16_t r) {
            recommended = r;
            for (int i = 0; i < kRatePresets; ++i) {
                results << form->lblResult[i]->text();
                ticks << form->imgTick[i]->isVisible();
            }
        };
    }
    ~RateRun() { UnloadEveryForm(); }
};

TEST(RateTest, AWholeRunRecommendsTheFastestPassAndMovesNothing)
{
    RateRun run;
    run.form->show();
    const int64_t startNs = run.world.clock.nsecs();
    run.form->cmdStart_Click();
    // Seven presets of a minute each (and the resets).
    EXPECT_GE(run.world.clock.nsecs() - startNs, int64_t(420) * 1000000000);
    EXPECT_EQ(run.world.boxes.last().text, QStringLiteral("Recommended Rapid Rate is 600 mm/min"));
    EXPECT_EQ(run.recommended, 600);
    ASSERT_EQ(run.results.size(), kRatePresets);
    for (int i = 0; i < kRatePresets; ++i) {
        EXPECT_GE(run.results[i].toInt(), 10) << i;
        EXPECT_TRUE(run.ticks[i]) << i;
    }
    // Faster presets leave the PC less time between requests.
    EXPECT_GT(run.results[0].toInt(), run.results[6].toInt());
    ControllerEmulator &c = run.world.emu->controller();
    EXPECT_EQ(c.posX() + c.posY() + c.posZ(), 0);
    // The last frame sent is the 600 mm/min one: 16 records of 65536 - 1280 ticks.
    EXPECT_TRUE(run.world.emu->written().endsWith(RateTestFrame(600.0f)));
    EXPECT_EQ(RateTestFrame(600.0f).mid(0, 4), QByteArray("\x31\x00\x00\xFB", 4));
}

TEST(RateTest, CancelDuringTheFirstPresetSaysSoAndRecommendsNothing)
{
    RateRun run;
    FrmRateTest *f = run.form;
    QTimer::singleShot(0, f, [f] { f->cmdCancel_Click(); });
    f->cmdStart_Click();
    EXPECT_EQ(run.world.boxes.last().text, QStringLiteral("Rate Test cancelled"));
    EXPECT_EQ(run.recommended, 0);
}

TEST(RateTest, FromTheSettingsDialogTheRecommendationLandsInTheRapidBox)
{
    LinkWorld world;
    ReadStartSettings();
    world.goOnline();
    FrmSettings *s = frmSettings();
    s->txtRapid->setText(QStringLiteral("350"));
    QTimer op;
    QObject::connect(&op, &QTimer::timeout, [] {
        if (frmRateTestLoaded() && frmRateTest()->isVisible() && frmRateTest()->cmdStart->isEnabled())
            frmRateTest()->cmdStart_Click();
    });
    op.start(5);
    s->cmdRateTest_Click();
    // The settings were stored before the test; its result waits in the box to be saved.
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("RapidSpeed"), QString()), QStringLiteral("350"));
    EXPECT_EQ(s->txtRapid->text(), QStringLiteral("600"));
    UnloadEveryForm();
}

} // namespace
