// SPDX-License-Identifier: MIT
// Real surfaces, pixel by pixel, and bitmap files in every state of repair.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QtEndian>
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

QImage Filled(int width, int height, QRgb colour) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(colour);
  return image;
}

class Surfaces : public testing::Test {
 protected:
  // A black corner, else red; the second column is nearly black.
  Surfaces() : to(Filled(16, 16, kBlue)), from(Picture()) { from.SetColorKey(0, 0); }

  static QImage Picture() {
    QImage image = Filled(8, 8, kRed);
    image.setPixel(0, 0, kBlack);
    image.setPixel(1, 0, 0xFF000001);
    return image;
  }

  QRgb At(int x, int y) const { return to.Image().pixel(x, y); }
  int Count(QRgb colour) const {
    int count = 0;
    for (int y = 0; y < 16; ++y)
      for (int x = 0; x < 16; ++x)
        count += At(x, y) == colour ? 1 : 0;
    return count;
  }

  ImageSurface to;
  ImageSurface from;
};

// What is drawn at random, frame after frame, on a surface that paints late and on one that paints
// at once. Every other frame is drawn like the one before.
TEST_F(Surfaces, PaintingLateGivesTheSamePicture) {
  const ImageSurface ground(Filled(16, 16, kBlue));
  FrameSurface late(Filled(16, 16, kBlack));
  ImageSurface atOnce(Filled(16, 16, kBlack));
  for (unsigned frame = 0; frame < 400; ++frame) {
    for (Surface* const surface : {static_cast<Surface*>(&late), static_cast<Surface*>(&atOnce)}) {
      std::minstd_rand random(frame / 2 + 1);
      const auto below = [&](unsigned count) { return static_cast<int>(random() % count); };
      surface->Blt({0, 0, 16, 16}, ground, {0, 0, 16, 16}, ColorKey::Ignore);
      surface->SetForeColor(RGB(0, 0, 0));
      surface->SetFillColor(RGB(0, 0, 0));
      for (int calls = below(6); calls >= 0; --calls) {
        const int x = below(20) - 4;
        const int y = below(20) - 4;
        switch (below(6)) {
          case 0:
            surface->BltFast(x, y, from, {0, 0, 8, 8}, ColorKey::Source);
            break;
          case 1:
            surface->Blt({x, y, x + 5, y + 5}, from, {0, 0, 8, 8}, ColorKey::Source);
            break;
          case 2:
            surface->SetForeColor(RGB(0, x * 10 + 40, 0));
            break;
          case 3:
            surface->SetFillColor(RGB(y * 10 + 40, 0, 0));
            break;
          case 4:
            surface->DrawBox(x, y, x + 4, y + 4);
            break;
          default:
            surface->DrawLine(x, y, x + 3, y);
        }
      }
    }
    if (frame % 5 == 4) continue;  // a frame that nobody looked at
    const long version = late.Version();
    ASSERT_EQ(late.Image(), atOnce.Image()) << "frame " << frame;
    if (frame % 2 == 1 && frame % 5 != 0) {
      ASSERT_EQ(late.Version(), version) << "frame " << frame << " was painted for nothing";
    }
  }
}

TEST_F(Surfaces, KeyedCopiesLeaveOutPureBlackAlone) {
  for (const bool fast : {true, false}) {
    ImageSurface fresh(Filled(16, 16, kBlue));
    const bool done = fast ? fresh.BltFast(4, 5, from, {0, 0, 8, 8}, ColorKey::Source)
                           : fresh.Blt({4, 5, 12, 13}, from, {0, 0, 8, 8}, ColorKey::Source);
    EXPECT_TRUE(done);
    EXPECT_EQ(fresh.Image().pixel(4, 5), kBlue);
    EXPECT_EQ(fresh.Image().pixel(5, 5), 0xFF000001);
    EXPECT_EQ(fresh.Image().pixel(4, 6), kRed);
    EXPECT_EQ(fresh.Image().pixel(11, 12), kRed);
    EXPECT_EQ(fresh.Image().pixel(12, 12), kBlue);
    EXPECT_EQ(fresh.Image().pixel(3, 6), kBlue);
  }
  EXPECT_TRUE(to.Blt({0, 0, 8, 8}, from, {0, 0, 8, 8}, ColorKey::Ignore));
  EXPECT_EQ(At(0, 0), kBlack);
}

