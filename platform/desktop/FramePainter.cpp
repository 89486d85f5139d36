// SPDX-License-Identifier: MIT
#include "platform/desktop/FramePainter.h"

#include "platform/desktop/Conversions.h"
#include "platform/desktop/Pixels.h"

namespace platform::desktop {

namespace {

// The painter's own pixels are set to those of the device while this lives, and its origin to a
// whole one: no picture falls between two. How many there are only the painter knows: a widget
// tells the ratio of its screen, which what it is painted on follows later, or not at all.
class Replay {
 public:
  explicit Replay(QPainter& painter) : painter_(painter), ratio_(painter.deviceTransform().m11()) {
    const QTransform toDevice = painter.deviceTransform();
    pixels_ = QTransform::fromTranslate(qRound(toDevice.dx()), qRound(toDevice.dy())) *
              toDevice.inverted();
    painter.setWorldTransform(pixels_);
    painter.setPen(Qt::NoPen);
  }

  // Stretched in a picture of its own, since the toolkit's stretching is not quite the same under
  // another clip.
  void operator()(const Copy& copy) {
    const QImage& sheet = copy.source->At(ratio_, copy.key);
    const QRect to = ToDevice(copy.to, ratio_);
    const QRect from = ToDevice(copy.from, ratio_);
    painter_.setCompositionMode(copy.key ? QPainter::CompositionMode_SourceOver
                                         : QPainter::CompositionMode_Source);
    if (ToQRect(copy.to).size() == ToQRect(copy.from).size()) {
      painter_.drawImage(to.topLeft(), sheet, from);
    } else {
      painter_.drawImage(to.topLeft(), copy.source->Stretched(from, to.size()));
    }
  }

  void operator()(const Box& box) {
    const QRect inside = ToQRect(box.to).adjusted(1, 1, -1, -1);
    const Rect fill = {inside.left(), inside.top(), inside.right() + 1, inside.bottom() + 1};
    painter_.setCompositionMode(QPainter::CompositionMode_Source);
    painter_.fillRect(ToDevice(box.to, ratio_), ToQColor(box.outline));
    if (!inside.isEmpty()) painter_.fillRect(ToDevice(fill, ratio_), ToQColor(box.fill));
  }

  void operator()(const Text& text) {
    painter_.setWorldTransform(QTransform::fromScale(ratio_, ratio_) * pixels_);
    painter_.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter_.setBackgroundMode(text.transparent ? Qt::TransparentMode : Qt::OpaqueMode);
    painter_.setFont(ToQFont(text.font));
    painter_.setPen(ToQColor(text.colour));
    painter_.drawText(text.x, text.y + painter_.fontMetrics().ascent(),
                      QString::fromStdString(text.text));
    painter_.setWorldTransform(pixels_);
  }

 private:
  QPainter& painter_;
  qreal ratio_;
  QTransform pixels_;
};

}  // namespace

int Overlap(qreal ratio) {
  return ratio == std::floor(ratio) ? 0 : 2;
}

void PaintFrame(QPainter& painter, const QRegion& region, const Frame& frame) {
  const int overlap = Overlap(painter.deviceTransform().m11());
  Replay replay(painter);
  for (const DrawItem& item : frame) {
    const QRect bounds = ToQRect(BoundsOf(item)).adjusted(-overlap, -overlap, overlap, overlap);
    if (region.intersects(bounds)) std::visit(replay, item);
  }
}

}  // namespace platform::desktop
