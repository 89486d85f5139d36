// SPDX-License-Identifier: MIT
// The sound device on the real library, rendered on demand and measured at its output.
#define AL_ALEXT_PROTOTYPES
#include <AL/alc.h>
#include <AL/alext.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <thread>

#include "platform/Error.h"
#include "platform/desktop/SoundDevice.h"
#include "tests/desktop/SoundFiles.h"

namespace platform::desktop {
namespace {

constexpr double kExact = 0.1;  // decibels
constexpr double kInaudible = -60;
constexpr int kTriesToBeHeard = 500;  // a quarter of a minute and more

class SoundDeviceTest : public testing::Test {
 protected:
  DeviceDriver Loopback() {
    return {[this] { return Open(); },
            [this](ALCdevice*) { return connected_.load(); },
            [this](ALCdevice*) { awake_ = false; },
            [this](ALCdevice*) { awake_ = true; },
            {ALC_FORMAT_CHANNELS_SOFT, ALC_STEREO_SOFT, ALC_FORMAT_TYPE_SOFT, ALC_FLOAT_SOFT,
             ALC_FREQUENCY, tones::kRate, ALC_HRTF_SOFT, ALC_FALSE, 0}};
  }
  ALCdevice* Open() {
    ALCdevice* device = connected_ ? alcLoopbackOpenDeviceSOFT(nullptr) : nullptr;
    if (device != nullptr) output_ = device;
    ++opened_;
    return device;
  }
  std::vector<float> Render(int frames) {
    std::vector<float> samples(static_cast<std::size_t>(frames) * 2);
    alcRenderSamplesSOFT(output_, samples.data(), frames);
    return samples;
  }
  static std::string Tone(int channels, int format = SF_FORMAT_PCM_16,
                          double pitch = tones::kPitch) {
    std::string path = tones::Scratch().Path("tone.wav");
    tones::WriteTone(path, channels, 0.5, format, pitch);
    return path;
  }
  static void PlayFromStart(SoundBuffer& buffer, std::int32_t volume = -1000) {
    buffer.SetVolume(volume);
    buffer.SetCurrentPosition(0);
    buffer.Play();
  }

  std::atomic<bool> connected_ = true;
  std::atomic<bool> awake_ = false;
  std::atomic<int> opened_ = 0;
  ALCdevice* output_ = nullptr;
};

TEST_F(SoundDeviceTest, LevelsAreExactForMonoAndStereo) {
  const auto device = CreateSoundDevice(Loopback());
  for (const int format : {SF_FORMAT_PCM_U8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_FLOAT}) {
    for (const int channels : {1, 2}) {
      const auto buffer = device->CreateSoundBufferFromFile(Tone(channels, format));
      for (const int volume : {-1000, 0}) {
        PlayFromStart(*buffer, volume);
        const auto heard = Render(tones::kRate);
        for (const std::size_t side : {0U, 1U})
          EXPECT_NEAR(tones::Level(heard, side, 1000, 20000), volume / 100.0, kExact)
              << format << " " << channels;
      }
      PlayFromStart(*buffer, -10000);
      EXPECT_LT(tones::Level(Render(tones::kRate), 0, 1000, 20000), -90);
    }
  }
}

// The sound is as long as 22050 frames.
TEST_F(SoundDeviceTest, OnlyARewindStartsASoundAnew) {
  const auto device = CreateSoundDevice(Loopback());
  const auto buffer = device->CreateSoundBufferFromFile(Tone(1));
  for (const bool rewinds : {true, false, true}) {
    PlayFromStart(*buffer);
    Render(11050);
    if (rewinds) buffer->SetCurrentPosition(0);
    buffer->Play();
    const auto heard = Render(tones::kRate);
    EXPECT_NEAR(tones::Level(heard, 0, 1000, 10000), -10, kExact);
    const double second = tones::Level(heard, 0, 12000, 21000);
    EXPECT_NEAR(std::max(second, kInaudible), rewinds ? -10 : kInaudible, kExact);
    EXPECT_LT(tones::Level(heard, 0, 23000, 40000), kInaudible);
  }
}

TEST_F(SoundDeviceTest, DifferentSoundsAreHeardTogetherUntilLetGo) {
  constexpr double kOther = 882;
  const auto device = CreateSoundDevice(Loopback());
  const auto low = device->CreateSoundBufferFromFile(Tone(1));
  auto high = device->CreateSoundBufferFromFile(Tone(2, SF_FORMAT_PCM_16, kOther));
  PlayFromStart(*low);
  PlayFromStart(*high);
  const auto both = Render(11000);
  EXPECT_NEAR(tones::Level(both, 0, 1000, 10000), -10, kExact);
  EXPECT_NEAR(tones::Level(both, 0, 1000, 10000, kOther), -10, kExact);
  high.reset();
  const auto one = Render(11000);
  EXPECT_NEAR(tones::Level(one, 0, 1000, 10000), -10, kExact);
  EXPECT_LT(tones::Level(one, 0, 1000, 10000, kOther), kInaudible);
}

TEST_F(SoundDeviceTest, NoDeviceIsAnError) {
  connected_ = false;
  EXPECT_THROW(CreateSoundDevice(Loopback()), Error);
}

// The device tries again at most once a second, on a thread of its own. A sound whose file has gone
// stays away alone.
TEST_F(SoundDeviceTest, SoundsComeBackWithTheDevice) {
  const auto device = CreateSoundDevice(Loopback());
  const std::string path = tones::Scratch().Path("gone.wav");
  tones::WriteTone(path, 1, 0.5);
  const auto gone = device->CreateSoundBufferFromFile(path);
  std::filesystem::remove(path);
  const auto buffer = device->CreateSoundBufferFromFile(Tone(1));
  connected_ = false;
  const auto start = std::chrono::steady_clock::now();
  while (opened_ < 3) {
    PlayFromStart(*buffer);
    connected_ = opened_ == 2;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
  double level = kInaudible;
  for (int tries = 0; level <= kInaudible && tries < kTriesToBeHeard; ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    PlayFromStart(*buffer);
    level = tones::Level(Render(tones::kRate), 0, 1000, 20000);
  }
  EXPECT_NEAR(level, -10, kExact);
  PlayFromStart(*gone);
  EXPECT_LT(tones::Level(Render(tones::kRate), 0, 1000, 20000), kInaudible);
}

// A sound of half a second rests a second and a half after its start.
TEST_F(SoundDeviceTest, RestsWhenNothingHasSoundedForASecond) {
  const auto device = CreateSoundDevice(Loopback());
  const auto buffer = device->CreateSoundBufferFromFile(Tone(1));
  const auto waitUntilAwakeIs = [this](bool awake) {
    while (awake_ != awake)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
  };
  waitUntilAwakeIs(true);
  waitUntilAwakeIs(false);
  const auto start = std::chrono::steady_clock::now();
  PlayFromStart(*buffer);
  waitUntilAwakeIs(true);
  EXPECT_NEAR(tones::Level(Render(tones::kRate), 0, 1000, 20000), -10, kExact);
  PlayFromStart(*buffer);
  waitUntilAwakeIs(false);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1500));
}

// With the null driver of the test's environment, as the game opens it.
TEST(DefaultSoundDevice, OpensPlaysAndCloses) {
  const std::string path = tones::Scratch().Path("default.wav");
  tones::WriteTone(path, 2, 0.1);
  const auto device = DirectSoundCreate();
  const auto buffer = device->CreateSoundBufferFromFile(path);
  EXPECT_NO_THROW(buffer->Play());
}

}  // namespace
}  // namespace platform::desktop
