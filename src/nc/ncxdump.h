// A readable picture of an analysed file, for `brantok-nc dump` and the compiler's golden
// tests: the header fields, the tools, the commands with their values, then one line per
// step record. Reviewers read a diff of these lines rather than of bytes.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <vector>

// One 8-byte record as it stands in the file.
struct StepRecordView {
    int32_t command = 0;   // negative in a first-move record
    uint8_t flags = 0;
    uint16_t timer = 0;    // low byte + 256 * high byte
    uint8_t code = 0;
    // Steps of this record on each axis (-1, 0, +1), from the flags.
    int dx() const { return (flags & 4) ? ((flags & 32) ? 1 : -1) : 0; }
    int dy() const { return (flags & 8) ? ((flags & 64) ? 1 : -1) : 0; }
    int dz() const { return (flags & 16) ? ((flags & 128) ? 1 : -1) : 0; }
    bool isStep() const { return command > 0 || (command == 0 && flags != 0); }
    bool isNonStep() const { return flags == 0 && timer == 0 && (code == 0 || code >= 128); }
};

struct AnalysedTool {
    int16_t number = 0;
    int16_t diameter = 0;  // hundredths of a mm
    int16_t offset = 0;    // hundredths of a mm
};

struct AnalysedCommand {
    QByteArray text;
    int32_t value = 0;     // value * 1000
};

struct AnalysedFileView {
    QByteArray digest;
    int32_t rapid = 0;     // mm/min * 100
    int16_t backlash[3] = {0, 0, 0};
    std::vector<AnalysedTool> tools;
    std::vector<AnalysedCommand> commands;
    std::vector<StepRecordView> records;
    int32_t trailer = 0;
    qint64 length = 0;
    bool trailerValid = false;
    QStringList problems;  // what doesn't fit the layout
};

// Splits the bytes of an analysed file by its layout. Never fails: what doesn't fit is
// listed in `problems`.
AnalysedFileView ParseAnalysedFile(const QByteArray &bytes);
// Splits a run of 8-byte step records (a work file, or the step part of an analysed file).
std::vector<StepRecordView> ParseStepRecords(const QByteArray &bytes);
// The dump text, one line per item, lines ended by "\n". `name` heads it.
QString strDumpAnalysedFile(const QByteArray &bytes, const QString &name);
