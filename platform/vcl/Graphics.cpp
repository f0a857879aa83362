#include "platform/vcl/Graphics.h"

#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/GraphicData.h"
#include "platform/vcl/Types.h"

#include <QBuffer>
#include <QDir>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QRawFont>

#include <cmath>
#include <map>
#include <mutex>
#include <tuple>

namespace {

// The classic Windows scheme, by system colour index, as $00RRGGBB.
constexpr std::uint32_t kClassicScheme[31] = {
    0xD4D0C8,  // scroll bar
    0x3A6EA5,  // desktop
    0x0A246A,  // active caption
    0x808080,  // inactive caption
    0xD4D0C8,  // menu
    0xFFFFFF,  // window
    0x000000,  // window frame
    0x000000,  // menu text
    0x000000,  // window text
    0xFFFFFF,  // caption text
    0xD4D0C8,  // active border
    0xD4D0C8,  // inactive border
    0x808080,  // application workspace
    0x0A246A,  // highlight
    0xFFFFFF,  // highlight text
    0xD4D0C8,  // button face
    0x808080,  // button shadow
    0x808080,  // grey text
    0x000000,  // button text
    0xD4D0C8,  // inactive caption text
    0xFFFFFF,  // button highlight
    0x404040,  // 3D dark shadow
    0xD4D0C8,  // 3D light
    0x000000,  // tooltip text
    0xFFFFE1,  // tooltip background
    0xB5B5B5,  // (unused index 25)
    0x000080,  // hot-tracked item
    0xA6CAF0,  // gradient of the active caption
    0xC0C0C0,  // gradient of the inactive caption
    0x0A246A,  // menu highlight
    0xD4D0C8,  // menu bar
};

std::uint32_t SwapRB(std::uint32_t rgb) {
  return ((rgb & 0xFF) << 16) | (rgb & 0xFF00) | ((rgb >> 16) & 0xFF);
}

struct ColorName {
  TColor Value;
  const char* Name;
};

// The names every version of the form format knows, in the order that names a value first.
constexpr ColorName kColorNames[] = {
    {clBlack, "clBlack"},
    {clMaroon, "clMaroon"},
    {clGreen, "clGreen"},
    {clOlive, "clOlive"},
    {clNavy, "clNavy"},
    {clPurple, "clPurple"},
    {clTeal, "clTeal"},
    {clGray, "clGray"},
    {clSilver, "clSilver"},
    {clRed, "clRed"},
    {clLime, "clLime"},
    {clYellow, "clYellow"},
    {clBlue, "clBlue"},
    {clFuchsia, "clFuchsia"},
    {clAqua, "clAqua"},
    {clWhite, "clWhite"},
    {clScrollBar, "clScrollBar"},
    {clBackground, "clBackground"},
    {clActiveCaption, "clActiveCaption"},
    {clInactiveCaption, "clInactiveCaption"},
    {clMenu, "clMenu"},
    {clWindow, "clWindow"},
    {clWindowFrame, "clWindowFrame"},
    {clMenuText, "clMenuText"},
    {clWindowText, "clWindowText"},
    {clCaptionText, "clCaptionText"},
    {clActiveBorder, "clActiveBorder"},
    {clInactiveBorder, "clInactiveBorder"},
    {clAppWorkSpace, "clAppWorkSpace"},
    {clHighlight, "clHighlight"},
    {clHighlightText, "clHighlightText"},
    {clBtnFace, "clBtnFace"},
    {clBtnShadow, "clBtnShadow"},
    {clGrayText, "clGrayText"},
    {clBtnText, "clBtnText"},
    {clInactiveCaptionText, "clInactiveCaptionText"},
    {clBtnHighlight, "clBtnHighlight"},
    {cl3DDkShadow, "cl3DDkShadow"},
    {cl3DLight, "cl3DLight"},
    {clInfoText, "clInfoText"},
    {clInfoBk, "clInfoBk"},
    {clNone, "clNone"},
    {clDefault, "clDefault"},
};

// Names that later versions write; read, never written.
constexpr ColorName kLaterColorNames[] = {
    {clMoneyGreen, "clMoneyGreen"},
    {clSkyBlue, "clSkyBlue"},
    {clCream, "clCream"},
    {clMedGray, "clMedGray"},
    {clHotLight, "clHotLight"},
    {clGradientActiveCaption, "clGradientActiveCaption"},
    {clGradientInactiveCaption, "clGradientInactiveCaption"},
    {clMenuHighlight, "clMenuHighlight"},
    {clMenuBar, "clMenuBar"},
    {clLtGray, "clLtGray"},
    {clDkGray, "clDkGray"},
};

}  // namespace

