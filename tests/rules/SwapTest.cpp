// SPDX-License-Identifier: MIT
// The swap's motion and outcome. Runs of every shape, and what they pay, are for the known answers.
#include "rules/basMatchingGems.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Swap : public GameTest {};

TEST_F(Swap, WithoutARunTravelsBackAndCostsNothing) {
  for (const auto& [board, picks] : {std::pair{QuietBoard(), "pick9 pick10"},
                                     {QuietBoard(), "pick63 pick55"},
                                     {QuietBoard({{1, {9, 10}}}), "pick10 pick9"}}) {
    SCOPED_TRACE(picks);
    SetBoard(board);
    score = 500;
    matchCount = 4;
    const std::vector<int> ids = BoardIds();
    Perform(std::string(picks) + " frames15");
    EXPECT_EQ(BoardIds(), ids);
    EXPECT_EQ(TakeSounds(), "select");
    Perform("frames1");
    EXPECT_NE(BoardIds(), ids);
    EXPECT_EQ(TakeSounds(), "badswap");
    EXPECT_EQ(RunFramesUntil({stateIdle}), 16);
    EXPECT_EQ(BoardIds(), ids);
    EXPECT_EQ(BrokenInvariant(), "");
    EXPECT_EQ(TakeSounds(), "");
    EXPECT_EQ(std::tuple(score, matchCount), std::tuple(500, 4));
  }
}

// Gem 12 is swapped with gem 20 below it, for a run of four and for one of five.
TEST_F(Swap, PaysForASetOrABigSetAfterItsSound) {
  for (const auto& [cells, sound, points] : {std::tuple{std::vector{12, 18, 19, 21}, "gotset", 50},
                                             {std::vector{12, 18, 19, 21, 22}, "gotsetbig", 300}}) {
    SetBoard(QuietBoard({{1, cells}}));
    score = 0;
    float64 scoreAtSound = -1;
    twin::OnPlay([&](const std::string&) { scoreAtSound = score; });
    Perform("pick12 pick20 frames15");
    TakeSounds();
    Perform("frames1");
    EXPECT_EQ(TakeSounds(), sound);
    EXPECT_EQ(scoreAtSound, 0);
    EXPECT_EQ(score, points);
    EXPECT_EQ(gameState, stateClearing);
  }
}

TEST_F(Swap, EmptyingAListLetsEventsRunAfterEachEntry) {
  GemList list = {4, 5, 6};
  std::vector<GemList> seen;
  twin::OnEveryPlace([&] { seen.push_back(list); });
  EmptyList(list);
  EXPECT_EQ(seen, (std::vector<GemList>{{5, 6}, {6}, {}}));
}

}  // namespace
}  // namespace glimmerfall
