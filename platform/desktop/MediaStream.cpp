// SPDX-License-Identifier: MIT
#include "platform/desktop/MediaStream.h"

#include <memory>
#include <string_view>
#include <utility>

namespace platform::desktop {

namespace {

// Samples are scaled as floats, so that a low level is as exact as a high one, and before the sink,
// so that the level does not depend on how a sound server scales.
constexpr const char* kPipeline =
    "filesrc name=file ! decodebin caps=audio/x-raw expose-all-streams=false ! "
    "audioconvert name=decoded ! audio/x-raw,format=F32LE ! volume name=level ! audioconvert ! "
    "audioresample ! ";

// What stands between the level and the device is heard at the old level, so it is short of a tenth
// of a second. In microseconds.
constexpr gint64 kMusicBufferTime = 70'000;
constexpr gint64 kMusicPortionTime = 35'000;

// MIDI is rendered by fluiddec. It would take the first soundfont that it finds.
constexpr const char* kMidiDecoder = "fluiddec";
constexpr const char* kSoundfont = "/usr/share/sounds/sf2/TimGM6mb.sf2";
constexpr double kSynthGain = 1.2;  // as loud as the tracks that come with the game

struct Unref {
  void operator()(void* object) const { gst_object_unref(object); }
};
template <typename Object>
using Owned = std::unique_ptr<Object, Unref>;

Owned<GstPad> PadOf(GstElement* pipeline, const char* element, const char* pad) {
  const Owned<GstElement> owner(gst_bin_get_by_name(GST_BIN(pipeline), element));
  return Owned<GstPad>(gst_element_get_static_pad(owner.get(), pad));
}

// A parser that may ask for any part of the file runs on a thread of its own, and so does each
// other one before it. Given one part after the other, all of them run on that of the file.
GstPadProbeReturn OfferNoRandomAccess(GstPad*, GstPadProbeInfo* info, gpointer) {
  GstQuery* query = GST_PAD_PROBE_INFO_QUERY(info);
  if (GST_QUERY_TYPE(query) != GST_QUERY_SCHEDULING) return GST_PAD_PROBE_OK;
  gst_query_set_scheduling(query, GST_SCHEDULING_FLAG_SEQUENTIAL, 1, -1, 0);
  gst_query_add_scheduling_mode(query, GST_PAD_MODE_PUSH);
  return GST_PAD_PROBE_HANDLED;
}

// A stream that has ended would go on asking the device for room. Unless it is being taken down by
// now, it lets go of the device.
void LetGoOfDevice(GstElement* pipeline, gpointer) {
  GST_STATE_LOCK(pipeline);
  if (GST_STATE_TARGET(pipeline) == GST_STATE_PLAYING)
    gst_element_set_state(pipeline, GST_STATE_READY);
  GST_STATE_UNLOCK(pipeline);
}

bool HasProperty(GstElement* element, const char* name) {
  return g_object_class_find_property(G_OBJECT_GET_CLASS(element), name) != nullptr;
}

}  // namespace

MediaStream::MediaStream(GraphUse use, std::string sink) : use_(use), sink_(std::move(sink)) {}

MediaStream::~MediaStream() {
  Close();
}

void MediaStream::Open(const std::string& path) {
  if (!Build(path)) {
    End(GraphEvent::RenderFailed);
    return;
  }
  const Owned<GstBus> bus(gst_element_get_bus(pipeline_));
  gst_bus_set_sync_handler(bus.get(), OnMessage, this, nullptr);
  g_signal_connect(pipeline_, "deep-element-added", G_CALLBACK(OnElement), this);
  gst_pad_add_probe(PadOf(pipeline_, "decoded", "sink").get(), GST_PAD_PROBE_TYPE_BUFFER,
                    OnFirstData, this, nullptr);
  SetGain(gain_);
  SetState(GST_STATE_PAUSED);
}

bool MediaStream::Build(const std::string& path) {
  GError* missing = nullptr;
  pipeline_ = gst_parse_launch((kPipeline + sink_).c_str(), &missing);
  const bool built = pipeline_ != nullptr && missing == nullptr;
  g_clear_error(&missing);
  if (!built) return false;
  const Owned<GstElement> file(gst_bin_get_by_name(GST_BIN(pipeline_), "file"));
  g_object_set(file.get(), "location", path.c_str(), nullptr);
  gst_pad_add_probe(PadOf(pipeline_, "file", "src").get(), GST_PAD_PROBE_TYPE_QUERY_UPSTREAM,
                    OfferNoRandomAccess, nullptr, nullptr);
  level_ = gst_bin_get_by_name(GST_BIN(pipeline_), "level");
  return true;
}

void MediaStream::SetState(GstState state) {
  if (pipeline_ == nullptr) return;
  if (gst_element_set_state(pipeline_, state) == GST_STATE_CHANGE_FAILURE)
    End(rendered_ ? GraphEvent::ErrorAbort : GraphEvent::RenderFailed);
}

void MediaStream::SetGain(double gain) {
  gain_ = gain;
  if (level_ != nullptr) g_object_set(level_, "volume", gain, nullptr);
}

void MediaStream::Close() {
  if (pipeline_ != nullptr) {
    gst_element_set_state(pipeline_, GST_STATE_NULL);
    const Owned<GstBus> bus(gst_element_get_bus(pipeline_));
    gst_bus_set_sync_handler(bus.get(), nullptr, nullptr, nullptr);
  }
  g_clear_pointer(&level_, gst_object_unref);
  g_clear_pointer(&pipeline_, gst_object_unref);
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
    gst_element_call_async(self->pipeline_, LetGoOfDevice, nullptr, nullptr);
  }
  gst_message_unref(message);
  return GST_BUS_DROP;
}

GstPadProbeReturn MediaStream::OnFirstData(GstPad*, GstPadProbeInfo*, gpointer stream) {
  static_cast<MediaStream*>(stream)->rendered_ = true;
  return GST_PAD_PROBE_REMOVE;
}

void MediaStream::OnElement(GstBin*, GstBin*, GstElement* element, gpointer stream) {
  GstElementFactory* factory = gst_element_get_factory(element);
  if (factory != nullptr && std::string_view(GST_OBJECT_NAME(factory)) == kMidiDecoder)
    g_object_set(element, "soundfont", kSoundfont, "synth-gain", kSynthGain, nullptr);
  if (static_cast<MediaStream*>(stream)->use_ == GraphUse::Music &&
      HasProperty(element, "buffer-time") && HasProperty(element, "latency-time"))
    g_object_set(element, "buffer-time", kMusicBufferTime, "latency-time", kMusicPortionTime,
                 nullptr);
}

}  // namespace platform::desktop
