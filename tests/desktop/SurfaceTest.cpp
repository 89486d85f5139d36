// SPDX-License-Identifier: MIT
// Frames as they are painted, pixel by pixel, and bitmap files in every state of repair.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QtEndian>
#include <limits>

#include "platform/Error.h"
#include "platform/Surface.h"
#include "platform/desktop/Bitmap.h"
#include "platform/desktop/FramePainter.h"
#include "platform/desktop/Pixels.h"

namespace platform {
namespace {

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

int Count(const QImage& image, QRgb colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      count += image.pixel(x, y) == colour ? 1 : 0;
  return count;
}

// A surface of 16 by 16, blue, and a red sprite of 8 by 8 whose first two pixels are black and
// nearly black.
class Surfaces : public testing::Test {
 protected:
  Surfaces() : to({16, 16}), sprite(FromFile(Sprite())) {
    sprite.SetColorKey(0, 0);
    Fill(to, {0, 0, 16, 16}, RGB(0, 0, 255));
  }

  static QImage Sprite() {
    QImage image = Filled(8, 8, kRed);
    image.setPixel(0, 0, kBlack);
    image.setPixel(1, 0, kNearlyBlack);
    return image;
  }

  static void Fill(Surface& surface, const Rect& rect, Colour colour) {
    surface.SetForeColor(colour);
    surface.SetFillColor(colour);
    surface.DrawBox(rect.left, rect.top, rect.right, rect.bottom);
  }

  Surface FromFile(const QImage& image, const QString& name = "picture.bmp") const {
    image.save(folder.filePath(name));
    const auto pixels = std::make_shared<Pixels>(folder.filePath(name).toStdString());
    return Surface(pixels->GetSize(), pixels);
  }

  static QImage Painted(const Surface& surface, qreal ratio = 1) {
    const Size size = surface.GetSurfaceDesc();
    QImage image = Filled(qRound(size.width * ratio), qRound(size.height * ratio), kNearlyBlack);
    image.setDevicePixelRatio(ratio);
    QPainter painter(&image);
    desktop::PaintFrame(painter, QRect(0, 0, size.width, size.height), surface.Drawn());
    return image;
  }

  // Smooth scaling may take a little of it.
  static bool IsGreen(const QImage& image) {
    return image.pixelColor(image.rect().bottomRight()).green() > 250;
  }

