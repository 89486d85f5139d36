// SPDX-License-Identifier: MIT
// Drawing surfaces: a screen surface clipped to one control, off-screen surfaces, bitmaps from
// files, rectangle copies with and without a transparent colour, text, lines and boxes. Positions
// and sizes are in logical pixels.
#pragma once

#include "platform/Frame.h"
#include "platform/Window.h"

namespace platform {

/// Width and height in pixels of `text` in `font`, each rounded to a whole number.
Size MeasureText(const Font& font, const std::string& text);

/// Where `window` now stands on the screen, in logical pixels. Leaves `rect` as it is when the
/// window does not exist.
void GetWindowRect(WindowHandle window, Rect& rect);

/// Whether a copy leaves out the pixels of the source's colour key.
enum class ColorKey { Ignore, Source };

/// What leads from the screen surface into one control.
class Clipper {
 public:
  virtual ~Clipper() = default;
  virtual void SetHWnd(WindowHandle window) = 0;
  /// Shows `frame` in the control, which then paints it again whenever it has to.
  virtual void Show(const Frame& frame) = 0;
};

/// Records what is drawn on it. A copy that covers it whole begins the record anew.
class Surface {
 public:
  /// A black surface, or one that holds the bitmap `pixels`.
  explicit Surface(Size size, std::shared_ptr<const Pixels> pixels = nullptr);

  Size GetSurfaceDesc() const { return size_; }

  /// Makes this the screen surface of the control of `clipper`: whatever is copied to it is shown
  /// there, and nothing is recorded.
  void SetClipper(std::shared_ptr<Clipper> clipper);

  /// Pixels of the colour `low`, which `high` has to equal, are left out of the copies that ask for
  /// it.
  void SetColorKey(Colour low, Colour high);

  /// Copies `from` of `source` into `to`, and stretches smoothly if the two differ in size. Yields
  /// false and draws nothing when a rectangle has no size, when `from` is not wholly inside the
  /// source, when the source holds no bitmap or when `to` is wholly outside this surface; a `to`
  /// that lies partly outside is clipped.
  bool Blt(const Rect& to, const Surface& source, const Rect& from, ColorKey key);

  /// Copies `from` of `source` to (x, y) without stretching and without clipping. Yields false and
  /// draws nothing when either rectangle has no size or is not wholly inside its surface.
  bool BltFast(std::int32_t x, std::int32_t y, const Surface& source, const Rect& from,
               ColorKey key);

  /// True: text is drawn without a background.
  void SetFontTransparency(bool transparent) { transparent_ = transparent; }
  /// Colour of text, lines and box outlines from now on.
  void SetForeColor(Colour colour) { foreColour_ = colour; }
  /// Fill colour of boxes from now on.
  void SetFillColor(Colour colour) { fillColour_ = colour; }
  void SetFont(const Font& font) { font_ = font; }
  /// Draws `text` with its top left corner at (x, y).
  void DrawText(std::int32_t x, std::int32_t y, const std::string& text);
  /// Draws a filled box with an outline in the foreground colour, from (x1, y1) up to but without
  /// (x2, y2). A box without width or height draws nothing.
  void DrawBox(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
  /// Draws a line across or down, one pixel wide, from (x1, y1) to the right or down to (x2, y2),
  /// both ends included.
  void DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);

  /// What was drawn since the record began.
  const Frame& Drawn() const { return drawn_; }

 private:
  bool Accepts(const Rect& to, const Surface& source, const Rect& from) const;
  void Add(DrawItem item);
  void BeginAnew();

  Size size_;
  std::shared_ptr<const Pixels> pixels_;
  std::optional<Colour> key_;
  std::shared_ptr<Clipper> clipper_;
  bool transparent_ = true;
  Colour foreColour_ = 0;
  Colour fillColour_ = 0;
  Font font_;
  Frame drawn_;
};

/// The maker of all surfaces.
class DisplayDevice {
 public:
  virtual ~DisplayDevice() = default;
  /// Plain windowed use needs nothing of the window.
  virtual void SetCooperativeLevel(WindowHandle) {}
  std::shared_ptr<Surface> CreatePrimarySurface() { return CreateSurface({}); }
  /// A black surface.
  std::shared_ptr<Surface> CreateSurface(Size size) { return std::make_shared<Surface>(size); }
  /// A surface that holds the bitmap file at `path` and has its size. Throws Error for a file that
  /// is missing, no bitmap, damaged, or larger than 4096 pixels a side.
  virtual std::shared_ptr<Surface> CreateSurfaceFromFile(const std::string& path) = 0;
  virtual std::shared_ptr<Clipper> CreateClipper() = 0;
};

/// The display of the desktop. Throws Error if there is none.
std::shared_ptr<DisplayDevice> DirectDrawCreate();

}  // namespace platform
