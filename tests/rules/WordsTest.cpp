// SPDX-License-Identifier: MIT
// What a player who hears the game is told of it.
#include "ui/basBoardWords.h"

#include <functional>

#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

constexpr int kFramesPerLook = 5;  // as the timer looks, at the least

class Words : public GameTest {
 protected:
  void SetUp() override {
    GameTest::SetUp();
    gameMode = modeRelaxing;
    SetBoard(QuietBoard({{1, {16, 18, 19, 56, 57, 59}}}));
    news.Look();
  }

  // The next news; `frame` is called before each frame until it comes.
  std::string Next(const std::function<void()>& frame = [] {}) {
    for (int frames = 0; frames < 500; ++frames) {
      if (frames % kFramesPerLook == 0)
        if (std::string words = news.Look(); !words.empty()) return words;
      frame();
      RunFrame();
    }
    return "";
  }

  BoardNews news;
};

TEST_F(Words, NameEveryCell) {
  EXPECT_EQ(CellWords(0, 0), "white circle, column 1, row 1");
  Perform("pick63");
  EXPECT_EQ(CellWords(7, 7), "purple oval, column 8, row 8, selected");
  Perform("pick63");
  boardCells(7, 7).kind = kNoKind;
  EXPECT_EQ(CellWords(7, 7), "empty, column 8, row 8");
  gameState = stateEndMessage;
  EXPECT_EQ(CellWords(0, 0), "empty, column 1, row 1");
}

struct Said {
  const char* act;
  const char* words;
};

TEST_F(Words, TellWhatThePlayerDidOnce) {
  constexpr Said kSaid[] = {
      {"pick9 pick10", "No match. Score 0"},
      {"hint", "pink heart, column 2, row 3, selected"},
      {"pick40", "Nothing selected"},
      {"keyright keyenter2", ""},  // the name of the cursor's cell tells it
      {"keyescape", ""},
      {"pause", "Paused"},
      {"pause", "Pause ended"},
  };
  for (const Said& said : kSaid) {
    SCOPED_TRACE(said.act);
    Perform(said.act);
    EXPECT_EQ(Next(), said.words);
    EXPECT_EQ(Next(), "");
  }
}

// The frame before a clear is settled has its gems.
TEST_F(Words, CountGemsAndClearsOfAMove) {
  for (std::uint64_t seed = 1; seed <= 20; ++seed) {
    StartScriptedGame(seed);
    SetBoard(QuietBoard({{1, {16, 18, 19, 56, 57, 59}}}), 4);
    Perform("pick16 pick17");
    std::size_t gemsCleared = 0;
    int clears = 0;
    const std::string words = Next([&] {
      if (gameState != stateClearing || perBoard.clearFrames != 15) return;
      gemsCleared += clearList.size();
      ++clears;
    });
    ASSERT_GE(clears, 1);
    const std::string chain = clears > 1 ? ", chain of " + std::to_string(clears) : "";
    EXPECT_EQ(words, "Cleared " + std::to_string(gemsCleared) + " gems" + chain + ". Score " +
                         std::to_string(static_cast<int>(score)));
  }
}

TEST_F(Words, TellHowALevelAndAGameEnd) {
  Perform("pick16 pick17");
  matchCount = 16;
  EXPECT_EQ(Next(), "Cleared 3 gems. Level 1 won. Score 335");
  std::string spoken;
  twin::OnEveryPlace([&] {
    spoken += news.Look();
    Perform("click");
  });
  RunFramesUntil({stateEndMessage});
  RunFrame();
  twin::OnEveryPlace(nullptr);
  EXPECT_EQ(spoken, "Enter leads to the next level");
  InitGameBoard();
  EXPECT_EQ(Next(), "Level 2, 19 matches left");
  gameState = stateShaking;
  EXPECT_EQ(Next(), "Game over. Score 335");
}

TEST_F(Words, TellTheClock) {
  score = 150;
  EXPECT_EQ(StatusWords(), "No clock. Score 150. Level 1. Matches left 17");
  gameMode = modeMarathon;
  clockRunning = kTrue;
  timeLeft = 1.2F;
  Perform("pause");
  EXPECT_EQ(StatusWords(), "1 second left. Paused. Score 150. Level Marathon. Matches left 0");
}

}  // namespace
}  // namespace glimmerfall
