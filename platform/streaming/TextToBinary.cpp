// Form text to binary form stream: a tokenizer and a recursive-descent parser that
// write values as they are read.

#include "platform/streaming/FloatText.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ObjectTextInternal.h"
#include "platform/streaming/Values.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <unordered_map>

namespace {

enum : int {
  toEOF = 0,
  toSymbol = 1,
  toString = 2,
  toInteger = 3,
  toFloat = 4,
};

// Value of a hex digit, or -1.
struct THexValues {
  signed char v[256];
  constexpr THexValues() : v() {
    for (int i = 0; i < 256; ++i) v[i] = -1;
    for (int i = 0; i < 10; ++i) v['0' + i] = static_cast<signed char>(i);
    for (int i = 0; i < 6; ++i) {
      v['A' + i] = static_cast<signed char>(10 + i);
      v['a' + i] = static_cast<signed char>(10 + i);
    }
  }
};
constexpr THexValues HexValues;

// Blanks separate tokens. Other control characters are taken as parts of names, as
// they stand in names that damaged streams carried into text.
inline bool IsBlank(unsigned char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
inline bool IsSymbolStart(unsigned char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c >= 0x80 || (c < ' ' && !IsBlank(c));
}
inline bool IsSymbolChar(unsigned char c) { return IsSymbolStart(c) || (c >= '0' && c <= '9'); }
inline bool IsDigit(unsigned char c) { return c >= '0' && c <= '9'; }

// Case-insensitive match of a symbol against a lower-case keyword.
inline bool KeywordIs(std::string_view symbol, std::string_view keyword) {
  if (symbol.size() != keyword.size()) return false;
  for (std::size_t i = 0; i < symbol.size(); ++i)
    if ((symbol[i] | 0x20) != keyword[i]) return false;
  return true;
}

class TTextToBinary {
public:
  TTextToBinary(std::string_view text, std::string& out) : FCur(text.data()), FEnd(text.data() + text.size()), FWriter(out) {
    out.reserve(text.size() / 4 * 3 + 256);  // streams run from 0.4 (pictures) to 0.7 (components) of their text
    AdviseHugePages(out.data(), out.capacity());
    // A UTF-8 byte-order mark in front of the text carries no content.
    if (text.substr(0, 3) == "\xEF\xBB\xBF") FCur += 3;
  }

  void Convert() {
    NextToken();
    FWriter.WriteSignature();
    ConvertObject(0);
    // Anything but blanks after the root's end would be lost: refuse it. Control
    // characters there (an end-of-file mark, padding) carry nothing.
    while (FCur < FEnd && static_cast<unsigned char>(*FCur) <= ' ') {
      if (*FCur == '\n') ++FLine;
      ++FCur;
    }
    if (FCur < FEnd) {
      FTokenLine = FLine;
      Error("End of text expected");
    }
  }

private:
  [[noreturn]] void Error(std::string_view what) const {
    throw EParserError(Format(RtlConsts::SParseError, what, FTokenLine));
  }
  [[noreturn]] void ErrorAtCursor(std::string_view what) {
    FTokenLine = FLine;
    Error(what);
  }
  void CheckChar(char c) {
    if (FToken != static_cast<unsigned char>(c)) {
      const char s[2] = {c, 0};
      Error(Format(RtlConsts::SCharExpected, s));
    }
  }
  bool SymbolIs(std::string_view word) const { return FToken == toSymbol && KeywordIs(FTokenText, word); }
  void CheckSymbol(std::string_view word) {
    if (!SymbolIs(word)) Error(Format(RtlConsts::SSymbolExpected, word));
  }
  void CheckIdentifier() {
    if (FToken != toSymbol) Error(RtlConsts::SIdentifierExpected);
  }
  // Names are ShortStrings in the stream.
  void CheckNameLength() {
    if (FTokenText.size() > 255) Error(RtlConsts::SIdentifierExpected);
  }
  void CheckDepth(int depth) {
    if (depth > MaxNestingDepth) Error(Format(RtlConsts::SNestingTooDeep, MaxNestingDepth));
  }
  bool AtObjectKeyword() const {
    return FToken == toSymbol && (KeywordIs(FTokenText, "object") || KeywordIs(FTokenText, "inherited") ||
                                  KeywordIs(FTokenText, "inline"));
  }

  // --- tokenizer ---

  void SkipBlanks() {
    while (FCur < FEnd) {
      const unsigned char c = static_cast<unsigned char>(*FCur);
      if (!IsBlank(c)) return;
      if (c == '\n' || (c == '\r' && (FCur + 1 == FEnd || FCur[1] != '\n'))) ++FLine;
      ++FCur;
    }
  }

  void NextToken() {
    SkipBlanks();
    FTokenLine = FLine;
    const char* start = FCur;
    if (FCur >= FEnd) {
      FToken = toEOF;
      FTokenText = {};
      return;
    }
    const unsigned char c = static_cast<unsigned char>(*FCur);
    if (IsSymbolStart(c)) {
      do ++FCur;
      while (FCur < FEnd && IsSymbolChar(static_cast<unsigned char>(*FCur)));
      FToken = toSymbol;
    } else if (c == '\'' || c == '#') {
      FStr.clear();
      FWide.clear();
      FStrIsWide = false;
      ReadStringPieces();
      FToken = toString;
    } else if (c == '$') {
      ++FCur;
      while (FCur < FEnd && HexValues.v[static_cast<unsigned char>(*FCur)] >= 0) ++FCur;
      FToken = toInteger;
    } else if (IsDigit(c) || (c == '-' && FCur + 1 < FEnd && IsDigit(static_cast<unsigned char>(FCur[1])))) {
      ++FCur;
      while (FCur < FEnd && IsDigit(static_cast<unsigned char>(*FCur))) ++FCur;
      FToken = toInteger;
      if (FCur < FEnd && *FCur == '.') {
        FToken = toFloat;
        ++FCur;
        while (FCur < FEnd && IsDigit(static_cast<unsigned char>(*FCur))) ++FCur;
      }
      if (FCur < FEnd && (*FCur == 'e' || *FCur == 'E')) {
        const char* mark = FCur;
        ++FCur;
        if (FCur < FEnd && (*FCur == '+' || *FCur == '-')) ++FCur;
        if (FCur < FEnd && IsDigit(static_cast<unsigned char>(*FCur))) {
          FToken = toFloat;
          while (FCur < FEnd && IsDigit(static_cast<unsigned char>(*FCur))) ++FCur;
        } else {
          FCur = mark;
        }
      }
      FFloatSuffix = 0;
      if (FCur < FEnd) {
        const char s = *FCur;
        if (s == 's' || s == 'S' || s == 'c' || s == 'C' || s == 'd' || s == 'D') {
          // A suffix only when it is not the start of a word glued to the number.
          if (FCur + 1 == FEnd || !IsSymbolChar(static_cast<unsigned char>(FCur[1]))) {
            FFloatSuffix = static_cast<char>(s | 0x20);
            FTokenText = std::string_view(start, static_cast<std::size_t>(FCur - start));
            ++FCur;
            FToken = toFloat;
            return;
          }
        }
      }
    } else {
      ++FCur;
      FToken = c;
    }
    FTokenText = std::string_view(start, static_cast<std::size_t>(FCur - start));
  }

  // A #code above 127 marks a string of the wide kinds: the 8-bit kinds are written
  // with their bytes raw inside the quotes, so only wide strings show such codes.
  void AddCode(std::uint32_t code) {
    if (!FStrIsWide) {
      if (code <= 127) {
        FStr.push_back(static_cast<char>(code));
        return;
      }
      FStrIsWide = true;
      FWide.reserve(FStr.size() + 16);
      for (unsigned char b : FStr) FWide.push_back(b);
    }
    FWide.push_back(static_cast<char16_t>(code));
  }

  // Quoted runs and #codes with nothing between them.
  void ReadStringPieces() {
    for (;;) {
      if (FCur >= FEnd) return;
      if (*FCur == '\'') {
        ++FCur;
        for (;;) {
          // Copy the plain run up to the next apostrophe or line end in one go.
          const char* run = FCur;
          while (FCur < FEnd && *FCur != '\'' && *FCur != '\r' && *FCur != '\n') ++FCur;
          if (FCur > run) {
            if (!FStrIsWide) {
              FStr.append(run, static_cast<std::size_t>(FCur - run));
            } else {
              for (const char* p = run; p < FCur; ++p) FWide.push_back(static_cast<unsigned char>(*p));
            }
          }
          if (FCur >= FEnd || *FCur != '\'') Error(RtlConsts::SInvalidString);
          ++FCur;
          if (FCur < FEnd && *FCur == '\'') {
            AddCode('\'');
            ++FCur;
            continue;
          }
          break;
        }
      } else if (*FCur == '#') {
        ++FCur;
        std::uint32_t code = 0;
        if (FCur < FEnd && *FCur == '$') {
          ++FCur;
          const char* digits = FCur;
          while (FCur < FEnd && HexValues.v[static_cast<unsigned char>(*FCur)] >= 0) {
            code = code * 16 + static_cast<std::uint32_t>(HexValues.v[static_cast<unsigned char>(*FCur)]);
            if (code > 0xFFFF) Error(RtlConsts::SInvalidString);
            ++FCur;
          }
          if (FCur == digits) Error(RtlConsts::SInvalidString);
        } else {
          const char* digits = FCur;
          while (FCur < FEnd && IsDigit(static_cast<unsigned char>(*FCur))) {
            code = code * 10 + static_cast<std::uint32_t>(*FCur - '0');
            if (code > 0xFFFF) Error(RtlConsts::SInvalidString);
            ++FCur;
          }
          if (FCur == digits) Error(RtlConsts::SInvalidString);
        }
        AddCode(code);
      } else {
        return;
      }
    }
  }

  std::int64_t TokenInt() {
    std::string_view t = FTokenText;
    std::uint64_t value = 0;
    bool negative = false;
    bool overflow = false;
    if (!t.empty() && t[0] == '$') {
      if (t.size() == 1) Error(RtlConsts::SNumberExpected);
      for (std::size_t i = 1; i < t.size(); ++i) {
        if (value >> 60) overflow = true;
        value = value * 16 + static_cast<std::uint64_t>(HexValues.v[static_cast<unsigned char>(t[i])]);
      }
      // Hex is a bit pattern: $FFFFFFFF is -1 as a 32-bit integer would read it.
      if (!overflow) {
        if (value <= 0xFFFFFFFFull) return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
        return static_cast<std::int64_t>(value);
      }
    } else {
      std::size_t i = 0;
      if (t[0] == '-') {
        negative = true;
        i = 1;
      }
      for (; i < t.size(); ++i) {
        const std::uint64_t d = static_cast<std::uint64_t>(t[i] - '0');
        if (value > (std::numeric_limits<std::uint64_t>::max() - d) / 10) overflow = true;
        value = value * 10 + d;
      }
      const std::uint64_t limit = negative ? (std::uint64_t{1} << 63) : (std::uint64_t{1} << 63) - 1;
      if (!overflow && value <= limit) return negative ? static_cast<std::int64_t>(0 - value) : static_cast<std::int64_t>(value);
    }
    Error(Format(RtlConsts::SInvalidInteger, FTokenText));
  }

  long double TokenFloat() {
    long double value = 0;
    if (!ParseFloatText(FTokenText, value)) Error(Format(RtlConsts::SInvalidFloat, FTokenText));
    return value;
  }

  // --- parser ---

  void ConvertObject(int depth, int index = 0, TSiblingNames* siblings = nullptr) {
    CheckDepth(depth);
    const std::size_t keyLength = FKey.size();
    if (FToken != toSymbol) Error(RtlConsts::SIdentifierExpected);
    TFilerFlags flags = 0;
    if (SameText(FTokenText, "inherited"))
      flags = ffInherited;
    else if (SameText(FTokenText, "inline"))
      flags = ffInline;
    else if (!SameText(FTokenText, "object"))
      Error(Format(RtlConsts::SSymbolExpected, "object"));
    NextToken();
    CheckIdentifier();
    CheckNameLength();
    std::string_view name = FTokenText;
    std::string_view className;
    NextToken();
    if (FToken == ':') {
      NextToken();
      CheckIdentifier();
      CheckNameLength();
      className = FTokenText;
      NextToken();
    } else {
      className = name;
      name = {};
    }
    std::int32_t childPos = -1;
    if (FToken == '[') {
      NextToken();
      if (FToken != toInteger) Error(RtlConsts::SNumberExpected);
      const std::int64_t pos = TokenInt();
      if (pos < std::numeric_limits<std::int32_t>::min() || pos > std::numeric_limits<std::int32_t>::max())
        Error(Format(RtlConsts::SInvalidInteger, FTokenText));
      childPos = static_cast<std::int32_t>(pos);
      flags |= ffChildPos;
      NextToken();
      CheckChar(']');
      NextToken();
    }
    FWriter.WriteComponentHeader(flags, childPos, className, name);
    if (FReference) {
      AppendComponentKey(FKey, name, index, siblings ? siblings->Occurrence(name) : 0);
      // The properties come before the children: these are this component's alone.
      FPropertyNames.Clear();
      FReferenceComponent = FReference->FindComponent(FKey);
    }
    while (!(SymbolIs("end") || AtObjectKeyword())) {
      if (FToken == toEOF) Error(Format(RtlConsts::SSymbolExpected, "end"));
      ConvertProperty(depth, true);
    }
    FWriter.WriteListEnd();
    int childIndex = 0;
    std::optional<TSiblingNames> children;
    while (!SymbolIs("end")) {
      if (!AtObjectKeyword()) Error(Format(RtlConsts::SSymbolExpected, "end"));
      if (FReference && !children) children.emplace();
      ConvertObject(depth + 1, childIndex++, children ? &*children : nullptr);
    }
    FWriter.WriteListEnd();
    NextToken();
    FKey.resize(keyLength);
  }

  void ConvertProperty(int depth, bool ofComponent = false) {
    const std::size_t lengthAt = FWriter.Output().size();
    ConvertPropertyAt(depth);
    if (ofComponent && FReference) KeepReferenceValue(lengthAt);
  }

  void ConvertPropertyAt(int depth) {
    CheckIdentifier();
    std::string& out = FWriter.Output();
    const std::size_t lengthAt = out.size();
    out.push_back('\0');
    out.append(FTokenText);
    NextToken();
    while (FToken == '.') {
      NextToken();
      CheckIdentifier();
      out.push_back('.');
      out.append(FTokenText);
      NextToken();
    }
    const std::size_t length = out.size() - lengthAt - 1;
    if (length > 255) Error(RtlConsts::SIdentifierExpected);
    out[lengthAt] = static_cast<char>(length);
    CheckChar('=');
    const int equalsLine = FTokenLine;
    if (RawIdentOnLine()) return;
    NextToken();
    if (AtEmptyValue(equalsLine)) {
      FWriter.WriteValue(vaIdent);
      FWriter.WriteByte(0);
      return;
    }
    ConvertValue(depth + 1);
  }

  void ConvertValue(int depth) {
    CheckDepth(depth);
    switch (FToken) {
      case toString: ConvertString(); return;
      case toInteger:
        FWriter.WriteInteger(TokenInt());
        NextToken();
        return;
      case toFloat: ConvertFloat(); return;
      case toSymbol:
      case '.': ConvertIdent(); return;
      case '[': ConvertSet(); return;
      case '(':
        NextToken();
        FWriter.WriteListBegin();
        while (FToken != ')') {
          if (FToken == toEOF) Error(Format(RtlConsts::SCharExpected, ")"));
          ConvertValue(depth + 1);
        }
        FWriter.WriteListEnd();
        NextToken();
        return;
      case '{': ConvertBinary(); return;
      case '<': ConvertCollection(depth); return;
      default: Error(RtlConsts::SInvalidPropertyValue);
    }
  }

  // A symbol value: dotted names as written ("Form2.DataSource1", ".Owner"); the dots
  // and names must touch, since a blank ends the value.
  void ConvertIdent() {
    const char* start = FTokenText.data();
    const char* end = start + FTokenText.size();
    const int line = FTokenLine;
    bool afterDot = FToken == '.';
    NextToken();
    while (FTokenText.data() == end && (FToken == '.' || (afterDot && FToken == toSymbol))) {
      afterDot = FToken == '.';
      end = FTokenText.data() + FTokenText.size();
      NextToken();
    }
    const std::string_view ident(start, static_cast<std::size_t>(end - start));
    if (ident.size() > 255) {
      FTokenLine = line;
      Error(RtlConsts::SIdentifierExpected);
    }
    FWriter.WriteIdent(ident);
  }

  // Some Delphi versions wrote an empty identifier as whatever bytes were in memory,
  // control characters included. Such a value is kept as it stands: the rest of the
  // line, taken as one identifier.
  bool RawIdentOnLine() {
    const char* p = FCur;
    while (p < FEnd && (*p == ' ' || *p == '\t')) ++p;
    const char* start = p;
    // Values that open with their own delimiters are never taken this way.
    if (p < FEnd && (*p == '\'' || *p == '#' || *p == '(' || *p == '{' || *p == '<' || *p == '[')) return false;
    bool control = false;
    while (p < FEnd && *p != '\r' && *p != '\n') {
      const unsigned char c = static_cast<unsigned char>(*p);
      if (c < ' ' && c != '\t') control = true;
      ++p;
    }
    if (!control) return false;
    const std::size_t length = static_cast<std::size_t>(p - start);
    if (length > 255) Error(RtlConsts::SInvalidPropertyValue);
    FWriter.WriteValue(vaIdent);
    FWriter.WriteShortString(std::string_view(start, length));
    FCur = p;
    NextToken();
    return true;
  }

  // After "Name =" at the end of a line: an empty identifier when the next line
  // starts something else (a property, a component, "end").
  bool AtEmptyValue(int equalsLine) {
    if (FTokenLine == equalsLine) return false;
    if (FToken == toEOF) return true;
    if (FToken != toSymbol) return false;
    if (KeywordIs(FTokenText, "end") || AtObjectKeyword()) return true;
    const char* cur = FCur;
    const int line = FLine, tokenLine = FTokenLine, token = FToken;
    const std::string_view text = FTokenText;
    NextToken();
    const bool propertyFollows = FToken == '=' || FToken == '.';
    FCur = cur;
    FLine = line;
    FTokenLine = tokenLine;
    FToken = token;
    FTokenText = text;
    return propertyFollows;
  }

  void ConvertString() {
    // Pieces joined by '+' form one value; the buffers keep growing across them.
    for (;;) {
      const char* mark = FCur;
      const int line = FLine;
      SkipBlanks();
      if (FCur < FEnd && *FCur == '+') {
        ++FCur;
        SkipBlanks();
        FTokenLine = FLine;
        if (FCur >= FEnd || (*FCur != '\'' && *FCur != '#')) Error(RtlConsts::SStringExpected);
        ReadStringPieces();
        continue;
      }
      FCur = mark;
      FLine = line;
      break;
    }
    if (FStrIsWide) {
      // Later Delphi versions write text with characters beyond ASCII as UTF-8.
      FUtf8.clear();
      AppendUtf8(FUtf8, FWide);
      FWriter.WriteUTF8String(FUtf8);
    } else
      FWriter.WriteString(FStr);
    NextToken();
  }

  void ConvertFloat() {
    const long double value = TokenFloat();
    switch (FFloatSuffix) {
      case 's': FWriter.WriteSingle(static_cast<float>(value)); break;
      case 'd': FWriter.WriteDate(static_cast<double>(value)); break;
      case 'c':
        if (!(value > -9.3e18L && value < 9.3e18L)) Error(Format(RtlConsts::SInvalidFloat, FTokenText));
        FWriter.WriteCurrency(std::llrintl(value));
        break;
      default: FWriter.WriteExtended(value); break;
    }
    FFloatSuffix = 0;
    NextToken();
  }

  void ConvertSet() {
    FWriter.WriteSetBegin();
    NextToken();
    if (FToken != ']') {
      for (;;) {
        CheckIdentifier();
        if (FTokenText.size() > 255) Error(RtlConsts::SIdentifierExpected);
        FWriter.WriteSetElement(FTokenText);
        NextToken();
        if (FToken == ']') break;
        CheckChar(',');
        NextToken();
      }
    }
    FWriter.WriteSetEnd();
    NextToken();
  }

  void ConvertBinary() {
    // The cursor is just past '{'; decode pairs of hex digits up to '}'.
    std::string& out = FWriter.Output();
    FWriter.WriteValue(vaBinary);
    const std::size_t lengthAt = out.size();
    FWriter.WriteUInt32Raw(0);
    const std::size_t dataAt = out.size();
    // Room for every byte up to the closing brace, then trim.
    const void* close = std::memchr(FCur, '}', static_cast<std::size_t>(FEnd - FCur));
    const char* limit = close ? static_cast<const char*>(close) : FEnd;
    out.resize(dataAt + static_cast<std::size_t>(limit - FCur) / 2 + 1);
    char* dst = out.data() + dataAt;
    const auto* p = reinterpret_cast<const unsigned char*>(FCur);
    const auto* end = reinterpret_cast<const unsigned char*>(FEnd);
    for (;;) {
      // Fast path: runs of hex digit pairs.
      while (end - p >= 2) {
        const int hi = HexValues.v[p[0]];
        const int lo = HexValues.v[p[1]];
        if ((hi | lo) < 0) break;
        *dst++ = static_cast<char>((hi << 4) | lo);
        p += 2;
      }
      if (p >= end) break;
      const unsigned char c = *p;
      if (c == '}') break;
      if (c <= ' ') {
        if (c == '\n' || (c == '\r' && (p + 1 == end || p[1] != '\n'))) ++FLine;
        ++p;
        continue;
      }
      // A digit split from its partner by blanks still makes a pair.
      if (HexValues.v[c] >= 0) {
        const unsigned char* q = p + 1;
        while (q < end && *q <= ' ' ) {
          if (*q == '\n' || (*q == '\r' && (q + 1 == end || q[1] != '\n'))) ++FLine;
          ++q;
        }
        if (q < end && HexValues.v[*q] >= 0) {
          *dst++ = static_cast<char>((HexValues.v[c] << 4) | HexValues.v[*q]);
          p = q + 1;
          continue;
        }
        p = q;
      }
      FCur = reinterpret_cast<const char*>(p);
      ErrorAtCursor(RtlConsts::SInvalidBinary);
    }
    if (p >= end) {
      FCur = FEnd;
      ErrorAtCursor(RtlConsts::SInvalidBinary);
    }
    FCur = reinterpret_cast<const char*>(p + 1);
    const std::size_t length = static_cast<std::size_t>(dst - (out.data() + dataAt));
    out.resize(dataAt + length);
    if (length > 0xFFFFFFFFu) Error(RtlConsts::SInvalidBinary);
    const std::uint32_t length32 = static_cast<std::uint32_t>(length);
    std::memcpy(out.data() + lengthAt, &length32, 4);
    NextToken();
  }

  void ConvertCollection(int depth) {
    FWriter.WriteCollectionBegin();
    NextToken();
    while (FToken != '>') {
      if (FToken == toEOF) Error(Format(RtlConsts::SCharExpected, ">"));
      CheckSymbol("item");
      NextToken();
      if (FToken == '[') {
        NextToken();
        if (FToken != toInteger) Error(RtlConsts::SNumberExpected);
        const std::int64_t index = TokenInt();
        if (index < std::numeric_limits<std::int32_t>::min() || index > std::numeric_limits<std::int32_t>::max())
          Error(Format(RtlConsts::SInvalidInteger, FTokenText));
        FWriter.WriteInteger(index);
        NextToken();
        CheckChar(']');
        NextToken();
      }
      FWriter.WriteListBegin();
      while (!SymbolIs("end")) {
        if (FToken == toEOF) Error(Format(RtlConsts::SSymbolExpected, "end"));
        ConvertProperty(depth + 1);
      }
      FWriter.WriteListEnd();
      NextToken();
    }
    FWriter.WriteListEnd();
    NextToken();
  }

  // Replaces the value just written for the property at `nameAt` by the reference's
  // bytes for the same property when both read as the same text.
  void KeepReferenceValue(std::size_t nameAt) {
    std::string& out = FWriter.Output();
    const std::size_t nameLength = static_cast<unsigned char>(out[nameAt]);
    const std::size_t valueAt = nameAt + 1 + nameLength;
    const std::string_view name = std::string_view(out).substr(nameAt + 1, nameLength);
    const std::string_view theirs = FReference->FindProperty(FReferenceComponent, name, FPropertyNames.Occurrence(name));
    const std::string_view ours(out.data() + valueAt, out.size() - valueAt);
    if (theirs.data() == nullptr || theirs == ours) return;
    try {
      if (ObjectValueToText(ours) != ObjectValueToText(theirs)) return;
    } catch (const Exception&) {
      return;  // a reference value that does not read is no match
    }
    out.resize(valueAt);
    out.append(theirs);
  }

  const char* FCur;
  const char* FEnd;
  int FLine = 1;
  int FTokenLine = 1;
  int FToken = toEOF;
  std::string_view FTokenText;
  char FFloatSuffix = 0;
  std::string FStr;
  std::u16string FWide;
  bool FStrIsWide = false;
  std::string FUtf8;
  TValueWriter FWriter;
  const TReferenceValues* FReference = nullptr;
  std::string FKey;
  TPropertyNames FPropertyNames;
  TReferenceValues::TComponent FReferenceComponent;

public:
  void SetReference(const TReferenceValues* reference) { FReference = reference; }
};

}  // namespace

std::string ObjectTextToBinary(std::string_view text) {
  std::string out;
  TTextToBinary(text, out).Convert();
  return out;
}

std::string ObjectTextToBinary(std::string_view text, std::string_view reference) {
  const TReferenceValues values(reference);
  std::string out;
  TTextToBinary converter(text, out);
  converter.SetReference(&values);
  converter.Convert();
  return out;
}
