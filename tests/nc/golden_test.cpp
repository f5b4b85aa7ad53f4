// Golden files: each folder under tests/nc/golden holds an NC program (program.brx), the
// settings and tool table it is compiled with (store.ini, the settings store's own format),
// and the expected dump of its analysed file (expected.dump, as `brantok-nc dump` prints it).
// The program is compiled as the program does before machining, in a scratch folder.
//
// To regenerate the expected dumps after a deliberate change, run the test program with
// BRANTOK_UPDATE_GOLDEN=1 and review the diff line by line before committing it:
//     BRANTOK_UPDATE_GOLDEN=1 build/tests/nc/test_compiler --gtest_filter='Golden*'
#include "nc_test_support.h"

#include "core/state.h"
#include "nc/analysed.h"
#include "tools/tooltable.h"

#include <QDir>

namespace {

const QString kGoldenDir = QStringLiteral(BRANTOK_SOURCE_DIR "/tests/nc/golden/");

// Copies a case's store and program into `dir`; the program's path.
QString CopyCase(const QString &name, const QString &dir, const QString &storePath)
{
    WriteFile(storePath, ReadFileBytes(kGoldenDir + name + QStringLiteral("/store.ini")));
    return WriteFile(dir + QStringLiteral("/program.brx"), ReadFileBytes(kGoldenDir + name + QStringLiteral("/program.brx")));
}

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
        EXPECT_EQ(gintReadResult, 0);
        EXPECT_EQ(gstrAnalysedFile, work.path() + QStringLiteral("/program.ncx"));
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
