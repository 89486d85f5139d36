// SPDX-License-Identifier: MIT
// The window of the music's volume, the effects' switch and Reset Scores. What it sets acts at once
// and is not stored.
#pragma once

class QWidget;

namespace glimmerfall {

/// Shows the window above `parent`, or raises it; the game goes on behind it. Writes musicVolume
/// and soundOn.
void ShowOptions(QWidget* parent);

}  // namespace glimmerfall
