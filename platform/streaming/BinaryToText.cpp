// Binary form stream to form text, in one pass over the bytes.

#include "platform/streaming/FloatText.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ObjectTextInternal.h"
#include "platform/streaming/ResHeader.h"
#include "platform/streaming/Values.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <sys/mman.h>
#include <type_traits>
#include <vector>

namespace {

// "00" .. "FF", two characters per byte.
struct THexTable {
  char pairs[512];
  constexpr THexTable() : pairs() {
    const char* digits = "0123456789ABCDEF";
    for (int i = 0; i < 256; ++i) {
      pairs[2 * i] = digits[i >> 4];
      pairs[2 * i + 1] = digits[i & 15];
    }
  }
};
constexpr THexTable HexTable;

// Which code units go inside quotes: printable, not the apostrophe.
inline bool Printable(unsigned c, unsigned rawMax) { return c >= 32 && c != '\'' && c <= rawMax; }

// Output buffer that grows geometrically; writes go through a raw pointer.
class TTextOut {
public:
  // Reserves `estimate` bytes but touches them only as they are used, so memory
  // follows the output actually written.
  TTextOut(std::string& s, std::size_t estimate) : FStr(s) {
    FStr.reserve(estimate < 256 ? 256 : estimate);
    AdviseHugePages(FStr.data(), FStr.capacity());
    FStr.resize(FStr.capacity() < Step ? FStr.capacity() : Step);
    FCur = FStr.data();
    FEnd = FCur + FStr.size();
  }
  void Reserve(std::size_t n) {
    if (static_cast<std::size_t>(FEnd - FCur) < n) Grow(n);
  }
  void Put(char c) {
    Reserve(1);
    *FCur++ = c;
  }
  void Put(std::string_view v) {
    Reserve(v.size());
    std::memcpy(FCur, v.data(), v.size());
    FCur += v.size();
  }
  // Unchecked: the caller reserved room.
  void PutRaw(const char* p, std::size_t n) {
    std::memcpy(FCur, p, n);
    FCur += n;
  }
  void PutRaw(char c) { *FCur++ = c; }
  void Indent(int level) {
    const std::size_t n = static_cast<std::size_t>(level) * 2;
    Reserve(n);
    std::memset(FCur, ' ', n);
    FCur += n;
  }
  void EndLine() {
    Reserve(2);
    FCur[0] = '\r';
    FCur[1] = '\n';
    FCur += 2;
  }
  void NewLine(int level) {
    const std::size_t n = static_cast<std::size_t>(level) * 2;
    Reserve(n + 2);
    FCur[0] = '\r';
    FCur[1] = '\n';
    std::memset(FCur + 2, ' ', n);
    FCur += n + 2;
  }
  void PutInt(std::int64_t v) {
    Reserve(24);
    std::uint64_t u = static_cast<std::uint64_t>(v);
    if (v < 0) {
      *FCur++ = '-';
      u = 0 - u;
    }
    PutUIntRaw(u);
  }
  void PutUInt(std::uint64_t u) {
    Reserve(24);
    PutUIntRaw(u);
  }
  void Finish() { FStr.resize(static_cast<std::size_t>(FCur - FStr.data())); }
  std::string& Str() { return FStr; }
  char* Cur() { return FCur; }
  void Advance(std::size_t n) { FCur += n; }

private:
  void PutUIntRaw(std::uint64_t u) {
    char tmp[24];
    int n = 0;
    do {
      tmp[n++] = static_cast<char>('0' + u % 10);
      u /= 10;
    } while (u != 0);
    while (n > 0) *FCur++ = tmp[--n];
  }
  void Grow(std::size_t n) {
    const std::size_t used = static_cast<std::size_t>(FCur - FStr.data());
    std::size_t size = FStr.size() + Step;
    if (size > FStr.capacity()) size = FStr.capacity();  // the last step stays inside the reserve
    if (size < used + n) size = used + n;
    if (size > FStr.capacity()) {
      // Past the reserve, grow by half rather than the library's doubling: less memory at the peak.
      std::string bigger;
      bigger.reserve(std::max(size, FStr.capacity() + FStr.capacity() / 2));
      AdviseHugePages(bigger.data(), bigger.capacity());
      bigger.append(FStr.data(), used);
      FStr.swap(bigger);
    }
    FStr.resize(size);
    FCur = FStr.data() + used;
    FEnd = FStr.data() + FStr.size();
  }

