// SPDX-License-Identifier: MIT
// The filter graphs on the real library, with the samples read in place of a sound device.
#include <gst/gst.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <thread>

#include "platform/desktop/FilterGraph.h"
#include "tests/desktop/SoundFiles.h"

namespace {
int heapTrims = 0;
}  // namespace

// In place of the C library's, which holds up every thread that wants memory.
extern "C" int malloc_trim(std::size_t) noexcept {
  return ++heapTrims;
}

namespace platform::desktop {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSilentSink = "fakesink sync=false";
constexpr const char* kPacedSink = "fakesink sync=true";
constexpr double kExact = 0.2;  // decibels
// What the library may keep for later streams; it is more for each of them that leaks.
constexpr long kPooledThreads = 16;
constexpr std::size_t kStoredForBeeps = 1024;  // kilobytes
constexpr std::size_t kStoredForTracks = 4096;
const std::vector<std::string> kTypes = {"wav", "mp3", "wma", "mid"};

std::string PathOf(const std::string& name) {
  return tones::Scratch().Path("a # " + name);
}

// The encoders of the library that plays the files.
void Encode(const std::string& encoder, const std::string& to) {
  const std::string pipeline = "filesrc location=\"" + PathOf("tone.wav") + "\" ! wavparse ! " +
                               "audioconvert ! " + encoder + " ! filesink location=\"" + to + "\"";
  GstElement* encoding = gst_parse_launch(pipeline.c_str(), nullptr);
  gst_element_set_state(encoding, GST_STATE_PLAYING);
  GstBus* bus = gst_element_get_bus(encoding);
  GstMessage* end = gst_bus_timed_pop_filtered(
      bus, GST_CLOCK_TIME_NONE, static_cast<GstMessageType>(GST_MESSAGE_EOS | GST_MESSAGE_ERROR));
  EXPECT_EQ(GST_MESSAGE_TYPE(end), GST_MESSAGE_EOS) << encoder;
  gst_message_unref(end);
  gst_object_unref(bus);
  gst_element_set_state(encoding, GST_STATE_NULL);
  gst_object_unref(encoding);
}

// One track, two beats of one note.
void WriteMidi(const std::string& path) {
  const char header[] = "MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x0d";
  const char track[] = "\0\x90\x3c\x64\x81\x40\x80\x3c\0\0\xff\x2f";
  std::ofstream file(path, std::ios::binary);
  file.write(header, sizeof header - 1);
  file.write(track, sizeof track);
}

void WaitForEnd(FilterGraph& graph) {
  while (graph.WaitForCompletion() == GraphEvent::None)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

GraphEvent Play(const std::string& path, const std::string& sink, std::int32_t volume = 0) {
  const auto graph = CreateFilterGraphInto(sink);
  EXPECT_TRUE(graph->RenderFile(path));
  graph->SetVolume(volume);
  graph->Run();
  WaitForEnd(*graph);
  return graph->WaitForCompletion();
}

std::vector<float> Samples(const std::string& path, std::int32_t volume) {
  const std::string raw = PathOf("heard.raw");
  Play(path, "audio/x-raw,format=F32LE,channels=2,rate=44100 ! filesink location=\"" + raw + "\"",
       volume);
  WaitUntilMediaIdle();
  std::ifstream file(raw, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  const auto* first = reinterpret_cast<const float*>(bytes.data());
  return {first, first + bytes.size() / sizeof(float)};
}

long EntriesOf(const char* folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

// What the program holds of its heap; the sanitizer, which has one of its own, looks for leaks
// itself.
std::size_t HeapKilobytes() {
  const struct mallinfo2 heap = mallinfo2();
  return (heap.uordblks + heap.hblkhd) / 1024;
}

class FilterGraphTest : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    WarmUpMedia();
    WaitUntilMediaIdle();
    tones::WriteTone(PathOf("tone.wav"), 2, 1);
    Encode("lamemp3enc ! id3v2mux", PathOf("tone.mp3"));
    Encode("avenc_wmav2 ! asfmux", PathOf("tone.wma"));
    WriteMidi(PathOf("tone.mid"));
  }
  void TearDown() override { WaitUntilMediaIdle(); }

  static bool HasMoreThan(long threads, std::size_t memory) {
    return EntriesOf("/proc/self/task") > threads + kPooledThreads || HeapKilobytes() >= memory;
  }

  // Does `work` five times as often as is needed to fill the library's own stores.
  static void ExpectNothingLeftBehind(int warmUp, std::size_t stored,
                                      const std::function<void(int)>& work) {
    const auto repeat = [&](int times) {
      for (int i = 0; i < times; ++i)
        work(i);
      WaitUntilMediaIdle();
    };
    repeat(warmUp);
    const long files = EntriesOf("/proc/self/fd");
    const long threads = EntriesOf("/proc/self/task");
    const std::size_t memory = HeapKilobytes() + stored;
    repeat(5 * warmUp);
    // The library's pool lets go of threads that had nothing to do for a quarter of a minute, and
    // of the memory that they keep.
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(40);
    while (HasMoreThan(threads, memory) && std::chrono::steady_clock::now() < end)
      std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_LE(EntriesOf("/proc/self/fd"), files);
    EXPECT_LE(EntriesOf("/proc/self/task"), threads + kPooledThreads);
    EXPECT_LT(HeapKilobytes(), memory);
  }
};

TEST_F(FilterGraphTest, AllFourTypesPlayToTheirEnd) {
  for (const std::string& type : kTypes)
    EXPECT_EQ(Play(PathOf("tone." + type), kSilentSink), GraphEvent::Complete) << type;
}

TEST_F(FilterGraphTest, VolumesAreExactAtTheOutput) {
  for (const char* type : {"wav", "mp3", "wma"}) {
    const std::string path = PathOf(std::string("tone.") + type);
    const double own = tones::Level(Samples(path, 0), 0, 10000, 30000);
    for (const int volume : {-900, -6000}) {
      const auto heard = Samples(path, volume);
      for (const std::size_t side : {0U, 1U})
        EXPECT_NEAR(tones::Level(heard, side, 10000, 30000) - own, volume / 100.0, kExact) << type;
    }
    EXPECT_LT(tones::Level(Samples(path, -10000), 0, 10000, 30000), -150);
  }
  EXPECT_NEAR(tones::Level(Samples(PathOf("tone.wav"), 100), 0, 10000, 30000), 0, kExact);
}

TEST_F(FilterGraphTest, MidiIsHeardThroughTheSoundfont) {
  EXPECT_GT(std::ranges::max(Samples(PathOf("tone.mid"), 0)), 0.01F);
}

TEST_F(FilterGraphTest, WhatCannotBePlayedIsTold) {
  const auto graph = CreateFilterGraphInto(kSilentSink);
  EXPECT_FALSE(graph->RenderFile(PathOf("nowhere.wav")));
  EXPECT_FALSE(graph->RenderFile(tones::Scratch().Path()));
  EXPECT_EQ(Play(PathOf("tone.wav"), "nosuchelement"), GraphEvent::RenderFailed);
  for (const std::string& type : kTypes) {
    for (const char* content : {"", "This is no sound at all, whatever its name may say of it."}) {
      const std::string path = PathOf("damaged." + type);
      std::ofstream(path) << content;
      EXPECT_EQ(Play(path, kSilentSink), GraphEvent::RenderFailed) << type << content;
    }
  }
}

// Another track of the same length tells when this one would have ended.
TEST_F(FilterGraphTest, NothingPlaysBeforeItIsRunNorAfterItIsStopped) {
  const std::string path = PathOf("tone.wav");
  const auto graph = CreateFilterGraphInto(kPacedSink);
  graph->RenderFile(path);
  Play(path, kPacedSink);
  EXPECT_TRUE(graph->IsRendered());
  EXPECT_EQ(graph->WaitForCompletion(), GraphEvent::None);
  graph->Run();
  graph->Stop();
  Play(path, kPacedSink);
  EXPECT_EQ(graph->WaitForCompletion(), GraphEvent::None);
  graph->Run();
  WaitForEnd(*graph);
  EXPECT_EQ(graph->WaitForCompletion(), GraphEvent::Complete);
}

TEST_F(FilterGraphTest, AThousandBeepsLeaveNothingBehind) {
  const std::string path = PathOf("beep.wav");
  tones::WriteTone(path, 1, 0.05);
  ExpectNothingLeftBehind(200, kStoredForBeeps,
                          [&](int) { EXPECT_EQ(Play(path, kSilentSink), GraphEvent::Complete); });
  EXPECT_EQ(heapTrims, 0);
}

// Each is let go while it plays, as soon as the next one is there.
TEST_F(FilterGraphTest, TwoHundredTracksLeaveNothingBehind) {
  std::shared_ptr<FilterGraph> graph;
  ExpectNothingLeftBehind(40, kStoredForTracks, [&](int i) {
    graph = CreateFilterGraphInto(kPacedSink);
    EXPECT_TRUE(graph->RenderFile(PathOf("tone." + kTypes[static_cast<std::size_t>(i) % 4])));
    graph->Run();
    while (!graph->IsRendered())
      std::this_thread::yield();
    WaitUntilMediaIdle();
  });
}

}  // namespace
}  // namespace platform::desktop
