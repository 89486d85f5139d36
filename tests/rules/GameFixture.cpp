// SPDX-License-Identifier: MIT
#include "tests/rules/GameFixture.h"

#include <algorithm>
#include <map>
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
  twin::devices.bitmapSizes["Board.bmp"] = {512, 576};
  twin::devices.bitmapSizes["gemsheet1024x512.bmp"] = {1024, 512};
  twin::devices.bitmapSizes["Target.bmp"] = {384, 64};
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
  EXPECT_EQ(twin::LiveSounds(), 0);
}

void SetBoard(const std::string& kinds, int16 kindsDealt) {
  ASSERT_EQ(kinds.size(), 64U);
  for (int16 id = 0; id < kGemCount; ++id) {
    CGem gem;
    gem.id = id;
    gem.kind = static_cast<int16>(kinds[static_cast<std::size_t>(id)] - '0');
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

namespace {

// Equal kinds stand three columns and a row, or two columns and two rows apart.
std::string QuietBoard() {
  std::string digits;
  for (int cell = 0; cell < kGemCount; ++cell)
    digits += static_cast<char>('0' + (cell % 8 + cell / 8 * 3) % 8);
  return digits;
}

void Put(int kind, const std::vector<int>& cells) {
  std::string kinds = BoardKinds();
  for (const int cell : cells)
    kinds[static_cast<std::size_t>(cell)] = static_cast<char>('0' + kind);
  SetBoard(kinds);
}

void InCell(void (*mouse)(float32, float32), int cell) {
  const int row = cell / 8;
  mouse(static_cast<float32>(cell % 8 * 64 + 32), static_cast<float32>(row * 64 + 32));
}

void RunFrames(int count) {
  for (int i = 0; i < count; ++i)
    RunFrame();
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

using Numbers = std::vector<int>;

const std::map<std::string, void (*)(int, const Numbers&)> kActions = {
    {"down", [](int cell, const Numbers&) { InCell(MouseDown, cell); }},
    {"move", [](int cell, const Numbers&) { InCell(MouseMove, cell); }},
    {"up", [](int, const Numbers&) { MouseUp(); }},
    {"click", [](int, const Numbers&) { Click(); }},
    {"pick", [](int cell, const Numbers&) { InCell(MouseDown, cell), MouseUp(), Click(); }},
    {"hint", [](int, const Numbers&) { TakeHint(); }},
    {"pause", [](int, const Numbers&) { TogglePause(), PlayPauseSound(); }},
    {"new", [](int, const Numbers&) { NewGameAllowed() ? StartNewGame() : void(); }},
    {"hide", [](int, const Numbers&) { HideCursor(); }},
    {"frames", [](int count, const Numbers&) { RunFrames(count); }},
    {"board", [](int, const Numbers&) { SetBoard(QuietBoard()); }},
    {"put", Put},
    {"draws", [](int count, const Numbers& numbers) { twin::ScriptNumbers(numbers, count); }},
};

const std::map<std::string, void (*)(double)> kVariables = {
    {"score", [](double value) { score = value; }},
    {"level", [](double value) { level = static_cast<int16>(value); }},
    {"matches", [](double value) { matchCount = static_cast<int16>(value); }},
    {"chain", [](double value) { perBoard.chainCount = static_cast<int16>(value); }},
    {"mode", [](double value) { gameMode = static_cast<GameMode>(value); }},
    {"state", [](double value) { gameState = static_cast<GameState>(value); }},
    {"won", [](double value) { levelWon = levelWonSound = static_cast<Flag>(value); }},
    {"running", [](double value) { clockRunning = static_cast<Flag>(value); }},
    {"left", [](double value) { timeLeft = static_cast<float32>(value); }},
    {"limit", [](double value) { timeLimit = static_cast<float32>(value); }},
    {"effects", [](double value) { soundOn = static_cast<Flag>(value); }},
    {"time", twin::SetTimer},
};

Numbers NumbersOf(std::istream& stream) {
  Numbers numbers;
  char separator = 0;
  for (int number = 0; stream >> separator >> number;)
    numbers.push_back(number);
  return numbers;
}

void PerformWord(const std::string& word) {
  const std::size_t end = std::min(word.find_first_of("=0123456789"), word.size());
  const std::string verb = word.substr(0, end);
  if (end < word.size() && word[end] == '=')
    return kVariables.at(verb)(std::stod(word.substr(end + 1)));
  if (verb == "tell" || verb == "show") return onTell(verb);
  std::istringstream rest(word.substr(end));
  int number = 0;
  rest >> number;
  if (!PressKeyOf(verb, number)) kActions.at(verb)(number, NumbersOf(rest));
}

}  // namespace

void Perform(const std::string& words) {
  std::istringstream stream(words);
  for (std::string word; stream >> word;)
    PerformWord(word);
}

void PreparePlay(std::istream& file) {
  std::string line;
  while (file.peek() == '#')
    std::getline(file, line);
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
  double frame = 0;
  while (std::getline(file, line) && !line.empty()) {
    std::istringstream words(line);
    words >> word >> frame >> std::ws;
    std::getline(words, line);
    twin::ScheduleAt(static_cast<int32>(frame * kTicksPerFrame), [line] { Perform(line); });
  }
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
