// Drawing a form file to a PNG, as scripts and the documentation do it.
#include "platform/vcl/FormRender.h"

#include "platform/vcl/VclClasses.h"
#include "tests/support/Corpus.h"
#include "tests/support/SaveFailures.h"

#include <QImage>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

class FormRenderTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    RegisterVclClasses();
    dir = fs::temp_directory_path() / ("lumora-render-" + std::to_string(::getpid()));
    fs::create_directories(dir);
  }
  void TearDown() override { fs::remove_all(dir); }

  fs::path dir;
};

fs::path Sample(const char* name) { return lumora::test::SourceDir() / "samples" / name; }

TEST_F(FormRenderTest, ThePictureIsTheFormAsDrawnOnScreen) {
  const fs::path png = dir / "sample.png";
  std::vector<std::string> errors;
  ASSERT_TRUE(RenderFormFileToPng(Sample("Sample1.dfm").string(), png.string(), errors));
  EXPECT_TRUE(errors.empty()) << errors.front();

  auto* form = new TForm(Application);
  ASSERT_TRUE(LoadFormFile(form, lumora::test::ReadFileBytes(Sample("Sample1.dfm"))).Read);
  const QImage drawn = RenderForm(form).convertToFormat(QImage::Format_RGB32);
  const QImage saved = QImage(QString::fromStdString(png.string())).convertToFormat(QImage::Format_RGB32);
  EXPECT_EQ(saved.width(), form->Width());
  EXPECT_EQ(saved.height(), form->Height());
  EXPECT_EQ(form->ClientWidth(), 376);
  EXPECT_EQ(form->ClientHeight(), 212);
  EXPECT_TRUE(saved == drawn);
  delete form;
}

TEST_F(FormRenderTest, FormTextIsDrawnLikeTheBinaryForm) {
  const fs::path fromBinary = dir / "binary.png";
  const fs::path fromText = dir / "text.png";
  std::vector<std::string> errors;
  ASSERT_TRUE(RenderFormFileToPng(Sample("Sample2.dfm").string(), fromBinary.string(), errors));
  ASSERT_TRUE(RenderFormFileToPng(Sample("Sample2.txt.dfm").string(), fromText.string(), errors));
  EXPECT_TRUE(QImage(QString::fromStdString(fromBinary.string())) == QImage(QString::fromStdString(fromText.string())));
}

TEST_F(FormRenderTest, AMissingFormFileIsNamedAndNoPictureIsWritten) {
  const fs::path png = dir / "none.png";
  const fs::path missing = dir / "missing.dfm";
  std::vector<std::string> errors;
  EXPECT_FALSE(RenderFormFileToPng(missing.string(), png.string(), errors));
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], "Cannot open file " + missing.string());
  EXPECT_FALSE(fs::exists(png));
}

TEST_F(FormRenderTest, APictureThatCannotBeWrittenIsReported) {
  const fs::path png = dir / "no-such-folder" / "out.png";
  std::vector<std::string> errors;
  EXPECT_FALSE(RenderFormFileToPng(Sample("Sample1.dfm").string(), png.string(), errors));
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], "Cannot create file " + png.string() + ": No such file or directory");
}

TEST_F(FormRenderTest, AFullDeviceLeavesThePreviousPicture) {
  const fs::path png = dir / "out.png";
  std::vector<std::string> errors;
  ASSERT_TRUE(RenderFormFileToPng(Sample("Sample1.dfm").string(), png.string(), errors));
  const std::string previous = lumora::test::ReadFileBytes(png);
  {
    lumora::test::TFailingDevice device(100);
    EXPECT_FALSE(RenderFormFileToPng(Sample("Sample2.dfm").string(), png.string(), errors));
  }
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], "Cannot create file " + png.string() + ": File too large");
  EXPECT_EQ(lumora::test::ReadFileBytes(png), previous);
  EXPECT_EQ(lumora::test::FolderEntries(dir), std::vector<std::string>{"out.png"});
}

TEST_F(FormRenderTest, AReadOnlyFolderLeavesThePreviousPicture) {
  const fs::path png = dir / "out.png";
  std::vector<std::string> errors;
  ASSERT_TRUE(RenderFormFileToPng(Sample("Sample1.dfm").string(), png.string(), errors));
  const std::string previous = lumora::test::ReadFileBytes(png);
  fs::permissions(png, fs::perms::all);
  lumora::test::MakeReadOnlyForOthers(dir);
  const std::string message = lumora::test::RunAsOtherUser([&] {
    std::vector<std::string> childErrors;
    const bool ok = RenderFormFileToPng(Sample("Sample2.dfm").string(), png.string(), childErrors);
    return std::string(ok ? "written" : "failed") + (childErrors.empty() ? "" : ": " + childErrors[0]);
  });
  EXPECT_EQ(message, "failed: Cannot create file " + png.string() + ": Permission denied");
  EXPECT_EQ(lumora::test::ReadFileBytes(png), previous);
  EXPECT_EQ(lumora::test::FolderEntries(dir), std::vector<std::string>{"out.png"});
}

TEST_F(FormRenderTest, TextThatDoesNotParseGivesItsLine) {
  const fs::path bad = dir / "bad.dfm";
  FILE* f = std::fopen(bad.string().c_str(), "wb");
  ASSERT_NE(f, nullptr);
  std::fputs("object Form1: TForm1\r\n  Caption = 'abc\r\nend\r\n", f);
  std::fclose(f);
  const fs::path png = dir / "bad.png";
  std::vector<std::string> errors;
  EXPECT_FALSE(RenderFormFileToPng(bad.string(), png.string(), errors));
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], "Invalid string constant on line 2");
  EXPECT_FALSE(fs::exists(png));
}

TEST_F(FormRenderTest, TheProgramWritesThePictureAndExitsWithItsStatus) {
  const fs::path program = fs::path(LUMORA_BINARY_DIR) / "bin" / "lumora-form-png";
  ASSERT_TRUE(fs::exists(program)) << program;
  const fs::path png = dir / "program.png";
  const fs::path messages = dir / "stderr.txt";
  const std::string ok =
      program.string() + " '" + png.string() + "' '" + Sample("Sample3.dfm").string() + "' 2>'" + messages.string() + "'";
  int status = std::system(ok.c_str());
  EXPECT_EQ(WEXITSTATUS(status), 0);
  // A form that reads without errors leaves nothing on standard error.
  EXPECT_EQ(lumora::test::ReadFileBytes(messages), "");
  const QImage image(QString::fromStdString(png.string()));
  EXPECT_FALSE(image.isNull());
  EXPECT_GT(image.width(), 100);

  status = std::system((program.string() + " 2>/dev/null").c_str());
  EXPECT_EQ(WEXITSTATUS(status), 2);
  status = std::system((program.string() + " '" + (dir / "x.png").string() + "' '" + (dir / "missing.dfm").string() +
                       "' 2>/dev/null").c_str());
  EXPECT_EQ(WEXITSTATUS(status), 1);
}

}  // namespace
