// SPDX-License-Identifier: MIT
// The filter graphs on the real library, with the samples read in place of a sound device.
#include <gst/gst.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/types.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <span>
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
constexpr std::size_t kStoredForBeeps = 512;  // kilobytes
constexpr std::size_t kStoredForTracks = 2048;
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

bool ComesTrue(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!condition() && std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return condition();
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

// A program that runs beside the test, and what it writes.
class Program {
 public:
  explicit Program(const std::string& command)
      : output_(popen(("echo $$; exec " + command).c_str(), "r")) {
    std::array<char, 16> line;
    process_ = std::atoi(fgets(line.data(), line.size(), output_));
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    kill(process_, SIGKILL);
    pclose(output_);
  }
  FILE* Output() { return output_; }

 private:
  FILE* output_;
  pid_t process_;
};

// A sound server for this test alone, and a recording of what it plays.
class SoundServer {
 public:
  SoundServer() {
    const std::string socket = folder_.Path("socket");
    setenv("PULSE_SERVER", ("unix:" + socket).c_str(), 1);
    server_ = std::make_unique<Program>(
        "env HOME=" + folder_.Path() + " XDG_RUNTIME_DIR=" + folder_.Path() +
        " pulseaudio -n --exit-idle-time=-1 --use-pid-file=no --load='module-null-sink "
        "sink_name=out rate=44100' --load='module-native-protocol-unix socket=" +
        socket + "' 2>/dev/null");
    while (std::system("pactl info >/dev/null 2>&1") != 0)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    recorder_ = std::make_unique<Program>(
        "parec -d out.monitor --format=float32le --rate=44100 --channels=2 --latency-msec=10");
    Record(1);
  }
  SoundServer(const SoundServer&) = delete;
  SoundServer& operator=(const SoundServer&) = delete;
  ~SoundServer() { setenv("PULSE_SERVER", "none", 1); }

  void Kill() { server_.reset(); }
  static bool HasStreams() { return std::system("pactl list short sink-inputs | grep -q .") == 0; }
  /// Waits for this much more.
  std::vector<float> Record(std::size_t frames) {
    std::vector<float> more(2 * frames);
    EXPECT_EQ(fread(more.data(), sizeof(float), more.size(), recorder_->Output()), more.size());
    heard_.insert(heard_.end(), more.begin(), more.end());
    return more;
  }
  /// Whether the tone comes to this level within seconds.
  bool ComesTo(double level, double exact = kExact) {
    constexpr std::size_t kTenPeriods = 1000;
    for (int i = 0; i < 200; ++i)
      if (std::abs(tones::Level(Record(kTenPeriods), 0, 0, kTenPeriods) - level) < exact)
        return true;
    return false;
  }
  bool FallsSilent() { return ComesTo(-150, 50); }
  std::span<const float> HeardSamples() const { return heard_; }
  /// Without those that are 0.
  double HeardFrames() const {
    return static_cast<double>(heard_.size() -
                               static_cast<std::size_t>(std::ranges::count(heard_, 0.0F))) /
           2;
  }

 private:
  const ScratchFolder folder_;
  std::unique_ptr<Program> server_;
  std::unique_ptr<Program> recorder_;
  std::vector<float> heard_;
};

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
    // A thread of the library's pool may still hold the last sound, and it lets go of threads that
    // had nothing to do for a quarter of a minute, and of the memory that they keep.
    EXPECT_TRUE(ComesTrue([&] {
      return EntriesOf("/proc/self/fd") <= files &&
             EntriesOf("/proc/self/task") <= threads + kPooledThreads && HeapKilobytes() < memory;
    })) << EntriesOf("/proc/self/fd")
        << " files, " << HeapKilobytes() << " kB";
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

// With the device goes the file.
TEST_F(FilterGraphTest, AnEndedSoundLetsGoOfItsDevice) {
  const std::string path = PathOf("tone.wav");
  const auto graph = CreateFilterGraphInto(kSilentSink);
  graph->RenderFile(path);
  graph->Run();
  WaitForEnd(*graph);
  EXPECT_TRUE(ComesTrue([&] {
    return std::ranges::none_of(fs::directory_iterator("/proc/self/fd"), [&](const auto& file) {
      std::error_code gone;
      return fs::read_symlink(file.path(), gone) == path;
    });
  }));
}

// A single note at the gain at which a whole piece is as loud as the tracks of the game.
TEST_F(FilterGraphTest, MidiIsHeardThroughTheSoundfont) {
  EXPECT_NEAR(std::ranges::max(Samples(PathOf("tone.mid"), 0)), 0.15F, 0.02F);
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

// Another sound of the same length tells when this one would have ended.
TEST_F(FilterGraphTest, NothingPlaysBeforeItIsRunNorAfterItIsStopped) {
  const std::string path = PathOf("paced.wav");
  tones::WriteTone(path, 1, 0.2);
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

// So short a sound lies in the server whole before any of it is heard. Its samples are 0 twice in
// a period.
TEST_F(FilterGraphTest, TheServerChangesAndHoldsWhatItHasNotPlayedYet) {
  constexpr double kSeconds = 0.95;
  constexpr double kFrames = kSeconds * tones::kRate * 0.98;
  constexpr int kHundredth = tones::kRate / 100;
  const std::string path = PathOf("short.wav");
  tones::WriteTone(path, 1, kSeconds);
  SoundServer server;
  const auto graph = CreateFilterGraph();
  graph->RenderFile(path);
  graph->SetVolume(-900);
  graph->Run();
  EXPECT_TRUE(server.ComesTo(-9));
  graph->Pause();
  EXPECT_TRUE(server.FallsSilent());
  EXPECT_EQ(graph->WaitForCompletion(), GraphEvent::None);
  const std::size_t heard = server.HeardSamples().size();
  graph->SetVolume(-6000);
  graph->Run();
  EXPECT_TRUE(server.ComesTo(-60));
  EXPECT_LT(std::ranges::count_if(server.HeardSamples().subspan(heard),
                                  [](float sample) { return sample > 0.0011F; }),
            kHundredth);
  graph->SetVolume(-3000);
  EXPECT_TRUE(server.ComesTo(-30));
  EXPECT_TRUE(server.FallsSilent());
  WaitForEnd(*graph);
  EXPECT_EQ(graph->WaitForCompletion(), GraphEvent::Complete);
  EXPECT_NEAR(server.HeardFrames(), kFrames, kFrames / 100);
  WaitUntilMediaIdle();
  EXPECT_FALSE(server.HasStreams());
}

// Longer than what the server takes in advance: the rest of the sound waits for room there.
TEST_F(FilterGraphTest, AHeldSoundThatIsLetGoOfLeavesTheServer) {
  const std::string path = PathOf("long.wav");
  tones::WriteTone(path, 1, 5);
  SoundServer server;
  auto graph = CreateFilterGraph();
  graph->RenderFile(path);
  graph->Run();
  EXPECT_TRUE(server.ComesTo(0));
  graph->Pause();
  EXPECT_TRUE(server.FallsSilent());
  graph.reset();
  EXPECT_TRUE(ComesTrue([] { return !SoundServer::HasStreams(); }));
}

TEST_F(FilterGraphTest, ASoundBreaksOffWithItsServerAndIsHeardFromTheNext) {
  for (int servers = 0; servers < 2; ++servers) {
    SoundServer server;
    const auto graph = CreateFilterGraph();
    graph->RenderFile(PathOf("tone.mp3"));
    graph->Run();
    EXPECT_TRUE(server.ComesTo(0));
    server.Kill();
    WaitForEnd(*graph);
    EXPECT_EQ(graph->WaitForCompletion(), GraphEvent::ErrorAbort);
  }
  EXPECT_EQ(Play(PathOf("tone.wav"), ""), GraphEvent::Complete) << "without a server";
}

TEST_F(FilterGraphTest, BeepsLeaveNothingBehind) {
  const std::string path = PathOf("beep.wav");
  tones::WriteTone(path, 1, 0.05);
  ExpectNothingLeftBehind(60, kStoredForBeeps,
                          [&](int) { EXPECT_EQ(Play(path, kSilentSink), GraphEvent::Complete); });
  EXPECT_EQ(heapTrims, 0);
}

// Each is let go while it plays, as soon as the next one is there.
TEST_F(FilterGraphTest, TracksLeaveNothingBehind) {
  std::shared_ptr<FilterGraph> graph;
  ExpectNothingLeftBehind(16, kStoredForTracks, [&](int i) {
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
