// The common controls read from form text as real forms give them, show what they
// should, and answer the mouse and the keys.
#include "platform/vcl/ComCtrls.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/support/StandardPackage.h"
#include "tests/platform/vcl/ComCtrlsTestUtil.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QDateTimeEdit>
#include <QHeaderView>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSlider>
#include <QTest>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTreeWidget>

#include <gtest/gtest.h>

using namespace lumora::test;

namespace {

class ComCtrlsTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    Application->Initialize();
    RegisterVclClasses();
  }
  void SetUp() override { form = new TForm(Application); }
  void TearDown() override { delete form; }
  void Read(std::string_view text) {
    const std::vector<std::string> errors = ReadFormText(form, text);
    for (const std::string& e : errors) ADD_FAILURE() << e;
  }
  void ShowForm() {
    form->Show();
    QApplication::processEvents();
  }
  template <class T>
  T* Find(const char* name) {
    auto* c = dynamic_cast<T*>(form->FindComponent(name));
    EXPECT_NE(c, nullptr) << name;
    return c;
  }
  TForm* form = nullptr;
};

const char* const PagesForm = R"(object Form1: TForm1
  Left = 200
  Top = 100
  BorderStyle = bsDialog
  ClientHeight = 273
  ClientWidth = 392
  object PageControl1: TPageControl
    Left = 8
    Top = 8
    Width = 300
    Height = 200
    ActivePage = TabSheet2
    TabOrder = 0
    object TabSheet1: TTabSheet
      Caption = 'First'
      object Edit1: TEdit
        Left = 8
        Top = 8
        Width = 121
        Height = 21
        TabOrder = 0
      end
    end
    object TabSheet2: TTabSheet
      Caption = '&Second'
      ImageIndex = 1
    end
    object TabSheet3: TTabSheet
      Caption = 'Hidden'
      ImageIndex = 2
      TabVisible = False
    end
  end
  object StatusBar1: TStatusBar
    Left = 0
    Top = 254
    Width = 392
    Height = 19
    Panels = <
      item
        Text = 'Ready'
        Width = 100
      end
      item
        Alignment = taCenter
        Text = 'Line 1'
        Width = 60
      end
      item
        Width = 50
      end>
    SimplePanel = False
  end
end
)";

}  // namespace

// ---- Page controls

TEST_F(ComCtrlsTest, APageControlReadsItsPagesAndShowsTheActiveOne) {
  Read(PagesForm);
  auto* pc = Find<TPageControl>("PageControl1");
  auto* one = Find<TTabSheet>("TabSheet1");
  auto* two = Find<TTabSheet>("TabSheet2");
  auto* three = Find<TTabSheet>("TabSheet3");
  ASSERT_EQ(pc->PageCount(), 3);
  EXPECT_EQ(pc->Pages(0), one);
  EXPECT_EQ(pc->Pages(2), three);
  EXPECT_EQ(one->Parent(), pc);
  EXPECT_EQ(pc->ActivePage(), two);
  EXPECT_EQ(pc->ActivePageIndex(), 1);
  // The hidden tab is not among the tabs.
  ASSERT_EQ(pc->Tabs()->Count(), 2);
  EXPECT_EQ(pc->Tabs()->Strings(1), "&Second");
  EXPECT_EQ(pc->TabIndex(), 1);
  EXPECT_EQ(three->TabIndex(), -1);
  // The pages fill the display area: inside the frame, below one row of tabs.
  EXPECT_EQ(pc->DisplayRect(), Rect(4, 24, 296, 196));
  EXPECT_EQ(two->BoundsRect(), Bounds(4, 24, 292, 172));
  ShowForm();
  EXPECT_TRUE(two->Widget()->isVisible());
  EXPECT_FALSE(one->Widget()->isVisible());
  EXPECT_EQ(two->Widget()->geometry(), QRect(4, 24, 292, 172));
  // The edit on the first page has its widget inside that page's widget.
  EXPECT_EQ(Find<TEdit>("Edit1")->Widget()->parentWidget(), one->Widget());
}

TEST_F(ComCtrlsTest, TabsAreLaidOutFromTheirCaptions) {
  Read(PagesForm);
  auto* pc = Find<TPageControl>("PageControl1");
  const QFontMetrics fm(pc->Font()->Handle());
  const TRect first = pc->TabRect(0);
  const TRect second = pc->TabRect(1);
  EXPECT_EQ(first.Left, 2);
  EXPECT_EQ(first.Top, 2);
  EXPECT_EQ(first.Height(), 18);
  EXPECT_EQ(first.Width(), fm.horizontalAdvance(QStringLiteral("First")) + 12);
  EXPECT_EQ(second.Left, first.Right);
  // The accelerator mark takes no room.
  EXPECT_EQ(second.Width(), fm.horizontalAdvance(QStringLiteral("Second")) + 12);
  EXPECT_EQ(pc->IndexOfTabAt(first.Left + 3, 10), 0);
  EXPECT_EQ(pc->IndexOfTabAt(second.Right + 3, 10), -1);
  EXPECT_EQ(pc->IndexOfTabAt(50, 100), -1);
}

