// SPDX-License-Identifier: MIT
// Who gets into a table, at which place, and which files that changes.
#include <algorithm>

#include "scores/basMiscelFunctions.h"
#include "scores/basScoreTables.h"
#include "tests/platform/Twin.h"
#include "tests/scores/FaultyFiles.h"
#include "tests/scores/ScoreFixture.h"

namespace glimmerfall {
namespace {

int windowsShown = 0;

class EntryTest : public ScoreTest {
 protected:
  EntryTest() {
    windowsShown = 0;
    showNameWindow = [] { ++windowsShown; };
  }

  // Four different tables.
  void StoreTables() {
    for (const Prefixes& prefixes : kAllPrefixes) {
      Table& table = tables_[prefixes.mode];
      for (int place = 1; place <= kPlaces; ++place) {
        table.scores.push_back(1000.0 * (prefixes.mode + 1) - 10 * place);
        table.names.push_back("Player " + std::to_string(prefixes.mode) + std::to_string(place));
      }
      StoreTable(table, prefixes);
    }
  }

  void StoreTable(const Table& table, const Prefixes& prefixes) {
    for (const auto& [file, bytes] : FilesOf(table, prefixes))
      Store(file, bytes);
  }

  // The rank that `points` get in the table of Normal.
  int RankOf(double points, const std::vector<double>& scores) {
    StoreTable({scores, std::vector<std::string>(kPlaces, "Ann")}, kAllPrefixes[0]);
    score = points;
    CheckHighScore();
    return newScoreRank;
  }

  void Enter(const std::string& name, double points) {
    score = points;
    CheckHighScore();
    EnterHighScore(name);
  }