std::uint32_t ColorToRGB(TColor color) {
  const auto v = static_cast<std::uint32_t>(color);
  if (color == clNone) return 0xFFFFFF;
  if (color == clDefault) return SwapRB(kClassicScheme[5]);
  if (v & 0x80000000u) {
    const std::uint32_t index = v & 0xFF;
    if (index < std::size(kClassicScheme)) return SwapRB(kClassicScheme[index]);
    return 0;
  }
  return v & 0xFFFFFF;
}

QColor ColorToQColor(TColor color) {
  const std::uint32_t bgr = ColorToRGB(color);
  return QColor(static_cast<int>(bgr & 0xFF), static_cast<int>((bgr >> 8) & 0xFF), static_cast<int>((bgr >> 16) & 0xFF));
}

TColor QColorToColor(const QColor& color) {
  return static_cast<TColor>(static_cast<std::uint32_t>(color.red()) | (static_cast<std::uint32_t>(color.green()) << 8) |
                             (static_cast<std::uint32_t>(color.blue()) << 16));
}

bool ColorToIdent(long color, std::string& ident) {
  for (const auto& c : kColorNames) {
    if (static_cast<long>(c.Value) == color) {
      ident = c.Name;
      return true;
    }
  }
  return false;
}

bool IdentToColor(std::string_view ident, long& color) {
  for (const auto& c : kColorNames) {
    if (SameText(ident, c.Name)) {
      color = c.Value;
      return true;
    }
  }
  for (const auto& c : kLaterColorNames) {
    if (SameText(ident, c.Name)) {
      color = c.Value;
      return true;
    }
  }
  return false;
}

std::string ColorToString(TColor color) {
  std::string ident;
  if (ColorToIdent(color, ident)) return ident;
  // Hex digits in upper case, as forms write them.
  return UpperCase(Format("$%.8x", static_cast<std::uint32_t>(color)));
}

TColor StringToColor(std::string_view text) {
  long value = 0;
  if (IdentToColor(Trim(text), value)) return static_cast<TColor>(value);
  return static_cast<TColor>(static_cast<std::uint32_t>(StrToInt(text)));
}

// ---------------------------------------------------------------------------------------
// Fonts

