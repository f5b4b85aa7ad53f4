// The link's turn-around against the emulator program on a pseudo-terminal, through the
// real QSerialPort: a long rapid move along X at 700 mm/min (16 records of 1.19 ms, so a
// frame runs 19 ms), two frames kept out as the machining stream keeps them.
//
// Figures: the time from a reply's arrival (the port's receive event) to the next frame
// having been written, median / 99th percentile / worst, and how often the emulator ran dry
// (a frame ran out with no frame waiting) before the end of the move.
#include "emulator_bench.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/store.h"
#include "link/comms.h"
#include "link/keycontrol.h"
#include "platform/keystate.h"
#include "link/link_screen.h"
#include "link/spindle.h"
#include "link/stream.h"
#include "nc/analysed.h"
#include "nc/evaluate.h"
#include "nc/reader.h"
#include "platform/clock.h"
#include "tools/tooltable.h"
#include "platform/qt_serial_port.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <QTimer>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace {

int64_t steadyNs()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

QByteArray RapidFrame()
{
    const int timer = 65536 - 1097;   // 65536 - round(768000 / 700)
    QByteArray f;
    f.append(char(16 * 3 + 1));
    for (int i = 0; i < 16; ++i)
        f.append(char(4 | 32)).append(char(timer & 0xFF)).append(char(timer >> 8));
    return f;
}

// Reads the emulator program's step count, dry runs (less the one at the end of the move)
// and worst wake-up lateness, then takes the link down and ends the program.
void StopEmulator(QProcess &emu, long long &steps, long long &dry, long long &lateUs)
{
    steps = StatusValue(emu, "pos");
    dry = StatusValue(emu, "dry") - 1;   // the end of the move is no dry run
    lateUs = StatusValue(emu, "late_max_us");
    ResetComms();
    emu.write("quit\n");
    emu.waitForFinished(3000);
}

// Median, 99th percentile and worst of the reply-to-next-frame times, microseconds.
void LatencyCounters(benchmark::State &state, std::vector<double> &latencyUs)
{
    std::sort(latencyUs.begin(), latencyUs.end());
    auto pct = [&](double p) {
        if (latencyUs.empty())
            return 0.0;
        size_t i = static_cast<size_t>(p * static_cast<double>(latencyUs.size() - 1) + 0.5);
        return latencyUs[i];
    };
    state.counters["p50_us"] = pct(0.50);
    state.counters["p99_us"] = pct(0.99);
    state.counters["max_us"] = latencyUs.empty() ? 0.0 : latencyUs.back();
}

void BM_RapidTurnAround(benchmark::State &state)
{
    const int frames = static_cast<int>(state.range(0));
    std::vector<double> latencyUs;
    long long dry = 0;
    long long steps = 0;
    long long lateUs = 0;
    for (auto _ : state) {
        QProcess emu;
        QTemporaryDir dir;
        if (!StartEmulator(emu, dir, state))
            return;
        if (!LinkUp(state))
            return;
        int64_t lastArrival = 0;
        QObject::connect(comSerial(), &SerialPort::received, comSerial(), [&] { lastArrival = steadyNs(); });

        const QByteArray frame = RapidFrame();
        latencyUs.reserve(static_cast<size_t>(frames));
        for (int i = 0; i < frames; ++i) {
            bool waited = false;
            if (gintBuffersOut >= 2) {
                if (!blnGetReplies(false)) {
                    state.SkipWithError("a reply was lost");
                    return;
                }
                waited = true;
            }
            SendFrame(frame);
            if (waited)
                latencyUs.push_back(static_cast<double>(steadyNs() - lastArrival) / 1000.0);
        }
        blnGetReplies(true);
        StopEmulator(emu, steps, dry, lateUs);
    }
    LatencyCounters(state, latencyUs);
    state.counters["dry_runs"] = static_cast<double>(dry);
    state.counters["frames"] = frames;
    // How late the emulator program itself woke at worst: dry runs with a large value here
    // come from the scheduler of a loaded machine, not from the link.
    state.counters["emu_late_max_us"] = static_cast<double>(lateUs);
    state.counters["steps_ok"] = steps == static_cast<long long>(frames) * 16 ? 1 : 0;
}
BENCHMARK(BM_RapidTurnAround)->Arg(500)->Iterations(1)->Unit(benchmark::kMillisecond);

