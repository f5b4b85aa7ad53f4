// Arc stepping: G2 and G3 in the X-Y plane. An arc is cut at each quadrant boundary of its
// circle and each piece is walked along the circle at the constant speed of the feed, without
// the acceleration profile. Z is not moved by an arc; the next line reaches it.
//
// Directions: intDir +1 is G3 (type 3), anticlockwise seen from above with X right and Y up;
// -1 is G2 (type 4), clockwise. Quadrants are numbered 1 to 4 anticlockwise from +X:
//
//                 +Y
//            2    |    1
//        -X ------+------ +X
//            3    |    4
//                 -Y
//
// A point on an axis belongs to the quadrant that the arc runs in from (at its start) or into
// (at its end), see intQuadrant.
#pragma once

#include <cstdint>

// The entry from WriteSteps: first the pending tool correction, then ArcsDivide from the
// current position. sngZ is not used.
void BuffMakeArc(int32_t lngCommand, float sngX, float sngY, float sngZ, float sngFeed, int16_t intDir);
// Splits the arc of command lngCommand at the quadrant boundaries and walks each piece.
void ArcsDivide(int32_t lngCommand, float sngEndX, float sngEndY, float sngStartX, float sngStartY, float sngFeed,
                int16_t intDir, int16_t intPlane);
// The centre, relative to the start, of the arc of radius sngR from start to end (the smaller
// arc). With start and end on one axis-parallel line the chord's midpoint is taken instead.
// Does nothing when sngR is 0.
void ArcRadius(float sngEndX, float sngEndY, float sngStartX, float sngStartY, float &sngI, float &sngJ, float sngR,
               int16_t intDir);
// The quadrant of the vector (sngX, sngY) from the centre.
int16_t intQuadrant(float sngX, float sngY, int16_t intDir, bool blnStart);
// Walks one piece (within one quadrant) from start to end around the centre start + (I, J).
void BuffCreateArc(int32_t lngCommand, float sngEndX, float sngEndY, float sngStartX, float sngStartY, float sngFeed,
                   float sngI, float sngJ, int16_t intDir, int16_t intPlane);