  static constexpr std::size_t Step = 256 * 1024;

  std::string& FStr;
  char* FCur;
  char* FEnd;
};

// Stands in for TTextOut when a stream is only checked: the walk is the same, and
// nothing is written.
class TNoTextOut {
public:
  TNoTextOut(std::string&, std::size_t) {}
  void Reserve(std::size_t) {}
  void Put(char) {}
  void Put(std::string_view) {}
  void PutRaw(char) {}
  void Indent(int) {}
  void EndLine() {}
  void NewLine(int) {}
  void PutInt(std::int64_t) {}
  void PutUInt(std::uint64_t) {}
  void Finish() {}
};

template <class TOut>
class TBinaryToText {
  static constexpr bool Writes = !std::is_same_v<TOut, TNoTextOut>;

public:
  TBinaryToText(std::string_view stream, std::string& out)
      : FReader(stream), FOut(out, stream.size() * 2 + stream.size() / 2 + 4096) {
    FPath.reserve(32);
  }

  void Convert() {
    try {
      FReader.ReadSignature();
      ConvertObject(0);
    } catch (const EReadError& e) {
      throw EReadError(e.Message() + Where());
    }
    FOut.Finish();
  }

  // Converts the whole input as one value.
  void ConvertSingleValue() {
    ConvertValue(0, 0);
    if (!FReader.AtEnd()) TValueReader::InvalidValue();
    FOut.Finish();
  }

private:
  // Where reading stopped, for error messages: byte offset and the component path.
  std::string Where() const {
    std::string where = " at byte " + std::to_string(FReader.Position());
    if (!FPath.empty()) {
      where += " (";
      for (std::size_t i = 0; i < FPath.size(); ++i) {
        if (i) where += '.';
        where += FPath[i].empty() ? std::string_view("<unnamed>") : FPath[i];
      }
      if (!FProperty.empty()) {
        where += '.';
        where += FProperty;
      }
      where += ')';
    }
    return where;
  }

  void ConvertObject(int level) {
    if (level > MaxNestingDepth) throw EReadError(Format(RtlConsts::SNestingTooDeep, MaxNestingDepth));
    TFilerFlags flags;
    std::int32_t childPos;
    std::string_view className, name;
    FReader.ReadComponentHeader(flags, childPos, className, name);
    FPath.push_back(name);
    FProperty = {};
    FOut.Indent(level);
    if (flags & ffInherited)
      FOut.Put("inherited ");
    else if (flags & ffInline)
      FOut.Put("inline ");
    else
      FOut.Put("object ");
    if (!name.empty()) {
      FOut.Put(name);
      FOut.Put(": ");
    }
    FOut.Put(className);
    if (flags & ffChildPos) {
      FOut.Put(" [");
      FOut.PutInt(childPos);
      FOut.Put(']');
    }
    FOut.EndLine();
    while (!FReader.EndOfList()) ConvertProperty(level + 1);
    FReader.ReadByte();
    FProperty = {};
    while (!FReader.EndOfList()) ConvertObject(level + 1);
    FReader.ReadByte();
    FOut.Indent(level);
    FOut.Put("end");
    FOut.EndLine();
    FPath.pop_back();
    FProperty = {};
  }

  void ConvertProperty(int level) {
    const std::string_view name = FReader.ReadShortString();
    if (level == static_cast<int>(FPath.size())) FProperty = name;
    FOut.Indent(level);
    FOut.Put(name);
    FOut.Put(" = ");
    ConvertValue(level, 0);
    FOut.EndLine();
  }

