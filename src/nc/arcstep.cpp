// Arc stepping. Each piece of an arc lies within one quadrant of its circle, where both
// coordinates change monotonically; the walk steps one axis by a whole step and takes the
// other from the circle, and closes with a straight run to the piece's end.
//
// Quirks that are kept on purpose, because the machine's motion depends on them:
//  - an R arc whose start and end share X or Y takes the chord's midpoint as its centre;
//  - an R arc is always the smaller arc; a chord longer than 2R gives the midpoint as centre;
//  - an R arc under 3 steps on both axes is cut as a straight line;
//  - the circle step uses one sign (-sX) for both candidates; where it is wrong for cx the
//    comparison rejects cx and the walk goes on in whole X steps;
//  - the best distance starts at 9999.0 mm^2, so a piece with a chord of 100 mm or more stops
//    at its first point and is made by the closing straight run.
// Locals that are not named as single-precision work in double; what is stored in a named
// single (centre, I, J, radius, gsngCurX/Y) is rounded to float.
#include "nc/arcstep.h"

#include "core/logger.h"
#include "core/state.h"
#include "core/vb.h"
#include "nc/commands.h"
#include "nc/linestep.h"
#include "nc/stepcode.h"

#include <cmath>
#include <cstdlib>

using vb::CInt;
using vb::Sgn;

namespace {

// Steps on X and Y together while both remain, then along the one that is left.
void EmitRun(int32_t lngCommand, int32_t dX, int32_t dY, float sngFeed, bool blnStopOnCancel)
{
    while ((std::abs(dX) >= 1 || std::abs(dY) >= 1) && !(blnStopOnCancel && gblnCancel)) {
        const int sx = Sgn(dX), sy = Sgn(dY);
        SendStepToBuffer(lngCommand, static_cast<int16_t>(sx), static_cast<int16_t>(sy), 0,
                         static_cast<float>(sx * sngFeed), static_cast<float>(sy * sngFeed), 0.0f, kStepMove);
        dX -= sx;
        dY -= sy;
    }
}

} // namespace

void BuffMakeArc(int32_t lngCommand, float sngX, float sngY, float sngZ, float sngFeed, int16_t intDir) try {
    (void)sngZ;
    // A zero move whose only effect is the Z correction of a pending tool change.
    if (gblnToolOffsetPending)
        BuffMakeline(lngCommand, gsngCurX, gsngCurY, gsngCurZ, sngFeed, false);
    ArcsDivide(lngCommand, sngX, sngY, gsngCurX, gsngCurY, sngFeed, intDir, 1);
} catch (...) {
    LogError("modArcs", "BuffMakeArc");
}

int16_t intQuadrant(float sngX, float sngY, int16_t intDir, bool blnStart) try {
    if (sngX > 0 && sngY > 0) return 1;
    if (sngX < 0 && sngY > 0) return 2;
    if (sngX < 0 && sngY < 0) return 3;
    if (sngX > 0 && sngY < 0) return 4;
    // On an axis: the quadrant the arc runs in from this point (start) or into it (end).
    const bool ccwStart = (intDir == 1) == blnStart;  // +1 start and -1 end read alike
    if (sngX > 0) return ccwStart ? 1 : 4;            // +X axis
    if (sngY > 0) return ccwStart ? 2 : 1;            // +Y axis
    if (sngX < 0) return ccwStart ? 3 : 2;            // -X axis
    return ccwStart ? 4 : 3;                          // -Y axis and the centre itself
} catch (...) {
    LogError("modArcs", "intQuadrant");
}

