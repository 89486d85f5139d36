// SPDX-License-Identifier: MIT
// A bot plays whole games in all modes to their end, on a slow machine, with everything a player
// can do thrown in wherever events run. Each game has its own seed.
#include <map>
#include <random>

#include "display/basDirectDrawStuff.h"
#include "platform/Events.h"
#include "platform/Time.h"
#include "rules/basGameClock.h"
#include "rules/basHint.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "rules/basMatchingGems.h"
#include "rules/basMoveShapes.h"
#include "rules/basStatusCaptions.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

constexpr int kGames = 2500;
constexpr long kMostPlaces = 300'000;  // a game that passes more is stuck
constexpr int kQuitOdds = 8;           // one game in so many is left at a random place
constexpr int32 kSlowFrame = 100;      // a slow machine lets the clock step in every frame

using Tally = std::map<std::string, int>;

class Bot {
 public:
  Bot(unsigned seed, Tally& tally) : random_(seed), tally_(tally) {
    quitAt_ = Chance(kQuitOdds) ? static_cast<long>(random_() % 3000U) : kMostPlaces;
  }

  // What is wrong, or nothing.
  const std::string& Fault() const { return fault_; }

  void OnPlace() {
    Watch();
    if (!fault_.empty() || ++places_ > kMostPlaces) Stop("stuck");
    if (places_ > quitAt_) {
      ++tally_["quit"];
      throw twin::ProgramEnded{0};
    }
    if (gameState == stateEndMessage) {
      FinishOrGoOn();
    } else {
      Act();
    }
    if (paused == kFalse && Chance(3)) return;
    twin::AdvanceTo(platform::TickCount() + kSlowFrame);
  }

 private:
  bool Chance(unsigned odds) { return random_() % odds == 0; }
  int AnyCell() { return static_cast<int>(random_() % 64U); }

  void Stop(const char* what) {
    if (fault_.empty()) fault_ = what;
    throw twin::ProgramEnded{1};
  }

  // A game ends when the message of a lost one has waited for its click.
  void FinishOrGoOn() {
    if (levelWon == kFalse && perBoard.highScoreChecked == kTrue) {
      ++tally_["ended"];
      throw twin::ProgramEnded{0};
    }
    Do("click");
  }

  void Watch() {
    const bool rests = gameState == stateIdle || gameState == stateSelected;
    if (rests && !rested_) fault_ = BrokenRest();
    rested_ = rests;
    if (score < lastScore_ && !newBoardWanted) fault_ = "the score fell";
    lastScore_ = score;
    if (timeLimit <= 0) fault_ = "a clock without a limit";
    if (gameState == lastState_) return;
    if (gameState == stateSwapping) ++tally_["moves"];
    if (lastState_ == stateClearing) ++tally_["clears"];
    if (lastState_ == stateClearing && levelWon != kFalse) ++tally_["wonLevels"];
    lastState_ = gameState;
  }

  static std::string BrokenRest() {
    if (BoardHasRun() != kFalse) return "a run rests";
    if (MoveExists() == kFalse) return "the player has no move";
    return BrokenInvariant();
  }

  // Done at the next place, outside the bot, so that the bot still acts while a pause holds.
  static void Do(const std::string& words) {
    twin::ScheduleAtPlace(1, [words] { Perform(words); });
  }

  void Act() {
    if (paused != kFalse && Chance(4)) return Do("pause");
    switch (random_() % 160U) {
      case 0:
        ++tally_["pauses"];
        return Do("pause");
      case 1:
        return Do("hint");
      case 2:
        if (Chance(20)) AskForNewGame();
        return;
      case 3:
      case 4:
        return Do("up down" + std::to_string(AnyCell()) + " move" + std::to_string(AnyCell()));
      case 5:
      case 6:
        return Do("pick" + std::to_string(AnyCell()));
      default:
        if (gameState == stateIdle && Chance(3)) TryToMove();
    }
  }

  // Relaxing ends only without a move, which needs many kinds of gem.
  void AskForNewGame() {
    twin::ScheduleAtPlace(1, [this] {
      Perform("new");
      if (!newBoardWanted) return;
      ++tally_["newGames"];
      lastScore_ = 0;
      if (gameMode == modeRelaxing) level = 30;
    });
  }

  // The gem of the hint and one beside it: every few times the move is a legal one.
  void TryToMove() {
    const int16 gem = FindHintGem();
    const int steps[] = {-8, -1, 1, 8};
    const int cell = Gem(gem).col + 8 * Gem(gem).row;
    const int other = cell + steps[random_() % 4U];
    if (other < 0 || other > 63) return;
    Do("pick" + std::to_string(cell) + " pick" + std::to_string(other));
  }

  std::mt19937 random_;
  Tally& tally_;
  std::string fault_;
  long places_ = 0;
  long quitAt_ = 0;
  bool rested_ = false;
  GameState lastState_ = stateLoading;
  float64 lastScore_ = 0;
};

void StartGame(unsigned seed) {
  StartScriptedGame(seed);
  ResetDisplay();
  gameMode = static_cast<GameMode>(seed % kModeCount);
  level = gameMode == modeRelaxing ? int16{30} : static_cast<int16>(1 + seed / 4 % 12);
  matchCount = static_cast<int16>(seed / 4 % 15);
  InitGameBoard();
  platform::StartTimer([] {
    CurrentCaptions();
    UpdateClock();
  });
}

class BotGames : public GameTest {};

TEST_F(BotGames, EndInAllModesWithEveryInvariantKept) {
  Tally tally;
  for (unsigned seed = 0; seed < kGames; ++seed) {
    StartGame(seed);
    Bot bot(seed, tally);
    twin::OnEveryPlace([&] { bot.OnPlace(); });
    EXPECT_THROW(RunGameLoop(), twin::ProgramEnded);
    ASSERT_EQ(bot.Fault(), "") << "seed " << seed << " mode " << gameMode << '\n' << BoardKinds();
  }
  EXPECT_EQ(tally["ended"] + tally["quit"], kGames);
  EXPECT_GT(tally["ended"], kGames * 3 / 4);
  EXPECT_GT(tally["moves"], 10 * kGames);
  EXPECT_GT(tally["clears"], 5 * kGames);
  EXPECT_GT(tally["wonLevels"], kGames / 100);
  EXPECT_GT(tally["newGames"], kGames / 20);
  EXPECT_GT(tally["pauses"], kGames);
}

}  // namespace
}  // namespace glimmerfall
