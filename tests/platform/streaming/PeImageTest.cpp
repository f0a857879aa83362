// Windows programs read as PE images: the forms and version strings of the real
// programs, and hand-made images for what they lack (64 bits, numbered names, several
// languages, no resources). Damaged images are in PeImageBadInputTest.cpp.

#include "platform/streaming/ObjectText.h"
#include "platform/streaming/PeImage.h"
#include "tests/support/Corpus.h"
#include "tests/support/Errors.h"
#include "tests/support/PeBuilder.h"

#include <gtest/gtest.h>

#include <map>

namespace fs = std::filesystem;
using lumora::test::BuildPeImage;
using lumora::test::BuildVersionResource;
using lumora::test::CorpusDir;
using lumora::test::CorpusFiles;
using lumora::test::MessageOf;
using lumora::test::ReadFileBytes;
using lumora::test::TBuiltImage;
using lumora::test::TBuiltResource;

namespace {

// A small form stream of class `className`.
std::string FormStream(const std::string& className, const std::string& name = "Form1") {
  return ObjectTextToBinary("object " + name + ": " + className + "\r\n  Caption = '" + name + "'\r\nend\r\n");
}

TEST(PeImageCorpus, EveryProgramHasTheFormsOfTheManifest) {
  LUMORA_REQUIRE_CORPUS();
  const std::map<std::string, lumora::test::TProgramCounts> manifest = lumora::test::CorpusProgramCounts();
  const std::vector<fs::path> programs = CorpusFiles("pe");
  ASSERT_EQ(programs.size(), 17u);
  ASSERT_EQ(manifest.size(), programs.size());
  int forms = 0;
  for (const fs::path& file : programs) {
    const std::string bytes = ReadFileBytes(file);
    const std::string id = file.filename().string();
    ASSERT_TRUE(IsPeImage(bytes)) << id;
    const TPeImage image(bytes);
    EXPECT_FALSE(image.Is64Bit()) << id;
    EXPECT_EQ(image.Machine(), 0x14C) << id;
    int rcdata = 0;
    for (const TPeResource& r : image.Resources()) rcdata += r.Type.IsNumber && r.Type.Number == RT_RCDATA;
    ASSERT_TRUE(manifest.count(id)) << id;
    EXPECT_EQ(rcdata, manifest.at(id).RcData) << id;
    EXPECT_EQ(static_cast<int>(image.Forms().size()), manifest.at(id).Forms) << id;
    forms += static_cast<int>(image.Forms().size());
  }
  EXPECT_EQ(forms, 64);
}

TEST(PeImageCorpus, EveryFormComesBackThroughTextToTheSameBytes) {
  LUMORA_REQUIRE_CORPUS();
  std::vector<std::string> failures;
  int checked = 0, plainSame = 0;
  for (const fs::path& file : CorpusFiles("pe")) {
    const std::string bytes = ReadFileBytes(file);
    const TPeImage image(bytes);
    for (const TPeResource* form : image.Forms()) {
      const std::string where = file.filename().string() + ":" + form->Name.Text();
      try {
        // The resource is named after the root's class in upper case.
        EXPECT_EQ(UpperCase(StreamRootClassName(form->Data)), form->Name.Text()) << where;
        const std::string text = ObjectBinaryToText(form->Data);
        if (ObjectTextToBinary(text, form->Data) != form->Data) failures.push_back(where + ": not the same bytes");
        plainSame += ObjectTextToBinary(text) == form->Data;
        ++checked;
      } catch (const Exception& e) {
        failures.push_back(where + ": " + e.Message());
      }
    }
  }
  EXPECT_EQ(checked, 64);
  EXPECT_GT(plainSame, 50) << "forms that come back to the same bytes even without the original as reference";
  for (const std::string& f : failures) ADD_FAILURE() << f;
}

TEST(PeImageCorpus, FormsAreFoundByNameWithoutRegardToCase) {
  LUMORA_REQUIRE_CORPUS();
  const std::string bytes = ReadFileBytes(CorpusDir() / "pe" / "0003.exe");
  const TPeImage image(bytes);
  const TPeResource& form = image.Form("tPasswordDialog");
  EXPECT_EQ(form.Name.Text(), "TPASSWORDDIALOG");
  EXPECT_EQ(StreamRootClassName(form.Data), "TPasswordDialog");
  EXPECT_EQ(form.Data.size(), 964u);
  EXPECT_EQ(&image.Form("TPASSWORDDIALOG"), &form);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { image.Form("TMissing"); }),
            "No form named TMissing in the program; its forms are TFORM1, TFRMPROGRESS, TLOGINDIALOG, "
            "TPASSWORDDIALOG");
}

