// SPDX-License-Identifier: MIT
// The stream behind one filter graph: a pipeline of the media library.
#pragma once

#include <gst/gst.h>

#include <atomic>
#include <memory>
#include <string>

#include "platform/FilterGraph.h"
#include "platform/desktop/ServerStream.h"

namespace platform::desktop {

/// Opened, steered and closed on the media threads, never on two at once. What it has come to can
/// be read from any thread.
class MediaStream {
 public:
  /// `sink` is where it plays into, a pipeline description in the words of the library; if empty,
  /// the sound server, or failing that the default device.
  explicit MediaStream(std::string sink);
  MediaStream(const MediaStream&) = delete;
  MediaStream& operator=(const MediaStream&) = delete;
  ~MediaStream();

  void Open(const std::string& path);
  void Run();
  void Pause();
  /// `gain` is linear, 0 to 1.
  void SetGain(double gain);
  /// Takes the pipeline down. A MIDI stream blocks here for a tenth of a second.
  void Close();

  bool IsRendered() const { return rendered_; }
  GraphEvent Event() const { return event_; }

 private:
  static GstBusSyncReply OnMessage(GstBus* bus, GstMessage* message, gpointer stream);
  static GstPadProbeReturn OnFirstData(GstPad* pad, GstPadProbeInfo* info, gpointer stream);
  static void OnElement(GstBin* pipeline, GstBin* bin, GstElement* element, gpointer stream);
  static void OnSamples(GstElement* sink, GstBuffer* buffer, GstPad* pad, gpointer stream);
  static GstPadProbeReturn OnLastSamples(GstPad* pad, GstPadProbeInfo* info, gpointer stream);

  /// Whether the library has all that it takes.
  bool Build(const std::string& path);
  void PlayIntoServer();
  void SetState(GstState state);
  void End(GraphEvent event);
  /// Ends, and lets go of the device.
  void Finish(GraphEvent event);

  std::string sink_;
  double gain_ = 1;
  GstElement* pipeline_ = nullptr;
  GstElement* level_ = nullptr;           ///< null when the server's stream has the gain
  std::unique_ptr<ServerStream> server_;  ///< null when the pipeline has a device of its own
  std::atomic<bool> rendered_ = false;
  std::atomic<GraphEvent> event_ = GraphEvent::None;
};

}  // namespace platform::desktop
