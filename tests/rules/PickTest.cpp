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
  struct Row {
    float32 x;
    float32 y;
    int16 gem;
  };
  constexpr Row kRows[] = {
      {1, 1, 0},      {0.5F, 0.5F, 0}, {63.9F, 1, 0},  {64, 63, 1},      {510, 510, 63},
      {510.9F, 1, 7}, {0, 100, -1},    {100, 0, -1},   {511, 100, -1},   {100, 511, -1},
      {-3, 100, -1},  {100, 540, -1},  {600, 100, -1}, {511.5F, 20, -1}, {320, 200, 29},
  };
  for (const Row& row : kRows)
    EXPECT_EQ(GemAtPixel(row.x, row.y), row.gem) << row.x << ',' << row.y;
  std::swap(boardCells(0, 0).gemId, boardCells(1, 0).gemId);
  EXPECT_EQ(GemAtPixel(1, 1), 1);
}

TEST_F(Pick, NeighboursShareASide) {
  for (const auto& [a, b, adjacent] : {std::tuple{9, 10, true},
                                       {10, 9, true},
                                       {9, 1, true},
                                       {9, 17, true},
                                       {9, 9, false},
                                       {9, 18, false},
                                       {9, 11, false},
                                       {9, 25, false},
                                       {7, 8, false}})
    EXPECT_EQ(GemsAdjacent(static_cast<int16>(a), static_cast<int16>(b)) != kFalse, adjacent)
        << a << ' ' << b;
}

struct Gesture {
  const char* words;
  GameState state;
  int16 selected;  // selectionCount
  int16 spin;      // of gem 9
  const char* sounds;
};

// Gem 9 is always the one that is picked first.
constexpr Gesture kGestures[] = {
    {"pick9", stateSelected, 1, 0, "select"},
    {"pick9 frames3", stateSelected, 1, 3, "select"},
    {"pick9 frames16", stateSelected, 1, 0, "select"},
    {"pick9 frames3 pick9", stateIdle, 0, 0, "select"},
    {"pick9 frames3 pick10", stateSwapping, 0, 0, "select"},
    {"pick9 frames3 pick18", stateIdle, 0, 0, "select badswap"},
    {"pick9 pick11 pick9", stateSelected, 1, 0, "select badswap select"},
    {"down9 frames3 move10", stateSwapping, 0, 3, "select"},
    {"down9 frames3 move10 up click frames2 move11 pick20", stateSwapping, 0, 3, "select"},
    {"down9 frames3 move18", stateIdle, 0, 3, "select badswap"},
    {"down9 frames3 move11", stateIdle, 0, 3, "select badswap"},
    {"down9 frames3 move9 up frames1 pick10", stateSwapping, 0, 0, "select"},
    {"pick9 frames3 move10", stateSelected, 1, 3, "select"},
    {"down9 frames3 move11 up pick9 frames2", stateSelected, 1, 5, "select badswap select"},
};

TEST_F(Pick, GesturesLeadToTheirStates) {
  for (const Gesture& gesture : kGestures) {
    SCOPED_TRACE(gesture.words);
    StartScriptedGame();
    SetBoard(QuietBoard());
    chainCount = 5;
    Perform(gesture.words);
    EXPECT_EQ(gameState, gesture.state);
    EXPECT_EQ(selectionCount, gesture.selected);
    EXPECT_EQ(Gem(9).spinFrame, gesture.spin);
    EXPECT_EQ(TakeSounds(), gesture.sounds);
    EXPECT_EQ(firstGem, 9);
    EXPECT_EQ(chainCount, 0);
  }
}

TEST_F(Pick, PressOffTheCellsOnlyHoldsTheButton) {
  Perform("pick9");
  for (const auto& [x, y] : {std::pair{0.0F, 100.0F}, {100.0F, 540.0F}}) {
    MouseDown(x, y);
    EXPECT_EQ(mouseHeld, kTrue);
    MouseMove(x, y);
    EXPECT_EQ(gameState, stateSelected);
    MouseUp();
    EXPECT_EQ(mouseHeld, kFalse);
  }
  EXPECT_EQ(firstGem, 9);
  EXPECT_EQ(TakeSounds(), "select");
}

TEST_F(Pick, OtherStatesTakeNone) {
  for (const GameState state : {stateLoading, stateDealing, stateSwapping, stateClearing,
                                stateFalling, stateShaking, stateFlyOut, stateEndMessage}) {
    gameState = state;
    Perform("down9 move10 up hint new");
    EXPECT_EQ(gameState, state == stateEndMessage ? stateDealing : state);
    EXPECT_EQ(selectionCount, 0);
    EXPECT_EQ(TakeSounds(), "");
  }
}

// A button that went down while gems fell is still held when a hint picks a gem.
TEST_F(Pick, HintTurnsAHeldButtonIntoADrag) {
  SetBoard(QuietBoard({{1, {16, 18, 19}}}));
  gameState = stateFalling;
  Perform("down40");
  gameState = stateIdle;
  Perform("move41");
  EXPECT_EQ(gameState, stateIdle);
  Perform("hint move17");
  EXPECT_EQ(firstGem, 17);
  EXPECT_EQ(gameState, stateSelected);
  Perform("move16");
  EXPECT_EQ(gameState, stateSwapping);
}

TEST_F(Pick, HintSelectsAndTwiceInARowKeepsTheSpin) {
  SetBoard(QuietBoard({{1, {16, 18, 19}}}));
  score = 70;
  matchCount = 3;
  timeLeft = 11;
  Perform("pick40 frames5 hint");
  EXPECT_EQ(Gem(40).spinFrame, 0);
  EXPECT_EQ(gameState, stateSelected);
  EXPECT_EQ(selectionCount, 1);
  Perform("frames4");
  chainCount = 3;
  Perform("hint frames1");
  EXPECT_EQ(Gem(17).spinFrame, 5);
  EXPECT_EQ(chainCount, 0);
  EXPECT_EQ(TakeSounds(), "select select select");
  EXPECT_EQ(score, 70);
  EXPECT_EQ(matchCount, 3);
  EXPECT_EQ(timeLeft, 11);
  Perform("pick17 hint pick25");
  EXPECT_EQ(gameState, stateSwapping);
}

}  // namespace
}  // namespace glimmerfall
