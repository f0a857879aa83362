#include "platform/vcl/GraphicData.h"

#include "platform/streaming/SysUtils.h"

#include <QBuffer>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

std::string Encode(const QImage& image, const char* format) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  EXPECT_TRUE(image.save(&buffer, format));
  return bytes.toStdString();
}

std::string Le32(std::uint32_t v) {
  std::string s(4, '\0');
  for (int i = 0; i < 4; ++i) s[i] = static_cast<char>((v >> (8 * i)) & 0xFF);
  return s;
}

std::string Le16(std::uint16_t v) { return std::string{static_cast<char>(v & 0xFF), static_cast<char>(v >> 8)}; }

QImage Sample(int w, int h, QColor background, QColor dot) {
  QImage image(w, h, QImage::Format_RGB32);
  image.fill(background);
  image.setPixelColor(1, 1, dot);
  return image;
}

}  // namespace

TEST(GraphicData, BitmapDataIsALengthAndABmpFile) {
  const std::string bmp = Encode(Sample(8, 4, Qt::white, Qt::red), "BMP");
  const QImage image = DecodeBitmapData(Le32(static_cast<std::uint32_t>(bmp.size())) + bmp);
  ASSERT_FALSE(image.isNull());
  EXPECT_EQ(image.size(), QSize(8, 4));
  EXPECT_EQ(image.pixelColor(1, 1), QColor(Qt::red));
  EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::white));
  // A BMP file alone reads too.
  EXPECT_EQ(DecodeBitmapData(bmp).size(), QSize(8, 4));
}

TEST(GraphicData, PictureDataNamesItsGraphicClass) {
  const std::string bmp = Encode(Sample(5, 6, Qt::blue, Qt::green), "BMP");
  TGraphicData g = DecodePictureData("\x07TBitmap" + Le32(static_cast<std::uint32_t>(bmp.size())) + bmp);
  EXPECT_EQ(g.ClassName, "TBitmap");
  EXPECT_EQ(g.Image.size(), QSize(5, 6));

  const std::string ico = Encode(Sample(16, 16, Qt::yellow, Qt::black), "ICO");
  g = DecodePictureData("\x05TIcon" + ico);
  EXPECT_EQ(g.ClassName, "TIcon");
  EXPECT_EQ(g.Image.size(), QSize(16, 16));

  const std::string jpeg = Encode(Sample(20, 10, Qt::gray, Qt::gray), "JPEG");
  g = DecodePictureData("\x0ATJPEGImage" + Le32(static_cast<std::uint32_t>(jpeg.size())) + jpeg);
  EXPECT_EQ(g.ClassName, "TJPEGImage");
  EXPECT_EQ(g.Image.size(), QSize(20, 10));

  const std::string png = Encode(Sample(3, 3, Qt::cyan, Qt::cyan), "PNG");
  g = DecodePictureData("\x09TPngImage" + png);
  EXPECT_EQ(g.Image.size(), QSize(3, 3));
}

TEST(GraphicData, MetafilesAndDamagedDataGiveNoImageAndNoCrash) {
  TGraphicData g = DecodePictureData(std::string("\x09TMetafile") + Le32(8) + std::string("\xD7\xCD\xC6\x9A\0\0\0\0", 8));
  EXPECT_EQ(g.ClassName, "TMetafile");
  EXPECT_TRUE(g.Image.isNull());
  EXPECT_THROW(DecodePictureData("\x20TBit"), EReadError);
  EXPECT_TRUE(DecodePictureData("").ClassName.empty());
  std::string bmp = Encode(Sample(8, 8, Qt::white, Qt::red), "BMP");
  bmp.resize(30);  // cut inside the header
  EXPECT_TRUE(DecodeBitmapData(Le32(1000) + bmp).isNull());
  EXPECT_TRUE(DecodeImageFile("not an image").isNull());
  // A header claiming a huge image is refused without allocating it.
  std::string huge = Encode(Sample(2, 2, Qt::white, Qt::red), "BMP");
  huge.replace(18, 8, Le32(60000) + Le32(60000));
  EXPECT_TRUE(DecodeImageFile(huge).isNull());
}

TEST(GraphicData, ImageListDataSplitsItsStripAndAppliesTheMask) {
  // Three 4x4 images side by side, four per row as image lists store them.
  QImage strip(16, 4, QImage::Format_RGB32);
  strip.fill(Qt::white);
  QPainter p(&strip);
  p.fillRect(0, 0, 4, 4, Qt::red);
  p.fillRect(4, 0, 4, 4, Qt::green);
  p.fillRect(8, 0, 4, 4, Qt::blue);
  p.end();
  QImage mask(16, 4, QImage::Format_RGB32);
  mask.fill(Qt::black);
  mask.setPixelColor(0, 0, Qt::white);  // top-left pixel of the first image is transparent
  const std::string header = std::string("IL") + Le16(0x101) + Le16(3) + Le16(4) + Le16(4) + Le16(4) + Le16(4) +
                             Le32(0xFFFFFFFF) + Le16(1) + std::string(8, '\xFF');
  const TImageListData list = DecodeImageListData(header + Encode(strip, "BMP") + Encode(mask, "BMP"));
  EXPECT_EQ(list.Width, 4);
  EXPECT_EQ(list.Height, 4);
  EXPECT_EQ(list.Count, 3);
  ASSERT_EQ(list.Images.size(), 3u);
  EXPECT_EQ(list.Images[0].pixelColor(0, 0).alpha(), 0);
  EXPECT_EQ(list.Images[0].pixelColor(1, 1), QColor(Qt::red));
  EXPECT_EQ(list.Images[1].pixelColor(2, 2), QColor(Qt::green));
  EXPECT_EQ(list.Images[2].pixelColor(3, 3), QColor(Qt::blue));
  EXPECT_FALSE(list.BkColor.isValid());
  EXPECT_THROW(DecodeImageListData("XX"), EReadError);
  EXPECT_THROW(DecodeImageListData(header + "BMnot a bitmap"), EReadError);
}

TEST(GraphicData, TransparentColourIsTheBottomLeftPixel) {
  QImage glyph = Sample(4, 4, QColor(0, 128, 128), Qt::black);
  EXPECT_EQ(AutoTransparentColor(glyph), QColor(0, 128, 128));
  const QImage t = WithTransparentColor(glyph, AutoTransparentColor(glyph));
  EXPECT_EQ(t.pixelColor(0, 0).alpha(), 0);
  EXPECT_EQ(t.pixelColor(1, 1), QColor(Qt::black));
}
