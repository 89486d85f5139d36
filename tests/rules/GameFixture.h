// SPDX-License-Identifier: MIT
// What the suites of the rules share: a game on the scripted platform, boards as text, and the
// invariants of a board at rest.
#pragma once

#include <gtest/gtest.h>

#include <istream>
#include <set>
#include <string>
#include <vector>

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// Puts everything back to its start, loads sounds and display on the scripted platform.
void StartScriptedGame(std::uint64_t seed = 1);

/// A rested board of 64 digits (blanks and line ends between them do not count), gem ids in cell
/// order, in stateIdle.
void SetBoard(const std::string& kinds, int16 kindsDealt = 8);

/// Gives `kind` to `cells`.
struct Patch {
  int kind;
  std::vector<int> cells;
};

/// Digits of a board of eight kinds that has neither a run nor a move, but for `patches`.
std::string QuietBoard(const std::vector<Patch>& patches = {});

std::string BoardKinds();
std::vector<int> BoardIds();

/// A press in the middle of the cell, a release, and the click they make.
void PressAndRelease(int cell);

/// Plays words such as "down12 move13 up pick12 hint pause new click frames5": the number of a word
/// is the cell under the mouse, or how many frames to run, or how often to press a key such as
/// "keyleft2". "pick" is press, release and click.
void Perform(const std::string& words);

constexpr int32 kTicksPerFrame = 21;

/// Starts the game of a play kept as text and schedules all that is done in it: one line tells how
/// the game starts and at which frame it ends, by twin::ProgramEnded; then come lines "at N words",
/// done N frames after the start, up to a blank line.
void PreparePlay(std::istream& file);

/// The effects played since the last call, as "select badswap".
std::string TakeSounds();

/// Runs frames until the state is one of `states`, at most `limit`. Answers how many it ran.
int RunFramesUntil(std::vector<GameState> states, int limit = 5000);

/// The modes that a table of expectations has rows for.
template <typename Rows>
std::set<GameMode> ModesOf(const Rows& rows) {
  std::set<GameMode> modes;
  for (const auto& row : rows)
    modes.insert(row.mode);
  return modes;
}

/// What is wrong with the rested board, or nothing.
std::string BrokenInvariant();

/// Start values before, nothing left over after.
class GameTest : public testing::Test {
 protected:
  void SetUp() override { StartScriptedGame(); }
  void TearDown() override;
};

}  // namespace glimmerfall
