// SPDX-License-Identifier: MIT
// Plays kept as text: whole games at random, one a mode, and scenes, which were written by hand.
// Each is followed by a blank line and by its log, which has to come again as it stands: a line for
// every change of state and every "tell", with what was heard, said and drawn since the line
// before. With RECORD_PLAYS in the environment all logs are first written anew, and the moves of a
// whole game that has none yet.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <random>
#include <sstream>
#include <utility>

#include "display/basBoardCursor.h"
#include "platform/Events.h"
#include "platform/Time.h"
#include "rules/basGameClock.h"
#include "rules/basHint.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "rules/basManipulatingGems.h"
#include "rules/basStatusCaptions.h"
#include "rules/state/basModes.h"
#include "tests/platform/ScratchFolder.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"
#include "ui/basBoardWords.h"

namespace glimmerfall {
namespace {

constexpr std::uint32_t kHashStart = 2166136261U;

// FNV-1a (Fowler, Noll, Vo), 32 bits.
template <typename Bytes>
std::uint32_t Hash(std::uint32_t hash, const Bytes& bytes) {
  for (const auto byte : bytes)
    hash = (hash ^ static_cast<std::uint32_t>(byte & 0xFF)) * 16777619U;
  return hash;
}

std::uint32_t BoardHash() {
  std::uint32_t hash = kHashStart;
  for (const BoardCell& cell : boardCells)
    hash = Hash(hash, std::to_array({cell.kind, cell.gemId}));
  return hash;
}

class PlayLog {
 public:
  PlayLog() {
    std::filesystem::create_directory_symlink(TEST_DATA "/../../sounds", folder_.Path("sounds"));
    twin::devices.folder = folder_.Path();
    twin::devices.onPlay = [this](const std::string& file) { Hear(file); };
    twin::devices.onShow = [this](const platform::Frame& frame) { See(frame); };
    twin::OnEveryPlace([this] { Look(); });
    onTell = [this](const std::string& verb) { verb == "tell" ? WriteLine() : Show(); };
    log_ << std::fixed;
  }

  std::string Run() {
    InitGameBoard();
    platform::StartTimer(UpdateClock);
    EXPECT_THROW(RunGameLoop(), twin::ProgramEnded);
    WriteLine();
    return log_.str();
  }

 private:
  static int Frame() { return platform::TickCount() / kTicksPerFrame; }

  // Effects, sounds of the music player, and the question for a name.
  void Hear(const std::string& what) {
    heard_ += ' ' + what.substr(0, what.find(".wav")) + '@' + std::to_string(Frame());
  }

  // Every frame, by the items that are not as in the one before.
  void See(const platform::Frame& frame) {
    for (std::size_t i = 0; i < frame.size(); ++i)
      if (i >= frame_.size() || frame[i] != frame_[i])
        drawn_ = Hash(drawn_, std::to_string(i) + twin::Lines({frame[i]}).front());
    drawn_ = Hash(drawn_, std::to_string(frame.size()));
    frame_ = frame;
  }

  // One that is replaced before it has started is passed over.
  void HearPlayer() {
    const auto& graphs = twin::devices.graphs;
    for (; heardGraphs_ < graphs.size(); ++heardGraphs_) {
      const twin::GraphRecord& graph = *graphs[heardGraphs_];
      if (graph.alive && !graph.running) return;
      if (graph.running) Hear(graph.path.substr(graph.path.find_last_of('/') + 1));
    }
  }

  void Look() {
    HearPlayer();
    if (std::exchange(nameWanted, false)) Hear("name");
    said_ = JoinWords(said_, news_.Look());
    if (std::exchange(last_, gameState) != gameState) WriteLine();
  }

  // What stands on the frame and stood not so when it was shown last.
  void Show() {
    const std::vector<std::string> before = std::exchange(shown_, twin::Lines(frame_));
    for (const std::string& line : shown_)
      if (!before.empty() && std::count(before.begin(), before.end(), line) == 0)
        log_ << "  " << line << '\n';
  }

