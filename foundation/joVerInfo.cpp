#include "foundation/joVerInfo.h"

#include "platform/streaming/PeImage.h"
#include "platform/streaming/SysUtils.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <vector>

namespace {

constexpr const char* kTranslationPath = "\\VarFileInfo\\Translation";

// A file read piece by piece; every read is checked against the file's size.
class TFileReader {
public:
  explicit TFileReader(const std::string& name) : FIn(name, std::ios::binary) {
    if (!FIn) return;
    FIn.seekg(0, std::ios::end);
    const std::streamoff end = FIn.tellg();
    if (end > 0) FSize = static_cast<std::uint64_t>(end);
    FIn.seekg(0);
  }
  bool Ok() const { return static_cast<bool>(FIn); }
  std::uint64_t Size() const { return FSize; }
  // Reads `count` bytes at `offset`; false when they are not all in the file.
  bool Read(std::uint64_t offset, std::uint64_t count, std::string& out) {
    if (offset > FSize || count > FSize - offset) return false;
    out.resize(static_cast<std::size_t>(count));
    FIn.clear();
    FIn.seekg(static_cast<std::streamoff>(offset));
    return count == 0 || static_cast<bool>(FIn.read(out.data(), static_cast<std::streamsize>(count)));
  }

private:
  std::ifstream FIn;
  std::uint64_t FSize = 0;
};

// Unsigned integers of either byte order, from a header held in memory.
struct TEndian {
  bool Big = false;
  std::uint64_t Get(const std::string& bytes, std::size_t offset, std::size_t width) const {
    if (offset > bytes.size() || width > bytes.size() - offset) return 0;
    std::uint64_t v = 0;
    for (std::size_t i = 0; i < width; ++i) {
      const std::size_t at = Big ? offset + i : offset + width - 1 - i;
      v = (v << 8) | static_cast<unsigned char>(bytes[at]);
    }
    return v;
  }
};

bool IsHexWord(const std::string& s) {
  if (s.size() != 4) return false;
  for (char c : s) {
    if (!std::isxdigit(static_cast<unsigned char>(c))) return false;
  }
  return true;
}

}  // namespace

std::string ReadElfVersionRecord(const std::string& FileName) {
  TFileReader file(FileName);
  if (!file.Ok()) return {};
  std::string ident;
  if (!file.Read(0, 16, ident) || ident.compare(0, 4, "\x7F" "ELF") != 0) return {};
  const bool is64 = ident[4] == 2;
  if (ident[4] != 1 && !is64) return {};
  if (ident[5] != 1 && ident[5] != 2) return {};
  TEndian e{ident[5] == 2};

  std::string header;
  if (!file.Read(0, is64 ? 64 : 52, header)) return {};
  const std::uint64_t shoff = is64 ? e.Get(header, 40, 8) : e.Get(header, 32, 4);
  const std::uint64_t shentsize = e.Get(header, is64 ? 58 : 46, 2);
  std::uint64_t shnum = e.Get(header, is64 ? 60 : 48, 2);
  std::uint64_t shstrndx = e.Get(header, is64 ? 62 : 50, 2);
  const std::uint64_t minEntry = is64 ? 64 : 40;
  if (shoff == 0 || shentsize < minEntry) return {};

  auto readSection = [&](std::uint64_t index, std::string& entry) {
    if (index > (std::numeric_limits<std::uint64_t>::max() - shoff) / shentsize) return false;
    return file.Read(shoff + index * shentsize, shentsize, entry);
  };
  std::string entry;
  // Many sections: the real count and string table index stand in the first entry.
  if (shnum == 0 || shstrndx == 0xFFFF) {
    if (!readSection(0, entry)) return {};
    if (shnum == 0) shnum = is64 ? e.Get(entry, 32, 8) : e.Get(entry, 20, 4);
    if (shstrndx == 0xFFFF) shstrndx = e.Get(entry, is64 ? 44 : 28, 4);
  }
  if (shnum == 0 || shstrndx >= shnum || shnum > file.Size() / shentsize) return {};

  auto sectionRange = [&](const std::string& s, std::uint64_t& offset, std::uint64_t& size) {
    offset = is64 ? e.Get(s, 24, 8) : e.Get(s, 16, 4);
    size = is64 ? e.Get(s, 32, 8) : e.Get(s, 20, 4);
  };
  std::string names;
  {
    if (!readSection(shstrndx, entry)) return {};
    std::uint64_t offset = 0, size = 0;
    sectionRange(entry, offset, size);
    if (size > (1u << 24) || !file.Read(offset, size, names)) return {};
  }
  const std::size_t wanted = std::strlen(SjoVersionSection);
  for (std::uint64_t i = 1; i < shnum; ++i) {
    if (!readSection(i, entry)) return {};
    const std::uint64_t nameAt = e.Get(entry, 0, 4);
    if (nameAt >= names.size() || names.compare(nameAt, wanted + 1, std::string(SjoVersionSection) + '\0') != 0)
      continue;
    const std::uint64_t type = e.Get(entry, 4, 4);
    if (type == 8) return {};  // SHT_NOBITS: no bytes in the file
    std::uint64_t offset = 0, size = 0;
    sectionRange(entry, offset, size);
    std::string record;
    if (size > (1u << 20) || !file.Read(offset, size, record)) return {};
    // The record is text; what follows a zero (padding) is not part of it.
    if (std::size_t zero = record.find('\0'); zero != std::string::npos) record.resize(zero);
    return record;
  }
  return {};
}

// ---- TjoVersionInfo ----------------------------------------------------------------