TEST_F(Surfaces, CopiesPartsToTheirPlaces) {
  EXPECT_TRUE(to.BltFast(14, 14, from, {0, 0, 2, 2}, ColorKey::Source));
  EXPECT_EQ(At(14, 14), kBlue);
  EXPECT_EQ(At(15, 14), 0xFF000001);
  EXPECT_EQ(At(15, 15), kRed);
  EXPECT_EQ(Count(kBlue), 256 - 3);
}

struct Refused {
  Rect to;
  Rect from;
};

TEST_F(Surfaces, RefuseBadRectanglesWithoutATrace) {
  constexpr Refused kStretched[] = {
      {{0, 0, 0, 8}, {0, 0, 8, 8}},  {{8, 8, 0, 0}, {0, 0, 8, 8}},  {{0, 0, 8, 8}, {0, 0, 8, 0}},
      {{0, 0, 8, 8}, {0, 0, 9, 8}},  {{0, 0, 8, 8}, {-1, 0, 7, 8}}, {{16, 0, 24, 8}, {0, 0, 8, 8}},
      {{0, -8, 8, 0}, {0, 0, 8, 8}},
  };
  for (const Refused& row : kStretched)
    EXPECT_FALSE(to.Blt(row.to, from, row.from, ColorKey::Source)) << row.to.left;
  for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {9, 0}, {0, 9}, {-8, 0}, {16, 0}})
    EXPECT_FALSE(to.BltFast(x, y, from, {0, 0, 8, 8}, ColorKey::Source)) << x << ',' << y;
  EXPECT_FALSE(to.BltFast(0, 0, from, {4, 4, 12, 12}, ColorKey::Source));
  EXPECT_FALSE(to.BltFast(0, 0, from, {4, 4, 4, 8}, ColorKey::Source));
  EXPECT_EQ(Count(kBlue), 256);
}

TEST_F(Surfaces, StretchesAndClips) {
  const ImageSurface tiny(Filled(3, 5, kGreen));
  EXPECT_TRUE(to.Blt({0, 0, 16, 16}, tiny, {0, 0, 3, 5}, ColorKey::Ignore));
  EXPECT_EQ(Count(kGreen), 256);
  const ImageSurface big(Filled(64, 64, kRed));
  EXPECT_TRUE(to.Blt({12, 12, 20, 20}, big, {0, 0, 64, 64}, ColorKey::Ignore));
  EXPECT_EQ(Count(kRed), 16);
  EXPECT_TRUE(to.Blt({2, 3, 6, 7}, big, {0, 0, 64, 64}, ColorKey::Ignore));
  EXPECT_EQ(Count(kRed), 16 + 16);
}

TEST_F(Surfaces, DrawLinesAndBoxes) {
  to.SetForeColor(RGB(0, 255, 0));
  to.SetFillColor(RGB(255, 0, 0));
  to.DrawLine(2, 1, 6, 1);
  EXPECT_EQ(Count(kGreen), 5);
  to.DrawLine(10, 3, 10, 9);
  EXPECT_EQ(Count(kGreen), 5 + 7);
  to.DrawBox(2, 8, 7, 12);
  EXPECT_EQ(At(2, 8), kGreen);
  EXPECT_EQ(At(6, 11), kGreen);
  EXPECT_EQ(At(7, 12), kBlue);
  EXPECT_EQ(Count(kRed), 3 * 2);
  to.DrawBox(4, 4, 4, 8);
  to.DrawBox(20, 4, 2, 8);
  EXPECT_EQ(Count(kRed), 3 * 2);
}

TEST_F(Surfaces, DrawTextWithoutABackground) {
  ImageSurface wide(Filled(200, 60, kBlue));
  const Font font = {"Arial", 35};
  wide.SetFontTransparency(true);
  wide.SetForeColor(RGB(255, 0, 0));
  wide.SetFont(font);
  wide.DrawText(10, 5, "Level");
  const Size size = MeasureText(font, "Level");
  EXPECT_EQ(MeasureText(font, "gjpq").height, size.height);
  int red = 0;
  for (int y = 0; y < 60; ++y)
    for (int x = 0; x < 200; ++x) {
      const QRgb pixel = wide.Image().pixel(x, y);
      red += pixel == kRed ? 1 : 0;
      const bool outside = x < 9 || x > 11 + size.width || y < 5 || y > 5 + size.height;
      ASSERT_TRUE(!outside || pixel == kBlue) << x << ',' << y;
    }
  EXPECT_GT(red, 100);
  EXPECT_LT(red, size.width * size.height / 2);
}

