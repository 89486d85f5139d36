// SPDX-License-Identifier: MIT
// What the row of a mode means in play: the clock of a new board, and the levels.
#pragma once

#include "rules/state/basModes.h"

namespace glimmerfall {

/// Starts the clock of `gameMode` for a new board. Sets `level` in a mode of one level.
void SetModeClock();

/// Sets timeLeft and timeLimit of Frantic from `level`; never below 5 seconds.
void SetFranticClock();

/// Kinds of gem that a board of level `ofLevel` deals, 4 to 8.
int16 KindsOfLevel(int16 ofLevel);

/// Clears that win `ofLevel`.
int16 ClearsOfLevel(int16 ofLevel);

}  // namespace glimmerfall
