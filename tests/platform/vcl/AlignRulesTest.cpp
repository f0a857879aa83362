#include "platform/vcl/AlignRules.h"

#include "tests/platform/vcl/VclTestUtil.h"

#include <gtest/gtest.h>

namespace {

TAlignItem Item(TAlign align, TRect bounds, TSizeLimits limits = {}) {
  TAlignItem item;
  item.Align = align;
  item.Bounds = bounds;
  item.Constraints = limits;
  return item;
}

const TRect kClient = Rect(0, 0, 400, 300);

}  // namespace

TEST(AlignRules, TopControlTakesFullWidthAndKeepsItsHeight) {
  auto r = AlignRects(kClient, {Item(alTop, Bounds(37, 80, 10, 41))});
  EXPECT_EQ(r[0], Bounds(0, 0, 400, 41));
}

TEST(AlignRules, BottomLeftRightAndClientShareWhatIsLeft) {
  auto r = AlignRects(kClient, {
                                   Item(alClient, Bounds(5, 5, 5, 5)),
                                   Item(alRight, Bounds(300, 0, 60, 10)),
                                   Item(alLeft, Bounds(0, 0, 50, 10)),
                                   Item(alBottom, Bounds(0, 0, 10, 20)),
                                   Item(alTop, Bounds(0, 0, 10, 30)),
                               });
  EXPECT_EQ(r[4], Bounds(0, 0, 400, 30));     // top first
  EXPECT_EQ(r[3], Bounds(0, 280, 400, 20));   // then bottom
  EXPECT_EQ(r[2], Bounds(0, 30, 50, 250));    // left between them
  EXPECT_EQ(r[1], Bounds(340, 30, 60, 250));  // right between them
  EXPECT_EQ(r[0], Bounds(50, 30, 290, 250));  // client fills the rest
}

TEST(AlignRules, TopControlsStackInTheOrderOfTheirTopEdge) {
  auto r = AlignRects(kClient, {
                                   Item(alTop, Bounds(0, 50, 10, 20)),
                                   Item(alTop, Bounds(0, 10, 10, 30)),
                               });
  EXPECT_EQ(r[1], Bounds(0, 0, 400, 30));
  EXPECT_EQ(r[0], Bounds(0, 30, 400, 20));
}

TEST(AlignRules, TopControlsWithTheSameTopKeepListOrder) {
  auto r = AlignRects(kClient, {
                                   Item(alTop, Bounds(0, 0, 10, 20)),
                                   Item(alTop, Bounds(0, 0, 10, 30)),
                               });
  EXPECT_EQ(r[0], Bounds(0, 0, 400, 20));
  EXPECT_EQ(r[1], Bounds(0, 20, 400, 30));
}

TEST(AlignRules, BottomControlsStackFromTheLowestBottomEdge) {
  auto r = AlignRects(kClient, {
                                   Item(alBottom, Bounds(0, 200, 10, 20)),  // bottom 220
                                   Item(alBottom, Bounds(0, 250, 10, 30)),  // bottom 280: lowest, goes first
                               });
  EXPECT_EQ(r[1], Bounds(0, 270, 400, 30));
  EXPECT_EQ(r[0], Bounds(0, 250, 400, 20));
}

TEST(AlignRules, BottomControlsWithTheSameBottomPutTheLaterOneLowest) {
  auto r = AlignRects(kClient, {
                                   Item(alBottom, Bounds(0, 280, 10, 20)),
                                   Item(alBottom, Bounds(0, 270, 10, 30)),
                               });
  EXPECT_EQ(r[1], Bounds(0, 270, 400, 30));
  EXPECT_EQ(r[0], Bounds(0, 250, 400, 20));
}

TEST(AlignRules, LeftAndRightControlsOrderByTheirEdges) {
  auto r = AlignRects(kClient, {
                                   Item(alLeft, Bounds(100, 0, 20, 10)),
                                   Item(alLeft, Bounds(3, 0, 40, 10)),
                                   Item(alRight, Bounds(200, 0, 30, 10)),  // right 230
                                   Item(alRight, Bounds(350, 0, 10, 10)),  // right 360: goes first
                               });
  EXPECT_EQ(r[1], Bounds(0, 0, 40, 300));
  EXPECT_EQ(r[0], Bounds(40, 0, 20, 300));
  EXPECT_EQ(r[3], Bounds(390, 0, 10, 300));
  EXPECT_EQ(r[2], Bounds(360, 0, 30, 300));
}

TEST(AlignRules, SeveralClientControlsAllFillTheSameRest) {
  auto r = AlignRects(kClient, {
                                   Item(alClient, Bounds(0, 0, 1, 1)),
                                   Item(alTop, Bounds(0, 0, 1, 100)),
                                   Item(alClient, Bounds(9, 9, 1, 1)),
                               });
  EXPECT_EQ(r[0], Bounds(0, 100, 400, 200));
  EXPECT_EQ(r[2], Bounds(0, 100, 400, 200));
}

TEST(AlignRules, UnalignedAndHiddenControlsStayWhereTheyAre) {
  auto hidden = Item(alTop, Bounds(5, 60, 10, 30));
  hidden.Participates = false;
  auto r = AlignRects(kClient, {Item(alNone, Bounds(7, 8, 9, 10)), hidden, Item(alTop, Bounds(0, 99, 1, 20))});
  EXPECT_EQ(r[0], Bounds(7, 8, 9, 10));
  EXPECT_EQ(r[1], Bounds(5, 60, 10, 30));
  EXPECT_EQ(r[2], Bounds(0, 0, 400, 20));  // the hidden one takes no room
}

