// SPDX-License-Identifier: MIT
// The mouse becomes moves: the events of the board's picture box, the selection, and the set-up of
// a swap. The main window hands its events in here, and so do the tests.
#pragma once

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// A button went down at (x, y) in pixels of the board; any button.
void MouseDown(float32 x, float32 y);
void MouseMove(float32 x, float32 y);
void MouseUp();
/// A press and release within the board.
void Click();

/// Whether the player may pick a gem in the present state.
bool PicksAllowed();

/// Selects `gem` as the first of a swap, which begins a new chain.
void PickFirst(int16 gem);

/// The gemId of the cell under the pixel, or kNoGem. The outermost rows and columns of pixels of
/// the board, 0 and 511, hit no cell.
int16 GemAtPixel(float32 px, float32 py);

/// Whether two gems stand side by side in a row or a column, by their own col and row.
Flag GemsAdjacent(int16 a, int16 b);

/// Sets the swap directions of two neighbours from their present places.
void StartSwap(int16 first, int16 second);

/// The frame of stateSelected: spins the selected gem.
void SelectedStep();

}  // namespace glimmerfall
