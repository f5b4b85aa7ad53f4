// Arc stepping: quadrants, centres from R, the division at the axes, the walk and its closing
// run, and the deliberate quirks. The quarter circle, the arc over three axis crossings, a
// clockwise full circle and the R forms (short, chord over 2R, half circle) are golden files.
#include "nc_test_support.h"

#include "core/state.h"
#include "nc/arcstep.h"
#include "nc/commands.h"
#include "nc/linestep.h"
#include "nc/stepcode.h"

#include <cmath>

namespace {

class ArcStep : public CompilerTest {};

struct Walk {
    std::vector<StepRecordView> recs;
    int minX = 0, maxX = 0, minY = 0, maxY = 0;  // extent in steps from the start
    int x = 0, y = 0;                            // net steps
};

// One arc command from (sx, sy) to (ex, ey), centre form (I, J) or R form, walked from scratch.
Walk RunArc(float sx, float sy, float ex, float ey, float i, float j, float r, int16_t dir, bool allowZ = false)
{
    gtypCommands.Erase();
    gtypCommands.Append({.strText = {}, .intType = dir == 1 ? kCmdArcCw : kCmdArcCcw, .sngI = i, .sngJ = j,
                         .sngX = ex, .sngY = ey, .sngR = r, .sngValue = 200});
    glngCommandCount = 1;
    gsngCurX = sx;
    gsngCurY = sy;
    StepCapture cap;
    BuffMakeArc(1, ex, ey, 0, 200, dir);
    Walk w;
    w.recs = cap.records();
    for (const auto &rec : w.recs) {
        w.x += rec.dx();
        w.y += rec.dy();
        w.minX = std::min(w.minX, w.x), w.maxX = std::max(w.maxX, w.x);
        w.minY = std::min(w.minY, w.y), w.maxY = std::max(w.maxY, w.y);
        EXPECT_TRUE(allowZ || rec.dz() == 0);
        EXPECT_EQ(rec.command, 1);
    }
    return w;
}

// Each piece closes on the floor of its chord in steps: up to a step short (towards minus) on
// each axis per piece, at most five. The next move starts from the grid point and corrects it.
void ExpectEndsNear(const Walk &w, float sx, float sy, float ex, float ey, int pieces)
{
    const double tx = (ex - sx) * 72.0, ty = (ey - sy) * 72.0;
    EXPECT_GT(w.x, tx - pieces - 1e-3);
    EXPECT_LT(w.x, tx + 1e-3);
    EXPECT_GT(w.y, ty - pieces - 1e-3);
    EXPECT_LT(w.y, ty + 1e-3);
    // Each piece adds its steps to the position in single precision.
    EXPECT_NEAR(gsngCurX, sx + w.x / 72.0, 1e-4);
    EXPECT_NEAR(gsngCurY, sy + w.y / 72.0, 1e-4);
}

} // namespace

TEST_F(ArcStep, QuadrantTable)
{
    struct Row { float x, y; int16_t ccwStart, ccwEnd, cwStart, cwEnd; };
    const Row rows[] = {
        {-3, 4, 2, 2, 2, 2}, {3, -4, 4, 4, 4, 4}, {5, 0, 1, 4, 4, 1},
        {0, 5, 2, 1, 1, 2},  {-5, 0, 3, 2, 2, 3}, {0, -5, 4, 3, 3, 4}, {0, 0, 4, 3, 3, 4},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(testing::Message() << r.x << "," << r.y);
        EXPECT_EQ(intQuadrant(r.x, r.y, 1, true), r.ccwStart);
        EXPECT_EQ(intQuadrant(r.x, r.y, 1, false), r.ccwEnd);
        EXPECT_EQ(intQuadrant(r.x, r.y, -1, true), r.cwStart);
        EXPECT_EQ(intQuadrant(r.x, r.y, -1, false), r.cwEnd);
    }
}

TEST_F(ArcStep, CentreFromRadius)
{
    // A chord longer than 2R and an axis-parallel chord (the midpoint) are golden files.
    struct Row { const char *what; float ex, ey, sx, sy, r; int16_t dir; float i, j; };
    const Row rows[] = {
        {"anticlockwise quarter: centre at the origin", 0, 10, 10, 0, 10, 1, -10, 0},
        {"clockwise the other side: the smaller arc again", 0, 10, 10, 0, 10, -1, 0, 10},
        {"R 0: centre form, I and J left alone", 1, 2, 3, 4, 0, 1, 99, 99},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        float i = 99, j = 99;
        ArcRadius(r.ex, r.ey, r.sx, r.sy, i, j, r.r, r.dir);
        EXPECT_NEAR(i, r.i, 1e-5);
        EXPECT_NEAR(j, r.j, 1e-5);
    }
}

