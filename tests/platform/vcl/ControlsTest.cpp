// Controls built in code: where they go, whose font they take, their widgets, and what
// input does to them, at run time and in design state.
#include "platform/vcl/Controls.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class ControlsTest : public lumora::test::TFormFixture {};

}  // namespace

TEST_F(ControlsTest, AlignedControlsFillTheirParentInOrder) {
  auto* top = Make<TPanel>("Top", form, 0, 0, 10, 41);
  auto* bottom = Make<TPanel>("Bottom", form, 0, 0, 10, 30);
  auto* left = Make<TPanel>("Left", form, 0, 0, 100, 10);
  auto* client = Make<TMemo>("Client", form, 0, 0, 10, 10);
  top->SetAlign(alTop);
  bottom->SetAlign(alBottom);
  left->SetAlign(alLeft);
  client->SetAlign(alClient);
  EXPECT_EQ(top->BoundsRect(), Bounds(0, 0, 392, 41));
  EXPECT_EQ(bottom->BoundsRect(), Bounds(0, 243, 392, 30));
  EXPECT_EQ(left->BoundsRect(), Bounds(0, 41, 100, 202));
  EXPECT_EQ(client->BoundsRect(), Bounds(100, 41, 292, 202));
  // The widgets are where the controls are.
  EXPECT_EQ(WidgetRect(client), QRect(100, 41, 292, 202));
  // Resizing the form realigns.
  form->SetWidth(500);
  EXPECT_EQ(top->Width(), 492);
  EXPECT_EQ(client->BoundsRect(), Bounds(100, 41, 392, 202));
  // Hiding an aligned control gives its room to the others.
  top->SetVisible(false);
  EXPECT_EQ(left->BoundsRect(), Bounds(0, 0, 100, 243));
}

TEST_F(ControlsTest, ChildrenOfABorderedPanelAlignInsideTheBorder) {
  auto* panel = Make<TPanel>("Panel1", form, 8, 8, 200, 100);
  panel->SetBorderWidth(4);
  auto* inner = Make<TButton>("Inner", panel, 0, 0, 75, 25);
  inner->SetAlign(alClient);
  // Outer bevel raised (1 pixel) and a 4-pixel border.
  EXPECT_EQ(inner->BoundsRect(), Bounds(5, 5, 190, 90));
}

TEST_F(ControlsTest, AnchoredControlsFollowTheEdgesTheyAreAnchoredTo) {
  auto* ok = Make<TButton>("OK", form, 300, 240, 75, 25);
  ok->SetAnchors(TAnchors{akRight, akBottom});
  auto* edit = Make<TEdit>("Edit1", form, 8, 8, 376, 21);
  edit->SetAnchors(TAnchors{akLeft, akTop, akRight});
  auto* fixed = Make<TLabel>("Fixed", form, 8, 40, 50, 13);
  form->SetBounds(10, 10, 500, 350);
  EXPECT_EQ(ok->BoundsRect(), Bounds(400, 290, 75, 25));
  EXPECT_EQ(edit->BoundsRect(), Bounds(8, 8, 476, 21));
  EXPECT_EQ(fixed->Left(), 8);
  EXPECT_EQ(WidgetRect(ok), QRect(400, 290, 75, 25));
}

TEST_F(ControlsTest, ConstraintsBoundTheSize) {
  auto* panel = Make<TPanel>("Panel1", form, 0, 0, 100, 100);
  panel->Constraints()->SetMaxWidth(150);
  panel->Constraints()->SetMinHeight(50);
  panel->SetBounds(0, 0, 400, 10);
  EXPECT_EQ(panel->Width(), 150);
  EXPECT_EQ(panel->Height(), 50);
  panel->SetAlign(alClient);
  EXPECT_EQ(panel->BoundsRect(), Bounds(0, 0, 150, 273));
}

TEST_F(ControlsTest, ControlsTakeTheirParentsFontUntilTheyHaveTheirOwn) {
  auto* label = Make<TLabel>("Label1", form, 8, 8, 50, 13);
  auto* edit = Make<TEdit>("Edit1", form, 8, 30, 100, 21);
  form->Font()->SetName("Arial");
  form->Font()->SetHeight(-13);
  EXPECT_EQ(label->Font()->Name(), "Arial");
  EXPECT_TRUE(label->ParentFont());
  edit->Font()->SetStyle(TFontStyles{fsBold});
  EXPECT_FALSE(edit->ParentFont());
  form->Font()->SetHeight(-16);
  EXPECT_EQ(label->Font()->Height(), -16);
  EXPECT_EQ(edit->Font()->Height(), -13);
  // An edit's height follows its font: the cell height and the 3D border.
  EXPECT_EQ(edit->Height(), FontCellHeight(edit->Font()->Handle()) + 8);
}

