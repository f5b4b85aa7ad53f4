// Real programs from other mills, rewritten in Brantok's dialect (they live outside the
// repository; $BRANTOK_CORPUS names another folder; skipped where there is none): every one
// must read cleanly with the tools it names, compile, keep the record invariants and the
// machine positions, and be reused unchanged the second time.
#include "nc_test_support.h"

#include "core/state.h"
#include "core/store.h"
#include "nc/analysed.h"
#include "nc/commands.h"
#include "tools/tooltable.h"

#include <QDir>

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
        ASSERT_TRUE(v.trailerValid);
        ASSERT_TRUE(v.problems.isEmpty());
        ExpectValidRecords(v);
        ExpectMachinePositions(v, 0.5);
        EXPECT_EQ(CompileProgram(nc), QString());
        EXPECT_TRUE(gblnAnalysedValid);
    }
}
