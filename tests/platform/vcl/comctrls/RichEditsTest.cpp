// Rich edits read from form text as real forms give them, shown as they should be,
// and answering the mouse and the keys.
#include "platform/vcl/ComCtrls.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/StdCtrls.h"
#include "platform/vcl/VclClasses.h"
#include "tests/platform/vcl/ComCtrlsTestUtil.h"
#include "tests/platform/vcl/VclTestUtil.h"
#include "tests/platform/vcl/comctrls/ComCtrlsFixture.h"

#include <QApplication>
#include <QTest>
#include <QTextCursor>
#include <QTextEdit>

#include <gtest/gtest.h>

using namespace lumora::test;

namespace {

// Form text keeps the bytes of the form's code page as they are.
const std::string RichForm = std::string(R"(object Form1: TForm1
  Left = 0
  Top = 0
  Width = 400
  Height = 300
  object RichEdit1: TRichEdit
    Left = 8
    Top = 8
    Width = 300
    Height = 120
    Font.Charset = RUSSIAN_CHARSET
    Font.Color = clWindowText
    Font.Height = -13
    Font.Name = 'Courier New'
    Font.Style = []
    Lines.Strings = (
      'first line'
      ')") + "\xC0\xE1\xE2" + R"('
      'third')
    ParentFont = False
    PlainText = True
    ReadOnly = True
    ScrollBars = ssBoth
    TabOrder = 0
    WordWrap = False
  end
end
)";

}  // namespace

TEST_F(ComCtrlsTest, ARichEditReadsItsLinesInTheCodePageOfItsFont) {
  Read(RichForm);
  auto* re = Find<TRichEdit>("RichEdit1");
  ASSERT_EQ(re->Lines()->Count(), 3);
  EXPECT_EQ(re->Lines()->Strings(1), "\xC0\xE1\xE2");
  EXPECT_TRUE(re->PlainText());
  EXPECT_TRUE(re->ReadOnly());
  ShowForm();
  QTextEdit* e = re->TextEdit();
  ASSERT_NE(e, nullptr);
  EXPECT_EQ(e->toPlainText(), QString::fromUtf8("first line\nАбв\nthird\n"));
  EXPECT_TRUE(e->isReadOnly());
  EXPECT_EQ(e->lineWrapMode(), QTextEdit::NoWrap);
  EXPECT_EQ(e->document()->defaultFont().pixelSize() > 0 || e->document()->defaultFont().pointSizeF() > 0, true);
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "RichEdit1"), ObjectBlock(Crlf(RichForm), "RichEdit1"));
}

TEST_F(ComCtrlsTest, RichEditLinesAddInsertAndDeleteAsAMemosDo) {
  auto* re = new TRichEdit(form);
  re->SetParent(form);
  EXPECT_EQ(re->Lines()->Count(), 0);
  re->Lines()->Add("a");
  re->Lines()->Add("b");
  EXPECT_EQ(re->Lines()->Count(), 2);
  EXPECT_EQ(re->Text(), "a\r\nb\r\n");
  re->Lines()->Insert(0, "z");
  re->Lines()->Insert(3, "end");
  EXPECT_EQ(re->Lines()->Text(), "z\r\na\r\nb\r\nend\r\n");
  re->Lines()->Delete(1);
  re->Lines()->SetStrings(0, "zz");
  EXPECT_EQ(re->Lines()->Text(), "zz\r\nb\r\nend\r\n");
  re->Lines()->Delete(2);
  EXPECT_EQ(re->Lines()->Text(), "zz\r\nb\r\n");
  EXPECT_THROW(re->Lines()->Delete(5), EStringListError);
  re->SetText("one\r\ntwo");
  EXPECT_EQ(re->Lines()->Count(), 2);
  EXPECT_EQ(re->Lines()->Strings(1), "two");
  TStringList list;
  list.Add("x");
  list.Add("y");
  re->Lines()->Assign(&list);
  EXPECT_EQ(re->Text(), "x\r\ny\r\n");
  re->Lines()->Clear();
  EXPECT_EQ(re->Text(), "");
}

