// SPDX-License-Identifier: MIT
// All text on the board: the status strip below it (level, score and clock bar), and the message at
// the end of a level or a game.
#pragma once

#include <string>

#include "platform/Surface.h"
#include "rules/state/CGem.h"

namespace glimmerfall {

/// The font of the main window, set when it loads; all text on the board is in it.
extern platform::Font mainWindowFont;

/// Draws `text` onto backBuffer with its top left corner at (x, y), without a background. The
/// foreground colour stays as the text leaves it.
void DrawBoardText(int32 x, int32 y, const std::string& text, platform::Colour colour);

/// Draws the status strip.
void DrawStatus();

/// Draws the bar of the time left, measured against timeLimit, and its frame.
void DrawClockBar();

/// Draws the message after the flight: the score, the last level that was finished, and the
/// invitation to go on if the level was won.
void DrawEndMessage();

}  // namespace glimmerfall
