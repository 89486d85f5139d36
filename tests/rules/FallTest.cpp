// SPDX-License-Identifier: MIT
// The fall after a clear: its frames, its landing, and what comes next.
#include "rules/basMainGameLoop.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Fall : public GameTest {
 protected:
  // Settles a clear of `ids` whose new gems are of `kinds`, so that the next frame falls.
  static void Settle(const std::string& board, const GemList& ids, const std::vector<int>& kinds) {
    SetBoard(board);
    clearList = ids;
    gameState = stateClearing;
    perBoard.clearFrames = 15;
    twin::ScriptNumbers(kinds, 8);
    RunFrame();
    EXPECT_EQ(gameState, stateFalling);
    twin::PlayedSounds().clear();
  }
};

TEST_F(Fall, RowFollowsAtTheSetDownAndCellsAtTheLanding) {
  Settle(QuietBoard({{1, {56, 57, 59}}}), {4, 5, 6}, {4, 5, 6});
  const std::vector<int> ids = BoardIds();
  Perform("frames5");
  EXPECT_EQ(Gem(4).pixY, 1);
  Perform("frames1");
  EXPECT_EQ(Gem(4).pixY, 0);
  EXPECT_EQ(CellKind(4, 0), kNoKind);
  Perform("frames2");
  EXPECT_EQ(CellKind(4, 0), 4);
  EXPECT_EQ(gameState, stateIdle);
  EXPECT_EQ(BoardIds(), ids);
  EXPECT_EQ(BrokenInvariant(), "");
  EXPECT_TRUE(clearList.empty());
}

struct Next {
  const char* what;
  std::vector<Patch> patches;
  std::vector<int> kinds;
  GameState state;
  GemList listed;
};

// Gems 3, 4 and 5 of the top row are cleared.
TEST_F(Fall, ChoosesWhatComesNext) {
  const Next nexts[] = {
      {"no run and no move", {}, {3, 4, 5}, stateShaking, {}},
      {"no run and a move", {{1, {56, 57, 59}}}, {3, 4, 5}, stateIdle, {}},
      {"a run and a move",
       {{1, {56, 57, 59}}, {4, {12, 20}}},
       {3, 4, 5},
       stateClearing,
       {4, 12, 20}},
      {"a run and no move", {{4, {12, 20}}}, {3, 4, 5}, stateClearing, {4, 12, 20}},
  };
  for (const Next& next : nexts) {
    SCOPED_TRACE(next.what);
    Settle(QuietBoard(next.patches), {3, 4, 5}, next.kinds);
    clockRunning = kTrue;
    perBoard.chainCount = 3;
    EXPECT_EQ(RunFramesUntil({stateIdle, stateShaking, stateClearing}), 8);
    EXPECT_EQ(gameState, next.state);
    EXPECT_EQ(clearList, next.listed);
    EXPECT_EQ(clockRunning, next.state == stateShaking ? kFalse : kTrue);
    EXPECT_EQ(levelWon, kFalse);
    EXPECT_EQ(perBoard.chainCount, 3);
    EXPECT_EQ(TakeSounds(), "gemdrop");
  }
}

}  // namespace
}  // namespace glimmerfall
