// SPDX-License-Identifier: MIT
#include "platform/desktop/FrameSurface.h"

#include <algorithm>

namespace platform::desktop {

namespace {
constexpr std::size_t kMostCalls = 1000;  // several frames
}

const QImage& FrameSurface::Image() const {
  if (calls_ == painted_) return picture_.Image();
  const bool goesOn = calls_.size() > painted_.size() &&
                      std::equal(painted_.begin(), painted_.end(), calls_.begin());
  const auto first = calls_.begin() + (goesOn ? static_cast<std::ptrdiff_t>(painted_.size()) : 0);
  std::for_each(first, calls_.end(), [this](const Call& call) { Paint(call); });
  painted_ = calls_;
  ++version_;
  return picture_.Image();
}

void FrameSurface::SetClipper(std::shared_ptr<Clipper> clipper) {
  picture_.SetClipper(std::move(clipper));
}

void FrameSurface::SetColorKey(Colour low, Colour high) {
  Image();
  picture_.SetColorKey(low, high);
}

bool FrameSurface::Blt(const Rect& to, const Surface& source, const Rect& from, ColorKey key) {
  const auto& image = dynamic_cast<const ImageSurface&>(source);
  if (!picture_.AcceptsBlt(to, image, from)) return false;
  Add({.kind = Kind::Blt, .to = to, .source = &image, .from = from, .key = key});
  return true;
}

bool FrameSurface::BltFast(std::int32_t x, std::int32_t y, const Surface& source, const Rect& from,
                           ColorKey key) {
  const auto& image = dynamic_cast<const ImageSurface&>(source);
  const Rect to = {x, y, x + from.Width(), y + from.Height()};
  if (!picture_.AcceptsBltFast(to, image, from)) return false;
  Add({.kind = Kind::BltFast, .to = to, .source = &image, .from = from, .key = key});
  return true;
}

void FrameSurface::SetFontTransparency(bool transparent) {
  settings_.transparent = transparent;
}

void FrameSurface::SetForeColor(Colour colour) {
  settings_.foreColour = colour;
}

void FrameSurface::SetFillColor(Colour colour) {
  settings_.fillColour = colour;
}

void FrameSurface::SetFont(const Font& font) {
  settings_.font = font;
}

void FrameSurface::DrawText(std::int32_t x, std::int32_t y, const std::string& text) {
  Add({.kind = Kind::Text, .to = {x, y, x, y}, .settings = settings_, .text = text});
}

void FrameSurface::DrawBox(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
  Add({.kind = Kind::Box, .to = {x1, y1, x2, y2}, .settings = settings_});
}

void FrameSurface::DrawLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
  Add({.kind = Kind::Line, .to = {x1, y1, x2, y2}, .settings = settings_});
}

bool FrameSurface::Covers(const Call& call) const {
  const Size size = GetSurfaceDesc();
  return call.source != nullptr && call.key == ColorKey::Ignore && call.to.left <= 0 &&
         call.to.top <= 0 && call.to.right >= size.width && call.to.bottom >= size.height;
}

// What lies beneath a copy that covers all need not be painted. Where no such copy comes, since the
// picture for it could not be loaded, the list is painted and begun anew before it grows too long.
void FrameSurface::Add(Call call) {
  if (Covers(call)) {
    calls_.clear();
  } else if (calls_.size() == kMostCalls) {
    Image();
    calls_.clear();
    painted_.clear();
  }
  calls_.push_back(std::move(call));
}

void FrameSurface::Paint(const Call& call) const {
  const Rect& to = call.to;
  switch (call.kind) {
    case Kind::Blt:
      picture_.Blt(to, *call.source, call.from, call.key);
      break;
    case Kind::BltFast:
      picture_.BltFast(to.left, to.top, *call.source, call.from, call.key);
      break;
    case Kind::Text:
      Apply(call.settings);
      picture_.DrawText(to.left, to.top, call.text);
      break;
    case Kind::Box:
      Apply(call.settings);
      picture_.DrawBox(to.left, to.top, to.right, to.bottom);
      break;
    case Kind::Line:
      Apply(call.settings);
      picture_.DrawLine(to.left, to.top, to.right, to.bottom);
      break;
  }
}

void FrameSurface::Apply(const Settings& settings) const {
  picture_.SetFontTransparency(settings.transparent);
  picture_.SetForeColor(settings.foreColour);
  picture_.SetFillColor(settings.fillColour);
  if (settings.font.pixelSize > 0) picture_.SetFont(settings.font);
}

}  // namespace platform::desktop
