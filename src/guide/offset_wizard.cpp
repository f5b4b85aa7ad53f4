// The tool offset wizard: its steps, pages, tasks and buttons, and the way back from a task
// on the manual screen. Everything runs on the one thread: the navigation handlers run in a
// click (and pump while they wait for Enter and Space to come up), the tasks run later in
// KeyControl on frmSplash's tmrKeyControl, and ReturnToOffset runs at the end of KeyControl.
#include "guide/offset_wizard.h"

#include "core/frm_main.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/store.h"
#include "core/vb.h"
#include "guide/offset_panel.h"
#include "guide/rich_page.h"
#include "link/keyboard_panel.h"
#include "link/keycontrol.h"
#include "platform/keystate.h"
#include "tools/toolgrid.h"
#include "tools/tooltable.h"

#include <QAction>
#include <QApplication>
#include <QAbstractTextDocumentLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextEdit>

using namespace vb;

namespace {

using page::kBlue;

// --- The pieces of a page. Every page and task has the same prologue (10 points, the
// colour table); blanks are kept as they are written, so the texts read word for word.
QString Doc(const QString &body)
{
    return QStringLiteral("<html><body style=\"font-size:10pt; white-space:pre-wrap\">") + body +
           QStringLiteral("</body></html>");
}
QString Line(const QString &text) { return page::Para(page::Esc(text)); }
QString Item(const QString &text) { return page::Numbered(page::Esc(text)); }
QString Blue(const QString &text) { return page::Para(page::Coloured(kBlue, text)); }
// An empty paragraph that keeps its line (the notice of the first page stands on three).
QString Empty() { return QStringLiteral("<p style=\"-qt-paragraph-type:empty\"><br /></p>"); }

const QString kDoneLine = QStringLiteral(" When the task is completed, click DONE.");
const QString kRaiseLine = QStringLiteral(" Click NEXT when you are ready to raise the milling head.");

// "Tool 12 (End mill 6.000 mm)": the tool being measured.
QString strToolWords()
{
    const ToolData &tool = gtypTools(gintOffsetTool);
    return QStringLiteral("Tool ") + QString::number(tool.intNumber) + QStringLiteral(" (") + tool.strType + u' ' +
           Format000(tool.sngDiameter) + QStringLiteral(" mm)");
}

// The picture that stands beside a step's task on the manual screen (its key), and what it
// shows, for those who can't see it.
struct TaskPicture {
    const char *key;
    const char *description;
};
TaskPicture TaskPictureOf(int16_t intStep)
{
    switch (intStep) {
    case 1: return {"Skim", "A wide cutter skims the top of the billet"};
    case 2: return {"Paper", "The rim of the empty spindle nips the paper on the billet"};
    case 5: return {"OffsetTop", "The end of the tool nips the paper on the billet"};
    default: return {nullptr, nullptr};
    }
}

PicOffset *Panel() { return frmMain()->picOffset; }

// Step 3 lists every tool of the table, the previous choice selected.
void ShowToolChoice(PicOffset *o)
{
    ToolGrid &grid = *o->grdOffTools;
    // Tools left out for a program by the set-up wizard (Get Offsets) are listed here too.
    for (int16_t i = 1; i <= gintToolCount; ++i)
        gtypTools(i).blnHide = false;
    ToolGridSetup(grid);
    ToolDataShow(grid);
    o->PlaceGrid();
    if (gintOffsetTool < 1) {
        grid.SetCell(0, 0);
    } else {
        for (int r = 1; r <= gintToolRows; ++r)
            if (CInt(Val(grid.TextMatrix(r, 4))) == gintOffsetTool)
                grid.SelectRow(r);
    }
    grid.table()->setFocusPolicy(Qt::StrongFocus);
}

// Step 4 takes the tool of the selected row. A click on the empty rows under the list
// (cursor back to the top) leaves the tool chosen before: the page never names no tool.
void TakeChosenTool(PicOffset *o)
{
    ToolGrid &grid = *o->grdOffTools;
    if (grid.Row() >= 1 && grid.Row() <= gintToolRows)
        gintOffsetTool = CInt(Val(grid.TextMatrix(grid.Row(), 4)));
    for (int r = 1; r <= gintToolRows; ++r)
        if (CInt(Val(grid.TextMatrix(r, 4))) == gintOffsetTool)
            grid.SelectRow(r);
    grid.table()->setFocusPolicy(Qt::NoFocus);
    o->cmdOffNav[3]->setFocus();
}

// The notice over the first page's three empty paragraphs (the page is in place), centred
// in the frame.
void ShowNoRoom(PicOffset *o)
{
    QTextDocument *doc = o->rtbOffset->document();
    doc->setTextWidth(o->rtbOffset->viewport()->width());
    const QRectF first = doc->documentLayout()->blockBoundingRect(doc->findBlockByNumber(0));
    const QRectF fourth = doc->documentLayout()->blockBoundingRect(doc->findBlockByNumber(3));
    const int top = o->rtbOffset->y() + o->rtbOffset->frameWidth() + static_cast<int>(first.top());
    const int h = static_cast<int>(fourth.top() - first.top()) - 2;
    const int w = o->fraOffStep->width() * 4 / 5;
    o->txtNoRoom->setGeometry((o->fraOffStep->width() - w) / 2, top, w, h);
    o->txtNoRoom->raise();
    o->txtNoRoom->show();
}

// Enter and Esc reach the panel (its default and cancel buttons) unless one of its own
// controls has the focus; the manual screen's focus is gone with it.
void TakeFocus(PicOffset *o)
{
    QWidget *w = QApplication::focusWidget();
    if (!w || !o->isAncestorOf(w) || !w->isEnabled())
        o->setFocus();
}

} // namespace

