// frmMain: construction of the menu bar, toolbar and status bar; the form's load, close,
// resize and key events. The modes are in frm_main_modes.cpp, the panels in
// main_menu_panel.cpp and main_panels.cpp.
#include "core/frm_main.h"
#include "preview/preview_window.h"
#include "core/help_calc.h"

#include "core/artwork.h"
#include "core/f1mill.h"
#include "core/logger.h"
#include "core/state.h"
#include "core/store.h"
#include "core/vb.h"
#include "core/window_hook.h"
#include "files/filechoice.h"
#include "files/recent.h"
#include "link/spindle.h"
#include "link/stream.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QMenuBar>
#include <QStatusBar>
#include <QTextEdit>
#include <QToolBar>
#include <QToolButton>

#include <algorithm>

namespace {
FrmMain *g_frmMain = nullptr;

// Esc reaches the form whatever control has the focus: the form sees every key first.
class KeyPreview : public QObject {
public:
    explicit KeyPreview(FrmMain *form) : QObject(form), m_form(form) {}
    bool eventFilter(QObject *obj, QEvent *e) override
    {
        if (e->type() == QEvent::KeyPress) {
            auto *w = qobject_cast<QWidget *>(obj);
            auto *k = static_cast<QKeyEvent *>(e);
            // The filter may see one event again on its way up to the parents; what the
            // form does with a key only sets flags, so a second look changes nothing.
            if (w && w->window() == m_form) {
                int code = k->key() == Qt::Key_Escape ? 27 : k->key();
                m_form->Form_KeyDown(code, static_cast<int>(k->modifiers() >> 25));
            }
        }
        return false;
    }

private:
    FrmMain *m_form;
};
} // namespace

FrmMain *frmMain() { return FormInstance(g_frmMain); }
bool frmMainLoaded() { return g_frmMain != nullptr; }

QString MainCaption(const QString &strFile)
{
    QString caption = QStringLiteral("Brantok for the Emco F1 Mill");
    return strFile.isEmpty() ? caption : caption + QStringLiteral(" - ") + strFile;
}

QRect StoredWindowPlace(int intTwipsPerPixel)
{
    // A hand-edited or damaged value must not stop the program at its start: the numbers are
    // read as numbers and kept within reach, and a window that would stand on no screen
    // (a monitor since removed) comes back at the default place.
    auto twips = [](const char *name, const char *def) {
        double v = vb::Val(strRegistryValueGet(QString::fromLatin1(name), QString::fromLatin1(def)));
        return static_cast<int>(std::clamp(v, -1.0e7, 1.0e7));
    };
    const int tpp = intTwipsPerPixel > 0 ? intTwipsPerPixel : 15;
    QRect place(twips("MainLeft", "1000") / tpp, twips("MainTop", "1000") / tpp,
                qMax(200, twips("MainWidth", "12000") / tpp), qMax(150, twips("MainHeight", "9000") / tpp));
    bool seen = false;
    for (QScreen *s : QGuiApplication::screens()) {
        QRect common = s->availableGeometry().intersected(place);
        if (common.width() >= 100 && common.height() >= 50)
            seen = true;
    }
    if (!seen && !QGuiApplication::screens().isEmpty())
        place = QRect(1000 / tpp, 1000 / tpp, 12000 / tpp, 9000 / tpp);
    return place;
}

FrmMain::FrmMain()
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowIcon(AppIcon());
    buildMenus();
    buildToolbar();
    buildStatusBar();
    buildPanels();

    tmrShowMenu = new QTimer(this);
    tmrShowMenu->setSingleShot(true);
    tmrShowMenu->setInterval(10);
    connect(tmrShowMenu, &QTimer::timeout, this, [this] { tmrShowMenu_Timer(); });
    tmrGetOffset = new QTimer(this);
    tmrGetOffset->setSingleShot(true);
    tmrGetOffset->setInterval(100);
    connect(tmrGetOffset, &QTimer::timeout, this, [this] {
        tmrGetOffset->stop();
        SetMode(7);
    });
    tmrStartMilling = new QTimer(this);
    tmrStartMilling->setSingleShot(true);
    tmrStartMilling->setInterval(100);
    connect(tmrStartMilling, &QTimer::timeout, this, [this] {
        tmrStartMilling->stop();
        tmrStartMilling_Timer();
    });
    tmrBook = new QTimer(this);
    tmrBook->setInterval(100);
    connect(tmrBook, &QTimer::timeout, this, [this] { tmrBook_Timer(); });

    qApp->installEventFilter(new KeyPreview(this));
}

