// Step records: the one form in which motion exists between compilation and the controller.
//
// A step record is 8 bytes, no separators, records one after another:
//
//   offset  0      4       5          6           7
//          +------+-------+----------+-----------+------+
//          | cmd  | flags | timer lo | timer hi  | code |
//          +------+-------+----------+-----------+------+
//   cmd    signed 32-bit, low byte first: the command that caused the step; negative in a
//          first-move record; 0 for steps that belong to no command (they end the stream)
//   flags  4 X steps, 8 Y steps, 16 Z steps, 32/64/128 X/Y/Z direction positive
//   timer  the controller's count-up start value for the step BEFORE this one
//          (65536 - 768000 / mm/min, at least 1536 = 12 mm/min)
//   code   (x+1)*2 + (y+1)*8 + (z+1)*32, +1 at exactly the rapid speed (0..85);
//          160 spindle speed, 176 tool change, 0 with zero flags: end / marker
//
// Bytes 4 to 6 go over the line as a frame record; the code stays on the PC.
//
// The same routines run while compiling (records go to the analysed file) and at machining
// time for the lead-in (records go to the work file): `gblnStepsToWorkFile` chooses.
#pragma once

#include "core/state.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>

// The records awaiting a flush. A plain growing byte buffer: records are appended 8 bytes at a
// time and written out in blocks of a little over 2 KiB, so it stays small while compiling
// (records of command 0 never flush; they are few and come at the very end).
class StepBuffer {
public:
    void append(const char *bytes, size_t n)
    {
        if (m_size + n > m_capacity)
            grow(m_size + n);
        std::memcpy(m_data.get() + m_size, bytes, n);
        m_size += n;
    }
    void append(const QByteArray &bytes) { append(bytes.constData(), static_cast<size_t>(bytes.size())); }
    void clear() { m_size = 0; }
    bool isEmpty() const { return m_size == 0; }
    qsizetype size() const { return static_cast<qsizetype>(m_size); }
    const char *data() const { return m_data.get(); }
    QByteArray bytes() const { return QByteArray(data(), size()); }

private:
    void grow(size_t needed);
    std::unique_ptr<char[]> m_data;
    size_t m_size = 0;
    size_t m_capacity = 0;
};

// Bytes 4 to 7 of a record, as `strComposedStep` builds them.
using ComposedStep = std::array<char, 4>;

// Record types given to strComposedStep / SendStepToBuffer.
enum : int16_t {
    kStepMove = 2,         // a step on up to three axes
    kStepReserved = 5,
    kStepEnd = 6,          // end of program
    kStepSpeed = 7,        // spindle speed (code 160)
    kStepTool = 8,         // tool change (code 176)
    kStepToolMarker = 15,  // marker before the last tool's Z correction
};
constexpr uint8_t kCodeSpeed = 160;
constexpr uint8_t kCodeTool = 176;
constexpr int32_t kTimerFloor = 1536;   // 12 mm/min, the slowest speed a record can carry
constexpr int kStepsPerMm = 72;
constexpr qsizetype kFlushAbove = 2040; // bytes; gives 2048-byte writes

// --- Step state, shared with the line and arc steppers, the evaluator and the stream.
extern StepBuffer gstrStepBuffer;
extern int32_t glngStepTimer;         // timer of the last step composed; 0 after a non-step; -1 at start
extern float gsngStepSpeedX;          // axis speeds of the last step composed, mm/min, signed
extern float gsngStepSpeedY;
extern float gsngStepSpeedZ;
// gintPlayX/Y/Z (steps of play due at the next reversal) and gintLastDirX/Y/Z (last
// direction moved, +1 or -1) are shared with the link: core/state.h.
extern int32_t glngFirstMove;         // command number of the first positioning move; -1 none
extern bool gblnStepsToWorkFile;      // flushes go to gintWorkFile, else to gintAnalysedFile
extern int16_t gintAnalysedFile;      // file number of the open analysed file, 0 none
extern float gsngOldToolOffset;       // offset of the tool before the last change, mm
extern float gsngToolOffset;          // offset of the tool in the spindle, mm
extern bool gblnToolOffsetPending;    // the next motion makes the Z correction of a tool change

// Back to the state before any compilation (tests).
void ResetStepState();

// 4 or 2 bytes of the two's complement value, low byte first.
QByteArray strLongToLongString(int32_t lngValue);
QByteArray strIntToIntString(int16_t intValue);

// Bytes 4..7 of a record. intX/Y/Z are -1, 0, +1; speeds signed, mm/min.
ComposedStep strComposedStep(int16_t intX, int16_t intY, int16_t intZ, float sngSpeedX, float sngSpeedY,
                             float sngSpeedZ, int16_t intType);
// Composes a record, inserts the backlash steps ahead of a reversal, stores it (unless it
// belongs to the first move), flushes a full buffer and counts the machine position.
void SendStepToBuffer(int32_t lngCommand, int16_t intX, int16_t intY, int16_t intZ, float sngSpeedX,
                      float sngSpeedY, float sngSpeedZ, int16_t intType);
// Backlash take-up: extra steps on every axis that reverses with this step.
void SendPlayToBuffer(int32_t lngCommand, int16_t intX, int16_t intY, int16_t intZ, float sngSpeedX,
                      float sngSpeedY, float sngSpeedZ);
// Writes the buffer to the file chosen by gblnStepsToWorkFile and empties it.
void FlushStepBuffer();

// The path of a new, empty, unique file "QOR*.tmp" in the temporary folder. It is kept.
QString strTempFile();
// Closes file number intFile (when above 0) and deletes strFile (when it is not empty and exists).
void KillFile(const QString &strFile, int16_t intFile);
// KillFile of the work step file; at shutdown and when a run ends.
void KillWorkFile();
