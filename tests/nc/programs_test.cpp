// Whole programs. Each folder under tests/nc/golden holds an NC program (program.brx), its
// settings and tool table (store.ini, the store's own format) and the dump of its analysed file
// (expected.dump, as `brantok-nc dump` prints it), compiled as before machining. To regenerate
// the dumps after a deliberate change, run with BRANTOK_UPDATE_GOLDEN=1 and review the diff:
//     BRANTOK_UPDATE_GOLDEN=1 build/tests/nc/test_compiler --gtest_filter='Golden*'
// Generated programs (rapids, cuts, arcs in both forms) and real ones from other mills in
// Brantok's dialect ($BRANTOK_CORPUS; skipped where there is none) keep the invariants the
// machine relies on; the real ones also read cleanly and are reused the second time.
#include "nc_test_support.h"

#include "core/state.h"
#include "core/store.h"
#include "nc/analysed.h"
#include "nc/commands.h"
#include "tools/tooltable.h"

#include <QDir>

#include <cmath>

namespace {

const QString kGoldenDir = QStringLiteral(BRANTOK_SOURCE_DIR "/tests/nc/golden/");

// Copies a case's store and program into `dir`; the program's path.
QString CopyCase(const QString &name, const QString &dir, const QString &storePath)
{
    WriteFile(storePath, ReadFileBytes(kGoldenDir + name + QStringLiteral("/store.ini")));
    return WriteFile(dir + QStringLiteral("/program.brx"), ReadFileBytes(kGoldenDir + name + QStringLiteral("/program.brx")));
}


QString mm(double v) { return QString::number(std::round(v * 1000) / 1000, 'f', 3); }

// A program of about `moves` motions inside X 0..100, Y 0..80, Z -3..5, coordinates to 0.001 mm.
QByteArray GenerateProgram(Lcg &rng, int moves)
{
    QString p = QStringLiteral("%\n* generated\nN1 T1\nN2 S1000\nN3 G0 X10 Y10 Z2\n");
    double x = 10, y = 10, z = 2;
    int n = 4;
    for (int i = 0; i < moves; ++i) {
        const int kind = rng.pick(10);
        QString line = QStringLiteral("N%1 ").arg(n++);
        if (kind < 2) {
            x = rng.uni(0, 100), y = rng.uni(0, 80), z = rng.uni(0, 5);
            line += QStringLiteral("G0 X%1 Y%2 Z%3").arg(mm(x), mm(y), mm(z));
        } else if (kind < 6) {
            // Short and long cuts, some in line with the one before.
            const double len = rng.pick(3) == 0 ? rng.uni(0.001, 0.05) : rng.uni(0.1, 15);
            const double a = rng.pick(2) ? rng.pick(8) * M_PI / 4 : rng.uni(0, 2 * M_PI);
            x = std::clamp(x + len * std::cos(a), 0.0, 100.0);
            y = std::clamp(y + len * std::sin(a), 0.0, 80.0);
            if (rng.pick(4) == 0)
                z = rng.uni(-3, 2);
            line += QStringLiteral("G1 X%1 Y%2 Z%3 F%4").arg(mm(x), mm(y), mm(z)).arg(rng.pick(10) * 50);
        } else {
            const double r = rng.uni(0.05, 12);
            const double cx = std::clamp(x + rng.uni(-r, r), r, 100 - r), cy = std::clamp(y + rng.uni(-r, r), r, 80 - r);
            const double a0 = rng.uni(0, 2 * M_PI), a1 = rng.uni(0, 2 * M_PI);
            const double sx = std::round((cx + r * std::cos(a0)) * 1000) / 1000;
            const double sy = std::round((cy + r * std::sin(a0)) * 1000) / 1000;
            // Get to the arc's start first.
            p += QStringLiteral("N%1 G1 X%2 Y%3 F200\n").arg(n++).arg(mm(sx), mm(sy));
            line = QStringLiteral("N%1 ").arg(n++);
            x = cx + r * std::cos(a1), y = cy + r * std::sin(a1);
            line += QStringLiteral("G%1 X%2 Y%3 ").arg(rng.pick(2) ? 2 : 3).arg(mm(x), mm(y));
            if (kind == 9 && (std::fabs(x - sx) > 0.01 || std::fabs(y - sy) > 0.01))
                line += QStringLiteral("R%1").arg(mm(r));
            else
                line += QStringLiteral("I%1 J%2").arg(mm(cx - sx), mm(cy - sy));
            line += QStringLiteral(" F%1").arg(50 + rng.pick(9) * 50);
        }
        p += line + u'\n';
    }
    return p.toLatin1();
}

class Properties : public CompilerTest {};

} // namespace

