#include "platform/streaming/Values.h"

#include <cfloat>
#include <limits>

static_assert(LDBL_MANT_DIG == 64, "long double must be the 80-bit extended type");
static_assert(static_cast<unsigned char>(0x0102 & 0xFF) == 0x02);

// --- TValueReader ------------------------------------------------------------

void TValueReader::ReadError() { throw EReadError(RtlConsts::SReadError); }

void TValueReader::InvalidValue() { throw EReadError(RtlConsts::SInvalidPropertyValue); }

void TValueReader::ReadSignature() {
  if (Remaining() < 4 || FData.substr(FPos, 4) != FilerSignature) throw EInvalidImage(RtlConsts::SInvalidImage);
  FPos += 4;
}

long double TValueReader::ReadExtendedRaw() {
  const std::string_view bytes = ReadBytes(10);
  long double value = 0;
  std::memcpy(&value, bytes.data(), 10);
  return value;
}

std::int32_t TValueReader::ReadInteger() {
  switch (ReadValue()) {
    case vaInt8: return ReadInt8();
    case vaInt16: return ReadInt16();
    case vaInt32: return ReadInt32();
    default: InvalidValue();
  }
}

std::int64_t TValueReader::ReadInt64() {
  if (NextValue() == vaInt64) {
    ++FPos;
    return ReadInt64Raw();
  }
  return ReadInteger();
}

long double TValueReader::ReadFloat() {
  switch (NextValue()) {
    case vaExtended: ++FPos; return ReadExtendedRaw();
    case vaDouble: ++FPos; return ReadDoubleRaw();
    case vaSingle: ++FPos; return ReadSingleRaw();
    default: return static_cast<long double>(ReadInt64());
  }
}

float TValueReader::ReadSingle() {
  if (NextValue() == vaSingle) {
    ++FPos;
    return ReadSingleRaw();
  }
  return static_cast<float>(ReadInteger());
}

std::int64_t TValueReader::ReadCurrency() {
  if (NextValue() == vaCurrency) {
    ++FPos;
    return ReadInt64Raw();
  }
  const std::int64_t whole = ReadInteger();
  return whole * 10000;
}

double TValueReader::ReadDate() {
  if (NextValue() == vaDate) {
    ++FPos;
    return ReadDoubleRaw();
  }
  return static_cast<double>(ReadInteger());
}

double TValueReader::ReadDouble() {
  if (NextValue() == vaDouble) {
    ++FPos;
    return ReadDoubleRaw();
  }
  return static_cast<double>(ReadFloat());
}

std::string TValueReader::ReadString() {
  switch (ReadValue()) {
    case vaString: return std::string(ReadShortString());
    case vaLString:
    case vaUTF8String: return std::string(ReadCountedBytes());
    case vaWString: {
      const std::string_view bytes = ReadCountedBytes(2);
      std::u16string units(bytes.size() / 2, u'\0');
      std::memcpy(units.data(), bytes.data(), bytes.size());
      return WideToUtf8(units);
    }
    default: InvalidValue();
  }
}

std::u16string TValueReader::ReadWideString() {
  switch (ReadValue()) {
    case vaWString: {
      const std::string_view bytes = ReadCountedBytes(2);
      std::u16string units(bytes.size() / 2, u'\0');
      std::memcpy(units.data(), bytes.data(), bytes.size());
      return units;
    }
    case vaUTF8String: return Utf8ToWide(ReadCountedBytes());
    case vaString:
    case vaLString: {
      const std::string_view bytes = FData[FPos - 1] == vaString ? ReadShortString() : ReadCountedBytes();
      std::u16string units;
      units.reserve(bytes.size());
      for (unsigned char c : bytes) units.push_back(c);
      return units;
    }
    default: InvalidValue();
  }
}

std::string_view TValueReader::ReadIdent() {
  switch (ReadValue()) {
    case vaIdent: return ReadShortString();
    case vaFalse: return "False";
    case vaTrue: return "True";
    case vaNil: return "nil";
    case vaNull: return "Null";
    default: InvalidValue();
  }
}

