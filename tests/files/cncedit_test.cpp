// The code editor driven as the operator drives it: load, type, paste, save, the question on
// the way out, find and replace, and the check of the program in place.
#include "core/msgbox.h"
#include "core/ui_fixture.h"
#include "files/cncedit.h"
#include "files/filechoice.h"
#include "files/frmfind.h"
#include "nc/commands.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTextBlock>

#include <csignal>
#include <sys/resource.h>

namespace {

class CncEdit : public UiTest {
protected:
    void SetUp() override
    {
        UiTest::SetUp();
        ResetFind();
        main = frmMain();
        SetMode(1);
        e = frmCNCEdit();
        SetSaveDialogScript([this](const QString &title, const QString &) {
            saveTitles << title;
            return saveAnswer;
        });
        SetFileDialogScript([this](const QString &title, const QString &) {
            openTitles << title;
            return openAnswer;
        });
    }
    void TearDown() override
    {
        if (frmCNCEditLoaded())
            frmCNCEdit()->mnuFNew_Click();   // nothing to ask about on the way out
        UiTest::TearDown();
        SetSaveDialogScript({});
        SetFileDialogScript({});
    }
    QString Write(const QString &name, const QByteArray &bytes) { return WriteFile(dir.filePath(name), bytes); }
    bool dirty() const
    {
        EXPECT_EQ(e->tlbButton(QStringLiteral("Save"))->isEnabled(), e->mnuFSave->isEnabled());
        return e->tlbButton(QStringLiteral("Save"))->isEnabled();
    }
    void type(const QString &text) { e->rtbCNCEdit->textCursor().insertText(text); }
    QString lines() const { return e->stbPanel(QStringLiteral("Lines"))->text(); }
    void caretTo(int pos)
    {
        QTextCursor c = e->rtbCNCEdit->textCursor();
        c.setPosition(pos);
        e->rtbCNCEdit->setTextCursor(c);
    }

