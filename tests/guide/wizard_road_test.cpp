// The whole road of a part, driven as an operator drives it: the main menu, Mill a part,
// the file, the tool offsets, the analysis, every task on the manual screen with keys held,
// Start, the run with its tool-change prompts, the end prompts, Repeat Part, the second
// part, New Part, Fresh Start. The controller is the emulator on the fake clock.
#include "guide/wizard_world.h"

#include "guide/setmill.h"
#include "link/keyboard_panel.h"
#include "link/stream.h"
#include "nc/analysed.h"
#include "nc/commands.h"
#include "nc/ncxdump.h"
#include "tools/tooltable.h"

#include <QFile>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTextEdit>

#include <gtest/gtest.h>

namespace {

const QByteArray kArcsAndToolChange =
    "%\r\n* Bracket: arcs and a tool change\r\n* Billet length 40\r\n* Billet width 30\r\n* Billet depth 10\r\n"
    "N10 T1\r\nN20 S1000\r\nN30 G0 X5 Y5 Z1\r\nN40 G1 Z-0.3 F100\r\nN50 G2 X10 Y10 I5 J0 F150\r\n"
    "N60 G2 X15 Y5 I0 J-5\r\nN70 G3 X20 Y5 I2.5 J0\r\nN80 G0 Z1\r\nN90 T2\r\nN100 S2000\r\nN110 G0 X2 Y2\r\n"
    "N120 G1 Z-0.2 F100\r\nN130 G1 X6 Y3 F150\r\nN140 G0 Z2\r\n";

const QByteArray kEndsOnTool =
    "%\r\n* Ends on a tool\r\nN10 T1\r\nN20 S1000\r\nN30 G0 X2 Y2 Z1\r\nN40 G1 Z-0.2 F100\r\nN50 G1 X4 Y3 F150\r\n"
    "N60 G0 Z1\r\nN70 T2\r\nN80 S1500\r\n";

// The records of the frames sent from byte `from` on, as (axis bits, timer) of the
// records that move an axis (a step's timer is never 0; the spindle's records have 0).
std::vector<std::array<uint8_t, 3>> SentMoves(const QByteArray &w, qsizetype from)
{
    std::vector<std::array<uint8_t, 3>> moves;
    for (qsizetype i = from; i < w.size();) {
        const int len = static_cast<uint8_t>(w.at(i));
        for (qsizetype r = i + 1; r + 2 < i + len && r + 2 < w.size(); r += 3)
            if ((static_cast<uint8_t>(w.at(r)) & 28) && (w.at(r + 1) || w.at(r + 2)))
                moves.push_back({static_cast<uint8_t>(w.at(r)), static_cast<uint8_t>(w.at(r + 1)),
                                 static_cast<uint8_t>(w.at(r + 2))});
        i += len > 0 ? len : 1;
    }
    return moves;
}

// The moving records of the analysed file after its first move, as they are sent.
std::vector<std::array<uint8_t, 3>> AnalysedMoves()
{
    QFile file(gstrAnalysedFile);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const AnalysedFileView v = ParseAnalysedFile(file.readAll());
    size_t first = 0;
    for (size_t i = 0; i < v.records.size(); ++i)
        if (v.records[i].command < 0)
            first = i + 1;
    std::vector<std::array<uint8_t, 3>> moves;
    for (size_t i = first; i < v.records.size() && v.records[i].command != 0; ++i) {   // 0 ends the stream
        const StepRecordView &r = v.records[i];
        if (r.code < 128 && (r.flags & 28))
            moves.push_back({r.flags, static_cast<uint8_t>(r.timer & 0xFF), static_cast<uint8_t>(r.timer >> 8)});
    }
    return moves;
}

// Menu to two parts, a new part and a fresh start with `program`, which changes its tool in
// the middle when `toolChange`.
void Road(const QByteArray &program, bool toolChange)
{
    WizardWorld w;
    w.setUp();
    gtypTools(1).sngOffset = 1.5f;
    gtypTools(2).sngOffset = 0.5f;
    w.goOnline();
    ASSERT_NE(w.emu, nullptr);
    const ControllerEmulator &c = w.emu->controller();
    // Main menu -> Mill a part -> Next -> the file.
    w.toMill(program);
    ASSERT_EQ(gintMode, 3);
    w.nav(3);
    ASSERT_EQ(gintSetStep, 1);
    EXPECT_TRUE(w.page().startsWith(QStringLiteral("Safety: are the Tool Offset Measurements correct?")));
    // Yes -> the analysis -> the billet.
    w.nav(3);
    ASSERT_EQ(gintSetStep, 2);
    ASSERT_TRUE(QFile::exists(gstrAnalysedFile));
    EXPECT_TRUE(cmdSetPreview()->isVisibleTo(w.f->picHeader));   // analysed: the preview is offered
    // The safety line, and the billet's size from the header, left out when the file gives none.
    const QString size = toolChange ? QStringLiteral(" 40mm x 30mm x 10mm") : QString();
    EXPECT_TRUE(w.page().contains(QStringLiteral("\n1) safety of hands: remove any cutter from the head;\n") +
                                  QStringLiteral("2) secure a billet") + size + QStringLiteral(" to the mill table")));
    const auto analysed = AnalysedMoves();
    w.nav(3);   // step 3: the task "secure the billet", no spindle
    ASSERT_EQ(gintMode, 2);
    EXPECT_TRUE(w.f->picKeyboard->picSpindleStart->isHidden());
    w.task();
    EXPECT_EQ(gintCurrentTool, 1);
    EXPECT_EQ(gsngOriginToolOffset, 1.5f);
    // Z, X, Y: touch each face with the cutter, then raise it.
    const std::pair<int, const char *> touches[] = {
        {VK_NEXT, "CutterTop"}, {VK_RIGHT, "CutterSide"}, {VK_UP, "CutterFront"}};
    int64_t origin[3] = {0, 0, 0};
    for (int axis = 0; axis < 3; ++axis) {
        w.nav(3);
        ASSERT_EQ(gintMode, 2);
        EXPECT_EQ(w.f->picKeyboard->imgCutter->pixmap().toImage(),
                  ilsCutter(QString::fromLatin1(touches[axis].second)).toImage());
        EXPECT_FALSE(w.f->picKeyboard->picSpindleStart->isHidden());
        w.task({touches[axis].first, VK_NUMPAD9}, 300);
    }
    // Z = 0 at the top; X and Y half the first tool's diameter outside the edge.
    EXPECT_EQ(glngPosZ, 0);
    origin[2] = c.posZ();
    EXPECT_EQ(glngPosX, -216);
    EXPECT_EQ(glngPosY, -216);
    origin[0] = c.posX() + 216;
    origin[1] = c.posY() + 216;
    w.nav(3);   // step 7: raise the cutter
    w.task({VK_PRIOR, VK_NUMPAD9}, 300);
    ASSERT_EQ(gintSetStep, 7);

    // At the tool change the machining panel marks the next line to run and shows the progress.
    PicMachining *panel = w.f->picMachining;
    QStringList marked;
    w.onPrompt = [&](int step) {
        const auto lines = panel->rtbMillCode->extraSelections();
        if (step == 0 && !lines.isEmpty())
            marked << lines.first().cursor.selectedText() + u' ' + QString::number(panel->pgbMillProg->value());
        return 1;
    };
    // Where the machine stands from the origins, and where the PC counts it.
    auto fromOrigin = [&] {
        return std::array<int64_t, 3>{c.posX() - origin[0], c.posY() - origin[1], c.posZ() - origin[2]};
    };
    auto counted = [] { return std::array<int64_t, 3>{glngPosX, glngPosY, glngPosZ}; };
    auto runPart = [&](int part) {
        const qsizetype from = w.emu->written().size();
        w.promptTags.clear();
        marked.clear();
        w.nav(4);   // Start
        ASSERT_EQ(gintMode, 6) << part;
        w.runStarted();
        ASSERT_EQ(gintMode, 8) << part;
        EXPECT_TRUE(gblnMillDone) << part;
        // The tool change in the middle asks for the change; a T at the very end asks nothing.
        EXPECT_EQ(w.promptTags.contains(QStringLiteral("0")), toolChange) << part;
        EXPECT_EQ(w.promptTags.back(), QStringLiteral("5")) << part;          // the end
        EXPECT_EQ(marked, toolChange ? QStringList{"N110 G0 X2 Y2 79"} : QStringList()) << part;
        EXPECT_EQ(panel->pgbMillProg->value(), 100) << part;
        EXPECT_EQ(panel->rtbMillCode->toPlainText().split(u'\n').size(), glngCommandCount) << part;
        // The machine ran what the PC counted, and after the lead-in exactly the program.
        EXPECT_EQ(fromOrigin(), counted()) << part;
        EXPECT_EQ(c.droppedSteps(), 0) << part;
        const auto sent = SentMoves(w.emu->written(), from);
        ASSERT_GE(sent.size(), analysed.size()) << part;
        EXPECT_TRUE(std::equal(analysed.begin(), analysed.end(), sent.end() - static_cast<long>(analysed.size())))
            << part;
    };
    runPart(1);

    // Repeat Part: the billet step with the old header, the tool task, straight to step 8.
    const float zReference = gsngOriginToolOffset;
    w.f->picMethod->cmdMethodRepeat->click();
    EXPECT_TRUE(gblnRepeatPart);
    ASSERT_EQ(gintSetStep, 2);
    EXPECT_EQ(w.f->picHeader->rtbHeader->toPlainText(), QString(gstrHeader).remove(u'\r'));
    w.nav(3);
    EXPECT_EQ(w.title(), QStringLiteral("Step 4: Insert the Cutting Tool"));
    EXPECT_TRUE(w.f->picKeyboard->rtbTask->toPlainText().startsWith(
        QStringLiteral("1) safety: remove any cutter;\n"
                       "2) Secure billet in exactly the same position as previous billet.")));
    w.task();
    w.nav(3);
    ASSERT_EQ(gintSetStep, 7);
    EXPECT_EQ(gsngOriginToolOffset, zReference);
    runPart(2);

    // New Part: the file again, no billet, the tool task, straight to step 8 with the origins
    // kept. Back from there works on the origins: a fresh run, Start off until step 8 again.
    w.f->picMethod->cmdMethodNew->click();
    w.nav(3);
    w.nav(3);
    ASSERT_EQ(gintSetStep, 2);
    EXPECT_TRUE(w.f->picSetMill->cmdExplain->isHidden());   // retained: no billet button
    w.nav(3);
    w.task({}, 0, true);   // left by Esc, yet done: the first task after an entry, as designed
    w.nav(3);
    ASSERT_EQ(gintSetStep, 7);
    EXPECT_EQ(fromOrigin(), counted());
    EXPECT_EQ(gsngOriginToolOffset, zReference);
    w.nav(2);
    EXPECT_FALSE(gblnNewPart || gblnRepeatPart);
    EXPECT_FALSE(w.f->picSetMill->cmdSetNav[4]->isEnabled());
    w.nav(3);
    EXPECT_TRUE(w.f->picKeyboard->rtbTask->toPlainText().startsWith(QStringLiteral("Raise the cutter")));
    w.task();
    EXPECT_EQ(gintSetStep, 7);

    // Cancel on the choice: the menu. Fresh Start: a new file, billet and origins.
    ShowMethod();
    w.f->picMethod->cmdMethodCancel->click();
    EXPECT_EQ(gintMode, 1);
    ShowMethod();
    w.f->picMethod->cmdMethodNorm->click();
    EXPECT_FALSE(gblnRepeatPart || gblnNewPart);
    EXPECT_EQ(gintMode, 3);
    EXPECT_EQ(gintSetStep, 0);
    EXPECT_TRUE(gblnSetupWizard);
}

} // namespace

TEST(WizardRoad, ArcsAndAToolChange) { Road(kArcsAndToolChange, true); }

TEST(WizardRoad, EndingOnATool) { Road(kEndsOnTool, false); }
