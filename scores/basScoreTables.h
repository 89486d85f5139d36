// SPDX-License-Identifier: MIT
// Where the four tables of ten high scores live: the files beside the program, which are the truth,
// and the working copies in memory, read anew before each use.
#pragma once

#include <string>

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// Full paths of the two files of a place, 1 to 10.
std::string ScoreFile(GameMode mode, int place);
std::string NameFile(GameMode mode, int place);

/// The scores of `mode` as they were last read.
ScoreTable& WorkingCopy(GameMode mode);

}  // namespace glimmerfall
