// SPDX-License-Identifier: MIT
#include "rules/basBoardKeys.h"

#include <algorithm>
#include <cstdlib>

#include "display/basBoardCursor.h"
#include "rules/basManipulatingGems.h"

namespace glimmerfall {

using platform::Key;

namespace {

constexpr int kLast = kBoardCells - 1;

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
  return static_cast<int16>(std::clamp(place + step, 0, kLast));
}

// A step of one cell away from a selected gem swaps it, and the cursor goes along.
void MoveCursor(int columns, int rows) {
  const bool swaps = std::abs(columns + rows) == 1 && CursorIsOnSelectedGem();
  const BoardCursor before = boardCursor;
  boardCursor = {true, MoveWithinBoard(before.x, columns), MoveWithinBoard(before.y, rows)};
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
  switch (key) {
    case Key::Left:
      return MoveCursor(-1, 0);
    case Key::Right:
      return MoveCursor(+1, 0);
    case Key::Up:
      return MoveCursor(0, -1);
    case Key::Down:
      return MoveCursor(0, +1);
    case Key::Home:
      return MoveCursor(-kLast, 0);
    case Key::End:
      return MoveCursor(+kLast, 0);
    case Key::PageUp:
      return MoveCursor(0, -kLast);
    case Key::PageDown:
      return MoveCursor(0, +kLast);
    case Key::Enter:
      return PressCursor();
    case Key::Escape:
      return LetGo();
    case Key::Tell:
      return;
  }
}

void HideCursor() {
  boardCursor.shown = false;
}

}  // namespace glimmerfall
