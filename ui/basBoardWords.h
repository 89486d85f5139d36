// SPDX-License-Identifier: MIT
// The game in words, for a player who hears it: what a cell holds, what has happened, how the game
// stands. All of it is read from the shared variables and the cursor; nothing here changes them.
#pragma once

#include <cstddef>
#include <string>

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// What is on a cell: "red triangle, column 3, row 4, selected". Columns and rows count from 1.
std::string CellWords(int x, int y);

/// The time left, and the captions of the status line.
std::string StatusWords();

/// Two sentences as one text; either may be empty.
std::string JoinWords(const std::string& first, const std::string& second);

/// Tells the game from one look to the next, each thing once. Clears are counted right as long as
/// there is a look in each of them: they last a third of a second.
class BoardNews {
 public:
  /// What has happened since the last look, or nothing.
  std::string Look();

 private:
  struct Seen {
    GameState state = stateLoading;
    int16 selected = kNoGem;
    Flag paused = kFalse;
  };

  void FollowMove();
  std::string MoveWords();

  Seen seen_;
  std::size_t clearedGems_ = 0;  // in the move under way
  int clears_ = 0;               // of that move that are counted in clearedGems_
};

}  // namespace glimmerfall
