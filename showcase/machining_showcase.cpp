// Runs a small program offline on the machining screen and stops at a chosen moment, for
// screenshots:
//     machining_showcase machining    the run halfway, no prompt up (it waits there)
//     machining_showcase toolchange   the prompt of the second tool's change
//     machining_showcase pulled       online through the emulator program, which is killed
//                                     mid-run as a pulled adapter: the hardware alarm
// Not a test: a store of its own in a temporary folder; ends when killed.
#include "core/frm_main.h"
#include "core/hooks.h"
#include "core/state.h"
#include "core/store.h"
#include "guide/frm_mill.h"
#include "link/comms.h"
#include "link/frm_skull.h"
#include "link/link_screen.h"
#include "link/machining_screen.h"
#include "link/spindle.h"
#include "link/stream.h"
#include "nc/analysed.h"
#include "nc/evaluate.h"
#include "nc/reader.h"
#include "platform/gui_hooks.h"
#include "tools/tooltable.h"

#include <QApplication>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

namespace {

const char kProgram[] =
    "%\r\n"
    "* Bracket, aluminium 6082\r\n"
    "* Billet 60 x 40 x 12 mm\r\n"
    "* T1 6 mm end mill, T2 3 mm ball end\r\n"
    "N10 T1\r\n"
    "N20 S1500\r\n"
    "N30 G0 X5 Y5 Z2\r\n"
    "N40 G1 Z-0.5 F80\r\n"
    "N50 G1 X25 F150\r\n"
    "N60 G1 Y15\r\n"
    "N70 G1 X5\r\n"
    "N80 G1 Y5\r\n"
    "N90 G1 Z-1 F80\r\n"
    "N100 G1 X25 F150\r\n"
    "N110 G1 Y15\r\n"
    "N120 G1 X5\r\n"
    "N130 G1 Y5\r\n"
    "N140 G0 Z2\r\n"
    "N150 T2\r\n"
    "N160 S2000\r\n"
    "N170 G0 X10 Y10\r\n"
    "N180 G1 Z-0.3 F60\r\n"
    "N190 G1 X20 Y10 F120\r\n"
    "N200 G1 X20 Y12\r\n"
    "N210 G1 X10 Y12\r\n"
    "N220 G0 Z5\r\n";

bool g_paused = false;

// Holds the screen as it is until the process is killed.
[[noreturn]] void Hold()
{
    g_paused = true;
    QEventLoop loop;
    loop.exec();
    std::_Exit(0);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QString scene = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("machining");
    QTemporaryDir dir;
    qputenv("BRANTOK_STORE", (dir.path() + QStringLiteral("/store.conf")).toLocal8Bit());
    InstallGuiHooks();
    // The pulled adapter: the emulator program on a pseudo-terminal as COM1.
    const bool pulled = scene == QLatin1String("pulled");
    QProcess emulator;
    if (pulled) {
        emulator.start(QCoreApplication::applicationDirPath() + QStringLiteral("/../brantok-emulator"), {});
        emulator.waitForReadyRead(5000);
        qputenv("BRANTOK_COM1", emulator.readLine().trimmed());
        qputenv("BRANTOK_ASSUME_DSR", "1");
        RegistryValuePut(QStringLiteral("Comport"), QStringLiteral("COM1"));
    }
    RegistryValuePut(QStringLiteral("Online"), pulled ? QStringLiteral("Yes") : QStringLiteral("No"));
    RegistryValuePut(QStringLiteral("ShowTime"), QStringLiteral("Yes"));
    RegistryValuePut(QStringLiteral("KeepFiles"), QStringLiteral("Yes"));
    RegistryValuePut(QStringLiteral("RapidSpeed"), QStringLiteral("500"));
    ReadStartSettings();
    gintToolCount = 2;
    gtypTools.Redim(2);
    gtypTools(1) = ToolData{1, QStringLiteral("End mill"), 6.0f, 0.0f, false};
    gtypTools(2) = ToolData{2, QStringLiteral("Ball end"), 3.0f, 0.0f, false};

    const QString path = dir.path() + QStringLiteral("/bracket.brx");
    QFile f(path);
    f.open(QIODevice::WriteOnly);
    f.write(kProgram);
    f.close();
    gfnCompFileReason = &strCompFileReason;
    ReadCommands(path);
    EvaluateCommands();

    FrmMain *main = frmMain();
    linkHooks().setPanel = [](const QString &key, const QString &text) { frmMain()->stbPanel(key)->setText(text); };
    InstallMachiningUi();
    streamHooks().showMethod = [] { Hold(); };
    main->show();
    if (pulled) {
        InstallLinkUi(main);
        SetupComms();
    } else {
        main->stbPanel(QStringLiteral("online"))->setText(QStringLiteral("Working Offline"));
    }
    gintCurrentTool = gintNextTool = 0;
    gblnToolInserted = gblnToolInMachine = false;
    SpindleStop();

    // The prompts are answered with Done, except the one to be shown.
    QTimer watch;
    int lastShown = -1;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (!frmMillLoaded() || !frmMill()->isVisible() || frmMill()->intStepsShown == lastShown)
            return;
        lastShown = frmMill()->intStepsShown;
        if (scene == QLatin1String("toolchange") && gintNextTool == 2 && frmMill()->intStep == 1)
            return;   // the change of tool stays on the screen
        QTimer::singleShot(400, frmMill()->cmdNav[1], &QPushButton::click);
    });
    watch.start(20);
    // Slow enough to watch, and to show a machining time.
    SetPumpHook([&] {
        QThread::msleep(2);
        if (scene == QLatin1String("machining") && !g_paused && glngRunCommand >= 11 && gintNextTool == 1)
            Hold();
        if (pulled && glngRunCommand >= 5 && emulator.state() == QProcess::Running)
            emulator.kill();   // the alarm then waits for the operator
    });
    QTimer::singleShot(300, [] {
        gblnCancel = false;
        ShowMachining();
        StartMilling();
        tmrStartMilling_Timer();
    });
    return QApplication::exec();
}
