// The standard controls driven as a person drives them: labels, edits, memos, check
// boxes, radio buttons, list and combo boxes, group boxes.
#include "platform/vcl/StdCtrls.h"

#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Forms.h"
#include "tests/support/StandardPackage.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QEventLoop>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class StdCtrlsTest : public lumora::test::TFormFixture {};

}  // namespace

TEST_F(StdCtrlsTest, LabelsWrapAndSizeToTheirLines) {
  auto* label = Make<TLabel>(form, 8, 8, 60, 13);
  label->SetWordWrap(true);
  label->SetCaption("one two three four five six");
  EXPECT_LE(label->Width(), 60);
  EXPECT_EQ(label->Height() % 13, 0);
  EXPECT_GE(label->Height(), 26);
  label->SetAutoSize(false);
  label->SetBounds(8, 8, 30, 10);
  label->SetCaption("x");
  EXPECT_EQ(label->BoundsRect(), Bounds(8, 8, 30, 10));
}

TEST_F(StdCtrlsTest, LabelAcceleratorFocusesItsControl) {
  auto* edit = Make<TEdit>(form, 80, 8, 100, 21);
  auto* other = Make<TEdit>(form, 80, 40, 100, 21);
  auto* label = Make<TLabel>(form, 8, 8, 60, 13);
  label->SetCaption("&Name:");
  label->SetFocusControl(edit);
  ShowForm();
  other->SetFocus();
  QTest::keyClick(other->Widget(), Qt::Key_N, Qt::AltModifier);
  EXPECT_TRUE(edit->Focused());
  EXPECT_EQ(other->Text(), "");
}

TEST_F(StdCtrlsTest, ButtonAcceleratorAndSpaceClick) {
  auto* edit = Make<TEdit>(form, 8, 40, 100, 21);
  auto* button = Make<TButton>(form, 8, 8, 75, 25);
  button->SetCaption("&Open");
  int clicks = 0;
  button->OnClick = [&](TObject*) { ++clicks; };
  ShowForm();
  edit->SetFocus();
  QTest::keyClick(edit->Widget(), Qt::Key_O, Qt::AltModifier);
  EXPECT_EQ(clicks, 1);
  EXPECT_TRUE(button->Focused());
  QTest::keyClick(button->Widget(), Qt::Key_Space);
  EXPECT_EQ(clicks, 2);
  // The accelerator is underlined but Qt does not own it as a shortcut.
  auto* qb = qobject_cast<QPushButton*>(button->Widget());
  EXPECT_EQ(qb->text(), QStringLiteral("&Open"));
  EXPECT_TRUE(qb->shortcut().isEmpty());
}

TEST_F(StdCtrlsTest, ADisabledButtonDrawsItsCaptionGrey) {
  auto* button = Make<TButton>(form, 8, 8, 75, 25);
  button->SetCaption("&OK");
  button->Font()->SetColor(clBlack);
  button->SetEnabled(false);
  ShowForm();
  const QPalette pal = button->Widget()->palette();
  EXPECT_EQ(pal.color(QPalette::Disabled, QPalette::ButtonText), ColorToQColor(clGrayText));
  EXPECT_EQ(pal.color(QPalette::Active, QPalette::ButtonText), ColorToQColor(clBlack));
  // What shows: no pixel of the caption is black.
  const QImage image = button->Widget()->grab().toImage();
  bool black = false;
  for (int y = 4; y < image.height() - 4; ++y)
    for (int x = 4; x < image.width() - 4; ++x) black = black || image.pixelColor(x, y) == QColor(Qt::black);
  EXPECT_FALSE(black);
}

TEST_F(StdCtrlsTest, EditsKeepTheirTextAsBytesOfTheFontsCodePage) {
  auto* edit = Make<TEdit>(form, 8, 8, 200, 21);
  edit->Font()->SetCharset(RUSSIAN_CHARSET);
  edit->SetText("\xcf\xf0\xe8\xe2\xe5\xf2");  // Privet in Windows-1251
  EXPECT_EQ(qobject_cast<QLineEdit*>(edit->Widget())->text(), QString::fromUtf8("Привет"));
  ShowForm();
  edit->SetFocus();
  qobject_cast<QLineEdit*>(edit->Widget())->selectAll();
  // Keys of a Russian layout: their text, as a keyboard delivers it.
  for (const QString& ch : {QString::fromUtf8("Д"), QString::fromUtf8("а")}) {
    QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, ch);
    QApplication::sendEvent(edit->Widget(), &press);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_unknown, Qt::NoModifier, ch);
    QApplication::sendEvent(edit->Widget(), &release);
  }
  EXPECT_EQ(edit->Text(), "\xc4\xe0");
  EXPECT_TRUE(edit->Modified());
}

