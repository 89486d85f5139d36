// SPDX-License-Identifier: MIT
// The mouse and the hint pick gems: which pixel is which gem, and what each gesture leads to.
#include "rules/basManipulatingGems.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Pick : public GameTest {
 protected:
  void SetUp() override {
    GameTest::SetUp();
    SetBoard(QuietBoard());
  }
};

TEST_F(Pick, HitsCellsByPixel) {
  constexpr std::tuple<float32, float32, int> kHits[] = {
      {0.5F, 0.5F, 0}, {63.9F, 1, 0},  {64, 63, 1},      {510, 510, 63}, {510.9F, 1, 7},
      {0, 100, -1},    {100, 0, -1},   {511, 100, -1},   {100, 511, -1}, {-3, 100, -1},
      {100, 540, -1},  {600, 100, -1}, {511.5F, 20, -1}, {320, 200, 29},
  };
  for (const auto& [x, y, gem] : kHits)
    EXPECT_EQ(GemAtPixel(x, y), gem) << x << ',' << y;
  std::swap(boardCells(0, 0).gemId, boardCells(1, 0).gemId);
  EXPECT_EQ(GemAtPixel(1, 1), 1);
}

TEST_F(Pick, NeighboursShareASide) {
  const auto neighbours = [](int16 gem) {
    std::vector<int> ids;
    for (int16 other = 0; other < kGemCount; ++other)
      if (GemsAdjacent(gem, other) != kFalse) ids.push_back(other);
    return ids;
  };
  EXPECT_EQ(neighbours(9), (std::vector<int>{1, 8, 10, 17}));
  EXPECT_EQ(neighbours(7), (std::vector<int>{6, 15}));
}

struct Gesture {
  const char* words;
  GameState state;
  int16 selected;  // selectionCount
  int16 spin;      // of gem 9
  const char* sounds;
};

// Gem 9 is always the one that is picked first.
TEST_F(Pick, GesturesLeadToTheirStates) {
  constexpr Gesture kGestures[] = {
      {"pick9 frames3", stateSelected, 1, 3, "select"},
      {"pick9 frames16", stateSelected, 1, 0, "select"},
      {"pick9 frames3 pick9", stateIdle, 0, 0, "select"},
      {"pick9 frames3 pick10", stateSwapping, 0, 0, "select"},
      {"pick9 frames3 pick18", stateIdle, 0, 0, "select badswap"},
      {"pick9 pick11 pick9", stateSelected, 1, 0, "select badswap select"},
      {"down9 frames3 move10 up click frames2 move11 pick20", stateSwapping, 0, 3, "select"},
      {"down9 frames3 move18", stateIdle, 0, 3, "select badswap"},
      {"down9 frames3 move9 up frames1 pick10", stateSwapping, 0, 0, "select"},
      {"pick9 frames3 move10", stateSelected, 1, 3, "select"},
      {"down9 frames3 move11 up pick9 frames2", stateSelected, 1, 5, "select badswap select"},
  };
  for (const Gesture& gesture : kGestures) {
    SCOPED_TRACE(gesture.words);
    StartScriptedGame();
    SetBoard(QuietBoard());
    perBoard.chainCount = 5;
    Perform(gesture.words);
    EXPECT_EQ(gameState, gesture.state);
    EXPECT_EQ(perBoard.selectionCount, gesture.selected);
    EXPECT_EQ(Gem(9).spinFrame, gesture.spin);
    EXPECT_EQ(TakeSounds(), gesture.sounds);
    EXPECT_EQ(firstGem, 9);
    EXPECT_EQ(perBoard.chainCount, 0);
  }
}

// It is gem 12 that makes the run, and is cleared with it.
TEST_F(Pick, DraggedGemKeepsItsSpinThroughItsClear) {
  SetBoard(QuietBoard({{1, {12, 18, 19}}}));
  Perform("down12 frames3 move20 up");
  EXPECT_EQ(RunFramesUntil({stateFalling}), 32);
  EXPECT_EQ(Gem(12).row, 2);
  EXPECT_LT(Gem(12).pixY, 0);
  RunFramesUntil({stateIdle, stateShaking});
  EXPECT_EQ(Gem(12).spinFrame, 3);
}

TEST_F(Pick, PressOffTheCellsOnlyHoldsTheButton) {
  Perform("pick9");
  MouseDown(100, 540);
  EXPECT_EQ(mouseHeld, kTrue);
  MouseMove(100, 540);
  MouseUp();
  EXPECT_EQ(mouseHeld, kFalse);
  EXPECT_EQ(gameState, stateSelected);
  EXPECT_EQ(TakeSounds(), "select");
}

TEST_F(Pick, OtherStatesTakeNone) {
  for (const GameState state : {stateLoading, stateDealing, stateSwapping, stateClearing,
                                stateFalling, stateShaking, stateFlyOut, stateEndMessage}) {
    gameState = state;
    Perform("down9 move10 up hint new");
    EXPECT_EQ(gameState, state == stateEndMessage ? stateDealing : state);
    EXPECT_EQ(perBoard.selectionCount, 0);
    EXPECT_EQ(TakeSounds(), "");
  }
}

TEST_F(Pick, HintPicksAndTwiceInARowKeepsTheSpin) {
  SetBoard(QuietBoard({{1, {16, 18, 19}}}));
  Perform("pick40 frames5 hint frames4");
  EXPECT_EQ(Gem(40).spinFrame, 0);
  EXPECT_EQ(perBoard.selectionCount, 1);
  perBoard.chainCount = 3;
  Perform("hint frames1");
  EXPECT_EQ(Gem(17).spinFrame, 5);
  EXPECT_EQ(perBoard.chainCount, 0);
  EXPECT_EQ(TakeSounds(), "select select select");
  Perform("pick17");
  EXPECT_EQ(gameState, stateIdle);
  // A button that went down on another gem, while gems fell, makes it a drag.
  gameState = stateFalling;
  Perform("down40");
  gameState = stateIdle;
  Perform("move41");
  EXPECT_EQ(gameState, stateIdle);
  Perform("hint move17");
  EXPECT_EQ(gameState, stateSelected);
  Perform("move16");
  EXPECT_EQ(gameState, stateSwapping);
}

}  // namespace
}  // namespace glimmerfall
