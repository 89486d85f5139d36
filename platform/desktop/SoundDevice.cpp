// SPDX-License-Identifier: MIT
// Sound buffers: one source each, so that a second play restarts it and different ones mix.
#include "platform/desktop/SoundDevice.h"
#include "platform/Sound.h"
#include "platform/desktop/Decibels.h"
#include "platform/desktop/Mixer.h"
#include "platform/desktop/WaveFile.h"

namespace platform {

namespace {

using desktop::Mixer;
using desktop::StereoSamples;

// The source and the data of a sound on one device.
class Voice {
 public:
  Voice(const StereoSamples& sound, const Mixer& mixer)
      : mixer_(mixer), generation_(mixer.Generation()) {
    alGenBuffers(1, &buffer_);
    alBufferData(buffer_, AL_FORMAT_STEREO16, sound.samples.data(),
                 static_cast<ALsizei>(sound.samples.size() * sizeof(std::int16_t)), sound.rate);
    alGenSources(1, &source_);
    alSourcei(source_, AL_BUFFER, static_cast<ALint>(buffer_));
  }
  Voice(const Voice&) = delete;
  Voice& operator=(const Voice&) = delete;
  // What was made for an older device went with it, and its names may belong to others by now. An
  // attached buffer cannot be deleted.
  ~Voice() {
    if (!IsCurrent()) return;
    alSourceStop(source_);
    alSourcei(source_, AL_BUFFER, AL_NONE);
    alDeleteSources(1, &source_);
    alDeleteBuffers(1, &buffer_);
  }

  bool IsCurrent() const { return generation_ == mixer_.Generation(); }
  void SetGain(float gain) const { alSourcef(source_, AL_GAIN, gain); }
  void Rewind() const { alSourceRewind(source_); }
  void Play() const { alSourcePlay(source_); }

 private:
  const Mixer& mixer_;
  int generation_;
  ALuint buffer_ = 0;
  ALuint source_ = 0;
};

class EffectBuffer : public SoundBuffer {
 public:
  EffectBuffer(std::shared_ptr<Mixer> mixer, StereoSamples sound)
      : mixer_(std::move(mixer)), sound_(std::move(sound)) {
    PrepareVoice();
  }

  void SetVolume(std::int32_t hundredths) override {
    gain_ = desktop::GainOf(hundredths);
    if (PrepareVoice()) voice_->SetGain(gain_);
  }
  void SetCurrentPosition(std::int32_t) override {
    if (PrepareVoice()) voice_->Rewind();
  }
  void Play() override {
    if (PrepareVoice()) voice_->Play();
  }

 private:
  bool PrepareVoice() {
    if (!mixer_->IsReady()) return false;
    if (voice_ && voice_->IsCurrent()) return true;
    voice_.reset();
    voice_ = std::make_unique<Voice>(sound_, *mixer_);
    voice_->SetGain(gain_);
    return true;
  }

  std::shared_ptr<Mixer> mixer_;
  StereoSamples sound_;
  float gain_ = 1;
  std::unique_ptr<Voice> voice_;
};

// The device mixes by itself, so its own buffer has nothing to do.
class MixBuffer : public SoundBuffer {
 public:
  void SetVolume(std::int32_t) override {}
  void SetCurrentPosition(std::int32_t) override {}
  void Play() override {}
};

class MixerDevice : public SoundDevice {
 public:
  explicit MixerDevice(std::shared_ptr<Mixer> mixer) : mixer_(std::move(mixer)) {}

  // Sharing the device with other programs needs nothing of the window.
  void SetCooperativeLevel(WindowHandle) override {}
  std::shared_ptr<SoundBuffer> CreateSoundBuffer() override {
    return std::make_shared<MixBuffer>();
  }
  std::shared_ptr<SoundBuffer> CreateSoundBufferFromFile(const std::string& path) override {
    return std::make_shared<EffectBuffer>(mixer_, desktop::ReadWaveFile(path));
  }

 private:
  std::shared_ptr<Mixer> mixer_;
};

}  // namespace

std::shared_ptr<SoundDevice> DirectSoundCreate() {
  return desktop::CreateSoundDevice(std::make_shared<Mixer>());
}

namespace desktop {

std::shared_ptr<SoundDevice> CreateSoundDevice(std::shared_ptr<Mixer> mixer) {
  return std::make_shared<MixerDevice>(std::move(mixer));
}

}  // namespace desktop

}  // namespace platform
