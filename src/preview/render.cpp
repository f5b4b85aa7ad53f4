#include "preview/render.h"

#include "core/vb.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kLegendWidth = 230;   // px, right of the views
constexpr int kMargin = 34;         // px around each view, room for the grid's numbers
constexpr int kViewGap = 22;        // px between the top and the side view
constexpr double kMinZRange = 6.0;  // mm: a flat program still gets a readable side view
constexpr int64_t kSmoothVertices = 60000;   // per view: above it lines are drawn unsmoothed

const QColor kOutside(220, 0, 0);
const QColor kBilletFill(236, 222, 190, 150);   // the grid shows through
const QColor kBilletEdge(170, 140, 90);
const QColor kEnvelope(0, 130, 70);
const QColor kGridMinor(236, 236, 236);
const QColor kGridMajor(200, 200, 200);
const QColor kText(30, 30, 30);
const QColor kLeadIn(130, 130, 130);

// Everything a view needs to turn mm into pixels: p = centre + (v - mid) * scale + pan, with
// the vertical axis up.
struct ViewMap {
    QRect rect;
    double scale = 1;      // px per mm, zoom included
    double cx = 0, cy = 0; // pixel of the frame's middle, pan included
    double midH = 0, midV = 0;
    double px(double h) const { return cx + (h - midH) * scale; }
    double py(double v) const { return cy - (v - midV) * scale; }
    double h(double px) const { return midH + (px - cx) / scale; }
    double v(double py) const { return midV - (py - cy) / scale; }
};

ViewMap MakeMap(const QRect &rect, double s, double zoom, QPointF pan, double midH, double midV)
{
    ViewMap m;
    m.rect = rect;
    m.scale = s * zoom;
    m.cx = rect.left() + rect.width() / 2.0 + pan.x();
    m.cy = rect.top() + rect.height() / 2.0 + pan.y();
    m.midH = midH;
    m.midV = midV;
    return m;
}

// Grid spacing in mm: the smallest of 1, 2, 5, 10, ... that leaves at least `minPx` between lines.
double GridStep(double pxPerMm, double minPx)
{
    for (double step = 1;; step *= 10) {
        for (double k : {1.0, 2.0, 5.0})
            if (step * k * pxPerMm >= minPx)
                return step * k;
        if (step > 1e6)
            return step;
    }
}

QString Mm(double v) { return vb::FormatGeneral(std::round(v * 1000) / 1000); }

void DrawGrid(QPainter &p, const ViewMap &m, const QString &hName, const QString &vName)
{
    const double minor = GridStep(m.scale, 7);
    const double major = GridStep(m.scale, 60);
    const double h0 = m.h(m.rect.left()), h1 = m.h(m.rect.right());
    const double v0 = m.v(m.rect.bottom()), v1 = m.v(m.rect.top());
    p.save();
    p.setClipRect(m.rect);
    p.setRenderHint(QPainter::Antialiasing, false);
    for (int pass = 0; pass < 2; ++pass) {
        const double step = pass == 0 ? minor : major;
        p.setPen(QPen(pass == 0 ? kGridMinor : kGridMajor, 1));
        for (double h = std::ceil(h0 / step) * step; h <= h1; h += step)
            p.drawLine(QPointF(m.px(h), m.rect.top()), QPointF(m.px(h), m.rect.bottom()));
        for (double v = std::ceil(v0 / step) * step; v <= v1; v += step)
            p.drawLine(QPointF(m.rect.left(), m.py(v)), QPointF(m.rect.right(), m.py(v)));
    }
    p.restore();
    // The numbers of the major lines, outside the view: mm below and to the left.
    p.save();
    p.setPen(kText);
    QFont f = p.font();
    f.setPixelSize(10);
    p.setFont(f);
    for (double h = std::ceil(h0 / major) * major; h <= h1; h += major)
        p.drawText(QRectF(m.px(h) - 30, m.rect.bottom() + 2, 60, 12), Qt::AlignHCenter | Qt::AlignTop, Mm(h));
    for (double v = std::ceil(v0 / major) * major; v <= v1; v += major)
        p.drawText(QRectF(m.rect.left() - kMargin, m.py(v) - 6, kMargin - 3, 12), Qt::AlignRight | Qt::AlignVCenter,
                   Mm(v));
    p.drawText(QRectF(m.rect.right() + 4, m.rect.bottom() - 6, kMargin, 12), Qt::AlignLeft | Qt::AlignVCenter,
               hName + QStringLiteral(" mm"));
    p.drawText(QRectF(m.rect.left() - kMargin, m.rect.top() - 14, kMargin - 3, 12), Qt::AlignRight | Qt::AlignTop,
               vName + QStringLiteral(" mm"));
    p.restore();
}

