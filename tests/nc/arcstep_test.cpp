// Arc stepping: quadrants, centres from R, the division at the axes, the walk and its
// closing run, and the deliberate quirks. The quarter circle, the arc over three axis
// crossings and the R forms (short, chord over 2R, half circle) are pinned by the golden files.
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
Walk RunArc(float sx, float sy, float ex, float ey, float i, float j, float r, int16_t dir, float feed = 200,
            bool allowZ = false)
{
    gtypCommands.Erase();
    CommandRecord c;
    c.intType = dir == 1 ? kCmdArcCw : kCmdArcCcw;
    c.sngX = ex;
    c.sngY = ey;
    c.sngI = i;
    c.sngJ = j;
    c.sngR = r;
    c.sngValue = feed;
    gtypCommands.Append(c);
    glngCommandCount = 1;
    gsngCurX = sx;
    gsngCurY = sy;
    StepCapture cap;
    BuffMakeArc(1, ex, ey, 0, feed, dir);
    Walk w;
    w.recs = cap.records();
    for (const auto &rec : w.recs) {
        w.x += rec.dx();
        w.y += rec.dy();
        w.minX = std::min(w.minX, w.x);
        w.maxX = std::max(w.maxX, w.x);
        w.minY = std::min(w.minY, w.y);
        w.maxY = std::max(w.maxY, w.y);
        if (!allowZ) {
            EXPECT_EQ(rec.dz(), 0);
        }
        EXPECT_EQ(rec.command, 1);
    }
    return w;
}

// The arc ends on the step grid near its target: each piece closes on the floor of its chord
// in steps, so each piece may end up to one step short (towards minus) on each axis, and the
// pieces add up (at most five). The next move starts from the grid point and corrects it.
void ExpectEndsNear(const Walk &w, float sx, float sy, float ex, float ey, int pieces = 1)
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
    struct Row {
        float x, y;
        int16_t ccwStart, ccwEnd, cwStart, cwEnd;
    };
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
    struct Row {
        const char *what;
        float ex, ey, sx, sy, r;
        int16_t dir;
        float i, j;
    };
    const Row rows[] = {
        {"anticlockwise quarter: centre at the origin", 0, 10, 10, 0, 10, 1, -10, 0},
        {"clockwise the other side: the smaller arc again", 0, 10, 10, 0, 10, -1, 0, 10},
        {"chord longer than 2R: the midpoint", 10, 10, 0, 0, 1, 1, 5, 5},
        {"axis-parallel chord: the midpoint whatever R says", 10, 0, 0, 0, 20, 1, 5, 0},
    };
    for (const Row &r : rows) {
        SCOPED_TRACE(r.what);
        float i = 99, j = 99;
        ArcRadius(r.ex, r.ey, r.sx, r.sy, i, j, r.r, r.dir);
        EXPECT_NEAR(i, r.i, 1e-5);
        EXPECT_NEAR(j, r.j, 1e-5);
    }
    float i = 7, j = 8;
    ArcRadius(1, 2, 3, 4, i, j, 0, 1);  // R 0: centre form, nothing to do
    EXPECT_EQ(i, 7);
    EXPECT_EQ(j, 8);
}

TEST_F(ArcStep, FullCircleInCentreForm)
{
    for (int16_t dir : {1, -1}) {
        SCOPED_TRACE(dir);
        ResetCompilerState();
        const Walk w = RunArc(10, 0, 10, 0, -10, 0, 0, dir);
        ExpectEndsNear(w, 10, 0, 10, 0, 5);
        EXPECT_NEAR(w.minX, -1440, 2);
        EXPECT_EQ(w.maxX, 0);
        EXPECT_NEAR(w.minY, -720, 2);
        EXPECT_NEAR(w.maxY, 720, 2);
        // Anticlockwise goes up first, clockwise down. (The very first record may be an X step
        // alone: the walk starts from the rounded grid point and floors after each step.)
        int y = 0;
        for (size_t k = 0; k < 10; ++k)
            y += w.recs[k].dy();
        EXPECT_EQ(vb::Sgn(y), dir);
    }
}

