// SPDX-License-Identifier: MIT
#include "platform/Frame.h"

#include <algorithm>

namespace platform {

namespace {

Rect Bounds(const Copy& copy) {
  return copy.to;
}

Rect Bounds(const Box& box) {
  return box.to;
}

// Guessed without the font's measures: no letter is wider than its em square, rises over the top
// of its line, reaches lower than one and three quarters of an em, or sticks out sideways by more
// than a quarter of one.
Rect Bounds(const Text& text) {
  const std::int32_t em = text.font.pixelSize;
  const std::int32_t overhang = em / 4;
  const auto letters = static_cast<std::int32_t>(text.text.size());
  return {text.x - overhang, text.y, text.x + letters * em + overhang, text.y + em * 7 / 4};
}

std::int64_t Area(const Rect& rect) {
  return std::int64_t{rect.Width()} * rect.Height();
}

Rect United(const Rect& a, const Rect& b) {
  return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
          std::max(a.bottom, b.bottom)};
}

// Two rectangles become one where that takes in little else: no more than they overlap.
void Add(std::vector<Rect>& rects, Rect rect) {
  const auto joins = [&rect](const Rect& other) {
    return Area(United(rect, other)) <= Area(rect) + Area(other);
  };
  for (;;) {
    const auto other = std::find_if(rects.begin(), rects.end(), joins);
    if (other == rects.end()) break;
    rect = United(rect, *other);
    rects.erase(other);
  }
  rects.push_back(rect);
}

}  // namespace

Rect BoundsOf(const DrawItem& item) {
  return std::visit([](const auto& drawn) { return Bounds(drawn); }, item);
}

// A pixel shows what the items that touch it make of it, in their order. So where every item that
// touches it stands in both lists, and in the same order, it has not changed.
std::vector<Rect> Differences(const Frame& before, const Frame& after) {
  std::vector<Rect> rects;
  auto old = before.begin();
  for (const DrawItem& item : after) {
    const auto same = std::find(old, before.end(), item);
    if (same == before.end()) {
      Add(rects, BoundsOf(item));
      continue;
    }
    for (; old != same; ++old)
      Add(rects, BoundsOf(*old));
    ++old;
  }
  for (; old != before.end(); ++old)
    Add(rects, BoundsOf(*old));
  return rects;
}

}  // namespace platform
