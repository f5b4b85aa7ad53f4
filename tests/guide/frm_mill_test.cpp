// frmMill on its own: the side effects of the steps, and a click while the keys are down.
// Its titles, the work file's end and Cancel are checked by the stream's runs.
#include "guide/frm_mill.h"

#include "core/state.h"
#include "link/stream.h"
#include "nc/stepcode.h"
#include "platform/forms.h"
#include "platform/keystate.h"
#include "support/test_support.h"
#include "tools/tooltable.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
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
    EXPECT_TRUE(f->rtbMill->toPlainText().startsWith(QStringLiteral("1) Insert tool Number 7 (Slot drill 2.5 mm)")));
    EXPECT_EQ(gintCurrentTool, 7);
    EXPECT_TRUE(gblnToolInMachine);
    f->SetStep(2);
    EXPECT_TRUE(gblnToolInserted);
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
