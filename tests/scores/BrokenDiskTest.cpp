// SPDX-License-Identifier: MIT
// A full disk, a folder that can't be written, and the end of the program in the midst of a write:
// every file is the old one or the new one, and the next write works.
#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "scores/basMiscelFunctions.h"
#include "scores/basScoreTables.h"
#include "tests/scores/FaultyFiles.h"
#include "tests/scores/ScoreFixture.h"

namespace fs = std::filesystem;

namespace glimmerfall {
namespace {

constexpr uid_t kNobody = 65534;

class BrokenDiskTest : public ScoreTest {
 protected:
  BrokenDiskTest() { Store(before_); }

  static void EnterBest() {
    score = 5000;
    CheckHighScore();
    EnterHighScore("Ann");
  }

  const Snapshot before_ = FilesOf(modeNormal, SampleTable(modeNormal));
};

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

TEST_F(BrokenDiskTest, AWriteThatBreaksOffAnywhereLeavesWholeFiles) {
  constexpr int kChanges = 50;  // ten names of four changes each, and ten scores
  EnterBest();
  const Snapshot after = Files();
  ResetScoreTables();
  const Snapshot defaults = Files();
  for (const faulty::Fault fault : {faulty::Fault::Kill, faulty::Fault::Fail}) {
    const bool kill = fault == faulty::Fault::Kill;
    for (int n = 1; n <= kChanges + 1; ++n) {
      SCOPED_TRACE((kill ? "killed at change " : "full from change ") + std::to_string(n));
      for (const auto& [file, bytes] : Files())
        fs::remove(Path(file));
      Store(before_);
      const int exitCode = RunInChild([&] {
        faulty::Arm(fault, n);
        EnterBest();
      });
      EXPECT_EQ(exitCode, kill && n <= kChanges ? faulty::kKilled : 0);
      Snapshot now = Files();
      EXPECT_TRUE(n <= kChanges || now == after);
      for (const auto& [file, bytes] : before_)
        EXPECT_TRUE(now[file] == bytes || now[file] == after.at(file)) << file;
      for (const auto& [file, bytes] : now)
        EXPECT_TRUE(before_.contains(file) || (kill && file.ends_with(".tmp"))) << file;
      ResetScoreTables();
      EXPECT_EQ(Files(), defaults);
    }
  }
}

TEST_F(BrokenDiskTest, AReadOnlyFolderShowsItsScoresAndKeepsThem) {
  for (const auto& [file, bytes] : before_)
    fs::permissions(Path(file), fs::perms(0444));
  fs::permissions(folder_, fs::perms(0555));
  EXPECT_EQ(RunInChild([] {
              BecomeNobody();
              ReadScores(modeNormal);
              EXPECT_EQ(TableLine(modeNormal, 1), " 1 -- Player 01 -- 990");
              EXPECT_EQ(ReadScores(modeFrantic)[1], 0) << "no file can be created";
              EnterBest();
              ResetScoreTables();
            }),
            0);
  EXPECT_EQ(Files(), before_);
}

TEST_F(BrokenDiskTest, WhateverLiesInTheTemporaryFilesPlaceIsHarmless) {
  Snapshot expected = before_;
  Store("precious", "kept");
  fs::create_symlink("precious", Path("scorename2.gwk.tmp"));
  fs::create_directory(Path("scorename3.gwk.tmp"));
  WriteTextFile("Ann", NameFile(modeNormal, 2));
  WriteTextFile("Ann", NameFile(modeNormal, 3));
  expected["precious"] = "kept";
  expected["scorename2.gwk"] = "Ann\r\n";
  EXPECT_EQ(Files(), expected);
}

}  // namespace
}  // namespace glimmerfall