  std::map<GameMode, Table> tables_;
};

TEST_F(EntryTest, OnlyAGreaterScoreTakesThePlaceOfALowerOne) {
  const std::vector<double> table = {500, 400, 400, 300, 90, 80, 70, 60, 50, 40};
  const std::vector<std::pair<double, int>> ranks = {{501, 1}, {500, 2},      {450, 2},
                                                     {400, 4}, {300, 5},      {45, 10},
                                                     {41, 10}, {40, kNoRank}, {0, kNoRank}};
  for (const auto& [points, rank] : ranks) {
    windowsShown = 0;
    EXPECT_EQ(RankOf(points, table), rank) << points;
    EXPECT_EQ(windowsShown, rank == kNoRank ? 0 : 1) << points;
  }
  EXPECT_EQ(RankOf(75, {10, 20, 99, 70, 90, 80, 70, 60, 50, 40}), 1) << "a table out of order";
}

TEST_F(EntryTest, AFreshFolderTakesAnyScoreAboveZero) {
  for (const Prefixes& prefixes : kAllPrefixes) {
    const Snapshot before = Files();
    gameMode = prefixes.mode;
    score = 0;
    CheckHighScore();
    EXPECT_EQ(newScoreRank, kNoRank);
    EXPECT_EQ(windowsShown, 0);
    Snapshot expected = before;
    for (int place = 1; place <= kPlaces; ++place)
      expected[prefixes.score + std::to_string(place) + ".gwk"] = "";
    EXPECT_EQ(Files(), expected);
  }
  score = 1;
  CheckHighScore();
  EXPECT_EQ(newScoreRank, 1);
  EXPECT_EQ(windowsShown, 1);
}

TEST_F(EntryTest, ANewScorePushesTheRestOfItsOwnTableDown) {
  StoreTables();
  for (const Prefixes& prefixes : kAllPrefixes) {
    for (const int rank : {10, 4, 1}) {
      SCOPED_TRACE(prefixes.score + " rank " + std::to_string(rank));
      Table& table = tables_[prefixes.mode];
      Snapshot expected = Files();
      const double points = table.scores[static_cast<std::size_t>(rank) - 1] + 1;
      table.scores.insert(table.scores.begin() + rank - 1, points);
      table.names.insert(table.names.begin() + rank - 1, "New");
      table.scores.pop_back();
      table.names.pop_back();
      for (const auto& [file, bytes] : FilesOf(table, prefixes))
        expected[file] = bytes;
      gameMode = prefixes.mode;
      Enter("New", points);
      EXPECT_EQ(newScoreRank, rank);
      EXPECT_EQ(Files(), expected);
    }
  }
}

TEST_F(EntryTest, NamesFromThePlaceDownAndThenAllScoresAreRewritten) {
  StoreTables();
  Store("score2.gwk", Bytes("score2.gwk") + "tail");
  faulty::Reset();
  Enter("New", tables_[modeNormal].scores[7] + 1);
  std::vector<std::string> expected;
  for (const char* const place : {"9", "10", "8"})
    for (const std::string& call :
         {"create scorename" + std::string(place) + ".gwk.tmp", std::string("write"),
          std::string("fsync"), std::string("close"),
          "rename scorename" + std::string(place) + ".gwk"})
      expected.push_back(call);
  expected.insert(expected.end(), kPlaces, "pwrite");
  EXPECT_EQ(faulty::Log(), expected);
  EXPECT_TRUE(Bytes("score2.gwk").ends_with("tail"));
}

TEST_F(EntryTest, FifteenCharactersOfANameAreStored) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", ""},
      {"Ann", "Ann"},
      {"123456789012345", "123456789012345"},
      {"1234567890123456", "123456789012345"},
      {"\u00E4\u00F6\u00FC456789012345\u00DF",
       "\xE4\xF6\xFC"
       "456789012345"},
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
  EXPECT_EQ(Bytes("scorename2.gwk"), kMissingFile + Path("scorename1.gwk") + "\r\n");
  Enter("Bob", 20);
  EXPECT_EQ(Bytes("scorename3.gwk"), kMissingFile + Path("scorename1.gwk") + "\r\n");
  EXPECT_EQ(Bytes("scorename2.gwk"), "Ann\r\n");
}

TEST_F(EntryTest, AGameWithoutARankEntersNothing) {
  StoreTables();
  const Snapshot before = Files();
  for (const int16 rank : {kNoRank, int16{0}, int16{11}, int16{-1}}) {
    newScoreRank = rank;
    score = 5000;
    EnterHighScore("Ann");
    EXPECT_EQ(Files(), before) << rank;
  }
}

TEST_F(EntryTest, EventsWhileNamesAreReadDoNotDisturbTheEntry) {
  StoreTables();
  twin::OnEveryPlace([] {
    ReadScores(modeNormal);
    gameMode = modeFrantic;
    score = 1;
    newScoreRank = 10;
  });
  Enter("Ann", 5000);
  EXPECT_EQ(Bytes("score1.gwk"), ScoreBytes(5000));
  EXPECT_EQ(Bytes("score2.gwk"), ScoreBytes(tables_[modeNormal].scores[0]));
  EXPECT_EQ(scoresNormal[1], 5000);
  EXPECT_EQ(Bytes("scorename1.gwk"), "Ann\r\n");
  EXPECT_EQ(Bytes("scorefr10.gwk"), ScoreBytes(tables_[modeFrantic].scores[9]));
}

TEST_F(EntryTest, AResetWritesTheDefaultsIntoAllFiles) {
  StoreTables();
  Store("scorema3.gwk", ScoreBytes(1) + "tail");
  const Table defaults = {std::vector<double>(kPlaces, 100),
                          std::vector<std::string>(kPlaces, "Norvane Games")};
  Snapshot expected;
  for (const Prefixes& prefixes : kAllPrefixes)
    expected.merge(FilesOf(defaults, prefixes));
  expected["scorema3.gwk"] += "tail";
  scoresNormal[1] = 7;
  ResetScoreTables();
  EXPECT_EQ(Files(), expected);
  EXPECT_EQ(expected.size(), 80U);
  EXPECT_EQ(scoresNormal[1], 7) << "the working copies are filled by their next reader";

  score = 100;
  CheckHighScore();
  EXPECT_EQ(newScoreRank, kNoRank);
  score = 101;
  CheckHighScore();
  EXPECT_EQ(newScoreRank, 1);
}

}  // namespace
}  // namespace glimmerfall
