// The preview's speed on a big program: an analysed file of about 1.5 million steps (a round
// pocket of concentric circles, 0.5 mm apart, each its own cut, a rapid between), loaded and
// then drawn at 1200 x 800 as `brantok-nc preview` draws it. The goal: drawing under half a
// second. Reports steps and the vertices left after the per-pixel decimation.
//
//     build/bench/bench_preview --benchmark_counters_tabular=true
#include "preview/render.h"
#include "preview/toolpath.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>

namespace {

void Put16(QByteArray &b, int v)
{
    b.append(char(v & 0xFF));
    b.append(char((v >> 8) & 0xFF));
}
void Put32(QByteArray &b, int32_t v)
{
    for (int i = 0; i < 4; ++i)
        b.append(char((static_cast<uint32_t>(v) >> (8 * i)) & 0xFF));
}

// Records that walk from `pos` to `to` (steps) one step at a time, diagonally while both
// axes still have to go, as the steppers do.
void WalkTo(QByteArray &b, int32_t cmd, std::array<int32_t, 3> &pos, std::array<int32_t, 3> to, int64_t &count)
{
    while (pos != to) {
        uint8_t flags = 0;
        int code = 0;
        for (int a = 0; a < 3; ++a) {
            const int d = (to[a] > pos[a]) - (to[a] < pos[a]);
            if (d != 0) {
                flags |= static_cast<uint8_t>(4 << a);
                if (d > 0)
                    flags |= static_cast<uint8_t>(32 << a);
                pos[a] += d;
            }
            code += (d + 1) * (2 << (2 * a));
        }
        Put32(b, cmd);
        b.append(char(flags));
        Put16(b, 60000);
        b.append(char(code));
        ++count;
    }
}

QByteArray BigPocket(int64_t &steps)
{
    QByteArray b(16, 'b');
    Put32(b, 50000);
    Put16(b, 0), Put16(b, 0), Put16(b, 0);
    Put16(b, 1), Put16(b, 1), Put16(b, 600), Put16(b, 0);
    // Commands: the tool, the first move, then per circle a rapid and a cut.
    const int circles = 120;
    QList<QByteArray> texts{"N10 T1", "N20 G0 X50 Y50 Z1"};
    for (int c = 0; c < circles; ++c) {
        texts << QByteArray("N G0 X") + QByteArray::number(50 + 0.5 * (c + 1)) << QByteArray("N G2 I-1");
    }
    Put32(b, static_cast<int32_t>(texts.size()));
    for (const QByteArray &t : texts) {
        Put16(b, static_cast<int>(t.size()));
        b.append(t);
        Put32(b, 1000);
    }
    auto record = [&b](int32_t cmd, int flags, int timer, int code) {
        Put32(b, cmd);
        b.append(char(flags));
        Put16(b, timer);
        b.append(char(code));
    };
    record(1, 0, 0, 176);
    // First move to X 50 Y 50 Z 1 (hundredths).
    record(-2, 100, 0, 0);
    record(-2, 5000 & 0xFF, (5000 >> 8) | ((5000 & 0xFF) << 8), 5000 >> 8);
    std::array<int32_t, 3> pos{3600, 3600, 72};
    steps = 0;
    WalkTo(b, 3, pos, {3600, 3600, -72}, steps);
    for (int c = 0; c < circles; ++c) {
        const double r = 0.5 * (c + 1);
        WalkTo(b, 3 + 2 * c, pos, {pos[0] + 36, pos[1], pos[2]}, steps);
        for (int k = 1; k <= 720; ++k) {
            const double t = k * M_PI / 360.0;
            WalkTo(b, 4 + 2 * c, pos,
                   {static_cast<int32_t>(std::lround((50 + r * std::cos(t)) * 72)),
                    static_cast<int32_t>(std::lround((50 + r * std::sin(t)) * 72)), pos[2]},
                   steps);
        }
    }
    record(0, 0, 0, 0);
    Put32(b, static_cast<int32_t>(b.size() + 4));
    return b;
}

const QByteArray &File(int64_t &steps)
{
    static int64_t s = 0;
    static const QByteArray b = BigPocket(s);
    steps = s;
    return b;
}

void BM_LoadToolpath(benchmark::State &state)
{
    int64_t steps = 0;
    const QByteArray &b = File(steps);
    for (auto _ : state)
        benchmark::DoNotOptimize(LoadToolpath(b));
    state.counters["steps"] = static_cast<double>(steps);
}
BENCHMARK(BM_LoadToolpath)->Unit(benchmark::kMillisecond);

void BM_DrawPreview(benchmark::State &state)
{
    int64_t steps = 0;
    const Toolpath path = LoadToolpath(File(steps));
    PreviewDrawStats stats;
    for (auto _ : state)
        benchmark::DoNotOptimize(RenderPreview(path, QSize(1200, 800), {}, QStringLiteral("big"), &stats));
    state.counters["steps"] = static_cast<double>(path.steps.size());
    state.counters["vertices"] = static_cast<double>(stats.vertices);
}
BENCHMARK(BM_DrawPreview)->Unit(benchmark::kMillisecond);

// Zoomed in 20 times on the middle: most of the path falls outside the view.
void BM_DrawPreviewZoomed(benchmark::State &state)
{
    int64_t steps = 0;
    const Toolpath path = LoadToolpath(File(steps));
    PreviewDrawStats stats;
    PreviewCamera camera;
    camera.zoom = 20;
    for (auto _ : state)
        benchmark::DoNotOptimize(RenderPreview(path, QSize(1200, 800), camera, QStringLiteral("big"), &stats));
    state.counters["vertices"] = static_cast<double>(stats.vertices);
}
BENCHMARK(BM_DrawPreviewZoomed)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    // BRANTOK_BENCH_PNG=file.png: also writes the big program's picture, to look at.
    if (const QString png = qEnvironmentVariable("BRANTOK_BENCH_PNG"); !png.isEmpty()) {
        int64_t steps = 0;
        RenderPreview(LoadToolpath(File(steps)), QSize(1200, 800), {}, QStringLiteral("big")).save(png);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
