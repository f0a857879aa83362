#include "platform/streaming/PeImage.h"

#include "platform/streaming/Values.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <unordered_set>

namespace {

constexpr std::size_t DosHeaderSize = 64;
constexpr std::size_t NewHeaderPointerAt = 0x3C;  // e_lfanew: where the PE signature is
constexpr std::size_t FileHeaderSize = 20;
constexpr std::size_t SectionHeaderSize = 40;
constexpr std::uint16_t Pe32Magic = 0x10B;
constexpr std::uint16_t Pe32PlusMagic = 0x20B;
constexpr std::size_t ResourceDirectoryIndex = 2;
constexpr std::size_t DirectoryHeaderSize = 16;
constexpr std::size_t DirectoryEntrySize = 8;
constexpr std::size_t DataEntrySize = 16;
constexpr std::uint32_t HighBit = 0x80000000u;

// Little-endian fields of a block of bytes (the file, or one resource); a field out of
// the block raises an error naming the field, its offset and the block's size.
class TFields {
public:
  TFields(std::string_view data, const char* blockName) : FData(data), FBlockName(blockName) {}

  std::size_t Size() const { return FData.size(); }

  // Raises unless `size` bytes at `offset` are in the block.
  void Need(std::uint64_t offset, std::uint64_t size, std::string_view what) const {
    if (offset > FData.size() || size > FData.size() - offset)
      throw EPeImageError(Format("%s (%u bytes at offset 0x%X) runs past the end of %s (%u bytes)", what, size,
                                 offset, FBlockName, FData.size()));
  }
  std::uint16_t U16(std::uint64_t offset, std::string_view what) const {
    Need(offset, 2, what);
    return static_cast<std::uint16_t>(Byte(offset) | Byte(offset + 1) << 8);
  }
  std::uint32_t U32(std::uint64_t offset, std::string_view what) const {
    Need(offset, 4, what);
    return static_cast<std::uint32_t>(Byte(offset)) | static_cast<std::uint32_t>(Byte(offset + 1)) << 8 |
           static_cast<std::uint32_t>(Byte(offset + 2)) << 16 | static_cast<std::uint32_t>(Byte(offset + 3)) << 24;
  }
  std::string_view Bytes(std::uint64_t offset, std::uint64_t size, std::string_view what) const {
    Need(offset, size, what);
    return FData.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(size));
  }

private:
  unsigned Byte(std::uint64_t offset) const { return static_cast<unsigned char>(FData[static_cast<std::size_t>(offset)]); }
  std::string_view FData;
  const char* FBlockName;
};

// UTF-16 little-endian code units to UTF-8.
std::string Utf16ToUtf8(std::string_view bytes) {
  std::u16string units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i)
    units[i] = static_cast<char16_t>(static_cast<unsigned char>(bytes[2 * i]) | static_cast<unsigned char>(bytes[2 * i + 1]) << 8);
  return WideToUtf8(units);
}

// Reads the resource tree: three levels of directories (type, name, language) whose
// offsets count from the tree's start and are bounded by its section.
class TResourceTreeReader {
public:
  TResourceTreeReader(const TFields& file, const std::vector<TPeSection>& sections, std::uint64_t base,
                      std::uint64_t limit, std::deque<std::string>& names, std::vector<TPeResource>& out)
      : FFile(file), FSections(sections), FBase(base), FLimit(limit), FNames(names), FOut(out) {
    // A well-formed tree has room for every entry, name and leaf it holds; more than
    // that means directories or names that overlap, which could make reading explode.
    const std::uint64_t room = limit - base;
    FEntriesLeft = room / DirectoryEntrySize;
    FLeavesLeft = room / (DirectoryEntrySize + DataEntrySize);
    FNameBytesLeft = room;
  }

  void Read() { ReadDirectory(0, 0, {}, {}); }

private:
  static constexpr const char* LevelNames[] = {"types", "names", "languages"};

  // The file offset of `size` bytes at `offset` from the tree's start.
  std::uint64_t At(std::uint32_t offset, std::uint64_t size, const char* what) const {
    const std::uint64_t at = FBase + offset;
    if (at > FLimit || size > FLimit - at) {
      FFile.Need(at, size, what);  // a file cut short says so
      throw EPeImageError(Format("%s (%u bytes at offset 0x%X) runs past the end of the resource section at 0x%X",
                                 what, size, at, FLimit));
    }
    return at;
  }

