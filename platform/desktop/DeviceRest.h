// SPDX-License-Identifier: MIT
// An opened sound device mixes silence many times a second. This lets it rest instead.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace platform::desktop {

/// Pauses a device when nothing has sounded on it for a second. Pausing and resuming may wait for
/// the device, so both are done on a thread, which lives only while the device is awake.
class DeviceRest {
 public:
  DeviceRest(std::function<void()> pause, std::function<void()> resume);
  DeviceRest(const DeviceRest&) = delete;
  DeviceRest& operator=(const DeviceRest&) = delete;
  /// Waits for a pause or a resumption that is under way.
  ~DeviceRest();

  /// Keeps the device awake, or wakes it, for a sound of this length. Never waits for the device.
  void KeepAwake(std::chrono::milliseconds sound);

 private:
  using Clock = std::chrono::steady_clock;

  void Watch();

  std::function<void()> pause_;
  std::function<void()> resume_;
  std::mutex mutex_;
  std::condition_variable changed_;
  Clock::time_point until_;
  bool watching_ = false;
  bool closing_ = false;
  std::thread watch_;
};

}  // namespace platform::desktop
