// SPDX-License-Identifier: MIT
// What makes a mode: its clock and its levels. All numbers of the four modes stand in one table.
#pragma once

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// How the clock of a mode runs; all times in seconds.
struct ModeClock {
  Flag runs;
  float32 timeLimit;    ///< full value at a new board
  float32 beepBelow;    ///< the warning beep sounds at or below this
  float32 beepSpacing;  ///< and at most this often
};

const ModeClock& ClockOfMode(GameMode mode);

/// Starts the clock of `gameMode` for a new board. Sets `level` in Marathon.
void SetModeClock();

/// Sets timeLeft and timeLimit of Frantic from `level`; never below 5 seconds.
void SetFranticClock();

/// Kinds of gem that a board of level `ofLevel` deals, 4 to 8.
int16 KindsOfLevel(int16 ofLevel);

/// Clears that win `ofLevel`.
int16 ClearsOfLevel(int16 ofLevel);

}  // namespace glimmerfall
