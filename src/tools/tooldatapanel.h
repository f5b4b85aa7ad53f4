// The tool page of the main window (picTools): the tool grid with its sort buttons, and
// Add, Edit, Delete and Done. Edits go into gtypTools at once; Done writes the table to the
// store and goes back to the main menu. There is no cancel: leaving by the toolbar's Back
// keeps the edits in memory until the next Done or the end of the run.
//
// The main window owns the page and its modes:
//   picTools = new ToolDataPanel(<frmMain's panel area>, [](int16_t m) { SetMode(m); });
//   SetMode's common step hides picTools; mode 5 runs ToolDataShow(*picTools->grdTools)
//   and shows picTools; ShowToolData() (menu "ToolData", and "Mill"/"Offsets" with no tools)
//   is picTools->ShowToolData(); Form_Resize centres it with picTools->Centre(); toolbar
//   Back in mode 5 is SetMode(1) alone (no save).
// The page calls the mode function with 5 to show itself and with 1 after Done has saved.
#pragma once

#include <QFrame>

#include <cstdint>
#include <functional>

class QPushButton;
class ToolGrid;

class ToolDataPanel : public QFrame {
    Q_OBJECT
public:
    ToolDataPanel(QWidget *parent, std::function<void(int16_t)> setMode);

    ToolGrid *grdTools = nullptr;
    QPushButton *cmdAdd = nullptr;
    QPushButton *cmdEdit = nullptr;
    QPushButton *cmdDelete = nullptr;
    QPushButton *cmdOk = nullptr;

    // Brings up the tool page: centred, Edit and Delete off, the grid built, mode 5, no row selected.
    void ShowToolData();
    // Centres the page in its parent (the main window's Form_Resize does the same).
    void Centre();

    void cmdAdd_Click();
    void cmdEdit_Click();
    void cmdDelete_Click();
    void cmdOk_Click();
    void cmdSort_Click(int index);
    void grdTools_Click();

private:
    int16_t intSelectedIndex();
    void SetEditDelete(bool enabled);
    std::function<void(int16_t)> m_setMode;
};
