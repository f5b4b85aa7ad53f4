// frmMill, the in-run prompts. See frm_mill.h.
#include "guide/frm_mill.h"
#include "guide/rich_page.h"

#include "core/frm_main.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/vb.h"
#include "link/spindle.h"
#include "link/stream.h"
#include "nc/stepcode.h"
#include "platform/keystate.h"
#include "tools/tooltable.h"

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>
#include <QTextEdit>
#include <QTimer>

namespace {

FrmMill *g_frmMill = nullptr;

using namespace page;

const QString kClosing = QStringLiteral("When the task is completed, click DONE.");

} // namespace

FrmMill *frmMill() { return FormInstance(g_frmMill); }
bool frmMillLoaded() { return g_frmMill != nullptr; }

QString strMillStepTitle(int16_t intStep)
{
    switch (intStep) {
    case 0: return QStringLiteral("Prepare to Change Tool");
    case 1: return gblnToolInMachine ? QStringLiteral("Change Tool") : QStringLiteral("Insert Tool");
    case 2: return QStringLiteral("Start the Spindle");
    case 3: return QStringLiteral("Close Door");
    case 4: return QStringLiteral("Set Spindle Speed");
    case 5: return QStringLiteral("Step 11: End of NC code");
    case 6: return QStringLiteral("Step 12: Machining is complete");
    default: return QString();
    }
}

QString strMillStepPage(int16_t intStep)
{
    QString body;
    switch (intStep) {
    case 0:
        body = Numbered(Coloured(kRed, QStringLiteral("1) Safety: set the spindle switch to position 0;"))) +
               Numbered(Esc(QStringLiteral("2) Open the machine door.")));
        break;
    case 1: {
        const ToolData &tool = gtypTools(intToolGetId(gintNextTool));
        const QString line = (gblnToolInMachine ? QStringLiteral("1) Change to") : QStringLiteral("1) Insert")) +
                             QStringLiteral(" tool Number ") + QString::number(tool.intNumber) + QStringLiteral(" (") +
                             tool.strType + u' ' + vb::FormatGeneral(tool.sngDiameter) + QStringLiteral(" mm)");
        body = Numbered(Esc(line)) + Numbered(Esc(QStringLiteral("2) Close the machine door.")));
        break;
    }
    case 2:
        body = Numbered(Esc(QStringLiteral("1) Set the spindle switch to the CNC position."))) +
               Numbered(Esc(QStringLiteral("2) Set the speed control to minimum.")));
        break;
    case 3:
        body = Para(Esc(QStringLiteral("Make sure the door is closed"))) +
               Para(Esc(QStringLiteral("(The spindle will not rotate when the door is open).")));
        break;
    case 4:
        body = Para(Esc(QStringLiteral("Set the spindle speed to ") + QString::number(std::lround(gsngSpindleSpeed))));
        break;
    case 5:
        body = Para(Esc(QStringLiteral("While this window is displayed:"))) +
               Numbered(Coloured(kRed, QStringLiteral("1) safety: set the spindle switch to off, position 0;"))) +
               Numbered(Esc(QStringLiteral("2) open the machine door;"))) +
               Numbered(Coloured(kRed, QStringLiteral("3) safety: remove the cutter from the milling head.")));
        break;
    case 6:
        body = Para(Esc(QStringLiteral("While this window is displayed:"))) +
               Numbered(Esc(QStringLiteral("1) remove the finished work ")) +
                        Coloured(kRed, QStringLiteral("(safety: only when the cutter has been removed);"))) +
               Numbered(Esc(QStringLiteral("2) clean the machine;")));
        break;
    default:
        break;
    }
    return QStringLiteral("<html><body style=\"font-size:10pt\">") + body + Para(Coloured(kBlue, kClosing)) +
           QStringLiteral("</body></html>");
}

FrmMill::FrmMill()
{
    setObjectName(QStringLiteral("frmMill"));
    setAccessibleDescription(QStringLiteral("Machining prompt"));
    setWindowTitle(QStringLiteral("Brantok"));
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowStaysOnTopHint);
    setFixedSize(380, 262);

    fraStep = new QGroupBox(this);
    fraStep->setObjectName(QStringLiteral("fraStep"));
    fraStep->setAccessibleName(QStringLiteral("Step"));
    lblStepTitle = new QLabel(fraStep);
    lblStepTitle->setObjectName(QStringLiteral("lblStepTitle"));
    lblStepTitle->setAccessibleDescription(QStringLiteral("Step title"));
    QFont f = lblStepTitle->font();
    f.setPointSize(12);
    f.setBold(true);
    lblStepTitle->setFont(f);
    rtbMill = new QTextEdit(fraStep);
    rtbMill->setObjectName(QStringLiteral("rtbMill"));
    rtbMill->setAccessibleName(QStringLiteral("What to do"));
    rtbMill->setReadOnly(true);
    rtbMill->setFocusPolicy(Qt::NoFocus);
    rtbMill->setFrameShape(QFrame::NoFrame);
    const char *captions[] = {"Cancel", "&Done"};
    for (int i = 0; i < 2; ++i) {
        auto *b = new QPushButton(QString::fromLatin1(captions[i]), this);
        b->setObjectName(QStringLiteral("cmdNav"));
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, [this, i] { cmdNav_Click(i); });
        cmdNav[static_cast<size_t>(i)] = b;
    }
    tmrSpindle = new QTimer(this);
    tmrSpindle->setSingleShot(true);
    tmrSpindle->setInterval(100);
    connect(tmrSpindle, &QTimer::timeout, this, [this] { tmrSpindle_Timer(); });
}

