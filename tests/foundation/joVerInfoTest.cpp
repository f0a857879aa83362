// Version information read from a program file by name: the record the build writes into
// Lumora's programs, files without one, and damaged files.
#include "foundation/joVerInfo.h"

#include "tests/support/TempDir.h"
#include "tests/support/Corpus.h"
#include "tests/support/PeBuilder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace {

// A small ELF file with a string table and one data section, of either width and byte order.
std::string MakeElf(const std::string& sectionName, const std::string& content, bool is64 = true,
                    bool bigEndian = false) {
  const std::string names = std::string("\0.shstrtab\0", 11) + sectionName + '\0';
  const std::size_t ehsize = is64 ? 64 : 52;
  const std::size_t shentsize = is64 ? 64 : 40;
  const std::size_t namesAt = ehsize;
  const std::size_t contentAt = namesAt + names.size();
  const std::size_t shoff = contentAt + content.size();
  std::string out(shoff + 3 * shentsize, '\0');
  auto put = [&](std::size_t at, std::uint64_t value, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) {
      const std::size_t shift = 8 * (bigEndian ? width - 1 - i : i);
      out[at + i] = static_cast<char>((value >> shift) & 0xFF);
    }
  };
  std::memcpy(out.data(), "\x7F" "ELF", 4);
  out[4] = is64 ? 2 : 1;
  out[5] = bigEndian ? 2 : 1;
  out[6] = 1;
  put(16, 2, 2);  // an executable
  if (is64) {
    put(40, shoff, 8);
    put(52, ehsize, 2);
    put(58, shentsize, 2);
    put(60, 3, 2);
    put(62, 1, 2);
  } else {
    put(32, shoff, 4);
    put(40, ehsize, 2);
    put(46, shentsize, 2);
    put(48, 3, 2);
    put(50, 1, 2);
  }
  std::memcpy(out.data() + namesAt, names.data(), names.size());
  std::memcpy(out.data() + contentAt, content.data(), content.size());
  auto section = [&](int index, std::uint32_t name, std::uint32_t type, std::uint64_t offset, std::uint64_t size) {
    const std::size_t at = shoff + index * shentsize;
    put(at, name, 4);
    put(at + 4, type, 4);
    if (is64) {
      put(at + 24, offset, 8);
      put(at + 32, size, 8);
    } else {
      put(at + 16, offset, 4);
      put(at + 20, size, 4);
    }
  };
  section(1, 1, 3, namesAt, names.size());
  section(2, 11, 1, contentAt, content.size());
  return out;
}

const std::string kRecord =
    "LumoraVersionInfo 1\n"
    "\\VarFileInfo\\Translation=0419 04E3\n"
    "\\StringFileInfo\\041904E3\\ProductName=Form Viewer\n"
    "\\StringFileInfo\\041904E3\\FileVersion=2.5.0.17\n";

class VerInfoTest : public ::testing::Test {
protected:
  std::string Write(const std::string& name, const std::string& bytes) {
    const std::string path = (dir.Path() / name).string();
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  lumora::test::TTempDir dir;
};

}  // namespace

TEST_F(VerInfoTest, TheBuildRecordsProductNameVersionAndTranslation) {
  // This test program carries the record as every program of Lumora does.
  TjoVersionInfo info("/proc/self/exe");
  EXPECT_EQ(info.ProductName(), "Lumora");
  EXPECT_EQ(info.FileVersion(), LUMORA_TEST_FILE_VERSION);
  EXPECT_EQ(info.LangCharset(), "040904E4");
  EXPECT_EQ(info.GetString("InternalName", "?"), "joVerInfoTest");
  EXPECT_TRUE(info.Loaded());
}

TEST_F(VerInfoTest, StringsComeFromTheTableOfTheFirstTranslation) {
  TjoVersionInfo info(Write("tool", MakeElf(SjoVersionSection, kRecord)));
  EXPECT_EQ(info.LangCharset(), "041904E3");
  ASSERT_NE(info.Translation(), nullptr);
  std::uint16_t pair[2];
  std::memcpy(pair, info.Translation(), sizeof pair);
  EXPECT_EQ(pair[0], 0x0419);
  EXPECT_EQ(pair[1], 0x04E3);
  EXPECT_EQ(info.ProductName(), "Form Viewer");
  EXPECT_EQ(info.FileVersion(), "2.5.0.17");
  EXPECT_EQ(info.GetString("Comments", "none"), "none");
  // Paths are looked up without regard to case.
  ASSERT_NE(info.Query("\\stringfileinfo\\041904e3\\productname"), nullptr);
  EXPECT_STREQ(static_cast<const char*>(info.Query("\\stringfileinfo\\041904e3\\productname")), "Form Viewer");
  EXPECT_EQ(info.Query("\\StringFileInfo\\040904E4\\ProductName"), nullptr);
}

