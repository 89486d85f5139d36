// SPDX-License-Identifier: MIT
// The window that names the game and its version.
#pragma once

class QWidget;

namespace glimmerfall {

/// Opens the window above `parent`, or raises it; it stays until it is closed and is then gone.
void ShowAbout(QWidget* parent);

}  // namespace glimmerfall
