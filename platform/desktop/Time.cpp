// SPDX-License-Identifier: MIT
#include "platform/Time.h"

#include <chrono>
#include <ctime>

#include "platform/desktop/Clock.h"

namespace platform {

namespace {
constexpr std::int64_t kNanosPerMilli = 1'000'000;
constexpr double kNanosPerSecond = 1e9;
constexpr int kSecondsPerMinute = 60;
constexpr int kMinutesPerHour = 60;
}  // namespace

namespace desktop {

std::int64_t MonotonicMillis() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * std::int64_t{1000} + now.tv_nsec / kNanosPerMilli;
}

}  // namespace desktop

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
