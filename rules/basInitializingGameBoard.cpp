// SPDX-License-Identifier: MIT
#include "rules/basInitializingGameBoard.h"

#include <algorithm>

#include "platform/Events.h"
#include "platform/Random.h"
#include "platform/Time.h"
#include "rules/basFallingGems.h"
#include "rules/basGameModes.h"
#include "rules/basMoveShapes.h"

namespace glimmerfall {

namespace {

constexpr int16 kDropCheckFrames = 33;  // the dealing looks for its end on every 33rd frame

void DealKinds() {
  for (int16 id = 0; id < kGemCount; ++id)
    boardCells[id] = {nullptr, id, platform::RandomBelow(gemKinds)};
}

bool BreakRuns(Direction direction) {
  bool changed = false;
  for (int line = 0; line < kBoardCells; ++line) {
    int16 runKind = 0;
    int16 runLength = 0;
    for (int place = 0; place < kBoardCells; ++place) {
      int16& kind = boardCells(direction, line, place).kind;
      if (kind != runKind) {
        runKind = kind;
        runLength = 1;
      } else if (++runLength == kMinRun) {
        changed = true;
        runKind = kind = RandomKindOtherThan(kind);
        runLength = 1;
      }
    }
  }
  return changed;
}

// A board without a run and without a move would never change again: it is dealt afresh.
void RemoveRuns() {
  for (;;) {
    const bool rowsChanged = BreakRuns(kRows);
    const bool boardChanged = BreakRuns(kColumns) || rowsChanged;
    platform::LetEventsRun();
    if (boardChanged) continue;
    if (MoveExists() != kFalse) return;
    DealKinds();
  }
}

void PlaceGem(int16 x, int16 y) {
  const int16 id = static_cast<int16>(x + kBoardCells * y);
  CGem gem;
  gem.id = id;
  gem.kind = boardCells(x, y).kind;
  gem.sheetY = static_cast<int16>(gem.kind * kCellPixels);
  gem.col = x;
  gem.row = y;
  gem.pixX = static_cast<int16>(x * kCellPixels);
  gem.pixY = static_cast<int16>(-(kBoardCells - y) * kCellPixels);
  gem.fallSpeed = y;
  Gem(id) = gem;
  boardCells(x, y).gem = &Gem(id);
}

bool IsAboveItsRow(const CGem& gem) {
  return gem.pixY < gem.row * kCellPixels;
}

}  // namespace

void InitGameBoard() {
  perBoard = {};
  SetModeClock();
  gemKinds = KindsOfLevel(level);
  platform::Randomize(platform::Timer());
  DealKinds();
  RemoveRuns();
  for (int16 y = 0; y < kBoardCells; ++y)
    for (int16 x = 0; x < kBoardCells; ++x)
      PlaceGem(x, y);
}

int16 RandomKindOtherThan(int16 kind) {
  int16 other = kind;
  while (other == kind)
    other = platform::RandomBelow(gemKinds);
  return other;
}

void DropStep() {
  for (CGem& gem : gems) {
    if (IsAboveItsRow(gem)) {
      gem.pixY = static_cast<int16>(gem.pixY + gem.fallSpeed + kFallPixels);
    } else {
      gem.fallSpeed = 0;
      gem.pixY = static_cast<int16>(gem.row * kCellPixels);
    }
  }
  if (++perBoard.dropFrames < kDropCheckFrames) return;
  perBoard.dropFrames = 0;
  if (std::none_of(gems.begin(), gems.end(), IsAboveItsRow)) gameState = stateIdle;
}

}  // namespace glimmerfall
