// The tool table: the milling tools the operator owns. Loaded once at start from the
// settings store, written back only by the tool screen's Done.
//
// Stored as "ToolCount" and "Tool01".."ToolNN", each a packed record
//     intNumber|strType|sngDiameter|sngOffset      e.g. "12|End mill|6.000|-2000.000"
// The position in the store is the record's place in the table, not its tool number.
#pragma once

#include "core/vb.h"

#include <QString>

#include <cstdint>

struct ToolData {
    int16_t intNumber = 0;      // tool number as NC programs use it
    QString strType;            // tool type name
    float sngDiameter = 0.0f;   // mm, three decimals at most
    float sngOffset = 0.0f;     // length offset, mm, or gintToolUnknownOffset
    bool blnHide = false;       // left out of a tool grid; never stored
};

// A tool that has never been measured has exactly this offset ("unknown").
constexpr float gintToolUnknownOffset = -2000.0f;

extern vb::Table<ToolData> gtypTools;   // from 1
extern int16_t gintToolCount;           // the table's upper bound; 0 for an empty table

// Replaces the table from the store. A damaged record ends in the error trap.
void ToolDataLoad();
// One stored record read back; fewer than three bars is a fault (the caller's trap reports it).
ToolData typToolFromRecord(const QString &strRecord);
// Writes "ToolCount" and every record.
void ToolDataSave();
// The index of the first record with this tool number, or 0.
int16_t intToolGetId(int16_t intToolNumber);
// The stored text of one record ("12|End mill|6.000|-2000.000") and its value name ("Tool01").
QString strToolRecord(const ToolData &tool);
QString strToolValueName(int n);
// The offset as every display shows it: "unknown" or "0.000".
QString strToolOffsetText(float sngOffset);
