// SPDX-License-Identifier: MIT
// The fall after a clear: motion at constant speed, landing, and the choice of what comes next.
#pragma once

#include "rules/state/CGem.h"

namespace glimmerfall {

/// Pixels a frame of every fall, without gravity.
inline constexpr int16 kFallPixels = 13;

/// The frame of stateFalling.
void FallStep();

}  // namespace glimmerfall