  void ReadDirectory(std::uint32_t offset, int level, const TResourceId& type, const TResourceId& name) {
    if (!FDirectories.insert(offset).second)
      throw EPeImageError(Format("Resource directory at offset 0x%X is reached a second time: the tree loops",
                                 FBase + offset));
    const std::uint64_t at = At(offset, DirectoryHeaderSize, "Resource directory");
    const std::uint32_t count = static_cast<std::uint32_t>(FFile.U16(at + 12, "Resource directory")) +
                                FFile.U16(at + 14, "Resource directory");
    if (count > FEntriesLeft || at + DirectoryHeaderSize + std::uint64_t{count} * DirectoryEntrySize > FLimit)
      throw EPeImageError(Format("Resource directory of %s at offset 0x%X claims %u entries, more than its section "
                                 "can hold", LevelNames[level], at, count));
    FEntriesLeft -= count;
    for (std::uint32_t i = 0; i < count; ++i) {
      const std::uint64_t entry = at + DirectoryHeaderSize + std::uint64_t{i} * DirectoryEntrySize;
      const TResourceId id = ReadId(FFile.U32(entry, "Resource directory entry"), entry);
      const std::uint32_t target = FFile.U32(entry + 4, "Resource directory entry");
      const bool isDirectory = (target & HighBit) != 0;
      if (level < 2) {
        if (!isDirectory)
          throw EPeImageError(Format("Resource directory entry at offset 0x%X should lead to a directory of %s but "
                                     "points to data", entry, LevelNames[level + 1]));
        ReadDirectory(target & ~HighBit, level + 1, level == 0 ? id : type, id);
      } else {
        if (isDirectory)
          throw EPeImageError(Format("Resource directory entry at offset 0x%X for language %u points to a "
                                     "directory instead of data", entry, id.Number));
        ReadLeaf(target, entry, type, name, id);
      }
    }
  }

  TResourceId ReadId(std::uint32_t value, std::uint64_t entry) {
    TResourceId id;
    if (!(value & HighBit)) {
      if (value > 0xFFFF)
        throw EPeImageError(Format("Resource directory entry at offset 0x%X holds the number %u, above 65535", entry,
                                   value));
      id.Number = static_cast<std::uint16_t>(value);
      return id;
    }
    const std::uint32_t offset = value & ~HighBit;
    const std::uint64_t at = At(offset, 2, "Resource name");
    const std::uint16_t length = FFile.U16(at, "Resource name");
    const std::uint64_t bytes = std::uint64_t{length} * 2;
    if (bytes > FNameBytesLeft)
      throw EPeImageError(Format("Resource name at offset 0x%X: the names overlap (more name text than the section "
                                 "holds)", at));
    FNameBytesLeft -= bytes;
    At(offset + 2, bytes, "Resource name");
    // Leaves share their names: a damaged tree can point many entries at one long name.
    FNames.push_back(Utf16ToUtf8(FFile.Bytes(at + 2, bytes, "Resource name")));
    id.IsNumber = false;
    id.Name = FNames.back();
    return id;
  }

  void ReadLeaf(std::uint32_t offset, std::uint64_t entry, const TResourceId& type, const TResourceId& name,
                const TResourceId& language) {
    if (FLeavesLeft == 0)
      throw EPeImageError(Format("Resource directory entry at offset 0x%X: more resources than the section can hold",
                                 entry));
    --FLeavesLeft;
    const std::uint64_t at = At(offset, DataEntrySize, "Resource data entry");
    TPeResource resource;
    resource.Type = type;
    resource.Name = name;
    resource.Language = language.Number;
    resource.Rva = FFile.U32(at, "Resource data entry");
    resource.Size = FFile.U32(at + 4, "Resource data entry");
    resource.CodePage = FFile.U32(at + 8, "Resource data entry");
    FindData(resource);
    FOut.push_back(resource);
  }

  // Where the data is: in one section's data in the file, or the resource is damaged.
  void FindData(TPeResource& resource) const {
    resource.Damage = TResourceDamage::NoSection;
    for (const TPeSection& s : FSections) {
      const std::uint32_t extent = s.VirtualSize ? s.VirtualSize : s.RawSize;
      if (resource.Rva < s.VirtualAddress || resource.Rva - s.VirtualAddress >= extent) continue;
      resource.Section = s.Name;
      const std::uint64_t inSection = resource.Rva - s.VirtualAddress;
      const std::uint64_t at = s.RawOffset + inSection;
      if (inSection + resource.Size > s.RawSize) {
        resource.Damage = TResourceDamage::PastSection;
      } else if (at + resource.Size > FFile.Size()) {
        resource.Damage = TResourceDamage::PastFile;
      } else {
        resource.Damage = TResourceDamage::None;
        resource.Data = FFile.Bytes(at, resource.Size, "Resource data");
      }
      return;
    }
  }

