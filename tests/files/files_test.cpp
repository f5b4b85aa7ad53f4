// The recent-files list, the open dialog (scripted and the real one, headless) and the start
// of work on a file, driven through the main window as the operator meets them.
#include "core/msgbox.h"
#include "core/store.h"
#include "core/ui_fixture.h"
#include "files/file_dialog.h"
#include "files/filechoice.h"
#include "files/import.h"
#include "files/recent.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTemporaryDir>
#include <QTimer>

namespace {

QString SampleFolderOrHome() { return QFileInfo(SampleFolder()).isDir() ? SampleFolder() : QDir::homePath(); }

class FilesTest : public UiTest {
protected:
    void TearDown() override
    {
        SetFileDialogScript({});
        MRUDetachEditorMenu();
        UiTest::TearDown();
    }
    // A file in the test's folder; an NC file with a two-line header unless told.
    QString File(const QString &name, const QByteArray &bytes = "%\r\n* Billet length 50\r\n* Sample\r\nN10 T1\r\n")
    {
        return WriteFile(dir.filePath(name), bytes);
    }
    static QStringList Captions()
    {
        QStringList l;
        for (int i = 0; i < gintMRUCount; ++i)
            l << frmMain()->mnuMMru[static_cast<size_t>(i)]->text();
        return l;
    }
    QTemporaryDir dir;
};

TEST_F(FilesTest, RecentListKeepsFourMostRecentFirstIgnoringCase)
{
    for (const char *f : {"/w/a.brx", "/w/b.brx", "/w/c.brx", "/w/A.BRX", "/w/d.brx", "/w/e.brx"})
        MRUAddItem(QString::fromLatin1(f));
    // "A.BRX" was "a.brx" in a new spelling; the fifth distinct file pushes out the oldest.
    EXPECT_EQ(Captions(), QStringList({"&1 /w/e.brx", "&2 /w/d.brx", "&3 /w/A.BRX", "&4 /w/c.brx"}));
    MRUAddItem(QStringLiteral("/w/e.brx"));   // already first: nothing moves
    MRURemoveItem(QStringLiteral("/W/D.brx"));
    EXPECT_EQ(Captions(), QStringList({"&1 /w/e.brx", "&2 /w/A.BRX", "&3 /w/c.brx"}));
    for (const char *f : {"/w/e.brx", "/w/A.BRX", "/w/c.brx"})
        MRURemoveItem(QString::fromLatin1(f));
    // The form's own element stays, hidden and empty, for the next file.
    EXPECT_EQ(gintMRUCount, 0);
    ASSERT_EQ(frmMain()->mnuMMru.size(), 1u);
    EXPECT_FALSE(frmMain()->mnuMMru[0]->isVisible());
    MRUAddItem(QStringLiteral("/w/&x.brx"));
    EXPECT_EQ(Captions(), QStringList({"&1 /w/&&x.brx"}));
    EXPECT_EQ(frmMain()->mnuMMru[0]->data().toString(), QStringLiteral("/w/&x.brx"));
}

TEST_F(FilesTest, StoredListComesBackAndALastRemovedEntryLingers)
{
    store->writeRaw("[General]\nMRUFile00=/w/1.brx\nMRUFile01=/w/2.brx\nMRUFile02=/w/3.brx\n"
                    "MRUFile03=/w/4.brx\nMRUFile04=/w/5.brx\n");
    MRUGetFileList();
    EXPECT_EQ(Captions(), QStringList({"&1 /w/1.brx", "&2 /w/2.brx", "&3 /w/3.brx", "&4 /w/4.brx"}));
    MRURemoveItem(QStringLiteral("/w/4.brx"));
    MRUSaveFileList();
    UnloadEveryForm();
    gintMRUCount = 0;
    MRUGetFileList();   // nothing was written over MRUFile03: the removed file is back
    EXPECT_EQ(Captions(), QStringList({"&1 /w/1.brx", "&2 /w/2.brx", "&3 /w/3.brx", "&4 /w/4.brx"}));
}

TEST_F(FilesTest, EditorMenuMirrorsTheMainMenu)
{
    QMenu file;
    QAction *exit = file.addAction(QStringLiteral("E&xit"));
    static int clicked = -1;
    MRUAddItem(QStringLiteral("/w/a.brx"));
    MRUAddItem(QStringLiteral("/w/b.brx"));
    MRUAttachEditorMenu(&file, exit, [](int i) { clicked = i; });
    MRUSetEditingMenu();
    auto mirror = [&] {
        QStringList l;
        for (QAction *a : file.actions())
            if (a != exit && a->isVisible())
                l << a->text();
        return l;
    };
    EXPECT_EQ(mirror(), Captions());
    MRUAddItem(QStringLiteral("/w/c.brx"));
    MRURemoveItem(QStringLiteral("/w/a.brx"));
    EXPECT_EQ(mirror(), QStringList({"&1 /w/c.brx", "&2 /w/b.brx"}));
    file.actions().at(1)->trigger();
    EXPECT_EQ(clicked, 1);
    MRUDetachEditorMenu();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(file.actions().size(), 1);
}

TEST_F(FilesTest, ScriptedChoiceRecordsFolderAndRecentFile)
{
    const QString part = File(QStringLiteral("Teil Ä 1.brx"));
    QStringList asked;
    QString answer = part;
    SetFileDialogScript([&](const QString &title, const QString &start) {
        asked << title + u'|' + start;
        return std::exchange(answer, QString());
    });
    EXPECT_EQ(strGetFile(QStringLiteral("Select file to be edited")), part);
    EXPECT_EQ(StoredText("CNC File Path"), dir.path());
    EXPECT_EQ(Captions(), QStringList({"&1 " + part}));
    EXPECT_FALSE(gblnAnalysedToTemp);
    // Cancel: nothing chosen, nothing changed; the dialog starts where the last file was.
    EXPECT_EQ(strGetFile(QStringLiteral("Open")), QString());
    EXPECT_EQ(asked, QStringList({"Select file to be edited|" + SampleFolderOrHome(), "Open|" + dir.path()}));
    // A path over 200 characters is refused with a message, and the dialog comes again.
    answer = dir.path() + u'/' + QString(200, u'x') + QStringLiteral(".brx");
    EXPECT_EQ(strGetFile(QStringLiteral("Open")), QString());
    ASSERT_EQ(boxes->shown().size(), 1u);
    EXPECT_TRUE(boxes->last().text.startsWith(QStringLiteral("The path of this file is longer than 200 characters")));
    EXPECT_EQ(gintMRUCount, 1);
}

// The real dialog, headless: the header follows the cursor; a recent file picked in the
// panel brings the dialog back in its folder with it selected; Cancel returns "".
TEST_F(FilesTest, RealDialogShowsTheHeaderUnderTheCursor)
{
    const QString first = File(QStringLiteral("a.brx"));
    File(QStringLiteral("b.brx"), "%\r\n* Second part\r\n");
    QDir(dir.path()).mkdir(QStringLiteral("sub"));
    QTemporaryDir other;
    const QString recent = other.path() + QStringLiteral("/r.cnc");
    QFile(first).copy(recent);
    MRUAddItem(recent);
    RegistryValuePut(QStringLiteral("CNC File Path"), dir.path());
    QStringList headers;
    QStringList folders;
    int round = 0;
    int ticks = 0;
    QTimer driver;
    driver.setInterval(20);
    QObject::connect(&driver, &QTimer::timeout, [&] {
        auto *d = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!d)
            return;
        auto *view = d->findChild<QAbstractItemView *>(QStringLiteral("listView"));
        if (++ticks > 250) {   // 5 s: fail instead of hanging
            ADD_FAILURE() << "the dialog's folder never showed";
            d->reject();
            return;
        }
        if (!view || view->model()->rowCount(view->rootIndex()) < (round == 0 ? 3 : 1))
            return;   // the folder is still being read
        folders << d->directory().absolutePath();
        if (round++ == 0) {
            view->setFocus();
            for (const char *name : {"b.brx", "sub", "a.brx"}) {
                const QModelIndexList found = view->model()->match(view->model()->index(0, 0, view->rootIndex()),
                                                                   Qt::DisplayRole, QString::fromLatin1(name));
                ASSERT_EQ(found.size(), 1) << name;
                view->setCurrentIndex(found.first());
                headers << frmControls()->rtbHeader->toPlainText();
            }
            QComboBox *cbo = frmControls()->cboMRU;
            ASSERT_EQ(cbo->count(), 1);
            EXPECT_EQ(cbo->itemText(0), QStringLiteral("r.cnc"));
            emit cbo->activated(0);
        } else {
            headers << frmControls()->rtbHeader->toPlainText();
            EXPECT_EQ(d->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->text(), QStringLiteral("r.cnc"));
            d->reject();
        }
    });
    driver.start();
    EXPECT_EQ(strGetFile(QStringLiteral("Select NC file")), QString());
    driver.stop();
    // The folder changes nothing; in the second showing the picked file's header at once.
    const QString a = QStringLiteral(" Billet length 50\n Sample\n");
    EXPECT_EQ(headers, QStringList({" Second part\n", " Second part\n", a, a}));
    EXPECT_EQ(folders, QStringList({dir.path(), other.path()}));
    EXPECT_EQ(Captions(), QStringList({"&1 " + recent}));   // unchanged until a file is accepted
}

