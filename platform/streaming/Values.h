#pragma once
// The values of a binary form stream: the type byte in front of every value, the filer
// flags of a component prefix, a bounds-checked reader over bytes and the matching
// writer that appends to a string. Every length is checked against what is left
// before anything is copied, so a damaged stream gives an error, never a crash.

#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/SysUtils.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

// The type byte in front of every value.
enum TValueType : std::uint8_t {
  vaNull = 0,         // end of a list, a collection, a property list or a child list
  vaList = 1,         // values until vaNull
  vaInt8 = 2,         // 1 byte signed
  vaInt16 = 3,        // 2 bytes signed
  vaInt32 = 4,        // 4 bytes signed
  vaExtended = 5,     // 10 bytes, 80-bit extended
  vaString = 6,       // ShortString
  vaIdent = 7,        // ShortString: an identifier
  vaFalse = 8,        // no payload
  vaTrue = 9,         // no payload
  vaBinary = 10,      // 4-byte length, then bytes
  vaSet = 11,         // ShortStrings ended by an empty one
  vaLString = 12,     // 4-byte length, then 8-bit characters
  vaNil = 13,         // no payload
  vaCollection = 14,  // items (optional order index, then a property list) until vaNull
  vaSingle = 15,      // 4 bytes IEEE single
  vaCurrency = 16,    // 8 bytes: the value times 10000 as a 64-bit integer
  vaDate = 17,        // 8 bytes IEEE double
  vaWString = 18,     // 4-byte count of UTF-16 code units, then 2 bytes each
  vaInt64 = 19,       // 8 bytes signed
  vaUTF8String = 20,  // 4-byte byte length, then UTF-8
  vaDouble = 21,      // 8 bytes IEEE double
};

// The highest type byte a stream may hold.
inline constexpr std::uint8_t vaLast = vaDouble;

// Flags in the low bits of a component prefix byte (0xF0 | flags).
enum TFilerFlag : std::uint8_t {
  ffInherited = 1,  // text keyword "inherited"
  ffChildPos = 2,   // an integer position follows the prefix byte
  ffInline = 4,     // text keyword "inline" (frames)
};
using TFilerFlags = std::uint8_t;

// How deep lists, collections and components may nest before reading gives up.
inline constexpr int MaxNestingDepth = 1000;

// The four bytes every binary form stream starts with.
inline constexpr std::string_view FilerSignature = "TPF0";

// Reads values from a block of bytes it does not own; raises EReadError
// "Stream read error" when the block ends inside a value and EReadError
// "Invalid property value" when a value has the wrong type.
class TValueReader {
public:
  // Reads `data` from `position`.
  explicit TValueReader(std::string_view data, std::size_t position = 0) : FData(data), FPos(position) {
    if (FPos > FData.size()) FPos = FData.size();
  }

  // Offset of the next byte.
  std::size_t Position() const { return FPos; }
  // Moves to an offset inside the block; raises EReadError beyond its end.
  void SetPosition(std::size_t position) {
    if (position > FData.size()) ReadError();
    FPos = position;
  }
  // Bytes left after the position.
  std::size_t Remaining() const { return FData.size() - FPos; }
  // True when every byte has been read.
  bool AtEnd() const { return FPos >= FData.size(); }
  // The whole block.
  std::string_view Data() const { return FData; }

  // Reads "TPF0"; raises EInvalidImage "Invalid stream format" when it is not there.
  void ReadSignature();

  // Fixed-size little-endian reads.
  std::uint8_t ReadByte() {
    if (FPos >= FData.size()) ReadError();
    return static_cast<std::uint8_t>(FData[FPos++]);
  }
  std::int8_t ReadInt8() { return static_cast<std::int8_t>(ReadByte()); }
  std::int16_t ReadInt16() { return static_cast<std::int16_t>(ReadFixed<std::uint16_t>()); }
  std::int32_t ReadInt32() { return static_cast<std::int32_t>(ReadFixed<std::uint32_t>()); }
  std::uint32_t ReadUInt32() { return ReadFixed<std::uint32_t>(); }
  std::int64_t ReadInt64Raw() { return static_cast<std::int64_t>(ReadFixed<std::uint64_t>()); }
  float ReadSingleRaw() {
    const std::uint32_t bits = ReadFixed<std::uint32_t>();
    float f;
    std::memcpy(&f, &bits, 4);
    return f;
  }
  double ReadDoubleRaw() {
    const std::uint64_t bits = ReadFixed<std::uint64_t>();
    double d;
    std::memcpy(&d, &bits, 8);
    return d;
  }
  // 10 bytes of x87 extended precision.
  long double ReadExtendedRaw();

