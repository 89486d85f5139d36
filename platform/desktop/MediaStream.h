// SPDX-License-Identifier: MIT
// The stream behind one filter graph: a pipeline of the media library.
#pragma once

#include <gst/gst.h>

#include <atomic>
#include <string>

#include "platform/FilterGraph.h"

namespace platform::desktop {

/// Opened, steered and closed on the media threads, never on two at once. What it has come to can
/// be read from any thread.
class MediaStream {
 public:
  /// `sink` is where it plays into, a pipeline description in the words of the library.
  MediaStream(GraphUse use, std::string sink);
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
  static void OnElement(GstBin* pipeline, GstBin* bin, GstElement* element, gpointer stream);

  /// Whether the library has all that it takes.
  bool Build(const std::string& path);
  void End(GraphEvent event);

  GraphUse use_;
  std::string sink_;
  double gain_ = 1;
  GstElement* pipeline_ = nullptr;
  GstElement* level_ = nullptr;
  std::atomic<bool> rendered_ = false;
  std::atomic<GraphEvent> event_ = GraphEvent::None;
};

}  // namespace platform::desktop
