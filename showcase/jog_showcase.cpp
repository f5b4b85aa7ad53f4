// Not a test: puts the main window on the manual screen or the tool page and leaves it there,
// for screenshots under Xvfb:
//     jog_showcase still | moving | tools
// "still": a set-up task on the manual screen (the cutter picture, the spindle running);
// "moving": free control with Right and Numpad 5 held by a fake key state, the loop running
// offline; "tools": the tool page from the main menu's "Tool Data" entry.
// Uses its own settings store in a temporary folder.
#include "core/frm_main.h"
#include "core/frm_splash.h"
#include "core/state.h"
#include "link/keyboard_panel.h"
#include "link/keycontrol.h"
#include "link/link_screen.h"
#include "link/spindle.h"
#include "platform/gui_hooks.h"
#include "platform/keystate.h"
#include "tools/tooltable.h"

#include <QApplication>
#include <QGroupBox>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimer>

int main(int argc, char **argv)
{
    QTemporaryDir dir;
    qputenv("BRANTOK_STORE", (dir.path() + QStringLiteral("/Brantok.conf")).toLocal8Bit());
    QApplication app(argc, argv);
    InstallGuiHooks();
    ReadStartSettings();
    const QString scene = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("still");
    const struct { int n; const char *type; float d; float off; } tools[] = {
        {1, "End mill", 6.0f, 12.5f}, {2, "Slot drill", 4.0f, -2000.0f}, {5, "Ball end", 3.0f, 8.25f},
        {7, "Drill", 2.5f, 21.0f},
    };
    for (const auto &t : tools) {
        gintToolCount = static_cast<int16_t>(gintToolCount + 1);
        gtypTools.Redim(gintToolCount);
        gtypTools(gintToolCount) = ToolData{static_cast<int16_t>(t.n), QString::fromLatin1(t.type), t.d, t.off, false};
    }
    FakeKeyState keys;
    ScopedKeyState scoped(&keys);
    FrmMain *f = frmMain();
    f->stbPanel(QStringLiteral("spindle"))->setText(QStringLiteral("Spindle Stopped"));
    f->stbPanel(QStringLiteral("online"))->setText(QStringLiteral("Working Offline"));
    linkHooks().setPanel = [f](const QString &key, const QString &text) { f->stbPanel(key)->setText(text); };
    f->move(0, 0);
    f->resize(880, 640);
    f->show();
    QTimer::singleShot(300, [&] {
        if (scene == QLatin1String("tools")) {
            f->MenuAction(QStringLiteral("ToolData"));
            return;
        }
        glngPosX = -216;
        glngPosY = 1031;
        glngPosZ = 360;
        if (scene == QLatin1String("still")) {
            PicKeyboard *k = f->picKeyboard;
            k->rtbTask->setHtml(QStringLiteral(
                "<p>1) Click the green button to start the spindle.</p>"
                "<p>2) Adjust the spindle speed to its lowest setting.</p>"
                "<p>3) Move the cutter until it just scratches the LEFT HAND END of the billet.</p>"
                "<p style='color:blue'>When the task is completed, click DONE.</p>"));
            k->imgCutter->setPixmap(ilsCutter(QStringLiteral("CutterSide")));
            k->imgCutter->show();
            k->fraTask->show();
            ShowKeyboard(true);
            gblnSpindleStartReq = true;
        } else {
            ShowKeyboard(true);
            keys.Press(VK_RIGHT);
            keys.Press(VK_NUMPAD5);
        }
    });
    return QApplication::exec();
}