QString strOffStepTitle(int16_t intStep)
{
    switch (intStep) {
    case 0: return QStringLiteral("Step 1: Prepare a Datum Surface");
    case 1: return QStringLiteral("Step 2: Set the Measurement Datum");
    case 2: return QStringLiteral("Step 3: Raise the Milling Head");
    case 3: return QStringLiteral("Step 4: Select Tool");
    case 4: return QStringLiteral("Step 5: Measure the offset");
    case 5: return QStringLiteral("Step 6: Raise the Tool");
    case 6: return QStringLiteral("Step 7: Remove the Tool");
    default: return QString();
    }
}

QString strOffStepPage(int16_t intStep)
{
    QString body;
    switch (intStep) {
    case 0:
        body = Empty() + Empty() + Empty() + Line(QStringLiteral("While this window is displayed:")) +
               Item(QStringLiteral("1) hold a 50 x 50 billet of material in the machine vice;")) +
               Item(QStringLiteral("2) put the 40mm shell (or other large diameter) cutter in the milling head;")) +
               Item(QStringLiteral("3) close the machine door;")) +
               Item(QStringLiteral("4) turn the spindle motor switch to CNC;")) +
               Blue(QStringLiteral(" Click NEXT when you are ready to skim the top of the billet flat."));
        break;
    case 1:
        body = Line(QStringLiteral("While this window is displayed:")) +
               Item(QStringLiteral("1) switch off the spindle: switch at position 0;")) +
               Item(QStringLiteral("2) remove the tool from the milling head;")) +
               Item(QStringLiteral("3) place a strip of thin paper about 40mm wide on the billet.")) +
               Line(QStringLiteral("In a moment you will lower the bright steel rim of the milling head until it just "
                                   "nips the paper against the billet.")) +
               Blue(QStringLiteral(" Click NEXT when you are ready to lower the milling head."));
        break;
    case 2:
        body = Line(QStringLiteral("The Measurement Datum has been set.")) + Blue(kRaiseLine);
        break;
    case 3:
        body = Line(QStringLiteral("In the table, click on the tool whose offset is to be measured.")) +
               Blue(QStringLiteral(" Click NEXT when you are ready to measure the offset."));
        break;
    case 4:
        body = Line(QStringLiteral("While this window is displayed:")) +
               Item(QStringLiteral("1) put ") + strToolWords() + QStringLiteral(" ") +
                    QStringLiteral(" in the milling head;")) +
               Item(QStringLiteral("2) place a strip (about 40mm wide) of thin paper on the billet;")) +
               Blue(QStringLiteral(" Click NEXT when you are ready to lower the milling head."));
        break;
    case 5:
        // The offset as it stood before this measurement; the return from the task replaces it.
        body = Line(QStringLiteral("The offset for ") + strToolWords() + QStringLiteral(" is ") +
                    Format000(gtypTools(gintOffsetTool).sngOffset) + QStringLiteral(" mm.")) +
               Blue(kRaiseLine);
        break;
    case 6:
        body = Line(QStringLiteral("Remove the tool from the milling head;")) +
               Blue(QStringLiteral(" If you wish to measure the offset of another tool click MORE.")) +
               Blue(QStringLiteral(" To return to the Main Menu click FINISH."));
        break;
    default:
        break;
    }
    return Doc(body);
}

