// SPDX-License-Identifier: MIT
#include "platform/desktop/ServerStream.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace platform::desktop {

namespace {

constexpr std::size_t kChannels = 2;

constexpr std::size_t SamplesIn(std::uint64_t microseconds) {
  return microseconds * ServerStream::kRate / PA_USEC_PER_SEC * kChannels;
}

// With PA_STREAM_ADJUST_LATENCY the server asks its device for a latency of half of what two
// portions leave of the buffer, here 20 ms; so soon is a stream heard that begins.
constexpr std::size_t kAhead = SamplesIn(1'000'000);
constexpr std::size_t kPortion = SamplesIn(480'000);
constexpr std::size_t kMostHanded =
    kAhead + kPortion;  // a device may hold more than it is asked to

constexpr auto BytesOf(std::size_t samples) {
  return static_cast<std::uint32_t>(samples * sizeof(float));
}

// The connection to the sound server, for all streams; the library's own thread runs it to the end
// of the program.
pa_threaded_mainloop* Loop() {
  static pa_threaded_mainloop* const loop = [] {
    pa_threaded_mainloop* made = pa_threaded_mainloop_new();
    pa_threaded_mainloop_start(made);
    return made;
  }();
  return loop;
}

class Lock {
 public:
  Lock() { pa_threaded_mainloop_lock(Loop()); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
  ~Lock() { pa_threaded_mainloop_unlock(Loop()); }
};

void Wait() {
  pa_threaded_mainloop_wait(Loop());
}

void Signal() {
  pa_threaded_mainloop_signal(Loop(), 0);
}

void WaitFor(pa_usec_t microseconds) {
  pa_mainloop_api* const loop = pa_threaded_mainloop_get_api(Loop());
  timeval end;
  pa_timeval_add(pa_gettimeofday(&end), microseconds);
  pa_time_event* const event = loop->time_new(
      loop, &end, [](pa_mainloop_api*, pa_time_event*, const timeval*, void*) { Signal(); },
      nullptr);
  Wait();
  loop->time_free(event);
}

void Release(pa_operation* operation) {
  if (operation != nullptr) pa_operation_unref(operation);
}

bool IsGood(pa_context* context) {
  return context != nullptr && PA_CONTEXT_IS_GOOD(pa_context_get_state(context));
}

// Null when no server answers. One that has gone is tried for again at the next call.
pa_context* Server() {
  static pa_context* server = nullptr;
  if (!IsGood(server)) {
    if (server != nullptr) pa_context_unref(server);
    server = pa_context_new(pa_threaded_mainloop_get_api(Loop()), "Glimmerfall");
    pa_context_set_state_callback(
        server, [](pa_context*, void*) { Signal(); }, nullptr);
    pa_context_connect(server, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
  }
  while (IsGood(server) && pa_context_get_state(server) != PA_CONTEXT_READY)
    Wait();
  return IsGood(server) ? server : nullptr;
}

}  // namespace

std::unique_ptr<ServerStream> ServerStream::Connect() {
  const Lock lock;
  std::unique_ptr<ServerStream> stream(new ServerStream);
  return stream->Open() ? std::move(stream) : nullptr;
}

ServerStream::~ServerStream() {
  CutOff();
}

// No prebuffering: below such a threshold the server would stop the stream, and be heard to, while
// queued samples are written again.
bool ServerStream::Open() {
  pa_context* const server = Server();
  if (server == nullptr) return false;
  constexpr pa_sample_spec kSpec = {PA_SAMPLE_FLOAT32NE, kRate, kChannels};
  stream_ = pa_stream_new(server, "Sound", &kSpec, nullptr);
  if (stream_ == nullptr) return false;
  pa_stream_set_state_callback(
      stream_, [](pa_stream*, void*) { Signal(); }, nullptr);
  pa_stream_set_write_callback(
      stream_, [](pa_stream*, std::size_t, void*) { Signal(); }, nullptr);
  constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
  constexpr pa_buffer_attr kBuffer = {.maxlength = kServersChoice,
                                      .tlength = BytesOf(kAhead),
                                      .prebuf = 0,
                                      .minreq = BytesOf(kPortion),
                                      .fragsize = kServersChoice};
  constexpr auto kFlags =
      static_cast<pa_stream_flags_t>(PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY |
                                     PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE);
  pa_stream_connect_playback(stream_, nullptr, &kBuffer, kFlags, nullptr, nullptr);
  while (IsOpen() && pa_stream_get_state(stream_) != PA_STREAM_READY)
    Wait();
  return IsOpen();
}

bool ServerStream::IsOpen() const {
  return stream_ != nullptr && PA_STREAM_IS_GOOD(pa_stream_get_state(stream_));
}

bool ServerStream::Write(std::span<const float> samples) {
  const Lock lock;
  pending_.insert(pending_.end(), samples.begin(), samples.end());
  if (pending_.size() < kPortion) return IsOpen();
  while (IsOpen() && pa_stream_writable_size(stream_) < BytesOf(pending_.size()))
    Wait();
  HandPending();
  return IsOpen();
}

// By the latency, for pa_stream_drain takes half a minute on a stream without prebuffering.
void ServerStream::Finish() {
  const Lock lock;
  HandPending();
  for (pa_usec_t unheard = Unheard(); IsOpen() && unheard > 0; unheard = Unheard())
    WaitFor(unheard);
  Close();
}

// Until the server's first timing update the library knows no latency.
pa_usec_t ServerStream::Unheard() const {
  constexpr pa_usec_t kNotYetKnown = 10'000;
  pa_usec_t latency = 0;
  int isNegative = 0;
  if (!IsOpen() || handed_.empty()) return 0;
  if (pa_stream_get_latency(stream_, &latency, &isNegative) != 0) return kNotYetKnown;
  return isNegative != 0 ? 0 : latency;
}

void ServerStream::SetGain(double gain) {
  const Lock lock;
  gain_ = gain;
  const std::size_t unheard = std::min(SamplesIn(Unheard()), handed_.size());
  if (unheard > 0) Hand(std::span(handed_).last(unheard), unheard);
}

void ServerStream::SetPaused(bool paused) {
  const Lock lock;
  if (IsOpen()) Release(pa_stream_cork(stream_, paused ? 1 : 0, nullptr, nullptr));
}

void ServerStream::CutOff() {
  const Lock lock;
  Close();
  Signal();
}

void ServerStream::Close() {
  if (stream_ == nullptr) return;
  pa_stream_set_state_callback(stream_, nullptr, nullptr);
  pa_stream_set_write_callback(stream_, nullptr, nullptr);
  pa_stream_disconnect(stream_);
  pa_stream_unref(stream_);
  stream_ = nullptr;
}

void ServerStream::Hand(std::span<const float> samples, std::size_t back) {
  std::vector<float> levelled(samples.begin(), samples.end());
  for (float& sample : levelled)
    sample = static_cast<float>(sample * gain_);
  // When the server has nothing left to play, as at the start, its read position has moved past the
  // end of what was written; samples put there would be dropped.
  const pa_seek_mode_t from = Unheard() == 0 ? PA_SEEK_RELATIVE_ON_READ : PA_SEEK_RELATIVE;
  pa_stream_write(stream_, levelled.data(), BytesOf(levelled.size()), nullptr,
                  -static_cast<std::int64_t>(BytesOf(back)), from);
}

void ServerStream::HandPending() {
  if (!IsOpen()) return;
  Hand(pending_, 0);
  handed_.insert(handed_.end(), pending_.begin(), pending_.end());
  pending_.clear();
  if (handed_.size() > kMostHanded) handed_.erase(handed_.begin(), handed_.end() - kMostHanded);
}

}  // namespace platform::desktop
