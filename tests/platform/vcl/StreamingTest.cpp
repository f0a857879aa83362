// Controls as the form streams have them: read from form text, written back the way the
// form designer writes them (only what differs from the defaults, in the classes' order).
#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/streaming/ObjectText.h"
#include "platform/vcl/Buttons.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/FormRender.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/support/StandardPackage.h"
#include "tests/platform/vcl/VclTestUtil.h"
#include "tests/support/Corpus.h"

#include <QBuffer>
#include <QImage>

#include <gtest/gtest.h>

namespace {

class StreamingTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    RegisterVclClasses();
    form = new TForm(Application);
  }
  void TearDown() override { delete form; }

  // Reads form text into the test's form; every error fails the test.
  void Read(const std::string& text) {
    const TFormLoadResult result = LoadFormFile(form, text);
    ASSERT_TRUE(result.Read);
    for (const auto& e : result.Errors) ADD_FAILURE() << e;
  }
  std::string Written() { return WriteComponentToText(form); }
  TForm* form = nullptr;
};

std::string Crlf(std::string text) {
  std::string out;
  for (char c : text) {
    if (c == '\n') out += '\r';
    out += c;
  }
  return out;
}

}  // namespace

TEST_F(StreamingTest, AFormWithTheStandardControlsIsWrittenAsTheDesignerWritesIt) {
  form->SetName("Form1");
  form->SetBounds(231, 296, 264, 205);
  form->SetCaption("DelGUI Template");
  auto* button = new TButton(form);
  button->SetName("Test");
  button->SetParent(form);
  button->SetBounds(88, 24, 89, 33);
  button->SetCaption("Test");
  auto* memo = new TMemo(form);
  memo->SetName("MemoBox");
  memo->SetParent(form);
  memo->SetBounds(16, 80, 217, 81);
  memo->Lines()->Add("MemoBox");
  auto* label = new TLabel(form);
  label->SetName("Label1");
  label->SetParent(form);
  label->SetBounds(8, 8, 32, 13);
  label->SetCaption("Name:");
  label->SetFocusControl(memo);
  const std::string expected = Crlf(
      "object Form1: TForm\n"
      "  Left = 231\n"
      "  Top = 296\n"
      "  Width = 264\n"
      "  Height = 205\n"
      "  Caption = 'DelGUI Template'\n"
      "  Color = clBtnFace\n"
      "  Font.Charset = DEFAULT_CHARSET\n"
      "  Font.Color = clWindowText\n"
      "  Font.Height = -11\n"
      "  Font.Name = 'MS Sans Serif'\n"
      "  Font.Style = []\n"
      "  OldCreateOrder = False\n"
      "  PixelsPerInch = 96\n"
      "  TextHeight = 13\n"
      "  object Label1: TLabel\n"
      "    Left = 8\n"
      "    Top = 8\n"
      "    Width = " + std::to_string(label->Width()) + "\n"
      "    Height = 13\n"
      "    Caption = 'Name:'\n"
      "    FocusControl = MemoBox\n"
      "  end\n"
      "  object Test: TButton\n"
      "    Left = 88\n"
      "    Top = 24\n"
      "    Width = 89\n"
      "    Height = 33\n"
      "    Caption = 'Test'\n"
      "    TabOrder = 0\n"
      "  end\n"
      "  object MemoBox: TMemo\n"
      "    Left = 16\n"
      "    Top = 80\n"
      "    Width = 217\n"
      "    Height = 81\n"
      "    Lines.Strings = (\n"
      "      'MemoBox')\n"
      "    TabOrder = 1\n"
      "  end\n"
      "end\n");
  EXPECT_EQ(Written(), expected);
}