// Arcs that end in the quadrant they start in: near-closed, a full circle either way; else the
// short way. Each row: how many pieces it may end short by, where the walk reaches (steps).
TEST_F(ArcStep, ArcsEndingInTheirStartingQuadrant)
{
    // Clockwise from 210 to 240 degrees about the origin is meant the long way round; it is
    // cut as the short clockwise arc about the centre mirrored over the chord.
    const float sx = static_cast<float>(10 * std::cos(210 * M_PI / 180)), ey = sx;
    struct Row { const char *what; float sx, sy, ex, ey, i, j; int16_t dir; int pieces, minX, maxX, minY, maxY; };
    const Row rows[] = {
        {"full circle anticlockwise", 10, 0, 10, 0, -10, 0, 1, 5, -1440, 0, -720, 720},
        {"full circle clockwise", 10, 0, 10, 0, -10, 0, -1, 5, -1440, 0, -720, 720},
        {"the short way, never left of its start", sx, -5, -5, ey, -sx, 5, -1, 1, 0, 264, -264, 0},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        ResetCompilerState();
        const Walk w = RunArc(r.sx, r.sy, r.ex, r.ey, r.i, r.j, 0, r.dir);
        ExpectEndsNear(w, r.sx, r.sy, r.ex, r.ey, r.pieces);
        const auto near = [](int got, int want) { EXPECT_NEAR(got, want, want == 0 ? 0 : 2); };
        near(w.minX, r.minX), near(w.maxX, r.maxX), near(w.minY, r.minY), near(w.maxY, r.maxY);
        // The first steps turn the arc's way (the very first may be an X step alone).
        int y = 0;
        for (size_t k = 0; k < 10; ++k)
            y += w.recs[k].dy();
        EXPECT_EQ(vb::Sgn(y), r.dir);
    }
}

TEST_F(ArcStep, PendingToolCorrectionComesFirst)
{
    glngFirstMove = 9;  // so that command 1 counts into the position
    gblnToolOffsetPending = true;
    gsngOldToolOffset = 0.0f;
    gsngToolOffset = 1.0f;
    const Walk w = RunArc(10, 0, 0, 10, -10, 0, 0, 1, true);
    for (size_t k = 0; k <= 72; ++k)
        ASSERT_EQ(w.recs[k].dz(), k < 72 ? 1 : 0) << k;
    EXPECT_EQ(glngPosZ, 72);
    EXPECT_EQ(gsngCurZ, 0.0f);
}

TEST_F(ArcStep, RandomArcsEndWithinAStepAndStayOnTheirCircle)
{
    Lcg rng{99};
    for (int n = 0; n < 300; ++n) {
        ResetCompilerState();
        const double r = rng.uni(0.2, 30);
        const double a0 = rng.uni(0, 2 * M_PI), a1 = rng.uni(0, 2 * M_PI);
        const double cx = rng.uni(-20, 20), cy = rng.uni(-20, 20);
        const float sx = static_cast<float>(cx + r * std::cos(a0)), sy = static_cast<float>(cy + r * std::sin(a0));
        const float ex = static_cast<float>(cx + r * std::cos(a1)), ey = static_cast<float>(cy + r * std::sin(a1));
        const int16_t dir = (n % 2) ? 1 : -1;
        const bool rForm = n % 3 == 0;
        SCOPED_TRACE(testing::Message() << "arc " << n << " from " << sx << "," << sy << " to " << ex << "," << ey
                                        << " r " << r << " dir " << dir << (rForm ? " R" : " IJ"));
        const Walk w = rForm ? RunArc(sx, sy, ex, ey, 0, 0, static_cast<float>(r), dir)
                             : RunArc(sx, sy, ex, ey, static_cast<float>(cx - sx), static_cast<float>(cy - sy), 0, dir);
        ExpectEndsNear(w, sx, sy, ex, ey, 5);
        // An arc ending in the quadrant it starts in is cut the short way: no circle to compare.
        const auto quadrant = [](double x, double y) { return intQuadrant(static_cast<float>(x), static_cast<float>(y), 1, true); };
        const double sweep = std::fmod(dir * (a1 - a0) + 4 * M_PI, 2 * M_PI);
        if (rForm || (quadrant(sx - cx, sy - cy) == quadrant(ex - cx, ey - cy) && sweep > M_PI))
            continue;
        // Every point of the walk near the circle; each piece starts where the floors of the
        // pieces before left the machine, so the drift grows by piece: 5 pieces at most.
        double x = sx * 72.0, y = sy * 72.0;
        for (const auto &rec : w.recs) {
            x += rec.dx();
            y += rec.dy();
            ASSERT_NEAR(std::hypot(x - cx * 72, y - cy * 72), r * 72, 7.5);
        }
    }
}

TEST_F(ArcStep, PieceWithAChordOf100MmOrMoreIsAStraightRun)
{
    // Radius 80: the quarter's chord is 113 mm, its first point is already 9999 mm^2 or more
    // from the end, so the walk stops there and the closing run makes the piece: a diagonal.
    const Walk w = RunArc(80, 0, 0, 80, -80, 0, 0, 1);
    ASSERT_EQ(w.recs.size(), 5760u);
    for (const auto &r : w.recs)
        ASSERT_TRUE(r.dx() == -1 && r.dy() == 1);
}
