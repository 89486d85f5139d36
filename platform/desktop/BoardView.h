// SPDX-License-Identifier: MIT
// The picture box of the board: shows the last frame handed to it, at any scale factor of the
// screen, and reports the mouse in pixels of the board.
#pragma once

#include <QImage>
#include <QWidget>

namespace platform::desktop {

/// Where the view sends its mouse. None may be null. Positions are in pixels of the board.
struct BoardMouse {
  void (*MouseDown)(float x, float y);
  void (*MouseMove)(float x, float y);
  void (*MouseUp)();
  void (*Click)();
};

class BoardView : public QWidget {
 public:
  BoardView(QWidget* parent, const BoardMouse& mouse);

  /// Shows `frame`, of which it keeps a copy.
  void Present(const QImage& frame);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  BoardMouse mouse_;
  QImage shown_;
};

}  // namespace platform::desktop
