// The analysed-file cache and the evaluation around it: every reason in its words and what it
// leaves on disk, the cancel paths and the machine state that a compilation must leave as it
// found it. The file's layout is pinned by the golden dumps.
#include "nc_test_support.h"

#include "core/hooks.h"
#include "core/state.h"
#include "nc/analysed.h"
#include "nc/commands.h"
#include "nc/linestep.h"
#include "nc/stepcode.h"
#include "tools/tooltable.h"

#include <QDir>
#include <QFileInfo>

#include <tuple>

namespace {

const QByteArray kProgram = "%\n* Billet length 50\nN10 T1\nN20 S1000\nN30 G0 X1 Y1 Z1\nN40 G1 Z-0.5 F100\n"
                            "N50 G1 X3 Y2 F200\nN60 G0 Z2\n";
const char *const kIncomplete = "the previously analysed version of this NC file is incomplete";
const char *const kInvalid = "the previously analysed version of this NC file is invalid";

// Tools 1 and 2 (2 is not used by the program), the program beside its analysed file.
class Analysed : public CompilerTest {
protected:
    void SetUp() override
    {
        ResetCompilerState();
        SetTools({{1, 3.0f, 0.0f}, {2, 6.0f, 1.25f}});
        WriteFile(m_nc, kProgram);
    }
    // Changes the analysed file's bytes (without its trailer) and writes a trailer that fits again.
    void damage(const std::function<void(QByteArray &)> &change)
    {
        QByteArray f = ReadFileBytes(m_ncx);
        f.chop(4);
        change(f);
        WriteFile(m_ncx, f + strLongToLongString(static_cast<int32_t>(f.size() + 4)));
    }
    QTemporaryDir m_dir;
    QString m_nc = m_dir.filePath(QStringLiteral("part.brx")), m_ncx = m_dir.filePath(QStringLiteral("part.ncx"));
};

} // namespace

TEST_F(Analysed, SameFileTwiceIsNotReadOrCompiledAgain)
{
    EXPECT_EQ(CompileProgram(m_nc), QString::fromLatin1(AnalysedReason::kNone));
    int progressCalls = 0;
    QStringList busy;
    uiHooks().progress = [&](int16_t) { ++progressCalls; };
    uiHooks().pageTurnStart = [&](const QString &s) { busy << s; };
    gsngBilletLength = 0.0f;
    EXPECT_EQ(CompileProgram(m_nc), QString());
    ResetUiHooks();
    EXPECT_TRUE(gblnAnalysedValid);
    EXPECT_EQ(progressCalls, 0);
    EXPECT_FALSE(busy.contains(QStringLiteral("Reading CNC file")));
    EXPECT_EQ(gsngBilletLength, 50.0f);   // the billet still comes from the header in hand
    EXPECT_EQ(gintUsedTools(1), 1);
}

// Each row changes one thing after a good compilation; the check gives its reason and the
// stale file is gone, or (no reason) the file is still trusted.
TEST_F(Analysed, EveryChangeGivesItsReasonAndDeletesTheFile)
{
    struct Row { const char *reason; std::function<void()> change; };
    const Row rows[] = {
        {"the NC file has been changed", [this] { WriteFile(m_nc, QByteArray(kProgram).replace("F200", "F201")); }},
        {kIncomplete, [this] { WriteFile(m_ncx, ReadFileBytes(m_ncx).chopped(4)); }},
        {kInvalid, [this] { WriteFile(m_ncx, ReadFileBytes(m_ncx).left(8)); }},
        // Damage inside a file whose trailer still matches: the table and the records must fit.
        {kInvalid, [this] { damage([](QByteArray &f) { f[34] = 7; }); }},      // command count
        {kInvalid, [this] { damage([](QByteArray &f) { f[38] = 0x7F; }); }},   // a text's length
        {kInvalid, [this] { damage([](QByteArray &f) { f.chop(8); }); }},      // no end marker
        {"the Rapid Traverse Speed has been changed", [] { gsngRapidSpeed = 475.0f; }},
        {"the Backlash compensation values have been changed", [] { gintBacklashZ = 1; }},
        {"Tool 1 has a new diameter", [] { gtypTools(1).sngDiameter = 3.01f; }},
        {"Tool 1 can no longer be found", [] { gtypTools(1).intNumber = 7; }},
        {"Tool 1 has a new offset", [] { gtypTools(1).sngOffset = gintToolUnknownOffset; }},
        // What does not reach the steps does not count: an unused tool, a rapid speed that
        // rounds to the same 50000, the WoodWorker and rapid-dot settings.
        {"", [] { gtypTools(2).sngOffset = 9.0f, gsngRapidSpeed = 500.004f, gblnWoodworker = true, gblnRapidUseDot = false; }},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(r.reason);
        SetUp();
        CompileProgram(m_nc);
        ASSERT_TRUE(QFileInfo::exists(m_ncx));
        r.change();
        ReadProgram(m_nc);
        EXPECT_EQ(gstrAnalysedReason, QString::fromLatin1(r.reason));
        EXPECT_EQ(gblnAnalysedValid, !*r.reason);
        EXPECT_EQ(QFileInfo::exists(m_ncx), !*r.reason);
    }
}

