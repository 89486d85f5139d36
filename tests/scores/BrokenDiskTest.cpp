// SPDX-License-Identifier: MIT
// A kill, a full disk, a folder that can't be written, and whatever else may lie in it: an entry or
// a reset changes all of its files or none.
#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <limits>

#include "scores/basMiscelFunctions.h"
#include "tests/scores/ScoreFixture.h"

namespace fs = std::filesystem;

// Stands between the file service and the system's calls that change a disk: lets a test run out of
// room at any byte, or be killed at any call. The linker puts it there (--wrap).
namespace {

constexpr long kEndless = std::numeric_limits<long>::max();

long roomLeft = kEndless;
bool kills = false;
std::string callLog;  // what the calls did, such as "write sync "; the same twice is told once

// What becomes of a call for which there is no room.
enum class Ending {
  Fails,  // a full disk; a write stores what there is room for
  Kills   // the process ends with kKilled; a write has stored the half of its bytes
};
constexpr int kKilled = 9;

// From now on any changing call takes one of `room`, a write on a full disk its bytes.
void LeaveRoom(long room, Ending ending = Ending::Fails) {
  roomLeft = room;
  kills = ending == Ending::Kills;
}

// Yields what a call gets of the room that it needs.
long Take(const std::string& call, long needed = 1) {
  if (!callLog.ends_with(call)) callLog += call;
  const long taken = std::min(needed, roomLeft);
  roomLeft -= taken;
  if (taken < needed) errno = ENOSPC;
  if (taken < needed && kills) _exit(kKilled);
  return taken;
}

// Bytes that `file` needs to reach `end`, beyond the blocks that it has.
long Growth(int file, off_t end) {
  struct stat status;
  fstat(file, &status);
  return std::max(0L, end - status.st_blocks * 512);
}

}  // namespace

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

