// SPDX-License-Identifier: MIT
// A thread that does one job after another, for what would hold up the game's own.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace platform::desktop {

/// Jobs run in the order in which they were posted. The thread starts with the object.
class Worker {
 public:
  Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;
  /// Does the jobs that are posted, then ends the thread.
  ~Worker();

  void Post(std::function<void()> job);

 private:
  void Run();

  std::mutex mutex_;
  std::condition_variable posted_;
  std::deque<std::function<void()>> jobs_;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace platform::desktop