  void ConvertValue(int level, int depth) {
    if (depth > MaxNestingDepth) throw EReadError(Format(RtlConsts::SNestingTooDeep, MaxNestingDepth));
    const TValueType type = FReader.ReadValue();
    switch (type) {
      case vaList:
        FOut.Put('(');
        while (!FReader.EndOfList()) {
          FOut.NewLine(level + 1);
          ConvertValue(level + 1, depth + 1);
        }
        FReader.ReadByte();
        FOut.Put(')');
        return;
      case vaInt8: FOut.PutInt(FReader.ReadInt8()); return;
      case vaInt16: FOut.PutInt(FReader.ReadInt16()); return;
      case vaInt32: FOut.PutInt(FReader.ReadInt32()); return;
      case vaInt64: FOut.PutInt(FReader.ReadInt64Raw()); return;
      case vaExtended: PutFloat(FReader.ReadExtendedRaw(), TFloatKind::Extended, 0); return;
      case vaDouble: PutFloat(FReader.ReadDoubleRaw(), TFloatKind::Double, 0); return;
      case vaSingle: PutFloat(FReader.ReadSingleRaw(), TFloatKind::Single, 's'); return;
      case vaCurrency:
        PutFloat(static_cast<long double>(FReader.ReadInt64Raw()), TFloatKind::Currency, 'c');
        return;
      case vaDate: PutFloat(FReader.ReadDoubleRaw(), TFloatKind::Date, 'd'); return;
      case vaString: {
        const std::string_view s = FReader.ReadShortString();
        PutString(reinterpret_cast<const unsigned char*>(s.data()), s.size(), 255, level);
        return;
      }
      case vaLString: {
        const std::string_view s = FReader.ReadCountedBytes();
        PutString(reinterpret_cast<const unsigned char*>(s.data()), s.size(), 255, level);
        return;
      }
      case vaWString: {
        const std::string_view s = FReader.ReadCountedBytes(2);
        if constexpr (!Writes) return;
        FWide.resize(s.size() / 2);
        if (!s.empty()) std::memcpy(FWide.data(), s.data(), s.size());
        PutString(FWide.data(), FWide.size(), 127, level);
        return;
      }
      case vaUTF8String: {
        const std::string_view s = FReader.ReadCountedBytes();
        if constexpr (!Writes) return;
        DecodeUtf8(s);
        PutString(FWide.data(), FWide.size(), 127, level);
        return;
      }
      case vaIdent: FOut.Put(FReader.ReadShortString()); return;
      case vaFalse: FOut.Put("False"); return;
      case vaTrue: FOut.Put("True"); return;
      case vaNil: FOut.Put("nil"); return;
      case vaBinary: PutBinary(FReader.ReadCountedBytes(), level); return;
      case vaSet: {
        FOut.Put('[');
        bool first = true;
        for (;;) {
          const std::string_view element = FReader.ReadShortString();
          if (element.empty()) break;
          if (!first) FOut.Put(", ");
          FOut.Put(element);
          first = false;
        }
        FOut.Put(']');
        return;
      }
      case vaCollection: ConvertCollection(level, depth); return;
      case vaNull: break;
    }
    FReader.SetPosition(FReader.Position() - 1);  // point at the bad type byte
    throw EReadError(Format("%s (value type %d)", RtlConsts::SInvalidPropertyValue, static_cast<int>(type)));
  }

  void ConvertCollection(int level, int depth) {
    FOut.Put('<');
    while (!FReader.EndOfList()) {
      FOut.NewLine(level + 1);
      FOut.Put("item");
      const TValueType next = FReader.NextValue();
      if (next == vaInt8 || next == vaInt16 || next == vaInt32) {
        FOut.Put(" [");
        FOut.PutInt(FReader.ReadInteger());
        FOut.Put(']');
      }
      FOut.EndLine();
      FReader.ReadListBegin();
      while (!FReader.EndOfList()) {
        const std::string_view name = FReader.ReadShortString();
        FOut.Indent(level + 2);
        FOut.Put(name);
        FOut.Put(" = ");
        ConvertValue(level + 2, depth + 1);
        FOut.EndLine();
      }
      FReader.ReadByte();
      FOut.Indent(level + 1);
      FOut.Put("end");
    }
    FReader.ReadByte();
    FOut.Put('>');
  }

