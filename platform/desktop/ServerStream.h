// SPDX-License-Identifier: MIT
// Samples played by the player's sound server. The library of GStreamer for it applies a volume
// before its buffer, so either the buffer is short and the machine wakes often, or a change of the
// volume is heard late.
#pragma once

#include <pulse/pulseaudio.h>

#include <memory>
#include <span>
#include <vector>

namespace platform::desktop {

/// Floats for two channels, left and right in turn, at kRate. They are handed over far ahead of
/// what is heard, so that the machine can rest in between; when the gain changes, those not yet
/// heard are handed over anew. Its methods may be called from any thread.
class ServerStream {
 public:
  static constexpr int kRate = 44100;  ///< frames a second

  /// Null when no sound server answers, or it has nothing to play on. Starts paused.
  static std::unique_ptr<ServerStream> Connect();
  ServerStream(const ServerStream&) = delete;
  ServerStream& operator=(const ServerStream&) = delete;
  ~ServerStream();

  /// Waits for room. False when the stream is cut off.
  bool Write(std::span<const float> samples);
  /// Waits until all that was written has been heard, and leaves the server.
  void Finish();
  /// Is heard at once. `gain` is linear, 0 to 1.
  void SetGain(double gain);
  /// Is heard at once.
  void SetPaused(bool paused);
  /// Leaves the server; whoever waits for it goes on.
  void CutOff();

 private:
  ServerStream() = default;

  bool Open();
  bool IsOpen() const;
  /// In microseconds, how far what was handed over is ahead of what is heard.
  pa_usec_t Unheard() const;
  void Close();
  /// Hands samples over at the gain, the first of them `back` samples before the end of the others.
  void Hand(std::span<const float> samples, std::size_t back);
  void HandPending();

  pa_stream* stream_ = nullptr;
  double gain_ = 1;
  std::vector<float> pending_;  ///< not yet handed over
  std::vector<float> handed_;   ///< the last that were, for as long as they may not yet be heard
};

}  // namespace platform::desktop
