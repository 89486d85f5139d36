// SPDX-License-Identifier: MIT
// The display device: surfaces in memory, and the screen surface, which hands frames to the picture
// box of the board.
#include <QFontMetrics>
#include <QPointer>

#include "platform/Error.h"
#include "platform/desktop/BoardView.h"
#include "platform/desktop/FrameSurface.h"
#include "platform/desktop/ImageSurface.h"

namespace platform {

namespace {

using desktop::BoardView;
using desktop::FrameSurface;
using desktop::ImageSurface;

class WidgetClipper : public Clipper {
 public:
  void SetHWnd(WindowHandle window) override {
    view_ = dynamic_cast<BoardView*>(static_cast<QWidget*>(window));
  }
  BoardView* View() const { return view_; }

 private:
  QPointer<BoardView> view_;
};

// Only copies reach it: the game draws nothing else to the screen.
class ScreenSurface : public ImageSurface {
 public:
  ScreenSurface() : ImageSurface(QImage()) {}

  void SetClipper(std::shared_ptr<Clipper> clipper) override {
    clipper_ = std::dynamic_pointer_cast<WidgetClipper>(clipper);
  }

  bool Blt(const Rect& to, const Surface& source, const Rect&, ColorKey) override {
    BoardView* view = clipper_ ? clipper_->View() : nullptr;
    if (view == nullptr || to.Width() <= 0 || to.Height() <= 0) return false;
    const auto& frame = dynamic_cast<const FrameSurface&>(source);
    const QImage& picture = frame.Image();
    if (frame.Version() != shownVersion_) view->Present(picture);
    shownVersion_ = frame.Version();
    return true;
  }

 private:
  long shownVersion_ = 0;  // of the one frame surface there is
  std::shared_ptr<WidgetClipper> clipper_;
};

class Display : public DisplayDevice {
 public:
  // Plain windowed use needs nothing of the window.
  void SetCooperativeLevel(WindowHandle) override {}

  std::shared_ptr<Surface> CreatePrimarySurface() override {
    return std::make_shared<ScreenSurface>();
  }

  std::shared_ptr<Surface> CreateSurface(Size size) override {
    QImage image(size.width, size.height, QImage::Format_RGB32);
    if (image.isNull()) throw Error("There is no memory for the picture.");
    image.fill(Qt::black);
    return std::make_shared<FrameSurface>(std::move(image));
  }

  std::shared_ptr<Surface> CreateSurfaceFromFile(const std::string& path) override {
    return std::make_shared<ImageSurface>(desktop::LoadBitmap(path));
  }

  std::shared_ptr<Clipper> CreateClipper() override { return std::make_shared<WidgetClipper>(); }
};

}  // namespace

namespace desktop {

QFont ToQFont(const Font& font) {
  QFont result(QString::fromStdString(font.family));
  result.setPixelSize(font.pixelSize);
  result.setStyleHint(QFont::SansSerif);
  return result;
}

}  // namespace desktop

Size MeasureText(const Font& font, const std::string& text) {
  const QFontMetrics metrics(desktop::ToQFont(font));
  return {metrics.horizontalAdvance(QString::fromStdString(text)), metrics.height()};
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
