// The correction window driven as the operator drives it: the reader finds a fault, frmEdit
// shows the file with the line in red, the operator edits and presses OK (or Cancel).
#include "core/ui_fixture.h"
#include "files/frmedit.h"
#include "nc/commands.h"
#include "nc/reader.h"

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QTimer>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>

#include <functional>

namespace {

class FrmEditTest : public UiTest {
protected:
    void SetUp() override
    {
        UiTest::SetUp();   // the rapid speed at its default, boxes scripted
        addTool(1);
        InstallFrmEditHook();
        // A window that no step of the test answers would wait forever: cancel it and fail.
        m_watchdog.setInterval(5000);
        QObject::connect(&m_watchdog, &QTimer::timeout, [] {
            if (auto *form = qobject_cast<FrmEdit *>(QApplication::activeModalWidget())) {
                ADD_FAILURE() << "frmEdit was left open";
                form->cmdCancel->click();
            }
        });
        m_watchdog.start();
    }
    void TearDown() override
    {
        m_watchdog.stop();
        UiTest::TearDown();
        ResetSharedState();
    }

    QString Write(const QByteArray &bytes) { return WriteFile(m_dir.path() + QStringLiteral("/part.brx"), bytes); }

    // Acts on the window once it is up: polls, since the reader pumps events before it shows.
    void WhenShown(std::function<void(FrmEdit *)> act)
    {
        auto *timer = new QTimer(qApp);
        timer->setInterval(5);
        QObject::connect(timer, &QTimer::timeout, [timer, act] {
            auto *form = qobject_cast<FrmEdit *>(QApplication::activeModalWidget());
            if (!form || !form->isVisible())
                return;
            timer->stop();
            timer->deleteLater();
            act(form);
        });
        timer->start();
    }

    // The set-up wizard's loop: read while the window says the file was corrected.
    int ReadLoop(const QString &file)
    {
        int reads = 0;
        gintReadResult = 2;
        while (gintReadResult == 2 && reads < 5) {
            ReadCommands(file);
            ++reads;
        }
        return reads;
    }

    QTemporaryDir m_dir;
    QTimer m_watchdog;
};

const QByteArray kFaulty = "%\r\n* Billet length 40\r\nN10 T1\r\nN20 S1000\r\nN30 G1 X1 F100 M3\r\nN40 G1 Y1\r\n";

} // namespace

TEST_F(FrmEditTest, OkSavesTheCorrectionAndTheFileIsReadAgain)
{
    const QString file = Write(kFaulty);
    bool seen = false;
    WhenShown([&](FrmEdit *form) {
        seen = true;
        EXPECT_EQ(form->txtError->toPlainText(),
                  QStringLiteral("Line 5:\nN30 G1 X1 F100 M3\nhas a command letter (M) that is not\n"
                                 "recognised by Brantok.\n"));
        // The faulty line is red and the cursor sits at its start with nothing selected.
        const QTextCursor cursor = form->rtbEdit->textCursor();
        EXPECT_EQ(cursor.block().text(), QStringLiteral("N30 G1 X1 F100 M3"));
        EXPECT_EQ(cursor.positionInBlock(), 0);
        QTextCursor probe(cursor.block());
        probe.movePosition(QTextCursor::Right);
        EXPECT_EQ(probe.charFormat().foreground().color(), QColor(255, 0, 0));

        // The operator removes the M3 and presses OK.
        QString text = form->rtbEdit->toPlainText();
        text.replace(QStringLiteral(" M3"), QString());
        form->rtbEdit->setPlainText(text);
        form->cmdOk->click();
    });
    EXPECT_EQ(ReadLoop(file), 2);
    EXPECT_TRUE(seen);
    EXPECT_EQ(glngCommandCount, 4);
    QByteArray fixed = kFaulty;
    fixed.replace(" M3", "");
    EXPECT_EQ(ReadFileBytes(file), fixed);   // CR LF kept, nothing else changed
}

TEST_F(FrmEditTest, CancelOrEscLeavesTheFileUntouched)
{
    const QString file = Write(kFaulty);
    WhenShown([](FrmEdit *form) {
        form->rtbEdit->setPlainText(QStringLiteral("changed but not saved"));
        form->cmdCancel->click();
    });
    EXPECT_EQ(ReadLoop(file), 1);
    EXPECT_EQ(gintReadResult, 1);
    EXPECT_EQ(ReadFileBytes(file), kFaulty);

    // Esc answers as Cancel too; a whole-file fault marks no line.
    Write("%\r\nN10 G1 X1\r\n");
    WhenShown([](FrmEdit *form) {
        EXPECT_EQ(form->txtError->toPlainText(),
                  QStringLiteral("This file cannot be processed as it does not contain\nany Tool definitions.\n\n"));
        EXPECT_EQ(form->rtbEdit->textCursor().position(), 0);
        QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(form, &esc);
    });
    EXPECT_EQ(ReadLoop(file), 1);
    EXPECT_EQ(gintReadResult, 1);
}

TEST_F(FrmEditTest, ASaveThatFailsKeepsTheWindowAndTheText)
{
    const QString file = Write(kFaulty);
    bool stillShown = false;
    WhenShown([&](FrmEdit *form) {
        // The folder goes away under the window (a medium taken out): OK can't save.
        QDir(m_dir.path()).removeRecursively();
        form->rtbEdit->setPlainText(QStringLiteral("%\nN10 T1\n"));
        form->cmdOk->click();
        stillShown = form->isVisible() && form->rtbEdit->toPlainText() == QStringLiteral("%\nN10 T1\n");
        form->cmdCancel->click();
    });
    ReadLoop(file);
    EXPECT_TRUE(stillShown);
    EXPECT_EQ(gintReadResult, 1);
    ASSERT_EQ(boxes->shown().size(), 1u);
    EXPECT_TRUE(boxes->last().text.startsWith(QStringLiteral("Cannot save file ") + file + QStringLiteral("\r\n")));
}

TEST_F(FrmEditTest, OkWithoutChangesKeepsEveryByteButMakesLineEndsCrLf)
{
    // Bytes above 127 (a no-break space among them), a control byte, mixed line ends.
    const QByteArray bytes = "%\n* Fr\xe4ser\xa0\xd8 6\x01\rN10 T1\r\nN20 S1000\nN30 G1 X1 K2\r\n";
    const QString file = Write(bytes);
    WhenShown([this](FrmEdit *form) {
        WhenShown([](FrmEdit *again) { again->cmdCancel->click(); });
        form->cmdOk->click();
    });
    EXPECT_EQ(ReadLoop(file), 2);   // read, Ok without change, read again, Cancel on the same fault
    EXPECT_EQ(gintReadResult, 1);
    QByteArray expected = bytes;
    expected.replace("\r\n", "\n").replace('\r', '\n').replace("\n", "\r\n");
    EXPECT_EQ(ReadFileBytes(file), expected);
}
