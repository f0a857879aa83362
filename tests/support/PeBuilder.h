#pragma once
// Hand-made Windows programs for tests and benchmarks: a DOS header, PE headers (32 or
// 64 bits), a code section and a resource section holding the given resources, laid out
// as a linker lays them out. Also version resources with chosen translations and strings.

#include "platform/streaming/Values.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace lumora::test {

// One resource to put into an image. Types and names are text: "#10" for a number.
struct TBuiltResource {
  std::string Type;
  std::string Name;
  std::uint16_t Language = 0;
  std::string Data;
};

// An image and where its parts are, so that tests can damage them.
struct TBuiltImage {
  std::string Bytes;
  std::size_t HeadersEnd = 0;        // end of the section table
  std::size_t ResourceOffset = 0;    // file offset of the root resource directory
  std::size_t ResourceRva = 0;
  std::size_t DirectoriesEnd = 0;    // file offset after the directories, names and data entries
  std::size_t ResourceSize = 0;      // bytes of the resource section that are used
};

namespace pe_builder_detail {

inline void Put16(std::string& s, std::size_t at, std::uint32_t v) {
  if (s.size() < at + 2) s.resize(at + 2, '\0');
  s[at] = static_cast<char>(v & 0xFF);
  s[at + 1] = static_cast<char>((v >> 8) & 0xFF);
}
inline void Put32(std::string& s, std::size_t at, std::uint32_t v) {
  Put16(s, at, v & 0xFFFF);
  Put16(s, at + 2, v >> 16);
}
inline void Append16(std::string& s, std::uint32_t v) { Put16(s, s.size(), v); }
inline void Append32(std::string& s, std::uint32_t v) { Put32(s, s.size(), v); }
inline void PadTo(std::string& s, std::size_t alignment) {
  s.resize((s.size() + alignment - 1) / alignment * alignment, '\0');
}
inline void AppendUtf16(std::string& s, std::string_view utf8) {
  for (char16_t unit : Utf8ToWide(utf8)) Append16(s, unit);
}

struct TId {
  bool IsNumber = false;
  std::uint16_t Number = 0;
  std::string Name;
};

inline TId ParseId(const std::string& text) {
  TId id;
  if (text.size() > 1 && text[0] == '#' && std::all_of(text.begin() + 1, text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
    id.IsNumber = true;
    id.Number = static_cast<std::uint16_t>(std::stoul(text.substr(1)));
  } else {
    id.Name = text;
  }
  return id;
}
// Strings before numbers, each in order: the order of a linker's directories.
inline bool IdLess(const TId& a, const TId& b) {
  if (a.IsNumber != b.IsNumber) return !a.IsNumber;
  return a.IsNumber ? a.Number < b.Number : a.Name < b.Name;
}
inline bool IdEqual(const TId& a, const TId& b) {
  return a.IsNumber == b.IsNumber && a.Number == b.Number && a.Name == b.Name;
}

}  // namespace pe_builder_detail

// Builds an image holding `resources`; `pe32Plus` makes a 64-bit one. With `withTable`
// false the image has no resource table at all.
inline TBuiltImage BuildPeImage(const std::vector<TBuiltResource>& resources, bool pe32Plus = false,
                                bool withTable = true) {
  using namespace pe_builder_detail;
  struct TLeaf { std::uint16_t Language; const std::string* Data; };
  struct TName { TId Id; std::vector<TLeaf> Leaves; };
  struct TType { TId Id; std::vector<TName> Names; };
  std::vector<TType> types;
  for (const TBuiltResource& r : resources) {
    const TId type = ParseId(r.Type), name = ParseId(r.Name);
    auto t = std::find_if(types.begin(), types.end(), [&](const TType& x) { return IdEqual(x.Id, type); });
    if (t == types.end()) t = types.insert(types.end(), TType{type, {}});
    auto n = std::find_if(t->Names.begin(), t->Names.end(), [&](const TName& x) { return IdEqual(x.Id, name); });
    if (n == t->Names.end()) n = t->Names.insert(t->Names.end(), TName{name, {}});
    n->Leaves.push_back({r.Language, &r.Data});
  }
  std::sort(types.begin(), types.end(), [](const TType& a, const TType& b) { return IdLess(a.Id, b.Id); });
  for (TType& t : types) {
    std::sort(t.Names.begin(), t.Names.end(), [](const TName& a, const TName& b) { return IdLess(a.Id, b.Id); });
    for (TName& n : t.Names)
      std::stable_sort(n.Leaves.begin(), n.Leaves.end(), [](const TLeaf& a, const TLeaf& b) { return a.Language < b.Language; });
  }

  // Layout of the section: every directory, then the names, the data entries, the data.
  constexpr std::uint32_t SectionRva = 0x2000;
  std::size_t size = 16 + 8 * types.size();
  std::vector<std::size_t> typeDirs, nameDirs;
  for (const TType& t : types) {
    typeDirs.push_back(size);
    size += 16 + 8 * t.Names.size();
  }
  for (const TType& t : types)
    for (const TName& n : t.Names) {
      nameDirs.push_back(size);
      size += 16 + 8 * n.Leaves.size();
    }
  std::string section(size, '\0');
  auto nameOffset = [&](const TId& id) -> std::uint32_t {
    if (id.IsNumber) return id.Number;
    const std::size_t at = section.size();
    const std::u16string units = Utf8ToWide(id.Name);
    Append16(section, static_cast<std::uint32_t>(units.size()));
    AppendUtf16(section, id.Name);
    return 0x80000000u | static_cast<std::uint32_t>(at);
  };
  auto directory = [&](std::size_t at, const std::vector<TId>& ids) {
    const auto named = std::count_if(ids.begin(), ids.end(), [](const TId& id) { return !id.IsNumber; });
    Put16(section, at + 12, static_cast<std::uint32_t>(named));
    Put16(section, at + 14, static_cast<std::uint32_t>(ids.size() - named));
    for (std::size_t i = 0; i < ids.size(); ++i) Put32(section, at + 16 + 8 * i, nameOffset(ids[i]));
  };
  {
    std::vector<TId> ids;
    for (const TType& t : types) ids.push_back(t.Id);
    directory(0, ids);
    for (std::size_t i = 0; i < types.size(); ++i) Put32(section, 16 + 8 * i + 4, 0x80000000u | static_cast<std::uint32_t>(typeDirs[i]));
  }
  std::size_t nameDir = 0;
  std::vector<std::pair<std::size_t, const TLeaf*>> leafEntries;  // language entry, leaf
  for (std::size_t ti = 0; ti < types.size(); ++ti) {
    std::vector<TId> ids;
    for (const TName& n : types[ti].Names) ids.push_back(n.Id);
    directory(typeDirs[ti], ids);
    for (std::size_t ni = 0; ni < types[ti].Names.size(); ++ni, ++nameDir) {
      Put32(section, typeDirs[ti] + 16 + 8 * ni + 4, 0x80000000u | static_cast<std::uint32_t>(nameDirs[nameDir]));
      const TName& n = types[ti].Names[ni];
      std::vector<TId> languages;
      for (const TLeaf& leaf : n.Leaves) languages.push_back(TId{true, leaf.Language, {}});
      directory(nameDirs[nameDir], languages);
      for (std::size_t li = 0; li < n.Leaves.size(); ++li) leafEntries.push_back({nameDirs[nameDir] + 16 + 8 * li, &n.Leaves[li]});
    }
  }
  PadTo(section, 4);
  std::vector<std::size_t> dataEntries;
  for (auto& [entry, leaf] : leafEntries) {
    dataEntries.push_back(section.size());
    Put32(section, entry + 4, static_cast<std::uint32_t>(section.size()));
    section.append(16, '\0');
  }
  const std::size_t directoriesEnd = section.size();
  for (std::size_t i = 0; i < leafEntries.size(); ++i) {
    PadTo(section, 8);
    const std::string& data = *leafEntries[i].second->Data;
    Put32(section, dataEntries[i], SectionRva + static_cast<std::uint32_t>(section.size()));
    Put32(section, dataEntries[i] + 4, static_cast<std::uint32_t>(data.size()));
    Put32(section, dataEntries[i] + 8, 1252);
    section += data;
  }
  const std::size_t used = section.size();
  PadTo(section, 0x200);

  // The headers.
  std::string image(0x400, '\0');
  image[0] = 'M';
  image[1] = 'Z';
  Put32(image, 0x3C, 0x80);
  image.replace(0x80, 4, std::string("PE\0\0", 4));
  const std::size_t optionalSize = pe32Plus ? 240 : 224;
  Put16(image, 0x84, pe32Plus ? 0x8664 : 0x14C);
  Put16(image, 0x86, 2);
  Put16(image, 0x94, static_cast<std::uint32_t>(optionalSize));
  Put16(image, 0x96, pe32Plus ? 0x0022 : 0x0102);
  const std::size_t optional = 0x98;
  Put16(image, optional, pe32Plus ? 0x20B : 0x10B);
  Put32(image, optional + 16, 0x1000);                 // entry point
  Put32(image, optional + 32, 0x1000);                 // section alignment
  Put32(image, optional + 36, 0x200);                  // file alignment
  Put32(image, optional + 56, SectionRva + static_cast<std::uint32_t>((section.size() + 0xFFF) / 0x1000 * 0x1000));
  Put32(image, optional + 60, 0x400);                  // size of headers
  Put16(image, optional + 68, 2);                      // a windowed program
  const std::size_t count = pe32Plus ? 108 : 92;
  Put32(image, optional + count, 16);
  if (withTable) {
    Put32(image, optional + count + 4 + 16, SectionRva);
    Put32(image, optional + count + 4 + 20, static_cast<std::uint32_t>(used));
  }
  const std::size_t table = optional + optionalSize;
  auto sectionHeader = [&](std::size_t at, const char* name, std::uint32_t virtualSize, std::uint32_t rva,
                           std::uint32_t rawSize, std::uint32_t rawOffset) {
    image.replace(at, std::char_traits<char>::length(name), name);
    Put32(image, at + 8, virtualSize);
    Put32(image, at + 12, rva);
    Put32(image, at + 16, rawSize);
    Put32(image, at + 20, rawOffset);
  };
  sectionHeader(table, ".text", 0x10, 0x1000, 0x200, 0x400);
  sectionHeader(table + 40, ".rsrc", static_cast<std::uint32_t>(used), SectionRva,
                static_cast<std::uint32_t>(section.size()), 0x600);
  image.resize(0x600, '\0');
  image[0x400] = '\xC3';  // the code: one return
  image += section;

  TBuiltImage built;
  built.Bytes = std::move(image);
  built.HeadersEnd = table + 80;
  built.ResourceOffset = 0x600;
  built.ResourceRva = SectionRva;
  built.DirectoriesEnd = 0x600 + directoriesEnd;
  built.ResourceSize = used;
  return built;
}

// One string table of a version resource: its key ("040904E4") and its strings.
struct TBuiltStringTable {
  std::string Key;
  std::vector<std::pair<std::string, std::string>> Strings;
};

// A version resource (the data of an RT_VERSION resource) with these translations
// (language, code page) and string tables.
inline std::string BuildVersionResource(const std::vector<std::pair<std::uint16_t, std::uint16_t>>& translations,
                                        const std::vector<TBuiltStringTable>& tables) {
  using namespace pe_builder_detail;
  // A block: length, value length, type, key, value and children, each part on 4 bytes.
  auto block = [](std::string_view key, std::string_view value, std::uint32_t valueLength, bool text,
                  const std::vector<std::string>& children) {
    std::string b(6, '\0');
    AppendUtf16(b, key);
    Append16(b, 0);
    PadTo(b, 4);
    b += value;
    for (const std::string& child : children) {
      PadTo(b, 4);
      b += child;
    }
    Put16(b, 0, static_cast<std::uint32_t>(b.size()));
    Put16(b, 2, valueLength);
    Put16(b, 4, text ? 1 : 0);
    return b;
  };
  std::vector<std::string> tableBlocks;
  for (const TBuiltStringTable& table : tables) {
    std::vector<std::string> strings;
    for (const auto& [name, value] : table.Strings) {
      std::string units;
      AppendUtf16(units, value);
      Append16(units, 0);
      strings.push_back(block(name, units, static_cast<std::uint32_t>(units.size() / 2), true, {}));
    }
    tableBlocks.push_back(block(table.Key, {}, 0, true, strings));
  }
  std::vector<std::string> children;
  if (!tables.empty()) children.push_back(block("StringFileInfo", {}, 0, true, tableBlocks));
  if (!translations.empty()) {
    std::string pairs;
    for (const auto& [language, codePage] : translations) {
      Append16(pairs, language);
      Append16(pairs, codePage);
    }
    children.push_back(block("VarFileInfo", {}, 0, true,
                             {block("Translation", pairs, static_cast<std::uint32_t>(pairs.size()), false, {})}));
  }
  std::string fixed;
  Append32(fixed, 0xFEEF04BDu);  // the fixed part's signature
  Append32(fixed, 0x00010000u);
  fixed.resize(52, '\0');
  return block("VS_VERSION_INFO", fixed, 52, false, children);
}

}  // namespace lumora::test
