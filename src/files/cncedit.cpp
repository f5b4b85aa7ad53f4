// frmCNCEdit: construction of the menus, toolbar and status bar; load and unload; the text
// area's events, the clipboard commands and the line panel. The file commands are in
// cncedit_file.cpp, "Check Program" in editor_check.cpp, find and replace in frmfind.cpp.
#include "files/cncedit.h"

#include "core/frm_main.h"
#include "core/logger.h"
#include "files/editor_art.h"
#include "files/frmfind.h"
#include "files/recent.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QTextBlock>
#include <QTimer>
#include <QToolBar>

#ifdef BRANTOK_HAVE_XCB
#include <QtGui/qguiapplication_platform.h>
#include <xcb/xcb.h>

#include <cstdlib>
#endif

bool gblnEditorLoaded = false;

namespace {

FrmCNCEdit *g_frmCNCEdit = nullptr;

// The editor's recent-file entries call back here with the entry's index.
void mnuFMru_ClickFromMenu(int intIndex)
{
    if (g_frmCNCEdit)
        g_frmCNCEdit->mnuFMru_Click(intIndex);
}

// Caps Lock and Num Lock as the X server has them (the modifier state of the pointer query:
// Lock and Mod2). False when the platform can't tell; the panels are then shown off.
bool blnLockKeys(bool &blnCaps, bool &blnNum)
{
    blnCaps = blnNum = false;
#ifdef BRANTOK_HAVE_XCB
    if (QGuiApplication::platformName() != QLatin1String("xcb"))
        return false;
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return false;
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    if (!screen)
        return false;
    xcb_query_pointer_reply_t *reply =
        xcb_query_pointer_reply(connection, xcb_query_pointer(connection, screen->root), nullptr);
    if (!reply)
        return false;
    blnCaps = (reply->mask & XCB_MOD_MASK_LOCK) != 0;
    blnNum = (reply->mask & XCB_MOD_MASK_2) != 0;
    std::free(reply);
    return true;
#else
    return false;
#endif
}

} // namespace

FrmCNCEdit *frmCNCEdit() { return FormInstance(g_frmCNCEdit); }
bool frmCNCEditLoaded() { return g_frmCNCEdit != nullptr; }

FrmCNCEdit::FrmCNCEdit()
    : QMainWindow(frmMainLoaded() ? frmMain() : nullptr, Qt::Window)
{
    // A window of its own that stays in front of the main window (its owner); the file
    // dialogs are its children and so come in front of it.
    setObjectName(QStringLiteral("frmCNCEdit"));
    setAttribute(Qt::WA_DeleteOnClose, false);
    rtbCNCEdit = new QPlainTextEdit(this);
    rtbCNCEdit->setObjectName(QStringLiteral("rtbCNCEdit"));
    rtbCNCEdit->setAccessibleName(QStringLiteral("NC program text"));
    rtbCNCEdit->setLineWrapMode(QPlainTextEdit::NoWrap);
    rtbCNCEdit->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    // Undo may hold every edit of a long session; the text itself is the only limit.
    rtbCNCEdit->document()->setUndoRedoEnabled(true);
    setCentralWidget(rtbCNCEdit);   // fills the form between the toolbar and the status bar
    buildMenus();
    buildToolbar();
    buildStatusBar();

    connect(rtbCNCEdit, &QPlainTextEdit::textChanged, this, [this] { rtbCNCEdit_Change(); });
    connect(rtbCNCEdit, &QPlainTextEdit::selectionChanged, this, [this] { rtbCNCEdit_SelChange(); });
    rtbCNCEdit->installEventFilter(this);
    rtbCNCEdit->viewport()->installEventFilter(this);
    // The lock keys may change while another window has the keys (a box, the file dialog):
    // the panels look again a few times a second.
    tmrKeys = new QTimer(this);
    tmrKeys->setInterval(300);
    connect(tmrKeys, &QTimer::timeout, this, [this] { ShowKeyPanels(); });
    resize(760, 560);
}

