// SPDX-License-Identifier: MIT
#include "platform/desktop/BoardView.h"

#include <QMouseEvent>
#include <QPainter>
#include <cstring>

namespace platform::desktop {

BoardView::BoardView(QWidget* parent, const BoardMouse& mouse) : QWidget(parent), mouse_(mouse) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAccessibleName("Board");
}

// A copy of its own, since the frame is composed anew while this one may have to be painted again.
void BoardView::Present(const QImage& frame) {
  if (shown_.size() != frame.size()) shown_ = QImage(frame.size(), frame.format());
  std::memcpy(shown_.bits(), frame.constBits(), static_cast<std::size_t>(frame.sizeInBytes()));
  repaint();
}

void BoardView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  if (shown_.isNull()) {
    painter.fillRect(event->rect(), Qt::black);
    return;
  }
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.drawImage(rect(), shown_);
}

void BoardView::mousePressEvent(QMouseEvent* event) {
  const QPointF at = event->position();
  mouse_.MouseDown(static_cast<float>(at.x()), static_cast<float>(at.y()));
}

// The second press of a double click is a press like any other.
void BoardView::mouseDoubleClickEvent(QMouseEvent* event) {
  mousePressEvent(event);
}

void BoardView::mouseMoveEvent(QMouseEvent* event) {
  const QPointF at = event->position();
  mouse_.MouseMove(static_cast<float>(at.x()), static_cast<float>(at.y()));
}

void BoardView::mouseReleaseEvent(QMouseEvent* event) {
  mouse_.MouseUp();
  if (QRectF(rect()).contains(event->position())) mouse_.Click();
}

}  // namespace platform::desktop
