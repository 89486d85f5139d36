// SPDX-License-Identifier: MIT
#include "rules/basManipulatingGems.h"

#include <cmath>
#include <cstdlib>

#include "sound/basDirectSoundStuff.h"

namespace glimmerfall {

namespace {

// Positions count strictly between these two.
constexpr float32 kBoardFirstPixel = 0;
constexpr float32 kBoardLastPixel = 511;

bool HitsBoard(float32 pixel) {
  return pixel > kBoardFirstPixel && pixel < kBoardLastPixel;
}

int16 CellOfPixel(float32 pixel) {
  return static_cast<int16>(std::floor(pixel / kCellPixels));
}

void TrySwapWith(int16 gem) {
  secondGem = gem;
  if (GemsAdjacent(firstGem, gem) != kFalse) {
    StartSwap(firstGem, secondGem);
    gameState = stateSwapping;
  } else {
    gameState = stateIdle;
    PlayEffect(sndBadSwap);
  }
}

void PickSecond(int16 gem) {
  Gem(firstGem).spinFrame = 0;
  if (gem == firstGem) {
    gameState = stateIdle;
  } else {
    TrySwapWith(gem);
  }
  perBoard.selectionCount = 0;
}

}  // namespace

void MouseDown(float32 x, float32 y) {
  mouseHeld = kTrue;
  if (!PicksAllowed()) return;
  const int16 gem = GemAtPixel(x, y);
  if (gem < 0) return;
  if (perBoard.selectionCount == 0) {
    PickFirst(gem);
  } else {
    PickSecond(gem);
  }
}

// A drag leaves the spin of the first gem alone: it keeps the frame that it has reached.
void MouseMove(float32 x, float32 y) {
  if (gameState != stateSelected || mouseHeld != kTrue) return;
  const int16 gem = GemAtPixel(x, y);
  if (gem < 0 || gem == firstGem) return;
  TrySwapWith(gem);
  perBoard.selectionCount = 0;
}

void MouseUp() {
  mouseHeld = kFalse;
}

void Click() {
  boardClicked = kTrue;
}

bool PicksAllowed() {
  return gameState == stateIdle || gameState == stateSelected;
}

void PickFirst(int16 gem) {
  perBoard.chainCount = 0;
  firstGem = gem;
  gameState = stateSelected;
  perBoard.selectionCount = 1;
  PlayEffect(sndSelect);
}

int16 GemAtPixel(float32 px, float32 py) {
  if (!HitsBoard(px) || !HitsBoard(py)) return kNoGem;
  return boardCells(CellOfPixel(px), CellOfPixel(py)).gemId;
}

Flag GemsAdjacent(int16 a, int16 b) {
  const int columns = std::abs(Gem(a).col - Gem(b).col);
  const int rows = std::abs(Gem(a).row - Gem(b).row);
  return columns + rows == 1 ? kTrue : kFalse;
}

void StartSwap(int16 first, int16 second) {
  CGem& a = Gem(first);
  CGem& b = Gem(second);
  a.swapDirX = a.swapDirY = b.swapDirX = b.swapDirY = 0;
  if (a.col == b.col) {
    a.swapDirY = a.row > b.row ? int16{-1} : int16{+1};
    b.swapDirY = static_cast<int16>(-a.swapDirY);
  } else if (a.row == b.row) {
    a.swapDirX = a.col > b.col ? int16{-1} : int16{+1};
    b.swapDirX = static_cast<int16>(-a.swapDirX);
  }
}

void SelectedStep() {
  CGem& gem = Gem(firstGem);
  if (++gem.spinFrame >= kSpinFrames) gem.spinFrame = 0;
}

}  // namespace glimmerfall
