// SPDX-License-Identifier: MIT
// How fast the rules are without any drawing. "of_a_frame" is the share of the 21 ms of a frame.
#include <benchmark/benchmark.h>

#include <algorithm>

#include "bench/CpuTime.h"
#include "display/basDirectDrawStuff.h"
#include "rules/basHint.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "rules/basManipulatingGems.h"
#include "rules/basMatchingGems.h"
#include "rules/basMoveShapes.h"
#include "tests/platform/Twin.h"

namespace glimmerfall {
namespace {

constexpr double kFrameSeconds = 0.021;

void SetUpBoard(int16 atLevel) {
  twin::Reset(7);
  ResetGameState();
  ResetDisplay();
  gameMode = modeRelaxing;
  level = atLevel;
  InitGameBoard();
  gameState = stateIdle;
}

void PressOn(int cell) {
  const int column = cell % 8;
  const int row = cell / 8;
  MouseDown(static_cast<float32>(column * 64 + 32), static_cast<float32>(row * 64 + 32));
}

// Tries the neighbours of the hinted gem one after the other, and starts anew when a game is over.
void Play() {
  static int tries = 0;
  if (gameState == stateShaking) return SetUpBoard(26);
  if (gameState != stateIdle) return;
  const CGem& gem = Gem(FindHintGem());
  const int steps[] = {-8, -1, 1, 8};
  const int cell = gem.col + 8 * gem.row;
  PressOn(cell);
  PressOn(std::clamp(cell + steps[++tries % 4], 0, 63));
}

void TellFrames(benchmark::State& state, double seconds) {
  state.counters["frames_a_second"] = 1 / seconds;
  state.counters["of_a_frame"] = seconds / kFrameSeconds;
}

void FramesOfPlay(benchmark::State& state) {
  SetUpBoard(26);
  TellFrames(state, MeasureSteps(state, [] {
               Play();
               RunFrame();
             }));
}
BENCHMARK(FramesOfPlay);

void FramesAtRest(benchmark::State& state) {
  SetUpBoard(1);
  TellFrames(state, MeasureSteps(state, RunFrame));
}
BENCHMARK(FramesAtRest);

template <typename Search>
void SearchBoards(benchmark::State& state, Search search) {
  SetUpBoard(26);
  while (state.KeepRunning())
    benchmark::DoNotOptimize(search());
}
BENCHMARK_CAPTURE(SearchBoards, BoardHasRun, [] { return BoardHasRun(); });
BENCHMARK_CAPTURE(SearchBoards, FindMatches, [] {
  GemList found;
  return FindMatches(found);
});
BENCHMARK_CAPTURE(SearchBoards, MoveExists, [] { return MoveExists(); });

// No shape fits anywhere, so the whole board is walked.
void MoveExistsOnADeadBoard(benchmark::State& state) {
  SetUpBoard(26);
  for (int16 id = 0; id < kGemCount; ++id)
    boardCells[id].kind = static_cast<int16>((id % 8 + id / 8 * 3) % 8);
  while (state.KeepRunning())
    benchmark::DoNotOptimize(MoveExists());
}
BENCHMARK(MoveExistsOnADeadBoard);

}  // namespace
}  // namespace glimmerfall
