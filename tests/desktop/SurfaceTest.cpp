// SPDX-License-Identifier: MIT
// Real surfaces, pixel by pixel, and bitmap files in every state of repair.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QtEndian>
#include <limits>
#include <random>

#include "platform/Error.h"
#include "platform/desktop/FrameSurface.h"
#include "platform/desktop/ImageSurface.h"

namespace platform {
namespace {

using desktop::FrameSurface;
using desktop::ImageSurface;

constexpr QRgb kRed = 0xFFFF0000;
constexpr QRgb kGreen = 0xFF00FF00;
constexpr QRgb kBlue = 0xFF0000FF;
constexpr QRgb kBlack = 0xFF000000;
constexpr QRgb kNearlyBlack = 0xFF000001;
constexpr Rect kAll = {0, 0, 8, 8};  // of the sprite

QImage Filled(int width, int height, QRgb colour) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(colour);
  return image;
}

int Count(const ImageSurface& surface, QRgb colour) {
  const QImage& image = surface.Image();
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      count += image.pixel(x, y) == colour ? 1 : 0;
  return count;
}

class Surfaces : public testing::Test {
 protected:
  Surfaces() : to(Filled(16, 16, kBlue)), sprite(Sprite()) { sprite.SetColorKey(0, 0); }

  // Red, but for its first two pixels.
  static QImage Sprite() {
    QImage image = Filled(8, 8, kRed);
    image.setPixel(0, 0, kBlack);
    image.setPixel(1, 0, kNearlyBlack);
    return image;
  }

  // One operation, the same on every surface for the same state of `random`.
  void DrawAtRandom(Surface& surface, std::minstd_rand& random) const {
    const auto below = [&](unsigned count) { return static_cast<int>(random() % count); };
    const int x = below(20) - 4;
    const int y = below(20) - 4;
    switch (below(6)) {
      case 0:
        surface.BltFast(x, y, sprite, kAll, ColorKey::Source);
        break;
      case 1:
        surface.Blt({x, y, x + 5, y + 5}, sprite, kAll, ColorKey::Source);
        break;
      case 2:
        surface.SetForeColor(RGB(0, x * 10 + 40, 0));
        break;
      case 3:
        surface.SetFillColor(RGB(y * 10 + 40, 0, 0));
        break;
      case 4:
        surface.DrawBox(x, y, x + 4, y + 4);
        break;
      default:
        surface.DrawLine(x, y, x + 3, y);
    }
  }

  QRgb At(int x, int y) const { return to.Image().pixel(x, y); }

  ImageSurface to;
  ImageSurface sprite;
};

// Frame after frame, on a surface that paints late and on one that paints at once. Every other
// frame is drawn like the one before.
TEST_F(Surfaces, PaintingLateGivesTheSamePicture) {
  const ImageSurface ground(Filled(16, 16, kBlue));
  FrameSurface late(Filled(16, 16, kBlack));
  ImageSurface atOnce(Filled(16, 16, kBlack));
  for (unsigned frame = 0; frame < 400; ++frame) {
    for (Surface* const surface : {static_cast<Surface*>(&late), static_cast<Surface*>(&atOnce)}) {
      std::minstd_rand random(frame / 2 + 1);
      surface->Blt({0, 0, 16, 16}, ground, {0, 0, 16, 16}, ColorKey::Ignore);
      surface->SetForeColor(0);
      surface->SetFillColor(0);
      for (auto calls = random() % 6; calls > 0; --calls)
        DrawAtRandom(*surface, random);
    }
    if (frame % 5 == 4) continue;  // a frame that nobody looked at
    const long version = late.Version();
    ASSERT_EQ(late.Image(), atOnce.Image()) << "frame " << frame;
    if (frame % 2 == 1 && frame % 5 != 0) {
      ASSERT_EQ(late.Version(), version) << "frame " << frame << " was painted for nothing";
    }
  }
}

// As without the picture of the board, and without a window that asks for the frame.
TEST_F(Surfaces, FramesThatNothingWipesDoNotPileUp) {
  FrameSurface late(Filled(16, 16, kBlack));
  ImageSurface atOnce(Filled(16, 16, kBlack));
  std::minstd_rand random(1);
  std::minstd_rand same(1);
  for (int i = 0; i < 10'000; ++i) {
    DrawAtRandom(late, random);
    DrawAtRandom(atOnce, same);
  }
  EXPECT_GT(late.Version(), 1);
  EXPECT_EQ(late.Image(), atOnce.Image());
}

TEST_F(Surfaces, KeyedCopiesLeaveOutPureBlackAlone) {
  for (const bool fast : {true, false}) {
    ImageSurface fresh(Filled(16, 16, kBlue));
    EXPECT_TRUE(fast ? fresh.BltFast(4, 5, sprite, kAll, ColorKey::Source)
                     : fresh.Blt({4, 5, 12, 13}, sprite, kAll, ColorKey::Source));
    QImage expected = Filled(16, 16, kBlue);
    for (int i = 1; i < 64; ++i)
      expected.setPixel(4 + i % 8, 5 + i / 8, i == 1 ? kNearlyBlack : kRed);
    EXPECT_EQ(fresh.Image(), expected) << fast;
  }
  EXPECT_TRUE(to.Blt(kAll, sprite, kAll, ColorKey::Ignore));
  EXPECT_EQ(At(0, 0), kBlack);
}

TEST_F(Surfaces, RefuseBadRectanglesWithoutATrace) {
  constexpr std::pair<Rect, Rect> kStretched[] = {
      {{0, 0, 0, 8}, kAll},         {{8, 8, 0, 0}, kAll},          {{0, 0, 8, 8}, {0, 0, 8, 0}},
      {{0, 0, 8, 8}, {0, 0, 9, 8}}, {{0, 0, 8, 8}, {-1, 0, 7, 8}}, {{16, 0, 24, 8}, kAll},
      {{0, -8, 8, 0}, kAll},
  };
  for (const auto& [target, part] : kStretched)
    EXPECT_FALSE(to.Blt(target, sprite, part, ColorKey::Source)) << target.left;
  for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {9, 0}, {0, 9}, {-8, 0}, {16, 0}})
    EXPECT_FALSE(to.BltFast(x, y, sprite, kAll, ColorKey::Source)) << x << ',' << y;
  for (const Rect& part : {Rect{4, 4, 12, 12}, Rect{4, 4, 4, 8}})
    EXPECT_FALSE(to.BltFast(0, 0, sprite, part, ColorKey::Source));
  EXPECT_EQ(Count(to, kBlue), 256);
}