TEST_F(StdCtrlsTest, EditOptionsLimitWhatIsTyped) {
  auto* edit = Make<TEdit>(form, 8, 8, 200, 21);
  edit->SetMaxLength(3);
  edit->SetCharCase(ecUpperCase);
  ShowForm();
  edit->SetFocus();
  QTest::keyClicks(edit->Widget(), QStringLiteral("abcdef"));
  EXPECT_EQ(edit->Text(), "ABC");
  edit->SetReadOnly(true);
  QTest::keyClicks(edit->Widget(), QStringLiteral("x"));
  EXPECT_EQ(edit->Text(), "ABC");
  edit->SetPasswordChar('*');
  EXPECT_EQ(qobject_cast<QLineEdit*>(edit->Widget())->echoMode(), QLineEdit::Password);
}

TEST_F(StdCtrlsTest, MemoLinesFollowTheWidgetAndBack) {
  auto* memo = Make<TMemo>(form, 8, 8, 200, 100);
  memo->Lines()->Add("first");
  memo->Lines()->Add("second");
  auto* editor = qobject_cast<QPlainTextEdit*>(memo->Widget());
  EXPECT_EQ(editor->toPlainText(), QStringLiteral("first\nsecond"));
  EXPECT_EQ(memo->Text(), "first\r\nsecond");
  int changes = 0;
  memo->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  memo->SetFocus();
  editor->moveCursor(QTextCursor::End);
  QTest::keyClick(editor, Qt::Key_Return);
  QTest::keyClicks(editor, QStringLiteral("third"));
  ASSERT_EQ(memo->Lines()->Count(), 3);
  EXPECT_EQ(memo->Lines()->Strings(2), "third");
  EXPECT_GT(changes, 0);
}

TEST_F(StdCtrlsTest, CheckBoxesCycleTheirStatesAndClick) {
  auto* box = Make<TCheckBox>(form, 8, 8, 97, 17);
  box->SetCaption("Grey");
  box->SetAllowGrayed(true);
  int clicks = 0;
  box->OnClick = [&](TObject*) { ++clicks; };
  ShowForm();
  QTest::mouseClick(box->Widget(), Qt::LeftButton);
  EXPECT_EQ(box->State(), cbGrayed);
  QTest::mouseClick(box->Widget(), Qt::LeftButton);
  EXPECT_EQ(box->State(), cbChecked);
  QTest::mouseClick(box->Widget(), Qt::LeftButton);
  EXPECT_EQ(box->State(), cbUnchecked);
  EXPECT_EQ(clicks, 3);
  // Setting Checked in code clicks too, as the runtime does.
  box->SetChecked(true);
  EXPECT_EQ(clicks, 4);
  EXPECT_EQ(qobject_cast<QCheckBox*>(box->Widget())->checkState(), Qt::Checked);
}

TEST_F(StdCtrlsTest, RadioButtonsOfOneParentAreExclusive) {
  auto* a = Make<TRadioButton>(form, 8, 8, 100, 17);
  auto* b = Make<TRadioButton>(form, 8, 30, 100, 17);
  auto* panel = Make<TPanel>(form, 150, 8, 100, 60);
  auto* c = Make<TRadioButton>(panel, 8, 8, 80, 17);
  a->SetChecked(true);
  c->SetChecked(true);
  ShowForm();
  QTest::mouseClick(b->Widget(), Qt::LeftButton);
  EXPECT_TRUE(b->Checked());
  EXPECT_FALSE(a->Checked());
  EXPECT_TRUE(c->Checked());  // another parent, another group
  EXPECT_FALSE(qobject_cast<QRadioButton*>(a->Widget())->isChecked());
}

