#include "core/artwork.h"

#include <QFont>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>

namespace {

const QColor kInk(0x1f, 0x3a, 0x5f);       // deep blue of the lines
const QColor kSteel(0xb8, 0xc4, 0xd0);
const QColor kSteelDark(0x7d, 0x8b, 0x99);
const QColor kAccent(0xe0, 0x6c, 0x1c);    // the orange of the cutter and the billet
const QColor kPaper(0xfb, 0xf8, 0xf0);

QPixmap blank(int w, int h)
{
    QPixmap pm(w, h);
    pm.fill(Qt::transparent);
    return pm;
}

} // namespace

QPixmap BookFrame(int intFrame)
{
    // An open book seen from above; the right-hand page lifts, stands and falls onto the
    // left over frames 0..11. The page's free edge moves along a half ellipse.
    // Drawn on a 40 x 32 grid, shown at 48 x 38 pixels.
    QPixmap pm = blank(48, 38);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(1.2, 1.2);
    const QPointF spine(20, 27);
    // Cover.
    p.setPen(Qt::NoPen);
    p.setBrush(kInk);
    p.drawRoundedRect(QRectF(2, 9, 36, 21), 2, 2);
    // The two resting pages.
    p.setPen(QPen(kSteelDark, 0.8));
    p.setBrush(kPaper);
    QPainterPath left;
    left.moveTo(spine);
    left.quadTo(12, 24, 4, 27);
    left.lineTo(4, 10);
    left.quadTo(12, 7, 20, 10);
    left.closeSubpath();
    p.drawPath(left);
    QPainterPath right;
    right.moveTo(spine);
    right.quadTo(28, 24, 36, 27);
    right.lineTo(36, 10);
    right.quadTo(28, 7, 20, 10);
    right.closeSubpath();
    p.drawPath(right);
    // Lines of text on the resting pages.
    p.setPen(QPen(kSteel, 1));
    for (int i = 0; i < 4; ++i) {
        p.drawLine(QPointF(7, 14 + 3.5 * i), QPointF(17, 14 + 3.5 * i));
        p.drawLine(QPointF(23, 14 + 3.5 * i), QPointF(33, 14 + 3.5 * i));
    }
    // The turning page: angle 0 (lying right) to pi (lying left).
    int f = ((intFrame % 12) + 12) % 12;
    double a = M_PI * (f + 0.5) / 12.0;
    double edgeX = 20 + 16 * std::cos(a);
    double lift = 9 * std::sin(a);   // how far the page stands up
    QPainterPath page;
    page.moveTo(spine);
    page.quadTo(QPointF((20 + edgeX) / 2, 24 - lift), QPointF(edgeX, 27 - lift));
    page.lineTo(QPointF(edgeX, 10 - lift));
    page.quadTo(QPointF((20 + edgeX) / 2, 7 - lift), QPointF(20, 10));
    page.closeSubpath();
    QLinearGradient g(QPointF(20, 0), QPointF(edgeX, 0));
    g.setColorAt(0, QColor(0xe6, 0xe0, 0xd0));
    g.setColorAt(1, Qt::white);
    p.setBrush(g);
    p.setPen(QPen(kSteelDark, 0.8));
    p.drawPath(page);
    // A bookmark ribbon.
    p.setPen(Qt::NoPen);
    p.setBrush(kAccent);
    p.drawRect(QRectF(19.2, 26, 1.6, 5));
    return pm;
}

