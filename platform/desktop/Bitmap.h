// SPDX-License-Identifier: MIT
// Reading of bitmap files.
#pragma once

#include <QImage>
#include <string>

namespace platform::desktop {

/// The bitmap file at `path`, as RGB32. Throws Error for a file that is missing, no bitmap,
/// damaged, or larger than 4096 pixels a side.
QImage LoadBitmap(const std::string& path);

}  // namespace platform::desktop
