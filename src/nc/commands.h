// The command table: one record for each "N" line of an NC program, made by the reader
// and walked by the evaluator. Coordinates are absolute millimetres; 300.0 means the
// coordinate has not been programmed yet.
#pragma once

#include "core/vb.h"

#include <QString>

#include <cstdint>

struct CommandRecord {
    QString strText;        // the whole line, trailing control characters and blanks removed
    int32_t lngLine = 0;    // physical line number in the file, from 1, header lines included
    int16_t intType = 0;    // command type, below
    float sngI = 0.0f;      // arc centre X relative to the arc's start, mm
    float sngJ = 0.0f;      // arc centre Y relative to the arc's start, mm
    float sngX = 0.0f;      // X target, mm (a dwell's P value lands here too)
    float sngY = 0.0f;      // Y target, mm
    float sngZ = 0.0f;      // Z target, mm
    float sngR = 0.0f;      // arc radius, mm; 0: the arc is in centre form
    float sngValue = 0.0f;  // feed mm/min for a move; spindle speed for S; tool number for T
};

// Command types.
enum : int16_t {
    kCmdNone = 0,     // an N line that assigned nothing
    kCmdRapid = 1,    // G0
    kCmdLine = 2,     // G1
    kCmdArcCw = 3,    // G3, "arc cw" in the messages
    kCmdArcCcw = 4,   // G2, "arc ccw" in the messages
    kCmdSpeed = 7,    // S
    kCmdTool = 8,     // T
    kCmdDwell = 14,   // G4
};

// Not yet programmed.
constexpr float kNotProgrammed = 300.0f;
// A letter that stood without a number.
constexpr float kNoValue = 65536.0f;

extern vb::Table<CommandRecord> gtypCommands;   // from 1
extern int32_t glngCommandCount;
extern vb::Table<int16_t> gintUsedTools;        // tool numbers in order of first use, from 1
extern int16_t gintUsedToolCount;
