#include "platform/streaming/FormFile.h"

#include "platform/streaming/PeImage.h"
#include "platform/streaming/ResHeader.h"
#include "tests/support/Corpus.h"
#include "tests/support/Errors.h"
#include "tests/support/PeBuilder.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace fs = std::filesystem;
using lumora::test::BuildPeImage;
using lumora::test::CorpusFiles;
using lumora::test::MessageOf;
using lumora::test::ReadFileBytes;
using lumora::test::TTempDir;
using lumora::test::WriteBytes;

namespace {

const std::string Text = "object Form1: TForm1\r\n  Caption = 'Form1'\r\nend\r\n";

TEST(FormFile, AResourceFileGivesTheStreamAfterItsHeaderAndTheHeadersName) {
  TFormFile file(ObjectTextToResource(Text));
  EXPECT_EQ(file.Format(), TFormFileFormat::Resource);
  EXPECT_TRUE(file.HasResourceHeader());
  EXPECT_EQ(file.ResourceName(), "TFORM1");
  EXPECT_EQ(file.Stream(), ObjectTextToBinary(Text));
}

TEST(FormFile, ABareStreamIsTheStream) {
  const std::string stream = ObjectTextToBinary(Text);
  TFormFile file(stream);
  EXPECT_EQ(file.Format(), TFormFileFormat::Stream);
  EXPECT_FALSE(file.HasResourceHeader());
  EXPECT_EQ(file.ResourceName(), "");
  EXPECT_EQ(file.Stream(), stream);
}

TEST(FormFile, FormTextIsConvertedToItsStream) {
  TFormFile file("\xEF\xBB\xBF  \r\n" + Text);
  EXPECT_EQ(file.Format(), TFormFileFormat::Text);
  EXPECT_TRUE(file.IsText());
  EXPECT_EQ(file.Stream(), ObjectTextToBinary(Text));
  // The bytes stay as they were read.
  EXPECT_EQ(file.Bytes(), "\xEF\xBB\xBF  \r\n" + Text);
}

TEST(FormFile, TextThatDoesNotParseGivesItsLine) {
  TFormFile file(std::string("object Form1: TForm1\r\n  Caption = 'abc\r\nend\r\n"));
  EXPECT_EQ(MessageOf<EParserError>([&] { file.Stream(); }), "Invalid string constant on line 2");
}

TEST(FormFile, AnythingElseIsNoStream) {
  TFormFile file(std::string("Hello, world"));
  EXPECT_EQ(file.Format(), TFormFileFormat::Unknown);
  EXPECT_EQ(MessageOf<EInvalidImage>([&] { file.Stream(); }), "Invalid stream format");
  TFormFile empty;
  EXPECT_EQ(MessageOf<EInvalidImage>([&] { empty.Stream(); }), "Invalid stream format");
}

TEST(FormFile, AHeaderWithoutAStreamGivesAnEmptyStream) {
  // The header rule reads a missing third byte as zero.
  TFormFile cut(std::string("\xFF\x0A", 2));
  EXPECT_TRUE(cut.HasResourceHeader());
  EXPECT_EQ(cut.Stream(), "");
  TFormFile named(MakeResHeader("TFORM1", 0));
  EXPECT_EQ(named.ResourceName(), "TFORM1");
  EXPECT_EQ(named.Stream(), "");
}

TEST(FormFile, TheKindComesFromTheContentNotTheName) {
  TTempDir dir;
  WriteBytes(dir / "Form1.txt", ObjectTextToResource(Text));
  WriteBytes(dir / "Form2.dfm", Text);
  TFormFile binary = TFormFile::Read(dir / "Form1.txt");
  EXPECT_EQ(binary.Format(), TFormFileFormat::Resource);
  TFormFile text = TFormFile::Read(dir / "Form2.dfm");
  EXPECT_EQ(text.Format(), TFormFileFormat::Text);
  EXPECT_EQ(binary.Stream(), text.Stream());
}

TEST(FormFile, AMissingFileIsNamed) {
  TTempDir dir;
  const std::string missing = dir / "missing.dfm";
  EXPECT_EQ(MessageOf<EFOpenError>([&] { TFormFile::Read(missing); }), "Cannot open file " + missing);
}

// A program holding the forms of these texts, each in an RCDATA resource named after its
// root's class in upper case, and an RCDATA resource that is no form.
std::string Program(const std::vector<std::string>& texts) {
  std::vector<lumora::test::TBuiltResource> resources{{"#10", "PACKAGEINFO", 0, std::string("\0\0\0\0", 4)}};
  for (const std::string& text : texts) {
    const std::string stream = ObjectTextToBinary(text);
    resources.push_back({"#10", UpperCase(StreamRootClassName(stream)), 0, stream});
  }
  return BuildPeImage(resources).Bytes;
}

const std::string OtherText = "object Dialog: TAboutBox\r\n  Caption = 'About'\r\nend\r\n";

TEST(FormFile, AFormOfAProgramIsNamedAfterAColonWithoutRegardToCase) {
  TTempDir dir;
  const std::string program = dir / "Project1.exe";
  WriteBytes(program, Program({Text, OtherText}));
  TFormFile form = TFormFile::Read(program + ":tAboutBox");
  EXPECT_EQ(form.Format(), TFormFileFormat::Stream);
  EXPECT_FALSE(form.HasResourceHeader());
  EXPECT_EQ(form.ResourceName(), "TABOUTBOX");
  EXPECT_EQ(form.ProgramName(), program);
  EXPECT_EQ(form.Stream(), ObjectTextToBinary(OtherText));
  EXPECT_EQ(ObjectBinaryToText(form.Stream()), OtherText);
  EXPECT_EQ(TFormFile::Read(program + ":TFORM1").Stream(), ObjectTextToBinary(Text));
}

TEST(FormFile, AProgramIsToldByItsContentNotItsName) {
  TTempDir dir;
  WriteBytes(dir / "library.dat", Program({Text, OtherText}));
  EXPECT_EQ(TFormFile::Read(dir / "library.dat:TForm1").Stream(), ObjectTextToBinary(Text));
  WriteBytes(dir / "form.exe", Text);
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TFormFile::Read(dir / "form.exe:TFORM1"); }),
            dir / "form.exe" + ": not a Windows program (.exe, .dll, .bpl), so it holds no form named TFORM1");
}

