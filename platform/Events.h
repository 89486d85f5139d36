// SPDX-License-Identifier: MIT
// Letting window events run. There is one thread: mouse, menu and timer events reach the game only
// inside these calls, and an event runs to its end before the call returns.
#pragma once

#include <cstdint>

#include "platform/Time.h"

namespace platform {

/// Handles every event that is waiting, then returns.
void LetEventsRun();

/// Sleeps until an event comes or TickCount() reaches `tick`, then handles what is waiting and
/// returns. Callers ask again for as long as they have to wait.
void LetEventsRunUntil(std::int32_t tick);

/// The same for at most `millis` milliseconds from now.
inline void LetEventsRunFor(std::int32_t millis) {
  LetEventsRunUntil(TickAfter(TickCount(), millis));
}

/// Calls `event` whenever Timer() has advanced by 0.1 seconds, one step of the game clock, since
/// its last call returned. Never nested, also where `event` itself lets events run. Replaces the
/// timer started before; nullptr stops it.
void StartTimer(void (*event)());

}  // namespace platform
