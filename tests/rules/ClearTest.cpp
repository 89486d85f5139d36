// SPDX-License-Identifier: MIT
// The settling of a clear: its order, its points, the new gems, the clock bonus and the level.
#include <map>
#include <sstream>

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
    perBoard.clearFrames = 15;
    perBoard.chainCount = 0;
    score = 0;
  }
};

// What stands at the sound of the chain, and where events run while the list of the last fall is
// emptied.
TEST_F(Clear, ShrinksAndThenSettlesInItsOrder) {
  Prepare(QuietBoard({{4, {26, 27, 28}}}), {26, 27, 28});
  perBoard.clearFrames = 0;
  Perform("frames15");
  EXPECT_EQ(Gem(26).shrink, 60);
  EXPECT_EQ(Gem(2).shrink, 0);
  EXPECT_EQ(gameState, stateClearing);
  twin::ScriptNumbers({0, 3, 3, 5, 6}, 8);
  perBoard.chainCount = 1;
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
  EXPECT_EQ(Gem(26).shrink, 0);
}

TEST_F(Clear, PaysTheChain) {
  const std::string sounds[] = {"",       "combo2", "combo3",    "combo4",   "combo5",
                                "combo6", "combo7", "excellent", "excellent"};
  for (int16 chain = 0; chain < 9; ++chain) {
    Prepare(QuietBoard({{0, {9, 10, 11, 12, 13}}}), {9, 10, 11, 12, 13});
    perBoard.chainCount = chain;
    RunFrame();
    EXPECT_EQ(perBoard.chainCount, chain + 1);
    EXPECT_EQ(score, chain == 0 ? 0 : chain < 7 ? 50 : 500) << "chain " << chain + 1;
    EXPECT_EQ(TakeSounds(), sounds[chain]);
  }
}

// On one standing clock, so that the seeding before each gem repeats its argument.
TEST_F(Clear, GivesEveryKindWithoutAnyAlternation) {
  std::map<int16, int> drawn;
  int sameAsTwoBefore = 0;
  for (int i = 0; i < 400; ++i) {
    Prepare(QuietBoard(), {9, 10, 11});
    gemKinds = 5;
    RunFrame();
    ASSERT_NE(Gem(9).kind, 0);
    ASSERT_NE(Gem(10).kind, Gem(9).kind);
    ASSERT_NE(Gem(11).kind, Gem(10).kind);
    sameAsTwoBefore += Gem(11).kind == Gem(9).kind ? 1 : 0;
    for (const int16 id : {int16{9}, int16{10}, int16{11}})
      ++drawn[Gem(id).kind];
  }
  for (int16 kind = 0; kind < 5; ++kind)
    EXPECT_GT(drawn[kind], 120) << kind;
  EXPECT_GT(sameAsTwoBefore, 40);
  EXPECT_LT(sameAsTwoBefore, 200);
}

TEST_F(Clear, FeedsTheClockOfTheMode) {
  struct Row {
    GameMode mode;
    int16 atLevel;
    Flag runs;
    float32 left;
    float32 limit;
  };
  constexpr Row kRows[] = {
      {modeNormal, 1, kTrue, 54, 50},      {modeNormal, 1, kFalse, 49, 50},
      {modeFrantic, 1, kTrue, 9.7F, 9.7F}, {modeFrantic, 10, kTrue, 7, 7},
      {modeFrantic, 17, kTrue, 5, 5},      {modeMarathon, 18, kTrue, 49, 50},
      {modeRelaxing, 1, kFalse, 49, 50},
  };
  EXPECT_EQ(ModesOf(kRows).size(), kModeCount);
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << "mode " << row.mode << " level " << row.atLevel);
    Prepare(QuietBoard(), {9, 10, 11, 12, 13});
    gameMode = row.mode;
    level = row.atLevel;
    clockRunning = row.runs;
    timeLimit = 50;
    timeLeft = 49;
    timeBonus = -1;
    RunFrame();
    EXPECT_EQ(timeLeft, row.left);
    EXPECT_EQ(timeLimit, row.limit);
    EXPECT_EQ(timeBonus, row.runs == kTrue ? 5 : -1);
  }
}

TEST_F(Clear, WinsTheLevelAtExactlyItsNumber) {
  for (const GameMode mode : {modeNormal, modeFrantic, modeRelaxing}) {
    for (const int missing : {2, 1}) {
      SCOPED_TRACE(testing::Message() << "mode " << mode << " missing " << missing);
      const bool wins = missing == 1;
      Prepare(QuietBoard(), {11, 12, 13});
      gameMode = mode;
      level = 30;
      matchCount = static_cast<int16>(2 * 30 + 15 - missing);
      clockRunning = kTrue;
      levelWon = levelWonSound = kFalse;
      RunFrame();
      EXPECT_EQ(levelWon, wins ? kTrue : kFalse);
      EXPECT_EQ(levelWonSound, levelWon);
      EXPECT_EQ(gameState, wins ? stateShaking : stateFalling);
      EXPECT_EQ(clockRunning, wins ? kFalse : kTrue);
      EXPECT_EQ(level, wins ? 31 : 30);
      EXPECT_EQ(matchCount, wins ? 0 : 74);
      EXPECT_EQ(score, wins ? 3100 : 0);
    }
  }
}

TEST_F(Clear, EndsMarathonOnlyWithoutTime) {
  gameMode = modeMarathon;
  level = 18;
  for (const float32 left : {0.1F, 0.0F}) {
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
