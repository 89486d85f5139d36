// SPDX-License-Identifier: MIT
// The walk over the board that finds the first possible move. The test for a move left and the hint
// both stand on it, so that a hint exists exactly when a move does.
#pragma once

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// The cell whose gem has to make way for a run of three, or null on a board without a move: the
/// first one, moves for a horizontal run before those for a vertical one, rows from the top down or
/// columns from the left, and along each of them from its start. Reads only the kinds of
/// boardCells.
const BoardCell* FindCellToMove();

/// True when one swap of two neighbouring gems would make a run of three.
Flag MoveExists();

}  // namespace glimmerfall
