#include "platform/vcl/GraphicData.h"

#include "platform/streaming/SysUtils.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>


namespace {

std::uint32_t Le32(std::string_view s, size_t at) {
  if (at + 4 > s.size()) return 0;
  return static_cast<std::uint32_t>(static_cast<unsigned char>(s[at])) |
         (static_cast<std::uint32_t>(static_cast<unsigned char>(s[at + 1])) << 8) |
         (static_cast<std::uint32_t>(static_cast<unsigned char>(s[at + 2])) << 16) |
         (static_cast<std::uint32_t>(static_cast<unsigned char>(s[at + 3])) << 24);
}

std::uint16_t Le16(std::string_view s, size_t at) {
  if (at + 2 > s.size()) return 0;
  return static_cast<std::uint16_t>(static_cast<unsigned char>(s[at]) |
                                    (static_cast<unsigned>(static_cast<unsigned char>(s[at + 1])) << 8));
}

bool StartsWith(std::string_view s, std::string_view prefix) { return s.substr(0, prefix.size()) == prefix; }

const char* FormatOf(std::string_view b) {
  if (StartsWith(b, "BM")) return "BMP";
  if (StartsWith(b, std::string_view("\0\0\1\0", 4)) || StartsWith(b, std::string_view("\0\0\2\0", 4))) return "ICO";
  if (StartsWith(b, "\xFF\xD8")) return "JPEG";
  if (StartsWith(b, "\x89PNG")) return "PNG";
  if (StartsWith(b, "GIF8")) return "GIF";
  return nullptr;
}

QImage Read(std::string_view bytes, const char* format) {
  QByteArray data = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QBuffer buffer(&data);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer, format);
  reader.setAutoTransform(false);
  // A damaged header may claim an enormous image; refuse before Qt allocates it.
  const QSize size = reader.size();
  if (size.isValid() && static_cast<long long>(size.width()) * size.height() > 64LL * 1024 * 1024) return {};
  QImage image;
  if (std::string_view(format) == "ICO" && reader.imageCount() > 1) {
    // An icon holds several sizes; the standard icon is the 32 by 32 one (else the largest).
    QImage best;
    for (int i = 0; i < reader.imageCount(); ++i) {
      if (!reader.jumpToImage(i)) break;
      QImage candidate;
      if (!reader.read(&candidate)) continue;
      const bool standard = candidate.size() == QSize(32, 32);
      const bool bestStandard = best.size() == QSize(32, 32);
      if (best.isNull() || (standard && !bestStandard) ||
          (!bestStandard && candidate.width() * candidate.height() > best.width() * best.height()) ||
          (standard && bestStandard && candidate.depth() > best.depth())) {
        best = candidate;
      }
    }
    return best;
  }
  if (!reader.read(&image)) return {};
  return image;
}

// The length of a BMP file from its headers. Image lists write the file header's size
// field as the header's own size, so the length comes from the bitmap's dimensions.
size_t BmpLength(std::string_view data) {
  if (data.size() < 26) return data.size();
  const std::uint32_t declared = Le32(data, 2);
  const std::uint32_t infoSize = Le32(data, 14);
  long long width = 0, height = 0;
  unsigned bpp = 0, compression = 0, sizeImage = 0, colorsUsed = 0;
  size_t paletteEntry = 4;
  if (infoSize == 12) {
    width = Le16(data, 18);
    height = Le16(data, 20);
    bpp = Le16(data, 24);
    paletteEntry = 3;
  } else if (infoSize >= 40 && data.size() >= 54) {
    width = static_cast<std::int32_t>(Le32(data, 18));
    height = static_cast<std::int32_t>(Le32(data, 22));
    bpp = Le16(data, 28);
    compression = Le32(data, 30);
    sizeImage = Le32(data, 34);
    colorsUsed = Le32(data, 46);
  } else {
    return std::min<size_t>(declared >= 26 ? declared : data.size(), data.size());
  }
  if (width < 0) width = -width;
  if (height < 0) height = -height;
  size_t palette = 0;
  if (bpp <= 8) palette = (colorsUsed ? colorsUsed : (1u << bpp)) * paletteEntry;
  if (bpp > 8 && colorsUsed) palette = static_cast<size_t>(colorsUsed) * paletteEntry;
  size_t masks = (infoSize == 40 && (compression == 3 || compression == 6)) ? (compression == 3 ? 12 : 16) : 0;
  const unsigned long long row = ((static_cast<unsigned long long>(width) * bpp + 31) / 32) * 4;
  const unsigned long long pixels = (compression == 0 || compression == 3) ? row * static_cast<unsigned long long>(height)
                                                                         : sizeImage;
  const unsigned long long computed = 14ull + infoSize + palette + masks + pixels;
  unsigned long long length = declared >= computed ? declared : computed;
  return static_cast<size_t>(std::min<unsigned long long>(length, data.size()));
}

// A BMP file stored inside a stream.
std::string_view BmpSlice(std::string_view data) {
  if (!StartsWith(data, "BM")) return {};
  return data.substr(0, BmpLength(data));
}

}  // namespace

