// frmMill on its own: the pages, the side effects of the steps, the buttons.
#include "guide/frm_mill.h"

#include "core/state.h"
#include "link/stream.h"
#include "nc/stepcode.h"
#include "platform/forms.h"
#include "platform/keystate.h"
#include "support/test_support.h"
#include "tools/tooltable.h"

#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryFile>
#include <QTextEdit>

#include <gtest/gtest.h>

namespace {

class FrmMillTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ResetSharedState();
        ResetStreamState();
        gtypTools.Erase();
        gintToolCount = 1;
        gtypTools.Redim(1);
        gtypTools(1) = ToolData{7, QStringLiteral("Slot drill"), 2.5f, 1.0f, false};
    }
    void TearDown() override
    {
        if (frmMillLoaded())
            Unload(frmMill());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        ResetSharedState();
    }
    TempStore store;
};

} // namespace

TEST_F(FrmMillTest, StepsHaveTheirTitlesTextsColoursAndSideEffects)
{
    FrmMill *f = frmMill();
    gintNextTool = 7;
    gblnToolInserted = true;
    f->SetStep(0);
    EXPECT_EQ(f->lblStepTitle->text(), QStringLiteral("Prepare to Change Tool"));
    EXPECT_FALSE(gblnToolInserted);
    EXPECT_TRUE(f->rtbMill->toHtml().contains(QStringLiteral("#ff0000")));
    EXPECT_EQ(f->rtbMill->toPlainText(), QStringLiteral("1) Safety: set the spindle switch to position 0;\n"
                                                        "2) Open the machine door.\n"
                                                        "When the task is completed, click DONE."));
    f->SetStep(1);
    EXPECT_EQ(f->lblStepTitle->text(), QStringLiteral("Insert Tool"));
    EXPECT_TRUE(f->rtbMill->toPlainText().startsWith(QStringLiteral("1) Insert tool Number 7 (Slot drill 2.5 mm)")));
    EXPECT_EQ(gintCurrentTool, 7);
    EXPECT_TRUE(gblnToolInMachine);
    f->SetStep(1);
    EXPECT_EQ(f->lblStepTitle->text(), QStringLiteral("Change Tool"));
    EXPECT_TRUE(f->rtbMill->toPlainText().startsWith(QStringLiteral("1) Change to tool Number 7")));
    f->SetStep(2);
    EXPECT_TRUE(gblnToolInserted);
    gsngSpindleSpeed = 1250.0f;
    f->SetStep(4);
    EXPECT_EQ(f->rtbMill->toPlainText().split(u'\n').first(), QStringLiteral("Set the spindle speed to 1250"));
    f->SetStep(5);
    EXPECT_EQ(f->lblStepTitle->text(), QStringLiteral("Step 11: End of NC code"));
    EXPECT_FALSE(gblnToolInserted);
    EXPECT_FALSE(gblnToolInMachine);
    EXPECT_TRUE(f->cmdNav[0]->isEnabled());
    gintBacklashX = 4;
    gintLastDirX = 1;
    f->SetStep(6);
    EXPECT_EQ(f->lblStepTitle->text(), QStringLiteral("Step 12: Machining is complete"));
    EXPECT_FALSE(f->cmdNav[0]->isEnabled());
    EXPECT_EQ(gintLastDirX, -1);
    EXPECT_EQ(gintPlayX, 4);
}

TEST_F(FrmMillTest, DoneAtTheLastStepDeletesTheWorkFileAndCancelGivesUp)
{
    QTemporaryFile work;
    work.setAutoRemove(false);
    ASSERT_TRUE(work.open());
    work.close();
    gstrWorkFile = work.fileName();
    FrmMill *f = frmMill();
    f->SetStep(6);
    f->show();
    f->cmdNav[1]->click();
    EXPECT_TRUE(gblnMillDone);
    EXPECT_FALSE(f->isVisible());
    EXPECT_FALSE(QFile::exists(work.fileName()));

    f->SetStep(3);
    f->show();
    f->cmdNav[0]->click();
    EXPECT_EQ(f->Tag, QStringLiteral("Cancel"));
    EXPECT_FALSE(gblnMillDone);
    EXPECT_FALSE(f->isVisible());
}

TEST_F(FrmMillTest, ASecondClickWhileTheKeysAreStillDownIsIgnored)
{
    FakeKeyState keys;
    ScopedKeyState scope(&keys);
    FrmMill *f = frmMill();
    gintNextTool = 7;
    f->SetStep(0);
    keys.Press(13);
    int queries = 0;
    keys.onQuery = [&](int) {
        if (++queries == 3)
            f->cmdNav[1]->click();   // the operator clicks again while Enter is held
        if (queries == 6)
            keys.Release(13);
    };
    f->cmdNav[1]->click();
    EXPECT_EQ(f->intStep, 1);   // one step on, not two
}
