// SPDX-License-Identifier: MIT
// The game clock: its steps and beeps in each mode and at each hour, and its end in the midst of
// anything.
#include "platform/Events.h"
#include "platform/Time.h"
#include "rules/basGameClock.h"
#include "rules/basGameModes.h"
#include "rules/basMainGameLoop.h"
#include "rules/basStatusCaptions.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Clock : public GameTest {
 protected:
  void SetUp() override {
    GameTest::SetUp();
    SetBoard(QuietBoard());
  }
};

// The beeps of one game, as readings of the clock and of the wall clock in milliseconds.
struct Beeps {
  std::vector<float32> at;
  std::vector<int32> ticks;
};

Beeps RunClockOut(GameMode mode) {
  gameMode = mode;
  SetModeClock();
  gameState = stateIdle;
  platform::StartTimer(UpdateClock);
  Beeps beeps;
  lastBeepTick = 0;
  twin::OnEveryPlace([&, last = lastBeepTick]() mutable {
    if (lastBeepTick == last) return;
    last = lastBeepTick;
    beeps.at.push_back(timeLeft);
    beeps.ticks.push_back(platform::TickCount());
  });
  RunFramesUntil({stateShaking}, 20'000);
  twin::OnEveryPlace(nullptr);
  return beeps;
}

struct ModeRun {
  GameMode mode;
  float32 seconds;
  float32 threshold;
  int32 spacing;
  std::size_t beepsFrom;
  std::size_t beepsTo;
};

// The clock goes at 0.9 to 1.0 of the wall clock, whatever the resolution of Timer; the last hour
// runs across midnight while it beeps.
TEST_F(Clock, RunsAndBeepsFromTheFirstSecondToTheLast) {
  constexpr ModeRun kRuns[] = {{modeNormal, 50, 7, 1000, 7, 8},
                               {modeFrantic, 10, 2, 700, 3, 3},
                               {modeMarathon, 180, 7, 1000, 7, 8}};
  for (const Mode& mode : kModes)
    EXPECT_EQ(ModesOf(kRuns).contains(mode.mode), mode.clockRuns != kFalse) << mode.name;
  for (const ModeRun& run : kRuns) {
    for (const double hour : {3600.0, 43200.0, 86352.0}) {
      SCOPED_TRACE(testing::Message() << "mode " << run.mode << " at " << hour);
      twin::SetTimer(hour);
      const int32 start = platform::TickCount();
      const Beeps beeps = RunClockOut(run.mode);
      const auto lasted = static_cast<float32>(platform::TicksSince(start, platform::TickCount()));
      EXPECT_GE(lasted, run.seconds * 1000);
      EXPECT_LE(lasted, run.seconds * 1000 / 0.9F);
      EXPECT_EQ(clockRunning, kFalse);
      EXPECT_EQ(levelWon, kFalse);
      ASSERT_GE(beeps.at.size(), run.beepsFrom);
      ASSERT_LE(beeps.at.size(), run.beepsTo);
      EXPECT_LE(beeps.at.front(), run.threshold);
      EXPECT_GT(beeps.at.front(), run.threshold - 0.25F);
      for (std::size_t i = 1; i < beeps.ticks.size(); ++i)
        EXPECT_NEAR(beeps.ticks[i] - beeps.ticks[i - 1], run.spacing + 75, 75);
    }
  }
}

struct Step {
  const char* what;
  float32 left;
  float32 limit;
  float32 leftAfter;
  bool beeps;
};

// A step comes before the beep, the beep before the cap, the cap before the end.
TEST_F(Clock, StepsBeepsCapsAndEndsInThisOrder) {
  constexpr Step kSteps[] = {
      {"a plain step", 20, 50, 20 - 0.1F, false},
      {"a step onto the threshold beeps", 7.05F, 50, 7.05F - 0.1F, true},
      {"a step short of the threshold", 7.2F, 50, 7.2F - 0.1F, false},
      {"a bonus is cut back", 53, 50, 50, false},
      {"a value that the cap brings to the threshold does not beep yet", 9, 5, 5, false},
  };
  for (const Step& step : kSteps) {
    SCOPED_TRACE(step.what);
    clockRunning = kTrue;
    timeLeft = step.left;
    timeLimit = step.limit;
    lastClockTick = lastBeepTick = platform::Timer() - 100;
    UpdateClock();
    EXPECT_EQ(timeLeft, step.leftAfter);
    EXPECT_EQ(lastBeepTick == platform::Timer(), step.beeps);
    EXPECT_EQ(gameState, stateIdle);
    UpdateClock();
    EXPECT_EQ(timeLeft, step.leftAfter) << "no second step within 0.1 seconds";
  }
}

TEST_F(Clock, StandsStillWhileItDoesNotRun) {
  clockRunning = kFalse;
  timeLeft = 0;
  UpdateClock();
  EXPECT_EQ(timeLeft, 0);
  EXPECT_EQ(gameState, stateIdle);
  EXPECT_EQ(lastBeepTick, 0);
}

TEST_F(Clock, BeepAndPauseAreHeardWithTheEffectsOff) {
  twin::SetProgramFolder(TEST_DATA "/../..");
  soundOn = kFalse;
  clockRunning = kTrue;
  timeLeft = 5;
  UpdateClock();
  Perform("pause");
  std::string files;
  for (const twin::GraphRecord* graph : twin::Graphs())
    files += graph->path.substr(graph->path.find_last_of('/'));
  EXPECT_TRUE(files.ends_with("/timerbeep.wav/gemdrop.wav")) << files;
}

TEST_F(Clock, CaptionsTellScoreLevelAndMatches) {
  score = 1234567;
  level = 3;
  matchCount = 4;
  for (const Mode& row : kModes) {
    gameMode = row.mode;
    const StatusCaptions captions = CurrentCaptions();
    EXPECT_EQ(captions.mnuScore, "1234567");
    EXPECT_EQ(captions.mnuCount, gameMode == modeMarathon ? "Marathon" : "3");
    EXPECT_EQ(captions.mnuMatchCount, gameMode == modeMarathon ? "4" : "17");
  }
}

struct Handler {
  const char* what;
  std::vector<Patch> patches;
  void (*prepare)();  // leaves the frame in which the lists are emptied to be run
};

const Handler kHandlers[] = {
    {"the swap arrives",
     {{1, {12, 18, 19}}},
     [] {
       clearList = {1, 2, 3};
       Perform("pick12 pick20 frames15");
     }},
    {"the clear settles and wins the level",
     {{1, {18, 19, 20}}},
     [] {
       clearList = {18, 19, 20};
       fallList = {1, 2, 3};
       matchCount = 16;
       gameState = stateClearing;
       perBoard.clearFrames = 15;
     }},
    {"the fall lands with a run",
     {{1, {18, 19, 20}}},
     [] {
       clearList = {1, 2, 3};
       gameState = stateFalling;
       perBoard.fallFrames = 3;
     }},
    {"the fall lands with a move",
     {{1, {56, 57, 59}}},
     [] {
       clearList = {1, 2, 3};
       gameState = stateFalling;
       perBoard.fallFrames = 3;
     }},
    {"a gem is selected", {}, [] { Perform("pick9"); }},
    {"nothing is picked", {}, [] {}},
};

void RunTimeOut() {
  timeLeft = 0.05F;
  lastClockTick = 0;
  UpdateClock();
}

// The handler goes on behind the event, and nothing that it sets may bring the game back.
TEST_F(Clock, EndOfPlayWinsAtEveryPlaceOfAHandler) {
  for (const Handler& handler : kHandlers) {
    bool came = true;
    int place = 0;
    while (came) {
      SCOPED_TRACE(testing::Message() << handler.what << ", place " << ++place);
      StartScriptedGame();
      SetBoard(QuietBoard(handler.patches));
      handler.prepare();
      clockRunning = kTrue;
      came = false;
      twin::ScheduleAtPlace(place, [&] {
        came = clockRunning == kTrue;
        if (came) RunTimeOut();
      });
      RunFrame();
      if (!came) break;
      EXPECT_EQ(gameState, stateShaking);
      EXPECT_EQ(clockRunning, kFalse);
      EXPECT_EQ(level, 1);
      TakeSounds();
      EXPECT_EQ(RunFramesUntil({stateEndMessage}), 51 + 64);
      EXPECT_EQ(levelWon, kFalse);
      EXPECT_EQ(TakeSounds(), "explode gameover");
    }
    EXPECT_GE(place, 3);
  }
}

}  // namespace
}  // namespace glimmerfall