bool TValueReader::ReadBoolean() {
  switch (ReadValue()) {
    case vaFalse: return false;
    case vaTrue: return true;
    default: InvalidValue();
  }
}

std::string_view TValueReader::ReadBinary() {
  CheckValue(vaBinary);
  return ReadCountedBytes();
}

void TValueReader::ReadPrefix(TFilerFlags& flags, std::int32_t& childPos) {
  flags = 0;
  childPos = -1;
  if ((NextValue() & 0xF0) != 0xF0) return;
  flags = ReadByte() & 0x0F;
  if (flags & ffChildPos) childPos = ReadInteger();
}

void TValueReader::ReadComponentHeader(TFilerFlags& flags, std::int32_t& childPos, std::string_view& className,
                                       std::string_view& name) {
  ReadPrefix(flags, childPos);
  className = ReadShortString();
  name = ReadShortString();
}

void TValueReader::SkipValue(int depth) {
  if (depth > MaxNestingDepth) throw EReadError(Format(RtlConsts::SNestingTooDeep, MaxNestingDepth));
  const TValueType type = ReadValue();
  switch (type) {
    case vaNull:
    case vaFalse:
    case vaTrue:
    case vaNil: return;
    case vaList:
      while (!EndOfList()) SkipValue(depth + 1);
      ++FPos;
      return;
    case vaInt8: ReadBytes(1); return;
    case vaInt16: ReadBytes(2); return;
    case vaInt32:
    case vaSingle: ReadBytes(4); return;
    case vaExtended: ReadBytes(10); return;
    case vaString:
    case vaIdent: ReadShortString(); return;
    case vaBinary:
    case vaLString:
    case vaUTF8String: ReadCountedBytes(); return;
    case vaWString: ReadCountedBytes(2); return;
    case vaSet:
      while (!ReadShortString().empty()) {
      }
      return;
    case vaCollection:
      while (!EndOfList()) {
        const TValueType next = NextValue();
        if (next == vaInt8 || next == vaInt16 || next == vaInt32) ReadInteger();
        CheckValue(vaList);
        while (!EndOfList()) {
          ReadShortString();
          SkipValue(depth + 1);
        }
        ++FPos;
      }
      ++FPos;
      return;
    case vaCurrency:
    case vaDate:
    case vaInt64:
    case vaDouble: ReadBytes(8); return;
  }
  throw EReadError(Format(RtlConsts::SInvalidValueType, static_cast<int>(type)));
}

void TValueReader::SkipComponent(int depth) {
  if (depth > MaxNestingDepth) throw EReadError(Format(RtlConsts::SNestingTooDeep, MaxNestingDepth));
  TFilerFlags flags;
  std::int32_t childPos;
  std::string_view className, name;
  ReadComponentHeader(flags, childPos, className, name);
  while (!EndOfList()) SkipProperty();
  ++FPos;
  while (!EndOfList()) SkipComponent(depth + 1);
  ++FPos;
}

// --- TValueWriter ------------------------------------------------------------

void TValueWriter::WriteShortString(std::string_view s) {
  if (s.size() > 255) throw EWriteError(Format(RtlConsts::SStringTooLong, s.size()));
  WriteByte(static_cast<std::uint8_t>(s.size()));
  FOut.append(s);
}

void TValueWriter::WriteLength(std::size_t length) {
  if (length > std::numeric_limits<std::uint32_t>::max()) throw EWriteError(Format(RtlConsts::SStringTooLong, length));
  WriteUInt32Raw(static_cast<std::uint32_t>(length));
}

void TValueWriter::WriteInteger(std::int64_t value) {
  if (value >= -128 && value <= 127) {
    WriteValue(vaInt8);
    WriteByte(static_cast<std::uint8_t>(value));
  } else if (value >= -32768 && value <= 32767) {
    WriteValue(vaInt16);
    WriteInt16Raw(static_cast<std::int16_t>(value));
  } else if (value >= std::numeric_limits<std::int32_t>::min() && value <= std::numeric_limits<std::int32_t>::max()) {
    WriteValue(vaInt32);
    WriteInt32Raw(static_cast<std::int32_t>(value));
  } else {
    WriteValue(vaInt64);
    WriteInt64Raw(value);
  }
}

