#include "platform/rtti/Classes.h"
#include "tests/platform/rtti/TestClasses.h"

#include "tests/support/Errors.h"

#include <gtest/gtest.h>

using lumora::test::MessageOf;


TEST(CollectionTest, ItemsJoinWithIdsAndLeaveWhenFreed) {
  TTestControl owner(nullptr);
  TTestColumns& columns = *owner.Columns();
  EXPECT_EQ(columns.ItemClass(), TTestColumn::StaticClass());
  EXPECT_EQ(columns.Owner(), &owner);
  auto* a = static_cast<TTestColumn*>(columns.Add());
  auto* b = static_cast<TTestColumn*>(columns.Add());
  auto* c = static_cast<TTestColumn*>(columns.Insert(0));
  EXPECT_EQ(columns.Count(), 3);
  EXPECT_EQ(columns.Items(0), c);
  EXPECT_EQ(a->ID(), 0);
  EXPECT_EQ(b->ID(), 1);
  EXPECT_EQ(c->ID(), 2);
  EXPECT_EQ(c->Index(), 0);
  EXPECT_EQ(a->Index(), 1);
  EXPECT_EQ(columns.FindItemID(1), b);
  EXPECT_EQ(columns.FindItemID(7), nullptr);
  EXPECT_EQ(a->Collection(), &columns);
  delete a;
  EXPECT_EQ(columns.Count(), 2);
  EXPECT_EQ(b->Index(), 1);
  columns.Delete(0);
  EXPECT_EQ(columns.Count(), 1);
  EXPECT_EQ(columns.Items(0), b);
  EXPECT_EQ(columns.Add()->ID(), 3);  // IDs are never given twice
}

TEST(CollectionTest, IndexErrors) {
  TTestColumns columns(nullptr);
  columns.Add();
  EXPECT_EQ(MessageOf<EListError>([&] { columns.Items(1); }), "List index out of bounds (1)");
  EXPECT_EQ(MessageOf<EListError>([&] { columns.Delete(-1); }), "List index out of bounds (-1)");
  EXPECT_EQ(MessageOf<EListError>([&] { columns.Insert(3); }), "List index out of bounds (3)");
  EXPECT_EQ(MessageOf<EListError>([&] { columns.Items(0)->SetIndex(4); }), "List index out of bounds (4)");
  EXPECT_EQ(columns.Count(), 1);
}

TEST(CollectionTest, SetIndexMovesTheItem) {
  TTestColumns columns(nullptr);
  auto* a = columns.Add();
  auto* b = columns.Add();
  auto* c = columns.Add();
  c->SetIndex(0);
  EXPECT_EQ(columns.Items(0), c);
  EXPECT_EQ(columns.Items(1), a);
  EXPECT_EQ(columns.Items(2), b);
  a->SetCollection(nullptr);
  EXPECT_EQ(columns.Count(), 2);
  EXPECT_EQ(a->Index(), -1);
  a->SetCollection(&columns);
  EXPECT_EQ(columns.Items(2), a);
}

TEST(CollectionTest, UpdatesAreCountedAndReportedOnce) {
  TTestColumns columns(nullptr);
  columns.Add();
  EXPECT_EQ(columns.Updates, 1);
  columns.BeginUpdate();
  columns.Add();
  columns.Add();
  columns.Delete(0);
  EXPECT_EQ(columns.Updates, 1);
  columns.EndUpdate();
  EXPECT_EQ(columns.Updates, 2);
  columns.Clear();
  EXPECT_EQ(columns.Updates, 3);
  EXPECT_EQ(columns.Count(), 0);
}

TEST(CollectionTest, AssignCopiesItems) {
  TTestColumns a(nullptr), b(nullptr);
  auto* col = a.Add();
  static_cast<TTestColumn*>(col)->FCaption = "Name";
  static_cast<TTestColumn*>(a.Add())->FWidth = 10;
  b.Add();
  b.Assign(&a);
  ASSERT_EQ(b.Count(), 2);
  EXPECT_EQ(b.Column(0)->FCaption, "Name");
  EXPECT_EQ(b.Column(1)->FWidth, 10);
  TTestColumn replacement(nullptr);
  replacement.FCaption = "Other";
  b.SetItems(0, &replacement);
  EXPECT_EQ(b.Column(0)->FCaption, "Other");
  TStringList list;
  EXPECT_EQ(MessageOf<EConvertError>([&] { b.Assign(&list); }), "Cannot assign a TStringList to a TTestColumns");
}

TEST(CollectionTest, NamePathsAndDisplayNames) {
  TTestControl owner(nullptr);
  owner.SetName("Grid1");
  auto* item = owner.Columns()->Add();
  owner.Columns()->Add();
  auto* second = owner.Columns()->Items(1);
  EXPECT_EQ(owner.Columns()->PropName(), "Columns");
  EXPECT_EQ(owner.Columns()->GetNamePath(), "Grid1.Columns");
  EXPECT_EQ(second->GetNamePath(), "Grid1.Columns[1]");
  EXPECT_EQ(item->DisplayName(), "TTestColumn");
  EXPECT_EQ(item->GetOwner(), owner.Columns());
  TTestColumns loose(nullptr);
  EXPECT_EQ(loose.GetNamePath(), "TTestColumns");
  TTestColumn alone(nullptr);
  EXPECT_EQ(alone.GetNamePath(), "TTestColumn");
  EXPECT_EQ(alone.Index(), -1);
}

TEST(CollectionTest, AddWithoutACreatableItemClassIsRefused) {
  TCollection odd(TStringList::StaticClass());
  EXPECT_EQ(MessageOf<EInvalidOperation>([&] { odd.Add(); }), "Cannot create an instance of class TStringList");
  EXPECT_EQ(odd.Count(), 0);
  TCollection none(nullptr);
  EXPECT_EQ(MessageOf<EInvalidOperation>([&] { none.Add(); }), "Invalid operation");
}