QString strOffStepTask(int16_t intStep)
{
    QString body;
    switch (intStep) {
    case 1:
        body = Item(QStringLiteral("1) Click the green button to start the spindle.")) +
               Item(QStringLiteral("2) Set spindle speed appropriate for the material.")) +
               Item(QStringLiteral("3) Use manual control to skim top of billet.")) +
               Item(QStringLiteral("4) Raise milling head so tool can be removed."));
        break;
    case 2:
        body = Line(QStringLiteral("Lower the milling head to just nip the paper between the spindle rim and the "
                                   "billet. The paper must still be moveable."));
        break;
    case 3:
        body = Line(QStringLiteral("Raise the milling head so that the tool to be measured can be inserted."));
        break;
    case 5:
        body = Line(QStringLiteral("Lower the milling head to just nip the paper between the end of the tool and the "
                                   "billet. The paper must still be moveable."));
        break;
    case 6:
        body = Line(QStringLiteral("Raise the milling head so that the tool can be removed."));
        break;
    default:
        return QString();
    }
    // Close paragraphs: the task frame is small, and "click DONE" must show without scrolling.
    body += Blue(kDoneLine);
    body.replace(QStringLiteral("<p style=\""), QStringLiteral("<p style=\"margin-top:0px; margin-bottom:4px; "));
    return Doc(body);
}

void ShowOffset() try {
    FrmMain *f = frmMain();
    PicOffset *o = f->picOffset;
    f->CentrePanel(o);
    for (QFrame *fra : {o->fraOffStep, o->fraOffTools})
        fra->move((o->width() - fra->width()) / 2, fra->y());
    ToolGridSetup(*o->grdOffTools);
    o->PlaceGrid();
} catch (...) {
    LogError("frmMain", "ShowOffset");
}

void SetOffStep(int16_t intStep) try {
    FrmMain *f = frmMain();
    PicOffset *o = f->picOffset;
    PicKeyboard *k = f->picKeyboard;
    // 1.
    const bool blnForward = intStep > gintOffStep;
    o->txtNoRoom->hide();
    k->imgCutter->hide();
    // 2. The step's own actions, then its page and task (step 4's page names the tool it takes).
    switch (intStep) {
    case 0:
        gblnToolInserted = true;
        gblnToolInMachine = true;
        break;
    case 1:
        gblnToolInserted = false;
        break;
    case 3:
        ShowToolChoice(o);
        break;
    case 4:
        TakeChosenTool(o);
        break;
    default:
        break;
    }
    const QString strPage = strOffStepPage(intStep);
    const QString strTask = strOffStepTask(intStep);
    // 3. The page into the frame the step uses.
    const bool blnTools = intStep == 3 || intStep == 4;
    QLabel *title = blnTools ? o->lblOffToolsTitle : o->lblOffStepTitle;
    title->setText(strOffStepTitle(intStep));
    title->setAccessibleName(title->text());   // the title is the value a reader needs
    (blnTools ? o->rtbOffTools : o->rtbOffset)->setHtml(strPage);
    o->fraOffTools->setVisible(blnTools);
    o->fraOffStep->setVisible(!blnTools);
    if (intStep == 0)
        ShowNoRoom(o);
    // 4.
    gintOffStep = intStep;
    SetOffNavBtns();
    // 5. The task, going forward only; the manual screen returns at once and its loop runs
    // on tmrKeyControl.
    if (!strTask.isEmpty() && blnForward) {
        k->rtbTask->setHtml(strTask);
        const TaskPicture picture = TaskPictureOf(intStep);
        if (picture.key) {
            k->imgCutter->setPixmap(ilsOffsetPicture(QString::fromLatin1(picture.key)));
            k->imgCutter->setAccessibleDescription(QString::fromLatin1(picture.description));
            k->imgCutter->show();
        }
        k->fraTask->show();
        k->fraTask->raise();
        ShowKeyboard(intStep == 1);
    } else {
        TakeFocus(o);
    }
} catch (...) {
    LogError("frmMain", "SetOffStep");
}

