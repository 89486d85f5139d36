// SPDX-License-Identifier: MIT
#include "platform/desktop/MediaStream.h"

#include <memory>
#include <string_view>
#include <utility>

namespace platform {

namespace {

// Of the flags of playbin: sound alone, and neither pictures nor subtitles.
constexpr unsigned kPlayAudio = 0x2;

// Samples are scaled as floats, so that a low level is as exact as a high one, and before the sink,
// so that the level does not depend on how a sound server scales.
constexpr const char* kLevelStage =
    "audioconvert ! audio/x-raw,format=F32LE ! volume name=level ! audioconvert ! audioresample ! ";

// MIDI is rendered by fluiddec. It would take the first soundfont that it finds.
constexpr const char* kMidiDecoder = "fluiddec";
constexpr const char* kSoundfont = "/usr/share/sounds/sf2/TimGM6mb.sf2";
constexpr double kSynthGain = 1.2;  // the pieces are levelled with the other files at this gain

struct Unref {
  void operator()(void* object) const { gst_object_unref(object); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Unref>;

}  // namespace

MediaStream::MediaStream(std::string sink) : sink_(std::move(sink)) {}

MediaStream::~MediaStream() {
  Close();
}

void MediaStream::Open(const std::string& path) {
  if (!Build(path)) {
    End(GraphEvent::RenderFailed);
    return;
  }
  Watch();
  SetGain(gain_);
  SetState(GST_STATE_PAUSED);
}

bool MediaStream::Build(const std::string& path) {
  char* uri = gst_filename_to_uri(path.c_str(), nullptr);
  player_ = gst_element_factory_make("playbin", nullptr);
  const bool built = uri != nullptr && player_ != nullptr && BuildSink();
  if (built) g_object_set(player_, "uri", uri, "flags", kPlayAudio, "audio-sink", output_, nullptr);
  g_free(uri);
  return built;
}

bool MediaStream::BuildSink() {
  GError* error = nullptr;
  output_ = gst_parse_bin_from_description((kLevelStage + sink_).c_str(), TRUE, &error);
  g_clear_error(&error);
  if (output_ == nullptr) return false;
  level_ = gst_bin_get_by_name(GST_BIN(output_), "level");
  return true;
}

void MediaStream::Watch() {
  const Owned<GstBus> bus(gst_element_get_bus(player_));
  gst_bus_set_sync_handler(bus.get(), OnMessage, this, nullptr);
  const Owned<GstPad> pad(gst_element_get_static_pad(output_, "sink"));
  gst_pad_add_probe(pad.get(), GST_PAD_PROBE_TYPE_BUFFER, OnFirstData, this, nullptr);
  g_signal_connect(player_, "element-setup", G_CALLBACK(OnElementSetup), this);
}

void MediaStream::SetState(GstState state) {
  if (player_ == nullptr) return;
  if (gst_element_set_state(player_, state) == GST_STATE_CHANGE_FAILURE)
    End(rendered_ ? GraphEvent::ErrorAbort : GraphEvent::RenderFailed);
}

void MediaStream::SetGain(double gain) {
  gain_ = gain;
  if (level_ != nullptr) g_object_set(level_, "volume", gain, nullptr);
}

void MediaStream::Close() {
  if (player_ != nullptr) {
    gst_element_set_state(player_, GST_STATE_NULL);
    const Owned<GstBus> bus(gst_element_get_bus(player_));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
  }
  g_clear_pointer(&level_, gst_object_unref);
  g_clear_pointer(&player_, gst_object_unref);
}

// The first verdict stands.
void MediaStream::End(GraphEvent event) {
  GraphEvent none = GraphEvent::None;
  event_.compare_exchange_strong(none, event);
}

// An end or an error before any data means that there is nothing to play.
GstBusSyncReply MediaStream::OnMessage(GstBus*, GstMessage* message, gpointer stream) {
  auto* self = static_cast<MediaStream*>(stream);
  const GstMessageType type = GST_MESSAGE_TYPE(message);
  if (type == GST_MESSAGE_EOS || type == GST_MESSAGE_ERROR) {
    const bool ended = type == GST_MESSAGE_EOS;
    const GraphEvent played = ended ? GraphEvent::Complete : GraphEvent::ErrorAbort;
    self->End(self->rendered_ ? played : GraphEvent::RenderFailed);
  }
  gst_message_unref(message);
  return GST_BUS_DROP;
}

GstPadProbeReturn MediaStream::OnFirstData(GstPad*, GstPadProbeInfo*, gpointer stream) {
  static_cast<MediaStream*>(stream)->rendered_ = true;
  return GST_PAD_PROBE_REMOVE;
}

void MediaStream::OnElementSetup(GstElement*, GstElement* element, gpointer) {
  GstElementFactory* factory = gst_element_get_factory(element);
  if (factory == nullptr || std::string_view(GST_OBJECT_NAME(factory)) != kMidiDecoder) return;
  g_object_set(element, "soundfont", kSoundfont, "synth-gain", kSynthGain, nullptr);
}

}  // namespace platform
