// SPDX-License-Identifier: MIT
// The scale of all volumes, of effects and streams alike: hundredths of a decibel.
#pragma once

#include <cstdint>

namespace platform {

inline constexpr std::int32_t kSilence = -10000;
inline constexpr std::int32_t kFullLevel = 0;

}  // namespace platform
