// Billet help: five pages on the mill's working envelope and on where to place a billet in
// it, in the main window's panel picBilletSize. Reached from Help > Billet Size and Placing
// (MenuAction "Billet" -> ShowBillet("Menu")) and from the set-up wizard's Explain button
// (ShowBillet("Explain")); Return gives the operator back to where the page was called from.
#pragma once

#include <QString>
#include <QWidget>

#include <array>
#include <cstdint>

class MenuEntry;
class QPushButton;
class QTextEdit;

// imgTable with picBillet over it: the mill table, the working envelope (200 x 100 mm,
// traced by the tool's centre-line), the billet and, for some pages, the tools. Drawn with
// QPainter in millimetres, so it stays sharp at any size. X runs right, Y up the screen.
class BilletPicture : public QWidget {
    Q_OBJECT
public:
    explicit BilletPicture(QWidget *parent);

    // The billet, mm from the envelope's left-front corner: its corner and size.
    float sngBilletX = 65.0f, sngBilletY = 25.0f, sngBilletW = 70.0f, sngBilletH = 50.0f;
    bool blnBillet = false;       // picBillet shown
    bool blnDimensions = false;   // the envelope's sizes (page 1)
    bool blnSmallBad = false;     // imgSmallBad: the part of the billet outside the envelope
    bool blnSmallTool = false;    // the small cutter and its centre-line path round the billet
    bool blnCutterBig = false;    // imgCutterBig, its path and lblCutter

protected:
    void paintEvent(QPaintEvent *e) override;
};

// The page's controls, made on the panel the first time it is shown.
struct BilletPage {
    std::array<MenuEntry *, 6> txtTopic{};   // 1..5 (0 unused)
    QTextEdit *rtbBillet = nullptr;
    BilletPicture *imgTable = nullptr;
    QPushButton *cmdBilletReturn = nullptr;
};
// The page of the main window's picBilletSize (making its controls if they aren't there).
BilletPage &billetPage();

// Prepares the main window and shows page 1. strReturn: "Menu" or "Explain" (or "Header").
void ShowBillet(const QString &strReturn);
// Draws page intTopic (1..5): the list colours, the text, the billet slid to its place.
// Does nothing while a page is being drawn, for the page already shown, or below 1.
void ShowTopic(int16_t intTopic);
// Return: once Enter and Space are up, leaves the page the way its tag says.
void cmdBilletReturn_Click();

// The page shown (0: none) and the return tag (tests).
int16_t BilletTopic();
QString BilletReturnTag();
// The page's text as rich text, and its topic's caption.
QString strBilletTopicText(int16_t intTopic);
QString strBilletTopicCaption(int16_t intTopic);
