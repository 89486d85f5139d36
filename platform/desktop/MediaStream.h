// SPDX-License-Identifier: MIT
// The stream behind one filter graph: a pipeline of the media library.
#pragma once

#include <gst/gst.h>

#include <atomic>
#include <string>

#include "platform/FilterGraph.h"

namespace platform {

/// Opened, steered and closed on the media threads, never on two at once. What it has come to can
/// be read from any thread.
class MediaStream {
 public:
  explicit MediaStream(std::string sink);
  MediaStream(const MediaStream&) = delete;
  MediaStream& operator=(const MediaStream&) = delete;
  ~MediaStream();

  void Open(const std::string& path);
  void SetState(GstState state);
  /// `gain` is linear, 0 to 1.
  void SetGain(double gain);
  /// Takes the pipeline down. A MIDI stream blocks here for a tenth of a second.
  void Close();

  bool IsRendered() const { return rendered_; }
  GraphEvent Event() const { return event_; }

 private:
  static GstBusSyncReply OnMessage(GstBus* bus, GstMessage* message, gpointer stream);
  static GstPadProbeReturn OnFirstData(GstPad* pad, GstPadProbeInfo* info, gpointer stream);
  static void OnElementSetup(GstElement* player, GstElement* element, gpointer stream);

  /// Both answer whether the library has all that it takes.
  bool Build(const std::string& path);
  bool BuildSink();
  void Watch();
  void End(GraphEvent event);

  std::string sink_;
  double gain_ = 1;
  GstElement* player_ = nullptr;
  GstElement* output_ = nullptr;  ///< held by the player
  GstElement* level_ = nullptr;
  std::atomic<bool> rendered_ = false;
  std::atomic<GraphEvent> event_ = GraphEvent::None;
};

}  // namespace platform
