#include "app/nc_check.h"

#include "core/hooks.h"
#include "core/state.h"
#include "core/vb.h"
#include "nc/commands.h"
#include "nc/reader.h"
#include "tools/tooltable.h"

#include <cstdio>
#include <cstdlib>

namespace {

// The system's texts break lines with CR LF; a terminal wants LF.
void Print(const QString &text)
{
    QString shown = text;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (!shown.endsWith(u'\n'))
        shown += u'\n';
    std::fputs(shown.toUtf8().constData(), stdout);
    std::fflush(stdout);
}

bool gblnRefused = false;   // the reader showed a fault or a message: the program is not clean

// What the program's forms do, as text: the correction window shows its error text and is
// cancelled (nothing is corrected here); a message box is printed and answered with its
// first button; the busy display shows nothing; the trap's end ends with exit code 2.
void InstallCheckHooks()
{
    ResetUiHooks();
    uiHooks().correctFile = [](const QString &, const QString &errorText, const QString &) {
        gblnRefused = true;
        Print(errorText);
        return QStringLiteral("Cancel");
    };
    uiHooks().messageBox = [](const QString &text, int32_t flags, const QString &) -> int16_t {
        gblnRefused = true;
        Print(text);
        switch (flags & 0x0F) {
        case 2: return 3;
        case 3: case 4: return 6;
        case 5: return 4;
        default: return 1;
        }
    };
    uiHooks().endProcess = [](int) {
        std::fflush(nullptr);
        std::_Exit(kExitTrap);
    };
}

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
        std::fputs("usage: brantok-nc check FILE\n", stderr);
        return kExitUsage;
    }
    const QString strFile = args.at(0);
    InstallCheckHooks();
    gblnRefused = false;
    // A check reads the NC text itself, even when a valid analysed file stands beside it.
    gfnCompFileReason = strNoCompFileReason;
    // As the program starts: the settings, then the tool table. Both only read the store.
    ReadStartSettings();
    ToolDataLoad();
    gblnCancel = false;
    ReadCommands(strFile);
    if (gblnRefused || gintReadResult != 0)
        return kExitFault;
    Print(Summary(strFile));
    return kExitClean;
}
