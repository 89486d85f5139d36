// SPDX-License-Identifier: MIT
#include "rules/basMoveShapes.h"

#include <array>

namespace glimmerfall {

namespace {

constexpr int16 kAnchors = 6;  // places on a line with room for a run beyond them

enum class Direction { Row, Column };

// The board seen along one direction: `along` counts on the line of the run, `across` the lines.
// The kinds are copied out once, with a border of none, since the shapes read each of them many
// times.
class Lines {
 public:
  explicit Lines(Direction direction) : direction_(direction) {
    for (int across = -1; across <= kBoardCells; ++across)
      for (int along = 0; along <= kBoardCells; ++along) {
        const MoveCell cell = At(along, across);
        kinds_[Index(along, across)] = CellKind(cell.x, cell.y);
      }
  }

  int16 Kind(int along, int across) const { return kinds_[Index(along, across)]; }

  MoveCell At(int along, int across) const {
    const auto a = static_cast<int16>(along);
    const auto c = static_cast<int16>(across);
    return direction_ == Direction::Row ? MoveCell{true, a, c} : MoveCell{true, c, a};
  }

 private:
  static constexpr int kWidth = kBoardCells + 1;   // a line, and the border at its end
  static constexpr int kHeight = kBoardCells + 2;  // the lines, and a border at both sides

  static std::size_t Index(int along, int across) {
    return static_cast<std::size_t>(along) +
           std::size_t{kWidth} * static_cast<std::size_t>(across + 1);
  }

  Direction direction_;
  std::array<int16, std::size_t{kWidth} * kHeight> kinds_{};
};

// The gem of the anchor's kind one step on and `side` lines beside it, with a second one behind it:
// either on that neighbouring line, or back on the anchor's own.
MoveCell FindBesideAnchor(const Lines& lines, int a, int c, int side) {
  const int16 kind = lines.Kind(a, c);
  if (lines.Kind(a + 1, c + side) != kind) return {};
  if (lines.Kind(a + 2, c + side) == kind) return lines.At(a, c + side);
  if (lines.Kind(a + 2, c) == kind) return lines.At(a + 1, c);
  return {};
}

// Every shape holds one of these; most anchors have none, and this is found without a branch.
bool MayMove(const Lines& lines, int a, int c) {
  const int16 kind = lines.Kind(a, c);
  const bool besideNext = (lines.Kind(a + 1, c - 1) == kind) | (lines.Kind(a + 1, c) == kind) |
                          (lines.Kind(a + 1, c + 1) == kind);
  return besideNext | ((lines.Kind(a + 2, c) == kind) & (lines.Kind(a + 3, c) == kind));
}

MoveCell FindAtAnchor(const Lines& lines, int a, int c) {
  if (!MayMove(lines, a, c)) return {};
  const int16 kind = lines.Kind(a, c);
  const bool endsRun = lines.Kind(a + 3, c) == kind;
  if (endsRun && lines.Kind(a + 2, c) == kind) return lines.At(a + 1, c);
  if (lines.Kind(a + 1, c) == kind &&
      (endsRun || lines.Kind(a + 2, c - 1) == kind || lines.Kind(a + 2, c + 1) == kind))
    return lines.At(a + 2, c);
  const MoveCell before = FindBesideAnchor(lines, a, c, -1);
  return before.found ? before : FindBesideAnchor(lines, a, c, +1);
}

MoveCell ScanLines(Direction direction) {
  const Lines lines(direction);
  for (int across = 0; across < kBoardCells; ++across) {
    for (int along = 0; along < kAnchors; ++along) {
      const MoveCell cell = FindAtAnchor(lines, along, across);
      if (cell.found) return cell;
    }
  }
  return {};
}

}  // namespace

MoveCell FindMoveCell() {
  const MoveCell inRow = ScanLines(Direction::Row);
  return inRow.found ? inRow : ScanLines(Direction::Column);
}

Flag MoveExists() {
  return FindMoveCell().found ? kTrue : kFalse;
}

}  // namespace glimmerfall
