// SPDX-License-Identifier: MIT
#include "rules/basGameClock.h"

#include "platform/Events.h"
#include "platform/Time.h"
#include "rules/basEndOfGame.h"
#include "rules/basGameModes.h"
#include "rules/state/basWholeNumber.h"
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
  const ModeClock& clock = ClockOfMode(gameMode);
  // The mode may have been chosen for the next game while the clock of this one still runs.
  if (clock.runs == kFalse || timeLeft > clock.beepBelow) return;
  const float32 now = platform::Timer();
  if (platform::SecondsSince(lastBeepTick, now) < clock.beepSpacing) return;
  lastBeepTick = now;
  PlayFile("timerbeep.wav");
}

}  // namespace

StatusCaptions CurrentCaptions() {
  const bool marathon = gameMode == modeMarathon;
  const int matches = marathon ? matchCount : ClearsOfLevel(level) - matchCount;
  return {WholeNumber(score), marathon ? "Marathon" : std::to_string(level),
          std::to_string(matches)};
}

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
