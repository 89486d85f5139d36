// SPDX-License-Identifier: MIT
#include "rules/basBoardKeys.h"

#include <algorithm>

#include "display/basBoardCursor.h"
#include "rules/basManipulatingGems.h"

namespace glimmerfall {

using platform::Key;

namespace {

constexpr int16 kLast = kBoardCells - 1;

struct Step {
  int x;
  int y;
};

// Columns and rows that a key moves the cursor by; the far keys go beyond the board's edge.
constexpr Step StepOf(Key key) {
  switch (key) {
    case Key::Left:
      return {-1, 0};
    case Key::Right:
      return {1, 0};
    case Key::Up:
      return {0, -1};
    case Key::Down:
      return {0, 1};
    case Key::Home:
      return {-kLast, 0};
    case Key::End:
      return {kLast, 0};
    case Key::PageUp:
      return {0, -kLast};
    case Key::PageDown:
      return {0, kLast};
    case Key::Enter:
    case Key::Escape:
    case Key::Tell:
      break;
  }
  return {0, 0};
}

bool IsArrow(Key key) {
  return key == Key::Left || key == Key::Right || key == Key::Up || key == Key::Down;
}

float32 MiddleOf(int16 cell) {
  return static_cast<float32>(cell) * kCellPixels + kCellPixels / 2.0F;
}

void PressCell(int16 x, int16 y) {
  MouseDown(MiddleOf(x), MiddleOf(y));
  MouseUp();
  Click();
}

bool CursorIsOnSelectedGem() {
  return boardCursor.shown && gameState == stateSelected &&
         boardCells(boardCursor.x, boardCursor.y).gemId == firstGem;
}

int16 MoveWithinBoard(int16 place, int step) {
  return static_cast<int16>(std::clamp(place + step, 0, int{kLast}));
}

// The cursor goes along with a gem that is swapped.
void MoveCursor(Key key) {
  const Step step = StepOf(key);
  const bool swaps = IsArrow(key) && CursorIsOnSelectedGem();
  const BoardCursor before = boardCursor;
  boardCursor = {true, MoveWithinBoard(before.x, step.x), MoveWithinBoard(before.y, step.y)};
  const bool moved = boardCursor.x != before.x || boardCursor.y != before.y;
  if (swaps && moved) PressCell(boardCursor.x, boardCursor.y);
}

// A cell that nobody sees is not pressed; the end message takes a click anywhere.
void PressCursor() {
  if (boardCursor.shown || gameState == stateEndMessage) {
    PressCell(boardCursor.x, boardCursor.y);
  } else {
    boardCursor.shown = true;
  }
}

void LetGo() {
  if (gameState == stateSelected) PressCell(Gem(firstGem).col, Gem(firstGem).row);
}

}  // namespace

void KeyDown(Key key) {
  if (key == Key::Enter) return PressCursor();
  if (key == Key::Escape) return LetGo();
  if (key != Key::Tell) MoveCursor(key);
}

void HideCursor() {
  boardCursor.shown = false;
}

}  // namespace glimmerfall
