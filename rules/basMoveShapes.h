// SPDX-License-Identifier: MIT
// The walk over the board that finds the first possible move. The test for a move left and the hint
// both stand on it, so that a hint exists exactly when a move does.
#pragma once

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// The cell whose gem has to make way for a run of three.
struct MoveCell {
  bool found = false;
  int16 x = 0;
  int16 y = 0;
};

/// The first move in the order: moves for a horizontal run, anchors from the top row down and from
/// left to right; then moves for a vertical run, columns from the left and anchors from the top
/// down. Reads only the kinds of boardCells.
MoveCell FindMoveCell();

/// True when one swap of two neighbouring gems would make a run of three.
Flag MoveExists();

}  // namespace glimmerfall