TEST_F(FilesTest, HeaderPreviewOfOddFiles)
{
    QByteArray longHeader = "%\n";
    for (int i = 0; i < 10000; ++i)
        longHeader += "* line\n";
    const struct {
        QString path;
        int lines;        // lines in the header box afterwards
        QString first;    // its first line
    } cases[] = {
        {File(QStringLiteral("long.brx"), longHeader), 10001, QStringLiteral(" line")},
        {dir.path() + QStringLiteral("/gone.brx"), 10001, QStringLiteral(" line")},   // nothing changes
        {dir.path(), 10001, QStringLiteral(" line")},
        {File(QStringLiteral("zeros.img"), QByteArray(1 << 20, '\0')), 1, QStringLiteral("*** NOT A Brantok FILE ***")},
        {File(QStringLiteral("bin.dat"), QByteArray("\x7f\x45\x4c\x46\x02\n\x01\x01", 8)), 1,
         QStringLiteral("*** NOT A Brantok FILE ***")},
    };
    QPlainTextEdit *box = frmControls()->rtbHeader;
    for (const auto &c : cases) {
        dlgFiles_FileBrowse(c.path);
        EXPECT_EQ(box->document()->blockCount(), c.lines) << c.path.toStdString();
        EXPECT_EQ(box->document()->firstBlock().text(), c.first) << c.path.toStdString();
    }
}