TEST(Golden, EveryCaseCompilesToItsExpectedDump)
{
    const QStringList cases = QDir(kGoldenDir).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    ASSERT_GE(cases.size(), 15);
    const bool update = qEnvironmentVariableIntValue("BRANTOK_UPDATE_GOLDEN") == 1;
    for (const QString &name : cases) {
        SCOPED_TRACE(name.toStdString());
        ResetCompilerState();
        TempStore store;
        QTemporaryDir work;
        const QString nc = CopyCase(name, work.path(), store.path());
        ReadStartSettings();
        ToolDataLoad();
        CompileProgram(nc);
        const QString dump = strDumpAnalysedFile(ReadFileBytes(gstrAnalysedFile), QStringLiteral("program.ncx"));
        const QString expectedPath = kGoldenDir + name + QStringLiteral("/expected.dump");
        if (update)
            WriteFile(expectedPath, dump.toUtf8());
        // As text, so that a failure shows the lines that differ.
        EXPECT_EQ(dump.toStdString(), ReadFileBytes(expectedPath).toStdString());
    }
}

// The command-line tool prints the same dump, and compiles as the program does.
TEST(Golden, CommandLineDumpAndCompile)
{
    QTemporaryDir work;
    const QString store = work.path() + QStringLiteral("/store.ini");
    const QString nc = CopyCase(QStringLiteral("tool_change_offsets"), work.path(), store);
    const QString ncx = work.path() + QStringLiteral("/program.ncx");

    // The reason, the file, then the machining time (a second or two for this little program).
    const NcToolRun first = RunBrantokNc({QStringLiteral("compile"), nc}, store);
    EXPECT_EQ(first.exitCode, 0);
    EXPECT_TRUE(first.out.startsWith(QStringLiteral("The CNC file is being analysed because there is no previously "
                                                    "analysed version of this NC file.\nAnalysed file: ") +
                                     ncx + QStringLiteral("\nMachining time: 0:00:0")))
        << first.out.toStdString();
    const NcToolRun dump = RunBrantokNc({QStringLiteral("dump"), ncx}, store);
    EXPECT_EQ(dump.exitCode, 0);
    EXPECT_EQ(dump.out, QString::fromUtf8(ReadFileBytes(kGoldenDir + QStringLiteral("tool_change_offsets/expected.dump"))));
    EXPECT_EQ(RunBrantokNc({QStringLiteral("dump"), work.path() + QStringLiteral("/missing.ncx")}, store).exitCode, 1);

    // An unknown offset is never compiled into the steps.
    WriteFile(store, ReadFileBytes(store).replace("|0.500", "|-2000.000"));
    const NcToolRun unknown = RunBrantokNc({QStringLiteral("compile"), nc}, store);
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_TRUE(unknown.out.contains(QStringLiteral("Tool 2 has no measured offset"))) << unknown.out.toStdString();
}

TEST_F(Properties, GeneratedProgramsKeepTheInvariants)
{
    Lcg rng{2024};
    QTemporaryDir dir;
    const QString nc = dir.path() + QStringLiteral("/gen.brx");
    for (int prog = 0; prog < 40; ++prog) {
        SCOPED_TRACE(prog);
        ResetCompilerState();
        const bool backlash = prog % 4 == 3;
        if (backlash)
            gintBacklashX = 2, gintBacklashY = 3, gintBacklashZ = 1;
        CompileProgram(WriteFile(nc, GenerateProgram(rng, 30)));
        const AnalysedFileView v = ParseAnalysedFile(ReadFileBytes(gstrAnalysedFile));
        ExpectValidRecords(v);
        if (!backlash)
            ExpectMachinePositions(v);
    }
}

TEST(CompilerCorpus, EveryConvertedProgramCompiles)
{
    const QString dir = qEnvironmentVariable("BRANTOK_CORPUS", QStringLiteral("/work/shared/corpus/converted"));
    if (!QFile::exists(dir + QStringLiteral("/tools.txt")))
        GTEST_SKIP() << "no corpus at " << dir.toStdString();

    ResetCompilerState();
    TempStore store;
    ASSERT_GT(StoreToolsFile(dir + QStringLiteral("/tools.txt")), 0);
    ReadStartSettings();
    ToolDataLoad();

    QTemporaryDir work;  // the analysed files go beside copies, never into the corpus
    const QStringList files = QDir(dir).entryList({QStringLiteral("*.brx")}, QDir::Files, QDir::Name);
    ASSERT_FALSE(files.isEmpty());
    for (const QString &name : files) {
        SCOPED_TRACE(name.toStdString());
        const QString nc = WriteFile(work.path() + u'/' + name, ReadFileBytes(dir + u'/' + name));
        EXPECT_EQ(CompileProgram(nc), QString::fromLatin1(AnalysedReason::kNone));
        ASSERT_EQ(gintReadResult, 0);
        EXPECT_GT(gintUsedToolCount, 0);
        EXPECT_GT(gsngBilletLength * gsngBilletWidth * gsngBilletDepth, 0.0f);   // the header's billet
        const AnalysedFileView v = ParseAnalysedFile(ReadFileBytes(gstrAnalysedFile));
        ExpectValidRecords(v);
        ExpectMachinePositions(v, 0.5);
        EXPECT_EQ(CompileProgram(nc), QString());
        EXPECT_TRUE(gblnAnalysedValid);
    }
}
