// SPDX-License-Identifier: MIT
// The filter graphs of the desktop. The media library behind them is used on threads of a pool
// alone, one that opens and steers streams and one that takes them down, so that the game's thread
// never waits.
#pragma once

#include "platform/FilterGraph.h"

namespace platform::desktop {

/// Begins to bring the library up and returns at once. The start of the program calls it first of
/// all, so that the first track need not wait; further calls do nothing.
void WarmUpMedia();

/// A graph that plays into `sink`, a pipeline description in the words of the library. The game's
/// graphs play into the sound server or the default device; a test reads the samples instead.
std::shared_ptr<FilterGraph> CreateFilterGraphInto(const std::string& sink);

/// Waits until every stream that was let go is taken down. For tests alone: the game never waits.
void WaitUntilMediaIdle();

}  // namespace platform::desktop
