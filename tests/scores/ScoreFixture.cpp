// SPDX-License-Identifier: MIT
#include "tests/scores/ScoreFixture.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/platform/Twin.h"

namespace fs = std::filesystem;

namespace glimmerfall {

Snapshot FilesOf(GameMode mode, const Table& table) {
  const std::string suffix = std::vector<std::string>{"", "fr", "re", "ma"}[mode];
  Snapshot files;
  for (std::size_t i = 0; i < table.scores.size(); ++i) {
    const std::string end = suffix + std::to_string(i + 1) + ".gwk";
    files["score" + end] = ScoreBytes(table.scores[i]);
    files["scorename" + end] = table.names[i] + "\r\n";
  }
  return files;
}

Snapshot SampleFiles() {
  Snapshot files;
  for (const Mode& row : kModes) {
    Table table;
    for (int place = 1; place <= kPlaces; ++place) {
      table.scores.push_back(1000.0 * (row.mode + 1) - 10 * place);
      table.names.push_back(row.name + std::to_string(place));
    }
    files.merge(FilesOf(row.mode, table));
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
  twin::devices.folder = folder_;
  ResetGameState();
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

void ScoreTest::Store(const Snapshot& files) const {
  for (const auto& [file, bytes] : files)
    std::ofstream(Path(file), std::ios::binary) << bytes;
}

}  // namespace glimmerfall