namespace {

const char* const kFontFolders[] = {"/usr/share/wine/fonts", "/usr/share/fonts/truetype/wine"};

// The TrueType wrappers of the classic bitmap fonts and the outline fonts of the same
// package; the .fon files add nothing Qt can use beyond these.
const char* const kClassicFontFiles[] = {
    "ms_sans_serif.ttf", "tahoma.ttf",  "tahomabd.ttf", "courier.ttf",  "system.ttf",   "fixedsys.ttf",
    "small_fonts.ttf",   "symbol.ttf",  "marlett.ttf",  "wingding.ttf", "webdings.ttf",
};

bool HasFamily(const QString& family) {
  return QFontDatabase::hasFamily(family);
}

QString FirstInstalled(std::initializer_list<const char*> families) {
  for (const char* f : families) {
    const QString family = QString::fromLatin1(f);
    if (HasFamily(family)) return family;
  }
  return QString::fromLatin1(*families.begin());
}

QString SansFamily() { return FirstInstalled({"Liberation Sans", "Arimo", "DejaVu Sans"}); }
QString SerifFamily() { return FirstInstalled({"Liberation Serif", "Tinos", "DejaVu Serif"}); }
QString MonoFamily() { return FirstInstalled({"Liberation Mono", "Cousine", "DejaVu Sans Mono"}); }
QString TahomaFamily() { return FirstInstalled({"Tahoma", "DejaVu Sans", "Liberation Sans"}); }
QString CjkFamily() {
  return FirstInstalled({"WenQuanYi Micro Hei", "WenQuanYi Zen Hei", "Noto Sans CJK SC", "Droid Sans Fallback",
                         "DejaVu Sans"});
}

bool IsOneOf(const QString& name, std::initializer_list<const char*> names) {
  for (const char* n : names) {
    if (name.compare(QString::fromUtf8(n), Qt::CaseInsensitive) == 0) return true;
  }
  return false;
}

bool IsCjk(const QString& name) {
  for (QChar ch : name) {
    if (ch.unicode() >= 0x2E80) return true;
  }
  return IsOneOf(name, {"SimSun", "NSimSun", "SimHei", "MingLiU", "PMingLiU", "MS Gothic", "MS PGothic", "MS Mincho",
                        "MS PMincho", "MS UI Gothic", "Gulim", "Batang", "Dotum", "Microsoft YaHei",
                        "Microsoft JhengHei", "Meiryo"});
}

}  // namespace

void RegisterClassicFonts() {
  static std::once_flag once;
  std::call_once(once, [] {
    for (const char* folder : kFontFolders) {
      QDir dir(QString::fromLatin1(folder));
      if (!dir.exists()) continue;
      for (const char* file : kClassicFontFiles) {
        const QString path = dir.filePath(QString::fromLatin1(file));
        if (QFile::exists(path)) QFontDatabase::addApplicationFont(path);
      }
      break;
    }
  });
}

namespace {
QString LookUpClassicFamily(std::string_view nameBytes, int pixelHeight);
}

QString ClassicFontFamily(std::string_view nameBytes, int pixelHeight) {
  // Finding a family asks fontconfig, which is slow; forms repeat a few fonts many times.
  static std::map<std::pair<std::string, int>, QString> cache;
  auto key = std::make_pair(std::string(nameBytes), pixelHeight);
  auto it = cache.find(key);
  if (it != cache.end()) return it->second;
  QString family = LookUpClassicFamily(nameBytes, pixelHeight);
  cache.emplace(std::move(key), family);
  return family;
}

namespace {
QString LookUpClassicFamily(std::string_view nameBytes, int pixelHeight) {
  RegisterClassicFonts();
  const QString name = QString::fromUtf8(nameBytes.data(), static_cast<qsizetype>(nameBytes.size())).trimmed();
  // The bitmap faces exist in one size; Windows picks them up to the next size it has.
  if (IsOneOf(name, {"MS Sans Serif", "MS Shell Dlg", "Helv", "Default"})) {
    if (pixelHeight <= 12 && HasFamily(QStringLiteral("MS Sans Serif"))) return QStringLiteral("MS Sans Serif");
    return TahomaFamily();
  }
  if (IsOneOf(name, {"MS Shell Dlg 2", "Tahoma", "Microsoft Sans Serif", "Segoe UI"})) return TahomaFamily();
  if (IsOneOf(name, {"System"})) {
    return HasFamily(QStringLiteral("System")) ? QStringLiteral("System") : TahomaFamily();
  }
  if (IsOneOf(name, {"Fixedsys", "Terminal"})) {
    return HasFamily(QStringLiteral("Fixedsys")) ? QStringLiteral("Fixedsys") : MonoFamily();
  }
  if (IsOneOf(name, {"Small Fonts"})) {
    if (pixelHeight <= 9 && HasFamily(QStringLiteral("Small Fonts"))) return QStringLiteral("Small Fonts");
    return TahomaFamily();
  }
  if (IsOneOf(name, {"Courier", "Courier New", "Lucida Console", "Consolas", "Fixed", "Monospace"})) return MonoFamily();
  if (IsOneOf(name, {"Arial Narrow"})) {
    return HasFamily(QStringLiteral("Liberation Sans Narrow")) ? QStringLiteral("Liberation Sans Narrow") : SansFamily();
  }
  if (IsOneOf(name, {"Verdana", "DejaVu Sans"})) return FirstInstalled({"DejaVu Sans", "Liberation Sans"});
  if (IsOneOf(name, {"Times New Roman", "Times", "Georgia", "Cambria", "Book Antiqua", "Garamond", "Century Schoolbook",
                     "Bookman Old Style", "Palatino Linotype", "MS Serif", "Tms Rmn"})) {
    return SerifFamily();
  }
  if (IsOneOf(name, {"Symbol", "Wingdings", "Webdings", "Marlett"})) {
    return HasFamily(name) ? name : SansFamily();
  }
  if (IsCjk(name)) return CjkFamily();
  if (IsOneOf(name, {"Arial", "Helvetica", "Arial Unicode MS", "Calibri", "Trebuchet MS", "Lucida Sans Unicode",
                     "Franklin Gothic Medium", "Century Gothic", "Comic Sans MS"})) {
    return SansFamily();
  }
  if (!name.isEmpty() && HasFamily(name)) return name;
  return SansFamily();
}
}  // namespace

