// Screenshot helper (not a test): shows the tool page with a few tools, or the tool dialog,
// or the tool types dialog, for a while, so that the screen can be captured under Xvfb:
//     Xvfb :98 & DISPLAY=:98 build/tests/tools/toolpage_shot page & sleep 2; import -window root x.png
// Uses its own settings store in a temporary folder.
#include "tools/frmtooldata.h"
#include "tools/frmtooltype.h"
#include "tools/tooldatapanel.h"
#include "tools/toolgrid.h"
#include "tools/tooltable.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTimer>

int main(int argc, char **argv)
{
    QTemporaryDir dir;
    qputenv("BRANTOK_STORE", (dir.path() + QStringLiteral("/Brantok.conf")).toLocal8Bit());
    QApplication app(argc, argv);
    const QString what = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("page");
    const int tools = argc > 2 ? atoi(argv[2]) : 10;

    const struct { int n; const char *type; float d; float off; } all[] = {
        {12, "End mill", 6.0f, -2000.0f}, {3, "Slot drill", 4.5f, 12.25f}, {7, "Ball end", 3.0f, -1.5f},
        {1, "Drill", 2.5f, 8.125f},       {20, "Router cutter", 12.7f, -2000.0f}, {5, "Bull nose", 10.0f, 0.0f},
        {9, "Reamer", 6.35f, 3.75f},      {15, "End mill", 2.0f, -2000.0f}, {2, "Drill", 1.0f, 22.5f},
        {30, "Slot drill", 8.0f, 4.0f},
    };
    for (int i = 0; i < tools && i < 10; ++i) {
        gtypTools.Redim(i + 1);
        gtypTools(i + 1) = ToolData{static_cast<int16_t>(all[i].n), QString::fromLatin1(all[i].type), all[i].d, all[i].off, false};
        gintToolCount = static_cast<int16_t>(i + 1);
    }

    QWidget main;
    main.setObjectName(QStringLiteral("frmMain"));
    main.setWindowTitle(QStringLiteral("Brantok for the Emco F1 Mill"));
    main.resize(800, 560);
    ToolDataPanel *panel = nullptr;
    panel = new ToolDataPanel(&main, [&panel](int16_t mode) {
        if (mode == 5) {
            ToolDataShow(*panel->grdTools);
            panel->show();
        }
    });
    main.move(0, 0);
    main.show();
    panel->ShowToolData();
    if (gintToolRows >= 3) {
        panel->grdTools->SelectRow(3);
        panel->grdTools_Click();
    }

    if (what == QLatin1String("dialog")) {
        QTimer::singleShot(200, [] {
            FrmToolData &dlg = frmToolData();
            dlg.setWindowTitle(QStringLiteral("Edit Tool Data"));
            dlg.txtToolNumber->setText(QStringLiteral("12"));
            dlg.cboToolType->setCurrentIndex(3);
            dlg.txtToolDiam->setText(QStringLiteral("6.000"));
            dlg.exec();
        });
    } else if (what == QLatin1String("types")) {
        QTimer::singleShot(200, [] {
            FrmToolType &dlg = frmToolType();
            dlg.setWindowTitle(QStringLiteral("Add or remove Tool Types"));
            dlg.exec();
        });
    }
    QTimer::singleShot(argc > 3 ? atoi(argv[3]) : 4000, &app, [] { QApplication::exit(0); });
    return app.exec();
}
