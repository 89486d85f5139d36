// SPDX-License-Identifier: MIT
#include "platform/desktop/SoundDevice.h"

#include <chrono>
#include <future>
#include <thread>
#include <utility>

#include "platform/Error.h"
#include "platform/desktop/Volume.h"

namespace platform {

namespace desktop {

namespace {

using Clock = std::chrono::steady_clock;
using DeviceOwner = std::unique_ptr<OpenedDevice>;

constexpr std::chrono::seconds kBetweenTries{1};
constexpr std::chrono::milliseconds kLongestClose{300};
constexpr std::int32_t kBytesPerFrame = 4;

// Runs on a thread of its own. Unlike std::async, letting go of the result does not wait.
template <typename Work>
auto RunApart(Work work) {
  std::packaged_task<decltype(work())()> task(std::move(work));
  auto result = task.get_future();
  std::thread(std::move(task)).detach();
  return result;
}

// Sounds are kept by the device alone, so another one gets them from their files. False when one
// cannot be had.
bool ComesOnto(OpenedDevice& device, const WaveRef& wave) {
  try {
    if (!device.Has(wave)) device.Add(wave, ReadWaveFile(*wave));
    return true;
  } catch (const Error&) {
    return false;
  }
}

DeviceOwner OpenDevice(const DeviceDriver& driver, const std::vector<WaveRef>& waves) {
  try {
    auto device = std::make_unique<OpenedDevice>(driver);
    for (const WaveRef& wave : waves)
      ComesOnto(*device, wave);
    return device;
  } catch (const Error&) {
    return nullptr;
  }
}

// The device that is open now, if any, and all sounds that belong on it. When it goes away the
// sounds go on silently, and another one is tried for off the game's thread.
class LastingDevice {
 public:
  explicit LastingDevice(DeviceDriver driver)
      : driver_(std::move(driver)), device_(std::make_unique<OpenedDevice>(driver_)) {}
  LastingDevice(const LastingDevice&) = delete;
  LastingDevice& operator=(const LastingDevice&) = delete;
  ~LastingDevice();

  void Add(const WaveRef& wave, const WaveData& data);
  void Remove(const WaveRef& wave);
  /// The device with `wave` on it, or null. Tries for a new one if the old has gone.
  OpenedDevice* DeviceFor(const WaveRef& wave);

 private:
  void TakeReopened();
  void Reopen();

  DeviceDriver driver_;
  std::vector<WaveRef> waves_;
  DeviceOwner device_;
  std::future<DeviceOwner> reopening_;
  Clock::time_point nextTry_;
};

// Closing a device that no longer answers must not hold up the end of the program.
LastingDevice::~LastingDevice() {
  if (reopening_.valid()) reopening_.wait_for(kLongestClose);
  RunApart([closing = std::make_shared<DeviceOwner>(std::move(device_))] {
    closing->reset();
  }).wait_for(kLongestClose);
}

void LastingDevice::Add(const WaveRef& wave, const WaveData& data) {
  waves_.push_back(wave);
  if (device_) device_->Add(wave, data);
}

void LastingDevice::Remove(const WaveRef& wave) {
  std::erase(waves_, wave);
  if (device_) device_->Remove(wave);
}

OpenedDevice* LastingDevice::DeviceFor(const WaveRef& wave) {
  TakeReopened();
  if (!device_ || !device_->IsConnected()) Reopen();
  // A sound may have come while the device was being opened anew.
  return device_ && ComesOnto(*device_, wave) ? device_.get() : nullptr;
}

void LastingDevice::TakeReopened() {
  if (!reopening_.valid()) return;
  if (reopening_.wait_for(std::chrono::seconds{0}) == std::future_status::ready)
    device_ = reopening_.get();
}

void LastingDevice::Reopen() {
  if (reopening_.valid() || Clock::now() < nextTry_) return;
  nextTry_ = Clock::now() + kBetweenTries;
  reopening_ = RunApart(
      [lost = std::make_shared<DeviceOwner>(std::move(device_)), driver = driver_, waves = waves_] {
        lost->reset();
        return OpenDevice(driver, waves);
      });
}

class DesktopBuffer : public SoundBuffer {
 public:
  DesktopBuffer(std::shared_ptr<LastingDevice> device, const std::string& path)
      : device_(std::move(device)), wave_(std::make_shared<std::string>(path)) {
    device_->Add(wave_, ReadWaveFile(path));
  }
  DesktopBuffer(const DesktopBuffer&) = delete;
  DesktopBuffer& operator=(const DesktopBuffer&) = delete;
  ~DesktopBuffer() override { device_->Remove(wave_); }

  void SetVolume(std::int32_t hundredths) override {
    gain_ = static_cast<float>(GainOf(hundredths));
    if (OpenedDevice* device = device_->DeviceFor(wave_)) device->SetGain(wave_, gain_);
  }
  void SetCurrentPosition(std::int32_t position) override {
    if (OpenedDevice* device = device_->DeviceFor(wave_))
      device->SetFrame(wave_, position / kBytesPerFrame);
  }
  void Play() override {
    OpenedDevice* device = device_->DeviceFor(wave_);
    if (device == nullptr) return;
    device->SetGain(wave_, gain_);  // the device may have changed since the volume was set
    device->Play(wave_);
  }

 private:
  std::shared_ptr<LastingDevice> device_;
  WaveRef wave_;
  float gain_ = 1;
};

// The device mixes by itself; nothing is asked of its own buffer.
class PrimaryBuffer : public SoundBuffer {
 public:
  void SetVolume(std::int32_t) override {}
  void SetCurrentPosition(std::int32_t) override {}
  void Play() override {}
};

class DesktopSoundDevice : public SoundDevice {
 public:
  explicit DesktopSoundDevice(DeviceDriver driver)
      : device_(std::make_shared<LastingDevice>(std::move(driver))) {}

  void SetCooperativeLevel(WindowHandle) override {}
  std::shared_ptr<SoundBuffer> CreateSoundBuffer() override {
    return std::make_shared<PrimaryBuffer>();
  }
  std::shared_ptr<SoundBuffer> CreateSoundBufferFromFile(const std::string& path) override {
    return std::make_shared<DesktopBuffer>(device_, path);
  }

 private:
  std::shared_ptr<LastingDevice> device_;
};

}  // namespace

std::shared_ptr<SoundDevice> CreateSoundDevice(DeviceDriver driver) {
  return std::make_shared<DesktopSoundDevice>(std::move(driver));
}

}  // namespace desktop

std::shared_ptr<SoundDevice> DirectSoundCreate() {
  return desktop::CreateSoundDevice(desktop::DefaultDriver());
}

}  // namespace platform
