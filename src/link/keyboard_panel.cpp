// The manual screen: its controls, ShowKeyboard, Done, and the way back after the loop.
#include "link/keyboard_panel.h"
#include "core/widget_names.h"

#include "core/artwork.h"
#include "core/frm_main.h"
#include "core/frm_splash.h"
#include "core/logger.h"
#include "guide/setmill.h"
#include "core/state.h"
#include "guide/offset_wizard.h"
#include "link/keycontrol.h"
#include "link/link_screen.h"
#include "link/spindle.h"
#include "platform/keystate.h"

#include <QAction>
#include <QGroupBox>
#include <QPointer>
#include <QPushButton>
#include <QTextEdit>

namespace {

QPointer<PicKeyboard> g_panel;   // the panel whose hooks are installed

using ui::named;
using ui::described;


QLabel *text(QWidget *parent, const char *name, const QString &caption, const QRect &r, int px = 0, bool bold = false)
{
    auto *l = described(new QLabel(caption, parent), name);
    if (px > 0 || bold) {
        QFont f = l->font();
        if (px > 0)
            f.setPixelSize(px);
        f.setBold(bold);
        l->setFont(f);
    }
    l->setGeometry(r);
    return l;
}

// Axis letters and lamp names, by lamp 1..6 at index 0..5.
const char *const kLampNames[6] = {"X plus", "X minus", "Y plus", "Y minus", "Z plus", "Z minus"};

} // namespace

