// SPDX-License-Identifier: MIT
#include "rules/basFallingGems.h"

#include <algorithm>

#include "rules/basEndOfGame.h"
#include "rules/basMatchingGems.h"
#include "rules/basMoveShapes.h"
#include "rules/state/basGameState.h"
#include "sound/basDirectSoundStuff.h"

namespace glimmerfall {

namespace {

constexpr int16 kLandingTestFrames = 4;

int16 TargetY(const CGem& gem) {
  return static_cast<int16>(gem.targetRow * kCellPixels);
}

void MoveGem(CGem& gem) {
  if (gem.pixY < TargetY(gem) - 1) {
    gem.pixY = static_cast<int16>(gem.pixY + kFallPixels);
  } else {
    gem.pixY = TargetY(gem);
    gem.row = gem.targetRow;
  }
}

bool HasLanded(int16 id) {
  return Gem(id).pixY == TargetY(Gem(id));
}

void SetGemsDown() {
  for (const int16 id : fallList) {
    CGem& gem = Gem(id);
    gem.targetRow = 0;
    boardCells(gem.col, gem.row) = {&gem, gem.id, gem.kind};
  }
}

// Events run while the lists are emptied; where the clock has ended the game, that stands.
void ChooseNextState() {
  EmptyList(clearList);
  const bool chainGoesOn = FindMatches(clearList) != kFalse;
  if (gameState != stateFalling) return;
  if (chainGoesOn) {
    gameState = stateClearing;
  } else if (MoveExists() != kFalse) {
    gameState = stateIdle;
  } else {
    EndPlay();
  }
}

}  // namespace

void FallStep() {
  for (const int16 id : fallList)
    MoveGem(Gem(id));
  if (++perBoard.fallFrames < kLandingTestFrames) return;
  perBoard.fallFrames = 0;
  if (!std::all_of(fallList.begin(), fallList.end(), HasLanded)) return;
  PlayEffect(sndGemDrop);
  SetGemsDown();
  ChooseNextState();
}

}  // namespace glimmerfall
