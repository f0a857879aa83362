// Drawing a form file to a PNG, as scripts and the documentation do it.
#include "platform/vcl/FormRender.h"

#include "platform/streaming/ObjectText.h"
#include "platform/streaming/PeImage.h"
#include "platform/vcl/VclClasses.h"
#include "tests/support/Corpus.h"
#include "tests/support/PeBuilder.h"
#include "tests/support/SaveFailures.h"

#include <QImage>
#include <QSet>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
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

fs::path Program() { return fs::path(LUMORA_BINARY_DIR) / "bin" / "lumora-form-png"; }

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
  const std::string form = Sample("Sample2.dfm").string();
  const lumora::test::TProgramRun run = lumora::test::RunProgramAsOtherUser({Program().string(), png.string(), form});
  EXPECT_EQ(run.ExitStatus, 1);
  EXPECT_EQ(run.Errors, form + ": Cannot create file " + png.string() + ": Permission denied\n");
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

// Writes a program holding the form of Sample3.dfm (resource TSAMPLE3FORM or as named).
std::string WriteProgram(const fs::path& file, const std::string& resource) {
  TFormFile sample = TFormFile::Read(Sample("Sample3.dfm").string());
  const std::string stream(sample.Stream());
  std::ofstream(file, std::ios::binary) << lumora::test::BuildPeImage({{"#10", resource, 0, stream}}).Bytes;
  return stream;
}

TEST_F(FormRenderTest, AFormInsideAProgramIsDrawnLikeItsFormFile) {
  const fs::path program = dir / "Project1.exe";
  WriteProgram(program, "TMAINFORM");
  const fs::path fromProgram = dir / "program.png";
  const fs::path fromFile = dir / "file.png";
  std::vector<std::string> errors;
  ASSERT_TRUE(RenderFormFileToPng(program.string() + ":tMainForm", fromProgram.string(), errors));
  ASSERT_TRUE(RenderFormFileToPng(Sample("Sample3.dfm").string(), fromFile.string(), errors));
  EXPECT_TRUE(errors.empty()) << errors.front();
  const QImage a(QString::fromStdString(fromProgram.string()));
  EXPECT_FALSE(a.isNull());
  EXPECT_TRUE(a == QImage(QString::fromStdString(fromFile.string())));

  const fs::path none = dir / "none.png";
  EXPECT_FALSE(RenderFormFileToPng(program.string() + ":TOther", none.string(), errors));
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], program.string() + ": No form named TOther in the program; its forms are TMAINFORM");
  EXPECT_FALSE(fs::exists(none));
}

TEST_F(FormRenderTest, EveryFormOfTheRealProgramsDraws) {
  LUMORA_REQUIRE_CORPUS();
  int drawn = 0;
  for (const fs::path& file : lumora::test::CorpusFiles("pe")) {
    const std::string bytes = lumora::test::ReadFileBytes(file);
    const TPeImage image(bytes);
    for (const TPeResource* resource : image.Forms()) {
      const std::string name = file.string() + ":" + resource->Name.Text();
      const fs::path png = dir / "form.png";
      std::vector<std::string> errors;  // components of other libraries are left out and named
      ASSERT_TRUE(RenderFormFileToPng(name, png.string(), errors)) << name << ": " << errors.front();
      const QImage picture(QString::fromStdString(png.string()));
      ASSERT_FALSE(picture.isNull()) << name;
      // The picture is the window at the size it is shown (a maximised form fills the screen),
      // with more drawn in it than a frame around an empty face.
      auto* form = new TForm(Application);
      TFormFile formFile = TFormFile::Read(name);
      ASSERT_TRUE(LoadFormFile(form, formFile).Read) << name;
      const QImage shown = RenderForm(form);
      EXPECT_EQ(picture.width(), form->Width()) << name;
      EXPECT_EQ(picture.height(), form->Height()) << name;
      EXPECT_EQ(picture.size(), shown.size()) << name;
      delete form;
      QSet<QRgb> colours;
      const QImage rgb = picture.convertToFormat(QImage::Format_RGB32);
      for (int y = 0; y < rgb.height() && colours.size() < 8; y += 3)
        for (int x = 0; x < rgb.width(); x += 3) colours.insert(rgb.pixel(x, y));
      EXPECT_GE(colours.size(), 8) << name;
      fs::remove(png);
      ++drawn;
    }
  }
  EXPECT_EQ(drawn, 64);
}

TEST_F(FormRenderTest, TheProgramWritesThePictureAndExitsWithItsStatus) {
  const fs::path program = Program();
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

  // A form inside a program, and one the program lacks.
  const fs::path exe = dir / "Project1.exe";
  WriteProgram(exe, "TSAMPLE");
  const fs::path fromExe = dir / "exe.png";
  status = std::system((program.string() + " '" + fromExe.string() + "' '" + exe.string() + ":TSample' 2>'" +
                        messages.string() + "'").c_str());
  EXPECT_EQ(WEXITSTATUS(status), 0);
  EXPECT_EQ(lumora::test::ReadFileBytes(messages), "");
  EXPECT_TRUE(QImage(QString::fromStdString(fromExe.string())) == image);
  status = std::system((program.string() + " '" + (dir / "y.png").string() + "' '" + exe.string() + ":TMissing' 2>'" +
                        messages.string() + "'").c_str());
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_NE(lumora::test::ReadFileBytes(messages).find(exe.string() + ": No form named TMissing in the program"),
            std::string::npos);
  EXPECT_FALSE(fs::exists(dir / "y.png"));
  status = std::system((program.string() + " '" + (dir / "x.png").string() + "' '" + (dir / "missing.dfm").string() +
                       "' 2>/dev/null").c_str());
  EXPECT_EQ(WEXITSTATUS(status), 1);
}

}  // namespace
