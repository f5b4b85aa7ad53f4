// The toolpath of an analysed file, as the machine will run it: every step record replayed,
// so the preview shows the arcs as stepped, the backlash take-up and the Z corrections of tool
// changes, and the time is that of the controller's timer, not an estimate from the G-code.
//
// Who calls it: the preview renderer (preview/render.*), `brantok-nc preview` and
// `brantok-nc compile` (time and extent), and the program's Preview window. It reads the file's
// bytes only; it touches none of the compiler's or the stream's state.
//
// Coordinates are motor steps from the program origin, 72 to the mm on every axis. The first
// move of a program is stored as a target, not as steps (the machine's position is known only
// at machining time); the path starts at that target, and the lead-in to it is drawn and timed
// as the stream makes it (Z, then a straight X-Y move, at the rapid speed with its acceleration
// ramps) from the lead-in start: by default the origin, where the set-up wizard leaves the
// cutter once the origins are set. Tool-change pauses (the operator's time) are not counted.
#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

// A tool of the program, in order of first use (the analysed file's header).
struct PreviewTool {
    int16_t number = 0;
    float diameter = 0.0f;   // mm
    QString type;            // from the tool table when the caller knows it, else empty
};

// One move of the program: the step records of one command, in file order. A command whose
// steps are interrupted by a tool or speed record starts a new move after it.
struct PreviewMove {
    uint32_t firstStep = 0;  // index into Toolpath::steps
    uint32_t stepCount = 0;
    int32_t command = 0;     // 1-based command number
    int16_t tool = -1;       // index into Toolpath::tools, -1 before the first tool record
    bool rapid = false;      // a G0 (by the command's G word, modal): drawn dashed
    bool outside = false;    // some step of it lies outside the working envelope: drawn red
};

// A box in steps, on the three axes.
struct StepBox {
    std::array<int32_t, 3> min{0, 0, 0};
    std::array<int32_t, 3> max{0, 0, 0};
    bool empty = true;
    void add(int32_t x, int32_t y, int32_t z);
};

struct Toolpath {
    QString error;                        // why the file can't be previewed; empty when it can
    float rapidSpeed = 0.0f;              // mm/min, from the header
    std::vector<PreviewTool> tools;
    std::vector<QByteArray> commandTexts; // the command table's texts, 1-based command n at n - 1

    // The path: the lead-in start, the first move's target (where the steps begin), then one
    // byte per step record, the record's flags (4/8/16 X/Y/Z steps, 32/64/128 positive).
    std::array<int32_t, 3> leadFrom{0, 0, 0};  // steps
    std::array<int32_t, 3> start{0, 0, 0};     // steps
    bool hasFirstMove = false;
    int32_t firstMoveCommand = 0;
    std::vector<uint8_t> steps;
    std::vector<PreviewMove> moves;

    // Billet size from the NC file's comment header, mm; 0 when the header gives none.
    float billetLength = 0.0f, billetWidth = 0.0f, billetDepth = 0.0f;

    // --- Results of the walk.
    StepBox extent;                 // every point of the path, lead-in excluded
    int cutMoves = 0, rapidMoves = 0;   // moves with at least one step (the first move counts as a rapid)
    int outsideMoves = 0;           // moves that leave the working envelope
    int toolChanges = 0;            // tool records after the first
    double stepSeconds = 0.0;       // sum over step records of (65536 - timer) / 921 600
    double leadInSeconds = 0.0;     // the lead-in: Z, then X-Y, at the rapid speed with its ramps
    double seconds() const { return stepSeconds + leadInSeconds; }
    bool hasBillet() const { return billetLength > 0 && billetWidth > 0; }
};

// The working envelope: what the tool centre-line can reach, from the origin, in mm.
constexpr double kEnvelopeX = 200.0;
constexpr double kEnvelopeY = 100.0;
constexpr double kPreviewStepsPerMm = 72.0;
constexpr double kControllerHz = 921600.0;

// Reads an analysed file's bytes. `typeOf` gives a tool's type by number (may be empty).
// `leadFromMm` is where the lead-in starts. Never fails: a file it can't use leaves `error` set.
Toolpath LoadToolpath(const QByteArray &bytes, const std::function<QString(int16_t)> &typeOf = {},
                      std::array<double, 3> leadFromMm = {0.0, 0.0, 0.0});
// The same from a file; `error` names the file when it can't be read.
Toolpath LoadToolpathFile(const QString &strFile, const std::function<QString(int16_t)> &typeOf = {},
                          std::array<double, 3> leadFromMm = {0.0, 0.0, 0.0});

// Billet size from the "* Billet length 60" lines of an NC file's comment header, as the reader
// takes it. `strFile` is the NC file, or an analysed file: then the NC file beside it (same name,
// extension brx or cnc) is read. Leaves the sizes at 0 when there is none.
void ReadBilletFromHeader(Toolpath &path, const QString &strFile);

// "1:02:03" for seconds (rounded to the second).
QString strPreviewTime(double seconds);
// Two lines for people: the machining time (and what it includes), the extent in mm.
QString strPreviewTimeLine(const Toolpath &path);
QString strPreviewExtentLine(const Toolpath &path);
