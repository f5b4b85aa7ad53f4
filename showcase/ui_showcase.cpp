// Puts the main window into a chosen state and leaves it on the screen, for screenshots
// and for looking at a screen whose own part isn't built yet:
//     ui_showcase busy | machining | method | keyboard | billet N | files FOLDER | copy
// Not a test; runs against the store in $BRANTOK_STORE like the program.
#include "core/artwork.h"
#include "core/frm_main.h"
#include "core/state.h"
#include "core/store.h"
#include "files/file_dialog.h"
#include "files/filechoice.h"
#include "files/import.h"
#include "files/recent.h"
#include "guide/billet.h"
#include "platform/gui_hooks.h"
#include "tools/tooltable.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QGroupBox>
#include <QPainter>
#include <QProgressBar>
#include <QTextEdit>
#include <QTimer>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    InstallGuiHooks();
    ReadStartSettings();
    ToolDataLoad();
    const QString scene = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("busy");
    if (scene == QLatin1String("frames") && argc > 2) {
        // The twelve pages of the busy book side by side, four times their size.
        const QSize one = BookFrame(0).size() * 4;
        QImage strip(one.width() * 12, one.height(), QImage::Format_ARGB32);
        strip.fill(Qt::white);
        QPainter p(&strip);
        for (int i = 0; i < 12; ++i)
            p.drawPixmap(QRect(QPoint(i * one.width(), 0), one), BookFrame(i));
        p.end();
        return strip.save(QString::fromLocal8Bit(argv[2])) ? 0 : 1;
    }
    FrmMain *f = frmMain();
    f->stbPanel(QStringLiteral("spindle"))->setText(QStringLiteral("Spindle Stopped"));
    f->show();
    QTimer::singleShot(300, [&] {
        if (scene == QLatin1String("busy")) {
            SetMode(3);
            f->picSetMill->lblStepTitle->setText(QStringLiteral("Step 1: Choose an NC file"));
            f->picSetMill->rtbStep->setPlainText(QStringLiteral("Reading file ..."));
            PageTurnStart(QStringLiteral("Reading CNC file"));
        } else if (scene == QLatin1String("machining")) {
            gstrHeader = QStringLiteral("* Bracket, aluminium\r\n* Billet 60 x 40 x 12\r\n* Tool 1: 6 mm end mill\r\n");
            ShowMachining();
            f->picMachining->rtbMillCode->setPlainText(
                QStringLiteral("%\nN10 G00 X0 Y0 Z5\nN20 G01 Z-1 F100\nN30 G01 X40 F200\nN40 G02 X50 Y10 I0 J10\n"));
            f->picMachining->pgbMillProg->setValue(35);
            f->stbPanel(QStringLiteral("status"))->setText(QStringLiteral("Machining"));
        } else if (scene == QLatin1String("method")) {
            SetMode(8);
        } else if (scene == QLatin1String("keyboard")) {
            SetMode(2);
        } else if (scene == QLatin1String("copy")) {
            // frmCopy as it stands while a file is copied (the copy itself not started).
            FrmCopy *copy = frmCopy();
            copy->lblFrom->setText(QStringLiteral("/media/operator/STICK/Bracket.brx"));
            copy->lblTo->setText(QDir::homePath() + QStringLiteral("/Brantok/Bracket.brx"));
            copy->adjustSize();
            copy->show();
            CentreOverMain(copy);
        } else if (scene == QLatin1String("billet")) {
            ShowBillet(QStringLiteral("Menu"));
            ShowTopic(static_cast<int16_t>(argc > 2 ? QString::fromLocal8Bit(argv[2]).toInt() : 1));
        } else if (scene == QLatin1String("files") && argc > 2) {
            // The open dialog in the sample folder, both samples on the recent list, the
            // cursor on the first file so its header shows in the side panel.
            const QDir samples(QString::fromLocal8Bit(argv[2]));
            RegistryValuePut(QStringLiteral("CNC File Path"), samples.absolutePath());
            const QStringList names = samples.entryList({QStringLiteral("*.brx")}, QDir::Files, QDir::Name);
            for (const QString &n : names)
                MRUAddItem(samples.absoluteFilePath(n));
            auto *pick = new QTimer(&app);
            pick->setInterval(100);
            QObject::connect(pick, &QTimer::timeout, [pick, names] {
                auto *d = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
                auto *view = d ? d->findChild<QAbstractItemView *>(QStringLiteral("listView")) : nullptr;
                if (!view || names.isEmpty())
                    return;
                const QModelIndexList hit = view->model()->match(view->model()->index(0, 0, view->rootIndex()),
                                                                 Qt::DisplayRole, names.first());
                if (hit.isEmpty())
                    return;
                pick->stop();
                view->setFocus();
                view->setCurrentIndex(hit.first());
            });
            pick->start();
            strGetFile(QStringLiteral("Select file to be edited"));
        }
    });
    return QApplication::exec();
}
