#pragma once
// 8-bit text of the component model shown as Unicode. Strings in components are the bytes
// of the form, in the ANSI code page that the control's Font.Charset names. Every byte
// survives the trip: bytes the code page does not define become private-use characters
// that turn back into the same bytes.

#include "platform/vcl/IntTypes.h"

#include <QString>

#include <cstdint>
#include <string>
#include <string_view>

LUMORA_INTEGER_TYPE(TFontCharset, std::uint8_t, otUByte, 0, 255)

constexpr TFontCharset ANSI_CHARSET = TFontCharset(0);
constexpr TFontCharset DEFAULT_CHARSET = TFontCharset(1);
constexpr TFontCharset SYMBOL_CHARSET = TFontCharset(2);
constexpr TFontCharset MAC_CHARSET = TFontCharset(77);
constexpr TFontCharset SHIFTJIS_CHARSET = TFontCharset(128);
constexpr TFontCharset HANGEUL_CHARSET = TFontCharset(129);
constexpr TFontCharset JOHAB_CHARSET = TFontCharset(130);
constexpr TFontCharset GB2312_CHARSET = TFontCharset(134);
constexpr TFontCharset CHINESEBIG5_CHARSET = TFontCharset(136);
constexpr TFontCharset GREEK_CHARSET = TFontCharset(161);
constexpr TFontCharset TURKISH_CHARSET = TFontCharset(162);
constexpr TFontCharset VIETNAMESE_CHARSET = TFontCharset(163);
constexpr TFontCharset HEBREW_CHARSET = TFontCharset(177);
constexpr TFontCharset ARABIC_CHARSET = TFontCharset(178);
constexpr TFontCharset BALTIC_CHARSET = TFontCharset(186);
constexpr TFontCharset RUSSIAN_CHARSET = TFontCharset(204);
constexpr TFontCharset THAI_CHARSET = TFontCharset(222);
constexpr TFontCharset EASTEUROPE_CHARSET = TFontCharset(238);
constexpr TFontCharset OEM_CHARSET = TFontCharset(255);

// The Windows code page of a charset (1252 for ANSI, DEFAULT and unknown charsets).
int CharsetToCodePage(TFontCharset charset);

// Bytes in the code page of `charset` as Unicode text.
QString AnsiToUnicode(std::string_view bytes, TFontCharset charset = DEFAULT_CHARSET);

// Text of a component's string property as Unicode. Strings that came from a stream's
// wide strings are UTF-8; those are recognised (valid UTF-8 with characters beyond
// ASCII), everything else is in the code page of `charset`.
QString TextToUnicode(std::string_view bytes, TFontCharset charset = DEFAULT_CHARSET);

// Unicode text as bytes in the code page of `charset`; characters the code page cannot
// hold become '?'.
std::string UnicodeToAnsi(const QString& text, TFontCharset charset = DEFAULT_CHARSET);

// Name/number tables for streaming Charset properties ("RUSSIAN_CHARSET" <-> 204).
bool CharsetToIdent(long value, std::string& ident);
bool IdentToCharset(std::string_view ident, long& value);
