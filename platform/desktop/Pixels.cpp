// SPDX-License-Identifier: MIT
#include "platform/desktop/Pixels.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>

#include "platform/Error.h"
#include "platform/desktop/Bitmap.h"
#include "platform/desktop/Conversions.h"

namespace platform {

namespace {

constexpr int kCellPixels = 64;  // of a keyed picture: what is in one never runs into another

QImage WithoutColour(QImage image, Colour key) {
  image.setAlphaChannel(image.createMaskFromColor(desktop::ToQColor(key).rgb(), Qt::MaskOutColor));
  return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

}  // namespace

Pixels::Pixels(const std::string& path)
    : path_(QString::fromStdString(path)), image_(desktop::LoadBitmap(path)) {
  size_ = {image_.width(), image_.height()};
}

const QImage& Pixels::At(qreal ratio, const std::optional<Colour>& key) const {
  if (ratio_ == ratio && key_ == key) return image_;
  QImage image = Load(ratio);
  if (key && !image.hasAlphaChannel()) image = WithoutColour(std::move(image), *key);
  image_ = Scaled(image, ratio);
  ratio_ = ratio;
  key_ = key;
  stretched_ = {};
  return image_;
}

const QImage& Pixels::Stretched(const QRect& part, QSize size) const {
  if (stretchedPart_ == part && stretched_.size() == size) return stretched_;
  stretched_ = QImage(size, image_.format());
  stretched_.fill(Qt::transparent);
  QPainter painter(&stretched_);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(stretched_.rect(), image_, part);
  stretchedPart_ = part;
  return stretched_;
}

QImage Pixels::Load(qreal ratio) const {
  QImageReader twice(QFileInfo(path_).path() + '/' + QFileInfo(path_).completeBaseName() +
                     "@2x.png");
  if (ratio > 1 && twice.size() == 2 * QSize(size_.width, size_.height)) {
    QImage image = twice.read();
    image.setDevicePixelRatio(1);  // which the reader has taken from the file's name
    if (!image.isNull()) return image.convertToFormat(QImage::Format_RGB32);
  }
  if (ratio_ == 0) return image_;
  try {
    return desktop::LoadBitmap(path_.toStdString());
  } catch (const Error&) {
    return image_;
  }
}

// Smoothly, but a keyed picture cell by cell.
QImage Pixels::Scaled(const QImage& image, qreal ratio) const {
  const Rect all = {0, 0, size_.width, size_.height};
  const QSize size = desktop::ToDevice(all, ratio).size();
  if (image.size() == size) return image;
  const qreal had = static_cast<qreal>(image.width()) / size_.width;
  const int step = image.hasAlphaChannel() ? kCellPixels : std::max(size_.width, size_.height);
  QImage scaled(size, image.format());
  QPainter painter(&scaled);
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  for (int y = 0; y < size_.height; y += step) {
    for (int x = 0; x < size_.width; x += step) {
      const Rect cell = {x, y, std::min(x + step, size_.width), std::min(y + step, size_.height)};
      const QRect to = desktop::ToDevice(cell, ratio);
      painter.drawImage(to.topLeft(),
                        image.copy(desktop::ToDevice(cell, had))
                            .scaled(to.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    }
  }
  return scaled;
}

}  // namespace platform