QPixmap HeadArt(int width, int height)
{
    QPixmap pm = blank(width, height);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    // The name, large, with a thin rule and the machine's name under it.
    QFont f = p.font();
    f.setPixelSize(height * 55 / 100);
    f.setBold(true);
    f.setLetterSpacing(QFont::PercentageSpacing, 104);
    p.setFont(f);
    QRect nameRect(0, 0, width, height * 66 / 100);
    p.setPen(kInk);
    p.drawText(nameRect, Qt::AlignHCenter | Qt::AlignBottom, QStringLiteral("Brantok"));
    int rule = height * 72 / 100;
    QLinearGradient g(0, 0, width, 0);
    g.setColorAt(0, Qt::transparent);
    g.setColorAt(0.2, kAccent);
    g.setColorAt(0.8, kAccent);
    g.setColorAt(1, Qt::transparent);
    p.fillRect(QRect(width / 8, rule, width * 3 / 4, 2), g);
    QFont s = p.font();
    s.setPixelSize(qMax(9, height * 17 / 100));
    s.setBold(false);
    s.setLetterSpacing(QFont::PercentageSpacing, 115);
    p.setFont(s);
    p.setPen(kSteelDark.darker(130));
    p.drawText(QRect(0, rule + 3, width, height - rule - 3), Qt::AlignHCenter | Qt::AlignTop,
               QStringLiteral("CNC CONTROL FOR THE EMCO F1 MILL"));
    return pm;
}

QPixmap MillArt(int width, int height)
{
    // Drawn on a 100 x 140 grid and scaled: column, head, spindle with cutter, table, billet.
    QPixmap pm = blank(width, height);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    double s = qMin(width / 100.0, height / 140.0);
    p.translate((width - 100 * s) / 2, (height - 140 * s) / 2);
    p.scale(s, s);
    QPen line(kInk, 1.4);
    line.setJoinStyle(Qt::RoundJoin);
    auto metal = [](double x0, double x1) {
        QLinearGradient g(x0, 0, x1, 0);
        g.setColorAt(0, QColor(0xd9, 0xe1, 0xe8));
        g.setColorAt(0.5, QColor(0xf4, 0xf7, 0xfa));
        g.setColorAt(1, QColor(0xa9, 0xb6, 0xc3));
        return g;
    };
    p.setPen(line);
    // Base.
    p.setBrush(metal(8, 92));
    p.drawRoundedRect(QRectF(8, 122, 84, 12), 2, 2);
    // Column.
    p.setBrush(metal(58, 80));
    p.drawRect(QRectF(58, 30, 22, 92));
    // Head on the column.
    p.setBrush(metal(30, 80));
    p.drawRoundedRect(QRectF(28, 14, 54, 30), 4, 4);
    // Motor on top.
    p.setBrush(metal(40, 70));
    p.drawRoundedRect(QRectF(40, 4, 30, 12), 3, 3);
    // Spindle nose and cutter.
    p.setBrush(metal(38, 50));
    p.drawRect(QRectF(38, 44, 12, 16));
    p.setBrush(kAccent);
    p.drawRect(QRectF(41.5, 60, 5, 16));
    p.setPen(QPen(kAccent.darker(140), 0.8));
    for (int i = 0; i < 4; ++i)
        p.drawLine(QPointF(41.5, 62 + 3.5 * i), QPointF(46.5, 64 + 3.5 * i));
    p.setPen(line);
    // Table with its T-slots and the hand wheel.
    p.setBrush(metal(10, 90));
    p.drawRect(QRectF(12, 100, 76, 10));
    p.setPen(QPen(kSteelDark, 0.8));
    for (int x = 20; x < 86; x += 14)
        p.drawLine(QPointF(x, 101.5), QPointF(x, 108.5));
    p.setPen(line);
    p.setBrush(metal(18, 70));
    p.drawRect(QRectF(24, 110, 44, 12));
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(QPointF(6, 105), 4, 4);
    p.drawLine(QPointF(10, 105), QPointF(12, 105));
    // The billet in the vice.
    p.setBrush(QColor(0xf3, 0xc9, 0x8b));
    p.drawRect(QRectF(30, 86, 28, 14));
    p.setBrush(metal(24, 64));
    p.drawRect(QRectF(24, 92, 6, 8));
    p.drawRect(QRectF(58, 92, 6, 8));
    // Axis arrows in the corner: X, Y, Z.
    p.setPen(QPen(kAccent, 1.2));
    QPointF o(16, 60);
    p.drawLine(o, o + QPointF(14, 0));
    p.drawLine(o, o + QPointF(0, -14));
    p.drawLine(o, o + QPointF(-8, 8));
    QFont f = p.font();
    f.setPixelSize(7);
    p.setFont(f);
    p.setPen(kInk);
    p.drawText(o + QPointF(15, 3), QStringLiteral("X"));
    p.drawText(o + QPointF(-2.5, -16), QStringLiteral("Z"));
    p.drawText(o + QPointF(-13, 14), QStringLiteral("Y"));
    return pm;
}

