// Damaged Windows programs: cut short, bytes changed in the headers and the resource
// tree, directories that loop, sizes past the end, absurd counts. Each gives a clear
// error or a good read, never a crash, a hang or memory out of proportion to the file.

#include "platform/streaming/ObjectText.h"
#include "platform/streaming/PeImage.h"
#include "tests/support/Corpus.h"
#include "tests/support/Errors.h"
#include "tests/support/PeBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>
#include <random>
#include <stdexcept>

// Live heap bytes and their peak since the last reset.
static std::atomic<long long> HeapNow{0};
static std::atomic<long long> HeapPeak{0};

#if defined(__GNUC__) && !defined(__clang__)
// The replacements below pair malloc with free; the compiler cannot see that.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif

void* operator new(std::size_t size) {
  void* p = std::malloc(size ? size : 1);
  if (!p) throw std::bad_alloc();
  const long long now = HeapNow += static_cast<long long>(malloc_usable_size(p));
  long long peak = HeapPeak.load();
  while (now > peak && !HeapPeak.compare_exchange_weak(peak, now)) {
  }
  return p;
}
void* operator new[](std::size_t size) { return ::operator new(size); }
void operator delete(void* p) noexcept {
  if (!p) return;
  HeapNow -= static_cast<long long>(malloc_usable_size(p));
  std::free(p);
}
void operator delete[](void* p) noexcept { ::operator delete(p); }
void operator delete(void* p, std::size_t) noexcept { ::operator delete(p); }
void operator delete[](void* p, std::size_t) noexcept { ::operator delete(p); }
// Sorting asks for its buffer without exceptions.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return ::operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return ::operator new(size, tag); }
void operator delete(void* p, const std::nothrow_t&) noexcept { ::operator delete(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { ::operator delete(p); }

namespace {

using lumora::test::BuildPeImage;
using lumora::test::BuildVersionResource;
using lumora::test::CorpusDir;
using lumora::test::MessageOf;
using lumora::test::ReadFileBytes;
using lumora::test::TBuiltImage;
using lumora::test::pe_builder_detail::Put16;
using lumora::test::pe_builder_detail::Put32;

enum class TOutcome { Read, ImageError, FormError, OtherError };

// What reading a program gives: its intact forms (resource name and stream) and how many
// of its resources are damaged, when it reads.
struct TRead {
  TOutcome Outcome = TOutcome::OtherError;
  std::string Message;
  std::vector<std::pair<std::string, std::string>> Forms;
  std::vector<std::size_t> FormEnds;  // where each form's data ends in the file
  int Damaged = 0;
  long long PeakHeap = 0;  // above what was live before
};

// Reads `data` as a user's command would: the image, its forms as text, its version
// strings. Forms that are the same as in `known` (a read of the undamaged file) are not
// converted again.
TRead ReadProgram(std::string_view data, const TRead* known = nullptr) {
  TRead result;
  const long long before = HeapNow.load();
  HeapPeak = before;
  try {
    const TPeImage image(data);
    for (const TPeResource& r : image.Resources()) {
      if (!r.Damaged()) continue;
      ++result.Damaged;
      if (MessageOf<EPeImageError>([&] { r.Bytes(); }) != r.DamageText() || r.DamageText().empty())
        throw std::runtime_error("a damaged resource without its message");
    }
    for (const TPeResource* form : image.Forms())
      if (!form->Damaged()) {
        result.Forms.emplace_back(form->Name.Text(), form->Data);
        result.FormEnds.push_back(static_cast<std::size_t>(form->Data.data() - data.data()) + form->Data.size());
      }
    if (const TPeResource* version = image.FirstResource(RT_VERSION); version && !version->Damaged())
      TVersionStrings{version->Bytes()};
    result.Outcome = TOutcome::Read;
    for (const auto& form : result.Forms)
      if (!known || std::find(known->Forms.begin(), known->Forms.end(), form) == known->Forms.end())
        ObjectBinaryToText(form.second);
  } catch (const EPeImageError& e) {
    result.Outcome = e.Message().empty() ? TOutcome::OtherError : TOutcome::ImageError;
    result.Message = e.Message();
  } catch (const Exception& e) {
    // A stream damaged inside a form is the converter's to report.
    result.Outcome = result.Outcome == TOutcome::Read && !e.Message().empty() ? TOutcome::FormError : TOutcome::OtherError;
    result.Message = e.Message();
  } catch (const std::exception& e) {
    result.Outcome = TOutcome::OtherError;
    result.Message = e.what();
  }
  result.PeakHeap = HeapPeak.load() - before;
  return result;
}

// Memory a read may take: the text of its forms and a little more than the file.
long long Budget(std::size_t fileSize) { return 4 * static_cast<long long>(fileSize) + 1024 * 1024; }

// Where a real program's parts are.
struct TLayout {
  std::size_t HeadersEnd = 0;      // end of the section table
  std::size_t TreeStart = 0;       // the root resource directory
  std::size_t TreeEnd = 0;         // where the first resource's data starts
  std::size_t DataEnd = 0;         // where the last resource's data ends
};

TLayout LayoutOf(const std::string& bytes) {
  const TPeImage image(bytes);
  TLayout layout;
  const std::size_t pe = static_cast<unsigned char>(bytes[0x3C]) | static_cast<unsigned char>(bytes[0x3D]) << 8;
  const std::size_t optionalSize = static_cast<unsigned char>(bytes[pe + 20]) | static_cast<unsigned char>(bytes[pe + 21]) << 8;
  layout.HeadersEnd = pe + 24 + optionalSize + 40 * image.Sections().size();
  layout.TreeStart = image.ResourceTableOffset();
  layout.TreeEnd = bytes.size();
  for (const TPeResource& r : image.Resources()) {
    const std::size_t at = static_cast<std::size_t>(r.Data.data() - bytes.data());
    layout.TreeEnd = std::min(layout.TreeEnd, at);
    layout.DataEnd = std::max(layout.DataEnd, at + r.Data.size());
  }
  return layout;
}

const char* const SmallProgram = "0015.exe";   // 183 KB, one form
const char* const LargeProgram = "0001.exe";   // 2.5 MB, five forms and 95 resources

TEST(PeImageBadInput, EveryPrefixIsAClearErrorOrKeepsTheResourcesItHolds) {
  LUMORA_REQUIRE_CORPUS();
  int cuts = 0, partial = 0;
  for (const char* name : {SmallProgram, LargeProgram}) {
    const std::string bytes = ReadFileBytes(CorpusDir() / "pe" / name);
    const TRead whole = ReadProgram(bytes);
    ASSERT_EQ(whole.Outcome, TOutcome::Read) << name;
    const TLayout layout = LayoutOf(bytes);
    // Every offset through the headers and the resource tree, about 2000 others.
    std::vector<std::size_t> offsets;
    for (std::size_t i = 0; i < layout.HeadersEnd + 16; ++i) offsets.push_back(i);
    for (std::size_t i = layout.TreeStart; i < layout.TreeEnd; ++i) offsets.push_back(i);
    for (std::size_t i = 0; i < 2000; ++i) offsets.push_back(i * bytes.size() / 2000);
    for (std::size_t i = layout.DataEnd - 8; i < layout.DataEnd + 8; ++i) offsets.push_back(i);
    for (std::size_t cut : offsets) {
      const TRead read = ReadProgram(std::string_view(bytes).substr(0, cut));
      ASSERT_NE(read.Outcome, TOutcome::OtherError) << name << " cut at " << cut << ": " << read.Message;
      ASSERT_LE(read.PeakHeap, Budget(cut)) << name << " cut at " << cut;
      if (cut < layout.DataEnd) {
        // The tree cut short is an error; the tree whole gives what the file still holds.
        if (read.Outcome != TOutcome::ImageError) {
          ASSERT_EQ(read.Outcome, TOutcome::Read) << name << " cut at " << cut << ": " << read.Message;
          ASSERT_GE(cut + 8, layout.TreeEnd) << name << " cut at " << cut;  // padding may come before the data
          ASSERT_GT(read.Damaged, 0) << name << " cut at " << cut;
          for (const auto& form : read.Forms)
            ASSERT_NE(std::find(whole.Forms.begin(), whole.Forms.end(), form), whole.Forms.end()) << name << " cut at " << cut;
          // Every form whose data is before the cut is there.
          ASSERT_EQ(read.Forms.size(), static_cast<std::size_t>(std::count_if(whole.FormEnds.begin(), whole.FormEnds.end(),
                                                                               [&](std::size_t end) { return end <= cut; })))
              << name << " cut at " << cut;
          ++partial;
        }
      } else {
        ASSERT_EQ(read.Outcome, TOutcome::Read) << name << " cut at " << cut << ": " << read.Message;
        ASSERT_EQ(read.Forms, whole.Forms) << name << " cut at " << cut;
      }
      ++cuts;
    }
  }
  EXPECT_GT(cuts, 5000);
  EXPECT_GT(partial, 200);
}

TEST(PeImageBadInput, ACutFileSaysWhereItEnds) {
  LUMORA_REQUIRE_CORPUS();
  const std::string bytes = ReadFileBytes(CorpusDir() / "pe" / SmallProgram);
  const TLayout layout = LayoutOf(bytes);
  EXPECT_EQ(ReadProgram(std::string_view(bytes).substr(0, 0x30)).Message,
            "Not a Windows program: the file (48 bytes) is shorter than a DOS header (64 bytes)");
  EXPECT_EQ(ReadProgram(std::string_view(bytes).substr(0, 0x100)).Message,
            "Not a Windows program: no PE signature at offset 0x100, where the DOS header points");
  EXPECT_EQ(ReadProgram(std::string_view(bytes).substr(0, 0x110)).Message,
            "PE file header (20 bytes at offset 0x104) runs past the end of the file (272 bytes)");
  EXPECT_EQ(ReadProgram(std::string_view(bytes).substr(0, 0x200)).Message,
            "Section table of 8 sections (320 bytes at offset 0x1F8) runs past the end of the file (512 bytes)");
  EXPECT_EQ(ReadProgram(std::string_view(bytes).substr(0, layout.TreeStart + 8)).Message,
            Format("Resource directory (16 bytes at offset 0x%X) runs past the end of the file (%u bytes)",
                   layout.TreeStart, layout.TreeStart + 8));
}

// Changes each byte of [begin, end) to a few other values, one at a time, then a few at
// once; returns how many reads failed and how many read.
std::pair<int, int> FlipBytes(const std::string& bytes, std::size_t begin, std::size_t end, const char* name) {
  int errors = 0, reads = 0;
  std::string damaged = bytes;
  const TRead whole = ReadProgram(bytes);
  auto check = [&](const std::string& what) {
    const TRead read = ReadProgram(damaged, &whole);
    EXPECT_NE(read.Outcome, TOutcome::OtherError) << name << " " << what << ": " << read.Message;
    EXPECT_LE(read.PeakHeap, Budget(damaged.size())) << name << " " << what;
    (read.Outcome == TOutcome::Read ? reads : errors)++;
  };
  for (std::size_t at = begin; at < end; ++at) {
    for (unsigned char value : {static_cast<unsigned char>(~bytes[at]), static_cast<unsigned char>(0),
                                static_cast<unsigned char>(0x80), static_cast<unsigned char>(bytes[at] + 1)}) {
      if (value == static_cast<unsigned char>(bytes[at])) continue;
      damaged[at] = static_cast<char>(value);
      check("byte " + std::to_string(at) + " = " + std::to_string(value));
      if (::testing::Test::HasFailure()) return {errors, reads};
    }
    damaged[at] = bytes[at];
  }
  std::mt19937 random(static_cast<unsigned>(begin));
  for (int round = 0; round < 2000; ++round) {
    damaged = bytes;
    const int flips = 2 + static_cast<int>(random() % 6);
    for (int i = 0; i < flips; ++i) damaged[begin + random() % (end - begin)] = static_cast<char>(random());
    check("round " + std::to_string(round));
    if (::testing::Test::HasFailure()) break;
  }
  return {errors, reads};
}

TEST(PeImageBadInput, ByteFlipsInTheHeaders) {
  LUMORA_REQUIRE_CORPUS();
  for (const char* name : {SmallProgram, LargeProgram}) {
    const std::string bytes = ReadFileBytes(CorpusDir() / "pe" / name);
    const auto [errors, reads] = FlipBytes(bytes, 0, LayoutOf(bytes).HeadersEnd, name);
    // Most header fields do not matter to the resources; the ones that do fail cleanly.
    EXPECT_GT(errors, 100) << name;
    EXPECT_GT(reads, 1000) << name;
  }
}

TEST(PeImageBadInput, ByteFlipsInTheResourceTree) {
  LUMORA_REQUIRE_CORPUS();
  for (const char* name : {SmallProgram, LargeProgram}) {
    const std::string bytes = ReadFileBytes(CorpusDir() / "pe" / name);
    const TLayout layout = LayoutOf(bytes);
    ASSERT_GT(layout.TreeEnd, layout.TreeStart + 100) << name;
    const auto [errors, reads] = FlipBytes(bytes, layout.TreeStart, layout.TreeEnd, name);
    EXPECT_GT(errors, 500) << name;
    EXPECT_GT(reads, 500) << name;
  }
}

// ------------------------------------------------------------------ hand-made damage

std::string Form(const std::string& className) {
  return ObjectTextToBinary("object Form1: " + className + "\r\n  Left = 8\r\nend\r\n");
}

// The file offset of the first entry of the directory at `directory` (a file offset).
std::size_t FirstEntry(std::size_t directory) { return directory + 16; }
std::uint32_t Get32(const std::string& s, std::size_t at) {
  std::uint32_t v = 0;
  for (int i = 3; i >= 0; --i) v = v << 8 | static_cast<unsigned char>(s[at + i]);
  return v;
}

TEST(PeImageBadInput, ADirectoryEntryPointingAtItsOwnDirectory) {
  TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0, Form("TForm1")}});
  // The root's entry for RCDATA leads back to the root.
  Put32(built.Bytes, FirstEntry(built.ResourceOffset) + 4, 0x80000000u);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TPeImage{built.Bytes}; }),
            "Resource directory at offset 0x600 is reached a second time: the tree loops");
}