namespace {

// Windows measures a TrueType cell with the OS/2 table's usWinAscent and usWinDescent,
// which is taller than what Qt reports for several of these faces.
bool WindowsCellMetrics(const QFont& font, int& ascent, int& descent) {
  const QRawFont raw = QRawFont::fromFont(font);
  if (!raw.isValid()) return false;
  const QByteArray os2 = raw.fontTable("OS/2");
  const QByteArray head = raw.fontTable("head");
  if (os2.size() < 78 || head.size() < 20) return false;
  auto u16 = [](const QByteArray& t, int off) {
    return (static_cast<unsigned>(static_cast<unsigned char>(t[off])) << 8) | static_cast<unsigned char>(t[off + 1]);
  };
  const unsigned unitsPerEm = u16(head, 18);
  const unsigned winAscent = u16(os2, 74);
  const unsigned winDescent = u16(os2, 76);
  if (unitsPerEm == 0 || winAscent + winDescent == 0) return false;
  const double ppem = font.pixelSize() > 0 ? font.pixelSize() : raw.pixelSize();
  // Hinting rounds the cell up for most faces; Tahoma's own hints keep it to the nearest pixel.
  const bool nearest = font.family() == QLatin1String("Tahoma");
  const double a = winAscent * ppem / unitsPerEm;
  const double d = winDescent * ppem / unitsPerEm;
  ascent = static_cast<int>(nearest ? std::lround(a) : std::ceil(a - 0.01));
  descent = static_cast<int>(nearest ? std::lround(d) : std::ceil(d - 0.01));
  return ascent + descent > 0;
}

bool IsBitmapFamily(const QString& family) {
  return !QFontDatabase::isScalable(family);
}

}  // namespace

namespace {
QFont MakeFont(const TFontRequest& request);
}

QFont ResolveFont(const TFontRequest& request) {
  static std::map<std::tuple<std::string, int, int, int>, QFont> cache;
  const int style = (request.Bold ? 1 : 0) | (request.Italic ? 2 : 0) | (request.Underline ? 4 : 0) | (request.StrikeOut ? 8 : 0);
  auto key = std::make_tuple(request.Name, request.Height, style, static_cast<int>(request.Charset));
  auto it = cache.find(key);
  if (it != cache.end()) return it->second;
  QFont font = MakeFont(request);
  cache.emplace(std::move(key), font);
  return font;
}

