// Help pages and the calculator entry.
#include "core/help_calc.h"
#include "core/msgbox.h"
#include "support/test_support.h"

#include <QApplication>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

TEST(Help, BothEntriesOpenOurOwnPages)
{
    ShowHelp(QStringLiteral("contents"));
    EXPECT_TRUE(HelpPageText().contains(QStringLiteral("Brantok Help")));
    ShowHelp(QStringLiteral("machining"));
    EXPECT_TRUE(HelpPageText().contains(QStringLiteral("To interrupt machining - press the Escape key")));
    for (const char *page : {"overview", "setup", "keys", "tools"}) {
        ShowHelp(QString::fromLatin1(page));
        EXPECT_GT(HelpPageText().size(), 200) << page;
    }
    for (QWidget *w : QApplication::topLevelWidgets())
        if (w->objectName() == QLatin1String("frmHelp"))
            w->close();
}

class Calculator : public ::testing::Test {
protected:
    void SetUp() override
    {
        oldFind = gfnFindProgram;
        oldStart = gfnStartProgram;
        gfnFindProgram = [this](const QString &name) {
            return installed.contains(name) ? QStringLiteral("/usr/bin/") + name : QString();
        };
        gfnStartProgram = [this](const QString &path) {
            started << path;
            return !broken.contains(path);
        };
    }
    void TearDown() override
    {
        gfnFindProgram = oldFind;
        gfnStartProgram = oldStart;
    }
    QStringList installed, broken, started;
    std::function<QString(const QString &)> oldFind;
    std::function<bool(const QString &)> oldStart;
};

TEST_F(Calculator, StartsTheFirstInstalledInOrder)
{
    ScriptedBoxes boxes;
    installed = {QStringLiteral("xcalc"), QStringLiteral("kcalc")};
    StartCalculator();
    EXPECT_EQ(started, QStringList{QStringLiteral("/usr/bin/kcalc")});
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(Calculator, OneThatWontStartGivesWayToTheNext)
{
    ScriptedBoxes boxes;
    installed = {QStringLiteral("gnome-calculator"), QStringLiteral("xcalc")};
    broken = {QStringLiteral("/usr/bin/gnome-calculator")};
    StartCalculator();
    EXPECT_EQ(started, (QStringList{"/usr/bin/gnome-calculator", "/usr/bin/xcalc"}));
    EXPECT_TRUE(boxes.shown().empty());
}

TEST_F(Calculator, NoneInstalledSaysSo)
{
    ScriptedBoxes boxes;
    StartCalculator();
    EXPECT_TRUE(started.isEmpty());
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_TRUE(boxes.last().text.startsWith(QStringLiteral("No calculator was found")));
    EXPECT_EQ(boxes.last().title, QStringLiteral("Calculator"));
}

} // namespace
