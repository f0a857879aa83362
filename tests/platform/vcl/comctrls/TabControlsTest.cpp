// Tab controls and page controls read from form text as real forms give them, shown as they should be,
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

#include <gtest/gtest.h>

using namespace lumora::test;

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