TEST_F(Surfaces, StretchesAndClips) {
  const ImageSurface tiny(Filled(3, 5, kGreen));
  EXPECT_TRUE(to.Blt({0, 0, 16, 16}, tiny, {0, 0, 3, 5}, ColorKey::Ignore));
  EXPECT_EQ(Count(to, kGreen), 256);
  const ImageSurface big(Filled(64, 64, kRed));
  EXPECT_TRUE(to.Blt({12, 12, 20, 20}, big, {0, 0, 64, 64}, ColorKey::Ignore));
  EXPECT_EQ(Count(to, kRed), 16);
}

TEST_F(Surfaces, DrawLinesAndBoxes) {
  to.SetForeColor(RGB(0, 255, 0));
  to.SetFillColor(RGB(255, 0, 0));
  to.DrawLine(2, 1, 6, 1);
  to.DrawLine(10, 3, 10, 9);
  EXPECT_EQ(Count(to, kGreen), 5 + 7);
  to.DrawBox(2, 8, 7, 12);
  EXPECT_EQ(At(2, 8), kGreen);
  EXPECT_EQ(At(6, 11), kGreen);
  EXPECT_EQ(At(7, 12), kBlue);
  to.DrawBox(4, 4, 4, 8);
  to.DrawBox(20, 4, 2, 8);
  EXPECT_EQ(Count(to, kRed), 3 * 2);
}

TEST_F(Surfaces, DrawTextWithoutABackground) {
  const Font font = {"Arial", 35};
  const Size size = MeasureText(font, "Level");
  EXPECT_EQ(MeasureText(font, "gjpq").height, size.height);
  ImageSurface wide(Filled(200, 60, kBlue));
  wide.SetFontTransparency(true);
  wide.SetForeColor(RGB(255, 0, 0));
  wide.SetFont(font);
  wide.DrawText(10, 5, "Level");
  EXPECT_EQ(Count(wide, 0xFFFFFFFF), 0) << "a background";
  EXPECT_GT(Count(wide, kRed), 100);
  EXPECT_LT(Count(wide, kRed), size.width * size.height / 2);
  wide.SetForeColor(RGB(0, 0, 255));
  wide.SetFillColor(RGB(0, 0, 255));
  wide.DrawBox(9, 5, 12 + size.width, 6 + size.height);
  EXPECT_EQ(Count(wide, kBlue), 200 * 60) << "text outside its measure";
}

