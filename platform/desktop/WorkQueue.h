// SPDX-License-Identifier: MIT
// Work that may block, done in order on a thread of a pool, so that it never holds up the game's
// own. While there is none there is no thread either.
#pragma once

#include <glib.h>

#include <functional>

namespace platform::desktop {

/// Lives to the end of the program and is never destroyed: the program ends without waiting for
/// work that is still posted.
class WorkQueue {
 public:
  WorkQueue();
  WorkQueue(const WorkQueue&) = delete;
  WorkQueue& operator=(const WorkQueue&) = delete;
  ~WorkQueue() = delete;

  /// From any thread; never waits for work.
  void Post(std::function<void()> work);
  /// Waits until all that was posted so far is done.
  void Wait();

 private:
  GThreadPool* pool_;
};

}  // namespace platform::desktop
