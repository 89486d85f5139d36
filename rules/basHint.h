// SPDX-License-Identifier: MIT
// The hint: picks a gem that can be moved to make a run, as a click on it would. The player has to
// find the partner. It costs nothing.
#pragma once

#include "rules/state/CGem.h"

namespace glimmerfall {

/// The id of the gem to pick, or kNoGem on a board without a move. It is the gem that has to make
/// way. The same board always gets the same answer.
int16 FindHintGem();

/// The Hint command; ignored in states that take no pick.
void TakeHint();

}  // namespace glimmerfall
