// SPDX-License-Identifier: MIT
// The scripted sounds and messages of the twin, and what was scripted for its display.
#include "tests/platform/TwinDevices.h"

#include <map>
#include <memory>
#include <set>

#include "platform/Error.h"
#include "platform/Messages.h"
#include "platform/Sound.h"
#include "tests/platform/Twin.h"

namespace {

struct Devices {
  std::function<void(const platform::Frame&)> onShow;
  std::map<std::string, platform::Size> bitmapSizes;
  std::set<std::string> broken;
  std::vector<std::string> played;
  std::function<void(const std::string&)> onPlay;
  std::vector<std::string> loaded;
  std::map<std::string, std::int32_t> volumes;
  std::shared_ptr<int> sounds = std::make_shared<int>();  // each sound is an owner more
  std::vector<twin::MessageRecord> messages;
  platform::MessageAnswer answer = platform::MessageAnswer::Ok;
};

Devices devices;

class TwinSoundBuffer : public platform::SoundBuffer {
 public:
  explicit TwinSoundBuffer(std::string name) : name_(std::move(name)) {}

  void SetVolume(std::int32_t hundredths) override { devices.volumes[name_] = hundredths; }
  void SetCurrentPosition(std::int32_t position) override { rewound_ = position == 0; }
  void Play() override {
    devices.played.push_back(rewound_ ? name_ : name_ + " unrewound");
    if (devices.onPlay) devices.onPlay(name_);
  }

 private:
  std::shared_ptr<int> alive_ = devices.sounds;
  std::string name_;
  bool rewound_ = false;
};

class TwinSoundDevice : public platform::SoundDevice {
 public:
  void SetCooperativeLevel(platform::WindowHandle) override {}
  std::shared_ptr<platform::SoundBuffer> CreateSoundBuffer() override {
    return std::make_shared<TwinSoundBuffer>("primary");
  }
  std::shared_ptr<platform::SoundBuffer> CreateSoundBufferFromFile(
      const std::string& path) override {
    devices.loaded.push_back(path);
    twin::ThrowIfBroken(twin::FileName(path));
    return std::make_shared<TwinSoundBuffer>(twin::FileName(path));
  }

 private:
  std::shared_ptr<int> alive_ = devices.sounds;
};

}  // namespace

namespace twin {

void ResetDevices() {
  auto sounds = devices.sounds;
  devices = {};
  devices.sounds = std::move(sounds);
  ResetGraphs();
}

void ThrowIfBroken(const std::string& name) {
  if (IsBroken(name)) throw platform::Error(name + " is broken");
}

bool IsBroken(const std::string& name) {
  return devices.broken.contains(name);
}

std::string FileName(const std::string& path) {
  return path.substr(path.find_last_of('/') + 1);
}

void OnShow(std::function<void(const platform::Frame&)> listener) {
  devices.onShow = std::move(listener);
}
void Show(const platform::Frame& frame) {
  if (devices.onShow) devices.onShow(frame);
}
void SetBitmapSize(const std::string& name, platform::Size size) {
  devices.bitmapSizes[name] = size;
}
platform::Size BitmapSize(const std::string& name) {
  return devices.bitmapSizes.at(name);
}
void Break(const std::string& name) {
  devices.broken.insert(name);
}
std::vector<std::string>& PlayedSounds() {
  return devices.played;
}
void OnPlay(std::function<void(const std::string&)> listener) {
  devices.onPlay = std::move(listener);
}
std::vector<std::string>& LoadedSounds() {
  return devices.loaded;
}
std::int32_t VolumeOf(const std::string& name) {
  return devices.volumes.at(name);
}
long LiveSounds() {
  return devices.sounds.use_count() - 1;
}
std::vector<MessageRecord>& Messages() {
  return devices.messages;
}
void AnswerMessages(platform::MessageAnswer answer) {
  devices.answer = answer;
}

}  // namespace twin

namespace platform {

std::shared_ptr<SoundDevice> DirectSoundCreate() {
  twin::ThrowIfBroken("sound");
  return std::make_shared<TwinSoundDevice>();
}

MessageAnswer ShowMessage(const std::string& text, const std::string& title, MessageIcon icon,
                          MessageButtons buttons) {
  devices.messages.push_back({text, title, icon, buttons});
  return devices.answer;
}

}  // namespace platform
