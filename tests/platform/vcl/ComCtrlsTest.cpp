// The common controls read from form text as real forms give them, show what they
// should, and answer the mouse and the keys.
#include "platform/vcl/ComCtrls.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/StdCtrls.h"
#include "platform/vcl/VclClasses.h"
#include "tests/platform/vcl/ComCtrlsTestUtil.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

using namespace lumora::test;

namespace {

class ComCtrlsTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    Application->Initialize();
    RegisterVclClasses();
    RegisterComCtrlsClasses();
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
