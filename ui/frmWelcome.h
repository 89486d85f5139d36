// SPDX-License-Identifier: MIT
// The window in which the player picks the mode of a game: the first one of the program, and modal
// before every new game.
#pragma once

class QWidget;

namespace glimmerfall {

/// Shows the chooser above `parent`, modal, or on its own without one, and waits until it closes.
/// True for Start. Closed by other means it yields false, and gameMode is what it was before.
bool ChooseMode(QWidget* parent);

}  // namespace glimmerfall
