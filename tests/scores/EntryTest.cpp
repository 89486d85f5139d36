// SPDX-License-Identifier: MIT
// Who gets into a table, at which place, and which files that changes.
#include <algorithm>
#include <cstdlib>
#include <limits>
#include <random>
#include <regex>

#include "scores/CodePage.h"
#include "scores/basMiscelFunctions.h"
#include "scores/basScoreTables.h"
#include "tests/platform/Twin.h"
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
}

TEST_F(Entry, AFreshFolderTakesAnyScoreAboveZero) {
  EXPECT_EQ(RankOf(0), kNoRank);
  EXPECT_EQ(RankOf(1), 1);
  EXPECT_EQ(Files().size(), std::size_t{kPlaces});
  EXPECT_EQ(Bytes("score10.gwk"), "");
}

// What a file may hold: as it should, random bytes, or what lines and doubles are easily broken by.
std::string AnyBytes(std::mt19937& random) {
  using Limits = std::numeric_limits<double>;
  const std::vector<std::string> hard = {ScoreBytes(static_cast<double>(random() % 9)),
                                         ScoreBytes(Limits::infinity()),
                                         ScoreBytes(Limits::quiet_NaN()),
                                         ScoreBytes(Limits::lowest()),
                                         ScoreBytes(Limits::denorm_min()),
                                         "\n\r",
                                         "\r\r\n"};
  if (random() % 2 == 0) return hard[random() % hard.size()];
  const unsigned values = random() % 2 == 0 ? 256 : 16;
  std::string bytes(random() % 40, '\0');
  for (char& byte : bytes)
    byte = static_cast<char>(random() % values);
  return bytes;
}

TEST_F(Entry, ANewScorePushesTheRestOfItsTableDownWhateverTheFilesHold) {
  const std::regex whole("( [1-9]|10) -- [^\r\n]* -- -?[0-9]+");
  constexpr unsigned kSeeds = 300;
  for (unsigned seed = 1; seed <= kSeeds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    gameMode = kModes[random() % kModeCount].mode;
    Snapshot expected = SampleFiles();
    for (auto& [file, bytes] : expected)
      if (seed % 2 == 0) bytes = AnyBytes(random);
    Store(expected);
    const int rank = RankOf(static_cast<double>(random() % 5000));
    const ScoreTable before = ReadScores(gameMode);
    const auto* const lower =
        std::find_if(before.begin() + 1, before.end(), [](double old) { return old < score; });
    ASSERT_EQ(rank, lower == before.end() ? kNoRank : lower - before.begin());
    std::string above;  // the name of the place above
    for (int place = 1; place <= kPlaces; ++place) {
      ASSERT_TRUE(std::regex_match(TableLine(gameMode, place), whole));
      const auto name = NameFile(gameMode, place);
      const std::string old = ToCodePage(ReadLastLine(name));
      const auto at = static_cast<std::size_t>(place);
      const double points = place == rank ? score : before[at - (place > rank ? 1 : 0)];
      if (rank != kNoRank)
        expected[twin::FileName(ScoreFile(gameMode, place))].replace(0, 8, ScoreBytes(points));
      if (place >= rank) expected[twin::FileName(name)] = (place == rank ? "New" : above) + "\r\n";
      above = old;
    }
    EnterHighScore("New");
    ASSERT_EQ(Files(), expected);
  }
}

TEST_F(Entry, FifteenCharactersOfANameAreStored) {
  double points = 1;
  for (const auto& [typed, stored] : std::vector<std::pair<std::string, std::string>>{
           {"", ""},
           {"123456789012345", "123456789012345"},
           {"1234567890123456", "123456789012345"},
           {"\u4E2D2345678901234\u20AC6", "?2345678901234\x80"},
           {"two\r\nlines", "two  lines"}}) {
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
  Store(SampleFiles());
  for (const int16 rank : {kNoRank, int16{0}, int16{11}, int16{-1}}) {
    newScoreRank = rank;
    EnterHighScore("Ann");
    EXPECT_EQ(Files(), SampleFiles()) << rank;
  }
}

TEST_F(Entry, EventsWhileNamesAreReadDoNotDisturbTheEntry) {
  Store(SampleFiles());
  Enter("Ann", 5000);
  const Snapshot expected = Files();
  Store(SampleFiles());
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
  Store(SampleFiles());
  Store({{"scorema3.gwk", ScoreBytes(1) + "tail"}});
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
