#include "core/vb_rnd.h"

#include <cstring>

namespace vb {

namespace {
constexpr uint32_t kStartSeed = 0x50000;
constexpr uint32_t kMultiplier = 0x43FD43FD;   // 1140671485; only its low 24 bits matter
constexpr uint32_t kIncrement = 0xC39EC3;      // 12820163
constexpr uint32_t kMask = 0xFFFFFF;           // the seed is kept modulo 2^24

uint32_t gSeed = kStartSeed;
} // namespace

float Rnd(float number)
{
    uint32_t seed = gSeed;
    if (number != 0.0f) {
        if (number < 0.0f) {
            uint32_t bits = 0;
            std::memcpy(&bits, &number, sizeof bits);
            seed = (bits + (bits >> 24)) & kMask;
        }
        // Unsigned 32-bit arithmetic wraps, and the low 24 bits of the product are those of
        // the full product, so the mask gives the true residue.
        seed = (seed * kMultiplier + kIncrement) & kMask;
    }
    gSeed = seed;
    return static_cast<float>(seed) / 16777216.0f;
}

void Randomize(double number)
{
    uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    const auto high = static_cast<int32_t>(bits >> 32);
    // The upper half is shifted arithmetically, as a signed 32-bit value, and the result is
    // moved up by a byte in 32 bits: for a negative number bits may reach the top byte.
    const auto spliced = static_cast<uint32_t>((high & 0xFFFF) ^ (high >> 16)) << 8;
    gSeed = (gSeed & 0xFF0000FFu) | spliced;
}

void ResetRnd() { gSeed = kStartSeed; }

uint32_t RndSeed() { return gSeed; }

} // namespace vb
