// SPDX-License-Identifier: MIT
// Whole plays kept as text: a seed, what the player does at which frame, and the log of what came
// of it. A line "at N words" is done N frames of 21 ms after the start; every line behind "log" has
// to come again as it stands.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/Events.h"
#include "platform/Time.h"
#include "rules/basGameClock.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

constexpr int32 kTicksPerFrame = 21;

struct Play {
  std::uint64_t seed = 0;
  int mode = 0;
  int atLevel = 1;
  std::vector<std::pair<int, std::string>> deeds;
  int end = 0;
  std::vector<std::string> log;
};

Play ReadPlay(const std::filesystem::path& path) {
  Play play;
  std::ifstream file(path);
  std::string line;
  bool inLog = false;
  while (std::getline(file, line)) {
    if (inLog) {
      play.log.push_back(line);
      continue;
    }
    std::istringstream words(line);
    std::string head;
    int number = 0;
    words >> head >> number;
    if (head == "seed") play.seed = static_cast<std::uint64_t>(number);
    if (head == "mode") play.mode = number;
    if (head == "level") play.atLevel = number;
    if (head == "end") play.end = number;
    if (head == "at") play.deeds.emplace_back(number, line.substr(line.find(' ', 3) + 1));
    inLog = head == "log";
  }
  return play;
}

// FNV-1a (Fowler, Noll, Vo), 32 bits, over the kinds and the ids of the cells.
std::uint32_t BoardHash() {
  std::uint32_t hash = 2166136261U;
  for (const BoardCell& cell : boardCells)
    for (const int value : {cell.kind, cell.gemId})
      hash = (hash ^ static_cast<std::uint32_t>(value & 0xFF)) * 16777619U;
  return hash;
}

std::string LogLine() {
  char line[100];
  std::snprintf(line, sizeof line, "frame %d state %d level %d matches %d score %.0f board %08x",
                platform::TickCount() / kTicksPerFrame, gameState, level, matchCount, score,
                BoardHash());
  return line;
}

std::vector<std::string> RunPlay(const Play& play) {
  StartScriptedGame(play.seed);
  gameMode = static_cast<GameMode>(play.mode);
  level = static_cast<int16>(play.atLevel);
  InitGameBoard();
  platform::StartTimer(UpdateClock);
  for (const auto& [frame, words] : play.deeds)
    twin::ScheduleAt(frame * kTicksPerFrame, [words = words] { Perform(words); });
  twin::ScheduleAt(play.end * kTicksPerFrame, [] { throw twin::ProgramEnded{0}; });
  std::vector<std::string> log;
  GameState last = stateLoading;
  twin::OnEveryPlace([&] {
    if (gameState == last) return;
    last = gameState;
    log.push_back(LogLine());
  });
  EXPECT_THROW(RunGameLoop(), twin::ProgramEnded);
  log.push_back(LogLine());
  return log;
}

class Replay : public GameTest {};

TEST_F(Replay, EveryPlayGoesAsItsLogTells) {
  int plays = 0;
  for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA "/plays")) {
    SCOPED_TRACE(entry.path().filename());
    const Play play = ReadPlay(entry.path());
    EXPECT_EQ(RunPlay(play), play.log);
    ++plays;
  }
  EXPECT_GE(plays, 4);
}

}  // namespace
}  // namespace glimmerfall
