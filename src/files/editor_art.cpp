// The code editor's toolbar pictures, drawn with QPainter in the colours of the main window's
// toolbar (no binary pictures). 24 x 24 pixels; the toolkit greys them for a disabled button.
#include "files/editor_art.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace {

const QColor kInk(0x1f, 0x3a, 0x5f);
const QColor kPaper(0xfb, 0xf8, 0xf0);
const QColor kAccent(0xe0, 0x6c, 0x1c);
const QColor kGreen(0x2e, 0x8b, 0x3e);

// A sheet with a folded top right corner, from (x, y), w x h.
void Sheet(QPainter &p, qreal x, qreal y, qreal w, qreal h)
{
    QPainterPath s;
    s.moveTo(x, y);
    s.lineTo(x + w - 5, y);
    s.lineTo(x + w, y + 5);
    s.lineTo(x + w, y + h);
    s.lineTo(x, y + h);
    s.closeSubpath();
    p.setBrush(kPaper);
    p.drawPath(s);
    p.drawLine(QPointF(x + w - 5, y), QPointF(x + w - 5, y + 5));
    p.drawLine(QPointF(x + w - 5, y + 5), QPointF(x + w, y + 5));
}

} // namespace

QIcon EditorToolbarIcon(const QString &strKey)
{
    const int n = 24;
    QPixmap pm(n, n);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(kInk, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (strKey == QLatin1String("New")) {
        Sheet(p, 5, 2, 14, 20);
    } else if (strKey == QLatin1String("Open")) {
        // A folder, its flap open.
        p.setBrush(QColor(0xf2, 0xc9, 0x6b));
        QPainterPath back;
        back.moveTo(2, 6);
        back.lineTo(8, 6);
        back.lineTo(10, 8);
        back.lineTo(19, 8);
        back.lineTo(19, 20);
        back.lineTo(2, 20);
        back.closeSubpath();
        p.drawPath(back);
        QPainterPath flap;
        flap.moveTo(2, 20);
        flap.lineTo(6, 11);
        flap.lineTo(22, 11);
        flap.lineTo(19, 20);
        flap.closeSubpath();
        p.setBrush(QColor(0xf7, 0xdc, 0x95));
        p.drawPath(flap);
    } else if (strKey == QLatin1String("Save")) {
        // A disk: body, label and shutter.
        p.setBrush(kInk);
        p.drawRoundedRect(QRectF(3, 3, 18, 18), 2, 2);
        p.setBrush(kPaper);
        p.setPen(Qt::NoPen);
        p.drawRect(QRectF(6, 12, 12, 8));
        p.setBrush(QColor(0xb8, 0xc4, 0xd0));
        p.drawRect(QRectF(7, 4, 9, 5));
    } else if (strKey == QLatin1String("Cut")) {
        // Scissors: two blades crossing over two rings.
        p.drawLine(QPointF(7, 3), QPointF(15, 15));
        p.drawLine(QPointF(17, 3), QPointF(9, 15));
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(kAccent, 1.8));
        p.drawEllipse(QPointF(7, 18), 3.5, 3.5);
        p.drawEllipse(QPointF(17, 18), 3.5, 3.5);
    } else if (strKey == QLatin1String("Copy")) {
        Sheet(p, 3, 2, 12, 15);
        Sheet(p, 9, 7, 12, 15);
    } else if (strKey == QLatin1String("Paste")) {
        // A clipboard with a sheet on it.
        p.setBrush(QColor(0xc8, 0x9a, 0x5b));
        p.drawRoundedRect(QRectF(4, 4, 16, 18), 2, 2);
        p.setBrush(kInk);
        p.drawRoundedRect(QRectF(8, 2, 8, 4), 1, 1);
        p.setBrush(kPaper);
        p.drawRect(QRectF(7, 8, 10, 11));
    } else if (strKey == QLatin1String("Find")) {
        // A magnifier.
        p.setBrush(QColor(0xdd, 0xea, 0xf6));
        p.drawEllipse(QPointF(10, 10), 6.5, 6.5);
        p.setPen(QPen(kInk, 3, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(15, 15), QPointF(21, 21));
    } else if (strKey == QLatin1String("Check")) {
        // A program sheet with a tick.
        Sheet(p, 3, 2, 14, 20);
        p.setPen(QPen(kInk, 1.2));
        for (int i = 0; i < 3; ++i)
            p.drawLine(QPointF(6, 8 + 4 * i), QPointF(13, 8 + 4 * i));
        p.setPen(QPen(kGreen, 2.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.drawLine(QPointF(11, 17), QPointF(15, 21));
        p.drawLine(QPointF(15, 21), QPointF(22, 10));
    }
    p.end();
    return QIcon(pm);
}
