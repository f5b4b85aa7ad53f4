// Line stepping. BuffMakeline is the inner loop of every compilation: per step it does one
// table lookup for the speed and one multiplication and rounding per axis for the position.
// There is no error accumulator: each axis's position is recomputed from the lead count, so a
// minor axis steps exactly where slope * i passes a rounding boundary.
#include "nc/linestep.h"

#include "core/logger.h"
#include "core/state.h"
#include "nc/commands.h"
#include "nc/stepcode.h"

#include <cmath>
#include <cstdlib>

using vb::CInt;
using vb::CLng;
using vb::Sgn;

vb::Table<float> gsngAccel;
int16_t gintAccelSteps = 0;
int16_t gintAccelIndex = 0;
float gsngCurX = 0.0f;
float gsngCurY = 0.0f;
float gsngCurZ = 0.0f;

void ResetLineState()
{
    gsngAccel.Erase();
    gintAccelSteps = 0;
    gintAccelIndex = 0;
    gsngCurX = gsngCurY = gsngCurZ = 0.0f;
}

void CreateAccelProfile(float sngTime) try {
    // Acceleration in steps/s^2 that reaches the rapid speed in sngTime seconds.
    const float a = static_cast<float>(static_cast<double>(gsngRapidSpeed) / 60 * 72 / sngTime);
    gintAccelSteps = CInt(0.5 * a * static_cast<double>(sngTime) * sngTime);
    gsngAccel.Erase();
    gsngAccel.Redim(gintAccelSteps);
    for (int16_t k = 1; k <= gintAccelSteps; ++k)
        gsngAccel(k) = static_cast<float>(a * std::sqrt(2.0 * k / a) * 60 / 72);
} catch (...) {
    LogError("modLines", "CreateAccelProfile");
}

namespace {

// The lead axis of a move: X if its count is at least the others, else Y if at least Z, else Z.
// (The look-ahead states its rule differently; for three counts the two rules agree.)
inline int leadAxis(int64_t nX, int64_t nY, int64_t nZ)
{
    if (nX >= nY && nX >= nZ)
        return 0;
    if (nY >= nZ)
        return 1;
    return 2;
}

// The speed at which this move may end, mm/min: it runs on into the next entry of the table
// only when that entry leads on the same axis in the same direction; then at the smaller of
// the two feeds. A T or S entry holds the modal coordinates, has no distance and so stops.
float endSpeed(int32_t lngCommand, const float target[3], int lead, float leadSlope, float sngFeed)
{
    if (lngCommand >= glngCommandCount || lngCommand == glngFirstMove)
        return 0.0f;
    const CommandRecord &next = gtypCommands(static_cast<int64_t>(lngCommand) + 1);
    const float to[3] = {next.sngX, next.sngY, next.sngZ};
    // The next move's counts are rounded to 32 bits: the next entry may hold 300.0 (not yet
    // programmed), whose distance can pass a 16-bit count without being a move at all.
    int32_t m[3];
    for (int a = 0; a < 3; ++a)
        m[a] = CLng(std::fabs(static_cast<double>(to[a]) - target[a]) * 72);
    if (leadAxis(m[0], m[1], m[2]) != lead)
        return 0.0f;
    // The sign of the next distance itself (not of its rounded count).
    if (Sgn(static_cast<double>(to[lead]) - target[lead]) != Sgn(leadSlope))
        return 0.0f;
    return std::min(sngFeed, next.sngValue);
}

} // namespace

