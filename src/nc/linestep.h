// Line stepping: a straight move becomes single steps on up to three axes, each step with a
// speed taken from the acceleration profile.
//
// The profile is a table indexed by the number of steps of constant acceleration from rest:
//
//   mm/min
//   rapid |                         ______ gsngAccel(gintAccelSteps)
//         |                  ___----
//         |           __---
//         |      _--
//   45.6  |  .-            (gsngAccel(k) = a * sqrt(2k / a) * 60 / 72, a in steps/s^2)
//         +--1--2--3 ...               k (steps)
//
// A move climbs the table one entry per step until it reaches its feed, holds, and climbs
// down again so that it arrives at the speed at which the next move can carry on (0 for a
// stop). `gintAccelIndex` is the place in the table and carries from one move into the next.
#pragma once

#include "core/vb.h"

#include <cstdint>

extern vb::Table<float> gsngAccel;   // mm/min after k steps from rest, k = 1..gintAccelSteps
extern int16_t gintAccelSteps;
extern int16_t gintAccelIndex;       // current place in the table; 0 is rest
extern float gsngCurX;               // programmed position while compiling, mm; always on the
extern float gsngCurY;               // step grid relative to where the move started
extern float gsngCurZ;

// Builds the table for reaching gsngRapidSpeed from rest in sngTime seconds (always 0.4).
void CreateAccelProfile(float sngTime);
// A straight move from (gsngCurX, gsngCurY, gsngCurZ) to the target at sngFeed mm/min.
// lngCommand is stamped on every step and tells where to look ahead for the end speed.
// blnRapid is accepted and has no effect: a rapid is a line at the rapid speed.
void BuffMakeline(int32_t lngCommand, float sngX, float sngY, float sngZ, float sngFeed, bool blnRapid);
// A Z-only move with its own symmetric ramp, ending with the Z play taken up downward.
// Used at machining time for the descent of the first move.
void BuffMakeZline(int32_t lngCommand, float sngZ, float sngFeed);

// Back to no profile, rest, position 0 (tests).
void ResetLineState();
