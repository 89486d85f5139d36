// SPDX-License-Identifier: MIT
#include "rules/basGameModes.h"

#include <algorithm>
#include <array>

namespace glimmerfall {

namespace {

constexpr std::array<ModeClock, kModeCount> kModeClocks = {{
    {kTrue, 50, 7, 1.0F},   // Normal
    {kTrue, 10, 2, 0.7F},   // Frantic
    {kFalse, 50, 0, 0},     // Relaxing
    {kTrue, 180, 7, 1.0F},  // Marathon
}};

// From this level on a Normal board starts with less than a full clock.
constexpr int16 kNormalShortLevel = 6;
constexpr float32 kNormalShortTime = 21;

constexpr int16 kMarathonLevel = 18;

constexpr float64 kFranticSeconds = 10;
constexpr float64 kFranticSecondsPerLevel = 0.3;
constexpr float64 kFranticLeastSeconds = 5;

struct LevelKinds {
  int16 upTo;  // last level with this number of kinds
  int16 kinds;
};
constexpr std::array<LevelKinds, 4> kLevelKinds = {{{5, 4}, {10, 5}, {17, 6}, {25, 7}}};
constexpr int16 kMostKinds = 8;

}  // namespace

const ModeClock& ClockOfMode(GameMode mode) {
  return kModeClocks[static_cast<std::size_t>(mode)];
}

void SetModeClock() {
  const ModeClock& clock = ClockOfMode(gameMode);
  clockRunning = clock.runs;
  timeLimit = clock.timeLimit;
  if (clock.runs != kFalse) timeLeft = timeLimit;
  if (gameMode == modeNormal && level >= kNormalShortLevel) timeLeft = kNormalShortTime;
  if (gameMode == modeMarathon) level = kMarathonLevel;
}

void SetFranticClock() {
  const float64 seconds = kFranticSeconds - level * kFranticSecondsPerLevel;
  timeLeft = timeLimit = static_cast<float32>(std::max(seconds, kFranticLeastSeconds));
}

int16 KindsOfLevel(int16 ofLevel) {
  for (const LevelKinds& row : kLevelKinds)
    if (ofLevel <= row.upTo) return row.kinds;
  return kMostKinds;
}

int16 ClearsOfLevel(int16 ofLevel) {
  return static_cast<int16>(2 * ofLevel + 15);
}

}  // namespace glimmerfall
