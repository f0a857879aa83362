#pragma once
// Picture data as forms store it, decoded for showing. The bytes themselves are kept by
// the graphic objects and written back unchanged; this only turns them into images.
//
//   Picture.Data: a short string naming the graphic class (TBitmap, TIcon, TJPEGImage,
//                 TMetafile, ...) and then that graphic's own data.
//   Bitmap data:  a 4-byte length and a BMP file (Glyph.Data, Bitmap.Data).
//   Icon data:    an ICO file.
//   Image lists:  a header ("IL"), the images as one BMP file, then their mask.

#include <QColor>
#include <QImage>

#include <string>
#include <string_view>
#include <vector>

// The image in a BMP, ICO, JPEG, PNG or GIF file (found by its signature); null when
// the bytes are none of these or damaged.
QImage DecodeImageFile(std::string_view bytes);

// A bitmap's data: a 4-byte length and a BMP file. Also accepts a BMP file alone.
QImage DecodeBitmapData(std::string_view data);

struct TGraphicData {
  std::string ClassName;  // "TBitmap", "TIcon", "TJPEGImage", ...
  QImage Image;           // null when the data holds no image Qt can show (metafiles)
};

// Picture.Data. Throws EReadError when the class name runs past the data.
TGraphicData DecodePictureData(std::string_view data);

struct TImageListData {
  int Width = 16;
  int Height = 16;
  int Count = 0;
  int Allocated = 0;
  int Grow = 4;
  QColor BkColor;  // invalid for none
  std::vector<QImage> Images;  // one per image, with the mask applied as transparency
};

// An image list's Bitmap data. Throws EReadError when the header is not there or the
// images are cut short.
TImageListData DecodeImageListData(std::string_view data);

// The image with every pixel of `key` made transparent.
QImage WithTransparentColor(const QImage& image, QColor key);

// The colour of a bitmap's bottom-left pixel, which glyphs and transparent bitmaps use
// as their transparent colour.
QColor AutoTransparentColor(const QImage& image);
