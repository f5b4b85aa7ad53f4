// The pictures beside the offset wizard's tasks on the manual screen, drawn at run time in
// the size and colours of the origin tasks' cutter pictures (120 x 80 px): the billet seen
// from the front, the spindle nose above it, and in red where they meet.
#include "guide/offset_wizard.h"

#include <QPainter>
#include <QPainterPath>

namespace {

const QColor kInk(0x1f, 0x3a, 0x5f);
const QColor kBillet(0xc9, 0xa2, 0x6b);
const QColor kSteel(0x9a, 0xa7, 0xb4);
const QColor kRim(0xd4, 0xda, 0xe0);    // the bright steel rim of the spindle nose
const QColor kPaper(0xff, 0xff, 0xff);
const QColor kTouch(0xd9, 0x22, 0x1c);

constexpr int kW = 120, kH = 80;
const QRectF kBilletRect(30, 50, 60, 26);

// The spindle nose, its face at `face` px from the top.
void Nose(QPainter &p, double face)
{
    p.setPen(QPen(kSteel.darker(150), 1));
    p.setBrush(kSteel);
    p.drawRect(QRectF(42, 0, 36, face - 4));
    p.setBrush(kRim);
    p.drawRect(QRectF(40, face - 4, 40, 4));
}

// A cutter below the nose, from `top` down to `bottom` px, `w` px wide.
void Cutter(QPainter &p, double top, double bottom, double w)
{
    const QRectF r(60 - w / 2, top, w, bottom - top);
    p.setPen(QPen(kSteel.darker(150), 1));
    p.setBrush(kSteel.lighter(115));
    p.drawRect(r);
    p.setPen(QPen(kSteel.darker(170), 1));
    for (double y = r.top() + 4; y < r.bottom() - 2; y += 5)
        p.drawLine(QPointF(r.left(), y), QPointF(r.right(), y + 3));
}

// A down arrow at x from y0 to y1: the head is lowered.
void Down(QPainter &p, double x, double y0, double y1)
{
    p.setPen(QPen(kInk, 2));
    p.drawLine(QPointF(x, y0), QPointF(x, y1));
    QPainterPath head;
    head.moveTo(x - 4, y1 - 5);
    head.lineTo(x, y1);
    head.lineTo(x + 4, y1 - 5);
    p.drawPath(head);
}

void Paper(QPainter &p)
{
    p.setPen(QPen(kInk, 1));
    p.setBrush(kPaper);
    p.drawRect(QRectF(kBilletRect.left() - 8, kBilletRect.top() - 3, kBilletRect.width() + 16, 3));
}

} // namespace

QPixmap ilsOffsetPicture(const QString &strKey)
{
    QPixmap pm(kW, kH);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(kBillet.darker(140), 1));
    p.setBrush(kBillet);
    p.drawRect(kBilletRect);
    const double top = kBilletRect.top();
    if (strKey == QLatin1String("Skim")) {
        // A wide shell cutter across the top, moving along it.
        Nose(p, top - 16);
        Cutter(p, top - 16, top, 44);
        p.setPen(QPen(kTouch, 3));
        p.drawLine(QPointF(kBilletRect.left(), top), QPointF(kBilletRect.right(), top));
        p.setPen(QPen(kInk, 2));
        p.drawLine(QPointF(92, 30), QPointF(112, 30));
        p.drawLine(QPointF(107, 26), QPointF(112, 30));
        p.drawLine(QPointF(107, 34), QPointF(112, 30));
    } else if (strKey == QLatin1String("Paper")) {
        // No tool: the rim itself nips the paper.
        Paper(p);
        Nose(p, top - 3);
        p.setPen(QPen(kTouch, 3));
        p.drawLine(QPointF(40, top - 3), QPointF(80, top - 3));
        Down(p, 100, 14, 36);
    } else {
        // "OffsetTop": the tool's end nips the paper.
        Paper(p);
        Nose(p, top - 30);
        Cutter(p, top - 30, top - 3, 12);
        p.setPen(QPen(kTouch, 3));
        p.drawLine(QPointF(52, top - 3), QPointF(68, top - 3));
        Down(p, 100, 14, 36);
    }
    return pm;
}
