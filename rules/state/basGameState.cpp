// SPDX-License-Identifier: MIT
#include "rules/state/basGameState.h"

namespace glimmerfall {

void ResetGameState() {
  shared = {};
  perBoard = {};
}

bool GemsStand() {
  return gameState != stateFlyOut && gameState != stateEndMessage;
}

int16 CellKind(int16 x, int16 y) {
  const bool onBoard = x >= 0 && x < kBoardCells && y >= 0 && y < kBoardCells;
  return onBoard ? boardCells(x, y).kind : kNoKind;
}

CGem& Gem(int16 id) {
  return gems[static_cast<std::size_t>(id)];
}

}  // namespace glimmerfall
