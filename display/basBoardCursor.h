// SPDX-License-Identifier: MIT
// The cursor of a player without a mouse: the cell that the keys are on, and the frame around it.
// It lies outside the shared variables: no rule looks at it.
#pragma once

#include "rules/state/CGem.h"

namespace glimmerfall {

struct BoardCursor {
  bool shown = false;
  int16 x = 0;  ///< column 0..7
  int16 y = 0;  ///< row 0..7
};
inline constinit BoardCursor boardCursor;

/// Draws the cursor over the gems while it is shown and gems stand on the board.
void DrawCursor();

}  // namespace glimmerfall
