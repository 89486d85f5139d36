// SPDX-License-Identifier: MIT
#include "rules/basClearingGems.h"

#include <algorithm>
#include <array>

#include "platform/Random.h"
#include "platform/Time.h"
#include "rules/basEndOfGame.h"
#include "rules/basGameModes.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/basMatchingGems.h"
#include "sound/basDirectSoundStuff.h"

namespace glimmerfall {

namespace {

constexpr int16 kShrinkPixels = 4;  // a frame, on each side
constexpr int16 kClearFrames = 16;
constexpr float64 kLevelPoints = 100;  // times the new level

// By kind. Kind 0 pays nothing, on purpose.
constexpr std::array<float64, 8> kKindPoints = {0, 85, 95, 95, 100, 90, 85, 90};

struct ChainReward {
  Effect sound;
  float64 points;
};

// By chainCount from 2 on; the last row stands for every longer chain.
constexpr std::array<ChainReward, 7> kChainRewards = {{
    {sndCombo2, 50},
    {sndCombo3, 50},
    {sndCombo4, 50},
    {sndCombo5, 50},
    {sndCombo6, 50},
    {sndCombo7, 50},
    {sndExcellent, 500},
}};
constexpr int16 kFirstRewardedChain = 2;

BoardCell& OwnCell(const CGem& gem) {
  return boardCells(gem.col, gem.row);
}

// Emptied cells of the gem's column from `top` down to `bottom`.
int16 CountHoles(const CGem& gem, int top, int bottom) {
  int16 holes = 0;
  for (int y = top; y <= bottom; ++y)
    if (boardCells(gem.col, y).kind == kNoKind) ++holes;
  return holes;
}

int16 HolesBelow(const CGem& gem) {
  return CountHoles(gem, gem.row + 1, kBoardCells - 1);
}

void AddKindPoints(int16 kind) {
  score += kKindPoints[static_cast<std::size_t>(kind)];
}

void RewardChain() {
  ++perBoard.chainCount;
  if (perBoard.chainCount < kFirstRewardedChain) return;
  const auto row = static_cast<std::size_t>(perBoard.chainCount - kFirstRewardedChain);
  const ChainReward& reward = kChainRewards[std::min(row, kChainRewards.size() - 1)];
  PlayEffect(reward.sound);
  score += reward.points;
}

void MarkHoles() {
  for (const int16 id : clearList)
    OwnCell(Gem(id)).kind = kNoKind;
}

// The kind before the first is taken to be 0, so the first new gem is never of kind 0.
void GiveNewKinds() {
  int16 lastKind = 0;
  for (const int16 id : clearList) {
    platform::Randomize(platform::Timer());
    CGem& gem = Gem(id);
    gem.shrink = 0;
    gem.kind = lastKind = RandomKindOtherThan(lastKind);
    gem.sheetY = static_cast<int16>(gem.kind * kCellPixels);
  }
}

// The gem of the lowest hole starts highest and lands in row 0.
void PlaceNewGems() {
  for (const int16 id : clearList) {
    CGem& gem = Gem(id);
    gem.pixY = static_cast<int16>(-kCellPixels * CountHoles(gem, 0, gem.row));
    gem.targetRow = HolesBelow(gem);
  }
}

void GatherAbove(const CGem& hole) {
  for (int y = hole.row - 1; y >= 0; --y) {
    const BoardCell& cell = boardCells(hole.col, y);
    if (cell.kind == kNoKind) return;
    fallList.push_back(cell.gemId);
  }
}

// First the gems that stay on the board, each listed by the hole nearest below it, then the new.
void FillFallList() {
  EmptyList(fallList);
  for (const int16 id : clearList)
    GatherAbove(Gem(id));
  for (const int16 id : fallList) {
    CGem& gem = Gem(id);
    gem.targetRow = static_cast<int16>(gem.row + HolesBelow(gem));
  }
  fallList.insert(fallList.end(), clearList.begin(), clearList.end());
}

void AddClockBonus() {
  if (clockRunning == kFalse) return;
  timeBonus = static_cast<float32>(clearList.size());
  const ClearEarns earned = RowOf(gameMode).clearEarns;
  if (earned == ClearEarns::Seconds) timeLeft += timeBonus;
  if (earned == ClearEarns::FullClock) SetFranticClock();
}

void WinLevel() {
  ++level;
  matchCount = 0;
  levelWonSound = levelWon = kTrue;
  EndPlay();
  score += kLevelPoints * level;
}

void EndClear() {
  if (RowOf(gameMode).onlyLevel != 0) {
    if (timeLeft > 0) return;
    EndPlay();
    levelWon = kFalse;
  } else if (matchCount >= ClearsOfLevel(level)) {
    WinLevel();
  }
}

void SettleClear() {
  AddKindPoints(Gem(clearList.back()).kind);
  RewardChain();
  MarkHoles();
  GiveNewKinds();
  PlaceNewGems();
  FillFallList();
  // The clock may have run out while the list was emptied; the end of play wins over a won level.
  if (gameState != stateClearing) return;
  gameState = stateFalling;
  ++matchCount;
  AddClockBonus();
  EndClear();
}

}  // namespace

void StepClearing() {
  for (const int16 id : clearList) {
    CGem& gem = Gem(id);
    gem.shrink = static_cast<int16>(gem.shrink + kShrinkPixels);
  }
  if (++perBoard.clearFrames < kClearFrames) return;
  perBoard.clearFrames = 0;
  SettleClear();
}

}  // namespace glimmerfall
