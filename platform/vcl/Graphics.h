#pragma once
// Colours and fonts as the forms name them, resolved to what Qt draws with.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Charsets.h"
#include "platform/vcl/IntTypes.h"

#include <QColor>
#include <QFont>
#include <QImage>

#include <climits>
#include <cstdint>
#include <string>
#include <string_view>

// $00BBGGRR for a plain colour; $80000000 + index for a colour of the system scheme.
LUMORA_INTEGER_TYPE(TColor, std::int32_t, otSLong, INT32_MIN, INT32_MAX)

constexpr TColor TColorOf(std::uint32_t v) { return static_cast<TColor>(static_cast<std::int32_t>(v)); }
constexpr TColor SystemColor(int index) { return TColorOf(0x80000000u | static_cast<std::uint32_t>(index)); }

constexpr TColor clScrollBar = SystemColor(0);
constexpr TColor clBackground = SystemColor(1);
constexpr TColor clActiveCaption = SystemColor(2);
constexpr TColor clInactiveCaption = SystemColor(3);
constexpr TColor clMenu = SystemColor(4);
constexpr TColor clWindow = SystemColor(5);
constexpr TColor clWindowFrame = SystemColor(6);
constexpr TColor clMenuText = SystemColor(7);
constexpr TColor clWindowText = SystemColor(8);
constexpr TColor clCaptionText = SystemColor(9);
constexpr TColor clActiveBorder = SystemColor(10);
constexpr TColor clInactiveBorder = SystemColor(11);
constexpr TColor clAppWorkSpace = SystemColor(12);
constexpr TColor clHighlight = SystemColor(13);
constexpr TColor clHighlightText = SystemColor(14);
constexpr TColor clBtnFace = SystemColor(15);
constexpr TColor clBtnShadow = SystemColor(16);
constexpr TColor clGrayText = SystemColor(17);
constexpr TColor clBtnText = SystemColor(18);
constexpr TColor clInactiveCaptionText = SystemColor(19);
constexpr TColor clBtnHighlight = SystemColor(20);
constexpr TColor cl3DDkShadow = SystemColor(21);
constexpr TColor cl3DLight = SystemColor(22);
constexpr TColor clInfoText = SystemColor(23);
constexpr TColor clInfoBk = SystemColor(24);
constexpr TColor clHotLight = SystemColor(26);
constexpr TColor clGradientActiveCaption = SystemColor(27);
constexpr TColor clGradientInactiveCaption = SystemColor(28);
constexpr TColor clMenuHighlight = SystemColor(29);
constexpr TColor clMenuBar = SystemColor(30);

constexpr TColor clBlack = TColorOf(0x000000);
constexpr TColor clMaroon = TColorOf(0x000080);
constexpr TColor clGreen = TColorOf(0x008000);
constexpr TColor clOlive = TColorOf(0x008080);
constexpr TColor clNavy = TColorOf(0x800000);
constexpr TColor clPurple = TColorOf(0x800080);
constexpr TColor clTeal = TColorOf(0x808000);
constexpr TColor clGray = TColorOf(0x808080);
constexpr TColor clSilver = TColorOf(0xC0C0C0);
constexpr TColor clRed = TColorOf(0x0000FF);
constexpr TColor clLime = TColorOf(0x00FF00);
constexpr TColor clYellow = TColorOf(0x00FFFF);
constexpr TColor clBlue = TColorOf(0xFF0000);
constexpr TColor clFuchsia = TColorOf(0xFF00FF);
constexpr TColor clAqua = TColorOf(0xFFFF00);
constexpr TColor clLtGray = TColorOf(0xC0C0C0);
constexpr TColor clDkGray = TColorOf(0x808080);
constexpr TColor clWhite = TColorOf(0xFFFFFF);
constexpr TColor clMoneyGreen = TColorOf(0xC0DCC0);
constexpr TColor clSkyBlue = TColorOf(0xF0CAA6);
constexpr TColor clCream = TColorOf(0xF0FBFF);
constexpr TColor clMedGray = TColorOf(0xA4A0A0);
constexpr TColor clNone = TColorOf(0x1FFFFFFF);
constexpr TColor clDefault = TColorOf(0x20000000);

// The RGB value ($00BBGGRR) of a colour, system colours taken from the classic scheme.
// clNone gives white and clDefault the window colour, as drawing code expects.
std::uint32_t ColorToRGB(TColor color);

// The Qt colour of a TColor (through ColorToRGB).
QColor ColorToQColor(TColor color);

// A Qt colour as a plain TColor.
TColor QColorToColor(const QColor& color);

// "clBtnFace" for named colours, else the hex form "$00BBGGRR" that forms use.
std::string ColorToString(TColor color);

// The inverse: a colour name or a number ("$00FF8000", "16711680"); EConvertError otherwise.
TColor StringToColor(std::string_view text);

// Name tables for streaming Color properties. ColorToIdent gives only the names the form
// format has always known; IdentToColor also reads those that later versions write.
bool ColorToIdent(long color, std::string& ident);
bool IdentToColor(std::string_view ident, long& color);