// A dimension line with its length, from a to b (pixels), the text on the outer side.
void DrawDimension(QPainter &p, QPointF a, QPointF b, double mm, bool vertical)
{
    p.save();
    p.setPen(QPen(QColor(60, 60, 160), 1));
    p.drawLine(a, b);
    const QPointF tick = vertical ? QPointF(4, 0) : QPointF(0, 4);
    p.drawLine(a - tick, a + tick);
    p.drawLine(b - tick, b + tick);
    QFont f = p.font();
    f.setPixelSize(11);
    p.setFont(f);
    const QString text = vb::Format000(mm);
    const QPointF mid = (a + b) / 2;
    if (vertical) {
        p.translate(mid);
        p.rotate(-90);
        p.drawText(QRectF(-50, -15, 100, 13), Qt::AlignCenter, text);
    } else {
        p.drawText(QRectF(mid.x() - 50, mid.y() + 2, 100, 13), Qt::AlignCenter, text);
    }
    p.restore();
}

struct Pens {
    QPen cut, rapid;
};

Pens PensFor(const QColor &c, bool smooth = true)
{
    Pens pens;
    pens.cut = QPen(c, smooth ? 1.4 : 0.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    pens.rapid = QPen(c, smooth ? 1.0 : 0.0, Qt::DashLine, Qt::FlatCap, Qt::RoundJoin);
    pens.rapid.setDashPattern({5, 4});
    return pens;
}

// One view's path. `hAxis`/`vAxis` pick the axes (0 X, 1 Y, 2 Z). The walk keeps the step
// position in integers and emits a vertex only when the pixel changes.
void DrawPath(QPainter &p, const ViewMap &m, const Toolpath &path, int hAxis, int vAxis, PreviewDrawStats &stats)
{
    p.save();
    p.setClipRect(m.rect.adjusted(-1, -1, 1, 1));
    p.setRenderHint(QPainter::Antialiasing, false);
    const double k = m.scale / kPreviewStepsPerMm;   // px per step
    const double bh = m.cx - m.midH * m.scale;       // pixel of step 0
    const double bv = m.cy + m.midV * m.scale;

    // The lead-in: grey dashes from where the cutter stands to the first point, Z first.
    if (path.hasFirstMove) {
        const auto pt = [&](const std::array<int32_t, 3> &s) { return QPointF(bh + s[hAxis] * k, bv - s[vAxis] * k); };
        std::array<int32_t, 3> corner = path.leadFrom;
        corner[2] = path.start[2];
        QPen lead(kLeadIn, 1.0, Qt::DotLine);
        p.setPen(lead);
        const QPointF pts[3] = {pt(path.leadFrom), pt(corner), pt(path.start)};
        p.drawPolyline(pts, 3);
    }

    // Bits of the flags byte for the two axes of this view.
    const uint8_t hStep = static_cast<uint8_t>(4 << hAxis), hPos = static_cast<uint8_t>(32 << hAxis);
    const uint8_t vStep = static_cast<uint8_t>(4 << vAxis), vPos = static_cast<uint8_t>(32 << vAxis);
    int32_t h = path.start[static_cast<size_t>(hAxis)], v = path.start[static_cast<size_t>(vAxis)];
    if (!path.hasFirstMove) {
        h = path.leadFrom[static_cast<size_t>(hAxis)];
        v = path.leadFrom[static_cast<size_t>(vAxis)];
    }
    // Pass 1: the pieces of polyline, one vertex per new pixel. Stretches where the path runs
    // outside the view (zoomed in) are left out: a piece ends when two vertices in a row lie
    // beyond the margin, and the next starts from the last vertex outside.
    struct Piece {
        QPolygonF line;
        int16_t pen;   // tool index + 1, or -1 for red
        bool rapid;
    };
    std::vector<Piece> pieces;
    const QRectF keep = QRectF(m.rect).adjusted(-4 - 3 * k, -4 - 3 * k, 4 + 3 * k, 4 + 3 * k);
    const uint8_t *steps = path.steps.data();
    int64_t vertices = 0;
    for (const PreviewMove &mv : path.moves) {
        const auto pen = static_cast<int16_t>(mv.outside ? -1 : mv.tool + 1);
        QPolygonF line;
        const auto flush = [&] {
            if (line.size() >= 2) {
                vertices += line.size();
                pieces.push_back({std::move(line), pen, mv.rapid});
            }
            line = QPolygonF();
        };
        QPointF prev(bh + h * k, bv - v * k);
        bool prevIn = keep.contains(prev);
        if (prevIn)
            line.append(prev);
        auto lastH = static_cast<int32_t>(std::floor(prev.x())), lastV = static_cast<int32_t>(std::floor(prev.y()));
        const auto vertex = [&](QPointF at) {
            const bool in = keep.contains(at);
            if (in || prevIn) {
                if (line.isEmpty())
                    line.append(prev);
                line.append(at);
            } else if (!line.isEmpty()) {
                flush();
            }
            prev = at;
            prevIn = in;
        };
        const uint8_t *s = steps + mv.firstStep;
        const uint8_t *end = s + mv.stepCount;
        bool moved = false;
        for (; s != end; ++s) {
            const uint8_t f = *s;
            if (!(f & (hStep | vStep)))
                continue;
            if (f & hStep)
                h += (f & hPos) ? 1 : -1;
            if (f & vStep)
                v += (f & vPos) ? 1 : -1;
            const double fh = bh + h * k, fv = bv - v * k;
            const auto ph = static_cast<int32_t>(std::floor(fh)), pv = static_cast<int32_t>(std::floor(fv));
            moved = true;
            if (ph == lastH && pv == lastV)
                continue;
            lastH = ph;
            lastV = pv;
            vertex(QPointF(fh, fv));
            moved = false;
        }
        // The move's last point even when it ended inside the last pixel.
        if (moved)
            vertex(QPointF(bh + h * k, bv - v * k));
        flush();
        if (mv.outside)
            ++stats.redPolylines;
        ++(mv.rapid ? stats.rapidPolylines : stats.cutPolylines);
    }
    stats.vertices += vertices;

    // Pass 2: draw. A dense picture is drawn with 1-pixel lines without smoothing, which takes
    // a third of the time and looks the same where the lines crowd anyway.
    const bool smooth = vertices < kSmoothVertices;
    p.setRenderHint(QPainter::Antialiasing, smooth);
    std::vector<Pens> pens;
    for (int t = -1; t <= static_cast<int>(path.tools.size()); ++t)
        pens.push_back(PensFor(t < 0 ? kOutside : PreviewToolColour(t), smooth));
    for (const Piece &piece : pieces) {
        const Pens &pen = pens[static_cast<size_t>(piece.pen + 1)];
        p.setPen(piece.rapid ? pen.rapid : pen.cut);
        p.drawPolyline(piece.line);
    }
    p.restore();
}

void DrawBilletAndEnvelope(QPainter &p, const ViewMap &top, const ViewMap &side, const Toolpath &path)
{
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    if (path.hasBillet()) {
        p.setPen(QPen(kBilletEdge, 1));
        p.setBrush(kBilletFill);
        p.setClipRect(top.rect);
        p.drawRect(QRectF(QPointF(top.px(0), top.py(path.billetWidth)),
                          QPointF(top.px(path.billetLength), top.py(0))));
        p.setClipRect(side.rect);
        p.drawRect(QRectF(QPointF(side.px(0), side.py(0)),
                          QPointF(side.px(path.billetLength), side.py(-std::max(path.billetDepth, 0.0f)))));
    }
    QPen env(kEnvelope, 1.5, Qt::DashDotLine);
    p.setPen(env);
    p.setBrush(Qt::NoBrush);
    p.setClipRect(top.rect);
    p.drawRect(QRectF(QPointF(top.px(0), top.py(kEnvelopeY)), QPointF(top.px(kEnvelopeX), top.py(0))));
    p.setClipRect(side.rect);
    for (double x : {0.0, kEnvelopeX})
        p.drawLine(QPointF(side.px(x), side.rect.top()), QPointF(side.px(x), side.rect.bottom()));
    p.restore();
}

// The extent as a thin box with its dimensions below and to the left.
void DrawExtent(QPainter &p, const ViewMap &m, const Toolpath &path, int hAxis, int vAxis)
{
    if (path.extent.empty)
        return;
    const double h0 = path.extent.min[static_cast<size_t>(hAxis)] / kPreviewStepsPerMm;
    const double h1 = path.extent.max[static_cast<size_t>(hAxis)] / kPreviewStepsPerMm;
    const double v0 = path.extent.min[static_cast<size_t>(vAxis)] / kPreviewStepsPerMm;
    const double v1 = path.extent.max[static_cast<size_t>(vAxis)] / kPreviewStepsPerMm;
    p.save();
    p.setClipRect(m.rect);
    p.setPen(QPen(QColor(60, 60, 160), 1, Qt::DotLine));
    p.drawRect(QRectF(QPointF(m.px(h0), m.py(v1)), QPointF(m.px(h1), m.py(v0))));
    const double below = std::min(m.py(v0) + 12, m.rect.bottom() - 16.0);
    const double left = std::max(m.px(h0) - 12, m.rect.left() + 16.0);
    DrawDimension(p, QPointF(m.px(h0), below), QPointF(m.px(h1), below), h1 - h0, false);
    DrawDimension(p, QPointF(left, m.py(v0)), QPointF(left, m.py(v1)), v1 - v0, true);
    p.restore();
}

void DrawLegend(QPainter &p, const QRect &r, const Toolpath &path, const QString &title)
{
    p.save();
    p.setPen(kText);
    QFont f = p.font();
    f.setPixelSize(12);
    p.setFont(f);
    const int line = QFontMetrics(f).height() + 3;
    int y = r.top();
    const auto text = [&](const QString &s, bool bold = false) {
        QFont g = f;
        g.setBold(bold);
        p.setFont(g);
        const QRect box(r.left(), y, r.width(), 4 * line);
        const QRect used = p.boundingRect(box, Qt::TextWordWrap, s);
        p.drawText(box, Qt::TextWordWrap, s);
        y += used.height() + 3;
        p.setFont(f);
    };
    if (!title.isEmpty())
        text(title, true);
    text(QStringLiteral("Machining time ") + strPreviewTime(path.seconds()), true);
    text(QStringLiteral("(lead-in from the origin at rapid speed included, tool-change pauses excluded)"));
    y += 4;
    const auto ext = [&](int a, char name) {
        const double lo = path.extent.min[static_cast<size_t>(a)] / kPreviewStepsPerMm;
        const double hi = path.extent.max[static_cast<size_t>(a)] / kPreviewStepsPerMm;
        text(QStringLiteral("%1 %2 to %3 mm").arg(QLatin1Char(name)).arg(vb::Format000(lo), vb::Format000(hi)));
    };
    if (!path.extent.empty) {
        text(QStringLiteral("Extent"), true);
        ext(0, 'X');
        ext(1, 'Y');
        ext(2, 'Z');
    }
    text(QStringLiteral("%1 cuts, %2 rapids, %3 steps").arg(path.cutMoves).arg(path.rapidMoves).arg(path.steps.size()));
    y += 6;

    const auto swatch = [&](const QPen &pen, const QString &s) {
        p.save();
        p.setRenderHint(QPainter::Antialiasing, true);
        p.setPen(pen);
        p.drawLine(QPointF(r.left(), y + line / 2.0), QPointF(r.left() + 28, y + line / 2.0));
        p.restore();
        p.drawText(QRect(r.left() + 36, y, r.width() - 36, line), Qt::AlignVCenter, s);
        y += line;
    };
    text(QStringLiteral("Tools"), true);
    for (size_t t = 0; t < path.tools.size(); ++t) {
        const PreviewTool &tool = path.tools[t];
        QString s = QStringLiteral("T%1").arg(tool.number);
        if (!tool.type.isEmpty())
            s += u' ' + tool.type;
        s += QStringLiteral(" %1 mm").arg(vb::FormatFixed(tool.diameter, 2));
        swatch(PensFor(PreviewToolColour(static_cast<int>(t) + 1)).cut, s);
    }
    y += 6;
    swatch(PensFor(kText).cut, QStringLiteral("cut"));
    swatch(PensFor(kText).rapid, QStringLiteral("rapid"));
    swatch(QPen(kLeadIn, 1.0, Qt::DotLine), QStringLiteral("lead-in"));
    swatch(QPen(kOutside, 2), QStringLiteral("outside the envelope: %1").arg(path.outsideMoves));
    swatch(QPen(kEnvelope, 1.5, Qt::DashDotLine), QStringLiteral("envelope 200 x 100 mm"));
    if (path.hasBillet())
        swatch(QPen(kBilletFill, 8), QStringLiteral("billet %1 x %2 x %3 mm")
                                         .arg(vb::FormatGeneral(path.billetLength), vb::FormatGeneral(path.billetWidth),
                                              vb::FormatGeneral(path.billetDepth)));
    p.restore();
}

} // namespace

