// SPDX-License-Identifier: MIT
#include "platform/desktop/MediaStream.h"

#include <memory>
#include <string_view>
#include <utility>

namespace platform::desktop {

namespace {

constexpr const char* kDecoding =
    "filesrc name=file ! decodebin caps=audio/x-raw expose-all-streams=false ! "
    "audioconvert name=decoded ! ";

constexpr const char* kIntoServer =
    "audioresample ! audio/x-raw,format=F32LE,layout=interleaved,channels=2,rate=44100 ! "
    "fakesink name=samples signal-handoffs=true sync=false";
static_assert(ServerStream::kRate == 44100);

// Samples are scaled as floats, so that a low level is as exact as a high one, and before the sink,
// so that the level does not depend on how a device scales.
constexpr const char* kIntoSink =
    "audio/x-raw,format=F32LE ! volume name=level ! audioconvert ! audioresample ! ";
constexpr const char* kDefaultSink = "autoaudiosink";

// What stands between the level and a device is heard at the old level, so it is short of a tenth
// of a second. In microseconds.
constexpr gint64 kBufferTime = 70'000;
constexpr gint64 kPortionTime = 35'000;

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

// A stream that has ended would go on filling the device. Unless it is being taken down by now, it
// lets go of it.
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

MediaStream::MediaStream(std::string sink) : sink_(std::move(sink)) {}

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
  if (sink_.empty()) server_ = ServerStream::Connect();
  const std::string intoSink = kIntoSink + (sink_.empty() ? kDefaultSink : sink_);
  GError* missing = nullptr;
  pipeline_ = gst_parse_launch((kDecoding + (server_ ? kIntoServer : intoSink)).c_str(), &missing);
  const bool built = pipeline_ != nullptr && missing == nullptr;
  g_clear_error(&missing);
  if (!built) return false;
  const Owned<GstElement> file(gst_bin_get_by_name(GST_BIN(pipeline_), "file"));
  g_object_set(file.get(), "location", path.c_str(), nullptr);
  gst_pad_add_probe(PadOf(pipeline_, "file", "src").get(), GST_PAD_PROBE_TYPE_QUERY_UPSTREAM,
                    OfferNoRandomAccess, nullptr, nullptr);
  level_ = gst_bin_get_by_name(GST_BIN(pipeline_), "level");
  if (server_) PlayIntoServer();
  return true;
}

void MediaStream::PlayIntoServer() {
  const Owned<GstElement> samples(gst_bin_get_by_name(GST_BIN(pipeline_), "samples"));
  g_signal_connect(samples.get(), "handoff", G_CALLBACK(OnSamples), this);
  gst_pad_add_probe(PadOf(pipeline_, "samples", "sink").get(), GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM,
                    OnLastSamples, this, nullptr);
}

void MediaStream::Run() {
  if (server_) server_->SetPaused(false);
  SetState(GST_STATE_PLAYING);
}

// The pipeline of a server's stream waits for room there.
void MediaStream::Pause() {
  if (server_) {
    server_->SetPaused(true);
  } else {
    SetState(GST_STATE_PAUSED);
  }
}

void MediaStream::SetState(GstState state) {
  if (pipeline_ == nullptr) return;
  if (gst_element_set_state(pipeline_, state) == GST_STATE_CHANGE_FAILURE)
    End(rendered_ ? GraphEvent::ErrorAbort : GraphEvent::RenderFailed);
}

void MediaStream::SetGain(double gain) {
  gain_ = gain;
  if (level_ != nullptr) g_object_set(level_, "volume", gain, nullptr);
  if (server_) server_->SetGain(gain);
}

void MediaStream::Close() {
  if (server_) server_->CutOff();
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

void MediaStream::Finish(GraphEvent event) {
  End(rendered_ ? event : GraphEvent::RenderFailed);
  gst_element_call_async(pipeline_, LetGoOfDevice, nullptr, nullptr);
}

// An end or an error before any data means that there is nothing to play.
GstBusSyncReply MediaStream::OnMessage(GstBus*, GstMessage* message, gpointer stream) {
  auto* self = static_cast<MediaStream*>(stream);
  const GstMessageType type = GST_MESSAGE_TYPE(message);
  if (type == GST_MESSAGE_EOS) self->Finish(GraphEvent::Complete);
  if (type == GST_MESSAGE_ERROR) self->Finish(GraphEvent::ErrorAbort);
  gst_message_unref(message);
  return GST_BUS_DROP;
}

GstPadProbeReturn MediaStream::OnFirstData(GstPad*, GstPadProbeInfo*, gpointer stream) {
  static_cast<MediaStream*>(stream)->rendered_ = true;
  return GST_PAD_PROBE_REMOVE;
}

void MediaStream::OnElement(GstBin*, GstBin*, GstElement* element, gpointer) {
  GstElementFactory* factory = gst_element_get_factory(element);
  if (factory != nullptr && std::string_view(GST_OBJECT_NAME(factory)) == kMidiDecoder)
    g_object_set(element, "soundfont", kSoundfont, "synth-gain", kSynthGain, nullptr);
  if (HasProperty(element, "buffer-time") && HasProperty(element, "latency-time"))
    g_object_set(element, "buffer-time", kBufferTime, "latency-time", kPortionTime, nullptr);
}

void MediaStream::OnSamples(GstElement*, GstBuffer* buffer, GstPad*, gpointer stream) {
  auto* self = static_cast<MediaStream*>(stream);
  GstMapInfo map;
  if (gst_buffer_map(buffer, &map, GST_MAP_READ) == FALSE) return;
  const auto* samples = reinterpret_cast<const float*>(map.data);
  if (!self->server_->Write({samples, map.size / sizeof(float)}))
    self->Finish(GraphEvent::ErrorAbort);
  gst_buffer_unmap(buffer, &map);
}

// The end of the samples comes to the sink, and is told, only when all of them have been heard.
GstPadProbeReturn MediaStream::OnLastSamples(GstPad*, GstPadProbeInfo* info, gpointer stream) {
  if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_EOS)
    static_cast<MediaStream*>(stream)->server_->Finish();
  return GST_PAD_PROBE_OK;
}

}  // namespace platform::desktop