TEST(PeImageCorpus, VersionStringsOfTheProgramsThatCarryThem) {
  LUMORA_REQUIRE_CORPUS();
  struct TExpected {
    const char* Id;
    const char* Table;
    const char* FileVersion;
    const char* ProductName;  // null when the table has none
  };
  const TExpected expected[] = {
      {"0008.exe", "040904E4", "1.3.1.511", "PrepBuild"},
      {"0010.dll", "040E04E2", "1.0.0.0", ""},
      {"0012.bpl", "041103A4", "1.0.0.0", ""},
      {"0014.bpl", "040C04E4", "1.0.0.0", ""},
      {"0016.exe", "040904E4", "0.0.0.0", "Inno Setup"},
      {"0017.exe", "040904E4", "1.0.0.0", nullptr},
  };
  int withVersion = 0;
  for (const fs::path& file : CorpusFiles("pe")) {
    const std::string bytes = ReadFileBytes(file);
    const TPeImage image(bytes);
    const TPeResource* resource = image.FirstResource(RT_VERSION);
    const std::string id = file.filename().string();
    const auto row = std::find_if(std::begin(expected), std::end(expected), [&](const TExpected& e) { return id == e.Id; });
    if (row == std::end(expected)) {
      EXPECT_EQ(resource, nullptr) << id;
      continue;
    }
    ASSERT_NE(resource, nullptr) << id;
    ++withVersion;
    const TVersionStrings version(resource->Data);
    ASSERT_EQ(version.Translations().size(), 1u) << id;
    EXPECT_EQ(version.Translations()[0].Key(), row->Table) << id;
    EXPECT_EQ(version.Tables(), std::vector<std::string>{row->Table}) << id;
    std::string value;
    ASSERT_TRUE(version.Find("FileVersion", value)) << id;
    EXPECT_EQ(value, row->FileVersion) << id;
    if (row->ProductName) {
      ASSERT_TRUE(version.Find("ProductName", value)) << id;
      EXPECT_EQ(value, row->ProductName) << id;
    } else {
      EXPECT_FALSE(version.Find("ProductName", value)) << id;
    }
    EXPECT_TRUE(version.Find(row->Table, "fileversion", value)) << id;
    EXPECT_FALSE(version.Find("NoSuchString", value)) << id;
  }
  EXPECT_EQ(withVersion, 6);
}

TEST(PeImageCorpus, CompanyAndDescriptionOfAProgram) {
  LUMORA_REQUIRE_CORPUS();
  const std::string bytes = ReadFileBytes(CorpusDir() / "pe" / "0010.dll");
  const TPeImage image(bytes);
  const TVersionStrings version(image.FirstResource(RT_VERSION)->Data);
  EXPECT_EQ(version.Translations()[0].Language, 0x040E);
  EXPECT_EQ(version.Translations()[0].CodePage, 1250);
  std::string value;
  ASSERT_TRUE(version.Find("CompanyName", value));
  EXPECT_EQ(value, "Putra Ware");
  ASSERT_TRUE(version.Find("FileDescription", value));
  EXPECT_EQ(value, "Office97New");
  ASSERT_TRUE(version.Find("LegalCopyright", value));
  EXPECT_EQ(value, "");
}

// ------------------------------------------------------------------ hand-made images

