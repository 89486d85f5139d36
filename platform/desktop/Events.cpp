// SPDX-License-Identifier: MIT
#include "platform/Events.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <cmath>

#include "platform/Time.h"
#include "platform/desktop/Clock.h"

namespace platform {

namespace {

constexpr float kTimerStep = 0.1F;  // seconds of Timer() between two timer events
constexpr std::int64_t kMillisPerSecond = 1000;
constexpr long kNanosPerMilli = 1'000'000;

// Wakes the event queue at a tick. The toolkit's own timers count whole milliseconds from the
// moment they are set, which makes every frame up to one millisecond late; one of them stands in
// where the system gives no timer, as when the program has run out of file descriptors.
class Alarm : public QObject {
 public:
  explicit Alarm(QObject* parent)
      : QObject(parent), fd_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
    standIn_.setSingleShot(true);
    standIn_.setTimerType(Qt::PreciseTimer);
    if (fd_ < 0) return;
    auto* const notifier = new QSocketNotifier(fd_, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] { Acknowledge(); });
  }
  Alarm(const Alarm&) = delete;
  Alarm& operator=(const Alarm&) = delete;
  ~Alarm() override {
    if (fd_ >= 0) close(fd_);
  }

  void SetTo(std::int32_t tick) {
    if (fd_ < 0) {
      standIn_.start(std::max(0, TicksSince(TickCount(), tick)));
      return;
    }
    const std::int64_t now = desktop::MonotonicMillis();
    const std::int64_t at = now + TicksSince(static_cast<std::int32_t>(now), tick);
    itimerspec when{};
    when.it_value.tv_sec = at / kMillisPerSecond;
    when.it_value.tv_nsec = static_cast<long>(at % kMillisPerSecond) * kNanosPerMilli;
    timerfd_settime(fd_, TFD_TIMER_ABSTIME, &when, nullptr);
  }

 private:
  void Acknowledge() const {
    std::uint64_t expirations = 0;
    [[maybe_unused]] const ssize_t got = read(fd_, &expirations, sizeof expirations);
  }

  int fd_;
  QTimer standIn_;
};

Alarm& TheAlarm() {
  static auto* const alarm = new Alarm(qApp);
  return *alarm;
}

// A single-shot timer, started again only after the event has returned: events never pile up, and
// the step is measured by Timer(), not by the toolkit.
class PacedTimer : public QObject {
 public:
  PacedTimer(QObject* parent, void (*handler)())
      : QObject(parent), event_(handler), lastTimer_(Timer()), timer_(this) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] { Look(); });
    SetForRest();
  }

 private:
  void Look() {
    if (SecondsSince(lastTimer_, Timer()) >= kTimerStep) {
      event_();
      lastTimer_ = Timer();
    }
    SetForRest();
  }

  void SetForRest() {
    const float rest = kTimerStep - SecondsSince(lastTimer_, Timer());
    timer_.start(std::max(1, static_cast<int>(std::ceil(rest * kMillisPerSecond))));
  }

  void (*event_)();
  float lastTimer_;
  QTimer timer_;
};

}  // namespace

void LetEventsRun() {
  QCoreApplication::processEvents(QEventLoop::AllEvents);
}

void LetEventsRunUntil(std::int32_t tick) {
  if (TicksSince(TickCount(), tick) <= 0) {
    LetEventsRun();
    return;
  }
  TheAlarm().SetTo(tick);
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void StartTimer(void (*event)()) {
  static PacedTimer* timer = nullptr;
  delete timer;
  timer = event == nullptr ? nullptr : new PacedTimer(qApp, event);
}

}  // namespace platform
