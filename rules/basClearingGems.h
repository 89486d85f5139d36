// SPDX-License-Identifier: MIT
// A clear: the gems of clearList shrink away, and then everything is settled in one frame: points,
// chain, holes, new gems, landing rows, clock and level.
#pragma once

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// The frame of stateClearing.
void StepClearing();

/// Adds the points of a clear whose last gem is of `kind` to score. Kind 0 pays nothing.
void AddKindPoints(int16 kind);

}  // namespace glimmerfall