TEST(PeImage, A64BitProgram) {
  const TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0, FormStream("TForm1")},
                                          {"#10", "TABOUTBOX", 0, FormStream("TAboutBox", "AboutBox")},
                                          {"#10", "DVCLAL", 0, std::string(16, '\x55')}},
                                         /*pe32Plus=*/true);
  const TPeImage image(built.Bytes);
  EXPECT_TRUE(image.Is64Bit());
  EXPECT_EQ(image.Machine(), 0x8664);
  ASSERT_EQ(image.Sections().size(), 2u);
  EXPECT_EQ(image.Sections()[1].Name, ".rsrc");
  ASSERT_EQ(image.Forms().size(), 2u);
  EXPECT_EQ(image.Forms()[0]->Name.Text(), "TABOUTBOX");
  EXPECT_EQ(image.Forms()[1]->Name.Text(), "TFORM1");
  EXPECT_EQ(ObjectBinaryToText(image.Form("tform1").Data), "object Form1: TForm1\r\n  Caption = 'Form1'\r\nend\r\n");
  EXPECT_EQ(image.Resources().size(), 3u);
}

TEST(PeImage, AThirtyTwoBitProgramReadsTheSame) {
  const TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0, FormStream("TForm1")}});
  const TPeImage image(built.Bytes);
  EXPECT_FALSE(image.Is64Bit());
  EXPECT_EQ(image.Machine(), 0x14C);
  ASSERT_EQ(image.Forms().size(), 1u);
  EXPECT_EQ(image.Forms()[0]->Data, FormStream("TForm1"));
  EXPECT_EQ(image.Forms()[0]->CodePage, 1252u);
}

TEST(PeImage, ResourcesNamedByNumber) {
  const TBuiltImage built = BuildPeImage({{"#10", "#7", 0, FormStream("TForm7")},
                                          {"#10", "#300", 0, "not a form"},
                                          {"#10", "TMAIN", 0, FormStream("TMain")},
                                          {"TYPELIB", "#1", 0, FormStream("TNotRcData")},
                                          {"#16", "#1", 0, BuildVersionResource({{0x409, 1252}}, {})}});
  const TPeImage image(built.Bytes);
  ASSERT_EQ(image.Forms().size(), 2u);
  EXPECT_EQ(image.Forms()[0]->Name.Text(), "TMAIN");
  EXPECT_EQ(image.Forms()[1]->Name.Text(), "#7");
  EXPECT_TRUE(image.Forms()[1]->Name.IsNumber);
  EXPECT_EQ(image.Forms()[1]->Name.Number, 7);
  EXPECT_EQ(StreamRootClassName(image.Form("#7").Data), "TForm7");
  EXPECT_EQ(MessageOf<EPeImageError>([&] { image.Form("7"); }),
            "No form named 7 in the program; its forms are TMAIN, #7");
  EXPECT_EQ(MessageOf<EPeImageError>([&] { image.Form("#$7"); }),
            "No form named #$7 in the program; its forms are TMAIN, #7");
  // A type named by a string.
  const TPeResource* typelib = nullptr;
  for (const TPeResource& r : image.Resources())
    if (!r.Type.IsNumber) typelib = &r;
  ASSERT_NE(typelib, nullptr);
  EXPECT_EQ(typelib->Type.Text(), "TYPELIB");
  EXPECT_NE(image.FindResource(RT_RCDATA, "#300"), nullptr);
  EXPECT_EQ(image.FindResource(RT_RCDATA, "#301"), nullptr);
  EXPECT_NE(image.FirstResource(RT_VERSION), nullptr);
}

