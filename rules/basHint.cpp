// SPDX-License-Identifier: MIT
#include "rules/basHint.h"

#include "rules/basMoveShapes.h"
#include "rules/state/basGameState.h"
#include "sound/basDirectSoundStuff.h"

namespace glimmerfall {

int16 FindHintGem() {
  const BoardCell* const cell = FindCellToMove();
  return cell != nullptr ? cell->gemId : kNoGem;
}

// A hint for the gem that spins already must not make its spin jump.
void TakeHint() {
  if (gameState != stateIdle && gameState != stateSelected) return;
  const int16 gem = FindHintGem();
  if (gem == kNoGem) return;
  if (gem != firstGem) Gem(firstGem).spinFrame = 0;
  PlayEffect(sndSelect);
  chainCount = 0;
  selectionCount = 1;
  firstGem = gem;
  gameState = stateSelected;
}

}  // namespace glimmerfall
