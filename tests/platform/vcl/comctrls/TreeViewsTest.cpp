// Tree views read from form text as real forms give them, shown as they should be,
// and answering the mouse and the keys.
#include "platform/vcl/ComCtrls.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/support/StandardPackage.h"
#include "tests/platform/vcl/ComCtrlsTestUtil.h"
#include "tests/platform/vcl/VclTestUtil.h"
#include "tests/platform/vcl/comctrls/ComCtrlsFixture.h"

#include <QApplication>
#include <QTest>
#include <QTextLayout>
#include <QTreeWidget>

#include <gtest/gtest.h>

using namespace lumora::test;

namespace {

// Two top nodes, the first with two children, as a form of 1998 stores them.
const char* const TreeForm = R"(object Form1: TForm1
  Left = 0
  Top = 0
  Width = 400
  Height = 300
  object TreeView1: TTreeView
    Left = 8
    Top = 8
    Width = 200
    Height = 150
    Indent = 19
    TabOrder = 0
    Items.Data = {
      020000001E00000000000000000000002080DB41000000000000000002000000
      0554657374312000000000000000000000002080DB4100000000000000000000
      000007537562546573742300000000000000000000002080DB41000000000000
      0000000000000A53756254657374312E321E00000000000000000000002080DB
      41000000000000000000000000055465737432}
  end
  object Edit1: TEdit
    Left = 8
    Top = 200
    Width = 121
    Height = 21
    TabOrder = 1
  end
end
)";

QTreeWidget* Tree(TTreeView* tv) { return tv->TreeWidget(); }

}  // namespace

TEST_F(ComCtrlsTest, ATreeViewReadsItsNodesAndShowsThemNested) {
  Read(TreeForm);
  auto* tv = Find<TTreeView>("TreeView1");
  TTreeNodes* items = tv->Items();
  ASSERT_EQ(items->Count(), 4);
  EXPECT_EQ(items->RootCount(), 2);
  TTreeNode* test1 = items->GetFirstNode();
  ASSERT_NE(test1, nullptr);
  EXPECT_EQ(test1->Text(), "Test1");
  ASSERT_EQ(test1->Count(), 2);
  EXPECT_EQ(test1->Item(0)->Text(), "SubTest");
  EXPECT_EQ(test1->Item(1)->Text(), "SubTest1.2");
  EXPECT_EQ(test1->Item(1)->Level(), 1);
  EXPECT_EQ(test1->Item(1)->Parent(), test1);
  EXPECT_EQ(items->Item(3)->Text(), "Test2");
  EXPECT_EQ(items->Item(3)->AbsoluteIndex(), 3);
  EXPECT_EQ(test1->GetNext(), test1->Item(0));
  EXPECT_EQ(test1->Item(1)->GetNext(), items->Item(3));
  EXPECT_FALSE(test1->Expanded());
  ShowForm();
  QTreeWidget* w = Tree(tv);
  ASSERT_NE(w, nullptr);
  EXPECT_EQ(w->objectName(), QStringLiteral("TreeView1"));
  ASSERT_EQ(w->topLevelItemCount(), 2);
  EXPECT_EQ(w->topLevelItem(0)->text(0), QStringLiteral("Test1"));
  ASSERT_EQ(w->topLevelItem(0)->childCount(), 2);
  EXPECT_EQ(w->topLevelItem(0)->child(1)->text(0), QStringLiteral("SubTest1.2"));
  EXPECT_EQ(w->topLevelItem(1)->childCount(), 0);
  EXPECT_EQ(w->indentation(), 19);
}

TEST_F(ComCtrlsTest, ClassNamesWithTMAreDrawnLetterByLetter) {
  Read(TreeForm);
  auto* tv = Find<TTreeView>("TreeView1");
  tv->Items()->Add(nullptr, "object Memo1: TMemo");
  tv->Items()->Add(nullptr, "MainMenu1: TMainMenu");
  ShowForm();
  QTreeWidget* w = Tree(tv);
  ASSERT_EQ(w->topLevelItemCount(), 4);
  EXPECT_EQ(w->topLevelItem(2)->text(0), QStringLiteral("object Memo1: TMemo"));
  EXPECT_EQ(w->topLevelItem(3)->text(0), QStringLiteral("MainMenu1: TMainMenu"));
  // The classic sans face joins "T" and "M" into one trademark glyph when text is shaped.
  EXPECT_EQ(w->font().family(), QStringLiteral("MS Sans Serif"));
  for (int i : {2, 3}) {
    const QString text = w->topLevelItem(i)->text(0);
    QTextLayout layout(text, w->font());
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    qsizetype glyphs = 0;
    for (const QGlyphRun& run : layout.glyphRuns()) glyphs += run.glyphIndexes().size();
    EXPECT_EQ(glyphs, text.size()) << text.toStdString();
  }
}

