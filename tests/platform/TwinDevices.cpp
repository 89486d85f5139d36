// SPDX-License-Identifier: MIT
// The scripted sounds, filter graphs and messages of the twin.
#include <algorithm>

#include "platform/Error.h"
#include "platform/Messages.h"
#include "platform/Sound.h"
#include "tests/platform/Twin.h"

namespace {

using twin::devices;

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

constexpr std::size_t kMostRecords = 4096;  // a bot's games would keep too many

class TwinGraph : public platform::FilterGraph {
 public:
  TwinGraph() : record_(std::make_shared<twin::GraphRecord>()) {
    record_->rendered = devices.renderAtOnce;
    if (devices.graphs.size() < kMostRecords) devices.graphs.push_back(record_);
  }
  TwinGraph(const TwinGraph&) = delete;
  TwinGraph& operator=(const TwinGraph&) = delete;
  ~TwinGraph() override {
    record_->alive = false;
    record_->running = false;
  }

  bool RenderFile(const std::string& path) override {
    record_->path = path;
    return !devices.broken.contains(twin::FileName(path));
  }
  void Run() override { Switch("Run", true); }
  void Pause() override { Switch("Pause", false); }
  void Stop() override { Switch("Stop", false); }
  void SetVolume(std::int32_t hundredths) override {
    record_->volume = std::clamp(hundredths, -10000, 0);
    record_->calls.push_back("SetVolume " + std::to_string(hundredths));
  }
  std::int32_t GetVolume() const override { return record_->volume; }
  bool IsRendered() override { return record_->rendered; }
  platform::GraphEvent WaitForCompletion() override { return record_->event; }

 private:
  void Switch(const char* call, bool running) {
    record_->running = running;
    record_->calls.emplace_back(call);
  }

  std::shared_ptr<twin::GraphRecord> record_;
};

}  // namespace

namespace twin {

void ThrowIfBroken(const std::string& name) {
  if (devices.broken.contains(name)) throw platform::Error(name + " is broken");
}

std::string FileName(const std::string& path) {
  return path.substr(path.find_last_of('/') + 1);
}

}  // namespace twin

namespace platform {

std::shared_ptr<SoundDevice> DirectSoundCreate() {
  twin::ThrowIfBroken("sound");
  return std::make_shared<TwinSoundDevice>();
}

std::shared_ptr<FilterGraph> CreateFilterGraph() {
  return std::make_shared<TwinGraph>();
}

MessageAnswer ShowMessage(const std::string& text, const std::string& title, MessageIcon icon,
                          MessageButtons buttons) {
  devices.messages.push_back({text, title, icon, buttons});
  return devices.answer;
}

}  // namespace platform