FrmMain::~FrmMain()
{
    if (g_frmMain == this)
        g_frmMain = nullptr;
}

void FrmMain::buildMenus()
{
    QMenuBar *bar = menuBar();
    bar->setAccessibleName(QStringLiteral("Menu bar"));
    auto entry = [this](QMenu *menu, const char *name, const QString &caption) {
        QAction *a = menu->addAction(caption);
        a->setObjectName(QString::fromLatin1(name));
        return a;
    };
    auto separator = [](QMenu *menu, const char *name) {
        QAction *a = menu->addSeparator();
        a->setObjectName(QString::fromLatin1(name));
        return a;
    };
    mnuMill = bar->addMenu(QStringLiteral("&Mill   "));
    mnuMill->setObjectName(QStringLiteral("mnuMill"));
    mnuMKeyboard = entry(mnuMill, "mnuMKeyboard", QStringLiteral("Use &Keyboard to move Tool"));
    mnuMMill = entry(mnuMill, "mnuMMill", QStringLiteral("&Mill a Part"));
    mnuMsep0 = separator(mnuMill, "mnuMsep0");
    AddPreviewMenuEntry(mnuMill, mnuMsep0);   // ours: the toolpath of the last analysed file
    mnuMStart = entry(mnuMill, "mnuMStart", QStringLiteral("&Start Spindle"));
    mnuMStop = entry(mnuMill, "mnuMStop", QStringLiteral("Sto&p Spindle"));
    mnuMsep1 = separator(mnuMill, "mnuMsep1");
    QAction *mru0 = entry(mnuMill, "mnuMMru", QString());
    mru0->setVisible(false);
    mnuMMru.push_back(mru0);
    mnuMsep2 = separator(mnuMill, "mnuMsep2");
    mnuMExit = entry(mnuMill, "mnuMExit", QStringLiteral("E&xit"));

    mnuTools = bar->addMenu(QStringLiteral("&Tools"));
    mnuTools->setObjectName(QStringLiteral("mnuTools"));
    mnuTData = entry(mnuTools, "mnuTData", QStringLiteral("Tool &Data Table"));
    mnuTOffset = entry(mnuTools, "mnuTOffset", QStringLiteral("Tool &Offsets"));
    mnuTsep1 = separator(mnuTools, "mnuTsep1");
    mnuTEdit = entry(mnuTools, "mnuTEdit", QStringLiteral("CNC Code &Editor"));
    mnuTimport = entry(mnuTools, "mnuTimport", QStringLiteral("&Import File"));
    mnuTCalc = entry(mnuTools, "mnuTCalc", QStringLiteral("&Calculator"));

    mnuOptions = bar->addMenu(QStringLiteral("&Options"));
    mnuOptions->setObjectName(QStringLiteral("mnuOptions"));
    mnuOSettings = entry(mnuOptions, "mnuOSettings", QStringLiteral("&Settings ..."));

    mnuHelp = bar->addMenu(QStringLiteral("&Help"));
    mnuHelp->setObjectName(QStringLiteral("mnuHelp"));
    mnuHContents = entry(mnuHelp, "mnuHContents", QStringLiteral("&Contents"));
    mnuHMachining = entry(mnuHelp, "mnuHMachining", QStringLiteral("&Machining with Brantok"));
    mnuHBillet = entry(mnuHelp, "mnuHBillet", QStringLiteral("&Billet Size and Placing"));
    mnuHsep1 = separator(mnuHelp, "mnuHsep1");
    mnuHAbout = entry(mnuHelp, "mnuHAbout", QStringLiteral("&About "));

    for (QMenu *m : {mnuMill, mnuTools, mnuOptions, mnuHelp})
        m->setAccessibleName(m->title().remove(u'&').trimmed());

    connect(mnuMKeyboard, &QAction::triggered, this, [this] { MenuAction(QStringLiteral("Keyboard")); });
    connect(mnuMMill, &QAction::triggered, this, [this] { MenuAction(QStringLiteral("Mill")); });
    connect(mnuMStart, &QAction::triggered, this, [] { mnuMStart_Click(); });
    connect(mnuMStop, &QAction::triggered, this, [] { mnuMStop_Click(); });
    connect(mru0, &QAction::triggered, this, [this] { mnuMMru_Click(0); });
    connect(mnuMExit, &QAction::triggered, this, [this] { MenuAction(QStringLiteral("Exit")); });
    connect(mnuTData, &QAction::triggered, this, [this] { MenuAction(QStringLiteral("ToolData")); });
    connect(mnuTOffset, &QAction::triggered, this, [this] { MenuAction(QStringLiteral("Offsets")); });
    connect(mnuTEdit, &QAction::triggered, this, [this] { MenuAction(QStringLiteral("Edit")); });
    connect(mnuTimport, &QAction::triggered, this, [] { mnuTimport_Click(); });
    connect(mnuTCalc, &QAction::triggered, this, [this] { mnuTCalc_Click(); });
    connect(mnuOSettings, &QAction::triggered, this, [this] { mnuOSettings_Click(); });
    connect(mnuHContents, &QAction::triggered, this, [] { ShowHelp(QStringLiteral("contents")); });
    connect(mnuHMachining, &QAction::triggered, this, [] { ShowHelp(QStringLiteral("machining")); });
    connect(mnuHBillet, &QAction::triggered, this, [this] { MenuAction(QStringLiteral("Billet")); });
    connect(mnuHAbout, &QAction::triggered, this, [this] { mnuHAbout_Click(); });
}

