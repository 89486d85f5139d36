// SPDX-License-Identifier: MIT
#include "tests/rules/GameFixture.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <set>
#include <sstream>

#include "display/basBoardCursor.h"
#include "display/basBoardText.h"
#include "display/basDirectDrawStuff.h"
#include "rules/basBoardKeys.h"
#include "rules/basGameClock.h"
#include "rules/basHint.h"
#include "rules/basMainGameLoop.h"
#include "rules/basManipulatingGems.h"
#include "rules/basNewGame.h"
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
  boardCursor = {};
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

// Equal kinds stand three columns and a row, or two columns and two rows apart.
std::string QuietBoard(const std::vector<Patch>& patches) {
  std::string digits;
  for (int cell = 0; cell < 64; ++cell)
    digits += static_cast<char>('0' + (cell % 8 + cell / 8 * 3) % 8);
  for (const Patch& patch : patches)
    for (const int cell : patch.cells)
      digits[static_cast<std::size_t>(cell)] = static_cast<char>('0' + patch.kind);
  return digits;
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

namespace {

float32 MiddleX(int cell) {
  return static_cast<float32>(cell % 8 * 64 + 32);
}
float32 MiddleY(int cell) {
  const int row = cell / 8;
  return static_cast<float32>(row * 64 + 32);
}

// In the order of platform::Key.
constexpr const char* kKeyWords[] = {"keyleft",  "keyright", "keyup",     "keydown",
                                     "keyhome",  "keyend",   "keypageup", "keypagedown",
                                     "keyenter", "keyescape"};

// A key that the word names, once or as often as its number says.
bool PressKeyOf(const std::string& verb, int number) {
  const auto* const word = std::find(std::begin(kKeyWords), std::end(kKeyWords), verb);
  if (word == std::end(kKeyWords)) return false;
  for (int i = 0; i < std::max(1, number); ++i)
    KeyDown(static_cast<platform::Key>(word - std::begin(kKeyWords)));
  return true;
}

void PerformWord(const std::string& verb, int number) {
  if (PressKeyOf(verb, number)) return;
  if (verb == "down") return MouseDown(MiddleX(number), MiddleY(number));
  if (verb == "move") return MouseMove(MiddleX(number), MiddleY(number));
  if (verb == "up") return MouseUp();
  if (verb == "pick") return PressAndRelease(number);
  if (verb == "click") return Click();
  if (verb == "hint") return TakeHint();
  if (verb == "pause") return TogglePause(), PlayPauseSound();
  if (verb == "new") return NewGameAllowed() ? StartNewGame() : void();
  ASSERT_EQ(verb, "frames");
  for (int i = 0; i < number; ++i)
    RunFrame();
}

}  // namespace

void PressAndRelease(int cell) {
  MouseDown(MiddleX(cell), MiddleY(cell));
  MouseUp();
  Click();
}

void Perform(const std::string& words) {
  std::istringstream stream(words);
  std::string word;
  while (stream >> word) {
    const std::size_t digits = std::min(word.find_first_of("0123456789"), word.size());
    PerformWord(word.substr(0, digits), std::atoi(word.c_str() + digits));
  }
}

void PreparePlay(std::istream& file) {
  std::string word;
  std::uint64_t seed = 0;
  int mode = 0;
  int16 atLevel = 0;
  int end = 0;
  file >> word >> seed >> word >> mode >> word >> atLevel >> word >> end >> std::ws;
  StartScriptedGame(seed);
  gameMode = static_cast<GameMode>(mode);
  level = atLevel;
  twin::ScheduleAt(end * kTicksPerFrame, [] { throw twin::ProgramEnded{0}; });
  int frame = 0;
  for (std::string line; std::getline(file, line) && !line.empty();) {
    std::istringstream words(line);
    words >> word >> frame >> std::ws;
    std::getline(words, line);
    twin::ScheduleAt(frame * kTicksPerFrame, [line] { Perform(line); });
  }
}

std::string TakeSounds() {
  std::string names;
  for (const std::string& file : twin::PlayedSounds())
    names += (names.empty() ? "" : " ") + file.substr(0, file.find(".wav"));
  twin::PlayedSounds().clear();
  return names;
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
  for (int cell = 0; cell < kGemCount; ++cell) {
    const std::string broken = BrokenGem(cell % 8, cell / 8);
    if (!broken.empty()) return broken + " in cell " + std::to_string(cell);
    seen.insert(boardCells[cell].gem);
  }
  return seen.size() == 64 ? "" : "a gem stands twice";
}

}  // namespace glimmerfall
