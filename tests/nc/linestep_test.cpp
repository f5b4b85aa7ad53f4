// Line stepping: the acceleration profile, the ramp, the look-ahead for the end speed, the
// early braking point, the index carried between moves and the tool correction.
#include "nc_test_support.h"

#include "core/state.h"
#include "nc/commands.h"
#include "nc/linestep.h"
#include "nc/stepcode.h"

#include <cmath>

namespace {

class LineStep : public ::testing::Test {
protected:
    void SetUp() override { ResetCompilerState(); }
    void TearDown() override { ResetCompilerState(); }
};

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

// A command table of straight moves (type, X, Y, Z, feed), as the reader leaves it.
void SetCommands(const std::vector<CommandRecord> &cmds)
{
    gtypCommands.Erase();
    for (const CommandRecord &c : cmds)
        gtypCommands.Append(c);
    glngCommandCount = static_cast<int32_t>(cmds.size());
}

CommandRecord Line(float x, float y, float z, float feed)
{
    CommandRecord c;
    c.intType = kCmdLine;
    c.sngX = x;
    c.sngY = y;
    c.sngZ = z;
    c.sngValue = feed;
    return c;
}

} // namespace

TEST_F(LineStep, ProfileForRapid500)
{
    EXPECT_EQ(gintAccelSteps, 120);
    EXPECT_NEAR(gsngAccel(1), 45.64, 0.01);
    EXPECT_EQ(gsngAccel(120), 500.0f);
    for (int k = 2; k <= 120; ++k)
        EXPECT_GT(gsngAccel(k), gsngAccel(k - 1));
}

TEST_F(LineStep, ProfileEndsExactlyAtRapidForMultiplesOf25)
{
    for (int rapid = 25; rapid <= 2000; rapid += 25) {
        gsngRapidSpeed = static_cast<float>(rapid);
        CreateAccelProfile(0.4f);
        EXPECT_EQ(gintAccelSteps, std::lround(rapid * 0.24)) << rapid;
        EXPECT_EQ(gsngAccel(gintAccelSteps), gsngRapidSpeed) << rapid;
    }
}

TEST_F(LineStep, RapidWhoseProfileFallsShortRunsOffTheTableIntoTheTrap)
{
    gsngRapidSpeed = 510.0f;  // 0.24 * 510 = 122.4: the last entry stays below 510
    CreateAccelProfile(0.4f);
    ASSERT_LT(gsngAccel(gintAccelSteps), 510.0f);
    StepCapture cap;
    TrapRecorder trap;
    EXPECT_THROW(BuffMakeline(1, 50, 0, 0, 510, true), TrapEnded);
    EXPECT_EQ(trap.report(), ExpectedTrap("modLines", "BuffMakeline", 9, QStringLiteral("Subscript out of range")));
}

TEST_F(LineStep, MoveBelowHalfAStepIsDropped)
{
    StepCapture cap;
    BuffMakeline(1, 1.0f / 144 - 0.0001f, -0.006f, 0.0069f, 100, false);
    EXPECT_TRUE(cap.records().empty());
    EXPECT_EQ(gsngCurX, 0.0f);
    EXPECT_EQ(gsngCurY, 0.0f);
    EXPECT_EQ(gsngCurZ, 0.0f);
}

