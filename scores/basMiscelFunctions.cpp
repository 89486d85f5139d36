// SPDX-License-Identifier: MIT
#include "scores/basMiscelFunctions.h"

namespace glimmerfall {

void CheckHighScore() {}

}  // namespace glimmerfall
