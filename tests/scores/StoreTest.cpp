// SPDX-License-Identifier: MIT
// The files of the scores, byte for byte, and what becomes of damaged and absurd ones.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "scores/CodePage.h"
#include "scores/basMiscelFunctions.h"
#include "scores/basScoreTables.h"
#include "tests/platform/Twin.h"
#include "tests/scores/FaultyFiles.h"
#include "tests/scores/ScoreFixture.h"

namespace fs = std::filesystem;
using namespace std::string_literals;

namespace glimmerfall {
namespace {

class StoreTest : public ScoreTest {
 protected:
  std::string LastLineOf(const std::string& bytes) {
    Store("name", bytes);
    return ReadLastLine(Path("name"));
  }

  std::string MissingText(const std::string& file) {
    return "file missing or corrupt - " + Path(file);
  }

  bool HoldsOpenFile() const {
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      if (fs::read_symlink(entry.path(), gone).string().starts_with(Folder())) return true;
    }
    return false;
  }
};

TEST_F(StoreTest, ATextFileIsReplacedWholeByOneLineInTheCodePage) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"A longer name", "A longer name\r\n"},
      {"Ann", "Ann\r\n"},
      {"", "\r\n"},
      {"J\u00F6rg \u00DF\u00FF", "J\xF6rg \xDF\xFF\r\n"},
      {"5 \u20AC \u2013 \u0160\u017E\u2122", "5 \x80 \x96 \x8A\x9E\x99\r\n"},
      {"\u0100\u4E2D\U0001F48E!", "??\?!\r\n"},
      {"\xC3(\xFF\x80 \xC0\xAF \xE2\x82", "?(?? ?? ??\r\n"},
  };
  for (const auto& [text, bytes] : cases) {
    WriteTextFile(text, Path("name"));
    EXPECT_EQ(Bytes("name"), bytes) << text;
  }
  EXPECT_EQ(Files().size(), 1U) << "a temporary file was left behind";
}

TEST_F(StoreTest, EveryByteOfANameSurvivesReadingAndWriting) {
  for (int byte = 0; byte < 256; ++byte) {
    if (byte == '\r' || byte == '\n') continue;
    const std::string line = "<"s + static_cast<char>(byte) + ">";
    WriteTextFile(LastLineOf("first\r\n" + line + "\r\n"), Path("copy"));
    EXPECT_EQ(Bytes("copy"), line + "\r\n") << byte;
  }
}

TEST_F(StoreTest, TheLastLineIsRead) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", ""},
      {"Ann\r\n", "Ann"},
      {"Ann", "Ann"},
      {"\r\n", ""},
      {"Ann\r\nBob\r\n", "Bob"},
      {"Ann\r\nBob", "Bob"},
      {"Ann\r\n\r\n", ""},
      {"Ann\nBob\n", "Bob"},
      {"Ann\rBob\r", "Bob"},
      {"\r\n\r\nAnn", "Ann"},
      {"A\0n\r\nB\0b\r\n"s, "B\0b"s},
      {" Ann \r\n", " Ann "},
  };
  for (const auto& [bytes, line] : cases)
    EXPECT_EQ(LastLineOf(bytes), line) << testing::PrintToString(bytes);
}

TEST_F(StoreTest, EventsRunOnceForEachNameWhileNoFileIsOpen) {
  int events = 0;
  twin::OnEveryPlace([&] {
    ++events;
    EXPECT_FALSE(HoldsOpenFile());
  });
  EXPECT_EQ(LastLineOf("Ann\r\n"), "Ann");
  EXPECT_EQ(events, 1);
  EXPECT_EQ(ReadLastLine(Path("missing")), MissingText("missing"));
  EXPECT_FALSE(HoldsOpenFile());
}

TEST_F(StoreTest, AbsurdFilesInANamesPlaceAreHarmless) {
  fs::create_directory(Path("folder"));
  EXPECT_EQ(ReadLastLine(Path("folder")), MissingText("folder"));
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(ReadLastLine(Path("pipe")), MissingText("pipe"));
  fs::create_symlink("/dev/zero", Path("device"));
  EXPECT_EQ(ReadLastLine(Path("device")), MissingText("device"));
  fs::create_symlink("nowhere", Path("dangling"));
  EXPECT_EQ(ReadLastLine(Path("dangling")), MissingText("dangling"));

  Store("huge", "");
  constexpr off_t kHuge = 1LL << 40;
  ASSERT_EQ(truncate(Path("huge").c_str(), kHuge), 0);
  EXPECT_EQ(ReadLastLine(Path("huge")), std::string(kLongestLine, '\0'));
  const std::string longest(kLongestLine, 'x');
  EXPECT_EQ(LastLineOf("Ann\r\n" + longest + "\r\n"), longest);
  EXPECT_EQ(LastLineOf("y" + longest), longest);

  WriteTextFile("Ann", Path("folder"));
  EXPECT_TRUE(fs::is_directory(Path("folder")));
}

TEST_F(StoreTest, AScoreIsEightBytesAtTheHeadOfItsFile) {
  WriteScore(Path("score"), 100);
  EXPECT_EQ(Bytes("score"), "\0\0\0\0\0\0\x59\x40"s);
  Store("score", "01234567 and a tail");
  WriteScore(Path("score"), 100);
  EXPECT_EQ(Bytes("score"), "\0\0\0\0\0\0\x59\x40 and a tail"s);
  EXPECT_EQ(ReadScore(Path("score")), 100);
  Store("score", ScoreBytes(-2.5));
  EXPECT_EQ(ReadScore(Path("score")), -2.5);
  EXPECT_EQ(Bytes("score"), ScoreBytes(-2.5));
}

