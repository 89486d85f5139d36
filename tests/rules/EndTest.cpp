// SPDX-License-Identifier: MIT
// The end of a level and of a game: shaking, flight, message, and what leads on.
#include <algorithm>
#include <set>
#include <utility>

#include "platform/Time.h"
#include "rules/basEndOfGame.h"
#include "rules/basMainGameLoop.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class End : public GameTest {
 protected:
  void SetUp() override {
    GameTest::SetUp();
    SetBoard(QuietBoard());
    gameState = stateShaking;
  }
};

// Two gems by scripted draws: one trembles far, one near at the very edge of the choice.
TEST_F(End, ShakesEachGemOnItsOwnCell) {
  Gem(9).pixY = -300;
  Gem(9).pixX = 7;
  twin::ScriptRnd({1501.5 / 3000, 0.99, 0.0, 1500.5 / 3000, 0.0, 0.99});
  RunFrame();
  EXPECT_EQ(Gem(0).pixX, 4);
  EXPECT_EQ(Gem(0).pixY, 2);
  EXPECT_EQ(Gem(1).pixX, 64 + 2);
  EXPECT_EQ(Gem(1).pixY, 0);
  std::set<int> offsets;
  while (gameState == stateShaking) {
    for (const CGem& gem : gems) {
      offsets.insert(gem.pixX - gem.col * 64);
      offsets.insert(gem.pixY - gem.row * 64);
    }
    RunFrame();
  }
  EXPECT_EQ(offsets, (std::set<int>{0, 1, 2, 3, 4}));
}

TEST_F(End, ThrowsByItsRandomNumbers) {
  Perform("frames50");
  EXPECT_EQ(gameState, stateShaking);
  twin::ScriptRnd(std::vector<double>(std::size_t{64} * 3, 0.0));
  twin::ScriptRnd({0.5, 0.2, 0.5, 0.49, 0.4, 0.0});
  RunFrame();
  EXPECT_EQ(gameState, stateFlyOut);
  EXPECT_EQ(perBoard.shakeFrames, 0);
  EXPECT_EQ(Gem(0).flyAngle, 50);
  EXPECT_EQ(Gem(0).flySpeed, 20);
  EXPECT_EQ(Gem(1).flyAngle, 125);
  EXPECT_EQ(Gem(1).flySpeed, 10);
  EXPECT_EQ(Gem(1).flyX, 66);
  EXPECT_EQ(Gem(1).flyY, 2);
  std::set<std::pair<float32, float32>> throws;
  for (const CGem& gem : gems)
    throws.emplace(gem.flyAngle, gem.flySpeed);
  EXPECT_EQ(throws.size(), 64U);
}

struct Throw {
  int16 t;
  float32 x;
  float32 y;
  float32 angle;
  float32 speed;
  int16 pixX;
  int16 pixY;
};

TEST_F(End, FliesAlongItsParabola) {
  constexpr Throw kThrows[] = {
      {0, 258, 194, 60, 20, 258, 382},    {10, 64, 0, 60, 20, 164, 478},
      {63, 448, 450, 120, 10, 133, 2557}, {1, 0, 0.25F, 90, 10, 0, 566},
      {1, 0, 1.25F, 90, 10, 0, 566},
  };
  EXPECT_EQ(FlyY(10, 1.57079632679F, 10), 25);
  for (const Throw& thrown : kThrows) {
    CGem& gem = Gem(5);
    gem.flyX = thrown.x;
    gem.flyY = thrown.y;
    gem.flyAngle = thrown.angle;
    gem.flySpeed = thrown.speed;
    perBoard.spiralFrames = thrown.t;
    FlyOutStep();
    EXPECT_EQ(gem.pixX, thrown.pixX) << "t " << thrown.t;
    EXPECT_EQ(gem.pixY, thrown.pixY) << "t " << thrown.t;
  }
}