FrmCNCEdit::~FrmCNCEdit()
{
    if (g_frmCNCEdit == this)
        g_frmCNCEdit = nullptr;
}

void FrmCNCEdit::buildMenus()
{
    auto entry = [this](QMenu *menu, const char *name, const QString &caption, void (FrmCNCEdit::*click)()) {
        QAction *a = menu->addAction(caption);
        a->setObjectName(QString::fromLatin1(name));
        connect(a, &QAction::triggered, this, [this, click] { (this->*click)(); });
        return a;
    };
    auto separator = [](QMenu *menu, const char *name) {
        QAction *a = menu->addSeparator();
        a->setObjectName(QString::fromLatin1(name));
        return a;
    };
    QMenuBar *bar = menuBar();
    mnuFile = bar->addMenu(QStringLiteral("&File"));
    mnuFile->setObjectName(QStringLiteral("mnuFile"));
    mnuFNew = entry(mnuFile, "mnuFNew", QStringLiteral("&New"), &FrmCNCEdit::mnuFNew_Click);
    mnuFOpen = entry(mnuFile, "mnuFOpen", QStringLiteral("&Open"), &FrmCNCEdit::mnuFOpen_Click);
    mnuFSave = entry(mnuFile, "mnuFSave", QStringLiteral("&Save"), &FrmCNCEdit::mnuFSave_Click);
    mnuFSaveAs = entry(mnuFile, "mnuFSaveAs", QStringLiteral("Save &As ..."), &FrmCNCEdit::mnuFSaveAs_Click);
    mnuFsep1 = separator(mnuFile, "mnuFsep1");
    // The recent-file entries (mnuFMru) stand here, put in by the recent-files list.
    mnuFsep2 = separator(mnuFile, "mnuFsep2");
    mnuFExit = entry(mnuFile, "mnuFExit", QStringLiteral("E&xit"), &FrmCNCEdit::mnuFExit_Click);

    mnuEdit = bar->addMenu(QStringLiteral("&Edit"));
    mnuEdit->setObjectName(QStringLiteral("mnuEdit"));
    mnuECut = entry(mnuEdit, "mnuECut", QStringLiteral("Cu&t"), &FrmCNCEdit::mnuECut_Click);
    mnuECopy = entry(mnuEdit, "mnuECopy", QStringLiteral("&Copy"), &FrmCNCEdit::mnuECopy_Click);
    mnuEPaste = entry(mnuEdit, "mnuEPaste", QStringLiteral("&Paste"), &FrmCNCEdit::mnuEPaste_Click);
    mnuEsep1 = separator(mnuEdit, "mnuEsep1");
    mnuEFind = entry(mnuEdit, "mnuEFind", QStringLiteral("&Find ..."), &FrmCNCEdit::mnuEFind_Click);
    mnuEFindNext = entry(mnuEdit, "mnuEFindNext", QStringLiteral("Find &Next"), &FrmCNCEdit::mnuEFindNext_Click);
    mnuEReplace = entry(mnuEdit, "mnuEReplace", QStringLiteral("&Replace ..."), &FrmCNCEdit::mnuEReplace_Click);
    mnuEsep2 = separator(mnuEdit, "mnuEsep2");
    mnuECheck = entry(mnuEdit, "mnuECheck", QStringLiteral("Chec&k Program"), &FrmCNCEdit::mnuECheck_Click);
    mnuECheck->setStatusTip(QStringLiteral("Read the program as milling would and show the first fault"));
}