QColor PreviewToolColour(int index)
{
    // Index 0 is "no tool yet"; then one colour per tool, none of them red.
    static const QColor kPalette[] = {QColor(90, 90, 90),   QColor(20, 90, 210),  QColor(0, 150, 60),
                                      QColor(150, 60, 190), QColor(230, 130, 0),  QColor(0, 150, 160),
                                      QColor(140, 90, 40),  QColor(200, 60, 140), QColor(90, 120, 0)};
    constexpr int n = sizeof(kPalette) / sizeof(kPalette[0]);
    return index <= 0 ? kPalette[0] : kPalette[1 + (index - 1) % (n - 1)];
}

PreviewLayout LayoutPreview(const Toolpath &path, const QRect &area)
{
    PreviewLayout l;
    // The frame: the path and the lead-in start, with the billet, grown a little.
    double lo[3], hi[3];
    for (int a = 0; a < 3; ++a) {
        const size_t i = static_cast<size_t>(a);
        lo[a] = path.leadFrom[i] / kPreviewStepsPerMm;
        hi[a] = lo[a];
        if (!path.extent.empty) {
            lo[a] = std::min(lo[a], path.extent.min[i] / kPreviewStepsPerMm);
            hi[a] = std::max(hi[a], path.extent.max[i] / kPreviewStepsPerMm);
        }
    }
    if (path.hasBillet()) {
        lo[0] = std::min(lo[0], 0.0);
        hi[0] = std::max(hi[0], static_cast<double>(path.billetLength));
        lo[1] = std::min(lo[1], 0.0);
        hi[1] = std::max(hi[1], static_cast<double>(path.billetWidth));
        lo[2] = std::min(lo[2], -static_cast<double>(path.billetDepth));
        hi[2] = std::max(hi[2], 0.0);
    }
    for (int a = 0; a < 3; ++a) {
        const double minRange = a == 2 ? kMinZRange : 10.0;
        const double grow = std::max((hi[a] - lo[a]) * 0.06, (minRange - (hi[a] - lo[a])) / 2);
        lo[a] -= std::max(grow, 1.0);
        hi[a] += std::max(grow, 1.0);
    }
    l.x0 = lo[0], l.x1 = hi[0], l.y0 = lo[1], l.y1 = hi[1], l.z0 = lo[2], l.z1 = hi[2];

    const bool wide = area.width() >= 3 * kLegendWidth;
    const int legendW = wide ? kLegendWidth : 0;
    l.legend = wide ? QRect(area.right() - kLegendWidth + 1, area.top() + 10, kLegendWidth - 10, area.height() - 20)
                    : QRect();
    const int w = area.width() - legendW - 2 * kMargin;
    const int h = area.height() - 3 * kMargin - kViewGap;
    const double sx = w / (l.x1 - l.x0);
    const double sy = h / ((l.y1 - l.y0) + (l.z1 - l.z0));
    l.pxPerMm = std::max(1e-3, std::min(sx, sy));
    const int topH = static_cast<int>(std::lround((l.y1 - l.y0) * l.pxPerMm));
    const int sideH = static_cast<int>(std::lround((l.z1 - l.z0) * l.pxPerMm));
    const int viewW = std::max(w, 1);
    // Spare height goes between the views' blocks equally above and below.
    const int spare = std::max(0, h - topH - sideH) / 2;
    l.topView = QRect(area.left() + kMargin, area.top() + kMargin / 2 + spare / 2 + 8, viewW, std::max(topH, 1));
    l.sideView = QRect(l.topView.left(), l.topView.bottom() + 1 + kMargin + kViewGap, viewW, std::max(sideH, 1));
    // Leftover height: the side view keeps its scale; the top view may take what is left.
    return l;
}

