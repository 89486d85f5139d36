// SPDX-License-Identifier: MIT
// Wave files, read whole into memory.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform::desktop {

/// Samples for two loudspeakers, left and right in turn. A file of one channel stands on both at
/// its own level, which a mixer that places a single channel between two would not keep.
struct StereoSamples {
  int rate = 0;  ///< frames a second
  std::vector<std::int16_t> samples;
};

/// Reads the wave file at `path`. Throws Error for a file that is missing, no wave file, empty, cut
/// short, longer than a minute, or of other than one or two channels.
StereoSamples ReadWaveFile(const std::string& path);

}  // namespace platform::desktop
