#include "platform/vcl/ImgList.h"

#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/GraphicData.h"

#include <QBuffer>
#include <QPainter>

LUMORA_CLASS_IMPL(TCustomImageList) {}

TCustomImageList::TCustomImageList(TComponent* owner) : TComponent(owner) {}

QImage TCustomImageList::Image(int index) const {
  if (index < 0 || index >= Count()) return {};
  return FImages[index];
}

int TCustomImageList::Add(const QImage& image) {
  QImage img = image.convertToFormat(QImage::Format_ARGB32);
  if (img.width() != FWidth || img.height() != FHeight) img = img.scaled(FWidth, FHeight);
  FImages.push_back(img);
  FData.clear();
  Change();
  return Count() - 1;
}

void TCustomImageList::Delete(int index) {
  if (index < 0 || index >= Count()) throw EInvalidOperation("Invalid ImageList Index");
  FImages.erase(FImages.begin() + index);
  FData.clear();
  Change();
}

void TCustomImageList::Clear() {
  FImages.clear();
  FData.clear();
  Change();
}

void TCustomImageList::Draw(QPainter& painter, int x, int y, int index, bool enabled) const {
  if (index < 0 || index >= Count()) return;
  if (enabled) {
    painter.drawImage(x, y, FImages[index]);
    return;
  }
  // Disabled: the image's shape embossed in the shadow and highlight colours.
  const QImage& src = FImages[index];
  QImage light(src.size(), QImage::Format_ARGB32);
  QImage dark(src.size(), QImage::Format_ARGB32);
  light.fill(Qt::transparent);
  dark.fill(Qt::transparent);
  const QRgb hi = ColorToQColor(clBtnHighlight).rgb();
  const QRgb sh = ColorToQColor(clBtnShadow).rgb();
  for (int py = 0; py < src.height(); ++py) {
    for (int px = 0; px < src.width(); ++px) {
      const QRgb p = src.pixel(px, py);
      if (qAlpha(p) < 128 || qGray(p) > 192) continue;
      light.setPixel(px, py, hi);
      dark.setPixel(px, py, sh);
    }
  }
  painter.drawImage(x + 1, y + 1, light);
  painter.drawImage(x, y, dark);
}

void TCustomImageList::SetWidth(int value) {
  if (value == FWidth || value <= 0) return;
  FWidth = value;
  FImages.clear();
  FData.clear();
  Change();
}

void TCustomImageList::SetHeight(int value) {
  if (value == FHeight || value <= 0) return;
  FHeight = value;
  FImages.clear();
  FData.clear();
  Change();
}

void TCustomImageList::Change() {
  if (OnChange) OnChange(this);
}

void TCustomImageList::Assign(TPersistent* source) {
  if (auto* other = dynamic_cast<TCustomImageList*>(source)) {
    FWidth = other->FWidth;
    FHeight = other->FHeight;
    FAllocBy = other->FAllocBy;
    FBkColor = other->FBkColor;
    FBlendColor = other->FBlendColor;
    FDrawingStyle = other->FDrawingStyle;
    FImageType = other->FImageType;
    FMasked = other->FMasked;
    FImages = other->FImages;
    FData = other->FData;
    Change();
    return;
  }
  TComponent::Assign(source);
}

void TCustomImageList::ReadData(TStream& stream) {
  std::string data = stream.ReadRest();
  TImageListData list = DecodeImageListData(data);
  FImages = std::move(list.Images);
  if (list.Width > 0) FWidth = list.Width;
  if (list.Height > 0) FHeight = list.Height;
  FData = std::move(data);
  Change();
}

namespace {
void Put16(std::string& s, unsigned v) {
  s.push_back(static_cast<char>(v & 0xFF));
  s.push_back(static_cast<char>((v >> 8) & 0xFF));
}
void Put32(std::string& s, std::uint32_t v) {
  Put16(s, v & 0xFFFF);
  Put16(s, v >> 16);
}
std::string Bmp(const QImage& image) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, "BMP");
  return bytes.toStdString();
}
}  // namespace

void TCustomImageList::WriteData(TStream& stream) {
  if (!FData.empty()) {
    stream.WriteBuffer(FData);
    return;
  }
  // Four images a row, colours and a mask (white where transparent).
  const int count = Count();
  const int rows = std::max(1, (count + 3) / 4);
  QImage strip(FWidth * 4, FHeight * rows, QImage::Format_RGB32);
  QImage mask(FWidth * 4, FHeight * rows, QImage::Format_RGB32);
  strip.fill(Qt::black);
  mask.fill(Qt::white);
  for (int i = 0; i < count; ++i) {
    const int x0 = (i % 4) * FWidth;
    const int y0 = (i / 4) * FHeight;
    for (int y = 0; y < FHeight; ++y) {
      for (int x = 0; x < FWidth; ++x) {
        const QRgb p = FImages[i].pixel(x, y);
        if (qAlpha(p) >= 128) {
          strip.setPixel(x0 + x, y0 + y, p | 0xFF000000u);
          mask.setPixel(x0 + x, y0 + y, 0xFF000000u);
        }
      }
    }
  }
  std::string out = "IL";
  Put16(out, 0x101);
  Put16(out, static_cast<unsigned>(count));
  Put16(out, static_cast<unsigned>(rows * 4));
  Put16(out, static_cast<unsigned>(FAllocBy));
  Put16(out, static_cast<unsigned>(FWidth));
  Put16(out, static_cast<unsigned>(FHeight));
  Put32(out, 0xFFFFFFFFu);
  Put16(out, 1);  // masked
  for (int i = 0; i < 4; ++i) Put16(out, 0xFFFF);
  out += Bmp(strip);
  out += Bmp(mask);
  stream.WriteBuffer(out);
}

void TCustomImageList::DefineProperties(TFiler& filer) {
  TComponent::DefineProperties(filer);
  filer.DefineBinaryProperty(
      "Bitmap", [this](TStream& s) { ReadData(s); }, [this](TStream& s) { WriteData(s); }, Count() > 0);
}

LUMORA_CLASS_IMPL(TImageList) {
  c.Property("AllocBy", &TImageList::AllocBy, &TImageList::SetAllocBy).Default(4);
  c.Property("BlendColor", &TImageList::BlendColor, &TImageList::SetBlendColor).Default(clNone);
  c.Property("BkColor", &TImageList::BkColor, &TImageList::SetBkColor).Default(clNone);
  c.Property("DrawingStyle", &TImageList::DrawingStyle, &TImageList::SetDrawingStyle).Default(dsNormal);
  c.Property("Height", &TImageList::Height, &TImageList::SetHeight).Default(16);
  c.Property("ImageType", &TImageList::ImageType, &TImageList::SetImageType).Default(itImage);
  c.Property("Masked", &TImageList::Masked, &TImageList::SetMasked).Default(true);
  c.Property("ShareImages", &TImageList::ShareImages, &TImageList::SetShareImages).Default(false);
  c.Property("Width", &TImageList::Width, &TImageList::SetWidth).Default(16);
  c.Property("OnChange", &TImageList::OnChange, &TImageList::OnChange);
}
