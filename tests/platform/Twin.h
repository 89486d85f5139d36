// SPDX-License-Identifier: MIT
// The scripted twin of the desktop: a clock, an event queue, random numbers, files and devices that
// a test scripts, and a log of what was asked of them. It is linked in place of platform/desktop.
#pragma once

#include <cstdint>
#include <functional>
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

// Surfaces.
/// Called with each frame at the moment it is shown. Null ends it.
void OnShow(std::function<void(const platform::Frame&)> listener);
/// A line for each item, such as "gemsheet1024x512.bmp 0,0,64,64 0,64,64,128 keyed" with the part
/// of the bitmap first, "Box 20,521,256,531 61440 200" with outline and filling, or "Text 1,531
/// 61440 Level: 1".
std::vector<std::string> Lines(const platform::Frame& frame);
/// Size of the bitmap file of this name, which has to be told before it is loaded.
void SetBitmapSize(const std::string& name, platform::Size size);
/// Any call that needs the thing of this name throws Error: a file name, "display" or "sound".
/// A graph yields false for a broken file.
void Break(const std::string& name);

// Sounds.
/// Names of the effects in the order in which they were played.
std::vector<std::string>& PlayedSounds();
/// Called with the name of each effect at the moment it is played. Null ends it.
void OnPlay(std::function<void(const std::string&)> listener);
std::int32_t VolumeOf(const std::string& name);
/// Paths of the wave files in the order in which they were loaded, a broken one included.
std::vector<std::string>& LoadedSounds();
/// How many buffers and devices are there.
long LiveSounds();

// Filter graphs.
struct GraphRecord {
  std::string path;
  bool rendered = true;  ///< first data has arrived
  bool running = false;
  bool alive = true;
  std::int32_t volume = 0;
  platform::GraphEvent event = platform::GraphEvent::None;
  std::vector<std::string> calls = {};  ///< "Run", "Pause", "Stop" and "SetVolume -900"
};
/// All graphs made since the reset, in order.
std::vector<GraphRecord*> Graphs();
/// Whether the graphs made from now on have their first data at once.
void RenderAtOnce(bool atOnce);

// Messages.
struct MessageRecord {
  std::string text;
  std::string title;
  platform::MessageIcon icon;
  platform::MessageButtons buttons;
};
std::vector<MessageRecord>& Messages();
void AnswerMessages(platform::MessageAnswer answer);

// The program.
void SetProgramFolder(const std::string& folder);

}  // namespace twin