void FrmCNCEdit::buildToolbar()
{
    tlbEdit = addToolBar(QStringLiteral("tlbEdit"));
    tlbEdit->setObjectName(QStringLiteral("tlbEdit"));
    tlbEdit->setAccessibleName(QStringLiteral("Editor toolbar"));
    tlbEdit->setMovable(false);
    tlbEdit->setFloatable(false);
    tlbEdit->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    tlbEdit->setIconSize(QSize(24, 24));
    tlbEdit->toggleViewAction()->setVisible(false);
    const QString keys[] = {QStringLiteral("New"), QStringLiteral("Open"), QStringLiteral("Save"),
                            QStringLiteral("Cut"), QStringLiteral("Copy"), QStringLiteral("Paste"),
                            QStringLiteral("Find"), QStringLiteral("Check")};
    for (const QString &key : keys) {
        if (key == QLatin1String("Cut") || key == QLatin1String("Find") || key == QLatin1String("Check"))
            tlbEdit->addSeparator();
        QAction *a = tlbEdit->addAction(EditorToolbarIcon(key), key);
        a->setObjectName(QStringLiteral("tlb") + key);
        connect(a, &QAction::triggered, this, [this, key] { tlbEdit_ButtonClick(key); });
        m_buttons[key] = a;
    }
    m_buttons[QStringLiteral("Check")]->setToolTip(
        QStringLiteral("Check Program: read it as milling would and show the first fault"));
}

void FrmCNCEdit::buildStatusBar()
{
    stbEdit = statusBar();
    stbEdit->setObjectName(QStringLiteral("stbEdit"));
    stbEdit->setSizeGripEnabled(true);
    for (const char *key : {"Lines", "CAPS", "NUM", "INS"}) {
        auto *panel = new QLabel(stbEdit);
        const QString strKey = QString::fromLatin1(key);
        panel->setObjectName(QStringLiteral("stbEdit") + strKey);
        panel->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        panel->setMargin(2);
        if (strKey == QLatin1String("Lines")) {
            stbEdit->addWidget(panel, 1);
        } else {
            panel->setText(strKey);
            panel->setAlignment(Qt::AlignCenter);
            panel->setMinimumWidth(panel->fontMetrics().horizontalAdvance(QStringLiteral("CAPS")) + 16);
            stbEdit->addPermanentWidget(panel);
        }
        m_panels[strKey] = panel;
    }
}

QAction *FrmCNCEdit::tlbButton(const QString &strKey) const
{
    auto it = m_buttons.find(strKey);
    return it == m_buttons.end() ? nullptr : it->second;
}

QLabel *FrmCNCEdit::stbPanel(const QString &strKey) const
{
    auto it = m_panels.find(strKey);
    return it == m_panels.end() ? nullptr : it->second;
}

void FrmCNCEdit::Form_Load() try {
    // 1. The load flag, read by the window hook and the recent-files list.
    gblnEditorLoaded = true;
    // 2. The main window's icon.
    if (frmMainLoaded())
        setWindowIcon(frmMain()->windowIcon());
    // 3. The recent-file entries mirrored in the File menu.
    MRUAttachEditorMenu(mnuFile, mnuFsep2, &mnuFMru_ClickFromMenu);
    MRUSetEditingMenu();
    // 4. Nothing on the main window can start the machine while the editor is up.
    if (frmMainLoaded()) {
        FrmMain *main = frmMain();
        main->mnuMill->setEnabled(false);
        main->mnuOptions->setEnabled(false);
        main->mnuTools->setEnabled(false);
    }
    // 5. An empty, untitled text.
    mnuFNew_Click();
    ShowKeyPanels();
    tmrKeys->start();
} catch (...) {
    LogError("frmCNCEdit", "Form_Load");
}

void FrmCNCEdit::Form_Unload() try {
    UnloadFrmFind();
    MRUDetachEditorMenu();
    gblnEditorLoaded = false;
    if (frmMainLoaded()) {
        FrmMain *main = frmMain();
        main->mnuMill->setEnabled(true);
        main->mnuOptions->setEnabled(true);
        main->mnuTools->setEnabled(true);
        SetMode(1);
    }
} catch (...) {
    LogError("frmCNCEdit", "Form_Unload");
}

