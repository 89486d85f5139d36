// SPDX-License-Identifier: MIT
// Stands between the score store and the system's file calls: counts those that change a disk, and
// lets a test break off at any of them. The linker puts it there (--wrap), for this suite alone.
#pragma once

#include <string>

namespace faulty {

/// The exit code of a process that Kill has ended.
inline constexpr int kKilled = 77;

enum class Fault {
  None,
  Fail,  ///< from the n-th call on each fails for want of room; a write still stores its half
  Kill,  ///< the process ends at the n-th call; a write still stores its half
};

/// No fault; forgets the log.
void Reset();

/// Arms `fault` for the n-th changing call from now on, 1 being the next.
void Arm(Fault fault, int n);

/// The changing calls since the reset, such as "write; rename scorename1.gwk; ".
const std::string& Log();

}  // namespace faulty
