// SPDX-License-Identifier: MIT
// The scripted twin of the desktop: a clock, an event queue, random numbers, files and devices that
// a test scripts, and a log of what was asked of them. It is linked in place of platform/desktop.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/FilterGraph.h"
#include "platform/Messages.h"
#include "platform/Surface.h"

namespace twin {

/// What EndProgram throws, so that nothing beneath it runs again.
struct ProgramEnded {
  int exitCode;
};

/// Noon, tick 0, no events, no logs, nothing broken, the generator seeded with `seed`.
void Reset(std::uint64_t seed = 1);

// The clock. It stands still but for AdvanceTo and for the waits of the program.
void SetTimer(double secondsSinceMidnight);
void AdvanceTo(std::int32_t tick);

// Events. They run where the program lets events run, once their tick has come.
void ScheduleAt(std::int32_t tick, std::function<void()> event);
/// Runs `event` at the n-th place from now on where events run, 1 being the next.
void ScheduleAtPlace(int n, std::function<void()> event);
/// Runs at every place where events run, but not inside itself. Null ends it.
void OnEveryPlace(std::function<void()> event);
/// Places where events ran since the reset.
long PlacesPassed();

// Randomness. Scripted values come first, then those of the seeded generator.
void ScriptRnd(const std::vector<double>& values);
/// Scripts what `Int(Rnd * count)` is to give.
void ScriptNumbers(const std::vector<int>& numbers, int count);
std::size_t ScriptedRndLeft();

// Devices.
struct GraphRecord {
  std::string path;
  bool rendered = true;  ///< first data has arrived
  bool running = false;
  bool alive = true;
  std::int32_t volume = 0;
  platform::GraphEvent event = platform::GraphEvent::None;
  std::vector<std::string> calls = {};  ///< "Run", "Pause", "Stop" and "SetVolume -900"
};

struct MessageRecord {
  std::string text;
  std::string title;
  platform::MessageIcon icon;
  platform::MessageButtons buttons;
  bool operator==(const MessageRecord&) const = default;
};

/// What a test scripts for the devices, and what was asked of them since the reset, in order.
struct Devices {
  std::string folder = "program";
  /// Any call that needs the thing of this name throws Error: a file name, "display" or "sound". A
  /// graph yields false for a broken file.
  std::set<std::string> broken;
  std::map<std::string, platform::Size> bitmapSizes;  ///< by file, told before it is loaded
  std::function<void(const platform::Frame&)> onShow;
  std::vector<std::string> loaded;  ///< paths of wave files, a broken one included
  std::vector<std::string> played;  ///< names of effects
  std::function<void(const std::string&)> onPlay;
  std::map<std::string, std::int32_t> volumes;            ///< by the names of effects
  std::shared_ptr<int> sounds = std::make_shared<int>();  ///< each buffer and device owns it too
  std::vector<std::shared_ptr<GraphRecord>> graphs;
  bool renderAtOnce = true;  ///< graphs made from now on have their first data at once
  std::vector<MessageRecord> messages;
  platform::MessageAnswer answer = platform::MessageAnswer::Ok;
};
inline Devices devices;

/// How many buffers and devices are there.
inline long LiveSounds() {
  return devices.sounds.use_count() - 1;
}
void ThrowIfBroken(const std::string& name);
/// The last part of a path.
std::string FileName(const std::string& path);

/// A line for each item, such as "gemsheet1024x512.bmp 0,0,64,64 0,64,64,128 keyed" with the part
/// of the bitmap first, "Box 20,521,256,531 61440 200" with outline and filling, or "Text 1,531
/// 61440 Level: 1".
std::vector<std::string> Lines(const platform::Frame& frame);

}  // namespace twin
