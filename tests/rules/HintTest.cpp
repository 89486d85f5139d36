// SPDX-License-Identifier: MIT
// What the known answers leave open of the hint: in play the ids are not those of the cells.
#include "rules/basHint.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Hint : public GameTest {};

TEST_F(Hint, NamesTheGemAndNotTheCell) {
  SetBoard(QuietBoard({{1, {16, 18, 19}}}));
  std::swap(boardCells[17].gemId, boardCells[40].gemId);
  EXPECT_EQ(FindHintGem(), 40);
}

}  // namespace
}  // namespace glimmerfall