TEST_F(LineStep, LongRapidClimbsHoldsAndStopsOnItsLastStep)
{
    StepCapture cap;
    BuffMakeline(1, 20, 0, 0, 500, true);  // 1440 steps, nothing after it: ends at rest
    const auto recs = cap.records();
    ASSERT_EQ(recs.size(), 1440u);
    const auto t = stepTimers(recs);
    EXPECT_EQ(t.front(), timerFor(gsngAccel(1)));
    EXPECT_EQ(t[119], 64000);
    EXPECT_EQ(t[720], 64000);
    EXPECT_EQ(t.back(), timerFor(gsngAccel(1)));
    EXPECT_EQ(std::vector<int32_t>(t.rbegin(), t.rend()), t);  // the braking mirrors the climb
    EXPECT_EQ(gintAccelIndex, 0);
    EXPECT_EQ(gsngCurX, 20.0f);
    // Steps at exactly the rapid speed on one axis carry the rapid bit.
    EXPECT_EQ(recs[700].code & 1, 1);
    EXPECT_EQ(recs[3].code & 1, 0);
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
        {2, {1, 1}, 0},
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

TEST_F(LineStep, MovesInLineRunOnWithoutAStop)
{
    StepCapture cap;
    SetCommands({Line(10, 0, 0, 300), Line(20, 0, 0, 200)});
    BuffMakeline(1, 10, 0, 0, 300, false);
    // End speed min(300, 200): braking starts at the first entry at or above 200 (entry 20,
    // 204 mm/min) and ends there; the index is left standing at 19.
    EXPECT_EQ(gintAccelIndex, 19);
    EXPECT_EQ(glngStepTimer, timerFor(gsngAccel(20)));
    const auto t = stepTimers(cap.records());
    // The climb passes the feed by one entry (44: 302.8 mm/min), then holds at 300.
    EXPECT_EQ(t[43], timerFor(gsngAccel(44)));
    EXPECT_EQ(t[44], timerFor(300));
    // The next move starts from 198.9 mm/min, not from rest.
    BuffMakeline(2, 20, 0, 0, 200, false);
    const auto t2 = stepTimers(cap.records());
    EXPECT_EQ(t2[720], timerFor(gsngAccel(20)));
    EXPECT_EQ(t2[721], timerFor(200));
    EXPECT_EQ(gintAccelIndex, 0);
}

TEST_F(LineStep, ReversalLeadChangeOrToolNextStop)
{
    CommandRecord tool;
    tool.intType = kCmdTool;
    tool.sngValue = 1;
    tool.sngX = 10;  // a T holds the modal coordinates: no distance
    tool.sngY = 0;
    tool.sngZ = 0;
    const std::vector<CommandRecord> nexts[] = {
        {Line(10, 0, 0, 300), Line(5, 0, 0, 300)},   // reversal on the lead axis
        {Line(10, 0, 0, 300), Line(10, 20, 0, 300)}, // lead axis changes to Y
        {Line(10, 0, 0, 300), Line(20, 15, 0, 300)}, // Y leads the next move (15 > 10)
        {Line(10, 0, 0, 300), tool},
    };
    for (const auto &cmds : nexts) {
        ResetCompilerState();
        StepCapture cap;
        SetCommands(cmds);
        BuffMakeline(1, 10, 0, 0, 300, false);
        EXPECT_EQ(gintAccelIndex, 0);
        EXPECT_EQ(glngStepTimer, timerFor(gsngAccel(1)));
    }
}

TEST_F(LineStep, FeedZeroGoesAtTheFloor)
{
    StepCapture cap;
    BuffMakeline(1, 1, 1, 0, 0, false);
    const auto t = stepTimers(cap.records());
    ASSERT_EQ(t.size(), 72u);
    for (int32_t v : t)
        EXPECT_EQ(v, 1536);
    EXPECT_EQ(gintAccelIndex, 0);
}

TEST_F(LineStep, MinorAxesFollowTheirSlopeAndTheMoveEndsOnTheGrid)
{
    StepCapture cap;
    BuffMakeline(1, 1.0f, 0.25f, -0.1f, 200, false);  // 72, 18, 7 (7.2 rounded) steps
    const auto recs = cap.records();
    ASSERT_EQ(recs.size(), 72u);
    int y = 0, z = 0;
    for (size_t i = 0; i < recs.size(); ++i) {
        EXPECT_EQ(recs[i].dx(), 1);
        y += recs[i].dy();
        z += recs[i].dz();
        // Each minor axis stands where its slope times the lead count rounds to.
        EXPECT_EQ(y, std::lround(std::nearbyint(18.0 / 72 * (i + 1)))) << i;
        EXPECT_EQ(z, static_cast<int>(std::nearbyint(static_cast<double>(static_cast<float>(-7.2 / 72)) * (i + 1))))
            << i;
    }
    EXPECT_EQ(y, 18);
    EXPECT_EQ(z, -7);
    EXPECT_EQ(gsngCurX, 1.0f);
    EXPECT_EQ(gsngCurY, 0.25f);
    EXPECT_EQ(gsngCurZ, static_cast<float>(-7 / 72.0));  // the grid point, not -0.1
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
    for (size_t i = 0; i < 180; ++i)
        EXPECT_EQ(recs[i].dz(), 1);
    EXPECT_EQ(recs[180].dx(), 1);
    EXPECT_EQ(recs[180].dz(), 0);
    EXPECT_FALSE(gblnToolOffsetPending);
    EXPECT_EQ(gsngCurZ, 5.0f);
    EXPECT_EQ(glngPosZ, 180);

    // Equal offsets: the correction is a zero move, which is no move.
    ResetCompilerState();
    StepCapture cap2;
    gblnToolOffsetPending = true;
    gsngOldToolOffset = gsngToolOffset = 2.0f;
    BuffMakeline(1, 1, 0, 0, 300, false);
    EXPECT_EQ(cap2.records().size(), 72u);
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
    EXPECT_EQ(gintLastDirZ, -1);
    EXPECT_EQ(gintPlayZ, 2);
    EXPECT_EQ(gsngCurZ, 3 / 72.0f);
    EXPECT_EQ(glngPosZ, 3);

    // A single step lies in the second half and goes at the feed.
    ResetCompilerState();
    StepCapture cap2;
    BuffMakeZline(1, -1 / 72.0f, 300);
    EXPECT_EQ(cap2.records().size(), 1u);
    EXPECT_EQ(glngStepTimer, timerFor(300));
}

TEST_F(LineStep, CountBeyond16BitsGoesToTheTrap)
{
    StepCapture cap;
    TrapRecorder trap;
    EXPECT_THROW(BuffMakeline(1, 460, 0, 0, 500, true), TrapEnded);  // 33120 steps
    EXPECT_EQ(trap.report(), ExpectedTrap("modLines", "BuffMakeline", 6, QStringLiteral("Overflow")));
}
