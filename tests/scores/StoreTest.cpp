// SPDX-License-Identifier: MIT
// The files of the scores, byte for byte, and what becomes of damaged and absurd ones.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <limits>

#include "scores/basMiscelFunctions.h"
#include "scores/basScoreTables.h"
#include "tests/platform/Twin.h"
#include "tests/scores/ScoreFixture.h"

namespace fs = std::filesystem;
using namespace std::string_literals;

namespace glimmerfall {
namespace {

class ScoreFiles : public ScoreTest {
 protected:
  std::string LastLineOf(const std::string& bytes) const {
    Store({{"line", bytes}});
    return ReadLastLine(Path("line"));
  }
  // What a file holds once `text` has been written to it.
  std::string Written(const std::string& text) const {
    Changes changes;
    WriteTextFile(text, Path("name"), changes);
    platform::ChangeFiles(changes);
    return Bytes("name");
  }
  std::string Written(float64 points) const {
    Changes changes;
    WriteScore(Path("score"), points, changes);
    platform::ChangeFiles(changes);
    return Bytes("score");
  }
};

TEST_F(ScoreFiles, ANameIsOneLineInTheCodePage) {
  for (const auto& [text, bytes] : std::vector<std::pair<std::string, std::string>>{
           {"A longer name", "A longer name"},
           {"", ""},
           {"J\u00F6rg \u00DF\u00FF \u20AC \u2013\u0160\u017E\u2122",
            "J\xF6rg \xDF\xFF \x80 \x96\x8A\x9E\x99"},
           {"\u0100\u4E2D\u04E9\uA0AC\U0001F48E\U0010FFFF!", "?????\?!"},
           {"\xC3(\xFF\x80 \xC0\xAF \xE2\x82", "?(?? ?? ??"}})
    EXPECT_EQ(Written(text), bytes + "\r\n") << text;
  for (int byte = 0; byte < 256; ++byte) {
    if (byte == '\r' || byte == '\n') continue;
    const std::string line = "<"s + static_cast<char>(byte) + ">\r\n";
    EXPECT_EQ(Written(LastLineOf(line)), line) << byte;
  }
}

TEST_F(ScoreFiles, TheLastLineIsRead) {
  const std::string longest(kLongestLine, 'x');
  for (const auto& [bytes, line] :
       std::vector<std::pair<std::string, std::string>>{{"", ""},
                                                        {"\r\n", ""},
                                                        {"Ann", "Ann"},
                                                        {"Ann\r\nBob\r\n", "Bob"},
                                                        {"Ann\r\nBob", "Bob"},
                                                        {"Ann\r\n\r\n", ""},
                                                        {"Ann\nBob\n", "Bob"},
                                                        {"Ann\rBob\r", "Bob"},
                                                        {"A\0n\r\n B\0b \r\n"s, " B\0b "s},
                                                        {"Ann\r\n" + longest + "\r\n", longest},
                                                        {"y" + longest, longest}})
    EXPECT_EQ(LastLineOf(bytes), line) << testing::PrintToString(bytes);
}

TEST_F(ScoreFiles, EventsRunOnceForEachNameWhileNoFileIsOpen) {
  int events = 0;
  twin::OnEveryPlace([&] {
    ++events;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
      std::error_code gone;
      EXPECT_FALSE(fs::read_symlink(entry.path(), gone).string().starts_with(folder_));
    }
  });
  EXPECT_EQ(LastLineOf("Ann\r\n"), "Ann");
  EXPECT_EQ(events, 1);
}

TEST_F(ScoreFiles, AbsurdThingsInAFilesPlaceAreHarmless) {
  fs::create_directory(Path("folder"));
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  fs::create_symlink("/dev/zero", Path("device"));
  fs::create_symlink("nowhere", Path("dangling"));
  for (const std::string file : {"folder", "pipe", "device", "dangling", "missing"})
    EXPECT_EQ(ReadLastLine(Path(file)), "file missing or corrupt - " + Path(file));
  for (const std::string file : {"folder", "pipe"})
    EXPECT_EQ(ReadScore(Path(file)), 0) << file;
  Store({{"huge", ""}});
  ASSERT_EQ(truncate(Path("huge").c_str(), 1LL << 40), 0);
  EXPECT_EQ(ReadLastLine(Path("huge")), std::string(kLongestLine, '\0'));
}

TEST_F(ScoreFiles, AScoreIsEightBytesAtTheHeadOfItsFile) {
  EXPECT_EQ(ReadScore(Path("score")), 0);
  EXPECT_EQ(Files(), (Snapshot{{"score", ""}})) << "made by the reading";
  EXPECT_EQ(Written(100), "\0\0\0\0\0\0\x59\x40"s);
  Store({{"score", "01234567 and a tail"}});
  EXPECT_EQ(Written(-2.5), ScoreBytes(-2.5) + " and a tail");
  EXPECT_EQ(ReadScore(Path("score")), -2.5);
  Store({{"score", "AAAAAAA"}});
  EXPECT_EQ(ReadScore(Path("score")), 0) << "one byte too short";
  EXPECT_EQ(Bytes("score"), "AAAAAAA");
}

TEST_F(ScoreFiles, ALineOfATableTellsPlaceNameAndScore) {
  Store({{"scorename1.gwk", "Norvane Games\r\n"},
         {"scorename2.gwk", "\r\n"},
         {"scorename10.gwk", "J\xF6rg \x80\r\n"}});
  for (const auto& [place, value, line] : std::vector<std::tuple<int, double, std::string>>{
           {1, 100, " 1 -- Norvane Games -- 100"},
           {2, 150, " 2 --  -- 150"},
           {1, std::numeric_limits<double>::infinity(),
            " 1 -- Norvane Games -- 9223372036854775807"},
           {1, 0x1p63, " 1 -- Norvane Games -- 9223372036854775807"},
           {1, -1e300, " 1 -- Norvane Games -- -9223372036854775808"},
           {10, 1234567, "10 -- J\u00F6rg \u20AC -- 1234567"},
           {9, 0, " 9 -- file missing or corrupt - " + Path("scorename9.gwk") + " -- 0"}}) {
    Store({{"score" + std::to_string(place) + ".gwk", ScoreBytes(value)}});
    ReadScores(modeNormal);
    EXPECT_EQ(TableLine(modeNormal, place), line);
  }
}

}  // namespace
}  // namespace glimmerfall
