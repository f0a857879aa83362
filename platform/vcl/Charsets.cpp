#include "platform/vcl/Charsets.h"

#include "platform/streaming/SysUtils.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <vector>

namespace {

// Bytes that the code page leaves undefined are kept as U+10FF00 + byte, a private
// character that no code page maps to.
constexpr char16_t kKeptHigh = 0xDBFF;           // high surrogate of U+10FF00..U+10FFFF
constexpr char16_t kKeptLowBase = 0xDF00;        // low surrogate of U+10FF00

void AppendKeptByte(QString& s, unsigned char b) {
  s.append(QChar(kKeptHigh));
  s.append(QChar(static_cast<char16_t>(kKeptLowBase + b)));
}

bool IsKeptByteAt(const char16_t* data, qsizetype i, qsizetype n) {
  return i + 1 < n && data[i] == kKeptHigh && data[i + 1] >= kKeptLowBase && data[i + 1] <= kKeptLowBase + 0xFF;
}

const char* IconvName(int codePage) {
  switch (codePage) {
    case 874: return "CP874";
    case 932: return "CP932";
    case 936: return "CP936";
    case 949: return "CP949";
    case 950: return "CP950";
    case 1250: return "CP1250";
    case 1251: return "CP1251";
    case 1253: return "CP1253";
    case 1254: return "CP1254";
    case 1255: return "CP1255";
    case 1256: return "CP1256";
    case 1257: return "CP1257";
    case 1258: return "CP1258";
    case 1361: return "CP1361";
    case 437: return "CP437";
    case 10000: return "MACINTOSH";
    case 28591: return "ISO-8859-1";
    default: return "CP1252";
  }
}

bool Valid(iconv_t cd) { return cd != reinterpret_cast<iconv_t>(-1); }

// Converters opened on first use and kept for the thread's life; closed when it ends.
class TConverterCache {
 public:
  TConverterCache() = default;
  TConverterCache(const TConverterCache&) = delete;
  TConverterCache& operator=(const TConverterCache&) = delete;
  ~TConverterCache() {
    for (auto& entry : FConverters)
      if (Valid(entry.second)) iconv_close(entry.second);
  }

  iconv_t Get(int codePage, bool toUnicode) {
    const auto key = std::make_pair(codePage, toUnicode);
    auto it = FConverters.find(key);
    if (it != FConverters.end()) return it->second;
    iconv_t cd = toUnicode ? iconv_open("UTF-16LE", IconvName(codePage)) : iconv_open(IconvName(codePage), "UTF-16LE");
    FConverters.emplace(key, cd);
    return cd;
  }

 private:
  std::map<std::pair<int, bool>, iconv_t> FConverters;
};

// One converter per direction and code page.
iconv_t Converter(int codePage, bool toUnicode) {
  thread_local TConverterCache cache;
  return cache.Get(codePage, toUnicode);
}

// Writes out what a decoder holds back and returns it to its initial state.
void FlushDecoder(iconv_t cd, std::vector<char16_t>& out, QString& result) {
  char* outPtr = reinterpret_cast<char*>(out.data());
  size_t outLeft = out.size() * sizeof(char16_t);
  iconv(cd, nullptr, nullptr, &outPtr, &outLeft);
  const size_t produced = (out.size() * sizeof(char16_t) - outLeft) / sizeof(char16_t);
  result.append(reinterpret_cast<const QChar*>(out.data()), static_cast<qsizetype>(produced));
}

}  // namespace

int CharsetToCodePage(TFontCharset charset) {
  switch (charset) {
    case SYMBOL_CHARSET: return 28591;
    case MAC_CHARSET: return 10000;
    case SHIFTJIS_CHARSET: return 932;
    case HANGEUL_CHARSET: return 949;
    case JOHAB_CHARSET: return 1361;
    case GB2312_CHARSET: return 936;
    case CHINESEBIG5_CHARSET: return 950;
    case GREEK_CHARSET: return 1253;
    case TURKISH_CHARSET: return 1254;
    case VIETNAMESE_CHARSET: return 1258;
    case HEBREW_CHARSET: return 1255;
    case ARABIC_CHARSET: return 1256;
    case BALTIC_CHARSET: return 1257;
    case RUSSIAN_CHARSET: return 1251;
    case THAI_CHARSET: return 874;
    case EASTEUROPE_CHARSET: return 1250;
    case OEM_CHARSET: return 437;
    default: return 1252;
  }
}

