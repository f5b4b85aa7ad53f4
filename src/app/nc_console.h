// What brantok-nc puts in place of the program's forms: everything is text on a terminal.
#pragma once

#include <QString>

#include <cstdio>

// Exit codes of brantok-nc.
enum : int {
    kExitClean = 0,   // the program read (or compiled) cleanly
    kExitFault = 1,   // the program or file was refused: its message was printed
    kExitTrap = 2,    // the error trap ended the work: its report was printed
    kExitUsage = 64,  // the command line was wrong
};

// Prints a text of the system's (CR LF line breaks) with the terminal's line ends.
void Print(const QString &text, FILE *to = stdout);

// The correction window shows its error text and is cancelled (nothing is corrected here);
// a message box is printed and answered with its first button; the busy display shows
// nothing; the trap's end ends the process with kExitTrap.
void InstallConsoleHooks();
// Set when the reader showed a fault or a message since InstallConsoleHooks: not clean.
extern bool gblnRefused;

// The tool table of this run: the store's, or, when brantok-nc was given "--tools FILE", the
// tools of that file, one store record a line ("12|End mill|6.000|0.000"; blank lines skipped).
extern QString gstrToolFile;
// Loads it; false (the fault printed) for a file that can't be read or holds a line that isn't
// a record.
bool blnLoadTools();