  // `count` bytes as a view into the block.
  std::string_view ReadBytes(std::size_t count) {
    if (count > Remaining()) ReadError();
    const std::string_view result = FData.substr(FPos, count);
    FPos += count;
    return result;
  }
  // A length byte and that many bytes.
  std::string_view ReadShortString() { return ReadBytes(ReadByte()); }
  // A 4-byte length and that many bytes (`unitSize` bytes per unit).
  std::string_view ReadCountedBytes(std::size_t unitSize = 1) {
    const std::uint64_t count = ReadUInt32();
    if (count > Remaining() / unitSize) ReadError();
    return ReadBytes(static_cast<std::size_t>(count * unitSize));
  }

  // The next type byte, consumed.
  TValueType ReadValue() { return static_cast<TValueType>(ReadByte()); }
  // The next type byte, not consumed.
  TValueType NextValue() const {
    if (FPos >= FData.size()) ReadError();
    return static_cast<TValueType>(FData[FPos]);
  }
  // True when the next byte ends a list (vaNull); not consumed.
  bool EndOfList() const { return NextValue() == vaNull; }
  // Reads a vaList type byte.
  void ReadListBegin() { CheckValue(vaList); }
  // Reads the vaNull that ends a list, a collection or a property list.
  void ReadListEnd() { CheckValue(vaNull); }

  // An integer stored as vaInt8, vaInt16 or vaInt32.
  std::int32_t ReadInteger();
  // An integer stored as vaInt8, vaInt16, vaInt32 or vaInt64.
  std::int64_t ReadInt64();
  // A float stored as vaExtended, vaDouble, vaSingle or an integer type.
  long double ReadFloat();
  // A vaSingle.
  float ReadSingle();
  // A vaCurrency: the value times 10000.
  std::int64_t ReadCurrency();
  // A vaDate (days since 1899-12-30).
  double ReadDate();
  // A vaDouble.
  double ReadDouble();
  // Any string kind; 8-bit kinds as their bytes, the wide kinds as UTF-8.
  std::string ReadString();
  // Any string kind as UTF-16; 8-bit bytes are taken as Latin-1.
  std::u16string ReadWideString();
  // vaIdent's name, or "False", "True", "nil", "Null" for those values.
  std::string_view ReadIdent();
  // vaFalse or vaTrue.
  bool ReadBoolean();
  // A vaBinary's bytes as a view.
  std::string_view ReadBinary();
  // Reads a vaSet type byte.
  void ReadSetBegin() { CheckValue(vaSet); }
  // The next name of a set; empty at its end (the ending byte is consumed).
  std::string_view ReadSetElement() { return ReadShortString(); }

  // A component's prefix when there is one: flags, and the child position
  // (-1 without ffChildPos).
  void ReadPrefix(TFilerFlags& flags, std::int32_t& childPos);
  // A component's prefix, class name and component name.
  void ReadComponentHeader(TFilerFlags& flags, std::int32_t& childPos, std::string_view& className,
                           std::string_view& name);

  // Skips one value of any type, with everything inside it.
  void SkipValue() { SkipValue(0); }
  // Skips a property: its name and its value.
  void SkipProperty() {
    ReadShortString();
    SkipValue(0);
  }
  // Skips a component (prefix, names, properties, children) at `depth` levels of nesting.
  void SkipComponent(int depth = 0);

  // Raises EReadError "Stream read error".
  [[noreturn]] static void ReadError();
  // Raises EReadError "Invalid property value".
  [[noreturn]] static void InvalidValue();

private:
  template <class T>
  T ReadFixed() {
    if (Remaining() < sizeof(T)) ReadError();
    T value;
    std::memcpy(&value, FData.data() + FPos, sizeof(T));
    FPos += sizeof(T);
    return value;
  }
  void CheckValue(TValueType expected) {
    if (ReadValue() != expected) InvalidValue();
  }
  void SkipValue(int depth);

  std::string_view FData;
  std::size_t FPos;
};

// Appends values to a string. Lengths that do not fit their field raise EWriteError.
class TValueWriter {
public:
  // Appends to `output`, which must outlive the writer.
  explicit TValueWriter(std::string& output) : FOut(output) {}
  // The string being written.
  std::string& Output() { return FOut; }

