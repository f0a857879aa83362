#pragma once
// 8-bit text of the component model shown as Unicode. Strings in components are the bytes
// of the form, in the ANSI code page that the control's Font.Charset names. Every byte
// survives the trip: bytes the code page does not define become private-use characters
// that turn back into the same bytes.

#include <QString>

#include <cstdint>
#include <string>
#include <string_view>

using TFontCharset = std::uint8_t;

constexpr TFontCharset ANSI_CHARSET = 0;
constexpr TFontCharset DEFAULT_CHARSET = 1;
constexpr TFontCharset SYMBOL_CHARSET = 2;
constexpr TFontCharset MAC_CHARSET = 77;
constexpr TFontCharset SHIFTJIS_CHARSET = 128;
constexpr TFontCharset HANGEUL_CHARSET = 129;
constexpr TFontCharset JOHAB_CHARSET = 130;
constexpr TFontCharset GB2312_CHARSET = 134;
constexpr TFontCharset CHINESEBIG5_CHARSET = 136;
constexpr TFontCharset GREEK_CHARSET = 161;
constexpr TFontCharset TURKISH_CHARSET = 162;
constexpr TFontCharset VIETNAMESE_CHARSET = 163;
constexpr TFontCharset HEBREW_CHARSET = 177;
constexpr TFontCharset ARABIC_CHARSET = 178;
constexpr TFontCharset BALTIC_CHARSET = 186;
constexpr TFontCharset RUSSIAN_CHARSET = 204;
constexpr TFontCharset THAI_CHARSET = 222;
constexpr TFontCharset EASTEUROPE_CHARSET = 238;
constexpr TFontCharset OEM_CHARSET = 255;

// The Windows code page of a charset (1252 for ANSI, DEFAULT and unknown charsets).
int CharsetToCodePage(TFontCharset charset);

// Bytes in the code page of `charset` as Unicode text.
QString AnsiToUnicode(std::string_view bytes, TFontCharset charset = DEFAULT_CHARSET);

// Unicode text as bytes in the code page of `charset`; characters the code page cannot
// hold become '?'.
std::string UnicodeToAnsi(const QString& text, TFontCharset charset = DEFAULT_CHARSET);

// Name/number tables for streaming Charset properties ("RUSSIAN_CHARSET" <-> 204).
bool CharsetToIdent(long value, std::string& ident);
bool IdentToCharset(std::string_view ident, long& value);