TEST_F(ComCtrlsTest, ClickingATabShowsItsPageAndRaisesOnChange) {
  Read(PagesForm);
  auto* pc = Find<TPageControl>("PageControl1");
  auto* one = Find<TTabSheet>("TabSheet1");
  auto* two = Find<TTabSheet>("TabSheet2");
  int changes = 0;
  int shown = 0;
  int hidden = 0;
  pc->OnChange = [&](TObject* sender) {
    EXPECT_EQ(sender, pc);
    EXPECT_EQ(pc->ActivePage(), one);
    ++changes;
  };
  one->OnShow = [&](TObject*) { ++shown; };
  two->OnHide = [&](TObject*) { ++hidden; };
  ShowForm();
  const TRect tab = pc->TabRect(0);
  QTest::mouseClick(pc->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(tab.Left + 5, tab.Top + 8));
  QApplication::processEvents();
  EXPECT_EQ(pc->ActivePage(), one);
  EXPECT_EQ(pc->TabIndex(), 0);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(hidden, 1);
  EXPECT_TRUE(one->Widget()->isVisible());
  EXPECT_FALSE(two->Widget()->isVisible());
  EXPECT_EQ(one->BoundsRect(), Bounds(4, 24, 292, 172));
  // Clicking the selected tab again changes nothing.
  QTest::mouseClick(pc->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(tab.Left + 5, tab.Top + 8));
  EXPECT_EQ(changes, 1);
}

TEST_F(ComCtrlsTest, OnChangingCanKeepThePage) {
  Read(PagesForm);
  auto* pc = Find<TPageControl>("PageControl1");
  int changes = 0;
  pc->OnChanging = [&](TObject*, bool& allow) { allow = false; };
  pc->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  const TRect tab = pc->TabRect(0);
  QTest::mouseClick(pc->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(tab.Left + 5, tab.Top + 8));
  EXPECT_EQ(pc->ActivePage(), Find<TTabSheet>("TabSheet2"));
  EXPECT_EQ(changes, 0);
}

