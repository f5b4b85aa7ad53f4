#include "app/nc_check.h"

#include "app/nc_console.h"

#include "core/hooks.h"
#include "core/state.h"
#include "core/vb.h"
#include "nc/commands.h"
#include "nc/reader.h"
#include "tools/tooltable.h"

#include <cstdio>
#include <cstdlib>

namespace {

QString Summary(const QString &strFile)
{
    QStringList tools;
    for (int16_t i = 1; i <= gintUsedToolCount; ++i)
        tools << QString::number(gintUsedTools(i));
    return strFile + QStringLiteral(": read cleanly\n") +
           QStringLiteral("Commands: %1\n").arg(glngCommandCount) +
           QStringLiteral("Tools used: %1\n").arg(tools.join(u' ')) +
           QStringLiteral("Billet: length %1 mm, width %2 mm, depth %3 mm\n")
               .arg(vb::Format000(gsngBilletLength), vb::Format000(gsngBilletWidth), vb::Format000(gsngBilletDepth));
}

} // namespace

int NcCheck(const QStringList &args)
{
    if (args.size() != 1 || args.at(0).isEmpty()) {
        std::fputs("usage: brantok-nc check [--tools TOOLS] FILE\n", stderr);
        return kExitUsage;
    }
    const QString strFile = args.at(0);
    InstallConsoleHooks();
    // A check reads the NC text itself, even when a valid analysed file stands beside it.
    gfnCompFileReason = strNoCompFileReason;
    // As the program starts: the settings, then the tool table. Both only read the store.
    ReadStartSettings();
    if (!blnLoadTools())
        return kExitFault;
    gblnCancel = false;
    ReadCommands(strFile);
    if (gblnRefused || gintReadResult != 0)
        return kExitFault;
    Print(Summary(strFile));
    return kExitClean;
}
