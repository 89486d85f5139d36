// SPDX-License-Identifier: MIT
// The swap's motion and its outcome, and the two searches of the board for runs: three or more
// neighbouring cells of one kind in a row or a column.
#pragma once

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// The frame of stateSwapping.
void StepSwapping();

/// Whether a run stands anywhere on the board.
Flag BoardHasRun();

/// Adds the gems of all runs to `result`, which the caller has emptied: row runs from the top down
/// and from left to right, then column runs from left to right and from the top down, less the gems
/// already listed. Answers whether there are any. Window events run meanwhile.
Flag FindMatches(GemList& result);

/// Removes the entries one by one from the front; window events run after each.
void EmptyList(GemList& list);

}  // namespace glimmerfall
