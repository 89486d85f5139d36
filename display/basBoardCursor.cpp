// SPDX-License-Identifier: MIT
#include "display/basBoardCursor.h"

#include "display/basDirectDrawStuff.h"
#include "rules/state/basGameState.h"

namespace glimmerfall {

using platform::Rect;

namespace {

// Four corners, where the marker of a selected gem is a closed ring: the two differ in shape, and
// show together. Light with a dark edge, to stand out from gems of any colour. All in pixels.
constexpr int kArm = 19;
constexpr int kThickness = 6;
constexpr int kEdge = 1;
constexpr platform::Colour kEdgeColour = platform::RGB(0, 0, 0);
constexpr platform::Colour kLightColour = platform::RGB(255, 255, 255);

void FillBox(const Rect& box, platform::Colour colour) {
  backBuffer->SetForeColor(colour);
  backBuffer->SetFillColor(colour);
  backBuffer->DrawBox(box.left, box.top, box.right, box.bottom);
}

// A box of this size within the cell, moved to the right or the foot of it.
Rect BoxInCell(int width, int height, bool right, bool foot) {
  const int left = boardCursor.x * kCellPixels + (right ? kCellPixels - width : 0);
  const int top = boardCursor.y * kCellPixels + (foot ? kCellPixels - height : 0);
  return {left, top, left + width, top + height};
}

Rect Inner(const Rect& box) {
  return {box.left + kEdge, box.top + kEdge, box.right - kEdge, box.bottom - kEdge};
}

void DrawCorner(bool right, bool foot) {
  const Rect across = BoxInCell(kArm, kThickness, right, foot);
  const Rect along = BoxInCell(kThickness, kArm, right, foot);
  for (const Rect& arm : {across, along})
    FillBox(arm, kEdgeColour);
  for (const Rect& arm : {across, along})
    FillBox(Inner(arm), kLightColour);
}

}  // namespace

void DrawCursor() {
  if (!boardCursor.shown || !GemsStand() || !backBuffer) return;
  for (const bool right : {false, true})
    for (const bool foot : {false, true})
      DrawCorner(right, foot);
}

}  // namespace glimmerfall