  const TFields& FFile;
  const std::vector<TPeSection>& FSections;
  std::uint64_t FBase;
  std::uint64_t FLimit;
  std::deque<std::string>& FNames;
  std::vector<TPeResource>& FOut;
  std::unordered_set<std::uint32_t> FDirectories;
  std::uint64_t FEntriesLeft = 0;
  std::uint64_t FLeavesLeft = 0;
  std::uint64_t FNameBytesLeft = 0;
};

bool SameId(const TResourceId& a, const TResourceId& b) {
  return a.IsNumber == b.IsNumber && a.Number == b.Number && a.Name == b.Name;
}

}  // namespace

// ------------------------------------------------------------------ resource ids

std::string TResourceId::Text() const { return IsNumber ? "#" + std::to_string(Number) : std::string(Name); }

bool TResourceId::Matches(std::string_view text) const {
  if (!IsNumber) return SameText(Name, text);
  if (text.size() < 2 || text[0] != '#') return false;
  long long value;
  return TryStrToInt(text.substr(1), value) && value == Number && text[1] != '$';
}

// ------------------------------------------------------------------ images

bool IsPeImage(std::string_view data) {
  if (data.size() < DosHeaderSize || data.substr(0, 2) != "MZ") return false;
  const TFields fields(data, "the file");
  const std::uint32_t at = fields.U32(NewHeaderPointerAt, "DOS header");
  return at <= data.size() && data.size() - at >= 4 && data.substr(at, 4) == std::string_view("PE\0\0", 4);
}

TPeImage::TPeImage(std::string_view image) : FImage(image) {
  const TFields file(image, "the file");
  if (image.substr(0, 2) != "MZ") throw EPeImageError("Not a Windows program: the file does not start with \"MZ\"");
  if (image.size() < DosHeaderSize)
    throw EPeImageError(Format("Not a Windows program: the file (%u bytes) is shorter than a DOS header (64 bytes)",
                               image.size()));
  const std::uint32_t pe = file.U32(NewHeaderPointerAt, "DOS header");
  if (pe > image.size() || image.size() - pe < 4 || image.substr(pe, 4) != std::string_view("PE\0\0", 4))
    throw EPeImageError(Format("Not a Windows program: no PE signature at offset 0x%X, where the DOS header points", pe));

  const std::uint64_t header = std::uint64_t{pe} + 4;
  file.Need(header, FileHeaderSize, "PE file header");
  FMachine = file.U16(header, "PE file header");
  const std::uint16_t sectionCount = file.U16(header + 2, "PE file header");
  const std::uint16_t optionalSize = file.U16(header + 16, "PE file header");
  const std::uint64_t optional = header + FileHeaderSize;
  file.Need(optional, optionalSize, "Optional header");
  if (optionalSize < 2)
    throw EPeImageError(Format("Optional header at offset 0x%X is %u bytes long, too short for its magic number",
                               optional, optionalSize));
  const std::uint16_t magic = file.U16(optional, "Optional header");
  if (magic != Pe32Magic && magic != Pe32PlusMagic)
    throw EPeImageError(Format("Optional header at offset 0x%X has the magic number 0x%X; expected 0x10B (PE32) or "
                               "0x20B (PE32+)", optional, magic));
  FIs64Bit = magic == Pe32PlusMagic;
  // The count of data directories, then the directories: after the fields that differ
  // in width between the two kinds.
  const std::uint32_t countAt = FIs64Bit ? 108 : 92;
  if (optionalSize < countAt + 4)
    throw EPeImageError(Format("Optional header at offset 0x%X is %u bytes long, too short for a %s header (%u bytes)",
                               optional, optionalSize, FIs64Bit ? "PE32+" : "PE32", countAt + 4));
  const std::uint32_t declared = file.U32(optional + countAt, "Optional header");
  const std::uint64_t directories = std::min<std::uint64_t>(declared, (optionalSize - countAt - 4) / 8);

  const std::uint64_t table = optional + optionalSize;
  file.Need(table, std::uint64_t{sectionCount} * SectionHeaderSize,
            Format("Section table of %u sections", sectionCount));
  FSections.reserve(sectionCount);
  for (std::uint32_t i = 0; i < sectionCount; ++i) {
    const std::uint64_t at = table + std::uint64_t{i} * SectionHeaderSize;
    TPeSection s;
    const std::string_view name = file.Bytes(at, 8, "Section header");
    s.Name = name.substr(0, std::min(name.find('\0'), name.size()));
    s.VirtualSize = file.U32(at + 8, "Section header");
    s.VirtualAddress = file.U32(at + 12, "Section header");
    s.RawSize = file.U32(at + 16, "Section header");
    s.RawOffset = file.U32(at + 20, "Section header");
    FSections.push_back(std::move(s));
  }

  if (directories <= ResourceDirectoryIndex) return;
  const std::uint64_t entry = optional + countAt + 4 + ResourceDirectoryIndex * 8;
  const std::uint32_t rva = file.U32(entry, "Resource table entry");
  const std::uint32_t size = file.U32(entry + 4, "Resource table entry");
  if (rva == 0 && size == 0) return;
  for (const TPeSection& s : FSections) {
    const std::uint32_t extent = s.VirtualSize ? s.VirtualSize : s.RawSize;
    if (rva < s.VirtualAddress || rva - s.VirtualAddress >= extent) continue;
    const std::uint64_t base = std::uint64_t{s.RawOffset} + (rva - s.VirtualAddress);
    const std::uint64_t limit = std::min<std::uint64_t>(std::uint64_t{s.RawOffset} + s.RawSize, image.size());
    if (base >= limit)
      throw EPeImageError(Format("Resource table at RVA 0x%X lies past the data of section %s in the file", rva, s.Name));
    FResourceTableOffset = base;
    TResourceTreeReader(file, FSections, base, limit, FNames, FResources).Read();
    return;
  }
  throw EPeImageError(Format("Resource table at RVA 0x%X lies in no section", rva));
}

