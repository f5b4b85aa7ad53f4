// The pictures of the manual screen, drawn at run time: the numeric pad with the jog speeds
// on its keys, the direction lamps, and the cutter touching the billet for the origin tasks.
#include "link/keyboard_panel.h"

#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

const QColor kInk(0x1f, 0x3a, 0x5f);
const QColor kKey(0xf4, 0xf6, 0xf8);
const QColor kKeyEdge(0x9a, 0xa7, 0xb4);
const QColor kDead(0xd9, 0xde, 0xe3);
const QColor kRapid(0xe0, 0x6c, 0x1c);   // orange: the rapid keys
const QColor kSpeed(0x1d, 0x4e, 0xd8);   // blue: the speed keys
const QColor kLit(0x16, 0xa3, 0x4a);     // a lamp that is on
const QColor kBillet(0xc9, 0xa2, 0x6b);
const QColor kSteel(0x9a, 0xa7, 0xb4);
const QColor kTouch(0xd9, 0x22, 0x1c);

QPixmap blank(int w, int h)
{
    QPixmap pm(w, h);
    pm.fill(Qt::transparent);
    return pm;
}

void key(QPainter &p, const QRectF &r, const QString &top, const QString &bottom, const QColor &ink, bool live)
{
    p.setPen(QPen(kKeyEdge, 1));
    p.setBrush(live ? kKey : kDead);
    p.drawRoundedRect(r.adjusted(1, 1, -1, -1), 4, 4);
    QFont f = p.font();
    f.setPixelSize(13);
    f.setBold(true);
    p.setFont(f);
    p.setPen(live ? ink : QColor(0x8a, 0x96, 0xa3));
    p.drawText(r.adjusted(0, 3, 0, -r.height() / 2), Qt::AlignHCenter | Qt::AlignVCenter, top);
    f.setPixelSize(10);
    f.setBold(false);
    p.setFont(f);
    p.drawText(r.adjusted(0, r.height() / 2 - 2, 0, -3), Qt::AlignHCenter | Qt::AlignVCenter, bottom);
}

} // namespace

QPixmap ilsKeypad(const QString &strKey)
{
    // The numeric pad, 4 keys wide and 5 high, with the jog speed under each digit:
    //   Num  /   *   -
    //    7   8   9   +        digits 1..9: 10..90 mm/min
    //    4   5   6            0: rapid ("NumpadDot": 0 and . together)
    //    1   2   3  Ent
    //      0     .
    const bool blnDot = strKey == QLatin1String("NumpadDot");
    const int u = 34;   // one key, px
    QPixmap pm = blank(4 * u + 170, 5 * u + 2);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    auto at = [u](double c, double r, double w = 1, double h = 1) { return QRectF(c * u, r * u, w * u, h * u); };
    key(p, at(0, 0), QStringLiteral("Num"), QString(), kInk, false);
    key(p, at(1, 0), QStringLiteral("/"), QString(), kInk, false);
    key(p, at(2, 0), QStringLiteral("*"), QString(), kInk, false);
    key(p, at(3, 0), QStringLiteral("-"), QString(), kInk, false);
    key(p, at(3, 1, 1, 2), QStringLiteral("+"), QString(), kInk, false);
    key(p, at(3, 3, 1, 2), QStringLiteral("Ent"), QString(), kInk, false);
    for (int d = 1; d <= 9; ++d) {
        const int col = (d - 1) % 3;
        const int row = 3 - (d - 1) / 3;
        key(p, at(col, row), QString::number(d), QString::number(d * 10), kSpeed, true);
    }
    key(p, at(0, 4, 2, 1), QStringLiteral("0"), QStringLiteral("Rapid"), kRapid, true);
    key(p, at(2, 4), QStringLiteral("."), blnDot ? QStringLiteral("Rapid") : QString(), kRapid, blnDot);

    // The legend beside the pad.
    QFont f = p.font();
    f.setPixelSize(12);
    p.setFont(f);
    const QRectF legend(4 * u + 12, 4, 158, 5 * u - 8);
    p.setPen(kInk);
    QString text = QStringLiteral("Hold an arrow key or Page Up / Page Down to move.\n\n");
    text += QStringLiteral("With a blue key: that speed in mm/min.\n");
    text += QStringLiteral("Arrow alone: one step.\n\n");
    text += blnDot ? QStringLiteral("Hold 0 and . together for rapid.") : QStringLiteral("Hold 0 for rapid.");
    p.drawText(legend, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, text);
    return pm;
}