TEST_F(End, TakesItsFramesAndSounds) {
  for (const Flag won : {kFalse, kTrue}) {
    SetBoard(QuietBoard());
    gameState = stateShaking;
    levelWon = levelWonSound = won;
    EXPECT_EQ(RunFramesUntil({stateFlyOut}), 51);
    EXPECT_EQ(TakeSounds(), won == kTrue ? "gameoverlevel" : "explode");
    Perform("pick9 down9 move10 up hint new");
    EXPECT_EQ(RunFramesUntil({stateEndMessage}), 64);
    EXPECT_EQ(TakeSounds(), won == kTrue ? "excellent" : "gameover");
    EXPECT_EQ(levelWonSound, kFalse);
    EXPECT_EQ(levelWon, won);
    EXPECT_EQ(perBoard.spiralFrames, 0);
  }
}

// Runs a frame of the message in which a click comes after each of `waits` milliseconds.
void ShowMessageWithClicks(const std::vector<int>& waits) {
  gameState = stateEndMessage;
  const int32 start = platform::TickCount();
  for (const int wait : waits)
    twin::ScheduleAt(start + wait, [] { PressAndRelease(20); });
  RunFrame();
}

TEST_F(End, MessageIsPlacedFromTheSizeOfTheScore) {
  for (const Flag won : {kFalse, kTrue}) {
    score = 1234;
    level = 2;
    levelWon = won;
    newBoardWanted = false;
    std::vector<std::string> shown;
    twin::OnShow([&](const platform::Frame& frame) {
      if (shown.empty()) shown = twin::Lines(frame);
    });
    ShowMessageWithClicks({600});
    twin::OnShow(nullptr);
    std::vector<std::string> expected = {
        "Board.bmp 0,0,512,576 0,0,512,576", "Text 170,270 200 Score: 1234",
        "Text 168,268 61440 Score: 1234", "Text 170,220 200 Level: 1",
        "Text 168,218 61440 Level: 1"};
    if (won == kTrue)
      expected.insert(expected.end(), {"Text 145,370 200 Click to Continue",
                                       "Text 143,368 61440 Click to Continue"});
    EXPECT_EQ(shown, expected);
  }
}

// The last time lies so close to midnight that the half second runs across it.
TEST_F(End, ClicksInTheFirstHalfSecondAreLost) {
  for (const double time : {43200.0, 3600.0, 86399.8}) {
    SCOPED_TRACE(time);
    twin::SetTimer(time);
    levelWon = kTrue;
    newBoardWanted = false;
    const int32 start = platform::TickCount();
    ShowMessageWithClicks({0, 100, 480, 530});
    EXPECT_EQ(platform::TickCount() - start, 530);
    EXPECT_TRUE(newBoardWanted);
    EXPECT_EQ(levelWon, kFalse);
    EXPECT_FALSE(nameWanted);
  }
}

TEST_F(End, LostGameAsksForTheHighScoreOnceAfterTheHalfSecond) {
  score = 10;
  bool tooEarly = true;
  twin::ScheduleAt(platform::TickCount() + 450, [&] { tooEarly = nameWanted; });
  for (int i = 0; i < 3; ++i) {
    ShowMessageWithClicks({600});
    EXPECT_FALSE(tooEarly);
    EXPECT_EQ(gameState, stateEndMessage);
    EXPECT_FALSE(newBoardWanted);
    EXPECT_EQ(std::exchange(nameWanted, false), i == 0);
  }
  EXPECT_EQ(perBoard.highScoreChecked, kTrue);
  Perform("new");
  EXPECT_TRUE(newBoardWanted);
}

// In the deaf half second, and in the wait for the click; after a won level and a lost game.
TEST_F(End, NewGameLeadsOutOfBothWaits) {
  for (const int wait : {200, 900}) {
    for (const Flag won : {kFalse, kTrue}) {
      SCOPED_TRACE(testing::Message() << wait << " won " << won);
      newBoardWanted = false;
      gameState = stateEndMessage;
      levelWon = won;
      perBoard.highScoreChecked = kFalse;
      score = 10;
      level = 7;
      const int32 start = platform::TickCount();
      twin::ScheduleAt(start + wait, [] { Perform("new"); });
      RunFrame();
      EXPECT_EQ(platform::TickCount() - start, wait);
      EXPECT_TRUE(newBoardWanted);
      EXPECT_EQ(levelWon, kFalse);
      EXPECT_EQ(score, 0);
      EXPECT_EQ(level, 1);
      EXPECT_EQ(perBoard.highScoreChecked, won == kFalse && wait == 900 ? kTrue : kFalse);
    }
  }
}

}  // namespace
}  // namespace glimmerfall
