// The tool offset wizard's panel of the main window (picOffset, mode 7): two frames that
// take turns, fraOffStep (a step's page) and fraOffTools (the page with the tool grid, for
// choosing the tool to measure), the "no room" notice of the first page, and the navigation
// buttons cmdOffNav: 0 More, 1 Cancel, 2 Back, 3 Next, 4 Finish.
//
// The main window only makes the panel, centres it and shows or hides it (SetMode); the
// steps, their pages and tasks are the wizard's (guide/offset_wizard.h).
#pragma once

#include <QFrame>

#include <array>

class QLabel;
class QPushButton;
class QTextEdit;
class ToolGrid;

class PicOffset : public QFrame {
    Q_OBJECT
public:
    explicit PicOffset(QWidget *parent);

    // A step's page.
    QFrame *fraOffStep;
    QLabel *lblOffStepTitle;
    QTextEdit *rtbOffset;
    QLabel *txtNoRoom;   // over the first page's three empty paragraphs
    // The pages with the tool grid.
    QFrame *fraOffTools;
    QLabel *lblOffToolsTitle;
    QTextEdit *rtbOffTools;
    ToolGrid *grdOffTools;   // sort buttons cmdOffSort; hidden column 4: index in gtypTools
    // Navigation.
    std::array<QPushButton *, 5> cmdOffNav{};

    // The button Enter presses when no other button has the focus, and the one Esc presses.
    void SetDefaultButton(int intIndex);
    void SetCancelButton(int intIndex);
    int DefaultButton() const { return m_default; }
    int CancelButton() const { return m_cancel; }

    // The grid centred under the page's text.
    void PlaceGrid();

    // Handlers (offset_wizard.cpp).
    void cmdOffNav_Click(int intIndex);
    void cmdOffSort_Click(int intIndex);
    void grdOffTools_Click();

protected:
    // Enter and Esc that no control took: the default and the cancel button.
    void keyPressEvent(QKeyEvent *e) override;

private:
    int m_default = 3;
    int m_cancel = 1;
};
