// SPDX-License-Identifier: MIT
// The frame loop: how long a frame lasts, and how a new board starts it anew.
#include <limits>
#include <set>

#include "platform/Time.h"
#include "rules/basMainGameLoop.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Loop : public GameTest {};

TEST_F(Loop, FrameLastsOverTwentyTicksAndEventsRunAllThrough) {
  Perform("board");
  int ranAtTheirTick = 0;
  for (int32 tick = 1; tick <= 21; ++tick)
    twin::ScheduleAt(tick, [&, tick] { ranAtTheirTick += platform::TickCount() == tick; });
  RunFrame();
  EXPECT_EQ(platform::TickCount(), 21);
  EXPECT_EQ(ranAtTheirTick, 21);
  twin::ScheduleAtPlace(1, [] { twin::AdvanceTo(70); });
  const long places = twin::PlacesPassed();
  RunFrame();
  EXPECT_EQ(platform::TickCount(), 70) << "a late frame does not wait";
  EXPECT_EQ(twin::PlacesPassed(), places + 2) << "but lets events run once";
  constexpr int32 kLast = std::numeric_limits<int32>::max();
  twin::AdvanceTo(kLast - 5);
  RunFrame();
  EXPECT_EQ(platform::TicksSince(kLast - 5, platform::TickCount()), 21);
}

// At each place of a frame at rest: in its step, in its wait, and after it.
TEST_F(Loop, NothingOfTheOldFrameRunsAfterANewBoardIsAskedFor) {
  for (int place = 1; place <= 3; ++place) {
    SCOPED_TRACE(place);
    StartScriptedGame();
    int shown = 0;
    twin::ScheduleAtPlace(1, [] { Perform("board"); });
    twin::ScheduleAtPlace(2 + place, [&] {
      score = 50;
      Perform("new pick12 hint new");
      twin::devices.onShow = [&](const platform::Frame&) {
        ++shown;
        quitRequested = kTrue;
      };
    });
    RunGameLoop();
    EXPECT_EQ(shown, 1);
    EXPECT_EQ(std::tuple(gameState, perBoard.dropFrames, score), std::tuple(stateDealing, 1, 0));
    EXPECT_TRUE(twin::devices.played.empty());
  }
}

TEST_F(Loop, NewBoardsDoNotGrowTheStack) {
  int boards = 0;
  std::set<const char*> stacks;
  twin::OnEveryPlace([&] {
    const char here = 0;
    if (perBoard.dropFrames != 1 || quitRequested == kTrue) return;
    stacks.insert(&here);
    if (++boards == 100) {
      quitRequested = kTrue;
    } else {
      gameState = stateIdle;
      Perform("new");
    }
  });
  RunGameLoop();
  EXPECT_EQ(boards, 100);
  EXPECT_EQ(stacks.size(), 1U);
}

}  // namespace
}  // namespace glimmerfall