  void PutFloat(long double value, TFloatKind kind, char suffix) {
    if constexpr (!Writes) return;
    FFloat.clear();
    AppendFloatText(FFloat, value, kind);
    FOut.Put(FFloat);
    if (suffix) FOut.Put(suffix);
  }

  // UTF-8 bytes to UTF-16 code units in FWide.
  void DecodeUtf8(std::string_view s) {
    FWide.clear();
    FWide.reserve(s.size());
    const auto* p = reinterpret_cast<const unsigned char*>(s.data());
    const std::size_t n = s.size();
    std::size_t i = 0;
    while (i < n) {
      if (p[i] < 0x80) {
        FWide.push_back(p[i++]);
        continue;
      }
      std::uint32_t code;
      i += DecodeUtf8Char(p + i, n - i, code);
      if (code >= 0x10000) {
        code -= 0x10000;
        FWide.push_back(static_cast<char16_t>(0xD800 + (code >> 10)));
        FWide.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
      } else {
        FWide.push_back(static_cast<char16_t>(code));
      }
    }
  }

  template <class Unit>
  void PutString(const Unit* s, std::size_t length, unsigned rawMax, int level) {
    if constexpr (Writes) {
      if (length == 0) {
        FOut.Put("''");
        return;
      }
      if (length > 64) FOut.NewLine(level + 1);
      std::size_t i = 0;
      std::size_t lineStart = 0;
      while (i < length) {
        if (Printable(s[i], rawMax)) {
          const std::size_t run = i;
          do ++i;
          while (i < length && Printable(s[i], rawMax) && i - lineStart < 64);
          FOut.Reserve(i - run + 2);
          FOut.PutRaw('\'');
          if constexpr (sizeof(Unit) == 1) {
            FOut.PutRaw(reinterpret_cast<const char*>(s + run), i - run);
          } else {
            for (std::size_t k = run; k < i; ++k) FOut.PutRaw(static_cast<char>(s[k]));
          }
          FOut.PutRaw('\'');
        } else {
          FOut.Put('#');
          FOut.PutUInt(s[i]);
          ++i;
        }
        if (i - lineStart >= 64 && i < length) {
          FOut.Put(" +");
          FOut.NewLine(level + 1);
          lineStart = i;
        }
      }
    }
  }

  void PutBinary(std::string_view data, int level) {
    if constexpr (Writes) {
      const auto* p = reinterpret_cast<const unsigned char*>(data.data());
      const std::size_t n = data.size();
      const bool multiLine = n >= 32;
      const std::size_t indent = static_cast<std::size_t>(level + 1) * 2;
      // The exact size up front: 2 hex digits a byte, a line break and indent per 32 bytes.
      const std::size_t lines = (n + 31) / 32;
      FOut.Reserve(2 * n + (multiLine ? lines * (indent + 2) : 0) + 2);
      FOut.PutRaw('{');
      std::size_t i = 0;
      while (i < n) {
        if (multiLine) {
          char* c = FOut.Cur();
          c[0] = '\r';
          c[1] = '\n';
          std::memset(c + 2, ' ', indent);
          FOut.Advance(indent + 2);
        }
        const std::size_t line = n - i < 32 ? n - i : 32;
        char* c = FOut.Cur();
        for (std::size_t k = 0; k < line; ++k) {
          std::memcpy(c + 2 * k, HexTable.pairs + 2 * p[i + k], 2);
        }
        FOut.Advance(2 * line);
        i += line;
      }
      FOut.PutRaw('}');
    }
  }

  TValueReader FReader;
  TOut FOut;
  std::vector<std::string_view> FPath;
  std::string_view FProperty;
  std::u16string FWide;
  std::string FFloat;
};

}  // namespace

std::string ObjectBinaryToText(std::string_view stream) {
  std::string out;
  TBinaryToText<TTextOut>(stream, out).Convert();
  return out;
}

