// The commands of brantok-nc that concern one NC program, without the program's window.
#pragma once

#include <QStringList>

// `brantok-nc check FILE`: reads FILE exactly as the program's reader does, with the settings
// and tool table of the store ($BRANTOK_STORE), and prints a summary or the fault.
// Never writes to the store.
int NcCheck(const QStringList &args);
