// SPDX-License-Identifier: MIT
// The window that shows the four tables of ten high scores, straight from their files.
#pragma once

class QWidget;

namespace glimmerfall {

/// Shows the window above `parent`, or raises it; the game goes on behind it. Events may run.
void ShowHighScores(QWidget* parent);

}  // namespace glimmerfall
