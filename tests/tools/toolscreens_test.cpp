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

static const float kUnknown = gintToolUnknownOffset;

TEST_F(ToolScreens, EmptyTableHasNothingToEditOrSortAndACancelledAddAddsNothing)
{
    ShowPage();
    EXPECT_EQ(m_modes, std::vector<int>{5});
    ToolGrid &grid = *m_panel->grdTools;
    EXPECT_EQ(gintToolRows, 0);
    EXPECT_EQ(grid.Rows(), 9);
    ClickCell(grid, 3, 1);
    EXPECT_FALSE(m_panel->cmdEdit->isEnabled());
    EXPECT_FALSE(m_panel->cmdDelete->isEnabled());
    EXPECT_EQ(grid.Row(), 0);
    WhenDialogUp([] { frmToolData().cmdCancel->click(); });   // Add, then Cancel: still no tool
    m_panel->cmdAdd->click();
    EXPECT_EQ(gintToolCount, 0);
    // Sort buttons do nothing with fewer than two tools.
    SetTools({{1, "Drill", 3.0f, kUnknown}});
    ShowPage();
    grid.cmdSort[0]->click();
    EXPECT_TRUE(grid.TextMatrix(0, 0).isEmpty());
}

TEST_F(ToolScreens, SortingKeepsTheSelectedToolSelected)
{
    SetTools({{12, "End mill", 6.0f, kUnknown}, {3, "Drill", 2.5f, 1.0f}, {7, "Reamer", 4.0f, kUnknown}});
    ShowPage();
    ToolGrid &grid = *m_panel->grdTools;
    EXPECT_TRUE(grid.table()->isColumnHidden(4));
    ClickCell(grid, 2, 0);   // tool 7
    ASSERT_EQ(grid.TextMatrix(grid.Row(), 0), QStringLiteral("7"));
    // Numbers and diameters sort as numbers, offsets with "unknown" last.
    grid.cmdSort[3]->click();
    EXPECT_EQ(Column(grid, 3), QStringList({"1.000", "unknown", "unknown"}));
    grid.cmdSort[1]->click();   // Drill, End mill, Reamer
    EXPECT_EQ(grid.Row(), 3);
    EXPECT_EQ(grid.TextMatrix(grid.Row(), 0), QStringLiteral("7"));
    EXPECT_EQ(grid.table()->selectionModel()->selectedRows().at(0).row(), 2);
    // Without a selection the sort leaves none.
    ClickCell(grid, 5, 0);
    grid.cmdSort[0]->click();
    EXPECT_EQ(grid.Row(), 0);
    EXPECT_TRUE(grid.table()->selectionModel()->selectedRows().isEmpty());
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
    EXPECT_EQ(gintToolCount, 3);

    m_boxes->answer(vbYes);
    m_panel->cmdDelete->click();
    ASSERT_EQ(gintToolCount, 2);
    EXPECT_EQ(Row(grid, 1), QStringList({"3", "Slot drill", "4.500", "2.000", "1"}));
    EXPECT_EQ(Row(grid, 2), QStringList({"7", "Drill", "1.000", "0.500", "2"}));
    EXPECT_FALSE(m_panel->cmdDelete->isEnabled());
}

// Editing a tool may keep its own number, type and diameter but not take another tool's number;
// a change keeps the offset.
TEST_F(ToolScreens, EditChangesNumberTypeAndDiameterAndKeepsTheOffset)
{
    SetTools({{12, "End mill", 6.0f, 3.5f}, {3, "Drill", 2.5f, kUnknown}});
    ShowPage();
    ToolGrid &grid = *m_panel->grdTools;
    ClickCell(grid, 2, 0);   // tool 12
    WhenDialogUp([] { frmToolData().cmdOk->click(); });
    m_panel->cmdEdit->click();
    EXPECT_TRUE(m_boxes->shown().empty());
    ClickCell(grid, 2, 0);
    WhenDialogUp([this] {
        FrmToolData &dlg = frmToolData();
        EXPECT_EQ(dlg.cboToolType->currentText(), QStringLiteral("End mill"));
        EXPECT_EQ(dlg.txtToolDiam->text(), QStringLiteral("6.000"));
        dlg.txtToolNumber->setText(QStringLiteral("3"));
        dlg.cmdOk->click();
        EXPECT_EQ(m_boxes->shown().size(), 1u);
        dlg.txtToolNumber->setText(QStringLiteral("14"));
        dlg.cboToolType->setCurrentIndex(dlg.cboToolType->findText(QStringLiteral("Bull nose")));
        dlg.txtToolDiam->setText(QStringLiteral("6.35"));
        dlg.cmdOk->click();
    });
    m_panel->cmdEdit->click();
    ASSERT_EQ(m_boxes->shown().size(), 1u);
    EXPECT_EQ(m_boxes->last().title, QStringLiteral("Tool number"));
    EXPECT_EQ(Row(grid, 2), QStringList({"14", "Bull nose", "6.350", "3.500", "1"}));
}

// Hidden tools stay out of the grid; an added tool follows the shown rows; Done saves the table
// and goes to the menu.
TEST_F(ToolScreens, HiddenToolsStayOutOfTheGridAndAnAddFollowsTheShownRows)
{
    SetTools({{1, "Drill", 1.0f, kUnknown}, {2, "Drill", 2.0f, kUnknown}, {3, "Drill", 3.0f, kUnknown}});
    gtypTools(2).blnHide = true;
    ShowPage();
    ToolGrid &grid = *m_panel->grdTools;
    EXPECT_EQ(Column(grid, 0), QStringList({"1", "3"}));
    WhenDialogUp([] {
        FrmToolData &dlg = frmToolData();
        Type(dlg.txtToolNumber, QStringLiteral("8"));
        dlg.cboToolType->setCurrentIndex(dlg.cboToolType->findText(QStringLiteral("Drill")));
        Type(dlg.txtToolDiam, QStringLiteral("8"));
        dlg.cmdOk->click();
    });
    m_panel->cmdAdd->click();
    EXPECT_EQ(gintToolCount, 4);
    EXPECT_EQ(Column(grid, 0), QStringList({"1", "3", "8"}));
    EXPECT_EQ(grid.TextMatrix(3, 4), QStringLiteral("4"));
    m_panel->cmdOk->click();
    EXPECT_EQ(m_modes, (std::vector<int>{5, 1}));
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("ToolCount"), QString()), QStringLiteral("4"));
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("Tool04"), QString()), QStringLiteral("8|Drill|8.000|-2000.000"));
}