TEST(FormFile, AProgramWithoutAFormNameGivesItsOnlyForm) {
  TTempDir dir;
  WriteBytes(dir / "one.exe", Program({OtherText}));
  TFormFile form = TFormFile::Read(dir / "one.exe");
  EXPECT_EQ(form.ResourceName(), "TABOUTBOX");
  EXPECT_EQ(form.Stream(), ObjectTextToBinary(OtherText));

  WriteBytes(dir / "two.exe", Program({Text, OtherText}));
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TFormFile::Read(dir / "two.exe"); }),
            dir / "two.exe" + ": The program holds 2 forms (TABOUTBOX, TFORM1); name one as " + dir / "two.exe" +
                ":NAME");
  WriteBytes(dir / "none.exe", Program({}));
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TFormFile::Read(dir / "none.exe"); }),
            dir / "none.exe" + ": The program holds no forms");
}

TEST(FormFile, AFormTheProgramLacksIsNamedWithTheProgram) {
  TTempDir dir;
  WriteBytes(dir / "two.exe", Program({Text, OtherText}));
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TFormFile::Read(dir / "two.exe:TMainForm"); }),
            dir / "two.exe" + ": No form named TMainForm in the program; its forms are TABOUTBOX, TFORM1");
  // A resource that holds no form is no form either.
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TFormFile::Read(dir / "two.exe:PackageInfo"); }),
            dir / "two.exe" + ": No form named PackageInfo in the program; its forms are TABOUTBOX, TFORM1");
  WriteBytes(dir / "none.exe", Program({}));
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TFormFile::Read(dir / "none.exe:TForm1"); }),
            dir / "none.exe" + ": No form named TForm1: the program holds no forms");
}

TEST(FormFile, AProgramCutShortNamesTheFormItLost) {
  TTempDir dir;
  const lumora::test::TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0, ObjectTextToBinary(Text)}});
  WriteBytes(dir / "cut.exe", built.Bytes.substr(0, built.ResourceOffset + built.ResourceSize - 4));
  const std::string message = MessageOf<EPeImageError>([&] { TFormFile::Read(dir / "cut.exe:TForm1"); });
  EXPECT_EQ(message.rfind(dir / "cut.exe: Resource TFORM1 of type #10", 0), 0u) << message;
  EXPECT_NE(message.find("past the end of the file"), std::string::npos) << message;
  WriteBytes(dir / "junk.exe", "MZ and nothing more");
  EXPECT_EQ(MessageOf<EPeImageError>([&] { TFormFile::Read(dir / "junk.exe:TForm1"); }),
            dir / "junk.exe" + ": not a Windows program (.exe, .dll, .bpl), so it holds no form named TForm1");
}

