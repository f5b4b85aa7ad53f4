// The set-up wizard's panel: its controls and their places. See setmill_panel.h.
#include "guide/setmill_panel.h"
#include "core/widget_names.h"

#include "core/artwork.h"
#include "guide/setmill.h"
#include "tools/toolgrid.h"

#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTextEdit>

namespace {

using ui::named;

QLabel *title(QWidget *parent, const char *name, int x, int y, int w)
{
    auto *l = named(new QLabel(parent), name, QString());
    QFont f = l->font();
    f.setPointSize(13);
    f.setBold(true);
    l->setFont(f);
    l->setGeometry(x, y, w, 28);
    return l;
}

QTextEdit *page(QWidget *parent, const char *name, const QString &accessible)
{
    auto *t = named(new QTextEdit(parent), name, accessible);
    t->setReadOnly(true);
    t->setFocusPolicy(Qt::NoFocus);   // Enter and Esc must reach the panel's buttons
    return t;
}

// The panel's size, and the page area above the navigation strip (px).
constexpr int kWidth = 540, kHeight = 430, kPageHeight = 366;

} // namespace

PicSetMill::PicSetMill(QWidget *parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("picSetMill"));
    setAccessibleName(QStringLiteral("Machining set-up"));
    setFixedSize(kWidth, kHeight);
    setStyleSheet(QStringLiteral("#picSetMill { background: #ffffff; border: 1px solid #d5dbe1; border-radius: 10px; }"));
    hide();

    // The page of every step but the tool step.
    fraSetStep = named(new QFrame(this), "fraSetStep", QStringLiteral("Step"));
    fraSetStep->setGeometry(0, 0, kWidth, kPageHeight);
    lblStepTitle = title(fraSetStep, "lblStepTitle", 18, 12, 504);
    rtbStep = page(fraSetStep, "rtbStep", QStringLiteral("Step"));
    rtbStep->setGeometry(18, 46, 504, 292);
    rtbWarn = page(fraSetStep, "rtbWarn", QStringLiteral("Warning"));
    rtbWarn->setFrameShape(QFrame::NoFrame);
    rtbWarn->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    rtbWarn->setStyleSheet(QStringLiteral("#rtbWarn { background: #fff8e1; }"));
    rtbWarn->hide();
    cmdExplain = named(new QPushButton(QStringLiteral("Billet placing ..."), fraSetStep), "cmdExplain", QString());
    cmdExplain->setAccessibleDescription(QStringLiteral("How to place and secure the billet within the working envelope"));
    cmdExplain->setFocusPolicy(Qt::NoFocus);
    cmdExplain->adjustSize();
    cmdExplain->hide();
    pgbProgress = named(new QProgressBar(fraSetStep), "pgbProgress", QStringLiteral("Progress"));
    pgbProgress->setRange(0, 100);
    pgbProgress->setGeometry(18, 342, 504, 20);
    pgbProgress->hide();
    PlaceWarning();
    PlaceExplain();

    // The tool step: title, page and the program's tools, over the step page.
    fraSetTools = named(new QFrame(this), "fraSetTools", QStringLiteral("Tool offsets"));
    fraSetTools->setGeometry(0, 0, kWidth, kPageHeight);
    fraSetTools->setAutoFillBackground(false);
    lblSetTools = title(fraSetTools, "lblSetTools", 18, 8, 504);
    rtbSetTools = page(fraSetTools, "rtbSetTools", QStringLiteral("Tool offsets"));
    rtbSetTools->setGeometry(18, 38, 504, 112);
    grdSetTools = new ToolGrid(QStringLiteral("grdSetTools"), QStringLiteral("cmdSetSort"), fraSetTools);
    grdSetTools->move(18, 156);
    connect(grdSetTools, &ToolGrid::SortClick, this, [](int i) { cmdSetSort_Click(static_cast<int16_t>(i)); });
    connect(grdSetTools, &ToolGrid::SizeChanged, this, [this] {
        grdSetTools->move((kWidth - grdSetTools->width()) / 2, 156);
    });
    fraSetTools->hide();

    // The navigation strip.
    picNav = named(new QFrame(this), "picNav", QStringLiteral("Wizard navigation"));
    picNav->setGeometry(10, 368, 520, 52);
    const char *nav[] = {"&Get Offsets", "Cancel", "< &Back", "&Next >", "&Start"};
    const int x[] = {4, 116, 212, 308, 404};
    for (int i = 0; i < 5; ++i) {
        auto *b = named(new QPushButton(QString::fromLatin1(nav[i]), picNav), "cmdSetNav", QString());
        b->setGeometry(x[i], 10, i == 0 ? 104 : 90, 32);
        b->setAutoDefault(false);
        cmdSetNav[static_cast<size_t>(i)] = b;
        connect(b, &QPushButton::clicked, this, [i] { cmdSetNav_Click(static_cast<int16_t>(i)); });
    }
    imgWait = named(new QLabel(picNav), "imgWait", QStringLiteral("Busy"));
    imgWait->setFixedSize(BookFrame(0).size());
    imgWait->move(picNav->width() - imgWait->width(), (picNav->height() - imgWait->height()) / 2);
    imgWait->hide();
    connect(cmdExplain, &QPushButton::clicked, this, [] { cmdExplain_Click(); });
    SetDefaultButton(3);
}

void PicSetMill::SetDefaultButton(int intIndex)
{
    m_default = intIndex;
    for (size_t i = 0; i < cmdSetNav.size(); ++i)
        cmdSetNav[i]->setDefault(static_cast<int>(i) == intIndex);
}

void PicSetMill::SetCancelButton(int intIndex) { m_cancel = intIndex; }

void PicSetMill::PlaceWarning()
{
    const QRect r = rtbStep->geometry();
    rtbWarn->setGeometry(r.x() + 3, r.y() + 3, r.width() - 6, 58);
}

void PicSetMill::PlaceExplain()
{
    const QRect r = rtbStep->geometry();
    cmdExplain->move(r.right() - cmdExplain->width() - 5, r.bottom() - cmdExplain->height() - 5);
}

void PicSetMill::pressIfUsable(int intIndex)
{
    if (intIndex < 0 || intIndex >= static_cast<int>(cmdSetNav.size()))
        return;
    QPushButton *b = cmdSetNav[static_cast<size_t>(intIndex)];
    if (b->isVisibleTo(this) && b->isEnabled())
        b->click();
}

void PicSetMill::keyPressEvent(QKeyEvent *e)
{
    // Enter presses Next (the default button), Esc presses Cancel. The main window's key
    // preview has seen Esc already: it sets the cancel flag whatever this panel does.
    if ((e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) && !e->isAutoRepeat()) {
        pressIfUsable(m_default);
        e->accept();
    } else if (e->key() == Qt::Key_Escape && !e->isAutoRepeat()) {
        pressIfUsable(m_cancel);
        e->accept();
    } else {
        QFrame::keyPressEvent(e);
    }
}