void ArcRadius(float sngEndX, float sngEndY, float sngStartX, float sngStartY, float &sngI, float &sngJ, float sngR,
               int16_t intDir) try {
    if (sngR == 0.0f)
        return;
    const double mX = (static_cast<double>(sngStartX) + sngEndX) / 2;
    const double mY = (static_cast<double>(sngStartY) + sngEndY) / 2;
    if (sngStartX != sngEndX && sngStartY != sngEndY) {
        const double dx = static_cast<double>(sngEndX) - sngStartX;
        const double dy = static_cast<double>(sngEndY) - sngStartY;
        const double d = std::sqrt(dx * dx + dy * dy);
        const double h = static_cast<double>(sngR) * sngR - (d / 2) * (d / 2);
        double oX = 0.0, oY = 0.0;
        if (h > 0) {
            oX = std::sqrt(h) * (static_cast<double>(sngStartY) - sngEndY) / d;
            oY = std::sqrt(h) * (static_cast<double>(sngEndX) - sngStartX) / d;
        }
        // R has no sign: the centre on this side makes the smaller arc in the arc's direction.
        if (intDir >= 1) {
            sngI = static_cast<float>(mX + oX - sngStartX);
            sngJ = static_cast<float>(mY + oY - sngStartY);
        } else {
            sngI = static_cast<float>(mX - oX - sngStartX);
            sngJ = static_cast<float>(mY - oY - sngStartY);
        }
    } else {
        // An axis-parallel chord: its midpoint is the centre, whatever R says (a half circle).
        sngI = static_cast<float>(mX - sngStartX);
        sngJ = static_cast<float>(mY - sngStartY);
    }
} catch (...) {
    LogError("modArcs", "ArcRadius");
}

void ArcsDivide(int32_t lngCommand, float sngEndX, float sngEndY, float sngStartX, float sngStartY, float sngFeed,
                int16_t intDir, int16_t intPlane) try {
    const int16_t nX = CInt(std::fabs(static_cast<double>(sngEndX) - sngStartX) * 72);
    const int16_t nY = CInt(std::fabs(static_cast<double>(sngEndY) - sngStartY) * 72);
    const CommandRecord &cmd = gtypCommands(lngCommand);
    const float sngR = cmd.sngR;

    // An R arc too short to be worth a circle is a line.
    if (sngR > 0 && nX <= 2 && nY <= 2) {
        BuffMakeline(lngCommand, sngEndX, sngEndY, gsngCurZ, sngFeed, false);
        return;
    }

    float sngI = 0.0f, sngJ = 0.0f, sngRadius;
    if (!(sngR > 0)) {
        sngI = cmd.sngI;
        sngJ = cmd.sngJ;
        sngRadius = static_cast<float>(std::sqrt(static_cast<double>(sngI) * sngI + static_cast<double>(sngJ) * sngJ));
    } else {
        ArcRadius(sngEndX, sngEndY, sngStartX, sngStartY, sngI, sngJ, sngR, intDir);
        sngRadius = sngR;
    }
    const float cX = static_cast<float>(static_cast<double>(sngStartX) + sngI);
    const float cY = static_cast<float>(static_cast<double>(sngStartY) + sngJ);
    const int16_t qS = intQuadrant(-sngI, -sngJ, intDir, true);
    int16_t qE = intQuadrant(static_cast<float>(static_cast<double>(sngEndX) - cX),
                             static_cast<float>(static_cast<double>(sngEndY) - cY), intDir, false);

    // A near-closed arc that ends in its starting quadrant is a full circle.
    if (nX <= 2 && nY <= 2 && qS == qE)
        qE = static_cast<int16_t>(intDir * 4 + qS);
    // Otherwise an arc ending in the quadrant it starts in is one piece, the short way.
    int n = (qE - qS) * intDir + 1;
    if (n < 1)
        n += 4;
    const int qL = (n - 1) * intDir + qS;

    float pX = sngStartX, pY = sngStartY;
    for (int q = qS; q != qL;) {
        // The boundary at which the arc leaves quadrant q.
        double bx = 0.0, by = 0.0;
        if (intDir == 1) {
            switch (q % 4) {
            case 1: by = sngRadius; break;
            case 2: bx = -sngRadius; break;
            case 3: by = -sngRadius; break;
            default: bx = sngRadius; break;
            }
        } else {
            switch (q) {
            case 1: case -3: bx = sngRadius; break;
            case 2: case -2: by = sngRadius; break;
            case 3: case -1: bx = -sngRadius; break;
            default: by = -sngRadius; break;  // 4 or 0
            }
        }
        const float bX = static_cast<float>(cX + bx), bY = static_cast<float>(cY + by);
        q += intDir;
        if (bX == pX && bY == pY)
            continue;
        ArcRadius(bX, bY, pX, pY, sngI, sngJ, sngRadius, intDir);
        BuffCreateArc(lngCommand, bX, bY, pX, pY, sngFeed, sngI, sngJ, intDir, intPlane);
        pX = bX;
        pY = bY;
    }
    if (pX != sngEndX || pY != sngEndY) {
        ArcRadius(sngEndX, sngEndY, pX, pY, sngI, sngJ, sngRadius, intDir);
        BuffCreateArc(lngCommand, sngEndX, sngEndY, pX, pY, sngFeed, sngI, sngJ, intDir, intPlane);
    }
} catch (...) {
    LogError("modArcs", "ArcsDivide");
}

