// SPDX-License-Identifier: MIT
// The end of a level and of a game, one sequence: the board shakes, all gems are thrown off it, and
// the result stands on the empty board.
#pragma once

#include "platform/Surface.h"
#include "rules/state/CGem.h"

namespace glimmerfall {

/// Stops the clock and starts the sequence.
void EndPlay();

/// The frame of stateShaking.
void ShakeStep();

/// The frame of stateFlyOut.
void FlyOutStep();

/// The frame of stateEndMessage; it shows itself at `windowRect` and stands still until a click.
void EndMessageStep(const platform::Rect& windowRect);

/// A projectile's way to the right and up, in pixels, `t` frames after its launch at `angle`
/// radians with `speed` pixels a frame, under a gravity of 1.5 pixels per frame squared.
float32 FlyX(float32 t, float32 angle, float32 speed);
float32 FlyY(float32 t, float32 angle, float32 speed);

}  // namespace glimmerfall
