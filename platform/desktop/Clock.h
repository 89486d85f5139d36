// SPDX-License-Identifier: MIT
// The clock beneath TickCount, for what has to wake at a tick.
#pragma once

#include <cstdint>

namespace platform::desktop {

/// Whole milliseconds of CLOCK_MONOTONIC. TickCount is its lower 32 bits.
std::int64_t MonotonicMillis();

}  // namespace platform::desktop