void BuffCreateArc(int32_t lngCommand, float sngEndX, float sngEndY, float sngStartX, float sngStartY, float sngFeed,
                   float sngI, float sngJ, int16_t intDir, int16_t intPlane) try {
    (void)intPlane;  // only the X-Y plane is ever walked
    const double chordX = static_cast<double>(sngEndX) - sngStartX;
    const double chordY = static_cast<double>(sngEndY) - sngStartY;
    const int sX = Sgn(chordX), sY = Sgn(chordY);
    const double R2 = static_cast<double>(sngI) * sngI + static_cast<double>(sngJ) * sngJ;
    // Position and end relative to the centre, mm.
    double x = -static_cast<double>(sngI), y = -static_cast<double>(sngJ);
    const double eX = chordX - sngI, eY = chordY - sngJ;
    // The grid point last stepped to (rounded at the start, floored along the walk).
    int64_t gX = static_cast<int64_t>(vb::RoundHalfEven(x * 72));
    int64_t gY = static_cast<int64_t>(vb::RoundHalfEven(y * 72));
    int64_t tX = 0, tY = 0;
    double best = 9999.0;

    for (;;) {
        const double tx = x + sX / 72.0;
        const double ty = y + sY / 72.0;
        const double rcx = R2 - ty * ty;
        const double rcy = R2 - tx * tx;
        const double cx = rcx > 0 ? std::sqrt(rcx) * (-sX) * intDir : 0.0;
        const double cy = rcy > 0 ? std::sqrt(rcy) * (-sX) * intDir : 0.0;
        // Take the whole step on the axis that moves less along the circle.
        if (std::fabs(ty - y) <= std::fabs(cx - x)) {
            x = tx;
            y = cy;
        } else {
            x = cx;
            y = ty;
        }
        const int64_t hX = static_cast<int64_t>(std::floor(x * 72));
        const int64_t hY = static_cast<int64_t>(std::floor(y * 72));
        const double d2 = (eX - x) * (eX - x) + (eY - y) * (eY - y);
        if (d2 >= best)
            break;  // past the end of the piece: this point is not stepped to
        best = d2;
        EmitRun(lngCommand, static_cast<int32_t>(hX - gX), static_cast<int32_t>(hY - gY), sngFeed, false);
        tX += hX - gX;
        tY += hY - gY;
        gX = hX;
        gY = hY;
    }

    // The closing straight run to the piece's end.
    const int64_t rX = static_cast<int64_t>(std::floor((chordX - tX / 72.0) * 72));
    const int64_t rY = static_cast<int64_t>(std::floor((chordY - tY / 72.0) * 72));
    EmitRun(lngCommand, static_cast<int32_t>(rX), static_cast<int32_t>(rY), sngFeed, true);
    gsngCurX = static_cast<float>(gsngCurX + (tX + rX) / 72.0);
    gsngCurY = static_cast<float>(gsngCurY + (tY + rY) / 72.0);
} catch (...) {
    LogError("modArcs", "BuffCreateArc");
}
