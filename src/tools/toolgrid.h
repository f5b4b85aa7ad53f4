// The tool grid: five columns (number, type, diameter, offset, and a hidden column with the
// record's index in gtypTools), a heading row covered by four sort buttons, eight data rows
// in view. The tool page (grdTools) and the two wizards (grdSetTools, grdOffTools) each
// own one; the procedures below take the grid as an argument.
//
// The grid speaks in the rows of the program's grid control: row 0 is the heading row,
// whose cells hold the sort state of their column ("Asc" or "Desc") under the sort
// buttons; rows 1.. are the data rows. The widget is a QTableWidget without its own
// header, with the sort buttons standing over it.
#pragma once

#include <QString>
#include <QWidget>

#include <array>
#include <cstdint>

class QPushButton;
class QTableWidget;

// Data rows showing in the grid now (tools listed, hidden ones left out).
extern int16_t gintToolRows;
// The column sorted last; 4 (the index column, never sorted) forces the next sort ascending.
extern int16_t gintToolGridSortCol;

class ToolGrid : public QWidget {
    Q_OBJECT
public:
    static constexpr int kCols = 5;
    static constexpr int kRowsInView = 8;
    // `gridName`: grdTools, grdSetTools, grdOffTools; `sortName`: cmdSort, cmdSetSort, cmdOffSort.
    ToolGrid(const QString &gridName, const QString &sortName, QWidget *parent);

    QTableWidget *table() const { return m_table; }
    std::array<QPushButton *, 4> cmdSort{};

    // --- The grid control's operations, rows counted with the heading row as 0.
    int Rows() const;                 // heading row included
    void SetRows(int rows);           // at least 1
    void AddItem();                   // one more row at the end
    void RemoveItem(int row);
    QString TextMatrix(int row, int col) const;
    void SetTextMatrix(int row, int col, const QString &text);
    void Clear();                     // every cell empty, the heading included
    void SetColAlignment(int col, int code);   // 1 left, 4 centre, 7 right, 9 general
    void SetColWidth(int col, int px);
    int ColPos(int col) const;        // from the grid's left edge, px
    int ColWidth(int col) const;
    int RowPos(int row) const;        // from the grid's top edge, px
    int RowHeight(int row) const;
    int Row() const { return m_row; }         // current row, 0 when no data row is current
    int Col() const { return m_col; }
    int RowSel() const { return m_row; }      // whole rows are selected: the same row
    void SetCell(int row, int col);           // current cell; row 0 clears the selection
    void SelectRow(int row);                  // the whole row, columns 0 to 4
    void SetTopRow(int row);                  // scroll so that `row` is the first in view
    int TopRow() const;
    int GridWidth() const { return width(); }
    void SetGridWidth(int px);
    void SetGridHeight(int px);
    int FrameWidth() const;           // the grid's border, px on each side
    int ScrollBarWidth() const;       // what a vertical scroll bar takes, px

signals:
    // The operator clicked a cell or moved the current row with the keys (grd_Click).
    void Click();
    // Sort button `index` (0..3) was clicked (cmdSort_Click).
    void SortClick(int index);
    // The grid changed its width or height: its owner may lay out again.
    void SizeChanged();

private:
    void Place();
    void UserMovedTo(int tableRow, int col);
    QTableWidget *m_table = nullptr;
    std::array<QString, kCols> m_heading;
    std::array<int, kCols> m_align{{4, 1, 7, 9, 1}};
    int m_row = 0;
    int m_col = 0;
    int m_headingHeight = 0;
    bool m_blnProgrammatic = false;
};

// Builds the columns and the sort buttons: captions, column widths from the captions,
// the index column at width 0, the grid sized to its columns and eight data rows.
void ToolGridSetup(ToolGrid &grid);
// Fills the grid from gtypTools, hidden records left out, and sorts it by tool number.
void ToolDataShow(ToolGrid &grid);
// Sorts the data rows by a column: again on the same column turns the order round.
// The selected tool stays selected, at its new row.
void GridSort(ToolGrid &grid, int16_t intColumn);
// The row of data for one record, as the grid shows it (number, type, diameter, offset, index).
std::array<QString, ToolGrid::kCols> strToolRow(int16_t index);
