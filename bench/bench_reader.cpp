// Reading a generated NC program of 20 000 lines (and 200 000), as the set-up wizard does before compiling:
// time per read and the process's peak memory (ru_maxrss) as counters.
#include "core/hooks.h"
#include "core/state.h"
#include "nc/commands.h"
#include "nc/reader.h"
#include "tools/tooltable.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

namespace {

double PeakRssMiB()
{
    rusage ru{};
    getrusage(RUSAGE_SELF, &ru);
    return static_cast<double>(ru.ru_maxrss) / 1024.0;   // ru_maxrss is in KiB on Linux
}

// A pocket-like program: header, tool and speed, then lines, arcs in both forms and Z moves,
// the mix of the converted real-world programs.
QByteArray Program(int lines)
{
    QByteArray out = "%\r\n* Generated pocket\r\n* Billet length 120\r\n* Billet width 90\r\n* Billet depth 20\r\n"
                     "N10 T1\r\nN20 S1500\r\nN30 G0 X10 Y10 Z5\r\nN40 G1 Z-1 F200\r\n";
    int n = 50;
    for (int i = 0, count = 9; count < lines; ++i, ++count, n += 10) {
        const double x = 10.0 + (i % 900) * 0.1;
        const double y = 10.0 + (i % 700) * 0.1;
        QByteArray l = "N" + QByteArray::number(n);
        switch (i % 4) {
        case 0: l += " G1 X" + QByteArray::number(x, 'f', 4) + " Y" + QByteArray::number(y, 'f', 4); break;
        case 1: l += " G2 X" + QByteArray::number(x + 1, 'f', 4) + " Y" + QByteArray::number(y, 'f', 4) + " I0.5 J0"; break;
        case 2: l += " G3 X" + QByteArray::number(x, 'f', 4) + " Y" + QByteArray::number(y + 1, 'f', 4) + " R2.5"; break;
        default: l += " G1 Z-" + QByteArray::number(1 + (i % 5) * 0.2, 'f', 3) + " F150"; break;
        }
        out += l + "\r\n";
    }
    return out;
}

void BM_ReadCommands(benchmark::State &state)
{
    const double before = PeakRssMiB();
    QTemporaryDir dir;
    const QString path = dir.path() + QStringLiteral("/bench.brx");
    {
        QFile f(path);
        f.open(QIODevice::WriteOnly);
        f.write(Program(static_cast<int>(state.range(0))));
    }
    gsngRapidSpeed = 500.0f;
    gtypTools.Erase();
    ToolData t;
    t.intNumber = 1;
    gtypTools.Append(t);
    gintToolCount = 1;
    bool faulted = false;
    uiHooks().correctFile = [&faulted](const QString &, const QString &, const QString &) {
        faulted = true;
        return QStringLiteral("Cancel");
    };
    for (auto _ : state) {
        ReadCommands(path);
        benchmark::DoNotOptimize(glngCommandCount);
    }
    if (faulted || gintReadResult != 0)
        state.SkipWithError("the generated program did not read cleanly");
    state.counters["lines"] = static_cast<double>(state.range(0));
    state.counters["commands"] = glngCommandCount;
    state.counters["peak_rss_MiB"] = PeakRssMiB();
    state.counters["rss_before_MiB"] = before;
    state.counters["lines_per_s"] = benchmark::Counter(static_cast<double>(state.range(0) * state.iterations()),
                                                       benchmark::Counter::kIsRate);
    ResetUiHooks();
}
// 20 000 lines is the figure for README (the longest converted real-world program);
// 200 000 shows how time and memory grow with the program.
BENCHMARK(BM_ReadCommands)->Arg(20000)->Arg(200000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    // The reader pumps the event loop after every line: measure it with one running.
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