void SetOffNavBtns() try {
    PicOffset *o = Panel();
    auto enable = [o](int i, bool on) { o->cmdOffNav[static_cast<size_t>(i)]->setEnabled(on); };
    o->cmdOffNav[3]->setVisible(true);
    o->SetDefaultButton(3);
    o->SetCancelButton(1);
    enable(1, true);
    enable(0, false);
    enable(4, false);
    switch (gintOffStep) {
    case 0:
        enable(2, false);
        enable(3, true);
        break;
    case 3:   // Next waits for a tool to be chosen
        enable(2, true);
        enable(3, false);
        break;
    case 6:
        enable(3, false);
        enable(2, true);
        enable(0, true);
        enable(4, true);
        break;
    default:
        enable(2, true);
        enable(3, true);
        break;
    }
} catch (...) {
    LogError("frmMain", "SetOffNavBtns");
}

void PicOffset::cmdOffNav_Click(int intIndex) try {
    // The wait below pumps: a second click (or Enter) must not come in while this one runs.
    static bool blnBusy = false;
    if (blnBusy)
        return;
    blnBusy = true;
    struct Clear {
        bool &b;
        ~Clear() { b = false; }
    } clear{blnBusy};
    WaitEnterSpaceUp();
    switch (intIndex) {
    case 0: SetOffStep(3); break;   // the datum stands: the next tool at once, no raising task
    case 1:
    case 4: ShowMenu(QString()); break;
    case 2: SetOffStep(Int16(gintOffStep - 1)); break;
    case 3: SetOffStep(Int16(gintOffStep + 1)); break;
    default: break;
    }
} catch (...) {
    LogError("frmMain", "cmdOffNav_Click");
}

void PicOffset::cmdOffSort_Click(int intIndex) try {
    if (gintToolRows > 1)
        GridSort(*grdOffTools, Int16(intIndex));
} catch (...) {
    LogError("frmMain", "cmdOffSort_Click");
}

void PicOffset::grdOffTools_Click() try {
    if (grdOffTools->Row() >= 1 && grdOffTools->Row() <= gintToolRows) {
        cmdOffNav[3]->setEnabled(true);
    } else {
        cmdOffNav[3]->setEnabled(false);
        grdOffTools->SetCell(0, 0);
    }
} catch (...) {
    LogError("frmMain", "grdOffTools_Click");
}

void ReturnToOffset() try {
    FrmMain *f = frmMain();
    PicOffset *o = f->picOffset;
    PicKeyboard *k = f->picKeyboard;
    // 1.
    f->mnuMStart->setEnabled(false);
    f->mnuMStop->setEnabled(false);
    // 2. A task left another way than by Done (Esc, an alarm) falls back one step. What
    // follows then acts for that lower step: Esc at step 3 sets the datum again at the
    // present height, Esc at step 6 measures again at the present height. The operator was
    // told where to be; Back and Next repeat the measurement.
    if (k->cmdDoneTag != QLatin1String("Done") && gintOffStep >= 1)
        SetOffStep(Int16(gintOffStep - 1));
    // 3.
    k->cmdDoneTag.clear();
    // 4.
    switch (gintOffStep) {
    case 2:   // the rim nips the paper: the datum
        glngPosZ = 0;
        DistanceReset(2);
        break;
    case 5: {   // the tool nips the paper: its offset is the Z count from the datum, mm
        ToolData &tool = gtypTools(gintOffsetTool);
        tool.sngOffset = static_cast<float>(glngPosZ / 72.0);
        // This one record, not the table: other edits in memory stay unsaved.
        RegistryValuePut(strToolValueName(gintOffsetTool), strToolRecord(tool));
        const QString strLine = QStringLiteral("The offset for ") + strToolWords() + QStringLiteral(" is ") +
                                Format000(tool.sngOffset) + QStringLiteral(" mm");
        o->rtbOffset->setHtml(Doc(QStringLiteral("<p>") + page::Esc(strLine) + QStringLiteral("</p><p>") +
                                  page::Coloured(kBlue, kRaiseLine) + QStringLiteral("</p>")));
        break;
    }
    default:
        break;
    }
    // 5.
    o->show();
    f->picKeyboard->hide();
    o->SetDefaultButton(3);
    TakeFocus(o);
} catch (...) {
    LogError("frmMain", "ReturnToOffset");
}
