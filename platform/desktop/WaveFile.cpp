// SPDX-License-Identifier: MIT
#include "platform/desktop/WaveFile.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>

#include "platform/Error.h"

namespace platform {

namespace {

constexpr std::int32_t kLongestSeconds = 60;
constexpr std::int32_t kLowestRate = 1000;  // frames a second
constexpr std::int32_t kHighestRate = 192000;
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

// libsndfile plays what is there of a file that was cut off. A file that claims more than it holds
// is damaged, so its chunks are looked through first.
void CheckChunks(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) Refuse(path, "it cannot be opened");
  const std::uint64_t fileBytes = std::filesystem::file_size(path);
  std::array<char, kRiffHeaderBytes> riff = {};
  file.read(riff.data(), riff.size());
  const std::string_view header(riff.data(), riff.size());
  if (!file || !header.starts_with("RIFF") || !header.ends_with("WAVE"))
    Refuse(path, "it is not a wave file");

  std::uint64_t position = kRiffHeaderBytes;
  while (position + kChunkHeaderBytes <= fileBytes) {
    std::array<char, kChunkHeaderBytes> chunk = {};
    file.seekg(static_cast<std::streamoff>(position));
    if (!file.read(chunk.data(), chunk.size())) break;
    const std::uint64_t bytes = LittleEndian(chunk.data() + 4);
    position += kChunkHeaderBytes + bytes;
    if (position > fileBytes) Refuse(path, "it is shorter than it claims");
    if (std::string_view(chunk.data(), 4) == "data") {
      if (bytes == 0) Refuse(path, "it holds no sound");
      return;
    }
    position += bytes % 2;  // chunks start at even positions
  }
  Refuse(path, "it holds no sound");
}

struct CloseSound {
  void operator()(SNDFILE* file) const { sf_close(file); }
};

void CheckFormat(const std::string& path, const SF_INFO& info) {
  const int type = info.format & SF_FORMAT_TYPEMASK;
  if (type != SF_FORMAT_WAV && type != SF_FORMAT_WAVEX) Refuse(path, "it is not a wave file");
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
  std::error_code failed;
  if (!std::filesystem::is_regular_file(path, failed)) Refuse(path, "there is no such file");
  CheckChunks(path);
  SF_INFO info = {};
  const std::unique_ptr<SNDFILE, CloseSound> file(sf_open(path.c_str(), SFM_READ, &info));
  if (!file) Refuse(path, "it is damaged");
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

}  // namespace platform