// The version data: each value under the upper-cased path. The strings of a Windows
// program's version resource are looked up when first asked for, and kept.
struct TjoVersionInfo::TBuffer {
  std::map<std::string, std::string> Values;
  std::string Image;
  std::unique_ptr<TVersionStrings> Strings;
};

namespace {

// Up to this many bytes of a Windows program are read for its version resource.
constexpr std::uint64_t kMaxImageSize = 256u << 20;

std::string ReadWhole(const std::string& name) {
  std::ifstream in(name, std::ios::binary);
  if (!in) return {};
  in.seekg(0, std::ios::end);
  const std::streamoff size = in.tellg();
  if (size <= 0 || static_cast<std::uint64_t>(size) > kMaxImageSize) return {};
  std::string bytes(static_cast<std::size_t>(size), '\0');
  in.seekg(0);
  if (!in.read(bytes.data(), size)) return {};
  return bytes;
}

std::string TranslationWords(const std::vector<TVersionTranslation>& translations) {
  std::string words;
  for (const TVersionTranslation& t : translations) {
    for (std::uint16_t w : {t.Language, t.CodePage}) words.append(reinterpret_cast<const char*>(&w), sizeof w);
  }
  return words;
}

}  // namespace

TjoVersionInfo::TjoVersionInfo(const std::string& AFileName) : FFileName(AFileName) {}

TjoVersionInfo::~TjoVersionInfo() = default;

void TjoVersionInfo::LoadBuffer() {
  if (FBuffer || FFileName.empty()) return;
  std::error_code error;
  if (!std::filesystem::is_regular_file(FFileName, error)) return;
  if (LoadWindowsVersion()) return;
  const std::string record = ReadElfVersionRecord(FFileName);
  std::istringstream lines(record);
  std::string line;
  if (record.empty() || !std::getline(lines, line) || line != SjoVersionMagic) {
    // No version data: nothing is tried again.
    FStringPath.clear();
    FFileName.clear();
    return;
  }
  auto buffer = std::make_unique<TBuffer>();
  while (std::getline(lines, line)) {
    const std::size_t eq = line.find('=');
    if (eq == std::string::npos || eq == 0) continue;
    const std::string path = UpperCase(line.substr(0, eq));
    const std::string value = line.substr(eq + 1);
    if (path == UpperCase(kTranslationPath)) {
      std::string words;
      std::istringstream parts(value);
      std::string part;
      while (parts >> part) {
        if (!IsHexWord(part)) break;
        const auto w = static_cast<std::uint16_t>(std::stoul(part, nullptr, 16));
        words.append(reinterpret_cast<const char*>(&w), sizeof w);
      }
      if (words.size() >= 4) buffer->Values[path] = words;
    } else {
      buffer->Values[path] = value;  // std::string keeps the terminating zero
    }
  }
  FBuffer = std::move(buffer);
}

bool TjoVersionInfo::LoadWindowsVersion() {
  char head[2] = {};
  {
    std::ifstream in(FFileName, std::ios::binary);
    if (!in || !in.read(head, 2) || head[0] != 'M' || head[1] != 'Z') return false;
  }
  auto buffer = std::make_unique<TBuffer>();
  buffer->Image = ReadWhole(FFileName);
  try {
    if (!IsPeImage(buffer->Image)) throw EPeImageError("not a program");
    TPeImage image(buffer->Image);
    const TPeResource* resource = image.FirstResource(RT_VERSION);
    if (!resource || resource->Damaged()) throw EPeImageError("no version resource");
    buffer->Strings = std::make_unique<TVersionStrings>(resource->Bytes());
  } catch (const Exception&) {
    // A damaged program, or one without version data: the defaults, and no second try.
    FStringPath.clear();
    FFileName.clear();
    return true;
  }
  const std::string words = TranslationWords(buffer->Strings->Translations());
  if (!words.empty()) buffer->Values[UpperCase(kTranslationPath)] = words;
  FBuffer = std::move(buffer);
  return true;
}

const void* TjoVersionInfo::Query(const std::string& SubBlock) {
  LoadBuffer();
  if (!FBuffer) return nullptr;
  const std::string path = UpperCase(SubBlock);
  auto it = FBuffer->Values.find(path);
  if (it != FBuffer->Values.end()) return it->second.c_str();
  // \StringFileInfo\TABLE\NAME of a Windows program's resource.
  const std::string prefix = "\\STRINGFILEINFO\\";
  if (!FBuffer->Strings || path.rfind(prefix, 0) != 0) return nullptr;
  const std::size_t slash = path.find('\\', prefix.size());
  if (slash == std::string::npos) return nullptr;
  std::string value;
  if (!FBuffer->Strings->Find(SubBlock.substr(prefix.size(), slash - prefix.size()), SubBlock.substr(slash + 1), value))
    return nullptr;
  return FBuffer->Values.emplace(path, value).first->second.c_str();
}

const std::uint16_t* TjoVersionInfo::Translation() {
  return static_cast<const std::uint16_t*>(Query(kTranslationPath));
}

std::string TjoVersionInfo::LangCharset() {
  const std::uint16_t* pair = Translation();
  if (!pair) return {};
  std::uint16_t words[2];
  std::memcpy(words, pair, sizeof words);
  return Format("%.4X%.4X", int(words[0]), int(words[1]));
}

std::string TjoVersionInfo::GetString(const std::string& Name, const std::string& Default) {
  if (FStringPath.empty()) {
    FStringPath = "\\StringFileInfo\\";
    const std::string lc = LangCharset();
    if (!lc.empty()) FStringPath += lc + "\\";
  }
  if (const void* value = Query(FStringPath + Name)) return static_cast<const char*>(value);
  return Default;
}
