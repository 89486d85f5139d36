// SPDX-License-Identifier: MIT
// The frame loop: what a frame draws and in which order, how long it lasts, and how a new board
// starts it anew.
#include <malloc.h>

#include <limits>
#include <stdexcept>

#include "platform/Time.h"
#include "rules/basMainGameLoop.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Loop : public GameTest {};

std::string KindOfDrawing(const std::string& line) {
  const auto has = [&](const char* part) { return line.find(part) != std::string::npos; };
  if (has("Blt screen")) return "screen";
  if (has("Board.bmp")) return "board";
  if (has("Target.bmp")) return "target";
  if (line.starts_with("BltFast")) return "gem";
  if (has("gemsheet")) return "shrinking";
  for (const char* kind : {"Text", "Box", "Line"})
    if (line.starts_with(kind)) return kind;
  return "";
}

// The drawings of the log, equal ones in a row counted, and none of the settings of colour or font.
std::string Drawings() {
  std::vector<std::pair<std::string, int>> counted;
  for (const std::string& line : twin::DrawingLog()) {
    const std::string kind = KindOfDrawing(line);
    if (kind.empty()) continue;
    if (counted.empty() || counted.back().first != kind) counted.emplace_back(kind, 0);
    ++counted.back().second;
  }
  std::string text;
  for (const auto& [kind, count] : counted)
    text += kind + (count > 1 ? std::to_string(count) : "") + ' ';
  twin::DrawingLog().clear();
  return text;
}

struct Scene {
  const char* words;
  const char* drawn;
  GameState before;
  GameState after;
};

// The marker of a state that a step has just left is drawn still; the gems are drawn for the new
// state.
TEST_F(Loop, DrawsEachStateInItsOrder) {
  constexpr Scene kScenes[] = {
      {"", "board gem64 ", stateIdle, stateIdle},
      {"pick12", "board target gem64 ", stateSelected, stateSelected},
      {"pick12 pick20", "board target2 gem64 ", stateSwapping, stateSwapping},
      {"pick12 pick20 frames15", "board target2 shrinking64 ", stateSwapping, stateClearing},
      {"pick12 pick20 frames16", "board shrinking64 ", stateClearing, stateClearing},
      {"pick12 pick20 frames31", "board gem64 ", stateClearing, stateFalling},
      {"pick12 pick20 frames32", "board gem64 ", stateFalling, stateFalling},
      {"pick9 pick10 frames31", "board target2 gem64 ", stateSwapping, stateIdle},
  };
  const std::string status = "Text4 Box Line4 screen ";
  for (const Scene& scene : kScenes) {
    SCOPED_TRACE(scene.words);
    SetBoard(QuietBoard({{1, {12, 18, 19}}}));
    swapFrames = clearFrames = fallFrames = selectionCount = 0;
    timeLeft = 10;
    Perform(scene.words);
    EXPECT_EQ(gameState, scene.before);
    twin::LogDrawing(true);
    RunFrame();
    twin::LogDrawing(false);
    EXPECT_EQ(gameState, scene.after);
    EXPECT_EQ(Drawings(), scene.drawn + status);
  }
}

TEST_F(Loop, DrawsGemsAndNoMarkerInTheOtherStates) {
  twin::LogDrawing(true);
  for (const GameState state : {stateDealing, stateShaking, stateFlyOut}) {
    SetBoard(QuietBoard());
    gameState = state;
    RunFrame();
    EXPECT_EQ(Drawings(), "board gem64 Text4 Box Line4 screen ") << state;
  }
}

TEST_F(Loop, FrameLastsOverTwentyTicksAndEventsRunAllThrough) {
  SetBoard(QuietBoard());
  std::vector<int32> ran;
  for (int32 tick = 1; tick <= 21; ++tick)
    twin::ScheduleAt(tick, [&] { ran.push_back(platform::TickCount()); });
  RunFrame();
  EXPECT_EQ(platform::TickCount(), 21);
  ASSERT_EQ(ran.size(), 21U);
  for (int32 tick = 1; tick <= 21; ++tick)
    EXPECT_EQ(ran[static_cast<std::size_t>(tick - 1)], tick);
}