class Bitmaps : public testing::Test {
 protected:
  QByteArray Saved(const QImage& image) const {
    image.save(Path(), "bmp");
    QFile file(Path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  // "WxH", or "refused".
  std::string Load() const {
    try {
      const QImage image = desktop::LoadBitmap(Path().toStdString());
      EXPECT_FALSE(image.isNull());
      return std::to_string(image.width()) + 'x' + std::to_string(image.height());
    } catch (const Error& error) {
      EXPECT_NE(std::string(error.what()).find("picture.bmp: "), std::string::npos) << error.what();
      return "refused";
    }
  }
  std::string Load(const QByteArray& bytes) const {
    QFile file(Path());
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    return Load();
  }

  QString Path() const { return folder_.filePath("picture.bmp"); }

  QTemporaryDir folder_;
};

TEST_F(Bitmaps, OfEveryDepthAreRead) {
  QImage picture = Filled(37, 11, kRed);
  picture.setPixel(3, 4, kBlack);
  for (const auto format : {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_RGB888,
                            QImage::Format_RGB32}) {
    Saved(picture.convertToFormat(format));
    EXPECT_EQ(Load(), "37x11");
    const QImage read = desktop::LoadBitmap(Path().toStdString());
    EXPECT_EQ(read.pixel(3, 4), kBlack);
    EXPECT_EQ(read.pixel(3, 5) == kRed, format != QImage::Format_Mono);
  }
}

struct File {
  qint32 width;
  qint32 height;
  qint16 depth;
  QByteArray pixels;
  quint32 compression = 0;

  // The two headers as the operating system's documentation gives them, and a table of colours for
  // the depths that have one.
  QByteArray Bytes() const {
    const qsizetype colours = depth <= 8 ? 4 << depth : 0;
    QByteArray bytes(54 + colours, '\0');
    const auto put = [&](int place, auto value) { qToLittleEndian(value, bytes.data() + place); };
    bytes.replace(0, 2, "BM");
    put(2, static_cast<quint32>(bytes.size() + pixels.size()));
    put(10, static_cast<quint32>(bytes.size()));
    put(14, quint32{40});
    put(18, width);
    put(22, height);
    put(26, quint16{1});
    put(28, depth);
    put(30, compression);
    if (compression != 0) put(34, static_cast<quint32>(pixels.size()));
    return bytes + pixels;
  }

  // The same with the older of the two headers.
  QByteArray OldBytes() const {
    QByteArray bytes = Bytes();
    bytes.remove(26, 28);
    const auto put = [&](int place, auto value) { qToLittleEndian(value, bytes.data() + place); };
    put(10, quint32{26});
    put(14, quint32{12});
    put(18, static_cast<quint16>(width));
    put(20, static_cast<quint16>(height));
    put(22, quint16{1});
    put(24, depth);
    return bytes;
  }
};

TEST_F(Bitmaps, WithAbsurdHeadersAreRefused) {
  const QByteArray pixels(48, '\x7F');
  for (const File& file :
       {File{4, 4, 24, pixels}, File{4, -4, 24, pixels}, File{4, 4, 16, pixels.left(32)},
        File{4096, 1, 1, QByteArray(512, '\0')}})
    EXPECT_NE(Load(file.Bytes()), "refused") << file.width << 'x' << file.height;
  constexpr qint32 kMost = std::numeric_limits<qint32>::max();
  for (const File& file :
       {File{4, 4, 24, pixels.left(47)}, File{0, 4, 24, pixels}, File{4, 0, 24, pixels},
        File{-4, 4, 24, pixels}, File{400, 400, 24, pixels}, File{20000, 20000, 24, pixels},
        File{4097, 1, 1, QByteArray(516, '\0')}, File{4, 4, 7, pixels},
        File{kMost, kMost, 32, pixels}, File{4, -kMost - 1, 24, pixels}})
    EXPECT_EQ(Load(file.Bytes()), "refused") << file.width << 'x' << file.height;
}

TEST_F(Bitmaps, OtherThingsAreNoPictures) {
  for (const char* text : {"", "BM", "no picture at all, but long enough to hold both headers..."})
    EXPECT_EQ(Load(text), "refused");
  QFile::remove(Path());
  EXPECT_EQ(Load(), "refused");
  QDir().mkpath(Path());
  EXPECT_EQ(Load(), "refused");
}

TEST_F(Bitmaps, CutShortAnywhereAreRefused) {
  QByteArray packed;
  for (int row = 0; row < 7; ++row)
    packed += QByteArray("\x09\x11\0\0", 4);  // nine pixels of colour 1, end of the row
  packed += QByteArray("\0\x01", 2);
  const File plain = {9, 7, 24, QByteArray(196, '\x7F')};
  for (const QByteArray& whole :
       {plain.Bytes(), plain.OldBytes(), File{9, 7, 4, packed, 2}.Bytes()}) {
    EXPECT_EQ(Load(whole), "9x7");
    for (qsizetype length = 0; length < whole.size(); ++length)
      ASSERT_EQ(Load(whole.left(length)), "refused") << length << " of " << whole.size();
  }
}

// Whatever comes of it: a picture or the error, and nothing else.
TEST_F(Bitmaps, CorruptedAtRandomDoNoHarm) {
  const QByteArray bases[] = {Saved(Filled(20, 20, kRed)),
                              Saved(Filled(20, 20, kRed).convertToFormat(QImage::Format_Indexed8)),
                              Saved(Filled(20, 20, kRed).convertToFormat(QImage::Format_Mono))};
  int refused = 0;
  for (unsigned seed = 0; seed < 600; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    QByteArray bytes = bases[seed % 3];
    for (unsigned i = 0; i < 1 + seed % 5; ++i)
      bytes[static_cast<qsizetype>(random() % 60U)] = static_cast<char>(random());
    refused += Load(bytes) == "refused" ? 1 : 0;
  }
  EXPECT_GT(refused, 100);
  EXPECT_LT(refused, 600);
}

}  // namespace
}  // namespace platform