    QTemporaryDir dir;
    FrmMain *main = nullptr;
    FrmCNCEdit *e = nullptr;
    QString saveAnswer, openAnswer;
    QStringList saveTitles, openTitles;
};

const QByteArray kProgram = "%\r\n* Billet length 50\r\n* Billet width 40\r\n* Billet depth 5\r\n"
                            "N10 T1\r\nN20 S2000\r\nN30 G0 X10 Y20 Z2\r\nN40 G1 Z-0.5 F80\r\nN50 G0 Z2\r\n";

TEST_F(CncEdit, LoadTypePasteSaveKeepBytesAndDirtyState)
{
    // Loaded: the main window can't start anything.
    EXPECT_FALSE(main->mnuMill->isEnabled() || main->mnuTools->isEnabled() || main->mnuOptions->isEnabled());
    // LF-only ends, a degree sign and a no-break space (bytes 176, 160): read as they are.
    const QString path = Write(QStringLiteral("part.brx"), "%\nN10 T1 \xb0\xa0\nN20 S2000\n");
    ASSERT_TRUE(e->LoadFile(path));
    EXPECT_EQ(e->windowTitle(), QStringLiteral("Brantok Code Editor - ") + path);
    EXPECT_EQ(lines(), QStringLiteral("Line 1 of 4"));
    EXPECT_FALSE(dirty());

    e->rtbCNCEdit->moveCursor(QTextCursor::End);
    type(QStringLiteral("N30 G0 Z2"));
    EXPECT_TRUE(dirty());
    e->mnuFSave_Click();
    EXPECT_FALSE(dirty());
    EXPECT_EQ(ReadFileBytes(path), QByteArray("%\r\nN10 T1 \xb0\xa0\r\nN20 S2000\r\nN30 G0 Z2"));

    // Paste from the menu marks the text changed.
    QApplication::clipboard()->setText(QStringLiteral("N40 G1 Z-1 F80\n"));
    e->mnuEPaste_Click();
    EXPECT_TRUE(dirty());

    // New drops the change without a word.
    e->mnuFNew_Click();
    EXPECT_TRUE(boxes->shown().empty());
    EXPECT_TRUE(e->rtbCNCEdit->toPlainText().isEmpty());
}

TEST_F(CncEdit, UnsavedWorkIsAskedAboutOnEveryWayOut)
{
    const QString question = QStringLiteral("The file has not been saved; save it now?");
    // Open on a changed text, No: the text stays and no dialog appears.
    type(QStringLiteral("N10 T1"));
    boxes->answer(vbNo);
    e->mnuFOpen_Click();
    ASSERT_EQ(boxes->shown().size(), 1u);
    EXPECT_EQ(boxes->last().text, question);
    EXPECT_EQ(boxes->last().flags, 36);
    EXPECT_TRUE(openTitles.isEmpty());
    EXPECT_EQ(e->rtbCNCEdit->toPlainText(), QStringLiteral("N10 T1"));

    // Closing an untitled text: Yes opens the save dialog; cancelling it keeps the window.
    boxes->answer(vbYes);
    EXPECT_FALSE(Unload(e));
    EXPECT_EQ(saveTitles, QStringList{QStringLiteral("Save NC File As")});
    EXPECT_TRUE(gblnEditorLoaded);
    // Yes and a name: saved with CR LF, then the editor goes and the main menu comes back.
    saveAnswer = dir.filePath(QStringLiteral("new.brx"));
    boxes->answer(vbYes);
    EXPECT_TRUE(Unload(e));
    EXPECT_EQ(ReadFileBytes(saveAnswer), QByteArray("N10 T1"));
    EXPECT_TRUE(main->mnuMill->isEnabled() && main->mnuTools->isEnabled() && main->mnuOptions->isEnabled());

    // A named, changed text: No closes and drops the change; Open after Yes saves, then asks for a file.
    e = frmCNCEdit();
    ASSERT_TRUE(e->LoadFile(saveAnswer));
    type(QStringLiteral("X"));
    boxes->answer(vbYes);
    openAnswer = saveAnswer;
    e->mnuFOpen_Click();
    EXPECT_EQ(openTitles, QStringList{QStringLiteral("Select file to be edited")});
    EXPECT_EQ(ReadFileBytes(saveAnswer), QByteArray("XN10 T1"));
    // A cancelled open dialog loads nothing and keeps the text.
    openAnswer.clear();
    e->mnuFOpen_Click();
    EXPECT_EQ(e->rtbCNCEdit->toPlainText(), QStringLiteral("XN10 T1"));
    type(QStringLiteral("Y"));
    boxes->clear();
    boxes->answer(vbNo);
    EXPECT_TRUE(Unload(e));
    EXPECT_EQ(boxes->shown().size(), 1u);
    EXPECT_EQ(ReadFileBytes(saveAnswer), QByteArray("XN10 T1"));
}

TEST_F(CncEdit, FailedSaveLeavesTheOldFileWholeAndTheTextInTheEditor)
{
    const QString path = Write(QStringLiteral("part.brx"), kProgram);
    ASSERT_TRUE(e->LoadFile(path));
    // A text far beyond what the disk will take (the file-size limit stands for a full disk).
    type(QString(300 * 1024, u'X'));
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit small = old;
    small.rlim_cur = 64 * 1024;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    e->mnuFSave_Click();
    boxes->answer(vbYes);
    const bool blnUnloaded = Unload(e);   // Yes, and the save fails again: the window stays
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, SIG_DFL);

    ASSERT_GE(boxes->shown().size(), 2u);
    EXPECT_TRUE(boxes->shown()[0].text.startsWith(QStringLiteral("Cannot save file ") + path + QStringLiteral("\r\n")));
    EXPECT_FALSE(blnUnloaded);
    EXPECT_EQ(ReadFileBytes(path), kProgram);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("part.brx")});   // no leftovers
    EXPECT_TRUE(dirty());
    // A file deleted while it is open: the text is saved anew.
    QFile::remove(path);
    e->mnuFSave_Click();
    EXPECT_FALSE(dirty());
    EXPECT_TRUE(ReadFileBytes(path).startsWith(QByteArray(300 * 1024, 'X') + "%\r\n"));
}

