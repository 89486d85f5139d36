// SPDX-License-Identifier: MIT
// The connection to the sound device: opened once, and opened anew when the device has gone away.
#pragma once

#include <AL/al.h>
#include <AL/alc.h>

#include <atomic>
#include <cstdint>
#include <memory>

namespace platform::desktop {

/// A device with a context on it; closes both.
class OpenDevice {
 public:
  /// Opens the default device. May block on a sound server. Null members if there is none.
  OpenDevice();
  explicit OpenDevice(ALCdevice* device);
  OpenDevice(const OpenDevice&) = delete;
  OpenDevice& operator=(const OpenDevice&) = delete;
  ~OpenDevice();

  bool IsOpen() const { return context_ != nullptr; }
  bool IsConnected() const;
  void MakeCurrent() const;

 private:
  ALCdevice* device_;
  ALCcontext* context_ = nullptr;
};

class Mixer {
 public:
  /// Throws Error if there is no sound device.
  Mixer();
  /// A mixer on a device that is there already, such as one that renders into memory.
  explicit Mixer(std::unique_ptr<OpenDevice> device);
  Mixer(const Mixer&) = delete;
  Mixer& operator=(const Mixer&) = delete;
  ~Mixer() = default;

  /// Whether sounds can be played now. A device that has gone away is looked for at most once a
  /// second, on a thread of its own.
  bool IsReady();

  /// Counts the devices: sources and buffers made for an older one are gone with it.
  int Generation() const { return generation_; }

 private:
  // Shared with the thread that looks for a device, which may outlive the mixer.
  struct Search {
    std::atomic<OpenDevice*> found = nullptr;
    std::atomic<bool> running = false;
    ~Search() { delete found.load(); }
  };

  void AdoptFound();
  void StartSearch();

  std::unique_ptr<OpenDevice> device_;
  std::shared_ptr<Search> search_ = std::make_shared<Search>();
  std::int32_t lastSearch_ = 0;
  int generation_ = 1;
};

}  // namespace platform::desktop
