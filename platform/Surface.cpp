// SPDX-License-Identifier: MIT
#include "platform/Surface.h"

#include <cassert>

namespace platform {

namespace {

constexpr std::size_t kMostItems = 1000;  // several frames

bool IsInside(const Rect& rect, Size size) {
  return rect.left >= 0 && rect.top >= 0 && rect.right <= size.width && rect.bottom <= size.height;
}

bool Touches(const Rect& rect, Size size) {
  return rect.right > 0 && rect.bottom > 0 && rect.left < size.width && rect.top < size.height;
}

bool Covers(const Rect& rect, Size size) {
  return rect.left <= 0 && rect.top <= 0 && rect.right >= size.width && rect.bottom >= size.height;
}

}  // namespace

Surface::Surface(Size size, std::shared_ptr<const Pixels> pixels)
    : size_(size), pixels_(std::move(pixels)) {
  BeginAnew();
}

void Surface::SetClipper(std::shared_ptr<Clipper> clipper) {
  clipper_ = std::move(clipper);
}

void Surface::SetColorKey(Colour low, [[maybe_unused]] Colour high) {
  assert(low == high);
  key_ = low;
}

bool Surface::Blt(const Rect& to, const Surface& source, const Rect& from, ColorKey key) {
  if (clipper_ && !to.IsEmpty()) {
    clipper_->Show(source.drawn_);
    return true;
  }
  if (!Accepts(to, source, from)) return false;
  const auto leftOut = key == ColorKey::Source ? source.key_ : std::nullopt;
  if (Covers(to, size_) && !leftOut) drawn_.clear();
  Add(Copy{to, from, leftOut, source.pixels_});
  return true;
}

bool Surface::BltFast(std::int32_t x, std::int32_t y, const Surface& source, const Rect& from,
                      ColorKey key) {
  const Rect to = {x, y, x + from.Width(), y + from.Height()};
  return IsInside(to, size_) && Blt(to, source, from, key);
}

void Surface::DrawText(std::int32_t x, std::int32_t y, const std::string& text) {
  if (font_.pixelSize > 0) Add(Text{x, y, text, font_, foreColour_, transparent_});
}

void Surface::DrawBox(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
  const Rect to = {x1, y1, x2, y2};
  if (!to.IsEmpty()) Add(Box{to, foreColour_, fillColour_});
}

void Surface::DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
  assert((x1 == x2 && y1 <= y2) || (y1 == y2 && x1 <= x2));
  Add(Box{{x1, y1, x2 + 1, y2 + 1}, foreColour_, foreColour_});
}

bool Surface::Accepts(const Rect& to, const Surface& source, const Rect& from) const {
  return !to.IsEmpty() && !from.IsEmpty() && source.pixels_ != nullptr &&
         IsInside(from, source.size_) && Touches(to, size_);
}

// Where nothing wipes the surface, since the picture for it could not be loaded, nothing is shown
// either: what was drawn is dropped before it grows too long.
void Surface::Add(DrawItem item) {
  if (drawn_.size() == kMostItems) BeginAnew();
  drawn_.push_back(std::move(item));
}

void Surface::BeginAnew() {
  drawn_.assign(1, Box{{0, 0, size_.width, size_.height}, RGB(0, 0, 0), RGB(0, 0, 0)});
}

}  // namespace platform