void FrmMain::buildToolbar()
{
    tlbMain = addToolBar(QStringLiteral("Toolbar"));
    tlbMain->setObjectName(QStringLiteral("tlbMain"));
    tlbMain->setMovable(false);
    tlbMain->setFloatable(false);
    tlbMain->setIconSize(QSize(28, 28));
    tlbMain->setToolButtonStyle(Qt::ToolButtonIconOnly);
    const std::pair<const char *, const char *> buttons[] = {
        {"Back", "Return"}, {"Settings", "Settings"}, {"Edit", "Code Editor"}};
    for (const auto &[key, tip] : buttons) {
        QString k = QString::fromLatin1(key);
        QAction *a = tlbMain->addAction(ToolbarIcon(k), QString::fromLatin1(tip));
        a->setObjectName(k);
        a->setToolTip(QString::fromLatin1(tip));
        if (QWidget *w = tlbMain->widgetForAction(a))
            w->setAccessibleName(QString::fromLatin1(tip));
        connect(a, &QAction::triggered, this, [this, k] { tlbMain_ButtonClick(k); });
        m_buttons[k] = a;
    }
}

QAction *FrmMain::tlbButton(const QString &strKey) const
{
    auto it = m_buttons.find(strKey);
    if (it == m_buttons.end())
        vb::Err(vb::kInvalidCall);   // a key the toolbar doesn't have
    return it->second;
}

void FrmMain::buildStatusBar()
{
    stbStatus = statusBar();
    stbStatus->setObjectName(QStringLiteral("stbStatus"));
    stbStatus->setAccessibleName(QStringLiteral("Status bar"));
    stbStatus->setSizeGripEnabled(true);
    const std::pair<const char *, int> panels[] = {
        {"online", 130}, {"spindle", 130}, {"door", 110}, {"status", 0}, {"timer", 90}};
    for (const auto &[key, width] : panels) {
        auto *l = new QLabel(stbStatus);
        QString k = QString::fromLatin1(key);
        l->setObjectName(k);
        l->setAccessibleDescription(QStringLiteral("Status bar panel: ") + k);
        l->setFrameShape(QFrame::StyledPanel);
        l->setFrameShadow(QFrame::Sunken);
        l->setContentsMargins(6, 0, 6, 0);
        if (width)
            l->setMinimumWidth(width);
        stbStatus->addWidget(l, width ? 0 : 1);
        m_panels[k] = l;
    }
    m_panels[QStringLiteral("timer")]->setToolTip(QStringLiteral("Milling Time (hh:mm:ss)"));
    m_simpleText = new QLabel(stbStatus);
    m_simpleText->setObjectName(QStringLiteral("stbSimpleText"));
    m_simpleText->setContentsMargins(6, 0, 6, 0);
    QFont bold = m_simpleText->font();
    bold.setBold(true);
    m_simpleText->setFont(bold);
    stbStatus->addWidget(m_simpleText, 1);
    m_simpleText->hide();
}

QLabel *FrmMain::stbPanel(const QString &strKey) const
{
    auto it = m_panels.find(strKey);
    if (it == m_panels.end())
        vb::Err(vb::kInvalidCall);
    return it->second;
}

void FrmMain::stbSimpleText(const QString &strText)
{
    m_simple = true;
    for (auto &[k, l] : m_panels)
        l->hide();
    m_simpleText->setText(strText);
    m_simpleText->show();
    stbStatus->repaint();
}

