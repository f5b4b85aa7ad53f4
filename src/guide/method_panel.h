// The subsequent-part choice (frmMain's picMethod, mode 8), shown when a run has ended:
// repeat the part, a new part on the same billet, a fresh start, or the main menu. The
// text of each option stands level with its button on picMethodText.
#pragma once

#include <QFrame>

#include <array>

class QLabel;
class QPushButton;

class PicMethod : public QFrame {
    Q_OBJECT
public:
    explicit PicMethod(QWidget *parent);
    QLabel *lblMethod;             // "Subsequent Part - Machining Options"
    QFrame *picMethodText;
    std::array<QLabel *, 6> lblMethodLine{};   // the printed lines, top to bottom
    QPushButton *cmdMethodRepeat;
    QPushButton *cmdMethodNew;
    QPushButton *cmdMethodNorm;
    QPushButton *cmdMethodCancel;
};

// Prints the choice and enters mode 8 with the focus on Fresh Start.
void ShowMethod();
// 1: the same part again on a billet in the same place: straight to the billet step, with
// the same file, its analysis and the origins kept.
void cmdMethodRepeat_Click();
// 2: another file on a billet in the same place: the origins kept.
void cmdMethodNew_Click();
// 3: a fresh start: another file, billet and origins set again.
void cmdMethodNorm_Click();
// 4: the main menu.
void cmdMethodCancel_Click();