QPixmap SpindleImage(int intIndex)
{
    // Round buttons: a start triangle in green, a stop square in red; greyed when they
    // can't act (start while running, stop while stopped).
    const int n = 48;
    QPixmap pm = blank(n, n);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    bool start = intIndex == 1 || intIndex == 2;
    bool ready = intIndex == 1 || intIndex == 3;
    QColor base = start ? QColor(0x2e, 0x9d, 0x4b) : QColor(0xd0, 0x32, 0x2b);
    if (!ready)
        base = QColor(0xb9, 0xbe, 0xc4);
    QRadialGradient g(QPointF(n * 0.4, n * 0.35), n * 0.6);
    g.setColorAt(0, base.lighter(135));
    g.setColorAt(1, base.darker(115));
    p.setPen(QPen(base.darker(150), 1.5));
    p.setBrush(g);
    p.drawEllipse(QRectF(3, 3, n - 6, n - 6));
    p.setPen(Qt::NoPen);
    p.setBrush(ready ? Qt::white : QColor(0xee, 0xee, 0xee));
    if (start) {
        QPolygonF tri;
        tri << QPointF(19, 14) << QPointF(35, 24) << QPointF(19, 34);
        p.drawPolygon(tri);
    } else {
        p.drawRoundedRect(QRectF(16, 16, 16, 16), 2, 2);
    }
    return pm;
}

QIcon ToolbarIcon(const QString &strKey)
{
    const int n = 32;
    QPixmap pm = blank(n, n);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    QPen pen(kInk, 2.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    p.setPen(pen);
    if (strKey == QLatin1String("Back")) {
        QPainterPath a;
        a.moveTo(26, 23);
        a.cubicTo(26, 12, 18, 10, 8, 10);
        p.drawPath(a);
        p.drawLine(QPointF(8, 10), QPointF(14, 4));
        p.drawLine(QPointF(8, 10), QPointF(14, 16));
    } else if (strKey == QLatin1String("Settings")) {
        // A gear: eight teeth round a ring.
        p.translate(16, 16);
        p.setBrush(kInk);
        p.setPen(Qt::NoPen);
        for (int i = 0; i < 8; ++i) {
            p.save();
            p.rotate(45 * i);
            p.drawRoundedRect(QRectF(-3, -14, 6, 7), 1, 1);
            p.restore();
        }
        p.drawEllipse(QPointF(0, 0), 9.5, 9.5);
        p.setBrush(Qt::white);
        p.drawEllipse(QPointF(0, 0), 4, 4);
    } else {
        // A page of code with a pencil.
        p.setPen(QPen(kInk, 1.8));
        p.setBrush(kPaper);
        p.drawRoundedRect(QRectF(5, 3, 18, 25), 2, 2);
        p.setPen(QPen(kSteelDark, 1.6));
        for (int i = 0; i < 4; ++i)
            p.drawLine(QPointF(9, 9 + 5 * i), QPointF(19 - 3 * (i % 2), 9 + 5 * i));
        p.setPen(QPen(kAccent, 4, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(27, 12), QPointF(17, 27));
    }
    return QIcon(pm);
}

QIcon AppIcon()
{
    QPixmap pm = MillArt(64, 64);
    return QIcon(pm);
}