void FrmMain::stbShowPanels()
{
    m_simple = false;
    m_simpleText->hide();
    for (auto &[k, l] : m_panels)
        l->show();
    stbStatus->repaint();
}

QString FrmMain::stbText() const { return m_simpleText->text(); }

QPixmap FrmMain::ilsSpindle(int intIndex) const { return SpindleImage(intIndex); }

void FrmMain::Form_Load() try {
    const int tpp = gintTwipsPerPixel > 0 ? gintTwipsPerPixel : 15;
    // 1. Place the window, from the store in twips.
    QRect place = StoredWindowPlace(tpp);
    move(place.topLeft());
    resize(place.size());
    // 2. Caption.
    setWindowTitle(MainCaption(QString()));
    // 3. lblEscape centred in picMachining.
    QLabel *esc = picMachining->lblEscape;
    esc->move((picMachining->width() - esc->width()) / 2, esc->y());
    // 4. The main menu appears through tmrShowMenu once the pump runs.
    tmrShowMenuTag.clear();
    tmrShowMenu->start();
    // 5. Online or offline.
    stbPanel(QStringLiteral("online"))->setText(gblnOnline ? QStringLiteral("Working Online")
                                                           : QStringLiteral("Working Offline"));
    // 6. The spindle pictures: stopped.
    picKeyboard->picSpindleStart->setPixmap(ilsSpindle(1));
    picKeyboard->picSpindleStop->setPixmap(ilsSpindle(4));
    // 7. Application activation events, for the main menu's caret and the find dialog.
    if (!gblnInDesign)
        Hook();
} catch (...) {
    LogError("frmMain", "Form_Load");
}

bool FrmMain::Form_QueryUnload(int intUnloadMode) try {
    if (intUnloadMode == vbFormControlMenu) {
        Shutdown();
        return true;   // Shutdown does the unloading
    }
    // Unloaded by Shutdown: keep the window's place unless it is minimised.
    if (!isMinimized()) {
        const int tpp = gintTwipsPerPixel > 0 ? gintTwipsPerPixel : 15;
        RegistryValuePut(QStringLiteral("MainLeft"), QString::number(static_cast<qint64>(pos().x()) * tpp));
        RegistryValuePut(QStringLiteral("MainTop"), QString::number(static_cast<qint64>(pos().y()) * tpp));
        RegistryValuePut(QStringLiteral("MainWidth"), QString::number(static_cast<qint64>(width()) * tpp));
        RegistryValuePut(QStringLiteral("MainHeight"), QString::number(static_cast<qint64>(height()) * tpp));
    }
    return false;
} catch (...) {
    LogError("frmMain", "Form_QueryUnload");
}

void FrmMain::closeEvent(QCloseEvent *e)
{
    // Only the close box (or the window manager) closes the window this way: Unload
    // never goes through close().
    e->ignore();
    Form_QueryUnload(vbFormControlMenu);
}

void FrmMain::resizeEvent(QResizeEvent *e)
{
    QMainWindow::resizeEvent(e);
    Form_Resize();
}

void FrmMain::CentrePanel(QWidget *panel)
{
    panel->move((client->width() - panel->width()) / 2, (client->height() - panel->height()) / 2);
}

void FrmMain::Form_Resize()
{
    // A window too small must not stop the program: every step runs on past a fault.
    auto step = [](auto &&f) {
        try {
            f();
        } catch (...) {
        }
    };
    for (QWidget *p : std::initializer_list<QWidget *>{picMenu, picMethod, picKeyboard, picSetMill,
                                                      picOffset, picMachining, picBilletSize})
        step([&] { CentrePanel(p); });
    step([&] { picTools->Centre(); });   // the tool page sizes itself to its grid first
    step([&] {
        QLabel *lbl = picHeader->lblHeader;
        lbl->move((picHeader->width() - lbl->width()) / 2, 0);
        picHeader->rtbHeader->setGeometry(0, lbl->height(), picHeader->width(),
                                          picHeader->height() - lbl->height());
        picHeader->move(picSetMill->x() + picSetMill->width() + 8, picSetMill->y() - (lbl->height() + 1));
    });
}

void FrmMain::Form_KeyDown(int intKeyCode, int /*intShift*/) try {
    if (intKeyCode == 27) {
        // The interrupt the machining screen promises, in every mode.
        gblnCancel = true;
        gblnKeyLoop = false;
    }
} catch (...) {
    LogError("frmMain", "Form_KeyDown");
}