// A font as a form describes it.
struct TFontRequest {
  std::string Name = "MS Sans Serif";
  // Negative: height of the characters in pixels (without internal leading).
  // Positive: height of the character cell. Zero: the default size.
  int Height = -11;
  bool Bold = false;
  bool Italic = false;
  bool Underline = false;
  bool StrikeOut = false;
  TFontCharset Charset = DEFAULT_CHARSET;
};

// Makes the classic Windows fonts known to Qt (the bitmap and TrueType files of the
// compatible font packages); called once before any font is resolved.
void RegisterClassicFonts();

// The installed family that stands in for a Windows font name ("MS Sans Serif",
// "Arial", "Courier New", ...) at the given character height in pixels.
QString ClassicFontFamily(std::string_view name, int pixelHeight);

// The Qt font that draws `request` with metrics close to the named Windows font.
QFont ResolveFont(const TFontRequest& request);

// Height of the character cell (ascent + descent) of the resolved font, what a form stores
// as its TextHeight.
int FontCellHeight(const QFont& font);

// ---------------------------------------------------------------------------------------
// Graphics objects

LUMORA_ENUM(TFontStyle, fsBold, fsItalic, fsUnderline, fsStrikeOut)
LUMORA_SET(TFontStyles, TFontStyle)
LUMORA_ENUM(TFontPitch, fpDefault, fpVariable, fpFixed)
LUMORA_ENUM(TBrushStyle, bsSolid, bsClear, bsHorizontal, bsVertical, bsFDiagonal, bsBDiagonal, bsCross, bsDiagCross)
LUMORA_ENUM(TPenStyle, psSolid, psDash, psDot, psDashDot, psDashDotDot, psClear, psInsideFrame)
LUMORA_ENUM(TPenMode, pmBlack, pmWhite, pmNop, pmNot, pmCopy, pmNotCopy, pmMergePenNot, pmMaskPenNot, pmMergeNotPen,
            pmMaskNotPen, pmMerge, pmNotMerge, pmMask, pmNotMask, pmXor, pmNotXor)

using TFontName = std::string;

// A font, a brush or a pen: tells its OnChange when one of its values changes.
class TGraphicsObject : public TPersistent {
  LUMORA_CLASS(TGraphicsObject, TPersistent)
public:
  TNotifyEvent OnChange;

protected:
  virtual void Changed();
};

class TFont : public TGraphicsObject {
  LUMORA_CLASS(TFont, TGraphicsObject)
public:
  TFont();
  void Assign(TPersistent* source) override;

  TFontCharset Charset() const { return FCharset; }
  void SetCharset(TFontCharset value);
  TColor Color() const { return FColor; }
  void SetColor(TColor value);
  int Height() const { return FHeight; }
  void SetHeight(int value);
  const TFontName& Name() const { return FName; }
  void SetName(const TFontName& value);
  TFontPitch Pitch() const { return FPitch; }
  void SetPitch(TFontPitch value);
  // Points at PixelsPerInch.
  int Size() const;
  void SetSize(int value);
  TFontStyles Style() const { return FStyle; }
  void SetStyle(TFontStyles value);
  int PixelsPerInch() const { return FPixelsPerInch; }
  void SetPixelsPerInch(int value) { FPixelsPerInch = value > 0 ? value : 96; }

  // The font as a form describes it, and the Qt font that draws it.
  TFontRequest Request() const;
  const QFont& Handle() const;
  // Text in this font's code page, and back.
  QString ToUnicode(std::string_view text) const { return TextToUnicode(text, FCharset); }
  std::string FromUnicode(const QString& text) const { return UnicodeToAnsi(text, FCharset); }

protected:
  void Changed() override;

private:
  TFontCharset FCharset = DEFAULT_CHARSET;
  TColor FColor = clWindowText;
  int FHeight = -11;
  TFontName FName = "MS Sans Serif";
  TFontPitch FPitch = fpDefault;
  TFontStyles FStyle;
  int FPixelsPerInch = 96;
  mutable QFont FHandle;
  mutable bool FHandleValid = false;
};

class TBrush : public TGraphicsObject {
  LUMORA_CLASS(TBrush, TGraphicsObject)
public:
  TBrush() = default;
  void Assign(TPersistent* source) override;
  TColor Color() const { return FColor; }
  void SetColor(TColor value);
  TBrushStyle Style() const { return FStyle; }
  void SetStyle(TBrushStyle value);

private:
  TColor FColor = clWhite;
  TBrushStyle FStyle = bsSolid;
};

class TPen : public TGraphicsObject {
  LUMORA_CLASS(TPen, TGraphicsObject)
public:
  TPen() = default;
  void Assign(TPersistent* source) override;
  TColor Color() const { return FColor; }
  void SetColor(TColor value);
  TPenMode Mode() const { return FMode; }
  void SetMode(TPenMode value);
  TPenStyle Style() const { return FStyle; }
  void SetStyle(TPenStyle value);
  int Width() const { return FWidth; }
  void SetWidth(int value);

private:
  TColor FColor = clBlack;
  TPenMode FMode = pmCopy;
  TPenStyle FStyle = psSolid;
  int FWidth = 1;
};

