// SPDX-License-Identifier: MIT
// A picture of the board at the device pixel ratio of the screen. Beside NAME.bmp there may be
// NAME@2x.png, the same picture at twice the size; one that is missing, unreadable or of another
// size is passed over.
#pragma once

#include <QImage>

#include "platform/Frame.h"

namespace platform {

struct Pixels {
 public:
  /// Reads the bitmap file at `path`; throws Error as CreateSurfaceFromFile tells.
  explicit Pixels(const std::string& path);

  Size GetSize() const { return size_; }

  /// The picture with `ratio` device pixels to a logical one, pixels of the colour `key`
  /// transparent. Prepared when either differs from the last call, from the file or, if that is
  /// gone by now, from what was prepared before.
  const QImage& At(qreal ratio, const std::optional<Colour>& key) const;

  /// The device pixels `part` of the picture that At gave last, stretched to `size`.
  const QImage& Stretched(const QRect& part, QSize size) const;

 private:
  QImage Load(qreal ratio) const;
  QImage Scaled(const QImage& image, qreal ratio) const;

  QString path_;
  Size size_;
  mutable QImage image_;  // as the file has it until At is called, and then as it was asked for
  mutable qreal ratio_ = 0;
  mutable std::optional<Colour> key_;
  mutable QRect stretchedPart_;
  mutable QImage stretched_;
};

}  // namespace platform
