// SPDX-License-Identifier: MIT
// Known answers, worked out by code that is independent of the game: single boards, and whole moves
// with their draws, points, falls, frames and final boards.
#include <fstream>
#include <sstream>

#include "rules/basHint.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "rules/basMatchingGems.h"
#include "rules/basMoveShapes.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

template <typename Ids>
std::string JoinIds(const Ids& ids) {
  std::string text;
  for (const int id : ids)
    text += (text.empty() ? "" : ",") + std::to_string(id);
  return text.empty() ? "-" : text;
}

class Known : public GameTest {};

TEST_F(Known, BoardsGiveTheirRunsClearOrderMoveAndHint) {
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

void TellClear(std::ostream& story, const GemList& cleared, float64 points) {
  // The gems of a clear stay on the cells that their col and row name until they land.
  std::vector<int> cells;
  for (const int16 id : cleared)
    cells.push_back(Gem(id).col + 8 * Gem(id).row);
  story << "clear " << perBoard.chainCount << " points " << points << " cells " << JoinIds(cells);
  story << "\nfall";
  for (const int16 id : fallList)
    story << ' ' << id << ':' << Gem(id).pixY << ':' << Gem(id).targetRow;
  story << '\n';
}

// Plays the move frame by frame and tells it in the words of the file.
std::string TellMove() {
  std::ostringstream story;
  int frames = 0;
  int fallFrames = 0;
  while (gameState != stateIdle && gameState != stateShaking && frames < 5000) {
    const GameState before = gameState;
    const float64 had = score;
    const GemList cleared = clearList;
    RunFrame();
    ++frames;
    fallFrames = before == stateFalling ? fallFrames + 1 : 0;
    if (gameState == before) continue;
    if (before == stateSwapping && gameState == stateClearing)
      story << "swap " << score - had << '\n';
    if (before == stateClearing) TellClear(story, cleared, score - had);
    if (before == stateFalling) story << "landed " << fallFrames << '\n';
  }
  story << "end " << (gameState == stateIdle ? "idle" : "shaking") << " frames " << frames
        << " score " << score << " board " << BoardKinds() << " ids " << JoinIds(BoardIds())
        << '\n';
  return story.str();
}

// A line with the board, the two clicks and the draws; then what has to happen, up to a blank line.
TEST_F(Known, MovesPlayOutAsTold) {
  std::ifstream file(TEST_DATA "/moves.txt");
  int moves = 0;
  int16 kinds = 0;
  std::string word;
  std::string board;
  std::string first;
  std::string second;
  std::string draws;
  std::string line;
  while (file >> word >> word >> word >> level >> word >> kinds >> word >> board >> word >> first >>
         second >> word >> draws >> std::ws) {
    SCOPED_TRACE(board);
    std::string told;
    while (std::getline(file, line) && !line.empty())
      told.append(line).append("\n");
    const int16 atLevel = level;
    StartScriptedGame();
    gameMode = modeRelaxing;
    level = atLevel;
    SetBoard(board, kinds);
    std::vector<int> scripted;
    for (const char c : draws)
      if (c != '-') scripted.push_back(c - '0');
    twin::ScriptNumbers(scripted, kinds);
    Perform("pick" + first);
    RunFrame();
    Perform("pick" + second);
    EXPECT_EQ(TellMove(), told);
    EXPECT_EQ(twin::ScriptedRndLeft(), 0U);
    if (gameState == stateIdle) {
      EXPECT_EQ(BrokenInvariant(), "");
    }
    ++moves;
  }
  EXPECT_EQ(moves, 400);
}

}  // namespace
}  // namespace glimmerfall
