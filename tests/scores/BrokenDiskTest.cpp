// SPDX-License-Identifier: MIT
// A full disk, a folder that can't be written, and the end of the program in the midst of a write:
// every file is the old one or the new one, and the next entry works.
#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <fstream>

#include "platform/Program.h"
#include "scores/basMiscelFunctions.h"
#include "scores/basScoreTables.h"
#include "tests/platform/Twin.h"
#include "tests/scores/FaultyFiles.h"
#include "tests/scores/ScoreFixture.h"

namespace fs = std::filesystem;

namespace glimmerfall {
namespace {

constexpr uid_t kNobody = 65534;

class BrokenDiskTest : public ScoreTest {
 protected:
  BrokenDiskTest() { before_ = StoreTable(); }

  Snapshot StoreTable() const {
    Table table;
    for (int place = 1; place <= kPlaces; ++place) {
      table.scores.push_back(1000 - 10.0 * place);
      table.names.push_back("Player " + std::to_string(place));
    }
    Snapshot files = FilesOf(table, kAllPrefixes[0]);
    for (const auto& [file, bytes] : files)
      std::ofstream(platform::ProgramFolder() + '/' + file, std::ios::binary) << bytes;
    return files;
  }

  static void EnterBest() {
    score = 2000;
    CheckHighScore();
    EnterHighScore("Ann");
  }

  // What an entry makes of the table when nothing is in its way.
  Snapshot After() {
    EXPECT_EQ(RunInChild(EnterBest), 0);
    Snapshot after = Files();
    Restore();
    return after;
  }

  void Restore() {
    for (const auto& [file, bytes] : Files())
      fs::remove(Path(file));
    for (const auto& [file, bytes] : before_)
      Store(file, bytes);
  }

  // Every file is one of both; what else lies there can only be a temporary one.
  void ExpectOldOrNew(const Snapshot& after) const {
    const Snapshot now = Files();
    for (const auto& [file, bytes] : before_) {
      ASSERT_TRUE(now.contains(file)) << file;
      EXPECT_TRUE(now.at(file) == bytes || now.at(file) == after.at(file)) << file;
    }
    for (const auto& [file, bytes] : now)
      EXPECT_TRUE(before_.contains(file) || file.ends_with(".tmp")) << file;
  }

  Snapshot before_;
};

// Lets the process write no longer where the permissions forbid it, even if it is root's.
void BecomeNobody() {
  if (geteuid() != 0) return;
  ASSERT_EQ(setgroups(0, nullptr), 0);
  ASSERT_EQ(setgid(kNobody), 0);
  ASSERT_EQ(setuid(kNobody), 0);
}

// Makes the process the root of a name space of its own, in which it may mount.
bool BecomeRootOfOwnSpace() {
  const uid_t user = geteuid();
  const gid_t group = getegid();
  if (unshare(CLONE_NEWNS | CLONE_NEWUSER) != 0) return false;
  std::ofstream("/proc/self/setgroups") << "deny";
  std::ofstream("/proc/self/uid_map") << "0 " << user << " 1";
  std::ofstream("/proc/self/gid_map") << "0 " << group << " 1";
  return true;
}

// A file system of 32 kB at `folder`, for this process alone. False where the system forbids it.
bool MountSmallDisk(const std::string& folder) {
  return (unshare(CLONE_NEWNS) == 0 || BecomeRootOfOwnSpace()) &&
         mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("small", folder.c_str(), "tmpfs", 0, "size=32k") == 0;
}

TEST_F(BrokenDiskTest, AKillBetweenAnyTwoWritesLeavesWholeFiles) {
  const Snapshot after = After();
  int kills = 0;
  for (;; ++kills) {
    SCOPED_TRACE("killed at change " + std::to_string(kills + 1));
    Restore();
    const int exitCode = RunInChild([&] {
      faulty::Arm(faulty::Fault::Kill, kills + 1);
      EnterBest();
    });
    ExpectOldOrNew(after);
    if (exitCode != faulty::kKilled) {
      EXPECT_EQ(exitCode, 0);
      break;
    }
    ResetScoreTables();
    EXPECT_EQ(Bytes("scorename1.gwk"), "Norvane Games\r\n");
    EXPECT_FALSE(fs::exists(Path("scorename1.gwk.tmp")));
    EXPECT_FALSE(fs::exists(Path("scorename10.gwk.tmp")));
  }
  EXPECT_EQ(Files(), after);
  // Ten names of five changes each, and ten scores.
  EXPECT_EQ(kills, 60);
}

TEST_F(BrokenDiskTest, AChangeThatFailsLeavesWholeFilesAndNoOthers) {
  const Snapshot after = After();
  for (int n = 1; n <= 60; ++n) {
    SCOPED_TRACE("full from change " + std::to_string(n) + " on");
    Restore();
    faulty::Arm(faulty::Fault::Fail, n);
    EnterBest();
    faulty::Reset();
    ExpectOldOrNew(after);
    EXPECT_EQ(Files().size(), before_.size());
  }
}

TEST_F(BrokenDiskTest, AFileThatMayNotGrowKeepsItsOldName) {
  EXPECT_EQ(RunInChild([] {
              constexpr rlimit kFourBytes = {4, 4};
              std::signal(SIGXFSZ, SIG_IGN);
              ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &kFourBytes), 0);
              WriteTextFile("Ann", NameFile(modeNormal, 1));
            }),
            0);
  EXPECT_EQ(Files(), before_);
}

