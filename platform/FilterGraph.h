// SPDX-License-Identifier: MIT
// One media file played on the platform's own threads. Nothing here waits: whether a file can be
// rendered is known when its first data or its error arrives.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace platform {

/// What the non-blocking test of a graph answers.
enum class GraphEvent : std::int32_t {
  None = 0,          ///< opening, ready or playing
  Complete = 1,      ///< played to its end
  ErrorAbort = 3,    ///< broke off after it had played
  RenderFailed = 4,  ///< the file turned out not to be playable at all
};

class FilterGraph {
 public:
  /// Ends the sound. What blocks in taking the graph down happens off the caller's thread.
  virtual ~FilterGraph() = default;

  /// Starts to build the playback chain for the file at `path` by its type. Yields false for a file
  /// that does not exist or cannot be opened; any other failure comes through WaitForCompletion.
  virtual bool RenderFile(const std::string& path) = 0;
  virtual void Run() = 0;
  virtual void Pause() = 0;
  virtual void Stop() = 0;
  /// Hundredths of a decibel, -10000 (silence) to 0 (full level), also before the file is opened.
  /// Heard within a tenth of a second.
  virtual void SetVolume(std::int32_t hundredths) = 0;
  virtual std::int32_t GetVolume() const = 0;
  /// True once the file's first data has arrived.
  virtual bool IsRendered() = 0;
  /// The test with a time-out of 0.
  virtual GraphEvent WaitForCompletion() = 0;
};

/// A new graph. The media library is brought up off the caller's thread at the first one; files
/// opened before it is ready start as soon as it is.
std::shared_ptr<FilterGraph> CreateFilterGraph();

}  // namespace platform
