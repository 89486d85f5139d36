// SPDX-License-Identifier: MIT
// The window that asks for the name of a new high score.
#pragma once

class QWidget;

namespace glimmerfall {

/// From now on a good score opens the window above `parent`; the game goes on behind it. Its OK
/// enters the name and the score and shows the high scores; closing it stores nothing.
void UseNameWindow(QWidget* parent);

}  // namespace glimmerfall
