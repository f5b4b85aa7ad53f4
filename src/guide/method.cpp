// The subsequent-part choice: its panel and what each choice keeps. See method_panel.h.
//
//   choice       file          billet      X, Y, Z origin   Z reference offset
//   Repeat       same, no read same place  kept             kept
//   New Part     chosen again  same place  kept             kept
//   Fresh Start  chosen again  any         set again        set again
//   Cancel       -             -           (unused)         -
//
// The origins are kept simply because nothing touches glngPosX/Y/Z or gsngOriginToolOffset
// on these paths: the wizard's retained steps skip the origin tasks and step 3 leaves the
// reference offset alone unless the run is fresh.
#include "guide/method_panel.h"

#include "core/frm_main.h"
#include "core/logger.h"
#include "core/state.h"
#include "guide/rich_page.h"
#include "guide/setmill.h"
#include "link/keyboard_panel.h"

#include <QLabel>
#include <QPushButton>
#include <QTextEdit>

using namespace page;

namespace {

constexpr const char *kModule = "frmMain";
constexpr int kButtonTop = 104, kButtonStep = 48;

// " 1) Repeat Last Part, Same Billet Size & Position ....": the choice in red, the word
// that tells it from the others emphasised.
QString strOption(const char *number, const char *choice, const char *which, const char *rest)
{
    return Esc(QString::fromLatin1(number)) +
           QStringLiteral("<span style=\"color:%1\">").arg(QString::fromLatin1(kRed)) +
           Esc(QString::fromLatin1(choice)) + QStringLiteral("<i>") + Esc(QString::fromLatin1(which)) +
           QStringLiteral("</i>") + Esc(QString::fromLatin1(rest)) + QStringLiteral("</span>");
}

// The entries into the wizard from here: the manual screen comes back to it, and the first
// task counts as done.
void EnterWizard()
{
    gblnSetupWizard = true;
    frmMain()->picKeyboard->cmdDoneTag = QStringLiteral("Done");
    SetMode(3);
}

void PrintMethodText(PicMethod *m);

} // namespace

PicMethod::PicMethod(QWidget *parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("picMethod"));
    setAccessibleName(QStringLiteral("The next part"));
    setFixedSize(640, 320);
    setStyleSheet(QStringLiteral("#picMethod { background: #ffffff; border: 1px solid #d5dbe1; border-radius: 10px; }"));
    hide();
    lblMethod = new QLabel(QStringLiteral("Subsequent Part - Machining Options"), this);
    lblMethod->setObjectName(QStringLiteral("lblMethod"));
    QFont f = lblMethod->font();
    f.setPointSize(13);
    f.setBold(true);
    lblMethod->setFont(f);
    lblMethod->setGeometry(18, 12, 604, 28);
    picMethodText = new QFrame(this);
    picMethodText->setObjectName(QStringLiteral("picMethodText"));
    picMethodText->setAccessibleName(QStringLiteral("Options"));
    picMethodText->setGeometry(18, 44, 460, 270);
    const std::pair<const char *, const char *> buttons[] = {{"&Repeat Part", "cmdMethodRepeat"},
                                                             {"&New Part", "cmdMethodNew"},
                                                             {"&Fresh Start", "cmdMethodNorm"},
                                                             {"&Cancel", "cmdMethodCancel"}};
    QPushButton **targets[] = {&cmdMethodRepeat, &cmdMethodNew, &cmdMethodNorm, &cmdMethodCancel};
    void (*clicks[])() = {cmdMethodRepeat_Click, cmdMethodNew_Click, cmdMethodNorm_Click, cmdMethodCancel_Click};
    for (int i = 0; i < 4; ++i) {
        auto *b = new QPushButton(QString::fromLatin1(buttons[i].first), this);
        b->setObjectName(QString::fromLatin1(buttons[i].second));
        b->setGeometry(490, kButtonTop + i * kButtonStep, 130, 34);
        *targets[i] = b;
        connect(b, &QPushButton::clicked, this, clicks[i]);
    }
    // Two heading lines, then one line level with each button.
    for (size_t i = 0; i < lblMethodLine.size(); ++i) {
        auto *l = new QLabel(picMethodText);
        l->setObjectName(QStringLiteral("lblMethodLine"));
        l->setTextFormat(Qt::RichText);
        const int centre = i < 2 ? 12 + static_cast<int>(i) * 24
                                 : kButtonTop + static_cast<int>(i - 2) * kButtonStep + 17 - picMethodText->y();
        l->setGeometry(0, centre - 10, picMethodText->width(), 20);
        lblMethodLine[i] = l;
    }
    PrintMethodText(this);
}

namespace {

// Prints the choice on picMethodText.
void PrintMethodText(PicMethod *m)
{
    const QString lines[6] = {
        Esc(QStringLiteral(" Please choose one of the following options:")),
        Esc(QStringLiteral(" (Note: options 1 and 2 retain the current X,Y,Z origin setting)")),
        strOption(" 1) ", "Repeat Last Part, ", "Same ", "Billet Size & Position ...."),
        strOption(" 2) ", "New Part, ", "Same ", "Billet Size & Position ............................"),
        strOption(" 3) ", "New Part, ", "Different ", "Billet Size and/or Position ..........."),
        Esc(QStringLiteral(" 4) Return to Main Menu without machining a part .............")),
    };
    for (size_t i = 0; i < m->lblMethodLine.size(); ++i)
        m->lblMethodLine[i]->setText(QStringLiteral("<span style=\"white-space:pre\">") + lines[i] + QStringLiteral("</span>"));
}

} // namespace

void ShowMethod() try {
    FrmMain *f = frmMain();
    PicMethod *m = f->picMethod;
    PrintMethodText(m);
    f->CentrePanel(m);
    SetMode(8);
    m->cmdMethodNorm->setFocus();
} catch (...) {
    LogError(kModule, "ShowMethod");
}

void cmdMethodRepeat_Click() try {
    gblnRepeatPart = true;
    gblnNewPart = false;
    EnterWizard();
    FrmMain *f = frmMain();
    f->picHeader->rtbHeader->setPlainText(gstrHeader);
    f->picHeader->show();
    f->picHeader->raise();
    SetSetStep(2);
} catch (...) {
    LogError(kModule, "cmdMethodRepeat_Click");
}

void cmdMethodNew_Click() try {
    gblnRepeatPart = false;
    gblnNewPart = true;
    EnterWizard();
    SetSetStep(0);
} catch (...) {
    LogError(kModule, "cmdMethodNew_Click");
}

void cmdMethodNorm_Click() try {
    gblnRepeatPart = false;
    gblnNewPart = false;
    EnterWizard();
    SetSetStep(0);
} catch (...) {
    LogError(kModule, "cmdMethodNorm_Click");
}

void cmdMethodCancel_Click() try {
    gblnRepeatPart = false;
    gblnNewPart = false;
    ShowMenu(QString());
} catch (...) {
    LogError(kModule, "cmdMethodCancel_Click");
}