namespace {
QFont MakeFont(const TFontRequest& request) {
  RegisterClassicFonts();
  int em = request.Height < 0 ? -request.Height : 0;
  const QString family = ClassicFontFamily(request.Name, em > 0 ? em : (request.Height > 0 ? request.Height : 11));
  QFont font(family);
  // Text is drawn glyph by glyph as the classic system draws it: no ligatures (the
  // classic sans face joins "T" and "M" into a trademark sign) and, below, no kerning.
  font.setStyleStrategy(QFont::PreferNoShaping);
  if (request.Height > 0) {
    // A cell height: find the character height whose cell it is.
    QFont probe(family);
    probe.setPixelSize(100);
    int a = 0, d = 0;
    int cell100 = 0;
    if (!IsBitmapFamily(family) && WindowsCellMetrics(probe, a, d)) {
      cell100 = a + d;
    } else {
      QFontMetrics m(probe);
      cell100 = m.ascent() + m.descent();
    }
    em = cell100 > 0 ? std::max(1, static_cast<int>(std::lround(request.Height * 100.0 / cell100))) : request.Height;
  }
  if (em <= 0) em = 11;
  font.setPixelSize(em);
  font.setBold(request.Bold);
  font.setItalic(request.Italic);
  font.setUnderline(request.Underline);
  font.setStrikeOut(request.StrikeOut);
  font.setKerning(false);
  return font;
}
}  // namespace

int FontCellHeight(const QFont& font) {
  static std::map<std::tuple<QString, int, bool, bool>, int> cache;
  auto key = std::make_tuple(font.family(), font.pixelSize(), font.bold(), font.italic());
  auto it = cache.find(key);
  if (it != cache.end()) return it->second;
  int a = 0, d = 0;
  int cell;
  if (!IsBitmapFamily(font.family()) && WindowsCellMetrics(font, a, d)) {
    cell = a + d;
  } else {
    const QFontMetrics m(font);
    cell = m.ascent() + m.descent();
  }
  cache.emplace(std::move(key), cell);
  return cell;
}

// ---------------------------------------------------------------------------------------
// Graphics objects

namespace {
struct RegisterColourNames {
  RegisterColourNames() {
    RegisterIntegerConsts(TypeInfo<TColor>(), &IdentToColor, &ColorToIdent);
    RegisterIntegerConsts(TypeInfo<TFontCharset>(), &IdentToCharset, &CharsetToIdent);
  }
} gRegisterColourNames;
}  // namespace

LUMORA_CLASS_IMPL(TGraphicsObject) {}

void TGraphicsObject::Changed() {
  if (OnChange) OnChange(this);
}

LUMORA_CLASS_IMPL(TFont) {
  c.Property("Charset", &TFont::Charset, &TFont::SetCharset);
  c.Property("Color", &TFont::Color, &TFont::SetColor);
  c.Property("Height", &TFont::Height, &TFont::SetHeight);
  c.Property("Name", &TFont::Name, &TFont::SetName);
  c.Property("Pitch", &TFont::Pitch, &TFont::SetPitch).Default(fpDefault);
  c.Property("Size", &TFont::Size, &TFont::SetSize).Stored(false);
  c.Property("Style", &TFont::Style, &TFont::SetStyle);
}

TFont::TFont() = default;

void TFont::Changed() {
  FHandleValid = false;
  TGraphicsObject::Changed();
}

void TFont::Assign(TPersistent* source) {
  if (auto* f = dynamic_cast<TFont*>(source)) {
    if (f == this) return;
    FCharset = f->FCharset;
    FColor = f->FColor;
    FName = f->FName;
    FPitch = f->FPitch;
    FStyle = f->FStyle;
    // Keeps the size in points when the two fonts are for different resolutions.
    FHeight = f->FPixelsPerInch == FPixelsPerInch ? f->FHeight : -MulDiv(f->Size(), FPixelsPerInch, 72);
    Changed();
    return;
  }
  TGraphicsObject::Assign(source);
}

void TFont::SetCharset(TFontCharset value) {
  if (FCharset == value) return;
  FCharset = value;
  Changed();
}

void TFont::SetColor(TColor value) {
  if (FColor == value) return;
  FColor = value;
  Changed();
}

void TFont::SetHeight(int value) {
  if (FHeight == value) return;
  FHeight = value;
  Changed();
}

void TFont::SetName(const TFontName& value) {
  if (FName == value || value.empty()) return;
  FName = value;
  Changed();
}