TEST(PeImage, SeveralLanguagesOfOneResource) {
  const TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0x407, FormStream("TForm1", "Deutsch")},
                                          {"#10", "TFORM1", 0x409, FormStream("TForm1", "English")},
                                          {"#10", "TFORM1", 0x40C, FormStream("TForm1", "Francais")},
                                          {"#10", "TFORM2", 0, "not a stream"},
                                          {"#10", "TFORM2", 0x409, FormStream("TForm2", "Second")}});
  const TPeImage image(built.Bytes);
  EXPECT_EQ(image.Resources().size(), 5u);
  // One form per name: the lowest language that holds a form stream.
  ASSERT_EQ(image.Forms().size(), 2u);
  EXPECT_EQ(image.Forms()[0]->Language, 0x407);
  EXPECT_NE(ObjectBinaryToText(image.Form("TForm1").Data).find("Deutsch"), std::string::npos);
  EXPECT_EQ(image.Forms()[1]->Language, 0x409);
  EXPECT_NE(ObjectBinaryToText(image.Form("TForm2").Data).find("Second"), std::string::npos);
  // Every language is there to be read.
  int languages = 0;
  for (const TPeResource& r : image.Resources()) languages += r.Name.Matches("TFORM1");
  EXPECT_EQ(languages, 3);
  EXPECT_EQ(image.FindResource(RT_RCDATA, "TFORM2")->Language, 0);
}

TEST(PeImage, AnEmptyResourceDirectory) {
  const TBuiltImage built = BuildPeImage({});
  const TPeImage image(built.Bytes);
  EXPECT_TRUE(image.Resources().empty());
  EXPECT_TRUE(image.Forms().empty());
  EXPECT_EQ(image.FirstResource(RT_VERSION), nullptr);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { image.Form("TForm1"); }),
            "No form named TForm1: the program holds no forms");
}

TEST(PeImage, NoResourceTableAtAll) {
  const TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0, FormStream("TForm1")}}, false, /*withTable=*/false);
  const TPeImage image(built.Bytes);
  EXPECT_TRUE(image.Resources().empty());
  EXPECT_TRUE(image.Forms().empty());
}

TEST(PeImage, NamesOutsideAscii) {
  const TBuiltImage built = BuildPeImage({{"#10", "TFÖRM", 0, FormStream("TForm1")}});
  const TPeImage image(built.Bytes);
  ASSERT_EQ(image.Forms().size(), 1u);
  EXPECT_EQ(image.Forms()[0]->Name.Text(), "TFÖRM");
  EXPECT_EQ(&image.Form("tfÖrm"), image.Forms()[0]);
}

TEST(PeImage, ResourceIdsMatch) {
  TResourceId number;
  number.Number = 12;
  EXPECT_EQ(number.Text(), "#12");
  EXPECT_TRUE(number.Matches("#12"));
  EXPECT_TRUE(number.Matches("#012"));
  EXPECT_FALSE(number.Matches("12"));
  EXPECT_FALSE(number.Matches("#$C"));
  EXPECT_FALSE(number.Matches("#"));
  TResourceId name;
  name.IsNumber = false;
  name.Name = "TFORM1";
  EXPECT_TRUE(name.Matches("tForm1"));
  EXPECT_FALSE(name.Matches("TFORM"));
}

TEST(PeImage, TellsProgramsFromOtherFiles) {
  const TBuiltImage built = BuildPeImage({});
  EXPECT_TRUE(IsPeImage(built.Bytes));
  EXPECT_FALSE(IsPeImage("MZ"));
  EXPECT_FALSE(IsPeImage(std::string("MZ") + std::string(100, '\0')));
  EXPECT_FALSE(IsPeImage(FormStream("TForm1")));
  EXPECT_FALSE(IsPeImage("object Form1: TForm1\r\nend\r\n"));
  EXPECT_FALSE(IsPeImage(built.Bytes.substr(0, 0x83)));
  EXPECT_TRUE(IsPeImage(built.Bytes.substr(0, 0x84)));
}

TEST(PeImage, TheImageCanBeMoved) {
  const TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0, FormStream("TForm1")}});
  TPeImage first(built.Bytes);
  const TPeImage second(std::move(first));
  EXPECT_EQ(second.Forms()[0]->Name.Text(), "TFORM1");
}

// ------------------------------------------------------------------ version strings

