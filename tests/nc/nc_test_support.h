// Test helpers for the reader and the step compiler: a clean compiler state, a tool table, a
// capture of the step records, a stand-in for the NC reader, the checks on a compiled file,
// and a stage for the reader with a correction window that records what it was asked to show.
#pragma once

#include "nc/ncxdump.h"
#include "support/test_support.h"

#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

// Texts in test failures, with CR and LF made visible.
inline void PrintTo(const QString &s, std::ostream *os)
{
    *os << '"' << QString(s).replace(u'\r', QStringLiteral("\\r")).replace(u'\n', QStringLiteral("\\n")).toStdString() << '"';
}

struct TestTool { int16_t number; float diameter, offset; };

// Every piece of compiler and shared state back to the start; rapid speed 500, no backlash,
// analysed files kept, the profile built, tool 1 of 3 mm.
void ResetCompilerState();
// A clean compiler state before and after each test.
class CompilerTest : public ::testing::Test {
protected:
    void SetUp() override { ResetCompilerState(); }
    void TearDown() override { ResetCompilerState(); }
};
// Replaces the tool table (end mills).
void SetTools(const std::vector<TestTool> &tools);

// A small linear congruential generator: the same numbers on every machine.
struct Lcg {
    uint32_t s;
    uint32_t next() { s = s * 1664525u + 1013904223u; return s >> 8; }
    double uni(double lo, double hi) { return lo + (hi - lo) * (next() / 16777216.0); }
    int pick(int n) { return static_cast<int>(next() % static_cast<uint32_t>(n)); }
};

// Opens a scratch file as the analysed file so that flushes have somewhere to go, and reads
// back every record written (flushed or still buffered).
class StepCapture {
public:
    StepCapture();
    ~StepCapture();
    std::vector<StepRecordView> records();

private:
    QTemporaryDir m_dir;
    QString m_path = m_dir.filePath(QStringLiteral("capture.ncx"));
};

// What the program does before machining: the analysed-file check, then (if the file is not
// valid) the read. Sets gstrNCFile, gstrAnalysedReason, gintReadResult.
void ReadProgram(const QString &strFile);
// ReadProgram, then EvaluateCommands: the program's way to an analysed file. Returns the reason.
QString CompileProgram(const QString &strFile);

// A trailer that equals the length, a layout that holds together, the command table whole; codes
// 0..85 for steps and agreeing with the flags, 160 and 176 for speed and tool, the end last.
void ExpectValidRecords(const AnalysedFileView &v);
// With no backlash and equal tool offsets (and the command table of the compilation): from the
// first move on, every straight move ends on the grid point of its target (within tieBand of a
// half step, either neighbour), every arc at most five steps short; the mm agree with the steps.
void ExpectMachinePositions(const AnalysedFileView &v, double tieBand = 0.02);

struct ShownCorrection { QString file, errorText, faultyLine; };   // txtError's text, the line marked red

// NC files in a temporary folder, rapid 500 mm/min, not a WoodWorker, tools 1, 2, 3 and 7, and
// a correction window that answers "Cancel"; the console hooks and shared state back after.
class ReaderHarness {
public:
    ReaderHarness();
    ~ReaderHarness();
    // (Re)installs the recording hooks; a TrapRecorder going out of scope removes them.
    void install();
    // Writes the bytes to a file of the temporary folder and returns its path.
    QString write(const QString &name, const QByteArray &bytes) { return WriteFile(m_dir.filePath(name), bytes); }
    // "%" and the lines, each ended CR LF.
    static QByteArray program(const QStringList &lines) { return ("%\r\n" + lines.join("\r\n") + "\r\n").toLatin1(); }

    std::vector<ShownCorrection> corrections;
    QStringList busy;   // "start Reading CNC file", "stop"

private:
    QTemporaryDir m_dir;
};

// The tool numbers of gintUsedTools, in order.
QList<int> UsedTools();
