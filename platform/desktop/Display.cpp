// SPDX-License-Identifier: MIT
// The display device: the maker of surfaces, and what leads a frame into the picture box of the
// board.
#include <QFontMetrics>
#include <QPointer>
#include <tuple>

#include "platform/Surface.h"
#include "platform/desktop/BoardView.h"
#include "platform/desktop/Conversions.h"
#include "platform/desktop/Pixels.h"

namespace platform {

namespace {

using desktop::BoardView;

class WidgetClipper : public Clipper {
 public:
  void SetHWnd(WindowHandle window) override {
    view_ = dynamic_cast<BoardView*>(static_cast<QWidget*>(window));
  }
  void Show(const Frame& frame) override {
    if (view_) view_->Present(frame);
  }

 private:
  QPointer<BoardView> view_;
};

class Display : public DisplayDevice {
 public:
  std::shared_ptr<Surface> CreateSurfaceFromFile(const std::string& path) override {
    auto pixels = std::make_shared<const Pixels>(path);
    const Size size = pixels->GetSize();
    return std::make_shared<Surface>(size, std::move(pixels));
  }

  std::shared_ptr<Clipper> CreateClipper() override { return std::make_shared<WidgetClipper>(); }
};

}  // namespace

// The last answer is kept: the toolkit shapes a text to measure it, and the status asks for the
// same one in each frame.
Size MeasureText(const Font& font, const std::string& text) {
  static std::tuple<Font, std::string, Size> measured;
  auto& [lastFont, lastText, size] = measured;
  if (font == lastFont && text == lastText) return size;
  const QFontMetrics metrics(desktop::ToQFont(font));
  measured = {font, text,
              Size{metrics.horizontalAdvance(QString::fromStdString(text)), metrics.height()}};
  return size;
}

void GetWindowRect(WindowHandle window, Rect& rect) {
  const auto* widget = static_cast<const QWidget*>(window);
  if (widget == nullptr) return;
  const QPoint corner = widget->mapToGlobal(QPoint(0, 0));
  rect = {corner.x(), corner.y(), corner.x() + widget->width(), corner.y() + widget->height()};
}

std::shared_ptr<DisplayDevice> DirectDrawCreate() {
  return std::make_shared<Display>();
}

}  // namespace platform
