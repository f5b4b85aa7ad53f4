#include "tools/toolgrid.h"

#include "core/logger.h"
#include "core/vb.h"
#include "tools/tooltable.h"

#include <QHeaderView>
#include <QLocale>
#include <QPushButton>
#include <QScrollBar>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QTableWidget>

#include <algorithm>
#include <vector>

using namespace vb;

int16_t gintToolRows = 0;
int16_t gintToolGridSortCol = 0;

namespace {

// The headings on the sort buttons; their blanks give the columns their room.
const char *const kHeadings[4] = {"  Tool Number  ", "    Tool Type    ", "  Tool Diameter (mm)  ", "  Offset (mm)  "};
// Room a button's frame takes around its caption, px.
constexpr int kButtonPadding = 8;

// Draws cells without the dotted focus rectangle (the grid's focus rectangle is off).
class NoFocusRectDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QStyleOptionViewItem opt(option);
        opt.state &= ~QStyle::State_HasFocus;
        QStyledItemDelegate::paint(painter, opt, index);
    }
};

// A cell's text is a number: it is right-aligned under the general alignment and sorts
// among numbers under the generic sort.
bool blnIsNumber(const QString &text, double &value)
{
    bool ok = false;
    value = QLocale::c().toDouble(text.trimmed(), &ok);
    return ok;
}

Qt::Alignment AlignmentOf(int code, const QString &text)
{
    switch (code) {
    case 4: return Qt::AlignCenter;
    case 7: return Qt::AlignRight | Qt::AlignVCenter;
    case 9: {
        double v = 0;
        return (blnIsNumber(text, v) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
    }
    default: return Qt::AlignLeft | Qt::AlignVCenter;
    }
}

// The grid control's sort codes: 1/2 generic (numbers as numbers, before text; text without
// case), 3/4 numeric (the leading number of the text), 7/8 text with case. Odd ascending.
// The same for every locale, so the order on the screen never depends on the machine.
bool blnSortsBefore(int code, const QString &a, const QString &b)
{
    switch (code) {
    case 3:
    case 4: return Val(a) < Val(b);
    case 7:
    case 8: {
        // Alphabetical as a person reads it; names that differ only in case, capitals first.
        const int c = QString::compare(a, b, Qt::CaseInsensitive);
        return c != 0 ? c < 0 : QString::compare(a, b, Qt::CaseSensitive) < 0;
    }
    default: {
        double va = 0, vb = 0;
        const bool na = blnIsNumber(a, va), nb = blnIsNumber(b, vb);
        if (na && nb)
            return va < vb;
        if (na != nb)
            return na;
        return QString::compare(a, b, Qt::CaseInsensitive) < 0;
    }
    }
}

} // namespace

ToolGrid::ToolGrid(const QString &gridName, const QString &sortName, QWidget *parent) : QWidget(parent)
{
    setObjectName(gridName);
    setAccessibleName(QStringLiteral("Tool table"));
    m_table = new QTableWidget(this);
    m_table->setObjectName(gridName + QStringLiteral("Cells"));
    m_table->setAccessibleName(QStringLiteral("Tool table"));
    m_table->setColumnCount(kCols);
    m_table->horizontalHeader()->hide();
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 8);
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_table->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setShowGrid(true);
    m_table->setWordWrap(false);
    m_table->setItemDelegate(new NoFocusRectDelegate(m_table));
    for (int i = 0; i < 4; ++i) {
        cmdSort[i] = new QPushButton(this);
        cmdSort[i]->setObjectName(sortName + QString::number(i));
        cmdSort[i]->setAccessibleDescription(QStringLiteral("Sort by ") + QString::fromLatin1(kHeadings[i]).trimmed());
        cmdSort[i]->setFocusPolicy(Qt::NoFocus);
        connect(cmdSort[i], &QPushButton::clicked, this, [this, i] { emit SortClick(i); });
    }
    m_headingHeight = cmdSort[0]->sizeHint().height();
    connect(m_table, &QTableWidget::cellClicked, this, &ToolGrid::UserMovedTo);
    connect(m_table, &QTableWidget::currentCellChanged, this, [this](int row, int col, int, int) {
        if (!m_blnProgrammatic && row >= 0)
            UserMovedTo(row, col);
    });
    SetRows(1 + kRowsInView);
    Place();
    // No current cell from the start: the view would otherwise make its first cell current
    // when it first takes the focus, as if the operator had clicked it.
    SetCell(0, 0);
}

void ToolGrid::UserMovedTo(int tableRow, int col)
{
    m_row = tableRow + 1;
    m_col = col;
    emit Click();
}

int ToolGrid::Rows() const { return m_table->rowCount() + 1; }

