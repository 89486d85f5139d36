// SPDX-License-Identifier: MIT
// The scripted display of the twin: bitmaps have a name and a size, frames are their lists.
#include <sstream>

#include "platform/Surface.h"
#include "tests/platform/Twin.h"

namespace platform {

struct Pixels {
  std::string name;
};

namespace {

constexpr int kTextHeight = 40;
constexpr int kLetterWidth = 16;

class TwinClipper : public Clipper {
 public:
  void SetHWnd(WindowHandle) override {}
  void Show(const Frame& frame) override {
    if (twin::devices.onShow) twin::devices.onShow(frame);
  }
};

class TwinDisplay : public DisplayDevice {
 public:
  std::shared_ptr<Surface> CreateSurfaceFromFile(const std::string& path) override {
    const std::string name = twin::FileName(path);
    twin::ThrowIfBroken(name);
    return std::make_shared<Surface>(twin::devices.bitmapSizes.at(name),
                                     std::make_shared<const Pixels>(Pixels{name}));
  }
  std::shared_ptr<Clipper> CreateClipper() override { return std::make_shared<TwinClipper>(); }
};

struct Line {
  std::ostringstream text;

  void operator()(const Rect& r) {
    text << ' ' << r.left << ',' << r.top << ',' << r.right << ',' << r.bottom;
  }
  void operator()(const Copy& copy) {
    text << copy.source->name;
    (*this)(copy.from);
    (*this)(copy.to);
    text << (copy.key == RGB(0, 0, 0) ? " keyed" : "");
  }
  void operator()(const Box& box) {
    text << "Box";
    (*this)(box.to);
    text << ' ' << box.outline << ' ' << box.fill;
  }
  void operator()(const Text& line) {
    text << "Text " << line.x << ',' << line.y << ' ' << line.colour << ' ' << line.text
         << (line.transparent ? "" : " opaque")
         << (line.font == Font{"Arial", 35} ? "" : " in another font");
  }
};

}  // namespace

std::shared_ptr<DisplayDevice> DirectDrawCreate() {
  twin::ThrowIfBroken("display");
  return std::make_shared<TwinDisplay>();
}

void GetWindowRect(WindowHandle, Rect& rect) {
  rect = {100, 100, 612, 676};
}

Size MeasureText(const Font&, const std::string& text) {
  return {kLetterWidth * static_cast<int>(text.size()), kTextHeight};
}

}  // namespace platform

namespace twin {

std::vector<std::string> Lines(const platform::Frame& frame) {
  std::vector<std::string> lines;
  for (const platform::DrawItem& item : frame) {
    platform::Line line;
    std::visit(line, item);
    lines.push_back(line.text.str());
  }
  return lines;
}

}  // namespace twin
