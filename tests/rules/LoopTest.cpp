// SPDX-License-Identifier: MIT
// The frame loop: what a frame draws and in which order, how long it lasts, and how a new board
// starts it anew.
#include <algorithm>
#include <limits>
#include <set>
#include <stdexcept>

#include "platform/Time.h"
#include "rules/basMainGameLoop.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Loop : public GameTest {};

// What a line of a frame draws, by a part of it; the first one that fits.
constexpr std::pair<const char*, const char*> kDrawings[] = {
    {"Board.bmp", "board"}, {"Target.bmp", "target"}, {"gemsheet", "gem"},
    {"Text", "status"},     {"Box", "status"},
};

// The drawings of the frame, equal ones in a row counted.
std::string Drawings(const platform::Frame& frame) {
  std::vector<std::pair<std::string, int>> counted;
  for (const platform::DrawItem& item : frame) {
    const std::string line = twin::Lines({item}).front();
    const auto* const drawing =
        std::find_if(std::begin(kDrawings), std::end(kDrawings),
                     [&](const auto& row) { return line.find(row.first) != std::string::npos; });
    const auto* const copy = std::get_if<platform::Copy>(&item);
    const bool shrunk = copy != nullptr && copy->to.Width() != copy->from.Width();
    const std::string what = shrunk ? "shrunk" : drawing->second;
    if (counted.empty() || counted.back().first != what) counted.emplace_back(what, 0);
    ++counted.back().second;
  }
  std::string text;
  for (const auto& [what, count] : counted)
    text += what + (count > 1 ? std::to_string(count) : "") + ' ';
  return text;
}

// Every frame that is shown from now on, as its drawings and "screen".
void CollectShown(std::string& shown) {
  shown.clear();
  twin::OnShow([&](const platform::Frame& frame) { shown += Drawings(frame) + "screen "; });
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
      {"", "board gem64 ", stateDealing, stateDealing},
      {"", "board gem64 ", stateShaking, stateShaking},
      {"", "board ", stateFlyOut, stateFlyOut},  // all gems have left it
      {"pick12", "board target gem64 ", stateSelected, stateSelected},
      {"pick12 pick20", "board target2 gem64 ", stateSwapping, stateSwapping},
      {"pick12 pick20 frames15", "board target2 gem64 ", stateSwapping, stateClearing},
      {"pick12 pick20 frames16", "board gem18 shrunk3 gem43 ", stateClearing, stateClearing},
      {"pick12 pick20 frames31", "board gem61 ", stateClearing, stateFalling},
      {"pick12 pick20 frames32", "board gem64 ", stateFalling, stateFalling},
      {"pick9 pick10 frames31", "board target2 gem64 ", stateSwapping, stateIdle},
  };
  for (const Scene& scene : kScenes) {
    SCOPED_TRACE(testing::Message() << scene.words << ", state " << scene.before);
    StartScriptedGame();
    SetBoard(QuietBoard({{1, {12, 18, 19}}}));
    timeLeft = 10;
    Perform(scene.words);
    if (*scene.words == '\0') gameState = scene.before;
    EXPECT_EQ(gameState, scene.before);
    std::string shown;
    CollectShown(shown);
    RunFrame();
    EXPECT_EQ(gameState, scene.after);
    EXPECT_EQ(shown, std::string(scene.drawn) + "status9 screen ");
  }
}

TEST_F(Loop, FrameLastsOverTwentyTicksAndEventsRunAllThrough) {
  SetBoard(QuietBoard());
  int ranAtTheirTick = 0;
  for (int32 tick = 1; tick <= 21; ++tick)
    twin::ScheduleAt(tick, [&, tick] { ranAtTheirTick += platform::TickCount() == tick; });
  RunFrame();
  EXPECT_EQ(platform::TickCount(), 21);
  EXPECT_EQ(ranAtTheirTick, 21);
  constexpr int32 kLast = std::numeric_limits<int32>::max();
  twin::AdvanceTo(kLast - 5);
  RunFrame();
  EXPECT_EQ(platform::TicksSince(kLast - 5, platform::TickCount()), 21);
}

TEST_F(Loop, LateFrameStillLetsEventsRunOnce) {
  SetBoard(QuietBoard());
  twin::ScheduleAtPlace(1, [] { twin::AdvanceTo(70); });
  RunFrame();
  EXPECT_EQ(platform::TickCount(), 70);
  EXPECT_EQ(twin::PlacesPassed(), 2);
}

constexpr int kMostPlaces = 100'000;

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
    std::string shown;
    twin::ScheduleAtPlace(1, [] { SetBoard(QuietBoard()); });
    twin::ScheduleAtPlace(2 + place, [&] {
      score = 50;
      Perform("new pick12 hint new");
      EXPECT_EQ(TakeSounds(), "");
      CollectShown(shown);
      asked = platform::TickCount();
    });
    std::string after = "none";
    RunLoopWhile([&] {
      if (asked < 0 || newBoardWanted) return true;
      if (after != "none") return false;
      after = std::exchange(shown, "");
      return true;
    });
    EXPECT_EQ(after, "");
    EXPECT_EQ(platform::TickCount(), asked + 21);
    EXPECT_EQ(gameState, stateDealing);
    EXPECT_EQ(Gem(0).pixY, -512 + 13);
    EXPECT_EQ(score, 0);
    EXPECT_EQ(shown, "board gem8 status9 screen ");
  }
}

TEST_F(Loop, NewBoardsDoNotGrowTheStack) {
  int boards = 0;
  std::set<const char*> stacks;
  RunLoopWhile([&] {
    const char here = 0;
    if (perBoard.dropFrames != 1) return true;
    stacks.insert(&here);
    if (++boards == 100) return false;
    gameState = stateIdle;
    Perform("new");
    return true;
  });
  EXPECT_EQ(boards, 100);
  EXPECT_EQ(stacks.size(), 1U);
}

}  // namespace
}  // namespace glimmerfall