namespace {

// One character at a time: each byte sequence that decodes to a character which encodes
// back to the same bytes becomes that character; every other byte is kept as itself.
// Some code pages map two byte sequences to one character (Shift-JIS has NEC and IBM
// copies of the same rows), and only this keeps both.
QString DecodeExactly(std::string_view bytes, TFontCharset charset) {
  QString result;
  result.reserve(static_cast<qsizetype>(bytes.size()));
  iconv_t cd = Converter(CharsetToCodePage(charset), true);
  std::size_t i = 0;
  while (i < bytes.size()) {
    const unsigned char b = static_cast<unsigned char>(bytes[i]);
    if (b < 0x80) {
      result.append(QChar(static_cast<char16_t>(b)));
      ++i;
      continue;
    }
    bool taken = false;
    for (std::size_t n = 1; n <= 2 && !taken && i + n <= bytes.size(); ++n) {
      if (!Valid(cd)) break;
      iconv(cd, nullptr, nullptr, nullptr, nullptr);
      char16_t out[4];
      char* in = const_cast<char*>(bytes.data() + i);
      std::size_t inLeft = n;
      char* outPtr = reinterpret_cast<char*>(out);
      std::size_t outLeft = sizeof(out);
      if (iconv(cd, &in, &inLeft, &outPtr, &outLeft) == static_cast<std::size_t>(-1) || inLeft != 0) continue;
      const QString ch(reinterpret_cast<const QChar*>(out), static_cast<qsizetype>((sizeof(out) - outLeft) / 2));
      if (ch.isEmpty() || UnicodeToAnsi(ch, charset) != bytes.substr(i, n)) continue;
      result.append(ch);
      i += n;
      taken = true;
    }
    if (!taken) {
      AppendKeptByte(result, b);
      ++i;
    }
  }
  if (Valid(cd)) iconv(cd, nullptr, nullptr, nullptr, nullptr);
  return result;
}

// The whole text through the converter at once.
QString AnsiToUnicodeFast(std::string_view bytes, TFontCharset charset) {
  QString result;
  if (bytes.empty()) return result;
  bool ascii = true;
  for (char c : bytes) {
    if (static_cast<unsigned char>(c) >= 0x80) {
      ascii = false;
      break;
    }
  }
  if (ascii) return QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));

  iconv_t cd = Converter(CharsetToCodePage(charset), true);
  result.reserve(static_cast<qsizetype>(bytes.size()));
  std::vector<char16_t> out(bytes.size() * 2 + 8);
  char* in = const_cast<char*>(bytes.data());
  size_t inLeft = bytes.size();
  while (inLeft > 0) {
    if (!Valid(cd)) {
      AppendKeptByte(result, static_cast<unsigned char>(*in));
      ++in;
      --inLeft;
      continue;
    }
    char* outPtr = reinterpret_cast<char*>(out.data());
    size_t outLeft = out.size() * sizeof(char16_t);
    const size_t rc = iconv(cd, &in, &inLeft, &outPtr, &outLeft);
    const size_t produced = (out.size() * sizeof(char16_t) - outLeft) / sizeof(char16_t);
    result.append(reinterpret_cast<const QChar*>(out.data()), static_cast<qsizetype>(produced));
    if (rc == static_cast<size_t>(-1)) {
      if (errno == E2BIG) continue;
      // An undefined byte or a lead byte without its trail: keep the byte itself, after
      // what the converter still holds back (a letter waiting for a combining mark).
      FlushDecoder(cd, out, result);
      AppendKeptByte(result, static_cast<unsigned char>(*in));
      ++in;
      --inLeft;
    }
  }
  if (Valid(cd)) FlushDecoder(cd, out, result);
  return result;
}

}  // namespace

QString AnsiToUnicode(std::string_view bytes, TFontCharset charset) {
  QString result = AnsiToUnicodeFast(bytes, charset);
  // Only characters that turn back into the same bytes may stand for them.
  const bool ascii = result.size() == static_cast<qsizetype>(bytes.size()) &&
                     std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (!ascii && UnicodeToAnsi(result, charset) != bytes) return DecodeExactly(bytes, charset);
  return result;
}

namespace {
// Whether the bytes are UTF-8 with at least one character beyond ASCII.
bool IsMultiByteUtf8(std::string_view s) {
  bool multi = false;
  size_t i = 0;
  while (i < s.size()) {
    const unsigned char c = static_cast<unsigned char>(s[i]);
    if (c < 0x80) {
      ++i;
      continue;
    }
    int n = 0;
    if (c >= 0xC2 && c <= 0xDF) {
      n = 1;
    } else if (c >= 0xE0 && c <= 0xEF) {
      n = 2;
    } else if (c >= 0xF0 && c <= 0xF4) {
      n = 3;
    } else {
      return false;
    }
    for (int k = 1; k <= n; ++k) {
      if (i + k >= s.size()) return false;
      const unsigned char t = static_cast<unsigned char>(s[i + k]);
      if (t < 0x80 || t > 0xBF) return false;
    }
    multi = true;
    i += n + 1;
  }
  return multi;
}
}  // namespace

