// The tool page: the grid, its sorting, add, edit, delete and Done.
#include "core/msgbox.h"
#include "core/store.h"
#include "tools/frmtooldata.h"
#include "tools/tooltable.h"
#include "toolscreens_support.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

namespace {

const float kUnknown = gintToolUnknownOffset;

// Adds a tool through the real dialog; `type` must be in the type list.
void AddThroughDialog(ToolDataPanel &panel, const QString &number, const QString &type, const QString &diameter)
{
    WhenDialogUp([=] {
        FrmToolData &dlg = frmToolData();
        Type(dlg.txtToolNumber, number);
        dlg.cboToolType->setCurrentIndex(dlg.cboToolType->findText(type));
        Type(dlg.txtToolDiam, diameter);
        dlg.cmdOk->click();
        if (dlg.isVisible())
            dlg.cmdCancel->click();   // refused: give up
    });
    panel.cmdAdd->click();
}

} // namespace

TEST_F(ToolScreens, EmptyTableShowsEightEmptyRowsAndNothingToEdit)
{
    ShowPage();
    EXPECT_EQ(m_modes, std::vector<int>{5});
    ToolGrid &grid = *m_panel->grdTools;
    EXPECT_EQ(gintToolRows, 0);
    EXPECT_EQ(grid.Rows(), 9);
    for (int r = 1; r <= 8; ++r)
        for (int c = 0; c < 5; ++c)
            EXPECT_TRUE(grid.TextMatrix(r, c).isEmpty());
    ClickCell(grid, 3, 1);
    EXPECT_FALSE(m_panel->cmdEdit->isEnabled());
    EXPECT_FALSE(m_panel->cmdDelete->isEnabled());
    EXPECT_EQ(grid.Row(), 0);
    // Sort buttons do nothing with fewer than two tools.
    for (int tools = 0; tools < 2; ++tools) {
        if (tools == 1) {
            SetTools({{1, "Drill", 3.0f, kUnknown}});
            ShowPage();
        }
        grid.cmdSort[0]->click();
        grid.cmdSort[2]->click();
        EXPECT_TRUE(grid.TextMatrix(0, 0).isEmpty() && grid.TextMatrix(0, 2).isEmpty()) << tools << " tools";
    }
}

TEST_F(ToolScreens, ColumnsShowTheRecordsAndUnknownOffsets)
{
    SetTools({{12, "End mill", 6.0f, kUnknown}, {3, "Drill", 2.5f, 12.25f}});
    ShowPage();
    ToolGrid &grid = *m_panel->grdTools;
    EXPECT_EQ(Column(grid, 0), QStringList({"3", "12"}));
    EXPECT_EQ(Column(grid, 2), QStringList({"2.500", "6.000"}));
    EXPECT_EQ(Column(grid, 3), QStringList({"12.250", "unknown"}));
    EXPECT_EQ(Column(grid, 4), QStringList({"2", "1"}));
    EXPECT_EQ(grid.TextMatrix(0, 0), QStringLiteral("Asc"));
    EXPECT_TRUE(grid.table()->isColumnHidden(4));
    // A click on a tool allows Edit and Delete; a click below the last one takes them away.
    ClickCell(grid, 2, 1);
    EXPECT_TRUE(m_panel->cmdEdit->isEnabled());
    EXPECT_TRUE(m_panel->cmdDelete->isEnabled());
    ClickCell(grid, 3, 1);
    EXPECT_FALSE(m_panel->cmdEdit->isEnabled());
    EXPECT_EQ(grid.Row(), 0);
}

TEST_F(ToolScreens, SortTwiceTurnsTheOrderAndAnotherColumnBeginsAscending)
{
    SetTools({{12, "End mill", 10.0f, kUnknown},
              {3, "drill", 9.0f, 1.5f},
              {7, "Ball end", 2.0f, -0.25f},
              {5, "End mill", 4.0f, kUnknown}});
    ShowPage();
    ToolGrid &grid = *m_panel->grdTools;
    EXPECT_EQ(Column(grid, 0), QStringList({"3", "5", "7", "12"}));
    grid.cmdSort[0]->click();
    EXPECT_EQ(grid.TextMatrix(0, 0), QStringLiteral("Desc"));
    EXPECT_EQ(Column(grid, 0), QStringList({"12", "7", "5", "3"}));
    grid.cmdSort[0]->click();
    EXPECT_EQ(Column(grid, 0), QStringList({"3", "5", "7", "12"}));
    // Diameters as numbers, not as text ("10.000" after "9.000").
    grid.cmdSort[2]->click();
    EXPECT_EQ(grid.TextMatrix(0, 2), QStringLiteral("Asc"));
    EXPECT_EQ(Column(grid, 2), QStringList({"2.000", "4.000", "9.000", "10.000"}));
    // Types alphabetical; equal types keep their order.
    grid.cmdSort[1]->click();
    EXPECT_EQ(Column(grid, 1), QStringList({"Ball end", "drill", "End mill", "End mill"}));
    EXPECT_EQ(Column(grid, 0), QStringList({"7", "3", "5", "12"}));
    // Offsets: numbers in order, then "unknown"; descending the other way round.
    grid.cmdSort[3]->click();
    EXPECT_EQ(Column(grid, 3), QStringList({"-0.250", "1.500", "unknown", "unknown"}));
    grid.cmdSort[3]->click();
    EXPECT_EQ(Column(grid, 3), QStringList({"unknown", "unknown", "1.500", "-0.250"}));
    // Back to a column whose heading still says "Asc" from before: ascending, as it isn't
    // the column sorted last.
    grid.cmdSort[2]->click();
    EXPECT_EQ(Column(grid, 2), QStringList({"2.000", "4.000", "9.000", "10.000"}));
}

