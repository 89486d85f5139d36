// SPDX-License-Identifier: MIT
#include "platform/desktop/WaveFile.h"

#include <sndfile.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>

#include "platform/Error.h"

namespace platform::desktop {

namespace {

constexpr std::int32_t kLongestSeconds = 60;
constexpr std::int32_t kLowestRate = 1000;  // frames a second
constexpr std::int32_t kHighestRate = 192000;
constexpr std::uintmax_t kMostBytes =  // a minute of the widest samples there are, and a head
    std::uintmax_t{kLongestSeconds} * kHighestRate * 2 * sizeof(double) + (1 << 20);
constexpr float kSampleScale = 32768.0F;
constexpr float kHighestSample = 32767.0F;

constexpr std::uint64_t kRiffHeaderBytes = 12;
constexpr std::uint64_t kChunkHeaderBytes = 8;

[[noreturn]] void Refuse(const std::string& path, const std::string& reason) {
  throw Error("The sound file " + path + " cannot be played: " + reason + ".");
}

std::uint32_t LittleEndian(const char* bytes) {
  std::uint32_t value = 0;
  for (int i = 3; i >= 0; --i)
    value = value << 8 | static_cast<unsigned char>(bytes[i]);
  return value;
}

void PutLittleEndian(char* bytes, std::uint64_t value) {
  for (int i = 0; i < 4; ++i)
    bytes[i] = static_cast<char>(value >> 8 * i);
}

std::string Contents(const std::string& path) {
  std::error_code failed;
  if (!std::filesystem::is_regular_file(path, failed)) Refuse(path, "there is no such file");
  if (std::filesystem::file_size(path) > kMostBytes) Refuse(path, "it is longer than a minute");
  std::ifstream file(path, std::ios::binary);
  if (!file) Refuse(path, "it cannot be opened");
  std::string bytes(std::filesystem::file_size(path), '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file) Refuse(path, "it cannot be read");
  return bytes;
}

// What a writer that cannot go back to the head of its file, as in a pipe, leaves there as a size.
bool IsUnknown(std::uint64_t bytes) {
  return bytes == 0 || bytes == 0xFFFFFFFF;
}

// Samples of an unknown size go on to the end of the file, unless its head tells that the file is
// cut off; their size is then filled in. `start` is where the samples begin.
void SettleDataSize(const std::string& path, std::string& wave, std::size_t start) {
  char* const size = &wave[start - 4];
  const std::uint64_t claimed = LittleEndian(size);
  const std::uint64_t held = wave.size() - start;
  if (claimed > held && !IsUnknown(claimed)) Refuse(path, "it is shorter than it claims");
  if (!IsUnknown(claimed)) return;
  const std::uint64_t riff = LittleEndian(&wave[4]);
  if (!IsUnknown(riff) && riff + kChunkHeaderBytes > wave.size())
    Refuse(path, "it is shorter than it claims");
  PutLittleEndian(size, held);
}

// libsndfile plays what is there of a file that was cut off. A file that claims more than it holds
// is damaged, so its chunks are looked through first.
void CheckChunks(const std::string& path, std::string& wave) {
  if (wave.size() < kRiffHeaderBytes || !wave.starts_with("RIFF") ||
      wave.compare(8, 4, "WAVE") != 0)
    Refuse(path, "it is not a wave file");
  std::uint64_t position = kRiffHeaderBytes;
  while (position + kChunkHeaderBytes <= wave.size()) {
    const char* const chunk = &wave[position];
    position += kChunkHeaderBytes;
    if (std::string_view(chunk, 4) == "data") return SettleDataSize(path, wave, position);
    const std::uint64_t bytes = LittleEndian(chunk + 4);
    position += bytes + bytes % 2;  // chunks start at even positions
  }
  Refuse(path, position > wave.size() ? "it is shorter than it claims" : "it holds no sound");
}

struct CloseSound {
  void operator()(SNDFILE* file) const { sf_close(file); }
};

using SoundFile = std::unique_ptr<SNDFILE, CloseSound>;

// libsndfile reads from a file, so the bytes become one that exists in memory alone.
SoundFile Open(const std::string& path, const std::string& wave, SF_INFO& info) {
  const int file = memfd_create("wave", MFD_CLOEXEC);
  const auto bytes = static_cast<ssize_t>(wave.size());
  if (file < 0 || write(file, wave.data(), wave.size()) != bytes || lseek(file, 0, SEEK_SET) != 0)
    Refuse(path, "there is no memory for it");
  SoundFile sound(sf_open_fd(file, SFM_READ, &info, SF_TRUE));
  if (!sound) Refuse(path, "it is damaged");
  return sound;
}

void CheckFormat(const std::string& path, const SF_INFO& info) {
  if (info.channels < 1 || info.channels > 2)
    Refuse(path, "it has " + std::to_string(info.channels) + " channels");
  if (info.samplerate < kLowestRate || info.samplerate > kHighestRate)
    Refuse(path, "its rate is " + std::to_string(info.samplerate) + " frames a second");
  if (info.frames < 1) Refuse(path, "it holds no sound");
  if (info.frames > static_cast<sf_count_t>(kLongestSeconds) * info.samplerate)
    Refuse(path, "it is longer than a minute");
}

std::int16_t ToSample(float value) {
  return static_cast<std::int16_t>(
      std::lrint(std::clamp(value * kSampleScale, -kSampleScale, kHighestSample)));
}

// As floats, because libsndfile would scale those of a float file by their peak to make integers.
std::vector<float> ReadSamples(const std::string& path, SNDFILE* file, const SF_INFO& info) {
  std::vector<float> samples(static_cast<std::size_t>(info.frames * info.channels));
  if (sf_readf_float(file, samples.data(), info.frames) != info.frames)
    Refuse(path, "it is damaged");
  if (!std::all_of(samples.begin(), samples.end(), [](float s) { return std::isfinite(s); }))
    Refuse(path, "it is damaged");
  return samples;
}

}  // namespace

WaveData ReadWaveFile(const std::string& path) {
  std::string bytes = Contents(path);
  CheckChunks(path, bytes);
  SF_INFO info = {};
  const SoundFile file = Open(path, bytes, info);
  CheckFormat(path, info);
  const std::vector<float> samples = ReadSamples(path, file.get(), info);

  WaveData wave;
  wave.framesPerSecond = info.samplerate;
  const std::size_t copies = info.channels == 1 ? 2 : 1;
  wave.samples.reserve(samples.size() * copies);
  for (const float sample : samples)
    wave.samples.insert(wave.samples.end(), copies, ToSample(sample));
  return wave;
}

}  // namespace platform::desktop
