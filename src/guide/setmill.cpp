// The machining set-up wizard's steps and navigation. See setmill.h; the words are in
// setmill_pages.cpp, the panel in setmill_panel.cpp.
#include "guide/setmill.h"

#include "core/frm_main.h"
#include "core/hooks.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/vb.h"
#include "files/filechoice.h"
#include "guide/billet.h"
#include "guide/setmill_pages.h"
#include "guide/setmill_panel.h"
#include "link/keyboard_panel.h"
#include "link/keycontrol.h"
#include "link/stream.h"
#include "nc/commands.h"
#include "nc/evaluate.h"
#include "nc/reader.h"
#include "platform/keystate.h"
#include "tools/toolgrid.h"
#include "tools/tooltable.h"

#include <QGroupBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTextEdit>

bool gblnSetStepBack = false;
bool gblnStartAllowed = false;

namespace {

constexpr const char *kModule = "frmMain";

// A step's retained form: the subsequent-part choice kept the billet and the origins.
bool blnFresh() { return !gblnNewPart && !gblnRepeatPart; }

void EnableAll(PicSetMill *p, bool blnEnabled)
{
    for (QPushButton *b : p->cmdSetNav)
        b->setEnabled(blnEnabled);
}

// The step that Back, or a task left without Done, goes back to.
int32_t intStepBefore(int32_t n) { return n == 8 ? 0 : (n == 9 ? 1 : n - 1); }

// Step 1: the program's tools in the grid, the others hidden. True when one of them has no
// measured offset (-2000 mm); the scan stops at the first.
bool blnFillToolGrid(PicSetMill *p)
{
    for (int16_t i = 1; i <= gintToolCount; ++i)
        gtypTools(i).blnHide = true;
    for (int16_t i = 1; i <= gintUsedToolCount; ++i) {
        const int16_t id = intToolGetId(gintUsedTools(i));
        if (id > 0)
            gtypTools(id).blnHide = false;
    }
    ToolDataShow(*p->grdSetTools);
    p->grdSetTools->SetCell(0, 0);
    for (int16_t i = 1; i <= gintToolCount; ++i)
        if (!gtypTools(i).blnHide && gtypTools(i).sngOffset == -2000.0f)
            return true;
    return false;
}

// Step 3: the program's first tool goes in. Z is later corrected by the difference between
// the offset of the tool in the spindle and the offset with which Z was set, so a retained
// origin keeps its old reference offset.
void InsertFirstTool()
{
    gblnToolInMachine = false;
    const int16_t intTool = gintUsedToolCount >= 1 ? gintUsedTools(1) : 0;
    gintNextTool = intTool;
    gintCurrentTool = intTool;
    gsngCurrentToolOffset = gtypTools(intToolGetId(intTool)).sngOffset;
    if (blnFresh())
        gsngOriginToolOffset = gsngCurrentToolOffset;
    gblnToolInMachine = true;
    gblnToolInserted = true;
}

// The analysis under step 9's page: EvaluateCommands pumps, and Esc stops it.
void Analyse(FrmMain *f, PicSetMill *p)
{
    p->pgbProgress->setValue(0);
    p->pgbProgress->show();
    p->cmdSetNav[1]->setEnabled(true);
    gblnCancel = false;
    f->repaint();
    auto previous = uiHooks().progress;
    uiHooks().progress = [p](int16_t intPercent) { p->pgbProgress->setValue(intPercent); };
    EvaluateCommands();
    uiHooks().progress = previous ? previous : [](int16_t) {};
    p->pgbProgress->hide();
    if (gblnCancel) {
        f->tmrShowMenuTag.clear();
        f->tmrShowMenu->start();
    } else {
        SetSetStep(2);
    }
}

// Cancel: the operator is told to turn the spindle switch back to 0 if a tool went in.
void CancelWizard(FrmMain *f)
{
    PageTurnStop();
    gblnCancel = true;
    gblnMillDone = false;
    f->picHeader->hide();
    if (gintSetStep == 9)
        return;   // the analysis sees gblnCancel and brings the menu back
    gblnSetupWizard = false;
    if (gblnToolInserted) {
        SetSetStep(10);
        gblnToolInserted = false;
    } else {
        ShowMenu(QString());
    }
}

// Start: the final calculations, then the run on tmrStartMilling.
void StartRun(FrmMain *f, PicSetMill *p)
{
    EnableAll(p, false);
    p->lblStepTitle->setText(QStringLiteral("Step 9: Final calculations"));
    p->rtbStep->setHtml(strFinalCalculationsPage());
    p->pgbProgress->setValue(0);
    p->pgbProgress->show();
    p->cmdSetNav[1]->setEnabled(true);
    ShowMachining();
    StartMilling();
    f->tmrStartMilling->start();
    // Esc during the calculations gives the run up before it starts: the machining screen
    // has no way out of its own, so the wizard's cancel page takes over, as after a run
    // given up.
    if (gblnCancel) {
        SetMode(3);
        SetSetStep(10);
    }
}

} // namespace

