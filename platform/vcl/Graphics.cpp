#include "platform/vcl/Graphics.h"

#include "platform/streaming/SysUtils.h"

#include <QDir>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QRawFont>

#include <cmath>
#include <mutex>

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

QString ClassicFontFamily(std::string_view nameBytes, int pixelHeight) {
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

QFont ResolveFont(const TFontSpec& spec) {
  RegisterClassicFonts();
  int em = spec.Height < 0 ? -spec.Height : 0;
  const QString family = ClassicFontFamily(spec.Name, em > 0 ? em : (spec.Height > 0 ? spec.Height : 11));
  QFont font(family);
  font.setStyleStrategy(QFont::PreferDefault);
  if (spec.Height > 0) {
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
    em = cell100 > 0 ? std::max(1, static_cast<int>(std::lround(spec.Height * 100.0 / cell100))) : spec.Height;
  }
  if (em <= 0) em = 11;
  font.setPixelSize(em);
  font.setBold(spec.Bold);
  font.setItalic(spec.Italic);
  font.setUnderline(spec.Underline);
  font.setStrikeOut(spec.StrikeOut);
  font.setKerning(false);
  return font;
}

int FontCellHeight(const QFont& font) {
  int a = 0, d = 0;
  if (!IsBitmapFamily(font.family()) && WindowsCellMetrics(font, a, d)) return a + d;
  const QFontMetrics m(font);
  return m.ascent() + m.descent();
}
