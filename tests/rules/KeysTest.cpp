// SPDX-License-Identifier: MIT
// The board by keyboard: where the keys take the cursor, and what they do there.
#include "display/basBoardCursor.h"
#include "rules/basBoardKeys.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

class Keys : public GameTest {};

struct KeyRow {
  const char* words;
  const char* end;  // state, cursor and sounds
};

std::string State() {
  const std::vector<std::string> names = {"loading",  "idle",    "dealing", "selected", "swapping",
                                          "clearing", "falling", "shaking", "flyout",   "message"};
  const std::string cursor =
      boardCursor.shown ? std::to_string(boardCursor.x) + ',' + std::to_string(boardCursor.y)
                        : "hidden";
  return names.at(gameState) + ' ' + cursor + ": " + TakeSounds();
}

TEST_F(Keys, MoveTheCursorAndPlayThroughTheMouse) {
  constexpr KeyRow kRows[] = {
      {"keyright", "idle 1,0: "},
      {"keyleft keyup", "idle 0,0: "},
      {"keydown3 keyend keyup", "idle 7,2: "},
      {"keyright9 keydown9", "idle 7,7: "},
      {"keyright3 keypagedown keyhome keyright", "idle 1,7: "},
      {"keydown5 keypageup", "idle 0,0: "},
      {"keyenter", "idle 0,0: "},
      {"keyenter2", "selected 0,0: select"},
      {"keyright keyenter2", "idle 1,0: select"},
      {"keyright keyenter keyright", "swapping 2,0: select"},
      {"keyright keyenter keyend", "selected 7,0: select"},
      {"keyright keyenter keyend keyenter", "idle 7,0: select badswap"},
      {"keyenter2 keyup", "selected 0,0: select"},
      {"pick0 keyright", "selected 1,0: select"},
      {"pick1 keyright2", "swapping 2,0: select"},
      {"keyright keyenter keyescape", "idle 1,0: select"},
      {"keyescape", "idle hidden: "},
      {"pick9 keyescape", "idle hidden: select"},
      {"pick9 frames3 keydown2 keyescape", "idle 0,2: select"},
  };
  for (const KeyRow& row : kRows) {
    SCOPED_TRACE(row.words);
    StartScriptedGame();
    SetBoard(QuietBoard());
    Perform(row.words);
    EXPECT_EQ(State(), row.end);
    EXPECT_EQ(mouseHeld, kFalse);
    EXPECT_EQ(perBoard.selectionCount, gameState == stateSelected ? 1 : 0);
    EXPECT_EQ(Gem(9).spinFrame, 0);
  }
}

TEST_F(Keys, OnlyTheEndMessageTakesEnterWithoutACursor) {
  SetBoard(QuietBoard());
  Perform("keyenter");
  EXPECT_EQ(boardClicked, kFalse);
  HideCursor();
  gameState = stateEndMessage;
  Perform("keyenter");
  EXPECT_EQ(boardClicked, kTrue);
  EXPECT_EQ(State(), "message hidden: ");
}

}  // namespace
}  // namespace glimmerfall
