// Shared steps of the tool screen tests: a main window with the tool page, tools put into
// the table, clicks on grid cells, typing into boxes, and acting on a modal dialog.
#pragma once

#include "support/test_support.h"
#include "tools/tooldatapanel.h"
#include "tools/toolgrid.h"

#include <QStringList>
#include <QWidget>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

struct ToolSpec {
    int number;
    const char *type;
    float diameter;
    float offset;
};

// Replaces the table with these tools (indexes from 1 in the order given).
void SetTools(std::initializer_list<ToolSpec> tools);
// Clicks a cell of the grid (rows from 1, as the grid counts them).
void ClickCell(ToolGrid &grid, int row, int col);
// Types text into a box key by key, through its key filter.
void Type(QWidget *box, const QString &text);
// Runs `act` once the next modal dialog is up (from inside its event loop).
void WhenDialogUp(std::function<void()> act);
// Column `col` of the data rows 1..gintToolRows.
QStringList Column(ToolGrid &grid, int col);
// The five cells of grid row `row`.
QStringList Row(ToolGrid &grid, int row);

class ToolScreens : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    // Shows the tool page as the main menu's "ToolData" does.
    void ShowPage();

    std::unique_ptr<TempStore> m_store;
    std::unique_ptr<ScriptedBoxes> m_boxes;
    std::unique_ptr<QWidget> m_main;
    ToolDataPanel *m_panel = nullptr;
    std::vector<int> m_modes;
};
