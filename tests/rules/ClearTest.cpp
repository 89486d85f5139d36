// SPDX-License-Identifier: MIT
// The settling of a clear: its order, its points, the new gems, the clock bonus and the level.
#include <algorithm>
#include <set>
#include <sstream>

#include "rules/basClearingGems.h"
#include "rules/basGameModes.h"
#include "rules/basMainGameLoop.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Clear : public GameTest {
 protected:
  // A clear of `ids` that settles in the next frame.
  static void Prepare(const std::string& board, const GemList& ids) {
    SetBoard(board);
    clearList = ids;
    gameState = stateClearing;
    clearFrames = 15;
    chainCount = 0;
    score = 0;
  }
};

TEST_F(Clear, ShrinksFor16Frames) {
  SetBoard(QuietBoard());
  clearList = {3, 4, 5};
  gameState = stateClearing;
  for (int frame = 1; frame < 16; ++frame) {
    RunFrame();
    EXPECT_EQ(Gem(4).shrink, 4 * frame);
    EXPECT_EQ(Gem(2).shrink, 0);
    EXPECT_EQ(gameState, stateClearing);
  }
  RunFrame();
  EXPECT_EQ(Gem(4).shrink, 0);
  EXPECT_EQ(gameState, stateFalling);
  EXPECT_EQ(TakeSounds(), "");
}

// What stands at the sound of the chain, and where events run while the list of the last fall is
// emptied.
TEST_F(Clear, SettlesInItsOrder) {
  Prepare(QuietBoard({{4, {26, 27, 28}}}), {26, 27, 28});
  twin::ScriptDraws({0, 3, 3, 5, 6}, 8);
  chainCount = 1;
  matchCount = 2;
  fallList = {60};
  clockRunning = kTrue;
  timeLeft = 20;
  std::ostringstream story;
  twin::OnPlay([&](const std::string& name) {
    story << name << ' ' << score << " kind " << CellKind(2, 3) << "; ";
  });
  twin::ScheduleAtPlace(1, [&] {
    story << score << " kind " << CellKind(2, 3) << " new " << Gem(26).kind << Gem(27).kind
          << Gem(28).kind << " at " << Gem(26).pixY << " to " << Gem(26).targetRow << " above "
          << Gem(18).targetRow << " falls " << fallList.size() << " state " << gameState
          << " matches " << matchCount << " time " << timeLeft << "; ";
  });
  RunFrame();
  story << fallList.size() << " above " << Gem(18).targetRow << " matches " << matchCount
        << " time " << timeLeft << " bonus " << timeBonus;
  EXPECT_EQ(story.str(),
            "combo2.wav 100 kind 4; "
            "150 kind -1 new 356 at -64 to 0 above 0 falls 0 state 5 matches 2 time 20; "
            "12 above 3 matches 3 time 23 bonus 3");
}

TEST_F(Clear, PaysTheKindOfTheLastGem) {
  constexpr float64 kPoints[] = {0, 85, 95, 95, 100, 90, 85, 90};
  for (int16 kind = 0; kind < 8; ++kind) {
    Prepare(QuietBoard({{(kind + 1) % 8, {9, 10, 11}}, {kind, {40, 41, 42}}}),
            {9, 10, 11, 40, 41, 42});
    RunFrame();
    EXPECT_EQ(score, kPoints[kind]) << "kind " << kind;
  }
}

TEST_F(Clear, PaysTheChain) {
  const std::string sounds[] = {"",       "combo2", "combo3",    "combo4",   "combo5",
                                "combo6", "combo7", "excellent", "excellent"};
  for (int16 chain = 0; chain < 9; ++chain) {
    Prepare(QuietBoard({{0, {9, 10, 11, 12, 13}}}), {9, 10, 11, 12, 13});
    chainCount = chain;
    RunFrame();
    EXPECT_EQ(chainCount, chain + 1);
    EXPECT_EQ(score, chain == 0 ? 0 : chain < 7 ? 50 : 500) << "chain " << chain + 1;
    EXPECT_EQ(TakeSounds(), sounds[chain]);
  }
}

TEST_F(Clear, OfTwoHolesInAColumnListsTheFall) {
  Prepare(QuietBoard(), {27, 43});
  RunFrame();
  EXPECT_EQ(fallList, (GemList{19, 11, 3, 35, 27, 43}));
  const std::vector<std::pair<int, int>> expected = {{128, 4}, {64, 3},  {0, 2},
                                                     {256, 5}, {-64, 1}, {-128, 0}};
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(Gem(fallList[i]).pixY, expected[i].first) << fallList[i];
    EXPECT_EQ(Gem(fallList[i]).targetRow, expected[i].second) << fallList[i];
  }
}

