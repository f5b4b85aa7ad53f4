// Billet help driven through the main window: the pages that warn word for word, the slide's
// guard against a page change while the billet travels, and Return.
#include "core/ui_fixture.h"
#include "guide/billet.h"
#include "platform/keystate.h"

#include <QAction>
#include <QPushButton>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>

namespace {

class BilletTest : public UiTest {
protected:
    void SetUp() override
    {
        UiTest::SetUp();
        frmMain()->tmrShowMenu->stop();   // the main menu would come up in the middle of a slide
    }
    void TearDown() override
    {
        SetPumpHook({});
        UiTest::TearDown();
    }
    static QString Text() { return billetPage().rtbBillet->toPlainText(); }
};

TEST_F(BilletTest, FivePagesWithTheirWarningsWordForWord)
{
    // The two pages that tell the operator to stop the machine, word for word.
    const QString pages[] = {
        {},
        QStringLiteral("The picture shows a badly placed billet. It is partly outside the working envelope. If the code "
                       "contains a tool centre-line move to a point outside the working envelope, the mill table will "
                       "hit an end stop before it gets there. Machining must be stopped at once: hit Escape on the PC "
                       "keyboard."),
        {},
        {},
        QStringLiteral("The picture shows a large billet which is not placed symmetrically in the working envelope. "
                       "Because the diameter of the tool cutting the billet perimeter is large, the centre-line of the "
                       "tool is outside the working envelope on two of the four sides.\nThe cut will fail because the "
                       "mill table will hit an end-stop when it tries to move to the cutting position. The machining "
                       "attempt must be stopped at once."),
    };
    ShowBillet(QStringLiteral("Menu"));
    for (int16_t topic = 1; topic <= 5; ++topic) {
        ShowTopic(topic);
        EXPECT_EQ(BilletTopic(), topic);
        if (!pages[topic - 1].isEmpty()) {
            EXPECT_EQ(Text().replace(QChar::Nbsp, u' '), pages[topic - 1]) << topic;
        }
    }
    QTextCursor red = billetPage().rtbBillet->document()->find(QStringLiteral("The machining attempt"));
    EXPECT_EQ(red.charFormat().foreground().color(), QColor(Qt::red));
}

TEST_F(BilletTest, APageChangeWhileTheBilletTravelsIsDropped)
{
    ShowBillet(QStringLiteral("Menu"));
    int pumps = 0;
    SetPumpHook([&] {
        ++pumps;
        ShowTopic(3);   // the mouse over another topic during the slide
    });
    ShowTopic(2);
    EXPECT_GT(pumps, 20);   // the billet was seen to travel
    EXPECT_EQ(BilletTopic(), 2);
    EXPECT_TRUE(Text().startsWith(QStringLiteral("The picture shows a badly placed billet.")));
}

TEST_F(BilletTest, ReturnWaitsForEnterAndGoesBackByItsTag)
{
    FakeKeyState keys;
    ScopedKeyState scoped(&keys);
    keys.Press(VK_RETURN);
    keys.onQuery = [&](int) {
        if (keys.queries() == 5)
            keys.Release(VK_RETURN);
    };
    ShowBillet(QStringLiteral("Menu"));
    cmdBilletReturn_Click();
    EXPECT_GE(keys.queries(), 5);
    EXPECT_EQ(gintMode, 1);
    EXPECT_FALSE(frmMain()->picBilletSize->isVisible());
    // From the wizard's Explain: its page comes back with the third button enabled.
    SetMode(3);
    frmMain()->picSetMill->cmdSetNav[2]->setEnabled(false);
    ShowBillet(QStringLiteral("Explain"));
    cmdBilletReturn_Click();
    EXPECT_TRUE(frmMain()->picSetMill->isVisibleTo(frmMain()));
    EXPECT_TRUE(frmMain()->picSetMill->cmdSetNav[2]->isEnabled());
    EXPECT_FALSE(frmMain()->picBilletSize->isVisibleTo(frmMain()));
}

} // namespace
