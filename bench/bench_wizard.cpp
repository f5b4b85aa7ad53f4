// The set-up wizard's two waits that the operator feels, on the real forms and the real clock
// (offscreen):
//   BM_StartToFirstFrame      the click on Start to the first frame written to the controller
//                             (the in-process emulator), for a 20 000-line program whose
//                             analysed file is valid. It includes tmrStartMilling's 100 ms.
//   BM_LongestLoopGap         the longest gap between two turns of the event loop (a 1 ms
//                             probe timer) while a 200 000-line program is read and analysed
//                             under steps 1 and 2a: how long an Esc could wait to be seen.
#include "core/frm_main.h"
#include "core/hooks.h"
#include "core/state.h"
#include "core/store.h"
#include "files/filechoice.h"
#include "guide/setmill.h"
#include "link/comms.h"
#include "link/machining_screen.h"
#include "link/stream.h"
#include "nc/analysed.h"
#include "nc/evaluate.h"
#include "nc/reader.h"
#include "platform/emulator_port.h"
#include "tools/tooltable.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>

#include <benchmark/benchmark.h>

#include <memory>

namespace {

// A program of `lines` short cuts back and forth.
QByteArray Program(int lines)
{
    QByteArray p = "%\r\n* bench\r\nN1 T1\r\nN2 S1000\r\nN3 G0 X0 Y0 Z1\r\nN4 G1 Z-0.1 F300\r\n";
    for (int i = 0; i < lines; ++i)
        p += "N" + QByteArray::number(i + 5) + " G1 X" + QByteArray::number(i % 2 ? 10 : 0) + " Y" +
             QByteArray::number((i % 200) * 0.1) + "\r\n";
    return p;
}

// A store in `dir`, one tool, the program written there; its path.
QString SetUp(const QTemporaryDir &dir, int lines)
{
    qputenv("BRANTOK_STORE", (dir.path() + QStringLiteral("/store.conf")).toLocal8Bit());
    RegistryValuePut(QStringLiteral("KeepFiles"), QStringLiteral("Yes"));
    ReadStartSettings();
    gintToolCount = 1;
    gtypTools.Redim(1);
    gtypTools(1) = ToolData{1, QStringLiteral("End mill"), 6.0f, 0.0f, false};
    const QString path = dir.path() + QStringLiteral("/bench.brx");
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write(Program(lines));
    f.close();
    gfnCompFileReason = &strCompFileReason;
    uiHooks().messageBox = [](const QString &, int32_t, const QString &) -> int16_t { return 7; };   // No
    return path;
}

// The in-process emulator on the real clock, noting the moment of the first write.
class TimedPort : public EmulatorPort {
public:
    TimedPort() : EmulatorPort(appClock()) {}
    void write(const QByteArray &b) override
    {
        if (firstWriteNs < 0)
            firstWriteNs = appClock().nsecs();
        EmulatorPort::write(b);
    }
    static inline int64_t firstWriteNs = -1;
};

void BM_StartToFirstFrame(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString path = SetUp(dir, static_cast<int>(state.range(0)));
    ReadCommands(path);
    EvaluateCommands();   // the analysed file: valid from here on
    ReadCommands(path);
    SetSerialPortOverride([](int16_t) { return std::make_unique<TimedPort>(); });
    RegistryValuePut(QStringLiteral("Comport"), QStringLiteral("COM1"));
    gblnOnline = true;
    SetupComms();
    FrmMain *f = frmMain();
    InstallMachiningUi();
    bool blnOver = false;
    StreamHooks &h = streamHooks();
    h.millPrompt = [](const QString &) { return QStringLiteral("Done"); };   // an operator with no delay
    h.backToWizard = [&] { blnOver = true; };
    h.showMethod = [&] { blnOver = true; };
    SetPumpHook([] {
        if (TimedPort::firstWriteNs >= 0)
            gblnCancel = true;   // Esc once the first frame is out: the run is given up
    });
    double worstMs = 0;
    for (auto _ : state) {
        gintSetStep = 7;
        gblnStartAllowed = true;
        gblnCancel = false;
        blnOver = false;
        gintCurrentTool = gintNextTool = 1;
        gblnToolInserted = gblnToolInMachine = true;
        SetMode(3);
        SetSetNavBtns();
        TimedPort::firstWriteNs = -1;
        const int64_t t0 = appClock().nsecs();
        cmdSetNav_Click(4);
        while (!blnOver && appClock().nsecs() - t0 < 20'000'000'000LL)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        const double ms = TimedPort::firstWriteNs < 0 ? -1 : (TimedPort::firstWriteNs - t0) / 1e6;
        state.SetIterationTime(ms / 1000.0);
        worstMs = std::max(worstMs, ms);
        blnGetReplies(true);
    }
    state.counters["worst_ms"] = worstMs;
    SetPumpHook({});
    ResetComms();
    SetSerialPortOverride({});
    Unload(f);
}
BENCHMARK(BM_StartToFirstFrame)->Arg(20000)->Iterations(5)->UseManualTime()->Unit(benchmark::kMillisecond);

void BM_LongestLoopGap(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString path = SetUp(dir, static_cast<int>(state.range(0)));
    SetFileDialogScript([path](const QString &, const QString &) { return path; });
    FrmMain *f = frmMain();
    QElapsedTimer sinceTick;
    int64_t worstNs = 0;
    QTimer probe;
    probe.setInterval(1);
    QObject::connect(&probe, &QTimer::timeout, [&] {
        if (sinceTick.isValid())
            worstNs = std::max<int64_t>(worstNs, sinceTick.nsecsElapsed());
        sinceTick.start();
    });
    for (auto _ : state) {
        QFile::remove(QString(path).replace(QStringLiteral(".brx"), QStringLiteral(".ncx")));
        gblnOnline = false;
        gblnCancel = false;
        gblnSetupWizard = true;
        SetMode(3);
        SetSetStep(0);
        worstNs = 0;
        sinceTick.invalidate();
        probe.start();
        cmdSetNav_Click(3);   // the file is read: step 2
        cmdSetNav_Click(3);   // analysed: step 3
        probe.stop();
        state.counters["longest_gap_ms"] = worstNs / 1e6;
        state.counters["reached_step"] = gintSetStep;
    }
    SetFileDialogScript({});
    Unload(f);
}
BENCHMARK(BM_LongestLoopGap)->Arg(200000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
