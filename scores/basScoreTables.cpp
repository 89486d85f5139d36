// SPDX-License-Identifier: MIT
#include "scores/basScoreTables.h"

#include <array>

#include "platform/Program.h"

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

const TableFiles& FilesOf(GameMode mode) {
  return kTables[static_cast<std::size_t>(mode)];
}

std::string PathOf(const char* prefix, int place) {
  return platform::ProgramFolder() + '/' + prefix + std::to_string(place) + kExtension;
}

}  // namespace

std::string ScoreFile(GameMode mode, int place) {
  return PathOf(FilesOf(mode).scorePrefix, place);
}

std::string NameFile(GameMode mode, int place) {
  return PathOf(FilesOf(mode).namePrefix, place);
}

ScoreTable& WorkingCopy(GameMode mode) {
  return FilesOf(mode).scores;
}

}  // namespace glimmerfall