TEST_F(ComCtrlsTest, KeysMoveBetweenTabsOfAFocusedPageControl) {
  Read(PagesForm);
  auto* pc = Find<TPageControl>("PageControl1");
  int changes = 0;
  pc->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  QApplication::setActiveWindow(form->Widget());
  pc->Widget()->setFocus();
  QTest::keyClick(pc->Widget(), Qt::Key_Left);
  EXPECT_EQ(pc->ActivePage(), Find<TTabSheet>("TabSheet1"));
  QTest::keyClick(pc->Widget(), Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(pc->ActivePage(), Find<TTabSheet>("TabSheet2"));
  EXPECT_EQ(changes, 2);
}

TEST_F(ComCtrlsTest, NoClickReachesAPageControlInDesignState) {
  Read(PagesForm);
  auto* pc = Find<TPageControl>("PageControl1");
  form->SetDesignState(true);
  ShowForm();
  const TRect tab = pc->TabRect(0);
  QTest::mouseClick(pc->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(tab.Left + 5, tab.Top + 8));
  EXPECT_EQ(pc->ActivePage(), Find<TTabSheet>("TabSheet2"));
  // Pages that are not active stay hidden while designing too.
  EXPECT_FALSE(Find<TTabSheet>("TabSheet1")->Widget()->isVisible());
}

TEST_F(ComCtrlsTest, PagesComeAndGoInCode) {
  auto* pc = new TPageControl(form);
  pc->SetParent(form);
  pc->SetBounds(0, 0, 200, 150);
  auto* a = new TTabSheet(form);
  a->SetCaption("A");
  a->SetPageControl(pc);
  auto* b = new TTabSheet(form);
  b->SetCaption("B");
  b->SetPageControl(pc);
  EXPECT_EQ(pc->ActivePage(), nullptr);
  pc->SetActivePage(b);
  EXPECT_TRUE(b->Visible());
  EXPECT_FALSE(a->Visible());
  b->SetPageIndex(0);
  EXPECT_EQ(pc->Pages(0), b);
  EXPECT_EQ(pc->TabIndex(), 0);
  EXPECT_EQ(pc->FindNextPage(b, true, true), a);
  EXPECT_EQ(pc->FindNextPage(b, false, true), a);
  // Freeing the active page activates the next one.
  delete b;
  EXPECT_EQ(pc->PageCount(), 1);
  EXPECT_EQ(pc->ActivePage(), a);
  EXPECT_TRUE(a->Visible());
  // A caption change reaches the tab.
  a->SetCaption("Renamed");
  EXPECT_EQ(pc->Tabs()->Strings(0), "Renamed");
  EXPECT_THROW(pc->Pages(5), EListError);
}

TEST_F(ComCtrlsTest, TabsAtTheBottomAndOnSeveralRowsMoveTheDisplayArea) {
  auto* pc = new TPageControl(form);
  pc->SetParent(form);
  pc->SetBounds(0, 0, 200, 150);
  for (const char* caption : {"One page", "Two pages", "Three pages", "Four pages", "Five pages"}) {
    auto* page = new TTabSheet(form);
    page->SetCaption(caption);
    page->SetPageControl(pc);
  }
  pc->SetActivePageIndex(0);
  EXPECT_EQ(pc->RowCount(), 1);
  pc->SetTabPosition(tpBottom);
  EXPECT_EQ(pc->DisplayRect(), Rect(4, 4, 196, 126));
  EXPECT_EQ(pc->Pages(0)->BoundsRect(), Rect(4, 4, 196, 126));
  EXPECT_EQ(pc->TabRect(0).Bottom, 148);
  pc->SetTabPosition(tpTop);
  pc->SetMultiLine(true);
  const int rows = pc->RowCount();
  EXPECT_GT(rows, 1);
  EXPECT_EQ(pc->DisplayRect(), Rect(4, 2 + rows * 18 + 4, 196, 146));
  // Every row fills the width, and the row of the selected tab lies next to the pages.
  EXPECT_EQ(pc->TabRect(0).Bottom, 2 + rows * 18);
  for (int i = 0; i < 5; ++i) {
    EXPECT_GE(pc->TabRect(i).Left, 2);
    EXPECT_LE(pc->TabRect(i).Right, 198);
  }
  pc->SetTabPosition(tpLeft);
  EXPECT_EQ(pc->DisplayRect().Top, 4);
  EXPECT_GT(pc->DisplayRect().Left, 4);
}

TEST_F(ComCtrlsTest, APageControlWritesWhatItRead) {
  Read(PagesForm);
  const std::string text = WriteComponentToText(form);
  EXPECT_EQ(ObjectBlock(text, "PageControl1"), ObjectBlock(Crlf(PagesForm), "PageControl1"));
  EXPECT_EQ(ObjectBlock(text, "StatusBar1"), ObjectBlock(Crlf(PagesForm), "StatusBar1"));
}

TEST_F(ComCtrlsTest, TheSelectedTabIsDrawnOpenTowardsItsPage) {
  Read(PagesForm);
  auto* pc = Find<TPageControl>("PageControl1");
  ShowForm();
  const QImage image = Grab(pc->Widget());
  // The pane's top edge is white, except under the selected tab, which opens into it.
  const TRect first = pc->TabRect(0);
  const TRect second = pc->TabRect(1);
  EXPECT_EQ(Pixel(image, 100, second.Bottom), Classic(clBtnHighlight)) << "pane under no tab";
  EXPECT_EQ(Pixel(image, (second.Left + second.Right) / 2, second.Bottom), Classic(clBtnFace));
  EXPECT_EQ(Pixel(image, (first.Left + first.Right) / 2, first.Bottom), Classic(clBtnHighlight));
  // The selected tab stands two pixels higher than the others.
  EXPECT_EQ(Pixel(image, (second.Left + second.Right) / 2, 0), Classic(clBtnHighlight));
  EXPECT_EQ(Pixel(image, (first.Left + first.Right) / 2, 2), Classic(clBtnHighlight));
  EXPECT_EQ(Pixel(image, (first.Left + first.Right) / 2, 0), Classic(clBtnFace));
  // Captions are written on the tabs.
  EXPECT_GT(DarkPixels(image, QRect(first.Left + 3, first.Top + 3, first.Width() - 6, first.Height() - 5)), 10);
}

// ---- Tab controls

TEST_F(ComCtrlsTest, ATabControlReadsItsTabsAndSelectsByClick) {
  Read(R"(object Form1: TForm1
  Left = 0
  Top = 0
  Width = 400
  Height = 300
  object TabControl1: TTabControl
    Left = 0
    Top = 0
    Width = 250
    Height = 120
    TabOrder = 0
    Tabs.Strings = (
      'Alpha'
      'Beta'
      'Gamma')
    TabIndex = 2
  end
end
)");
  auto* tc = Find<TTabControl>("TabControl1");
  ASSERT_EQ(tc->Tabs()->Count(), 3);
  EXPECT_EQ(tc->TabIndex(), 2);
  int changes = 0;
  tc->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  const TRect beta = tc->TabRect(1);
  QTest::mouseClick(tc->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(beta.Left + 4, beta.Top + 6));
  EXPECT_EQ(tc->TabIndex(), 1);
  EXPECT_EQ(changes, 1);
  // Setting the index in code raises nothing.
  tc->SetTabIndex(0);
  EXPECT_EQ(changes, 1);
  tc->SetTabIndex(7);
  EXPECT_EQ(tc->TabIndex(), 0);
  tc->Tabs()->Delete(0);
  tc->Tabs()->Delete(0);
  tc->Tabs()->Delete(0);
  EXPECT_EQ(tc->DisplayRect(), Rect(4, 24, 246, 116));
}

// ---- Status bars

TEST_F(ComCtrlsTest, AStatusBarReadsItsPanelsAndDrawsThemSideBySide) {
  Read(PagesForm);
  auto* bar = Find<TStatusBar>("StatusBar1");
  ASSERT_EQ(bar->Panels()->Count(), 3);
  EXPECT_EQ(bar->Panels()->Items(0)->Text(), "Ready");
  EXPECT_EQ(bar->Panels()->Items(1)->Alignment(), taCenter);
  EXPECT_EQ(bar->Panels()->Items(2)->Width(), 50);
  EXPECT_EQ(bar->Align(), alBottom);
  EXPECT_EQ(bar->BoundsRect(), Bounds(0, 254, 392, 19));
  EXPECT_EQ(bar->PanelRect(0), Rect(0, 2, 100, 19));
  EXPECT_EQ(bar->PanelRect(1), Rect(102, 2, 160, 19));
  // The last panel reaches the end of the bar.
  EXPECT_EQ(bar->PanelRect(2), Rect(162, 2, 392, 19));
  ShowForm();
  const QImage image = Grab(bar->Widget());
  // Lowered bevels: shadow on the left and top, highlight on the right and bottom.
  EXPECT_EQ(Pixel(image, 0, 10), Classic(clBtnShadow));
  EXPECT_EQ(Pixel(image, 50, 2), Classic(clBtnShadow));
  EXPECT_EQ(Pixel(image, 99, 10), Classic(clBtnHighlight));
  EXPECT_EQ(Pixel(image, 100, 10), Classic(clBtnFace));
  EXPECT_EQ(Pixel(image, 102, 10), Classic(clBtnShadow));
  EXPECT_GT(DarkPixels(image, QRect(3, 4, 90, 13)), 10) << "the text of the first panel";
  EXPECT_EQ(DarkPixels(image, QRect(165, 4, 200, 13)), 0) << "the last panel has no text";
  // A new text shows at once.
  bar->Panels()->Items(2)->SetText("Modified");
  QApplication::processEvents();
  EXPECT_GT(DarkPixels(Grab(bar->Widget()), QRect(165, 4, 200, 13)), 10);
}

TEST_F(ComCtrlsTest, ASimpleStatusBarShowsOneText) {
  auto* bar = new TStatusBar(form);
  bar->SetParent(form);
  bar->Panels()->Add()->SetText("panel");
  bar->SetSimplePanel(true);
  bar->SetSimpleText("Simple");
  ShowForm();
  const QImage image = Grab(bar->Widget());
  EXPECT_EQ(bar->Height(), 19);
  EXPECT_EQ(bar->Top(), form->ClientHeight() - 19);
  EXPECT_EQ(bar->Width(), form->ClientWidth());
  EXPECT_GT(DarkPixels(image, QRect(3, 4, 60, 13)), 10);
  // The panel's bevel is not drawn in simple mode: its right edge is plain face.
  EXPECT_EQ(Pixel(image, 49, 10), Classic(clBtnFace));
}

TEST_F(ComCtrlsTest, TheSizeGripShowsOnSizeableFormsOnly) {
  auto* bar = new TStatusBar(form);
  bar->SetParent(form);
  form->SetBorderStyle(bsSizeable);
  EXPECT_TRUE(bar->GripShowing());
  form->SetBorderStyle(bsDialog);
  EXPECT_FALSE(bar->GripShowing());
  form->SetBorderStyle(bsSizeable);
  bar->SetSizeGrip(false);
  EXPECT_FALSE(bar->GripShowing());
}

// ---- Tree views

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

// ---- Rich edits

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

// ---- List views

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

// ---- Tool bars

namespace {

// The buttons come in the stream out of their order; their positions say where they go.
const char* const BarForm = R"(object Form1: TForm1
  Left = 0
  Top = 0
  Width = 400
  Height = 300
  object ToolBar1: TToolBar
    Left = 0
    Top = 0
    Width = 392
    Height = 29
    Caption = 'ToolBar1'
    Flat = True
    TabOrder = 0
    object ToolButton1: TToolButton
      Left = 0
      Top = 0
      Caption = 'ToolButton1'
      ImageIndex = 0
    end
    object ToolButton3: TToolButton
      Left = 31
      Top = 0
      Caption = 'ToolButton3'
      Grouped = True
      ImageIndex = 1
      Style = tbsCheck
    end
    object ToolButton2: TToolButton
      Left = 23
      Top = 0
      Width = 8
      Caption = 'ToolButton2'
      ImageIndex = 1
      Style = tbsSeparator
    end
    object ToolButton4: TToolButton
      Left = 54
      Top = 0
      Caption = 'ToolButton4'
      Down = True
      Grouped = True
      ImageIndex = 2
      Style = tbsCheck
    end
    object ToolButton5: TToolButton
      Left = 77
      Top = 0
      Caption = 'ToolButton5'
      ImageIndex = 3
      Style = tbsDropDown
    end
    object ComboBox1: TComboBox
      Left = 113
      Top = 0
      Width = 100
      Height = 21
      ItemHeight = 13
      TabOrder = 0
    end
  end
end
)";

}  // namespace