void ShowSetMill() try {
    FrmMain *f = frmMain();
    f->Form_Resize();   // the panel centred, the header beside it
    gblnStartAllowed = false;
    ToolGridSetup(*f->picSetMill->grdSetTools);
} catch (...) {
    LogError(kModule, "ShowSetMill");
}

void SetSetStep(int32_t n) try {
    FrmMain *f = frmMain();
    PicSetMill *p = f->picSetMill;
    PicKeyboard *k = f->picKeyboard;
    // 1.
    PageTurnStop();
    p->cmdExplain->hide();
    p->rtbWarn->hide();
    k->imgCutter->hide();
    p->pgbProgress->hide();
    p->PlaceWarning();
    // 2.
    p->cmdSetNav[3]->setText(QStringLiteral("&Next"));
    p->cmdSetNav[0]->setText(QStringLiteral("&Get Offsets"));
    p->cmdSetNav[3]->setVisible(true);
    p->cmdSetNav[3]->setEnabled(true);
    p->cmdSetNav[1]->setEnabled(true);
    p->SetDefaultButton(3);
    p->SetCancelButton(1);
    // 3.
    const bool blnForward = n > gintSetStep;
    if (n == 9 && !blnForward)
        n = 0;
    const auto intStep = static_cast<int16_t>(n);
    // 4.
    p->rtbWarn->setHtml(strSetWarning());
    // 5. The step's own actions.
    bool blnUnknown = false;
    switch (intStep) {
    case 0: case 8:
        f->picHeader->hide();
        break;
    case 1:
        f->picHeader->rtbHeader->setPlainText(gstrHeader);
        f->picHeader->show();
        f->picHeader->raise();
        blnUnknown = blnFillToolGrid(p);
        if (!blnUnknown) {
            p->cmdSetNav[3]->setText(QStringLiteral("&Yes"));
            p->cmdSetNav[0]->setText(QStringLiteral("&No"));
        }
        break;
    case 9:
        EnableAll(p, false);
        f->stbSimpleText(QStringLiteral("Analysing CNC file"));
        break;
    case 2:
        f->stbPanel(QStringLiteral("status"))->clear();
        f->stbShowPanels();
        f->stbStatus->repaint();
        if (blnFresh()) {
            p->PlaceExplain();
            p->cmdExplain->show();
        }
        break;
    case 3:
        InsertFirstTool();
        break;
    case 6:
        // Back from the last step means work on the origins: from here on a fresh run.
        if (gblnSetStepBack) {
            gblnNewPart = false;
            gblnRepeatPart = false;
        }
        break;
    case 7:
        gblnStartAllowed = true;
        break;
    case 10:
        p->cmdSetNav[3]->setText(QStringLiteral("&Ok"));
        break;
    default:
        break;
    }
    ShowSetMillPreview(intStep >= 2 && intStep <= 7);
    const bool blnRetained = !blnFresh();
    const QString strTitle = strSetStepTitle(intStep, !blnRetained);
    const QString strPage = strSetStepPage(intStep, !blnRetained, gblnSetStepBack, blnUnknown);
    if (blnSetStepWarns(intStep, !blnRetained)) {
        p->rtbWarn->show();
        p->rtbWarn->raise();
    }
    // 6. and 7.
    if (intStep == 1) {
        p->lblSetTools->setText(strTitle);
        p->rtbSetTools->setHtml(strPage);
        p->fraSetStep->hide();
        p->fraSetTools->show();
    } else {
        p->lblStepTitle->setText(strTitle);
        p->rtbStep->setHtml(strPage);
        p->fraSetTools->hide();
        p->fraSetStep->show();
    }
    f->repaint();
    // 8.
    gintSetStep = intStep;
    // 9.
    if (intStep == 9) {
        Analyse(f, p);
        return;
    }
    // 10.
    SetSetNavBtns();
    if (intStep == 1 && blnUnknown)
        p->cmdSetNav[3]->setEnabled(false);
    // The keys belong to the wizard now: Enter and Esc must not reach a control of a panel
    // hidden meanwhile (a main-menu entry would act on Enter).
    p->setFocus();
    // 11. The task that the page before announced, going forward only.
    const QString strTask = strSetTask(intStep, !blnRetained);
    if (blnForward && !strTask.isEmpty()) {
        k->rtbTask->setHtml(strTask);
        const QString strCutter = strSetTaskCutter(intStep);
        if (!strCutter.isEmpty()) {
            k->imgCutter->setPixmap(ilsCutter(strCutter));
            k->imgCutter->show();
        }
        k->fraTask->show();
        k->fraTask->raise();
        ShowKeyboard(blnSetTaskSpindle(intStep));
    }
} catch (...) {
    LogError(kModule, "SetSetStep");
}

