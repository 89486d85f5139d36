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
  if (value >= kTwoTo63) return std::to_string(Limits::max());
  if (value <= -kTwoTo63) return std::to_string(Limits::min());
  return std::to_string(std::llround(value));
}

}  // namespace glimmerfall