TEST_F(VerInfoTest, ThirtyTwoBitAndBigEndianFilesAreReadToo) {
  TjoVersionInfo narrow(Write("narrow", MakeElf(SjoVersionSection, kRecord, false, false)));
  EXPECT_EQ(narrow.ProductName(), "Form Viewer");
  TjoVersionInfo big(Write("big", MakeElf(SjoVersionSection, kRecord, true, true)));
  EXPECT_EQ(big.FileVersion(), "2.5.0.17");
  TjoVersionInfo bigNarrow(Write("bignarrow", MakeElf(SjoVersionSection, kRecord, false, true)));
  EXPECT_EQ(bigNarrow.LangCharset(), "041904E3");
}

TEST_F(VerInfoTest, WithoutTranslationEveryStringIsItsDefault) {
  const std::string record =
      "LumoraVersionInfo 1\n"
      "\\StringFileInfo\\041904E3\\ProductName=Form Viewer\n"
      "\\StringFileInfo\\041904E3\\FileVersion=2.5.0.17\n";
  TjoVersionInfo info(Write("untranslated", MakeElf(SjoVersionSection, record)));
  EXPECT_EQ(info.Translation(), nullptr);
  EXPECT_EQ(info.LangCharset(), "");
  EXPECT_EQ(info.ProductName(), "");
  EXPECT_EQ(info.FileVersion(), "");
  EXPECT_EQ(info.GetString("ProductName", "Lumora"), "Lumora");
  EXPECT_TRUE(info.Loaded());
}

TEST_F(VerInfoTest, FilesWithoutVersionDataGiveTheDefaults) {
  const std::vector<std::string> files = {
      (dir.Path() / "missing").string(),
      Write("text.dfm", "object Form1: TForm1\nend\n"),
      Write("empty", ""),
      Write("othersection", MakeElf(".comment", kRecord)),
      Write("notarecord", MakeElf(SjoVersionSection, "ProductName=Fake\n")),
  };
  for (const std::string& file : files) {
    SCOPED_TRACE(file);
    TjoVersionInfo info(file);
    EXPECT_EQ(info.ProductName(), "");
    EXPECT_EQ(info.GetString("FileVersion", "1.0.0.0"), "1.0.0.0");
    EXPECT_EQ(info.LangCharset(), "");
    EXPECT_FALSE(info.Loaded());
  }
}

TEST_F(VerInfoTest, DamagedFilesGiveTheDefaultsWithoutHarm) {
  const std::string good = MakeElf(SjoVersionSection, kRecord);
  // Cut at every length: headers, string table and section data all run past the end.
  for (std::size_t length = 0; length < good.size(); length += 7) {
    TjoVersionInfo info(Write("cut", good.substr(0, length)));
    EXPECT_EQ(info.GetString("ProductName", "x"), "x") << length;
  }
  // Offsets and counts that point far outside the file.
  std::string wild = good;
  for (std::size_t at : {40u, 58u, 60u, 62u}) {
    std::string bad = wild;
    bad[at] = static_cast<char>(0xFF);
    bad[at + 1] = static_cast<char>(0x7F);
    TjoVersionInfo info(Write("wild", bad));
    EXPECT_EQ(info.ProductName(), "") << at;
  }
}

TEST_F(VerInfoTest, NothingIsReadBeforeTheFirstQueryAndNotTriedAgainAfterAFailure) {
  const std::string path = Write("later", "not a program");
  TjoVersionInfo info(path);
  EXPECT_EQ(info.FileName(), path);
  EXPECT_EQ(info.ProductName(), "");
  // A failed load forgets the file, so the record written since is not looked at.
  std::ofstream(path, std::ios::binary | std::ios::trunc) << MakeElf(SjoVersionSection, kRecord);
  EXPECT_EQ(info.ProductName(), "");
  EXPECT_EQ(info.FileName(), "");
  EXPECT_EQ(TjoVersionInfo(path).ProductName(), "Form Viewer");
}

// ---- Windows programs ----------------------------------------------------------------