void BuffMakeline(int32_t lngCommand, float sngX, float sngY, float sngZ, float sngFeed, bool blnRapid) try {
    (void)blnRapid;
    // 1. Tool correction at the first motion after a T: move the Z difference between the old
    //    and the new tool, then carry on as if nothing had moved, so programmed Z keeps its meaning.
    if (gblnToolOffsetPending) {
        gblnToolOffsetPending = false;
        const float x = gsngCurX, y = gsngCurY, z = gsngCurZ;
        BuffMakeline(lngCommand, gsngCurX, gsngCurY,
                     static_cast<float>(static_cast<double>(gsngCurZ) - gsngOldToolOffset + gsngToolOffset), sngFeed,
                     true);
        gsngCurX = x;
        gsngCurY = y;
        gsngCurZ = z;
    }

    // 2. Counts per axis, in steps. A move below half a step is dropped; the remainder stays in
    //    the distance to the next target, so it is never lost.
    const float target[3] = {sngX, sngY, sngZ};
    const float cur[3] = {gsngCurX, gsngCurY, gsngCurZ};
    int16_t n[3];
    for (int a = 0; a < 3; ++a)
        n[a] = CInt(std::fabs(static_cast<double>(target[a]) - cur[a]) * 72);
    if (n[0] == 0 && n[1] == 0 && n[2] == 0)
        return;

    // 3. and 4. The lead axis steps every time; the others follow their slope (steps per lead
    //    step, at most 1 in size).
    const int lead = leadAxis(n[0], n[1], n[2]);
    const int16_t N = n[lead];
    float slope[3];
    for (int a = 0; a < 3; ++a)
        slope[a] = a == lead ? static_cast<float>(Sgn(static_cast<double>(target[a]) - cur[a]))
                             : static_cast<float>((static_cast<double>(target[a]) - cur[a]) * 72 / N);

    // 5. to 7. End speed, start speed and braking point (in steps before the end). For a
    //    speed above zero the braking starts at the first table entry that reaches it: earlier
    //    than needed, deliberately.
    const float e = endSpeed(lngCommand, target, lead, slope[lead], sngFeed);
    float c = gintAccelIndex == 0 ? 0.0f : gsngAccel(gintAccelIndex);
    int16_t b = 0;
    if (c > e) {
        if (e == 0.0f) {
            b = gintAccelIndex;
        } else {
            for (int16_t k = 1; k <= gintAccelSteps; ++k) {
                if (gsngAccel(k) >= e) {
                    b = k;
                    break;
                }
            }
        }
    }

    // 8. The steps. Ramping climbs the table (or holds at the feed); braking climbs down one
    //    entry per step, so a move that has to stop arrives at rest.
    const int sx = Sgn(slope[0]), sy = Sgn(slope[1]), sz = Sgn(slope[2]);
    bool blnRamping = true;
    int32_t last[3] = {0, 0, 0};
    int32_t p[3] = {0, 0, 0};
    for (int32_t i = 1; i <= N; ++i) {
        for (int a = 0; a < 3; ++a)
            p[a] = static_cast<int32_t>(vb::RoundHalfEven(static_cast<double>(slope[a]) * i));
        if (blnRamping) {
            if (c < sngFeed) {
                gintAccelIndex = vb::Int16(gintAccelIndex + 1);
                c = gsngAccel(gintAccelIndex);
                if (c > e)
                    b = vb::Int16(b + 1);
            } else {
                c = sngFeed;  // a speed above the feed is cut at once
            }
            if (N - i <= b)
                blnRamping = false;
        } else {
            c = gsngAccel(gintAccelIndex);
            gintAccelIndex = vb::Int16(gintAccelIndex - 1);
        }
        SendStepToBuffer(lngCommand, static_cast<int16_t>(Sgn(p[0] - last[0])),
                         static_cast<int16_t>(Sgn(p[1] - last[1])), static_cast<int16_t>(Sgn(p[2] - last[2])),
                         static_cast<float>(sx * c), static_cast<float>(sy * c), static_cast<float>(sz * c),
                         kStepMove);
        last[0] = p[0];
        last[1] = p[1];
        last[2] = p[2];
    }

    // 9. The new position is the grid point reached, not the target: rounding never accumulates.
    gsngCurX = static_cast<float>(gsngCurX + p[0] / 72.0);
    gsngCurY = static_cast<float>(gsngCurY + p[1] / 72.0);
    gsngCurZ = static_cast<float>(gsngCurZ + p[2] / 72.0);
} catch (...) {
    LogError("modLines", "BuffMakeline");
}

void BuffMakeZline(int32_t lngCommand, float sngZ, float sngFeed) try {
    const int16_t N = CInt(std::fabs(static_cast<double>(sngZ) - gsngCurZ) * 72);
    const int16_t d = static_cast<int16_t>(Sgn(static_cast<double>(sngZ) - gsngCurZ));
    gintAccelIndex = 0;
    float s = 0.0f;
    for (int32_t i = 1; i <= N; ++i) {
        if (i <= N / 2.0) {  // the exact half, not rounded
            if (s < sngFeed) {
                gintAccelIndex = vb::Int16(gintAccelIndex + 1);
                s = gsngAccel(gintAccelIndex);
            } else {
                s = sngFeed;
            }
        } else if (N - i < gintAccelIndex) {
            s = gsngAccel(gintAccelIndex);
            gintAccelIndex = vb::Int16(gintAccelIndex - 1);
        } else {
            s = sngFeed;
        }
        SendStepToBuffer(lngCommand, 0, 0, d, 0.0f, 0.0f, static_cast<float>(d * s), kStepMove);
    }
    // A move that went up ends with the Z play taken up downward.
    if (gintLastDirZ == 1) {
        gintLastDirZ = -1;
        for (int16_t k = 1; k <= gintPlayZ; ++k)
            SendStepToBuffer(lngCommand, 0, 0, -1, 0.0f, 0.0f, sngFeed, kStepMove);
        gintPlayZ = gintBacklashZ;
    }
    gsngCurZ = sngZ;  // the target itself, not the grid point
} catch (...) {
    LogError("modLines", "BuffMakeZline");
}
