// SPDX-License-Identifier: MIT
#include "rules/basGameModes.h"

#include <algorithm>
#include <array>

namespace glimmerfall {

namespace {

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

void SetModeClock() {
  const Mode& mode = RowOf(gameMode);
  clockRunning = mode.clockRuns;
  timeLimit = mode.timeLimit;
  if (mode.clockRuns != kFalse) timeLeft = level < kLateLevel ? mode.timeLimit : mode.lateTimeLeft;
  if (mode.onlyLevel != 0) level = mode.onlyLevel;
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
