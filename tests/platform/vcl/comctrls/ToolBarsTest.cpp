// Tool bars and cool bars read from form text as real forms give them, shown as they should be,
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
