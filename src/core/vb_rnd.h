// The original language's random generator, which the settings password's scramble depends
// on: a stored password only matches when it is scrambled by exactly this sequence.
//
// A 24-bit linear congruential generator on one module-wide seed:
//
//     x := (x * 1140671485 + 12820163) mod 2^24        value = x / 2^24, in [0, 1)
//
// Rnd(n):  n > 0  the next value;  n = 0  the last value again;
//          n < 0  the seed is first taken from the bits of n as a 32-bit float
//                 (bits + bits >> 24, kept to 24 bits), then advanced: the same negative
//                 n always gives the same value and restarts the same sequence.
// Randomize(n): splices 16 bits taken from n (as a 64-bit float: the high 32 bits, their
//                 two halves exclusive-or'd) into bits 8..23 of the seed; bits 0..7 stay.
// The seed at program start is 0x50000.
#pragma once

#include <cstdint>

namespace vb {

float Rnd(float number = 1.0f);
void Randomize(double number);
// The seed back to its value at program start (tests).
void ResetRnd();
// The seed as it stands (tests).
uint32_t RndSeed();

} // namespace vb