  void WriteLine() {
    log_ << std::setprecision(0) << "frame " << Frame() << " state " << gameState << " level "
         << level << " matches " << matchCount << " score " << score << " board " << std::hex
         << std::setw(8) << std::setfill('0') << BoardHash() << " drawn " << std::setw(8) << drawn_
         << std::dec << std::setprecision(1) << " clock " << timeLeft << '/' << timeLimit;
    const StatusCaptions line = CurrentCaptions();
    log_ << " line " << line.mnuScore << '/' << line.mnuCount << '/' << line.mnuMatchCount;
    if (boardCursor.shown) log_ << " cursor " << boardCursor.x << ',' << boardCursor.y;
    if (!heard_.empty()) log_ << " heard" << std::exchange(heard_, "");
    if (!said_.empty()) log_ << " said " << std::exchange(said_, "");
    log_ << '\n';
    drawn_ = kHashStart;
  }

  ScratchFolder folder_;
  std::ostringstream log_;
  GameState last_ = stateLoading;
  std::size_t heardGraphs_ = 0;
  std::string heard_;
  std::string said_;
  std::uint32_t drawn_ = kHashStart;
  platform::Frame frame_;
  std::vector<std::string> shown_;
  BoardNews news_;
};

struct Play {
  std::string moves;
  std::string log;
};

std::string LogOf(const std::string& moves) {
  std::istringstream play(moves);
  PreparePlay(play);
  return PlayLog().Run();
}

std::string ReadPart(std::istream& file) {
  std::string part;
  for (std::string line; std::getline(file, line) && !line.empty();)
    part.append(line).append("\n");
  return part;
}

std::vector<Play> ReadPlays(const std::string& path) {
  std::ifstream file(path);
  std::vector<Play> plays;
  for (std::string moves; !(moves = ReadPart(file)).empty();)
    plays.push_back({moves, file.peek() == '#' ? "" : ReadPart(file)});
  return plays;
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

// Plays on from a play's first line; answers that and the moves.
std::string RecordMoves(const std::string& play) {
  const std::string start = play.substr(0, play.find('\n'));
  std::istringstream words(start);
  PreparePlay(words);
  std::mt19937 random(static_cast<unsigned>(std::hash<std::string>{}(start)));
  std::ostringstream moves;
  moves << start << '\n';
  const int end = std::stoi(start.substr(start.rfind(' ')));
  for (int frame = 70; frame < end; frame += 8 + static_cast<int>(random() % 40U))
    twin::ScheduleAt(frame * kTicksPerFrame, [&, frame] {
      const std::string next = NextWords(random);
      moves << "at " << frame << ' ' << next << '\n';
      Perform(next);
    });
  PlayLog().Run();
  return moves.str();
}

class Replay : public GameTest {
 protected:
  static void Check(const std::string& name, bool byHand) {
    const std::string path = TEST_DATA "/plays/" + name + ".txt";
    if (std::getenv("RECORD_PLAYS") != nullptr) Record(path, byHand);
    const std::vector<Play> plays = ReadPlays(path);
    EXPECT_FALSE(plays.empty()) << path;
    for (const Play& play : plays)
      EXPECT_EQ(LogOf(play.moves), play.log) << name << '\n' << play.moves;
  }

 private:
  static void Record(const std::string& path, bool byHand) {
    std::vector<Play> plays = ReadPlays(path);
    std::ofstream file(path);
    for (Play& play : plays) {
      if (!byHand && play.moves.find('\n') + 1 == play.moves.size())
        play.moves = RecordMoves(play.moves);
      file << (&play == plays.data() ? "" : "\n") << play.moves << '\n' << LogOf(play.moves);
    }
  }
};

TEST_F(Replay, GamesOfEveryModeGoAsTheirLogsTell) {
  for (const Mode& mode : kModes)
    Check(mode.name, false);
}

TEST_F(Replay, ScenesGoAsTheirLogsTell) {
  Check("scenes", true);
}

}  // namespace
}  // namespace glimmerfall
