// SPDX-License-Identifier: MIT
// What a frame costs from its first drawing to the hand-over, against a copy of as many bytes as
// its background and 64 gems have. "of_memcpy" is the ratio of the two times. QT_SCALE_FACTOR sets
// the device pixel ratio.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstring>
#include <vector>

#include "bench/CpuTime.h"
#include "display/basBoardText.h"
#include "display/basDirectDrawStuff.h"
#include "display/basDisplayingGemsAndTarget.h"
#include "platform/desktop/BoardView.h"
#include "rules/state/basGameState.h"

namespace glimmerfall {
namespace {

constexpr int kCopies = 2000;

double SecondsOfMemcpy(std::size_t bytes) {
  const std::vector<char> from(bytes, 1);
  std::vector<char> to(bytes);
  const double start = CpuSeconds();
  for (int i = 0; i < kCopies; ++i) {
    std::memcpy(to.data(), from.data(), bytes);
    benchmark::DoNotOptimize(to.data());
    benchmark::ClobberMemory();
  }
  return (CpuSeconds() - start) / kCopies;
}

void LoadPictures(platform::desktop::BoardView* view) {
  ResetGameState();
  picBoardHandle = static_cast<QWidget*>(view);
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

// Background and 64 sprites, 4 bytes a device pixel.
std::size_t FrameBytes(qreal ratio) {
  constexpr double kPixels = 512 * 576 + 64 * 64 * 64;
  return static_cast<std::size_t>(kPixels * ratio * ratio) * 4;
}

// Frames in a window, each moved on by `move`, from the first call of the drawing to the hand-over.
void MeasureFrames(benchmark::State& state, void (*move)()) {
  platform::desktop::BoardView view(nullptr, {});
  view.setFixedSize(kSurfaceWidth, kSurfaceHeight);
  view.show();
  QApplication::processEvents();
  LoadPictures(&view);
  const double seconds = MeasureSteps(state, [move] {
    move();
    PaintBoardPicture();
    DrawGems();
    DrawStatus();
    PresentFrame(backRect);
  });
  state.counters["of_memcpy"] = seconds / SecondsOfMemcpy(FrameBytes(view.devicePixelRatio()));
  ReleaseAll();
}

void NothingMoves(benchmark::State& state) {
  MeasureFrames(state, [] {});
}
BENCHMARK(NothingMoves);

void OneGemTurns(benchmark::State& state) {
  MeasureFrames(
      state, [] { Gem(0).spinFrame = static_cast<int16>((Gem(0).spinFrame + 1) % kSpinFrames); });
}
BENCHMARK(OneGemTurns);

void AllGemsMove(benchmark::State& state) {
  MeasureFrames(state, [] {
    for (CGem& gem : gems)
      gem.pixX ^= 1;
  });
}
BENCHMARK(AllGemsMove);

}  // namespace
}  // namespace glimmerfall

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
