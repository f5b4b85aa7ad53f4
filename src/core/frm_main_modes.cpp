// The screens and modes of the main window: which panel is up and what may be used.
// What the operator may do at any moment is a function of gintMode; SetMode is the one
// place that decides it, so machining, the manual screen and the wizards can't be left by
// a side door.
#include "core/frm_about.h"
#include "core/frm_main.h"
#include "options/frm_settings.h"
#include "core/frm_splash.h"
#include "core/help_calc.h"
#include "core/logger.h"
#include "core/f1mill.h"
#include "core/msgbox.h"
#include "files/cncedit.h"
#include "guide/setmill.h"
#include "core/state.h"
#include "guide/offset_wizard.h"
#include "guide/billet.h"
#include "link/spindle.h"
#include "tools/toolgrid.h"
#include "tools/tooltable.h"

#include <QAction>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTextEdit>
#include <QToolBar>

namespace {
bool gblnCaretShown = false;
}

void HideCaret() { gblnCaretShown = false; }
void ShowCaret() { gblnCaretShown = true; }
bool CaretShown() { return gblnCaretShown; }

void FrmMain::buildPanels()
{
    client = new QWidget(this);
    client->setObjectName(QStringLiteral("frmMainClient"));
    client->setAccessibleName(QStringLiteral("Screen"));
    client->setAutoFillBackground(true);
    QPalette pal = client->palette();
    pal.setColor(QPalette::Window, QColor(0xee, 0xf1, 0xf5));
    client->setPalette(pal);
    setCentralWidget(client);
    picMenu = new PicMenu(client);
    picKeyboard = new PicKeyboard(client);
    picSetMill = new PicSetMill(client);
    picTools = new ToolDataPanel(client, [](int16_t intMode) { SetMode(intMode); });
    picTools->setStyleSheet(QStringLiteral("#picTools { background: #ffffff; border: 1px solid #d5dbe1;"
                                           " border-radius: 10px; }"));
    picMachining = new PicMachining(client);
    picOffset = new PicOffset(client);
    picMethod = new PicMethod(client);
    picBilletSize = new PicBilletSize(client);
    picHeader = new PicHeader(client);
    picMenu->hide();

    connect(picMenu, &PicMenu::mouseMoved, this, [this] { picMenu_MouseMove(); });
    for (MenuEntry *e : picMenu->txtMenu) {
        connect(e, &MenuEntry::clicked, this, [this](int i) { txtMenu_Click(i); });
        connect(e, &MenuEntry::mouseMoved, this, [this](int i) { txtMenu_MouseMove(i); });
        connect(e, &MenuEntry::gotFocus, this, [this](int i) { txtMenu_GotFocus(i); });
        connect(e, &MenuEntry::lostFocus, this, [this](int i) { txtMenu_LostFocus(i); });
    }
}