TEST_F(VerInfoTest, AWindowsProgramGivesTheStringsOfItsVersionResource) {
  using lumora::test::BuildPeImage;
  using lumora::test::BuildVersionResource;
  const std::string version = BuildVersionResource(
      {{0x0419, 0x04E3}, {0x0409, 0x04E4}},
      {{"041904E3", {{"ProductName", "Просмотр форм"}, {"FileVersion", "4.0.0.5"}}},
       {"040904E4", {{"ProductName", "Form Viewer"}}}});
  TjoVersionInfo info(Write("viewer.exe", BuildPeImage({{"#16", "#1", 0, version}}).Bytes));
  EXPECT_EQ(info.LangCharset(), "041904E3");
  EXPECT_EQ(info.ProductName(), "Просмотр форм");
  EXPECT_EQ(info.FileVersion(), "4.0.0.5");
  EXPECT_EQ(info.GetString("Comments", "none"), "none");
  ASSERT_NE(info.Query("\\StringFileInfo\\040904E4\\ProductName"), nullptr);
  EXPECT_STREQ(static_cast<const char*>(info.Query("\\StringFileInfo\\040904E4\\ProductName")), "Form Viewer");
  // The same pointer each time: the value is kept.
  EXPECT_EQ(info.Query("\\StringFileInfo\\041904E3\\FileVersion"), info.Query("\\stringfileinfo\\041904e3\\fileversion"));
  const std::uint16_t* pairs = info.Translation();
  ASSERT_NE(pairs, nullptr);
  std::uint16_t words[4];
  std::memcpy(words, pairs, sizeof words);
  EXPECT_EQ(words[2], 0x0409);
  EXPECT_EQ(words[3], 0x04E4);
}

TEST_F(VerInfoTest, AWindowsProgramWithoutTranslationOrResourceGivesTheDefaults) {
  using lumora::test::BuildPeImage;
  using lumora::test::BuildVersionResource;
  const std::string untranslated = BuildVersionResource({}, {{"040904E4", {{"ProductName", "Form Viewer"}}}});
  TjoVersionInfo noTranslation(Write("a.exe", BuildPeImage({{"#16", "#1", 0, untranslated}}).Bytes));
  EXPECT_EQ(noTranslation.ProductName(), "");
  EXPECT_EQ(noTranslation.LangCharset(), "");
  TjoVersionInfo noResource(Write("b.dll", BuildPeImage({{"#10", "TFORM1", 0, "TPF0"}}).Bytes));
  EXPECT_EQ(noResource.GetString("FileVersion", "1.0.0.0"), "1.0.0.0");
  EXPECT_FALSE(noResource.Loaded());
  // A damaged program: every cut of one gives its name when the resource is whole, the
  // default when it is not, and never anything else.
  const auto built = BuildPeImage({{"#16", "#1", 0, BuildVersionResource({{0x409, 1252}}, {{"040904E4", {{"ProductName", "X"}}}})}});
  int defaults = 0;
  for (std::size_t length = 0; length < built.Bytes.size(); length += 13) {
    TjoVersionInfo cut(Write("cut.exe", built.Bytes.substr(0, length)));
    const std::string name = cut.GetString("ProductName", "default");
    EXPECT_TRUE(name == "default" || name == "X") << length << ": " << name;
    if (length < built.DirectoriesEnd) EXPECT_EQ(name, "default") << length;
    defaults += name == "default";
  }
  EXPECT_GT(defaults, 10);
}

TEST(VerInfoCorpus, TheVersionOfRealWindowsPrograms) {
  LUMORA_REQUIRE_CORPUS();
  const auto dir = lumora::test::CorpusDir() / "pe";
  TjoVersionInfo setup((dir / "0016.exe").string());
  EXPECT_EQ(setup.ProductName(), "Inno Setup");
  EXPECT_EQ(setup.FileVersion(), "0.0.0.0");
  EXPECT_EQ(setup.LangCharset(), "040904E4");
  TjoVersionInfo library((dir / "0010.dll").string());
  EXPECT_EQ(library.LangCharset(), "040E04E2");
  EXPECT_EQ(library.FileVersion(), "1.0.0.0");
  EXPECT_EQ(library.ProductName(), "");
  TjoVersionInfo plain((dir / "0001.exe").string());
  EXPECT_EQ(plain.GetString("FileVersion", "1.0.0.0"), "1.0.0.0");
}
