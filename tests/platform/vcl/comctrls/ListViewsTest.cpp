// List views read from form text as real forms give them, shown as they should be,
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

#include <QHeaderView>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

using namespace lumora::test;

namespace {

const char* const ListForm = R"(object Form1: TForm1
  Left = 0
  Top = 0
  Width = 400
  Height = 300
  object ListView1: TListView
    Left = 8
    Top = 8
    Width = 300
    Height = 150
    Columns = <
      item
        Caption = 'Name'
        Width = 120
      end
      item
        Alignment = taRightJustify
        Caption = 'Size'
      end
      item
        Caption = 'Kind'
        Width = -2
        WidthType = (
          -2)
      end>
    HideSelection = False
    HotTrackStyles = []
    Items.Data = {
      410000000200000000000000FFFFFFFFFFFFFFFF020000000000000005416C70
      68610131017801000000FFFFFFFFFFFFFFFF0100000000000000044265746101
      32}
    MultiSelect = True
    ReadOnly = True
    RowSelect = True
    TabOrder = 0
    ViewStyle = vsReport
  end
end
)";

// An item with seven sub-items and their images, as later versions write them.
const char* const ListFormWithImages = R"(object Form1: TForm1
  Left = 0
  Top = 0
  Width = 400
  Height = 300
  object ListView1: TListView
    Left = 0
    Top = 0
    Width = 300
    Height = 100
    Columns = <>
    HotTrackStyles = []
    Items.Data = {
      390000000100000000000000FFFFFFFFFFFFFFFF070000000000000000013101
      3201330134013501360137FFFFFFFFFFFFFFFFFFFFFFFFFFFF}
    TabOrder = 0
    ViewStyle = vsReport
  end
end
)";

}  // namespace

TEST_F(ComCtrlsTest, AListViewReadsItsColumnsAndItems) {
  Read(ListForm);
  auto* lv = Find<TListView>("ListView1");
  ASSERT_EQ(lv->Columns()->Count(), 3);
  EXPECT_EQ(lv->Column(0)->Caption(), "Name");
  EXPECT_EQ(lv->Column(1)->Width(), 50);
  EXPECT_EQ(lv->Column(1)->Alignment(), taRightJustify);
  EXPECT_EQ(lv->Column(2)->WidthType(), ColumnHeaderWidth);
  ASSERT_EQ(lv->Items()->Count(), 2);
  TListItem* alpha = lv->Items()->Item(0);
  EXPECT_EQ(alpha->Caption(), "Alpha");
  EXPECT_EQ(alpha->ImageIndex(), 0);
  ASSERT_EQ(alpha->SubItems()->Count(), 2);
  EXPECT_EQ(alpha->SubItems()->Strings(1), "x");
  EXPECT_EQ(lv->Items()->Item(1)->ImageIndex(), 1);
  EXPECT_EQ(lv->ViewStyle(), vsReport);
  ShowForm();
  QTreeWidget* w = lv->ListWidget();
  ASSERT_NE(w, nullptr);
  EXPECT_EQ(w->objectName(), QStringLiteral("ListView1"));
  ASSERT_EQ(w->columnCount(), 3);
  EXPECT_FALSE(w->isHeaderHidden());
  EXPECT_EQ(w->headerItem()->text(1), QStringLiteral("Size"));
  EXPECT_EQ(w->columnWidth(0), 120);
  EXPECT_EQ(w->columnWidth(1), 50);
  ASSERT_EQ(w->topLevelItemCount(), 2);
  EXPECT_EQ(w->topLevelItem(0)->text(0), QStringLiteral("Alpha"));
  EXPECT_EQ(w->topLevelItem(0)->text(2), QStringLiteral("x"));
  EXPECT_EQ(w->topLevelItem(1)->text(1), QStringLiteral("2"));
  EXPECT_TRUE(w->topLevelItem(0)->textAlignment(1) & Qt::AlignRight);
  EXPECT_EQ(w->selectionMode(), QAbstractItemView::ExtendedSelection);
}

TEST_F(ComCtrlsTest, AListViewWritesItsItemsBackAsItReadThem) {
  Read(ListForm);
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "ListView1"), ObjectBlock(Crlf(ListForm), "ListView1"));
}

TEST_F(ComCtrlsTest, TheImagesOfSubItemsReadAndWriteBack) {
  Read(ListFormWithImages);
  auto* lv = Find<TListView>("ListView1");
  ASSERT_EQ(lv->Items()->Count(), 1);
  ASSERT_EQ(lv->Items()->Item(0)->SubItems()->Count(), 7);
  EXPECT_EQ(lv->Items()->Item(0)->SubItems()->Strings(6), "7");
  EXPECT_EQ(lv->Items()->Item(0)->SubItemImages(3), -1);
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "ListView1"),
            ObjectBlock(Crlf(ListFormWithImages), "ListView1"));
}

TEST_F(ComCtrlsTest, DamagedItemDataIsReported) {
  std::string text = ListForm;
  const std::string count = "4100000002000000";
  text.replace(text.find(count), count.size(), "41000000FF000000");
  const std::vector<std::string> errors = ReadFormText(form, text);
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], "Error reading ListView1.Items.Data: Stream read error");
  EXPECT_EQ(Find<TListView>("ListView1")->Items()->Count(), 0);
  EXPECT_EQ(Find<TListView>("ListView1")->ViewStyle(), vsReport);
}

