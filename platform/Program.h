// SPDX-License-Identifier: MIT
// The running program itself: where it lies, and how it ends.
#pragma once

#include <string>

namespace platform {

/// The folder that holds the executable, without a separator at its end. Started through a symbolic
/// link that has the pictures beside it, that is the folder of the link: so players share a program
/// and keep their own scores.
std::string ProgramFolder();

/// Ends the program at once. Nothing beneath the caller runs again.
[[noreturn]] void EndProgram(int exitCode);

}  // namespace platform
