// SPDX-License-Identifier: MIT
// The filter graphs of the desktop: each hands its work to the media threads.
#include "platform/desktop/FilterGraph.h"

#include <gst/gst.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <utility>

#include "platform/desktop/MediaStream.h"
#include "platform/desktop/Volume.h"
#include "platform/desktop/WorkQueue.h"

namespace platform {

namespace desktop {

namespace {

constexpr const char* kMp3Decoder = "mpg123audiodec";

// The C library would give each thread of a stream a heap of its own and keep what a stream held in
// each of them. In one heap the next stream takes it. Nothing asks the library to give it back:
// that would hold up every thread that wants memory meanwhile, the game's own among them.
void KeepHeapSmall() {
  constexpr int kHeaps = 1;
  constexpr int kOwnMappingBytes = 1 << 20;  // what is larger goes back to the system when freed
  mallopt(M_ARENA_MAX, kHeaps);
  mallopt(M_MMAP_THRESHOLD, kOwnMappingBytes);
}

// The library's just-in-time compiler keeps its code in a mapped file below XDG_RUNTIME_DIR or,
// failing that, in the player's home, where a full disk would end the program with a bus error. The
// functions that come compiled play the same.
void KeepCodeOffTheHomesDisk() {
  if (std::getenv("XDG_RUNTIME_DIR") == nullptr) setenv("ORC_CODE", "backup", 0);
}

// Of the decoders of MP3 the library would take one that brings a hundred libraries of video along.
void PreferSmallDecoder() {
  GstPluginFeature* decoder =
      gst_registry_find_feature(gst_registry_get(), kMp3Decoder, GST_TYPE_ELEMENT_FACTORY);
  if (decoder == nullptr) return;
  gst_plugin_feature_set_rank(decoder, GST_RANK_PRIMARY);
  gst_object_unref(decoder);
}

void InitLibrary() {
  if (gst_init_check(nullptr, nullptr, nullptr) == TRUE) PreferSmallDecoder();
}

// Its first work brings the library up; streams that were asked for before that wait their turn.
WorkQueue& OpeningQueue() {
  static WorkQueue& queue = []() -> WorkQueue& {
    auto* made = new WorkQueue;
    made->Post(InitLibrary);
    return *made;
  }();
  return queue;
}

WorkQueue& ClosingQueue() {
  static WorkQueue& queue = *new WorkQueue;
  return queue;
}

bool CanBeOpened(const std::string& path) {
  std::error_code failed;
  return std::filesystem::is_regular_file(path, failed) && std::ifstream(path).is_open();
}

class DesktopGraph : public FilterGraph {
 public:
  explicit DesktopGraph(const std::string& sink) : stream_(std::make_shared<MediaStream>(sink)) {}
  DesktopGraph(const DesktopGraph&) = delete;
  DesktopGraph& operator=(const DesktopGraph&) = delete;
  // What was asked of the stream before comes first, and only then is it taken down.
  ~DesktopGraph() override {
    OpeningQueue().Post([stream = std::move(stream_)]() mutable {
      ClosingQueue().Post([closing = std::move(stream)] { closing->Close(); });
    });
  }

  bool RenderFile(const std::string& path) override {
    if (!CanBeOpened(path)) return false;
    Post([path](MediaStream& stream) { stream.Open(path); });
    return true;
  }
  void Run() override {
    Post([](MediaStream& stream) { stream.Run(); });
  }
  void Pause() override {
    Post([](MediaStream& stream) { stream.Pause(); });
  }
  // A stopped stream keeps its place. It is not taken down before it is let go, which may block.
  void Stop() override { Pause(); }
  void SetVolume(std::int32_t hundredths) override {
    volume_ = std::clamp(hundredths, kSilence, kFullLevel);
    Post([gain = GainOf(volume_)](MediaStream& stream) { stream.SetGain(gain); });
  }
  std::int32_t GetVolume() const override { return volume_; }
  bool IsRendered() override { return stream_->IsRendered(); }
  GraphEvent WaitForCompletion() override { return stream_->Event(); }

 private:
  template <typename Work>
  void Post(Work work) {
    OpeningQueue().Post([stream = stream_, work = std::move(work)] { work(*stream); });
  }

  std::shared_ptr<MediaStream> stream_;
  std::int32_t volume_ = kFullLevel;
};

}  // namespace

void WarmUpMedia() {
  KeepHeapSmall();
  KeepCodeOffTheHomesDisk();
  OpeningQueue();
}

std::shared_ptr<FilterGraph> CreateFilterGraphInto(const std::string& sink) {
  return std::make_shared<DesktopGraph>(sink);
}

void WaitUntilMediaIdle() {
  OpeningQueue().Wait();
  ClosingQueue().Wait();
}

}  // namespace desktop

std::shared_ptr<FilterGraph> CreateFilterGraph() {
  return desktop::CreateFilterGraphInto("");
}

}  // namespace platform