// On one standing clock, so that the seeding before each gem repeats its argument.
TEST_F(Clear, DrawsEveryKindWithoutAnyAlternation) {
  for (const int16 kinds : {int16{4}, int16{5}, int16{8}}) {
    std::multiset<int16> drawn;
    int sameAsTwoBefore = 0;
    for (int i = 0; i < 400; ++i) {
      Prepare(QuietBoard(), {9, 10, 11, 12});
      gemKinds = kinds;
      RunFrame();
      ASSERT_NE(Gem(9).kind, 0);
      for (int16 id = 9; id < 13; ++id) {
        drawn.insert(Gem(id).kind);
        ASSERT_EQ(Gem(id).sheetY, Gem(id).kind * 64);
        ASSERT_TRUE(id == 9 || Gem(id).kind != Gem(static_cast<int16>(id - 1)).kind);
      }
      if (Gem(9).kind == Gem(11).kind) ++sameAsTwoBefore;
    }
    for (int16 kind = 0; kind < kinds; ++kind)
      EXPECT_GT(drawn.count(kind), 1600U / static_cast<unsigned>(2 * kinds)) << kind;
    EXPECT_GT(sameAsTwoBefore, 400 / (2 * kinds));
    EXPECT_LT(sameAsTwoBefore, 400 * 2 / (kinds - 1));
  }
}

struct Bonus {
  GameMode mode;
  int16 atLevel;
  Flag runs;
  float32 left;
  float32 leftAfter;
  float32 limitAfter;
};

TEST_F(Clear, FeedsTheClockOfTheMode) {
  constexpr Bonus kRows[] = {
      {modeNormal, 1, kTrue, 49, 54, 50},          {modeNormal, 1, kFalse, 49, 49, 50},
      {modeFrantic, 1, kTrue, 2, 9.7F, 9.7F},      {modeFrantic, 10, kTrue, 2, 7, 7},
      {modeFrantic, 16, kTrue, 2, 5.2F, 5.2F},     {modeFrantic, 17, kTrue, 2, 5, 5},
      {modeFrantic, 40, kTrue, 2, 5, 5},           {modeMarathon, 18, kTrue, 49, 49, 50},
      {modeRelaxing, 1, kFalse, 12.5F, 12.5F, 50},
  };
  for (const Bonus& row : kRows) {
    SCOPED_TRACE(testing::Message() << "mode " << row.mode << " level " << row.atLevel);
    Prepare(QuietBoard(), {9, 10, 11, 12, 13});
    gameMode = row.mode;
    level = row.atLevel;
    matchCount = 0;
    clockRunning = row.runs;
    timeLimit = 50;
    timeLeft = row.left;
    timeBonus = -1;
    RunFrame();
    EXPECT_EQ(timeLeft, row.leftAfter);
    EXPECT_EQ(timeLimit, row.limitAfter);
    EXPECT_EQ(timeBonus, row.runs == kTrue ? 5 : -1);
    EXPECT_EQ(gameState, stateFalling);
  }
}

TEST_F(Clear, WinsTheLevelAtExactlyItsNumber) {
  for (const GameMode mode : {modeNormal, modeFrantic, modeRelaxing}) {
    for (const int16 before : {int16{1}, int16{2}, int16{30}}) {
      SCOPED_TRACE(testing::Message() << "mode " << mode << " level " << before);
      gameMode = mode;
      level = before;
      for (const int missing : {2, 1}) {
        Prepare(QuietBoard(), {11, 12, 13});
        matchCount = static_cast<int16>(2 * before + 15 - missing);
        clockRunning = mode == modeRelaxing ? kFalse : kTrue;
        levelWon = levelWonSound = kFalse;
        RunFrame();
        EXPECT_EQ(levelWon, missing == 1 ? kTrue : kFalse);
      }
      EXPECT_EQ(gameState, stateShaking);
      EXPECT_EQ(level, before + 1);
      EXPECT_EQ(matchCount, 0);
      EXPECT_EQ(levelWonSound, kTrue);
      EXPECT_EQ(clockRunning, kFalse);
      EXPECT_EQ(score, 100 * (before + 1));
      EXPECT_EQ(clearFrames, 0);
    }
  }
}

TEST_F(Clear, EndsMarathonOnlyWithoutTime) {
  gameMode = modeMarathon;
  level = 18;
  for (const float32 left : {0.1F, 0.0F, -0.1F}) {
    Prepare(QuietBoard(), {9, 10, 11});
    matchCount = 500;
    clockRunning = kTrue;
    timeLeft = left;
    RunFrame();
    EXPECT_EQ(matchCount, 501);
    EXPECT_EQ(gameState, left > 0 ? stateFalling : stateShaking);
    EXPECT_EQ(clockRunning, left > 0 ? kTrue : kFalse);
    EXPECT_EQ(levelWon, kFalse);
    EXPECT_EQ(level, 18);
  }
}

}  // namespace
}  // namespace glimmerfall
