// SPDX-License-Identifier: MIT
// The check of a finished game's score against the table of its mode.
#pragma once

namespace glimmerfall {

/// Looks whether `score` beats one of the ten scores of the current mode, sets newScoreRank, and if
/// so asks for a name.
void CheckHighScore();

}  // namespace glimmerfall