void FrmCNCEdit::closeEvent(QCloseEvent *e)
{
    // The close box: Unload asks about unsaved work and may be refused. Unload itself hides
    // the window and never comes through here.
    e->ignore();
    if (!blnChecking)
        Unload(this);
}

void FrmCNCEdit::mnuFExit_Click() try {
    Unload(this);
} catch (...) {
    LogError("frmCNCEdit", "mnuFExit_Click");
}

bool FrmCNCEdit::eventFilter(QObject *watched, QEvent *e)
{
    if (watched == rtbCNCEdit && e->type() == QEvent::KeyPress) {
        auto *k = static_cast<QKeyEvent *>(e);
        int intShift = 0;
        if (k->modifiers() & Qt::ShiftModifier)
            intShift |= 1;
        if (k->modifiers() & Qt::ControlModifier)
            intShift |= 2;
        if (k->modifiers() & Qt::AltModifier)
            intShift |= 4;
        Form_KeyDown(k->key() == Qt::Key_Control ? 17 : k->key(), intShift);
        if ((k->key() == Qt::Key_Return || k->key() == Qt::Key_Enter) && (intShift & 1)) {
            // Shift+Enter would make a line break inside a line, which the file can't hold
            // apart from a line end: it is a line end like Enter.
            QTextCursor c = rtbCNCEdit->textCursor();
            c.insertBlock();
            rtbCNCEdit->setTextCursor(c);
            return true;
        }
        if (k->key() == Qt::Key_Insert && intShift == 0) {
            rtbCNCEdit->setOverwriteMode(!rtbCNCEdit->overwriteMode());
            ShowKeyPanels();
            return true;
        }
    } else if (watched == rtbCNCEdit && e->type() == QEvent::KeyRelease) {
        auto *k = static_cast<QKeyEvent *>(e);
        Form_KeyUp(k->key(), 0);
        DisplayPosition();   // rtbCNCEdit_KeyUp
        ShowKeyPanels();
    } else if (watched == rtbCNCEdit->viewport() && e->type() == QEvent::MouseButtonRelease) {
        DisplayPosition();   // rtbCNCEdit_Click
    }
    return QMainWindow::eventFilter(watched, e);
}

void FrmCNCEdit::Form_KeyDown(int intKeyCode, int intShift)
{
    if (intKeyCode == 17 && intShift == 2)
        blnCtrlHeld = true;
}

void FrmCNCEdit::Form_KeyUp(int, int) { blnCtrlHeld = false; }

void FrmCNCEdit::rtbCNCEdit_Change() try {
    tlbButton(QStringLiteral("Save"))->setEnabled(true);
    mnuFSave->setEnabled(true);
} catch (...) {
    LogError("frmCNCEdit", "rtbCNCEdit_Change");
}

void FrmCNCEdit::rtbCNCEdit_SelChange() try {
    if (blnCtrlHeld)
        return;
    const bool blnSelected = rtbCNCEdit->textCursor().hasSelection();
    for (QAction *a : {tlbButton(QStringLiteral("Cut")), tlbButton(QStringLiteral("Copy")), mnuECut, mnuECopy})
        a->setEnabled(blnSelected);
} catch (...) {
    LogError("frmCNCEdit", "rtbCNCEdit_SelChange");
}

void FrmCNCEdit::DisplayPosition() try {
    const int32_t lngLine =
        lngCurrentLine == -1 ? 0 : rtbCNCEdit->document()->findBlock(rtbCNCEdit->textCursor().selectionStart()).blockNumber();
    // The panel is only rewritten on a change of line.
    if (lngLine == lngCurrentLine)
        return;
    lngCurrentLine = lngLine;
    lngLineCount = rtbCNCEdit->document()->blockCount();
    stbPanel(QStringLiteral("Lines"))->setText(QStringLiteral("Line ") + QString::number(lngLine + 1) +
                                               QStringLiteral(" of ") + QString::number(lngLineCount));
} catch (...) {
    LogError("frmCNCEdit", "DisplayPosition");
}

