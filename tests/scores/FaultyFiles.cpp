// SPDX-License-Identifier: MIT
#include "tests/scores/FaultyFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>

namespace {

constexpr long kEndless = std::numeric_limits<long>::max();

long roomLeft = kEndless;
bool kills = false;
std::string log;

// Yields what a call gets of the room that it needs.
long Take(const std::string& call, long needed = 1) {
  if (!log.ends_with(call)) log += call;
  const long taken = std::min(needed, roomLeft);
  roomLeft -= taken;
  if (taken < needed) errno = ENOSPC;
  if (taken < needed && kills) _exit(faulty::kKilled);
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

void LeaveRoom(long room, Ending ending) {
  roomLeft = room;
  kills = ending == Ending::Kills;
  log.clear();
}

void Reset() {
  LeaveRoom(kEndless);
}

const std::string& Log() {
  return log;
}

}  // namespace faulty

// The names are those that the linker gives to wrapped calls.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

int __real_open(const char* path, int flags, mode_t mode);
int __real_mkdir(const char* path, mode_t mode);
ssize_t __real_write(int file, const void* bytes, size_t count);
int __real_fallocate(int file, int mode, off_t offset, off_t length);
int __real_rename(const char* from, const char* to);

int __wrap_open(const char* path, int flags, mode_t mode) {
  const bool creates = (flags & O_CREAT) != 0 && access(path, F_OK) != 0;
  return creates && Take("write ") == 0 ? -1 : __real_open(path, flags, mode);
}

int __wrap_mkdir(const char* path, mode_t mode) {
  return Take("write ") == 0 ? -1 : __real_mkdir(path, mode);
}

ssize_t __wrap_write(int file, const void* bytes, size_t count) {
  if (kills && roomLeft == 0) __real_write(file, bytes, count / 2);
  const long grows = Growth(file, lseek(file, 0, SEEK_CUR) + static_cast<off_t>(count));
  const long taken = Take("write ", kills ? 1 : grows);
  const size_t written = kills || grows == 0 ? count : static_cast<size_t>(taken);
  return written == 0 ? -1 : __real_write(file, bytes, written);
}

int __wrap_fallocate(int file, int mode, off_t offset, off_t length) {
  const long grows = Growth(file, offset + length);
  return Take("write ", grows) < grows ? -1 : __real_fallocate(file, mode, offset, length);
}

// Nothing is carried to the disk: the suite makes thousands of files.
int __wrap_syncfs(int) {
  return Take("sync ") == 0 ? -1 : 0;
}

int __wrap_fsync(int) {
  return Take("sync ") == 0 ? -1 : 0;
}

int __wrap_rename(const char* from, const char* to) {
  return Take("move ") == 0 ? -1 : __real_rename(from, to);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)
