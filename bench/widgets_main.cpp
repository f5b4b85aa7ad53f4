// The main of the benchmarks that run the program's forms: a widget application on the
// offscreen platform (unless the caller chose one), then Google Benchmark.
#include <QApplication>

#include <benchmark/benchmark.h>

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
