// SPDX-License-Identifier: MIT
// Board set-up: counters, clock, the deal of 64 kinds without a ready-made run and with a possible
// move, and the drop of the gems from above. Every new board begins here.
#pragma once

#include "rules/state/basGameState.h"

namespace glimmerfall {

/// Readies a new board. Does not touch score, matchCount, the lists or the picked gems, and changes
/// level only in Marathon. Window events run once in each round of the deal.
void InitGameBoard();

/// A kind that the present board deals, but not `kind`; all others are equally likely.
int16 RandomKindOtherThan(int16 kind);

/// The frame of stateDealing.
void DropStep();

}  // namespace glimmerfall
