// SPDX-License-Identifier: MIT
#include "rules/basNewGame.h"

#include "rules/basGameModes.h"
#include "rules/basManipulatingGems.h"

namespace glimmerfall {

void RequestNewBoard() {
  newBoardWanted = true;
  gameState = stateDealing;
}

bool NewGameAllowed() {
  return PicksAllowed() || gameState == stateEndMessage;
}

void StartNewGame() {
  score = 0;
  matchCount = 0;
  level = 1;
  levelWon = levelWonSound = kFalse;
  paused = kFalse;
  // A pause that comes before the board is set up has to find the time of the new game.
  SetModeClock();
  RequestNewBoard();
}

}  // namespace glimmerfall
