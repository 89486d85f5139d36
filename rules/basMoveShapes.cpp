// SPDX-License-Identifier: MIT
#include "rules/basMoveShapes.h"

#include <algorithm>
#include <array>

namespace glimmerfall {

namespace {

// A place as seen from the anchor: steps along its line, and lines across.
struct Step {
  int along;
  int across;
};

// A swap that makes a run: two gems of the anchor's kind, and the gem that gives its place to one
// of the three.
struct Move {
  Step second;
  Step third;
  Step makesWay;
};

// In the order of the search. A stands for the anchor, K for its kind, o for what makes way.
constexpr std::array<Move, 8> kMoves = {{
    {{2, 0}, {3, 0}, {1, 0}},  // A o K K

    {{1, 0}, {3, 0}, {2, 0}},  // A K o K

    {{1, 0}, {2, -1}, {2, 0}},  //     K
                                // A K o

    {{1, 0}, {2, 1}, {2, 0}},  // A K o
                               //     K

    {{1, -1}, {2, -1}, {0, -1}},  // o K K
                                  // A

    {{1, -1}, {2, 0}, {1, 0}},  //   K
                                // A o K

    {{1, 1}, {2, 1}, {0, 1}},  // A
                               // o K K

    {{1, 1}, {2, 0}, {1, 0}},  // A o K
                               //   K
}};

constexpr int kAnchors = 6;                     // places of a line from which a move can begin
constexpr int kPaddedPlaces = kBoardCells + 1;  // a line, and no kind behind its end
constexpr int kPaddedLines = kBoardCells + 2;   // the lines, and one of no kind on either side

constexpr int Offset(Step step) {
  return step.across * kPaddedPlaces + step.along;
}

// The kinds of the board, line by line, with a border of none.
using Kinds = std::array<int16, std::size_t{kPaddedPlaces} * kPaddedLines>;

constexpr std::size_t At(int line, int place) {
  const int index = (line + 1) * kPaddedPlaces + place;
  return static_cast<std::size_t>(index);
}

Kinds KindsAlong(Direction direction) {
  Kinds kinds;
  kinds.fill(kNoKind);
  for (int line = 0; line < kBoardCells; ++line)
    for (int place = 0; place < kBoardCells; ++place)
      kinds[At(line, place)] = boardCells(direction, line, place).kind;
  return kinds;
}

const BoardCell* FindAlong(Direction direction) {
  const Kinds kinds = KindsAlong(direction);
  for (int line = 0; line < kBoardCells; ++line)
    for (int place = 0; place < kAnchors; ++place) {
      const int16* const anchor = &kinds[At(line, place)];
      for (const Move& move : kMoves)
        if (anchor[Offset(move.second)] == *anchor && anchor[Offset(move.third)] == *anchor)
          return &boardCells(direction, line + move.makesWay.across, place + move.makesWay.along);
    }
  return nullptr;
}

}  // namespace

const BoardCell* FindCellToMove() {
  const BoardCell* const inRow = FindAlong(kRows);
  return inRow != nullptr ? inRow : FindAlong(kColumns);
}

Flag MoveExists() {
  return FindCellToMove() != nullptr ? kTrue : kFalse;
}

}  // namespace glimmerfall