TEST_F(ComCtrlsTest, AToolBarPlacesItsButtonsInARow) {
  Read(BarForm);
  auto* bar = Find<TToolBar>("ToolBar1");
  ASSERT_EQ(bar->ButtonCount(), 6);
  EXPECT_EQ(bar->Buttons(1), Find<TToolButton>("ToolButton2"));
  EXPECT_EQ(bar->ButtonControls(5), Find<TComboBox>("ComboBox1"));
  EXPECT_EQ(bar->Buttons(5), nullptr);
  EXPECT_EQ(Find<TToolButton>("ToolButton1")->BoundsRect(), Bounds(0, 0, 23, 22));
  EXPECT_EQ(Find<TToolButton>("ToolButton2")->BoundsRect(), Bounds(23, 0, 8, 22));
  EXPECT_EQ(Find<TToolButton>("ToolButton3")->BoundsRect(), Bounds(31, 0, 23, 22));
  EXPECT_EQ(Find<TToolButton>("ToolButton4")->BoundsRect(), Bounds(54, 0, 23, 22));
  // A drop-down button is wider by its arrow.
  EXPECT_EQ(Find<TToolButton>("ToolButton5")->BoundsRect(), Bounds(77, 0, 36, 22));
  EXPECT_EQ(Find<TComboBox>("ComboBox1")->Left(), 113);
  // The bar fills the top of the form; the client area lies below its top edge.
  EXPECT_EQ(bar->Align(), alTop);
  EXPECT_EQ(bar->Width(), form->ClientWidth());
  EXPECT_EQ(bar->ClientRect(), Rect(0, 0, bar->Width(), 27));
  ShowForm();
  EXPECT_EQ(Find<TToolButton>("ToolButton3")->Widget()->geometry(), QRect(31, 2, 23, 22));
}

