// Line stepping: the acceleration profile, the ramp, the index carried between moves and the
// tool correction. Whole step streams (climb and hold, run-on between moves, the stop before a
// reversal, a lead-axis change or a tool, feed 0, minor axes) are pinned by the golden files.
#include "nc_test_support.h"

#include "core/state.h"
#include "nc/commands.h"
#include "nc/linestep.h"
#include "nc/stepcode.h"

#include <cmath>

namespace {

class LineStep : public CompilerTest {};

int32_t timerFor(double mmPerMin)
{
    const double m = mmPerMin == 0 ? 12.0 : mmPerMin;
    const int32_t t = 65536 - static_cast<int32_t>(std::nearbyint(768000.0 / m));
    return t < 1536 ? 1536 : t;
}

// The timer of every step composed, in order: each record carries the one before it, and the
// last stands in glngStepTimer.
std::vector<int32_t> stepTimers(const std::vector<StepRecordView> &recs)
{
    std::vector<int32_t> t;
    for (size_t i = 1; i < recs.size(); ++i)
        t.push_back(recs[i].timer);
    t.push_back(glngStepTimer);
    return t;
}

} // namespace

// The ramp climbs strictly and ends exactly at the rapid speed: 120 entries at 500 mm/min,
// 0.24 entries per mm/min for every multiple of 25.
TEST_F(LineStep, ProfileEndsExactlyAtRapid)
{
    EXPECT_NEAR(gsngAccel(1), 45.64, 0.01);
    for (int rapid = 25; rapid <= 2000; rapid += 25) {
        gsngRapidSpeed = static_cast<float>(rapid);
        CreateAccelProfile(0.4f);
        ASSERT_EQ(gintAccelSteps, std::lround(rapid * 0.24)) << rapid;
        EXPECT_EQ(gsngAccel(gintAccelSteps), gsngRapidSpeed) << rapid;
        for (int k = 2; k <= gintAccelSteps; ++k)
            ASSERT_GT(gsngAccel(k), gsngAccel(k - 1)) << rapid << " entry " << k;
    }
}

// A rapid whose profile falls short runs off the table; a count beyond 16 bits overflows.
TEST_F(LineStep, RunsOffTheProfileOrPast16BitsIntoTheTrap)
{
    struct Row {
        float rapid, x;
        int number;
        const char *description;
    };
    // 0.24 * 510 = 122.4 entries: the last stays below 510. 460 mm are 33120 steps.
    for (const Row &r : {Row{510, 50, 9, "Subscript out of range"}, Row{500, 460, 6, "Overflow"}}) {
        SCOPED_TRACE(r.description);
        gsngRapidSpeed = r.rapid;
        CreateAccelProfile(0.4f);
        StepCapture cap;
        EXPECT_EQ(TrapReport([&] { BuffMakeline(1, r.x, 0, 0, r.rapid, true); }),
                  ExpectedTrap("modLines", "BuffMakeline", r.number, QString::fromLatin1(r.description)));
    }
}

TEST_F(LineStep, MoveBelowHalfAStepIsDropped)
{
    StepCapture cap;
    BuffMakeline(1, 1.0f / 144 - 0.0001f, -0.006f, 0.0069f, 100, false);
    EXPECT_TRUE(cap.records().empty());
    EXPECT_EQ(gsngCurX, 0.0f);
}

TEST_F(LineStep, ShortMovesMakeATriangle)
{
    // Worked by hand from the ramp rule: index per step, and where the index is left.
    struct Row {
        int steps;
        std::vector<int> index;
        int left;
    };
    const Row rows[] = {
        {10, {1, 2, 3, 4, 5, 5, 4, 3, 2, 1}, 0},
        {9, {1, 2, 3, 4, 5, 5, 4, 3, 2}, 1},  // odd: ends one entry above rest
        {1, {1}, 1},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(r.steps);
        ResetCompilerState();
        StepCapture cap;
        BuffMakeline(1, r.steps / 72.0f, 0, 0, 300, false);
        std::vector<int32_t> expected;
        for (int k : r.index)
            expected.push_back(timerFor(gsngAccel(k)));
        EXPECT_EQ(stepTimers(cap.records()), expected);
        EXPECT_EQ(gintAccelIndex, r.left);
    }
}

TEST_F(LineStep, ToolCorrectionMovesZFirstAndKeepsTheProgrammedZ)
{
    StepCapture cap;
    gsngCurZ = 5.0f;
    gsngOldToolOffset = 1.0f;
    gsngToolOffset = 3.5f;
    gblnToolOffsetPending = true;
    BuffMakeline(2, 1, 0, 5, 300, false);  // command 1 would not count: -glngFirstMove
    const auto recs = cap.records();
    ASSERT_EQ(recs.size(), 180u + 72u);
    for (size_t i = 0; i < recs.size(); ++i)
        ASSERT_EQ(recs[i].dz(), i < 180 ? 1 : 0) << i;
    EXPECT_EQ(gsngCurZ, 5.0f);
    EXPECT_EQ(glngPosZ, 180);
}

TEST_F(LineStep, ZLineRampsSymmetricallyAndTakesUpThePlayDownward)
{
    StepCapture cap;
    gintBacklashZ = 2;
    gintPlayZ = 2;
    gintLastDirZ = -1;
    BuffMakeZline(2, 3 / 72.0f, 300);
    const auto recs = cap.records();
    ASSERT_EQ(recs.size(), 2u + 3u + 2u);
    const int dz[] = {1, 1, 1, 1, 1, -1, -1};
    for (size_t i = 0; i < recs.size(); ++i)
        EXPECT_EQ(recs[i].dz(), dz[i]) << i;
    EXPECT_EQ(gintPlayZ, 2);
    EXPECT_EQ(glngPosZ, 3);

    // A single step lies in the second half and goes at the feed.
    ResetCompilerState();
    StepCapture cap2;
    BuffMakeZline(1, -1 / 72.0f, 300);
    EXPECT_EQ(cap2.records().size(), 1u);
    EXPECT_EQ(glngStepTimer, timerFor(300));
}
