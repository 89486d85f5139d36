// SPDX-License-Identifier: MIT
#include "rules/basGameState.h"

#include "sound/DXAudio.h"

namespace glimmerfall {

std::array<CGem, kGemCount> gems;
BoardCells boardCells;

GameState gameState;
GameMode gameMode;
float64 score;
int16 level;
int16 matchCount;
int16 gemKinds;
int16 chainCount;
Flag levelWon;
Flag levelWonSound;
GemList clearList;
GemList fallList;
bool newBoardWanted;

int16 firstGem;
int16 secondGem;
int16 selectionCount;
Flag mouseHeld;
Flag boardClicked;

int16 dropFrames;
int16 swapFrames;
int16 swapPasses;
int16 clearFrames;
int16 fallFrames;
int16 shakeFrames;
int16 spiralFrames;
int16 targetDelay;
int16 targetFrame;

Flag clockRunning;
float32 timeLeft;
float32 timeLimit;
float32 timeBonus;
Flag paused;
float32 pausedTimeLeft;
float32 lastClockTick;
float32 lastBeepTick;

Flag soundOn;
int32 musicVolume;
std::unique_ptr<DXAudio> music;

Flag quitRequested;
int16 newScoreRank;
Flag highScoreChecked;

ScoreTable scoresNormal;
ScoreTable scoresFrantic;
ScoreTable scoresRelaxing;
ScoreTable scoresMarathon;

std::string boardBitmapPath;
std::string gemSheetPath;
std::string targetBitmapPath;

void ResetGameState() {
  gems = {};
  boardCells = {};

  gameState = stateLoading;
  gameMode = modeNormal;
  score = 0;
  level = 1;
  matchCount = gemKinds = chainCount = 0;
  levelWon = levelWonSound = kFalse;
  clearList.clear();
  fallList.clear();
  newBoardWanted = false;

  firstGem = secondGem = selectionCount = 0;
  mouseHeld = boardClicked = kFalse;

  dropFrames = swapFrames = swapPasses = clearFrames = fallFrames = 0;
  shakeFrames = spiralFrames = targetDelay = targetFrame = 0;

  clockRunning = kFalse;
  timeLeft = timeLimit = timeBonus = 0;
  paused = kFalse;
  pausedTimeLeft = lastClockTick = lastBeepTick = 0;

  soundOn = kTrue;
  musicVolume = 0;
  music.reset();

  quitRequested = kFalse;
  newScoreRank = kNoRank;
  highScoreChecked = kFalse;
  scoresNormal = scoresFrantic = scoresRelaxing = scoresMarathon = {};
  boardBitmapPath.clear();
  gemSheetPath.clear();
  targetBitmapPath.clear();
}

int16 CellKind(int16 x, int16 y) {
  const bool onBoard = x >= 0 && x < kBoardCells && y >= 0 && y < kBoardCells;
  return onBoard ? boardCells(x, y).kind : kNoKind;
}

CGem& Gem(int16 id) {
  return gems[static_cast<std::size_t>(id)];
}

void EndPlay() {
  gameState = stateShaking;
  clockRunning = kFalse;
}

void RequestNewBoard() {
  newBoardWanted = true;
  gameState = stateDealing;
}

}  // namespace glimmerfall
