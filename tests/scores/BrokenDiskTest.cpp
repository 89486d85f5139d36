// SPDX-License-Identifier: MIT
// A kill, a full disk, calls that fail, a folder that can't be written, and whatever else may lie
// in it: an entry or a reset changes all of its files or none.
#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <functional>

#include "scores/basMiscelFunctions.h"
#include "tests/scores/FaultyFiles.h"
#include "tests/scores/ScoreFixture.h"

namespace fs = std::filesystem;

namespace glimmerfall {
namespace {

constexpr uid_t kNobody = 65534;
constexpr std::size_t kHuge = 3 << 20;

void EnterBest() {
  score = 5000;
  newScoreRank = 1;
  EnterHighScore("Ann");
}

class BrokenDiskTest : public ScoreTest, public testing::WithParamInterface<void (*)()> {
 protected:
  BrokenDiskTest() {
    for (const Mode& row : kModes)
      Store(FilesOf(row.mode, SampleTable(row.mode)));
    Store("score7.gwk", ScoreBytes(930) + "tail");
    before_ = Files();
    Change();
    after_ = Files();
    Store(before_);
  }

  static void Change() { GetParam()(); }

  // After the next start: whether the files are the old ones. If not they must be the new ones, and
  // are put back.
  bool IsOldNotNew() const {
    ReadScores(modeNormal);
    const Snapshot now = Files();
    if (now == before_) return true;
    EXPECT_EQ(now, after_);
    Store(before_);
    return false;
  }

  Snapshot before_;
  Snapshot after_;
};
INSTANTIATE_TEST_SUITE_P(EntryAndReset, BrokenDiskTest,
                         testing::Values(&EnterBest, &ResetScoreTables));

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

// Runs `body` in a child process that is killed right before its n-th system call. False if it made
// fewer.
bool KilledAtCall(int n, void (*body)()) {
  const pid_t child = fork();
  if (child == 0) {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(1);
    raise(SIGSTOP);
    body();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  // It stops at the beginning and at the end of each call.
  for (int stop = 1; stop < 2 * n && WIFSTOPPED(status); ++stop) {
    ptrace(PTRACE_SYSCALL, child, nullptr, nullptr);
    waitpid(child, &status, 0);
  }
  if (!WIFSTOPPED(status)) return false;
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return true;
}

// Lets the process write no longer where the permissions forbid it, even if it is root's.
void BecomeNobody() {
  if (geteuid() != 0) return;
  ASSERT_EQ(setgroups(0, nullptr), 0);
  ASSERT_EQ(setgid(kNobody), 0);
  ASSERT_EQ(setuid(kNobody), 0);
}

TEST_P(BrokenDiskTest, AKillAtAnySystemCallLeavesTheOldFilesOrTheNew) {
  int kept = 0;
  int call = 1;
  for (; KilledAtCall(call, &Change); ++call)
    kept += IsOldNotNew() ? 1 : 0;
  EXPECT_GT(kept, 100);
  EXPECT_GT(call - kept, 30);
}

TEST_P(BrokenDiskTest, ADiskThatFillsAtAnyByteLeavesTheOldFilesOrTheNew) {
  long room = 0;
  for (; Files() == before_; ++room) {
    faulty::LeaveRoom(room);
    Change();
    faulty::Reset();
  }
  EXPECT_GT(room, 100);
  for (; Files() != after_; ++room) {
    EXPECT_FALSE(IsOldNotNew()) << "left behind with room for " << room;
    faulty::LeaveRoom(room);
    Change();
    faulty::Reset();
  }
}

TEST_P(BrokenDiskTest, InAFolderThatCanNotBeWrittenAllFilesAreWrittenInPlaceOrNone) {
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
    Store("score10.gwk", before_["score10.gwk"] = "");
    for (const auto& [file, bytes] : before_)
      fs::permissions(Path(file), fs::perms(file == "score10.gwk" ? row.one : row.all));
    fs::permissions(folder_, fs::perms(0555));
    EXPECT_EQ(RunInChild([&] {
                BecomeNobody();
                EXPECT_EQ(ReadScores(modeNormal)[1], 990);
                faulty::LeaveRoom(row.room);
                Change();
              }),
              0);
    EXPECT_EQ(Files(), row.changes ? after_ : before_);
  }
}

TEST_P(BrokenDiskTest, AChangeThatAnotherProgramIsAtIsLeftToIt) {
  const int folder = open(folder_.c_str(), O_RDONLY);
  ASSERT_EQ(flock(folder, LOCK_EX), 0);
  fs::create_directory(Path("files.preparing"));
  ReadScores(modeNormal);
  EXPECT_TRUE(fs::exists(Path("files.preparing")));
  close(folder);
  EXPECT_TRUE(IsOldNotNew());
}

// No link is followed, and no folder is replaced.
TEST_P(BrokenDiskTest, WhateverLiesInAFilesPlaceIsHarmless) {
  struct Row {
    const char* what;
    std::function<void()> put;
    bool changes;
  };
  const std::vector<Row> rows = {
      {"a link in the temporary files' place",
       [&] { fs::create_directory_symlink("precious", Path("files.preparing")); }, true},
      {"a link in the ready files' place",
       [&] { fs::create_directory_symlink("precious", Path("files.prepared")); }, false},
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
    Store("precious/file", "kept");
    row.put();
    Snapshot expected = Files();
    for (const auto& [file, bytes] : row.changes ? after_ : Snapshot()) {
      std::string& now = expected[file];
      now.replace(0, now.size() == kHuge ? bytes.size() : now.size(), bytes);
    }
    std::erase_if(expected, [](const auto& e) { return e.first.starts_with("files.preparing"); });
    Change();
    EXPECT_EQ(Files(), expected);
    for (const auto& entry : fs::directory_iterator(folder_))
      fs::remove_all(entry.path());
    Store(before_);
  }
}

}  // namespace
}  // namespace glimmerfall
