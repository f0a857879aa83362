#pragma once
// Colours and fonts as the forms name them, resolved to what Qt draws with.

#include "platform/vcl/Charsets.h"

#include <QColor>
#include <QFont>

#include <cstdint>
#include <string>
#include <string_view>

// $00BBGGRR for a plain colour; $80000000 + index for a colour of the system scheme.
using TColor = std::int32_t;

constexpr TColor TColorOf(std::uint32_t v) { return static_cast<TColor>(v); }
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

constexpr TColor clBlack = 0x000000;
constexpr TColor clMaroon = 0x000080;
constexpr TColor clGreen = 0x008000;
constexpr TColor clOlive = 0x008080;
constexpr TColor clNavy = 0x800000;
constexpr TColor clPurple = 0x800080;
constexpr TColor clTeal = 0x808000;
constexpr TColor clGray = 0x808080;
constexpr TColor clSilver = 0xC0C0C0;
constexpr TColor clRed = 0x0000FF;
constexpr TColor clLime = 0x00FF00;
constexpr TColor clYellow = 0x00FFFF;
constexpr TColor clBlue = 0xFF0000;
constexpr TColor clFuchsia = 0xFF00FF;
constexpr TColor clAqua = 0xFFFF00;
constexpr TColor clLtGray = 0xC0C0C0;
constexpr TColor clDkGray = 0x808080;
constexpr TColor clWhite = 0xFFFFFF;
constexpr TColor clMoneyGreen = 0xC0DCC0;
constexpr TColor clSkyBlue = 0xF0CAA6;
constexpr TColor clCream = 0xF0FBFF;
constexpr TColor clMedGray = 0xA4A0A0;
constexpr TColor clNone = 0x1FFFFFFF;
constexpr TColor clDefault = 0x20000000;

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
struct TFontSpec {
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

// The Qt font that draws `spec` with metrics close to the named Windows font.
QFont ResolveFont(const TFontSpec& spec);

// Height of the character cell (ascent + descent) of the resolved font, what a form stores
// as its TextHeight.
int FontCellHeight(const QFont& font);
