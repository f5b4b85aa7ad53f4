// The main window's screens and modes: what each mode shows and lets the operator use.
#include "core/artwork.h"
#include "core/frm_about.h"
#include "core/frm_splash.h"
#include "core/msgbox.h"
#include "core/window_hook.h"
#include "link/keycontrol.h"
#include "ui_fixture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QGroupBox>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <QMouseEvent>
#include <QProgressBar>
#include <QTextEdit>

namespace {

void Send(QObject *to, QEvent::Type type, int key)
{
    QKeyEvent e(type, key, Qt::NoModifier);
    QCoreApplication::sendEvent(to, &e);
}

// Every text the operator sees on a window: its caption, the menu bar's titles, and the
// visible labels, buttons, group titles and text boxes, as plain text without mnemonics.
QStringList TextsOnScreen(QWidget *window)
{
    auto plain = [](QString t) {
        if (Qt::mightBeRichText(t)) {
            QTextDocument doc;
            doc.setHtml(t);
            t = doc.toPlainText();
        }
        return t.remove(u'&');
    };
    QStringList texts{window->windowTitle()};
    if (auto *main = qobject_cast<QMainWindow *>(window))
        for (QAction *a : main->menuBar()->actions())
            texts << plain(a->text());
    for (QWidget *w : window->findChildren<QWidget *>()) {
        if (!w->isVisible())
            continue;
        if (auto *l = qobject_cast<QLabel *>(w))
            texts << plain(l->text());
        else if (auto *b = qobject_cast<QAbstractButton *>(w))
            texts << plain(b->text());
        else if (auto *g = qobject_cast<QGroupBox *>(w))
            texts << plain(g->title());
        else if (auto *t = qobject_cast<QTextEdit *>(w))
            texts << t->toPlainText();
        else if (auto *p = qobject_cast<QPlainTextEdit *>(w))
            texts << p->toPlainText();
    }
    texts.removeAll(QString());
    return texts;
}

// What a screen reader can read of a window: every name and value in its accessibility tree.
QStringList TextsInTree(QAccessibleInterface *a, int depth = 0)
{
    if (!a || depth > 50)
        return {};
    QStringList texts{a->text(QAccessible::Name), a->text(QAccessible::Value)};
    for (int i = 0; i < a->childCount(); ++i)
        texts << TextsInTree(a->child(i), depth + 1);
    return texts;
}

void Mouse(QObject *to, QEvent::Type type, Qt::MouseButton button, QPointF at = QPointF(5, 5))
{
    QMouseEvent e(type, at, at, button, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(to, &e);
}

class MainWindow : public UiTest {
protected:
    void SetUp() override
    {
        UiTest::SetUp();
        f = frmMain();
    }
    // The object names of the widgets/actions that pass `on`, space separated.
    template <typename T, typename Pred>
    static std::string names(std::initializer_list<T *> items, Pred on)
    {
        std::string s;
        for (T *w : items)
            if (on(w))
                s += (s.empty() ? "" : " ") + w->objectName().toStdString();
        return s;
    }
    std::string panelsUp() const
    {
        return names<QWidget>({f->picMenu, f->picKeyboard, f->picSetMill, f->picTools, f->picMachining, f->picOffset,
                               f->picMethod, f->picBilletSize},
                              [](QWidget *w) { return !w->isHidden(); });
    }
    // The entries of the Mill, Tools and Options menus that SetMode switches, enabled ones.
    std::string entriesEnabled() const
    {
        return names<QAction>({f->mnuMKeyboard, f->mnuMMill, f->mnuMStart, f->mnuMStop, f->mnuTData, f->mnuTOffset,
                               f->mnuTEdit, f->mnuTimport, f->mnuOSettings},
                              [](QAction *a) { return a->isEnabled(); });
    }
    std::string buttons() const
    {
        std::string s;
        for (const char *k : {"Back", "Settings", "Edit"})
            s += f->tlbButton(QString::fromLatin1(k))->isEnabled() ? '1' : '0';
        return s;
    }
    std::string colours() const
    {
        std::string s;
        for (MenuEntry *e : f->picMenu->txtMenu)
            s += e->foreColor() == kMenuRed ? 'R' : e->foreColor() == kMenuBlue ? 'B' : '?';
        return s;
    }
    FrmMain *f = nullptr;
};

TEST_F(MainWindow, EachModeShowsItsPanelAndEnablesWhatItAllows)
{
    struct Case {
        int16_t mode;
        const char *panels, *buttons /* Back, Settings, Edit */, *entries;
    };
    const Case cases[] = {
        {1, "picMenu", "011", "mnuMKeyboard mnuMMill mnuTData mnuTOffset mnuTEdit mnuTimport mnuOSettings"},
        {2, "picKeyboard", "100", "mnuMStart"},
        {3, "picSetMill", "100", ""},
        {4, "", "100", ""},
        {5, "picTools", "100", ""},
        {6, "picMachining", "000", ""},
        {7, "picOffset", "100", ""},
        {8, "picMethod", "100", ""},
        {9, "", "100", ""},
        {-1, "", "100", ""},
    };
    for (const Case &c : cases) {
        SetMode(1);   // from the menu, where the most is on
        f->picBilletSize->show();
        SetMode(c.mode);
        EXPECT_EQ(gintMode, c.mode);
        EXPECT_EQ(panelsUp(), c.panels) << "mode " << c.mode;
        EXPECT_EQ(buttons(), c.buttons) << "mode " << c.mode;
        EXPECT_EQ(entriesEnabled(), c.entries) << "mode " << c.mode;
        // Never switched off: Exit, the calculator and the whole Help menu.
        for (QAction *a : {f->mnuMExit, f->mnuTCalc, f->mnuHContents, f->mnuHMachining, f->mnuHBillet, f->mnuHAbout})
            EXPECT_TRUE(a->isEnabled()) << a->objectName().toStdString() << " mode " << c.mode;
    }
}

TEST_F(MainWindow, ManualScreenOffersSpindleStartOnlyWithTheDoorShut)
{
    gblnDoorOpen = true;
    SetMode(2);
    EXPECT_FALSE(f->mnuMStart->isEnabled());
    gblnDoorOpen = false;
    f->picKeyboard->picStartText->hide();   // the free screen without spindle controls
    SetMode(2);
    EXPECT_FALSE(f->mnuMStart->isEnabled());
    f->picKeyboard->picStartText->show();
    SetMode(2);
    EXPECT_TRUE(f->mnuMStart->isEnabled());
}

TEST_F(MainWindow, MainMenuClearsThePartFlagsTheStatusBarAndHiddenTools)
{
    gblnNewPart = gblnRepeatPart = true;
    f->stbPanel(QStringLiteral("status"))->setText(QStringLiteral("Machining"));
    f->stbPanel(QStringLiteral("timer"))->setText(QStringLiteral("00:01:02"));
    f->stbSimpleText(QStringLiteral("Reading CNC file"));
    f->picMenu->setEnabled(false);
    f->picMenu->txtMenu[2]->setForeColor(kMenuRed);
    SetMode(1);
    EXPECT_FALSE(gblnNewPart || gblnRepeatPart);
    EXPECT_TRUE(f->stbPanel(QStringLiteral("status"))->text().isEmpty());
    EXPECT_TRUE(f->stbPanel(QStringLiteral("timer"))->text().isEmpty());
    EXPECT_FALSE(f->stbIsSimple());
    EXPECT_TRUE(f->picMenu->isEnabled());
    EXPECT_EQ(colours(), "BBBBBB");
    // ShowMenu also shows every tool again.
    addTool(1);
    addTool(2);
    gtypTools(2).blnHide = true;
    ShowMenu(QString());
    EXPECT_FALSE(gtypTools(2).blnHide);
}

TEST_F(MainWindow, MachiningModeShowsTheHeaderAndAnEmptyProgram)
{
    gstrHeader = QStringLiteral("* Billet 50 x 40 x 10\r\n");
    f->picMachining->rtbMillCode->setPlainText(QStringLiteral("N10 G00 X0"));
    f->picMachining->pgbMillProg->setValue(40);
    ShowMachining();
    EXPECT_EQ(gintMode, 6);
    EXPECT_EQ(f->picMachining->txtMillHeader->toPlainText(), QStringLiteral("* Billet 50 x 40 x 10\n"));
    EXPECT_TRUE(f->picMachining->rtbMillCode->toPlainText().isEmpty());
    EXPECT_EQ(f->picMachining->pgbMillProg->value(), 0);
}

TEST_F(MainWindow, MenuActionsWithAndWithoutTools)
{
    // No tools: Mill and Offsets ask for one and open the tool screen; Enter on a focused entry acts too.
    f->show();
    for (const char *action : {"Mill", "Offsets", "Enter"}) {
        ShowMenu(QString());
        boxes->clear();
        if (*action == 'E') {
            f->picMenu->txtMenu[0]->setFocus();
            Send(f->focusWidget(), QEvent::KeyPress, Qt::Key_Tab);
            ASSERT_EQ(f->focusWidget(), f->picMenu->txtMenu[1]);   // "Mill"
            Send(f->picMenu->txtMenu[1], QEvent::KeyRelease, Qt::Key_Return);
        } else {
            f->MenuAction(QString::fromLatin1(action));
        }
        ASSERT_EQ(boxes->shown().size(), 1u) << action;
        EXPECT_EQ(boxes->last().text, QStringLiteral("Please define at least one Tool"));
        EXPECT_EQ(boxes->last().title, QStringLiteral("Tool Data"));
        EXPECT_EQ(boxes->last().flags, vbCritical);
        EXPECT_EQ(gintMode, 5) << action;
    }
    // With a tool: Mill enters the set-up wizard, Offsets leaves it.
    SetMode(1);
    addTool(1);
    boxes->clear();
    gblnCancel = true;
    f->MenuAction(QStringLiteral("Mill"));
    EXPECT_TRUE(boxes->shown().empty());
    EXPECT_EQ(gintMode, 3);
    EXPECT_TRUE(gblnSetupWizard);
    EXPECT_FALSE(gblnCancel);
    EXPECT_EQ(f->picKeyboard->cmdDoneTag, QStringLiteral("Done"));
    f->MenuAction(QStringLiteral("Offsets"));
    EXPECT_EQ(gintMode, 7);
    EXPECT_FALSE(gblnSetupWizard);
    EXPECT_EQ(gintOffsetTool, 0);
    // Clicking an entry acts on its tag; the tool screen's Ok stores the table.
    ShowMenu(QString());
    Mouse(f->picMenu->txtMenu[2], QEvent::MouseButtonRelease, Qt::LeftButton);
    EXPECT_EQ(gintMode, 5);   // "ToolData"
    f->picTools->cmdOk->click();
    EXPECT_EQ(gintMode, 1);
    EXPECT_TRUE(store->readRaw().contains("ToolCount=1"));
}

TEST_F(MainWindow, EscCancelsInEveryMode)
{
    f->show();
    for (int16_t mode : {1, 2, 3, 5, 6, 8, 9}) {
        SetMode(mode);
        gblnCancel = false;
        gblnKeyLoop = true;
        // The key goes to whatever control has the focus; the form sees it first.
        QWidget *target = mode == 6 ? static_cast<QWidget *>(f->picMachining->rtbMillCode)
                        : mode == 8 ? static_cast<QWidget *>(f->picMethod->cmdMethodNorm)
                                    : static_cast<QWidget *>(f->client);
        Send(target, QEvent::KeyPress, Qt::Key_Escape);
        EXPECT_TRUE(gblnCancel) << "mode " << mode;
        EXPECT_FALSE(gblnKeyLoop) << "mode " << mode;
        EXPECT_EQ(gintMode, mode);
    }
    gblnCancel = false;
    Send(f->client, QEvent::KeyPress, Qt::Key_A);   // another key changes nothing
    EXPECT_FALSE(gblnCancel);
}

TEST_F(MainWindow, ToolbarBackByMode)
{
    const std::pair<int16_t, int16_t> cases[] = {{3, 1}, {5, 1}, {7, 1}, {2, 2}, {6, 6}, {8, 8}, {9, 9}};
    for (const auto &[mode, after] : cases) {
        SetMode(mode);
        gblnKeyLoop = true;
        f->tlbMain_ButtonClick(QStringLiteral("Back"));
        EXPECT_EQ(gintMode, after) << "mode " << mode;
        EXPECT_EQ(gblnKeyLoop, mode != 2) << "mode " << mode;
    }
    f->tlbMain_ButtonClick(QStringLiteral("Open"));   // accepted, nothing happens
    EXPECT_EQ(gintMode, 9);
}

TEST_F(MainWindow, MenuEntriesAreRedUnderTheMouseOrWithTheFocus)
{
    f->show();
    ShowMenu(QString());
    Mouse(f->picMenu->txtMenu[3], QEvent::MouseMove, Qt::NoButton);
    EXPECT_EQ(colours(), "BBBRBB");
    Mouse(f->picMenu, QEvent::MouseMove, Qt::NoButton, QPointF(1, 1));
    ShowCaret();
    f->txtMenu_GotFocus(1);
    EXPECT_EQ(colours(), "BRBBBB");
    EXPECT_FALSE(CaretShown());
    f->txtMenu_LostFocus(1);
    EXPECT_EQ(colours(), "BBBBBB");
}

TEST_F(MainWindow, BusyBookTurnsAndStops)
{
    for (int i = 0; i < 12; ++i)
        EXPECT_NE(BookFrame(i).toImage(), BookFrame((i + 1) % 12).toImage()) << "frame " << i;
    SetMode(3);
    PageTurnStart(QStringLiteral("Reading CNC file"));
    QLabel *wait = f->picSetMill->imgWait;
    EXPECT_FALSE(wait->isHidden());
    EXPECT_TRUE(f->tmrBook->isActive());
    EXPECT_TRUE(f->stbIsSimple());
    EXPECT_EQ(f->stbText(), QStringLiteral("Reading CNC file"));
    const int16_t first = BookFrame();
    for (int i = 0; i < 12; ++i)
        f->tmrBook_Timer();
    EXPECT_EQ(BookFrame(), first);   // a full turn
    f->tmrBook_Timer();
    PageTurnStop();
    EXPECT_TRUE(wait->isHidden());
    EXPECT_FALSE(f->tmrBook->isActive());
    EXPECT_FALSE(f->stbIsSimple());
    EXPECT_EQ(BookFrame(), (first + 1) % 12);   // a new stretch goes on where the last stopped
    PageTurnStop();                             // harmless when not running
}

TEST_F(MainWindow, ComingBackOnTheMenuHidesTheCaretAgain)
{
    SetMode(1);
    lngWindowProc(true);
    EXPECT_TRUE(frmSplash()->tmrCaret->isActive());
    ShowCaret();
    frmSplash()->tmrCaret_Timer();
    EXPECT_FALSE(CaretShown());
    EXPECT_FALSE(frmSplash()->tmrCaret->isActive());
    SetMode(3);
    lngWindowProc(true);
    EXPECT_FALSE(frmSplash()->tmrCaret->isActive());
    lngWindowProc(false);   // the editor's find dialog: nothing loaded, nothing happens
}

} // namespace

// A screen reader, or a test driving the running program from outside, reads the window's
// content: in every mode each text the operator sees is a name or a value in the tree.
TEST_F(MainWindow, EveryTextOnScreenIsReadableThroughTheAccessibilityTree)
{
    f->show();
    ShowMenu(QStringLiteral("/parts/bracket.brx"));
    f->stbPanel(QStringLiteral("online"))->setText(QStringLiteral("Working Offline"));   // the panels are alike
    DistanceSet(0, 72);   // the manual screen's X shows "1.00"
    for (int16_t mode : {1, 2, 3, 5, 6, 7, 8}) {
        SetMode(mode);
        const QStringList seen = TextsOnScreen(f);
        // Compared without "&", which the texts on screen lose as mnemonics ("Size & Position").
        const QStringList readable =
            TextsInTree(QAccessible::queryAccessibleInterface(f)).replaceInStrings(QStringLiteral("&"), QString());
        EXPECT_TRUE(seen.contains(QStringLiteral("Brantok for the Emco F1 Mill - /parts/bracket.brx")));
        EXPECT_TRUE(seen.contains(QStringLiteral("Working Offline")));
        if (mode == 2) {
            EXPECT_TRUE(seen.contains(QStringLiteral("1.00")));
        }
        for (const QString &t : seen)
            EXPECT_TRUE(readable.contains(t)) << "mode " << mode << ": " << t.toStdString();
    }
    // The first-run notice on the about box.
    FrmAbout *about = frmAbout();
    about->picFirst->show();
    about->show();
    const QStringList seen = TextsOnScreen(about);
    const QStringList readable = TextsInTree(QAccessible::queryAccessibleInterface(about));
    EXPECT_EQ(seen.filter(QStringLiteral("As this appears to be the first time of use")).size(), 1);
    for (const QString &t : seen)
        EXPECT_TRUE(readable.contains(t)) << t.toStdString();
}
