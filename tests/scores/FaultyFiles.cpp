// SPDX-License-Identifier: MIT
#include "tests/scores/FaultyFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

namespace {

faulty::Fault armed = faulty::Fault::None;
int callsLeft = 0;
std::string calls;

std::string FileName(const std::string& path) {
  return path.substr(path.find_last_of('/') + 1);
}

// Whether the call that is being made is one that breaks.
bool Breaks(const std::string& call) {
  calls += call + "; ";
  if (armed == faulty::Fault::None) return false;
  return --callsLeft <= 0;
}

int BreakOff() {
  if (armed == faulty::Fault::Kill) _exit(faulty::kKilled);
  errno = ENOSPC;
  return -1;
}

}  // namespace

namespace faulty {

void Reset() {
  armed = Fault::None;
  calls.clear();
}

void Arm(Fault fault, int n) {
  armed = fault;
  callsLeft = n;
}

const std::string& Log() {
  return calls;
}

}  // namespace faulty

// The names are those that the linker gives to wrapped calls.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

int __real_open(const char* path, int flags, ...);
ssize_t __real_write(int file, const void* bytes, size_t count);
ssize_t __real_pwrite(int file, const void* bytes, size_t count, off_t offset);
int __real_rename(const char* from, const char* to);

int __wrap_open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = va_arg(arguments, mode_t);
  va_end(arguments);
  const bool creates = (flags & O_CREAT) != 0 && access(path, F_OK) != 0;
  if (creates && Breaks("create " + FileName(path))) return BreakOff();
  return __real_open(path, flags, mode);
}

ssize_t __wrap_write(int file, const void* bytes, size_t count) {
  if (!Breaks("write")) return __real_write(file, bytes, count);
  const ssize_t half = count > 1 ? __real_write(file, bytes, count / 2) : 0;
  return half > 0 && armed == faulty::Fault::Fail ? half : BreakOff();
}

ssize_t __wrap_pwrite(int file, const void* bytes, size_t count, off_t offset) {
  return Breaks("pwrite") ? BreakOff() : __real_pwrite(file, bytes, count, offset);
}

// Nothing is carried to the disk: the suite makes thousands of files.
int __wrap_fsync(int) {
  return Breaks("fsync") ? BreakOff() : 0;
}

int __wrap_rename(const char* from, const char* to) {
  return Breaks("rename " + FileName(to)) ? BreakOff() : __real_rename(from, to);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