TEST_F(BrokenDiskTest, AFullDiskLosesNothing) {
  constexpr int kNoSmallDisk = 3;
  const int exitCode = RunInChild([&] {
    if (!MountSmallDisk(Folder())) _exit(kNoSmallDisk);
    StoreTable();
    std::ofstream(Path("filler")) << std::string(1 << 16, 'x');
    Snapshot full = Files();
    ASSERT_LT(full.at("filler").size(), std::size_t{1} << 16) << "the disk is not full";
    EnterBest();
    // The bytes of a score have their room already; a name would need a file of its own.
    for (const auto& [file, bytes] : Files())
      EXPECT_TRUE(!file.starts_with("scorename") || bytes == full.at(file)) << file;
    EXPECT_EQ(Files().size(), full.size());
    EXPECT_EQ(Bytes("score1.gwk"), ScoreBytes(2000));
    gameMode = modeFrantic;
    EnterBest();
    EXPECT_EQ(newScoreRank, 1);
    EXPECT_EQ(Bytes("scorefr1.gwk"), "");
    EXPECT_FALSE(fs::exists(Path("scorenamefr1.gwk")));
  });
  ASSERT_NE(exitCode, kNoSmallDisk)
      << "no small disk can be mounted: root or user namespaces needed";
  EXPECT_EQ(exitCode, 0);
}

TEST_F(BrokenDiskTest, AReadOnlyFolderShowsItsScoresAndKeepsThem) {
  for (const auto& [file, bytes] : before_)
    fs::permissions(Path(file), fs::perms(0444));
  fs::permissions(Folder(), fs::perms(0555));
  EXPECT_EQ(RunInChild([&] {
              BecomeNobody();
              EXPECT_EQ(ReadScores(modeNormal)[1], 990);
              EXPECT_EQ(TableLine(modeNormal, 1), " 1 -- Player 1 -- 990");
              EXPECT_EQ(ReadScores(modeFrantic)[1], 0) << "no file can be created";
              EnterBest();
              gameMode = modeFrantic;
              EnterBest();
              ResetScoreTables();
            }),
            0);
  fs::permissions(Folder(), fs::perms::owner_all);
  EXPECT_EQ(Files(), before_);
}

TEST_F(BrokenDiskTest, AFolderThatIsGoneEndsNothing) {
  Store("file", "");
  for (const std::string& folder : {Path("file"), Path("missing")}) {
    twin::SetProgramFolder(folder);
    EnterBest();
    EXPECT_EQ(newScoreRank, 1);
    ResetScoreTables();
    EXPECT_EQ(ReadScores(modeNormal)[1], 0);
    EXPECT_EQ(TableLine(modeNormal, 1),
              " 1 -- file missing or corrupt - " + folder + "/scorename1.gwk -- 0");
  }
  EXPECT_FALSE(fs::exists(Path("missing")));
}

TEST_F(BrokenDiskTest, WhateverLiesInTheTemporaryFilesPlaceIsHarmless) {
  Store("scorename1.gwk.tmp", "half of a na");
  Store("precious", "kept");
  fs::create_symlink("precious", Path("scorename2.gwk.tmp"));
  fs::create_directory(Path("scorename3.gwk.tmp"));
  for (int place = 1; place <= 3; ++place)
    WriteTextFile("Ann", NameFile(modeNormal, place));
  EXPECT_EQ(Bytes("scorename1.gwk"), "Ann\r\n");
  EXPECT_EQ(Bytes("scorename2.gwk"), "Ann\r\n");
  EXPECT_EQ(Bytes("precious"), "kept");
  EXPECT_EQ(Bytes("scorename3.gwk"), before_.at("scorename3.gwk"));
  EXPECT_FALSE(fs::exists(Path("scorename1.gwk.tmp")));
  EXPECT_FALSE(fs::exists(Path("scorename2.gwk.tmp")));
}

}  // namespace
}  // namespace glimmerfall
