// frmMain: the main window. One window with a menu bar, the toolbar tlbMain, the status
// bar stbStatus and a panel per screen; SetMode (frm_main_modes.cpp) decides which panel is
// up and what may be used. Built in frm_main.cpp (menus, toolbar, status bar, load and
// close), main_menu_panel.cpp and main_panels.cpp (the panels), busy.cpp (the busy book).
#pragma once

#include "core/main_panels.h"
#include "guide/method_panel.h"
#include "guide/setmill_panel.h"
#include "link/keyboard_panel.h"
#include "guide/offset_panel.h"
#include "tools/tooldatapanel.h"
#include "platform/forms.h"

#include <QMainWindow>
#include <QPixmap>

#include <map>
#include <vector>

class QAction;
class QMenu;
class QStatusBar;
class QToolBar;

class FrmMain : public QMainWindow, public Form {
    Q_OBJECT
public:
    FrmMain();
    ~FrmMain() override;

    // --- Menu bar.
    QMenu *mnuMill, *mnuTools, *mnuOptions, *mnuHelp;
    QAction *mnuMKeyboard, *mnuMMill, *mnuMsep0, *mnuMStart, *mnuMStop, *mnuMsep1, *mnuMsep2, *mnuMExit;
    std::vector<QAction *> mnuMMru;    // recent files; element 0 is the form's own, hidden while empty
    QAction *mnuTData, *mnuTOffset, *mnuTsep1, *mnuTEdit, *mnuTimport, *mnuTCalc;
    QAction *mnuOSettings;
    QAction *mnuHContents, *mnuHMachining, *mnuHBillet, *mnuHsep1, *mnuHAbout;

    // --- Toolbar: buttons found by key ("Back", "Settings", "Edit").
    QToolBar *tlbMain;
    QAction *tlbButton(const QString &strKey) const;

    // --- Status bar: panels found by key ("online", "spindle", "door", "status", "timer"),
    // and the simple state, one bold text across the bar.
    QStatusBar *stbStatus;
    QLabel *stbPanel(const QString &strKey) const;
    void stbSimpleText(const QString &strText);   // the simple state, bold
    void stbShowPanels();                         // back to the panels, font not bold
    bool stbIsSimple() const { return m_simple; }
    QString stbText() const;                      // the simple state's text

    // --- Panels, children of the client area.
    QWidget *client;
    PicMenu *picMenu;
    PicKeyboard *picKeyboard;
    PicSetMill *picSetMill;
    ToolDataPanel *picTools;
    PicMachining *picMachining;
    PicOffset *picOffset;
    PicMethod *picMethod;
    PicBilletSize *picBilletSize;
    PicHeader *picHeader;

    // --- Timers of the main window.
    QTimer *tmrShowMenu;       // 10 ms one-shot: ShowMenu with the text held in its tag
    QString tmrShowMenuTag;
    QTimer *tmrGetOffset;      // 100 ms one-shot: SetMode(7)
    QTimer *tmrStartMilling;   // 100 ms one-shot: SendToMill unless cancelled
    QTimer *tmrBook;           // 100 ms: the next page of the busy book

    // The spindle image list, 1..4.
    QPixmap ilsSpindle(int intIndex) const;

    // --- Events and procedures of the form.
    void Form_Load() override;
    bool Form_QueryUnload(int intUnloadMode) override;
    void Form_Resize();
    void Form_KeyDown(int intKeyCode, int intShift);
    void MenuAction(const QString &strAction);
    void ShowToolData();
    void tlbMain_ButtonClick(const QString &strKey);
    void txtMenu_Click(int intIndex);
    void txtMenu_GotFocus(int intIndex);
    void txtMenu_LostFocus(int intIndex);
    void txtMenu_MouseMove(int intIndex);
    void picMenu_MouseMove();
    void tmrShowMenu_Timer();
    void tmrBook_Timer();
    void mnuOSettings_Click();
    void mnuTCalc_Click();
    void mnuHAbout_Click();

    // Centres a panel in the client area (a window too small gives a negative place).
    void CentrePanel(QWidget *panel);

protected:
    void closeEvent(QCloseEvent *e) override;
    void resizeEvent(QResizeEvent *e) override;

private:
    void buildMenus();
    void buildToolbar();
    void buildStatusBar();
    void buildPanels();
    std::map<QString, QAction *> m_buttons;
    std::map<QString, QLabel *> m_panels;
    QLabel *m_simpleText = nullptr;
    bool m_simple = false;
};

// The global instance: loads frmMain on first use.
FrmMain *frmMain();
// True once frmMain is loaded (without loading it).
bool frmMainLoaded();

// The screens and modes.
void SetMode(int16_t intMode);
void ShowMenu(const QString &strFile);
void ShowMachining();

// The busy display (busy.cpp): a page-turning book on the set-up wizard's navigation
// strip and a bold status text.
void PageTurnStart(const QString &strStatus);
void PageTurnStop();
// The next frame of the book, 0..11 (frmMain's static data; not reset by a new start).
int16_t BookFrame();

// The caret of the main menu's entries. The entries draw no caret at all; these keep the
// state the activation path and the focus events set, so it can be checked.
void HideCaret();
void ShowCaret();
bool CaretShown();

// The main window's place and size in pixels from the store's "MainLeft", "MainTop",
// "MainWidth", "MainHeight" (twips; defaults 1000, 1000, 12000, 9000).
QRect StoredWindowPlace(int intTwipsPerPixel);

// The window caption of the main menu.
QString MainCaption(const QString &strFile);
