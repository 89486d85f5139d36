// SPDX-License-Identifier: MIT
// What the suites of the rules share: a game on the scripted platform that does what words tell it,
// and the invariants of a board at rest.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <istream>
#include <string>
#include <vector>

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// Puts everything back to its start, loads sounds and display on the scripted platform.
void StartScriptedGame(std::uint64_t seed = 1);

/// A rested board of 64 digits, gem ids in cell order, in stateIdle.
void SetBoard(const std::string& kinds, int16 kindsDealt = 8);

std::string BoardKinds();
std::vector<int> BoardIds();

/// Plays words such as "down12 move13 up pick12 click hint pause new frames5": the number of a word
/// is the cell under the mouse, or how many frames to run. "pick" is press, release and click, and
/// "keyleft2" presses a key twice. Other words set the scene: "board" is a rested board of eight
/// kinds that has neither a run nor a move, "put1:12,18" gives kind 1 to two of its cells,
/// "draws4:3,0" scripts what the next draws from four kinds give, "score=50" and its like set a
/// variable, and "hide" hides the cursor. "tell" and "show" are for whoever sets `onTell`.
void Perform(const std::string& words);
inline std::function<void(const std::string& verb)> onTell;

constexpr int32 kTicksPerFrame = 21;

/// Starts the game of a play kept as text and schedules all that is done in it. Behind titles,
/// which begin with #, one line tells how the game starts and at which frame it ends, by
/// twin::ProgramEnded; then come lines "at N words", done N frames after the start.
void PreparePlay(std::istream& file);

/// What is wrong with the rested board, or nothing.
std::string BrokenInvariant();

/// Start values before, nothing left over after.
class GameTest : public testing::Test {
 protected:
  void SetUp() override { StartScriptedGame(); }
  void TearDown() override;
};

}  // namespace glimmerfall
