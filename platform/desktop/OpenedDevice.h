// SPDX-License-Identifier: MIT
// A sound device of the library that is open, with a voice for each sound that was given to it. One
// is opened at the start, and another one whenever the device has gone away.
#pragma once

#include <AL/al.h>
#include <AL/alc.h>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/desktop/DeviceRest.h"
#include "platform/desktop/WaveFile.h"

namespace platform::desktop {

/// A sound, by the path of its file. Two of the same file are different sounds.
using WaveRef = std::shared_ptr<const std::string>;

/// The library's functions for a device. A test opens a device whose samples it reads itself.
struct DeviceDriver {
  std::function<ALCdevice*()> open;             ///< null when there is no device
  std::function<bool(ALCdevice*)> isConnected;  ///< false once the device has gone away
  std::function<void(ALCdevice*)> pause;        ///< may wait for the device
  std::function<void(ALCdevice*)> resume;       ///< may wait for the device
  std::vector<ALCint> attributes;               ///< of the context, ending in 0
};

/// That of the default device.
DeviceDriver DefaultDriver();

/// Rests while nothing sounds. Not thread-safe.
class OpenedDevice {
 public:
  /// Throws Error if the device does not open.
  explicit OpenedDevice(const DeviceDriver& driver);
  OpenedDevice(const OpenedDevice&) = delete;
  OpenedDevice& operator=(const OpenedDevice&) = delete;
  ~OpenedDevice();

  bool IsConnected() const;
  bool Has(const WaveRef& wave) const { return voices_.contains(wave); }
  /// Hands the samples to the device ahead of the first Play; it keeps a copy. Throws Error if it
  /// refuses them.
  void Add(const WaveRef& wave, const WaveData& data);
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
    std::chrono::milliseconds length{};
  };

  void DeleteVoice(const Voice& voice);

  DeviceDriver driver_;
  ALCdevice* device_ = nullptr;
  ALCcontext* context_ = nullptr;
  std::map<WaveRef, Voice> voices_;
  std::unique_ptr<DeviceRest> rest_;
};

}  // namespace platform::desktop