void SetSetNavBtns() try {
    PicSetMill *p = frmMain()->picSetMill;
    auto btn = [p](int i) { return p->cmdSetNav[static_cast<size_t>(i)]; };
    if (gintSetStep != 10) {
        for (int i : {1, 2, 4})
            btn(i)->setVisible(true);
    } else {
        for (int i : {0, 1, 2, 4})
            btn(i)->setVisible(false);
    }
    btn(1)->setEnabled(true);
    btn(2)->setEnabled(gintSetStep != 0);
    btn(3)->setEnabled(gintSetStep != 7);
    btn(4)->setEnabled(gblnStartAllowed);
    btn(0)->setVisible(gintSetStep == 1);
    btn(0)->setEnabled(gintSetStep == 1);
} catch (...) {
    LogError(kModule, "SetSetNavBtns");
}

void cmdSetNav_Click(int16_t intIndex) try {
    // The long work below pumps messages: a second click (a double Enter) must not enter.
    static bool blnBusy = false;
    if (blnBusy)
        return;
    blnBusy = true;
    WaitEnterSpaceUp();
    gblnSetStepBack = false;
    FrmMain *f = frmMain();
    switch (intIndex) {
    case 0:   // Get Offsets, or No: the offset wizard, which ends at the main menu
        gblnSetupWizard = false;
        f->tmrGetOffset->start();
        break;
    case 1:
        CancelWizard(f);
        break;
    case 2:
        gblnStartAllowed = false;
        gblnSetStepBack = true;
        SetSetStep(intStepBefore(gintSetStep));
        break;
    case 3:
        if (gintSetStep == 0) {
            SetSetStep(8);
            const QString strFile = strGetFile(QStringLiteral("Select file to be milled"));
            f->activateWindow();   // the keys come back to the wizard with the dialog gone
            FileSelected(strFile);
        } else if (gintSetStep == 1) {
            SetSetStep(9);
        } else if (gintSetStep == 10) {
            ShowMenu(QString());
        } else if (gintSetStep == 3 && (gblnNewPart || gblnRepeatPart)) {
            SetSetStep(7);   // the origins are kept: no origin steps
        } else {
            SetSetStep(gintSetStep + 1);
        }
        break;
    case 4:
        StartRun(f, f->picSetMill);
        break;
    default:
        break;
    }
    blnBusy = false;
} catch (...) {
    LogError(kModule, "cmdSetNav_Click");
}

