// SPDX-License-Identifier: MIT
#include "platform/desktop/WorkQueue.h"

#include <thread>
#include <utility>

namespace platform {

WorkQueue::WorkQueue() {
  std::thread([this] { Run(); }).detach();
}

void WorkQueue::Post(std::function<void()> work) {
  const std::lock_guard lock(mutex_);
  posted_.push_back(std::move(work));
  changed_.notify_all();
}

void WorkQueue::WaitUntilIdle() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return posted_.empty() && !working_; });
}

void WorkQueue::Run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return !posted_.empty(); });
    auto work = std::exchange(posted_.front(), nullptr);
    posted_.pop_front();
    working_ = true;
    lock.unlock();
    work();
    work = nullptr;  // what it holds may block, too, when let go
    lock.lock();
    working_ = false;
    changed_.notify_all();
  }
}

}  // namespace platform
