// SPDX-License-Identifier: MIT
// Puts the gems and the marker of the picked gem onto backBuffer. Reads the gems and changes
// nothing of the game but the two counters of the target.
#pragma once

#include "rules/state/CGem.h"

namespace glimmerfall {

/// Draws all 64 gems, trimmed at the edges of the surface.
void DrawGems();

/// Draws all 64 gems, each drawn in by its `shrink` on all sides.
void DrawGemsShrinking();

/// Draws the target over the cell-sized square of the gem `id`: animated while that gem is
/// selected, else still. Each call steps the animation.
void DrawTarget(int16 id);

}  // namespace glimmerfall
