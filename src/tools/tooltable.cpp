#include "tools/tooltable.h"

#include "core/logger.h"
#include "core/store.h"

using namespace vb;

vb::Table<ToolData> gtypTools;
int16_t gintToolCount = 0;

QString strToolValueName(int n) { return QStringLiteral("Tool") + Format00(n); }

QString strToolRecord(const ToolData &tool)
{
    return QString::number(tool.intNumber) + u'|' + tool.strType + u'|' + Format000(tool.sngDiameter) + u'|' +
           Format000(tool.sngOffset);
}

QString strToolOffsetText(float sngOffset)
{
    return sngOffset == gintToolUnknownOffset ? QStringLiteral("unknown") : Format000(sngOffset);
}

ToolData typToolFromRecord(const QString &strRecord)
{
    QString rec = strRecord;
    ToolData tool;
    // A record with fewer than three bars takes the left part of a negative length: a fault.
    int32_t p = InStr(rec, QStringLiteral("|"));
    tool.intNumber = CInt(Val(Left(rec, p - 1)));
    rec = Mid(rec, p + 1);
    p = InStr(rec, QStringLiteral("|"));
    tool.strType = Left(rec, p - 1);
    rec = Mid(rec, p + 1);
    p = InStr(rec, QStringLiteral("|"));
    tool.sngDiameter = static_cast<float>(Val(Left(rec, p - 1)));
    rec = Mid(rec, p + 1);
    tool.sngOffset = static_cast<float>(Val(rec));
    tool.blnHide = false;
    return tool;
}

void ToolDataLoad() try {
    gtypTools.Erase();
    gintToolCount = CInt(Val(strRegistryValueGet(QStringLiteral("ToolCount"), QStringLiteral("0"))));
    for (int n = 1; n <= gintToolCount; ++n) {
        gtypTools.Redim(n);
        gtypTools(n) = typToolFromRecord(strRegistryValueGet(strToolValueName(n), QString()));
    }
} catch (...) {
    LogError("F1Mill", "ToolDataLoad");
}

void ToolDataSave() try {
    RegistryValuePut(QStringLiteral("ToolCount"), QString::number(gintToolCount));
    for (int n = 1; n <= gintToolCount; ++n)
        RegistryValuePut(strToolValueName(n), strToolRecord(gtypTools(n)));
} catch (...) {
    LogError("F1Mill", "ToolDataSave");
}

int16_t intToolGetId(int16_t intToolNumber) try {
    for (int16_t i = 1; i <= gintToolCount; ++i)
        if (gtypTools(i).intNumber == intToolNumber)
            return i;
    return 0;
} catch (...) {
    LogError("F1Mill", "intToolGetId");
}
