// SPDX-License-Identifier: MIT
// The swap's motion and outcome, and the list of the gems that stand in runs.
#include "rules/basMatchingGems.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Swap : public GameTest {};

std::vector<std::vector<int>> GemFields() {
  std::vector<std::vector<int>> fields;
  for (CGem gem : gems) {
    gem.swapDirX = gem.swapDirY = 0;
    fields.push_back({gem.id, gem.kind, gem.col, gem.row, gem.pixX, gem.pixY, gem.targetRow,
                      gem.sheetY, gem.shrink, gem.spinFrame, gem.fallSpeed});
  }
  return fields;
}

TEST_F(Swap, WithoutARunTravelsBack) {
  const std::string sameKind = QuietBoard({{1, {9, 10}}});
  for (const auto& [board, first, second] : {std::tuple{QuietBoard(), 9, 10},
                                             {QuietBoard(), 10, 9},
                                             {QuietBoard(), 9, 17},
                                             {QuietBoard(), 63, 55},
                                             {sameKind, 9, 10}}) {
    SCOPED_TRACE(testing::Message() << first << ' ' << second);
    SetBoard(board);
    score = 500;
    matchCount = 4;
    const auto before = GemFields();
    const std::vector<int> ids = BoardIds();
    PressAndRelease(first);
    PressAndRelease(second);
    Perform("frames15");
    EXPECT_EQ(BoardIds(), ids);
    EXPECT_EQ(TakeSounds(), "select");
    Perform("frames1");
    EXPECT_NE(BoardIds(), ids);
    EXPECT_EQ(TakeSounds(), "badswap");
    EXPECT_EQ(swapPasses, 2);
    Perform("frames15");
    EXPECT_EQ(gameState, stateSwapping);
    Perform("frames1");
    EXPECT_EQ(gameState, stateIdle);
    EXPECT_EQ(GemFields(), before);
    EXPECT_EQ(BoardIds(), ids);
    EXPECT_EQ(BrokenInvariant(), "");
    EXPECT_EQ(TakeSounds(), "");
    EXPECT_EQ(score, 500);
    EXPECT_EQ(matchCount, 4);
    EXPECT_EQ(swapPasses, 0);
  }
}

struct Reward {
  const char* what;
  std::vector<Patch> patches;
  const char* sound;
  float64 points;
};

// Gem 12 is swapped with gem 20 below it.
TEST_F(Swap, PaysForASetOrABigSet) {
  const Reward rewards[] = {
      {"three", {{1, {12, 18, 19}}}, "gotset", 50},
      {"four", {{1, {12, 18, 19, 21}}}, "gotset", 50},
      {"five in one line", {{1, {12, 18, 19, 21, 22}}}, "gotsetbig", 300},
      {"an L", {{1, {12, 18, 19, 28, 36}}}, "gotsetbig", 300},
      {"two runs of two kinds", {{1, {12, 18, 19}}, {2, {20, 13, 14}}}, "gotsetbig", 300},
  };
  for (const Reward& reward : rewards) {
    SCOPED_TRACE(reward.what);
    SetBoard(QuietBoard(reward.patches));
    score = 0;
    float64 scoreAtSound = -1;
    twin::OnPlay([&](const std::string&) { scoreAtSound = score; });
    Perform("pick12 pick20 frames15");
    EXPECT_EQ(score, 0);
    twin::PlayedSounds().clear();
    Perform("frames1");
    EXPECT_EQ(TakeSounds(), reward.sound);
    EXPECT_EQ(scoreAtSound, 0);
    EXPECT_EQ(score, reward.points);
    EXPECT_EQ(gameState, stateClearing);
    EXPECT_EQ(swapPasses, 0);
    EXPECT_EQ(clearFrames, 0);
  }
}

struct Listing {
  const char* what;
  std::vector<int> cells;
  GemList listed;
};

TEST_F(Swap, ListsRunsInOrderWithoutDoubles) {
  const Listing listings[] = {
      {"an L", {17, 18, 19, 27, 35}, {17, 18, 19, 27, 35}},
      {"a cross", {19, 27, 35, 43, 51, 33, 34, 36, 37}, {33, 34, 35, 36, 37, 19, 27, 43, 51}},
      {"a T at the right edge", {7, 15, 23, 13, 14}, {13, 14, 15, 7, 23}},
      {"a whole row", {56, 57, 58, 59, 60, 61, 62, 63}, {56, 57, 58, 59, 60, 61, 62, 63}},
      {"a column to the bottom edge", {47, 55, 63}, {47, 55, 63}},
      {"two in the last cells of a line", {6, 7, 54, 62}, {}},
  };
  constexpr int kStrangeKind = 9;  // so that no gem of the quiet board joins in
  for (const Listing& listing : listings) {
    SCOPED_TRACE(listing.what);
    SetBoard(QuietBoard({{kStrangeKind, listing.cells}}));
    GemList found;
    EXPECT_EQ(FindMatches(found) != kFalse, !listing.listed.empty());
    EXPECT_EQ(found, listing.listed);
    EXPECT_EQ(BoardHasRun() != kFalse, !listing.listed.empty());
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
