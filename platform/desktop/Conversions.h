// SPDX-License-Identifier: MIT
// The platform's types as the toolkit's.
#pragma once

#include <QColor>
#include <QFont>
#include <QRect>

#include "platform/Frame.h"

namespace platform::desktop {

inline QRect ToQRect(const Rect& rect) {
  return {rect.left, rect.top, rect.Width(), rect.Height()};
}

inline QColor ToQColor(Colour colour) {
  return {colour & 0xFF, colour >> 8 & 0xFF, colour >> 16 & 0xFF};
}

/// Families that the desktop lacks resolve to free ones of the same measures.
inline QFont ToQFont(const Font& font) {
  QFont result(QString::fromStdString(font.family));
  result.setPixelSize(font.pixelSize);
  result.setStyleHint(QFont::SansSerif);
  return result;
}

/// `rect` in device pixels, `ratio` of them to a logical one. Each edge is rounded by itself, so
/// that neighbours share theirs.
inline QRect ToDevice(const Rect& rect, qreal ratio) {
  const QPoint corner(qRound(rect.left * ratio), qRound(rect.top * ratio));
  return {corner, QPoint(qRound(rect.right * ratio) - 1, qRound(rect.bottom * ratio) - 1)};
}

}  // namespace platform::desktop
