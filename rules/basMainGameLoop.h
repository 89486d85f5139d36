// SPDX-License-Identifier: MIT
// The frame loop, the heart of the game. The program's start-up enters it once and it never comes
// back but for a request to quit; mouse, menu and timer events run inside it.
#pragma once

namespace glimmerfall {

/// Runs frames of the board that InitGameBoard has set up, and sets up each new board that is asked
/// for at the top of the loop, until quitRequested is true.
void RunGameLoop();

/// One frame: background, music, one step of the current state, gems, status, presentation, and the
/// wait for the frame's end. Leaves at once when a new board is asked for on its way.
void RunFrame();

}  // namespace glimmerfall
