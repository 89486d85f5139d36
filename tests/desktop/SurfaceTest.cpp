// SPDX-License-Identifier: MIT
// Frames as they are painted, pixel by pixel, and bitmap files in every state of repair.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QtEndian>
#include <limits>
#include <random>

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
  Surfaces() : to({16, 16}), sprite(FromFile("sprite", Sprite())) {
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

  Surface FromFile(const QString& name, const QImage& image) const {
    image.save(folder.filePath(name + ".bmp"));
    const auto pixels =
        std::make_shared<const Pixels>(folder.filePath(name + ".bmp").toStdString());
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

  // Or red, by its last pixel; the toolkit's scaling may take a little of either.
  static bool IsGreen(const QImage& image) {
    const QColor colour = image.pixelColor(image.rect().bottomRight());
    EXPECT_GT(std::abs(colour.green() - colour.red()), 250);
    return colour.green() > colour.red();
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
  for (const Rect& part : {Rect{4, 4, 12, 12}, Rect{4, 4, 4, 8}})
    EXPECT_FALSE(to.BltFast(0, 0, sprite, part, ColorKey::Source));
  EXPECT_FALSE(to.Blt(kAll, Surface({8, 8}), kAll, ColorKey::Ignore)) << "no bitmap";
  to.DrawBox(4, 4, 4, 8);
  to.DrawBox(20, 4, 2, 8);
  EXPECT_EQ(to.Drawn(), before);
}

TEST_F(Surfaces, StretchAndClip) {
  const Surface tiny = FromFile("tiny", Filled(3, 5, kGreen));
  EXPECT_TRUE(to.Blt({0, 0, 16, 16}, tiny, {0, 0, 3, 5}, ColorKey::Ignore));
  const Surface big = FromFile("big", Filled(64, 64, kRed));
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

TEST_F(Surfaces, DrawTextWithoutABackground) {
  const Font font = {"Arial", 35};
  const Size size = MeasureText(font, "Level");
  EXPECT_EQ(MeasureText(font, "gjpq").height, size.height);
  Surface wide({200, 60});
  wide.SetFontTransparency(true);
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
  const QImage once = Filled(64, 64, kRed);
  struct Row {
    QImage twice;
    bool taken;
  };
  for (const Row& row : {Row{Filled(128, 128, kGreen), true}, Row{Filled(64, 64, kGreen), false},
                         Row{Filled(128, 127, kGreen), false}, Row{QImage(), false}}) {
    const QString path = folder.filePath("picture@2x.png");
    QFile::remove(path);
    row.twice.save(path);
    Surface shown({64, 64});
    const Surface picture = FromFile("picture", once);
    EXPECT_TRUE(shown.Blt({0, 0, 64, 64}, picture, {0, 0, 64, 64}, ColorKey::Ignore));
    for (const qreal ratio : {1.0, 1.25, 1.5, 2.0, 3.0, 1.0, 2.0}) {
      EXPECT_EQ(IsGreen(Painted(shown, ratio)), row.taken && ratio > 1)
          << ratio << ' ' << row.twice.height();
    }
    QFile::remove(path);
    QFile::remove(folder.filePath("picture.bmp"));
    EXPECT_EQ(IsGreen(Painted(shown, 1.5)), row.taken) << "files are gone";
  }
}

// What stands in one cell of a sheet does not show at the edge of another.
TEST_F(Surfaces, ScaleSpritesCellByCell) {
  QImage image = Filled(128, 64, kRed);
  for (int y = 0; y < 64; ++y)
    for (int x = 64; x < 128; ++x)
      image.setPixel(x, y, kGreen);
  Surface sheet = FromFile("sheet", image);
  sheet.SetColorKey(0, 0);
  Surface shown({64, 64});
  EXPECT_TRUE(shown.BltFast(0, 0, sheet, {0, 0, 64, 64}, ColorKey::Source));
  for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
    const QImage painted = Painted(shown, ratio);
    EXPECT_EQ(Count(painted, kRed), painted.width() * painted.height()) << ratio;
  }
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