TEST(VersionStrings, TranslationAndStringTable) {
  const std::string data = BuildVersionResource(
      {{0x419, 1251}, {0x409, 1252}},
      {{"041904E3", {{"FileVersion", "2.5.0.17"}, {"ProductName", "Lumora ü"}, {"Comments", ""}}},
       {"040904E4", {{"FileVersion", "2.5.0.17 (English)"}}}});
  const TVersionStrings version(data);
  ASSERT_EQ(version.Translations().size(), 2u);
  EXPECT_EQ(version.Translations()[0].Key(), "041904E3");
  EXPECT_EQ(version.Translations()[1].Key(), "040904E4");
  EXPECT_EQ(version.Tables(), (std::vector<std::string>{"041904E3", "040904E4"}));
  std::string value;
  ASSERT_TRUE(version.Find("ProductName", value));
  EXPECT_EQ(value, "Lumora ü");
  ASSERT_TRUE(version.Find("fileversion", value));
  EXPECT_EQ(value, "2.5.0.17");
  ASSERT_TRUE(version.Find("040904e4", "FileVersion", value));
  EXPECT_EQ(value, "2.5.0.17 (English)");
  ASSERT_TRUE(version.Find("Comments", value));
  EXPECT_EQ(value, "");
  EXPECT_FALSE(version.Find("040904E4", "ProductName", value));
  EXPECT_FALSE(version.Find("00000000", "FileVersion", value));
}

TEST(VersionStrings, WithoutTranslationTheStringsAreOnlyFoundByTable) {
  const TVersionStrings version(BuildVersionResource({}, {{"040904E4", {{"FileVersion", "1.0"}}}}));
  EXPECT_TRUE(version.Translations().empty());
  std::string value = "unchanged";
  EXPECT_FALSE(version.Find("FileVersion", value));
  EXPECT_EQ(value, "unchanged");
  EXPECT_TRUE(version.Find("040904E4", "FileVersion", value));
  EXPECT_EQ(value, "1.0");
}

TEST(VersionStrings, AValueLengthCountedInBytes) {
  // Some writers count a string's bytes instead of its characters: the value still ends at its zero.
  std::string data = BuildVersionResource({{0x409, 1252}}, {{"040904E4", {{"FileVersion", "3.1"}}}});
  const std::string key("F\0i\0l\0e\0V\0e\0r\0s\0i\0o\0n\0\0\0", 24);
  const std::size_t at = data.find(key);
  ASSERT_NE(at, std::string::npos);
  data[at - 4] = 8;  // "3.1" and its zero are 4 characters, 8 bytes
  const TVersionStrings version(data);
  std::string value;
  ASSERT_TRUE(version.Find("FileVersion", value));
  EXPECT_EQ(value, "3.1");
}

TEST(VersionStrings, DamagedResources) {
  EXPECT_EQ(MessageOf<EPeImageError>([] { TVersionStrings(""); }),
            "Version block (2 bytes at offset 0x0) runs past the end of the version resource (0 bytes)");
  EXPECT_EQ(MessageOf<EPeImageError>([] { TVersionStrings(std::string("\x40\x00\x00\x00\x00\x00", 6)); }),
            "Version block at offset 0 claims 64 bytes, but 6 remain in the block around it");
  const std::string good = BuildVersionResource({{0x409, 1252}}, {{"040904E4", {{"FileVersion", "1.0"}}}});
  std::string renamed = good;
  renamed[6] = 'X';
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TVersionStrings{renamed}; }),
            "Not a version resource: its first block is named \"XS_VERSION_INFO\", not VS_VERSION_INFO");
  // A key without its zero.
  std::string keyless(6, '\0');
  keyless[0] = 10;
  keyless += std::string("V\0S\0", 4);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TVersionStrings{keyless}; }),
            "Version block at offset 0: its key has no end inside the block");
  // A child longer than its parent.
  std::string longChild = good;
  const std::size_t child = good.find(std::string("S\0t\0r\0i\0n\0g\0F\0", 14)) - 6;
  longChild[child] = '\xFF';
  longChild[child + 1] = '\x7F';
  EXPECT_NE(MessageOf<EPeImageError>([&] { TVersionStrings{longChild}; }).find("claims 32767 bytes"), std::string::npos);
}

}  // namespace
