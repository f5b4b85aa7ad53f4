// Real programs from other mills, rewritten in Brantok's dialect: every one must read
// cleanly with the tools they name. The corpus lives outside the repository; the test is
// skipped where it isn't ($BRANTOK_CORPUS names another folder).
#include "core/state.h"
#include "core/store.h"
#include "nc/commands.h"
#include "nc/reader.h"
#include "nc/reader_harness.h"
#include "support/test_support.h"
#include "tools/tooltable.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

TEST(ReaderCorpus, EveryConvertedProgramReadsCleanly)
{
    const QString dir = qEnvironmentVariable("BRANTOK_CORPUS", QStringLiteral("/work/shared/corpus/converted"));
    if (!QFile::exists(dir + QStringLiteral("/tools.txt")))
        GTEST_SKIP() << "no corpus at " << dir.toStdString();

    ReaderHarness h;
    TempStore store;
    ASSERT_GT(StoreToolsFile(dir + QStringLiteral("/tools.txt")), 0);
    ToolDataLoad();
    ReadStartSettings();   // the defaults: rapid 500 mm/min, not a WoodWorker

    const QStringList files = QDir(dir).entryList({QStringLiteral("*.brx")}, QDir::Files, QDir::Name);
    ASSERT_FALSE(files.isEmpty());
    for (const QString &name : files) {
        h.corrections.clear();
        ReadCommands(dir + u'/' + name);
        EXPECT_EQ(gintReadResult, 0) << name.toStdString();
        if (!h.corrections.empty())
            ADD_FAILURE() << name.toStdString() << ": " << h.corrections[0].errorText.toStdString();
        EXPECT_GT(glngCommandCount, 0) << name.toStdString();
        EXPECT_GT(gintUsedToolCount, 0) << name.toStdString();
        EXPECT_GT(gsngBilletLength * gsngBilletWidth * gsngBilletDepth, 0.0f) << name.toStdString();
    }
}