// A picture of some format. The bytes a form holds are kept as they are and written
// back unchanged; the image is decoded from them when it is first shown.
class TGraphic : public TPersistent {
  LUMORA_CLASS(TGraphic, TPersistent)
public:
  TGraphic() = default;
  void Assign(TPersistent* source) override;

  bool Empty() const { return FBytes.empty(); }
  int Width() const;
  int Height() const;
  bool Transparent() const { return FTransparent; }
  void SetTransparent(bool value);
  // The decoded image; null when the format cannot be shown.
  const QImage& Image() const;

  // The graphic's own bytes (a BMP file, an ICO file, ...), and replacing them.
  const std::string& Bytes() const { return FBytes; }
  void SetBytes(std::string bytes);
  // Reads and writes the graphic as the Data of a form (format of each class).
  virtual void ReadData(TStream& stream);
  virtual void WriteData(TStream& stream);
  // The image as this graphic's file format; replaces the bytes.
  virtual void SetImage(const QImage& image);

  TNotifyEvent OnChange;

  void DefineProperties(TFiler& filer) override;

protected:
  virtual QImage Decode() const;
  void Changed();

  std::string FBytes;
  bool FTransparent = false;
  mutable QImage FImage;
  mutable bool FImageValid = false;
};

LUMORA_ENUM(TTransparentMode, tmAuto, tmFixed)

// Data: a 4-byte length and a BMP file.
class TBitmap : public TGraphic {
  LUMORA_CLASS(TBitmap, TGraphic)
public:
  TBitmap() = default;
  void ReadData(TStream& stream) override;
  void WriteData(TStream& stream) override;
  void SetImage(const QImage& image) override;
  // The colour that is see-through when the bitmap is drawn transparently: the
  // bottom-left pixel unless it was fixed.
  TColor TransparentColor() const;
  void SetTransparentColor(TColor value);
  TTransparentMode TransparentMode() const { return FTransparentMode; }
  void SetTransparentMode(TTransparentMode value) { FTransparentMode = value; }
  // The image with its transparent colour taken out.
  QImage TransparentImage() const;

protected:
  QImage Decode() const override;

private:
  TColor FTransparentColor = clDefault;
  TTransparentMode FTransparentMode = tmAuto;
};

// Data: an ICO file.
class TIcon : public TGraphic {
  LUMORA_CLASS(TIcon, TGraphic)
public:
  TIcon() = default;
  void SetImage(const QImage& image) override;

protected:
  // Icons are drawn at the standard icon size, 32 by 32, whatever sizes the file holds.
  QImage Decode() const override;
};

// Data: a 4-byte length and a JPEG file.
class TJPEGImage : public TGraphic {
  LUMORA_CLASS(TJPEGImage, TGraphic)
public:
  TJPEGImage() = default;
  void ReadData(TStream& stream) override;
  void WriteData(TStream& stream) override;
  void SetImage(const QImage& image) override;
};

// Data: a metafile; kept, not drawn.
class TMetafile : public TGraphic {
  LUMORA_CLASS(TMetafile, TGraphic)
public:
  TMetafile() = default;

protected:
  QImage Decode() const override { return {}; }
};

// A graphic of a class this program does not know (a PNG or GIF class of a later
// version or a third party): its bytes are kept with its class name and shown when
// they are a known image file.
class TForeignGraphic : public TGraphic {
  LUMORA_CLASS(TForeignGraphic, TGraphic)
public:
  TForeignGraphic() = default;
  const std::string& GraphicClassName() const { return FGraphicClassName; }
  void SetGraphicClassName(const std::string& name) { FGraphicClassName = name; }

private:
  std::string FGraphicClassName;
};

// Makes a graphic class known to pictures by its name (TBitmap, TIcon, ... are known).
void RegisterGraphicClass(TClass graphicClass);

// A picture of any graphic class; Data names the class and holds the graphic's data.
class TPicture : public TPersistent {
  LUMORA_CLASS(TPicture, TPersistent)
public:
  TPicture() = default;
  ~TPicture() override;
  void Assign(TPersistent* source) override;

  TGraphic* Graphic() const { return FGraphic; }
  // Takes a copy of `graphic` (none empties the picture).
  void SetGraphic(TGraphic* graphic);
  // The graphic as a bitmap or icon, replacing it by an empty one of that class when it is not.
  TBitmap* Bitmap();
  TIcon* Icon();
  int Width() const { return FGraphic ? FGraphic->Width() : 0; }
  int Height() const { return FGraphic ? FGraphic->Height() : 0; }
  // The name of the graphic's class as the form names it ('' when empty).
  std::string GraphicClassName() const;

  void ReadData(TStream& stream);
  void WriteData(TStream& stream);
  void DefineProperties(TFiler& filer) override;

  TNotifyEvent OnChange;

private:
  void Changed();
  void TakeGraphic(TGraphic* graphic);
  TGraphic* FGraphic = nullptr;
};
