// The offset wizard's panel: its controls and their places. What the controls do is in
// offset_wizard.cpp.
#include "guide/offset_panel.h"
#include "core/widget_names.h"

#include "tools/toolgrid.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTextEdit>

namespace {

constexpr int kWidth = 600;    // px
constexpr int kHeight = 470;   // px
constexpr int kFrameHeight = 400;

using ui::named;

QLabel *stepTitle(QWidget *parent, const char *name)
{
    auto *l = named(new QLabel(parent), name);
    QFont f = l->font();
    f.setPointSize(13);
    f.setBold(true);
    l->setFont(f);
    l->setGeometry(8, 4, kWidth - 52, 28);
    l->setAccessibleName(QStringLiteral("Step"));   // the step's title while one is shown
    return l;
}

QTextEdit *pageText(QWidget *parent, const char *name, const QString &accessible)
{
    auto *t = named(new QTextEdit(parent), name);
    t->setAccessibleName(accessible);
    t->setReadOnly(true);
    t->setFocusPolicy(Qt::NoFocus);
    return t;
}

} // namespace

PicOffset::PicOffset(QWidget *parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("picOffset"));
    setAccessibleName(QStringLiteral("Tool offsets"));
    setFixedSize(kWidth, kHeight);
    setFocusPolicy(Qt::ClickFocus);   // holds the focus for Enter and Esc when no control has it
    setStyleSheet(QStringLiteral("#picOffset { background: #ffffff; border: 1px solid #d5dbe1; border-radius: 10px; }"));
    hide();

    // A step's page: the title over the rich text.
    fraOffStep = named(new QFrame(this), "fraOffStep");
    fraOffStep->setAccessibleName(QStringLiteral("Step"));
    fraOffStep->setGeometry(18, 12, kWidth - 36, kFrameHeight);
    lblOffStepTitle = stepTitle(fraOffStep, "lblOffStepTitle");
    rtbOffset = pageText(fraOffStep, "rtbOffset", QStringLiteral("Offset step"));
    rtbOffset->setGeometry(0, 36, fraOffStep->width(), kFrameHeight - 36);
    // The notice stands over the first page's three empty paragraphs (placed by the wizard).
    txtNoRoom = named(new QLabel(fraOffStep), "txtNoRoom");
    txtNoRoom->setText(
        QStringLiteral("If there is no space to do items 1 and 2, click Cancel and use manual control to make room."));
    txtNoRoom->setAccessibleName(txtNoRoom->text());
    txtNoRoom->setWordWrap(true);
    txtNoRoom->setAlignment(Qt::AlignCenter);
    txtNoRoom->setStyleSheet(QStringLiteral("#txtNoRoom { background: #fff7d6; border: 1px solid #c9a227;"
                                            " padding: 4px; }"));
    txtNoRoom->hide();

    // The pages with the tool grid: title, a few lines of text, the grid under them.
    fraOffTools = named(new QFrame(this), "fraOffTools");
    fraOffTools->setAccessibleName(QStringLiteral("Select Tool"));
    fraOffTools->setGeometry(18, 12, kWidth - 36, kFrameHeight);
    lblOffToolsTitle = stepTitle(fraOffTools, "lblOffToolsTitle");
    rtbOffTools = pageText(fraOffTools, "rtbOffTools", QStringLiteral("Offset step"));
    rtbOffTools->setGeometry(0, 36, fraOffTools->width(), 112);
    grdOffTools = new ToolGrid(QStringLiteral("grdOffTools"), QStringLiteral("cmdOffSort"), fraOffTools);
    grdOffTools->table()->setFocusPolicy(Qt::NoFocus);   // in the tab order only while a tool is chosen
    fraOffTools->hide();

    const char *captions[5] = {"&More", "Cancel", "< &Back", "&Next >", "&Finish"};
    for (int i = 0; i < 5; ++i) {
        const QString caption = QString::fromLatin1(captions[i]);
        auto *b = named(new QPushButton(caption, this), "cmdOffNav");
        b->setAccessibleName(QString(caption).remove(u'&'));
        b->setAutoDefault(true);   // Enter presses the button that has the focus
        b->setFixedSize(100, 32);
        // More on its own at the left; Cancel, Back, Next, Finish together at the right.
        b->move(i == 0 ? 18 : kWidth - 18 - (5 - i) * 108 + 8, kHeight - 50);
        connect(b, &QPushButton::clicked, this, [this, i] { cmdOffNav_Click(i); });
        cmdOffNav[static_cast<size_t>(i)] = b;
    }
    connect(grdOffTools, &ToolGrid::Click, this, [this] { grdOffTools_Click(); });
    connect(grdOffTools, &ToolGrid::SortClick, this, [this](int i) { cmdOffSort_Click(i); });
    connect(grdOffTools, &ToolGrid::SizeChanged, this, [this] { PlaceGrid(); });
    SetDefaultButton(3);
    SetCancelButton(1);
}

void PicOffset::SetDefaultButton(int intIndex)
{
    m_default = intIndex;
    for (size_t i = 0; i < cmdOffNav.size(); ++i)
        cmdOffNav[i]->setDefault(static_cast<int>(i) == intIndex);
}

void PicOffset::PlaceGrid()
{
    // Centred under the page's text; a scroll bar (more than eight tools) widens it.
    grdOffTools->move((fraOffTools->width() - grdOffTools->width()) / 2, 152);
}

void PicOffset::SetCancelButton(int intIndex) { m_cancel = intIndex; }

void PicOffset::keyPressEvent(QKeyEvent *e)
{
    int index = -1;
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter)
        index = m_default;
    else if (e->key() == Qt::Key_Escape)
        index = m_cancel;
    if (index < 0 || e->isAutoRepeat()) {
        QFrame::keyPressEvent(e);
        return;
    }
    QPushButton *b = cmdOffNav[static_cast<size_t>(index)];
    if (b->isVisible() && b->isEnabled())
        b->click();
}
