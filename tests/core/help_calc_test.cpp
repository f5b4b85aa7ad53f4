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
    ShowHelp(QStringLiteral("machining"));
    EXPECT_TRUE(HelpPageText().contains(QStringLiteral("To interrupt machining - press the Escape key")));
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

// The first installed calculator in the program's order that starts; none: the operator is told.
TEST_F(Calculator, FirstThatStartsOrAMessage)
{
    struct Case { QStringList installed, broken, started; bool told; };
    const Case cases[] = {
        {{"gnome-calculator", "xcalc"}, {"/usr/bin/gnome-calculator"},
         {"/usr/bin/gnome-calculator", "/usr/bin/xcalc"}, false},
        {{}, {}, {}, true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.installed.join(u' ').toStdString());
        ScriptedBoxes boxes;
        installed = c.installed;
        broken = c.broken;
        started.clear();
        StartCalculator();
        EXPECT_EQ(started, c.started);
        ASSERT_EQ(boxes.shown().size(), c.told ? 1u : 0u);
        if (c.told) {
            EXPECT_TRUE(boxes.last().text.startsWith(QStringLiteral("No calculator was found")));
        }
    }
}

} // namespace