void TFont::SetPitch(TFontPitch value) {
  if (FPitch == value) return;
  FPitch = value;
  Changed();
}

int TFont::Size() const { return -MulDiv(FHeight, 72, FPixelsPerInch); }

void TFont::SetSize(int value) { SetHeight(-MulDiv(value, FPixelsPerInch, 72)); }

void TFont::SetStyle(TFontStyles value) {
  if (FStyle == value) return;
  FStyle = value;
  Changed();
}

TFontRequest TFont::Request() const {
  TFontRequest s;
  s.Name = FName;
  s.Height = FHeight;
  s.Bold = FStyle.Contains(fsBold);
  s.Italic = FStyle.Contains(fsItalic);
  s.Underline = FStyle.Contains(fsUnderline);
  s.StrikeOut = FStyle.Contains(fsStrikeOut);
  s.Charset = FCharset;
  return s;
}

const QFont& TFont::Handle() const {
  if (!FHandleValid) {
    FHandle = ResolveFont(Request());
    FHandleValid = true;
  }
  return FHandle;
}

LUMORA_CLASS_IMPL(TBrush) {
  c.Property("Color", &TBrush::Color, &TBrush::SetColor).Default(clWhite);
  c.Property("Style", &TBrush::Style, &TBrush::SetStyle).Default(bsSolid);
}

void TBrush::Assign(TPersistent* source) {
  if (auto* b = dynamic_cast<TBrush*>(source)) {
    FColor = b->FColor;
    FStyle = b->FStyle;
    Changed();
    return;
  }
  TGraphicsObject::Assign(source);
}

void TBrush::SetColor(TColor value) {
  if (FColor == value) return;
  FColor = value;
  if (FStyle == bsClear) FStyle = bsSolid;
  Changed();
}

void TBrush::SetStyle(TBrushStyle value) {
  if (FStyle == value) return;
  FStyle = value;
  Changed();
}

LUMORA_CLASS_IMPL(TPen) {
  c.Property("Color", &TPen::Color, &TPen::SetColor).Default(clBlack);
  c.Property("Mode", &TPen::Mode, &TPen::SetMode).Default(pmCopy);
  c.Property("Style", &TPen::Style, &TPen::SetStyle).Default(psSolid);
  c.Property("Width", &TPen::Width, &TPen::SetWidth).Default(1);
}

void TPen::Assign(TPersistent* source) {
  if (auto* p = dynamic_cast<TPen*>(source)) {
    FColor = p->FColor;
    FMode = p->FMode;
    FStyle = p->FStyle;
    FWidth = p->FWidth;
    Changed();
    return;
  }
  TGraphicsObject::Assign(source);
}

void TPen::SetColor(TColor value) {
  if (FColor == value) return;
  FColor = value;
  Changed();
}

void TPen::SetMode(TPenMode value) {
  if (FMode == value) return;
  FMode = value;
  Changed();
}

void TPen::SetStyle(TPenStyle value) {
  if (FStyle == value) return;
  FStyle = value;
  Changed();
}

void TPen::SetWidth(int value) {
  if (FWidth == value || value < 0) return;
  FWidth = value;
  Changed();
}

// ---- Graphics with data

namespace {

std::string ReadLengthAndBytes(TStream& stream) {
  std::uint32_t length = 0;
  unsigned char b[4];
  stream.ReadBuffer(b, 4);
  length = b[0] | (b[1] << 8) | (b[2] << 16) | (static_cast<std::uint32_t>(b[3]) << 24);
  const std::int64_t left = stream.Size() - stream.Position();
  if (static_cast<std::int64_t>(length) > left) throw EReadError("Stream read error");
  std::string bytes(length, '\0');
  if (length > 0) stream.ReadBuffer(bytes.data(), length);
  return bytes;
}

void WriteLengthAndBytes(TStream& stream, const std::string& bytes) {
  const auto length = static_cast<std::uint32_t>(bytes.size());
  const unsigned char b[4] = {static_cast<unsigned char>(length), static_cast<unsigned char>(length >> 8),
                              static_cast<unsigned char>(length >> 16), static_cast<unsigned char>(length >> 24)};
  stream.WriteBuffer(b, 4);
  stream.WriteBuffer(bytes);
}

std::string EncodeImage(const QImage& image, const char* format) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, format);
  return bytes.toStdString();
}

}  // namespace

