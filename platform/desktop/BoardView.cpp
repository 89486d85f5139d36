// SPDX-License-Identifier: MIT
#include "platform/desktop/BoardView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <algorithm>

#include "platform/desktop/Conversions.h"
#include "platform/desktop/FramePainter.h"

namespace platform::desktop {

namespace {

struct KeyRow {
  int code;
  Key key;
};
constexpr KeyRow kKeys[] = {
    {Qt::Key_Left, Key::Left},     {Qt::Key_Right, Key::Right},       {Qt::Key_Up, Key::Up},
    {Qt::Key_Down, Key::Down},     {Qt::Key_Home, Key::Home},         {Qt::Key_End, Key::End},
    {Qt::Key_PageUp, Key::PageUp}, {Qt::Key_PageDown, Key::PageDown}, {Qt::Key_Space, Key::Enter},
    {Qt::Key_Return, Key::Enter},  {Qt::Key_Enter, Key::Enter},       {Qt::Key_Escape, Key::Escape},
    {Qt::Key_T, Key::Tell},
};

bool RepeatsWhileHeld(Key key) {
  return key != Key::Enter && key != Key::Escape && key != Key::Tell;
}

}  // namespace

BoardView::BoardView(QWidget* parent, const BoardInput& input) : QWidget(parent), input_(input) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAccessibleName("Board");
  setFocusPolicy(Qt::StrongFocus);
}

void BoardView::Present(const Frame& frame) {
  const int overlap = Overlap(devicePixelRatio());
  QRegion changed;
  for (const Rect& rect : Differences(shown_, frame))
    changed += ToQRect(rect).adjusted(-overlap, -overlap, overlap, overlap);
  if (changed.isEmpty()) return;
  shown_ = frame;
  repaint(changed);
}

void BoardView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  if (shown_.empty()) painter.fillRect(event->rect(), Qt::black);
  PaintFrame(painter, event->region(), shown_);
}

void BoardView::mousePressEvent(QMouseEvent* event) {
  const QPointF at = event->position();
  input_.MouseDown(static_cast<float>(at.x()), static_cast<float>(at.y()));
}

// The second press of a double click is a press like any other.
void BoardView::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);
}

// Motion without a button is asked for from a key on, until the first of it comes.
void BoardView::mouseMoveEvent(QMouseEvent* event) {
  if (hasMouseTracking()) {
    setMouseTracking(false);
    input_.PointerTakesOver();
  }
  if (event->buttons() == Qt::NoButton) return;
  const QPointF at = event->position();
  input_.MouseMove(static_cast<float>(at.x()), static_cast<float>(at.y()));
}

void BoardView::mouseReleaseEvent(QMouseEvent* event) {
  input_.MouseUp();
  if (QRectF(rect()).contains(event->position())) input_.Click();
}

void BoardView::keyPressEvent(QKeyEvent* event) {
  const auto* const row = std::find_if(std::begin(kKeys), std::end(kKeys),
                                       [event](const KeyRow& r) { return r.code == event->key(); });
  const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (row == std::end(kKeys) || !plain) return event->ignore();
  if (event->isAutoRepeat() && !RepeatsWhileHeld(row->key)) return;
  setMouseTracking(true);
  input_.KeyDown(row->key);
}

}  // namespace platform::desktop
