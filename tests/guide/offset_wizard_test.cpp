// The tool offset wizard on the real main window, online to the controller emulator on the
// fake clock, with the jog keys held on the fake key state: the datum, two tools measured in
// one visit, Esc during the raising tasks, and the tool grid's empty rows.
#include "guide/stream_world.h"

#include "core/state.h"
#include "core/frm_main.h"
#include "core/frm_splash.h"
#include "guide/offset_panel.h"
#include "guide/offset_wizard.h"
#include "link/keyboard_panel.h"
#include "platform/forms.h"
#include "platform/keystate.h"
#include "tools/toolscreens_support.h"
#include "tools/tooltable.h"

#include <QAction>
#include <QCoreApplication>
#include <QGroupBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QTextEdit>

#include <gtest/gtest.h>

namespace {

class OffsetWizard : public ::testing::Test {
protected:
    void SetUp() override
    {
        uiHooks().endProcess = [](int) { throw TrapEnded(); };   // a trapped fault fails the test
        ReadStartSettings();
        SetTools({{12, "End mill", 6.0f, -2000.0f}, {3, "Slot drill", 4.5f, 1.5f}});
        w.goOnline();
        f = frmMain();
        f->tmrShowMenu->stop();
        f->show();
        ShowMenu(QString());
        o = f->picOffset;
    }
    void TearDown() override { UnloadForms(); }

    // The task now on the manual screen: `vk` held with Numpad 9 for `ms` of machine time,
    // then left by Done, or by Esc. Returns when the manual screen has gone back.
    void Task(int vk, int ms, bool done = true)
    {
        ASSERT_EQ(gintMode, 2);
        ASSERT_FALSE(f->picKeyboard->fraTask->isHidden());
        taskText = f->picKeyboard->rtbTask->toPlainText();
        const int64_t start = w.clock.msecs();
        int phase = 0;
        const int id = w.clock.addListener([&](int64_t nowNs) {
            const int64_t t = nowNs / 1000000 - start;
            if (phase == 0 && vk) {
                keys.Press(vk);
                keys.Press(VK_NUMPAD9);
            }
            if (phase == 0)
                phase = 1;
            if (phase == 1 && t >= ms) {
                keys.ReleaseAll();
                phase = 2;
            }
            if (phase == 2 && t >= ms + 50) {
                phase = 3;
                if (done)
                    f->picKeyboard->cmdDone->click();
                else
                    f->Form_KeyDown(27, 0);
            }
        });
        frmSplash()->tmrKeyControl->stop();
        frmSplash()->tmrKeyControl_Timer();   // the loop, until the task ends
        w.clock.removeListener(id);
    }
    void Nav(int index) { o->cmdOffNav[static_cast<size_t>(index)]->click(); }
    QString Title() const
    {
        return o->fraOffTools->isHidden() ? o->lblOffStepTitle->text() : o->lblOffToolsTitle->text();
    }
    QString Buttons() const   // enabled buttons, More..Finish as 0/1
    {
        QString s;
        for (QPushButton *b : o->cmdOffNav)
            s += b->isEnabled() ? u'1' : u'0';
        return s;
    }
    int64_t EmuZ() { return w.emu->controller().posZ(); }