TEST_F(StoreTest, AScoreThatIsNotThereIsZero) {
  EXPECT_EQ(ReadScore(Path("fresh")), 0);
  EXPECT_EQ(Files(), (Snapshot{{"fresh", ""}}));
  for (std::size_t length = 0; length < 8; ++length) {
    Store("short", std::string(length, '\x41'));
    EXPECT_EQ(ReadScore(Path("short")), 0) << length;
    EXPECT_EQ(Bytes("short").size(), length);
  }
  WriteScore(Path("short"), 7);
  EXPECT_EQ(Bytes("short"), ScoreBytes(7));
  fs::create_directory(Path("folder"));
  WriteScore(Path("folder"), 7);
  EXPECT_EQ(ReadScore(Path("folder")), 0);
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  WriteScore(Path("pipe"), 7);
  EXPECT_EQ(ReadScore(Path("pipe")), 0);
}

TEST_F(StoreTest, ALineOfATableTellsPlaceNameAndScore) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinite = std::numeric_limits<double>::infinity();
  Store("scorename1.gwk", "Norvane Games\r\n");
  Store("scorename2.gwk", "\r\n");
  Store("scorename10.gwk", "J\xF6rg\r\n");
  const std::vector<std::tuple<int, double, std::string>> cases = {
      {1, 100, " 1 -- Norvane Games -- 100"},
      {2, 150, " 2 --  -- 150"},
      {10, 1234567, "10 -- J\u00F6rg -- 1234567"},
      {10, -5, "10 -- J\u00F6rg -- -5"},
      {1, nan, " 1 -- Norvane Games -- 0"},
      {1, infinite, " 1 -- Norvane Games -- 9223372036854775807"},
      {1, 12.4, " 1 -- Norvane Games -- 12"},
      {9, 0, " 9 -- file missing or corrupt - " + Path("scorename9.gwk") + " -- 0"},
  };
  for (const auto& [place, value, line] : cases) {
    Store("score" + std::to_string(place) + ".gwk", ScoreBytes(value));
    ReadScores(modeNormal);
    EXPECT_EQ(TableLine(modeNormal, place), line);
  }
}

// Files of random bytes, among them the patterns that doubles and lines are most easily broken by.
class Damage {
 public:
  explicit Damage(unsigned seed) : random_(seed) {}

  int Below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

  std::string Score() {
    static const std::vector<std::uint64_t> words = {
        0x7FF0000000000000, 0xFFF0000000000000, 0x7FF8000000000000, 0x7FF0000000000001,
        0x7FEFFFFFFFFFFFFF, 0xFFEFFFFFFFFFFFFF, 0x0000000000000001, 0x8000000000000000};
    if (Below(3) > 0) return Random(Below(20), 256);
    const std::uint64_t word = words[static_cast<std::size_t>(Below(int(words.size())))];
    std::string bytes(sizeof word, '\0');
    std::memcpy(bytes.data(), &word, sizeof word);
    return bytes;
  }

  std::string Name() { return Random(Below(40), Below(2) == 0 ? 256 : 16); }

 private:
  std::string Random(int length, int values) {
    std::string bytes;
    for (int i = 0; i < length; ++i)
      bytes.push_back(static_cast<char>(Below(values)));
    return bytes;
  }

  std::mt19937 random_;
};

int FirstLower(const ScoreTable& table, double value) {
  for (std::size_t place = 1; place < table.size(); ++place)
    if (table[place] < value) return static_cast<int>(place);
  return kNoRank;
}

// Whether `line` is a place, a name on one line, and a whole number.
bool IsWhole(const std::string& line, int place) {
  const std::string head = (place < 10 ? " " : "") + std::to_string(place) + " -- ";
  const std::size_t number = line.rfind(" -- ") + 4;
  std::string digits = line.substr(number);
  if (digits.starts_with('-')) digits.erase(0, 1);
  return line.starts_with(head) && number >= head.size() && !digits.empty() &&
         digits.find_first_not_of("0123456789") == std::string::npos &&
         line.find_first_of("\r\n") == std::string::npos;
}

TEST_F(StoreTest, DamagedFilesShowAsLinesAndTakeANewScore) {
  constexpr unsigned kSeeds = 2000;
  for (unsigned seed = 1; seed <= kSeeds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Damage damage(seed);
    const Prefixes& prefixes = kAllPrefixes[static_cast<std::size_t>(damage.Below(kModeCount))];
    for (int place = 1; place <= kPlaces; ++place) {
      Store(prefixes.score + std::to_string(place) + ".gwk", damage.Score());
      Store(prefixes.name + std::to_string(place) + ".gwk", damage.Name());
    }
    gameMode = prefixes.mode;
    score = damage.Below(1000000);
    CheckHighScore();
    const ScoreTable before = ReadScores(gameMode);
    ASSERT_EQ(newScoreRank, FirstLower(before, score));
    for (int place = 1; place <= kPlaces; ++place)
      ASSERT_TRUE(IsWhole(TableLine(gameMode, place), place));

    EnterHighScore("Ann");
    if (newScoreRank == kNoRank) continue;
    const ScoreTable after = ReadScores(gameMode);
    ASSERT_EQ(after[static_cast<std::size_t>(newScoreRank)], score);
    ASSERT_EQ(ReadLastLine(NameFile(gameMode, newScoreRank)), "Ann");
    for (std::size_t place = static_cast<std::size_t>(newScoreRank); place < kPlaces; ++place)
      ASSERT_EQ(ScoreBytes(after[place + 1]), ScoreBytes(before[place])) << place;
  }
}

}  // namespace
}  // namespace glimmerfall
