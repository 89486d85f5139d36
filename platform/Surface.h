// SPDX-License-Identifier: MIT
// Drawing surfaces: a screen surface clipped to one control, off-screen surfaces, bitmaps from
// files, rectangle copies with and without a transparent colour, text, lines and boxes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/Window.h"

namespace platform {

/// Pixels; right and bottom lie just outside.
struct Rect {
  std::int32_t left = 0;
  std::int32_t top = 0;
  std::int32_t right = 0;
  std::int32_t bottom = 0;

  constexpr std::int32_t Width() const { return right - left; }
  constexpr std::int32_t Height() const { return bottom - top; }
  friend bool operator==(const Rect&, const Rect&) = default;
};

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

/// Width and height in pixels of `text` in `font`, each rounded to a whole number.
Size MeasureText(const Font& font, const std::string& text);

/// Where `window` now stands on the screen, in logical pixels. Leaves `rect` as it is when the
/// window does not exist.
void GetWindowRect(WindowHandle window, Rect& rect);

/// Whether a copy leaves out the pixels of the source's colour key.
enum class ColorKey { Ignore, Source };

/// Keeps what is drawn on a surface inside one control.
class Clipper {
 public:
  virtual ~Clipper() = default;
  virtual void SetHWnd(WindowHandle window) = 0;
};

class Surface {
 public:
  virtual ~Surface() = default;

  virtual Size GetSurfaceDesc() const = 0;

  /// Binds the screen surface to the control of `clipper`. Without a clipper it shows nothing.
  virtual void SetClipper(std::shared_ptr<Clipper> clipper) = 0;

  /// Pixels whose colour lies from `low` to `high` in each channel are left out of the copies that
  /// ask for it.
  virtual void SetColorKey(Colour low, Colour high) = 0;

  /// Copies `from` of `source` into `to`, and stretches smoothly if the two differ in size. Yields
  /// false and draws nothing when a rectangle has no size, when `from` is not wholly inside the
  /// source or when `to` is wholly outside this surface; a `to` that lies partly outside is
  /// clipped.
  virtual bool Blt(const Rect& to, const Surface& source, const Rect& from, ColorKey key) = 0;

  /// Copies `from` of `source` to (x, y) without stretching and without clipping. Yields false and
  /// draws nothing when either rectangle has no size or is not wholly inside its surface.
  virtual bool BltFast(std::int32_t x, std::int32_t y, const Surface& source, const Rect& from,
                       ColorKey key) = 0;

  /// True: text is drawn without a background.
  virtual void SetFontTransparency(bool transparent) = 0;
  /// Colour of text, lines and box outlines from now on.
  virtual void SetForeColor(Colour colour) = 0;
  /// Fill colour of boxes from now on.
  virtual void SetFillColor(Colour colour) = 0;
  virtual void SetFont(const Font& font) = 0;
  /// Draws `text` with its top left corner at (x, y).
  virtual void DrawText(std::int32_t x, std::int32_t y, const std::string& text) = 0;
  /// Draws a filled box with an outline in the foreground colour, from (x1, y1) up to but without
  /// (x2, y2). A box without width or height draws nothing.
  virtual void DrawBox(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) = 0;
  /// Draws a line one pixel wide, both ends included.
  virtual void DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) = 0;
};

/// The maker of all surfaces.
class DisplayDevice {
 public:
  virtual ~DisplayDevice() = default;
  virtual void SetCooperativeLevel(WindowHandle window) = 0;
  virtual std::shared_ptr<Surface> CreatePrimarySurface() = 0;
  /// A black surface. Throws Error if there is no memory for it.
  virtual std::shared_ptr<Surface> CreateSurface(Size size) = 0;
  /// A surface that holds the bitmap file at `path` and has its size. Throws Error for a file that
  /// is missing, no bitmap, damaged, or larger than 4096 pixels a side.
  virtual std::shared_ptr<Surface> CreateSurfaceFromFile(const std::string& path) = 0;
  virtual std::shared_ptr<Clipper> CreateClipper() = 0;
};

/// The display of the desktop. Throws Error if there is none.
std::shared_ptr<DisplayDevice> DirectDrawCreate();

}  // namespace platform
