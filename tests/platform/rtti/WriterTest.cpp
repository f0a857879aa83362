#include "platform/rtti/Classes.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/Streams.h"
#include "tests/platform/rtti/TestClasses.h"

#include <gtest/gtest.h>

namespace {

// CR LF line ends, as the converter writes them.
std::string Crlf(const std::string& text) {
  std::string out;
  for (char ch : text) {
    if (ch == '\n') out += '\r';
    out += ch;
  }
  return out;
}

// Only values that differ from their defaults, in the order the writer uses.
const char* const NonDefaultForm = R"(object Form1: TTestForm
  Left = 10
  Top = 20
  Width = 300
  Align = taClient
  Visible = False
  Anchors = [akRight, akBottom]
  Letter = 'x'
  Small = 200
  Color = clRed
  Ratio = 2.5s
  Scale = 0.5
  Precise = 0.333333333333333333
  Price = 125000c
  Stamp = 36526.5
  Big = 1000000.0
  Caption = 'Hello'
  Short = 'short'
  Count64 = 9000000000
  Data = 'variant text'
  Font.Name = 'Arial'
  Font.Style = [tfsBold, tfsItalic]
  Items.Strings = (
    'one'
    'two')
  Columns = <
    item
      Caption = 'Name'
      Width = 120
    end
    item
    end>
  Buddy = Label1
  OnClick = Button1Click
  OnKeyDown = FormKeyDown
  object Button1: TTestButton
    Left = 8
    Top = 0
    Caption = 'OK'
    Font.Name = 'MS Sans Serif'
    Columns = <>
    OnClick = Button1Click
  end
  object Label1: TTestControl
    Left = 0
    Top = 40
    Font.Name = 'MS Sans Serif'
    Columns = <>
    Buddy = Button1
  end
  object Timer1: TTestTimer
    Interval = 500
    OnTimer = TimerFired
    Left = 16
    Top = 32
  end
end
)";

struct WriterTest : ::testing::Test {
  static void SetUpTestSuite() { RegisterTestColorNames(); }
};

}  // namespace

TEST_F(WriterTest, ReadingThenWritingGivesTheSameBytes) {
  const std::string binary = ObjectTextToBinary(NonDefaultForm);
  TTestForm form(nullptr);
  ReadComponentFromBinary(&form, binary);
  EXPECT_EQ(WriteComponentToBinary(&form), binary);
  EXPECT_EQ(WriteComponentToText(&form), ObjectBinaryToText(binary));
}

TEST_F(WriterTest, WrittenStreamsReadIntoTheSameValues) {
  TTestForm form(nullptr);
  ReadComponentFromText(&form, NonDefaultForm);
  form.FPrecise = 1.0L / 3.0L;  // needs all 64 bits
  form.FWideLetter = u'\u263A';
  form.FData = Variant(Currency::FromScaled(7));
  TTestForm copy(nullptr);
  ReadComponentFromBinary(&copy, WriteComponentToBinary(&form));
  EXPECT_EQ(copy.FPrecise, form.FPrecise);
  EXPECT_EQ(copy.FData, form.FData);
  EXPECT_EQ(copy.FStamp.Value, form.FStamp.Value);
  EXPECT_EQ(copy.FPrice.Scaled, form.FPrice.Scaled);
  EXPECT_EQ(copy.FRatio, form.FRatio);
  EXPECT_EQ(copy.FWideLetter, form.FWideLetter);
  EXPECT_EQ(copy.Font()->FStyle, form.Font()->FStyle);
  EXPECT_TRUE(copy.Items()->Equals(form.Items()));
  EXPECT_EQ(copy.Columns()->Count(), 2);
  EXPECT_EQ(copy.Buddy(), copy.Label1);
  EXPECT_EQ(copy.Button1->OnClick, MakeMethod<&TTestForm::Button1Click>(&copy));
  EXPECT_EQ(copy.Timer1->DesignInfo(), form.Timer1->DesignInfo());
}

TEST_F(WriterTest, DefaultsStoredClausesAndReadOnlyPropertiesAreLeftOut) {
  TTestControl control(nullptr);
  control.SetName("Edit1");
  control.FHidden = 5;          // stored False
  control.FCaption = "Edit1";   // stored only when it differs from the name
  control.FWidth = 100;         // the default
  control.OnClick = [](TObject*) {};  // not a published method of the root: cannot be named
  EXPECT_EQ(WriteComponentToText(&control), Crlf("object Edit1: TTestControl\n"
                                                 "  Left = 0\n"
                                                 "  Top = 0\n"
                                                 "  Font.Name = 'MS Sans Serif'\n"
                                                 "  Columns = <>\n"
                                                 "end\n"));
  control.FCaption = "Other";
  control.FColor = TTestColor(12345);  // no name for it: a number
  control.FAnchors = {};
  EXPECT_EQ(WriteComponentToText(&control), Crlf("object Edit1: TTestControl\n"
                                                 "  Left = 0\n"
                                                 "  Top = 0\n"
                                                 "  Anchors = []\n"
                                                 "  Color = 12345\n"
                                                 "  Caption = 'Other'\n"
                                                 "  Font.Name = 'MS Sans Serif'\n"
                                                 "  Columns = <>\n"
                                                 "end\n"));
}

