// SPDX-License-Identifier: MIT
// The board by keyboard: keys move the cursor, and do on its cell what the mouse does there,
// through the procedures of the mouse.
#pragma once

#include "platform/Keys.h"

namespace glimmerfall {

/// A key went down on the board. Arrows, Home, End, Page Up and Page Down show the cursor and move
/// it; on a selected gem an arrow makes the swap in its direction as well. Enter is a press and
/// release on the cursor's cell; it shows a cursor that is hidden, and only the end message then
/// takes it. Escape lets go of a selected gem.
void KeyDown(platform::Key key);

/// Hides the cursor until the next key.
void HideCursor();

}  // namespace glimmerfall