void FrmCNCEdit::ShowKeyPanels()
{
    bool blnCaps = false;
    bool blnNum = false;
    blnLockKeys(blnCaps, blnNum);
    const bool blnInsert = !rtbCNCEdit->overwriteMode();
    const std::pair<const char *, bool> states[] = {{"CAPS", blnCaps}, {"NUM", blnNum}, {"INS", blnInsert}};
    for (const auto &[key, on] : states) {
        QLabel *panel = stbPanel(QString::fromLatin1(key));
        if (panel->isEnabled() == on && !panel->accessibleDescription().isEmpty())
            continue;
        panel->setEnabled(on);
        panel->setAccessibleDescription(on ? QStringLiteral("on") : QStringLiteral("off"));
    }
}

// The clipboard commands act through the text area's own cut, copy and paste. Ctrl counts
// as held meanwhile, as it is for the keystroke: Cut and Copy keep their states. Each has a
// guard against being entered again from inside.
void FrmCNCEdit::mnuECut_Click() try {
    static bool blnBusy = false;
    if (blnBusy)
        return;
    blnBusy = true;
    blnCtrlHeld = true;
    rtbCNCEdit->cut();
    blnCtrlHeld = false;
    blnBusy = false;
} catch (...) {
    LogError("frmCNCEdit", "mnuECut_Click");
}

void FrmCNCEdit::mnuECopy_Click() try {
    static bool blnBusy = false;
    if (blnBusy)
        return;
    blnBusy = true;
    blnCtrlHeld = true;
    rtbCNCEdit->copy();
    blnCtrlHeld = false;
    blnBusy = false;
} catch (...) {
    LogError("frmCNCEdit", "mnuECopy_Click");
}

void FrmCNCEdit::mnuEPaste_Click() try {
    static bool blnBusy = false;
    if (blnBusy || blnCtrlHeld)
        return;
    blnBusy = true;
    blnCtrlHeld = true;
    rtbCNCEdit->paste();
    blnCtrlHeld = false;
    blnBusy = false;
} catch (...) {
    LogError("frmCNCEdit", "mnuEPaste_Click");
}

void FrmCNCEdit::tlbEdit_ButtonClick(const QString &strKey) try {
    if (strKey == QLatin1String("New"))
        mnuFNew_Click();
    else if (strKey == QLatin1String("Open"))
        mnuFOpen_Click();
    else if (strKey == QLatin1String("Save"))
        mnuFSave_Click();
    else if (strKey == QLatin1String("Cut"))
        mnuECut_Click();
    else if (strKey == QLatin1String("Copy"))
        mnuECopy_Click();
    else if (strKey == QLatin1String("Paste"))
        mnuEPaste_Click();
    else if (strKey == QLatin1String("Find"))
        mnuEFind_Click();
    else if (strKey == QLatin1String("Check"))
        mnuECheck_Click();
} catch (...) {
    LogError("frmCNCEdit", "tlbEdit_ButtonClick");
}

void FrmCNCEdit::mnuEFind_Click() try {
    ShowFind(this, false);
} catch (...) {
    LogError("frmCNCEdit", "mnuEFind_Click");
}

void FrmCNCEdit::mnuEReplace_Click() try {
    ShowFind(this, true);
} catch (...) {
    LogError("frmCNCEdit", "mnuEReplace_Click");
}

void FrmCNCEdit::mnuEFindNext_Click() try {
    FindNext(QString());
} catch (...) {
    LogError("frmCNCEdit", "mnuEFindNext_Click");
}

void ShowCodeEditor() try {
    FrmCNCEdit *form = frmCNCEdit();
    ShowModal(form, frmMainLoaded() ? frmMain() : nullptr);
} catch (...) {
    LogError("frmCNCEdit", "ShowCodeEditor");
}

void CodeEditorDeactivated()
{
    if (gblnEditorLoaded)
        UnloadFrmFind();
}