void SetMode(int16_t intMode) try {
    FrmMain *f = frmMain();
    // 1. The one writer of the mode.
    gintMode = intMode;
    // 2. The common step: everything hidden, the menus that belong to the main menu off.
    for (QWidget *p : std::initializer_list<QWidget *>{f->picMenu, f->picMethod, f->picKeyboard, f->picSetMill,
                                                      f->picOffset, f->picTools, f->picMachining, f->picBilletSize})
        p->hide();
    for (int i = 0; i < gintMRUCount && i < static_cast<int>(f->mnuMMru.size()); ++i)
        f->mnuMMru[static_cast<size_t>(i)]->setVisible(false);
    f->tlbButton(QStringLiteral("Back"))->setEnabled(true);
    f->tlbButton(QStringLiteral("Settings"))->setEnabled(false);
    f->tlbButton(QStringLiteral("Edit"))->setEnabled(false);
    for (QAction *a : {f->mnuMKeyboard, f->mnuMMill, f->mnuMStart, f->mnuMStop, f->mnuTData, f->mnuTOffset,
                       f->mnuTEdit, f->mnuTimport, f->mnuOSettings})
        a->setEnabled(false);
    // 3. The mode's own step.
    switch (intMode) {
    case 1:
        gblnNewPart = false;
        gblnRepeatPart = false;
        f->tlbButton(QStringLiteral("Back"))->setEnabled(false);
        f->tlbButton(QStringLiteral("Settings"))->setEnabled(true);
        f->tlbButton(QStringLiteral("Edit"))->setEnabled(true);
        for (QAction *a : {f->mnuMKeyboard, f->mnuMMill, f->mnuTData, f->mnuTOffset, f->mnuTEdit, f->mnuTimport,
                           f->mnuOSettings})
            a->setEnabled(true);
        for (int i = 0; i < gintMRUCount && i < static_cast<int>(f->mnuMMru.size()); ++i)
            f->mnuMMru[static_cast<size_t>(i)]->setVisible(true);
        f->picMenu->setEnabled(true);
        for (MenuEntry *e : f->picMenu->txtMenu)
            e->setForeColor(kMenuBlue);
        f->picMenu->show();
        f->stbPanel(QStringLiteral("status"))->clear();
        f->stbPanel(QStringLiteral("timer"))->clear();
        f->stbShowPanels();
        break;
    case 2:
        f->picKeyboard->show();
        f->mnuMStart->setEnabled(f->picKeyboard->picStartText->isVisibleTo(f->picKeyboard) && !gblnDoorOpen);
        f->picHeader->hide();
        break;
    case 3:
        ShowSetMill();
        f->picSetMill->show();
        break;
    case 5:
        ToolDataShow(*f->picTools->grdTools);
        f->picTools->show();
        break;
    case 6:
        f->tlbButton(QStringLiteral("Back"))->setEnabled(false);
        f->picHeader->hide();
        f->picMachining->txtMillHeader->setPlainText(gstrHeader);
        f->picMachining->rtbMillCode->clear();
        f->picMachining->show();
        break;
    case 7:
        f->picHeader->hide();
        ShowOffset();
        gintOffsetTool = 0;
        SetOffStep(0);
        f->picOffset->show();
        break;
    case 8:
        f->picMethod->show();
        f->picMethod->cmdMethodNorm->setFocus();
        break;
    default:
        break;   // 4 has no screen; any other value leaves only the menu bar's Exit
    }
} catch (...) {
    LogError("F1Mill", "SetMode");
}

void ShowMenu(const QString &strFile) try {
    FrmMain *f = frmMain();
    HideCaret();
    f->picHeader->hide();
    f->CentrePanel(f->picMenu);
    f->setWindowTitle(MainCaption(strFile));
    for (int i = 1; i <= gintToolCount; ++i)
        gtypTools(i).blnHide = false;
    SetMode(1);
} catch (...) {
    LogError("F1Mill", "ShowMenu");
}

void ShowMachining() try {
    FrmMain *f = frmMain();
    f->CentrePanel(f->picMachining);
    f->picMachining->pgbMillProg->setValue(0);
    f->picMachining->pgbMillProg->setVisible(true);
    SetMode(6);
} catch (...) {
    LogError("F1Mill", "ShowMachining");
}

// The tool page brings itself up: centred, Edit and Delete off, the grid built, mode 5,
// the current cell at the heading's first cell. Its Done saves and calls SetMode(1).
void FrmMain::ShowToolData() { picTools->ShowToolData(); }

