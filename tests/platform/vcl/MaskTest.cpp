// Mask edits typed into as a person types: the mask decides what each place takes.
#include "platform/vcl/Mask.h"

#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class MaskTest : public lumora::test::TFormFixture {
protected:
  TMaskEdit* MakeMasked(const std::string& mask) {
    auto* edit = Make<TMaskEdit>("MaskEdit1", form, 8, 8, 120, 21);
    edit->SetEditMask(mask);
    ShowForm();
    edit->SetFocus();
    if (auto* line = qobject_cast<QLineEdit*>(edit->Widget())) line->setCursorPosition(0);
    return edit;
  }
  static void Type(TMaskEdit* edit, const QString& text) {
    for (QChar ch : text) QTest::keyClicks(edit->Widget(), QString(ch));
  }
};

}  // namespace

TEST_F(MaskTest, TheEmptyMaskShowsItsLiteralsAndBlanks) {
  TMaskEdit* edit = MakeMasked("!99/99/0000;1;_");
  EXPECT_EQ(edit->EditText(), "__/__/____");
  EXPECT_FALSE(edit->IsComplete());
}

TEST_F(MaskTest, DigitsFillThePlacesAndTheLiteralsAreSkipped) {
  TMaskEdit* edit = MakeMasked("!99/99/0000;1;_");
  Type(edit, "01021999");
  EXPECT_EQ(edit->EditText(), "01/02/1999");
  EXPECT_EQ(edit->Text(), "01/02/1999");
  EXPECT_TRUE(edit->IsComplete());
}

TEST_F(MaskTest, CharactersTheMaskRefusesAreNotTyped) {
  TMaskEdit* edit = MakeMasked("000-000;0;_");
  Type(edit, "1a2-b3");
  EXPECT_EQ(edit->EditText(), "123-___");
  // Without saved literals the text is the places alone, blanks as spaces.
  EXPECT_EQ(edit->Text(), "123   ");
  // Nothing goes past the last place.
  Type(edit, "456789");
  EXPECT_EQ(edit->EditText(), "123-456");
}

TEST_F(MaskTest, CaseMarksChangeTheLettersTyped) {
  TMaskEdit* edit = MakeMasked(">LL<ll;1;_");
  Type(edit, "abCD");
  EXPECT_EQ(edit->EditText(), "ABcd");
  // A digit is not a letter.
  edit->SetEditText("____");
  if (auto* line = qobject_cast<QLineEdit*>(edit->Widget())) line->setCursorPosition(0);
  Type(edit, "1x");
  EXPECT_EQ(edit->EditText(), "X___");
}

TEST_F(MaskTest, BackspaceAndDeleteBlankPlacesAndLeaveTheLiterals) {
  TMaskEdit* edit = MakeMasked("00:00;1;_");
  Type(edit, "1234");
  EXPECT_EQ(edit->EditText(), "12:34");
  QTest::keyClick(edit->Widget(), Qt::Key_Backspace);
  EXPECT_EQ(edit->EditText(), "12:3_");
  QTest::keyClick(edit->Widget(), Qt::Key_Backspace);
  QTest::keyClick(edit->Widget(), Qt::Key_Backspace);
  EXPECT_EQ(edit->EditText(), "1_:__");
  QTest::keyClick(edit->Widget(), Qt::Key_Home);
  QTest::keyClick(edit->Widget(), Qt::Key_Delete);
  EXPECT_EQ(edit->EditText(), "__:__");
}

TEST_F(MaskTest, TextSetByCodeTakesItsPlacesAndAReadOnlyEditTakesNoKeys) {
  TMaskEdit* edit = MakeMasked("(999) 000-0000;0;_");
  edit->SetText("5551234567");
  EXPECT_EQ(edit->EditText(), "(555) 123-4567");
  EXPECT_EQ(FormatMaskText("(999) 000-0000;0;_", "555"), "(555) ___-____");
  edit->SetReadOnly(true);
  if (auto* line = qobject_cast<QLineEdit*>(edit->Widget())) line->setCursorPosition(1);
  Type(edit, "9");
  EXPECT_EQ(edit->EditText(), "(555) 123-4567");
}

TEST_F(MaskTest, WithoutAMaskItIsAPlainEdit) {
  TMaskEdit* edit = MakeMasked("");
  Type(edit, "any text 1");
  EXPECT_EQ(edit->Text(), "any text 1");
  EXPECT_FALSE(edit->IsMasked());
}