TEST_F(ComCtrlsTest, AToolBarWritesItsButtonsInTheirOrder) {
  Read(BarForm);
  const std::string text = WriteComponentToText(form);
  const std::string block = ObjectBlock(text, "ToolBar1");
  const std::size_t two = block.find("object ToolButton2");
  const std::size_t three = block.find("object ToolButton3");
  ASSERT_NE(two, std::string::npos);
  ASSERT_NE(three, std::string::npos);
  EXPECT_LT(two, three);
  // Buttons keep their position, separators their width as well; no button writes its height.
  EXPECT_EQ(ObjectBlock(text, "ToolButton2"), ObjectBlock(Crlf(BarForm), "ToolButton2"));
  EXPECT_EQ(ObjectBlock(text, "ToolButton4"), ObjectBlock(Crlf(BarForm), "ToolButton4"));
}

TEST_F(ComCtrlsTest, ToolButtonsAnswerClicks) {
  Read(BarForm);
  auto* one = Find<TToolButton>("ToolButton1");
  auto* three = Find<TToolButton>("ToolButton3");
  auto* four = Find<TToolButton>("ToolButton4");
  int clicks = 0;
  one->OnClick = [&](TObject* sender) {
    EXPECT_EQ(sender, one);
    ++clicks;
  };
  ShowForm();
  QTest::mouseClick(one->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
  EXPECT_EQ(clicks, 1);
  EXPECT_FALSE(one->Down());
  // Checking a grouped button releases the other one of its group.
  EXPECT_TRUE(four->Down());
  QTest::mouseClick(three->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
  EXPECT_TRUE(three->Down());
  EXPECT_FALSE(four->Down());
  // A grouped button does not come up by itself unless AllowAllUp.
  QTest::mouseClick(three->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
  EXPECT_TRUE(three->Down());
  three->SetAllowAllUp(true);
  QTest::mouseClick(three->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
  EXPECT_FALSE(three->Down());
  // No click reaches a disabled button or a designed one.
  one->SetEnabled(false);
  QTest::mouseClick(one->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
  one->SetEnabled(true);
  form->SetDesignState(true);
  QTest::mouseClick(one->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(10, 10));
  EXPECT_EQ(clicks, 1);
}

TEST_F(ComCtrlsTest, HiddenButtonsTakeNoRoomUnlessDesigned) {
  Read(BarForm);
  auto* three = Find<TToolButton>("ToolButton3");
  three->SetVisible(false);
  EXPECT_EQ(Find<TToolButton>("ToolButton4")->Left(), 31);
  form->SetDesignState(true);
  Find<TToolBar>("ToolBar1")->ArrangeButtons();
  EXPECT_EQ(Find<TToolButton>("ToolButton4")->Left(), 54);
}

TEST_F(ComCtrlsTest, ANarrowToolBarWrapsItsButtonsAndGrows) {
  auto* bar = new TToolBar(form);
  bar->SetParent(form);
  bar->SetAutoSize(true);
  bar->SetEdgeBorders(TEdgeBorders{});
  std::vector<TToolButton*> buttons;
  for (int i = 0; i < 5; ++i) {
    auto* b = new TToolButton(form);
    b->SetLeft(1000);
    b->SetParent(bar);
    buttons.push_back(b);
  }
  EXPECT_EQ(bar->Height(), 22);
  EXPECT_EQ(buttons[4]->Left(), 4 * 23);
  bar->SetAlign(alNone);
  bar->SetWidth(60);
  EXPECT_EQ(bar->RowCount(), 3);
  EXPECT_EQ(bar->Height(), 66);
  EXPECT_EQ(buttons[2]->BoundsRect(), Bounds(0, 22, 23, 22));
  EXPECT_EQ(buttons[4]->BoundsRect(), Bounds(0, 44, 23, 22));
  // A button marked to wrap ends its row.
  bar->SetWidth(300);
  buttons[0]->SetWrap(true);
  EXPECT_EQ(buttons[1]->BoundsRect(), Bounds(0, 22, 23, 22));
  EXPECT_EQ(bar->Height(), 44);
  // Freeing a button closes the gap.
  delete buttons[1];
  EXPECT_EQ(buttons[2]->BoundsRect(), Bounds(0, 22, 23, 22));
}

TEST_F(ComCtrlsTest, ToolButtonsDrawTheirImagesAndState) {
  Read(BarForm);
  auto* images = new TImageList(form);
  QImage red(16, 16, QImage::Format_ARGB32);
  red.fill(Qt::red);
  images->Add(red);
  images->Add(red);
  images->Add(red);
  auto* bar = Find<TToolBar>("ToolBar1");
  bar->SetImages(images);
  // Away from the pointer, so that no button is hot.
  form->SetBounds(300, 300, 400, 300);
  ShowForm();
  const QImage one = Grab(Find<TToolButton>("ToolButton1")->Widget());
  EXPECT_EQ(Pixel(one, 11, 11), QColor(Qt::red));
  // A flat button that is up has no frame; a button that is down is sunken.
  EXPECT_EQ(Pixel(one, 0, 0), Classic(clBtnFace));
  const QImage four = Grab(Find<TToolButton>("ToolButton4")->Widget());
  EXPECT_EQ(Pixel(four, 0, 5), Classic(clBtnShadow));
  EXPECT_EQ(Pixel(four, 22, 5), Classic(clBtnHighlight));
  // The separator of a flat bar is an etched line.
  const QImage sep = Grab(Find<TToolButton>("ToolButton2")->Widget());
  EXPECT_EQ(Pixel(sep, 3, 10), Classic(clBtnShadow));
  EXPECT_EQ(Pixel(sep, 4, 10), Classic(clBtnHighlight));
  // The bar's top edge: shadow over highlight.
  const QImage whole = Grab(bar->Widget());
  EXPECT_EQ(Pixel(whole, 200, 0), Classic(clBtnShadow));
  EXPECT_EQ(Pixel(whole, 200, 1), Classic(clBtnHighlight));
  // Without images the caption shows when the bar shows captions.
  bar->SetImages(nullptr);
  bar->SetShowCaptions(true);
  bar->SetButtonWidth(80);
  QApplication::processEvents();
  EXPECT_GT(DarkPixels(Grab(Find<TToolButton>("ToolButton1")->Widget()), QRect(2, 2, 76, 18)), 10);
}

// ---- Progress bars, track bars, up-down buttons, hot keys, headers, dates, cool bars

namespace {

const char* const MiscForm = R"(object Form1: TForm1
  Left = 300
  Top = 300
  Width = 600
  Height = 400
  object ProgressBar1: TProgressBar
    Left = 8
    Top = 8
    Width = 204
    Height = 16
    Min = 0
    Max = 200
    Position = 50
    Step = 1
    TabOrder = 0
  end
  object TrackBar1: TTrackBar
    Left = 8
    Top = 32
    Width = 150
    Height = 45
    Max = 100
    Orientation = trHorizontal
    Frequency = 10
    Position = 20
    SelEnd = 0
    SelStart = 0
    TabOrder = 1
    TickMarks = tmBoth
    TickStyle = tsAuto
  end
  object Edit1: TEdit
    Left = 8
    Top = 88
    Width = 50
    Height = 21
    TabOrder = 2
    Text = '3'
  end
  object UpDown1: TUpDown
    Left = 58
    Top = 88
    Width = 15
    Height = 21
    Associate = Edit1
    Min = 0
    Max = 1200
    Position = 3
    TabOrder = 3
    Wrap = False
  end
  object HotKey1: THotKey
    Left = 8
    Top = 120
    Width = 121
    Height = 19
    HotKey = 16449
    InvalidKeys = [hcNone, hcShift]
    Modifiers = [hkAlt]
    TabOrder = 4
  end
  object HeaderControl1: THeaderControl
    Left = 0
    Top = 0
    Width = 592
    Height = 17
    DragReorder = False
    Sections = <
      item
        ImageIndex = -1
        Text = 'Name'
        Width = 120
      end
      item
        Alignment = taRightJustify
        ImageIndex = -1
        Text = 'Size'
        Width = 80
      end>
  end
  object DateTimePicker1: TDateTimePicker
    Left = 8
    Top = 150
    Width = 186
    Height = 21
    CalAlignment = dtaLeft
    Date = 36161.75
    Time = 36161.75
    DateFormat = dfShort
    DateMode = dmComboBox
    Kind = dtkDate
    ParseInput = False
    TabOrder = 5
  end
  object Animate1: TAnimate
    Left = 300
    Top = 40
    Width = 80
    Height = 50
    Active = False
    CommonAVI = aviFindFile
    StopFrame = 8
  end
end
)";

// A cool bar holding a tool bar, as a program of 1999 has it.
const char* const CoolForm = R"(object Form1: TForm1
  Left = 300
  Top = 300
  Width = 600
  Height = 300
  object CoolBar1: TCoolBar
    Left = 0
    Top = 0
    Width = 592
    Height = 36
    AutoSize = True
    BandBorderStyle = bsNone
    Bands = <
      item
        Control = ToolBar1
        ImageIndex = -1
        MinHeight = 34
        Width = 590
      end>
    EdgeInner = esLowered
    EdgeOuter = esNone
    object ToolBar1: TToolBar
      Left = 9
      Top = 0
      Width = 577
      Height = 34
      AutoSize = True
      ButtonHeight = 30
      Caption = 'ToolBar1'
      EdgeBorders = []
      TabOrder = 0
      object ToolButton1: TToolButton
        Left = 0
        Top = 0
        Caption = 'ToolButton1'
      end
    end
  end
end
)";

}  // namespace

TEST_F(ComCtrlsTest, AProgressBarFillsAsFarAsItsPosition) {
  Read(MiscForm);
  auto* bar = Find<TProgressBar>("ProgressBar1");
  EXPECT_EQ(bar->Max(), 200);
  EXPECT_EQ(bar->Position(), 50);
  // A quarter of the inside (200 pixels within the frame).
  EXPECT_EQ(bar->FilledLength(), 50);
  ShowForm();
  QImage image = Grab(bar->Widget());
  EXPECT_EQ(Pixel(image, 4, 8), Classic(clHighlight));
  EXPECT_EQ(Pixel(image, 150, 8), Classic(clBtnFace));
  // Blocks have gaps unless the bar is smooth.
  int gaps = 0;
  for (int x = 2; x < 50; ++x) gaps += Pixel(image, x, 8) == Classic(clBtnFace) ? 1 : 0;
  EXPECT_GT(gaps, 0);
  bar->SetSmooth(true);
  QApplication::processEvents();
  image = Grab(bar->Widget());
  gaps = 0;
  for (int x = 2; x < 50; ++x) gaps += Pixel(image, x, 8) == Classic(clBtnFace) ? 1 : 0;
  EXPECT_EQ(gaps, 0);
  bar->StepIt();
  EXPECT_EQ(bar->Position(), 51);
  bar->SetPosition(500);
  EXPECT_EQ(bar->Position(), 200);
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "ProgressBar1").find("Min = 0") != std::string::npos, true);
}

TEST_F(ComCtrlsTest, ATrackBarShowsItsRangeAndMovesByKeys) {
  Read(MiscForm);
  auto* track = Find<TTrackBar>("TrackBar1");
  int changes = 0;
  track->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  QSlider* s = track->Slider();
  ASSERT_NE(s, nullptr);
  EXPECT_EQ(s->maximum(), 100);
  EXPECT_EQ(s->value(), 20);
  EXPECT_EQ(s->tickInterval(), 10);
  EXPECT_EQ(s->tickPosition(), QSlider::TicksBothSides);
  EXPECT_EQ(s->orientation(), Qt::Horizontal);
  QApplication::setActiveWindow(form->Widget());
  s->setFocus();
  QTest::keyClick(s, Qt::Key_Right);
  EXPECT_EQ(track->Position(), 21);
  QTest::keyClick(s, Qt::Key_PageUp);
  EXPECT_EQ(track->Position(), 23);
  EXPECT_EQ(changes, 2);
  track->SetPosition(7);
  EXPECT_EQ(s->value(), 7);
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "TrackBar1"), ObjectBlock(Crlf(MiscForm), "TrackBar1").replace(
      ObjectBlock(Crlf(MiscForm), "TrackBar1").find("Position = 20"), 13, "Position = 7"));
}

