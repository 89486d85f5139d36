// SPDX-License-Identifier: MIT
// The scripted surfaces, sounds and messages of the twin.
#include "tests/platform/TwinDevices.h"

#include <map>
#include <set>
#include <sstream>

#include "platform/Error.h"
#include "platform/Messages.h"
#include "platform/Sound.h"
#include "platform/Surface.h"
#include "tests/platform/Twin.h"

namespace {

using platform::ColorKey;
using platform::Rect;
using platform::Size;

constexpr int kTextHeight = 40;
constexpr int kLetterWidth = 16;
constexpr platform::Size kScreen = {1920, 1080};

struct Devices {
  bool logDrawing = false;
  std::vector<std::string> drawing;
  std::map<std::string, Size> bitmapSizes;
  std::set<std::string> broken;
  std::vector<std::string> played;
  std::function<void(const std::string&)> onPlay;
  std::vector<std::string> loaded;
  std::map<std::string, std::int32_t> volumes;
  int liveBuffers = 0;
  std::vector<twin::MessageRecord> messages;
  platform::MessageAnswer answer = platform::MessageAnswer::Ok;
};

Devices devices;

template <typename... Parts>
void Log(const Parts&... parts) {
  if (!devices.logDrawing) return;
  std::ostringstream line;
  (line << ... << parts);
  devices.drawing.push_back(line.str());
}

std::string Text(const Rect& r) {
  std::ostringstream text;
  text << r.left << ',' << r.top << ',' << r.right << ',' << r.bottom;
  return text.str();
}

bool IsInside(const Rect& r, Size size) {
  return r.left >= 0 && r.top >= 0 && r.right <= size.width && r.bottom <= size.height;
}

bool Touches(const Rect& r, Size size) {
  return r.right > 0 && r.bottom > 0 && r.left < size.width && r.top < size.height;
}

bool IsEmpty(const Rect& r) {
  return r.Width() <= 0 || r.Height() <= 0;
}

const char* Verdict(bool accepted) {
  return accepted ? "" : " refused";
}

class TwinClipper : public platform::Clipper {
 public:
  void SetHWnd(platform::WindowHandle) override {}
};

class TwinSurface : public platform::Surface {
 public:
  TwinSurface(std::string name, Size size) : name_(std::move(name)), size_(size) {}

  Size GetSurfaceDesc() const override { return size_; }
  void SetClipper(std::shared_ptr<platform::Clipper>) override { Log("SetClipper ", name_); }
  void SetColorKey(platform::Colour low, platform::Colour high) override {
    Log("SetColorKey ", name_, ' ', low, ' ', high);
  }

  bool Blt(const Rect& to, const Surface& source, const Rect& from, ColorKey key) override {
    const auto& other = dynamic_cast<const TwinSurface&>(source);
    const bool accepted =
        !IsEmpty(to) && !IsEmpty(from) && IsInside(from, other.size_) && Touches(to, size_);
    if (devices.logDrawing)
      Log("Blt ", name_, ' ', Text(to), ' ', other.name_, ' ', Text(from),
          key == ColorKey::Source ? " keyed" : "", Verdict(accepted));
    return accepted;
  }

  bool BltFast(std::int32_t x, std::int32_t y, const Surface& source, const Rect& from,
               ColorKey) override {
    const auto& other = dynamic_cast<const TwinSurface&>(source);
    const Rect to = {x, y, x + from.Width(), y + from.Height()};
    const bool accepted = !IsEmpty(from) && IsInside(from, other.size_) && IsInside(to, size_);
    if (devices.logDrawing)
      Log("BltFast ", x, ',', y, ' ', other.name_, ' ', Text(from), Verdict(accepted));
    return accepted;
  }

