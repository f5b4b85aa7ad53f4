#include "tools/tooltypes.h"

#include "core/logger.h"
#include "core/store.h"

using namespace vb;

vb::Table<QString> gstrToolTypes;
int16_t gintToolTypeCount = 0;

const QStringList &gstrToolTypeStandard()
{
    static const QStringList names{
        QStringLiteral("Ball end"), QStringLiteral("Bull nose"),     QStringLiteral("Drill"),
        QStringLiteral("End mill"), QStringLiteral("Reamer"),        QStringLiteral("Router cutter"),
        QStringLiteral("Slot drill"),
    };
    return names;
}

QString strToolTypeValueName(int n) { return QStringLiteral("ToolType") + Format00(n); }

void ToolTypeUserLoad() try {
    gstrToolTypes.Erase();
    gintToolTypeCount = CInt(Val(strRegistryValueGet(QStringLiteral("ToolTypes"), QStringLiteral("0"))));
    for (int n = 1; n <= gintToolTypeCount; ++n) {
        gstrToolTypes.Redim(n);
        gstrToolTypes(n) = strRegistryValueGet(strToolTypeValueName(n), QString());
    }
} catch (...) {
    LogError("F1Mill", "ToolTypeUserLoad");
}

void ToolTypeUserSave() try {
    RegistryValuePut(QStringLiteral("ToolTypes"), QString::number(gintToolTypeCount));
    for (int n = 1; n <= gintToolTypeCount; ++n)
        RegistryValuePut(strToolTypeValueName(n), gstrToolTypes(n));
} catch (...) {
    LogError("F1Mill", "ToolTypeUserSave");
}
