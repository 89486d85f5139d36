// SPDX-License-Identifier: MIT
// The shared variables of the game, and the numbers of the board on which everything runs. All of
// it lives for the whole run; ResetGameState puts every variable back to its start value.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "rules/CGem.h"

namespace glimmerfall {

class DXAudio;

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

/// The 8 by 8 cells, addressed by column and row; the index of cell (x, y) is x + 8y.
class BoardCells {
 public:
  BoardCell& operator()(int x, int y) { return cells_[Index(x, y)]; }
  const BoardCell& operator()(int x, int y) const { return cells_[Index(x, y)]; }
  BoardCell& operator[](int index) { return cells_[static_cast<std::size_t>(index)]; }
  auto begin() { return cells_.begin(); }
  auto end() { return cells_.end(); }

 private:
  static std::size_t Index(int x, int y) {
    return static_cast<std::size_t>(x) + std::size_t{kBoardCells} * static_cast<std::size_t>(y);
  }

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

enum GameMode : int32 { modeNormal = 0, modeFrantic = 1, modeRelaxing = 2, modeMarathon = 3 };
inline constexpr int kModeCount = 4;

// The board.
extern std::array<CGem, kGemCount> gems;  ///< addressed by id
extern BoardCells boardCells;

// The game in progress.
extern GameState gameState;  ///< written by the handlers of the states, the mouse and the clock
extern GameMode gameMode;    ///< written by the mode chooser
extern float64 score;        ///< points, whole numbers
extern int16 level;          ///< from 1; Marathon plays at 18 throughout
extern int16 matchCount;     ///< clears settled on this level
extern int16 gemKinds;       ///< kinds that a board of this level deals, 4..8
extern int16 chainCount;     ///< clears settled since the player last picked a gem
extern Flag levelWon;        ///< the end message is a level-up and a click leads on
extern Flag levelWonSound;   ///< shaking and flight play the sounds of a won level
extern GemList clearList;    ///< ids of the gems that are being cleared, none twice
extern GemList fallList;     ///< ids of the gems that are falling
extern bool newBoardWanted;  ///< set by RequestNewBoard, cleared by the frame loop

// Selection and input.
extern int16 firstGem;        ///< id of the gem that was picked first
extern int16 secondGem;       ///< id of the gem it is swapped with
extern int16 selectionCount;  ///< 1 while a gem is selected, else 0
extern Flag mouseHeld;        ///< a button went down on the board and has not come up
extern Flag boardClicked;     ///< a click on the board was seen; the end message waits for it

// Frame counters, one a state; board set-up sets them all to 0.
extern int16 dropFrames;    ///< frames of dealing since its last check, to 33
extern int16 swapFrames;    ///< frames of one leg of a swap, to 16
extern int16 swapPasses;    ///< 0, or 2 while the gems travel back
extern int16 clearFrames;   ///< frames of a clear, to 16
extern int16 fallFrames;    ///< frames of a fall since its last check, to 4
extern int16 shakeFrames;   ///< frames of shaking, to 51
extern int16 spiralFrames;  ///< frames of the flight, to 64; also the time t of the throw
extern int16 targetDelay;   ///< draws of the target since its animation last stepped, to 3
extern int16 targetFrame;   ///< frame 0..5 of the target animation

// The clock, in seconds.
extern Flag clockRunning;       ///< the clock counts down
extern float32 timeLeft;        ///< seconds left
extern float32 timeLimit;       ///< the clock's full value, above 0 once a board is set up
extern float32 timeBonus;       ///< seconds earned by the clear that has just settled
extern Flag paused;             ///< the Pause entry of the menu is checked
extern float32 pausedTimeLeft;  ///< the value to which timeLeft is held during a pause
extern float32 lastClockTick;   ///< reading of Timer at the last step of the clock
extern float32 lastBeepTick;    ///< reading of Timer at the last beep

// Sound.
extern Flag soundOn;                    ///< effects are played
extern int32 musicVolume;               ///< hundredths of a decibel, -10000..0
extern std::unique_ptr<DXAudio> music;  ///< the music player; null before the sounds are loaded

// The end of a game, and of the program.
extern Flag quitRequested;     ///< the program is closing
extern int16 newScoreRank;     ///< place 1..10 that a new high score takes; kNoRank is none
extern Flag highScoreChecked;  ///< this end message has already looked at the high scores

inline constexpr int16 kNoRank = 99;
inline constexpr int kPlaces = 10;

/// Working copies of the ten scores of a mode, by place 1..10; element 0 holds nothing.
using ScoreTable = std::array<float64, kPlaces + 1>;
extern ScoreTable scoresNormal;
extern ScoreTable scoresFrantic;
extern ScoreTable scoresRelaxing;
extern ScoreTable scoresMarathon;

// Paths of the three bitmaps, filled when the main window loads.
extern std::string boardBitmapPath;
extern std::string gemSheetPath;
extern std::string targetBitmapPath;

/// Puts every variable above back to its start value.
void ResetGameState();

/// The kind of the cell at (x, y); kNoKind outside the board.
int16 CellKind(int16 x, int16 y);

/// The gem of `id`, 0..63, wherever it stands.
CGem& Gem(int16 id);

/// Stops the clock and starts the sequence that ends a level or a game.
void EndPlay();

/// Asks for a new board. The frame loop sets it up at its top; until then every wait returns at
/// once and no state accepts input, so that nothing of the old board runs on.
void RequestNewBoard();

}  // namespace glimmerfall
