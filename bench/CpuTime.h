// SPDX-License-Identifier: MIT
// Processor time for ratios, so that a busy machine does not change them.
#pragma once

#include <benchmark/benchmark.h>

#include <ctime>

namespace glimmerfall {

inline double CpuSeconds() {
  return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// Runs `step` as the benchmark's loop; answers the processor seconds of one step.
template <typename Step>
double MeasureSteps(benchmark::State& state, Step step) {
  const double start = CpuSeconds();
  for (auto _ : state)
    step();
  return (CpuSeconds() - start) / static_cast<double>(state.iterations());
}

}  // namespace glimmerfall