TEST(PeImageBadInput, ALanguageDirectoryPointingBackUp) {
  TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0, Form("TForm1")}, {"#10", "TFORM2", 0, Form("TForm2")}});
  // Root -> types -> names: the first name's entry now leads to the directory of names.
  const std::size_t typeDirectory = built.ResourceOffset + (Get32(built.Bytes, FirstEntry(built.ResourceOffset) + 4) & 0x7FFFFFFF);
  const std::uint32_t names = Get32(built.Bytes, FirstEntry(built.ResourceOffset) + 4);
  Put32(built.Bytes, FirstEntry(typeDirectory) + 4, names);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TPeImage{built.Bytes}; }),
            Format("Resource directory at offset 0x%X is reached a second time: the tree loops", typeDirectory));
}

TEST(PeImageBadInput, TwoEntriesSharingADirectory) {
  // Sharing is how a small file could make the tree explode: refused like a loop.
  TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0, Form("TForm1")}, {"#10", "TFORM2", 0, Form("TForm2")}});
  const std::size_t typeDirectory = built.ResourceOffset + (Get32(built.Bytes, FirstEntry(built.ResourceOffset) + 4) & 0x7FFFFFFF);
  Put32(built.Bytes, FirstEntry(typeDirectory) + 8 + 4, Get32(built.Bytes, FirstEntry(typeDirectory) + 4));
  EXPECT_NE(MessageOf<EPeImageError>([&] { TPeImage{built.Bytes}; }).find("is reached a second time"), std::string::npos);
}