// Bitmap files.
class Bitmaps : public testing::Test {
 protected:
  QByteArray Saved(const QImage& image) const {
    image.save(Path(), "bmp");
    QFile file(Path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  void Write(const QByteArray& bytes) const {
    QFile file(Path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
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

// Bytes of the two headers of a bitmap file, as the operating system's documentation gives them.
QByteArray Header(qint32 width, qint32 height, qint16 depth, qsizetype pixelBytes) {
  QByteArray bytes(54, '\0');
  bytes[0] = 'B';
  bytes[1] = 'M';
  qToLittleEndian<quint32>(static_cast<quint32>(54 + pixelBytes), bytes.data() + 2);
  qToLittleEndian<quint32>(54, bytes.data() + 10);
  qToLittleEndian<quint32>(40, bytes.data() + 14);
  qToLittleEndian<qint32>(width, bytes.data() + 18);
  qToLittleEndian<qint32>(height, bytes.data() + 22);
  qToLittleEndian<qint16>(1, bytes.data() + 26);
  qToLittleEndian<qint16>(depth, bytes.data() + 28);
  return bytes + QByteArray(pixelBytes, '\x7F');
}

struct File {
  qint32 width;
  qint32 height;
  qint16 depth;
  qsizetype pixelBytes;
  const char* result;
};

TEST_F(Bitmaps, WithAbsurdHeadersAreRefused) {
  constexpr File kFiles[] = {
      {4, 4, 24, 48, "4x4"},
      {4, -4, 24, 48, "4x4"},
      {4, 4, 16, 32, "4x4"},
      {4, 4, 24, 47, "refused"},
      {0, 4, 24, 48, "refused"},
      {4, 0, 24, 48, "refused"},
      {-4, 4, 24, 48, "refused"},
      {400, 400, 24, 48, "refused"},
      {20000, 20000, 24, 48, "refused"},
      {20000, 1, 1, 4000, "refused"},
      {4096, 1, 1, 512, "4096x1"},
      {4097, 1, 1, 516, "refused"},
      {4, 4, 7, 48, "refused"},
      {2147483647, 2147483647, 32, 48, "refused"},
      {4, static_cast<qint32>(0x80000000), 24, 48, "refused"},
  };
  for (const File& file : kFiles) {
    QByteArray bytes = Header(file.width, file.height, file.depth, file.pixelBytes);
    if (file.depth == 1) bytes.insert(54, QByteArray(8, '\0'));
    if (file.depth == 1) qToLittleEndian<quint32>(62, bytes.data() + 10);
    Write(bytes);
    EXPECT_EQ(Load(), file.result) << file.width << 'x' << file.height << 'x' << file.depth;
  }
  for (const char* text :
       {"", "BM", "no picture at all, but long enough to hold both headers..."}) {
    Write(text);
    EXPECT_EQ(Load(), "refused");
  }
  QFile::remove(Path());
  EXPECT_EQ(Load(), "refused");
  QDir().mkpath(Path());
  EXPECT_EQ(Load(), "refused");
}

TEST_F(Bitmaps, CutShortAnywhereAreRefused) {
  const QByteArray whole = Saved(Filled(9, 7, kGreen).convertToFormat(QImage::Format_RGB888));
  for (qsizetype length = 0; length < whole.size(); ++length) {
    Write(whole.left(length));
    ASSERT_EQ(Load(), "refused") << length;
  }
}

// Whatever comes of it: a picture or the error, and nothing else.
TEST_F(Bitmaps, CorruptedAtRandomDoNoHarm) {
  const QByteArray bases[] = {Saved(Filled(20, 20, kRed)),
                              Saved(Filled(20, 20, kRed).convertToFormat(QImage::Format_Indexed8)),
                              Saved(Filled(20, 20, kRed).convertToFormat(QImage::Format_Mono))};
  int refused = 0;
  for (unsigned seed = 0; seed < 2000; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    QByteArray bytes = bases[seed % 3];
    for (unsigned i = 0; i < 1 + seed % 5; ++i)
      bytes[static_cast<qsizetype>(random() % 60U)] = static_cast<char>(random());
    Write(bytes);
    refused += Load() == "refused" ? 1 : 0;
  }
  EXPECT_GT(refused, 300);
  EXPECT_LT(refused, 2000);
}

}  // namespace
}  // namespace platform
