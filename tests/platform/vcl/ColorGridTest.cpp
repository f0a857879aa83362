// Colour grids driven by the mouse and the keys, drawn, and read from form text.
#include "platform/vcl/ColorGrid.h"

#include "platform/rtti/Registry.h"
#include "platform/rtti/Writer.h"
#include "platform/vcl/FormRender.h"
#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class ColorGridTest : public lumora::test::TFormFixture {
protected:
  void SetUp() override {
    TFormFixture::SetUp();
    if (!GetClass("TColorGrid")) RegisterClass(TColorGrid::StaticClass());
  }
  static QPoint Middle(TColorGrid* grid, int index) { return grid->CellRect(index).center(); }
};

}  // namespace

TEST_F(ColorGridTest, TheLeftButtonChoosesTheForegroundAndTheRightTheBackground) {
  auto* grid = Make<TColorGrid>("ColorGrid1", form, 8, 8, 160, 160);
  int changes = 0;
  grid->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  QTest::mouseClick(grid->Widget(), Qt::LeftButton, Qt::NoModifier, Middle(grid, 9));
  EXPECT_EQ(grid->ForegroundIndex(), 9);
  EXPECT_EQ(grid->ForegroundColor(), clRed);
  EXPECT_EQ(changes, 1);
  QTest::mouseClick(grid->Widget(), Qt::RightButton, Qt::NoModifier, Middle(grid, 15));
  EXPECT_EQ(grid->BackgroundIndex(), 15);
  EXPECT_EQ(grid->BackgroundColor(), clWhite);
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(grid->Selection(), 15);
}

TEST_F(ColorGridTest, TheOrderingSetsTheCellsAcrossAndDown) {
  auto* grid = Make<TColorGrid>("ColorGrid1", form, 8, 8, 336, 16);
  grid->SetGridOrdering(go16x1);
  EXPECT_EQ(grid->Columns(), 16);
  EXPECT_EQ(grid->Rows(), 1);
  EXPECT_EQ(grid->CellAt(335, 8), 15);
  EXPECT_EQ(grid->CellAt(20, 8), 0);
  EXPECT_EQ(grid->CellAt(22, 8), 1);
  grid->SetGridOrdering(go2x8);
  EXPECT_EQ(grid->CellAt(335, 15), 15);
  EXPECT_EQ(grid->CellAt(0, 15), 14);
  EXPECT_EQ(grid->CellAt(400, 0), -1);
}

TEST_F(ColorGridTest, ArrowsMoveTheSelectionAndFOrBChooseIt) {
  auto* grid = Make<TColorGrid>("ColorGrid1", form, 8, 8, 160, 160);
  ShowForm();
  grid->SetFocus();
  QTest::keyClick(grid->Widget(), Qt::Key_Right);
  QTest::keyClick(grid->Widget(), Qt::Key_Down);
  EXPECT_EQ(grid->Selection(), 5);
  // The edges stop the selection.
  QTest::keyClick(grid->Widget(), Qt::Key_Up);
  QTest::keyClick(grid->Widget(), Qt::Key_Up);
  EXPECT_EQ(grid->Selection(), 1);
  QTest::keyClicks(grid->Widget(), "f");
  EXPECT_EQ(grid->ForegroundIndex(), 1);
  QTest::keyClick(grid->Widget(), Qt::Key_Down);
  QTest::keyClicks(grid->Widget(), "B");
  EXPECT_EQ(grid->BackgroundIndex(), 5);
  EXPECT_EQ(grid->ForegroundIndex(), 1);
}

TEST_F(ColorGridTest, AClickEnablesASideOnlyWhenAskedTo) {
  auto* grid = Make<TColorGrid>("ColorGrid1", form, 8, 8, 160, 160);
  grid->SetBackgroundEnabled(false);
  ShowForm();
  QTest::mouseClick(grid->Widget(), Qt::RightButton, Qt::NoModifier, Middle(grid, 3));
  EXPECT_FALSE(grid->BackgroundEnabled());
  grid->SetClickEnablesColor(true);
  QTest::mouseClick(grid->Widget(), Qt::RightButton, Qt::NoModifier, Middle(grid, 4));
  EXPECT_TRUE(grid->BackgroundEnabled());
  EXPECT_EQ(grid->BackgroundIndex(), 4);
}

