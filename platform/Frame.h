// SPDX-License-Identifier: MIT
// A frame as the list of what was drawn on it, in order and in logical pixels, so that it can be
// painted at any device pixel ratio and compared with the frame before.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace platform {

/// Logical pixels; right and bottom lie just outside.
struct Rect {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;

  constexpr std::int32_t Width() const { return right - left; }
  constexpr std::int32_t Height() const { return bottom - top; }
  constexpr bool IsEmpty() const { return right <= left || bottom <= top; }
  friend bool operator==(const Rect&, const Rect&) = default;
};

/// Logical pixels.
struct Size {
  std::int32_t width = 0;
  std::int32_t height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

/// A colour as 0xBBGGRR: red in the lowest byte.
using Colour = std::int32_t;

constexpr Colour RGB(int red, int green, int blue) {
  return red | green << 8 | blue << 16;
}

/// A font by family and by the height of its em square in pixels, so that no desktop setting
/// changes the layout.
struct Font {
  std::string family;
  int pixelSize = 0;
  friend bool operator==(const Font&, const Font&) = default;
};

/// The pixels of a bitmap file. Defined by what is linked behind this header.
struct Pixels;

/// `from` of `source`, stretched smoothly to `to` if the two differ in size. Pixels of the colour
/// `key` are left out.
struct Copy {
  Rect to;
  Rect from;
  std::optional<Colour> key;
  std::shared_ptr<const Pixels> source;
  friend bool operator==(const Copy&, const Copy&) = default;
};

/// A filled box whose outline, one pixel wide, lies inside `to`.
struct Box {
  Rect to;
  Colour outline = 0;
  Colour fill = 0;
  friend bool operator==(const Box&, const Box&) = default;
};

/// A line of text with its top left corner at (x, y).
struct Text {
  std::int32_t x = 0;
  std::int32_t y = 0;
  std::string text;
  Font font;
  Colour colour = 0;
  bool transparent = true;
  friend bool operator==(const Text&, const Text&) = default;
};

using DrawItem = std::variant<Copy, Box, Text>;
using Frame = std::vector<DrawItem>;

/// A rectangle outside of which `item` changes no pixel, at any scale and in any font.
Rect BoundsOf(const DrawItem& item);

/// Few rectangles outside of which both frames look the same; none for equal frames.
std::vector<Rect> Differences(const Frame& before, const Frame& after);

}  // namespace platform