TEST(PeImageBadInput, WrongKindsOfEntries) {
  TBuiltImage data = BuildPeImage({{"#10", "TFORM1", 0, Form("TForm1")}});
  Put32(data.Bytes, FirstEntry(data.ResourceOffset) + 4, 0x20);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TPeImage{data.Bytes}; }),
            "Resource directory entry at offset 0x610 should lead to a directory of names but points to data");
  TBuiltImage directory = BuildPeImage({{"#10", "TFORM1", 0x409, Form("TForm1")}});
  // Find the language entry: the last directory entry before the data entries.
  const std::size_t names = directory.ResourceOffset + (Get32(directory.Bytes, FirstEntry(directory.ResourceOffset) + 4) & 0x7FFFFFFF);
  const std::size_t languages = directory.ResourceOffset + (Get32(directory.Bytes, FirstEntry(names) + 4) & 0x7FFFFFFF);
  Put32(directory.Bytes, FirstEntry(languages) + 4, 0x80000000u | 0x100);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TPeImage{directory.Bytes}; }),
            Format("Resource directory entry at offset 0x%X for language 1033 points to a directory instead of data",
                   FirstEntry(languages)));
  TBuiltImage number = BuildPeImage({{"#10", "#5", 0, Form("TForm1")}});
  Put32(number.Bytes, FirstEntry(number.ResourceOffset), 0x10005);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TPeImage{number.Bytes}; }),
            "Resource directory entry at offset 0x610 holds the number 65541, above 65535");
}

