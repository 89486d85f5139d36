// SPDX-License-Identifier: MIT
// The clock beneath TickCount, for what has to wake at a tick.
#pragma once

#include <chrono>
#include <cstdint>

namespace platform::desktop {

/// Whole milliseconds of CLOCK_MONOTONIC, which is the standard library's steady clock here.
/// TickCount is its lower 32 bits.
inline std::int64_t MonotonicMillis() {
  using std::chrono::duration_cast, std::chrono::milliseconds, std::chrono::steady_clock;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

}  // namespace platform::desktop
