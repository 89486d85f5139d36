// SPDX-License-Identifier: MIT
// What a player who hears the game can ask of it. What it tells by itself stands in the plays.
#include "ui/basBoardWords.h"

#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Words : public GameTest {};

TEST_F(Words, NameACellAndHowTheGameStands) {
  Perform("board score=150 level=12 matches=4 left=31.6 running=-1");
  EXPECT_EQ(CellWords(0, 0), "white circle, column 1, row 1");
  EXPECT_EQ(StatusWords(), "32 seconds left. Score 150. Level 12. Matches left 35");
  Perform("pick63 mode=3 left=1.2 pause");
  EXPECT_EQ(CellWords(7, 7), "purple oval, column 8, row 8, selected");
  EXPECT_EQ(StatusWords(), "1 second left. Paused. Score 150. Level Marathon. Matches left 4");
  boardCells(7, 7).kind = kNoKind;
  Perform("pick63 running=0 pause");
  EXPECT_EQ(CellWords(7, 7), "empty, column 8, row 8");
  gameState = stateEndMessage;
  EXPECT_EQ(CellWords(0, 0), "empty, column 1, row 1");
  EXPECT_EQ(StatusWords(), "No clock. Score 150. Level Marathon. Matches left 4");
}

}  // namespace
}  // namespace glimmerfall
