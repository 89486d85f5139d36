// SPDX-License-Identifier: MIT
#include "rules/basGameClock.h"

#include "platform/Events.h"
#include "platform/Time.h"
#include "rules/basEndOfGame.h"
#include "rules/state/basModes.h"
#include "sound/DXAudio.h"

namespace glimmerfall {

namespace {

constexpr float32 kClockStep = 0.1F;    // seconds
constexpr int32 kPauseNapTicks = 1000;  // a pause sleeps at most this long between two looks

// One step at most: a clock that falls behind never catches up.
void StepClock() {
  const float32 now = platform::Timer();
  if (platform::SecondsSince(lastClockTick, now) < kClockStep) return;
  lastClockTick = now;
  timeLeft -= kClockStep;
}

void HoldWhilePaused() {
  while (PauseHolds()) {
    timeLeft = pausedTimeLeft;
    platform::LetEventsRunFor(kPauseNapTicks);
  }
}

void PlayFile(const char* file) {
  if (music) music->PlayForeground(file);
}

void BeepWhenLow() {
  const Mode& mode = RowOf(gameMode);
  // The mode may have been chosen for the next game while the clock of this one still runs.
  if (mode.clockRuns == kFalse || timeLeft > mode.beepBelow) return;
  const float32 now = platform::Timer();
  if (platform::SecondsSince(lastBeepTick, now) < mode.beepSpacing) return;
  lastBeepTick = now;
  PlayFile("timerbeep.wav");
}

}  // namespace

void UpdateClock() {
  if (clockRunning == kFalse || newBoardWanted) return;
  StepClock();
  HoldWhilePaused();
  if (newBoardWanted) return;
  BeepWhenLow();
  // The beep lets events run, and a new board may have come with them.
  if (newBoardWanted) return;
  if (timeLeft >= timeLimit) timeLeft = timeLimit;
  if (timeLeft <= 0) EndPlay();
}

bool PauseHolds() {
  return paused != kFalse && clockRunning != kFalse && !newBoardWanted;
}

void TogglePause() {
  pausedTimeLeft = timeLeft;
  paused = Complement(paused);
}

void PlayPauseSound() {
  PlayFile("gemdrop.wav");
}

}  // namespace glimmerfall
