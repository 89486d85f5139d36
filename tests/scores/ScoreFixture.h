// SPDX-License-Identifier: MIT
// A program's folder of a test's own, and what lies in it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "rules/basGameState.h"

/// Name and bytes of each file of a folder.
using Snapshot = std::map<std::string, std::string>;

class ScoreTest : public testing::Test {
 protected:
  /// A fresh game in an empty folder.
  ScoreTest();
  ~ScoreTest() override;

  std::string Path(const std::string& file) const { return folder_ + '/' + file; }
  /// Replaces the file by exactly these bytes.
  void Store(const std::string& file, const std::string& bytes) const;
  std::string Bytes(const std::string& file) const { return BytesOf(Path(file)); }
  Snapshot Files() const;
  const std::string& Folder() const { return folder_; }

  static std::string BytesOf(const std::string& path);

 private:
  std::string folder_;
};

/// The 8 bytes of a score file.
std::string ScoreBytes(double value);

/// Ten scores and ten names, as a player would see them.
struct Table {
  std::vector<double> scores;
  std::vector<std::string> names;
};

/// Prefixes of a mode's files.
struct Prefixes {
  glimmerfall::GameMode mode;
  std::string score;
  std::string name;
};
extern const std::vector<Prefixes> kAllPrefixes;

/// What the files of `table` hold.
Snapshot FilesOf(const Table& table, const Prefixes& prefixes);

/// Runs `body` in a child process, whose own checks count, and answers its exit code.
int RunInChild(const std::function<void()>& body);
