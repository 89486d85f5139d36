// SPDX-License-Identifier: MIT
// Reading of bitmap files (BMP: Microsoft's BITMAPFILEHEADER and BITMAPINFOHEADER or the older
// BITMAPCOREHEADER, as in the Windows graphics documentation, "Bitmap storage").
#include "platform/desktop/Bitmap.h"

#include <QFile>
#include <QImageReader>
#include <QtEndian>
#include <cstdlib>

#include "platform/Error.h"

namespace platform::desktop {

namespace {

constexpr int kMostPixels = 4096;  // a side

// Offsets in the file.
constexpr int kPixelOffsetAt = 10;
constexpr int kHeaderBytesAt = 14;
constexpr int kOldDepthAt = 24;
constexpr int kDepthAt = 28;
constexpr int kCompressionAt = 30;
constexpr int kImageBytesAt = 34;
constexpr int kHeadBytes = 38;

constexpr quint32 kOldHeaderBytes = 12;  // it knows no packing
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
qint64 PixelBytes(const QByteArray& head, QSize size) {
  const bool old = ReadAt<quint32>(head, kHeaderBytesAt) == kOldHeaderBytes;
  const auto compression = old ? kUncompressed : ReadAt<quint32>(head, kCompressionAt);
  if (compression != kUncompressed && compression != kBitfields)
    return ReadAt<quint32>(head, kImageBytesAt);
  const auto depth = ReadAt<quint16>(head, old ? kOldDepthAt : kDepthAt);
  const qint64 rowBytes = (qint64{size.width()} * depth + kRowBits - 1) / kRowBits * (kRowBits / 8);
  return rowBytes * std::abs(qint64{size.height()});
}

// The toolkit shows what there is of a bitmap that was cut short; the game does not.
bool IsCutShort(const QByteArray& head, QSize size, qint64 fileBytes) {
  return fileBytes < ReadAt<quint32>(head, kPixelOffsetAt) + PixelBytes(head, size);
}

}  // namespace

QImage LoadBitmap(const std::string& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) Refuse(path, file.errorString().toStdString());
  // Looked at first, since the reader moves on in the file. The smallest bitmaps are shorter.
  const QByteArray head = file.peek(kHeadBytes).leftJustified(kHeadBytes, '\0');
  QImageReader reader(&file, "bmp");
  reader.setAutoDetectImageFormat(false);
  // A negative height tells that the rows are stored from the top down.
  const QSize size = reader.size();
  const qint64 rows = std::abs(qint64{size.height()});
  if (size.width() <= 0 || rows == 0) Refuse(path, "not a bitmap file");
  if (size.width() > kMostPixels || rows > kMostPixels)
    Refuse(path, "a bitmap of more than 4096 pixels a side");
  if (IsCutShort(head, size, file.size())) Refuse(path, "the bitmap file is cut short");
  const QImage image = reader.read();
  if (image.isNull()) Refuse(path, reader.errorString().toStdString());
  return image.convertToFormat(QImage::Format_RGB32);
}

}  // namespace platform::desktop
