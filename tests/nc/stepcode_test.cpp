// Step encoding: the bytes of a record, the timer one step behind, the first move, the
// buffer's flushing and the position count. Backlash take-up and the tool-change record are
// pinned by the golden files.
#include "nc_test_support.h"

#include "core/filenum.h"
#include "core/state.h"
#include "nc/commands.h"
#include "nc/stepcode.h"

#include <QFileInfo>

namespace {

class StepCode : public CompilerTest {};

QByteArray bytesOf(const ComposedStep &s) { return QByteArray(s.data(), 4); }

} // namespace

// Each row: the timer left by the step before, the step, the 4 bytes, the timer it leaves.
TEST_F(StepCode, ComposedStepTable)
{
    struct Row {
        const char *what;
        int32_t timerBefore;
        int16_t x, y, z;
        float sx, sy, sz;
        int16_t type;
        QByteArray expected;   // flags, timer lo, timer hi, code
        int32_t timerAfter;
    };
    const Row rows[] = {
        {"first step of a compilation carries -1 as 255, 0; single axis at rapid sets bit 0",
         -1, 1, 0, 0, 500, 0, 0, 2, QByteArray("\x24\xFF\x00\x2D", 4), 64000},
        {"the next record carries 64000 (= 65536 - 1536 at 500 mm/min)",
         64000, 1, 0, 0, 500, 0, 0, 2, QByteArray("\x24\x00\xFA\x2D", 4), 64000},
        {"after a non-step record the timer is the 1536 floor",
         0, 0, -1, 0, 0, -100, 0, 2, QByteArray("\x08\x00\x06\x22", 4), 57856},
        {"diagonal at rapid: speeds divided by 1.41421, no rapid bit",
         1536, 1, 1, 0, 500, 500, 0, 2, QByteArray("\x6C\x00\x06\x34", 4), 63364},
        {"three axes: divided by 1.73205; all negative is code 0 with flags set",
         1536, -1, -1, -1, -300, -300, -300, 2, QByteArray("\x1C\x00\x06\x00", 4), 61102},
        {"speed 0 goes at 12 mm/min: the floor",
         1536, 0, 0, 1, 0, 0, 0, 2, QByteArray("\x90\x00\x06\x4A", 4), 1536},
        {"below 12 mm/min is held at the floor",
         1536, 0, 0, -1, 0, 0, -5, 2, QByteArray("\x10\x00\x06\x0A", 4), 1536},
        {"an axis that does not step contributes no speed",
         1536, 0, 1, 0, 500, 100, 500, 2, QByteArray("\x48\x00\x06\x32", 4), 57856},
        {"spindle speed", 4000, 0, 0, 0, 1000, 1000, 1000, 7, QByteArray("\x00\x00\x00\xA0", 4), 0},
        {"tool change", 4000, 0, 0, 0, 2, 2, 2, 8, QByteArray("\x00\x00\x00\xB0", 4), 0},
        {"end", 4000, 0, 0, 0, 0, 0, 0, 6, QByteArray("\x00\x00\x00\x00", 4), 0},
        {"reserved", 4000, 0, 0, 0, 0, 0, 0, 5, QByteArray("\x00\x00\x00\x00", 4), 0},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        glngStepTimer = r.timerBefore;
        gsngStepSpeedX = gsngStepSpeedY = gsngStepSpeedZ = 99.0f;
        EXPECT_EQ(bytesOf(strComposedStep(r.x, r.y, r.z, r.sx, r.sy, r.sz, r.type)).toHex(), r.expected.toHex());
        EXPECT_EQ(glngStepTimer, r.timerAfter);
        if (r.type != 2) {
            EXPECT_EQ(gsngStepSpeedX + gsngStepSpeedY + gsngStepSpeedZ, 0.0f);
        }
    }
}

TEST_F(StepCode, RecordsCarryTheCommandAndCountThePosition)
{
    StepCapture cap;
    // With no first move yet (-1), command 1 is minus the first move: its steps are not counted.
    SendStepToBuffer(1, 1, 0, 0, 100, 0, 0, 2);
    EXPECT_EQ(glngPosX, 0);
    glngPosX = 10;
    SendStepToBuffer(7, 1, 0, -1, 100, 0, -100, 2);
    SendStepToBuffer(0, 0, 0, 0, 0, 0, 0, 6);
    const auto recs = cap.records();
    ASSERT_EQ(recs.size(), 3u);
    EXPECT_EQ(recs[1].command, 7);
    EXPECT_EQ(recs[1].dz(), -1);
    EXPECT_TRUE(recs[2].isNonStep());
    EXPECT_EQ(glngPosX, 11);
    EXPECT_EQ(glngPosZ, -1);
}

TEST_F(StepCode, FirstMoveStepsAreSuppressedButCounted)
{
    StepCapture cap;
    glngFirstMove = 3;
    SendStepToBuffer(3, 1, 1, 0, 100, 100, 0, 2);
    SendStepToBuffer(3, 1, 0, 0, 100, 0, 0, 2);
    EXPECT_TRUE(cap.records().empty());
    EXPECT_EQ(glngPosX, 2);
    EXPECT_EQ(glngPosY, 1);
    // The timer still runs: the record after the first move carries the first move's last timer.
    EXPECT_EQ(glngStepTimer, 57856);
    // A negative number (the lead-in at machining time) is stored but not counted.
    glngFirstMove = -5;
    SendStepToBuffer(5, 1, 0, 0, 100, 0, 0, 2);
    EXPECT_EQ(cap.records().size(), 1u);
    EXPECT_EQ(glngPosX, 2);
}

TEST_F(StepCode, BufferFlushesAbove2040BytesButNeverOnCommandZero)
{
    StepCapture cap;
    for (int i = 0; i < 255; ++i)
        SendStepToBuffer(1, 1, 0, 0, 100, 0, 0, 2);
    EXPECT_EQ(gstrStepBuffer.size(), 2040);
    SendStepToBuffer(0, 1, 0, 0, 100, 0, 0, 2);   // 2048 but command 0
    EXPECT_EQ(gstrStepBuffer.size(), 2048);
    SendStepToBuffer(1, 1, 0, 0, 100, 0, 0, 2);
    EXPECT_EQ(gstrStepBuffer.size(), 0);
    EXPECT_EQ(FileLength(gintAnalysedFile), 2056);
    EXPECT_EQ(cap.records().size(), 257u);
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
