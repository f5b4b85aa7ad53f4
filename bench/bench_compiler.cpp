// The step compiler's speed and memory: a generated program of 200 000 lines mixing straight
// moves and arcs (about 12 million steps) compiled to an analysed file, as EvaluateCommands
// does it before machining (event loop turns and all). Reports steps per second and the peak
// memory the compilation adds on top of the command table: the records go to disk in 2 KiB
// blocks, so that figure must not grow with the number of steps.
//
//     build/bench/bench_compiler --benchmark_counters_tabular=true
#include "core/state.h"
#include "nc/analysed.h"
#include "nc/commands.h"
#include "nc/evaluate.h"
#include "nc/linestep.h"
#include "nc/stepcode.h"
#include "tools/tooltable.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

namespace {

long PeakRssKiB()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss;
}

CommandRecord Command(int16_t type, float x, float y, float z, float value, const QString &text)
{
    CommandRecord c;
    c.intType = type;
    c.sngX = x;
    c.sngY = y;
    c.sngZ = z;
    c.sngValue = value;
    c.strText = text;
    return c;
}

// T1, S1000, a first G0, then blocks of eight: cuts of 1 mm in X and Y (some in line, some
// turning), a quarter circle of radius 0.5 mm in centre form, one in R form, a rapid and a
// plunge. Moves zig-zag inside a 100 x 80 mm field.
int64_t BuildProgram(int lines)
{
    gtypCommands.Erase();
    gtypCommands.reserve(static_cast<size_t>(lines) + 8);
    gtypCommands.Append(Command(kCmdTool, 300, 300, 300, 1, QStringLiteral("N1 T1")));
    gtypCommands.Append(Command(kCmdSpeed, 300, 300, 300, 1000, QStringLiteral("N2 S1000")));
    gtypCommands.Append(Command(kCmdRapid, 10, 10, 1, 500, QStringLiteral("N3 G0 X10 Y10 Z1")));
    float x = 10, y = 10;
    int n = 3;
    int dir = 1;
    while (n < lines) {
        auto add = [&](CommandRecord c) {
            ++n;
            c.strText = QStringLiteral("N%1 ").arg(n) + c.strText;
            gtypCommands.Append(c);
        };
        if (x > 90 || x < 10) {
            dir = -dir;
            y = y > 70 ? 10 : y + 2;
            add(Command(kCmdRapid, x, y, 1, 500, QStringLiteral("G0")));
        }
        add(Command(kCmdLine, x, y, -1, 300, QStringLiteral("G1 Z-1 F300")));
        x += dir;
        add(Command(kCmdLine, x, y, -1, 400, QStringLiteral("G1 X F400")));
        x += dir;
        add(Command(kCmdLine, x, y, -1, 400, QStringLiteral("G1 X")));
        add(Command(kCmdLine, x, y + 1, -1, 400, QStringLiteral("G1 Y")));
        CommandRecord arc = Command(kCmdArcCw, x + dir * 0.5f, y + 1.5f, -1, 300, QStringLiteral("G3 I J"));
        arc.sngI = dir * 0.5f;
        add(arc);
        x += dir * 0.5f;
        y += 1.5f;
        CommandRecord arcR = Command(kCmdArcCcw, x + dir * 0.5f, y - 0.5f, -1, 300, QStringLiteral("G2 R"));
        arcR.sngR = 0.5f;
        add(arcR);
        x += dir * 0.5f;
        y -= 1.5f;
        add(Command(kCmdLine, x, y, -1, 250, QStringLiteral("G1 X Y")));
        add(Command(kCmdRapid, x, y, 1, 500, QStringLiteral("G0 Z1")));
    }
    glngCommandCount = static_cast<int32_t>(gtypCommands.size());
    gintUsedTools.Erase();
    gintUsedTools.Append(1);
    gintUsedToolCount = 1;
    // Bytes of header and command table: what precedes the records in the file.
    int64_t bytes = 16 + 4 + 6 + 2 + 6 + 4;
    for (int32_t i = 1; i <= glngCommandCount; ++i)
        bytes += 2 + gtypCommands(i).strText.size() + 4;
    return bytes;
}

void BM_CompileProgram(benchmark::State &state)
{
    ResetSharedState();
    gsngRapidSpeed = 500.0f;
    gblnKeepFiles = true;
    gtypTools.Erase();
    ToolData tool;
    tool.intNumber = 1;
    tool.sngDiameter = 3.0f;
    gtypTools.Append(tool);
    gintToolCount = 1;
    const int lines = static_cast<int>(state.range(0));
    QTemporaryDir dir;
    int64_t records = 0;
    long rssBefore = 0, rssAfter = 0;
    for (auto _ : state) {
        state.PauseTiming();
        ResetStepState();
        ResetLineState();
        const int64_t headerBytes = BuildProgram(lines);
        gstrAnalysedFile = dir.path() + QStringLiteral("/bench.ncx");
        gstrDigest = QByteArray(16, ' ');
        gblnAnalysedValid = false;
        gblnCancel = false;
        rssBefore = PeakRssKiB();
        state.ResumeTiming();

        EvaluateCommands();

        state.PauseTiming();
        rssAfter = PeakRssKiB();
        records = (QFileInfo(gstrAnalysedFile).size() - headerBytes - 4) / 8;
        state.ResumeTiming();
    }
    state.counters["lines"] = lines;
    state.counters["records"] = static_cast<double>(records);
    state.counters["steps/s"] = benchmark::Counter(static_cast<double>(records), benchmark::Counter::kIsIterationInvariantRate);
    state.counters["peakRSS_MiB"] = rssAfter / 1024.0;
    state.counters["compileAdds_MiB"] = (rssAfter - rssBefore) / 1024.0;
}

} // namespace

BENCHMARK(BM_CompileProgram)->Arg(50000)->Arg(200000)->Arg(400000)->Unit(benchmark::kMillisecond)->Iterations(3)->UseRealTime();

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);  // UpdateProgress turns the event loop once a move, as in the program
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