QString TextToUnicode(std::string_view bytes, TFontCharset charset) {
  if (IsMultiByteUtf8(bytes)) return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
  return AnsiToUnicode(bytes, charset);
}

std::string UnicodeToAnsi(const QString& text, TFontCharset charset) {
  std::string result;
  if (text.isEmpty()) return result;
  bool ascii = true;
  for (QChar ch : text) {
    if (ch.unicode() >= 0x80) {
      ascii = false;
      break;
    }
  }
  if (ascii) return text.toLatin1().toStdString();

  iconv_t cd = Converter(CharsetToCodePage(charset), false);
  const char16_t* data = reinterpret_cast<const char16_t*>(text.utf16());
  const qsizetype n = text.size();
  qsizetype i = 0;
  std::vector<char> out;
  while (i < n) {
    // A run of characters that are not kept bytes goes through the converter at once.
    qsizetype j = i;
    while (j < n && !IsKeptByteAt(data, j, n)) ++j;
    if (j > i) {
      if (!Valid(cd)) {
        result.append(static_cast<size_t>(j - i), '?');
      } else {
        char* in = reinterpret_cast<char*>(const_cast<char16_t*>(data + i));
        size_t inLeft = static_cast<size_t>(j - i) * sizeof(char16_t);
        out.resize(static_cast<size_t>(j - i) * 4 + 8);
        while (inLeft > 0) {
          char* outPtr = out.data();
          size_t outLeft = out.size();
          const size_t rc = iconv(cd, &in, &inLeft, &outPtr, &outLeft);
          result.append(out.data(), out.size() - outLeft);
          if (rc == static_cast<size_t>(-1)) {
            if (errno == E2BIG) continue;
            // Not in the code page: one '?' for the character (both halves of a pair).
            const char16_t c = *reinterpret_cast<const char16_t*>(in);
            const size_t skip = (c >= 0xD800 && c < 0xDC00 && inLeft >= 4) ? 4 : 2;
            result.push_back('?');
            in += skip;
            inLeft -= std::min(skip, inLeft);
            iconv(cd, nullptr, nullptr, nullptr, nullptr);
          }
        }
        // Flush any shift state the converter holds.
        char* outPtr = out.data();
        size_t outLeft = out.size();
        iconv(cd, nullptr, nullptr, &outPtr, &outLeft);
        result.append(out.data(), out.size() - outLeft);
      }
      i = j;
    }
    while (IsKeptByteAt(data, i, n)) {
      result.push_back(static_cast<char>(data[i + 1] - kKeptLowBase));
      i += 2;
    }
  }
  return result;
}

namespace {
struct CharsetName {
  long Value;
  const char* Name;
};
constexpr CharsetName kCharsets[] = {
    {ANSI_CHARSET, "ANSI_CHARSET"},
    {DEFAULT_CHARSET, "DEFAULT_CHARSET"},
    {SYMBOL_CHARSET, "SYMBOL_CHARSET"},
    {MAC_CHARSET, "MAC_CHARSET"},
    {SHIFTJIS_CHARSET, "SHIFTJIS_CHARSET"},
    {HANGEUL_CHARSET, "HANGEUL_CHARSET"},
    {JOHAB_CHARSET, "JOHAB_CHARSET"},
    {GB2312_CHARSET, "GB2312_CHARSET"},
    {CHINESEBIG5_CHARSET, "CHINESEBIG5_CHARSET"},
    {GREEK_CHARSET, "GREEK_CHARSET"},
    {TURKISH_CHARSET, "TURKISH_CHARSET"},
    {VIETNAMESE_CHARSET, "VIETNAMESE_CHARSET"},
    {HEBREW_CHARSET, "HEBREW_CHARSET"},
    {ARABIC_CHARSET, "ARABIC_CHARSET"},
    {BALTIC_CHARSET, "BALTIC_CHARSET"},
    {RUSSIAN_CHARSET, "RUSSIAN_CHARSET"},
    {THAI_CHARSET, "THAI_CHARSET"},
    {EASTEUROPE_CHARSET, "EASTEUROPE_CHARSET"},
    {OEM_CHARSET, "OEM_CHARSET"},
};
}  // namespace

bool CharsetToIdent(long value, std::string& ident) {
  for (const auto& c : kCharsets) {
    if (c.Value == value) {
      ident = c.Name;
      return true;
    }
  }
  return false;
}

bool IdentToCharset(std::string_view ident, long& value) {
  for (const auto& c : kCharsets) {
    if (SameText(ident, c.Name)) {
      value = c.Value;
      return true;
    }
  }
  return false;
}
