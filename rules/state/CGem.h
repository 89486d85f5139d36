// SPDX-License-Identifier: MIT
// One gem. The 64 objects live as long as the program: a cleared gem is given a new kind and falls
// in again from above its own column.
#pragma once

#include <cstdint>

namespace glimmerfall {

using int16 = std::int16_t;
using int32 = std::int32_t;
using float32 = float;
using float64 = double;

struct CGem {
  int16 id = 0;          ///< the object's own number 0..63, equal to its place in `gems`
  int16 kind = 0;        ///< 0..gemKinds-1
  int16 col = 0;         ///< board column 0..7 that the gem belongs to
  int16 row = 0;         ///< board row 0..7 that the gem belongs to
  int16 pixX = 0;        ///< left edge in pixels on the drawing surface
  int16 pixY = 0;        ///< top edge in pixels; negative above the board
  int16 swapDirX = 0;    ///< -1, 0 or +1: column step of the current swap
  int16 swapDirY = 0;    ///< -1, 0 or +1: row step of the current swap
  int16 targetRow = 0;   ///< row in which a falling gem lands, else 0
  int16 sheetY = 0;      ///< kind * 64: top of the gem's row in the sprite sheet
  int16 shrink = 0;      ///< pixels by which each side is drawn in while the gem is cleared
  int16 spinFrame = 0;   ///< column 0..15 of the sprite sheet that is drawn
  int16 fallSpeed = 0;   ///< pixels a frame on top of the basic fall while a new board drops in
  float32 flyX = 0;      ///< x in pixels from which the gem is thrown at the end
  float32 flyY = 0;      ///< y in pixels from which the gem is thrown
  float32 flySpeed = 0;  ///< launch speed in pixels a frame, 10 up to 30
  float32 flyAngle = 0;  ///< launch angle in degrees
};

}  // namespace glimmerfall
