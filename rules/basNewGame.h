// SPDX-License-Identifier: MIT
// The New Game command: when it is allowed, and what it starts.
#pragma once

namespace glimmerfall {

/// New Game is accepted while the player may move and while the end message stands; elsewhere it is
/// ignored without a word.
bool NewGameAllowed();

/// Drops the game in progress and asks for the first board of a new one in the chosen mode. It also
/// ends a pause and a level-up that waits for its click; the caller sets the check mark of Pause to
/// `paused`.
void StartNewGame();

}  // namespace glimmerfall
