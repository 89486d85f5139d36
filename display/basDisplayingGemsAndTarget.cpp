// SPDX-License-Identifier: MIT
#include "display/basDisplayingGemsAndTarget.h"

#include "display/basDirectDrawStuff.h"
#include "rules/state/basGameState.h"

namespace glimmerfall {

using platform::ColorKey;
using platform::Rect;

namespace {

constexpr int16 kTargetDelay = 3;   // calls for each frame of the target
constexpr int16 kTargetFrames = 6;  // frames in the strip

Rect SquareAt(int left, int top, int side) {
  return {left, top, left + side, top + side};
}

Rect SpriteOf(const CGem& gem) {
  return SquareAt(gem.spinFrame * kCellPixels, gem.sheetY, kCellPixels);
}

// Pixels of a sprite that lie outside the surface on one axis. A sprite wholly outside gets no
// trim: its copy is refused.
struct Trim {
  int before;
  int after;
};

Trim TrimAt(int position, int surface) {
  const int end = position + kCellPixels;
  return {position < 0 && end > 0 ? -position : 0,
          position < surface && end > surface ? end - surface : 0};
}

void DrawGem(const CGem& gem) {
  const Trim x = TrimAt(gem.pixX, kSurfaceWidth);
  const Trim y = TrimAt(gem.pixY, kSurfaceHeight);
  Rect sprite = SpriteOf(gem);
  sprite.left += x.before;
  sprite.right -= x.after;
  sprite.top += y.before;
  sprite.bottom -= y.after;
  BlitFastToBack(gem.pixX + x.before, gem.pixY + y.before, gemSheet, sprite);
}

void DrawGemShrinking(const CGem& gem) {
  const Rect square =
      SquareAt(gem.pixX + gem.shrink, gem.pixY + gem.shrink, kCellPixels - 2 * gem.shrink);
  BlitToBack(square, gemSheet, SpriteOf(gem), ColorKey::Source);
}

void StepTarget() {
  if (++perBoard.targetDelay < kTargetDelay) return;
  perBoard.targetDelay = 0;
  if (++perBoard.targetFrame >= kTargetFrames) perBoard.targetFrame = 0;
}

}  // namespace

// Painter's algorithm: the gem of a later cell covers that of an earlier one. Each gem is drawn at
// its own position, which while it moves is not that of its cell.
void DrawGems() {
  for (const BoardCell& cell : boardCells)
    if (cell.gem != nullptr) DrawGem(*cell.gem);
}

void DrawGemsShrinking() {
  for (const BoardCell& cell : boardCells)
    if (cell.gem != nullptr) DrawGemShrinking(*cell.gem);
}

void DrawTarget(int16 id) {
  const CGem& gem = Gem(id);
  StepTarget();
  const int16 frame = gameState == stateSelected ? perBoard.targetFrame : int16{0};
  BlitToBack(SquareAt(gem.pixX, gem.pixY, kCellPixels), targetSheet,
             SquareAt(frame * kCellPixels, 0, kCellPixels), ColorKey::Source);
}

}  // namespace glimmerfall