LUMORA_CLASS_IMPL(TGraphic) {}

void TGraphic::Assign(TPersistent* source) {
  if (auto* g = dynamic_cast<TGraphic*>(source); g && g->ClassType() == ClassType()) {
    FBytes = g->FBytes;
    FTransparent = g->FTransparent;
    FImageValid = false;
    Changed();
    return;
  }
  if (!source) {
    SetBytes({});
    return;
  }
  TPersistent::Assign(source);
}

void TGraphic::Changed() {
  if (OnChange) OnChange(this);
}

int TGraphic::Width() const { return Image().width(); }
int TGraphic::Height() const { return Image().height(); }

void TGraphic::SetTransparent(bool value) {
  if (FTransparent == value) return;
  FTransparent = value;
  Changed();
}

const QImage& TGraphic::Image() const {
  if (!FImageValid) {
    FImage = FBytes.empty() ? QImage() : Decode();
    FImageValid = true;
  }
  return FImage;
}

QImage TGraphic::Decode() const { return DecodeImageFile(FBytes); }

void TGraphic::SetBytes(std::string bytes) {
  FBytes = std::move(bytes);
  FImageValid = false;
  Changed();
}

void TGraphic::ReadData(TStream& stream) { SetBytes(stream.ReadRest()); }

void TGraphic::WriteData(TStream& stream) { stream.WriteBuffer(FBytes); }

void TGraphic::SetImage(const QImage& image) { SetBytes(EncodeImage(image, "PNG")); }

void TGraphic::DefineProperties(TFiler& filer) {
  filer.DefineBinaryProperty(
      "Data", [this](TStream& s) { ReadData(s); }, [this](TStream& s) { WriteData(s); }, !Empty());
}

LUMORA_CLASS_IMPL(TBitmap) {}

void TBitmap::ReadData(TStream& stream) { SetBytes(ReadLengthAndBytes(stream)); }

void TBitmap::WriteData(TStream& stream) { WriteLengthAndBytes(stream, FBytes); }

void TBitmap::SetImage(const QImage& image) { SetBytes(EncodeImage(image, "BMP")); }

QImage TBitmap::Decode() const { return DecodeBitmapData(FBytes); }

TColor TBitmap::TransparentColor() const {
  if (FTransparentMode == tmFixed && FTransparentColor != clDefault) return FTransparentColor;
  const QColor c = AutoTransparentColor(Image());
  return c.isValid() ? QColorToColor(c) : clDefault;
}

void TBitmap::SetTransparentColor(TColor value) {
  FTransparentColor = value;
  FTransparentMode = value == clDefault ? tmAuto : tmFixed;
  Changed();
}

QImage TBitmap::TransparentImage() const {
  const TColor key = TransparentColor();
  if (Image().isNull() || key == clDefault) return Image();
  return WithTransparentColor(Image(), ColorToQColor(key));
}

LUMORA_CLASS_IMPL(TIcon) {}

void TIcon::SetImage(const QImage& image) { SetBytes(EncodeImage(image, "ICO")); }

QImage TIcon::Decode() const {
  const QImage image = DecodeImageFile(FBytes);
  if (image.isNull() || image.size() == QSize(32, 32)) return image;
  return image.scaled(32, 32, Qt::IgnoreAspectRatio, Qt::FastTransformation);
}

LUMORA_CLASS_IMPL(TJPEGImage) {}

void TJPEGImage::ReadData(TStream& stream) { SetBytes(ReadLengthAndBytes(stream)); }

void TJPEGImage::WriteData(TStream& stream) { WriteLengthAndBytes(stream, FBytes); }

void TJPEGImage::SetImage(const QImage& image) { SetBytes(EncodeImage(image, "JPEG")); }