TEST_F(Loop, LateFrameStillLetsEventsRunOnce) {
  SetBoard(QuietBoard());
  twin::ScheduleAtPlace(1, [] { twin::AdvanceTo(70); });
  RunFrame();
  EXPECT_EQ(platform::TickCount(), 70);
  EXPECT_EQ(twin::PlacesPassed(), 2);
}

TEST_F(Loop, FrameOutlivesTheWrapOfTheTicks) {
  SetBoard(QuietBoard());
  constexpr int32 kLast = std::numeric_limits<int32>::max();
  twin::AdvanceTo(kLast - 5);
  RunFrame();
  EXPECT_EQ(platform::TicksSince(kLast - 5, platform::TickCount()), 21);
}

constexpr int kMostPlaces = 1'000'000;

// Calls `event` at each place where events run, until it answers false.
void RunLoopWhile(const std::function<bool()>& event) {
  int places = 0;
  twin::OnEveryPlace([&] {
    if (++places > kMostPlaces) throw std::runtime_error("the loop never ended");
    if (quitRequested != kTrue && !event()) quitRequested = kTrue;
  });
  RunGameLoop();
  twin::OnEveryPlace(nullptr);
}

TEST_F(Loop, StartsWithTheDealing) {
  SetBoard(QuietBoard());
  gameState = stateFlyOut;
  quitRequested = kTrue;
  std::vector<GameState> seen;
  RunLoopWhile([&] {
    seen.push_back(gameState);
    return false;
  });
  EXPECT_EQ(seen, std::vector<GameState>{stateDealing});
}

// New Game at each place of a frame at rest: in its step, in its wait, and after it.
TEST_F(Loop, NothingOfTheOldFrameRunsAfterANewBoardIsAskedFor) {
  for (int place = 1; place <= 3; ++place) {
    SCOPED_TRACE(place);
    StartScriptedGame();
    int32 asked = -1;
    twin::ScheduleAtPlace(1, [] { SetBoard(QuietBoard()); });
    twin::ScheduleAtPlace(2 + place, [&] {
      score = 50;
      Perform("new pick12 hint new");
      EXPECT_EQ(TakeSounds(), "");
      twin::LogDrawing(true);
      asked = platform::TickCount();
    });
    std::string after = "none";
    RunLoopWhile([&] {
      if (asked < 0 || newBoardWanted) return true;
      if (after == "none") {
        after = Drawings();
        return true;
      }
      return false;
    });
    EXPECT_EQ(after, "");
    EXPECT_EQ(platform::TickCount(), asked + 21);
    EXPECT_EQ(gameState, stateDealing);
    EXPECT_EQ(Gem(0).pixY, -512 + 13);
    EXPECT_EQ(score, 0);
    EXPECT_FALSE(newBoardWanted);
    EXPECT_EQ(Drawings(), "board gem64 Text4 Box Line4 screen ");
  }
}

TEST_F(Loop, TenThousandNewBoardsGrowNeitherStackNorHeap) {
  int boards = 0;
  const char* stack = nullptr;
  std::size_t heap = 0;
  RunLoopWhile([&] {
    const char here = 0;
    if (gameState != stateDealing || dropFrames != 1) return true;
    if (++boards == 100) {
      stack = &here;
      heap = mallinfo2().uordblks;
    }
    if (boards == 10'100) {
      EXPECT_EQ(&here, stack);
      EXPECT_LE(mallinfo2().uordblks, heap + 1024);
      return false;
    }
    gameState = stateIdle;
    Perform("new");
    return true;
  });
  EXPECT_EQ(boards, 10'100);
}

}  // namespace
}  // namespace glimmerfall
