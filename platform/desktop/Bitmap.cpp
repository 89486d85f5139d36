// SPDX-License-Identifier: MIT
// Reading of bitmap files (BMP: Microsoft's BITMAPFILEHEADER and BITMAPINFOHEADER, as in the
// Windows graphics documentation, "Bitmap storage").
#include <QFile>
#include <QImageReader>
#include <QtEndian>
#include <cstdlib>

#include "platform/Error.h"
#include "platform/desktop/ImageSurface.h"

namespace platform::desktop {

namespace {

constexpr int kMostPixels = 4096;  // a side

// Offsets in the file.
constexpr int kPixelOffsetAt = 10;
constexpr int kWidthAt = 18;
constexpr int kHeightAt = 22;
constexpr int kDepthAt = 28;
constexpr int kCompressionAt = 30;
constexpr int kImageBytesAt = 34;
constexpr int kHeadBytes = 38;

constexpr quint32 kUncompressed = 0;
constexpr quint32 kBitfields = 3;
constexpr qint64 kRowBits = 32;  // rows are filled up to whole words of this size

[[noreturn]] void Refuse(const std::string& path, const std::string& reason) {
  throw Error(path + ": " + reason);
}

template <typename Number>
Number ReadAt(const QByteArray& head, int offset) {
  return qFromLittleEndian<Number>(head.constData() + offset);
}

// How long packed pixels are only the header tells; the length of all others follows from the size.
qint64 PixelBytes(const QByteArray& head) {
  const auto compression = ReadAt<quint32>(head, kCompressionAt);
  if (compression != kUncompressed && compression != kBitfields)
    return ReadAt<quint32>(head, kImageBytesAt);
  const qint64 rowBits = qint64{ReadAt<qint32>(head, kWidthAt)} * ReadAt<quint16>(head, kDepthAt);
  const qint64 rowBytes = (rowBits + kRowBits - 1) / kRowBits * (kRowBits / 8);
  return rowBytes * std::abs(qint64{ReadAt<qint32>(head, kHeightAt)});
}

// The toolkit shows what there is of a bitmap that was cut short; the game does not.
bool IsCutShort(const QByteArray& head, qint64 fileBytes) {
  return head.size() < kHeadBytes ||
         fileBytes < ReadAt<quint32>(head, kPixelOffsetAt) + PixelBytes(head);
}

}  // namespace

QImage LoadBitmap(const std::string& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) Refuse(path, file.errorString().toStdString());
  // Looked at first, since the reader moves on in the file.
  const QByteArray head = file.peek(kHeadBytes);
  QImageReader reader(&file, "bmp");
  reader.setAutoDetectImageFormat(false);
  // A negative height tells that the rows are stored from the top down.
  const QSize size = reader.size();
  const qint64 rows = std::abs(qint64{size.height()});
  if (size.width() <= 0 || rows == 0) Refuse(path, "not a bitmap file");
  if (size.width() > kMostPixels || rows > kMostPixels)
    Refuse(path, "a bitmap of more than 4096 pixels a side");
  if (IsCutShort(head, file.size())) Refuse(path, "the bitmap file is cut short");
  const QImage image = reader.read();
  if (image.isNull()) Refuse(path, reader.errorString().toStdString());
  return image.convertToFormat(QImage::Format_RGB32);
}

}  // namespace platform::desktop