  void SetFontTransparency(bool transparent) override { Log("Transparent ", transparent); }
  void SetForeColor(platform::Colour colour) override { Log("ForeColor ", colour); }
  void SetFillColor(platform::Colour colour) override { Log("FillColor ", colour); }
  void SetFont(const platform::Font& font) override {
    Log("Font ", font.family, ' ', font.pixelSize);
  }
  void DrawText(std::int32_t x, std::int32_t y, const std::string& text) override {
    Log("Text ", x, ',', y, ' ', text);
  }
  void DrawBox(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) override {
    Log("Box ", Text({x1, y1, x2, y2}));
  }
  void DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) override {
    Log("Line ", Text({x1, y1, x2, y2}));
  }

 private:
  std::string name_;
  Size size_;
};

class TwinDisplay : public platform::DisplayDevice {
 public:
  void SetCooperativeLevel(platform::WindowHandle) override { Log("SetCooperativeLevel"); }
  std::shared_ptr<platform::Surface> CreatePrimarySurface() override {
    Log("CreatePrimarySurface");
    return std::make_shared<TwinSurface>("screen", kScreen);
  }
  std::shared_ptr<platform::Surface> CreateSurface(Size size) override {
    Log("CreateSurface ", size.width, ',', size.height);
    return std::make_shared<TwinSurface>("back", size);
  }
  std::shared_ptr<platform::Surface> CreateSurfaceFromFile(const std::string& path) override {
    const std::string name = twin::FileName(path);
    Log("CreateSurfaceFromFile ", path);
    twin::ThrowIfBroken(name);
    const auto size = devices.bitmapSizes.find(name);
    return std::make_shared<TwinSurface>(
        name, size != devices.bitmapSizes.end() ? size->second : Size{64, 64});
  }
  std::shared_ptr<platform::Clipper> CreateClipper() override {
    Log("CreateClipper");
    return std::make_shared<TwinClipper>();
  }
};

class TwinSoundBuffer : public platform::SoundBuffer {
 public:
  explicit TwinSoundBuffer(std::string name) : name_(std::move(name)) { ++devices.liveBuffers; }
  TwinSoundBuffer(const TwinSoundBuffer&) = delete;
  TwinSoundBuffer& operator=(const TwinSoundBuffer&) = delete;
  ~TwinSoundBuffer() override { --devices.liveBuffers; }

  void SetVolume(std::int32_t hundredths) override { devices.volumes[name_] = hundredths; }
  void SetCurrentPosition(std::int32_t position) override { rewound_ = position == 0; }
  void Play() override {
    devices.played.push_back(rewound_ ? name_ : name_ + " unrewound");
    if (devices.onPlay) devices.onPlay(name_);
  }

 private:
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
};

}  // namespace

namespace twin {

void ResetDevices() {
  const int alive = devices.liveBuffers;
  devices = {};
  devices.liveBuffers = alive;
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

void LogDrawing(bool on) {
  devices.logDrawing = on;
}
std::vector<std::string>& DrawingLog() {
  return devices.drawing;
}
void SetBitmapSize(const std::string& name, Size size) {
  devices.bitmapSizes[name] = size;
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
int LiveSoundBuffers() {
  return devices.liveBuffers;
}
std::vector<MessageRecord>& Messages() {
  return devices.messages;
}
void AnswerMessages(platform::MessageAnswer answer) {
  devices.answer = answer;
}

}  // namespace twin

namespace platform {

std::shared_ptr<DisplayDevice> DirectDrawCreate() {
  twin::ThrowIfBroken("display");
  return std::make_shared<TwinDisplay>();
}

std::shared_ptr<SoundDevice> DirectSoundCreate() {
  twin::ThrowIfBroken("sound");
  return std::make_shared<TwinSoundDevice>();
}

void GetWindowRect(WindowHandle, Rect& rect) {
  rect = {100, 100, 612, 676};
}

Size MeasureText(const Font&, const std::string& text) {
  return {kLetterWidth * static_cast<int>(text.size()), kTextHeight};
}

MessageAnswer ShowMessage(const std::string& text, const std::string& title, MessageIcon icon,
                          MessageButtons buttons) {
  devices.messages.push_back({text, title, icon, buttons});
  return devices.answer;
}

}  // namespace platform
