// Puts the tool offset wizard on the screen at a chosen page, for screenshots:
//     offset_showcase datum | tools | task
// datum: the first page; tools: the choice of the tool with the grid; task: the manual
// screen with the task of lowering a tool onto the paper. Not a test; runs against the
// store in $BRANTOK_STORE like the program.
#include "core/frm_main.h"
#include "core/state.h"
#include "guide/offset_panel.h"
#include "guide/offset_wizard.h"
#include "platform/gui_hooks.h"
#include "tools/toolgrid.h"
#include "tools/tooltable.h"

#include <QApplication>
#include <QLabel>
#include <QTimer>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    InstallGuiHooks();
    ReadStartSettings();
    const struct {
        int n;
        const char *type;
        float d, off;
    } tools[] = {{1, "End mill", 6.0f, -12.347f}, {2, "Slot drill", 4.0f, -2000.0f}, {4, "Ball end", 3.0f, -9.861f},
                 {7, "Drill", 2.5f, -2000.0f}};
    for (const auto &t : tools) {
        gintToolCount = static_cast<int16_t>(gintToolCount + 1);
        gtypTools.Redim(gintToolCount);
        gtypTools(gintToolCount) = ToolData{static_cast<int16_t>(t.n), QString::fromLatin1(t.type), t.d, t.off, false};
    }
    const QString scene = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("datum");
    FrmMain *f = frmMain();
    f->stbPanel(QStringLiteral("spindle"))->setText(QStringLiteral("Spindle Stopped"));
    f->show();
    QTimer::singleShot(300, [&] {
        f->MenuAction(QStringLiteral("Offsets"));
        if (scene == QLatin1String("tools")) {
            gintOffStep = 4;   // reached from step 4: the page without its task
            SetOffStep(3);
            f->picOffset->grdOffTools->SelectRow(2);
            f->picOffset->grdOffTools_Click();
        } else if (scene == QLatin1String("task")) {
            gintOffsetTool = 2;
            gintOffStep = 4;
            SetOffStep(5);
        }
    });
    return QApplication::exec();
}
