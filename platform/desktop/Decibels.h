// SPDX-License-Identifier: MIT
// Levels of sound.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace platform::desktop {

/// The linear gain of a level in hundredths of a decibel (20 log10 of the gain), held to -10000..0;
/// -10000 is silence.
inline float GainOf(std::int32_t hundredths) {
  constexpr std::int32_t kSilence = -10000;
  constexpr float kPerDecade = 2000;
  if (hundredths <= kSilence) return 0;
  return std::pow(10.0F, static_cast<float>(std::min(hundredths, 0)) / kPerDecade);
}

}  // namespace platform::desktop
