// Picture dialogs: the picture formats as their filter unless the form gives its own,
// answered like every file dialog.
#include "platform/vcl/ExtDlgs.h"

#include "platform/rtti/Writer.h"
#include "platform/vcl/FormRender.h"
#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <gtest/gtest.h>

namespace {

class ExtDlgsTest : public lumora::test::TFormFixture {
protected:
  void ReadForm(const std::string& text) {
    delete form;
    form = new TForm(Application);
    const TFormLoadResult result = LoadFormFile(form, text);
    ASSERT_TRUE(result.Read);
    for (const auto& e : result.Errors) ADD_FAILURE() << e;
  }
};

}  // namespace

TEST_F(ExtDlgsTest, APictureDialogOffersEveryPictureFormatFirst) {
  auto* open = new TOpenPictureDialog(form);
  const std::string filter = open->Filter();
  EXPECT_EQ(filter.rfind("All (", 0), 0u) << filter;
  for (const char* ext : {"*.bmp", "*.ico", "*.wmf", "*.emf", "*.jpg"})
    EXPECT_NE(filter.find(ext), std::string::npos) << ext;
  // The default is not written; a filter of the form's own is.
  open->SetName("OpenPictureDialog1");
  EXPECT_EQ(WriteComponentToText(form).find("Filter"), std::string::npos);
  open->SetFilter("Bitmaps (*.bmp)|*.bmp");
  EXPECT_NE(WriteComponentToText(form).find("Filter = 'Bitmaps (*.bmp)|*.bmp'"), std::string::npos);
}

TEST_F(ExtDlgsTest, OpenAndSaveTakeTheNameGivenAndTellWhichTheyAre) {
  auto* open = new TOpenPictureDialog(form);
  auto* save = new TSavePictureDialog(form);
  EXPECT_FALSE(open->Saving());
  EXPECT_TRUE(save->Saving());
  PushNextFileName("/tmp/picture.bmp");
  EXPECT_TRUE(open->Execute());
  EXPECT_EQ(open->FileName(), "/tmp/picture.bmp");
  bool sawSaving = false;
  SetFileDialogHook([&](TOpenDialog& d) {
    sawSaving = d.Saving();
    d.SetFileName("out.bmp");
    return true;
  });
  EXPECT_TRUE(save->Execute());
  EXPECT_TRUE(sawSaving);
  EXPECT_EQ(save->FileName(), "out.bmp");
  SetFileDialogHook(nullptr);
  // Cancelled, the name stays.
  PushNextFileName("");
  EXPECT_FALSE(save->Execute());
  EXPECT_EQ(save->FileName(), "out.bmp");
}

TEST_F(ExtDlgsTest, FormTextKeepsAFilterOfItsOwnAndOtherwiseTheDefault) {
  ReadForm(
      "object TestForm: TForm\n"
      "  Left = 10\n  Top = 10\n  Width = 400\n  Height = 300\n"
      "  object OpenPictureDialog1: TOpenPictureDialog\n    Left = 8\n    Top = 8\n  end\n"
      "  object SavePictureDialog1: TSavePictureDialog\n"
      "    Filter = 'Icons (*.ico)|*.ico'\n    DefaultExt = 'ico'\n    Left = 40\n    Top = 8\n  end\n"
      "end\n");
  auto* open = dynamic_cast<TOpenPictureDialog*>(form->FindComponent("OpenPictureDialog1"));
  auto* save = dynamic_cast<TSavePictureDialog*>(form->FindComponent("SavePictureDialog1"));
  ASSERT_NE(open, nullptr);
  ASSERT_NE(save, nullptr);
  EXPECT_EQ(open->Filter(), SDefaultPictureFilter);
  EXPECT_EQ(save->Filter(), "Icons (*.ico)|*.ico");
  EXPECT_EQ(save->DefaultExt(), "ico");
  const std::string written = WriteComponentToText(form);
  EXPECT_NE(written.find("Filter = 'Icons (*.ico)|*.ico'"), std::string::npos) << written;
  EXPECT_EQ(written.find("Filter = 'All"), std::string::npos) << written;
}
