#include "app/nc_console.h"

#include "core/hooks.h"
#include "tools/tooltable.h"

#include <QFile>

#include <cstdlib>

bool gblnRefused = false;
QString gstrToolFile;

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

bool blnLoadTools()
{
    if (gstrToolFile.isEmpty()) {
        ToolDataLoad();
        return true;
    }
    QFile file(gstrToolFile);
    if (!file.open(QIODevice::ReadOnly)) {
        Print(gstrToolFile + QStringLiteral(": ") + file.errorString());
        return false;
    }
    const QStringList lines = QString::fromLatin1(file.readAll()).split(u'\n');
    gtypTools.Erase();
    gintToolCount = 0;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString line = lines.at(i).trimmed();
        if (line.isEmpty())
            continue;
        if (line.count(u'|') != 3) {
            Print(gstrToolFile + QStringLiteral(" line %1: a tool is number|type|diameter|offset, not: ").arg(i + 1) +
                  line);
            return false;
        }
        gintToolCount = static_cast<int16_t>(gintToolCount + 1);
        gtypTools.Redim(gintToolCount);
        gtypTools(gintToolCount) = typToolFromRecord(line);
    }
    return true;
}
