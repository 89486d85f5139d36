// SPDX-License-Identifier: MIT
// Known answers, worked out by code that is independent of the game: single boards, and whole moves
// with their draws, points, falls, frames and final boards.
#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "rules/basFallingGems.h"
#include "rules/basHint.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "rules/basManipulatingGems.h"
#include "rules/basMatchingGems.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

std::string JoinIds(const GemList& ids) {
  std::string text;
  for (const int16 id : ids)
    text += (text.empty() ? "" : ",") + std::to_string(id);
  return text.empty() ? "-" : text;
}

class KnownBoards : public GameTest {};

TEST_F(KnownBoards, RunClearOrderMoveAndHint) {
  std::ifstream file(TEST_DATA "/boards.txt");
  int boards = 0;
  std::string kinds;
  std::string word;
  std::string clear;
  int run = 0;
  int move = 0;
  int hint = 0;
  while (file >> kinds >> word >> run >> word >> clear >> word >> move >> word >> hint) {
    SCOPED_TRACE(kinds);
    SetBoard(kinds);
    GemList found;
    EXPECT_EQ(BoardHasRun() != kFalse, run == 1);
    EXPECT_EQ(FindMatches(found) != kFalse, run == 1);
    EXPECT_EQ(JoinIds(found), clear);
    EXPECT_EQ(MoveExists() != kFalse, move == 1);
    EXPECT_EQ(FindHintGem(), hint);
    ++boards;
  }
  EXPECT_EQ(boards, 1350);
}

// A move as the file tells it; `story` is what has to happen, line by line.
struct KnownMove {
  int atLevel = 1;
  int kinds = 4;
  std::string board;
  int first = 0;
  int second = 0;
  std::vector<int> draws;
  std::vector<std::string> story;
};

std::vector<KnownMove> ReadMoves() {
  std::vector<KnownMove> moves;
  std::ifstream file(TEST_DATA "/moves.txt");
  std::string line;
  while (std::getline(file, line)) {
    std::istringstream words(line);
    std::string head;
    words >> head;
    std::string word;
    if (head == "case") {
      moves.emplace_back();
      words >> word >> word >> moves.back().atLevel >> word >> moves.back().kinds;
    } else if (head == "board") {
      words >> moves.back().board;
    } else if (head == "click") {
      words >> moves.back().first >> moves.back().second;
    } else if (head == "draws") {
      words >> word;
      for (const char c : word)
        if (c != '-') moves.back().draws.push_back(c - '0');
    } else if (!head.empty()) {
      moves.back().story.push_back(line);
    }
  }
  return moves;
}

std::string FallLine() {
  std::ostringstream line;
  line << "fall";
  for (const int16 id : fallList)
    line << ' ' << id << ':' << Gem(id).pixY << ':' << Gem(id).targetRow;
  return line.str();
}

const char* StateName(GameState state) {
  switch (state) {
    case stateIdle:
      return "idle";
    case stateShaking:
      return "shaking";
    default:
      return "another state";
  }
}

std::string EndLine(int frames) {
  std::ostringstream line;
  line << "end " << StateName(gameState) << " frames " << frames << " score " << score << " board "
       << BoardKinds() << " ids ";
  const std::vector<int> ids = BoardIds();
  for (std::size_t i = 0; i < ids.size(); ++i)
    line << (i == 0 ? "" : ",") << ids[i];
  return line.str();
}

// Plays the move frame by frame and writes down what happens, in the words of the file.
class Narrator {
 public:
  std::vector<std::string> Play() {
    while (gameState != stateIdle && gameState != stateShaking && frames_ < 5000)
      StepFrame();
    lines_.push_back(EndLine(frames_));
    return lines_;
  }

 private:
  void StepFrame() {
    const GameState before = gameState;
    const float64 scoreBefore = score;
    clearing_ = clearList;
    RunFrame();
    ++frames_;
    if (before == stateFalling) ++fallFrames_;
    if (gameState == before) return;
    if (before == stateSwapping && gameState == stateClearing) Tell("swap", score - scoreBefore);
    if (before == stateClearing) TellClear(score - scoreBefore);
    if (before == stateFalling) {
      Tell("landed", fallFrames_);
      fallFrames_ = 0;
    }
  }

  void Tell(const char* what, double number) {
    std::ostringstream line;
    line << what << ' ' << number;
    lines_.push_back(line.str());
  }

  void TellClear(double points) {
    std::ostringstream line;
    line << "clear " << chainCount << " points " << points << " cells " << cells();
    lines_.push_back(line.str());
    lines_.push_back(FallLine());
  }

  // The gems of a clear stay on the cells that their col and row name until they land.
  std::string cells() const {
    GemList list;
    for (const int16 id : clearing_)
      list.push_back(static_cast<int16>(Gem(id).col + 8 * Gem(id).row));
    return JoinIds(list);
  }

  GemList clearing_;
  std::vector<std::string> lines_;
  int frames_ = 0;
  int fallFrames_ = 0;
};

class KnownMoves : public GameTest {};

TEST_F(KnownMoves, PlayOutAsTold) {
  const std::vector<KnownMove> moves = ReadMoves();
  EXPECT_EQ(moves.size(), 400U);
  for (std::size_t i = 0; i < moves.size(); ++i) {
    SCOPED_TRACE("case " + std::to_string(i));
    const KnownMove& move = moves[i];
    StartScriptedGame();
    gameMode = modeRelaxing;
    level = static_cast<int16>(move.atLevel);
    SetBoard(move.board, static_cast<int16>(move.kinds));
    twin::ScriptDraws(move.draws, move.kinds);
    PressAndRelease(move.first);
    RunFrame();
    PressAndRelease(move.second);
    EXPECT_EQ(Narrator().Play(), move.story);
    EXPECT_EQ(twin::ScriptedRndLeft(), 0U);
    if (gameState == stateIdle) {
      EXPECT_EQ(BrokenInvariant(), "");
    }
  }
}

}  // namespace
}  // namespace glimmerfall