LUMORA_CLASS_IMPL(TMetafile) {}

LUMORA_CLASS_IMPL(TForeignGraphic) {}

namespace {
std::vector<TClass>& GraphicClasses() {
  static std::vector<TClass> classes = {TBitmap::StaticClass(), TIcon::StaticClass(), TMetafile::StaticClass(),
                                        TJPEGImage::StaticClass()};
  return classes;
}
}  // namespace

void RegisterGraphicClass(TClass graphicClass) {
  for (TClass c : GraphicClasses()) {
    if (c == graphicClass) return;
  }
  GraphicClasses().push_back(graphicClass);
}

LUMORA_CLASS_IMPL(TPicture) {}

TPicture::~TPicture() { delete FGraphic; }

void TPicture::Changed() {
  if (OnChange) OnChange(this);
}

void TPicture::TakeGraphic(TGraphic* graphic) {
  delete FGraphic;
  FGraphic = graphic;
  if (FGraphic) FGraphic->OnChange = [this](TObject*) { Changed(); };
  Changed();
}

void TPicture::SetGraphic(TGraphic* graphic) {
  if (!graphic) {
    TakeGraphic(nullptr);
    return;
  }
  auto* copy = static_cast<TGraphic*>(graphic->ClassType()->CreateObject());
  copy->Assign(graphic);
  if (auto* foreign = dynamic_cast<TForeignGraphic*>(graphic)) {
    static_cast<TForeignGraphic*>(copy)->SetGraphicClassName(foreign->GraphicClassName());
  }
  TakeGraphic(copy);
}

void TPicture::Assign(TPersistent* source) {
  if (!source) {
    TakeGraphic(nullptr);
  } else if (auto* p = dynamic_cast<TPicture*>(source)) {
    if (p != this) SetGraphic(p->FGraphic);
  } else if (auto* g = dynamic_cast<TGraphic*>(source)) {
    SetGraphic(g);
  } else {
    TPersistent::Assign(source);
  }
}

TBitmap* TPicture::Bitmap() {
  if (!dynamic_cast<TBitmap*>(FGraphic)) TakeGraphic(new TBitmap());
  return static_cast<TBitmap*>(FGraphic);
}

TIcon* TPicture::Icon() {
  if (!dynamic_cast<TIcon*>(FGraphic)) TakeGraphic(new TIcon());
  return static_cast<TIcon*>(FGraphic);
}

std::string TPicture::GraphicClassName() const {
  if (!FGraphic) return {};
  if (auto* foreign = dynamic_cast<TForeignGraphic*>(FGraphic)) return foreign->GraphicClassName();
  return FGraphic->ClassName();
}

void TPicture::ReadData(TStream& stream) {
  unsigned char length = 0;
  stream.ReadBuffer(&length, 1);
  std::string name(length, '\0');
  if (length > 0) stream.ReadBuffer(name.data(), length);
  TGraphic* graphic = nullptr;
  for (TClass c : GraphicClasses()) {
    if (SameText(c->ClassName(), name)) {
      graphic = static_cast<TGraphic*>(c->CreateObject());
      break;
    }
  }
  if (!graphic) {
    auto* foreign = new TForeignGraphic();
    foreign->SetGraphicClassName(name);
    graphic = foreign;
  }
  try {
    graphic->ReadData(stream);
  } catch (...) {
    delete graphic;
    throw;
  }
  TakeGraphic(graphic);
}

void TPicture::WriteData(TStream& stream) {
  const std::string name = GraphicClassName().substr(0, 255);
  const auto length = static_cast<unsigned char>(name.size());
  stream.WriteBuffer(&length, 1);
  stream.WriteBuffer(name);
  if (FGraphic) FGraphic->WriteData(stream);
}

void TPicture::DefineProperties(TFiler& filer) {
  filer.DefineBinaryProperty(
      "Data", [this](TStream& s) { ReadData(s); }, [this](TStream& s) { WriteData(s); },
      FGraphic && !FGraphic->Empty());
}
