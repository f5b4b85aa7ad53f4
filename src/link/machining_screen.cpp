// The link's and the stream's screen on the main window. See machining_screen.h.
#include "link/machining_screen.h"

#include "core/frm_main.h"
#include "guide/method_panel.h"
#include "guide/setmill.h"
#include "guide/frm_mill.h"
#include "link/link_screen.h"
#include "link/spindle.h"
#include "link/stream.h"

#include <QAction>
#include <QProgressBar>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>

void DrawSpindleControls(FrmMain *f)
{
    const SpindleControls &c = gSpindleControls;
    PicKeyboard *k = f->picKeyboard;
    k->picSpindleStart->setPixmap(f->ilsSpindle(c.picSpindleStartImage));
    k->picSpindleStop->setPixmap(f->ilsSpindle(c.picSpindleStopImage));
    k->picSpindleStart->setEnabled(c.picSpindleStartEnabled);
    k->picSpindleStop->setEnabled(c.picSpindleStopEnabled);
    k->picSpindleStart->setToolTip(c.picSpindleStartToolTip);
    k->picSpindleStop->setToolTip(c.picSpindleStopToolTip);
    k->picStartText->setToolTip(c.picStartTextToolTip);
    k->lblStopped->setText(c.lblStopped);
    k->picStopped->setVisible(c.picStoppedVisible);
    f->mnuMStart->setEnabled(c.mnuMStartEnabled);
    f->mnuMStop->setEnabled(c.mnuMStopEnabled);
}

namespace {

// The current command stands marked in white on blue, and the view follows it.
void MarkCode(int32_t start, int32_t length)
{
    QTextEdit *code = frmMain()->picMachining->rtbMillCode;
    QTextCursor cursor(code->document());
    const int end = code->document()->characterCount() - 1;
    cursor.setPosition(qBound(0, start, end));
    if (length <= 0) {
        code->setExtraSelections({});
        code->setTextCursor(cursor);
        return;
    }
    cursor.setPosition(qBound(0, start + length, end), QTextCursor::KeepAnchor);
    QTextEdit::ExtraSelection mark;
    mark.cursor = cursor;
    mark.format.setBackground(QColor(0x1d, 0x4e, 0xd8));
    mark.format.setForeground(Qt::white);
    code->setExtraSelections({mark});
    QTextCursor at(code->document());
    at.setPosition(qBound(0, start, end));
    code->setTextCursor(at);
    // The current line stands in the middle of the view, with what comes next below it.
    QScrollBar *bar = code->verticalScrollBar();
    bar->setValue(bar->value() + code->cursorRect().center().y() - code->viewport()->height() / 2);
}

} // namespace

void InstallMachiningUi()
{
    linkHooks().spindleControlsChanged = [] { DrawSpindleControls(frmMain()); };
    StreamHooks &h = streamHooks();
    h.loadCode = [](const QString &text) {
        QTextEdit *code = frmMain()->picMachining->rtbMillCode;
        code->setExtraSelections({});
        code->setPlainText(text);
    };
    h.markCode = MarkCode;
    // pgbProgress and pgbMillProg are the machining panel's one bar: the preparation fills
    // it once, then the run shows its progress through the program.
    h.millProgress = [](int16_t p) { frmMain()->picMachining->pgbMillProg->setValue(p); };
    h.prepareProgress = [](int16_t p) { frmMain()->picMachining->pgbMillProg->setValue(p); };
    h.millPrompt = ShowMillPrompt;
    h.backToWizard = [] {
        SetMode(3);
        SetSetStep(10);
    };
    h.backToMenu = [] {
        FrmMain *f = frmMain();
        f->tmrShowMenuTag.clear();
        f->tmrShowMenu->start();
    };
    h.showMethod = [] { ShowMethod(); };
    if (frmMainLoaded())
        DrawSpindleControls(frmMain());
}