FrmMill::~FrmMill()
{
    if (g_frmMill == this)
        g_frmMill = nullptr;
}

void FrmMill::Place()
{
    // Lower right of the main window: 16 pixels in from its right edge, 16 above its
    // status bar, so the machining screen's code and bar stay in sight. Placed again once
    // shown, when the window manager's frame is known.
    if (!frmMainLoaded())
        return;
    FrmMain *main = frmMain();
    const QRect frame = main->frameGeometry();
    QStatusBar *bar = main->stbStatus;
    const int bottom = bar->isVisible() ? bar->mapToGlobal(QPoint(0, 0)).y() : main->geometry().bottom();
    // A window's move() places its frame.
    const QRect mine = frameGeometry();
    move(frame.right() - 16 - mine.width() + 1, bottom - 16 - mine.height());
}

void FrmMill::Form_Load() try {
    if (frmMainLoaded())
        setParent(frmMain(), windowFlags());
    Place();
    fraStep->setGeometry(8, 6, width() - 16, height() - 56);
    lblStepTitle->setGeometry(12, 10, fraStep->width() - 24, 26);
    rtbMill->setGeometry(8, 40, fraStep->width() - 16, fraStep->height() - 48);
    cmdNav[0]->setGeometry(width() - 2 * 96 - 16, height() - 42, 90, 32);
    cmdNav[1]->setGeometry(width() - 96 - 8, height() - 42, 90, 32);
} catch (...) {
    LogError("frmMill", "Form_Load");
}

void FrmMill::showEvent(QShowEvent *e)
{
    QDialog::showEvent(e);
    Place();
    Form_Activate();
}

void FrmMill::Form_Activate() try {
    if (!Tag.isEmpty()) {
        const int16_t step = vb::CInt(vb::Val(Tag));
        Tag.clear();
        SetStep(step);
    }
} catch (...) {
    LogError("frmMill", "Form_Activate");
}

void FrmMill::SetStep(int16_t intNewStep) try {
    cmdNav[0]->setEnabled(true);
    // Title and text first: step 1 says "Insert" until a tool has been in the machine.
    lblStepTitle->setText(strMillStepTitle(intNewStep));
    rtbMill->setHtml(strMillStepPage(intNewStep));
    switch (intNewStep) {
    case 0:
        gblnToolInserted = false;
        break;
    case 1:
        gintCurrentTool = gintNextTool;
        gblnToolInMachine = true;
        break;
    case 2:
        gblnToolInserted = true;
        break;
    case 5:
        gblnToolInserted = false;
        gblnToolInMachine = false;
        break;
    case 6:
        // Machining is over: nothing to cancel. The machine's play is as the end of the
        // program left it: every axis moved back through its play.
        cmdNav[0]->setEnabled(false);
        gintLastDirX = gintLastDirY = gintLastDirZ = -1;
        gintPlayX = gintBacklashX;
        gintPlayY = gintBacklashY;
        gintPlayZ = gintBacklashZ;
        break;
    default:
        break;
    }
    intStep = intNewStep;
    ++intStepsShown;
    cmdNav[1]->setFocus();
} catch (...) {
    LogError("frmMill", "SetStep");
}

void FrmMill::cmdNav_Click(int intIndex) try {
    if (m_busy)
        return;
    m_busy = true;
    // A held Enter or Space must not press the next step's button as well.
    WaitEnterSpaceUp();
    if (intIndex == 0) {
        Tag = QStringLiteral("Cancel");
        gblnMillDone = false;
        hide();
    } else {
        switch (intStep) {
        case 2:
        case 3:
            tmrSpindle->start();
            break;
        case 4:
            hide();   // the run goes on
            break;
        case 6:
            KillWorkFile();
            gblnMillDone = true;
            hide();
            break;
        default:
            SetStep(static_cast<int16_t>(intStep + 1));
            break;
        }
    }
    m_busy = false;
} catch (...) {
    LogError("frmMill", "cmdNav_Click");
}

void FrmMill::tmrSpindle_Timer() try {
    tmrSpindle->stop();
    SpindleStart();
    // The prompt stays at "Close Door" until the spindle really runs.
    SetStep(gblnSpindleOn ? 4 : 3);
} catch (...) {
    LogError("frmMill", "tmrSpindle_Timer");
}

QString ShowMillPrompt(const QString &strStartTag)
{
    FrmMill *form = frmMill();
    form->Tag = strStartTag;
    ShowModal(form, nullptr);
    const QString strTag = form->Tag;
    Unload(form);
    return strTag;
}
