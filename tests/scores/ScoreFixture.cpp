// SPDX-License-Identifier: MIT
#include "tests/scores/ScoreFixture.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/platform/Twin.h"
#include "tests/scores/FaultyFiles.h"

namespace fs = std::filesystem;

namespace glimmerfall {

Table SampleTable(GameMode mode) {
  Table table;
  for (int place = 1; place <= kPlaces; ++place) {
    table.scores.push_back(1000.0 * (mode + 1) - 10 * place);
    table.names.push_back("Player " + std::to_string(mode) + std::to_string(place));
  }
  return table;
}

Snapshot FilesOf(GameMode mode, const Table& table) {
  static const std::vector<std::string> kSuffixes = {"", "fr", "re", "ma"};
  const std::string& suffix = kSuffixes.at(static_cast<std::size_t>(mode));
  Snapshot files;
  for (std::size_t i = 0; i < table.scores.size(); ++i) {
    const std::string end = suffix + std::to_string(i + 1) + ".gwk";
    files["score" + end] = ScoreBytes(table.scores[i]);
    files["scorename" + end] = table.names[i] + "\r\n";
  }
  return files;
}

std::string ScoreBytes(double value) {
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

ScoreTest::ScoreTest() {
  twin::Reset();
  twin::SetProgramFolder(folder_);
  ResetGameState();
  faulty::Reset();
}

Snapshot ScoreTest::Files() const {
  Snapshot files;
  for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
    const std::string name = entry.path().lexically_relative(folder_);
    if (entry.is_directory()) files[name + '/'];
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    files[name].assign(std::istreambuf_iterator<char>(file), {});
  }
  return files;
}

void ScoreTest::Store(const std::string& file, const std::string& bytes) const {
  std::ofstream(Path(file), std::ios::binary) << bytes;
}

void ScoreTest::Store(const Snapshot& files) const {
  for (const auto& [file, bytes] : files)
    Store(file, bytes);
}

void ScoreTest::StoreTables() const {
  for (const Mode& row : kModes)
    Store(FilesOf(row.mode, SampleTable(row.mode)));
}

}  // namespace glimmerfall
