#pragma once
// Windows programs and libraries (.exe, .dll, .bpl) read from their bytes: the DOS and PE
// headers (32 and 64 bits), the section table and the resource tree. A Delphi program
// keeps each of its forms there as a binary form stream in an RCDATA resource named
// after the form's class. Every offset, count and size read from the file is checked
// against the file before use; a damaged image raises EPeImageError saying what is
// wrong and at which offset.

#include "platform/streaming/SysUtils.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

// A file that is not a Windows program, or one whose headers or resources are damaged.
LUMORA_DECLARE_EXCEPTION(EPeImageError, EStreamError)

// Resource types by number.
inline constexpr std::uint16_t RT_RCDATA = 10;
inline constexpr std::uint16_t RT_VERSION = 16;

// A resource type or name: a number or a string.
struct TResourceId {
  bool IsNumber = true;
  std::uint16_t Number = 0;
  std::string_view Name;  // UTF-8, when not a number; held by the image

  // The name, or "#" and the number.
  std::string Text() const;
  // Whether `text` names this id: a string without regard to ASCII case, a number as "#N".
  bool Matches(std::string_view text) const;
};

// What is wrong with a resource whose data is not in the file.
enum class TResourceDamage : std::uint8_t {
  None,
  NoSection,    // its RVA lies in no section
  PastSection,  // its data runs past the end of its section's data
  PastFile,     // its data runs past the end of the file (a file cut short)
};

// One resource: a leaf of the tree (type, name, language). A leaf whose data is not in
// the file is kept, marked damaged, so that the others can still be read.
struct TPeResource {
  TResourceId Type;
  TResourceId Name;
  std::uint16_t Language = 0;
  std::uint32_t CodePage = 0;
  std::string_view Data;  // inside the image's bytes; empty when damaged
  std::uint32_t Rva = 0;  // where the data entry says the data is
  std::uint32_t Size = 0;
  TResourceDamage Damage = TResourceDamage::None;
  std::string_view Section;  // the name of the section the RVA falls in, when it does

  bool Damaged() const { return Damage != TResourceDamage::None; }
  // What is wrong, naming the resource; empty when it is intact.
  std::string DamageText() const;
  // The data; raises EPeImageError with DamageText() when the resource is damaged.
  std::string_view Bytes() const;
};

// One entry of the section table.
struct TPeSection {
  std::string_view Name;  // up to 8 bytes, without the padding zeros; inside the image's bytes
  std::uint32_t VirtualAddress = 0;
  std::uint32_t VirtualSize = 0;
  std::uint32_t RawOffset = 0;
  std::uint32_t RawSize = 0;
};

// Whether `data` starts like a PE image: "MZ", and "PE\0\0" where the DOS header points.
// Cheap; says nothing about the rest of the file.
bool IsPeImage(std::string_view data);

// A PE image read at construction. It keeps views into `image`, which must outlive it.
class TPeImage {
public:
  // Reads the headers, the section table and the whole resource tree; raises
  // EPeImageError when any of them is damaged.
  explicit TPeImage(std::string_view image);
  TPeImage(const TPeImage&) = delete;
  TPeImage& operator=(const TPeImage&) = delete;
  TPeImage(TPeImage&&) = default;
  TPeImage& operator=(TPeImage&&) = default;

  // True for PE32+ (64-bit programs).
  bool Is64Bit() const { return FIs64Bit; }
  // The machine field of the file header (0x14C for x86, 0x8664 for x64).
  std::uint16_t Machine() const { return FMachine; }
  const std::vector<TPeSection>& Sections() const { return FSections; }
  // File offset of the root of the resource tree; 0 when there is no resource table.
  std::uint64_t ResourceTableOffset() const { return FResourceTableOffset; }
  // Every resource, in the order of the tree (types, then names, then languages).
  const std::vector<TPeResource>& Resources() const { return FResources; }

  // The resource of `type` named `name` (see TResourceId::Matches); of its languages the
  // lowest (language-neutral first). Null when there is none.
  const TPeResource* FindResource(std::uint16_t type, std::string_view name) const;
  // The first resource of `type`, in the same order of languages; null when there is none.
  const TPeResource* FirstResource(std::uint16_t type) const;

  // The RCDATA resources that hold a binary form stream ("TPF0"), one per name, and
  // the damaged RCDATA resources, which may have held one.
  std::vector<const TPeResource*> Forms() const;
  // The form of resource `name` (see TResourceId::Matches) among Forms(); raises
  // EPeImageError naming the forms there are when the program has no such form.
  const TPeResource& Form(std::string_view name) const;

private:
  std::string_view FImage;
  bool FIs64Bit = false;
  std::uint16_t FMachine = 0;
  std::uint64_t FResourceTableOffset = 0;
  std::vector<TPeSection> FSections;
  std::vector<TPeResource> FResources;
  std::deque<std::string> FNames;  // the string names the resources point into
};

// Whether the bytes of a resource are a binary form stream.
bool IsFormStream(std::string_view data);

// One language and code page of a version resource.
struct TVersionTranslation {
  std::uint16_t Language = 0;
  std::uint16_t CodePage = 0;
  // The eight upper-case hexadecimal digits of a string table's key ("040904E4").
  std::string Key() const;
};

// The strings of a version resource (RT_VERSION): the translations listed under
// "VarFileInfo" and the string tables under "StringFileInfo". Values are UTF-8.
class TVersionStrings {
public:
  // Reads the resource's data; raises EPeImageError when its blocks are damaged.
  explicit TVersionStrings(std::string_view data);

  // The language and code-page pairs of "\VarFileInfo\Translation", in their order.
  const std::vector<TVersionTranslation>& Translations() const { return FTranslations; }
  // The keys of the string tables, as written in the resource ("040904E4").
  std::vector<std::string> Tables() const;
  // The string `name` of the table `table` (both without regard to ASCII case); false
  // when either is missing.
  bool Find(std::string_view table, std::string_view name, std::string& value) const;
  // The string `name` of the table of the first translation; false when there is no
  // translation, no such table or no such string.
  bool Find(std::string_view name, std::string& value) const;

private:
  struct TEntry {
    std::string Table;
    std::string Name;
    std::string Value;
  };
  std::vector<TVersionTranslation> FTranslations;
  std::vector<TEntry> FEntries;
};
