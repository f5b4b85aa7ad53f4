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
