// SPDX-License-Identifier: MIT
// All text on the board: the status strip below it (level, score and clock bar), and the message at
// the end of a level or a game.
#pragma once

#include <string>

#include "platform/Surface.h"
#include "rules/state/CGem.h"

namespace glimmerfall {

/// The font of the main window, set when it loads; all text on the board is in it.
inline platform::Font mainWindowFont;

/// Draws the status strip. The foreground colour stays as the text leaves it.
void DrawStatus();

/// Draws the message after the flight: the score, the last level that was finished, and the
/// invitation to go on if the level was won.
void DrawEndMessage();

}  // namespace glimmerfall
