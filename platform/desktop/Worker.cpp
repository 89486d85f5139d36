// SPDX-License-Identifier: MIT
#include "platform/desktop/Worker.h"

#include <utility>

namespace platform::desktop {

Worker::Worker() : thread_([this] { Run(); }) {}

Worker::~Worker() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  posted_.notify_one();
  thread_.join();
}

void Worker::Post(std::function<void()> job) {
  {
    const std::lock_guard lock(mutex_);
    jobs_.push_back(std::move(job));
  }
  posted_.notify_one();
}

void Worker::Run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    posted_.wait(lock, [this] { return ending_ || !jobs_.empty(); });
    if (jobs_.empty()) return;
    const std::function<void()> job = std::move(jobs_.front());
    jobs_.pop_front();
    lock.unlock();
    job();
    lock.lock();
  }
}

}  // namespace platform::desktop
