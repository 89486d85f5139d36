// SPDX-License-Identifier: MIT
// The window that tells the rules in one picture.
#pragma once

class QWidget;

namespace glimmerfall {

/// Shows the window above `parent`, or raises it; the game goes on behind it.
void ShowLearn(QWidget* parent);

/// Shows it modal above `parent`, and waits until it is closed.
void ShowLearnModal(QWidget* parent);

}  // namespace glimmerfall
