#include "toolscreens_support.h"

#include "core/hooks.h"
#include "tools/frmtooldata.h"
#include "tools/frmtooltype.h"
#include "tools/tooltable.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QTableWidget>
#include <QTimer>

void SetTools(std::initializer_list<ToolSpec> tools)
{
    gtypTools.Erase();
    gintToolCount = 0;
    for (const ToolSpec &t : tools) {
        ++gintToolCount;
        gtypTools.Redim(gintToolCount);
        ToolData &d = gtypTools(gintToolCount);
        d.intNumber = static_cast<int16_t>(t.number);
        d.strType = QString::fromUtf8(t.type);
        d.sngDiameter = t.diameter;
        d.sngOffset = t.offset;
    }
}

void ClickCell(ToolGrid &grid, int row, int col)
{
    QTableWidget *table = grid.table();
    const QPoint at = table->visualRect(table->model()->index(row - 1, col)).center();
    QWidget *viewport = table->viewport();
    for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        const Qt::MouseButtons held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        QMouseEvent e(type, at, viewport->mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
        QApplication::sendEvent(viewport, &e);
    }
}

void Type(QWidget *box, const QString &text)
{
    for (QChar c : text) {
        const int key = c == u'\b' ? int(Qt::Key_Backspace) : c.toUpper().unicode();
        for (QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent e(type, key, Qt::NoModifier, QString(c));
            QApplication::sendEvent(box, &e);
        }
    }
}

void WhenDialogUp(std::function<void()> act) { QTimer::singleShot(0, qApp, std::move(act)); }

QStringList Column(ToolGrid &grid, int col)
{
    QStringList out;
    for (int r = 1; r <= gintToolRows; ++r)
        out << grid.TextMatrix(r, col);
    return out;
}

QStringList Row(ToolGrid &grid, int row)
{
    QStringList out;
    for (int c = 0; c < 5; ++c)
        out << grid.TextMatrix(row, c);
    return out;
}

void ToolScreens::SetUp()
{
    m_store = std::make_unique<TempStore>();
    m_boxes = std::make_unique<ScriptedBoxes>();
    // A trapped fault must fail the test, not end the test program.
    uiHooks().endProcess = [](int) { throw TrapEnded(); };
    gtypTools.Erase();
    gintToolCount = 0;
    gintToolRows = 0;
    gintToolGridSortCol = 0;
    m_main = std::make_unique<QWidget>();
    m_main->setObjectName(QStringLiteral("frmMain"));
    m_main->resize(900, 600);
    m_modes.clear();
    m_panel = new ToolDataPanel(m_main.get(), [this](int16_t mode) {
        m_modes.push_back(mode);
        // What SetMode does for the tool page's two modes.
        if (mode == 5) {
            ToolDataShow(*m_panel->grdTools);
            m_panel->show();
        } else {
            m_panel->hide();
        }
    });
    m_panel->hide();
    m_main->show();
}

void ToolScreens::TearDown()
{
    if (blnFrmToolTypeLoaded())
        UnloadFrmToolType();
    if (blnFrmToolDataLoaded())
        UnloadFrmToolData();
    m_main.reset();
    m_boxes.reset();
    m_store.reset();
}

void ToolScreens::ShowPage() { m_panel->ShowToolData(); }
