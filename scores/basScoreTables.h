// SPDX-License-Identifier: MIT
// The four tables of ten high scores: which files hold each, how a new score is entered, and how a
// line of a table reads. The files beside the program are the truth; the tables in memory are
// working copies, read anew before each use.
#pragma once

#include <string>

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// Characters of a name that are stored.
inline constexpr int kNameCharacters = 15;

/// Full paths of the two files of a place, 1 to 10.
std::string ScoreFile(GameMode mode, int place);
std::string NameFile(GameMode mode, int place);

/// Fills the working copy of `mode` from its ten score files, and gives it.
const ScoreTable& ReadScores(GameMode mode);

/// The line of a place, 1 to 10, such as " 1 -- Ann -- 150": the name from its file, the score from
/// the working copy. Lets events run once.
std::string TableLine(GameMode mode, int place);

/// Puts `score` and the first 15 characters of `name`, in UTF-8, into the table of `gameMode` at
/// newScoreRank, all three as they stand now, and rewrites its files: the names from the new place
/// down, then all ten scores. A newScoreRank that is no place, which another game behind the name
/// window can leave, enters nothing. Lets events run once for each name.
void EnterHighScore(const std::string& name);

/// Writes the default name and score into every place of all four tables.
void ResetScoreTables();

}  // namespace glimmerfall
