#include "platform/streaming/FormFile.h"

#include "platform/streaming/ResHeader.h"
#include "tests/support/Errors.h"
#include "tests/support/TempDir.h"

#include <gtest/gtest.h>

using lumora::test::MessageOf;
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

}  // namespace