TEST_F(ComCtrlsTest, ClickingARowSelectsItsItem) {
  Read(ListForm);
  auto* lv = Find<TListView>("ListView1");
  std::vector<std::pair<std::string, bool>> selections;
  lv->OnSelectItem = [&](TObject*, TListItem* item, bool selected) {
    selections.emplace_back(item->Caption(), selected);
  };
  ShowForm();
  QTreeWidget* w = lv->ListWidget();
  const QRect beta = w->visualItemRect(w->topLevelItem(1));
  QTest::mouseClick(w->viewport(), Qt::LeftButton, Qt::NoModifier, beta.center());
  ASSERT_EQ(selections.size(), 1u);
  EXPECT_EQ(selections[0], std::make_pair(std::string("Beta"), true));
  EXPECT_EQ(lv->Selected(), lv->Items()->Item(1));
  EXPECT_TRUE(lv->Items()->Item(1)->Selected());
  // Ctrl adds the other one; a plain click keeps only the one clicked.
  const QRect alpha = w->visualItemRect(w->topLevelItem(0));
  QTest::mouseClick(w->viewport(), Qt::LeftButton, Qt::ControlModifier, alpha.center());
  EXPECT_EQ(lv->SelCount(), 2);
  QTest::mouseClick(w->viewport(), Qt::LeftButton, Qt::NoModifier, alpha.center());
  EXPECT_EQ(lv->SelCount(), 1);
  EXPECT_EQ(selections.back(), std::make_pair(std::string("Beta"), false));
  // Selecting in code shows in the widget.
  lv->SetSelected(lv->Items()->Item(1));
  EXPECT_TRUE(w->topLevelItem(1)->isSelected());
  EXPECT_FALSE(w->topLevelItem(0)->isSelected());
}

TEST_F(ComCtrlsTest, ClickingAColumnHeaderRaisesOnColumnClick) {
  Read(ListForm);
  auto* lv = Find<TListView>("ListView1");
  TListColumn* clicked = nullptr;
  lv->OnColumnClick = [&](TObject*, TListColumn* column) { clicked = column; };
  ShowForm();
  QHeaderView* header = lv->ListWidget()->header();
  const int x = header->sectionViewportPosition(1) + 10;
  QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(x, header->height() / 2));
  EXPECT_EQ(clicked, lv->Column(1));
  clicked = nullptr;
  lv->SetColumnClick(false);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(x, header->height() / 2));
  EXPECT_EQ(clicked, nullptr);
}

TEST_F(ComCtrlsTest, ItemsAddedChangedAndDeletedInCodeReachTheWidget) {
  auto* lv = new TListView(form);
  lv->SetName("List");
  lv->SetParent(form);
  lv->SetViewStyle(vsReport);
  lv->Columns()->Add()->SetCaption("A");
  lv->Columns()->Add()->SetCaption("B");
  ShowForm();
  TListItem* one = lv->Items()->Add();
  one->SetCaption("one");
  one->SubItems()->Add("1");
  TListItem* two = lv->Items()->Insert(0);
  two->SetCaption("two");
  QTreeWidget* w = lv->ListWidget();
  ASSERT_EQ(w->topLevelItemCount(), 2);
  EXPECT_EQ(w->topLevelItem(0)->text(0), QStringLiteral("two"));
  EXPECT_EQ(w->topLevelItem(1)->text(1), QStringLiteral("1"));
  EXPECT_EQ(one->Index(), 1);
  lv->SetSortType(stText);
  EXPECT_EQ(lv->Items()->Item(0), one);
  EXPECT_EQ(w->topLevelItem(0)->text(0), QStringLiteral("one"));
  two->Delete();
  EXPECT_EQ(lv->Items()->Count(), 1);
  EXPECT_EQ(w->topLevelItemCount(), 1);
  EXPECT_EQ(lv->FindCaption(0, "ON", true, true, false), one);
  EXPECT_EQ(lv->FindCaption(0, "x", false, true, true), nullptr);
  lv->Items()->Clear();
  EXPECT_EQ(w->topLevelItemCount(), 0);
  EXPECT_THROW(lv->Items()->Item(0), EListError);
}

TEST_F(ComCtrlsTest, CheckBoxesOfAListViewFollowTheItems) {
  auto* lv = new TListView(form);
  lv->SetParent(form);
  lv->SetViewStyle(vsList);
  lv->SetCheckboxes(true);
  lv->Items()->Add()->SetCaption("a");
  ShowForm();
  QTreeWidget* w = lv->ListWidget();
  EXPECT_TRUE(w->isHeaderHidden());
  EXPECT_EQ(w->topLevelItem(0)->checkState(0), Qt::Unchecked);
  int changes = 0;
  lv->OnChange = [&](TObject*, TListItem*, TItemChange change) {
    if (change == ctState) ++changes;
  };
  w->topLevelItem(0)->setCheckState(0, Qt::Checked);
  EXPECT_TRUE(lv->Items()->Item(0)->Checked());
  EXPECT_EQ(changes, 1);
  lv->Items()->Item(0)->SetChecked(false);
  EXPECT_EQ(w->topLevelItem(0)->checkState(0), Qt::Unchecked);
}
