// SPDX-License-Identifier: MIT
// How a score is written wherever it shows.
#pragma once

#include <string>

#include "rules/state/CGem.h"

namespace glimmerfall {

/// `value` rounded to a whole number, in decimal, without separators of thousands. What a damaged
/// file may hold still gives a number: not-a-number gives 0, and a value beyond 64 bits the nearest
/// one that fits.
std::string WholeNumber(float64 value);

}  // namespace glimmerfall