void CheckObjectBinary(std::string_view stream) {
  std::string none;
  TBinaryToText<TNoTextOut>(stream, none).Convert();
}

std::string ObjectResourceToText(std::string_view resource) {
  return ObjectBinaryToText(resource.substr(ReadResHeader(resource)));
}

TStreamRoot StreamRoot(std::string_view stream) {
  TValueReader reader(stream);
  reader.ReadSignature();
  TFilerFlags flags;
  std::int32_t childPos;
  std::string_view className, name;
  reader.ReadComponentHeader(flags, childPos, className, name);
  return {std::string(name), std::string(className)};
}

std::string StreamRootClassName(std::string_view stream) { return StreamRoot(stream).ClassName; }

namespace {

// The input from its position to its end, as a view when it is already in memory.
std::string_view InputBytes(TStream& input, std::string& holder) {
  if (auto* memory = dynamic_cast<TCustomMemoryStream*>(&input)) {
    const std::int64_t pos = memory->Position();
    const std::string_view all = memory->View();
    const std::size_t at = pos < 0 ? 0 : static_cast<std::size_t>(pos) < all.size() ? static_cast<std::size_t>(pos) : all.size();
    memory->SetPosition(static_cast<std::int64_t>(all.size()));
    return all.substr(at);
  }
  holder = input.ReadRest();
  return holder;
}

}  // namespace

void ObjectBinaryToText(TStream& input, TStream& output) {
  std::string holder;
  output.WriteBuffer(ObjectBinaryToText(InputBytes(input, holder)));
}

void ObjectResourceToText(TStream& input, TStream& output) {
  std::string holder;
  output.WriteBuffer(ObjectResourceToText(InputBytes(input, holder)));
}

void ObjectTextToBinary(TStream& input, TStream& output) {
  std::string holder;
  output.WriteBuffer(ObjectTextToBinary(InputBytes(input, holder)));
}

void ObjectTextToResource(TStream& input, TStream& output) {
  std::string holder;
  output.WriteBuffer(ObjectTextToResource(InputBytes(input, holder)));
}

std::string ObjectTextToResource(std::string_view text) {
  std::string stream = ObjectTextToBinary(text);
  if (stream.size() > 0xFFFFFFFFu) throw EWriteError(RtlConsts::SWriteError);
  std::string result = MakeResHeader(StreamRootClassName(stream), static_cast<std::uint32_t>(stream.size()));
  result.append(stream);
  return result;
}

TFormFileFormat DetectFormFileFormat(std::string_view data) {
  if (HasResHeader(data)) return TFormFileFormat::Resource;
  if (data.substr(0, 4) == FilerSignature) return TFormFileFormat::Stream;
  std::size_t i = 0;
  if (data.substr(0, 3) == "\xEF\xBB\xBF") i = 3;  // a UTF-8 byte-order mark
  while (i < data.size() && static_cast<unsigned char>(data[i]) <= ' ') ++i;
  auto startsWithWord = [&](std::string_view word) {
    if (data.size() - i < word.size() || !SameText(data.substr(i, word.size()), word)) return false;
    if (data.size() - i == word.size()) return true;
    const char next = data[i + word.size()];
    return !(std::isalnum(static_cast<unsigned char>(next)) || next == '_');
  };
  if (startsWithWord("object") || startsWithWord("inherited") || startsWithWord("inline")) return TFormFileFormat::Text;
  return TFormFileFormat::Unknown;
}

// --- pieces shared with the text parser ---------------------------------------