  QTemporaryDir folder;
  Surface to;
  Surface sprite;
};

// As without the picture of the board.
TEST_F(Surfaces, FramesThatNothingWipesDoNotPileUp) {
  for (int i = 0; i < 10'000; ++i)
    to.DrawLine(0, 0, i % 16, 0);
  EXPECT_LE(to.Drawn().size(), 1000U);
  EXPECT_TRUE(to.Blt({0, 0, 16, 16}, sprite, kAll, ColorKey::Ignore));
  EXPECT_EQ(to.Drawn().size(), 1U);
}

TEST_F(Surfaces, KeyedCopiesLeaveOutPureBlackAlone) {
  for (const bool fast : {true, false}) {
    Fill(to, {0, 0, 16, 16}, RGB(0, 0, 255));
    EXPECT_TRUE(fast ? to.BltFast(4, 5, sprite, kAll, ColorKey::Source)
                     : to.Blt({4, 5, 12, 13}, sprite, kAll, ColorKey::Source));
    QImage expected = Filled(16, 16, kBlue);
    for (int i = 1; i < 64; ++i)
      expected.setPixel(4 + i % 8, 5 + i / 8, i == 1 ? kNearlyBlack : kRed);
    EXPECT_EQ(Painted(to), expected) << fast;
  }
  EXPECT_TRUE(to.Blt(kAll, sprite, kAll, ColorKey::Ignore));
  EXPECT_EQ(Painted(to).pixel(0, 0), kBlack);
}

TEST_F(Surfaces, RefuseBadRectanglesWithoutATrace) {
  constexpr std::pair<Rect, Rect> kStretched[] = {
      {{0, 0, 0, 8}, kAll},         {{8, 8, 0, 0}, kAll},          {{0, 0, 8, 8}, {0, 0, 8, 0}},
      {{0, 0, 8, 8}, {0, 0, 9, 8}}, {{0, 0, 8, 8}, {-1, 0, 7, 8}}, {{16, 0, 24, 8}, kAll},
      {{0, -8, 8, 0}, kAll},
  };
  const Frame before = to.Drawn();
  for (const auto& [target, part] : kStretched)
    EXPECT_FALSE(to.Blt(target, sprite, part, ColorKey::Source)) << target.left;
  for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {9, 0}, {0, 9}, {-8, 0}, {16, 0}})
    EXPECT_FALSE(to.BltFast(x, y, sprite, kAll, ColorKey::Source)) << x << ',' << y;
  EXPECT_FALSE(to.BltFast(0, 0, sprite, {4, 4, 12, 12}, ColorKey::Source));
  EXPECT_FALSE(to.Blt(kAll, Surface({8, 8}), kAll, ColorKey::Ignore)) << "no bitmap";
  to.DrawBox(4, 4, 4, 8);
  EXPECT_EQ(to.Drawn(), before);
}

TEST_F(Surfaces, StretchAndClip) {
  const Surface tiny = FromFile(Filled(3, 5, kGreen), "tiny.bmp");
  EXPECT_TRUE(to.Blt({0, 0, 16, 16}, tiny, {0, 0, 3, 5}, ColorKey::Ignore));
  const Surface big = FromFile(Filled(64, 64, kRed));
  EXPECT_TRUE(to.Blt({12, 12, 20, 20}, big, {0, 0, 64, 64}, ColorKey::Ignore));
  for (const qreal ratio : {1.0, 1.5, 2.0}) {
    const QImage painted = Painted(to, ratio);
    EXPECT_EQ(Count(painted, kRed), 16 * ratio * ratio);
    EXPECT_EQ(Count(painted, kGreen), 240 * ratio * ratio);
  }
}

TEST_F(Surfaces, DrawLinesAndBoxesOfWholeDevicePixels) {
  to.SetForeColor(RGB(0, 255, 0));
  to.SetFillColor(RGB(255, 0, 0));
  to.DrawLine(2, 1, 6, 1);
  to.DrawLine(10, 3, 10, 9);
  to.DrawBox(2, 8, 7, 12);
  const QImage once = Painted(to);
  EXPECT_EQ(Count(once, kGreen), 5 + 7 + 5 * 4 - 3 * 2);
  EXPECT_EQ(Count(once, kRed), 3 * 2);
  EXPECT_EQ(once.pixel(6, 11), kGreen);
  EXPECT_EQ(once.pixel(7, 12), kBlue);
  EXPECT_EQ(Painted(to, 2), once.scaled(32, 32).convertToFormat(QImage::Format_RGB32));
}

TEST_F(Surfaces, DrawTextWithoutABackgroundAndWithinItsMeasure) {
  const Font font = {"Arial", 35};
  const Size size = MeasureText(font, "Level");
  EXPECT_EQ(MeasureText(font, "gjpq").height, size.height);
  EXPECT_GT(MeasureText({"Arial", 70}, "gjpq").height, size.height);
  EXPECT_EQ(MeasureText(font, "Level"), size);
  Surface wide({200, 60});
  wide.SetForeColor(RGB(255, 0, 0));
  wide.SetFont(font);
  wide.DrawText(10, 5, "Level");
  const Rect bounds = BoundsOf(wide.Drawn().back());
  for (const qreal ratio : {1.0, 1.75}) {
    const QImage painted = Painted(wide, ratio);
    EXPECT_EQ(Count(painted, 0xFFFFFFFF), 0) << "a background";
    EXPECT_GT(Count(painted, kRed), 100 * ratio * ratio);
    EXPECT_LT(Count(painted, kRed), 0.5 * size.width * size.height * ratio * ratio);
  }
  for (const Rect& rect : {Rect{9, 5, 12 + size.width, 6 + size.height}, bounds}) {
    Fill(wide, rect, RGB(0, 0, 0));
    EXPECT_EQ(Count(Painted(wide), kBlack), 200 * 60) << "text outside its measure";
  }
}

// Beside a bitmap its picture at twice the size, if it is one.
TEST_F(Surfaces, TakeThePictureOfTwiceTheSizeWhereTheScreenShowsIt) {
  const QString path = folder.filePath("picture@2x.png");
  for (const QSize size : {QSize(128, 128), QSize(64, 64), QSize(128, 127), QSize()}) {
    const bool taken = size == QSize(128, 128);
    Filled(size.width(), size.height(), kGreen).save(path);
    Surface shown({64, 64});
    const Surface picture = FromFile(Filled(64, 64, kRed));
    EXPECT_TRUE(shown.Blt({0, 0, 64, 64}, picture, {0, 0, 64, 64}, ColorKey::Ignore));
    for (const qreal ratio : {1.0, 1.25, 1.5, 2.0, 3.0, 1.0, 2.0})
      EXPECT_EQ(IsGreen(Painted(shown, ratio)), taken && ratio > 1)
          << ratio << ' ' << size.height();
    QFile::remove(path);
    QFile::remove(folder.filePath("picture.bmp"));
    EXPECT_EQ(IsGreen(Painted(shown, 1.5)), taken) << "files are gone";
  }
}

// What stands in one cell of a sheet does not show at the edge of another.
TEST_F(Surfaces, ScaleSpritesCellByCell) {
  QImage image = Filled(128, 64, kRed);
  QPainter(&image).fillRect(64, 0, 64, 64, QColor(kGreen));
  Surface sheet = FromFile(image);
  sheet.SetColorKey(0, 0);
  Surface shown({64, 64});
  EXPECT_TRUE(shown.BltFast(0, 0, sheet, {0, 0, 64, 64}, ColorKey::Source));
  for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
    const QImage painted = Painted(shown, ratio);
    EXPECT_EQ(Count(painted, kRed), painted.width() * painted.height()) << ratio;
  }
}

