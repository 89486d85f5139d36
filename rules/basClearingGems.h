// SPDX-License-Identifier: MIT
// A clear: the gems of clearList shrink away, and then everything is settled in one frame: points,
// chain, holes, new gems, landing rows, clock and level.
#pragma once

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// The frame of stateClearing.
void StepClearing();

}  // namespace glimmerfall