const TPeResource* TPeImage::FindResource(std::uint16_t type, std::string_view name) const {
  const TPeResource* best = nullptr;
  for (const TPeResource& r : FResources)
    if (r.Type.IsNumber && r.Type.Number == type && r.Name.Matches(name) && (!best || r.Language < best->Language))
      best = &r;
  return best;
}

const TPeResource* TPeImage::FirstResource(std::uint16_t type) const {
  for (const TPeResource& r : FResources)
    if (r.Type.IsNumber && r.Type.Number == type) return FindResource(type, r.Name.Text());
  return nullptr;
}

std::vector<const TPeResource*> TPeImage::Forms() const {
  // Leaves of one name follow each other in tree order; a damaged tree may repeat a
  // name further on, which still gives one form.
  std::vector<const TPeResource*> forms;
  std::unordered_set<std::string> seen;
  std::vector<const TPeResource*> languages;
  auto flush = [&] {
    const TPeResource* best = nullptr;
    for (const TPeResource* r : languages)
      if (IsFormStream(r->Data) && (!best || r->Language < best->Language)) best = r;
    for (const TPeResource* r : languages)
      if (!best && r->Damaged()) best = r;
    if (best && seen.insert(UpperCase(best->Name.Text())).second) forms.push_back(best);
    languages.clear();
  };
  for (const TPeResource& r : FResources) {
    if (!r.Type.IsNumber || r.Type.Number != RT_RCDATA) continue;
    if (!languages.empty() && !SameId(languages.front()->Name, r.Name)) flush();
    languages.push_back(&r);
  }
  flush();
  return forms;
}

const TPeResource& TPeImage::Form(std::string_view name) const {
  const std::vector<const TPeResource*> forms = Forms();
  for (const TPeResource* form : forms)
    if (form->Name.Matches(name)) return *form;
  if (forms.empty()) throw EPeImageError(Format("No form named %s: the program holds no forms", name));
  std::string names;
  for (const TPeResource* form : forms) names += (names.empty() ? "" : ", ") + form->Name.Text();
  throw EPeImageError(Format("No form named %s in the program; its forms are %s", name, names));
}

bool IsFormStream(std::string_view data) { return data.substr(0, 4) == "TPF0"; }

std::string TPeResource::DamageText() const {
  const std::string what = Format("Resource %s of type %s (language %u)", Name.Text(), Type.Text(), Language);
  switch (Damage) {
    case TResourceDamage::None: return {};
    case TResourceDamage::NoSection: return Format("%s: its data at RVA 0x%X lies in no section", what, Rva);
    case TResourceDamage::PastSection:
      return Format("%s: its %u bytes at RVA 0x%X run past the end of section %s", what, Size, Rva, Section);
    case TResourceDamage::PastFile:
      return Format("%s: its %u bytes at RVA 0x%X run past the end of the file, which is cut short", what, Size, Rva);
  }
  return {};
}

std::string_view TPeResource::Bytes() const {
  if (Damaged()) throw EPeImageError(DamageText());
  return Data;
}

// ------------------------------------------------------------------ version resources

std::string TVersionTranslation::Key() const { return Format("%.4X%.4X", Language, CodePage); }

