// SPDX-License-Identifier: MIT
// Whole numbers drawn at random.
#pragma once

#include "platform/Random.h"
#include "rules/state/CGem.h"

namespace glimmerfall {

/// A whole number from 0 up to but without `count`, each equally likely. `count` is at least 1.
inline int16 DrawBelow(int16 count) {
  return static_cast<int16>(platform::Rnd() * count);
}

}  // namespace glimmerfall
