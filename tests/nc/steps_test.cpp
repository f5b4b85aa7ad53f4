// Step encoding and line stepping: the bytes of a record, the first move and the position
// count; the acceleration profile, the ramp and the tool correction. Whole step streams
// (climb and hold, run-on, the stops, backlash, feed 0, the buffer's flushes) are golden files.
#include "nc_test_support.h"

#include "core/filenum.h"
#include "core/state.h"
#include "nc/commands.h"
#include "nc/linestep.h"
#include "nc/stepcode.h"

#include <QFileInfo>

#include <cmath>

class StepCode : public CompilerTest {};
class LineStep : public CompilerTest {};

// Each row: the timer left by the step before, the step, the 4 bytes (flags, timer lo, timer
// hi, code), the timer it leaves. Feed 0, the timer floor, the spindle, tool and end records
// are in every golden file or one of their own.
TEST_F(StepCode, ComposedStepTable)
{
    struct Row { const char *what; int32_t timerBefore; int16_t x, y, z; float sx, sy, sz; int16_t type; const char *hex;
                 int32_t timerAfter; };
    const Row rows[] = {
        {"first step: carries -1 as 255, 0; one axis at rapid sets bit 0", -1, 1, 0, 0, 500, 0, 0, 2, "24ff002d", 64000},
        {"the next carries 64000 (= 65536 - 1536 at 500 mm/min)", 64000, 1, 0, 0, 500, 0, 0, 2, "2400fa2d", 64000},
        {"after a non-step record the timer is the 1536 floor", 0, 0, -1, 0, 0, -100, 0, 2, "08000622", 57856},
        {"diagonal at rapid: speeds divided by 1.41421, no rapid bit", 1536, 1, 1, 0, 500, 500, 0, 2, "6c000634", 63364},
        {"three axes: divided by 1.73205; all minus is code 0", 1536, -1, -1, -1, -300, -300, -300, 2, "1c000600", 61102},
        {"an axis that does not step contributes no speed", 1536, 0, 1, 0, 500, 100, 500, 2, "48000632", 57856},
        {"reserved: no step", 4000, 0, 0, 0, 0, 0, 0, 5, "00000000", 0},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        glngStepTimer = r.timerBefore;
        gsngStepSpeedX = gsngStepSpeedY = gsngStepSpeedZ = 99.0f;
        EXPECT_EQ(QByteArray(strComposedStep(r.x, r.y, r.z, r.sx, r.sy, r.sz, r.type).data(), 4).toHex(), r.hex);
        EXPECT_EQ(glngStepTimer, r.timerAfter);
        // A record that is no step leaves no speed behind.
        EXPECT_TRUE(r.type == 2 || gsngStepSpeedX + gsngStepSpeedY + gsngStepSpeedZ == 0.0f);
    }
}

// The position count: the first move's steps are suppressed but counted; a command before
// any first move (-1 makes command 1 minus it) and a negative number (the lead-in at
// machining time) are stored but not counted.
TEST_F(StepCode, RecordsCarryTheCommandAndCountThePosition)
{
    StepCapture cap;
    SendStepToBuffer(1, 1, 0, 0, 100, 0, 0, 2);
    EXPECT_EQ(glngPosX, 0);
    glngFirstMove = 3;
    SendStepToBuffer(3, 1, 1, 0, 100, 100, 0, 2);
    SendStepToBuffer(3, 1, 0, 0, 100, 0, 0, 2);
    EXPECT_EQ(cap.records().size(), 1u);
    EXPECT_EQ(std::make_pair(glngPosX, glngPosY), std::make_pair(2, 1));
    // The timer still runs: the record after the first move carries the first move's last timer.
    EXPECT_EQ(glngStepTimer, 57856);
    SendStepToBuffer(7, 1, 0, -1, 100, 0, -100, 2);
    SendStepToBuffer(0, 0, 0, 0, 0, 0, 0, 6);
    glngFirstMove = -5;
    SendStepToBuffer(5, 1, 0, 0, 100, 0, 0, 2);
    const auto recs = cap.records();
    ASSERT_EQ(recs.size(), 4u);
    EXPECT_EQ(recs[1].command, 7);
    EXPECT_EQ(recs[1].timer, 57856);
    EXPECT_EQ(recs[1].dz(), -1);
    EXPECT_TRUE(recs[2].isNonStep());
    EXPECT_EQ(recs[3].command, 5);
    EXPECT_EQ(std::make_tuple(glngPosX, glngPosY, glngPosZ), std::make_tuple(3, 1, -1));
}

TEST_F(StepCode, TempFilesAreNewKeptAndKillFileDeletes)
{
    const QString a = strTempFile(), b = strTempFile();
    EXPECT_NE(a, b);
    EXPECT_TRUE(QFileInfo::exists(a));
    const int16_t n = FreeFile();
    FileOpen(n, a, FileMode::Binary);
    KillFile(a, n);
    EXPECT_FALSE(QFileInfo::exists(a));
    EXPECT_FALSE(FileIsOpen(n));
    gstrWorkFile = b;
    gintWorkFile = 0;
    KillWorkFile();
    EXPECT_FALSE(QFileInfo::exists(b));
    KillFile(QString(), 0);  // nothing to do
}

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
    struct Row { float rapid, x; int number; const char *description; };
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

// Worked by hand from the ramp rule: the profile entry of each step, and the entry left for
// the next move (odd: one above rest). Seven steps are in the golden files.
TEST_F(LineStep, ShortMovesMakeATriangle)
{
    struct Row { int steps; std::vector<int> index; int left; };
    for (const Row &r : {Row{10, {1, 2, 3, 4, 5, 5, 4, 3, 2, 1}, 0}, Row{1, {1}, 1}}) {
        SCOPED_TRACE(r.steps);
        ResetCompilerState();
        StepCapture cap;
        BuffMakeline(1, r.steps / 72.0f, 0, 0, 300, false);
        // Each record carries the timer of the step before it; the last stands in glngStepTimer.
        const auto recs = cap.records();
        ASSERT_EQ(recs.size(), r.index.size());
        for (size_t k = 0; k < recs.size(); ++k) {
            const int32_t t = k + 1 < recs.size() ? recs[k + 1].timer : glngStepTimer;
            EXPECT_EQ(t, 65536 - std::lround(768000.0 / gsngAccel(r.index[k]))) << k;
        }
        EXPECT_EQ(gintAccelIndex, r.left);
    }
}

TEST_F(LineStep, ToolCorrectionMovesZFirstAndKeepsTheProgrammedZ)
{
    StepCapture cap;
    gsngCurZ = 5.0f, gsngOldToolOffset = 1.0f, gsngToolOffset = 3.5f, gblnToolOffsetPending = true;
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
    gintBacklashZ = 2, gintPlayZ = 2, gintLastDirZ = -1;
    BuffMakeZline(2, 3 / 72.0f, 300);
    const auto recs = cap.records();
    ASSERT_EQ(recs.size(), 2u + 3u + 2u);
    const int dz[] = {1, 1, 1, 1, 1, -1, -1};
    for (size_t i = 0; i < recs.size(); ++i)
        EXPECT_EQ(recs[i].dz(), dz[i]) << i;
    EXPECT_EQ(std::make_pair(gintPlayZ, glngPosZ), std::make_pair(int16_t{2}, 3));

    // A single step lies in the second half and goes at the feed.
    ResetCompilerState();
    StepCapture cap2;
    BuffMakeZline(1, -1 / 72.0f, 300);
    EXPECT_EQ(cap2.records().size(), 1u);
    EXPECT_EQ(glngStepTimer, 65536 - 2560);
}