TEST_F(ColorGridTest, CellsShowTheirColoursAndTheChosenOnesAreMarked) {
  auto* grid = Make<TColorGrid>("ColorGrid1", form, 8, 8, 160, 160);
  grid->SetForegroundIndex(15);
  grid->SetBackgroundIndex(0);
  ShowForm();
  const QImage image = grid->Widget()->grab().toImage();
  auto rgbAt = [&](QPoint p) { return QColor(image.pixel(p)).rgb() & 0xFFFFFF; };
  auto rgbOf = [](TColor c) { return ColorToQColor(c).rgb() & 0xFFFFFF; };
  for (int i = 0; i < TColorGrid::kColorCount; ++i) {
    const QRect r = grid->CellRect(i);
    EXPECT_EQ(rgbAt(r.topLeft() + QPoint(4, 4)), rgbOf(TColorGrid::ColorOf(i))) << "cell " << i;
  }
  // The marks: dark ink on white ("FG"), light ink on black ("BG"), nothing on red.
  auto inkIn = [&](int index, QRgb ink) {
    int n = 0;
    const QRect r = grid->CellRect(index).adjusted(3, 3, -3, -3);
    for (int x = r.left(); x <= r.right(); ++x)
      for (int y = r.top(); y <= r.bottom(); ++y) n += rgbAt(QPoint(x, y)) == ink ? 1 : 0;
    return n;
  };
  EXPECT_GT(inkIn(15, 0x000000), 5);
  EXPECT_GT(inkIn(0, 0xFFFFFF), 5);
  EXPECT_EQ(inkIn(9, 0x000000) + inkIn(9, 0xFFFFFF), 0);
}

TEST_F(ColorGridTest, TheSelectionIsFramedWhileTheGridHasTheFocus) {
  auto* grid = Make<TColorGrid>("ColorGrid1", form, 8, 8, 160, 160);
  auto* other = Make<TColorGrid>("ColorGrid2", form, 200, 8, 80, 80);
  grid->SetSelection(15);
  ShowForm();
  // Dark dots on the white cell's edge when focused, none when not.
  auto dotsOnWhite = [&] {
    QApplication::processEvents();
    const QImage image = grid->Widget()->grab().toImage();
    const QRect r = grid->CellRect(15).adjusted(3, 3, -3, -3);
    int n = 0;
    for (int x = r.left(); x <= r.right(); ++x) n += (image.pixel(x, r.top()) & 0xFFFFFF) == 0 ? 1 : 0;
    return n;
  };
  other->SetFocus();
  EXPECT_EQ(dotsOnWhite(), 0);
  grid->SetFocus();
  EXPECT_GT(dotsOnWhite(), 5);
}

TEST_F(ColorGridTest, FormTextIsReadAndWrittenBack) {
  const std::string text =
      "object TestForm: TForm\n"
      "  Left = 10\n  Top = 10\n  Width = 400\n  Height = 300\n"
      "  object ColorGrid1: TColorGrid\n"
      "    Left = 47\n    Top = 30\n    Width = 336\n    Height = 16\n"
      "    BackgroundEnabled = False\n    GridOrdering = go16x1\n    BackgroundIndex = 7\n"
      "    ForegroundIndex = 9\n    TabOrder = 1\n"
      "  end\n"
      "end\n";
  delete form;
  form = new TForm(Application);
  const TFormLoadResult result = LoadFormFile(form, text);
  ASSERT_TRUE(result.Read);
  for (const auto& e : result.Errors) ADD_FAILURE() << e;
  auto* grid = dynamic_cast<TColorGrid*>(form->FindComponent("ColorGrid1"));
  ASSERT_NE(grid, nullptr);
  EXPECT_EQ(grid->GridOrdering(), go16x1);
  EXPECT_EQ(grid->BackgroundIndex(), 7);
  EXPECT_EQ(grid->ForegroundIndex(), 9);
  EXPECT_FALSE(grid->BackgroundEnabled());
  const std::string written = WriteComponentToText(form);
  EXPECT_NE(written.find("    BackgroundEnabled = False\r\n    BackgroundIndex = 7\r\n"), std::string::npos) << written;
  EXPECT_NE(written.find("    ForegroundIndex = 9\r\n    GridOrdering = go16x1\r\n"), std::string::npos) << written;
  EXPECT_EQ(written.find("Selection"), std::string::npos) << written;
}
