// SPDX-License-Identifier: MIT
// The high scores: the check of a finished game's score, its entry into a table, the reset of all
// tables, and the reading and writing of single files beneath them. Nothing reports a failure. The
// files that an entry or a reset writes are changed together: all of them, or none.
#pragma once

#include <string>
#include <vector>

#include "platform/Files.h"
#include "rules/state/basGameState.h"

namespace glimmerfall {

/// What ReadLastLine gives for a file that can't be read, before the path.
inline constexpr char kMissingFile[] = "file missing or corrupt - ";

/// Bytes of the longest line that ReadLastLine gives; of a longer one, which only a damaged file
/// has, it gives the end.
inline constexpr int kLongestLine = 8192;

/// Characters of a name that are stored.
inline constexpr int kNameCharacters = 15;

/// What is written to the files of one entry or reset, to be made by platform::ChangeFiles.
using Changes = std::vector<platform::FileChange>;

/// Replaces the file at `path` by `text`, a line in UTF-8 that is stored in the code page, and CR
/// LF, when `changes` are made.
void WriteTextFile(const std::string& text, const std::string& path, Changes& changes);

/// The last line of the file at `path`, in UTF-8. Lines end in CR LF, CR or LF, the last one also
/// at the end of the file; a file without any line gives the empty string. Lets events run once
/// after closing the file. A file that can't be opened or read gives kMissingFile and the path.
std::string ReadLastLine(const std::string& path);

/// The score in the file at `path`: an IEEE 754 double, little-endian, at offset 0. Creates an
/// empty file where there is none. A file of less than 8 bytes, and one that can't be opened, gives
/// 0.
float64 ReadScore(const std::string& path);

/// Writes `value` over the first 8 bytes of the file at `path`, which is created where there is
/// none, when `changes` are made; what stands behind them stays.
void WriteScore(const std::string& path, float64 value, Changes& changes);

/// Fills the working copy of `mode` from its ten score files, and gives it. First finishes or takes
/// back what was being written when the program was last ended.
const ScoreTable& ReadScores(GameMode mode);

/// The line of a place, 1 to 10, such as " 1 -- Ann -- 150": the name from its file, the score from
/// the working copy. Lets events run once.
std::string TableLine(GameMode mode, int place);

/// Compares `score` with the ten scores of the current mode, sets newScoreRank to the first place
/// whose score is lower, or to kNoRank, and if there is one sets nameWanted.
void CheckHighScore();

/// Puts `score` and the first 15 characters of `name`, in UTF-8, into the table of `gameMode` at
/// newScoreRank, all three as they stand now, and rewrites its files: the names from the new place
/// down, then all ten scores. A newScoreRank that is no place, which another game behind the name
/// window can leave, enters nothing. Lets events run once for each name.
void EnterHighScore(const std::string& name);

/// Writes the default name and score into every place of all tables.
void ResetScoreTables();

}  // namespace glimmerfall
