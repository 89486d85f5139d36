// SPDX-License-Identifier: MIT
// All that differs between the modes, one row each. Any other table with a row for each mode
// asserts with HasEachModeOnce that none is missing.
#pragma once

#include <array>

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// What a settled clear does for a running clock.
enum class ClearEarns {
  Nothing,
  Seconds,   ///< one for each gem
  FullClock  ///< the clock is full again, at the time of the level
};

struct Mode {
  GameMode mode;
  const char* name;
  const char* scorePrefix;  ///< of the names of its ten score files
  const char* namePrefix;   ///< and of the ten with the names
  int16 onlyLevel;          ///< played at this level throughout; 0 is played level by level

  // The clock, in seconds.
  Flag clockRuns;
  float32 timeLimit;     ///< full value at a new board
  float32 lateTimeLeft;  ///< left at a new board from kLateLevel on; below, the clock starts full
  ClearEarns clearEarns;
  float32 beepBelow;    ///< the warning beep sounds at or below this
  float32 beepSpacing;  ///< and at most this often
};
inline constexpr int16 kLateLevel = 6;

inline constexpr auto kModes = std::to_array<Mode>({
    {modeNormal, "Normal", "score", "scorename", 0, kTrue, 50, 21, ClearEarns::Seconds, 7, 1},
    {modeFrantic, "Frantic", "scorefr", "scorenamefr", 0, kTrue, 10, 10, ClearEarns::FullClock, 2,
     0.7F},
    {modeRelaxing, "Relaxing", "scorere", "scorenamere", 0, kFalse, 50, 50, ClearEarns::Nothing, 0,
     0},
    {modeMarathon, "Marathon", "scorema", "scorenamema", 18, kTrue, 180, 180, ClearEarns::Nothing,
     7, 1},
});

constexpr const Mode& RowOf(GameMode mode) {
  return kModes[static_cast<std::size_t>(mode)];
}

/// Whether `rows`, each with its `mode`, have every mode once.
template <typename Rows>
constexpr bool HasEachModeOnce(const Rows& rows) {
  unsigned modes = 0;
  for (const auto& row : rows)
    modes |= 1U << row.mode;
  return rows.size() == kModeCount && modes == (1U << kModeCount) - 1;
}

static_assert(
    HasEachModeOnce(kModes) &&
        [] {
          for (const Mode& row : kModes)
            if (&row != &RowOf(row.mode)) return false;
          return true;
        }(),
    "one row a mode, in the order of the modes");

}  // namespace glimmerfall
