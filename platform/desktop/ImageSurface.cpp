// SPDX-License-Identifier: MIT
#include "platform/desktop/ImageSurface.h"

#include <QFontMetrics>

namespace platform::desktop {

namespace {

QRect ToQRect(const Rect& r) {
  return {r.left, r.top, r.Width(), r.Height()};
}

QColor ToQColor(Colour colour) {
  return QColor(colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF);
}

bool IsInRange(int value, int low, int high) {
  return value >= low && value <= high;
}

QImage MakeTransparent(const QImage& image, const QColor& low, const QColor& high) {
  QImage keyed = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  for (int y = 0; y < keyed.height(); ++y) {
    auto* line = reinterpret_cast<QRgb*>(keyed.scanLine(y));
    for (int x = 0; x < keyed.width(); ++x) {
      const QRgb pixel = line[x];
      if (IsInRange(qRed(pixel), low.red(), high.red()) &&
          IsInRange(qGreen(pixel), low.green(), high.green()) &&
          IsInRange(qBlue(pixel), low.blue(), high.blue()))
        line[x] = 0;
    }
  }
  return keyed;
}

// Keyed pixels are wholly opaque or wholly transparent, so the topmost bit of each tells which. Far
// quicker than blending, and the 64 gems of a frame are copied this way.
void CopyOpaque(QRgb* to, const QRgb* from, int count) {
  for (int i = 0; i < count; ++i) {
    const QRgb mask = 0U - (from[i] >> 31U);
    to[i] = (from[i] & mask) | (to[i] & ~mask);
  }
}

}  // namespace

ImageSurface::ImageSurface(QImage image) : image_(std::move(image)) {}

Size ImageSurface::GetSurfaceDesc() const {
  return {image_.width(), image_.height()};
}

void ImageSurface::SetClipper(std::shared_ptr<Clipper>) {}

void ImageSurface::SetColorKey(Colour low, Colour high) {
  keyed_ = MakeTransparent(image_, ToQColor(low), ToQColor(high));
}

bool ImageSurface::AcceptsBlt(const Rect& to, const ImageSurface& source, const Rect& from) const {
  const QRect target = ToQRect(to);
  const QRect part = ToQRect(from);
  return !target.isEmpty() && !part.isEmpty() && source.image_.rect().contains(part) &&
         image_.rect().intersects(target);
}

bool ImageSurface::AcceptsBltFast(const Rect& to, const ImageSurface& source,
                                  const Rect& from) const {
  return AcceptsBlt(to, source, from) && image_.rect().contains(ToQRect(to));
}

bool ImageSurface::Blt(const Rect& to, const Surface& source, const Rect& from, ColorKey key) {
  const auto& other = dynamic_cast<const ImageSurface&>(source);
  if (!AcceptsBlt(to, other, from)) return false;
  const QImage& pixels = other.Pixels(key);
  QPainter& painter = Painter();
  painter.setCompositionMode(pixels.hasAlphaChannel() ? QPainter::CompositionMode_SourceOver
                                                      : QPainter::CompositionMode_Source);
  painter.drawImage(ToQRect(to), pixels, ToQRect(from));
  return true;
}

bool ImageSurface::BltFast(std::int32_t x, std::int32_t y, const Surface& source, const Rect& from,
                           ColorKey key) {
  const Rect to = {x, y, x + from.Width(), y + from.Height()};
  const auto& other = dynamic_cast<const ImageSurface&>(source);
  if (!AcceptsBltFast(to, other, from)) return false;
  const QImage& pixels = other.Pixels(key);
  if (!pixels.hasAlphaChannel()) return Blt(to, source, from, key);
  for (int row = 0; row < to.Height(); ++row)
    CopyOpaque(reinterpret_cast<QRgb*>(image_.scanLine(y + row)) + x,
               reinterpret_cast<const QRgb*>(pixels.constScanLine(from.top + row)) + from.left,
               to.Width());
  return true;
}

void ImageSurface::SetFontTransparency(bool transparent) {
  Painter().setBackgroundMode(transparent ? Qt::TransparentMode : Qt::OpaqueMode);
}

void ImageSurface::SetForeColor(Colour colour) {
  Painter().setPen(ToQColor(colour));
}

void ImageSurface::SetFillColor(Colour colour) {
  Painter().setBrush(ToQColor(colour));
}

void ImageSurface::SetFont(const Font& font) {
  Painter().setFont(ToQFont(font));
}

void ImageSurface::DrawText(std::int32_t x, std::int32_t y, const std::string& text) {
  QPainter& painter = Painter();
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  painter.drawText(x, y + painter.fontMetrics().ascent(), QString::fromStdString(text));
}

void ImageSurface::DrawBox(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
  if (x2 <= x1 || y2 <= y1) return;
  // An outline of one pixel lies half a pixel outside the rectangle that the toolkit is given.
  Painter().drawRect(x1, y1, x2 - x1 - 1, y2 - y1 - 1);
}

void ImageSurface::DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
  Painter().drawLine(x1, y1, x2, y2);
}

const QImage& ImageSurface::Pixels(ColorKey key) const {
  return key == ColorKey::Source && !keyed_.isNull() ? keyed_ : image_;
}

// One painter for the surface's whole life: beginning one for each copy costs more than the copy.
QPainter& ImageSurface::Painter() {
  if (!painter_.isActive()) {
    painter_.begin(&image_);
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
    painter_.setRenderHint(QPainter::TextAntialiasing);
  }
  return painter_;
}

}  // namespace platform::desktop
