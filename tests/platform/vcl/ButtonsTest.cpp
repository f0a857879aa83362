// Bitmap buttons and speed buttons: their glyphs, groups and kinds.
#include "platform/vcl/Buttons.h"

#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

class ButtonsTest : public lumora::test::TFormFixture {};

}  // namespace

TEST_F(ButtonsTest, GlyphLayoutFollowsMarginAndSpacing) {
  const QRect client(0, 0, 75, 25);
  // Centred: glyph and text together in the middle, 4 pixels apart.
  TGlyphLayout l = CalcButtonLayout(client, QSize(16, 16), QSize(30, 13), blGlyphLeft, -1, 4);
  EXPECT_EQ(l.Glyph.left(), (75 - 50 + 1) / 2);
  EXPECT_EQ(l.Text.left(), l.Glyph.right() + 1 + 4);
  EXPECT_EQ(l.Glyph.top(), 5);
  // A margin from the left edge.
  l = CalcButtonLayout(client, QSize(16, 16), QSize(30, 13), blGlyphLeft, 2, 4);
  EXPECT_EQ(l.Glyph.left(), 2);
  // Glyph on the right.
  l = CalcButtonLayout(client, QSize(16, 16), QSize(30, 13), blGlyphRight, 2, 4);
  EXPECT_EQ(l.Glyph.right(), 75 - 2 - 1);
  // No caption: no spacing, the glyph alone centred.
  l = CalcButtonLayout(client, QSize(16, 16), QSize(), blGlyphTop, -1, 4);
  EXPECT_EQ(l.Glyph.left(), 30);
  EXPECT_EQ(l.Glyph.top(), (25 - 16 + 1) / 2);
}

TEST_F(ButtonsTest, SpeedButtonsOfAGroupStayDownOneAtATime) {
  auto* a = Make<TSpeedButton>(form, 8, 8, 23, 22);
  auto* b = Make<TSpeedButton>(form, 31, 8, 23, 22);
  a->SetGroupIndex(1);
  b->SetGroupIndex(1);
  int clicks = 0;
  b->OnClick = [&](TObject*) { ++clicks; };
  ShowForm();
  QTest::mouseClick(a->Widget(), Qt::LeftButton);
  EXPECT_TRUE(a->Down());
  QTest::mouseClick(b->Widget(), Qt::LeftButton);
  EXPECT_TRUE(b->Down());
  EXPECT_FALSE(a->Down());
  EXPECT_EQ(clicks, 1);
  // The last one down stays down unless the group allows all up.
  QTest::mouseClick(b->Widget(), Qt::LeftButton);
  EXPECT_TRUE(b->Down());
  b->SetAllowAllUp(true);
  QTest::mouseClick(b->Widget(), Qt::LeftButton);
  EXPECT_FALSE(b->Down());
}

TEST_F(ButtonsTest, BitButtonKindsGiveCaptionAndModalResult) {
  auto* ok = Make<TBitBtn>(form, 8, 8, 75, 25);
  ok->SetKind(bkOK);
  EXPECT_EQ(ok->Caption(), "OK");
  EXPECT_EQ(ok->ModalResult(), mrOk);
  EXPECT_TRUE(ok->Default());
  EXPECT_FALSE(ok->IsCustomCaption());
  auto* cancel = Make<TBitBtn>(form, 90, 8, 75, 25);
  cancel->SetKind(bkCancel);
  EXPECT_TRUE(cancel->Cancel());
  QTimer::singleShot(0, [ok] { QTest::mouseClick(ok->Widget(), Qt::LeftButton); });
  EXPECT_EQ(form->ShowModal(), mrOk);
}