TEST_F(StdCtrlsTest, ListBoxesSelectAndClick) {
  auto* list = Make<TListBox>(form, 8, 8, 120, 100);
  list->Items()->Add("b");
  list->Items()->Add("a");
  list->SetSorted(true);
  EXPECT_EQ(list->Items()->Strings(0), "a");
  int clicks = 0;
  list->OnClick = [&](TObject*) { ++clicks; };
  ShowForm();
  auto* widget = qobject_cast<QListWidget*>(list->Widget());
  ASSERT_EQ(widget->count(), 2);
  const QRect second = widget->visualItemRect(widget->item(1));
  QTest::mouseClick(widget->viewport(), Qt::LeftButton, Qt::NoModifier, second.center());
  EXPECT_EQ(list->ItemIndex(), 1);
  EXPECT_EQ(clicks, 1);
  list->SetItemIndex(0);
  EXPECT_EQ(widget->currentRow(), 0);
  EXPECT_EQ(clicks, 1);  // a change in code is no click
}

TEST_F(StdCtrlsTest, ComboBoxListChoosesByTextAndReportsChanges) {
  auto* combo = Make<TComboBox>(form, 8, 8, 145, 21);
  combo->SetStyle(csDropDownList);
  combo->SetText("two");
  combo->Items()->Add("one");
  combo->Items()->Add("two");
  EXPECT_EQ(combo->ItemIndex(), 1);
  auto* widget = qobject_cast<QComboBox*>(combo->Widget());
  EXPECT_EQ(widget->currentText(), QStringLiteral("two"));
  int changes = 0;
  combo->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  combo->SetFocus();
  QTest::keyClick(widget, Qt::Key_Up);
  EXPECT_EQ(combo->ItemIndex(), 0);
  EXPECT_EQ(combo->Text(), "one");
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(combo->Height(), 21);
}

TEST_F(StdCtrlsTest, AComboBoxListShowsItsColourWithAClassicArrowButton) {
  // The focus goes to the edit: a focused list shows its text highlighted instead.
  auto* edit = Make<TEdit>(form, 8, 40, 100, 21);
  auto* combo = Make<TComboBox>(form, 8, 8, 145, 21);
  combo->SetStyle(csDropDownList);
  combo->SetColor(clBlack);
  combo->Font()->SetColor(clLime);
  combo->Items()->Add("one");
  combo->SetItemIndex(0);
  ShowForm();
  edit->SetFocus();
  const QImage image = combo->Widget()->grab().toImage();
  const QRgb black = qRgb(0, 0, 0);
  const QRgb lime = qRgb(0, 255, 0);
  const QRgb face = ColorToQColor(clBtnFace).rgb();
  // The field is the control's colour, its text the font's.
  EXPECT_EQ(image.pixel(100, 10), black);
  int text = 0;
  for (int x = 0; x < 60; ++x)
    for (int y = 0; y < image.height(); ++y) text += image.pixel(x, y) == lime;
  EXPECT_GT(text, 10);
  // The arrow button is button face with a black arrow, never in the font's colour.
  int limeInButton = 0, blackInButton = 0, faceInButton = 0;
  for (int x = image.width() - 18; x < image.width() - 2; ++x) {
    for (int y = 2; y < image.height() - 2; ++y) {
      const QRgb p = image.pixel(x, y);
      limeInButton += p == lime;
      blackInButton += p == black;
      faceInButton += p == face;
    }
  }
  EXPECT_EQ(limeInButton, 0);
  EXPECT_GT(blackInButton, 5);
  EXPECT_GT(faceInButton, 100);
}

TEST_F(StdCtrlsTest, GroupBoxesKeepTheirCaptionOutOfTheClientArea) {
  auto* group = Make<TGroupBox>(form, 8, 8, 200, 100);
  auto* memo = Make<TMemo>(group, 0, 0, 10, 10);
  memo->SetAlign(alClient);
  // The caption's cell height at the top, a 2-pixel edge all round.
  EXPECT_EQ(memo->BoundsRect(), Bounds(2, 15, 196, 83));
}

TEST_F(StdCtrlsTest, LabelsSizeThemselvesToTheirCaption) {
  auto* label = Make<TLabel>("Label1", form, 8, 8, 100, 30);
  label->SetCaption("&Name:");
  const QFontMetrics fm(label->Font()->Handle());
  EXPECT_EQ(label->Width(), fm.horizontalAdvance(QStringLiteral("Name:")));
  EXPECT_EQ(label->Height(), 13);
  auto* right = Make<TLabel>("Right", form, 100, 40, 80, 13);
  right->SetAutoSize(false);
  right->SetAlignment(taRightJustify);
  right->SetAutoSize(true);
  right->SetCaption("x");
  // Right-aligned labels keep their right edge.
  EXPECT_EQ(right->Left() + right->Width(), 180);
}