TEST_F(ComCtrlsTest, ATreeViewWritesItsNodesBackAsItReadThem) {
  Read(TreeForm);
  const std::string text = WriteComponentToText(form);
  EXPECT_EQ(ObjectBlock(text, "TreeView1"), ObjectBlock(Crlf(TreeForm), "TreeView1"));
  // The same after the nodes went through the widget.
  ShowForm();
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "TreeView1"), ObjectBlock(Crlf(TreeForm), "TreeView1"));
}

TEST_F(ComCtrlsTest, DamagedNodeDataIsReportedAndTheFormReadsOn) {
  std::string text = TreeForm;
  // The first node claims a record far longer than the data.
  const std::string good = "020000001E000000";
  text.replace(text.find(good), good.size(), "02000000FF000000");
  const std::vector<std::string> errors = ReadFormText(form, text);
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_EQ(errors[0], "Error reading TreeView1.Items.Data: Stream read error");
  EXPECT_EQ(Find<TTreeView>("TreeView1")->Items()->Count(), 0);
  EXPECT_EQ(Find<TEdit>("Edit1")->Top(), 200);
}

TEST_F(ComCtrlsTest, NodeTextsShowInTheCodePageOfTheFont) {
  auto* tv = new TTreeView(form);
  tv->SetName("Tree");
  tv->SetParent(form);
  tv->Font()->SetCharset(EASTEUROPE_CHARSET);
  TTreeNode* node = tv->Items()->Add(nullptr, "Bej\xF6v\xF5 levelek");
  ShowForm();
  EXPECT_EQ(Tree(tv)->topLevelItem(0)->text(0), QString::fromUtf8("Bejövő levelek"));
  // Text edited in place comes back as the same bytes.
  Tree(tv)->topLevelItem(0)->setText(0, QString::fromUtf8("Kimenő"));
  EXPECT_EQ(node->Text(), "Kimen\xF5");
}

TEST_F(ComCtrlsTest, ClickingANodeSelectsItAndRaisesOnChange) {
  Read(TreeForm);
  auto* tv = Find<TTreeView>("TreeView1");
  std::vector<std::string> changes;
  tv->OnChange = [&](TObject* sender, TTreeNode* node) {
    EXPECT_EQ(sender, tv);
    changes.push_back(node ? node->Text() : "(none)");
  };
  ShowForm();
  QTreeWidget* w = Tree(tv);
  const QRect second = w->visualItemRect(w->topLevelItem(1));
  QTest::mouseClick(w->viewport(), Qt::LeftButton, Qt::NoModifier, second.center());
  ASSERT_EQ(changes.size(), 1u);
  EXPECT_EQ(changes[0], "Test2");
  EXPECT_EQ(tv->Selected(), tv->Items()->Item(3));
  EXPECT_TRUE(tv->Items()->Item(3)->Selected());
  // Selecting in code raises it too, and the widget follows.
  tv->SetSelected(tv->Items()->GetFirstNode());
  ASSERT_EQ(changes.size(), 2u);
  EXPECT_EQ(changes[1], "Test1");
  EXPECT_EQ(w->currentItem(), w->topLevelItem(0));
  // OnChanging may refuse a change.
  tv->OnChanging = [&](TObject*, TTreeNode*, bool& allow) { allow = false; };
  QTest::mouseClick(w->viewport(), Qt::LeftButton, Qt::NoModifier, second.center());
  EXPECT_EQ(tv->Selected(), tv->Items()->GetFirstNode());
  EXPECT_EQ(w->currentItem(), w->topLevelItem(0));
  EXPECT_EQ(changes.size(), 2u);
}

TEST_F(ComCtrlsTest, KeysExpandAndCollapseNodes) {
  Read(TreeForm);
  auto* tv = Find<TTreeView>("TreeView1");
  int expanded = 0;
  int collapsed = 0;
  tv->OnExpanded = [&](TObject*, TTreeNode* node) {
    EXPECT_EQ(node->Text(), "Test1");
    ++expanded;
  };
  tv->OnCollapsed = [&](TObject*, TTreeNode*) { ++collapsed; };
  ShowForm();
  QApplication::setActiveWindow(form->Widget());
  tv->SetSelected(tv->Items()->GetFirstNode());
  Tree(tv)->setFocus();
  QTest::keyClick(Tree(tv), Qt::Key_Right);
  EXPECT_TRUE(tv->Items()->GetFirstNode()->Expanded());
  EXPECT_TRUE(Tree(tv)->topLevelItem(0)->isExpanded());
  EXPECT_EQ(expanded, 1);
  QTest::keyClick(Tree(tv), Qt::Key_Left);
  EXPECT_FALSE(tv->Items()->GetFirstNode()->Expanded());
  EXPECT_EQ(collapsed, 1);
  // OnExpanding may refuse.
  tv->OnExpanding = [&](TObject*, TTreeNode*, bool& allow) { allow = false; };
  QTest::keyClick(Tree(tv), Qt::Key_Right);
  EXPECT_FALSE(tv->Items()->GetFirstNode()->Expanded());
  EXPECT_FALSE(Tree(tv)->topLevelItem(0)->isExpanded());
  EXPECT_EQ(expanded, 1);
}