TEST_F(ComCtrlsTest, AnUpDownStepsTheNumberOfItsEdit) {
  Read(MiscForm);
  auto* ud = Find<TUpDown>("UpDown1");
  auto* edit = Find<TEdit>("Edit1");
  std::vector<TUDBtnType> clicks;
  ud->OnClick = [&](TObject*, TUDBtnType button) { clicks.push_back(button); };
  EXPECT_EQ(ud->Associate(), edit);
  EXPECT_EQ(edit->Text(), "3");
  ShowForm();
  QTest::mouseClick(ud->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(7, 4));
  EXPECT_EQ(ud->Position(), 4);
  EXPECT_EQ(edit->Text(), "4");
  QTest::mouseClick(ud->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(7, 17));
  EXPECT_EQ(ud->Position(), 3);
  ASSERT_EQ(clicks.size(), 2u);
  EXPECT_EQ(clicks[0], btNext);
  EXPECT_EQ(clicks[1], btPrev);
  // A number typed into the edit is where the next step starts; thousands are grouped.
  edit->SetText("999");
  QTest::mouseClick(ud->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(7, 4));
  EXPECT_EQ(edit->Text(), "1,000");
  // Without Wrap the position stops at the ends; OnChanging may refuse a step.
  ud->SetPosition(1200);
  QTest::mouseClick(ud->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(7, 4));
  EXPECT_EQ(ud->Position(), 1200);
  ud->SetWrap(true);
  QTest::mouseClick(ud->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(7, 4));
  EXPECT_EQ(ud->Position(), 0);
  ud->OnChanging = [](TObject*, bool& allow) { allow = false; };
  QTest::mouseClick(ud->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(7, 4));
  EXPECT_EQ(ud->Position(), 0);
}

