// SPDX-License-Identifier: MIT
#include "scores/basMiscelFunctions.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string_view>

#include "platform/Events.h"
#include "platform/Program.h"
#include "rules/state/basModes.h"
#include "rules/state/basWholeNumber.h"
#include "scores/CodePage.h"
#include "scores/basScoreTables.h"

namespace glimmerfall {

namespace {

constexpr char kDefaultName[] = "Norvane Games";
constexpr float64 kDefaultScore = 100;

constexpr char kSeparator[] = " -- ";

constexpr char kLineEnd[] = "\r\n";

std::string_view LastLine(std::string_view text) {
  if (text.ends_with(kLineEnd)) {
    text.remove_suffix(2);
  } else if (text.ends_with('\r') || text.ends_with('\n')) {
    text.remove_suffix(1);
  }
  const std::size_t lineEnd = text.find_last_of(kLineEnd);
  if (lineEnd != std::string_view::npos) text.remove_prefix(lineEnd + 1);
  if (text.size() > kLongestLine) text.remove_prefix(text.size() - kLongestLine);
  return text;
}

float64 DecodeScore(const std::string& bytes) {
  std::uint64_t word = 0;
  if (bytes.size() < sizeof word) return 0;
  for (std::size_t i = sizeof word; i-- > 0;)
    word = word << 8 | static_cast<unsigned char>(bytes[i]);
  return std::bit_cast<float64>(word);
}

std::string EncodeScore(float64 value) {
  auto word = std::bit_cast<std::uint64_t>(value);
  std::string bytes(sizeof word, '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(word);
    word >>= 8;
  }
  return bytes;
}

// The names of a table by place; element 0 holds nothing.
using NameList = std::array<std::string, kPlaces + 1>;

template <typename List>
auto& At(List& list, int place) {
  return list[static_cast<std::size_t>(place)];
}

NameList ReadNames(GameMode mode) {
  NameList names;
  for (int place = 1; place <= kPlaces; ++place)
    At(names, place) = ReadLastLine(NameFile(mode, place));
  return names;
}

void WriteScores(GameMode mode, const ScoreTable& scores, Changes& changes) {
  for (int place = 1; place <= kPlaces; ++place)
    WriteScore(ScoreFile(mode, place), At(scores, place), changes);
}

ScoreTable WithScoreAt(ScoreTable scores, int rank, float64 value) {
  std::copy_backward(&At(scores, rank), &At(scores, kPlaces), scores.end());
  At(scores, rank) = value;
  return scores;
}

// A line end that was pasted into a name would hide what stands before it.
std::string StoredName(const std::string& typed) {
  std::string name = FirstCharacters(typed, kNameCharacters);
  for (const char lineEnd : {'\r', '\n'})
    std::replace(name.begin(), name.end(), lineEnd, ' ');
  return name;
}

}  // namespace

void WriteTextFile(const std::string& text, const std::string& path, Changes& changes) {
  changes.push_back({path, ToCodePage(text) + kLineEnd});
}

std::string ReadLastLine(const std::string& path) {
  const auto end = platform::ReadEnd(path, kLongestLine + std::size(kLineEnd) - 1);
  if (!end) return kMissingFile + path;
  platform::LetEventsRun();
  return FromCodePage(LastLine(*end));
}

float64 ReadScore(const std::string& path) {
  return DecodeScore(platform::ReadHead(path, sizeof(float64)).value_or(""));
}

void WriteScore(const std::string& path, float64 value, Changes& changes) {
  changes.push_back({.path = path, .bytes = EncodeScore(value), .keepsRest = true});
}

const ScoreTable& ReadScores(GameMode mode) {
  platform::SettleFiles(platform::ProgramFolder());
  ScoreTable& scores = WorkingCopy(mode);
  for (int place = 1; place <= kPlaces; ++place)
    At(scores, place) = ReadScore(ScoreFile(mode, place));
  return scores;
}

std::string TableLine(GameMode mode, int place) {
  const std::string number = std::to_string(place);
  const std::string name = ReadLastLine(NameFile(mode, place));
  return (place < 10 ? " " : "") + number + kSeparator + name + kSeparator +
         WholeNumber(At(WorkingCopy(mode), place));
}

void CheckHighScore() {
  const ScoreTable& table = ReadScores(gameMode);
  newScoreRank = kNoRank;
  for (int16 place = 1; place <= kPlaces; ++place)
    if (score > At(table, place)) newScoreRank = std::min(newScoreRank, place);
  if (newScoreRank != kNoRank) nameWanted = true;
}

void EnterHighScore(const std::string& name) {
  const GameMode mode = gameMode;
  const int rank = newScoreRank;
  if (rank < 1 || rank > kPlaces) return;
  const ScoreTable scores = WithScoreAt(ReadScores(mode), rank, score);
  const NameList names = ReadNames(mode);
  Changes changes;
  for (int place = rank; place < kPlaces; ++place)
    WriteTextFile(At(names, place), NameFile(mode, place + 1), changes);
  WriteTextFile(StoredName(name), NameFile(mode, rank), changes);
  // Only now: the high-score window may have read the old scores while events ran.
  WorkingCopy(mode) = scores;
  WriteScores(mode, scores, changes);
  platform::ChangeFiles(changes);
}

void ResetScoreTables() {
  ScoreTable defaults;
  defaults.fill(kDefaultScore);
  Changes changes;
  for (const Mode& row : kModes) {
    for (int place = 1; place <= kPlaces; ++place)
      WriteTextFile(kDefaultName, NameFile(row.mode, place), changes);
    WriteScores(row.mode, defaults, changes);
  }
  platform::ChangeFiles(changes);
}

}  // namespace glimmerfall