TEST_F(FilesTest, LaunchFileAsksForAMissingFileThenGivesItUp)
{
    const QString part = File(QStringLiteral("part.brx"));
    const QString gone = dir.path() + QStringLiteral("/gone.brx");
    MRUAddItem(gone);
    MRUAddItem(part);
    boxes->answer(vbRetry);
    boxes->answer(vbCancel);
    mnuMMru_Click(1);
    ASSERT_EQ(boxes->shown().size(), 2u);
    EXPECT_EQ(boxes->last().text, "Cannot find file " + gone);
    EXPECT_EQ(boxes->last().title, QStringLiteral("File not found"));
    EXPECT_EQ(boxes->last().flags, vbRetryCancel + vbExclamation);
    EXPECT_EQ(Captions(), QStringList({"&1 " + part}));
    // An existing file: the set-up wizard's reading step reads it (the entry's "Done" tag is
    // used up on the way in); its T1 isn't in the empty tool table, so the reader refuses it
    // and the menu comes back. The file stands first on the list.
    frmMain()->picKeyboard->cmdDoneTag.clear();
    LaunchFile(part, 0);
    EXPECT_EQ(gstrMillFile, part);
    EXPECT_EQ(gstrHeader, QStringLiteral(" Billet length 50\r\n Sample\r\n"));
    EXPECT_EQ(gintSetStep, 8);
    EXPECT_EQ(gintMode, 1);
    EXPECT_TRUE(frmMain()->picKeyboard->cmdDoneTag.isEmpty());
    EXPECT_EQ(boxes->shown().size(), 2u);
}

} // namespace

namespace {

class ImportTest : public FilesTest {
protected:
    void TearDown() override
    {
        SetCopyFaultAfter(-1);
        FilesTest::TearDown();
    }
    // The open dialog answers the source, the save dialog the target each time it is shown.
    void Answer(const QString &source, QStringList targets)
    {
        SetFileDialogScript([source, targets](const QString &title, const QString &) mutable {
            if (title == QLatin1String("Select file to import"))
                return source;
            return targets.isEmpty() ? QString() : targets.takeFirst();
        });
    }
    QTemporaryDir stick;
};

TEST_F(ImportTest, AnExistingNameIsAskedAboutBeforeItIsReplaced)
{
    const QString source = stick.path() + QStringLiteral("/part.txt");
    QFile::copy(File(QStringLiteral("x")), source);
    const QString target = File(QStringLiteral("part.brx"), "old");
    Answer(source, {target, QString()});
    boxes->answer(vbNo);   // No: the save dialog again, then Cancel
    mnuTimport_Click();
    EXPECT_EQ(ReadFileBytes(target), QByteArray("old"));
    ASSERT_EQ(boxes->shown().size(), 1u);
    EXPECT_EQ(boxes->last().text, target + QStringLiteral(" already exists.\r\nDo you want to replace it?"));
    EXPECT_EQ(boxes->last().flags, vbYesNo + vbExclamation);
    EXPECT_EQ(boxes->last().title, QStringLiteral("Save NC File As"));
    Answer(source, {target});
    boxes->answer(vbYes);
    mnuTimport_Click();
    EXPECT_EQ(ReadFileBytes(target), ReadFileBytes(source));
    EXPECT_EQ(StoredText("CNC File Import"), stick.path());
    EXPECT_EQ(StoredText("CNC File Path"), dir.path());
    EXPECT_FALSE(QApplication::overrideCursor());
}

TEST_F(ImportTest, ACopyThatFailsHalfWayLeavesTheTargetAndEndsInTheTrap)
{
    const QString source = stick.path() + QStringLiteral("/big.brx");
    QFile big(source);
    ASSERT_TRUE(big.open(QIODevice::WriteOnly));
    big.write(QByteArray(300 * 1024, 'N'));
    big.close();
    const QString target = File(QStringLiteral("big.brx"), "old");
    Answer(source, {target});
    SetCopyFaultAfter(100 * 1024);   // the stick pulled after 100 KiB
    EXPECT_EQ(TrapReport(mnuTimport_Click),
              ExpectedTrap("frmCopy", "Form_Activate", 57, QStringLiteral("Device I/O error")));
    EXPECT_EQ(ReadFileBytes(target), QByteArray("old"));
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList({"big.brx"}));   // no temporary file left
}

} // namespace
