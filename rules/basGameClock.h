// SPDX-License-Identifier: MIT
// The game clock, which follows the wall clock and not the frames: its step, its beep and its end,
// and the pause.
#pragma once

namespace glimmerfall {

/// The clock's part of the timer event. While the game is paused it stays in here and lets events
/// run, which holds the frame beneath it.
void UpdateClock();

/// Whether the next UpdateClock would wait for the end of a pause.
bool PauseHolds();

/// The Pause command, in any state. The caller sets the menu's check mark to `paused` and then
/// plays the sound, which lets events run.
void TogglePause();
void PlayPauseSound();

}  // namespace glimmerfall
