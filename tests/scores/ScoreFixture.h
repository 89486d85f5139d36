// SPDX-License-Identifier: MIT
// A program's folder of a test's own, and what lies in it.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "rules/state/basModes.h"
#include "tests/platform/ScratchFolder.h"

namespace glimmerfall {

/// Name and bytes of each file in a folder and below it; a folder's name ends in a slash.
using Snapshot = std::map<std::string, std::string>;

/// Ten scores and ten names, as a player would see them.
struct Table {
  std::vector<double> scores;
  std::vector<std::string> names;
};

/// What the files of a mode with this table hold.
Snapshot FilesOf(GameMode mode, const Table& table);

/// Tables of falling scores and numbered names in all modes; no two modes have one in common.
Snapshot SampleFiles();

/// The 8 bytes of a score file.
std::string ScoreBytes(double value);

class ScoreTest : public testing::Test {
 protected:
  /// A fresh game in an empty folder.
  ScoreTest();

  std::string Path(const std::string& file) const { return scratch_.Path(file); }
  std::string Bytes(const std::string& file) const { return Files()[file]; }
  Snapshot Files() const;
  /// Replaces files by exactly these.
  void Store(const Snapshot& files) const;

  const ScratchFolder scratch_;
  const std::string& folder_ = scratch_.Path();
};

}  // namespace glimmerfall
