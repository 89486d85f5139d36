// SPDX-License-Identifier: MIT
// Paints a recorded frame at the device pixels of a screen.
#pragma once

#include <QPainter>
#include <QRegion>

#include "platform/Frame.h"

namespace platform::desktop {

/// Logical pixels by which the device pixels of an item may reach over its rectangle.
int Overlap(qreal ratio);

/// Paints the part of `frame` that lies in `region`, in logical pixels of `painter`, whose clip
/// must not reach over it. Whatever the region, the same pixels are painted there.
void PaintFrame(QPainter& painter, const QRegion& region, const Frame& frame);

}  // namespace platform::desktop
