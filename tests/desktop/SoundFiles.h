// SPDX-License-Identifier: MIT
// Small sound files for the suites against the real libraries, and a measure of what is heard.
#pragma once

#include <sndfile.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <string>
#include <vector>

#include "tests/platform/ScratchFolder.h"

namespace tones {

/// Of the whole suite; it goes with the process.
inline const ScratchFolder& Scratch() {
  static const ScratchFolder folder;
  return folder;
}

constexpr int kRate = 44100;
constexpr double kAmplitude = 0.5;
constexpr double kPitch = 441;  // hertz: 100 frames a period

/// Writes a tone of `pitch` hertz; `format` is a sample format of libsndfile.
inline void WriteTone(const std::string& path, int channels, double seconds,
                      int format = SF_FORMAT_PCM_16, double pitch = kPitch) {
  SF_INFO info = {};
  info.samplerate = kRate;
  info.channels = channels;
  info.format = SF_FORMAT_WAV | format;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  std::vector<double> samples;
  for (int frame = 0; frame < static_cast<int>(seconds * kRate); ++frame)
    samples.insert(samples.end(), static_cast<std::size_t>(channels),
                   kAmplitude * std::sin(2 * std::numbers::pi * pitch * frame / kRate));
  sf_writef_double(file, samples.data(), static_cast<sf_count_t>(samples.size()) / channels);
  sf_close(file);
}

/// Decibels of the tone of `pitch` on `channel` of stereo frames `from` up to `to`, against the
/// amplitude in the file. The stretch should hold whole periods.
inline double Level(const std::vector<float>& stereo, std::size_t channel, std::size_t from,
                    std::size_t to, double pitch = kPitch) {
  std::complex<double> sum = 0;
  for (std::size_t frame = from; frame < to; ++frame)
    sum += static_cast<double>(stereo.at(2 * frame + channel)) *
           std::polar(1.0, -2 * std::numbers::pi * pitch * static_cast<double>(frame) / kRate);
  const double amplitude = 2 * std::abs(sum) / static_cast<double>(to - from);
  return 20 * std::log10(amplitude / kAmplitude + 1e-9);
}

}  // namespace tones
