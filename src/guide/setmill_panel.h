// The machining set-up wizard's panel (frmMain's picSetMill, mode 3): the page of a step with
// its title, the warning box laid over the page's top, the billet button, the progress bar of
// the analysis; the frame of step 2 with the file's tools in a grid; the navigation strip with
// its five buttons and the busy book. The wizard's logic (guide/setmill.h) fills it.
#pragma once

#include <QFrame>
#include <QString>

#include <array>

class QKeyEvent;
class QLabel;
class QProgressBar;
class QPushButton;
class QTextEdit;
class ToolGrid;

class PicSetMill : public QFrame {
    Q_OBJECT
public:
    explicit PicSetMill(QWidget *parent);

    // Every step but the tool step.
    QFrame *fraSetStep;
    QLabel *lblStepTitle;
    QTextEdit *rtbStep;
    QTextEdit *rtbWarn;          // over rtbStep's top: the end-stop warning of the origin steps
    QPushButton *cmdExplain;     // bottom right of rtbStep: billet help
    QProgressBar *pgbProgress;   // the analysis and the final calculations, 0..100
    // The tool step: its title, its page and the program's tools.
    QFrame *fraSetTools;
    QLabel *lblSetTools;
    QTextEdit *rtbSetTools;
    ToolGrid *grdSetTools;
    // The navigation strip: 0 "&Get Offsets", 1 "Cancel", 2 "< &Back", 3 "&Next >", 4 "&Start".
    QFrame *picNav;
    QLabel *imgWait;             // the busy book
    std::array<QPushButton *, 5> cmdSetNav{};

    // The button that Enter presses and the one that Esc presses, as a dialog's default and
    // cancel buttons would: a press counts only while the button is visible and enabled.
    void SetDefaultButton(int intIndex);
    void SetCancelButton(int intIndex);
    int DefaultButton() const { return m_default; }
    int CancelButton() const { return m_cancel; }

    // Lays rtbWarn over rtbStep: 3 pixels in from its left and top, 6 pixels narrower.
    void PlaceWarning();
    // Puts cmdExplain a few pixels inside rtbStep's bottom right corner.
    void PlaceExplain();

protected:
    void keyPressEvent(QKeyEvent *e) override;

private:
    void pressIfUsable(int intIndex);
    int m_default = 3;
    int m_cancel = 1;
};
