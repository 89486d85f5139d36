// SPDX-License-Identifier: MIT
#include "rules/basMatchingGems.h"

#include <algorithm>

#include "platform/Events.h"
#include "rules/basManipulatingGems.h"
#include "sound/basDirectSoundStuff.h"

namespace glimmerfall {

namespace {

constexpr int16 kSwapPixels = 4;  // a frame
constexpr int16 kSwapFrames = kCellPixels / kSwapPixels;
constexpr int16 kWayBack = 2;        // swapPasses while the gems travel back
constexpr std::size_t kSetGems = 4;  // up to this many make a set, more a big one
constexpr float64 kSetPoints = 50;
constexpr float64 kBigSetPoints = 300;

void SlideGem(CGem& gem) {
  gem.pixX = static_cast<int16>(gem.pixX + kSwapPixels * gem.swapDirX);
  gem.pixY = static_cast<int16>(gem.pixY + kSwapPixels * gem.swapDirY);
}

void ArriveGem(CGem& gem) {
  gem.col = static_cast<int16>(gem.col + gem.swapDirX);
  gem.row = static_cast<int16>(gem.row + gem.swapDirY);
  boardCells(gem.col, gem.row) = {&gem, gem.id, gem.kind};
}

void TurnBack() {
  PlayEffect(sndBadSwap);
  StartSwap(firstGem, secondGem);
}

void RewardSwap() {
  perBoard.swapPasses = 0;
  EmptyList(clearList);
  FindMatches(clearList);
  if (clearList.size() > kSetGems) {
    PlayEffect(sndGotSetBig);
    score += kBigSetPoints;
  } else {
    PlayEffect(sndGotSet);
    score += kSetPoints;
  }
  // The clock may have run out while the lists were emptied; the end of play stands.
  if (gameState == stateSwapping) gameState = stateClearing;
}

bool HasRun(Direction direction) {
  for (int line = 0; line < kBoardCells; ++line) {
    int16 kind = 0;
    int count = 0;
    for (int place = 0; place < kBoardCells; ++place) {
      const int16 next = boardCells(direction, line, place).kind;
      count = next == kind ? count + 1 : 1;
      kind = next;
      if (count == kMinRun) return true;
    }
  }
  return false;
}

// A gem that stands in a row run and in a column run is listed once.
void AppendRun(const GemList& run, GemList& result) {
  if (run.size() < kMinRun) return;
  for (const int16 id : run)
    if (std::find(result.begin(), result.end(), id) == result.end()) result.push_back(id);
}

void ListRuns(Direction direction, GemList& run, GemList& result) {
  for (int line = 0; line < kBoardCells; ++line) {
    EmptyList(run);
    int16 kind = boardCells(direction, line, 0).kind;
    for (int place = 0; place < kBoardCells; ++place) {
      const BoardCell& cell = boardCells(direction, line, place);
      if (cell.kind != kind) {
        AppendRun(run, result);
        EmptyList(run);
        kind = cell.kind;
      }
      run.push_back(cell.gemId);
    }
    AppendRun(run, result);
  }
}

}  // namespace

void StepSwapping() {
  CGem& first = Gem(firstGem);
  CGem& second = Gem(secondGem);
  SlideGem(first);
  SlideGem(second);
  if (++perBoard.swapFrames < kSwapFrames) return;

  perBoard.swapFrames = 0;
  ArriveGem(first);
  ArriveGem(second);
  if (perBoard.swapPasses != 0) {
    perBoard.swapPasses = 0;
    gameState = stateIdle;
    return;
  }
  perBoard.swapPasses = kWayBack;
  if (BoardHasRun() == kFalse) {
    TurnBack();
  } else {
    RewardSwap();
  }
}

Flag BoardHasRun() {
  return HasRun(kRows) || HasRun(kColumns) ? kTrue : kFalse;
}

Flag FindMatches(GemList& result) {
  GemList run;
  run.reserve(kBoardCells);
  ListRuns(kRows, run, result);
  ListRuns(kColumns, run, result);
  return result.empty() ? kFalse : kTrue;
}

void EmptyList(GemList& list) {
  while (!list.empty()) {
    list.erase(list.begin());
    platform::LetEventsRun();
  }
}

}  // namespace glimmerfall