TEST_F(ComCtrlsTest, AHotKeyTakesTheKeysPressedInIt) {
  Read(MiscForm);
  auto* hk = Find<THotKey>("HotKey1");
  EXPECT_EQ(hk->HotKey(), TShortCut(scCtrl | 'A'));
  int changes = 0;
  hk->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  auto* e = qobject_cast<QLineEdit*>(hk->Widget());
  ASSERT_NE(e, nullptr);
  EXPECT_EQ(e->text(), QStringLiteral("Ctrl+A"));
  QApplication::setActiveWindow(form->Widget());
  e->setFocus();
  QTest::keyClick(e, Qt::Key_B, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(hk->HotKey(), TShortCut(scCtrl | scAlt | 'B'));
  EXPECT_EQ(e->text(), QStringLiteral("Ctrl+Alt+B"));
  // A key without modifiers is refused as such: it takes Alt.
  QTest::keyClick(e, Qt::Key_F);
  EXPECT_EQ(hk->HotKey(), TShortCut(scAlt | 'F'));
  QTest::keyClick(e, Qt::Key_Backspace);
  EXPECT_EQ(hk->HotKey(), scNone);
  EXPECT_EQ(e->text(), QStringLiteral("None"));
  EXPECT_EQ(changes, 3);
}

TEST_F(ComCtrlsTest, AHeaderControlClicksAndResizesItsSections) {
  Read(MiscForm);
  auto* header = Find<THeaderControl>("HeaderControl1");
  ASSERT_EQ(header->Sections()->Count(), 2);
  EXPECT_EQ(header->Sections()->Items(1)->Text(), "Size");
  EXPECT_EQ(header->Sections()->Items(1)->Left(), 120);
  EXPECT_EQ(header->Align(), alTop);
  THeaderSection* clicked = nullptr;
  THeaderSection* resized = nullptr;
  header->OnSectionClick = [&](THeaderControl*, THeaderSection* s) { clicked = s; };
  header->OnSectionResize = [&](THeaderControl*, THeaderSection* s) { resized = s; };
  ShowForm();
  QTest::mouseClick(header->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(150, 8));
  EXPECT_EQ(clicked, header->Sections()->Items(1));
  // Dragging the right edge of the first section makes it wider.
  QTest::mousePress(header->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(120, 8));
  QMouseEvent move(QEvent::MouseMove, QPointF(150, 8), header->Widget()->mapToGlobal(QPointF(150, 8)), Qt::NoButton,
                   Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(header->Widget(), &move);
  QTest::mouseRelease(header->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(150, 8));
  EXPECT_EQ(header->Sections()->Items(0)->Width(), 150);
  EXPECT_EQ(resized, header->Sections()->Items(0));
  const QImage image = Grab(header->Widget());
  EXPECT_GT(DarkPixels(image, QRect(4, 2, 40, 13)), 5) << "the first section's text";
}

TEST_F(ComCtrlsTest, ADateTimePickerShowsItsDateAndKeepsItsTime) {
  Read(MiscForm);
  auto* picker = Find<TDateTimePicker>("DateTimePicker1");
  EXPECT_DOUBLE_EQ(picker->Date(), 36161.75);
  int changes = 0;
  picker->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  QDateTimeEdit* e = picker->Editor();
  ASSERT_NE(e, nullptr);
  // Day 36161 is the first of January 1999.
  EXPECT_EQ(e->date(), QDate(1999, 1, 1));
  EXPECT_TRUE(e->calendarPopup());
  e->setDate(QDate(1999, 1, 2));
  EXPECT_DOUBLE_EQ(picker->Date(), 36162.75);
  EXPECT_EQ(changes, 1);
  picker->SetTime(0.5);
  EXPECT_DOUBLE_EQ(picker->DateTime(), 36162.5);
  picker->SetKind(dtkTime);
  EXPECT_EQ(e->time(), QTime(12, 0));
  EXPECT_FALSE(e->calendarPopup());
  // Nothing of it is lost in writing.
  picker->SetKind(dtkDate);
  picker->SetDateTime(36161.75);
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "DateTimePicker1"), ObjectBlock(Crlf(MiscForm), "DateTimePicker1"));
}