PreviewDrawStats DrawPreview(QPainter &p, const QRect &area, const Toolpath &path, const PreviewCamera &camera,
                             const QString &title)
{
    PreviewDrawStats stats;
    const PreviewLayout l = LayoutPreview(path, area);
    const ViewMap top = MakeMap(l.topView, l.pxPerMm, camera.zoom, camera.pan, (l.x0 + l.x1) / 2, (l.y0 + l.y1) / 2);
    const ViewMap side = MakeMap(l.sideView, l.pxPerMm, camera.zoom, QPointF(camera.pan.x(), camera.panSideZ),
                                 (l.x0 + l.x1) / 2, (l.z0 + l.z1) / 2);

    p.save();
    QFont f = p.font();
    f.setPixelSize(12);
    p.setFont(f);
    p.setPen(kText);
    p.drawText(QRect(l.topView.left(), l.topView.top() - 16, l.topView.width(), 14), Qt::AlignHCenter,
               QStringLiteral("Top view (X-Y)"));
    p.drawText(QRect(l.sideView.left(), l.sideView.top() - 16, l.sideView.width(), 14), Qt::AlignHCenter,
               QStringLiteral("Side view (X-Z)"));
    DrawGrid(p, top, QStringLiteral("X"), QStringLiteral("Y"));
    DrawGrid(p, side, QStringLiteral("X"), QStringLiteral("Z"));
    DrawBilletAndEnvelope(p, top, side, path);
    DrawPath(p, top, path, 0, 1, stats);
    DrawPath(p, side, path, 0, 2, stats);
    DrawExtent(p, top, path, 0, 1);
    DrawExtent(p, side, path, 0, 2);
    p.setPen(QPen(kGridMajor, 1));
    p.setBrush(Qt::NoBrush);
    p.drawRect(l.topView);
    p.drawRect(l.sideView);
    if (!l.legend.isEmpty())
        DrawLegend(p, l.legend, path, title);
    p.restore();
    return stats;
}

