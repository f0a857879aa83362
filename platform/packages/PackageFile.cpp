// Reading a package's declaration from its file without loading it: the ELF section
// ".lumora_package" holds the entries LUMORA_PACKAGE wrote. Every offset and size read
// from the file is checked against the file before it is used.
#include "platform/packages/PackageDecl.h"
#include "platform/packages/PackageInternal.h"

#include <cstring>
#include <fstream>

namespace {

constexpr char kSectionName[] = ".lumora_package";
// A section bigger than this is not a declaration.
constexpr std::uint64_t kMaxSection = 1u << 20;

class TFileBytes {
public:
  explicit TFileBytes(const std::string& fileName) : FIn(fileName, std::ios::binary) {
    if (!FIn) throw EPackageError("The file does not exist or cannot be read.");
    FIn.seekg(0, std::ios::end);
    FSize = static_cast<std::uint64_t>(FIn.tellg());
  }
  std::uint64_t Size() const { return FSize; }
  // `count` bytes from `offset`; a damaged-file error when they are not all there.
  std::string Read(std::uint64_t offset, std::uint64_t count) {
    if (offset > FSize || count > FSize - offset) throw EPackageError("The file is damaged or truncated.");
    std::string bytes(count, '\0');
    FIn.seekg(static_cast<std::streamoff>(offset));
    if (!FIn.read(bytes.data(), static_cast<std::streamsize>(count))) throw EPackageError("The file cannot be read.");
    return bytes;
  }

private:
  std::ifstream FIn;
  std::uint64_t FSize = 0;
};

template <class T>
T Get(const std::string& bytes, std::size_t at) {
  T value{};
  std::memcpy(&value, bytes.data() + at, sizeof(T));  // little-endian, checked by the caller
  return value;
}

}  // namespace

namespace packages_detail {

TPackageDeclaration ParseDeclaration(const char* data, std::size_t size) {
  TPackageDeclaration result;
  const std::string_view all(data, size);
  const std::string_view magic = LUMORA_PACKAGE_MAGIC;
  if (all.size() <= magic.size() || all.substr(0, magic.size()) != magic || all[magic.size()] != '\0')
    throw EPackageError("The file holds no package information.");
  std::size_t at = magic.size() + 1;
  while (at < all.size()) {
    const std::size_t end = all.find('\0', at);
    if (end == std::string_view::npos) throw EPackageError("The package information is damaged.");
    const std::string_view entry = all.substr(at, end - at);
    at = end + 1;
    if (entry.empty()) break;
    const std::string text(entry.substr(1));
    switch (entry[0]) {
      case 'D': result.Description = text; break;
      case 'R': result.Requires.push_back(text); break;
      case 'U': result.Contains.push_back(text); break;
      default: break;  // entries of later versions
    }
  }
  return result;
}

}  // namespace packages_detail

TPackageDeclaration ReadPackageDeclaration(const std::string& fileName) {
  TFileBytes file(fileName);
  if (file.Size() < 64) throw EPackageError("The file is not a shared library.");
  const std::string header = file.Read(0, 64);
  if (header.compare(0, 4, "\x7f" "ELF") != 0) throw EPackageError("The file is not a shared library.");
  if (header[4] != 2 || header[5] != 1) throw EPackageError("The file is not a 64-bit little-endian library.");
  const auto shoff = Get<std::uint64_t>(header, 0x28);
  const auto shentsize = Get<std::uint16_t>(header, 0x3A);
  const auto shnum = Get<std::uint16_t>(header, 0x3C);
  const auto shstrndx = Get<std::uint16_t>(header, 0x3E);
  if (shentsize < 64 || shnum == 0 || shstrndx >= shnum) throw EPackageError("The file holds no package information.");
  const std::string sections = file.Read(shoff, std::uint64_t(shentsize) * shnum);
  auto section = [&](unsigned i, std::uint64_t& offset, std::uint64_t& size, std::uint32_t& name) {
    const std::size_t at = std::size_t(i) * shentsize;
    name = Get<std::uint32_t>(sections, at);
    offset = Get<std::uint64_t>(sections, at + 24);
    size = Get<std::uint64_t>(sections, at + 32);
  };
  std::uint64_t namesOffset = 0, namesSize = 0;
  std::uint32_t unused = 0;
  section(shstrndx, namesOffset, namesSize, unused);
  if (namesSize > kMaxSection) throw EPackageError("The file is damaged or truncated.");
  const std::string names = file.Read(namesOffset, namesSize);
  for (unsigned i = 0; i < shnum; ++i) {
    std::uint64_t offset = 0, size = 0;
    std::uint32_t name = 0;
    section(i, offset, size, name);
    if (name >= names.size()) continue;
    const std::size_t nameEnd = names.find('\0', name);
    if (nameEnd == std::string::npos || std::string_view(names).substr(name, nameEnd - name) != kSectionName) continue;
    if (size > kMaxSection) throw EPackageError("The package information is damaged.");
    const std::string data = file.Read(offset, size);
    return packages_detail::ParseDeclaration(data.data(), data.size());
  }
  throw EPackageError("The file holds no package information.");
}

std::string GetPackageDescription(const std::string& fileName) {
  try {
    return ReadPackageDeclaration(fileName).Description;
  } catch (const EPackageError&) {
    return {};
  }
}
