// SPDX-License-Identifier: MIT
// Whole plays kept as text. Behind their last move and a blank line stands a log, which has to come
// again as it stands.
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <sstream>

#include "platform/Events.h"
#include "platform/Time.h"
#include "rules/basGameClock.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "rules/state/basModes.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

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
  for (const Mode& mode : kModes) {
    SCOPED_TRACE(mode.name);
    std::ifstream file(std::string(TEST_DATA "/plays/") + mode.name + ".txt");
    PreparePlay(file);
    std::ostringstream told;
    told << file.rdbuf();
    EXPECT_EQ(LogOfPlay(), told.str());
  }
}

}  // namespace
}  // namespace glimmerfall
