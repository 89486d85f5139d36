// SPDX-License-Identifier: MIT
// A new board: kinds and clock by level and mode, a deal that can be played, the drop from above.
#include <algorithm>

#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "rules/basMatchingGems.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Deal : public GameTest {};

TEST_F(Deal, UsesTheKindsOfTheLevel) {
  constexpr std::pair<int16, int16> kTable[] = {{1, 4},  {5, 4},  {6, 5},  {10, 5}, {11, 6},
                                                {17, 6}, {18, 7}, {25, 7}, {26, 8}, {99, 8}};
  for (const auto& [atLevel, kinds] : kTable) {
    level = atLevel;
    InitGameBoard();
    EXPECT_EQ(gemKinds, kinds) << "level " << atLevel;
    const std::string dealt = BoardKinds();
    EXPECT_EQ(*std::max_element(dealt.begin(), dealt.end()), '0' + kinds - 1);
  }
}

TEST_F(Deal, SetsTheClockOfTheMode) {
  struct Row {
    GameMode mode;
    int16 before;
    Flag runs;
    float32 limit;
    float32 left;
    int16 after;
  };
  constexpr Row kRows[] = {
      {modeNormal, 5, kTrue, 50, 50, 5},      {modeNormal, 6, kTrue, 50, 21, 6},
      {modeFrantic, 30, kTrue, 10, 10, 30},   {modeRelaxing, 6, kFalse, 50, 33.5F, 6},
      {modeMarathon, 1, kTrue, 180, 180, 18}, {modeMarathon, 30, kTrue, 180, 180, 18},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << "mode " << row.mode << " level " << row.before);
    gameMode = row.mode;
    level = row.before;
    timeLeft = 33.5F;
    timeLimit = 1;
    clockRunning = Complement(row.runs);
    InitGameBoard();
    EXPECT_EQ(clockRunning, row.runs);
    EXPECT_EQ(timeLimit, row.limit);
    EXPECT_EQ(timeLeft, row.left);
    EXPECT_EQ(level, row.after);
  }
}

// The clock stands still throughout, so the seeding from it repeats.
TEST_F(Deal, HasNoRunAndAMove) {
  for (std::uint64_t seed = 1; seed <= 400; ++seed) {
    StartScriptedGame(seed);
    level = static_cast<int16>(seed % 30 + 1);
    InitGameBoard();
    ASSERT_EQ(BoardHasRun(), kFalse) << "seed " << seed << '\n' << BoardKinds();
    ASSERT_NE(MoveExists(), kFalse) << "seed " << seed << '\n' << BoardKinds();
  }
}

TEST_F(Deal, WithoutRunAndWithoutMoveIsDealtAgain) {
  level = 26;
  std::vector<int> kinds;
  for (const char digit : QuietBoard())
    kinds.push_back(digit - '0');
  twin::ScriptDraws(kinds, 8);
  Flag moveAtFirst = kTrue;
  twin::ScheduleAtPlace(1, [&] { moveAtFirst = MoveExists(); });
  InitGameBoard();
  EXPECT_EQ(moveAtFirst, kFalse);
  EXPECT_NE(MoveExists(), kFalse);
  EXPECT_EQ(BoardHasRun(), kFalse);
}

// Rows are broken before columns, at the third cell of a run, until another kind is drawn.
TEST_F(Deal, BreaksRunsInItsOrder) {
  level = 26;
  const std::vector<Patch> move = {{1, {56, 57, 59}}};
  std::vector<Patch> dealt = move;
  dealt.push_back({5, {1, 2, 3}});
  dealt.push_back({2, {4, 5}});
  dealt.push_back({6, {7, 15, 23}});
  std::vector<int> draws;
  for (const char digit : QuietBoard(dealt))
    draws.push_back(digit - '0');
  draws.insert(draws.end(), {5, 5, 2, 2, 7, 6, 1});
  twin::ScriptDraws(draws, 8);
  InitGameBoard();
  std::vector<Patch> expected = dealt;
  expected.push_back({2, {3}});
  expected.push_back({7, {5}});
  expected.push_back({1, {23}});
  EXPECT_EQ(BoardKinds(), QuietBoard(expected));
  EXPECT_EQ(twin::ScriptedRndLeft(), 0U);
  EXPECT_EQ(twin::PlacesPassed(), 2);
}

TEST_F(Deal, ResetsTheBoardAndNothingElse) {
  const std::vector<int16*> counters = {
      &selectionCount, &swapFrames,  &clearFrames, &fallFrames, &shakeFrames, &spiralFrames,
      &dropFrames,     &targetFrame, &targetDelay, &chainCount, &swapPasses,  &highScoreChecked};
  for (int16* counter : counters)
    *counter = 7;
  for (CGem& gem : gems)
    gem = {9, 1, 1, 1, 1, 1, 1, 1, 5, 1, 12, 4, 3, 1, 1, 1, 1};
  score = 1234;
  matchCount = 6;
  clearList = {1, 2};
  fallList = {3};
  firstGem = 40;
  secondGem = 41;
  gameState = stateEndMessage;
  InitGameBoard();
  for (const int16* counter : counters)
    EXPECT_EQ(*counter, 0);
  EXPECT_EQ(score, 1234);
  EXPECT_EQ(matchCount, 6);
  EXPECT_EQ(clearList, (GemList{1, 2}));
  EXPECT_EQ(fallList, (GemList{3}));
  EXPECT_EQ(firstGem, 40);
  EXPECT_EQ(secondGem, 41);
  EXPECT_EQ(gameState, stateEndMessage);
  for (int16 id = 0; id < kGemCount; ++id) {
    const CGem& gem = Gem(id);
    EXPECT_EQ(boardCells[id].gem, &gem);
    EXPECT_EQ(gem.id, id);
    EXPECT_EQ(gem.fallSpeed, id / 8);
    EXPECT_EQ(gem.pixY, -64 * (8 - id / 8));
    EXPECT_EQ(gem.swapDirX + gem.swapDirY + gem.spinFrame, 0);
    EXPECT_EQ(gem.flyX + gem.flyY + gem.flySpeed + gem.flyAngle, 0);
  }
}

TEST_F(Deal, DropsIn66FramesAndOvershootsIntoTheStrip) {
  InitGameBoard();
  gameState = stateDealing;
  Perform("frames26");
  EXPECT_EQ(Gem(63).pixY, 456);
  Perform("frames1");
  EXPECT_EQ(Gem(63).pixY, 448);
  EXPECT_EQ(Gem(63).fallSpeed, 0);
  Perform("frames13");
  EXPECT_EQ(Gem(0).pixY, 8);
  Perform("frames1");
  EXPECT_EQ(Gem(0).pixY, 0);
  EXPECT_EQ(RunFramesUntil({stateIdle}), 66 - 41);
  EXPECT_EQ(dropFrames, 0);
  EXPECT_EQ(BrokenInvariant(), "");
}

TEST_F(Deal, KindsOffTheBoardAreNone) {
  SetBoard(QuietBoard());
  for (const auto& [x, y] : {std::pair{8, 0}, {0, -1}, {-1, 8}, {0, 8}})
    EXPECT_EQ(CellKind(static_cast<int16>(x), static_cast<int16>(y)), kNoKind);
  EXPECT_EQ(CellKind(7, 7), 4);
}

}  // namespace
}  // namespace glimmerfall
