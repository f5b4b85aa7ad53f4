#include "app/nc_console.h"

#include "core/hooks.h"

#include <cstdlib>

bool gblnRefused = false;

void Print(const QString &text, FILE *to)
{
    QString shown = text;
    shown.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    if (!shown.endsWith(u'\n'))
        shown += u'\n';
    std::fputs(shown.toUtf8().constData(), to);
    std::fflush(to);
}

void InstallConsoleHooks()
{
    ResetUiHooks();
    gblnRefused = false;
    uiHooks().correctFile = [](const QString &, const QString &errorText, const QString &) {
        gblnRefused = true;
        Print(errorText);
        return QStringLiteral("Cancel");
    };
    uiHooks().messageBox = [](const QString &text, int32_t flags, const QString &) -> int16_t {
        gblnRefused = true;
        Print(text);
        switch (flags & 0x0F) {
        case 2: return 3;            // Abort
        case 3: case 4: return 6;    // Yes
        case 5: return 4;            // Retry
        default: return 1;           // OK
        }
    };
    uiHooks().endProcess = [](int) {
        std::fflush(nullptr);
        std::_Exit(kExitTrap);
    };
}