TEST_F(CncEdit, FindWrapsIgnoresCaseAndReplaces)
{
    e->rtbCNCEdit->setPlainText(QStringLiteral("G01 X1\nN2 g01 Y2\nN3 G01"));
    auto sel = [this] { return e->rtbCNCEdit->textCursor(); };
    // A selection when the dialog opens: the first Find Next goes to the hit after it.
    QTextCursor c = sel();
    c.setPosition(0);
    c.setPosition(3, QTextCursor::KeepAnchor);
    e->rtbCNCEdit->setTextCursor(c);
    FrmFind *f = frmFind();
    EXPECT_EQ(f->txtFind->text(), QStringLiteral("G01"));
    std::vector<int> hits;
    for (int i = 0; i < 4; ++i) {
        f->cmdFind_Click();
        hits.push_back(sel().selectionStart());
    }
    EXPECT_EQ(hits, (std::vector<int>{10, 20, 0, 10}));   // "g01" too, then round to the top
    // Replace: the selected hit goes, the next one is selected.
    f->txtReplace->setText(QStringLiteral("G1"));
    f->cmdReplace_Click();
    EXPECT_EQ(e->rtbCNCEdit->toPlainText(), QStringLiteral("G01 X1\nN2 G1 Y2\nN3 G01"));
    EXPECT_EQ(sel().selectionStart(), 19);
    // Replace All, both spellings, one step to undo.
    const QString before = e->rtbCNCEdit->toPlainText();
    f->cmdReplaceAll_Click();
    EXPECT_EQ(e->rtbCNCEdit->toPlainText(), QStringLiteral("G1 X1\nN2 G1 Y2\nN3 G1"));
    e->rtbCNCEdit->undo();
    EXPECT_EQ(e->rtbCNCEdit->toPlainText(), before);
    // The program losing the foreground takes the dialog away; Find Next still knows the text.
    CodeEditorDeactivated();
    EXPECT_FALSE(frmFindLoaded());
    e->mnuEFindNext_Click();
    EXPECT_EQ(sel().selectedText().toUpper(), QStringLiteral("G01"));
}

TEST_F(CncEdit, CheckReadsTheTextAsMillingWouldAndShowsTheFault)
{
    addTool(1);
    gsngRapidSpeed = 500.0f;
    gstrNCFile = QStringLiteral("/work/part being milled.brx");
    struct Case {
        QByteArray text;
        int line;             // the caret's line from 1, 0: not moved
        const char *message;  // start of the box's text
        int32_t flags;
    } cases[] = {
        {kProgram, 0, "The program reads cleanly.\r\n\r\nCommands: 5\r\nTools used: 1\r\nBillet: length 50.000 mm, width 40.000 mm, depth 5.000 mm", vbInformation},
        {kProgram + "N60 G1 X5 Q7\r\n", 10, "Line 10:\r\nN60 G1 X5 Q7\r\nhas an unrecognised character (Q).", vbExclamation},
        {"%\r\nN10 T1\r\nN20 S2000\r\nN30 G0 X1\r\n", 0, "This file cannot be processed as it does not contain\r\nany G-codes", vbExclamation},
    };
    for (const Case &k : cases) {
        e->rtbCNCEdit->setPlainText(QString::fromLatin1(k.text).remove(u'\r'));
        caretTo(0);
        boxes->clear();
        e->mnuECheck_Click();
        ASSERT_EQ(boxes->shown().size(), 1u) << k.message;
        EXPECT_TRUE(boxes->last().text.startsWith(QString::fromLatin1(k.message))) << boxes->last().text.toStdString();
        EXPECT_EQ(boxes->last().flags, k.flags);
        const QTextCursor c = e->rtbCNCEdit->textCursor();
        EXPECT_EQ(c.block().blockNumber() + 1, k.line == 0 ? 1 : k.line) << k.message;
        if (k.line > 0) {
            EXPECT_EQ(c.selectedText(), c.block().text());
        }
        // The check leaves the program's reading state as it was, and the editor usable.
        EXPECT_EQ(gstrNCFile, QStringLiteral("/work/part being milled.brx"));
        EXPECT_EQ(glngCommandCount, 0);
    }
    // A fault the reader leaves to the error trap: the report, and the editor keeps its text.
    e->rtbCNCEdit->setPlainText(QStringLiteral("%\nN10 S2000\nN20 T1\n"));
    boxes->clear();
    e->mnuECheck_Click();
    ASSERT_EQ(boxes->shown().size(), 1u);
    EXPECT_TRUE(boxes->last().text.startsWith(QStringLiteral("An error has occurred in Brantok")));
    EXPECT_EQ(e->rtbCNCEdit->toPlainText(), QStringLiteral("%\nN10 S2000\nN20 T1\n"));
}

} // namespace
