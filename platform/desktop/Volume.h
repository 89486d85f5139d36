// SPDX-License-Identifier: MIT
// Volumes as the libraries of the desktop take them, for the effects and the streams alike.
#pragma once

#include <algorithm>
#include <cmath>

#include "platform/Volume.h"

namespace platform::desktop {

/// The linear gain of a volume: 1 at full level and above it, 0 at silence and below.
inline double GainOf(std::int32_t hundredths) {
  constexpr double kHundredthsPerDecade = 2000;
  if (hundredths <= kSilence) return 0;
  return std::pow(10.0, std::min(hundredths, kFullLevel) / kHundredthsPerDecade);
}

}  // namespace platform::desktop