void ToolGrid::SetRows(int rows)
{
    const int data = std::max(rows, 1) - 1;
    const int old = m_table->rowCount();
    m_table->setRowCount(data);
    for (int r = old; r < data; ++r)
        for (int c = 0; c < kCols; ++c) {
            auto *item = new QTableWidgetItem;
            item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            item->setTextAlignment(AlignmentOf(m_align[c], QString()));
            m_table->setItem(r, c, item);
        }
    if (m_row > data)
        m_row = 0;
}

void ToolGrid::AddItem() { SetRows(Rows() + 1); }

void ToolGrid::RemoveItem(int row)
{
    if (row < 1 || row >= Rows())
        Err(kSubscript);
    m_table->removeRow(row - 1);
    if (m_row >= Rows())
        m_row = 0;
}

QString ToolGrid::TextMatrix(int row, int col) const
{
    if (row < 0 || row >= Rows() || col < 0 || col >= kCols)
        Err(kSubscript);
    if (row == 0)
        return m_heading[static_cast<size_t>(col)];
    return m_table->item(row - 1, col)->text();
}

void ToolGrid::SetTextMatrix(int row, int col, const QString &text)
{
    if (row < 0 || row >= Rows() || col < 0 || col >= kCols)
        Err(kSubscript);
    if (row == 0) {
        m_heading[static_cast<size_t>(col)] = text;
        return;
    }
    QTableWidgetItem *item = m_table->item(row - 1, col);
    item->setText(text);
    item->setTextAlignment(AlignmentOf(m_align[static_cast<size_t>(col)], text));
}

void ToolGrid::Clear()
{
    m_heading.fill(QString());
    for (int r = 1; r < Rows(); ++r)
        for (int c = 0; c < kCols; ++c)
            SetTextMatrix(r, c, QString());
}

void ToolGrid::SetColAlignment(int col, int code)
{
    m_align[static_cast<size_t>(col)] = code;
    for (int r = 1; r < Rows(); ++r)
        m_table->item(r - 1, col)->setTextAlignment(AlignmentOf(code, TextMatrix(r, col)));
}

void ToolGrid::SetColWidth(int col, int px)
{
    m_table->setColumnWidth(col, px);
    m_table->setColumnHidden(col, px == 0);
    Place();
}

int ToolGrid::FrameWidth() const { return m_table->frameWidth(); }

int ToolGrid::ScrollBarWidth() const { return m_table->style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_table); }

int ToolGrid::ColPos(int col) const
{
    int x = FrameWidth();
    for (int c = 0; c < col; ++c)
        x += ColWidth(c);
    return x;
}

int ToolGrid::ColWidth(int col) const { return m_table->isColumnHidden(col) ? 0 : m_table->columnWidth(col); }

int ToolGrid::RowPos(int row) const
{
    return row == 0 ? 0 : m_headingHeight + FrameWidth() + (row - 1) * m_table->verticalHeader()->defaultSectionSize();
}

int ToolGrid::RowHeight(int row) const { return row == 0 ? m_headingHeight : m_table->verticalHeader()->defaultSectionSize(); }

void ToolGrid::SetCell(int row, int col)
{
    m_blnProgrammatic = true;
    if (row <= 0) {
        m_table->clearSelection();
        m_table->setCurrentCell(-1, -1);
        m_row = 0;
    } else {
        if (row >= Rows())
            Err(kSubscript);
        m_table->setCurrentCell(row - 1, col);
        m_row = row;
    }
    m_col = col;
    m_blnProgrammatic = false;
}

void ToolGrid::SelectRow(int row) { SetCell(row, 0); }

void ToolGrid::SetTopRow(int row) { m_table->verticalScrollBar()->setValue(std::max(row - 1, 0)); }

int ToolGrid::TopRow() const { return m_table->rowAt(0) + 1; }

void ToolGrid::SetGridWidth(int px)
{
    setFixedWidth(px);
    Place();
    emit SizeChanged();
}

void ToolGrid::SetGridHeight(int px)
{
    setFixedHeight(px);
    Place();
    emit SizeChanged();
}

// The cells below the heading row, the sort buttons over the heading cells.
void ToolGrid::Place()
{
    m_table->setGeometry(0, m_headingHeight, width(), std::max(height() - m_headingHeight, 0));
    for (int i = 0; i < 4; ++i) {
        cmdSort[i]->setGeometry(ColPos(i), 0, ColWidth(i), m_headingHeight);
        cmdSort[i]->raise();
    }
}