TEST_F(ToolScreens, SortingKeepsTheSelectedToolSelected)
{
    SetTools({{12, "End mill", 6.0f, kUnknown}, {3, "Drill", 2.5f, 1.0f}, {7, "Reamer", 4.0f, kUnknown}});
    ShowPage();
    ToolGrid &grid = *m_panel->grdTools;
    ClickCell(grid, 2, 0);   // tool 7
    ASSERT_EQ(grid.TextMatrix(grid.Row(), 0), QStringLiteral("7"));
    grid.cmdSort[1]->click();   // Drill, End mill, Reamer
    EXPECT_EQ(grid.Row(), 3);
    EXPECT_EQ(grid.TextMatrix(grid.Row(), 0), QStringLiteral("7"));
    EXPECT_EQ(grid.table()->selectionModel()->selectedRows().size(), 1);
    EXPECT_EQ(grid.table()->selectionModel()->selectedRows().at(0).row(), 2);
    EXPECT_TRUE(m_panel->cmdEdit->isEnabled());
    // Without a selection the sort leaves none.
    ClickCell(grid, 5, 0);
    grid.cmdSort[0]->click();
    EXPECT_EQ(grid.Row(), 0);
    EXPECT_TRUE(grid.table()->selectionModel()->selectedRows().isEmpty());
}

TEST_F(ToolScreens, TheNinthToolWidensTheGridAndComesLastSelected)
{
    SetTools({{1, "Drill", 1.0f, kUnknown}, {2, "Drill", 2.0f, kUnknown}, {3, "Drill", 3.0f, kUnknown},
              {4, "Drill", 4.0f, kUnknown}, {5, "Drill", 5.0f, kUnknown}, {6, "Drill", 6.0f, kUnknown},
              {7, "Drill", 7.0f, kUnknown}, {8, "Drill", 8.0f, kUnknown}});
    ShowPage();
    ToolGrid &grid = *m_panel->grdTools;
    const int narrow = grid.GridWidth();
    grid.cmdSort[0]->click();   // descending: the new tool still goes to the end
    AddThroughDialog(*m_panel, QStringLiteral("9"), QStringLiteral("Reamer"), QStringLiteral("4.5"));
    ASSERT_EQ(gintToolCount, 9);
    EXPECT_EQ(gintToolRows, 9);
    EXPECT_EQ(grid.Rows(), 10);
    EXPECT_EQ(grid.GridWidth(), narrow + grid.ScrollBarWidth());
    EXPECT_GT(grid.ScrollBarWidth(), 0);
    EXPECT_EQ(grid.Row(), 9);
    EXPECT_EQ(Row(grid, 9), QStringList({"9", "Reamer", "4.500", "unknown", "9"}));
    EXPECT_EQ(grid.TopRow(), 2);
    EXPECT_TRUE(m_panel->cmdDelete->isEnabled());
    EXPECT_EQ(gtypTools(9).sngOffset, kUnknown);
    EXPECT_FALSE(blnFrmToolDataLoaded());
    // A tenth doesn't widen it again.
    AddThroughDialog(*m_panel, QStringLiteral("10"), QStringLiteral("Reamer"), QStringLiteral("5"));
    EXPECT_EQ(grid.GridWidth(), narrow + grid.ScrollBarWidth());
    // Deleting back to eight rebuilds the grid, narrow again.
    for (int n = 0; n < 2; ++n) {
        ClickCell(grid, 1, 0);
        m_boxes->answer(vbYes);
        m_panel->cmdDelete->click();
    }
    EXPECT_EQ(gintToolCount, 8);
    EXPECT_EQ(grid.Rows(), 9);
    EXPECT_EQ(grid.GridWidth(), narrow);
}

