// SPDX-License-Identifier: MIT
// Whole plays kept as text: how the game starts and at which frame it ends, then lines "at N
// words", done N frames of 21 ms after the start; and behind a blank line the log, which has to
// come again as it stands.
#include <filesystem>
#include <fstream>
#include <iomanip>
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

// FNV-1a (Fowler, Noll, Vo), 32 bits, over the kinds and the ids of the cells.
std::uint32_t BoardHash() {
  std::uint32_t hash = 2166136261U;
  for (const BoardCell& cell : boardCells)
    for (const int value : {cell.kind, cell.gemId})
      hash = (hash ^ static_cast<std::uint32_t>(value & 0xFF)) * 16777619U;
  return hash;
}

void WriteLogLine(std::ostream& log) {
  log << "frame " << platform::TickCount() / kTicksPerFrame << " state " << gameState << " level "
      << level << " matches " << matchCount << " score " << score << " board " << std::hex
      << std::setw(8) << std::setfill('0') << BoardHash() << std::dec << '\n';
}

// Starts the game of the file's first line and schedules all that is done in it.
void PreparePlay(std::istream& file) {
  std::string word;
  std::uint64_t seed = 0;
  int mode = 0;
  int16 atLevel = 0;
  int end = 0;
  file >> word >> seed >> word >> mode >> word >> atLevel >> word >> end >> std::ws;
  StartScriptedGame(seed);
  gameMode = static_cast<GameMode>(mode);
  level = atLevel;
  twin::ScheduleAt(end * kTicksPerFrame, [] { throw twin::ProgramEnded{0}; });
  int frame = 0;
  for (std::string line; std::getline(file, line) && !line.empty();) {
    std::istringstream words(line);
    words >> word >> frame >> std::ws;
    std::getline(words, line);
    twin::ScheduleAt(frame * kTicksPerFrame, [line] { Perform(line); });
  }
}

std::string LogOfPlay() {
  std::ostringstream log;
  log << std::fixed << std::setprecision(0);
  InitGameBoard();
  platform::StartTimer(UpdateClock);
  twin::OnEveryPlace([&, last = stateLoading]() mutable {
    if (gameState == last) return;
    last = gameState;
    WriteLogLine(log);
  });
  EXPECT_THROW(RunGameLoop(), twin::ProgramEnded);
  WriteLogLine(log);
  return log.str();
}

class Replay : public GameTest {};

TEST_F(Replay, EveryPlayGoesAsItsLogTells) {
  for (const char* name : {"normal", "frantic", "relaxing", "marathon"}) {
    SCOPED_TRACE(name);
    std::ifstream file(std::string(TEST_DATA "/plays/") + name + ".txt");
    PreparePlay(file);
    std::ostringstream told;
    told << file.rdbuf();
    EXPECT_EQ(LogOfPlay(), told.str());
  }
}

}  // namespace
}  // namespace glimmerfall
