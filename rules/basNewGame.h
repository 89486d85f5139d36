// SPDX-License-Identifier: MIT
// New boards: the request that every one begins with, and the New Game command.
#pragma once

namespace glimmerfall {

/// Asks for a new board. The frame loop sets it up at its top; until then every wait returns at
/// once and no state accepts input, so that nothing of the old board runs on.
void RequestNewBoard();

/// New Game is accepted while the player may move and while the end message stands; elsewhere it is
/// ignored without a word.
bool NewGameAllowed();

/// Drops the game in progress and asks for the first board of a new one in the chosen mode. It also
/// ends a pause and a level-up that waits for its click; the caller sets the check mark of Pause to
/// `paused`.
void StartNewGame();

}  // namespace glimmerfall
