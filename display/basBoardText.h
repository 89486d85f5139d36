// SPDX-License-Identifier: MIT
// All text on the board, and the status strip below it: level, score and clock bar.
#pragma once

#include <string>

#include "platform/Surface.h"
#include "rules/CGem.h"

namespace glimmerfall {

/// The font of the main window, set when it loads; all text on the board is in it.
extern platform::Font mainWindowFont;

inline constexpr platform::Colour kShadowColour = platform::RGB(200, 0, 0);
inline constexpr platform::Colour kTextColour = platform::RGB(0, 240, 0);

/// Draws `text` onto backBuffer with its top left corner at (x, y), without a background. The
/// foreground colour stays as the text leaves it.
void DrawBoardText(int32 x, int32 y, const std::string& text, platform::Colour colour);

/// Draws the status strip.
void DrawStatus();

/// Draws the bar of the time left, measured against timeLimit, and its frame.
void DrawClockBar();

}  // namespace glimmerfall
