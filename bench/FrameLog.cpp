// SPDX-License-Identifier: MIT
// Preloaded into the real program (LD_PRELOAD), it logs when each frame begins to wait: the program
// sets its timer to the end of the frame once for each. The file named by FRAME_LOG gets one line a
// frame: the time in nanoseconds of CLOCK_MONOTONIC, the processor time of the game's thread in
// microseconds, and its major page faults, both since its start; and a line "-" for a wait longer
// than a frame: that of the end message, and that of a pause.
#include <dlfcn.h>
#include <sys/resource.h>
#include <sys/timerfd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

constexpr long kNanosPerSecond = 1'000'000'000;
constexpr long kFrameNanos = 21'000'000;
constexpr long kMicrosPerSecond = 1'000'000;

long Nanos(const timespec& time) {
  return time.tv_sec * kNanosPerSecond + time.tv_nsec;
}

long Micros(const timeval& time) {
  return time.tv_sec * kMicrosPerSecond + time.tv_usec;
}

// A wait that an event has cut short sets the timer again to the same moment.
void LogFrame(long deadline) {
  static std::FILE* const file = std::fopen(std::getenv("FRAME_LOG"), "w");
  static long last = 0;
  if (file == nullptr || deadline == last) return;
  last = deadline;
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  if (deadline - Nanos(now) > kFrameNanos) {
    std::fputs("-\n", file);
  } else {
    rusage used{};
    getrusage(RUSAGE_THREAD, &used);
    std::fprintf(file, "%ld %ld %ld\n", Nanos(now), Micros(used.ru_utime) + Micros(used.ru_stime),
                 used.ru_majflt);
  }
  std::fflush(file);
}

}  // namespace

extern "C" int timerfd_settime(int fd, int flags, const itimerspec* to, itimerspec* was) noexcept {
  using Call = int (*)(int, int, const itimerspec*, itimerspec*);
  static const auto original = reinterpret_cast<Call>(dlsym(RTLD_NEXT, "timerfd_settime"));
  if (flags == TFD_TIMER_ABSTIME) LogFrame(Nanos(to->it_value));
  return original(fd, flags, to, was);
}
