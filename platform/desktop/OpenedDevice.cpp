// SPDX-License-Identifier: MIT
#include "platform/desktop/OpenedDevice.h"

#define AL_ALEXT_PROTOTYPES
#include <AL/alext.h>
#include <AL/efx.h>

#include <utility>

#include "platform/Error.h"

namespace platform::desktop {

namespace {

// The context of the calling thread for one operation. Each thread has its own, so that a new
// output can be built beside a running game.
class CurrentContext {
 public:
  explicit CurrentContext(ALCcontext* context) { alcSetThreadContext(context); }
  CurrentContext(const CurrentContext&) = delete;
  CurrentContext& operator=(const CurrentContext&) = delete;
  ~CurrentContext() { alcSetThreadContext(nullptr); }
};

bool IsDeviceConnected(ALCdevice* device) {
  if (alcIsExtensionPresent(device, "ALC_EXT_disconnect") == ALC_FALSE) return true;
  ALCint connected = ALC_TRUE;
  alcGetIntegerv(device, ALC_CONNECTED, 1, &connected);
  return connected != ALC_FALSE;
}

}  // namespace

DeviceDriver DefaultDriver() {
  // The filters for headphones would change the level, and for each voice that could sound at once
  // the library sets memory aside for the sends to effects such as an echo.
  return {[] { return alcOpenDevice(nullptr); },
          IsDeviceConnected,
          alcDevicePauseSOFT,
          alcDeviceResumeSOFT,
          {ALC_HRTF_SOFT, ALC_FALSE, ALC_MAX_AUXILIARY_SENDS, 0, 0}};
}

OpenedDevice::OpenedDevice(const DeviceDriver& driver) : driver_(driver), device_(driver.open()) {
  if (device_ == nullptr) throw Error("No sound device can be opened.");
  context_ = alcCreateContext(device_, driver_.attributes.data());
  if (context_ == nullptr) {
    alcCloseDevice(device_);
    throw Error("The sound device cannot be set up.");
  }
  rest_ = std::make_unique<DeviceRest>([this] { driver_.pause(device_); },
                                       [this] { driver_.resume(device_); });
  rest_->KeepAwake({});
}

OpenedDevice::~OpenedDevice() {
  rest_.reset();
  {
    const CurrentContext current(context_);
    for (const auto& [wave, voice] : voices_)
      DeleteVoice(voice);
  }
  alcDestroyContext(context_);
  alcCloseDevice(device_);
}

bool OpenedDevice::IsConnected() const {
  return driver_.isConnected(device_);
}

void OpenedDevice::Add(const WaveRef& wave, const WaveData& data) {
  const CurrentContext current(context_);
  alGetError();
  Voice voice{.length = data.Length()};
  alGenBuffers(1, &voice.buffer);
  alBufferData(voice.buffer, AL_FORMAT_STEREO16, data.samples.data(),
               static_cast<ALsizei>(data.samples.size() * sizeof(data.samples[0])),
               data.framesPerSecond);
  alGenSources(1, &voice.source);
  alSourcei(voice.source, AL_BUFFER, static_cast<ALint>(voice.buffer));
  if (alGetError() != AL_NO_ERROR) {
    DeleteVoice(voice);
    throw Error("The sound device does not take another sound.");
  }
  voices_.emplace(wave, voice);
}

void OpenedDevice::Remove(const WaveRef& wave) {
  const auto found = voices_.find(wave);
  if (found == voices_.end()) return;
  const CurrentContext current(context_);
  DeleteVoice(found->second);
  voices_.erase(found);
}

// A buffer can be deleted only when no source holds it.
void OpenedDevice::DeleteVoice(const Voice& voice) {
  if (voice.source != 0) {
    alSourceStop(voice.source);
    alSourcei(voice.source, AL_BUFFER, 0);
    alDeleteSources(1, &voice.source);
  }
  if (voice.buffer != 0) alDeleteBuffers(1, &voice.buffer);
}

void OpenedDevice::SetGain(const WaveRef& wave, float gain) {
  const CurrentContext current(context_);
  alSourcef(voices_.at(wave).source, AL_GAIN, gain);
}

void OpenedDevice::SetFrame(const WaveRef& wave, std::int32_t frame) {
  const CurrentContext current(context_);
  alSourcei(voices_.at(wave).source, AL_SAMPLE_OFFSET, frame);
}

void OpenedDevice::Play(const WaveRef& wave) {
  const CurrentContext current(context_);
  const auto& [buffer, source, length] = voices_.at(wave);
  ALint state = AL_INITIAL;
  alGetSourcei(source, AL_SOURCE_STATE, &state);
  if (state != AL_PLAYING) alSourcePlay(source);
  rest_->KeepAwake(length);
}

}  // namespace platform::desktop