TEST(FormFile, AProgramListsItsFormsWithTheirClasses) {
  TTempDir dir;
  WriteBytes(dir / "two.exe", Program({Text, OtherText}));
  std::vector<TProgramForm> forms;
  ASSERT_TRUE(TFormFile::ListProgram(dir / "two.exe", forms));
  ASSERT_EQ(forms.size(), 2u);
  EXPECT_EQ(forms[0].Resource, "TABOUTBOX");
  EXPECT_EQ(forms[0].ClassName, "TAboutBox");
  EXPECT_EQ(forms[1].Resource, "TFORM1");
  EXPECT_EQ(forms[1].ClassName, "TForm1");
  EXPECT_EQ(forms[1].Problem, "");
  WriteBytes(dir / "none.exe", Program({}));
  EXPECT_TRUE(TFormFile::ListProgram(dir / "none.exe", forms));
  EXPECT_TRUE(forms.empty());
  // A form file is no program, whatever its name.
  WriteBytes(dir / "form.exe", Text);
  EXPECT_FALSE(TFormFile::ListProgram(dir / "form.exe", forms));
  EXPECT_EQ(MessageOf<EFOpenError>([&] { TFormFile::ListProgram(dir / "missing.exe", forms); }),
            "Cannot open file " + dir / "missing.exe");
}

TEST(FormFile, AListOfADamagedProgramSaysWhatIsWrong) {
  TTempDir dir;
  const lumora::test::TBuiltImage built = BuildPeImage({{"#10", "TFORM1", 0, ObjectTextToBinary(Text)}});
  // The form's data cut off: the form is listed with what became of it.
  WriteBytes(dir / "cut.exe", built.Bytes.substr(0, built.ResourceOffset + built.ResourceSize - 4));
  std::vector<TProgramForm> forms;
  ASSERT_TRUE(TFormFile::ListProgram(dir / "cut.exe", forms));
  ASSERT_EQ(forms.size(), 1u);
  EXPECT_EQ(forms[0].ClassName, "");
  EXPECT_NE(forms[0].Problem.find("past the end of the file"), std::string::npos) << forms[0].Problem;
  // The resource tree cut off: the program is named with the error.
  WriteBytes(dir / "short.exe", built.Bytes.substr(0, built.ResourceOffset + 8));
  const std::string message = MessageOf<EPeImageError>([&] { TFormFile::ListProgram(dir / "short.exe", forms); });
  EXPECT_EQ(message.rfind(dir / "short.exe: ", 0), 0u) << message;
  EXPECT_TRUE(forms.empty());
}

TEST(FormFile, ANameWithAColonIsAFileWhenThereIsOne) {
  TTempDir dir;
  WriteBytes(dir / "a:b.dfm", Text);
  EXPECT_EQ(TFormFile::Read(dir / "a:b.dfm").Stream(), ObjectTextToBinary(Text));
  EXPECT_EQ(SplitProgramFormName(dir / "a:b.dfm").Form, "");
  // Neither the whole name nor the part before the colon exists: the whole name is missing.
  EXPECT_EQ(MessageOf<EFOpenError>([&] { TFormFile::Read(dir / "missing.exe:TForm1"); }),
            "Cannot open file " + dir / "missing.exe:TForm1");
  WriteBytes(dir / "p.exe", Program({Text}));
  const TFormFileName split = SplitProgramFormName(dir / "p.exe:TForm1");
  EXPECT_EQ(split.File, dir / "p.exe");
  EXPECT_EQ(split.Form, "TForm1");
  EXPECT_EQ(SplitProgramFormName(dir / "p.exe:").Form, "");
  EXPECT_EQ(SplitProgramFormName(dir / "p.exe:x/y").Form, "");
}

TEST(FormFile, EveryFormOfTheRealProgramsOpensByName) {
  LUMORA_REQUIRE_CORPUS();
  const auto manifest = lumora::test::CorpusProgramCounts();
  int opened = 0;
  for (const fs::path& file : CorpusFiles("pe")) {
    const std::string bytes = ReadFileBytes(file);
    const TPeImage image(bytes);
    const std::string id = file.filename().string();
    EXPECT_EQ(static_cast<int>(image.Forms().size()), manifest.at(id).Forms) << id;
    for (const TPeResource* resource : image.Forms()) {
      const std::string name = file.string() + ":" + LowerCase(resource->Name.Text());
      TFormFile form = TFormFile::Read(name);
      EXPECT_EQ(form.ResourceName(), resource->Name.Text()) << name;
      ASSERT_EQ(form.Stream(), resource->Data) << name;
      const std::string text = ObjectBinaryToText(form.Stream());
      EXPECT_EQ(ObjectTextToBinary(text, form.Stream()), resource->Data) << name;
      ++opened;
    }
  }
  EXPECT_EQ(opened, 64);
}

}  // namespace
