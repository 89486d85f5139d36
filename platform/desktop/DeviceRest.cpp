// SPDX-License-Identifier: MIT
#include "platform/desktop/DeviceRest.h"

#include <algorithm>
#include <utility>

namespace platform::desktop {

namespace {

constexpr std::chrono::seconds kBeforeRest{1};

}  // namespace

DeviceRest::DeviceRest(std::function<void()> pause, std::function<void()> resume)
    : pause_(std::move(pause)), resume_(std::move(resume)) {}

DeviceRest::~DeviceRest() {
  {
    const std::lock_guard lock(mutex_);
    closing_ = true;
  }
  changed_.notify_all();
  if (watch_.joinable()) watch_.join();
}

void DeviceRest::KeepAwake(std::chrono::milliseconds sound) {
  const std::lock_guard lock(mutex_);
  until_ = std::max(until_, Clock::now() + sound + kBeforeRest);
  if (watching_) return;
  watching_ = true;
  if (watch_.joinable()) watch_.join();  // the thread of the last sounds has nothing left to do
  watch_ = std::thread([this] { Watch(); });
}

// A sound that comes while the device is being paused wakes it again at once.
void DeviceRest::Watch() {
  std::unique_lock lock(mutex_);
  while (!closing_ && Clock::now() < until_) {
    lock.unlock();
    resume_();
    lock.lock();
    while (!closing_ && Clock::now() < until_)
      changed_.wait_until(lock, until_);
    if (closing_) break;
    lock.unlock();
    pause_();
    lock.lock();
  }
  watching_ = false;
}

}  // namespace platform::desktop
