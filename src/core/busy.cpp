// The busy display: while a long read pumps messages, a book turns its pages at the right
// end of the set-up wizard's navigation strip and the status bar shows one bold text.
// tmrBook fires only while the long work lets events through; a full turn takes 1.2 s.
#include "core/artwork.h"
#include "core/frm_main.h"
#include "core/logger.h"

#include <array>

namespace {
int16_t intBookFrame = 0;   // the next frame, 0..11; a new start goes on where the last stopped

const std::array<QPixmap, 12> &imgBook()
{
    static const std::array<QPixmap, 12> frames = [] {
        std::array<QPixmap, 12> f;
        for (int i = 0; i < 12; ++i)
            f[static_cast<size_t>(i)] = BookFrame(i);
        return f;
    }();
    return frames;
}
} // namespace

int16_t BookFrame() { return intBookFrame; }

void PageTurnStart(const QString &strStatus) try {
    FrmMain *f = frmMain();
    QLabel *imgWait = f->picSetMill->imgWait;
    QFrame *picNav = f->picSetMill->picNav;
    // 1. At the right end of the navigation strip.
    imgWait->hide();
    imgWait->move(picNav->width() - imgBook()[0].width(), imgWait->y());
    // 2. The last frame first.
    imgWait->setPixmap(imgBook()[11]);
    // 3. Turning.
    imgWait->show();
    f->tmrBook->start();
    // 4. The bold status text, painted now: the caller won't pump for a moment.
    f->stbSimpleText(strStatus);
} catch (...) {
    LogError("F1Mill", "PageTurnStart");
}

void PageTurnStop() try {
    FrmMain *f = frmMain();
    f->picSetMill->imgWait->hide();
    f->tmrBook->stop();
    f->stbPanel(QStringLiteral("status"))->clear();
    f->stbShowPanels();
} catch (...) {
    LogError("F1Mill", "PageTurnStop");
}

void FrmMain::tmrBook_Timer() try {
    QLabel *imgWait = picSetMill->imgWait;
    imgWait->setPixmap(imgBook()[static_cast<size_t>(intBookFrame)]);
    imgWait->repaint();
    ++intBookFrame;
    if (intBookFrame > 11)
        intBookFrame = 0;
} catch (...) {
    LogError("frmMain", "tmrBook_Timer");
}
