// SPDX-License-Identifier: MIT
// Recorded plays in a real window, in which only what changes is painted: it has to show, pixel by
// pixel, what a repaint of all of it gives.
#include <QBackingStore>
#include <QTest>
#include <cstring>
#include <fstream>
#include <random>

#include "display/basDirectDrawStuff.h"
#include "platform/Events.h"
#include "platform/desktop/BoardView.h"
#include "rules/basGameClock.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/basMainGameLoop.h"
#include "rules/state/basModes.h"
#include "tests/platform/Twin.h"
#include "tests/rules/GameFixture.h"

namespace glimmerfall {
namespace {

constexpr int kMenuHeight = 19;  // at half-way ratios the board begins between two device pixels
constexpr int kDisturbedEvery = 40;  // frames
constexpr int kComparedEvery = 5;    // frames, where there are more pixels than at ratio 1

// The board below a menu bar, and what a desktop does to a window.
class Screen : public platform::Clipper {
 public:
  Screen() : view_(&window_, {}), cover_(&window_) {
    window_.setFixedSize(kSurfaceWidth, kMenuHeight + kSurfaceHeight);
    view_.setGeometry(0, kMenuHeight, kSurfaceWidth, kSurfaceHeight);
    cover_.setAutoFillBackground(true);
    cover_.hide();
    Expose();
  }

  void SetHWnd(platform::WindowHandle) override {}

  void Show(const platform::Frame& frame) override {
    view_.Present(frame);
    if (frame == last_) return;
    last_ = frame;
    if (++frames_ % kDisturbedEvery == 0) Disturb();
    if (view_.devicePixelRatio() != 1 && frames_ % kComparedEvery != 0) return;
    Repaint(full_, view_.devicePixelRatio());
    if (!ShowsFull()) ++wrong_;
  }

  platform::WindowHandle Board() { return static_cast<QWidget*>(&view_); }
  int Frames() const { return frames_; }
  int Wrong() const { return wrong_; }

 private:
  void Expose() {
    window_.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window_));
    QApplication::processEvents();
  }

  void Repaint(QImage& image, qreal ratio) {
    const QSize size = view_.size() * ratio;
    if (image.size() != size) image = QImage(size, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    view_.render(&image);
  }

  // Whether the board's part of what the window holds is `full_`.
  bool ShowsFull() {
    const auto* const all = static_cast<QImage*>(window_.backingStore()->paintDevice());
    const int top = qRound(kMenuHeight * view_.devicePixelRatio());
    EXPECT_EQ(all->bytesPerLine(), full_.bytesPerLine());
    const auto size = static_cast<std::size_t>(full_.sizeInBytes());
    return std::memcmp(all->constScanLine(top), full_.constBits(), size) == 0;
  }

  // Covered, covered in part, or shown at another ratio in between.
  void Disturb() {
    const auto below = [&](int count) { return static_cast<int>(random_()) % count; };
    switch (frames_ / kDisturbedEvery % 3) {
      case 0:
        window_.hide();
        return Expose();
      case 1:
        cover_.setGeometry(below(400), below(400), 1 + below(200), 1 + below(200));
        cover_.show();
        QApplication::processEvents();
        return cover_.hide();
      default: {
        QImage other;
        Repaint(other, view_.devicePixelRatio() + 0.25);
      }
    }
  }

  QWidget window_;
  platform::desktop::BoardView view_;
  QWidget cover_;
  platform::Frame last_;
  QImage full_;
  std::minstd_rand random_;
  int frames_ = 0;
  int wrong_ = 0;
};

class Frames : public testing::TestWithParam<Mode> {};

TEST_P(Frames, ShowWhatARepaintWouldShow) {
  const auto screen = std::make_shared<Screen>();
  std::ifstream file(std::string(TEST_DATA "/plays/") + GetParam().name + ".txt");
  PreparePlay(file);
  picBoardHandle = screen->Board();
  primarySurface->SetClipper(screen);
  InitGameBoard();
  platform::StartTimer(UpdateClock);
  EXPECT_THROW(RunGameLoop(), twin::ProgramEnded);
  EXPECT_GT(screen->Frames(), 1000);
  EXPECT_EQ(screen->Wrong(), 0);
  ReleaseAll();
}

INSTANTIATE_TEST_SUITE_P(Plays, Frames, testing::ValuesIn(kModes),
                         [](const auto& play) { return play.param.name; });

}  // namespace
}  // namespace glimmerfall
