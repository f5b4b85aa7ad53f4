// Not a test: the Preview window on an analysed file, left on the screen for a screenshot:
//     preview_shot FILE.ncx [zoom]
// The tool table holds the pocket sample's tools (1 Slot drill 6 mm, 2 End mill 3 mm); "zoom"
// turns the wheel three notches over the pocket. Uses its own settings store.
#include "core/state.h"
#include "platform/gui_hooks.h"
#include "preview/preview_window.h"
#include "tools/tooltable.h"

#include <QApplication>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char **argv)
{
    QTemporaryDir dir;
    qputenv("BRANTOK_STORE", (dir.path() + QStringLiteral("/Brantok.conf")).toLocal8Bit());
    QApplication app(argc, argv);
    InstallGuiHooks();
    ReadStartSettings();
    if (argc < 2) {
        std::fputs("usage: preview_shot FILE.ncx [zoom]\n", stderr);
        return 64;
    }
    gintToolCount = 2;
    gtypTools.Redim(2);
    gtypTools(1) = ToolData{1, QStringLiteral("Slot drill"), 6.0f, 0.0f, false};
    gtypTools(2) = ToolData{2, QStringLiteral("End mill"), 3.0f, 0.0f, false};
    FrmPreview frm;
    QString error;
    if (!frm.load(QString::fromLocal8Bit(argv[1]), error)) {
        std::fprintf(stderr, "%s\n", qPrintable(error));
        return 1;
    }
    frm.move(0, 0);
    frm.resize(1000, 700);
    frm.show();
    if (argc > 2 && QByteArray(argv[2]) == "zoom") {
        app.processEvents();
        frm.picPreview->zoomAt(1.25 * 1.25 * 1.25, QPointF(330, 230));
    }
    return app.exec();
}
