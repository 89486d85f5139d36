// SPDX-License-Identifier: MIT
#include "platform/desktop/WorkQueue.h"

#include <glib.h>

#include <future>
#include <memory>
#include <utility>

namespace platform::desktop {

namespace {

using Work = std::function<void()>;

void Do(gpointer posted, gpointer) {
  const std::unique_ptr<Work> work(static_cast<Work*>(posted));
  (*work)();
}

}  // namespace

// With one thread at most the pool keeps the order.
WorkQueue::WorkQueue() : pool_(g_thread_pool_new(Do, nullptr, 1, FALSE, nullptr)) {}

void WorkQueue::Post(Work work) {
  g_thread_pool_push(pool_, std::make_unique<Work>(std::move(work)).release(), nullptr);
}

void WorkQueue::Wait() {
  std::promise<void> done;
  Post([&done] { done.set_value(); });
  done.get_future().wait();
}

}  // namespace platform::desktop
