// Progress bars, track bars, up-down buttons and hot keys read from form text as real forms give them, shown as they should be,
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
#include <QLineEdit>
#include <QSlider>
#include <QTest>

#include <gtest/gtest.h>

using namespace lumora::test;

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
