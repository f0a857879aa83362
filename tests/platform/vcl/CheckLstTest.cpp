// Check list boxes read from form text, show their items with check boxes, and tell the
// program when the user checks one.
#include "platform/vcl/CheckLst.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/ComCtrlsTestUtil.h"

#include <QApplication>
#include <QListWidget>
#include <QStyle>
#include <QStyleOptionViewItem>
#include <QTest>

#include <gtest/gtest.h>

using namespace lumora::test;

namespace {

class CheckLstTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    Application->Initialize();
    RegisterVclClasses();
  }
  void SetUp() override {
    form = new TForm(Application);
    form->SetBounds(300, 300, 400, 300);
  }
  void TearDown() override { delete form; }
  TCheckListBox* ReadList() {
    for (const std::string& e : ReadFormText(form, ListForm)) ADD_FAILURE() << e;
    auto* list = dynamic_cast<TCheckListBox*>(form->FindComponent("CheckListBox"));
    EXPECT_NE(list, nullptr);
    return list;
  }
  void ShowForm() {
    form->Show();
    QApplication::setActiveWindow(form->Widget());
    QApplication::processEvents();
  }
  static QListWidget* Widget(TCheckListBox* list) { return qobject_cast<QListWidget*>(list->Widget()); }
  // Where the check box of a row is drawn.
  static QPoint CheckPoint(QListWidget* w, int row) {
    QStyleOptionViewItem option;
    option.initFrom(w);
    option.rect = w->visualItemRect(w->item(row));
    option.features |= QStyleOptionViewItem::HasCheckIndicator;
    return w->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, w).center();
  }

  static constexpr const char* ListForm = R"(object Form1: TForm1
  Left = 0
  Top = 0
  Width = 400
  Height = 300
  object CheckListBox: TCheckListBox
    Left = 8
    Top = 8
    Width = 200
    Height = 120
    ItemHeight = 13
    Items.Strings = (
      'Additional controls'
      'Data access'
      'Standard controls')
    Sorted = True
    TabOrder = 0
  end
end
)";
  TForm* form = nullptr;
};

}  // namespace

TEST_F(CheckLstTest, ACheckListBoxReadsItsItemsUnchecked) {
  TCheckListBox* list = ReadList();
  ASSERT_EQ(list->Items()->Count(), 3);
  EXPECT_EQ(list->Items()->Strings(0), "Additional controls");
  EXPECT_TRUE(list->Sorted());
  EXPECT_EQ(list->ItemHeight(), 13);
  EXPECT_FALSE(list->Checked(0));
  EXPECT_EQ(list->State(2), cbUnchecked);
  EXPECT_TRUE(list->ItemEnabled(1));
  ShowForm();
  QListWidget* w = Widget(list);
  ASSERT_NE(w, nullptr);
  EXPECT_EQ(w->objectName(), QStringLiteral("CheckListBox"));
  ASSERT_EQ(w->count(), 3);
  EXPECT_EQ(w->item(2)->text(), QStringLiteral("Standard controls"));
  EXPECT_TRUE(w->item(0)->flags() & Qt::ItemIsUserCheckable);
  EXPECT_EQ(w->item(0)->checkState(), Qt::Unchecked);
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "CheckListBox"), ObjectBlock(Crlf(ListForm), "CheckListBox"));
}

TEST_F(CheckLstTest, ChecksSetInCodeShowAndRaiseNothing) {
  TCheckListBox* list = ReadList();
  int checks = 0;
  list->OnClickCheck = [&](TObject*) { ++checks; };
  ShowForm();
  list->SetChecked(1, true);
  EXPECT_TRUE(list->Checked(1));
  EXPECT_EQ(Widget(list)->item(1)->checkState(), Qt::Checked);
  list->SetState(2, cbGrayed);
  EXPECT_EQ(Widget(list)->item(2)->checkState(), Qt::PartiallyChecked);
  EXPECT_EQ(checks, 0);
  EXPECT_THROW(list->State(3), EStringListError);
  EXPECT_THROW(list->SetChecked(-1, true), EStringListError);
}

