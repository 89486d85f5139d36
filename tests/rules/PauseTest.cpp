// SPDX-License-Identifier: MIT
// The pause: it holds everything while a clock runs, and nothing else does.
#include "platform/Events.h"
#include "platform/Time.h"
#include "rules/basGameClock.h"
#include "rules/basMainGameLoop.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

constexpr int32 kPauseMillis = 3000;

class Pause : public GameTest {
 protected:
  void SetUp() override {
    GameTest::SetUp();
    SetBoard(QuietBoard({{1, {12, 18, 19, 56, 57, 59}}}));
    clockRunning = kTrue;
    timeLimit = 50;
    timeLeft = 30;
    lastClockTick = platform::Timer();
    platform::StartTimer(UpdateClock);
  }
};

// All that moves.
std::vector<int> Motion() {
  std::vector<int> motion = {gameState, perBoard.swapFrames, perBoard.clearFrames,
                             perBoard.fallFrames, perBoard.targetDelay};
  for (const CGem& gem : gems)
    motion.insert(motion.end(), {gem.pixX, gem.pixY, gem.shrink, gem.spinFrame});
  return motion;
}

// Runs frames until one has been held; answers the tick at which it began.
int32 RunHeldFrame() {
  int32 start = 0;
  do {
    start = platform::TickCount();
    RunFrame();
  } while (platform::TickCount() - start < 100);
  return start;
}

TEST_F(Pause, HoldsEveryMotionAndTheClock) {
  for (const char* words : {"", "pick12", "pick12 pick20 frames5", "pick12 pick20 frames20",
                            "pick12 pick20 frames35"}) {
    SCOPED_TRACE(words);
    SetUp();
    Perform(std::string(words) + " pause");
    const float32 held = timeLeft;
    const int32 now = platform::TickCount();
    std::vector<int> early;
    twin::ScheduleAt(now + 200, [&] { early = Motion(); });
    twin::ScheduleAt(now + kPauseMillis, [&] {
      EXPECT_EQ(early, Motion());
      EXPECT_EQ(timeLeft, held);
      Perform("pause");
    });
    EXPECT_LE(RunHeldFrame(), now + 110);
    EXPECT_LT(platform::TickCount(), now + kPauseMillis + 25);
    EXPECT_EQ(timeLeft, held);
    Perform("frames5");
    EXPECT_FLOAT_EQ(timeLeft, held - 0.1F);
  }
}

TEST_F(Pause, TakesPicksThatShowLater) {
  Perform("pause");
  twin::ScheduleAt(1000, [] { Perform("pick9"); });
  twin::ScheduleAt(1600, [] {
    EXPECT_EQ(Gem(9).spinFrame, 0);
    Perform("pause");
  });
  RunHeldFrame();
  Perform("frames2");
  EXPECT_EQ(Gem(9).spinFrame, 2);
}

TEST_F(Pause, EndsWithANewGame) {
  Perform("pause");
  twin::ScheduleAt(1000, [] { Perform("new"); });
  RunHeldFrame();
  EXPECT_EQ(platform::TickCount(), 1000);
  EXPECT_EQ(paused, kFalse);
  EXPECT_TRUE(newBoardWanted);
  EXPECT_EQ(timeLeft, 50) << "the new game's, without a step";
}

// A pause without a clock holds nothing, until a clock runs.
TEST_F(Pause, TakesHoldOnceAClockRuns) {
  clockRunning = kFalse;
  timeLeft = 12;
  Perform("pause");
  for (const GameState state : {stateShaking, stateFlyOut, stateIdle}) {
    gameState = state;
    const int32 start = platform::TickCount();
    Perform("frames10");
    EXPECT_EQ(platform::TickCount(), start + 210);
  }
  clockRunning = kTrue;
  timeLeft = 50;
  const int32 now = platform::TickCount();
  twin::ScheduleAt(now + kPauseMillis, [] { Perform("pause"); });
  RunHeldFrame();
  EXPECT_GE(platform::TickCount(), now + kPauseMillis);
  EXPECT_EQ(timeLeft, 12);
}

}  // namespace
}  // namespace glimmerfall
