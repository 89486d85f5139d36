// SPDX-License-Identifier: MIT
#include "scores/basScoreTables.h"

#include "platform/Program.h"
#include "rules/state/basModes.h"

namespace glimmerfall {

namespace {

constexpr char kExtension[] = ".gwk";

std::string PathOf(const char* prefix, int place) {
  return platform::ProgramFolder() + '/' + prefix + std::to_string(place) + kExtension;
}

}  // namespace

std::string ScoreFile(GameMode mode, int place) {
  return PathOf(RowOf(mode).scorePrefix, place);
}

std::string NameFile(GameMode mode, int place) {
  return PathOf(RowOf(mode).namePrefix, place);
}

ScoreTable& WorkingCopy(GameMode mode) {
  return shared.scores[static_cast<std::size_t>(mode)];
}

}  // namespace glimmerfall