TEST_F(ArcStep, AnArcEndingInItsStartingQuadrantGoesTheShortWay)
{
    // Clockwise from 210 to 240 degrees about the origin is meant the long way round (330
    // degrees); it is cut as the short clockwise arc about the centre mirrored over the chord.
    const float sx = static_cast<float>(10 * std::cos(210 * M_PI / 180)), sy = -5.0f;
    const float ex = -5.0f, ey = static_cast<float>(10 * std::sin(240 * M_PI / 180));
    const Walk w = RunArc(sx, sy, ex, ey, -sx, -sy, 0, -1);
    ExpectEndsNear(w, sx, sy, ex, ey, 1);
    EXPECT_LT(w.recs.size(), 2u * 0.3 * 720);  // a short arc, nowhere near the whole circle
    EXPECT_EQ(w.minX, 0);                        // it never goes left of its start
}

TEST_F(ArcStep, PendingToolCorrectionComesFirst)
{
    glngFirstMove = 9;  // so that command 1 counts into the position
    gblnToolOffsetPending = true;
    gsngOldToolOffset = 0.0f;
    gsngToolOffset = 1.0f;
    const Walk w = RunArc(10, 0, 0, 10, -10, 0, 0, 1, 200, true);
    for (size_t k = 0; k < 72; ++k)
        ASSERT_EQ(w.recs[k].dz(), 1) << k;
    EXPECT_EQ(w.recs[72].dz(), 0);
    EXPECT_EQ(glngPosZ, 72);
    EXPECT_EQ(gsngCurZ, 0.0f);
}

TEST_F(ArcStep, RandomArcsEndWithinAStepAndStayOnTheirCircle)
{
    uint32_t seed = 99;
    auto uni = [&seed](double lo, double hi) {
        seed = seed * 1664525u + 1013904223u;
        return lo + (hi - lo) * ((seed >> 8) / 16777216.0);
    };
    for (int n = 0; n < 300; ++n) {
        ResetCompilerState();
        const double r = uni(0.2, 30);
        const double a0 = uni(0, 2 * M_PI), a1 = uni(0, 2 * M_PI);
        const double cx = uni(-20, 20), cy = uni(-20, 20);
        const float sx = static_cast<float>(cx + r * std::cos(a0)), sy = static_cast<float>(cy + r * std::sin(a0));
        const float ex = static_cast<float>(cx + r * std::cos(a1)), ey = static_cast<float>(cy + r * std::sin(a1));
        const int16_t dir = (n % 2) ? 1 : -1;
        const bool rForm = n % 3 == 0;
        SCOPED_TRACE(testing::Message() << "arc " << n << " from " << sx << "," << sy << " to " << ex << "," << ey
                                        << " r " << r << " dir " << dir << (rForm ? " R" : " IJ"));
        const Walk w = rForm ? RunArc(sx, sy, ex, ey, 0, 0, static_cast<float>(r), dir)
                             : RunArc(sx, sy, ex, ey, static_cast<float>(cx - sx), static_cast<float>(cy - sy), 0, dir);
        ExpectEndsNear(w, sx, sy, ex, ey, 5);
        // An arc that ends in the quadrant it starts in is cut the short way, about a centre
        // mirrored over the chord, even when it was meant to go round: no circle to compare.
        const auto quadrant = [](double x, double y) { return intQuadrant(static_cast<float>(x), static_cast<float>(y), 1, true); };
        double sweep = dir * (a1 - a0);
        while (sweep < 0)
            sweep += 2 * M_PI;
        const bool shortWay = quadrant(sx - cx, sy - cy) == quadrant(ex - cx, ey - cy) && sweep > M_PI;
        if (!rForm && !shortWay) {
            // Every point of the walk near the circle. Each piece walks from its exact boundary
            // point while the machine stands where the floors of the pieces before left it (up
            // to a step short per piece and axis), so the drift grows by piece: 5 pieces at most.
            double x = sx * 72.0, y = sy * 72.0;
            for (const auto &rec : w.recs) {
                x += rec.dx();
                y += rec.dy();
                ASSERT_NEAR(std::hypot(x - cx * 72, y - cy * 72), r * 72, 7.5);
            }
        }
    }
}

TEST_F(ArcStep, PieceWithAChordOf100MmOrMoreIsAStraightRun)
{
    // Radius 80: the quarter's chord is 113 mm, its first point is already 9999 mm^2 or more
    // from the end, so the walk stops there and the closing run makes the piece: a diagonal.
    const Walk w = RunArc(80, 0, 0, 80, -80, 0, 0, 1);
    ASSERT_EQ(w.recs.size(), 5760u);
    for (const auto &r : w.recs) {
        ASSERT_EQ(r.dx(), -1);
        ASSERT_EQ(r.dy(), 1);
    }
}
