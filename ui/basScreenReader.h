// SPDX-License-Identifier: MIT
// The main window as screen readers see it: the board is a list of 64 cells, of which the one under
// the cursor has the focus, and the status line stands beside it. A reader speaks the name of a
// cell that gets the focus. What happens in the game is told by a notification, which readers speak
// whenever it shows; changes of a name or a description do not reach them from this toolkit.
#pragma once

class QWidget;

namespace glimmerfall {

/// Says which widgets a reader is told of; all three live as long as the window.
void DescribeToReaders(QWidget* window, QWidget* board, QWidget* statusLine);

/// Tells what is new since the last call. Does nothing while no reader listens.
void TellReaders();

/// Tells how the game stands.
void TellStatus();

}  // namespace glimmerfall
