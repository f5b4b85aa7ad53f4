// The rate test for real: each preset streams its timing-only frames for its full minute to
// the emulator program on a pseudo-terminal, through the real QSerialPort, on the real
// clock. Figures: the Test Factor the preset gives on this machine (the fewest idle polls
// between two of the controller's requests), the frames sent, and how often the emulator
// ran dry (a frame ran out with none waiting), and the emulator's own worst lateness.
// Seven minutes in all: not for every build.
//
//     build/bench/bench_rate_test --benchmark_counters_tabular=true
#include "emulator_bench.h"
#include "core/hooks.h"
#include "core/state.h"
#include "core/store.h"
#include "link/comms.h"
#include "link/frm_rate_test.h"
#include "link/link_screen.h"
#include "platform/qt_serial_port.h"

#include <QApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

void BM_RateTestPreset(benchmark::State &state)
{
    const int index = static_cast<int>(state.range(0));
    int32_t factor = -1;
    int32_t sent = 0;
    long long dry = -1;
    long long lateUs = -1;
    for (auto _ : state) {
        QProcess emu;
        QTemporaryDir dir;
        if (!StartEmulator(emu, dir, state) || !LinkUp(state))
            return;
        FrmRateTest *form = frmRateTest();
        form->intPreset = static_cast<int16_t>(index);
        form->RateTest(intPresetRate(index));
        factor = glngTestFactor;
        sent = form->lngSent;
        dry = StatusValue(emu, "dry") - 1;   // the end of the preset is no dry run
        lateUs = StatusValue(emu, "late_max_us");
        Unload(form);
        ResetComms();
        emu.write("quit\n");
        emu.waitForFinished(3000);
    }
    state.counters["rate_mm_min"] = intPresetRate(index);
    state.counters["test_factor"] = factor;
    state.counters["passes"] = factor >= kRatePassMark ? 1 : 0;
    state.counters["frames"] = sent;
    state.counters["dry_runs"] = static_cast<double>(dry);
    // How late the emulator program itself woke at worst: replies it then sends in a bunch are
    // found already waiting by the PC, which counts as no idle time at all.
    state.counters["emu_late_max_us"] = static_cast<double>(lateUs);
}
BENCHMARK(BM_RateTestPreset)->DenseRange(0, kRatePresets - 1)->Iterations(1)->Unit(benchmark::kSecond);

} // namespace
