// SPDX-License-Identifier: MIT
// A new board: kinds and clock by level and mode, a deal that can be played, the drop from above.
#include <algorithm>
#include <cstring>

#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "rules/basMatchingGems.h"
#include "rules/basMoveShapes.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Deal : public GameTest {};

// The clock stands still throughout, so the seeding from it repeats.
TEST_F(Deal, HasTheKindsOfTheLevelNoRunAndAMove) {
  constexpr std::pair<int16, char> kTable[] = {{1, '4'},  {5, '4'},  {6, '5'},  {10, '5'},
                                               {11, '6'}, {17, '6'}, {18, '7'}, {25, '7'},
                                               {26, '8'}, {99, '8'}};
  for (const auto& [atLevel, kinds] : kTable) {
    for (std::uint64_t seed = 1; seed <= 40; ++seed) {
      StartScriptedGame(seed);
      level = atLevel;
      InitGameBoard();
      const std::string dealt = BoardKinds();
      SCOPED_TRACE(testing::Message() << "level " << level << " seed " << seed << ' ' << dealt);
      ASSERT_EQ(*std::max_element(dealt.begin(), dealt.end()), kinds - 1);
      ASSERT_EQ(BoardHasRun(), kFalse);
      ASSERT_NE(MoveExists(), kFalse);
    }
  }
}

TEST_F(Deal, SetsTheClockAndTheLevelOfTheMode) {
  struct Start {
    GameMode mode;
    int16 level;
    std::tuple<Flag, float32, float32, int16> after;  // clockRunning, timeLimit, timeLeft, level
  };
  const Start starts[] = {{modeNormal, 5, {kTrue, 50, 50, 5}},
                          {modeNormal, 6, {kTrue, 50, 21, 6}},
                          {modeFrantic, 30, {kTrue, 10, 10, 30}},
                          {modeRelaxing, 6, {kFalse, 50, 33.5F, 6}},
                          {modeMarathon, 1, {kTrue, 180, 180, 18}}};
  EXPECT_EQ(ModesOf(starts).size(), kModeCount);
  for (const Start& start : starts) {
    gameMode = start.mode;
    level = start.level;
    timeLeft = 33.5F;
    clockRunning = Complement(std::get<0>(start.after));
    InitGameBoard();
    EXPECT_EQ(std::tuple(clockRunning, timeLimit, timeLeft, level), start.after)
        << "mode " << start.mode << " level " << start.level;
  }
}

std::vector<int> NumbersOf(const std::string& kinds) {
  std::vector<int> numbers;
  for (const char digit : kinds)
    numbers.push_back(digit - '0');
  return numbers;
}

TEST_F(Deal, WithoutRunAndWithoutMoveIsDealtAgain) {
  level = 26;
  twin::ScriptNumbers(NumbersOf(QuietBoard()), 8);
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
  std::vector<Patch> patches = {{1, {56, 57, 59}}, {5, {1, 2, 3}}, {2, {4, 5}}, {6, {7, 15, 23}}};
  std::vector<int> numbers = NumbersOf(QuietBoard(patches));
  numbers.insert(numbers.end(), {5, 5, 2, 2, 7, 6, 1});
  twin::ScriptNumbers(numbers, 8);
  InitGameBoard();
  patches.insert(patches.end(), {{2, {3}}, {7, {5}}, {1, {23}}});
  EXPECT_EQ(BoardKinds(), QuietBoard(patches));
  EXPECT_EQ(twin::ScriptedRndLeft(), 0U);
  EXPECT_EQ(twin::PlacesPassed(), 2);
}

TEST_F(Deal, ResetsTheBoardAndNothingElse) {
  std::memset(static_cast<void*>(&perBoard), 7, sizeof perBoard);
  for (CGem& gem : gems)
    gem = {9, 1, 1, 1, 1, 1, 1, 1, 5, 1, 12, 4, 3, 1, 1, 1, 1};
  matchCount = 6;
  firstGem = 40;
  secondGem = 41;
  score = 1234;
  clearList = {1, 2};
  fallList = {3};
  gameState = stateEndMessage;
  InitGameBoard();
  const BoardVariables fresh;
  EXPECT_EQ(std::memcmp(&perBoard, &fresh, sizeof fresh), 0);
  EXPECT_EQ(std::tuple(score, matchCount, clearList, fallList, firstGem, secondGem, gameState),
            std::tuple(1234, 6, GemList{1, 2}, GemList{3}, 40, 41, stateEndMessage));
  for (int16 id = 0; id < kGemCount; ++id) {
    const CGem& gem = Gem(id);
    EXPECT_EQ(boardCells[id].gem, &gem);
    EXPECT_EQ(std::tuple(gem.id, gem.col, gem.row, gem.sheetY),
              std::tuple(id, id % 8, id / 8, 64 * boardCells[id].kind));
    EXPECT_EQ(std::tuple(gem.pixX, gem.pixY, gem.fallSpeed),
              std::tuple(64 * (id % 8), -64 * (8 - id / 8), id / 8));
    EXPECT_EQ(gem.swapDirX + gem.swapDirY + gem.targetRow + gem.shrink + gem.spinFrame, 0);
    EXPECT_EQ(gem.flyX + gem.flyY + gem.flySpeed + gem.flyAngle, 0);
  }
}

TEST_F(Deal, DropsIn66FramesAndOvershootsIntoTheStrip) {
  InitGameBoard();
  gameState = stateDealing;
  for (const auto& [words, id, pixY] : {std::tuple{"frames26", 63, 456},
                                        {"frames1", 63, 448},
                                        {"frames13", 0, 8},
                                        {"frames1", 0, 0}}) {
    Perform(words);
    EXPECT_EQ(Gem(static_cast<int16>(id)).pixY, pixY);
  }
  EXPECT_EQ(RunFramesUntil({stateIdle}), 66 - 41);
  EXPECT_EQ(BrokenInvariant(), "");
}

TEST_F(Deal, KindsOffTheBoardAreNone) {
  SetBoard(QuietBoard());
  for (const auto& [x, y] : {std::pair{8, 0}, {0, -1}, {-1, 8}, {0, 8}})
    EXPECT_EQ(CellKind(static_cast<int16>(x), static_cast<int16>(y)), kNoKind);
}

}  // namespace
}  // namespace glimmerfall
