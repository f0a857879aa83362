// Spin edits and spin buttons: arrow keys and buttons step the number, kept in its range.
#include "platform/vcl/Spin.h"

#include "platform/vcl/Forms.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QImage>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class SpinTest : public lumora::test::TFormFixture {
protected:
  TSpinEdit* MakeSpin(int minValue, int maxValue, int value) {
    auto* spin = Make<TSpinEdit>("SpinEdit1", form, 8, 8, 80, 22);
    spin->SetMinValue(minValue);
    spin->SetMaxValue(maxValue);
    spin->SetValue(value);
    ShowForm();
    spin->SetFocus();
    return spin;
  }
  static QWidget* Buttons(TSpinEdit* spin) { return spin->Widget()->findChild<QWidget*>("SpinButtons"); }
};

}  // namespace

TEST_F(SpinTest, ArrowKeysStepTheValueAndStopAtTheEnds) {
  TSpinEdit* spin = MakeSpin(0, 10, 8);
  spin->SetIncrement(2);
  int changes = 0;
  spin->OnChange = [&](TObject*) { ++changes; };
  QTest::keyClick(spin->Widget(), Qt::Key_Up);
  EXPECT_EQ(spin->Text(), "10");
  QTest::keyClick(spin->Widget(), Qt::Key_Up);
  EXPECT_EQ(spin->Value(), 10);
  EXPECT_EQ(changes, 1);
  for (int i = 0; i < 7; ++i) QTest::keyClick(spin->Widget(), Qt::Key_Down);
  EXPECT_EQ(spin->Text(), "0");
}

TEST_F(SpinTest, TheButtonsInsideTheEditStepItToo) {
  TSpinEdit* spin = MakeSpin(-5, 5, 0);
  QWidget* buttons = Buttons(spin);
  ASSERT_NE(buttons, nullptr);
  EXPECT_TRUE(buttons->isVisible());
  // Against the right edge, inside the frame.
  EXPECT_GT(buttons->x(), spin->Width() / 2);
  QTest::mouseClick(buttons, Qt::LeftButton, Qt::NoModifier, QPoint(buttons->width() / 2, 2));
  EXPECT_EQ(spin->Value(), 1);
  QTest::mouseClick(buttons, Qt::LeftButton, Qt::NoModifier, QPoint(buttons->width() / 2, buttons->height() - 2));
  QTest::mouseClick(buttons, Qt::LeftButton, Qt::NoModifier, QPoint(buttons->width() / 2, buttons->height() - 2));
  EXPECT_EQ(spin->Value(), -1);
}

TEST_F(SpinTest, OnlyWholeNumbersAreTypedAndLeavingBringsThemIntoRange) {
  TSpinEdit* spin = MakeSpin(1, 100, 1);
  auto* other = Make<TEdit>("Edit1", form, 8, 40, 80, 21);
  auto* line = qobject_cast<QLineEdit*>(spin->Widget());
  ASSERT_NE(line, nullptr);
  line->selectAll();
  QTest::keyClicks(spin->Widget(), "4x2.5");
  EXPECT_EQ(spin->Text(), "425");
  other->SetFocus();
  QApplication::processEvents();
  EXPECT_EQ(spin->Text(), "100");
  // Without an editor only the keys and buttons change it.
  spin->SetEditorEnabled(false);
  spin->SetFocus();
  QTest::keyClicks(spin->Widget(), "7");
  EXPECT_EQ(spin->Text(), "100");
  QTest::keyClick(spin->Widget(), Qt::Key_Down);
  EXPECT_EQ(spin->Text(), "99");
}

TEST_F(SpinTest, EqualEndsMeanNoRange) {
  TSpinEdit* spin = MakeSpin(0, 0, -40);
  EXPECT_EQ(spin->Value(), -40);
  QTest::keyClick(spin->Widget(), Qt::Key_Down);
  EXPECT_EQ(spin->Value(), -41);
}

TEST_F(SpinTest, ASpinButtonReportsWhichHalfWasPressedAndFocusesItsControl) {
  auto* edit = Make<TEdit>("Edit1", form, 8, 8, 80, 21);
  auto* button = Make<TSpinButton>("SpinButton1", form, 90, 8, 20, 26);
  button->SetFocusControl(edit);
  int ups = 0;
  int downs = 0;
  button->OnUpClick = [&](TObject*) { ++ups; };
  button->OnDownClick = [&](TObject*) { ++downs; };
  ShowForm();
  QTest::mouseClick(button->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 4));
  EXPECT_EQ(ups, 1);
  EXPECT_EQ(downs, 0);
  EXPECT_TRUE(edit->Focused());
  QTest::mouseClick(button->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 22));
  EXPECT_EQ(downs, 1);
  // Pressed, the half sinks: its top-left edge turns to shadow.
  QTest::mousePress(button->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 4));
  const QImage pressed = button->Widget()->grab().toImage();
  QTest::mouseRelease(button->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 4));
  const QImage released = button->Widget()->grab().toImage();
  EXPECT_EQ(QColor(pressed.pixel(5, 0)).rgb() & 0xFFFFFF, ColorToQColor(clBtnShadow).rgb() & 0xFFFFFF);
  EXPECT_NE(QColor(released.pixel(5, 0)).rgb(), QColor(pressed.pixel(5, 0)).rgb());
}
