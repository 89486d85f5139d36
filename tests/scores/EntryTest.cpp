// SPDX-License-Identifier: MIT
// Who gets into a table, at which place, and which files that changes.
#include <cstdlib>

#include "scores/basMiscelFunctions.h"
#include "scores/basScoreTables.h"
#include "tests/platform/Twin.h"
#include "tests/scores/FaultyFiles.h"
#include "tests/scores/ScoreFixture.h"

namespace glimmerfall {
namespace {

class Entry : public ScoreTest {
 protected:
  static void Enter(const std::string& name, double points) {
    score = points;
    CheckHighScore();
    EnterHighScore(name);
  }

  // The rank of `points`. A name is asked for with every rank but kNoRank.
  static int RankOf(double points) {
    nameWanted = false;
    score = points;
    CheckHighScore();
    EXPECT_EQ(nameWanted, newScoreRank != kNoRank) << points;
    return newScoreRank;
  }
};

TEST_F(Entry, OnlyAGreaterScoreTakesThePlaceOfALowerOne) {
  const std::vector<std::string> names(kPlaces, "Ann");
  Store(FilesOf(modeNormal, {{500, 400, 400, 300, 90, 80, 70, 60, 50, 40}, names}));
  for (const auto& [points, rank] : std::vector<std::pair<double, int>>{
           {501, 1}, {500, 2}, {400, 4}, {300, 5}, {41, 10}, {40, kNoRank}, {0, kNoRank}})
    EXPECT_EQ(RankOf(points), rank) << points;
  Store(FilesOf(modeNormal, {{10, 20, 99, 70, 90, 80, 70, 60, 50, 40}, names}));
  EXPECT_EQ(RankOf(75), 1) << "whatever the order";
}

TEST_F(Entry, AFreshFolderTakesAnyScoreAboveZero) {
  EXPECT_EQ(RankOf(0), kNoRank);
  EXPECT_EQ(RankOf(1), 1);
  EXPECT_EQ(Files().size(), 10U);
  EXPECT_EQ(Bytes("score10.gwk"), "");
}

TEST_F(Entry, ANewScorePushesTheRestOfItsOwnTableDown) {
  StoreTables();
  Snapshot expected = Files();
  for (const Mode& row : kModes) {
    Table table = SampleTable(row.mode);
    gameMode = row.mode;
    for (const int rank : {10, 4, 1}) {
      const double points = table.scores[static_cast<std::size_t>(rank) - 1] + 1;
      table.scores.insert(table.scores.begin() + rank - 1, points);
      table.names.insert(table.names.begin() + rank - 1, "New");
      table.scores.pop_back();
      table.names.pop_back();
      for (const auto& [file, bytes] : FilesOf(row.mode, table))
        expected[file] = bytes;
      Enter("New", points);
      EXPECT_EQ(Files(), expected) << row.name << " rank " << rank;
    }
  }
}

TEST_F(Entry, FifteenCharactersOfANameAreStored) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", ""},
      {"123456789012345", "123456789012345"},
      {"1234567890123456", "123456789012345"},
      {"\u4E2D2345678901234\u20AC6", "?2345678901234\x80"},
      {"two\r\nlines", "two  lines"},
  };
  double points = 1;
  for (const auto& [typed, stored] : cases) {
    Enter(typed, points++);
    EXPECT_EQ(Bytes("scorename1.gwk"), stored + "\r\n") << typed;
  }
}

TEST_F(Entry, AMissingNameMovesDownAsItsErrorText) {
  Enter("Ann", 10);
  Enter("Bob", 20);
  EXPECT_EQ(Bytes("scorename2.gwk"), "Ann\r\n");
  EXPECT_EQ(Bytes("scorename3.gwk"), kMissingFile + Path("scorename1.gwk") + "\r\n");
}

TEST_F(Entry, AGameWithoutARankEntersNothing) {
  StoreTables();
  const Snapshot before = Files();
  score = 5000;
  for (const int16 rank : {kNoRank, int16{0}, int16{11}, int16{-1}}) {
    newScoreRank = rank;
    EnterHighScore("Ann");
    EXPECT_EQ(Files(), before) << rank;
  }
}

TEST_F(Entry, EventsWhileNamesAreReadDoNotDisturbTheEntry) {
  StoreTables();
  Enter("Ann", 5000);
  const Snapshot expected = Files();
  StoreTables();
  twin::OnEveryPlace([] {
    ReadScores(modeNormal);
    gameMode = modeFrantic;
    score = 1;
    newScoreRank = 10;
  });
  Enter("Ann", 5000);
  EXPECT_EQ(Files(), expected);
  EXPECT_EQ(scoresNormal[1], 5000);
}

TEST_F(Entry, AResetBringsBackTheTablesOfAnInstalledGame) {
  ASSERT_EQ(std::system(("sh " TEST_DATA "/../../packaging/lay-out-scores " + folder_).c_str()), 0);
  Snapshot expected;
  for (const Mode& row : kModes)
    expected.merge(FilesOf(row.mode, {std::vector<double>(kPlaces, 100),
                                      std::vector<std::string>(kPlaces, "Norvane Games")}));
  EXPECT_EQ(Files(), expected);
  StoreTables();
  Store("scorema3.gwk", ScoreBytes(1) + "tail");
  expected["scorema3.gwk"] += "tail";
  scoresNormal[1] = 7;
  ResetScoreTables();
  EXPECT_EQ(Files(), expected);
  EXPECT_EQ(scoresNormal[1], 7) << "the working copies are filled by their next reader";
  EXPECT_EQ(RankOf(100), kNoRank);
  EXPECT_EQ(RankOf(101), 1);
}

}  // namespace
}  // namespace glimmerfall
