// SPDX-License-Identifier: MIT
// The shared variables of the game, and the numbers of the board on which everything runs. They
// live for the whole run. Each is a member of one of two structs, with its start value: so one
// assignment puts a whole struct back, and no variable can be forgotten.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "platform/Window.h"
#include "rules/state/CGem.h"

namespace glimmerfall {

/// 0 for false and -1 for true, so that the complement toggles.
using Flag = int16;
inline constexpr Flag kFalse = 0;
inline constexpr Flag kTrue = -1;
constexpr Flag Complement(Flag flag) {
  return static_cast<Flag>(~flag);
}

// Numbers of the board.
inline constexpr int16 kBoardCells = 8;      ///< cells a side
inline constexpr int16 kGemCount = 64;       ///< gems, and cells
inline constexpr int16 kCellPixels = 64;     ///< pixels a side of a cell
inline constexpr int16 kSurfaceWidth = 512;  ///< pixels of the drawing surface
inline constexpr int16 kSurfaceHeight = 576;
inline constexpr int16 kSpinFrames = 16;  ///< columns of the sprite sheet
inline constexpr int16 kMinRun = 3;       ///< shortest run, in cells
inline constexpr int16 kNoGem = -1;       ///< no gem under the pixel, no hint
inline constexpr int16 kNoKind = -1;      ///< an emptied cell, or a place off the board

/// One cell of the board.
struct BoardCell {
  CGem* gem = nullptr;  ///< the object that is drawn for this cell
  int16 gemId = 0;      ///< that gem's id: what the mouse and the hint look up
  int16 kind = 0;       ///< that gem's kind, or kNoKind while a clear has emptied the cell
};

/// The board seen as eight lines of eight places, so that rows and columns are treated alike. A
/// step to the next line or the next place is a step of so many cell indices.
struct Direction {
  int line;
  int place;
};
inline constexpr Direction kRows = {kBoardCells, 1};     ///< from the top, places from the left
inline constexpr Direction kColumns = {1, kBoardCells};  ///< from the left, places from the top

/// The 8 by 8 cells; the index of the cell in column x and row y is x + 8y.
class BoardCells {
 public:
  BoardCell& operator()(int x, int y) { return (*this)(kRows, y, x); }
  BoardCell& operator()(Direction direction, int line, int place) {
    return (*this)[line * direction.line + place * direction.place];
  }
  BoardCell& operator[](int index) { return cells_[static_cast<std::size_t>(index)]; }
  auto begin() { return cells_.begin(); }
  auto end() { return cells_.end(); }

 private:
  std::array<BoardCell, kGemCount> cells_;
};

/// An ordered list of gem ids; it keeps the order of insertion.
using GemList = std::vector<int16>;

enum GameState : int32 {
  stateLoading = 0,     ///< the main window is being set up and no frame runs
  stateIdle = 1,        ///< waiting for the player, no gem selected
  stateDealing = 2,     ///< dropping the gems of a new board in from above
  stateSelected = 3,    ///< waiting for the second gem; the first one spins
  stateSwapping = 4,    ///< sliding two gems into each other's place
  stateClearing = 5,    ///< shrinking the gems of a match away
  stateFalling = 6,     ///< letting gems fall into the gaps
  stateShaking = 7,     ///< shaking the board after the level or the game has ended
  stateFlyOut = 8,      ///< throwing all gems off the board
  stateEndMessage = 9,  ///< showing the level-up or game-over text
};

/// What differs between them stands in basModes.h, one row each.
enum GameMode : int32 {
  modeNormal = 0,
  modeFrantic = 1,
  modeRelaxing = 2,
  modeMarathon = 3,
  kModeCount  ///< no mode, but how many there are
};

inline constexpr int16 kNoRank = 99;
inline constexpr int kPlaces = 10;

/// Working copies of the ten scores of a mode, by place 1..10; element 0 holds nothing.
using ScoreTable = std::array<float64, kPlaces + 1>;

/// What starts anew with each board: InitGameBoard sets all of it back.
struct BoardVariables {
  // Frame counters, one a state.
  int16 dropFrames = 0;    ///< frames of dealing since its last check, to 33
  int16 swapFrames = 0;    ///< frames of one leg of a swap, to 16
  int16 swapPasses = 0;    ///< 0, or 2 while the gems travel back
  int16 clearFrames = 0;   ///< frames of a clear, to 16
  int16 fallFrames = 0;    ///< frames of a fall since its last check, to 4
  int16 shakeFrames = 0;   ///< frames of shaking, to 51
  int16 spiralFrames = 0;  ///< frames of the flight, to 64; also the time t of the throw
  int16 targetDelay = 0;   ///< times the target was drawn since its animation last stepped, to 3
  int16 targetFrame = 0;   ///< frame 0..5 of the target animation

  int16 selectionCount = 0;        ///< 1 while a gem is selected, else 0
  int16 chainCount = 0;            ///< clears settled since the player last picked a gem
  Flag highScoreChecked = kFalse;  ///< this end message has already looked at the high scores
};
inline BoardVariables perBoard;

struct SharedVariables {
  std::array<CGem, kGemCount> gems;  ///< addressed by id
  BoardCells boardCells;

