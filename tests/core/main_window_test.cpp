// The main window's screens and modes: what each mode shows and lets the operator use.
#include "core/artwork.h"
#include "core/frm_about.h"
#include "core/frm_settings.h"
#include "core/frm_splash.h"
#include "core/msgbox.h"
#include "core/window_hook.h"
#include "ui_fixture.h"

#include <QAction>
#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QTextEdit>
#include <QToolBar>

#include <map>
#include <set>

namespace {

class MainWindow : public UiTest {
protected:
    void SetUp() override
    {
        UiTest::SetUp();
        f = frmMain();
    }
    // The names of the panels that are up.
    std::set<QString> panelsUp() const
    {
        std::set<QString> up;
        for (QWidget *p : std::initializer_list<QWidget *>{f->picMenu, f->picKeyboard, f->picSetMill, f->picTools,
                                                          f->picMachining, f->picOffset, f->picMethod,
                                                          f->picBilletSize})
            if (!p->isHidden())
                up.insert(p->objectName());
        return up;
    }
    // The entries of the Mill, Tools and Options menus that SetMode switches, enabled ones.
    std::set<QString> entriesEnabled() const
    {
        std::set<QString> on;
        for (QAction *a : {f->mnuMKeyboard, f->mnuMMill, f->mnuMStart, f->mnuMStop, f->mnuTData, f->mnuTOffset,
                           f->mnuTEdit, f->mnuTimport, f->mnuOSettings})
            if (a->isEnabled())
                on.insert(a->objectName());
        return on;
    }
    std::string buttons() const
    {
        std::string s;
        for (const char *k : {"Back", "Settings", "Edit"})
            s += f->tlbButton(QString::fromLatin1(k))->isEnabled() ? '1' : '0';
        return s;
    }
    FrmMain *f = nullptr;
};

TEST_F(MainWindow, EachModeShowsItsPanelAndEnablesWhatItAllows)
{
    const std::set<QString> menuModeEntries = {QStringLiteral("mnuMKeyboard"), QStringLiteral("mnuMMill"),
                                               QStringLiteral("mnuTData"),     QStringLiteral("mnuTOffset"),
                                               QStringLiteral("mnuTEdit"),     QStringLiteral("mnuTimport"),
                                               QStringLiteral("mnuOSettings")};
    struct Case {
        int16_t mode;
        std::set<QString> panels;
        std::string buttons;   // Back, Settings, Edit
        std::set<QString> entries;
    };
    const Case cases[] = {
        {1, {QStringLiteral("picMenu")}, "011", menuModeEntries},
        {2, {QStringLiteral("picKeyboard")}, "100", {QStringLiteral("mnuMStart")}},
        {3, {QStringLiteral("picSetMill")}, "100", {}},
        {4, {}, "100", {}},
        {5, {QStringLiteral("picTools")}, "100", {}},
        {6, {QStringLiteral("picMachining")}, "000", {}},
        {7, {QStringLiteral("picOffset")}, "100", {}},
        {8, {QStringLiteral("picMethod")}, "100", {}},
        {9, {}, "100", {}},
        {-1, {}, "100", {}},
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
    EXPECT_TRUE(f->picHeader->isHidden());
}

TEST_F(MainWindow, MainMenuModeClearsThePartFlagsAndTheStatusBar)
{
    gblnNewPart = gblnRepeatPart = true;
    f->stbPanel(QStringLiteral("status"))->setText(QStringLiteral("Machining"));
    f->stbPanel(QStringLiteral("timer"))->setText(QStringLiteral("00:01:02"));
    f->stbSimpleText(QStringLiteral("Reading CNC file"));
    f->picMenu->setEnabled(false);
    f->picMenu->txtMenu[2]->setForeColor(kMenuRed);
    SetMode(1);
    EXPECT_FALSE(gblnNewPart);
    EXPECT_FALSE(gblnRepeatPart);
    EXPECT_TRUE(f->stbPanel(QStringLiteral("status"))->text().isEmpty());
    EXPECT_TRUE(f->stbPanel(QStringLiteral("timer"))->text().isEmpty());
    EXPECT_FALSE(f->stbIsSimple());
    EXPECT_TRUE(f->picMenu->isEnabled());
    for (MenuEntry *e : f->picMenu->txtMenu)
        EXPECT_EQ(e->foreColor(), kMenuBlue);
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
    EXPECT_FALSE(f->tlbButton(QStringLiteral("Back"))->isEnabled());
}

TEST_F(MainWindow, MillAndOffsetsWithNoToolsAskForOneAndOpenTheToolScreen)
{
    for (const char *action : {"Mill", "Offsets"}) {
        SetMode(1);
        boxes->clear();
        f->MenuAction(QString::fromLatin1(action));
        ASSERT_EQ(boxes->shown().size(), 1u) << action;
        EXPECT_EQ(boxes->last().text, QStringLiteral("Please define at least one Tool"));
        EXPECT_EQ(boxes->last().title, QStringLiteral("Tool Data"));
        EXPECT_EQ(boxes->last().flags, vbCritical);
        EXPECT_EQ(gintMode, 5) << action;
        EXPECT_FALSE(f->picTools->isHidden());
        EXPECT_FALSE(f->picTools->cmdEdit->isEnabled());
        EXPECT_FALSE(f->picTools->cmdDelete->isEnabled());
    }
}

TEST_F(MainWindow, MillWithAToolEntersTheSetUpWizard)
{
    addTool(1);
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
}

TEST_F(MainWindow, UnknownActionDoesNothing)
{
    SetMode(1);
    f->MenuAction(QStringLiteral("Open"));
    EXPECT_EQ(gintMode, 1);
    EXPECT_TRUE(boxes->shown().empty());
}

TEST_F(MainWindow, ToolScreenDoneStoresTheTableAndReturnsToTheMenu)
{
    addTool(7);
    f->MenuAction(QStringLiteral("ToolData"));
    EXPECT_EQ(gintMode, 5);
    f->picTools->cmdOk->click();
    EXPECT_EQ(gintMode, 1);
    EXPECT_EQ(store->readRaw().contains("ToolCount=1"), true);
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
        QKeyEvent esc(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(target, &esc);
        EXPECT_TRUE(gblnCancel) << "mode " << mode;
        EXPECT_FALSE(gblnKeyLoop) << "mode " << mode;
        EXPECT_EQ(gintMode, mode);
    }
    // Another key changes nothing.
    gblnCancel = false;
    QKeyEvent key(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier);
    QCoreApplication::sendEvent(f->client, &key);
    EXPECT_FALSE(gblnCancel);
}

TEST_F(MainWindow, ToolbarBackByMode)
{
    struct Case {
        int16_t mode;
        int16_t after;
    };
    for (const Case c : {Case{3, 1}, Case{5, 1}, Case{7, 1}, Case{2, 2}, Case{6, 6}, Case{8, 8}, Case{9, 9}}) {
        SetMode(c.mode);
        gblnKeyLoop = true;
        f->tlbMain_ButtonClick(QStringLiteral("Back"));
        EXPECT_EQ(gintMode, c.after) << "mode " << c.mode;
        EXPECT_EQ(gblnKeyLoop, c.mode != 2) << "mode " << c.mode;
    }
    f->tlbMain_ButtonClick(QStringLiteral("Open"));   // accepted, nothing happens
    EXPECT_EQ(gintMode, 9);
}

TEST_F(MainWindow, MenuEntriesAreRedUnderTheMouseOrWithTheFocus)
{
    f->show();
    ShowMenu(QString());
    auto colours = [&] {
        std::string s;
        for (MenuEntry *e : f->picMenu->txtMenu)
            s += e->foreColor() == kMenuRed ? 'R' : e->foreColor() == kMenuBlue ? 'B' : '?';
        return s;
    };
    EXPECT_EQ(colours(), "BBBBBB");
    QMouseEvent move(QEvent::MouseMove, QPointF(5, 5), QPointF(5, 5), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(f->picMenu->txtMenu[3], &move);
    EXPECT_EQ(colours(), "BBBRBB");
    QMouseEvent away(QEvent::MouseMove, QPointF(1, 1), QPointF(1, 1), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(f->picMenu, &away);
    EXPECT_EQ(colours(), "BBBBBB");
    ShowCaret();
    f->txtMenu_GotFocus(1);
    EXPECT_EQ(colours(), "BRBBBB");
    EXPECT_FALSE(CaretShown());
    f->txtMenu_LostFocus(1);
    EXPECT_EQ(colours(), "BBBBBB");
    // Tags and texts, in array order.
    const char *tags[] = {"Keyboard", "Mill", "ToolData", "Offsets", "Billet", "Exit"};
    const char *texts[] = {"Use the keyboard to move the tool", "Mill a part", "See the Tool Data Table",
                           "Measure the Tool Offsets", "Find out about billet size and placing", "Exit the program"};
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(f->picMenu->txtMenu[i]->tag, QString::fromLatin1(tags[i]));
        EXPECT_EQ(f->picMenu->txtMenu[i]->text(), QString::fromLatin1(texts[i]));
        EXPECT_FALSE(f->picMenu->txtMenu[i]->accessibleName().isEmpty());
    }
}

TEST_F(MainWindow, ClickingAMenuEntryActsOnItsTag)
{
    ShowMenu(QString());
    QMouseEvent release(QEvent::MouseButtonRelease, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(f->picMenu->txtMenu[2], &release);
    EXPECT_EQ(gintMode, 5);   // "ToolData"
}

TEST_F(MainWindow, MenuBarCaptionsSeparatorsAndToolbar)
{
    auto layout = [](QMenu *m) {
        QStringList out;
        for (QAction *a : m->actions())
            out << (a->isSeparator() ? QStringLiteral("-") + a->objectName() : a->text());
        return out;
    };
    EXPECT_EQ(f->mnuMill->title(), QStringLiteral("&Mill   "));
    EXPECT_EQ(layout(f->mnuMill),
              (QStringList{"Use &Keyboard to move Tool", "&Mill a Part", "-mnuMsep0", "&Start Spindle",
                           "Sto&p Spindle", "-mnuMsep1", "", "-mnuMsep2", "E&xit"}));
    EXPECT_EQ(layout(f->mnuTools), (QStringList{"Tool &Data Table", "Tool &Offsets", "-mnuTsep1", "CNC Code &Editor",
                                                "&Import File", "&Calculator"}));
    EXPECT_EQ(layout(f->mnuOptions), (QStringList{"&Settings ..."}));
    EXPECT_EQ(layout(f->mnuHelp), (QStringList{"&Contents", "&Machining with Brantok", "&Billet Size and Placing",
                                               "-mnuHsep1", "&About "}));
    EXPECT_FALSE(f->mnuMMru[0]->isVisible());
    const std::map<QString, QString> tips = {{"Back", "Return"}, {"Settings", "Settings"}, {"Edit", "Code Editor"}};
    for (const auto &[key, tip] : tips) {
        EXPECT_EQ(f->tlbButton(key)->toolTip(), tip);
        EXPECT_EQ(f->tlbMain->widgetForAction(f->tlbButton(key))->accessibleName(), tip);
    }
    for (const char *k : {"online", "spindle", "door", "status", "timer"})
        EXPECT_NE(f->stbPanel(QString::fromLatin1(k)), nullptr);
    EXPECT_EQ(f->stbPanel(QStringLiteral("timer"))->toolTip(), QStringLiteral("Milling Time (hh:mm:ss)"));
}

TEST_F(MainWindow, EveryControlHasAnAccessibleName)
{
    for (QWidget *form : std::initializer_list<QWidget *>{f, frmSplash(), frmAbout(), frmSettings()}) {
        EXPECT_FALSE(form->accessibleName().isEmpty()) << form->objectName().toStdString();
        for (QWidget *w : form->findChildren<QWidget *>()) {
            // Qt's own inner parts of compound widgets (scroll bars, viewports) carry no name
            // of ours and are named by their owners; every control we made has a name.
            if (w->objectName().startsWith(QLatin1String("qt_")) || w->objectName().isEmpty())
                continue;
            EXPECT_FALSE(w->accessibleName().isEmpty())
                << form->objectName().toStdString() << "." << w->objectName().toStdString();
        }
    }
}

TEST_F(MainWindow, ShowMenuSetsTheCaptionAndShowsEveryTool)
{
    addTool(1);
    addTool(2);
    gtypTools(2).blnHide = true;
    ShowMenu(QStringLiteral("/parts/bracket.brx"));
    EXPECT_EQ(f->windowTitle(), QStringLiteral("Brantok for the Emco F1 Mill - /parts/bracket.brx"));
    EXPECT_FALSE(gtypTools(2).blnHide);
    ShowMenu(QString());
    EXPECT_EQ(f->windowTitle(), QStringLiteral("Brantok for the Emco F1 Mill"));
    EXPECT_EQ(gintMode, 1);
}

TEST_F(MainWindow, ResizeCentresThePanelsAndPlacesTheHeader)
{
    f->show();
    f->resize(1100, 800);
    QCoreApplication::processEvents();
    QWidget *c = f->client;
    for (QWidget *p : std::initializer_list<QWidget *>{f->picMenu, f->picSetMill, f->picTools, f->picMachining}) {
        EXPECT_EQ(p->x(), (c->width() - p->width()) / 2) << p->objectName().toStdString();
        EXPECT_EQ(p->y(), (c->height() - p->height()) / 2) << p->objectName().toStdString();
    }
    const int lbl = f->picHeader->lblHeader->height();
    EXPECT_EQ(f->picHeader->x(), f->picSetMill->x() + f->picSetMill->width() + 8);
    EXPECT_EQ(f->picHeader->y(), f->picSetMill->y() - (lbl + 1));
    EXPECT_EQ(f->picHeader->rtbHeader->y(), lbl);
    // Too small: negative places, no fault.
    f->resize(200, 150);
    QCoreApplication::processEvents();
    EXPECT_LT(f->picMenu->x(), 0);
}

TEST_F(MainWindow, BusyBookTurnsAndStops)
{
    SetMode(3);
    PageTurnStart(QStringLiteral("Reading CNC file"));
    QLabel *wait = f->picSetMill->imgWait;
    EXPECT_FALSE(wait->isHidden());
    EXPECT_EQ(wait->x(), f->picSetMill->picNav->width() - BookFrame(0).width());
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
    EXPECT_TRUE(f->stbPanel(QStringLiteral("status"))->text().isEmpty());
    // A new stretch goes on where the last stopped.
    EXPECT_EQ(BookFrame(), (first + 1) % 12);
    PageTurnStop();   // harmless when not running
}

TEST(BookArt, TwelveDifferentFrames)
{
    for (int i = 0; i < 12; ++i) {
        QImage a = BookFrame(i).toImage(), b = BookFrame((i + 1) % 12).toImage();
        EXPECT_EQ(a.size(), QSize(48, 38));
        EXPECT_NE(a, b) << "frame " << i;
    }
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

namespace {
TEST_F(MainWindow, TabWalksTheMenuEntriesAndEnterActs)
{
    f->show();
    ShowMenu(QString());
    auto tab = [&] {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
        QCoreApplication::sendEvent(f->focusWidget() ? f->focusWidget() : f, &key);
    };
    f->picMenu->txtMenu[0]->setFocus();
    EXPECT_EQ(f->focusWidget(), f->picMenu->txtMenu[0]);
    tab();
    EXPECT_EQ(f->focusWidget(), f->picMenu->txtMenu[1]);
    // Enter acts when it comes up, on the entry with the focus: "Mill" with no tools.
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(f->picMenu->txtMenu[1], &release);
    ASSERT_EQ(boxes->shown().size(), 1u);
    EXPECT_EQ(boxes->last().text, QStringLiteral("Please define at least one Tool"));
}
} // namespace
