// The commands of brantok-nc that concern one NC program, without the program's window.
#pragma once

#include <QStringList>

// Exit codes of brantok-nc.
enum : int {
    kExitClean = 0,       // the program read cleanly
    kExitFault = 1,       // the reader refused the program: its message was printed
    kExitTrap = 2,        // the error trap took the read: its report was printed
    kExitUsage = 64,      // the command line was wrong
};

// `brantok-nc check FILE`: reads FILE exactly as the program's reader does, with the settings
// and tool table of the store ($BRANTOK_STORE), and prints a summary or the fault.
// Never writes to the store.
int NcCheck(const QStringList &args);
