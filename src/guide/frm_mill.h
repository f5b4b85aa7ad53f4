// frmMill: the in-run prompts. A small window at the lower right of the main window that
// stops a run and leads the operator through what must be done by hand: taking a tool out,
// putting the next one in, starting the spindle, setting the speed knob, and the clean-up at
// the end. The stream opens it modally (the machine is idle while it is up) through
// ShowMillPrompt; the start step goes in as the tag, and "Cancel" comes back when the
// operator gave up.
//
// Steps: 0 prepare to change, 1 change or insert, 2 start the spindle, 3 close the door,
// 4 set the speed, 5 end of code, 6 machining complete. Paths: "0" 0-1-2-(3)-4, "1"
// 1-2-(3)-4, "2" 2-(3)-4, "5" 5-6.
#pragma once

#include "platform/forms.h"

#include <QDialog>

#include <array>
#include <cstdint>

class QGroupBox;
class QLabel;
class QPushButton;
class QTextEdit;
class QTimer;

class FrmMill : public QDialog, public Form {
    Q_OBJECT
public:
    FrmMill();
    ~FrmMill() override;

    QGroupBox *fraStep;
    QLabel *lblStepTitle;
    QTextEdit *rtbMill;
    std::array<QPushButton *, 2> cmdNav{};   // 0 "Cancel", 1 "&Done"
    QTimer *tmrSpindle;                      // 100 ms one-shot: the spindle start after Done
    int16_t intStep = 0;
    int intStepsShown = 0;                   // SetStep calls: tells a watcher a page is new
    QString Tag;                             // in: the start step; out: "Cancel" when given up

    void Form_Load() override;
    void Form_Activate();
    void SetStep(int16_t intNewStep);
    void cmdNav_Click(int intIndex);
    void tmrSpindle_Timer();

protected:
    void showEvent(QShowEvent *e) override;
    // Esc and the close box do nothing: the operator answers with a button.
    void reject() override {}

private:
    void Place();
    bool m_busy = false;   // cmdNav_Click is running (a second click is ignored)
};

// The global instance (loaded on first use), and whether it is loaded.
FrmMill *frmMill();
bool frmMillLoaded();

// Loads frmMill, gives it the start step, shows it modally and unloads it. Returns the tag
// it was left with. The stream's millPrompt.
QString ShowMillPrompt(const QString &strStartTag);

// The page of a step as rich text (HTML), and its title, with the state as it stands.
QString strMillStepTitle(int16_t intStep);
QString strMillStepPage(int16_t intStep);
