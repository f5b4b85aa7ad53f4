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

TEST(ErrorTrap, ReportNamesModuleProcedureNumberAndDescription)
{
    TrapRecorder trap;
    EXPECT_THROW(faultingProcedure(6), TrapEnded);
    ASSERT_TRUE(trap.fired());
    EXPECT_EQ(trap.report(), QStringLiteral("An error has occurred in Brantok\r\n\r\nError:\t6 : Overflow\r\n"
                                            "Location:\tF1Mill / faultingProcedure\r\n"));
    EXPECT_EQ(trap.title(), QStringLiteral("Brantok ") + AppVersion());
}

TEST(ErrorTrap, OnlyTheFirstReportCountsOnTheWayOut)
{
    TrapRecorder trap;
    EXPECT_THROW(outerProcedure(), TrapEnded);
    EXPECT_EQ(trap.count(), 1);
    EXPECT_TRUE(trap.report().contains(QStringLiteral("F1Mill / faultingProcedure")));
}

TEST(ErrorTrap, NumberZeroLeavesOutTheSeparator)
{
    TrapRecorder trap;
    EXPECT_THROW(LogError(QStringLiteral("Logger"), QStringLiteral("lngWindowProc"), 0, QStringLiteral("Broken")),
                 TrapEnded);
    EXPECT_EQ(trap.report(), QStringLiteral("An error has occurred in Brantok\r\n\r\nError:\tBroken\r\n"
                                            "Location:\tLogger / lngWindowProc\r\n"));
}

TEST(ErrorTrap, StartFaultReport)
{
    TrapRecorder trap;
    try {
        try {
            vb::Err(13);
        } catch (...) {
            ReportStartFault();
        }
    } catch (const TrapEnded &) {
    }
    EXPECT_EQ(trap.report(), QStringLiteral("Cannot start Brantok\r\n\r\nError:\t13 : Type mismatch\r\n"
                                            "Location:\tF1Mill / Main\r\n"));
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
