// The safety steps around every message box: owner, every form disabled, the wait for
// Enter and Space, the forms given back.
#include "core/msgbox.h"
#include "platform/forms.h"
#include "platform/eventkeystate.h"
#include "platform/keystate.h"
#include "platform/msgbox_gui.h"
#include "support/test_support.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QTimer>
#include <QWidget>
#include <QPushButton>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace {

struct SeenBox {
    QWidget *owner = nullptr;
    QString text, title;
    int32_t flags = 0;
    std::vector<bool> enabledDuring;
};

class GuiBoxTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        InstallEventKeyState();
        uiHooks().messageBox = GuiMsgBox;
        msgBoxPlatform().showBox = [this](QWidget *owner, const QString &text, int32_t flags, const QString &title) {
            SeenBox s{owner, text, title, flags, {}};
            for (QWidget *f : Forms())
                s.enabledDuring.push_back(f->isEnabled());
            seen.push_back(s);
            if (duringBox)
                duringBox();
            return answer;
        };
    }
    void TearDown() override
    {
        for (auto &f : forms)
            Unload(f.get());
        forms.clear();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        ResetMsgBoxPlatform();
        ResetUiHooks();
    }
    // A plain window registered as a form; owned by the test.
    QWidget *form(bool visible, bool enabled)
    {
        auto w = std::make_unique<QWidget>();
        w->resize(100, 60);
        RegisterForm(w.get(), {});
        if (visible)
            w->show();
        w->setEnabled(enabled);
        forms.push_back(std::move(w));
        return forms.back().get();
    }
    std::vector<std::unique_ptr<QWidget>> forms;
    std::vector<SeenBox> seen;
    std::function<void()> duringBox;
    int16_t answer = vbOK;
};

TEST_F(GuiBoxTest, OwnerIsTheFirstVisibleEnabledFormAndAllAreDisabledDuringTheBox)
{
    QWidget *hidden = form(false, true);
    QWidget *disabled = form(true, false);
    QWidget *owner = form(true, true);
    QWidget *later = form(true, true);
    answer = vbNo;
    EXPECT_EQ(intStdMsgBox(QStringLiteral("Sure?"), vbYesNo + vbQuestion, QStringLiteral("Check")), vbNo);
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_EQ(seen[0].owner, owner);
    EXPECT_EQ(seen[0].enabledDuring, (std::vector<bool>{false, false, false, false}));
    // Forms 0, 2 and 3 were enabled and disabled by the box; 1 was disabled before.
    EXPECT_EQ(LastDisabledFormList(), QStringLiteral("000002003"));
    EXPECT_FALSE(disabled->isEnabled());   // disabled before: stays disabled
    EXPECT_TRUE(hidden->isEnabled() && owner->isEnabled() && later->isEnabled());
}

TEST_F(GuiBoxTest, WaitsForEnterAndSpaceToComeUpWithEveryFormStillDisabled)
{
    QWidget *w = form(true, true);
    bool enterDown = false, releaseSent = false, disabledWhileWaiting = false;
    // The operator closes the box with Enter and holds it a moment. The release arrives as
    // an event, so the wait must let events run to see it.
    msgBoxPlatform().keyDown = [&](int key) { return key == 13 && enterDown; };
    duringBox = [&] {
        enterDown = true;
        QTimer::singleShot(30, [&] {
            disabledWhileWaiting = !w->isEnabled();
            releaseSent = true;
            enterDown = false;
        });
    };
    StdMsgBox(QStringLiteral("Done"), vbOKOnly, QString());
    EXPECT_TRUE(releaseSent);            // it didn't return before the release
    EXPECT_TRUE(disabledWhileWaiting);   // and nothing could be clicked meanwhile
    EXPECT_TRUE(w->isEnabled());
    // Space held is waited for too.
    duringBox = nullptr;
    int rounds = 0;
    msgBoxPlatform().keyDown = [&](int key) { return key == 32 && rounds < 5; };
    msgBoxPlatform().pump = [&] { ++rounds; };
    StdMsgBox(QStringLiteral("Done"), vbOKOnly, QString());
    EXPECT_EQ(rounds, 5);
}

// The real box: buttons, default and escape follow the flags.
TEST(PlatformBox, ButtonSetsDefaultsAndAnswers)
{
    using B = QMessageBox;
    struct Case {
        int32_t flags;
        B::StandardButton click;   // NoButton: a key instead
        Qt::Key key;
        int16_t expected;
    };
    const Case cases[] = {
        {vbOKOnly, B::NoButton, Qt::Key_Escape, vbOK},
        {vbOKCancel, B::NoButton, Qt::Key_Escape, vbCancel},
        {vbYesNo + vbDefaultButton2, B::NoButton, Qt::Key_Return, vbNo},
        {vbYesNoCancel + vbDefaultButton3, B::NoButton, Qt::Key_Return, vbCancel},
        {vbYesNoCancel, B::No, Qt::Key_unknown, vbNo},
        {vbAbortRetryIgnore + vbCritical, B::Ignore, Qt::Key_unknown, vbIgnore},
        {vbYesNo + vbDefaultButton3, B::NoButton, Qt::Key_Return, vbYes},   // no third: the first is default
    };
    for (const Case &c : cases) {
        QTimer::singleShot(0, [&] {
            for (QWidget *top : QApplication::topLevelWidgets()) {
                auto *box = qobject_cast<QMessageBox *>(top);
                if (!box || !box->isVisible())
                    continue;
                if (c.click != B::NoButton) {
                    box->button(c.click)->click();
                } else {
                    QWidget *target = box->focusWidget() ? box->focusWidget() : box;
                    QKeyEvent key(QEvent::KeyPress, c.key, Qt::NoModifier);
                    QApplication::sendEvent(target, &key);
                }
            }
        });
        EXPECT_EQ(intPlatformMsgBox(nullptr, QStringLiteral("Text\r\nline"), c.flags, QStringLiteral("T")), c.expected)
            << "flags " << c.flags;
    }
}

} // namespace
