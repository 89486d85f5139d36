// SPDX-License-Identifier: MIT
#include "scores/basMiscelFunctions.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string_view>

#include "platform/Events.h"
#include "rules/state/basWholeNumber.h"
#include "scores/CodePage.h"
#include "scores/basScoreTables.h"

namespace glimmerfall {

namespace {

constexpr char kDefaultName[] = "Norvane Games";
constexpr float64 kDefaultScore = 100;

constexpr char kSeparator[] = " -- ";

constexpr char kLineEnd[] = "\r\n";
constexpr char kTemporaryExtension[] = ".tmp";
constexpr mode_t kNewFileMode = 0666;  // less the user's mask

// A pipe or a device in a file's place must not hold the game up.
constexpr int kOpenFlags = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

using ScoreBytes = std::array<unsigned char, sizeof(float64)>;

class File {
 public:
  File(const std::string& path, int flags)
      : descriptor_(open(path.c_str(), flags | kOpenFlags, kNewFileMode)) {}
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() { Close(); }

  bool IsOpen() const { return descriptor_ >= 0; }
  int Descriptor() const { return descriptor_; }
  bool Close() {
    const bool closed = descriptor_ < 0 || close(descriptor_) == 0;
    descriptor_ = -1;
    return closed;
  }

 private:
  int descriptor_;
};

bool WriteAll(const File& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file.Descriptor(), bytes.data(), bytes.size());
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Yields whether all of `bytes` has reached the disk.
bool WriteNewFile(const std::string& path, std::string_view bytes) {
  File file(path, O_WRONLY | O_CREAT | O_EXCL);
  return file.IsOpen() && WriteAll(file, bytes) && fsync(file.Descriptor()) == 0 && file.Close();
}

// The end of the file at `path`, long enough for the longest line and its line end.
std::optional<std::string> ReadTail(const std::string& path) {
  const File file(path, O_RDONLY);
  struct stat status;
  if (!file.IsOpen() || fstat(file.Descriptor(), &status) != 0) return std::nullopt;
  if (!S_ISREG(status.st_mode)) return std::nullopt;
  const off_t length = std::min<off_t>(status.st_size, kLongestLine + 2);
  std::string tail(static_cast<std::size_t>(length), '\0');
  const ssize_t got = pread(file.Descriptor(), tail.data(), tail.size(), status.st_size - length);
  if (got < 0) return std::nullopt;
  tail.resize(static_cast<std::size_t>(got));
  return tail;
}

std::string_view LastLine(std::string_view text) {
  if (text.ends_with(kLineEnd)) {
    text.remove_suffix(2);
  } else if (text.ends_with('\r') || text.ends_with('\n')) {
    text.remove_suffix(1);
  }
  const std::size_t lineEnd = text.find_last_of(kLineEnd);
  if (lineEnd != std::string_view::npos) text.remove_prefix(lineEnd + 1);
  if (text.size() > kLongestLine) text.remove_prefix(text.size() - kLongestLine);
  return text;
}

float64 DecodeScore(const ScoreBytes& bytes) {
  std::uint64_t word = 0;
  for (std::size_t i = bytes.size(); i-- > 0;)
    word = word << 8 | bytes[i];
  return std::bit_cast<float64>(word);
}

ScoreBytes EncodeScore(float64 value) {
  auto word = std::bit_cast<std::uint64_t>(value);
  ScoreBytes bytes;
  for (unsigned char& byte : bytes) {
    byte = static_cast<unsigned char>(word);
    word >>= 8;
  }
  return bytes;
}

std::optional<ScoreBytes> ReadScoreBytes(const std::string& path, int flags) {
  const File file(path, flags);
  if (!file.IsOpen()) return std::nullopt;
  ScoreBytes bytes;
  const ssize_t got = pread(file.Descriptor(), bytes.data(), bytes.size(), 0);
  return got == static_cast<ssize_t>(bytes.size()) ? bytes : ScoreBytes{};
}

// The names of a table by place; element 0 holds nothing.
using NameList = std::array<std::string, kPlaces + 1>;

template <typename List>
auto& At(List& list, int place) {
  return list[static_cast<std::size_t>(place)];
}

NameList ReadNames(GameMode mode) {
  NameList names;
  for (int place = 1; place <= kPlaces; ++place)
    At(names, place) = ReadLastLine(NameFile(mode, place));
  return names;
}

void WriteScores(GameMode mode, const ScoreTable& scores) {
  for (int place = 1; place <= kPlaces; ++place)
    WriteScore(ScoreFile(mode, place), At(scores, place));
}

ScoreTable WithScoreAt(ScoreTable scores, int rank, float64 value) {
  std::copy_backward(&At(scores, rank), &At(scores, kPlaces), scores.end());
  At(scores, rank) = value;
  return scores;
}

// A line end that was pasted into a name would hide what stands before it.
std::string StoredName(const std::string& typed) {
  std::string name = FirstCharacters(typed, kNameCharacters);
  for (const char lineEnd : {'\r', '\n'})
    std::replace(name.begin(), name.end(), lineEnd, ' ');
  return name;
}

}  // namespace

void WriteTextFile(const std::string& text, const std::string& path) {
  const std::string temporary = path + kTemporaryExtension;
  // One that was left when the program was killed in the midst of a write.
  unlink(temporary.c_str());
  if (WriteNewFile(temporary, ToCodePage(text) + kLineEnd) &&
      std::rename(temporary.c_str(), path.c_str()) == 0)
    return;
  unlink(temporary.c_str());
}

std::string ReadLastLine(const std::string& path) {
  const std::optional<std::string> tail = ReadTail(path);
  if (!tail) return kMissingFile + path;
  platform::LetEventsRun();
  return FromCodePage(LastLine(*tail));
}

float64 ReadScore(const std::string& path) {
  std::optional<ScoreBytes> bytes = ReadScoreBytes(path, O_RDWR | O_CREAT);
  if (!bytes) bytes = ReadScoreBytes(path, O_RDONLY);
  return bytes ? DecodeScore(*bytes) : 0;
}

void WriteScore(const std::string& path, float64 value) {
  const File file(path, O_RDWR | O_CREAT);
  if (!file.IsOpen()) return;
  const ScoreBytes bytes = EncodeScore(value);
  // A failure is nobody's business: the old score stays.
  [[maybe_unused]] const ssize_t written = pwrite(file.Descriptor(), bytes.data(), bytes.size(), 0);
}

const ScoreTable& ReadScores(GameMode mode) {
  ScoreTable& scores = WorkingCopy(mode);
  for (int place = 1; place <= kPlaces; ++place)
    At(scores, place) = ReadScore(ScoreFile(mode, place));
  return scores;
}

std::string TableLine(GameMode mode, int place) {
  const std::string number = std::to_string(place);
  const std::string name = ReadLastLine(NameFile(mode, place));
  return (place < 10 ? " " : "") + number + kSeparator + name + kSeparator +
         WholeNumber(At(WorkingCopy(mode), place));
}

void CheckHighScore() {
  const ScoreTable& table = ReadScores(gameMode);
  newScoreRank = kNoRank;
  for (int16 place = 1; place <= kPlaces; ++place)
    if (score > table[static_cast<std::size_t>(place)])
      newScoreRank = std::min(newScoreRank, place);
  if (newScoreRank != kNoRank) nameWanted = true;
}

void EnterHighScore(const std::string& name) {
  const GameMode mode = gameMode;
  const int rank = newScoreRank;
  if (rank < 1 || rank > kPlaces) return;
  const ScoreTable scores = WithScoreAt(ReadScores(mode), rank, score);
  const NameList names = ReadNames(mode);
  for (int place = rank; place < kPlaces; ++place)
    WriteTextFile(At(names, place), NameFile(mode, place + 1));
  WriteTextFile(StoredName(name), NameFile(mode, rank));
  // Only now: the high-score window may have read the old scores while events ran.
  WorkingCopy(mode) = scores;
  WriteScores(mode, scores);
}

void ResetScoreTables() {
  for (const GameMode mode : {modeNormal, modeFrantic, modeRelaxing, modeMarathon}) {
    for (int place = 1; place <= kPlaces; ++place)
      WriteTextFile(kDefaultName, NameFile(mode, place));
    for (int place = 1; place <= kPlaces; ++place)
      WriteScore(ScoreFile(mode, place), kDefaultScore);
  }
}

}  // namespace glimmerfall
