// SPDX-License-Identifier: MIT
#include "tests/rules/GameFixture.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <sstream>

#include "display/basBoardText.h"
#include "display/basDirectDrawStuff.h"
#include "rules/basMainGameLoop.h"
#include "rules/basManipulatingGems.h"
#include "sound/DXAudio.h"
#include "sound/basDirectSoundStuff.h"
#include "tests/platform/Twin.h"

namespace glimmerfall {

void StartScriptedGame(std::uint64_t seed) {
  twin::Reset(seed);
  twin::SetBitmapSize("Board.bmp", {512, 576});
  twin::SetBitmapSize("gemsheet1024x512.bmp", {1024, 512});
  twin::SetBitmapSize("Target.bmp", {384, 64});
  ReleaseAll();
  ResetGameState();
  ResetDisplay();
  boardBitmapPath = "images/Board.bmp";
  gemSheetPath = "images/gemsheet1024x512.bmp";
  targetBitmapPath = "images/Target.bmp";
  mainWindowFont = {"Arial", 35};
  LoadSounds();
  InitDisplay();
}

void GameTest::TearDown() {
  music.reset();
  ReleaseAll();
  EXPECT_EQ(twin::LiveSoundBuffers(), 0);
}

void SetBoard(const std::string& kinds, int16 kindsDealt) {
  std::string digits;
  for (const char c : kinds)
    if (std::isdigit(static_cast<unsigned char>(c)) != 0) digits += c;
  ASSERT_EQ(digits.size(), 64U);
  for (int16 id = 0; id < kGemCount; ++id) {
    CGem gem;
    gem.id = id;
    gem.kind = static_cast<int16>(digits[static_cast<std::size_t>(id)] - '0');
    gem.col = static_cast<int16>(id % 8);
    gem.row = static_cast<int16>(id / 8);
    gem.pixX = static_cast<int16>(gem.col * 64);
    gem.pixY = static_cast<int16>(gem.row * 64);
    gem.sheetY = static_cast<int16>(gem.kind * 64);
    Gem(id) = gem;
    boardCells[id] = {&Gem(id), id, gem.kind};
  }
  gemKinds = kindsDealt;
  if (timeLimit <= 0) timeLimit = 50;
  gameState = stateIdle;
}

std::string BoardKinds() {
  std::string kinds;
  for (const BoardCell& cell : boardCells)
    kinds += std::to_string(cell.kind);
  return kinds;
}

std::vector<int> BoardIds() {
  std::vector<int> ids;
  for (const BoardCell& cell : boardCells)
    ids.push_back(cell.gemId);
  return ids;
}

float32 MiddleX(int cell) {
  return static_cast<float32>(cell % 8 * 64 + 32);
}
float32 MiddleY(int cell) {
  return static_cast<float32>(cell / 8 * 64 + 32);
}

void PressAndRelease(int cell) {
  PressAndRelease(MiddleX(cell), MiddleY(cell));
}

void PressAndRelease(float32 x, float32 y) {
  MouseDown(x, y);
  MouseUp();
  Click();
}

int RunFramesUntil(std::vector<GameState> states, int limit) {
  int frames = 0;
  while (frames < limit && std::find(states.begin(), states.end(), gameState) == states.end()) {
    RunFrame();
    ++frames;
  }
  return frames;
}

namespace {

std::string BrokenGem(int x, int y) {
  const BoardCell& cell = boardCells(x, y);
  const CGem* gem = cell.gem;
  if (gem == nullptr) return "no gem";
  if (gem != &Gem(gem->id)) return "a gem that is none of the 64";
  if (gem->id != cell.gemId) return "gemId";
  if (gem->kind != cell.kind) return "kind";
  if (gem->kind < 0 || gem->kind >= gemKinds) return "kind out of range";
  if (gem->col != x || gem->row != y) return "col or row";
  if (gem->sheetY != 64 * gem->kind) return "sheetY";
  if (gem->pixX != 64 * x || gem->pixY != 64 * y) return "pixX or pixY";
  if (gem->shrink != 0) return "shrink";
  if (gem->targetRow != 0) return "targetRow";
  if (gem->spinFrame < 0 || gem->spinFrame > 15) return "spinFrame";
  return "";
}

}  // namespace

std::string BrokenInvariant() {
  std::set<const CGem*> seen;
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 8; ++x) {
      const std::string broken = BrokenGem(x, y);
      if (!broken.empty()) {
        std::ostringstream text;
        text << broken << " at " << x << ',' << y;
        return text.str();
      }
      seen.insert(boardCells(x, y).gem);
    }
  }
  return seen.size() == 64 ? "" : "a gem stands twice";
}

}  // namespace glimmerfall