TEST_F(StreamingTest, ReadingSetsEveryKindOfValue) {
  Read("object Form1: TForm1\n"
       "  Left = 10\n  Top = 20\n  BorderStyle = bsDialog\n  Caption = 'Options'\n"
       "  ClientHeight = 200\n  ClientWidth = 300\n  Color = clBtnFace\n"
       "  Font.Charset = RUSSIAN_CHARSET\n  Font.Color = clWindowText\n  Font.Height = -11\n"
       "  Font.Name = 'Tahoma'\n  Font.Style = [fsBold]\n  KeyPreview = True\n  Menu = MainMenu1\n"
       "  Position = poScreenCenter\n  PixelsPerInch = 96\n  TextHeight = 13\n"
       "  object Panel1: TPanel\n    Left = 0\n    Top = 0\n    Width = 300\n    Height = 41\n"
       "    Align = alTop\n    BevelOuter = bvLowered\n    Caption = 'Top'\n    Color = $00FF8000\n"
       "    Cursor = crHandPoint\n    TabOrder = 0\n"
       "    object CheckBox1: TCheckBox\n      Left = 8\n      Top = 8\n      Width = 97\n      Height = 17\n"
       "      Caption = 'On'\n      State = cbChecked\n      TabOrder = 0\n    end\n"
       "  end\n"
       "  object ComboBox1: TComboBox\n    Left = 8\n    Top = 60\n    Width = 145\n    Height = 21\n"
       "    Style = csDropDownList\n    ItemHeight = 13\n    TabOrder = 1\n    Text = 'two'\n"
       "    Items.Strings = (\n      'one'\n      'two')\n  end\n"
       "  object MainMenu1: TMainMenu\n    Left = 200\n    Top = 8\n"
       "    object File1: TMenuItem\n      Caption = '&File'\n"
       "      object Open1: TMenuItem\n        Caption = '&Open'\n        ShortCut = 16463\n      end\n"
       "      object N1: TMenuItem\n        Caption = '-'\n      end\n"
       "      object Big1: TMenuItem\n        Caption = 'Big'\n        Checked = True\n        GroupIndex = 1\n"
       "        RadioItem = True\n      end\n"
       "    end\n  end\n"
       "end\n");
  EXPECT_EQ(form->BorderStyle(), bsDialog);
  EXPECT_EQ(form->ClientWidth(), 300);
  EXPECT_EQ(form->ClientHeight(), 200);
  EXPECT_EQ(form->Font()->Charset(), RUSSIAN_CHARSET);
  EXPECT_TRUE(form->Font()->Style().Contains(fsBold));
  EXPECT_TRUE(form->KeyPreview());
  auto* panel = static_cast<TPanel*>(form->FindComponent("Panel1"));
  ASSERT_NE(panel, nullptr);
  EXPECT_EQ(panel->Color(), TColor(0x00FF8000));
  EXPECT_EQ(panel->Cursor(), crHandPoint);
  EXPECT_EQ(panel->BevelOuter(), bvLowered);
  EXPECT_EQ(panel->BoundsRect(), Bounds(0, 0, 300, 41));
  auto* check = static_cast<TCheckBox*>(form->FindComponent("CheckBox1"));
  EXPECT_TRUE(check->Checked());
  EXPECT_EQ(check->Parent(), panel);
  auto* combo = static_cast<TComboBox*>(form->FindComponent("ComboBox1"));
  EXPECT_EQ(combo->ItemIndex(), 1);
  ASSERT_NE(form->Menu(), nullptr);
  TMenuItem* file = form->Menu()->Items()->Items(0);
  EXPECT_EQ(file->Count(), 3);
  EXPECT_EQ(file->Items(0)->ShortCut(), TextToShortCut("Ctrl+O"));
  EXPECT_TRUE(file->Items(1)->IsLine());
  EXPECT_TRUE(file->Items(2)->RadioItem());
  EXPECT_EQ(form->Menu()->DesignInfo(), (8 << 16) | 200);
  // Written again, what was read comes out as it went in.
  const std::string written = Written();
  // Colours without a name are written as numbers.
  EXPECT_NE(written.find("    Color = 16744448\r\n"), std::string::npos) << written;
  EXPECT_NE(written.find("    Cursor = crHandPoint\r\n"), std::string::npos);
  EXPECT_NE(written.find("      State = cbChecked\r\n"), std::string::npos);
  EXPECT_NE(written.find("        ShortCut = 16463\r\n"), std::string::npos);
  EXPECT_NE(written.find("  Font.Charset = RUSSIAN_CHARSET\r\n"), std::string::npos);
  EXPECT_NE(written.find("  Menu = MainMenu1\r\n"), std::string::npos);
  EXPECT_NE(written.find("  object MainMenu1: TMainMenu\r\n    Left = 200\r\n    Top = 8\r\n"), std::string::npos) << written;
}

