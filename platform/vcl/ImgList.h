#pragma once
// Image lists: images of one size kept together, drawn by index. Their images stream as
// the defined property Bitmap (an image-list header, the images as one bitmap, then
// their mask), kept as read and written back unchanged unless images were changed.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Graphics.h"

#include <QImage>

#include <string>
#include <vector>

class QPainter;

LUMORA_ENUM(TDrawingStyle, dsFocus, dsSelected, dsNormal, dsTransparent)
LUMORA_ENUM(TImageType, itImage, itMask)

class TCustomImageList : public TComponent {
  LUMORA_CLASS(TCustomImageList, TComponent)
public:
  explicit TCustomImageList(TComponent* owner);

  int Count() const { return static_cast<int>(FImages.size()); }
  // The image at `index` (transparent where the mask is); null outside the list.
  QImage Image(int index) const;
  // Adds an image (scaled to the list's size when it is not) and returns its index.
  int Add(const QImage& image);
  void Delete(int index);
  void Clear();
  // Draws image `index` at (x, y); disabled images are drawn greyed.
  void Draw(QPainter& painter, int x, int y, int index, bool enabled = true) const;

  int Width() const { return FWidth; }
  void SetWidth(int value);
  int Height() const { return FHeight; }
  void SetHeight(int value);
  int AllocBy() const { return FAllocBy; }
  void SetAllocBy(int value) { FAllocBy = value; }
  TColor BkColor() const { return FBkColor; }
  void SetBkColor(TColor value) { FBkColor = value; }
  TColor BlendColor() const { return FBlendColor; }
  void SetBlendColor(TColor value) { FBlendColor = value; }
  TDrawingStyle DrawingStyle() const { return FDrawingStyle; }
  void SetDrawingStyle(TDrawingStyle value) { FDrawingStyle = value; }
  TImageType ImageType() const { return FImageType; }
  void SetImageType(TImageType value) { FImageType = value; }
  bool Masked() const { return FMasked; }
  void SetMasked(bool value) { FMasked = value; }
  bool ShareImages() const { return FShareImages; }
  void SetShareImages(bool value) { FShareImages = value; }

  // The streamed Bitmap data: what was read, or the images written anew.
  void ReadData(TStream& stream);
  void WriteData(TStream& stream);
  void DefineProperties(TFiler& filer) override;
  void Assign(TPersistent* source) override;

  TNotifyEvent OnChange;

protected:
  void Change();

  int FWidth = 16;
  int FHeight = 16;
  int FAllocBy = 4;
  TColor FBkColor = clNone;
  TColor FBlendColor = clNone;
  TDrawingStyle FDrawingStyle = dsNormal;
  TImageType FImageType = itImage;
  bool FMasked = true;
  bool FShareImages = false;
  std::vector<QImage> FImages;
  std::string FData;  // as read; emptied when the images change
};

class TImageList : public TCustomImageList {
  LUMORA_CLASS(TImageList, TCustomImageList)
public:
  explicit TImageList(TComponent* owner) : TCustomImageList(owner) {}
};
