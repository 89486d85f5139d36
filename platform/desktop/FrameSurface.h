// SPDX-License-Identifier: MIT
// The surface on which a frame is composed. It writes down what is drawn on it and paints only when
// its picture is asked for: a frame that is drawn just like the last one, as all are while the
// player thinks, costs a comparison of two short lists.
#pragma once

#include <string>
#include <vector>

#include "platform/desktop/ImageSurface.h"

namespace platform::desktop {

/// Surfaces that it copies from are read when it paints, so they have to stay as they are. A copy
/// that covers it whole begins the list anew.
class FrameSurface : public Surface {
 public:
  explicit FrameSurface(QImage image) : picture_(std::move(image)) {}

  /// The picture as it stands, painted now where it has changed.
  const QImage& Image() const;
  /// Counts the paintings: while it stands, so does the picture that Image gave.
  long Version() const { return version_; }

  Size GetSurfaceDesc() const override { return picture_.GetSurfaceDesc(); }
  void SetClipper(std::shared_ptr<Clipper> clipper) override;
  void SetColorKey(Colour low, Colour high) override;
  bool Blt(const Rect& to, const Surface& source, const Rect& from, ColorKey key) override;
  bool BltFast(std::int32_t x, std::int32_t y, const Surface& source, const Rect& from,
               ColorKey key) override;
  void SetFontTransparency(bool transparent) override;
  void SetForeColor(Colour colour) override;
  void SetFillColor(Colour colour) override;
  void SetFont(const Font& font) override;
  void DrawText(std::int32_t x, std::int32_t y, const std::string& text) override;
  void DrawBox(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) override;
  void DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) override;

 private:
  enum class Kind { Blt, BltFast, Text, Box, Line };

  struct Settings {
    bool transparent = true;
    Colour foreColour = 0;
    Colour fillColour = 0;
    Font font = {};
    friend bool operator==(const Settings&, const Settings&) = default;
  };

  // What one operation was given; each kind leaves at its start value what it does not use.
  struct Call {
    Kind kind;
    Rect to = {};
    const ImageSurface* source = nullptr;
    Rect from = {};
    ColorKey key = ColorKey::Ignore;
    Settings settings = {};
    std::string text = {};
    friend bool operator==(const Call&, const Call&) = default;
  };

  bool Covers(const Call& call) const;
  void Add(Call call);
  void Paint(const Call& call) const;
  void Apply(const Settings& settings) const;

  Settings settings_;        // those of the operations to come
  std::vector<Call> calls_;  // what was drawn since the list began

  // The picture, and the list that it was painted from.
  mutable ImageSurface picture_;
  mutable std::vector<Call> painted_;
  mutable long version_ = 0;
};

}  // namespace platform::desktop
