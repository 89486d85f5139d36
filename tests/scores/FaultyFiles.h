// SPDX-License-Identifier: MIT
// Stands between the file service and the system's calls that change a disk: lets a test run out of
// room at any byte, or be killed at any call. The linker puts it there (--wrap), for this suite
// alone.
#pragma once

#include <string>

namespace faulty {

/// What becomes of a call for which there is no room.
enum class Ending {
  Fails,  ///< a full disk; a write stores what there is room for
  Kills   ///< the process ends with kKilled; a write has stored the half of its bytes
};
constexpr int kKilled = 9;

/// From now on any changing call takes one of `room`, a write on a full disk its bytes.
void LeaveRoom(long room, Ending ending = Ending::Fails);
/// Room without end.
void Reset();

/// What the calls since then did, such as "write sync move ". The same twice is told once.
const std::string& Log();

}  // namespace faulty