// The file offset of the data entry of the first resource of a one-resource image.
std::size_t DataEntry(const TBuiltImage& built) { return built.DirectoriesEnd - 16; }

TEST(PeImageBadInput, ASizePastTheEnd) {
  TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0, Form("TForm1")}, {"#10", "TFORM2", 0, Form("TForm2")}});
  Put32(built.Bytes, DataEntry(built) - 16 + 4, 0xFFFFFFF0u);
  const long long before = HeapNow.load();
  HeapPeak = before;
  const TPeImage image(built.Bytes);
  EXPECT_LT(HeapPeak.load() - before, 65536);
  // The other form still reads.
  ASSERT_EQ(image.Forms().size(), 2u);
  EXPECT_EQ(image.Form("TFORM2").Bytes(), Form("TForm2"));
  const TPeResource& damaged = image.Form("TFORM1");
  EXPECT_TRUE(damaged.Damaged());
  EXPECT_TRUE(damaged.Data.empty());
  const std::string message = Format("Resource TFORM1 of type #10 (language 0): its 4294967280 bytes at RVA 0x%X run "
                                     "past the end of section .rsrc", damaged.Rva);
  EXPECT_EQ(damaged.DamageText(), message);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { damaged.Bytes(); }), message);
}

TEST(PeImageBadInput, DataPastTheEndOfACutFile) {
  TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0, Form("TForm1")}});
  const std::string cut = built.Bytes.substr(0, built.ResourceOffset + built.ResourceSize - 4);
  const TPeImage image(cut);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { image.Form("TFORM1").Bytes(); }),
            Format("Resource TFORM1 of type #10 (language 0): its %u bytes at RVA 0x%X run past the end of the "
                   "file, which is cut short", Form("TForm1").size(), built.ResourceRva + built.ResourceSize -
                   Form("TForm1").size()));
}

