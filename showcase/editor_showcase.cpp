// Puts the code editor into a chosen state over the main window and leaves it on the screen,
// for the README's screenshots:
//     editor_showcase editor | find | check  FILE
// `editor`: FILE loaded, the caret on line 12; `find`: the Replace dialog over it; `check`:
// Check Program on FILE, which stops at a faulty line. Not a test; runs against the store in
// $BRANTOK_STORE like the program, with tool 1 in the table.
#include "core/frm_main.h"
#include "core/state.h"
#include "files/cncedit.h"
#include "files/frmfind.h"
#include "platform/gui_hooks.h"
#include "tools/tooltable.h"

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTimer>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    InstallGuiHooks();
    ReadStartSettings();
    ToolDataLoad();
    if (gintToolCount == 0) {
        ToolData t;
        t.intNumber = 1;
        t.strType = QStringLiteral("End mill");
        t.sngDiameter = 6.0f;
        t.sngOffset = 0.0f;
        gtypTools.Append(t);
        gintToolCount = 1;
    }
    const QString scene = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("editor");
    const QString file = argc > 2 ? QString::fromLocal8Bit(argv[2]) : QString();
    FrmMain *f = frmMain();
    f->stbPanel(QStringLiteral("spindle"))->setText(QStringLiteral("Spindle Stopped"));
    f->show();
    QTimer::singleShot(300, [&] {
        // Inside the editor's modal show: the steps run once it is up.
        QTimer::singleShot(300, [&] {
            FrmCNCEdit *e = frmCNCEdit();
            e->LoadFile(file);
            QTextCursor c(e->rtbCNCEdit->document()->findBlockByNumber(11));
            c.movePosition(QTextCursor::EndOfBlock);
            e->rtbCNCEdit->setTextCursor(c);
            e->DisplayPosition();
            e->rtbCNCEdit->setFocus();
            if (scene == QLatin1String("find")) {
                c.movePosition(QTextCursor::StartOfBlock);
                c.movePosition(QTextCursor::NextWord);
                c.movePosition(QTextCursor::NextWord, QTextCursor::KeepAnchor);
                e->rtbCNCEdit->setTextCursor(c);
                QTimer::singleShot(200, [] {
                    FrmFind *find = frmFind();
                    find->txtFind->setText(QStringLiteral("G01"));
                    find->txtReplace->setText(QStringLiteral("G1"));
                    find->cmdFind_Click();
                });
                e->mnuEReplace_Click();
            } else if (scene == QLatin1String("check")) {
                e->mnuECheck_Click();
            }
        });
        f->MenuAction(QStringLiteral("Edit"));
    });
    return QApplication::exec();
}
