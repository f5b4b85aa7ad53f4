// Draws a toolpath (preview/toolpath.h) with QPainter: the top view (X-Y) above the side view
// (X-Z), both to one scale and with X in line, a millimetre grid, the extent's dimensions, the
// billet and the working envelope, cuts solid and rapids dashed, one colour per tool, moves
// that leave the envelope in red, and a legend with the machining time.
//
// Fast for big programs: each view walks the step bytes once and makes a vertex only when the
// step lands on a new pixel, so a 1.5-million-step pocket becomes a few hundred thousand
// vertices at most, whatever the zoom. Used by `brantok-nc preview` (into a QImage) and by the
// Preview window (on every paint after a zoom or a pan; the window keeps the picture between).
// Needs a QGuiApplication for its text.
#pragma once

#include "preview/toolpath.h"

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRect>
#include <QString>

class QPainter;

// How the operator looks at the picture: 1 and no pan fit the whole path (and the billet).
struct PreviewCamera {
    double zoom = 1.0;     // 1 = fit; above 1 magnifies
    QPointF pan;           // pixels, added after the zoom: X of both views, Y of the top view
    double panSideZ = 0;   // pixels, the side view's own vertical pan
};

// Where the views stand in a picture of a given size, and the scale at zoom 1.
struct PreviewLayout {
    QRect topView;         // X-Y, Y up
    QRect sideView;        // X-Z, Z up
    QRect legend;
    double pxPerMm = 1.0;  // at zoom 1
    // The frame in mm at zoom 1: X and Y of the top view, Z of the side view.
    double x0 = 0, x1 = 1, y0 = 0, y1 = 1, z0 = 0, z1 = 1;
};

// What one drawing did (for the benchmark and the tests).
struct PreviewDrawStats {
    int64_t vertices = 0;  // polyline vertices drawn, both views
    int cutPolylines = 0;
    int rapidPolylines = 0;
    int redPolylines = 0;
};

PreviewLayout LayoutPreview(const Toolpath &path, const QRect &area);
// Draws everything into `area` of the painter. `title` heads the legend (a file name).
PreviewDrawStats DrawPreview(QPainter &p, const QRect &area, const Toolpath &path, const PreviewCamera &camera,
                             const QString &title);
// A white picture of `size` with the preview drawn.
QImage RenderPreview(const Toolpath &path, QSize size, const PreviewCamera &camera = {}, const QString &title = {},
                     PreviewDrawStats *stats = nullptr);
// The camera after a wheel turn of `factor` (above 1 magnifies) about pixel `at` of `area`: the
// point under the cursor stays where it is (the other view keeps its middle).
PreviewCamera ZoomedCamera(const Toolpath &path, const QRect &area, const PreviewCamera &camera, double factor,
                           QPointF at);
// The camera after a drag by `by` pixels that started at `from`: X moves both views, the vertical
// only the view where the drag started.
PreviewCamera PannedCamera(const Toolpath &path, const QRect &area, const PreviewCamera &camera, QPointF from,
                           QPointF by);
// The colour of tool index i (palette; red is kept for moves outside the envelope).
QColor PreviewToolColour(int index);