void TValueWriter::WriteExtended(long double value) {
  WriteValue(vaExtended);
  char bytes[sizeof(long double)] = {};
  std::memcpy(bytes, &value, sizeof(long double));
  FOut.append(bytes, 10);
}

void TValueWriter::WriteSingle(float value) {
  WriteValue(vaSingle);
  WriteFixed(value);
}

void TValueWriter::WriteCurrency(std::int64_t scaled) {
  WriteValue(vaCurrency);
  WriteFixed(scaled);
}

void TValueWriter::WriteDate(double value) {
  WriteValue(vaDate);
  WriteFixed(value);
}

void TValueWriter::WriteDouble(double value) {
  WriteValue(vaDouble);
  WriteFixed(value);
}

void TValueWriter::WriteString(std::string_view bytes) {
  if (bytes.size() <= 255) {
    WriteValue(vaString);
    WriteByte(static_cast<std::uint8_t>(bytes.size()));
    FOut.append(bytes);
  } else {
    WriteLString(bytes);
  }
}

void TValueWriter::WriteLString(std::string_view bytes) {
  WriteValue(vaLString);
  WriteLength(bytes.size());
  FOut.append(bytes);
}

void TValueWriter::WriteWideString(std::u16string_view units) {
  WriteValue(vaWString);
  WriteLength(units.size());
  const std::size_t at = FOut.size();
  FOut.resize(at + units.size() * 2);
  std::memcpy(FOut.data() + at, units.data(), units.size() * 2);
}

void TValueWriter::WriteUTF8String(std::string_view utf8) {
  WriteValue(vaUTF8String);
  WriteLength(utf8.size());
  FOut.append(utf8);
}

void TValueWriter::WriteIdent(std::string_view name) {
  if (SameText(name, "True")) {
    WriteValue(vaTrue);
  } else if (SameText(name, "False")) {
    WriteValue(vaFalse);
  } else if (SameText(name, "nil")) {
    WriteValue(vaNil);
  } else {
    WriteValue(vaIdent);
    WriteShortString(name);
  }
}

void TValueWriter::WriteBinary(std::string_view bytes) {
  WriteValue(vaBinary);
  WriteLength(bytes.size());
  FOut.append(bytes);
}

void TValueWriter::WritePrefix(TFilerFlags flags, std::int32_t childPos) {
  if (flags == 0) return;
  WriteByte(static_cast<std::uint8_t>(0xF0 | (flags & 0x0F)));
  if (flags & ffChildPos) WriteInteger(childPos);
}

void TValueWriter::WriteComponentHeader(TFilerFlags flags, std::int32_t childPos, std::string_view className,
                                        std::string_view name) {
  WritePrefix(flags, childPos);
  // A class name of 240 characters or more starts with a length byte that reads as a
  // prefix; an empty prefix in front keeps it a name.
  if (flags == 0 && className.size() >= 0xF0) WriteByte(0xF0);
  WriteShortString(className);
  WriteShortString(name);
}

// --- UTF-8 / UTF-16 ------------------------------------------------------------

std::string WideToUtf8(std::u16string_view units) {
  std::string out;
  AppendUtf8(out, units);
  return out;
}

void AppendUtf8(std::string& out, std::u16string_view units) {
  out.reserve(out.size() + units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    std::uint32_t c = units[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (units[i + 1] - 0xDC00);
      ++i;
    }
    if (c < 0x80) {
      out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (c >> 6)));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (c >> 12)));
      out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (c >> 18)));
      out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
  }
}

std::u16string Utf8ToWide(std::string_view utf8) {
  std::u16string out;
  out.reserve(utf8.size());
  const auto* p = reinterpret_cast<const unsigned char*>(utf8.data());
  const std::size_t n = utf8.size();
  std::size_t i = 0;
  while (i < n) {
    std::uint32_t c;
    i += DecodeUtf8Char(p + i, n - i, c);
    if (c >= 0x10000) {
      c -= 0x10000;
      out.push_back(static_cast<char16_t>(0xD800 + (c >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
    } else {
      out.push_back(static_cast<char16_t>(c));
    }
  }
  return out;
}