QImage DecodeImageFile(std::string_view bytes) {
  const char* format = FormatOf(bytes);
  if (!format) return {};
  return Read(bytes, format);
}

QImage DecodeBitmapData(std::string_view data) {
  if (StartsWith(data, "BM")) return DecodeImageFile(BmpSlice(data));
  if (data.size() < 4) return {};
  const std::uint32_t length = Le32(data, 0);
  std::string_view rest = data.substr(4);
  if (length <= rest.size()) rest = rest.substr(0, length);
  return DecodeImageFile(rest);
}

TGraphicData DecodePictureData(std::string_view data) {
  TGraphicData result;
  if (data.empty()) return result;
  const size_t nameLength = static_cast<unsigned char>(data[0]);
  if (1 + nameLength > data.size()) throw EReadError("Stream read error");
  result.ClassName = std::string(data.substr(1, nameLength));
  std::string_view rest = data.substr(1 + nameLength);
  // Most graphics start with their file; bitmaps and JPEG images put a length first.
  if (FormatOf(rest)) {
    result.Image = DecodeImageFile(StartsWith(rest, "BM") ? BmpSlice(rest) : rest);
  } else if (rest.size() >= 4) {
    const std::uint32_t length = Le32(rest, 0);
    std::string_view inner = rest.substr(4);
    if (length <= inner.size()) inner = inner.substr(0, length);
    if (FormatOf(inner)) result.Image = DecodeImageFile(inner);
  }
  return result;
}

TImageListData DecodeImageListData(std::string_view data) {
  constexpr size_t kHeader = 28;
  if (data.size() < kHeader || !StartsWith(data, "IL")) throw EReadError("Invalid image list data");
  TImageListData list;
  list.Count = Le16(data, 4);
  list.Allocated = Le16(data, 6);
  list.Grow = Le16(data, 8);
  list.Width = Le16(data, 10);
  list.Height = Le16(data, 12);
  const std::uint32_t bk = Le32(data, 14);
  if (bk != 0xFFFFFFFFu) list.BkColor = QColor(bk & 0xFF, (bk >> 8) & 0xFF, (bk >> 16) & 0xFF);
  const std::uint16_t flags = Le16(data, 18);
  std::string_view rest = data.substr(kHeader);
  const std::string_view imageFile = BmpSlice(rest);
  if (imageFile.empty()) throw EReadError("Invalid image list data");
  QImage strip = DecodeImageFile(imageFile);
  if (strip.isNull()) throw EReadError("Invalid image list data");
  rest = rest.substr(imageFile.size());
  QImage mask;
  if ((flags & 1) && StartsWith(rest, "BM")) mask = DecodeImageFile(BmpSlice(rest));

  strip = strip.convertToFormat(QImage::Format_ARGB32);
  if (!mask.isNull()) mask = mask.convertToFormat(QImage::Format_RGB32);
  if (list.Width <= 0 || list.Height <= 0) return list;
  const int perRow = std::max(1, strip.width() / list.Width);
  for (int i = 0; i < list.Count; ++i) {
    const int x = (i % perRow) * list.Width;
    const int y = (i / perRow) * list.Height;
    if (x + list.Width > strip.width() || y + list.Height > strip.height()) break;
    QImage image = strip.copy(x, y, list.Width, list.Height);
    bool anyAlpha = false;
    for (int py = 0; py < image.height() && !anyAlpha; ++py) {
      const QRgb* line = reinterpret_cast<const QRgb*>(image.constScanLine(py));
      for (int px = 0; px < image.width(); ++px) {
        if (qAlpha(line[px]) != 0) {
          anyAlpha = true;
          break;
        }
      }
    }
    // Images without alpha take their transparency from the mask (white = transparent).
    for (int py = 0; py < image.height(); ++py) {
      QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(py));
      const QRgb* m = mask.isNull() || y + py >= mask.height()
                          ? nullptr
                          : reinterpret_cast<const QRgb*>(mask.constScanLine(y + py));
      for (int px = 0; px < image.width(); ++px) {
        const bool transparent = m && x + px < mask.width() && (m[x + px] & 0xFFFFFF) != 0;
        if (anyAlpha) {
          if (transparent) line[px] = 0;
        } else {
          line[px] = transparent ? 0 : (line[px] | 0xFF000000u);
        }
      }
    }
    list.Images.push_back(image);
  }
  return list;
}

QImage WithTransparentColor(const QImage& source, QColor key) {
  if (source.isNull()) return source;
  QImage image = source.convertToFormat(QImage::Format_ARGB32);
  const QRgb k = key.rgb() & 0xFFFFFF;
  for (int y = 0; y < image.height(); ++y) {
    QRgb* line = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      if ((line[x] & 0xFFFFFF) == k) line[x] = 0;
    }
  }
  return image;
}

QColor AutoTransparentColor(const QImage& image) {
  if (image.isNull()) return {};
  return QColor::fromRgb(image.pixel(0, image.height() - 1));
}