void ToolGridSetup(ToolGrid &grid) try {
    grid.SetRows(1 + ToolGrid::kRowsInView);
    for (int c = 0; c < 4; ++c) {
        const QString caption = QString::fromLatin1(kHeadings[c]);
        grid.cmdSort[c]->setText(caption);
        grid.SetColWidth(c, grid.cmdSort[c]->fontMetrics().horizontalAdvance(caption) + kButtonPadding);
    }
    grid.SetColWidth(4, 0);
    grid.SetGridWidth(grid.ColPos(3) + grid.ColWidth(3) + grid.FrameWidth());
    grid.SetGridHeight(grid.RowPos(ToolGrid::kRowsInView) + grid.RowHeight(ToolGrid::kRowsInView) + grid.FrameWidth());
    const int align[ToolGrid::kCols] = {4, 1, 7, 9, 1};
    for (int c = 0; c < ToolGrid::kCols; ++c)
        grid.SetColAlignment(c, align[c]);
} catch (...) {
    LogError("F1Mill", "ToolGridSetup");
}

std::array<QString, ToolGrid::kCols> strToolRow(int16_t index)
{
    const ToolData &tool = gtypTools(index);
    return {QString::number(tool.intNumber), tool.strType, Format000(tool.sngDiameter), strToolOffsetText(tool.sngOffset),
            QString::number(index)};
}

void ToolDataShow(ToolGrid &grid) try {
    // Emptied, and back to its eight data rows: rows of tools deleted since don't linger.
    grid.Clear();
    grid.SetRows(1 + ToolGrid::kRowsInView);
    gintToolRows = 0;
    for (int16_t i = 1; i <= gintToolCount; ++i) {
        if (gtypTools(i).blnHide)
            continue;
        gintToolRows = Int16(gintToolRows + 1);
        if (gintToolRows > ToolGrid::kRowsInView)
            grid.AddItem();
        const auto row = strToolRow(i);
        for (int c = 0; c < ToolGrid::kCols; ++c)
            grid.SetTextMatrix(gintToolRows, c, row[static_cast<size_t>(c)]);
    }
    int width = grid.ColPos(3) + grid.ColWidth(3) + grid.FrameWidth();
    if (gintToolRows > ToolGrid::kRowsInView)
        width += grid.ScrollBarWidth();
    grid.SetGridWidth(width);
    if (gintToolRows >= 2) {
        gintToolGridSortCol = 4;
        GridSort(grid, 0);
    }
} catch (...) {
    LogError("F1Mill", "ToolDataShow");
}

void GridSort(ToolGrid &grid, int16_t intColumn) try {
    // 1. The selected tool, by its index in the table.
    QString keptIndex;
    if (grid.RowSel() > 0)
        keptIndex = grid.TextMatrix(grid.RowSel(), 4);

    // 2. Same column again and ascending: descending; anything else ascending.
    const bool blnDesc = intColumn == gintToolGridSortCol && grid.TextMatrix(0, intColumn) == QLatin1String("Asc");
    grid.SetTextMatrix(0, intColumn, blnDesc ? QStringLiteral("Desc") : QStringLiteral("Asc"));

    // 3. The sort code of the column.
    int code = 1;
    switch (intColumn) {
    case 0:
    case 2: code = 3; break;
    case 1: code = 7; break;
    case 3: code = 1; break;
    default: Err(kInvalidCall);
    }
    gintToolGridSortCol = intColumn;

    // 4. Sort rows 1 to gintToolRows; rows of equal value keep their order.
    std::vector<std::array<QString, ToolGrid::kCols>> rows;
    for (int r = 1; r <= gintToolRows; ++r) {
        std::array<QString, ToolGrid::kCols> row;
        for (int c = 0; c < ToolGrid::kCols; ++c)
            row[static_cast<size_t>(c)] = grid.TextMatrix(r, c);
        rows.push_back(row);
    }
    const auto col = static_cast<size_t>(intColumn);
    std::stable_sort(rows.begin(), rows.end(), [&](const auto &a, const auto &b) {
        return blnDesc ? blnSortsBefore(code, b[col], a[col]) : blnSortsBefore(code, a[col], b[col]);
    });
    for (int r = 1; r <= gintToolRows; ++r)
        for (int c = 0; c < ToolGrid::kCols; ++c)
            grid.SetTextMatrix(r, c, rows[static_cast<size_t>(r - 1)][static_cast<size_t>(c)]);

    // 5. The kept tool selected again, at its new row.
    int found = 0;
    if (!keptIndex.isEmpty())
        for (int r = 1; r <= gintToolRows && found == 0; ++r)
            if (grid.TextMatrix(r, 4) == keptIndex)
                found = r;
    if (found > 0)
        grid.SelectRow(found);
    else
        grid.SetCell(0, 0);

    if (grid.isEnabled() && grid.isVisible())
        grid.table()->setFocus();
} catch (...) {
    LogError("F1Mill", "GridSort");
}