TEST_F(CheckLstTest, ClickingACheckBoxChecksTheItemSelectsItAndRaisesOnClickCheck) {
  TCheckListBox* list = ReadList();
  std::vector<std::pair<int, bool>> checks;
  list->OnClickCheck = [&](TObject* sender) {
    EXPECT_EQ(sender, list);
    checks.emplace_back(list->ItemIndex(), list->Checked(list->ItemIndex()));
  };
  ShowForm();
  QListWidget* w = Widget(list);
  QTest::mouseClick(w->viewport(), Qt::LeftButton, Qt::NoModifier, CheckPoint(w, 1));
  ASSERT_EQ(checks.size(), 1u);
  EXPECT_EQ(checks[0], std::make_pair(1, true));
  EXPECT_TRUE(list->Checked(1));
  QTest::mouseClick(w->viewport(), Qt::LeftButton, Qt::NoModifier, CheckPoint(w, 1));
  ASSERT_EQ(checks.size(), 2u);
  EXPECT_EQ(checks[1], std::make_pair(1, false));
}

TEST_F(CheckLstTest, TheSpaceKeyChecksTheSelectedItemAndGrayedComesWhenAllowed) {
  TCheckListBox* list = ReadList();
  int checks = 0;
  list->OnClickCheck = [&](TObject*) { ++checks; };
  list->SetAllowGrayed(true);
  ShowForm();
  QListWidget* w = Widget(list);
  list->SetItemIndex(0);
  w->setFocus();
  // Unchecked, grayed, checked, unchecked again.
  QTest::keyClick(w, Qt::Key_Space);
  EXPECT_EQ(list->State(0), cbGrayed);
  QTest::keyClick(w, Qt::Key_Space);
  EXPECT_EQ(list->State(0), cbChecked);
  QTest::keyClick(w, Qt::Key_Space);
  EXPECT_EQ(list->State(0), cbUnchecked);
  EXPECT_EQ(checks, 3);
}

TEST_F(CheckLstTest, ADisabledItemCannotBeChecked) {
  TCheckListBox* list = ReadList();
  int checks = 0;
  list->OnClickCheck = [&](TObject*) { ++checks; };
  list->SetItemEnabled(2, false);
  ShowForm();
  QListWidget* w = Widget(list);
  EXPECT_FALSE(w->item(2)->flags() & Qt::ItemIsEnabled);
  QTest::mouseClick(w->viewport(), Qt::LeftButton, Qt::NoModifier, CheckPoint(w, 2));
  EXPECT_FALSE(list->Checked(2));
  EXPECT_EQ(checks, 0);
  EXPECT_FALSE(list->ItemEnabled(2));
}

TEST_F(CheckLstTest, ChecksAndObjectsStayWithTheirItems) {
  TCheckListBox* list = ReadList();
  TObject marker;
  list->SetChecked(0, true);  // "Additional controls"
  list->Items()->SetObjects(0, &marker);
  // A new first item moves the others down; their checks and objects go with them.
  list->Items()->Add("AAA first");
  EXPECT_EQ(list->Items()->Strings(1), "Additional controls");
  EXPECT_TRUE(list->Checked(1));
  EXPECT_FALSE(list->Checked(0));
  EXPECT_EQ(list->Items()->Objects(1), &marker);
  EXPECT_EQ(list->Items()->IndexOfObject(&marker), 1);
  list->Items()->Delete(0);
  EXPECT_TRUE(list->Checked(0));
  int index = list->Items()->AddObject("Zeta", &marker);
  EXPECT_EQ(list->Items()->Objects(index), &marker);
  EXPECT_FALSE(list->Checked(index));
  list->Items()->Clear();
  EXPECT_EQ(list->Items()->Count(), 0);
}
