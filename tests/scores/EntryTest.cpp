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

class EntryTest : public ScoreTest {
 protected:
  void StoreTables() {
    for (const Mode& row : kModes)
      Store(FilesOf(row.mode, SampleTable(row.mode)));
  }

  void Enter(const std::string& name, double points) {
    score = points;
    CheckHighScore();
    EnterHighScore(name);
  }

  // Checks `points` and expects this rank, and that a name is asked for with every rank but
  // kNoRank.
  void ExpectRank(double points, int rank) {
    nameWanted = false;
    score = points;
    CheckHighScore();
    EXPECT_EQ(newScoreRank, rank) << points;
    EXPECT_EQ(nameWanted, rank != kNoRank) << points;
  }
};

TEST_F(EntryTest, OnlyAGreaterScoreTakesThePlaceOfALowerOne) {
  const std::vector<std::string> names(kPlaces, "Ann");
  Store(FilesOf(modeNormal, {{500, 400, 400, 300, 90, 80, 70, 60, 50, 40}, names}));
  const std::vector<std::pair<double, int>> ranks = {{501, 1}, {500, 2},      {400, 4},    {300, 5},
                                                     {41, 10}, {40, kNoRank}, {0, kNoRank}};
  for (const auto& [points, rank] : ranks)
    ExpectRank(points, rank);
  Store(FilesOf(modeNormal, {{10, 20, 99, 70, 90, 80, 70, 60, 50, 40}, names}));
  ExpectRank(75, 1);
}

TEST_F(EntryTest, AFreshFolderTakesAnyScoreAboveZero) {
  ExpectRank(0, kNoRank);
  ExpectRank(1, 1);
  EXPECT_EQ(Files().size(), 10U);
  EXPECT_EQ(Bytes("score10.gwk"), "");
}

TEST_F(EntryTest, ANewScorePushesTheRestOfItsOwnTableDown) {
  StoreTables();
  for (const Mode& row : kModes) {
    const GameMode mode = row.mode;
    Table table = SampleTable(mode);
    gameMode = mode;
    for (const int rank : {10, 4, 1}) {
      SCOPED_TRACE("mode " + std::to_string(mode) + " rank " + std::to_string(rank));
      Snapshot expected = Files();
      const double points = table.scores[static_cast<std::size_t>(rank) - 1] + 1;
      table.scores.insert(table.scores.begin() + rank - 1, points);
      table.names.insert(table.names.begin() + rank - 1, "New");
      table.scores.pop_back();
      table.names.pop_back();
      for (const auto& [file, bytes] : FilesOf(mode, table))
        expected[file] = bytes;
      Enter("New", points);
      EXPECT_EQ(Files(), expected);
    }
  }
}

TEST_F(EntryTest, NewFilesAreOnTheDiskBeforeTheFirstTakesItsPlace) {
  StoreTables();
  faulty::Reset();
  Enter("New", SampleTable(modeNormal).scores[7] + 1);
  std::string expected = "mkdir; ";
  for (const std::string place :
       {"name9", "name10", "name8", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10"})
    expected.append("create score").append(place) += ".gwk; write; ";
  expected += "syncfs; rename; fsync; ";
  for (int file = 0; file < 13; ++file)
    expected += "rename; ";
  EXPECT_EQ(faulty::Log(), expected + "fsync; ");
}

TEST_F(EntryTest, FifteenCharactersOfANameAreStored) {
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

TEST_F(EntryTest, AMissingNameMovesDownAsItsErrorText) {
  Enter("Ann", 10);
  Enter("Bob", 20);
  EXPECT_EQ(Bytes("scorename2.gwk"), "Ann\r\n");
  EXPECT_EQ(Bytes("scorename3.gwk"), kMissingFile + Path("scorename1.gwk") + "\r\n");
}

TEST_F(EntryTest, AGameWithoutARankEntersNothing) {
  StoreTables();
  const Snapshot before = Files();
  score = 5000;
  for (const int16 rank : {kNoRank, int16{0}, int16{11}, int16{-1}}) {
    newScoreRank = rank;
    EnterHighScore("Ann");
    EXPECT_EQ(Files(), before) << rank;
  }
}

TEST_F(EntryTest, EventsWhileNamesAreReadDoNotDisturbTheEntry) {
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

TEST_F(EntryTest, AResetWritesTheDefaultsIntoAllFiles) {
  Store("scorema3.gwk", ScoreBytes(1) + "tail");
  Snapshot expected;
  for (const Mode& row : kModes)
    expected.merge(FilesOf(row.mode, {std::vector<double>(kPlaces, 100),
                                      std::vector<std::string>(kPlaces, "Norvane Games")}));
  expected["scorema3.gwk"] += "tail";
  scoresNormal[1] = 7;
  faulty::Reset();
  ResetScoreTables();
  const std::string& log = faulty::Log();
  EXPECT_EQ(std::count(log.begin(), log.end(), 'y'), 3) << "waits for the disk: " << log;
  EXPECT_EQ(Files(), expected);
  EXPECT_EQ(scoresNormal[1], 7) << "the working copies are filled by their next reader";
  ExpectRank(100, kNoRank);
  ExpectRank(101, 1);
}

TEST_F(EntryTest, AnInstalledGameBeginsWithTheTablesOfAReset) {
  ASSERT_EQ(std::system(("sh " TEST_DATA "/../../packaging/lay-out-scores " + folder_).c_str()), 0);
  const Snapshot laidOut = Files();
  ResetScoreTables();
  EXPECT_EQ(Files(), laidOut);
}

}  // namespace
}  // namespace glimmerfall