TEST_F(WriterTest, ReferencesAcrossRoots) {
  TTestForm form(nullptr);
  form.SetName("Form1");
  TTestForm other(nullptr);
  other.SetName("Form2");
  auto* edit = new TTestControl(&other);
  edit->SetName("Edit1");
  auto* label = new TTestControl(&form);
  label->SetName("Label1");
  label->SetParent(&form);
  label->SetBuddy(edit);
  form.SetBuddy(&form);
  const std::string text = WriteComponentToText(&form);
  EXPECT_NE(text.find("  Buddy = Owner\r\n"), std::string::npos) << text;
  EXPECT_NE(text.find("    Buddy = Form2.Edit1\r\n"), std::string::npos) << text;
  // Reading it back: the reference to the other form stays unresolved, without an error.
  TTestForm back(nullptr);
  ReadComponentFromText(&back, text);
  EXPECT_EQ(back.Buddy(), &back);
  EXPECT_EQ(back.Label1->Buddy(), nullptr);
}

TEST_F(WriterTest, VariantsOfEveryType) {
  struct Case {
    Variant value;
    const char* text;
  };
  const Case cases[] = {{Variant(12), "12"},        {Variant("abc"), "'abc'"},     {Variant(true), "True"},
                        {Variant(1.5), "1.5"},      {Variant(2.5f), "2.5s"},       {Variant(Currency::FromScaled(12500)), "12500c"},
                        {Variant(TDateTime(2.5)), "2.5d"}, {Variant(5000000000LL), "5000000000"}};
  for (const Case& c : cases) {
    TTestControl control(nullptr);
    control.FData = c.value;
    const std::string text = WriteComponentToText(&control);
    EXPECT_NE(text.find(std::string("  Data = ") + c.text + "\r\n"), std::string::npos) << text;
    TTestControl back(nullptr);
    ReadComponentFromText(&back, text);
    EXPECT_EQ(back.FData, c.value) << c.text;
  }
}

TEST_F(WriterTest, NullVariantsTravelInBinaryOnly) {
  // The text notation has no Null; the binary stream keeps it as a vaNull value.
  TTestControl control(nullptr);
  control.FData = Null();
  TTestControl back(nullptr);
  back.FData = Variant(1);
  ReadComponentFromBinary(&back, WriteComponentToBinary(&control));
  EXPECT_TRUE(back.FData.IsNull());
}

TEST_F(WriterTest, WritingToAStreamAndAComponentRoot) {
  TComponent root(nullptr);
  root.SetName("DataModule1");
  auto* timer = new TTestTimer(&root);
  timer->SetName("Timer1");
  timer->FEnabled = false;
  timer->SetDesignInfo((8 << 16) | 0xFFF8);  // Left -8 is kept as the 16-bit word it is
  TStringStream stream("head");
  stream.SetPosition(4);
  WriteComponent(stream, &root);
  EXPECT_EQ(stream.DataString().substr(0, 8), "headTPF0");
  EXPECT_EQ(ObjectBinaryToText(stream.DataString().substr(4)), Crlf("object DataModule1: TComponent\n"
                                                                    "  object Timer1: TTestTimer\n"
                                                                    "    Enabled = False\n"
                                                                    "    Left = 65528\n"
                                                                    "    Top = 8\n"
                                                                    "  end\n"
                                                                    "end\n"));
  RegisterClass(TTestTimer::StaticClass());
  TComponent back(nullptr);
  ReadComponentFromBinary(&back, stream.DataString().substr(4));
  ASSERT_EQ(back.ComponentCount(), 1);
  EXPECT_EQ(back.Components(0)->DesignInfo(), timer->DesignInfo());
  UnRegisterClass(TTestTimer::StaticClass());
}

TEST_F(WriterTest, InlineAndInheritedComponentsKeepTheirKeyword) {
  TTestForm form(nullptr);
  ReadComponentFromText(&form, "inherited Form1: TTestForm\n"
                               "  inherited Label1: TTestControl\n"
                               "  end\n"
                               "  inline Frame1: TTestControl\n"
                               "  end\n"
                               "end\n");
  const std::string text = WriteComponentToText(&form);
  EXPECT_NE(text.find("  inherited Label1: TTestControl\r\n"), std::string::npos) << text;
  EXPECT_NE(text.find("  inline Frame1: TTestControl\r\n"), std::string::npos) << text;
}

TEST_F(WriterTest, BinaryDefinedPropertiesAreWrittenWhenTheyHaveData) {
  TTestControl control(nullptr);
  EXPECT_EQ(WriteComponentToText(&control).find("Picture"), std::string::npos);
  control.Picture()->Bytes = std::string("\x00\xAB", 2);
  const std::string text = WriteComponentToText(&control);
  EXPECT_NE(text.find("  Picture.Data = {00AB}\r\n"), std::string::npos) << text;
  TTestControl back(nullptr);
  ReadComponentFromText(&back, text);
  EXPECT_EQ(back.Picture()->Bytes, control.Picture()->Bytes);
}

TEST_F(WriterTest, EmptyStringListsAreLeftOutFullOnesWritten) {
  TTestControl control(nullptr);
  EXPECT_EQ(WriteComponentToText(&control).find("Items"), std::string::npos);
  control.Items()->Add("");
  EXPECT_NE(WriteComponentToText(&control).find("  Items.Strings = (\r\n    '')\r\n"), std::string::npos);
}
