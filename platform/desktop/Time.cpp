// SPDX-License-Identifier: MIT
#include "platform/Time.h"

#include <ctime>

#include "platform/desktop/Clock.h"

namespace platform {

namespace {
constexpr double kNanosPerSecond = 1e9;
constexpr int kSecondsPerMinute = 60;
constexpr int kMinutesPerHour = 60;
}  // namespace

std::int32_t TickCount() {
  return static_cast<std::int32_t>(desktop::MonotonicMillis());
}

float Timer() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  std::tm local{};
  localtime_r(&now.tv_sec, &local);
  const int seconds =
      (local.tm_hour * kMinutesPerHour + local.tm_min) * kSecondsPerMinute + local.tm_sec;
  return static_cast<float>(seconds + static_cast<double>(now.tv_nsec) / kNanosPerSecond);
}

}  // namespace platform
