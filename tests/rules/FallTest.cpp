// SPDX-License-Identifier: MIT
// The fall after a clear: its frames, its landing, and what comes next.
#include <set>

#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Fall : public GameTest {
 protected:
  // Settles a clear of `ids` whose new gems are of `kinds`, so that the next frame falls.
  static void Settle(const std::string& board, const GemList& ids,
                     const std::vector<int>& kinds = {}) {
    SetBoard(board);
    clearList = ids;
    gameState = stateClearing;
    clearFrames = 15;
    twin::ScriptDraws(kinds, 8);
    RunFrame();
    EXPECT_EQ(gameState, stateFalling);
    twin::PlayedSounds().clear();
  }
};

TEST_F(Fall, TakesItsFramesByRows) {
  constexpr int kFrames[] = {8, 12, 16, 24, 28, 32, 36, 44};
  for (int rows = 1; rows <= 8; ++rows) {
    GemList ids = {13};
    for (int y = 8 - rows; y < 8; ++y)
      ids.push_back(static_cast<int16>(2 + 8 * y));
    Settle(QuietBoard(), ids);
    EXPECT_EQ(RunFramesUntil({stateIdle, stateClearing, stateShaking}), kFrames[rows - 1]);
    EXPECT_EQ(TakeSounds(), "gemdrop");
    EXPECT_EQ(fallFrames, 0);
  }
}

TEST_F(Fall, OvershootsByUpToElevenPixelsForOneFrame) {
  Settle(QuietBoard(), {58, 60, 52});
  int most = 0;
  while (gameState == stateFalling) {
    std::set<int16> over;
    for (const int16 id : fallList)
      if (Gem(id).pixY > Gem(id).targetRow * 64) over.insert(id);
    for (const int16 id : over)
      most = std::max(most, Gem(id).pixY - Gem(id).targetRow * 64);
    RunFrame();
    for (const int16 id : over)
      EXPECT_EQ(Gem(id).pixY, (Gem(id).targetRow != 0 ? Gem(id).targetRow : Gem(id).row) * 64);
  }
  EXPECT_GT(most, 0);
  EXPECT_LE(most, 11);
}

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

TEST_F(Fall, PutsAColumnWithTwoHolesTogether) {
  Settle(QuietBoard({{1, {56, 57, 59}}}), {27, 43}, {2, 7});
  RunFramesUntil({stateIdle});
  const std::vector<int> ids = BoardIds();
  std::vector<int> column;
  for (std::size_t y = 0; y < 8; ++y)
    column.push_back(ids[3 + 8 * y]);
  EXPECT_EQ(column, (std::vector<int>{43, 27, 3, 11, 19, 35, 51, 59}));
  EXPECT_EQ(BrokenInvariant(), "");
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
    chainCount = 3;
    EXPECT_EQ(RunFramesUntil({stateIdle, stateShaking, stateClearing}), 8);
    EXPECT_EQ(gameState, next.state);
    EXPECT_EQ(clearList, next.listed);
    EXPECT_EQ(clockRunning, next.state == stateShaking ? kFalse : kTrue);
    EXPECT_EQ(levelWon, kFalse);
    EXPECT_EQ(chainCount, 3);
    EXPECT_EQ(TakeSounds(), "gemdrop");
  }
}

}  // namespace
}  // namespace glimmerfall
