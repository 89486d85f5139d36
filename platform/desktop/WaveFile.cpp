// SPDX-License-Identifier: MIT
#include "platform/desktop/WaveFile.h"

#include <sndfile.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>

#include "platform/Error.h"

namespace platform::desktop {

namespace {

constexpr int kMostSeconds = 60;
constexpr int kLeastRate = 1000;
constexpr int kMostRate = 192000;

using SoundFile = std::unique_ptr<SNDFILE, int (*)(SNDFILE*)>;

[[noreturn]] void Refuse(const std::string& path, const std::string& reason) {
  throw Error(path + ": " + reason);
}

void CheckFormat(const std::string& path, const SF_INFO& info) {
  const int type = info.format & SF_FORMAT_TYPEMASK;
  if (type != SF_FORMAT_WAV && type != SF_FORMAT_WAVEX) Refuse(path, "not a wave file");
  if (info.channels < 1 || info.channels > 2) Refuse(path, "neither one nor two channels");
  if (info.samplerate < kLeastRate || info.samplerate > kMostRate)
    Refuse(path, "an absurd sample rate");
  if (info.frames < 1) Refuse(path, "no sound in the file");
  if (info.frames > sf_count_t{kMostSeconds} * info.samplerate)
    Refuse(path, "longer than a minute");
}

// The library takes what there is of a file that was cut short; the game does not. It tells in its
// log where the size that the file claims and its real one differ.
bool IsCutShort(SNDFILE* file) {
  char log[4096] = {};
  sf_command(file, SFC_GET_LOG_INFO, log, sizeof log);
  return std::strstr(log, "should be") != nullptr;
}

std::vector<std::int16_t> ReadFrames(const std::string& path, SNDFILE* file, const SF_INFO& info) {
  std::vector<std::int16_t> samples(static_cast<std::size_t>(info.frames * info.channels));
  sf_command(file, SFC_SET_CLIPPING, nullptr, SF_TRUE);
  if (sf_readf_short(file, samples.data(), info.frames) != info.frames || IsCutShort(file))
    Refuse(path, "the wave file is cut short");
  return samples;
}

std::vector<std::int16_t> OnBothSides(const std::vector<std::int16_t>& mono) {
  std::vector<std::int16_t> stereo;
  stereo.reserve(mono.size() * 2);
  for (const std::int16_t sample : mono)
    stereo.insert(stereo.end(), {sample, sample});
  return stereo;
}

}  // namespace

StereoSamples ReadWaveFile(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::exists(path, ignored)) Refuse(path, "no such file");
  SF_INFO info{};
  const SoundFile file(sf_open(path.c_str(), SFM_READ, &info), sf_close);
  if (!file) Refuse(path, sf_strerror(nullptr));
  CheckFormat(path, info);
  std::vector<std::int16_t> samples = ReadFrames(path, file.get(), info);
  return {info.samplerate, info.channels == 2 ? std::move(samples) : OnBothSides(samples)};
}

}  // namespace platform::desktop