PicKeyboard::PicKeyboard(QWidget *parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("picKeyboard"));
    setAccessibleName(QStringLiteral("Manual control"));
    setFixedSize(720, 460);
    setStyleSheet(QStringLiteral("#picKeyboard { background: #ffffff; border: 1px solid #d5dbe1; border-radius: 10px; }"
                                 "#picPosition, #picArrows { background: #f6f8fa; border: 1px solid #d5dbe1;"
                                 " border-radius: 6px; }"));
    hide();

    // Free control has no task: a heading and a reminder stand where the task frame goes.
    auto *lblFree = text(this, "lblFree", QStringLiteral("Manual Control"), QRect(24, 20, 320, 30), 20, true);
    lblFree->setStyleSheet(QStringLiteral("color: #1f3a5f;"));
    auto *lblFreeHint = text(this, "lblFreeHint",
                             QStringLiteral("Move the tool with the arrow keys (X and Y) and with Page Up and "
                                            "Page Down (Z).\n\nHold a blue key of the keypad as well for a "
                                            "speed; the orange keys give rapid.\n\nClick Done or press Esc when you have finished."),
                             QRect(24, 60, 320, 190), 14);
    lblFreeHint->setWordWrap(true);
    lblFreeHint->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lblFreeHint->setAccessibleDescription(QStringLiteral("How to move the tool"));

    // The task of a wizard step, and the cutter picture of the origin tasks. It covers the
    // heading above while it is shown.
    fraTask = described(new QGroupBox(QStringLiteral("Task"), this), "fraTask");
    fraTask->setGeometry(16, 12, 340, 250);
    fraTask->setAutoFillBackground(true);
    QPalette white = fraTask->palette();
    white.setColor(QPalette::Window, Qt::white);
    fraTask->setPalette(white);
    fraTask->raise();
    fraTask->hide();   // shown by a wizard for its task; free control has none
    rtbTask = named(new QTextEdit(fraTask), "rtbTask", QStringLiteral("Task"));
    rtbTask->setReadOnly(true);
    rtbTask->setFocusPolicy(Qt::NoFocus);
    rtbTask->setGeometry(10, 26, 320, 134);
    imgCutter = named(new QLabel(fraTask), "imgCutter", QStringLiteral("Cutter and billet"));
    imgCutter->setGeometry(110, 164, 120, 80);
    imgCutter->hide();

    // The pad.
    imgKeybd = named(new QLabel(this), "imgKeybd", QStringLiteral("The keys of the numeric keypad"));
    imgKeybd->setGeometry(16, 272, 340, 176);
    imgKeybd->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    // The position, with a reset button per axis and one for all.
    picPosition = named(new QFrame(this), "picPosition", QStringLiteral("Tool position"));
    picPosition->setFocusPolicy(Qt::StrongFocus);
    picPosition->setGeometry(372, 12, 332, 162);
    const char *axes[] = {"X", "Y", "Z", "All"};
    for (int i = 0; i < 4; ++i) {
        const QString axis = QString::fromLatin1(axes[i]);
        const int y = 8 + i * 38;
        if (i < 3) {
            text(picPosition, "lblAxis", axis, QRect(14, y, 24, 32), 20, true);
            auto *pos = text(picPosition, "lblPos", QStringLiteral("0.00"), QRect(40, y, 140, 32), 22, true);
            pos->setAccessibleDescription(QStringLiteral("Position ") + axis + QStringLiteral(" in mm"));
            pos->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            pos->setStyleSheet(QStringLiteral("color: #1f3a5f;"));
            lblPos[static_cast<size_t>(i)] = pos;
            text(picPosition, "lblMm", QStringLiteral("mm"), QRect(186, y, 34, 32));
        }
        auto *b = described(new QPushButton(QStringLiteral("Reset ") + axis, picPosition), "cmdReset",
                            i < 3 ? QString() : QStringLiteral("Reset all axes"));
        b->setGeometry(i < 3 ? 228 : 228, y + 2, 92, 28);
        b->setFocusPolicy(Qt::NoFocus);   // the arrow keys must stay with the position
        cmdReset[static_cast<size_t>(i)] = b;
        connect(b, &QPushButton::clicked, this, [i] { DistanceReset(static_cast<int16_t>(i)); });
    }

    // The direction lamps: X and Y as a cross, Z as a column; the speed beside each.
    picArrows = named(new QFrame(this), "picArrows", QStringLiteral("Direction and speed"));
    picArrows->setGeometry(372, 184, 332, 156);
    text(picArrows, "lblArrowsTitle", QStringLiteral("Moving (speed in mm/min)"), QRect(10, 4, 220, 18), 0, true);
    const QRect lamps[6] = {{130, 72, 40, 40}, {34, 72, 40, 40}, {82, 26, 40, 40},
                            {82, 112, 40, 40}, {250, 30, 40, 40}, {250, 104, 40, 40}};
    const QRect speeds[6] = {{174, 82, 50, 20}, {0, 82, 32, 20}, {126, 36, 50, 20},
                             {126, 122, 50, 20}, {294, 40, 36, 20}, {294, 114, 36, 20}};
    for (int i = 0; i < 6; ++i) {
        auto *dim = named(new QLabel(picArrows), "imgArrowBase", QString::fromLatin1(kLampNames[i]));
        dim->setPixmap(ArrowLamp(i + 1, false));
        dim->setGeometry(lamps[i]);
        auto *lamp = named(new QLabel(picArrows), "imgArrows",
                           QStringLiteral("Moving ") + QString::fromLatin1(kLampNames[i]));
        lamp->setPixmap(ArrowLamp(i + 1, true));
        lamp->setGeometry(lamps[i]);
        lamp->hide();
        imgArrows[static_cast<size_t>(i)] = lamp;
        auto *speed = text(picArrows, "lblSpeed", QString(), speeds[i], 13, true);
        speed->setAccessibleDescription(QStringLiteral("Speed ") + QString::fromLatin1(kLampNames[i]) +
                                        QStringLiteral(" in mm/min"));
        speed->setAlignment(i == 1 ? (Qt::AlignRight | Qt::AlignVCenter) : (Qt::AlignLeft | Qt::AlignVCenter));
        speed->setStyleSheet(QStringLiteral("color: #16a34a;"));
        speed->hide();
        lblSpeed[static_cast<size_t>(i)] = speed;
    }
    text(picArrows, "lblZ", QStringLiteral("Z"), QRect(262, 76, 20, 20), 14, true)->setAlignment(Qt::AlignCenter);
    text(picArrows, "lblXY", QStringLiteral("X Y"), QRect(82, 82, 40, 20), 12, true)->setAlignment(Qt::AlignCenter);

    // The spindle.
    picSpindleStart = named(new PictureButton(this), "picSpindleStart", QStringLiteral("Start the spindle"));
    picSpindleStart->setGeometry(372, 352, 52, 52);
    picSpindleStop = named(new PictureButton(this), "picSpindleStop", QStringLiteral("Stop the spindle"));
    picSpindleStop->setGeometry(430, 352, 52, 52);
    picStartText = text(this, "picStartText", QStringLiteral("Spindle"), QRect(490, 352, 110, 52), 14, true);
    picStopped = named(new QFrame(this), "picStopped", QStringLiteral("Warning"));
    picStopped->setGeometry(372, 408, 220, 46);
    picStopped->setStyleSheet(QStringLiteral("#picStopped { background: #fff4e5; border: 1px solid #e0a040; }"));
    lblStopped = described(new QLabel(picStopped), "lblStopped", QStringLiteral("Warning"));
    lblStopped->setWordWrap(true);
    lblStopped->setGeometry(6, 2, 208, 42);
    QFont small = lblStopped->font();
    small.setPixelSize(11);
    lblStopped->setFont(small);
    picStopped->hide();
    connect(picSpindleStart, &PictureButton::clicked, this, [] { picSpindleStart_Click(); });
    connect(picSpindleStop, &PictureButton::clicked, this, [] { picSpindleStop_Click(); });

    cmdDone = described(new QPushButton(QStringLiteral("&Done"), this), "cmdDone");
    cmdDone->setGeometry(604, 412, 100, 36);
    cmdDone->setFocusPolicy(Qt::NoFocus);   // Enter and Space are not for the loop's screen
    connect(cmdDone, &QPushButton::clicked, this, [this] { cmdDone_Click(); });

    // The loop and the link speak to this panel.
    g_panel = this;
    KeyboardHooks &k = keyboardHooks();
    k.lampsChanged = [] { if (g_panel) g_panel->ShowLamps(); };
    k.positionsChanged = [] { if (g_panel) g_panel->ShowPositions(); };
    k.focusPosition = [] {
        if (g_panel && !g_panel->picPosition->hasFocus())
            g_panel->picPosition->setFocus();
    };
    k.loopEnded = [] { KeyboardLoopEnded(); };
    linkHooks().spindleControlsChanged = [] { if (g_panel) g_panel->ShowSpindleControls(); };
}