QByteArray Saved(const QImage& image, QImage::Format format) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  image.convertToFormat(format).save(&buffer, "bmp");
  return bytes;
}

template <typename Number>
QByteArray With(QByteArray bytes, int place, Number value) {
  qToLittleEndian(value, bytes.data() + place);
  return bytes;
}

// Of nine pixels by seven, at 24 bits a pixel; its headers are 54 bytes long.
QByteArray Plain() {
  return Saved(Filled(9, 7, kRed), QImage::Format_RGB888);
}

std::string refusal;  // why the last file was refused

// The size that is read from a file of these bytes, or "refused".
std::string Load(const QByteArray& bytes) {
  const QTemporaryDir folder;
  QFile file(folder.filePath("picture.bmp"));
  EXPECT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(bytes);
  file.close();
  try {
    const QImage image = desktop::LoadBitmap(file.fileName().toStdString());
    EXPECT_FALSE(image.isNull());
    return std::to_string(image.width()) + 'x' + std::to_string(image.height());
  } catch (const Error& error) {
    refusal = error.what();
    EXPECT_NE(refusal.find("picture.bmp: "), std::string::npos) << refusal;
    return "refused";
  }
}

TEST(Bitmaps, OfEveryDepthAreRead) {
  for (const auto format : {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_RGB888})
    EXPECT_EQ(Load(Saved(Filled(37, 11, kRed), format)), "37x11");
  EXPECT_EQ(Load(With(Plain(), 28, quint16{16})), "9x7");
}

TEST(Bitmaps, WithAbsurdHeadersAreRefused) {
  constexpr qint32 kMost = std::numeric_limits<qint32>::max();
  for (const qint32 width : {0, -9, 400, 20'000, kMost})
    EXPECT_EQ(Load(With(Plain(), 18, width)), "refused") << width;
  for (const qint32 height : {0, 400, kMost, -kMost - 1})
    EXPECT_EQ(Load(With(Plain(), 22, height)), "refused") << height;
  EXPECT_EQ(Load(With(Plain(), 22, -7)), "9x7") << "stored from the top down";
  EXPECT_EQ(Load(With(Plain(), 28, quint16{7})), "refused") << "a depth";
  for (const auto& [width, height] : {std::pair{4097, 1}, {1, 4097}})
    EXPECT_EQ(Load(Saved(Filled(width, height, kRed), QImage::Format_Mono)), "refused") << width;
  EXPECT_EQ(Load(Saved(Filled(4096, 1, kRed), QImage::Format_Mono)), "4096x1");
}

TEST(Bitmaps, OtherThingsAreNoPictures) {
  EXPECT_EQ(Load("no picture at all, but long enough to hold both headers..."), "refused");
  EXPECT_TRUE(refusal.ends_with("picture.bmp: not a bitmap file")) << refusal;
  EXPECT_THROW(desktop::LoadBitmap("no such file.bmp"), Error);
  EXPECT_THROW(desktop::LoadBitmap("/"), Error);
}

// With either header, and packed.
TEST(Bitmaps, CutShortAnywhereAreRefused) {
  const QByteArray old = Plain().left(10) +
                         QByteArray("\x1A\0\0\0\x0C\0\0\0\x09\0\x07\0\x01\0\x18\0", 16) +
                         Plain().mid(54);
  const QByteArray rows = QByteArray("\x09\x11\0\0", 4).repeated(7) + QByteArray("\0\x01", 2);
  QByteArray packed = Plain().left(54) + QByteArray(64, '\0');  // 16 colours
  packed = With(With(packed, 10, static_cast<qint32>(packed.size())), 28, qint16{4});
  packed = With(With(packed, 30, 2), 34, static_cast<qint32>(rows.size())) + rows;
  for (const QByteArray& whole : {Plain(), old, packed}) {
    EXPECT_EQ(Load(whole), "9x7");
    for (qsizetype length = 0; length < whole.size(); ++length)
      ASSERT_EQ(Load(whole.left(length)), "refused") << length << " of " << whole.size();
  }
}

}  // namespace
}  // namespace platform