TEST_F(ToolScreens, DeleteAsksAndMovesTheRecordsDown)
{
    SetTools({{12, "End mill", 6.0f, kUnknown}, {3, "Slot drill", 4.5f, 2.0f}, {7, "Drill", 1.0f, 0.5f}});
    ShowPage();
    ToolGrid &grid = *m_panel->grdTools;
    ClickCell(grid, 3, 0);   // tool 12, record 1
    m_boxes->answer(vbNo);
    m_panel->cmdDelete->click();
    ASSERT_EQ(m_boxes->shown().size(), 1u);
    EXPECT_EQ(m_boxes->last().text,
              QStringLiteral("Are you sure you want to delete:\r\nTool no. 12\r\n(End mill  6.000 mm)?\r\n"));
    EXPECT_EQ(m_boxes->last().flags, 260);
    EXPECT_EQ(m_boxes->last().title, QStringLiteral("Tool Deletion"));
    EXPECT_EQ(gintToolCount, 3);
    EXPECT_EQ(grid.Row(), 3);   // still selected
    EXPECT_TRUE(m_panel->cmdDelete->isEnabled());

    m_boxes->answer(vbYes);
    m_panel->cmdDelete->click();
    ASSERT_EQ(gintToolCount, 2);
    EXPECT_EQ(Row(grid, 1), QStringList({"3", "Slot drill", "4.500", "2.000", "1"}));
    EXPECT_EQ(Row(grid, 2), QStringList({"7", "Drill", "1.000", "0.500", "2"}));
    EXPECT_FALSE(m_panel->cmdEdit->isEnabled());
    EXPECT_FALSE(m_panel->cmdDelete->isEnabled());
    EXPECT_EQ(grid.Row(), 0);
}

TEST_F(ToolScreens, EditChangesNumberTypeAndDiameterAndKeepsTheOffset)
{
    SetTools({{12, "End mill", 6.0f, 3.5f}, {3, "Drill", 2.5f, kUnknown}});
    ShowPage();
    ToolGrid &grid = *m_panel->grdTools;
    ClickCell(grid, 2, 0);   // tool 12
    WhenDialogUp([] {
        FrmToolData &dlg = frmToolData();
        EXPECT_EQ(dlg.windowTitle(), QStringLiteral("Edit Tool Data"));
        EXPECT_EQ(dlg.txtToolNumber->text(), QStringLiteral("12"));
        EXPECT_EQ(dlg.cboToolType->currentText(), QStringLiteral("End mill"));
        EXPECT_EQ(dlg.txtToolDiam->text(), QStringLiteral("6.000"));
        EXPECT_EQ(dlg.Tag, QStringLiteral("1"));
        EXPECT_TRUE(dlg.cmdOk->isEnabled());
        dlg.txtToolNumber->setText(QStringLiteral("14"));
        dlg.cboToolType->setCurrentIndex(dlg.cboToolType->findText(QStringLiteral("Bull nose")));
        dlg.txtToolDiam->setText(QStringLiteral("6.35"));
        dlg.cmdOk->click();
    });
    m_panel->cmdEdit->click();
    EXPECT_TRUE(m_boxes->shown().empty());
    EXPECT_EQ(gtypTools(1).intNumber, 14);
    EXPECT_FLOAT_EQ(gtypTools(1).sngDiameter, 6.35f);
    EXPECT_EQ(Row(grid, 2), QStringList({"14", "Bull nose", "6.350", "3.500", "1"}));
    EXPECT_EQ(grid.Row(), 2);
    EXPECT_FALSE(blnFrmToolDataLoaded());
}

TEST_F(ToolScreens, DoneSavesTheTableAndGoesToTheMenu)
{
    SetTools({{12, "End mill", 6.0f, kUnknown}});
    ShowPage();
    AddThroughDialog(*m_panel, QStringLiteral("4"), QStringLiteral("Drill"), QStringLiteral("1.23456"));
    m_panel->cmdOk->click();
    EXPECT_EQ(m_modes, (std::vector<int>{5, 1}));
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("ToolCount"), QString()), QStringLiteral("2"));
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("Tool01"), QString()), QStringLiteral("12|End mill|6.000|-2000.000"));
    // The diameter box takes three decimals at most.
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("Tool02"), QString()), QStringLiteral("4|Drill|1.234|-2000.000"));
}

TEST_F(ToolScreens, HiddenToolsStayOutOfTheGridAndAnAddFollowsTheShownRows)
{
    SetTools({{1, "Drill", 1.0f, kUnknown}, {2, "Drill", 2.0f, kUnknown}, {3, "Drill", 3.0f, kUnknown}});
    gtypTools(2).blnHide = true;
    ShowPage();
    ToolGrid &grid = *m_panel->grdTools;
    EXPECT_EQ(Column(grid, 0), QStringList({"1", "3"}));
    AddThroughDialog(*m_panel, QStringLiteral("8"), QStringLiteral("Drill"), QStringLiteral("8"));
    EXPECT_EQ(gintToolCount, 4);
    EXPECT_EQ(Column(grid, 0), QStringList({"1", "3", "8"}));
    EXPECT_EQ(grid.TextMatrix(3, 4), QStringLiteral("4"));
}
