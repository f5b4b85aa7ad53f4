// The code editor on long programs: loading a file, Replace All that changes every line of a
// 20 000-line program (one step to undo), saving, and Check Program. Time per operation and
// the process's peak memory (ru_maxrss) as counters. Runs on the offscreen platform.
#include "core/hooks.h"
#include "core/state.h"
#include "files/cncedit.h"
#include "files/frmfind.h"
#include "tools/tooltable.h"

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <sys/resource.h>

namespace {

double PeakRssMiB()
{
    rusage ru{};
    getrusage(RUSAGE_SELF, &ru);
    return static_cast<double>(ru.ru_maxrss) / 1024.0;
}

// A program of `lines` lines that reads cleanly, every move line ending in "F200".
QByteArray Program(int lines)
{
    QByteArray out = "%\r\n* Billet length 120\r\n* Billet width 90\r\n* Billet depth 20\r\nN10 T1\r\nN20 S1500\r\n"
                     "N30 G0 X10 Y10 Z5\r\n";
    for (int i = 7; i < lines; ++i)
        out += "N" + QByteArray::number(i * 10) + " G1 X" + QByteArray::number(10 + i % 90) + ".5 Y" +
               QByteArray::number(10 + i % 70) + ".25 Z-1 F200\r\n";
    return out;
}

struct Editor {
    QTemporaryDir dir;
    QString path;
    FrmCNCEdit *form;
    explicit Editor(int lines) : path(dir.filePath(QStringLiteral("long.brx")))
    {
        QFile f(path);
        f.open(QIODevice::WriteOnly);
        f.write(Program(lines));
        f.close();
        uiHooks().messageBox = [](const QString &, int32_t, const QString &) -> int16_t { return 1; };
        form = frmCNCEdit();
    }
    ~Editor()
    {
        form->mnuFNew_Click();
        Unload(form);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

void BM_LoadFile(benchmark::State &state)
{
    Editor ed(static_cast<int>(state.range(0)));
    for (auto _ : state)
        ed.form->LoadFile(ed.path);
    state.counters["peak_MiB"] = PeakRssMiB();
}
BENCHMARK(BM_LoadFile)->Arg(20000)->Arg(1000000)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_ReplaceAllEveryLine(benchmark::State &state)
{
    Editor ed(static_cast<int>(state.range(0)));
    ed.form->LoadFile(ed.path);
    FrmFind *find = frmFind();
    for (auto _ : state) {
        find->txtFind->setText(QStringLiteral("f200"));
        find->txtReplace->setText(QStringLiteral("F250"));
        find->cmdReplaceAll_Click();
        state.PauseTiming();
        ed.form->rtbCNCEdit->undo();   // back to every line with F200, for the next round
        state.ResumeTiming();
    }
    UnloadFrmFind();
    state.counters["peak_MiB"] = PeakRssMiB();
}
BENCHMARK(BM_ReplaceAllEveryLine)->Arg(20000)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_Save(benchmark::State &state)
{
    Editor ed(static_cast<int>(state.range(0)));
    ed.form->LoadFile(ed.path);
    for (auto _ : state)
        ed.form->mnuFSave_Click();
}
BENCHMARK(BM_Save)->Arg(20000)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_CheckProgram(benchmark::State &state)
{
    gsngRapidSpeed = 500.0f;
    gtypTools.Erase();
    ToolData t;
    t.intNumber = 1;
    gtypTools.Append(t);
    gintToolCount = 1;
    Editor ed(static_cast<int>(state.range(0)));
    ed.form->LoadFile(ed.path);
    int clean = 0;
    uiHooks().messageBox = [&clean](const QString &text, int32_t, const QString &) -> int16_t {
        clean += text.startsWith(QStringLiteral("The program reads cleanly.")) ? 1 : 0;
        return 1;
    };
    for (auto _ : state)
        ed.form->mnuECheck_Click();
    state.counters["clean_reads"] = clean;
}
BENCHMARK(BM_CheckProgram)->Arg(20000)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
