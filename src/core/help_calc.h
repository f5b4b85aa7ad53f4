// Help and the calculator, from the main window's menus.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

// Shows a help page in the help window: "contents" (Help > Contents) or "machining"
// (Help > Machining with Brantok). The window stays up beside the program.
void ShowHelp(const QString &strTopic);
// The text of the page the help window shows (tests).
QString HelpPageText();

// Tools > Calculator: brings the calculator this program started forward, or starts the
// first installed of the desktop calculators; says so when there is none.
void StartCalculator();

// The calculators looked for, in order.
QStringList CalculatorCandidates();
// Where a program is found on PATH ("" for none). Tests replace it.
extern std::function<QString(const QString &)> gfnFindProgram;
// Starts a program detached; tests replace it. Returns false when it couldn't start.
extern std::function<bool(const QString &)> gfnStartProgram;