TEST_F(ComCtrlsTest, TypingInARichEditRaisesOnChangeAndMovesTheSelection) {
  auto* re = new TRichEdit(form);
  re->SetName("Rich");
  re->SetParent(form);
  re->SetBounds(0, 0, 200, 100);
  int changes = 0;
  int selections = 0;
  re->OnChange = [&](TObject*) { ++changes; };
  re->OnSelectionChange = [&](TObject*) { ++selections; };
  ShowForm();
  QApplication::setActiveWindow(form->Widget());
  re->TextEdit()->setFocus();
  QTest::keyClicks(re->TextEdit(), "hello");
  QTest::keyClick(re->TextEdit(), Qt::Key_Return);
  QTest::keyClicks(re->TextEdit(), "you");
  EXPECT_EQ(re->Text(), "hello\r\nyou");
  EXPECT_EQ(re->Lines()->Count(), 2);
  EXPECT_GE(changes, 9);
  EXPECT_GE(selections, 9);
  EXPECT_EQ(re->SelStart(), 9);
  EXPECT_EQ(re->LineFromChar(re->SelStart()), 1);
  EXPECT_EQ(re->SelStart() - re->LineIndex(-1), 3);
  EXPECT_TRUE(re->Modified());
  EXPECT_TRUE(re->CanUndo());
  re->ClearUndo();
  EXPECT_FALSE(re->CanUndo());
}

TEST_F(ComCtrlsTest, SelectionAttributesFormatTheSelectedText) {
  auto* re = new TRichEdit(form);
  re->SetParent(form);
  re->SetText("plain bold plain");
  ShowForm();
  re->SetSelStart(6);
  re->SetSelLength(4);
  EXPECT_EQ(re->SelText(), "bold");
  re->SelAttributes()->SetStyle(TFontStyles{fsBold});
  re->SelAttributes()->SetColor(clRed);
  EXPECT_TRUE(re->SelAttributes()->Style().Contains(fsBold));
  EXPECT_EQ(re->SelAttributes()->Color(), clRed);
  QTextCursor c(re->Document());
  c.setPosition(8);
  EXPECT_EQ(c.charFormat().fontWeight(), QFont::Bold);
  EXPECT_EQ(c.charFormat().foreground().color(), QColor(255, 0, 0));
  c.setPosition(3);
  EXPECT_NE(c.charFormat().fontWeight(), QFont::Bold);
  re->SetSelStart(1);
  EXPECT_FALSE(re->SelAttributes()->Style().Contains(fsBold));
  // The default attributes reach the whole text.
  re->DefAttributes()->SetStyle(TFontStyles{});
  c.setPosition(8);
  EXPECT_NE(c.charFormat().fontWeight(), QFont::Bold);
}

TEST_F(ComCtrlsTest, FindTextSearchesForwardWithinItsRange) {
  auto* re = new TRichEdit(form);
  re->SetParent(form);
  re->SetText("Abc abc abcd\r\nABC");
  EXPECT_EQ(re->FindText("abc", 0, 1000, TSearchTypes{}), 0);
  EXPECT_EQ(re->FindText("abc", 1, 1000, TSearchTypes{}), 4);
  EXPECT_EQ(re->FindText("abc", 1, 1000, TSearchTypes{stMatchCase}), 4);
  EXPECT_EQ(re->FindText("ABC", 1, 1000, TSearchTypes{stMatchCase}), 13);
  EXPECT_EQ(re->FindText("abc", 5, 1000, TSearchTypes{stWholeWord}), 13);
  EXPECT_EQ(re->FindText("abc", 5, 4, TSearchTypes{}), -1);
  EXPECT_EQ(re->FindText("xyz", 0, 1000, TSearchTypes{}), -1);
  EXPECT_EQ(re->FindText("", 0, 1000, TSearchTypes{}), -1);
}

TEST_F(ComCtrlsTest, ARichEditScrollsByLines) {
  auto* re = new TRichEdit(form);
  re->SetParent(form);
  re->SetBounds(0, 0, 200, 100);
  re->SetScrollBars(ssVertical);
  std::string text;
  for (int i = 0; i < 100; ++i) text += "line " + std::to_string(i) + "\r\n";
  re->SetText(text);
  ShowForm();
  EXPECT_EQ(re->FirstVisibleLine(), 0);
  re->LineScroll(10);
  EXPECT_EQ(re->FirstVisibleLine(), 10);
  re->LineScroll(-4);
  EXPECT_EQ(re->FirstVisibleLine(), 6);
  EXPECT_EQ(re->LineIndex(2), 14);
  EXPECT_EQ(re->LineLength(2), 6);
  EXPECT_EQ(re->LineIndex(1000), -1);
  const int pos = re->CharFromPos(Point(3, 3));
  EXPECT_EQ(re->LineFromChar(pos), 6);
}
