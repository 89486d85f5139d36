// SPDX-License-Identifier: MIT
// One opened output of the sound device, with a voice for each sound that was given to it. The
// sound device makes one at the start and another one whenever the output has gone away.
#pragma once

#include <AL/al.h>
#include <AL/alc.h>

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "platform/Sound.h"
#include "platform/desktop/WaveFile.h"

namespace platform {

using WaveRef = std::shared_ptr<const WaveData>;

/// Where a sound device gets its output from. The game uses the default device; a test gives an
/// output whose samples it reads itself.
struct SoundOutput {
  std::function<ALCdevice*()> open;             ///< null when there is no device
  std::function<bool(ALCdevice*)> isConnected;  ///< false once the device has gone away
  std::vector<ALCint> attributes;               ///< of the context, ending in 0
};

SoundOutput DefaultSoundOutput();

/// A sound device on `output`. Throws Error if it does not open.
std::shared_ptr<SoundDevice> CreateSoundDevice(SoundOutput output);

/// Not for two threads at once, but for one after the other.
class SoundMix {
 public:
  /// Throws Error if the output does not open.
  explicit SoundMix(const SoundOutput& output);
  SoundMix(const SoundMix&) = delete;
  SoundMix& operator=(const SoundMix&) = delete;
  ~SoundMix();

  bool IsConnected() const;
  /// Hands the samples to the device ahead of the first Play. Throws Error if it refuses them.
  void Add(const WaveRef& wave);
  void Remove(const WaveRef& wave);
  /// `gain` is linear, 0 to 1.
  void SetGain(const WaveRef& wave, float gain);
  /// Moves a voice, playing or not, to `frame`.
  void SetFrame(const WaveRef& wave, std::int32_t frame);
  /// Starts a voice; one that plays goes on.
  void Play(const WaveRef& wave);

 private:
  struct Voice {
    ALuint buffer = 0;
    ALuint source = 0;
  };

  void DeleteVoice(const Voice& voice);

  SoundOutput output_;
  ALCdevice* device_ = nullptr;
  ALCcontext* context_ = nullptr;
  std::map<WaveRef, Voice> voices_;
};

}  // namespace platform
