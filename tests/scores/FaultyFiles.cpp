// SPDX-License-Identifier: MIT
#include "tests/scores/FaultyFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <limits>

namespace {

long roomLeft = std::numeric_limits<long>::max();
std::string calls;

// Logs a call and yields what it gets of the room that it needs.
long Take(const std::string& call, long needed = 1) {
  calls += call + "; ";
  const long taken = std::min(needed, roomLeft);
  roomLeft -= taken;
  if (taken < needed) errno = ENOSPC;
  return taken;
}

// Bytes that `file` needs to reach `end`, beyond the blocks that it has.
long Growth(int file, off_t end) {
  struct stat status;
  fstat(file, &status);
  return std::max(0L, end - status.st_blocks * 512);
}

}  // namespace

namespace faulty {

void LeaveRoom(long room) {
  roomLeft = room;
  calls.clear();
}

void Reset() {
  LeaveRoom(std::numeric_limits<long>::max());
}

const std::string& Log() {
  return calls;
}

}  // namespace faulty

// The names are those that the linker gives to wrapped calls.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

int __real_open(const char* path, int flags, ...);
int __real_mkdir(const char* path, mode_t mode);
ssize_t __real_write(int file, const void* bytes, size_t count);
int __real_fallocate(int file, int mode, off_t offset, off_t length);
int __real_rename(const char* from, const char* to);

int __wrap_open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = va_arg(arguments, mode_t);
  va_end(arguments);
  const bool creates = (flags & O_CREAT) != 0 && access(path, F_OK) != 0;
  const std::string name = path;
  if (creates && Take("create " + name.substr(name.find_last_of('/') + 1)) == 0) return -1;
  return __real_open(path, flags, mode);
}

int __wrap_mkdir(const char* path, mode_t mode) {
  return Take("mkdir") == 0 ? -1 : __real_mkdir(path, mode);
}

ssize_t __wrap_write(int file, const void* bytes, size_t count) {
  const long grows = Growth(file, lseek(file, 0, SEEK_CUR) + static_cast<off_t>(count));
  const long taken = Take("write", grows);
  const auto written = grows == 0 ? count : static_cast<size_t>(taken);
  return written == 0 ? -1 : __real_write(file, bytes, written);
}

int __wrap_fallocate(int file, int mode, off_t offset, off_t length) {
  const long grows = Growth(file, offset + length);
  return Take("fallocate", grows) < grows ? -1 : __real_fallocate(file, mode, offset, length);
}

// Nothing is carried to the disk: the suite makes thousands of files.
int __wrap_syncfs(int) {
  return Take("syncfs") == 0 ? -1 : 0;
}

int __wrap_fsync(int) {
  return Take("fsync") == 0 ? -1 : 0;
}

int __wrap_rename(const char* from, const char* to) {
  return Take("rename") == 0 ? -1 : __real_rename(from, to);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