TEST(PeImageBadInput, DataInNoSection) {
  TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0, Form("TForm1")}});
  Put32(built.Bytes, DataEntry(built), 0x900000);
  const TPeImage image(built.Bytes);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { image.Form("TFORM1").Bytes(); }),
            "Resource TFORM1 of type #10 (language 0): its data at RVA 0x900000 lies in no section");
  // The resource table itself outside every section.
  TBuiltImage table = BuildPeImage({});
  Put32(table.Bytes, 0x98 + 96 + 16, 0x700000);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TPeImage{table.Bytes}; }), "Resource table at RVA 0x700000 lies in no section");
}

TEST(PeImageBadInput, ADamagedResourceThatIsNotAFormStaysOutOfTheForms) {
  TBuiltImage built = BuildPeImage({{"#2", "BITMAP", 0, "BM"}, {"#10", "TFORM1", 0, Form("TForm1")}});
  Put32(built.Bytes, DataEntry(built) - 16, 0x900000);
  const TPeImage image(built.Bytes);
  EXPECT_TRUE(image.Resources()[0].Damaged());
  ASSERT_EQ(image.Forms().size(), 1u);
  EXPECT_FALSE(image.Forms()[0]->Damaged());
}

TEST(PeImageBadInput, AbsurdCounts) {
  TBuiltImage entries = BuildPeImage({{"#10", "TFORM1", 0, Form("TForm1")}});
  Put16(entries.Bytes, entries.ResourceOffset + 12, 0xFFFF);
  Put16(entries.Bytes, entries.ResourceOffset + 14, 0xFFFF);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TPeImage{entries.Bytes}; }),
            "Resource directory of types at offset 0x600 claims 131070 entries, more than its section can hold");
  TBuiltImage sections = BuildPeImage({});
  Put16(sections.Bytes, 0x86, 0xFFFF);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TPeImage{sections.Bytes}; }),
            Format("Section table of 65535 sections (2621400 bytes at offset 0x178) runs past the end of the file (%u bytes)",
                   sections.Bytes.size()));
  TBuiltImage optional = BuildPeImage({});
  Put16(optional.Bytes, 0x94, 0xFFFF);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TPeImage{optional.Bytes}; }),
            Format("Optional header (65535 bytes at offset 0x98) runs past the end of the file (%u bytes)",
                   optional.Bytes.size()));
  // A count of data directories beyond the header's room reads only what is there.
  TBuiltImage directories = BuildPeImage({{"#10", "TFORM1", 0, Form("TForm1")}});
  Put32(directories.Bytes, 0x98 + 92, 0xFFFFFFFFu);
  EXPECT_EQ(TPeImage(directories.Bytes).Forms().size(), 1u);
}

