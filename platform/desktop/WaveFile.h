// SPDX-License-Identifier: MIT
// Wave files read whole into memory, for the sound device.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace platform::desktop {

/// A decoded sound. Mono files stand on both channels, so that every sound is mixed at the same
/// level.
struct WaveData {
  std::int32_t framesPerSecond = 0;
  std::vector<std::int16_t> samples;  ///< left and right in turn

  std::int32_t Frames() const { return static_cast<std::int32_t>(samples.size() / 2); }
  std::chrono::milliseconds Length() const {
    return std::chrono::milliseconds{std::int64_t{1000} * Frames() / framesPerSecond};
  }
};

/// Reads a RIFF wave file of one or two channels, of any sample format that libsndfile decodes.
/// Throws Error, with the path and the reason, for a file that is missing, no wave file, damaged,
/// empty, or longer than a minute.
/// Format: "Multimedia Programming Interface and Data Specifications 1.0", Microsoft and IBM, 1991.
WaveData ReadWaveFile(const std::string& path);

}  // namespace platform::desktop
