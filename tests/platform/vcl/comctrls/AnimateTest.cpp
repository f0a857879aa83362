// Animations read from form text as real forms give them, shown where their clip plays,
// and playing a walking mark while active.
#include "platform/vcl/ComCtrls.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/StdCtrls.h"
#include "platform/vcl/VclClasses.h"
#include "tests/platform/vcl/ComCtrlsTestUtil.h"
#include "tests/platform/vcl/VclTestUtil.h"
#include "tests/platform/vcl/comctrls/ComCtrlsFixture.h"

#include <QTest>

#include <gtest/gtest.h>

using namespace lumora::test;

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

TEST_F(ComCtrlsTest, AnAnimationShowsWhereItsClipPlays) {
  auto* animate = new TAnimate(form);
  animate->SetParent(form);
  animate->SetBounds(10, 10, 120, 60);
  animate->SetTransparent(false);
  animate->SetColor(clWhite);
  ShowForm();
  const QImage image = Grab(animate->Widget());
  // The etched frame: shadow outside, highlight inside it; the area in its colour.
  EXPECT_EQ(Pixel(image, 0, 0), Classic(clBtnShadow));
  EXPECT_EQ(Pixel(image, 1, 1), Classic(clBtnHighlight));
  EXPECT_EQ(Pixel(image, 60, 30), Classic(clWhite));
  // No mark while it does not play.
  EXPECT_EQ(Pixel(image, 3, 53), Classic(clWhite));
}

TEST_F(ComCtrlsTest, AnActiveAnimationWalksItsMarkAndStopsAfterItsRepetitions) {
  auto* animate = new TAnimate(form);
  animate->SetParent(form);
  animate->SetBounds(10, 10, 120, 60);
  animate->SetTransparent(false);
  animate->SetColor(clWhite);
  int started = 0, stopped = 0;
  animate->OnStart = [&](TObject*) { ++started; };
  animate->OnStop = [&](TObject*) { ++stopped; };
  ShowForm();
  animate->Play(1, 4, 1);
  EXPECT_TRUE(animate->Active());
  EXPECT_EQ(started, 1);
  EXPECT_EQ(animate->Frame(), 1);
  // The mark: raised, at the left on the first frame.
  QImage image = Grab(animate->Widget());
  EXPECT_EQ(Pixel(image, 2, 52), Classic(clBtnHighlight));
  EXPECT_EQ(Pixel(image, 60, 54), Classic(clWhite));
  ASSERT_TRUE(QTest::qWaitFor([&] { return animate->Frame() == 4; }, 5000));
  image = Grab(animate->Widget());
  EXPECT_EQ(Pixel(image, 2, 52), Classic(clWhite));
  EXPECT_EQ(Pixel(image, 116, 56), Classic(clBtnShadow));
  // One pass of four frames, then it stops by itself.
  ASSERT_TRUE(QTest::qWaitFor([&] { return !animate->Active(); }, 5000));
  EXPECT_EQ(stopped, 1);
  image = Grab(animate->Widget());
  EXPECT_EQ(Pixel(image, 116, 56), Classic(clWhite));
}

TEST_F(ComCtrlsTest, AnAnimationActiveInTheStreamPlaysOnceRead) {
  Read(R"(object Form1: TForm1
  Left = 0
  Top = 0
  Width = 300
  Height = 200
  object Animate1: TAnimate
    Left = 8
    Top = 8
    Width = 80
    Height = 50
    Active = True
    CommonAVI = aviCopyFiles
    StopFrame = 3
  end
end
)");
  auto* animate = Find<TAnimate>("Animate1");
  EXPECT_TRUE(animate->Active());
  EXPECT_EQ(animate->LastFrame(), 3);
  ASSERT_TRUE(QTest::qWaitFor([&] { return animate->Frame() == 2; }, 5000));
  animate->Stop();
  EXPECT_FALSE(animate->Active());
  // Without a stop frame a stand-in clip of 16 frames plays.
  animate->SetStopFrame(0);
  EXPECT_EQ(animate->LastFrame(), 16);
}
