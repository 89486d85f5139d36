// SPDX-License-Identifier: MIT
// What the end of a sound costs the game's thread: the longest time for which a call for memory
// waits while sounds end one after the other, beside a large, fragmented heap.
// "of_a_frame" is its share of the 21 ms of a frame, "resident_growth" how much larger the program
// is after all sounds than before, as a ratio.
#include <benchmark/benchmark.h>
#include <sndfile.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/desktop/FilterGraph.h"

namespace platform::desktop {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr double kFrameMilliseconds = 21;
constexpr int kSounds = 1000;
constexpr std::size_t kBlocks = 400'000;
constexpr std::size_t kBlockBytes = 600;

std::string Beep() {
  std::string path = std::filesystem::temp_directory_path() / "glimmerfall-beep.wav";
  SF_INFO info = {};
  info.samplerate = 44100;
  info.channels = 1;
  info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  const std::vector<short> samples(2000);
  sf_writef_short(file, samples.data(), 2000);
  sf_close(file);
  return path;
}

double ResidentPages() {
  long size = 0;
  double resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident;
}

// The sizes vary so that the pages between those that stay are free.
std::vector<std::unique_ptr<char[]>> FragmentedHeap() {
  std::vector<std::unique_ptr<char[]>> blocks;
  for (std::size_t i = 0; i < kBlocks; ++i) {
    const std::size_t bytes = kBlockBytes + i % 7 * 100;
    blocks.push_back(std::make_unique<char[]>(bytes));
  }
  for (std::size_t i = 0; i < kBlocks; ++i)
    if (i % 16 != 0) blocks[i].reset();
  return blocks;
}

Milliseconds TimeOfAllocation() {
  const Clock::time_point start = Clock::now();
  benchmark::DoNotOptimize(std::make_unique<char[]>(kBlockBytes * 4));
  return Clock::now() - start;
}

void SoundsThatEnd(benchmark::State& state) {
  WarmUpMedia();
  const std::string path = Beep();
  const auto heap = FragmentedHeap();
  Milliseconds longest{};
  double before = 0;
  while (state.KeepRunning()) {
    for (int i = 0; i < kSounds; ++i) {
      const auto graph = CreateFilterGraphInto("fakesink sync=false");
      graph->RenderFile(path);
      graph->Run();
      while (graph->WaitForCompletion() == GraphEvent::None) {
        longest = std::max(longest, TimeOfAllocation());
        std::this_thread::sleep_for(std::chrono::microseconds(100));
      }
      if (i == 100) before = ResidentPages();
    }
    WaitUntilMediaIdle();
  }
  state.counters["longest_ms"] = longest.count();
  state.counters["of_a_frame"] = longest.count() / kFrameMilliseconds;
  state.counters["resident_growth"] = ResidentPages() / before;
}
BENCHMARK(SoundsThatEnd)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace platform::desktop