TEST_F(ComCtrlsTest, NodesAddedAndDeletedInCodeReachTheWidget) {
  auto* tv = new TTreeView(form);
  tv->SetName("Tree");
  tv->SetParent(form);
  ShowForm();
  TTreeNodes* items = tv->Items();
  TTreeNode* a = items->Add(nullptr, "a");
  TTreeNode* c = items->Add(a, "c");
  TTreeNode* b = items->Insert(c, "b");
  TTreeNode* a1 = items->AddChild(a, "a1");
  items->AddChildFirst(a, "a0");
  a->Expand(false);
  QTreeWidget* w = Tree(tv);
  ASSERT_EQ(w->topLevelItemCount(), 3);
  EXPECT_EQ(w->topLevelItem(1)->text(0), QStringLiteral("b"));
  ASSERT_EQ(w->topLevelItem(0)->childCount(), 2);
  EXPECT_EQ(w->topLevelItem(0)->child(0)->text(0), QStringLiteral("a0"));
  EXPECT_TRUE(w->topLevelItem(0)->isExpanded());
  EXPECT_EQ(items->Count(), 5);
  a1->SetText("a one");
  EXPECT_EQ(w->topLevelItem(0)->child(1)->text(0), QStringLiteral("a one"));
  // Deleting the selected node selects its next sibling.
  std::vector<TTreeNode*> changes;
  tv->SetSelected(b);
  tv->OnChange = [&](TObject*, TTreeNode* node) { changes.push_back(node); };
  b->Delete();
  ASSERT_EQ(changes.size(), 1u);
  EXPECT_EQ(changes[0], c);
  EXPECT_EQ(tv->Selected(), c);
  EXPECT_EQ(w->topLevelItemCount(), 2);
  EXPECT_EQ(w->currentItem(), w->topLevelItem(1));
  // Deleting a parent takes its children; clearing leaves no selection.
  a->Delete();
  EXPECT_EQ(items->Count(), 1);
  EXPECT_EQ(w->topLevelItemCount(), 1);
  items->Clear();
  EXPECT_EQ(items->Count(), 0);
  EXPECT_EQ(tv->Selected(), nullptr);
  EXPECT_EQ(changes.back(), nullptr);
  EXPECT_EQ(w->topLevelItemCount(), 0);
  EXPECT_THROW(items->Item(0), EListError);
}

TEST_F(ComCtrlsTest, SortedTreesKeepTheirNodesInOrder) {
  auto* tv = new TTreeView(form);
  tv->SetParent(form);
  TTreeNodes* items = tv->Items();
  items->Add(nullptr, "pear");
  items->Add(nullptr, "Apple");
  TTreeNode* fig = items->Add(nullptr, "fig");
  tv->SetSortType(stText);
  EXPECT_EQ(items->Item(0)->Text(), "Apple");
  EXPECT_EQ(items->Item(1)->Text(), "fig");
  items->Add(nullptr, "banana");
  EXPECT_EQ(items->Item(1)->Text(), "banana");
  fig->SetText("zucchini");
  EXPECT_EQ(items->Item(3), fig);
}

TEST_F(ComCtrlsTest, TreeLinesAndButtonsAreDrawnInTheClassicManner) {
  Read(TreeForm);
  auto* tv = Find<TTreeView>("TreeView1");
  ShowForm();
  QTreeWidget* w = Tree(tv);
  const QRect first = w->visualItemRect(w->topLevelItem(0));
  const QImage image = Grab(w->viewport());
  // The first node has children: a box around the plus sign, half an indent from the left.
  const int cx = 9;
  const int cy = first.top() + first.height() / 2;
  EXPECT_EQ(Pixel(image, cx - 4, cy), Classic(clBtnShadow));
  EXPECT_EQ(Pixel(image, cx + 4, cy), Classic(clBtnShadow));
  EXPECT_EQ(Pixel(image, cx, cy), Classic(clWindowText));
  EXPECT_EQ(Pixel(image, cx, cy - 2), Classic(clWindowText)) << "collapsed: a plus";
  // The second node has none: a dotted line leads to it.
  const QRect second = w->visualItemRect(w->topLevelItem(1));
  const int y2 = second.top() + second.height() / 2;
  int dots = 0;
  for (int x = cx; x < 19; ++x) dots += Pixel(image, x, y2) == Classic(clBtnShadow) ? 1 : 0;
  EXPECT_GE(dots, 4);
  tv->Items()->GetFirstNode()->Expand(false);
  QApplication::processEvents();
  EXPECT_NE(Pixel(Grab(w->viewport()), cx, cy - 2), Classic(clWindowText)) << "expanded: a minus";
}
