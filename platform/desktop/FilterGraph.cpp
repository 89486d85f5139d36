// SPDX-License-Identifier: MIT
// Filter graphs on GStreamer's playbin. All calls into the library are made on a thread of its own,
// since opening a sound output may wait for a server and taking a MIDI chain down for a
// synthesizer; the game's thread only posts jobs and reads what the chain has reported.
#include "platform/FilterGraph.h"

#include <unistd.h>

#include <atomic>

#include "platform/desktop/Decibels.h"
#include "platform/desktop/Media.h"
#include "platform/desktop/Worker.h"

namespace platform {

namespace {

using desktop::Worker;

constexpr int kPlayAudioOnly = 0x2;  // playbin's flag for audio alone
constexpr const char* kSoundFont = "/usr/share/sounds/sf2/TimGM6mb.sf2";
// Sets MIDI level with the other files; the pieces are mixed at this gain.
constexpr double kSynthGain = 0.6;

std::atomic<GstElement* (*)()> audioSinkMaker = nullptr;

// The threads live as long as the program, which ends without waiting for them.
Worker& MediaThread() {
  static auto* const thread = [] {
    auto* const worker = new Worker;
    worker->Post([] { gst_init_check(nullptr, nullptr, nullptr); });
    return worker;
  }();
  return *thread;
}

// Apart from the media thread, so that a chain that is slow to end delays no other's start.
Worker& DisposalThread() {
  static auto* const thread = new Worker;
  return *thread;
}

// What is shared with the library's threads. The elements are touched on the media thread alone.
struct Chain {
  std::atomic<bool> rendered = false;
  std::atomic<GraphEvent> event = GraphEvent::None;
  GstElement* playbin = nullptr;
  GstElement* volume = nullptr;
  double gain = 1;
};

using ChainRef = std::shared_ptr<Chain>;

// The first end counts: a chain may report several errors in a row.
void Report(Chain& chain, GraphEvent event) {
  GraphEvent none = GraphEvent::None;
  chain.event.compare_exchange_strong(none, event);
}

GstBusSyncReply HandleMessage(GstBus*, GstMessage* message, gpointer data) {
  Chain& chain = **static_cast<ChainRef*>(data);
  switch (GST_MESSAGE_TYPE(message)) {
    case GST_MESSAGE_ASYNC_DONE:
      chain.rendered = true;
      break;
    case GST_MESSAGE_EOS:
      Report(chain, chain.rendered ? GraphEvent::Complete : GraphEvent::RenderFailed);
      break;
    case GST_MESSAGE_ERROR:
      Report(chain, chain.rendered ? GraphEvent::ErrorAbort : GraphEvent::RenderFailed);
      break;
    default:
      break;
  }
  gst_message_unref(message);
  return GST_BUS_DROP;
}

void ListenTo(const ChainRef& chain) {
  GstBus* bus = gst_element_get_bus(chain->playbin);
  gst_bus_set_sync_handler(bus, HandleMessage, new ChainRef(chain),
                           [](gpointer data) { delete static_cast<ChainRef*>(data); });
  gst_object_unref(bus);
}

// The synthesizer takes the first sound font that it finds, unless it is told.
void SetUpElement(GstElement*, GstElement* element, gpointer) {
  const GstElementFactory* factory = gst_element_get_factory(element);
  if (factory == nullptr) return;
  if (g_strcmp0(GST_OBJECT_NAME(factory), "fluiddec") != 0) return;
  g_object_set(element, "soundfont", kSoundFont, "synth-gain", kSynthGain, nullptr);
}

// A level of its own within the chain: the sound server would keep the program's last one.
void BuildChain(const ChainRef& chain, const std::string& path) {
  chain->playbin = gst_element_factory_make("playbin", nullptr);
  chain->volume = gst_element_factory_make("volume", nullptr);
  gchar* uri = gst_filename_to_uri(path.c_str(), nullptr);
  if (chain->playbin == nullptr || chain->volume == nullptr || uri == nullptr) {
    Report(*chain, GraphEvent::RenderFailed);
    gst_clear_object(&chain->playbin);
    gst_clear_object(&chain->volume);
    g_free(uri);
    return;
  }
  g_object_set(chain->volume, "volume", chain->gain, nullptr);
  g_object_set(chain->playbin, "uri", uri, "flags", kPlayAudioOnly, "audio-filter", chain->volume,
               nullptr);
  g_free(uri);
  if (GstElement * (*maker)() = audioSinkMaker)
    g_object_set(chain->playbin, "audio-sink", maker(), nullptr);
  g_signal_connect(chain->playbin, "element-setup", G_CALLBACK(SetUpElement), nullptr);
  ListenTo(chain);
}

void SetState(Chain& chain, GstState state) {
  if (chain.playbin == nullptr) return;
  if (gst_element_set_state(chain.playbin, state) == GST_STATE_CHANGE_FAILURE)
    Report(chain, chain.rendered ? GraphEvent::ErrorAbort : GraphEvent::RenderFailed);
}

void Dispose(Chain& chain) {
  if (chain.playbin == nullptr) return;
  DisposalThread().Post([playbin = chain.playbin] {
    gst_element_set_state(playbin, GST_STATE_NULL);
    gst_object_unref(playbin);
  });
  chain.playbin = chain.volume = nullptr;
}

class PlaybinGraph : public FilterGraph {
 public:
  PlaybinGraph() : chain_(std::make_shared<Chain>()) {}
  PlaybinGraph(const PlaybinGraph&) = delete;
  PlaybinGraph& operator=(const PlaybinGraph&) = delete;
  ~PlaybinGraph() override {
    MediaThread().Post([chain = chain_] { Dispose(*chain); });
  }

  bool RenderFile(const std::string& path) override {
    if (access(path.c_str(), R_OK) != 0) return false;
    MediaThread().Post([chain = chain_, path] {
      BuildChain(chain, path);
      SetState(*chain, GST_STATE_PAUSED);
    });
    return true;
  }
  void Run() override { PostState(GST_STATE_PLAYING); }
  void Pause() override { PostState(GST_STATE_PAUSED); }
  void Stop() override { PostState(GST_STATE_READY); }

  void SetVolume(std::int32_t hundredths) override {
    volume_ = std::clamp(hundredths, kSilence, 0);
    MediaThread().Post([chain = chain_, gain = desktop::GainOf(volume_)] {
      chain->gain = gain;
      if (chain->volume != nullptr) g_object_set(chain->volume, "volume", chain->gain, nullptr);
    });
  }
  std::int32_t GetVolume() const override { return volume_; }
  bool IsRendered() override { return chain_->rendered; }
  GraphEvent WaitForCompletion() override { return chain_->event; }

 private:
  static constexpr std::int32_t kSilence = -10000;

  void PostState(GstState state) {
    MediaThread().Post([chain = chain_, state] { SetState(*chain, state); });
  }

  ChainRef chain_;
  std::int32_t volume_ = 0;
};

}  // namespace

std::shared_ptr<FilterGraph> CreateFilterGraph() {
  return std::make_shared<PlaybinGraph>();
}

namespace desktop {

void WarmUpMedia() {
  MediaThread();
}

void SetAudioSinkMaker(GstElement* (*maker)()) {
  audioSinkMaker = maker;
}

}  // namespace desktop

}  // namespace platform