    LinkWorld w;
    FakeKeyState keys;
    ScopedKeyState scoped{&keys};
    FrmMain *f = nullptr;
    PicOffset *o = nullptr;
    QString taskText;
};

TEST_F(OffsetWizard, TwoToolsMeasuredInOneVisitStoreTheirRecordsOnly)
{
    f->MenuAction(QStringLiteral("Offsets"));
    EXPECT_EQ(gintMode, 7);
    EXPECT_EQ(Title(), QStringLiteral("Step 1: Prepare a Datum Surface"));
    EXPECT_FALSE(o->txtNoRoom->isHidden());
    EXPECT_EQ(Buttons(), QStringLiteral("01010"));
    EXPECT_TRUE(gblnToolInserted && gblnToolInMachine);

    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(o, &enter);   // Enter is Next: the skim, with the spindle and its picture
    EXPECT_FALSE(f->picKeyboard->picSpindleStart->isHidden());
    EXPECT_FALSE(f->picKeyboard->imgCutter->isHidden());
    EXPECT_FALSE(gblnToolInserted);
    Task(VK_NEXT, 40);
    EXPECT_TRUE(taskText.startsWith(QStringLiteral("1) Click the green button to start the spindle.")));
    EXPECT_EQ(Title(), QStringLiteral("Step 2: Set the Measurement Datum"));

    Nav(3);   // the rim nips the paper: the datum
    EXPECT_TRUE(f->picKeyboard->picSpindleStart->isHidden());
    Task(VK_NEXT, 120);
    EXPECT_EQ(glngPosZ, 0);
    const int64_t datum = EmuZ();
    Nav(3);
    Task(VK_PRIOR, 300);
    EXPECT_EQ(Title(), QStringLiteral("Step 4: Select Tool"));
    EXPECT_EQ(Buttons(), QStringLiteral("01100"));   // Next waits for a tool

    // The grid lists by tool number: row 1 is tool 3, row 2 tool 12. A click under the
    // list keeps Next off and puts the cursor back at the top.
    ToolGrid &grid = *o->grdOffTools;
    EXPECT_EQ(Column(grid, 0), QStringList({QStringLiteral("3"), QStringLiteral("12")}));
    ClickCell(grid, 2, 1);
    EXPECT_TRUE(o->cmdOffNav[3]->isEnabled());
    ClickCell(grid, 5, 1);
    EXPECT_FALSE(o->cmdOffNav[3]->isEnabled());
    EXPECT_EQ(grid.Row(), 0);
    ClickCell(grid, 2, 1);

    struct Tool {
        int row, index, lowerMs;
        const char *words;
    };
    const Tool tools[] = {{2, 1, 500, "Tool 12 (End mill 6.000 mm)"}, {1, 2, 900, "Tool 3 (Slot drill 4.500 mm)"}};
    QString firstRecord;
    for (const Tool &t : tools) {
        if (t.index == 2) {   // More: straight to the choice, the last tool still selected
            Nav(0);
            EXPECT_EQ(Title(), QStringLiteral("Step 4: Select Tool"));
            EXPECT_EQ(gintMode, 2);   // no task ran: the panel stands over the ended manual screen
            EXPECT_FALSE(frmSplash()->tmrKeyControl->isActive());
            EXPECT_EQ(grid.Row(), 2);
            ClickCell(grid, t.row, 0);
        }
        const QString words = QString::fromLatin1(t.words);
        Nav(3);
        EXPECT_EQ(gintOffsetTool, t.index);
        EXPECT_TRUE(o->rtbOffTools->toPlainText().contains(QStringLiteral("1) put ") + words +
                                                           QStringLiteral("  in the milling head;")));
        Nav(3);   // the page of step 6 shows the offset as it stood
        const QString before = o->rtbOffset->toPlainText();
        Task(VK_NEXT, t.lowerMs);
        EXPECT_TRUE(before.contains(words + QStringLiteral(" is ") + vb::Format000(t.index == 1 ? -2000.0 : 1.5) +
                                    QStringLiteral(" mm.")));
        // The offset is the Z distance of the tool's nip from the rim's, as the machine moved.
        const float offset = static_cast<float>((EmuZ() - datum) / 72.0);
        EXPECT_LT(offset, 0.0f);
        EXPECT_EQ(gtypTools(t.index).sngOffset, offset);
        const QString record = strToolRecord(gtypTools(t.index));
        EXPECT_EQ(strRegistryValueGet(strToolValueName(t.index), QString()), record);
        EXPECT_EQ(o->rtbOffset->toPlainText().split(u'\n').first(),
                  QStringLiteral("The offset for ") + words + QStringLiteral(" is ") + vb::Format000(offset) +
                      QStringLiteral(" mm"));
        if (t.index == 1)
            firstRecord = record;
        Nav(3);
        Task(VK_PRIOR, 300);
        EXPECT_EQ(Title(), QStringLiteral("Step 7: Remove the Tool"));
        EXPECT_EQ(Buttons(), QStringLiteral("11101"));
    }
    EXPECT_NE(gtypTools(1).sngOffset, gtypTools(2).sngOffset);
    EXPECT_EQ(strRegistryValueGet(strToolValueName(1), QString()), firstRecord);
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("ToolCount"), QStringLiteral("none")), QStringLiteral("none"));
    Nav(4);   // Finish
    EXPECT_EQ(gintMode, 1);
}

TEST_F(OffsetWizard, EscDuringTheRaisingTasksSetsTheDatumOrTheOffsetAgainAtThatHeight)
{
    f->MenuAction(QStringLiteral("Offsets"));
    Nav(3);
    Task(VK_NEXT, 40);
    Nav(3);
    Task(VK_NEXT, 120);
    Nav(3);
    // Esc while raising before the tool goes in: back to the datum's page, datum set here.
    Task(VK_PRIOR, 300, false);
    EXPECT_EQ(gintOffStep, 2);
    EXPECT_EQ(Title(), QStringLiteral("Step 3: Raise the Milling Head"));
    EXPECT_EQ(glngPosZ, 0);
    EXPECT_EQ(f->picKeyboard->lblPos[2]->text(), QStringLiteral("0.00"));
    const int64_t datum = EmuZ();
    Nav(3);
    Task(0, 10);   // raised already
    ClickCell(*o->grdOffTools, 1, 0);
    Nav(3);
    Nav(3);
    Task(VK_NEXT, 200);
    const float measured = gtypTools(2).sngOffset;
    EXPECT_EQ(measured, static_cast<float>((EmuZ() - datum) / 72.0));
    // Esc while raising the measured tool: back to step 6, measured again at this height.
    Nav(3);
    Task(VK_PRIOR, 300, false);
    EXPECT_EQ(gintOffStep, 5);
    EXPECT_EQ(Title(), QStringLiteral("Step 6: Raise the Tool"));
    const float raised = static_cast<float>((EmuZ() - datum) / 72.0);
    EXPECT_GT(raised, measured);
    EXPECT_EQ(gtypTools(2).sngOffset, raised);
    EXPECT_EQ(strRegistryValueGet(strToolValueName(2), QString()), strToolRecord(gtypTools(2)));
    EXPECT_EQ(Buttons(), QStringLiteral("01110"));
    // Esc on the wizard is Cancel: it leaves at once; what was written stays written.
    QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(o, &esc);
    EXPECT_EQ(gintMode, 1);
    EXPECT_EQ(gtypTools(2).sngOffset, raised);
}

} // namespace
