// SPDX-License-Identifier: MIT
// Events, waits and the board's view on the real toolkit. Presses go the way of a desktop's: in
// pixels of the screen, whatever its scale factor.
#include "platform/Events.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <sstream>

#include "platform/Time.h"
#include "platform/desktop/BoardView.h"

// The names are those that the linker gives to a wrapped call.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

int __real_timerfd_create(int clock, int flags);

// The system's timers are all taken where the suite is run with this variable.
int __wrap_timerfd_create(int clock, int flags) {
  return qEnvironmentVariableIsSet("NO_SYSTEM_TIMER") ? -1 : __real_timerfd_create(clock, flags);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)

namespace platform {
namespace {

using desktop::BoardView;

std::ostringstream told;

constexpr desktop::BoardInput kInput = {
    [](float x, float y) { told << "down " << x << ',' << y << "; "; },
    [](float x, float y) { told << "move " << x << ',' << y << "; "; },
    [] { told << "up; "; },
    [] { told << "click; "; },
    [](Key key) { told << "key " << static_cast<int>(key) << "; "; },
    [] { told << "pointer; "; }};

std::string Told() {
  std::string text = told.str();
  told.str("");
  return text;
}

class View : public testing::Test {
 protected:
  View() : view(nullptr, kInput) {
    view.setFixedSize(512, 576);
    view.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    Told();
  }

  QWindow* Window() { return view.windowHandle(); }

  BoardView view;
};

TEST_F(View, ReportsEveryPressInPixelsOfTheBoardAndItsReleaseAnywhere) {
  QTest::mouseClick(Window(), Qt::RightButton, {}, {1, 1});
  QTest::mouseDClick(Window(), Qt::LeftButton, {}, {510, 300});
  QTest::mousePress(Window(), Qt::LeftButton, {}, {70, 80});
  QTest::mouseRelease(Window(), Qt::LeftButton, {}, {600, 80});
  EXPECT_EQ(Told(),
            "down 1,1; up; click; down 510,300; up; click; down 510,300; up; click; down 70,80; "
            "move 600,80; up; ");
}

// All posted before any is handled, as when a frame takes long.
TEST_F(View, EveryMotionOfAQuickDragArrives) {
  std::string expected;
  for (int x = 10; x < 500; x += 49) {
    QCoreApplication::postEvent(
        &view, new QMouseEvent(QEvent::MouseMove, QPointF(x, 30), view.mapToGlobal(QPointF(x, 30)),
                               Qt::NoButton, Qt::LeftButton, {}));
    expected += "move " + std::to_string(x) + ",30; ";
  }
  LetEventsRun();
  EXPECT_EQ(Told(), expected);
}

// What the menu needs, and what no game key is, stays with the toolkit.
TEST_F(View, ReportsItsKeysAndTheMotionThatFollowsThem) {
  const auto moveTo = [&](int x) { QTest::mouseMove(Window(), QPoint(x, 30)); };
  moveTo(20);
  for (const auto key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_Home,
                         Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Space,
                         Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_T, Qt::Key_A})
    QTest::keyClick(Window(), key, key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier);
  QTest::keyClick(Window(), Qt::Key_Left, Qt::ControlModifier);
  EXPECT_EQ(Told(),
            "key 0; key 1; key 2; key 3; key 4; key 5; key 6; key 7; key 8; key 8; key 8; key 9; "
            "key 10; ");
  for (const auto key : {Qt::Key_Up, Qt::Key_Space}) {
    QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, {}, true);
    QCoreApplication::sendEvent(&view, &held);
  }
  EXPECT_EQ(Told(), "key 2; ") << "a held space bar is one press";
  moveTo(40);
  moveTo(60);
  EXPECT_EQ(Told(), "pointer; ");
}

// A window that was told of no other ratio keeps its own when its screen's changes.
TEST_F(View, IsPaintedAtTheRatioOfWhatItIsPaintedOn) {
  view.Present({Box{{0, 0, 512, 576}, 0, 0}, Box{{256, 288, 512, 576}, 0xFFFFFF, 0xFFFFFF}});
  for (const int ratio : {1, 2, 3}) {
    QImage image(view.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    view.render(&image);
    EXPECT_EQ(image.pixel(256 * ratio, 288 * ratio), 0xFFFFFFFF) << ratio;
    EXPECT_EQ(image.pixel(256 * ratio - 1, 288 * ratio), 0xFF000000) << ratio;
  }
}

TEST(Events, TheWaitSleepsUntilItsTick) {
  LetEventsRun();
  for (int millis = 1; millis <= 20; ++millis) {
    const std::int32_t until = TickAfter(TickCount(), millis);
    int looks = 0;
    while (TicksSince(TickCount(), until) > 0) {
      LetEventsRunUntil(until);
      ++looks;
    }
    EXPECT_LT(looks, 10) << "the wait has to sleep";
  }
}

TEST(Events, TheWaitEndsWithAnEvent) {
  const std::int32_t until = TickAfter(TickCount(), 60'000);
  bool came = false;
  QTimer::singleShot(20, [&] { came = true; });
  while (!came)
    LetEventsRunUntil(until);
  EXPECT_GT(TicksSince(TickCount(), until), 0);
}

int timerEvents = 0;
bool inTimerEvent = false;
float timerRest = 0;

void LetTimePass(std::int32_t millis) {
  const std::int32_t until = TickAfter(TickCount(), millis);
  while (TicksSince(TickCount(), until) > 0)
    LetEventsRunUntil(until);
}

// Lets events run for so long that the next event would be due.
void TimerEvent() {
  EXPECT_FALSE(inTimerEvent);
  EXPECT_GE(SecondsSince(timerRest, Timer()), 0.1F);
  inTimerEvent = true;
  LetTimePass(150);
  inTimerEvent = false;
  ++timerEvents;
  timerRest = Timer();
}

TEST(Events, TheTimerIsNotNestedAndLeavesAWholeStepBetween) {
  timerRest = Timer();
  StartTimer(TimerEvent);
  while (timerEvents < 4)
    LetEventsRunFor(1000);
  StartTimer(nullptr);
  LetTimePass(250);
  EXPECT_EQ(timerEvents, 4);
}

}  // namespace
}  // namespace platform
