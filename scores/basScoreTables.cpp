// SPDX-License-Identifier: MIT
#include "scores/basScoreTables.h"

#include <algorithm>
#include <array>

#include "platform/Program.h"
#include "rules/state/basWholeNumber.h"
#include "scores/CodePage.h"
#include "scores/basMiscelFunctions.h"

namespace glimmerfall {

namespace {

struct TableFiles {
  ScoreTable& scores;
  const char* scorePrefix;
  const char* namePrefix;
};

// By mode.
constexpr std::array<TableFiles, kModeCount> kTables = {{
    {scoresNormal, "score", "scorename"},
    {scoresFrantic, "scorefr", "scorenamefr"},
    {scoresRelaxing, "scorere", "scorenamere"},
    {scoresMarathon, "scorema", "scorenamema"},
}};
constexpr char kExtension[] = ".gwk";

constexpr char kDefaultName[] = "Norvane Games";
constexpr float64 kDefaultScore = 100;

constexpr char kSeparator[] = " -- ";

// The names of a table by place; element 0 holds nothing.
using NameList = std::array<std::string, kPlaces + 1>;

const TableFiles& FilesOf(GameMode mode) {
  return kTables[static_cast<std::size_t>(mode)];
}

std::string PathOf(const char* prefix, int place) {
  return platform::ProgramFolder() + '/' + prefix + std::to_string(place) + kExtension;
}

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

void WriteScores(GameMode mode, const ScoreTable& scores) {
  for (int place = 1; place <= kPlaces; ++place)
    WriteScore(ScoreFile(mode, place), At(scores, place));
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

std::string ScoreFile(GameMode mode, int place) {
  return PathOf(FilesOf(mode).scorePrefix, place);
}

std::string NameFile(GameMode mode, int place) {
  return PathOf(FilesOf(mode).namePrefix, place);
}

const ScoreTable& ReadScores(GameMode mode) {
  ScoreTable& scores = FilesOf(mode).scores;
  for (int place = 1; place <= kPlaces; ++place)
    At(scores, place) = ReadScore(ScoreFile(mode, place));
  return scores;
}

std::string TableLine(GameMode mode, int place) {
  const std::string number = std::to_string(place);
  const std::string name = ReadLastLine(NameFile(mode, place));
  return (place < 10 ? " " : "") + number + kSeparator + name + kSeparator +
         WholeNumber(At(FilesOf(mode).scores, place));
}

void EnterHighScore(const std::string& name) {
  const GameMode mode = gameMode;
  const int rank = newScoreRank;
  if (rank < 1 || rank > kPlaces) return;
  const ScoreTable scores = WithScoreAt(ReadScores(mode), rank, score);
  const NameList names = ReadNames(mode);
  for (int place = rank; place < kPlaces; ++place)
    WriteTextFile(At(names, place), NameFile(mode, place + 1));
  WriteTextFile(StoredName(name), NameFile(mode, rank));
  // Only now: the high-score window may have read the old scores while events ran.
  FilesOf(mode).scores = scores;
  WriteScores(mode, scores);
}

void ResetScoreTables() {
  for (const GameMode mode : {modeNormal, modeFrantic, modeRelaxing, modeMarathon}) {
    for (int place = 1; place <= kPlaces; ++place)
      WriteTextFile(kDefaultName, NameFile(mode, place));
    for (int place = 1; place <= kPlaces; ++place)
      WriteScore(ScoreFile(mode, place), kDefaultScore);
  }
}

}  // namespace glimmerfall