TEST_F(ControlsTest, WidgetsAreNamedAfterTheirComponents) {
  Make<TButton>("Button1", form, 8, 8, 75, 25);
  auto* panel = Make<TPanel>("Panel1", form, 8, 40, 200, 100);
  Make<TEdit>("Edit1", panel, 8, 8, 100, 21);
  EXPECT_NE(form->Widget()->findChild<QPushButton*>(QStringLiteral("Button1")), nullptr);
  EXPECT_NE(form->Widget()->findChild<QLineEdit*>(QStringLiteral("Edit1")), nullptr);
  EXPECT_EQ(form->Widget()->objectName(), QStringLiteral("TestForm"));
}

TEST_F(ControlsTest, FreeingControlsFreesTheirWidgetsOnce) {
  auto* panel = Make<TPanel>("Panel1", form, 8, 40, 200, 100);
  auto* edit = Make<TEdit>("Edit1", panel, 8, 8, 100, 21);
  QPointer<QWidget> editWidget = edit->Widget();
  QPointer<QWidget> panelWidget = panel->Widget();
  delete panel;  // takes the edit with it
  EXPECT_TRUE(editWidget.isNull());
  EXPECT_TRUE(panelWidget.isNull());
  EXPECT_EQ(form->ComponentCount(), 0);
  // A widget Qt already freed is not freed again.
  auto* button = Make<TButton>("Button1", form, 8, 8, 75, 25);
  delete button->Widget();
  EXPECT_FALSE(button->HandleAllocated());
  delete button;
}

TEST_F(ControlsTest, ClicksAndKeysReachControls) {
  auto* button = Make<TButton>("Button1", form, 8, 8, 75, 25);
  auto* edit = Make<TEdit>("Edit1", form, 8, 40, 100, 21);
  int clicks = 0, changes = 0;
  button->OnClick = [&](TObject* sender) {
    EXPECT_EQ(sender, button);
    ++clicks;
  };
  edit->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  QTest::mouseClick(button->Widget(), Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
  edit->SetFocus();
  QTest::keyClicks(edit->Widget(), QStringLiteral("abc"));
  EXPECT_EQ(edit->Text(), "abc");
  EXPECT_EQ(changes, 3);
}

TEST_F(ControlsTest, DesignStateTakesNoInputAndShowsHiddenControls) {
  auto* button = Make<TButton>("Button1", form, 8, 8, 75, 25);
  auto* edit = Make<TEdit>("Edit1", form, 8, 40, 100, 21);
  auto* hidden = Make<TLabel>("Hidden", form, 8, 70, 50, 13);
  hidden->SetVisible(false);
  int clicks = 0, mouseDowns = 0;
  button->OnClick = [&](TObject*) { ++clicks; };
  button->OnMouseDown = [&](TObject*, TMouseButton, TShiftState, int, int) { ++mouseDowns; };
  ShowForm();
  EXPECT_FALSE(hidden->Widget()->isVisible());

  form->SetDesignState(true);
  EXPECT_TRUE(button->Designing());
  EXPECT_TRUE(hidden->Widget()->isVisible());
  QTest::mouseClick(button->Widget(), Qt::LeftButton);
  edit->Widget()->setFocus();
  QTest::keyClicks(edit->Widget(), QStringLiteral("xyz"));
  EXPECT_EQ(clicks, 0);
  EXPECT_EQ(mouseDowns, 0);
  EXPECT_EQ(edit->Text(), "");

  form->SetDesignState(false);
  EXPECT_FALSE(hidden->Widget()->isVisible());
  QTest::mouseClick(button->Widget(), Qt::LeftButton);
  QTest::keyClicks(edit->Widget(), QStringLiteral("xyz"));
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(mouseDowns, 1);
  EXPECT_EQ(edit->Text(), "xyz");
}

TEST_F(ControlsTest, MovingTheFocusTellsTheControlsLeftAndEntered) {
  auto* panel = Make<TPanel>("Panel1", form, 0, 0, 200, 100);
  auto* inner = Make<TEdit>("Edit1", panel, 8, 8, 80, 21);
  auto* outer = Make<TEdit>("Edit2", form, 8, 120, 80, 21);
  auto* sibling = Make<TEdit>("Edit3", panel, 8, 40, 80, 21);
  std::vector<std::string> seen;
  auto watch = [&](TWinControl* c) {
    c->OnEnter = [&seen, c](TObject*) { seen.push_back("enter " + c->Name()); };
    c->OnExit = [&seen, c](TObject*) { seen.push_back("exit " + c->Name()); };
  };
  watch(panel);
  watch(inner);
  watch(outer);
  watch(sibling);
  ShowForm();
  inner->SetFocus();
  seen.clear();
  // Out of the panel: the edit, then the panel, are left.
  QTest::mouseClick(outer->Widget(), Qt::LeftButton);
  EXPECT_EQ(seen, (std::vector<std::string>{"exit Edit1", "exit Panel1", "enter Edit2"}));
  seen.clear();
  // Into it: the panel is entered before the edit inside it.
  sibling->SetFocus();
  EXPECT_EQ(seen, (std::vector<std::string>{"exit Edit2", "enter Panel1", "enter Edit3"}));
  seen.clear();
  // Within it: the panel hears nothing.
  inner->SetFocus();
  EXPECT_EQ(seen, (std::vector<std::string>{"exit Edit3", "enter Edit1"}));
}
