// SPDX-License-Identifier: MIT
#include "ui/basBoardWords.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "display/basBoardCursor.h"
#include "rules/basStatusCaptions.h"
#include "rules/state/basModes.h"
#include "rules/state/basWholeNumber.h"

namespace glimmerfall {

namespace {

// By kind.
constexpr std::array<const char*, 8> kGemWords = {
    "white circle", "green rectangle", "orange diamond", "red triangle",
    "purple oval",  "blue drop",       "yellow star",    "pink heart"};

bool IsMove(GameState state) {
  switch (state) {
    case stateSwapping:
    case stateClearing:
    case stateFalling:
      return true;
    case stateLoading:
    case stateIdle:
    case stateDealing:
    case stateSelected:
    case stateShaking:
    case stateFlyOut:
    case stateEndMessage:
      break;
  }
  return false;
}

int16 SelectedGem() {
  return gameState == stateSelected ? firstGem : kNoGem;
}

bool IsUnderCursor(int16 gem) {
  return boardCursor.shown && boardCells(boardCursor.x, boardCursor.y).gemId == gem;
}

std::string Counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

void Append(std::string& news, const std::string& words) {
  news = JoinWords(news, words);
}

std::string ScoreWords() {
  return "Score " + WholeNumber(score);
}

// How a level or a game ended, and where a new board stands.
std::string StateWords(GameState before) {
  if (gameState == stateShaking)
    return levelWon != kFalse ? "Level " + std::to_string(level - 1) + " won" : "Game over";
  if (gameState == stateEndMessage && levelWon != kFalse) return "Enter leads to the next level";
  if (before != stateDealing) return "";
  const StatusCaptions captions = CurrentCaptions();
  if (RowOf(gameMode).onlyLevel != 0) return captions.mnuCount;
  return "Level " + captions.mnuCount + ", " + captions.mnuMatchCount + " matches left";
}

// The cell under the cursor is spoken by its name, which says whether it is selected.
std::string SelectionWords(int16 before) {
  const int16 now = SelectedGem();
  if (now != kNoGem) return IsUnderCursor(now) ? "" : CellWords(Gem(now).col, Gem(now).row);
  return gameState == stateIdle && !IsUnderCursor(before) ? "Nothing selected" : "";
}

}  // namespace

std::string JoinWords(const std::string& first, const std::string& second) {
  return first + (first.empty() || second.empty() ? "" : ". ") + second;
}

std::string CellWords(int x, int y) {
  const BoardCell& cell = boardCells(x, y);
  const bool holdsGem = GemsStand() && cell.kind != kNoKind;
  std::string words = holdsGem ? kGemWords[static_cast<std::size_t>(cell.kind)] : "empty";
  words += ", column " + std::to_string(x + 1) + ", row " + std::to_string(y + 1);
  if (SelectedGem() == cell.gemId) words += ", selected";
  return words;
}

std::string StatusWords() {
  const auto seconds = static_cast<std::size_t>(std::max(0L, std::lround(timeLeft)));
  std::string words = clockRunning != kFalse ? Counted(seconds, "second") + " left" : "No clock";
  if (paused != kFalse) Append(words, "Paused");
  const StatusCaptions captions = CurrentCaptions();
  Append(words, ScoreWords());
  Append(words, "Level " + captions.mnuCount);
  Append(words, "Matches left " + captions.mnuMatchCount);
  return words;
}

// chainCount grows when a clear is settled: the one under way is not in it yet.
void BoardNews::FollowMove() {
  if (gameState == stateClearing && clears_ <= perBoard.chainCount) {
    clears_ = perBoard.chainCount + 1;
    clearedGems_ += clearList.size();
  }
}

// A move that the clock has broken off is not told.
std::string BoardNews::MoveWords() {
  const std::size_t gemsCleared = std::exchange(clearedGems_, 0);
  const int clears = std::exchange(clears_, 0);
  if (gameState == stateShaking && perBoard.chainCount < std::max(1, clears)) return "";
  if (clears == 0) return "No match";
  const std::string words = "Cleared " + Counted(gemsCleared, "gem");
  return clears == 1 ? words : words + ", chain of " + std::to_string(clears);
}

std::string BoardNews::Look() {
  FollowMove();
  const Seen before = std::exchange(seen_, {gameState, SelectedGem(), paused});
  std::string news;
  if (paused != before.paused) Append(news, paused != kFalse ? "Paused" : "Pause ended");
  const bool moveEnded = IsMove(before.state) && !IsMove(gameState);
  if (moveEnded) Append(news, MoveWords());
  if (gameState != before.state) Append(news, StateWords(before.state));
  if (moveEnded || (gameState == stateShaking && before.state != stateShaking))
    Append(news, ScoreWords());
  if (seen_.selected != before.selected) Append(news, SelectionWords(before.selected));
  return news;
}

}  // namespace glimmerfall
