// The manual screen (frmMain's picKeyboard, mode 2): the pad picture, six direction lamps
// with their speed labels, the position of the three axes with their reset buttons, the
// spindle controls, the task frame of a wizard step with the cutter picture, and Done.
//
// The key loop itself (link/keycontrol.h) knows nothing of widgets: it sets gKeyboard and
// calls keyboardHooks(); this panel installs those hooks and shows what they say. It also
// draws the link's spindle controls (gSpindleControls) onto its pictures and onto the
// Mill menu's Start and Stop entries.
#pragma once

#include "core/main_panels.h"

#include <QFrame>
#include <QPixmap>
#include <QString>

#include <array>
#include <cstdint>

class QGroupBox;
class QPushButton;
class QTextEdit;

class PicKeyboard : public QFrame {
    Q_OBJECT
public:
    explicit PicKeyboard(QWidget *parent);
    ~PicKeyboard() override;

    // The task of a wizard step; hidden for free manual control.
    QGroupBox *fraTask;
    QTextEdit *rtbTask;
    QLabel *imgCutter;                        // the cutter picture of the origin tasks (ilsCutter)
    QPushButton *cmdDone;
    QString cmdDoneTag;                       // "Done": the token of a completed task
    std::array<QPushButton *, 4> cmdReset{};  // by axis: 0 X, 1 Y, 2 Z, 3 all
    QLabel *imgKeybd;                         // the pad picture, "Numpad" or "NumpadDot"
    QFrame *picPosition;                      // takes the focus while the loop runs
    std::array<QLabel *, 3> lblPos{};         // X, Y, Z in mm "0.00"
    QFrame *picArrows;                        // the lamps' panel
    std::array<QLabel *, 6> imgArrows{};      // lamps 1..6 at index 0..5: X+, X-, Y+, Y-, Z+, Z-
    std::array<QLabel *, 6> lblSpeed{};       // the speed beside each lamp
    PictureButton *picSpindleStart;
    PictureButton *picSpindleStop;
    QLabel *picStartText;                     // the spindle controls' caption; hidden without spindle
    QFrame *picStopped;
    QLabel *lblStopped;

    // Done: waits for Enter and Space to come up, marks the task done, ends the key loop.
    void cmdDone_Click();
    // gKeyboard onto the lamps and speed labels, and onto the position labels.
    void ShowLamps();
    void ShowPositions();
    // gSpindleControls onto the spindle pictures, their tool tips, the warning and the menu.
    void ShowSpindleControls();
};

// Lays out the manual screen and starts the key loop through tmrKeyControl. `blnSpindle`
// shows the spindle controls (stopped); without it they are hidden and the Mill menu's
// Start and Stop are off.
void ShowKeyboard(bool blnSpindle);
// After the key loop: back to the wizard whose task it was, or the end of free control.
void KeyboardLoopEnded();

// The pictures, drawn by the program.
QPixmap ilsKeypad(const QString &strKey);    // "Numpad", "NumpadDot"
QPixmap ilsCutter(const QString &strKey);    // "CutterTop", "CutterSide", "CutterFront"
QPixmap ArrowLamp(int intLamp, bool blnLit); // lamp 1..6; unlit is the dim outline under it