void FrmMain::MenuAction(const QString &strAction) try {
    gblnCancel = false;
    gblnSetupWizard = false;
    auto noTools = [this] {
        StdMsgBox(QStringLiteral("Please define at least one Tool"), vbCritical, QStringLiteral("Tool Data"));
        ShowToolData();
    };
    auto lockMenus = [this] {
        tlbButton(QStringLiteral("Settings"))->setEnabled(false);
        mnuOSettings->setEnabled(false);
        tlbButton(QStringLiteral("Edit"))->setEnabled(false);
        mnuTEdit->setEnabled(false);
        mnuTimport->setEnabled(false);
    };
    if (strAction == QLatin1String("Keyboard")) {
        ShowKeyboard(true);
    } else if (strAction == QLatin1String("Mill")) {
        lockMenus();
        if (gintToolCount != 0) {
            gblnSetupWizard = true;
            picKeyboard->cmdDoneTag = QStringLiteral("Done");
            SetMode(3);
            SetSetStep(0);
        } else {
            noTools();
        }
    } else if (strAction == QLatin1String("ToolData")) {
        lockMenus();
        ShowToolData();
    } else if (strAction == QLatin1String("Offsets")) {
        if (gintToolCount == 0)
            noTools();
        else
            SetMode(7);
    } else if (strAction == QLatin1String("Billet")) {
        ShowBillet(QStringLiteral("Menu"));
    } else if (strAction == QLatin1String("Edit")) {
        tlbButton(QStringLiteral("Back"))->setEnabled(false);
        lockMenus();
        picMenu->setEnabled(false);
        ShowCodeEditor();
    } else if (strAction == QLatin1String("Exit")) {
        Shutdown();
    }
} catch (...) {
    LogError("frmMain", "MenuAction");
}

void FrmMain::tlbMain_ButtonClick(const QString &strKey)
{
    // A toolbar fault must not stop the program: each step runs on past a fault.
    try {
        if (strKey == QLatin1String("Back")) {
            switch (gintMode) {
            case 2: gblnKeyLoop = false; break;
            case 3: case 5: case 7: SetMode(1); break;
            default: break;
            }
        } else if (strKey == QLatin1String("Settings")) {
            mnuOSettings_Click();
        } else if (strKey == QLatin1String("Edit")) {
            MenuAction(QStringLiteral("Edit"));
        }
        // "Open" is accepted and does nothing: the toolbar has no such button.
    } catch (const TrapEnded &) {
        throw;   // a test's trap recorder: the report is made
    } catch (...) {
    }
}

void FrmMain::txtMenu_Click(int intIndex) try {
    MenuAction(picMenu->txtMenu.at(static_cast<size_t>(intIndex))->tag);
} catch (...) {
    LogError("frmMain", "txtMenu_Click");
}

void FrmMain::txtMenu_GotFocus(int intIndex) try {
    picMenu->txtMenu.at(static_cast<size_t>(intIndex))->setForeColor(kMenuRed);
    HideCaret();
} catch (...) {
    LogError("frmMain", "txtMenu_GotFocus");
}

void FrmMain::txtMenu_LostFocus(int intIndex) try {
    picMenu->txtMenu.at(static_cast<size_t>(intIndex))->setForeColor(kMenuBlue);
    ShowCaret();
} catch (...) {
    LogError("frmMain", "txtMenu_LostFocus");
}

void FrmMain::txtMenu_MouseMove(int intIndex) try {
    for (MenuEntry *e : picMenu->txtMenu)
        e->setForeColor(e->index() == intIndex ? kMenuRed : kMenuBlue);
} catch (...) {
    LogError("frmMain", "txtMenu_MouseMove");
}

void FrmMain::picMenu_MouseMove() try {
    for (MenuEntry *e : picMenu->txtMenu)
        e->setForeColor(kMenuBlue);
} catch (...) {
    LogError("frmMain", "picMenu_MouseMove");
}

void FrmMain::tmrShowMenu_Timer() try {
    tmrShowMenu->stop();
    ShowMenu(tmrShowMenuTag);
} catch (...) {
    LogError("frmMain", "tmrShowMenu_Timer");
}

void FrmMain::mnuOSettings_Click() try {
    ShowSettingsDialog();
} catch (...) {
    LogError("frmMain", "mnuOSettings_Click");
}

void FrmMain::mnuTCalc_Click() { StartCalculator(); }

void FrmMain::mnuHAbout_Click() try {
    FrmAbout *about = frmAbout();
    ShowModal(about, this);
    Unload(about);
} catch (...) {
    LogError("frmMain", "mnuHAbout_Click");
}
