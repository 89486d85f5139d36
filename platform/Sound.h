// SPDX-License-Identifier: MIT
// Sounds from buffers in memory, mixed by the sound device on its own.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Window.h"

namespace platform {

class SoundBuffer {
 public:
  virtual ~SoundBuffer() = default;
  /// Hundredths of a decibel, -10000 (silence) to 0 (full level), exact for mono and stereo alike.
  virtual void SetVolume(std::int32_t hundredths) = 0;
  /// Moves a buffer, playing or not, to `position` in bytes of its data; the game only ever goes
  /// back to 0.
  virtual void SetCurrentPosition(std::int32_t position) = 0;
  /// Plays from the current position to the end, once, over whatever else sounds. Does not wait.
  virtual void Play() = 0;
};

/// The sound device. If it goes away later the buffers go on silently, and are heard again once a
/// device is there.
class SoundDevice {
 public:
  virtual ~SoundDevice() = default;
  virtual void SetCooperativeLevel(WindowHandle window) = 0;
  /// The primary buffer: the device's own mix.
  virtual std::shared_ptr<SoundBuffer> CreateSoundBuffer() = 0;
  /// Reads the wave file at `path` whole. Throws Error for a file that is missing, no wave file,
  /// damaged, longer than a minute, or of other than one or two channels.
  virtual std::shared_ptr<SoundBuffer> CreateSoundBufferFromFile(const std::string& path) = 0;
};

/// Opens the default sound device. Throws Error if there is none.
std::shared_ptr<SoundDevice> DirectSoundCreate();

}  // namespace platform
