// SPDX-License-Identifier: MIT
// The composing of one whole frame on real surfaces: the background, 64 gems and the status strip,
// against a copy of the same bytes. "of_memcpy" is the ratio of the two times.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstring>
#include <vector>

#include "bench/CpuTime.h"
#include "display/basBoardText.h"
#include "display/basDirectDrawStuff.h"
#include "display/basDisplayingGemsAndTarget.h"
#include "platform/desktop/FrameSurface.h"
#include "rules/state/basGameState.h"

namespace glimmerfall {
namespace {

// Background and 64 sprites, 4 bytes a pixel.
constexpr std::size_t kFrameBytes = (std::size_t{512} * 576 + std::size_t{64} * 64 * 64) * 4;
constexpr int kCopies = 2000;

double SecondsOfMemcpy() {
  const std::vector<char> from(kFrameBytes, 1);
  std::vector<char> to(kFrameBytes);
  const double start = CpuSeconds();
  for (int i = 0; i < kCopies; ++i) {
    std::memcpy(to.data(), from.data(), kFrameBytes);
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  }
  return (CpuSeconds() - start) / kCopies;
}

void LoadPictures() {
  ResetGameState();
  boardBitmapPath = GAME_IMAGES "/Board.bmp";
  gemSheetPath = GAME_IMAGES "/gemsheet1024x512.bmp";
  targetBitmapPath = GAME_IMAGES "/Target.bmp";
  mainWindowFont = {"Arial", 35};
  InitDisplay();
  for (int16 id = 0; id < kGemCount; ++id) {
    CGem& gem = Gem(id);
    gem.pixX = static_cast<int16>(id % 8 * kCellPixels);
    gem.pixY = static_cast<int16>(id / 8 * kCellPixels);
    gem.sheetY = static_cast<int16>(id % 8 * kCellPixels);
    boardCells[id].gem = &gem;
  }
  timeLimit = 50;
  timeLeft = 30;
}

// A gem turns, or the frame would be known from the one before and not be painted at all.
void PaintFrame() {
  Gem(0).spinFrame = static_cast<int16>((Gem(0).spinFrame + 1) % kSpinFrames);
  benchmark::DoNotOptimize(
      dynamic_cast<platform::desktop::FrameSurface&>(*backBuffer).Image().constBits());
}

template <typename Draw>
void MeasureFrame(benchmark::State& state, Draw draw) {
  LoadPictures();
  const double seconds = MeasureSteps(state, [draw] {
    PaintBoardPicture();
    draw();
    PaintFrame();
  });
  state.counters["of_memcpy"] = seconds / SecondsOfMemcpy();
}

void BackgroundAndGems(benchmark::State& state) {
  MeasureFrame(state, DrawGems);
}
BENCHMARK(BackgroundAndGems);

void WholeFrameWithStatus(benchmark::State& state) {
  MeasureFrame(state, [] {
    DrawGems();
    DrawStatus();
  });
}
BENCHMARK(WholeFrameWithStatus);

}  // namespace
}  // namespace glimmerfall

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