void FileSelected(const QString &strFile) try {
    FrmMain *f = frmMain();
    PicSetMill *p = f->picSetMill;
    EnableAll(p, false);
    gstrMillFile = strFile;
    f->setWindowTitle(QStringLiteral("Brantok for the Emco F1 Mill - ") + strFile);
    gintReadResult = 2;
    p->cmdSetNav[1]->setEnabled(true);
    while (gintReadResult == 2) {
        if (gstrMillFile.isEmpty()) {   // the file dialog was cancelled
            gintReadResult = 1;
            SetSetStep(0);
        } else {
            ReadCommands(gstrMillFile);
            if (gblnCancel)
                gintReadResult = 1;
            if (gintReadResult == 0)
                SetSetStep(1);
            else if (gintReadResult == 1)
                ShowMenu(QString());
            // 2: the correction window saved a corrected file: read it again
        }
    }
} catch (...) {
    LogError(kModule, "FileSelected");
}

void ReturnToSetMill(int16_t intStep) try {
    FrmMain *f = frmMain();
    PicKeyboard *k = f->picKeyboard;
    PicSetMill *p = f->picSetMill;
    // 1.
    f->mnuMStart->setEnabled(false);
    f->mnuMStop->setEnabled(false);
    // 2. A task left without Done (Esc, the toolbar's Back, an alarm) goes back one step.
    // The tag set by an entry into the wizard counts as Done for the first task, and a task
    // left at step 5 or 6 falls back to the step below with its origin action: both kept.
    if (k->cmdDoneTag != QLatin1String("Done") && gintSetStep >= 1)
        SetSetStep(intStepBefore(gintSetStep));
    // 3.
    k->cmdDoneTag.clear();
    if (intStep == -1) {
        // 4. The origins. The cutter touching the left hand end has its centre half a
        // diameter outside the billet, so the machine stands at X = -D/2 and the billet's
        // edge is X = 0; Y the same at the front; Z = 0 is the top.
        // -(D / 2) x 72 steps, D the diameter of the program's first tool (mm).
        auto half = [] {
            const float D = gtypTools(intToolGetId(gintUsedTools(1))).sngDiameter;
            return vb::CLng(-(static_cast<double>(D) / 2.0) * 72.0);
        };
        switch (gintSetStep) {
        case 4:
            glngPosZ = 0;
            DistanceReset(2);
            break;
        case 5:
            glngPosX = half();
            DistanceSet(0, glngPosX);
            break;
        case 6:
            glngPosY = half();
            DistanceSet(1, glngPosY);
            break;
        default:
            break;
        }
        p->show();
        k->hide();
        p->SetDefaultButton(3);
        p->setFocus();
    } else {
        // 5.
        gintSetStep = intStep;
        SetSetStep(intStep);
        if (gintSetStep == 8)
            FileSelected(gstrMillFile);
    }
} catch (...) {
    LogError(kModule, "ReturnToSetMill");
}

void cmdSetSort_Click(int16_t intIndex) try {
    if (gintToolRows > 1)
        GridSort(*frmMain()->picSetMill->grdSetTools, intIndex);
} catch (...) {
    LogError(kModule, "cmdSetSort_Click");
}

void cmdExplain_Click() try {
    ShowBillet(QStringLiteral("Explain"));
} catch (...) {
    LogError(kModule, "cmdExplain_Click");
}

void ResetSetMill()
{
    gblnSetStepBack = false;
    gblnStartAllowed = false;
}
