// Page scrollers: the arrow buttons at the ends scroll a wide control through the strip.
#include "platform/vcl/ComCtrls.h"

#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class PageScrollerTest : public lumora::test::TFormFixture {
protected:
  void SetUp() override {
    TFormFixture::SetUp();
    scroller = Make<TPageScroller>("PageScroller1", form, 8, 8, 100, 30);
    wide = Make<TPanel>("Panel1", scroller, 0, 0, 300, 30);
    scroller->SetControl(wide);
    ShowForm();
  }
  void ClickAt(int x) { QTest::mouseClick(scroller->Widget(), Qt::LeftButton, Qt::NoModifier, QPoint(x, 15)); }
  TPageScroller* scroller = nullptr;
  TPanel* wide = nullptr;
};

}  // namespace

TEST_F(PageScrollerTest, AtTheStartOnlyTheButtonTowardsTheRestShows) {
  EXPECT_EQ(scroller->Position(), 0);
  EXPECT_FALSE(scroller->ButtonVisible(sbFirst));
  EXPECT_TRUE(scroller->ButtonVisible(sbLast));
  EXPECT_EQ(wide->Left(), 0);
  // The last button is drawn at the right end: raised, with an arrow in button text.
  const QImage image = scroller->Widget()->grab().toImage();
  int ink = 0;
  for (int x = 100 - scroller->ButtonSize(); x < 100; ++x)
    for (int y = 0; y < 30; ++y) ink += (image.pixel(x, y) & 0xFFFFFF) == (ColorToQColor(clBtnText).rgb() & 0xFFFFFF);
  EXPECT_GT(ink, 3);
}

TEST_F(PageScrollerTest, TheButtonsScrollHalfAStripAtATimeAndStopAtTheEnds) {
  std::vector<int> deltas;
  scroller->OnScroll = [&](TObject*, TShiftState, int, int, TPageScrollerOrientation, int& delta) {
    deltas.push_back(delta);
  };
  ClickAt(98);
  EXPECT_EQ(scroller->Position(), 50);
  EXPECT_TRUE(scroller->ButtonVisible(sbFirst));
  // The control moves left by the position, past the first button.
  EXPECT_EQ(wide->Left(), scroller->ButtonSize() - 50);
  // Both buttons show now, the control between them.
  const QImage image = scroller->Widget()->grab().toImage();
  auto inkIn = [&](int from, int to) {
    int ink = 0;
    for (int x = from; x < to; ++x)
      for (int y = 0; y < 30; ++y) ink += (image.pixel(x, y) & 0xFFFFFF) == (ColorToQColor(clBtnText).rgb() & 0xFFFFFF);
    return ink;
  };
  EXPECT_GT(inkIn(0, scroller->ButtonSize()), 3);
  EXPECT_GT(inkIn(100 - scroller->ButtonSize(), 100), 3);
  for (int i = 0; i < 10; ++i) ClickAt(98);
  const int most = 300 - 100 + 2 * scroller->ButtonSize();
  EXPECT_EQ(scroller->Position(), most);
  EXPECT_FALSE(scroller->ButtonVisible(sbLast));
  ClickAt(2);
  EXPECT_EQ(scroller->Position(), most - 50);
  ASSERT_FALSE(deltas.empty());
  EXPECT_EQ(deltas.front(), 50);
  EXPECT_EQ(deltas.back(), -50);
  // A press in the middle scrolls nothing.
  const int before = scroller->Position();
  ClickAt(50);
  EXPECT_EQ(scroller->Position(), before);
}
