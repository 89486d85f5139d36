// SPDX-License-Identifier: MIT
// The two clocks: the tick counter that paces the frames, and the wall clock that paces the game's
// own clock and seeds the random generator.
#pragma once

#include <cstdint>

namespace platform {

/// Milliseconds since some moment before the program's start. Never runs back; wraps after 49 days,
/// so compare two readings through TicksSince.
std::int32_t TickCount();

/// Milliseconds from `start` to `now`, both readings of TickCount, also across its wrap.
constexpr std::int32_t TicksSince(std::int32_t start, std::int32_t now) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(now) -
                                   static_cast<std::uint32_t>(start));
}

/// The reading of TickCount `millis` after `start`, also across its wrap.
constexpr std::int32_t TickAfter(std::int32_t start, std::int32_t millis) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(start) +
                                   static_cast<std::uint32_t>(millis));
}

/// Wall-clock seconds since midnight, local time, 0 up to 86400. As a float32 it counts in steps of
/// 8 ms late in the day, and it starts again from 0 at midnight.
float Timer();

/// Seconds from `start` to `now`, both readings of Timer less than a day apart, also across
/// midnight.
constexpr float SecondsSince(float start, float now) {
  constexpr float kSecondsPerDay = 86400.0F;
  return now >= start ? now - start : now - start + kSecondsPerDay;
}

}  // namespace platform
