#include "core/logger.h"
#include "core/msgbox.h"
#include "core/vb.h"
#include "support/test_support.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {
void faultingProcedure(int number) try {
    vb::Err(number);
} catch (...) {
    LogError("F1Mill", "faultingProcedure");
}

void outerProcedure() try {
    faultingProcedure(9);
} catch (...) {
    LogError("F1Mill", "outerProcedure");
}
} // namespace

// The report names the module, the procedure, the number and the description; only the
// first report counts on the way out; number 0 leaves out the separator; the start has its own.
TEST(ErrorTrap, ReportsAsTheOperatorReadsThem)
{
    const QString fault = QStringLiteral("An error has occurred in Brantok\r\n\r\nError:\t");
    const std::pair<std::function<void()>, QString> cases[] = {
        {[] { faultingProcedure(6); }, fault + "6 : Overflow\r\nLocation:\tF1Mill / faultingProcedure\r\n"},
        {outerProcedure, fault + "9 : Subscript out of range\r\nLocation:\tF1Mill / faultingProcedure\r\n"},
        {[] { LogError(QStringLiteral("Logger"), QStringLiteral("lngWindowProc"), 0, QStringLiteral("Broken")); },
         fault + "Broken\r\nLocation:\tLogger / lngWindowProc\r\n"},
        {[] {
             try {
                 vb::Err(13);
             } catch (...) {
                 ReportStartFault();
             }
         },
         "Cannot start Brantok\r\n\r\nError:\t13 : Type mismatch\r\nLocation:\tF1Mill / Main\r\n"},
    };
    for (const auto &[act, report] : cases) {
        TrapRecorder trap;
        EXPECT_THROW(act(), TrapEnded) << report.toStdString();
        EXPECT_EQ(trap.count(), 1);
        EXPECT_EQ(trap.report(), report);
        EXPECT_EQ(trap.title(), QStringLiteral("Brantok ") + AppVersion());
    }
}

TEST(FileQuestions, FolderIsNeverAFile)
{
    QTemporaryDir dir;
    QString f = dir.path() + QStringLiteral("/part.brx");
    QFile file(f);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    EXPECT_TRUE(blnStdFileExists(f));
    EXPECT_FALSE(blnStdFileExists(dir.path()));
    EXPECT_FALSE(blnStdFileExists(dir.path() + QStringLiteral("/")));
    EXPECT_FALSE(blnStdFileExists(dir.path() + QStringLiteral("/missing.brx")));
    // The home folder is on a fixed disk here.
    EXPECT_FALSE(blnRemovableMedia(QDir::homePath()));
}
