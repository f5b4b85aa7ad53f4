#include "core/store.h"
#include "support/test_support.h"
#include "tools/tooltable.h"

#include <gtest/gtest.h>

// No count is an empty table; fields that are not numbers read as 0.
TEST(ToolTable, RecordsLoadAsStored)
{
    TempStore store;
    ToolDataLoad();
    EXPECT_EQ(gintToolCount, 0);
    store.writeRaw("[General]\nToolCount=4\nTool01=12|End mill|6.000|-2000.000\n"
                   "Tool02=3|Slot drill|4.5|12.25\nTool03=12|Ball nose|2|1\nTool04=x|End mill|y|z\n");
    ToolDataLoad();
    ASSERT_EQ(gintToolCount, 4);
    EXPECT_EQ(gtypTools(1).strType, QStringLiteral("End mill"));
    EXPECT_EQ(gtypTools(1).sngOffset, gintToolUnknownOffset);
    EXPECT_EQ(gtypTools(4).intNumber, 0);
    EXPECT_EQ(gtypTools(4).sngOffset, 0.0f);
    EXPECT_EQ(intToolGetId(3), 2);
    EXPECT_EQ(intToolGetId(12), 1);   // the lower index wins
    EXPECT_EQ(intToolGetId(99), 0);
}

TEST(ToolTable, SaveRoundsToThreeDecimalsAndKeepsOldRecords)
{
    TempStore store;
    store.writeRaw("[General]\nToolCount=3\nTool01=1|A|1|0\nTool02=2|B|2|0\nTool03=3|C|3|0\n");
    ToolDataLoad();
    gtypTools(2).sngDiameter = 1.23456f;
    // Delete record 1: the ones above move down.
    gtypTools(1) = gtypTools(2);
    gtypTools(2) = gtypTools(3);
    gintToolCount = 2;
    gtypTools.Redim(2);
    ToolDataSave();
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("ToolCount"), QString()), QStringLiteral("2"));
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("Tool01"), QString()), QStringLiteral("2|B|1.235|0.000"));
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("Tool02"), QString()), QStringLiteral("3|C|3.000|0.000"));
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("Tool03"), QString()), QStringLiteral("3|C|3|0"));   // stays, unread
}

TEST(ToolTable, DamagedRecordsEndInTheTrap)
{
    struct Case { const char *ini; int number; };
    const Case cases[] = {
        {"[General]\nToolCount=3\nTool01=1|A|1|0\nTool03=3|C|3|0\n", 5},   // record 2 missing
        {"[General]\nToolCount=1\nTool01=1|A|1\n", 5},                     // two bars only
        {"[General]\nToolCount=40000\n", 6},                                // count overflows
    };
    for (const Case &c : cases) {
        TempStore store;
        store.writeRaw(c.ini);
        TrapRecorder trap;
        EXPECT_THROW(ToolDataLoad(), TrapEnded) << c.ini;
        EXPECT_TRUE(trap.report().contains(QStringLiteral("Location:\tF1Mill / ToolDataLoad"))) << c.ini;
        EXPECT_TRUE(trap.report().contains(QStringLiteral("Error:\t%1 : ").arg(c.number))) << trap.report().toStdString();
    }
}
