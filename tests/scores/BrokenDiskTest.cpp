// SPDX-License-Identifier: MIT
// A kill, a full disk, a folder that can't be written, and whatever else may lie in it: an entry or
// a reset changes all of its files or none.
#include <fcntl.h>
#include <grp.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

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
    StoreTables();
    Store("score7.gwk", ScoreBytes(930) + "tail");
    before_ = Files();
    GetParam()();
    after_ = Files();
    log_ = faulty::Log();
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

  Snapshot before_;
  Snapshot after_;
  std::string log_;
};
INSTANTIATE_TEST_SUITE_P(EntryAndReset, BrokenDisk, testing::Values(&EnterBest, &ResetScoreTables));

TEST_P(BrokenDisk, APowerCutFindsEachStepOnTheDiskBeforeTheNext) {
  EXPECT_EQ(log_, "write sync move sync move sync ");
}

TEST_P(BrokenDisk, AKillAtAnyCallLeavesTheOldFilesOrTheNew) {
  int kept = 0;
  int call = 0;
  const auto change = [&] {
    faulty::LeaveRoom(call, faulty::Ending::Kills);
    GetParam()();
  };
  for (; RunInChild(change) == faulty::kKilled; ++call)
    kept += AreNewAfterAStart() ? 0 : 1;
  EXPECT_TRUE(AreNewAfterAStart());
  EXPECT_GT(kept, kPlaces);
  EXPECT_GT(call - kept, kPlaces);
}

TEST_P(BrokenDisk, ADiskThatFillsAtAnyByteLeavesTheOldFilesOrTheNew) {
  long room = 0;
  const auto changeInRoom = [&] {
    faulty::LeaveRoom(room++);
    GetParam()();
    faulty::Reset();
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
    Store("score10.gwk", before_["score10.gwk"] = "");
    for (const auto& [file, bytes] : before_)
      fs::permissions(Path(file), fs::perms(file == "score10.gwk" ? row.one : row.all));
    fs::permissions(folder_, fs::perms(0555));
    EXPECT_EQ(RunInChild([&] {
                BecomeNobody();
                EXPECT_EQ(ReadScores(modeNormal)[1], 990);
                faulty::LeaveRoom(row.room);
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
    Store("precious/file", "kept");
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