  // "TPF0".
  void WriteSignature() { FOut.append(FilerSignature); }
  // One raw byte.
  void WriteByte(std::uint8_t b) { FOut.push_back(static_cast<char>(b)); }
  // A type byte.
  void WriteValue(TValueType value) { WriteByte(value); }
  // Raw bytes.
  void WriteBytes(std::string_view bytes) { FOut.append(bytes); }
  // Fixed-size little-endian integers.
  void WriteInt16Raw(std::int16_t v) { WriteFixed(v); }
  void WriteInt32Raw(std::int32_t v) { WriteFixed(v); }
  void WriteUInt32Raw(std::uint32_t v) { WriteFixed(v); }
  void WriteInt64Raw(std::int64_t v) { WriteFixed(v); }
  // A length byte and the bytes; raises EWriteError beyond 255 bytes.
  void WriteShortString(std::string_view s);

  // An integer in the smallest of vaInt8, vaInt16, vaInt32, vaInt64 that holds it.
  void WriteInteger(std::int64_t value);
  // vaExtended: 10 bytes of x87 extended precision.
  void WriteExtended(long double value);
  // vaSingle.
  void WriteSingle(float value);
  // vaCurrency from the value times 10000.
  void WriteCurrency(std::int64_t scaled);
  // vaDate.
  void WriteDate(double value);
  // vaDouble.
  void WriteDouble(double value);
  // 8-bit text: vaString up to 255 bytes, vaLString beyond.
  void WriteString(std::string_view bytes);
  // vaLString whatever the length.
  void WriteLString(std::string_view bytes);
  // vaWString from UTF-16 code units.
  void WriteWideString(std::u16string_view units);
  // vaUTF8String from UTF-8 bytes.
  void WriteUTF8String(std::string_view utf8);
  // A symbol: vaTrue, vaFalse, vaNil for those names in any case, otherwise vaIdent.
  void WriteIdent(std::string_view name);
  // vaFalse or vaTrue.
  void WriteBoolean(bool value) { WriteValue(value ? vaTrue : vaFalse); }
  // vaBinary with its 4-byte length.
  void WriteBinary(std::string_view bytes);
  // vaList / vaCollection / vaSet type bytes, and the vaNull that ends a list.
  void WriteListBegin() { WriteValue(vaList); }
  void WriteListEnd() { WriteValue(vaNull); }
  void WriteCollectionBegin() { WriteValue(vaCollection); }
  void WriteSetBegin() { WriteValue(vaSet); }
  // One name of a set; WriteSetEnd writes the empty name that ends it.
  void WriteSetElement(std::string_view name) { WriteShortString(name); }
  void WriteSetEnd() { WriteByte(0); }
  // The prefix byte (only when a flag is set) and the child position with ffChildPos.
  void WritePrefix(TFilerFlags flags, std::int32_t childPos);
  // Prefix, class name and component name (with an empty prefix when a long class
  // name's length byte would read as one).
  void WriteComponentHeader(TFilerFlags flags, std::int32_t childPos, std::string_view className,
                            std::string_view name);

private:
  template <class T>
  void WriteFixed(T value) {
    char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    FOut.append(bytes, sizeof(T));
  }
  void WriteLength(std::size_t length);

  std::string& FOut;
};

// Decodes one UTF-8 sequence at `p` (n > 0 bytes available) into `code`; returns its
// length. A byte that does not start a valid sequence is taken alone as its own code.
inline std::size_t DecodeUtf8Char(const unsigned char* p, std::size_t n, std::uint32_t& code) {
  const unsigned char b = p[0];
  code = b;
  if (b < 0x80) return 1;
  auto cont = [&](std::size_t k) { return k < n && (p[k] & 0xC0) == 0x80; };
  if (b >= 0xC2 && b <= 0xDF && cont(1)) {
    code = ((b & 0x1Fu) << 6) | (p[1] & 0x3Fu);
    return 2;
  }
  if (b >= 0xE0 && b <= 0xEF && cont(1) && cont(2)) {
    const std::uint32_t c = ((b & 0x0Fu) << 12) | ((p[1] & 0x3Fu) << 6) | (p[2] & 0x3Fu);
    if (c >= 0x800) {
      code = c;
      return 3;
    }
  } else if (b >= 0xF0 && b <= 0xF4 && cont(1) && cont(2) && cont(3)) {
    const std::uint32_t c =
        ((b & 0x07u) << 18) | ((p[1] & 0x3Fu) << 12) | ((p[2] & 0x3Fu) << 6) | (p[3] & 0x3Fu);
    if (c >= 0x10000 && c <= 0x10FFFF) {
      code = c;
      return 4;
    }
  }
  return 1;
}

// UTF-16 code units to UTF-8; a lone surrogate is kept as its own 3-byte sequence.
std::string WideToUtf8(std::u16string_view units);
// The same, appended to `out`.
void AppendUtf8(std::string& out, std::u16string_view units);
// UTF-8 to UTF-16; a byte that is not part of a valid sequence stands for itself (Latin-1).
std::u16string Utf8ToWide(std::string_view utf8);
