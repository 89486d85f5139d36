// SPDX-License-Identifier: MIT
// Whole plays kept as text. Behind their last move and a blank line stands a log, which has to come
// again as it stands. With RECORD_PLAYS in the environment each play is first made anew from its
// first line.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <random>
#include <sstream>

#include "platform/Events.h"
#include "platform/Time.h"
#include "rules/basGameClock.h"
#include "rules/basHint.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "rules/basManipulatingGems.h"
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

// What the recorded player does next: mostly tries the gem of the hint with one beside it.
std::string NextWords(std::mt19937& random) {
  if (paused != kFalse) return "pause";
  if (gameState == stateEndMessage) return levelWon != kFalse ? "click" : "new";
  const auto any = [&random] { return std::to_string(random() % kGemCount); };
  const auto choice = random() % 24U;
  if (choice == 0) return "pause";
  if (choice == 1) return "hint";
  if (choice == 2 || !PicksAllowed()) return "pick" + any();
  const CGem& gem = Gem(FindHintGem());
  const int cell = gem.col + 8 * gem.row;
  const int steps[] = {-8, -1, 1, 8};
  const int other = std::clamp(cell + steps[random() % 4U], 0, kGemCount - 1);
  const std::string from = std::to_string(cell);
  const std::string to = std::to_string(other);
  return choice < 7 ? "down" + from + " move" + to + " up" : "pick" + from + " pick" + to;
}

// `start` is a play's first line; answers the moves that follow it.
std::string RecordMoves(const std::string& start) {
  std::istringstream play(start);
  PreparePlay(play);
  std::mt19937 random(static_cast<unsigned>(std::hash<std::string>{}(start)));
  std::ostringstream moves;
  const int end = std::stoi(start.substr(start.rfind(' ')));
  for (int frame = 70; frame < end; frame += 8 + static_cast<int>(random() % 40U))
    twin::ScheduleAt(frame * kTicksPerFrame, [&, frame] {
      const std::string words = NextWords(random);
      moves << "at " << frame << ' ' << words << '\n';
      Perform(words);
    });
  LogOfPlay();
  return moves.str();
}

void RecordPlay(const std::string& path) {
  std::string start;
  std::getline(std::ifstream(path), start);
  std::stringstream play;
  play << start << '\n' << RecordMoves(start) << '\n';
  PreparePlay(play);
  const std::string log = LogOfPlay();
  std::ofstream(path) << play.str() << log;
}

class Replay : public GameTest {};

TEST_F(Replay, EveryPlayGoesAsItsLogTells) {
  for (const Mode& mode : kModes) {
    SCOPED_TRACE(mode.name);
    const std::string path = std::string(TEST_DATA "/plays/") + mode.name + ".txt";
    if (std::getenv("RECORD_PLAYS") != nullptr) RecordPlay(path);
    std::ifstream file(path);
    ASSERT_TRUE(file) << "has no play";
    PreparePlay(file);
    std::ostringstream told;
    told << file.rdbuf();
    EXPECT_EQ(LogOfPlay(), told.str());
  }
}

}  // namespace
}  // namespace glimmerfall
