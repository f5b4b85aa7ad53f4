// Walks the set-up wizard offline with a sample part and stops at a chosen page, for
// screenshots:
//     wizard_showcase step1 | tools | task | warn | step8 | method
// Not a test: a store of its own in a temporary folder; the file dialog is answered with
// the part below; ends when killed.
#include "core/frm_main.h"
#include "core/state.h"
#include "core/store.h"
#include "files/filechoice.h"
#include "guide/method_panel.h"
#include "guide/setmill.h"
#include "link/comms.h"
#include "link/keyboard_panel.h"
#include "link/link_screen.h"
#include "link/machining_screen.h"
#include "nc/analysed.h"
#include "nc/reader.h"
#include "platform/gui_hooks.h"
#include "tools/tooltable.h"

#include <QApplication>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>
#include <vector>

namespace {

const char kProgram[] =
    "%\r\n"
    "* Bracket, aluminium 6082\r\n"
    "* Billet length 60\r\n"
    "* Billet width 40\r\n"
    "* Billet depth 12\r\n"
    "* T1 6 mm end mill, T2 3 mm ball end\r\n"
    "N10 T1\r\n"
    "N20 S1500\r\n"
    "N30 G0 X5 Y5 Z2\r\n"
    "N40 G1 Z-0.5 F80\r\n"
    "N50 G1 X25 F150\r\n"
    "N60 G2 X35 Y15 I0 J10\r\n"
    "N70 G1 Y25\r\n"
    "N80 G0 Z2\r\n"
    "N90 T2\r\n"
    "N100 S2000\r\n"
    "N110 G0 X10 Y10\r\n"
    "N120 G1 Z-0.3 F60\r\n"
    "N130 G1 X20 Y12 F120\r\n"
    "N140 G0 Z5\r\n";

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const QString scene = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("step1");
    QTemporaryDir dir;
    qputenv("BRANTOK_STORE", (dir.path() + QStringLiteral("/store.conf")).toLocal8Bit());
    InstallGuiHooks();
    RegistryValuePut(QStringLiteral("Online"), QStringLiteral("No"));
    RegistryValuePut(QStringLiteral("KeepFiles"), QStringLiteral("Yes"));
    // Wide enough for the file header beside the wizard.
    RegistryValuePut(QStringLiteral("MainWidth"), QStringLiteral("16800"));
    ReadStartSettings();
    gintToolCount = 3;
    gtypTools.Redim(3);
    gtypTools(1) = ToolData{1, QStringLiteral("End mill"), 6.0f, 1.25f, false};
    gtypTools(2) = ToolData{2, QStringLiteral("Ball end"), 3.0f, 0.5f, false};
    gtypTools(3) = ToolData{4, QStringLiteral("Slot drill"), 8.0f, 2.0f, false};
    const QString path = dir.path() + QStringLiteral("/bracket.brx");
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    file.write(kProgram);
    file.close();
    gfnCompFileReason = &strCompFileReason;
    SetFileDialogScript([path](const QString &, const QString &) { return path; });

    FrmMain *f = frmMain();
    linkHooks().setPanel = [](const QString &key, const QString &text) { frmMain()->stbPanel(key)->setText(text); };
    InstallMachiningUi();
    f->stbPanel(QStringLiteral("online"))->setText(QStringLiteral("Working Offline"));
    f->show();

    // The operator's clicks, one every 400 ms, up to the page asked for.
    auto next = [] { cmdSetNav_Click(3); };
    auto done = [f] { f->picKeyboard->cmdDone->click(); };
    std::vector<std::function<void()>> steps = {[f] { f->MenuAction(QStringLiteral("Mill")); }};
    if (scene != QLatin1String("step1"))
        steps.push_back(next);                                   // the file: step 2, the tools
    if (scene == QLatin1String("billet"))
        steps.push_back(next);                                   // analysed: the billet page
    if (scene == QLatin1String("task") || scene == QLatin1String("warn") || scene == QLatin1String("step8"))
        steps.insert(steps.end(), {next, next, done, next});     // billet, tool, the top's task
    if (scene == QLatin1String("warn"))
        steps.push_back(done);                                   // step 5's page, under the warning
    if (scene == QLatin1String("step8"))
        steps.insert(steps.end(), {done, next, done, next, done, next, done});
    if (scene == QLatin1String("method"))
        steps = {[] { ShowMethod(); }};
    for (size_t i = 0; i < steps.size(); ++i)
        QTimer::singleShot(300 + 400 * static_cast<int>(i), steps[i]);
    return QApplication::exec();
}