namespace {

// One block of a version resource: a length, a value length, a type, a zero-ended
// UTF-16 key, the value and the children, each part on a 4-byte boundary from the
// resource's start.
struct TVersionBlock {
  std::string Key;
  std::size_t ValueStart = 0;  // offsets into the resource
  std::uint16_t ValueLength = 0;
  bool IsText = false;
  std::size_t ChildrenStart = 0;
  std::size_t End = 0;
};

std::size_t Align4(std::size_t offset) { return (offset + 3) & ~std::size_t{3}; }

// Reads the block at `offset`, which must end by `limit`.
TVersionBlock ReadVersionBlock(const TFields& data, std::size_t offset, std::size_t limit) {
  const std::uint16_t length = data.U16(offset, "Version block");
  if (length < 6 || length > limit - offset)
    throw EPeImageError(Format("Version block at offset %u claims %u bytes, but %u remain in the block around it",
                               offset, length, limit - offset));
  TVersionBlock block;
  block.End = offset + length;
  block.ValueLength = data.U16(offset + 2, "Version block");
  block.IsText = data.U16(offset + 4, "Version block") == 1;
  std::size_t at = offset + 6;
  std::u16string key;
  for (;;) {
    if (at + 2 > block.End)
      throw EPeImageError(Format("Version block at offset %u: its key has no end inside the block", offset));
    const char16_t unit = data.U16(at, "Version block");
    at += 2;
    if (unit == 0) break;
    key.push_back(unit);
  }
  block.Key = WideToUtf8(key);
  block.ValueStart = std::min(Align4(at), block.End);
  const std::size_t valueBytes = block.IsText ? std::size_t{block.ValueLength} * 2 : block.ValueLength;
  block.ChildrenStart = std::min(Align4(block.ValueStart + valueBytes), block.End);
  return block;
}

// Calls `visit` for each child block of `parent`.
template <class Visit>
void ForEachChild(const TFields& data, const TVersionBlock& parent, Visit visit) {
  std::size_t at = parent.ChildrenStart;
  while (at + 6 <= parent.End) {
    const TVersionBlock child = ReadVersionBlock(data, at, parent.End);
    visit(child);
    at = Align4(child.End);
  }
}

}  // namespace

TVersionStrings::TVersionStrings(std::string_view resource) {
  const TFields data(resource, "the version resource");
  const TVersionBlock root = ReadVersionBlock(data, 0, resource.size());
  if (root.Key != "VS_VERSION_INFO")
    throw EPeImageError(Format("Not a version resource: its first block is named \"%s\", not VS_VERSION_INFO", root.Key));
  ForEachChild(data, root, [&](const TVersionBlock& info) {
    if (info.Key == "StringFileInfo") {
      ForEachChild(data, info, [&](const TVersionBlock& table) {
        ForEachChild(data, table, [&](const TVersionBlock& string) {
          // Writers disagree on whether a string's value length counts characters or
          // bytes; the value runs to its zero or to the block's end.
          std::string_view bytes = resource.substr(string.ValueStart, string.End - string.ValueStart);
          if (string.ValueLength == 0) bytes = {};
          std::u16string value;
          for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
            const char16_t unit = static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                                        static_cast<unsigned char>(bytes[i + 1]) << 8);
            if (unit == 0) break;
            value.push_back(unit);
          }
          FEntries.push_back({table.Key, string.Key, WideToUtf8(value)});
        });
      });
    } else if (info.Key == "VarFileInfo") {
      ForEachChild(data, info, [&](const TVersionBlock& var) {
        if (var.Key != "Translation") return;
        const std::size_t end = std::min(var.ValueStart + var.ValueLength, var.End);
        for (std::size_t at = var.ValueStart; at + 4 <= end; at += 4)
          FTranslations.push_back({data.U16(at, "Translation"), data.U16(at + 2, "Translation")});
      });
    }
  });
}

std::vector<std::string> TVersionStrings::Tables() const {
  std::vector<std::string> tables;
  for (const TEntry& e : FEntries)
    if (tables.empty() || tables.back() != e.Table) tables.push_back(e.Table);
  return tables;
}

bool TVersionStrings::Find(std::string_view table, std::string_view name, std::string& value) const {
  for (const TEntry& e : FEntries) {
    if (SameText(e.Table, table) && SameText(e.Name, name)) {
      value = e.Value;
      return true;
    }
  }
  return false;
}

bool TVersionStrings::Find(std::string_view name, std::string& value) const {
  return !FTranslations.empty() && Find(FTranslations.front().Key(), name, value);
}
