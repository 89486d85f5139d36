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

/// Gives `event` again and again, each time as soon as Timer() has advanced by 0.1 seconds since
/// the last one ended; so each event finds a whole step of the game clock, whatever the resolution
/// of Timer() at this hour. An event that lets events run is not given again inside itself.
/// Replaces the timer started before; nullptr stops it.
void StartTimer(void (*event)());

}  // namespace platform
