// SPDX-License-Identifier: MIT
// The window that asks for the name of a new high score.
#pragma once

class QWidget;

namespace glimmerfall {

/// Shows the window above `parent`, or raises it; the game goes on behind it. Its OK enters the
/// name and the score and shows the high scores; closing it stores nothing.
void ShowNameEntry(QWidget* parent);

}  // namespace glimmerfall