// A compiled program played by the machining stream (StartMilling, SendToMill) to the
// emulator program over a pseudo-terminal: `lines` cuts of 10 mm along X at 700 mm/min,
// each with its ramps. The in-run prompt is answered at once (the tool goes in, the
// spindle starts). Figures: how often the emulator ran dry, the run's wall time against
// the time the controller needed for the steps, and whether the machine made every step
// the PC counted.
void BM_StreamProgram(benchmark::State &state)
{
    const int lines = static_cast<int>(state.range(0));
    long long dry = -1, posX = -1;
    double wallMs = 0, idleMs = 0;
    long long lateUs = -1;
    for (auto _ : state) {
        QProcess emu;
        QTemporaryDir dir;
        if (!StartEmulator(emu, dir, state))
            return;
        RegistryValuePut(QStringLiteral("RapidSpeed"), QStringLiteral("700"));
        RegistryValuePut(QStringLiteral("KeepFiles"), QStringLiteral("Yes"));
        ReadStartSettings();
        gintToolCount = 1;
        gtypTools.Redim(1);
        gtypTools(1) = ToolData{1, QStringLiteral("End mill"), 6.0f, 0.0f, false};
        QByteArray nc = "%\r\nN10 T1\r\nN20 S1000\r\nN30 G0 X0 Y0 Z2\r\nN40 G1 Z0 F700\r\n";
        for (int i = 0; i < lines; ++i)
            nc += QStringLiteral("N%1 G1 X%2 F700\r\n").arg(50 + i * 10).arg(i % 2 ? 0 : 10).toLatin1();
        const QString file = dir.path() + QStringLiteral("/bench.brx");
        QFile f(file);
        f.open(QIODevice::WriteOnly);
        f.write(nc);
        f.close();
        gfnCompFileReason = &strCompFileReason;
        ReadCommands(file);
        EvaluateCommands();

        streamHooks().millPrompt = [](const QString &) {
            gintCurrentTool = gintNextTool;
            SpindleStart();
            return QString();
        };
        if (!LinkUp(state))
            return;
        glngPosX = glngPosY = glngPosZ = 0;
        gintCurrentTool = gintNextTool = 0;
        gblnCancel = false;
        const int64_t start = steadyNs();
        StartMilling();
        SendToMill();
        wallMs = static_cast<double>(steadyNs() - start) / 1e6;
        dry = StatusValue(emu, "dry");
        posX = StatusValue(emu, "pos");
        emu.write("status\n");
        emu.waitForReadyRead(2000);
        const QList<QByteArray> words = emu.readLine().trimmed().split(' ');
        for (int i = 0; i + 1 < words.size(); ++i)
            if (words[i] == "idle_ms")
                idleMs = words[i + 1].toDouble();
            else if (words[i] == "late_max_us")
                lateUs = words[i + 1].toLongLong();
        ResetComms();
        ResetStreamHooks();
        emu.write("quit\n");
        emu.waitForFinished(3000);
    }
    // The first frame and the waits at the tool and speed records start from an idle
    // controller and count as dry runs too; the lines add none when the stream keeps up.
    state.counters["dry_runs"] = static_cast<double>(dry);
    state.counters["idle_ms"] = idleMs;
    state.counters["emu_late_max_us"] = static_cast<double>(lateUs);
    state.counters["wall_ms"] = wallMs;
    state.counters["steps_ok"] = posX == glngPosX ? 1 : 0;
    state.counters["steps_x"] = static_cast<double>(glngPosX);
}
BENCHMARK(BM_StreamProgram)->Arg(1)->Arg(25)->Iterations(1)->Unit(benchmark::kMillisecond);


// The manual key loop in a rapid at 700 mm/min along X (Numpad 0 and Right held by a fake
// key state for `ms`), against the emulator program through the real serial port code.
// Ramp up, cruise at 16 steps a round (19 ms a frame), ramp down. Figures: from a reply's
// arrival to the loop's next frame written (seen at the next turn of the message loop),
// and how often the controller ran dry before the end of the move.
void BM_JogRapid(benchmark::State &state)
{
    const int ms = static_cast<int>(state.range(0));
    std::vector<double> latencyUs;
    long long dry = 0, steps = 0, lateUs = 0;
    int32_t counted = 0;
    for (auto _ : state) {
        QProcess emu;
        QTemporaryDir dir;
        if (!StartEmulator(emu, dir, state))
            return;
        if (!LinkUp(state))
            return;
        int64_t lastArrival = 0;
        QObject::connect(comSerial(), &SerialPort::received, comSerial(), [&] { lastArrival = steadyNs(); });
        int16_t lastOut = 0;
        SetPumpHook([&] {
            if (gintBuffersOut > lastOut && lastArrival != 0) {
                latencyUs.push_back(static_cast<double>(steadyNs() - lastArrival) / 1000.0);
                lastArrival = 0;
            }
            lastOut = gintBuffersOut;
        });
        FakeKeyState keys;
        ScopedKeyState scoped(&keys);
        gsngRapidSpeed = 700.0f;
        gblnRapidUseDot = false;
        glngPosX = 0;
        keys.Press(VK_NUMPAD0);
        keys.Press(VK_RIGHT);
        QTimer::singleShot(ms, [&] { keys.ReleaseAll(); });
        QTimer::singleShot(ms + 1500, [] { gblnKeyLoop = false; });
        gblnKeyLoop = true;
        KeyControl();
        SetPumpHook({});
        counted = glngPosX;
        StopEmulator(emu, steps, dry, lateUs);
    }
    LatencyCounters(state, latencyUs);
    state.counters["dry_runs"] = static_cast<double>(dry);
    state.counters["frames"] = static_cast<double>(latencyUs.size());
    state.counters["emu_late_max_us"] = static_cast<double>(lateUs);
    state.counters["steps"] = static_cast<double>(steps);
    state.counters["steps_ok"] = steps == counted ? 1 : 0;
}
BENCHMARK(BM_JogRapid)->Arg(8000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
