// SPDX-License-Identifier: MIT
#include "rules/basHint.h"

#include "rules/basManipulatingGems.h"
#include "rules/basMoveShapes.h"

namespace glimmerfall {

int16 FindHintGem() {
  const BoardCell* const cell = FindCellToMove();
  return cell != nullptr ? cell->gemId : kNoGem;
}

// A hint for the gem that spins already must not make its spin jump.
void TakeHint() {
  if (!PicksAllowed()) return;
  const int16 gem = FindHintGem();
  if (gem == kNoGem) return;
  if (gem != firstGem) Gem(firstGem).spinFrame = 0;
  PickFirst(gem);
}

}  // namespace glimmerfall
