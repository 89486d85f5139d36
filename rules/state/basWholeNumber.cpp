// SPDX-License-Identifier: MIT
#include "rules/state/basWholeNumber.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace glimmerfall {

std::string WholeNumber(float64 value) {
  using Limits = std::numeric_limits<std::int64_t>;
  constexpr float64 kTwoTo63 = 0x1.0p63;
  if (std::isnan(value)) return "0";
  if (std::abs(value) >= kTwoTo63)
    return std::to_string(std::signbit(value) ? Limits::min() : Limits::max());
  return std::to_string(std::llround(value));
}

}  // namespace glimmerfall
