// SPDX-License-Identifier: MIT
// The filter graphs on the real library, with the samples read in place of a sound device.
#include <gst/gst.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <thread>

#include "platform/desktop/Media.h"
#include "tests/desktop/SoundFiles.h"

namespace platform {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr const char* kSilentSink = "fakesink sync=false";
constexpr const char* kPacedSink = "fakesink sync=true";
constexpr double kExact = 0.2;       // decibels
constexpr long kPooledThreads = 16;  // that the library may keep idle for the next stream
const std::vector<std::string> kTypes = {"wav", "mp3", "wma", "mid"};

std::string PathOf(const std::string& name) {
  return testing::TempDir() + "glimmerfall # " + std::to_string(getpid()) + name;
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
};

TEST_F(FilterGraphTest, AllFourTypesPlayToTheirEnd) {
  for (const std::string& type : kTypes)
    EXPECT_EQ(Play(PathOf("tone." + type), kSilentSink), GraphEvent::Complete) << type;
}

TEST_F(FilterGraphTest, VolumesAreExactAtTheOutput) {
  for (const char* type : {"wav", "mp3", "wma"}) {
    const std::string path = PathOf(std::string("tone.") + type);
    const double own = tones::Level(Samples(path, 0), 0, 10000, 30000);
    for (const int volume : {-900, -300, -4000, -6000}) {
      const auto heard = Samples(path, volume);
      for (const std::size_t side : {0U, 1U})
        EXPECT_NEAR(tones::Level(heard, side, 10000, 30000) - own, volume / 100.0, kExact) << type;
    }
    EXPECT_LT(tones::Level(Samples(path, -10000), 0, 10000, 30000), -150);
  }
  EXPECT_NEAR(tones::Level(Samples(PathOf("tone.wav"), 0), 0, 10000, 30000), 0, kExact);
}

TEST_F(FilterGraphTest, MidiIsHeardThroughTheSoundfont) {
  const auto heard = Samples(PathOf("tone.mid"), 0);
  float peak = 0;
  for (const float sample : heard)
    peak = std::max(peak, std::abs(sample));
  EXPECT_GT(peak, 0.01F);
}

TEST_F(FilterGraphTest, VolumesAreHeldToTheirRange) {
  const auto graph = CreateFilterGraphInto(kSilentSink);
  graph->SetVolume(100);
  EXPECT_EQ(graph->GetVolume(), 0);
  graph->SetVolume(-20000);
  EXPECT_EQ(graph->GetVolume(), -10000);
}

TEST_F(FilterGraphTest, WhatIsNoFileIsRefusedAtOnce) {
  const auto graph = CreateFilterGraphInto(kSilentSink);
  EXPECT_FALSE(graph->RenderFile(PathOf("nowhere.wav")));
  EXPECT_FALSE(graph->RenderFile(testing::TempDir()));
}

TEST_F(FilterGraphTest, DamagedFilesTurnOutNotToBePlayable) {
  for (const std::string& type : kTypes) {
    for (const char* content : {"", "This is no sound at all, whatever its name may say of it."}) {
      const std::string path = PathOf("damaged." + type);
      std::ofstream(path) << content;
      EXPECT_EQ(Play(path, kSilentSink), GraphEvent::RenderFailed) << type << content;
    }
  }
}

TEST_F(FilterGraphTest, AMissingSinkIsNotPlayable) {
  EXPECT_EQ(Play(PathOf("tone.wav"), "nosuchelement"), GraphEvent::RenderFailed);
}

TEST_F(FilterGraphTest, NothingPlaysBeforeItIsRunNorAfterItIsStopped) {
  const auto graph = CreateFilterGraphInto(kSilentSink);
  graph->RenderFile(PathOf("tone.wav"));
  while (!graph->IsRendered())
    std::this_thread::yield();
  WaitUntilMediaIdle();
  EXPECT_EQ(graph->WaitForCompletion(), GraphEvent::None);
  graph->Run();
  graph->Stop();
  graph->Run();
  WaitForEnd(*graph);
  EXPECT_EQ(graph->WaitForCompletion(), GraphEvent::Complete);
}

// Measured for the record; how long a machine takes is no matter of right and wrong.
TEST_F(FilterGraphTest, OneTrackReplacesAnotherWithoutAWait) {
  for (const std::string& type : kTypes) {
    auto graph = CreateFilterGraphInto(kPacedSink);
    double longest = 0;
    for (int i = 0; i < 5; ++i) {
      const auto start = Clock::now();
      graph = CreateFilterGraphInto(kPacedSink);
      EXPECT_TRUE(graph->RenderFile(PathOf("tone." + type)));
      graph->Run();
      longest = std::max(longest,
                         std::chrono::duration<double, std::milli>(Clock::now() - start).count());
      while (!graph->IsRendered())
        std::this_thread::yield();
    }
    std::cout << type << " to " << type << ": longest call " << longest << " ms\n";
  }
}

long EntriesOf(const char* folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

#if !defined(__SANITIZE_ADDRESS__)
long ResidentKilobytes() {
  std::ifstream file("/proc/self/statm");
  long total = 0;
  long resident = 0;
  file >> total >> resident;
  return resident * sysconf(_SC_PAGESIZE) / 1024;
}
#endif

TEST_F(FilterGraphTest, AThousandBeepsLeaveNothingBehind) {
  const std::string path = PathOf("beep.wav");
  tones::WriteTone(path, 1, 0.05);
  const auto beep = [&](int times) {
    for (int i = 0; i < times; ++i)
      EXPECT_EQ(Play(path, kSilentSink), GraphEvent::Complete);
    WaitUntilMediaIdle();
  };
  beep(200);
  const long files = EntriesOf("/proc/self/fd");
  const long threads = EntriesOf("/proc/self/task");
#if !defined(__SANITIZE_ADDRESS__)
  const long memory = ResidentKilobytes();
#endif
  beep(1000);
  EXPECT_LE(EntriesOf("/proc/self/fd"), files);
  EXPECT_LE(EntriesOf("/proc/self/task"), threads + kPooledThreads);
#if !defined(__SANITIZE_ADDRESS__)
  // The sanitizer keeps freed memory, which tells nothing of leaks; it looks for those itself.
  EXPECT_LT(ResidentKilobytes() - memory, 1024);
#endif
}

}  // namespace
}  // namespace platform
