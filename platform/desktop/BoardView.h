// SPDX-License-Identifier: MIT
// The picture box of the board: shows the last frame handed to it, at any scale factor of the
// screen, and reports the mouse in pixels of the board, and the keys.
#pragma once

#include <QWidget>

#include "platform/Frame.h"
#include "platform/Keys.h"

namespace platform::desktop {

/// Where the view sends its mouse and keys. None may be null. Positions are in pixels of the board.
struct BoardInput {
  void (*MouseDown)(float x, float y);
  void (*MouseMove)(float x, float y);
  void (*MouseUp)();
  void (*Click)();
  void (*KeyDown)(Key key);
  /// The pointer moved for the first time after a key, with a button down or without.
  void (*PointerTakesOver)();
};

class BoardView : public QWidget {
 public:
  BoardView(QWidget* parent, const BoardInput& input);

  /// Shows `frame`: repaints at once what differs from the one before.
  void Present(const Frame& frame);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  BoardInput input_;
  Frame shown_;
};

}  // namespace platform::desktop