namespace glimmerfall {
namespace {

constexpr uid_t kNobody = 65534;
constexpr std::size_t kHuge = 3 << 20;

void EnterBest() {
  score = 5000;
  newScoreRank = 1;
  EnterHighScore("Ann");
}

Snapshot WithATail(Snapshot files) {
  files["score7.gwk"] += "tail";
  return files;
}

// Runs `body` in a child process, whose own checks count, and answers its exit code.
int RunInChild(const std::function<void()>& body) {
  const pid_t child = fork();
  if (child == 0) {
    body();
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Lets the process write no longer where the permissions forbid it, even if it is root's.
void BecomeNobody() {
  if (geteuid() != 0) return;
  ASSERT_EQ(setgroups(0, nullptr), 0);
  ASSERT_EQ(setgid(kNobody), 0);
  ASSERT_EQ(setuid(kNobody), 0);
}

class BrokenDisk : public ScoreTest, public testing::WithParamInterface<void (*)()> {
 protected:
  BrokenDisk() {
    Store(before_);
    callLog.clear();
    GetParam()();
    after_ = Files();
    Store(before_);
  }

  // After the next start: whether the files are the new ones, which are put back then. If not they
  // must be the old ones.
  bool AreNewAfterAStart() {
    ReadScores(modeNormal);
    const Snapshot now = Files();
    if (now == before_) return false;
    EXPECT_EQ(now, after_);
    Store(before_);
    return true;
  }

  ~BrokenDisk() override { LeaveRoom(kEndless); }

  Snapshot before_ = WithATail(SampleFiles());
  Snapshot after_;
};
INSTANTIATE_TEST_SUITE_P(EntryAndReset, BrokenDisk, testing::Values(&EnterBest, &ResetScoreTables));

TEST_P(BrokenDisk, APowerCutFindsEachStepOnTheDiskBeforeTheNext) {
  EXPECT_EQ(callLog, "write sync move sync move sync ");
}

TEST_P(BrokenDisk, AKillAtAnyCallLeavesTheOldFilesOrTheNew) {
  int kept = 0;
  int call = 0;
  const auto change = [&] {
    LeaveRoom(call, Ending::Kills);
    GetParam()();
  };
  for (; RunInChild(change) == kKilled; ++call)
    kept += AreNewAfterAStart() ? 0 : 1;
  EXPECT_TRUE(AreNewAfterAStart());
  EXPECT_GT(kept, kPlaces);
  EXPECT_GT(call - kept, kPlaces);
}

TEST_P(BrokenDisk, ADiskThatFillsAtAnyByteLeavesTheOldFilesOrTheNew) {
  long room = 0;
  const auto changeInRoom = [&] {
    LeaveRoom(room++);
    GetParam()();
    LeaveRoom(kEndless);
    return Files();
  };
  while (changeInRoom() == before_) {
  }
  EXPECT_GT(room, kPlaces);
  EXPECT_TRUE(AreNewAfterAStart()) << "left behind with room for " << room;
  while (changeInRoom() != after_)
    EXPECT_TRUE(AreNewAfterAStart()) << "left behind with room for " << room;
}

TEST_P(BrokenDisk, InAFolderThatCanNotBeWrittenAllFilesAreWrittenInPlaceOrNone) {
  struct Row {
    const char* what;
    int all;  // permissions
    int one;  // those of an empty file
    long room;
    bool changes;
  };
  for (const Row& row : {Row{"none can be written", 0444, 0444, 9999, false},
                         Row{"one can't be written", 0666, 0444, 9999, false},
                         Row{"one has no room", 0666, 0666, 1, false},
                         Row{"all can be written", 0666, 0666, 9999, true}}) {
    SCOPED_TRACE(row.what);
    before_["score10.gwk"] = "";
    Store(before_);
    for (const auto& [file, bytes] : before_)
      fs::permissions(Path(file), fs::perms(file == "score10.gwk" ? row.one : row.all));
    fs::permissions(folder_, fs::perms(0555));
    EXPECT_EQ(RunInChild([&] {
                BecomeNobody();
                EXPECT_EQ(ReadScores(modeNormal)[1], 990);
                LeaveRoom(row.room);
                GetParam()();
              }),
              0);
    EXPECT_EQ(Files(), row.changes ? after_ : before_);
  }
}

TEST_P(BrokenDisk, AChangeThatAnotherProgramIsAtIsLeftToIt) {
  const int folder = open(folder_.c_str(), O_RDONLY, 0);
  ASSERT_EQ(flock(folder, LOCK_EX), 0);
  fs::create_directory(Path("files.preparing"));
  ReadScores(modeNormal);
  EXPECT_TRUE(fs::exists(Path("files.preparing")));
  close(folder);
  EXPECT_FALSE(AreNewAfterAStart());
}

// No link is followed, and no folder is replaced.
TEST_P(BrokenDisk, WhateverLiesInAFilesPlaceIsHarmless) {
  struct Row {
    const char* what;
    std::function<void()> put;
    bool changes;
  };
  const auto link = [&](const char* name) { fs::create_directory_symlink("precious", Path(name)); };
  const std::vector<Row> rows = {
      {"a link in the temporary files' place", [&] { link("files.preparing"); }, true},
      {"a link in the ready files' place", [&] { link("files.prepared"); }, false},
      {"a folder in a name's place",
       [&] {
         fs::remove(Path("scorename5.gwk"));
         fs::create_directory(Path("scorename5.gwk"));
       },
       false},
      {"more to keep than is copied", [&] { fs::resize_file(Path("score5.gwk"), kHuge); }, true}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    fs::create_directory(Path("precious"));
    Store({{"precious/file", "kept"}});
    row.put();
    Snapshot expected = Files();
    for (const auto& [file, bytes] : row.changes ? after_ : Snapshot()) {
      std::string& now = expected[file];
      now.replace(0, now.size() == kHuge ? bytes.size() : now.size(), bytes);
    }
    expected.erase("files.preparing/");
    GetParam()();
    EXPECT_EQ(Files(), expected);
    for (const auto& entry : fs::directory_iterator(folder_))
      fs::remove_all(entry.path());
    Store(before_);
  }
}

}  // namespace
}  // namespace glimmerfall