void AdviseHugePages(char* data, std::size_t size) {
  constexpr std::uintptr_t Huge = 2 * 1024 * 1024;
  if (size < 2 * Huge) return;
  const std::uintptr_t begin = (reinterpret_cast<std::uintptr_t>(data) + Huge - 1) & ~(Huge - 1);
  const std::uintptr_t end = (reinterpret_cast<std::uintptr_t>(data) + size) & ~(Huge - 1);
  if (end > begin) ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

std::string ObjectValueToText(std::string_view valueBytes) {
  std::string out;
  TBinaryToText<TTextOut> converter(valueBytes, out);
  converter.ConvertSingleValue();
  return out;
}

void AppendComponentKey(std::string& key, std::string_view name, int index, int occurrence) {
  key.push_back('/');
  if (name.empty()) {
    key.push_back('#');
    key.append(std::to_string(index));
  } else {
    key.append(name);
    if (occurrence > 0) {
      key.push_back('\x02');
      key.append(std::to_string(occurrence));
    }
  }
}

TReferenceValues::TReferenceValues(std::string_view stream) {
  // About one value for every 24 bytes of a typical stream, one component for every ten.
  FEntries.reserve(stream.size() / 24 + 16);
  FComponents.reserve(stream.size() / 240 + 16);
  try {
    TValueReader reader(stream);
    reader.ReadSignature();
    IndexComponent(reader, 0, 0, 0);
  } catch (const Exception&) {
    // What was indexed before the damage is still good.
  }
}

namespace {

bool EntryBefore(std::string_view aName, int aOccurrence, std::string_view bName, int bOccurrence) {
  return aName < bName || (aName == bName && aOccurrence < bOccurrence);
}

}  // namespace

void TReferenceValues::IndexComponent(TValueReader& reader, int depth, int index, int occurrence) {
  if (depth > MaxNestingDepth) return;
  const std::size_t keyLength = FKey.size();
  TFilerFlags flags;
  std::int32_t childPos;
  std::string_view className, name;
  reader.ReadComponentHeader(flags, childPos, className, name);
  AppendComponentKey(FKey, name, index, occurrence);
  {
    // The component's properties, sorted for lookup once read, also when the stream
    // breaks off among them.
    const auto [it, added] = FComponents.try_emplace(FKey);
    TComponent* component = added ? &it->second : nullptr;
    const std::size_t first = FEntries.size();
    struct TSortAtEnd {
      std::vector<TEntry>& Entries;
      std::size_t First;
      TComponent* Component;
      ~TSortAtEnd() {
        std::sort(Entries.begin() + static_cast<std::ptrdiff_t>(First), Entries.end(), [](const TEntry& a, const TEntry& b) {
          return EntryBefore(a.Name, a.Occurrence, b.Name, b.Occurrence);
        });
        if (Component) *Component = {First, Entries.size() - First};
      }
    } sortAtEnd{FEntries, first, component};
    TPropertyNames properties;
    while (!reader.EndOfList()) {
      const std::string_view property = reader.ReadShortString();
      const std::size_t start = reader.Position();
      reader.SkipValue();
      FEntries.push_back({property, properties.Occurrence(property), reader.Data().substr(start, reader.Position() - start)});
    }
    reader.ReadByte();
  }
  int childIndex = 0;
  TSiblingNames siblings;
  while (!reader.EndOfList()) {
    // Peek at the child's name to count it among its siblings.
    const std::size_t at = reader.Position();
    TFilerFlags childFlags;
    std::int32_t childPosition;
    std::string_view childClass, childName;
    reader.ReadComponentHeader(childFlags, childPosition, childClass, childName);
    reader.SetPosition(at);
    IndexComponent(reader, depth + 1, childIndex++, siblings.Occurrence(childName));
  }
  reader.ReadByte();
  FKey.resize(keyLength);
}

TReferenceValues::TComponent TReferenceValues::FindComponent(const std::string& key) const {
  const auto it = FComponents.find(key);
  return it == FComponents.end() ? TComponent() : it->second;
}

std::string_view TReferenceValues::FindProperty(const TComponent& component, std::string_view name,
                                                int occurrence) const {
  const auto begin = FEntries.begin() + static_cast<std::ptrdiff_t>(component.First);
  const auto end = begin + static_cast<std::ptrdiff_t>(component.Count);
  const auto it = std::lower_bound(begin, end, 0, [&](const TEntry& e, int) {
    return EntryBefore(e.Name, e.Occurrence, name, occurrence);
  });
  if (it == end || it->Name != name || it->Occurrence != occurrence) return {};
  return it->Value;
}