TEST_F(StreamingTest, AMenuItemPlacedBeforeOthersKeepsTheGroupIndexItWasGiven) {
  // As an inherited form adds a menu between those of its ancestor: the item is read at
  // the end and moved to its place afterwards.
  Read("object Form1: TForm1\n  Menu = MainMenu1\n"
       "  object MainMenu1: TMainMenu\n"
       "    object File1: TMenuItem\n      Caption = '&File'\n      GroupIndex = 1\n    end\n"
       "    object Help1: TMenuItem\n      Caption = '&Help'\n      GroupIndex = 10\n    end\n"
       "    object View1: TMenuItem [1]\n      Caption = '&View'\n      GroupIndex = 1\n    end\n"
       "  end\nend\n");
  auto* menu = dynamic_cast<TMainMenu*>(form->FindComponent("MainMenu1"));
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->Items()->Count(), 3);
  EXPECT_EQ(menu->Items()->Items(1)->Caption(), "&View");
  EXPECT_EQ(menu->Items()->Items(0)->GroupIndex(), 1);
  EXPECT_EQ(menu->Items()->Items(1)->GroupIndex(), 1);
  EXPECT_EQ(menu->Items()->Items(2)->GroupIndex(), 10);
}

TEST_F(StreamingTest, PicturesGlyphsAndImageListsComeBackByteForByte) {
  QImage image(8, 8, QImage::Format_RGB32);
  image.fill(Qt::red);
  image.setPixelColor(0, 7, Qt::green);
  auto* img = new TImage(form);
  img->SetName("Image1");
  img->SetParent(form);
  img->Picture()->Bitmap()->SetImage(image);
  auto* bitBtn = new TBitBtn(form);
  bitBtn->SetName("BitBtn1");
  bitBtn->SetParent(form);
  bitBtn->Glyph()->SetImage(image);
  bitBtn->SetNumGlyphs(2);
  auto* list = new TImageList(form);
  list->SetName("ImageList1");
  list->SetWidth(8);
  list->SetHeight(8);
  list->Add(image);
  list->Add(image.mirrored());
  const std::string stream = WriteComponentToBinary(form);

  TForm* copy = new TForm(nullptr);
  ReadComponentFromBinary(copy, stream);
  auto* img2 = static_cast<TImage*>(copy->FindComponent("Image1"));
  auto* btn2 = static_cast<TBitBtn*>(copy->FindComponent("BitBtn1"));
  auto* list2 = static_cast<TImageList*>(copy->FindComponent("ImageList1"));
  ASSERT_TRUE(img2 && btn2 && list2);
  EXPECT_EQ(img2->Picture()->GraphicClassName(), "TBitmap");
  EXPECT_EQ(img2->Picture()->Graphic()->Bytes(), img->Picture()->Graphic()->Bytes());
  EXPECT_EQ(img2->Picture()->Graphic()->Image().pixelColor(3, 3), QColor(Qt::red));
  EXPECT_EQ(btn2->Glyph()->Bytes(), bitBtn->Glyph()->Bytes());
  EXPECT_EQ(btn2->NumGlyphs(), 2);
  // The glyph's bottom-left pixel is its transparent colour.
  EXPECT_EQ(btn2->Glyph()->TransparentImage().pixelColor(0, 7).alpha(), 0);
  ASSERT_EQ(list2->Count(), 2);
  EXPECT_EQ(list2->Image(1).pixelColor(7, 0), image.mirrored().pixelColor(7, 0));
  // Written once more, the same bytes.
  EXPECT_EQ(WriteComponentToBinary(copy), stream);
  delete copy;
}

TEST_F(StreamingTest, CorpusFormsWriteBackTheSameStreamOnceRead) {
  LUMORA_REQUIRE_CORPUS();
  // Read, written, read again and written again: the two writings agree, so nothing
  // that was read is lost or changes on the way.
  int checked = 0;
  for (const auto& path : lumora::test::CorpusFiles("bin", ".dfm")) {
    if (checked >= 300) break;
    auto* first = new TForm(nullptr);
    const TFormLoadResult loaded = LoadFormFile(first, lumora::test::ReadFileBytes(path));
    if (!loaded.Read || !loaded.Errors.empty()) {
      delete first;
      continue;
    }
    ++checked;
    SCOPED_TRACE(path.string());
    const std::string once = WriteComponentToBinary(first);
    auto* second = new TForm(nullptr);
    ReadComponentFromBinary(second, once);
    EXPECT_EQ(WriteComponentToBinary(second), once);
    delete first;
    delete second;
  }
  EXPECT_GT(checked, 100);
}