QImage RenderPreview(const Toolpath &path, QSize size, const PreviewCamera &camera, const QString &title,
                     PreviewDrawStats *stats)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter p(&image);
    const PreviewDrawStats s = DrawPreview(p, image.rect(), path, camera, title);
    if (stats)
        *stats = s;
    return image;
}

namespace {

bool InSideView(const PreviewLayout &l, QPointF at) { return at.y() > l.topView.bottom() + (kMargin + kViewGap) / 2.0; }

} // namespace

PreviewCamera ZoomedCamera(const Toolpath &path, const QRect &area, const PreviewCamera &camera, double factor,
                           QPointF at)
{
    const PreviewLayout l = LayoutPreview(path, area);
    PreviewCamera c = camera;
    c.zoom = std::clamp(camera.zoom * factor, 0.2, 500.0);
    const double ratio = c.zoom / camera.zoom;
    // p = centre + (v - mid) * scale * zoom + pan: keeping p under the cursor fixed gives
    // pan' = at - centre - (at - centre - pan) * ratio; the other view keeps its middle.
    const bool side = InSideView(l, at);
    const QRect &view = side ? l.sideView : l.topView;
    const QPointF centre(view.left() + view.width() / 2.0, view.top() + view.height() / 2.0);
    const QPointF pan(camera.pan.x(), side ? camera.panSideZ : camera.pan.y());
    const QPointF moved = at - centre - (at - centre - pan) * ratio;
    c.pan.setX(moved.x());
    if (side) {
        c.panSideZ = moved.y();
        c.pan.setY(camera.pan.y() * ratio);
    } else {
        c.pan.setY(moved.y());
        c.panSideZ = camera.panSideZ * ratio;
    }
    return c;
}

PreviewCamera PannedCamera(const Toolpath &path, const QRect &area, const PreviewCamera &camera, QPointF from,
                           QPointF by)
{
    PreviewCamera c = camera;
    c.pan.rx() += by.x();
    if (InSideView(LayoutPreview(path, area), from))
        c.panSideZ += by.y();
    else
        c.pan.ry() += by.y();
    return c;
}
