// The tool offset wizard on the real main window, online to the controller emulator on the
// fake clock, with the jog keys held on the fake key state (wizard_world.h): the datum, two
// tools measured in one visit, Esc during the raising tasks, and the tool grid's empty rows.
#include "guide/wizard_world.h"

#include "core/frm_splash.h"
#include "guide/offset_panel.h"
#include "link/keyboard_panel.h"
#include "tools/toolscreens_support.h"
#include "tools/tooltable.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>

#include <gtest/gtest.h>

namespace {

class OffsetWizard : public ::testing::Test {
protected:
    void SetUp() override
    {
        uiHooks().endProcess = [](int) { throw TrapEnded(); };   // a trapped fault fails the test
        w.setUp();
        SetTools({{12, "End mill", 6.0f, -2000.0f}, {3, "Slot drill", 4.5f, 1.5f}});
        w.goOnline();
        f->show();
        ShowMenu(QString());
        f->MenuAction(QStringLiteral("Offsets"));
    }
    void Nav(int index) { o->cmdOffNav[static_cast<size_t>(index)]->click(); }
    // The jog task now on the manual screen: `vk` held with Numpad 9, then Done (or Esc).
    void Task(int vk, int ms, bool esc = false) { w.task({vk, VK_NUMPAD9}, ms, esc); }
    int64_t EmuZ() { return w.emu->controller().posZ(); }

    WizardWorld w;
    FrmMain *f = w.f;
    PicOffset *o = f->picOffset;
};

TEST_F(OffsetWizard, TwoToolsMeasuredInOneVisitStoreTheirRecordsOnly)
{
    EXPECT_EQ(gintMode, 7);
    EXPECT_FALSE(o->txtNoRoom->isHidden());
    EXPECT_TRUE(gblnToolInserted && gblnToolInMachine);
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(o, &enter);   // Enter is Next: the skim, with the spindle and its picture
    EXPECT_FALSE(f->picKeyboard->picSpindleStart->isHidden());
    EXPECT_FALSE(f->picKeyboard->imgCutter->isHidden());
    EXPECT_FALSE(gblnToolInserted);
    EXPECT_TRUE(f->picKeyboard->rtbTask->toPlainText().startsWith(
        QStringLiteral("1) Click the green button to start the spindle.")));
    Task(VK_NEXT, 40);

    Nav(3);   // the rim nips the paper: the datum
    EXPECT_TRUE(f->picKeyboard->picSpindleStart->isHidden());
    Task(VK_NEXT, 120);
    EXPECT_EQ(glngPosZ, 0);
    const int64_t datum = EmuZ();
    Nav(3);
    Task(VK_PRIOR, 300);

    // Select Tool: the grid lists by tool number, row 1 is tool 3, row 2 tool 12. Next waits
    // for a tool; a click under the list keeps it off and puts the cursor back at the top.
    ToolGrid &grid = *o->grdOffTools;
    EXPECT_EQ(Column(grid, 0), QStringList({QStringLiteral("3"), QStringLiteral("12")}));
    EXPECT_FALSE(o->cmdOffNav[3]->isEnabled());
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
    }
    EXPECT_EQ(strRegistryValueGet(strToolValueName(1), QString()), firstRecord);
    EXPECT_EQ(strRegistryValueGet(QStringLiteral("ToolCount"), QStringLiteral("none")), QStringLiteral("none"));
    Nav(4);   // Finish
    EXPECT_EQ(gintMode, 1);
}

TEST_F(OffsetWizard, EscDuringTheRaisingTasksSetsTheDatumOrTheOffsetAgainAtThatHeight)
{
    Nav(3);
    Task(VK_NEXT, 40);
    Nav(3);
    Task(VK_NEXT, 120);
    Nav(3);
    // Esc while raising before the tool goes in: back to the datum's page, datum set here.
    Task(VK_PRIOR, 300, true);
    EXPECT_EQ(o->lblOffStepTitle->text(), QStringLiteral("Step 3: Raise the Milling Head"));
    EXPECT_EQ(glngPosZ, 0);
    EXPECT_EQ(f->picKeyboard->lblPos[2]->text(), QStringLiteral("0.00"));
    const int64_t datum = EmuZ();
    Nav(3);
    w.task();   // raised already
    ClickCell(*o->grdOffTools, 1, 0);
    Nav(3);
    Nav(3);
    Task(VK_NEXT, 200);
    const float measured = gtypTools(2).sngOffset;
    EXPECT_EQ(measured, static_cast<float>((EmuZ() - datum) / 72.0));
    // Esc while raising the measured tool: back to step 6, measured again at this height.
    Nav(3);
    Task(VK_PRIOR, 300, true);
    EXPECT_EQ(o->lblOffStepTitle->text(), QStringLiteral("Step 6: Raise the Tool"));
    const float raised = static_cast<float>((EmuZ() - datum) / 72.0);
    EXPECT_GT(raised, measured);
    EXPECT_EQ(gtypTools(2).sngOffset, raised);
    EXPECT_EQ(strRegistryValueGet(strToolValueName(2), QString()), strToolRecord(gtypTools(2)));
    // Esc on the wizard is Cancel: it leaves at once; what was written stays written.
    QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(o, &esc);
    EXPECT_EQ(gintMode, 1);
    EXPECT_EQ(gtypTools(2).sngOffset, raised);
}

} // namespace