PicKeyboard::~PicKeyboard()
{
    if (g_panel == this) {
        keyboardHooks() = KeyboardHooks();
        linkHooks().spindleControlsChanged = nullptr;
    }
}

void PicKeyboard::ShowLamps()
{
    for (size_t i = 0; i < 6; ++i) {
        imgArrows[i]->setVisible(gKeyboard.imgArrows[i]);
        lblSpeed[i]->setText(gKeyboard.lblSpeed);
        lblSpeed[i]->setVisible(gKeyboard.lblSpeedVisible[i]);
    }
}

void PicKeyboard::ShowPositions()
{
    for (size_t i = 0; i < 3; ++i)
        lblPos[i]->setText(gKeyboard.lblPos[i]);
    if (QWidget *w = window())
        w->repaint();
}

void PicKeyboard::ShowSpindleControls()
{
    const SpindleControls &c = gSpindleControls;
    picSpindleStart->setPixmap(SpindleImage(c.picSpindleStartImage));
    picSpindleStop->setPixmap(SpindleImage(c.picSpindleStopImage));
    picSpindleStart->setEnabled(c.picSpindleStartEnabled);
    picSpindleStop->setEnabled(c.picSpindleStopEnabled);
    picSpindleStart->setToolTip(c.picSpindleStartToolTip);
    picSpindleStop->setToolTip(c.picSpindleStopToolTip);
    picStartText->setToolTip(c.picStartTextToolTip);
    lblStopped->setText(c.lblStopped);
    picStopped->setVisible(c.picStoppedVisible);
    if (frmMainLoaded()) {
        frmMain()->mnuMStart->setEnabled(c.mnuMStartEnabled);
        frmMain()->mnuMStop->setEnabled(c.mnuMStopEnabled);
    }
}

void PicKeyboard::cmdDone_Click() try {
    static bool blnBusy = false;   // the wait pumps: a second click must not come in here
    if (blnBusy)
        return;
    blnBusy = true;
    WaitEnterSpaceUp();
    cmdDoneTag = QStringLiteral("Done");
    gblnKeyLoop = false;
    blnBusy = false;
} catch (...) {
    LogError("frmMain", "cmdDone_Click");
}

void ShowKeyboard(bool blnSpindle) try {
    // A spindle request left from another screen (the Mill menu stays usable while machining)
    // must not start or stop the spindle here unasked: only a click on this screen counts.
    gblnSpindleStartReq = false;
    gblnSpindleStopReq = false;
    FrmMain *f = frmMain();
    PicKeyboard *k = f->picKeyboard;
    k->picStartText->setVisible(blnSpindle);
    k->picSpindleStart->setVisible(blnSpindle);
    k->picSpindleStop->setVisible(blnSpindle);
    if (blnSpindle) {
        SpindleStop();
    } else {
        f->mnuMStart->setEnabled(false);
        f->mnuMStop->setEnabled(false);
    }
    k->imgKeybd->setPixmap(ilsKeypad(gblnRapidUseDot ? QStringLiteral("NumpadDot") : QStringLiteral("Numpad")));
    DistanceSet(0, glngPosX);
    DistanceSet(1, glngPosY);
    DistanceSet(2, glngPosZ);
    SetMode(2);
    k->picPosition->setFocus();
    frmSplash()->tmrKeyControl->start();
} catch (...) {
    LogError("frmMain", "ShowKeyboard");
}

void KeyboardLoopEnded() try {
    PicKeyboard *k = frmMain()->picKeyboard;
    if (!k->fraTask->isHidden()) {
        k->fraTask->hide();
        if (gblnSetupWizard)
            ReturnToSetMill(-1);
        else
            ReturnToOffset();
    } else {
        SetMode(3);
        SetSetStep(10);
    }
} catch (...) {
    LogError("modKeyboard", "KeyControl");
}
