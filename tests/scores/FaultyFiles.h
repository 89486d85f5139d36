// SPDX-License-Identifier: MIT
// Stands between the file service and the system's calls that change a disk: logs them, and lets a
// test run out of room at any byte of any. The linker puts it there (--wrap), for this suite alone.
#pragma once

#include <string>

namespace faulty {

/// From now on a write takes its bytes of `room`, any other changing call one; where less is left
/// it fails, a write after it has stored what there is room for. Forgets the log.
void LeaveRoom(long room);
/// Room without end.
void Reset();

/// The changing calls since the last of the two, such as "create score1.gwk; write; ".
const std::string& Log();

}  // namespace faulty
