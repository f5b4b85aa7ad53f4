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

// The first installed calculator in the program's order that starts; none: the operator is told.
TEST(Calculator, FirstThatStartsOrAMessage)
{
    const auto oldFind = gfnFindProgram;
    const auto oldStart = gfnStartProgram;
    QStringList installed{"gnome-calculator", "xcalc"}, started;
    gfnFindProgram = [&](const QString &name) { return installed.contains(name) ? "/usr/bin/" + name : QString(); };
    gfnStartProgram = [&](const QString &path) {
        started << path;
        return !path.endsWith(QLatin1String("gnome-calculator"));
    };
    ScriptedBoxes boxes;
    StartCalculator();
    const QStringList firstRound = std::exchange(started, {});
    const size_t boxesAfterFirst = boxes.shown().size();
    installed.clear();
    StartCalculator();
    gfnFindProgram = oldFind;
    gfnStartProgram = oldStart;
    EXPECT_EQ(firstRound, (QStringList{"/usr/bin/gnome-calculator", "/usr/bin/xcalc"}));
    EXPECT_EQ(boxesAfterFirst, 0u);
    EXPECT_TRUE(started.isEmpty());
    ASSERT_EQ(boxes.shown().size(), 1u);
    EXPECT_TRUE(boxes.last().text.startsWith(QStringLiteral("No calculator was found")));
}

} // namespace
