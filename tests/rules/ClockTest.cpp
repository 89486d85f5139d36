// SPDX-License-Identifier: MIT
// The end of the clock in the midst of anything.
#include "rules/basGameClock.h"
#include "rules/basMainGameLoop.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Clock : public GameTest {};

struct Handler {
  const char* what;
  const char* words;  // lead to the frame in which the handler empties its lists
  GemList cleared;
};

const Handler kHandlers[] = {
    {"the swap arrives", "put1:12,18,19 pick12 pick20 frames15", {1, 2, 3}},
    {"the clear settles and wins the level", "put1:18,19,20 matches=16 state=5", {18, 19, 20}},
    {"the fall lands with a run", "put1:18,19,20 state=6", {1, 2, 3}},
    {"the fall lands with a move", "put1:56,57,59 state=6", {1, 2, 3}},
    {"a gem is selected", "pick9", {}},
    {"nothing is picked", "", {}},
};

void Prepare(const Handler& handler) {
  StartScriptedGame();
  Perform("board " + std::string(handler.words));
  clearList = handler.cleared;
  fallList = {1, 2, 3};
  perBoard.clearFrames = 15;
  perBoard.fallFrames = 3;
  clockRunning = kTrue;
}

// Runs a frame; answers whether it came to its place `place`, where the clock has then run out.
bool RunOutOfTimeAt(int place) {
  bool came = false;
  twin::ScheduleAtPlace(place, [&] {
    came = clockRunning == kTrue;
    if (!came) return;
    timeLeft = 0.05F;
    lastClockTick = 0;
    UpdateClock();
  });
  RunFrame();
  return came;
}

// The handler goes on behind the event, and nothing that it sets may bring the game back.
TEST_F(Clock, EndOfPlayWinsAtEveryPlaceOfAHandler) {
  for (const Handler& handler : kHandlers) {
    int place = 1;
    for (Prepare(handler); RunOutOfTimeAt(place); Prepare(handler), ++place) {
      SCOPED_TRACE(testing::Message() << handler.what << ", place " << place);
      EXPECT_EQ(std::tuple(gameState, clockRunning, level), std::tuple(stateShaking, kFalse, 1));
      twin::devices.played.clear();
      Perform("frames114");
      EXPECT_EQ(gameState, stateFlyOut);
      Perform("frames1");
      EXPECT_EQ(gameState, stateEndMessage);
      EXPECT_EQ(levelWon, kFalse);
      EXPECT_EQ(twin::devices.played, (std::vector<std::string>{"explode.wav", "gameover.wav"}));
    }
    EXPECT_GE(place, 3);
  }
}

}  // namespace
}  // namespace glimmerfall
