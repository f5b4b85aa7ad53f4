#include "preview/preview_window.h"

#include "core/frm_main.h"
#include "core/msgbox.h"
#include "core/state.h"
#include "nc/analysed.h"
#include "tools/tooltable.h"

#include <QAction>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <cmath>

namespace {

QString TypeOfTool(int16_t intNumber)
{
    const int16_t id = intToolGetId(intNumber);
    return id != 0 ? gtypTools(id).strType : QString();
}

} // namespace

PreviewView::PreviewView(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("picPreview"));
    // A drawing with no text of its own: it needs a name, and how to use it goes in the description.
    setAccessibleName(QStringLiteral("Toolpath preview"));
    setAccessibleDescription(QStringLiteral("Top view X-Y above side view X-Z. Mouse wheel or + and - zoom, dragging "
                                            "or the arrow keys pan, double-click or Home fits the whole path."));
    setMinimumSize(480, 320);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::OpenHandCursor);
}

void PreviewView::setToolpath(Toolpath path, const QString &title)
{
    m_path = std::move(path);
    m_title = title;
    fit();
}

void PreviewView::fit()
{
    m_camera = {};
    rerender();
}

void PreviewView::zoomAt(double factor, QPointF at)
{
    m_camera = ZoomedCamera(m_path, rect(), m_camera, factor, at);
    rerender();
}

void PreviewView::rerender()
{
    if (width() <= 0 || height() <= 0)
        return;
    m_picture = RenderPreview(m_path, size(), m_camera, m_title);
    m_dragBy = {};
    update();
}

void PreviewView::paintEvent(QPaintEvent *)
{
    QPainter p(this);
    p.fillRect(rect(), Qt::white);
    p.drawImage(m_dragBy, m_picture);
}

void PreviewView::resizeEvent(QResizeEvent *) { rerender(); }

void PreviewView::wheelEvent(QWheelEvent *e)
{
    // One notch (120) zooms by a quarter; a smooth wheel gives its part of that.
    const double notches = e->angleDelta().y() / 120.0;
    if (notches != 0)
        zoomAt(std::pow(1.25, notches), e->position());
    e->accept();
}

void PreviewView::mousePressEvent(QMouseEvent *e)
{
    if (e->button() != Qt::LeftButton)
        return;
    m_dragging = true;
    m_dragFrom = e->position();
    setCursor(Qt::ClosedHandCursor);
}

void PreviewView::mouseMoveEvent(QMouseEvent *e)
{
    if (!m_dragging)
        return;
    // The picture moves as it is; it is drawn anew when the button comes up.
    m_dragBy = e->position() - m_dragFrom;
    update();
}

void PreviewView::mouseReleaseEvent(QMouseEvent *e)
{
    if (!m_dragging || e->button() != Qt::LeftButton)
        return;
    m_dragging = false;
    setCursor(Qt::OpenHandCursor);
    m_camera = PannedCamera(m_path, rect(), m_camera, m_dragFrom, e->position() - m_dragFrom);
    rerender();
}

void PreviewView::mouseDoubleClickEvent(QMouseEvent *) { fit(); }

void PreviewView::keyPressEvent(QKeyEvent *e)
{
    // The same without a mouse: + and - zoom about the middle, the arrows pan, Home fits.
    const QPointF middle(width() / 2.0, height() / 3.0);
    const double step = 40;
    switch (e->key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal: zoomAt(1.25, middle); break;
    case Qt::Key_Minus: zoomAt(0.8, middle); break;
    case Qt::Key_Home: fit(); break;
    case Qt::Key_Left: m_camera.pan.rx() += step; rerender(); break;
    case Qt::Key_Right: m_camera.pan.rx() -= step; rerender(); break;
    case Qt::Key_Up: m_camera.pan.ry() += step; rerender(); break;
    case Qt::Key_Down: m_camera.pan.ry() -= step; rerender(); break;
    default: QWidget::keyPressEvent(e); return;
    }
    e->accept();
}

FrmPreview::FrmPreview(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmPreview"));
    setWindowTitle(QStringLiteral("Preview"));
    auto *layout = new QVBoxLayout(this);
    picPreview = new PreviewView(this);
    layout->addWidget(picPreview, 1);
    auto *row = new QHBoxLayout;
    lblTime = new QLabel(this);
    lblTime->setObjectName(QStringLiteral("lblTime"));
    QFont bold = lblTime->font();
    bold.setBold(true);
    lblTime->setFont(bold);
    lblExtent = new QLabel(this);
    lblExtent->setObjectName(QStringLiteral("lblExtent"));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton *fit = buttons->addButton(QStringLiteral("&Fit"), QDialogButtonBox::ActionRole);
    fit->setObjectName(QStringLiteral("cmdFit"));
    connect(fit, &QPushButton::clicked, picPreview, &PreviewView::fit);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *texts = new QVBoxLayout;
    texts->addWidget(lblTime);
    texts->addWidget(lblExtent);
    row->addLayout(texts, 1);
    row->addWidget(buttons);
    layout->addLayout(row);
    resize(1000, 700);
}

bool FrmPreview::load(const QString &strAnalysedFile, QString &error)
{
    Toolpath path = LoadToolpathFile(strAnalysedFile, &TypeOfTool);
    if (!path.error.isEmpty()) {
        error = path.error;
        return false;
    }
    ReadBilletFromHeader(path, strAnalysedFile);
    lblTime->setText(strPreviewTimeLine(path));
    lblExtent->setText(strPreviewExtentLine(path) +
                       (path.outsideMoves > 0
                            ? QStringLiteral("  -  %1 moves leave the working envelope").arg(path.outsideMoves)
                            : QString()));
    picPreview->setToolpath(std::move(path), QFileInfo(strAnalysedFile).fileName());
    return true;
}

void ShowPreview(const QString &strAnalysedFile)
{
    FrmPreview frm(frmMainLoaded() ? frmMain() : nullptr);
    QString error;
    if (!frm.load(strAnalysedFile, error)) {
        StdMsgBox(QStringLiteral("The toolpath cannot be shown:") + QStringLiteral("\r\n") + error, vbExclamation,
                  QStringLiteral("Preview"));
        return;
    }
    frm.exec();
}

QAction *AddPreviewMenuEntry(QMenu *menu, QAction *before)
{
    auto *entry = new QAction(QStringLiteral("Pre&view Last Analysed File"), menu);
    entry->setObjectName(QStringLiteral("mnuMPreview"));
    menu->insertAction(before, entry);
    // Enabled only where nothing moves the machine: main menu, set-up wizard, next-part choice.
    QObject::connect(menu, &QMenu::aboutToShow, entry, [entry] {
        const bool blnQuiet = gintMode == 1 || gintMode == 3 || gintMode == 8;
        entry->setEnabled(blnQuiet && !gstrAnalysedFile.isEmpty() && QFileInfo::exists(gstrAnalysedFile));
    });
    QObject::connect(entry, &QAction::triggered, entry, [] {
        if (!gstrAnalysedFile.isEmpty())
            ShowPreview(gstrAnalysedFile);
    });
    return entry;
}