  // The game in progress.
  GameState gameState = stateLoading;  ///< written by the states' handlers, the mouse and the clock
  GameMode gameMode = modeNormal;      ///< written by the mode chooser
  float64 score = 0;                   ///< points, whole numbers
  int16 level = 1;                     ///< from 1; Marathon plays at 18 throughout
  int16 matchCount = 0;                ///< clears settled on this level
  int16 gemKinds = 0;                  ///< kinds that a board of this level deals, 4..8
  Flag levelWon = kFalse;              ///< the end message is a level-up and a click leads on
  Flag levelWonSound = kFalse;         ///< shaking and flight play the sounds of a won level
  GemList clearList;                   ///< ids of the gems that are being cleared, none twice
  GemList fallList;                    ///< ids of the gems that are falling
  bool newBoardWanted = false;         ///< set by RequestNewBoard, cleared by the frame loop

  // Selection and input.
  int16 firstGem = 0;          ///< id of the gem that was picked first
  int16 secondGem = 0;         ///< id of the gem it is swapped with
  Flag mouseHeld = kFalse;     ///< a button went down on the board and has not come up
  Flag boardClicked = kFalse;  ///< a click on the board was seen; the end message waits for it

  // The clock, in seconds.
  Flag clockRunning = kFalse;  ///< the clock counts down
  float32 timeLeft = 0;        ///< seconds left
  float32 timeLimit = 0;       ///< the clock's full value, above 0 once a board is set up
  float32 timeBonus = 0;       ///< seconds earned by the clear that has just settled
  Flag paused = kFalse;        ///< the Pause entry of the menu is checked
  float32 pausedTimeLeft = 0;  ///< the value to which timeLeft is held during a pause
  float32 lastClockTick = 0;   ///< reading of Timer at the last step of the clock
  float32 lastBeepTick = 0;    ///< reading of Timer at the last beep

  // Sound.
  Flag soundOn = kTrue;   ///< effects are played
  int32 musicVolume = 0;  ///< hundredths of a decibel, -10000..0

  // The end of a game, and of the program.
  Flag quitRequested = kFalse;   ///< the program is closing
  int16 newScoreRank = kNoRank;  ///< place 1..10 that a new high score takes; kNoRank is none
  bool nameWanted = false;       ///< set by CheckHighScore, cleared by the main window, which asks
  std::array<ScoreTable, kModeCount> scores{};  ///< by mode

  // Filled when the main window loads: the paths of the three bitmaps, the window itself and its
  // picture box.
  std::string boardBitmapPath;
  std::string gemSheetPath;
  std::string targetBitmapPath;
  platform::WindowHandle frmMainHandle = nullptr;
  platform::WindowHandle picBoardHandle = nullptr;
};
inline SharedVariables shared;

// Short names of its members.
inline auto& gems = shared.gems;
inline auto& boardCells = shared.boardCells;
inline auto& gameState = shared.gameState;
inline auto& gameMode = shared.gameMode;
inline auto& score = shared.score;
inline auto& level = shared.level;
inline auto& matchCount = shared.matchCount;
inline auto& gemKinds = shared.gemKinds;
inline auto& levelWon = shared.levelWon;
inline auto& levelWonSound = shared.levelWonSound;
inline auto& clearList = shared.clearList;
inline auto& fallList = shared.fallList;
inline auto& newBoardWanted = shared.newBoardWanted;
inline auto& firstGem = shared.firstGem;
inline auto& secondGem = shared.secondGem;
inline auto& mouseHeld = shared.mouseHeld;
inline auto& boardClicked = shared.boardClicked;
inline auto& clockRunning = shared.clockRunning;
inline auto& timeLeft = shared.timeLeft;
inline auto& timeLimit = shared.timeLimit;
inline auto& timeBonus = shared.timeBonus;
inline auto& paused = shared.paused;
inline auto& pausedTimeLeft = shared.pausedTimeLeft;
inline auto& lastClockTick = shared.lastClockTick;
inline auto& lastBeepTick = shared.lastBeepTick;
inline auto& soundOn = shared.soundOn;
inline auto& musicVolume = shared.musicVolume;
inline auto& quitRequested = shared.quitRequested;
inline auto& newScoreRank = shared.newScoreRank;
inline auto& nameWanted = shared.nameWanted;
inline auto& scoresNormal = shared.scores[modeNormal];
inline auto& scoresFrantic = shared.scores[modeFrantic];
inline auto& scoresRelaxing = shared.scores[modeRelaxing];
inline auto& scoresMarathon = shared.scores[modeMarathon];
inline auto& boardBitmapPath = shared.boardBitmapPath;
inline auto& gemSheetPath = shared.gemSheetPath;
inline auto& targetBitmapPath = shared.targetBitmapPath;
inline auto& frmMainHandle = shared.frmMainHandle;
inline auto& picBoardHandle = shared.picBoardHandle;

/// Puts every variable above back to its start value.
void ResetGameState();

/// Whether the gems are on the board: not once they have been thrown off it.
bool GemsStand();

/// The kind of the cell at (x, y); kNoKind outside the board.
int16 CellKind(int16 x, int16 y);

/// The gem of `id`, 0..63, wherever it stands.
CGem& Gem(int16 id);

}  // namespace glimmerfall