TEST(AlignRules, ClientRectOffsetIsHonoured) {
  // A panel with a two-pixel border aligns inside it.
  auto r = AlignRects(Rect(2, 2, 98, 48), {Item(alLeft, Bounds(0, 0, 30, 5)), Item(alClient, Bounds(0, 0, 5, 5))});
  EXPECT_EQ(r[0], Bounds(2, 2, 30, 46));
  EXPECT_EQ(r[1], Bounds(32, 2, 66, 46));
}

TEST(AlignRules, ConstraintsLimitTheStretchedSide) {
  auto r = AlignRects(kClient, {
                                   Item(alTop, Bounds(0, 0, 10, 20), TSizeLimits{0, 0, 150, 0}),
                                   Item(alClient, Bounds(0, 0, 10, 10), TSizeLimits{0, 0, 0, 100}),
                               });
  EXPECT_EQ(r[0], Bounds(0, 0, 150, 20));
  EXPECT_EQ(r[1], Bounds(0, 20, 400, 100));
}

TEST(AlignRules, MinimumSizeMakesTheStripTakenLarger) {
  auto r = AlignRects(kClient, {
                                   Item(alLeft, Bounds(0, 0, 10, 20), TSizeLimits{60, 0, 0, 0}),
                                   Item(alClient, Bounds(0, 0, 10, 10)),
                               });
  EXPECT_EQ(r[0], Bounds(0, 0, 60, 300));
  EXPECT_EQ(r[1], Bounds(60, 0, 340, 300));
}

TEST(AlignRules, OverfullParentGivesEmptyClientNotNegative) {
  auto r = AlignRects(Rect(0, 0, 100, 50), {
                                               Item(alTop, Bounds(0, 0, 10, 40)),
                                               Item(alBottom, Bounds(0, 0, 10, 40)),
                                               Item(alClient, Bounds(0, 0, 10, 10)),
                                           });
  EXPECT_EQ(r[0], Bounds(0, 0, 100, 40));
  EXPECT_EQ(r[1], Bounds(0, 10, 100, 40));
  EXPECT_EQ(r[2].Width(), 100);
  EXPECT_EQ(r[2].Height(), 0);
}

TEST(AlignRules, ControlBeingMovedGoesFirstAmongEqualTops) {
  std::vector<TAlignItem> items = {Item(alTop, Bounds(0, 0, 10, 20)), Item(alTop, Bounds(0, 0, 10, 30))};
  auto r = AlignRects(kClient, items, 1);
  EXPECT_EQ(r[1], Bounds(0, 0, 400, 30));
  EXPECT_EQ(r[0], Bounds(0, 30, 400, 20));
}

TEST(AlignRules, ConstrainSizeAppliesMinimumBeforeMaximum) {
  int w = 5, h = 500;
  ConstrainSize(TSizeLimits{10, 0, 20, 100}, w, h);
  EXPECT_EQ(w, 10);
  EXPECT_EQ(h, 100);
  w = 0;
  h = 0;
  ConstrainSize(TSizeLimits{}, w, h);
  EXPECT_EQ(w, 0);
  EXPECT_EQ(h, 0);
}

TEST(AnchorRules, LeftTopAnchorsKeepTheControlInPlace) {
  EXPECT_EQ(AnchorRect(Bounds(10, 20, 30, 40), kDefaultAnchors, {200, 100}, {300, 250}), Bounds(10, 20, 30, 40));
}

TEST(AnchorRules, RightAnchorMovesWithTheRightEdge) {
  const TAnchorBits a = AnchorBit(akRight) | AnchorBit(akBottom);
  EXPECT_EQ(AnchorRect(Bounds(150, 60, 40, 30), a, {200, 100}, {260, 80}), Bounds(210, 40, 40, 30));
}

TEST(AnchorRules, OppositeAnchorsStretch) {
  const TAnchorBits a = AnchorBit(akLeft) | AnchorBit(akRight) | AnchorBit(akTop) | AnchorBit(akBottom);
  EXPECT_EQ(AnchorRect(Bounds(10, 10, 180, 80), a, {200, 100}, {300, 150}), Bounds(10, 10, 280, 130));
  // Shrinking below nothing gives an empty control, not a negative one.
  EXPECT_EQ(AnchorRect(Bounds(10, 10, 180, 80), a, {200, 100}, {10, 10}), Bounds(10, 10, 0, 0));
}

TEST(AnchorRules, NoAnchorOnAnAxisKeepsTheCentreProportional) {
  // Centre at 100 of 200 stays at the middle of 400.
  EXPECT_EQ(AnchorRect(Bounds(80, 10, 40, 10), AnchorBit(akTop), {200, 100}, {400, 100}), Bounds(180, 10, 40, 10));
}

TEST(AnchorRules, StretchedControlHonoursConstraints) {
  const TAnchorBits a = AnchorBit(akLeft) | AnchorBit(akRight) | AnchorBit(akTop);
  EXPECT_EQ(AnchorRect(Bounds(0, 0, 100, 10), a, {100, 100}, {500, 100}, TSizeLimits{0, 0, 250, 0}),
            Bounds(0, 0, 250, 10));
}

TEST(AnchorRules, UnknownOriginalParentSizeChangesNothing) {
  EXPECT_EQ(AnchorRect(Bounds(1, 2, 3, 4), AnchorBit(akRight), {0, 0}, {100, 100}), Bounds(1, 2, 3, 4));
}
