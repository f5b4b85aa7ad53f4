// The rate test's arithmetic, apart from its window: the frame that carries only timing,
// and the walk back from the fastest preset to the one to recommend.
//
// Seven presets of one minute each: 300 + 50 x index mm/min, index 0..6. A preset passes
// with a Test Factor of 10 or more (the fewest idle polls the PC had between the
// controller's requests for more data).
#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <cstdint>

inline constexpr int kRatePresets = 7;
inline constexpr int32_t kRatePassMark = 10;
inline constexpr double kRatePresetSeconds = 60.0;

// mm/min of preset `index`.
constexpr int16_t intPresetRate(int index) { return static_cast<int16_t>(300 + 50 * index); }

// A full frame at `sngRate` mm/min that moves nothing:
//
//   +----+---------------------------+---------------------------+-- x16
//   | 49 | 0 | lo(65536-t) | hi(...) | 0 | lo(65536-t) | hi(...) |
//   +----+---------------------------+---------------------------+--
//
// t = 768000 / rate, rounded half to even: the controller's ticks for one step at that rate.
QByteArray RateTestFrame(float sngRate);

// The walk back: from index 6 down, while the index is above 0 and the result shown there
// (read as a number, so an empty result is 0) is below the pass mark, one lower. Index 0 is
// where the walk stops whatever its result: 300 mm/min is recommended even when it failed.
int16_t intRecommendedPreset(const std::array<QString, kRatePresets> &results);
