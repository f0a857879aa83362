// Status bars and header controls read from form text as real forms give them, shown as they should be,
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
#include <QMouseEvent>
#include <QTest>

#include <gtest/gtest.h>

using namespace lumora::test;

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
