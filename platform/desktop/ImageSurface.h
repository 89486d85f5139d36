// SPDX-License-Identifier: MIT
// A drawing surface in memory.
#pragma once

#include <QImage>
#include <QPainter>

#include "platform/Surface.h"

namespace platform::desktop {

class ImageSurface : public Surface {
 public:
  explicit ImageSurface(QImage image);
  ImageSurface(const ImageSurface&) = delete;
  ImageSurface& operator=(const ImageSurface&) = delete;
  ~ImageSurface() override = default;

  /// Pixels as they stand, for looking at; a copy of it would be painted on with the surface.
  const QImage& Image() const { return image_; }

  /// Whether the copies would be taken rather than refused.
  bool AcceptsBlt(const Rect& to, const ImageSurface& source, const Rect& from) const;
  bool AcceptsBltFast(const Rect& to, const ImageSurface& source, const Rect& from) const;

  Size GetSurfaceDesc() const override;
  void SetClipper(std::shared_ptr<Clipper> clipper) override;
  void SetColorKey(Colour low, Colour high) override;
  bool Blt(const Rect& to, const Surface& source, const Rect& from, ColorKey key) override;
  bool BltFast(std::int32_t x, std::int32_t y, const Surface& source, const Rect& from,
               ColorKey key) override;
  void SetFontTransparency(bool transparent) override;
  void SetForeColor(Colour colour) override;
  void SetFillColor(Colour colour) override;
  void SetFont(const Font& font) override;
  void DrawText(std::int32_t x, std::int32_t y, const std::string& text) override;
  void DrawBox(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) override;
  void DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) override;

 private:
  const QImage& Pixels(ColorKey key) const;
  QPainter& Painter();

  QImage image_;
  QImage keyed_;  // with the colour key made transparent; null without a key
  QPainter painter_;
};

/// The toolkit's font for `font`. Families that the desktop lacks resolve to free ones of the same
/// measures.
QFont ToQFont(const Font& font);

/// Reads the bitmap file at `path`; throws as CreateSurfaceFromFile tells.
QImage LoadBitmap(const std::string& path);

}  // namespace platform::desktop