TEST_F(ComCtrlsTest, AnimationsAndTheRestReadWithoutErrors) {
  Read(MiscForm);
  auto* animate = Find<TAnimate>("Animate1");
  EXPECT_EQ(animate->CommonAVI(), aviFindFile);
  EXPECT_EQ(animate->StopFrame(), 8);
  EXPECT_FALSE(animate->Active());
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "HeaderControl1"), ObjectBlock(Crlf(MiscForm), "HeaderControl1"));
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "UpDown1"), ObjectBlock(Crlf(MiscForm), "UpDown1"));
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "HotKey1"), ObjectBlock(Crlf(MiscForm), "HotKey1"));
}

TEST_F(ComCtrlsTest, ACoolBarPutsTheControlOfEachBandBesideItsGripper) {
  Read(CoolForm);
  auto* cool = Find<TCoolBar>("CoolBar1");
  auto* tool = Find<TToolBar>("ToolBar1");
  ASSERT_EQ(cool->Bands()->Count(), 1);
  EXPECT_EQ(cool->Bands()->Items(0)->Control(), tool);
  EXPECT_EQ(cool->ClientRect(), Rect(0, 0, 590, 34));
  EXPECT_EQ(tool->BoundsRect(), Bounds(9, 0, 577, 34));
  EXPECT_EQ(cool->Height(), 36);
  EXPECT_EQ(ObjectBlock(WriteComponentToText(form), "CoolBar1").substr(0, 400),
            ObjectBlock(Crlf(CoolForm), "CoolBar1").substr(0, 400));
  ShowForm();
  // The gripper: raised bars at the band's left.
  const QImage image = Grab(cool->Widget());
  EXPECT_EQ(Pixel(image, 3, 10), Classic(clBtnHighlight));
  EXPECT_EQ(Pixel(image, 4, 10), Classic(clBtnShadow));
}

TEST_F(ComCtrlsTest, AnImageListServingInSeveralRolesIsForgottenInAllWhenDestroyed) {
  auto* images = new TImageList(form);
  QImage red(16, 16, QImage::Format_ARGB32);
  red.fill(Qt::red);
  images->Add(red);
  auto* lv = new TListView(form);
  lv->SetParent(form);
  lv->SetLargeImages(images);
  lv->SetSmallImages(images);
  lv->SetStateImages(images);
  lv->Items()->Add()->SetCaption("a");
  auto* tree = new TTreeView(form);
  tree->SetParent(form);
  tree->SetImages(images);
  tree->SetStateImages(images);
  tree->Items()->Add(nullptr, "node");
  auto* bar = new TToolBar(form);
  bar->SetParent(form);
  bar->SetImages(images);
  bar->SetHotImages(images);
  bar->SetDisabledImages(images);
  ShowForm();
  delete images;
  EXPECT_EQ(lv->LargeImages(), nullptr);
  EXPECT_EQ(lv->SmallImages(), nullptr);
  EXPECT_EQ(lv->StateImages(), nullptr);
  EXPECT_EQ(tree->Images(), nullptr);
  EXPECT_EQ(tree->StateImages(), nullptr);
  EXPECT_EQ(bar->Images(), nullptr);
  EXPECT_EQ(bar->HotImages(), nullptr);
  EXPECT_EQ(bar->DisabledImages(), nullptr);
  // They still draw, without the pictures.
  EXPECT_FALSE(Grab(lv->Widget()).isNull());
  EXPECT_FALSE(Grab(tree->Widget()).isNull());
}
