// frmRateTest: how fast a rapid this PC can feed. For each of seven presets it streams frames
// that carry only timing for a minute, and the link's wait for replies counts the PC's idle
// polls; the fewest in the minute is the preset's Test Factor. Opened by the settings dialog
// once its settings are stored, so the port is the one they set up; the recommendation goes
// back into the dialog's rapid box through onRecommended.
#pragma once

#include "link/rate_test.h"
#include "platform/forms.h"

#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTextEdit>
#include <QTimer>

#include <array>
#include <cstdint>
#include <functional>

class FrmRateTest : public QDialog, public Form {
    Q_OBJECT
public:
    FrmRateTest();
    ~FrmRateTest() override;

    QTextEdit *rtbRateTest;
    QPushButton *cmdStart;
    QPushButton *cmdCancel;
    QTimer *tmrProgress;   // 500 ms while a preset runs
    std::array<QLabel *, 3> lblTitle{};
    std::array<QLabel *, kRatePresets> lblSpeed{};
    std::array<QProgressBar *, kRatePresets> pgbQuick{};
    std::array<QLabel *, kRatePresets> lblResult{};
    std::array<QLabel *, kRatePresets> imgTick{};

    bool blnCancelled = false;   // Cancel clicked during the test
    int16_t intPreset = -1;      // preset in progress, 0..6
    double dblStart = 0.0;       // clock at the start of the preset, seconds
    int32_t lngSent = 0;         // frames sent in the preset
    // Receives the recommended rate, mm/min, just before the form unloads itself.
    std::function<void(int16_t)> onRecommended;

    void Form_Load() override;
    void cmdStart_Click();
    void cmdCancel_Click();
    void tmrProgress_Timer();
    // One preset at sngRate mm/min: about a minute. Leaves its Test Factor in glngTestFactor.
    void RateTest(float sngRate);

protected:
    void reject() override;   // Esc and the close box: as Cancel
};

FrmRateTest *frmRateTest();
bool frmRateTestLoaded();
