#include "nc_test_support.h"

#include "core/filenum.h"
#include "core/hooks.h"
#include "core/state.h"
#include "core/vb.h"
#include "nc/analysed.h"
#include "nc/commands.h"
#include "nc/evaluate.h"
#include "nc/linestep.h"
#include "nc/stepcode.h"
#include "nc/reader.h"
#include "tools/tooltable.h"

#include <cmath>

void ResetCompilerState()
{
    FileCloseAll();
    ResetSharedState();
    ResetStepState();
    ResetLineState();
    gtypCommands.Erase();
    glngCommandCount = 0;
    gintUsedTools.Erase();
    gintUsedToolCount = 0;
    gsngPathTotal = 0.0f;
    gstrAnalysedFile.clear();
    gstrDigest.clear();
    gsngRapidSpeed = 500.0f;
    gblnKeepFiles = true;
    CreateAccelProfile(0.4f);
    SetTools({{1, 3.0f, 0.0f}});
}

void SetTools(const std::vector<TestTool> &tools)
{
    gtypTools.Erase();
    gintToolCount = 0;
    for (const TestTool &t : tools) {
        gtypTools.Append({.intNumber = t.number, .strType = QStringLiteral("End mill"), .sngDiameter = t.diameter,
                          .sngOffset = t.offset});
        ++gintToolCount;
    }
}

StepCapture::StepCapture()
{
    gintAnalysedFile = FreeFile();
    FileOpen(gintAnalysedFile, m_path, FileMode::Output);
}

StepCapture::~StepCapture()
{
    FileClose(gintAnalysedFile);
    gintAnalysedFile = 0;
}

std::vector<StepRecordView> StepCapture::records()
{
    FileOf(gintAnalysedFile).flush();
    return ParseStepRecords(ReadFileBytes(m_path) + gstrStepBuffer.bytes());
}

void ReadProgram(const QString &strFile)
{
    gfnCompFileReason = &strCompFileReason;
    ReadCommands(strFile);
}

QString CompileProgram(const QString &strFile)
{
    gblnCancel = false;
    ReadProgram(strFile);
    EvaluateCommands();
    return gstrAnalysedReason;
}

void ExpectValidRecords(const AnalysedFileView &v)
{
    ASSERT_TRUE(v.trailerValid);
    ASSERT_TRUE(v.problems.isEmpty()) << v.problems.join(u'\n').toStdString();
    ASSERT_EQ(v.commands.size(), static_cast<size_t>(glngCommandCount));
    for (size_t i = 0; i < v.records.size(); ++i) {
        const StepRecordView &r = v.records[i];
        if (r.command < 0)
            continue;
        if (r.isNonStep()) {
            EXPECT_TRUE(r.code == 0 || r.code == 160 || r.code == 176) << i;
            continue;
        }
        ASSERT_LE(r.code, 85) << i;
        EXPECT_EQ((r.code >> 1) % 4 - 1, r.dx()) << i;
        EXPECT_EQ((r.code >> 3) % 4 - 1, r.dy()) << i;
        EXPECT_EQ((r.code >> 5) % 4 - 1, r.dz()) << i;
        EXPECT_GE(r.timer, 1536) << i;
    }
    ASSERT_FALSE(v.records.empty());
    EXPECT_EQ(v.records.back().command, 0);
    EXPECT_TRUE(v.records.back().isNonStep());
}

void ExpectMachinePositions(const AnalysedFileView &v, double tieBand)
{
    ASSERT_GT(glngFirstMove, 0);
    const CommandRecord &first = gtypCommands(glngFirstMove);
    int64_t pos[3] = {std::llround(first.sngX * 72.0), std::llround(first.sngY * 72.0), std::llround(first.sngZ * 72.0)};
    size_t i = 0;
    while (i < v.records.size() && v.records[i].command <= glngFirstMove)
        ++i;
    while (i < v.records.size() && v.records[i].command > 0) {
        const int32_t cmd = v.records[i].command;
        for (; i < v.records.size() && v.records[i].command == cmd; ++i)
            pos[0] += v.records[i].dx(), pos[1] += v.records[i].dy(), pos[2] += v.records[i].dz();
        const CommandRecord &c = gtypCommands(cmd);
        const double t[3] = {c.sngX * 72.0, c.sngY * 72.0, c.sngZ * 72.0};
        if (c.intType == kCmdRapid || c.intType == kCmdLine) {
            // Also after an arc, which may leave the machine short of its target.
            for (int a = 0; a < 3; ++a) {
                const int64_t slack = std::fabs(t[a] - std::floor(t[a]) - 0.5) < tieBand ? 1 : 0;
                ASSERT_LE(std::llabs(pos[a] - std::llround(t[a])), slack) << c.strText.toStdString() << " axis " << a;
            }
        } else if (c.intType == kCmdArcCw || c.intType == kCmdArcCcw) {
            for (int a = 0; a < 2; ++a) {
                // An R arc under 3 steps is a line: it ends on the rounded target.
                EXPECT_LT(pos[a], t[a] + 0.5 + 1e-3) << c.strText.toStdString();
                EXPECT_GT(pos[a], t[a] - 5 - 1e-3) << c.strText.toStdString();
            }
        }
    }
    // The single-precision position stays within half a step of the steps sent (its rounding
    // drifts, by about a hundredth of a step over 20 000 lines).
    EXPECT_NEAR(gsngCurX * 72.0, pos[0], 0.5);
    EXPECT_NEAR(gsngCurY * 72.0, pos[1], 0.5);
}

ReaderHarness::ReaderHarness()
{
    ResetSharedState();
    ResetReader();
    gsngRapidSpeed = 500.0f;
    SetTools({{1, 3.0f, 0.0f}, {2, 3.0f, 0.0f}, {3, 3.0f, 0.0f}, {7, 3.0f, 0.0f}});
    install();
}

ReaderHarness::~ReaderHarness()
{
    ResetUiHooks();
    ResetReader();
    ResetSharedState();
}

void ReaderHarness::install()
{
    uiHooks().correctFile = [this](const QString &file, const QString &errorText, const QString &faultyLine) {
        corrections.push_back({file, errorText, faultyLine});
        return QStringLiteral("Cancel");
    };
    uiHooks().pageTurnStart = [this](const QString &status) { busy << QStringLiteral("start ") + status; };
    uiHooks().pageTurnStop = [this] { busy << QStringLiteral("stop"); };
}

QList<int> UsedTools()
{
    QList<int> out;
    for (int i = 1; i <= gintUsedToolCount; ++i)
        out << gintUsedTools(i);
    return out;
}