TEST(PeImageBadInput, ManyEntriesPointingAtOneLongName) {
  // Two thousand names, each pointed at the same long name: refused before the names add up.
  std::vector<lumora::test::TBuiltResource> resources;
  resources.push_back({"#10", std::string(30000, 'A'), 0, "x"});
  for (int i = 0; i < 2000; ++i) resources.push_back({"#10", "N" + std::to_string(i), 0, "x"});
  TBuiltImage built = BuildPeImage(resources);
  const std::size_t names = built.ResourceOffset + (Get32(built.Bytes, FirstEntry(built.ResourceOffset) + 4) & 0x7FFFFFFF);
  const std::uint32_t longName = Get32(built.Bytes, FirstEntry(names));
  for (int i = 1; i <= 2000; ++i) Put32(built.Bytes, FirstEntry(names) + 8 * i, longName);
  const long long before = HeapNow.load();
  HeapPeak = before;
  EXPECT_NE(MessageOf<EPeImageError>([&] { TPeImage{built.Bytes}; }).find("the names overlap"), std::string::npos);
  EXPECT_LT(HeapPeak.load() - before, Budget(built.Bytes.size()));
}

TEST(PeImageBadInput, NotAProgramAtAll) {
  EXPECT_EQ(MessageOf<EPeImageError>([] { TPeImage{""}; }), "Not a Windows program: the file does not start with \"MZ\"");
  EXPECT_EQ(MessageOf<EPeImageError>([] { TPeImage{"TPF0\x06TForm1"}; }),
            "Not a Windows program: the file does not start with \"MZ\"");
  std::string farAway = "MZ" + std::string(100, '\0');
  Put32(farAway, 0x3C, 0xFFFFFFF0u);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TPeImage{farAway}; }),
            "Not a Windows program: no PE signature at offset 0xFFFFFFF0, where the DOS header points");
  TBuiltImage magic = BuildPeImage({});
  Put16(magic.Bytes, 0x98, 0x107);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TPeImage{magic.Bytes}; }),
            "Optional header at offset 0x98 has the magic number 0x107; expected 0x10B (PE32) or 0x20B (PE32+)");
  TBuiltImage small = BuildPeImage({});
  Put16(small.Bytes, 0x94, 64);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TPeImage{small.Bytes}; }),
            "Optional header at offset 0x98 is 64 bytes long, too short for a PE32 header (96 bytes)");
}

TEST(PeImageBadInput, ADamagedVersionResourceIsAClearError) {
  std::string version = BuildVersionResource({{0x409, 1252}}, {{"040904E4", {{"FileVersion", "1.0"}}}});
  Put16(version, 0, 2);
  TBuiltImage built = BuildPeImage({{"#16", "#1", 0, version}});
  const TPeImage image(built.Bytes);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TVersionStrings{image.FirstResource(RT_VERSION)->Data}; }),
            Format("Version block at offset 0 claims 2 bytes, but %u remain in the block around it", version.size()));
}

}  // namespace