TEST_F(Analysed, KeepFilesOffWritesTheFileButNeverTrustsIt)
{
    gblnKeepFiles = false;
    EXPECT_EQ(CompileProgram(m_nc), QStringLiteral("the setting 'Retain calculated Mill steps' is turned off"));
    ReadProgram(m_nc);
    EXPECT_FALSE(gblnAnalysedValid);
    EXPECT_TRUE(QFileInfo::exists(m_ncx));  // left on disk, overwritten by the next compilation
    // Turned on again: the file's blank digest is not the program's.
    gblnKeepFiles = true;
    ReadProgram(m_nc);
    EXPECT_EQ(gstrAnalysedReason, QStringLiteral("the NC file has been changed"));
}

TEST_F(Analysed, NoRoomBesideTheSourceGoesToTheTemporaryFolder)
{
    gblnAnalysedToTemp = true;
    EXPECT_EQ(CompileProgram(m_nc),
              QStringLiteral("there is insufficient space to keep an analysed version on the source drive"));
    EXPECT_EQ(QFileInfo(gstrAnalysedFile).absolutePath(), QFileInfo(QDir::tempPath()).absoluteFilePath());
    EXPECT_FALSE(QFileInfo::exists(m_ncx));
    QFile::remove(gstrAnalysedFile);
}

TEST_F(Analysed, CancelLeavesAFileWithoutTrailerOnlyWhenFilesAreKept)
{
    for (bool keep : {true, false}) {
        SCOPED_TRACE(keep);
        SetUp();
        gblnKeepFiles = keep;
        QFile::remove(m_ncx);
        uiHooks().progress = [](int16_t) { gblnCancel = true; };  // Esc at the first move
        CompileProgram(m_nc);
        ResetUiHooks();
        EXPECT_TRUE(gblnCancel);
        EXPECT_EQ(QFileInfo::exists(m_ncx), keep);
        if (keep) {
            gblnCancel = false;
            ReadProgram(m_nc);
            EXPECT_EQ(gstrAnalysedReason, QString::fromLatin1(kIncomplete));
        }
    }
}

TEST_F(Analysed, MachineStateIsPutBack)
{
    glngPosX = 11, glngPosY = -22, glngPosZ = 33;
    gintPlayX = 1, gintPlayY = 2, gintPlayZ = 3;
    gintLastDirX = 1, gintLastDirY = -1, gintLastDirZ = 1;
    gintBacklashX = gintBacklashY = gintBacklashZ = 4;
    CompileProgram(m_nc);
    EXPECT_EQ(std::make_tuple(glngPosX, glngPosY, glngPosZ), std::make_tuple(11, -22, 33));
    EXPECT_EQ(std::make_tuple(gintPlayX, gintPlayY, gintPlayZ), std::make_tuple(1, 2, 3));
    EXPECT_EQ(std::make_tuple(gintLastDirX, gintLastDirY, gintLastDirZ), std::make_tuple(1, -1, 1));
    // The program's own end state stays for the stream to continue from.
    EXPECT_EQ(gsngCurZ, 2.0f);
}

TEST_F(Analysed, AProgramWithNoPathDividesByZeroIntoTheTrap)
{
    WriteFile(m_nc, "%\nN1 T1\nN2 S1000\nN3 G0 X0 Y0 Z0\nN4 G1 X0 F100\n");
    EXPECT_EQ(TrapReport([&] { CompileProgram(m_nc); }),
              ExpectedTrap("modEvaluate", "UpdateProgress", 6, QStringLiteral("Overflow")));
}

TEST_F(Analysed, RandomBytesEndInAReasonNeverACrash)
{
    CompileProgram(m_nc);
    const QByteArray good = ReadFileBytes(m_ncx);
    Lcg rng{12345};
    TrapRecorder trap;
    for (int round = 0; round < 400; ++round) {
        QByteArray bytes;
        const int kind = round % 4;
        for (int i = 0, size = rng.pick(200); i < size; ++i)
            bytes.append(static_cast<char>(rng.next() & 0xFF));
        if (kind >= 1 && bytes.size() >= 24) {
            // The hard case: the right digest and a right trailer in front of the garbage.
            bytes.replace(0, 16, good.left(16));
            if (kind >= 2)
                bytes.replace(16, 10, good.mid(16, 10));
            bytes.chop(4);
            bytes += strLongToLongString(static_cast<int32_t>(bytes.size() + 4));
        }
        if (kind == 3 && bytes.size() > 28)
            bytes[26] = bytes[27] = static_cast<char>(0xFF);  // a negative tool count
        WriteFile(m_ncx, bytes);
        ReadProgram(m_nc);
        ASSERT_FALSE(trap.fired()) << round;
        if (!gblnAnalysedValid)
            EXPECT_FALSE(gstrAnalysedReason.isEmpty()) << round;
        else  // what the check trusts, the stream can read: it parses cleanly
            EXPECT_TRUE(ParseAnalysedFile(bytes).problems.isEmpty()) << round;
        // Random dumps never fail either.
        EXPECT_FALSE(strDumpAnalysedFile(bytes, QStringLiteral("x.ncx")).isEmpty());
    }
}
