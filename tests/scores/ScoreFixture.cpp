// SPDX-License-Identifier: MIT
#include "tests/scores/ScoreFixture.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

#include "scores/basMiscelFunctions.h"
#include "tests/platform/Twin.h"
#include "tests/scores/FaultyFiles.h"

namespace fs = std::filesystem;

const std::vector<Prefixes> kAllPrefixes = {
    {glimmerfall::modeNormal, "score", "scorename"},
    {glimmerfall::modeFrantic, "scorefr", "scorenamefr"},
    {glimmerfall::modeRelaxing, "scorere", "scorenamere"},
    {glimmerfall::modeMarathon, "scorema", "scorenamema"},
};

namespace {

// In memory where that can be had: on a disk, the thousands of replaced files take half a minute.
std::string ScratchPattern() {
  const fs::path memory = "/dev/shm";
  return (fs::is_directory(memory) ? memory : fs::path(testing::TempDir())) / "glimmerfall-XXXXXX";
}

}  // namespace

ScoreTest::ScoreTest() {
  std::string pattern = ScratchPattern();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no scratch folder");
  folder_ = pattern;
  twin::Reset();
  twin::SetProgramFolder(folder_);
  glimmerfall::ResetGameState();
  glimmerfall::showNameWindow = nullptr;
  faulty::Reset();
}

ScoreTest::~ScoreTest() {
  faulty::Reset();
  fs::permissions(folder_, fs::perms::owner_all);
  fs::remove_all(folder_);
}

void ScoreTest::Store(const std::string& file, const std::string& bytes) const {
  std::ofstream(Path(file), std::ios::binary | std::ios::trunc) << bytes;
}

Snapshot ScoreTest::Files() const {
  Snapshot files;
  for (const auto& entry : fs::directory_iterator(folder_))
    files[entry.path().filename()] = BytesOf(entry.path());
  return files;
}

std::string ScoreTest::BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string ScoreBytes(double value) {
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

Snapshot FilesOf(const Table& table, const Prefixes& prefixes) {
  Snapshot files;
  for (std::size_t i = 0; i < table.scores.size(); ++i) {
    const std::string end = std::to_string(i + 1) + ".gwk";
    files[prefixes.score + end] = ScoreBytes(table.scores[i]);
    files[prefixes.name + end] = table.names[i] + "\r\n";
  }
  return files;
}

int RunInChild(const std::function<void()>& body) {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    try {
      body();
    } catch (const std::exception& error) {
      ADD_FAILURE() << error.what();
    }
    std::fflush(nullptr);
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