QPixmap ArrowLamp(int intLamp, bool blnLit)
{
    // An arrow in a round lamp, pointing the way the axis moves on the screen's picture:
    // 1 X+ right, 2 X- left, 3 Y+ up (away), 4 Y- down, 5 Z+ up, 6 Z- down.
    const int s = 40;
    QPixmap pm = blank(s, s);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(blnLit ? kLit.darker(130) : kKeyEdge, 1.5));
    p.setBrush(blnLit ? kLit : kKey);
    p.drawEllipse(QRectF(2, 2, s - 4, s - 4));
    double angle = 0;   // degrees, 0 = right
    switch (intLamp) {
    case 2: angle = 180; break;
    case 3: case 5: angle = -90; break;
    case 4: case 6: angle = 90; break;
    default: break;
    }
    p.translate(s / 2.0, s / 2.0);
    p.rotate(angle);
    QPainterPath arrow;
    arrow.moveTo(11, 0);
    arrow.lineTo(1, -9);
    arrow.lineTo(1, -4);
    arrow.lineTo(-10, -4);
    arrow.lineTo(-10, 4);
    arrow.lineTo(1, 4);
    arrow.lineTo(1, 9);
    arrow.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(blnLit ? QColor(Qt::white) : kKeyEdge);
    p.drawPath(arrow);
    return pm;
}

QPixmap ilsCutter(const QString &strKey)
{
    // The billet and an end mill just scratching it, the touching edge in red:
    // "CutterTop" from above on the top face, "CutterSide" at the left hand end,
    // "CutterFront" at the front face (seen from the side).
    const int w = 120, h = 80;
    QPixmap pm = blank(w, h);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF billet(34, 44, 80, 30);
    p.setPen(QPen(kBillet.darker(140), 1));
    p.setBrush(kBillet);
    p.drawRect(billet);
    QRectF cutter;
    QLineF touch;
    if (strKey == QLatin1String("CutterSide") || strKey == QLatin1String("CutterFront")) {
        cutter = QRectF(billet.left() - 16, 20, 16, 46);
        touch = QLineF(billet.left(), billet.top(), billet.left(), cutter.bottom());
    } else {
        cutter = QRectF(56, 6, 16, billet.top() - 6);
        touch = QLineF(cutter.left() - 4, billet.top(), cutter.right() + 4, billet.top());
    }
    // Shank and flutes.
    p.setBrush(kSteel);
    p.setPen(QPen(kSteel.darker(150), 1));
    p.drawRect(cutter);
    p.setPen(QPen(kSteel.darker(170), 1));
    for (double y = cutter.top() + cutter.height() * 0.45; y < cutter.bottom() - 2; y += 6)
        p.drawLine(QPointF(cutter.left(), y), QPointF(cutter.right(), y + 4));
    p.setPen(QPen(kTouch, 3));
    p.drawLine(touch);
    QFont f = p.font();
    f.setPixelSize(10);
    p.setFont(f);
    p.setPen(kInk);
    const QString face = strKey == QLatin1String("CutterSide")
                             ? QStringLiteral("left hand end")
                             : (strKey == QLatin1String("CutterFront") ? QStringLiteral("front") : QStringLiteral("top"));
    p.drawText(QRectF(billet.left() + 4, billet.top() + 4, billet.width() - 8, billet.height() - 8),
               Qt::AlignCenter, face);
    return pm;
}
