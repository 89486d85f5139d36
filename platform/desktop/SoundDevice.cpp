// SPDX-License-Identifier: MIT
// The sound device of the desktop. When its output goes away the sounds go on silently, and a new
// output is tried for off the game's thread.
#include <chrono>
#include <future>
#include <thread>
#include <utility>

#include "platform/Error.h"
#include "platform/Sound.h"
#include "platform/desktop/SoundMix.h"
#include "platform/desktop/Volume.h"

namespace platform {

namespace {

using Clock = std::chrono::steady_clock;
using MixOwner = std::unique_ptr<SoundMix>;

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

MixOwner BuildMix(const SoundOutput& output, const std::vector<WaveRef>& waves) {
  try {
    auto mix = std::make_unique<SoundMix>(output);
    for (const WaveRef& wave : waves)
      mix->Add(wave);
    return mix;
  } catch (const Error&) {
    return nullptr;
  }
}

// The output that is there now, if any, and all sounds that belong on it.
class Mixer {
 public:
  explicit Mixer(SoundOutput output)
      : output_(std::move(output)), mix_(std::make_unique<SoundMix>(output_)) {}
  Mixer(const Mixer&) = delete;
  Mixer& operator=(const Mixer&) = delete;
  ~Mixer();

  void Add(const WaveRef& wave);
  void Remove(const WaveRef& wave);
  /// The output with `wave` on it, or null. Tries for a new one if the old has gone.
  SoundMix* MixFor(const WaveRef& wave);

 private:
  void TakeRebuiltMix();
  void Rebuild();

  SoundOutput output_;
  std::vector<WaveRef> waves_;
  MixOwner mix_;
  std::future<MixOwner> rebuilding_;
  Clock::time_point nextTry_;
};

// Closing an output that no longer answers must not hold up the end of the program.
Mixer::~Mixer() {
  if (rebuilding_.valid()) rebuilding_.wait_for(kLongestClose);
  RunApart([mix = std::make_shared<MixOwner>(std::move(mix_))] {
    mix->reset();
  }).wait_for(kLongestClose);
}

void Mixer::Add(const WaveRef& wave) {
  waves_.push_back(wave);
  if (mix_) mix_->Add(wave);
}

void Mixer::Remove(const WaveRef& wave) {
  std::erase(waves_, wave);
  if (mix_) mix_->Remove(wave);
}

SoundMix* Mixer::MixFor(const WaveRef& wave) {
  TakeRebuiltMix();
  if (!mix_ || !mix_->IsConnected()) Rebuild();
  if (!mix_) return nullptr;
  try {
    mix_->Add(wave);  // a sound that came while the output was being rebuilt
  } catch (const Error&) {
    return nullptr;
  }
  return mix_.get();
}

void Mixer::TakeRebuiltMix() {
  if (!rebuilding_.valid()) return;
  if (rebuilding_.wait_for(std::chrono::seconds{0}) == std::future_status::ready)
    mix_ = rebuilding_.get();
}

void Mixer::Rebuild() {
  if (rebuilding_.valid() || Clock::now() < nextTry_) return;
  nextTry_ = Clock::now() + kBetweenTries;
  rebuilding_ = RunApart(
      [lost = std::make_shared<MixOwner>(std::move(mix_)), output = output_, waves = waves_] {
        lost->reset();
        return BuildMix(output, waves);
      });
}

class DesktopBuffer : public SoundBuffer {
 public:
  DesktopBuffer(std::shared_ptr<Mixer> mixer, WaveData wave)
      : mixer_(std::move(mixer)), wave_(std::make_shared<WaveData>(std::move(wave))) {
    mixer_->Add(wave_);
  }
  DesktopBuffer(const DesktopBuffer&) = delete;
  DesktopBuffer& operator=(const DesktopBuffer&) = delete;
  ~DesktopBuffer() override { mixer_->Remove(wave_); }

  void SetVolume(std::int32_t hundredths) override {
    gain_ = static_cast<float>(desktop::GainOf(hundredths));
    if (SoundMix* mix = mixer_->MixFor(wave_)) mix->SetGain(wave_, gain_);
  }
  void SetCurrentPosition(std::int32_t position) override {
    if (SoundMix* mix = mixer_->MixFor(wave_)) mix->SetFrame(wave_, position / kBytesPerFrame);
  }
  void Play() override {
    SoundMix* mix = mixer_->MixFor(wave_);
    if (mix == nullptr) return;
    mix->SetGain(wave_, gain_);  // the output may have changed since the volume was set
    mix->Play(wave_);
  }

 private:
  std::shared_ptr<Mixer> mixer_;
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
  explicit DesktopSoundDevice(SoundOutput output)
      : mixer_(std::make_shared<Mixer>(std::move(output))) {}

  void SetCooperativeLevel(WindowHandle) override {}
  std::shared_ptr<SoundBuffer> CreateSoundBuffer() override {
    return std::make_shared<PrimaryBuffer>();
  }
  std::shared_ptr<SoundBuffer> CreateSoundBufferFromFile(const std::string& path) override {
    return std::make_shared<DesktopBuffer>(mixer_, ReadWaveFile(path));
  }

 private:
  std::shared_ptr<Mixer> mixer_;
};

}  // namespace

std::shared_ptr<SoundDevice> CreateSoundDevice(SoundOutput output) {
  return std::make_shared<DesktopSoundDevice>(std::move(output));
}

std::shared_ptr<SoundDevice> DirectSoundCreate() {
  return CreateSoundDevice(DefaultSoundOutput());
}

}  // namespace platform
