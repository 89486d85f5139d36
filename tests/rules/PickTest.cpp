// SPDX-License-Identifier: MIT
// Which pixel of the board is which gem.
#include "rules/basManipulatingGems.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Pick : public GameTest {};

TEST_F(Pick, HitsTheGemOfTheCellUnderThePixel) {
  constexpr std::tuple<float32, float32, int> kHits[] = {
      {0.5F, 0.5F, 0}, {63.9F, 1, 0},  {64, 63, 1},      {510, 510, 63}, {510.9F, 1, 7},
      {0, 100, -1},    {100, 0, -1},   {511, 100, -1},   {100, 511, -1}, {-3, 100, -1},
      {100, 540, -1},  {600, 100, -1}, {511.5F, 20, -1}, {320, 200, 29},
  };
  Perform("board");
  for (const auto& [x, y, gem] : kHits)
    EXPECT_EQ(GemAtPixel(x, y), gem) << x << ',' << y;
  for (const auto& [x, y] : {std::pair{8, 0}, {0, -1}, {-1, 8}, {0, 8}})
    EXPECT_EQ(CellKind(static_cast<int16>(x), static_cast<int16>(y)), kNoKind);
  EXPECT_EQ(std::pair(CellKind(0, 0), CellKind(7, 7)), std::pair(int16{0}, int16{4}));
}

TEST_F(Pick, PressOffTheCellsOnlyHoldsTheButton) {
  Perform("board pick9");
  MouseDown(100, 540);
  EXPECT_EQ(mouseHeld, kTrue);
  MouseMove(100, 540);
  MouseUp();
  EXPECT_EQ(mouseHeld, kFalse);
  EXPECT_EQ(gameState, stateSelected);
}

}  // namespace
}  // namespace glimmerfall
