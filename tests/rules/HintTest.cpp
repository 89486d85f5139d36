// SPDX-License-Identifier: MIT
// The hint and the test for a move against a search that tries every swap of two neighbours.
#include <array>
#include <random>

#include "rules/basHint.h"
#include "rules/basInitializingGameBoard.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

using Kinds = std::array<int, 64>;

bool StandsInRun(const Kinds& kinds, int cell) {
  for (const int step : {1, 8}) {
    const auto sameLine = [&](int other) {
      return other >= 0 && other < 64 && (step == 8 || other / 8 == cell / 8);
    };
    int length = 1;
    for (const int way : {-step, step})
      for (int other = cell + way; sameLine(other) && kinds[static_cast<std::size_t>(other)] ==
                                                          kinds[static_cast<std::size_t>(cell)];
           other += way)
        ++length;
    if (length >= 3) return true;
  }
  return false;
}

bool SwapMakesRun(Kinds kinds, int a, int b) {
  std::swap(kinds[static_cast<std::size_t>(a)], kinds[static_cast<std::size_t>(b)]);
  return StandsInRun(kinds, a) || StandsInRun(kinds, b);
}

bool CanMove(const Kinds& kinds, int cell) {
  return (cell % 8 > 0 && SwapMakesRun(kinds, cell, cell - 1)) ||
         (cell % 8 < 7 && SwapMakesRun(kinds, cell, cell + 1)) ||
         (cell >= 8 && SwapMakesRun(kinds, cell, cell - 8)) ||
         (cell < 56 && SwapMakesRun(kinds, cell, cell + 8));
}

// Each cell is drawn until it makes no run with those before it.
Kinds DrawBoard(std::mt19937& random, int count) {
  Kinds kinds;
  kinds.fill(-1);
  for (int cell = 0; cell < 64; ++cell) {
    do {
      kinds[static_cast<std::size_t>(cell)] =
          std::uniform_int_distribution<int>(0, count - 1)(random);
    } while (StandsInRun(kinds, cell));
  }
  return kinds;
}

class Hint : public GameTest {};

// The strange boards of more than eight kinds are those that often have no move.
TEST_F(Hint, AgreesWithTryingEverySwap) {
  int without = 0;
  for (unsigned seed = 0; seed < 6000; ++seed) {
    std::mt19937 random(seed);
    const int count = 4 + static_cast<int>(seed % 16);
    const Kinds kinds = DrawBoard(random, count);
    SetBoard(QuietBoard());
    for (int16 id = 0; id < kGemCount; ++id) {
      // Ids that are not the cells' own, as they are in play.
      boardCells[id].gemId = static_cast<int16>(63 - id);
      boardCells[id].kind = static_cast<int16>(kinds[static_cast<std::size_t>(id)]);
    }
    bool anyMove = false;
    for (int cell = 0; cell < 64; ++cell)
      anyMove = anyMove || CanMove(kinds, cell);
    without += anyMove ? 0 : 1;
    ASSERT_EQ(MoveExists() != kFalse, anyMove) << "seed " << seed;
    const int16 hinted = FindHintGem();
    ASSERT_EQ(hinted != kNoGem, anyMove) << "seed " << seed;
    ASSERT_TRUE(hinted == kNoGem || CanMove(kinds, 63 - hinted)) << "seed " << seed;
  }
  EXPECT_GT(without, 100);
}

}  // namespace
}  // namespace glimmerfall
