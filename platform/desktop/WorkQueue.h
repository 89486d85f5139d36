// SPDX-License-Identifier: MIT
// A thread that does pieces of work in the order in which they are posted. For whatever may block
// and must not hold up the game's thread.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace platform {

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
  /// Waits until nothing is posted or at work.
  void WaitUntilIdle();

 private:
  [[noreturn]] void Run();

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::function<void()>> posted_;
  bool working_ = false;
};

}  // namespace platform
