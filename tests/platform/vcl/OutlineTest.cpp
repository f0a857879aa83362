// Outlines: lines become a tree, expanded and collapsed by the boxes, a double click and
// the keys; the directory outline shows the way down to its folder.
#include "platform/vcl/Outline.h"

#include "platform/rtti/Registry.h"
#include "platform/rtti/Writer.h"
#include "platform/vcl/FormRender.h"
#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"
#include "tests/support/TempDir.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QImage>
#include <QTest>

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

class OutlineTest : public lumora::test::TFormFixture {
protected:
  void SetUp() override {
    TFormFixture::SetUp();
    if (!GetClass("TDirectoryOutline")) RegisterClass(TDirectoryOutline::StaticClass());
  }
  TOutline* MakeOutline() {
    auto* outline = Make<TOutline>("Outline1", form, 8, 8, 200, 160);
    outline->SetItemHeight(16);
    outline->Lines()->Add("Animals");
    outline->Lines()->Add("\tCats");
    outline->Lines()->Add("\t\tLion");
    outline->Lines()->Add("\tDogs");
    outline->Lines()->Add("Plants");
    return outline;
  }
  static std::vector<std::string> Rows(TCustomOutline* outline) {
    std::vector<std::string> rows;
    for (int index : outline->Shown()) rows.push_back(outline->Item(index).Text);
    return rows;
  }
  static QPoint RowMiddle(TCustomOutline* outline, int row, int x) {
    const TRect r = outline->CellRect(0, row);
    return QPoint(x, (r.Top + r.Bottom) / 2);
  }
  static QWidget* Input(TCustomOutline* outline) { return outline->InputWidget(); }
};

}  // namespace

TEST_F(OutlineTest, LinesBecomeATreeShownCollapsed) {
  TOutline* outline = MakeOutline();
  ASSERT_EQ(outline->ItemCount(), 5);
  EXPECT_EQ(outline->Item(3).Level, 3);
  EXPECT_TRUE(outline->HasItems(1));
  EXPECT_FALSE(outline->HasItems(3));
  EXPECT_EQ(Rows(outline), (std::vector<std::string>{"Animals", "Plants"}));
  EXPECT_EQ(outline->FullPath(3), "Animals\\Cats\\Lion");
  outline->SetItemSeparator("/");
  EXPECT_EQ(outline->FullPath(4), "Animals/Dogs");
}

TEST_F(OutlineTest, TheBoxesExpandAndCollapseAndTellTheProgram) {
  TOutline* outline = MakeOutline();
  std::vector<long> expanded;
  std::vector<long> collapsed;
  outline->OnExpand = [&](TObject*, long index) { expanded.push_back(index); };
  outline->OnCollapse = [&](TObject*, long index) { collapsed.push_back(index); };
  ShowForm();
  const TRect cell = outline->CellRect(0, 0);
  // The box of the first row lies in its first step of indent.
  QTest::mouseClick(Input(outline), Qt::LeftButton, Qt::NoModifier, RowMiddle(outline, 0, cell.Left + 8));
  EXPECT_EQ(Rows(outline), (std::vector<std::string>{"Animals", "Cats", "Dogs", "Plants"}));
  EXPECT_EQ(expanded, std::vector<long>{1});
  QTest::mouseClick(Input(outline), Qt::LeftButton, Qt::NoModifier, RowMiddle(outline, 0, cell.Left + 8));
  EXPECT_EQ(Rows(outline), (std::vector<std::string>{"Animals", "Plants"}));
  EXPECT_EQ(collapsed, std::vector<long>{1});
}

TEST_F(OutlineTest, ADoubleClickAndTheKeysExpandTheSelectedItem) {
  TOutline* outline = MakeOutline();
  ShowForm();
  outline->SetFocus();
  const QPoint text = RowMiddle(outline, 0, 60);
  QTest::mouseClick(Input(outline), Qt::LeftButton, Qt::NoModifier, text);
  QTest::mouseDClick(Input(outline), Qt::LeftButton, Qt::NoModifier, text);
  EXPECT_EQ(Rows(outline).size(), 4u);
  QTest::keyClicks(Input(outline), "-");
  EXPECT_EQ(Rows(outline).size(), 2u);
  QTest::keyClicks(Input(outline), "*");
  EXPECT_EQ(Rows(outline), (std::vector<std::string>{"Animals", "Cats", "Lion", "Dogs", "Plants"}));
  // Down to Lion; collapsing its parent selects the parent.
  QTest::keyClick(Input(outline), Qt::Key_Down);
  QTest::keyClick(Input(outline), Qt::Key_Down);
  EXPECT_EQ(outline->SelectedItem(), 3);
  outline->Collapse(2);
  EXPECT_EQ(outline->SelectedItem(), 2);
  // Selecting a hidden item opens its parents.
  outline->FullCollapse();
  outline->SetSelectedItem(3);
  EXPECT_EQ(Rows(outline).size(), 5u);
  EXPECT_EQ(outline->SelectedItem(), 3);
}

TEST_F(OutlineTest, TheTreeIsDrawnWithBoxesLinesPicturesAndTheSelectedText) {
  TOutline* outline = MakeOutline();
  outline->FullExpand();
  outline->SetSelectedItem(2);
  ShowForm();
  QApplication::processEvents();
  const QImage image = outline->Widget()->grab().toImage();
  auto* area = qobject_cast<QAbstractScrollArea*>(outline->Widget());
  const QPoint origin = area->viewport()->geometry().topLeft();
  auto rgb = [&](int x, int y) { return QColor(image.pixel(origin + QPoint(x, y))).rgb() & 0xFFFFFF; };
  auto rgbOf = [](TColor c) { return ColorToQColor(c).rgb() & 0xFFFFFF; };
  auto count = [&](const TRect& r, TColor c) {
    int n = 0;
    for (int x = r.Left; x < r.Right; ++x)
      for (int y = r.Top; y < r.Bottom; ++y) n += rgb(x, y) == rgbOf(c) ? 1 : 0;
    return n;
  };
  // The selected item's text on the highlight; the others not.
  EXPECT_GT(count(outline->CellRect(0, 1), clHighlight), 20);
  EXPECT_EQ(count(outline->CellRect(0, 0), clHighlight), 0);
  // Dotted lines and boxes in the shadow colour on every row.
  for (int row = 0; row < 5; ++row) EXPECT_GT(count(outline->CellRect(0, row), clBtnShadow), 2) << row;
}

TEST_F(OutlineTest, FormTextKeepsTheSettingsAndTheOutlinesOwnData) {
  const std::string text =
      "object TestForm: TForm\n"
      "  Left = 10\n  Top = 10\n  Width = 400\n  Height = 300\n"
      "  object Outline1: TOutline\n"
      "    Left = 10\n    Top = 14\n    Width = 211\n    Height = 201\n"
      "    Options = [ooDrawFocusRect, ooStretchBitmaps]\n    ItemHeight = 13\n    TabOrder = 0\n"
      "    ItemSeparator = ' '\n"
      "    Data = {10}\n"
      "  end\n"
      "end\n";
  delete form;
  form = new TForm(Application);
  const TFormLoadResult result = LoadFormFile(form, text);
  ASSERT_TRUE(result.Read);
  for (const auto& e : result.Errors) ADD_FAILURE() << e;
  auto* outline = dynamic_cast<TOutline*>(form->FindComponent("Outline1"));
  ASSERT_NE(outline, nullptr);
  EXPECT_EQ(outline->Options(), (TOutlineOptions{ooDrawFocusRect, ooStretchBitmaps}));
  EXPECT_EQ(outline->ItemHeight(), 13);
  EXPECT_EQ(outline->ItemSeparator(), " ");
  const std::string written = WriteComponentToText(form);
  EXPECT_NE(written.find("    Options = [ooDrawFocusRect, ooStretchBitmaps]\r\n    ItemHeight = 13\r\n"),
            std::string::npos)
      << written;
  EXPECT_NE(written.find("    ItemSeparator = ' '\r\n"), std::string::npos) << written;
  EXPECT_NE(written.find("    Data = {10}\r\n"), std::string::npos) << written;
}

TEST_F(OutlineTest, ADirectoryOutlineShowsTheWayDownToItsFolder) {
  lumora::test::TTempDir dir;
  std::filesystem::create_directories(dir.Path() / "Alpha" / "Inner");
  std::filesystem::create_directories(dir.Path() / "beta");
  auto* outline = Make<TDirectoryOutline>("DirectoryOutline1", form, 8, 8, 250, 200);
  outline->SetTextCase(TOutlineTextCase::tcAsIs);
  int changes = 0;
  outline->OnChange = [&](TObject*) { ++changes; };
  outline->SetDirectory(dir.Path().string());
  EXPECT_EQ(outline->Directory(), dir.Path().string());
  EXPECT_EQ(changes, 1);
  const int selected = outline->SelectedItem();
  ASSERT_GT(selected, 0);
  EXPECT_EQ(outline->Item(selected).Text, dir.Path().filename().string());
  EXPECT_EQ(outline->Item(1).Text, "/");
  // Its folders show below it.
  const std::vector<std::string> rows = Rows(outline);
  const auto at = std::find(rows.begin(), rows.end(), dir.Path().filename().string());
  ASSERT_NE(at, rows.end());
  ASSERT_LT(at + 2, rows.end());
  EXPECT_EQ(*(at + 1), "Alpha");
  EXPECT_EQ(*(at + 2), "beta");
  // Clicking a folder makes it the directory.
  ShowForm();
  const int row = static_cast<int>(at - rows.begin()) + 1;
  outline->SetTopRow(std::max(0, row - 2));
  QApplication::processEvents();
  const TRect r = outline->CellRect(0, row);
  ASSERT_GT(r.Height(), 0);
  QTest::mouseClick(Input(outline), Qt::LeftButton, Qt::NoModifier, QPoint(r.Right - 20, (r.Top + r.Bottom) / 2));
  EXPECT_EQ(outline->Directory(), (dir.Path() / "Alpha").string());
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(outline->Item(outline->SelectedItem()).Text, "Alpha");
  const std::vector<std::string> opened = Rows(outline);
  EXPECT_NE(std::find(opened.begin(), opened.end(), "Inner"), opened.end());
  // A double click on it keeps it open.
  const int alphaRow = static_cast<int>(std::find(opened.begin(), opened.end(), "Alpha") - opened.begin());
  const TRect alpha = outline->CellRect(0, alphaRow);
  ASSERT_GT(alpha.Height(), 0);
  QTest::mouseDClick(Input(outline), Qt::LeftButton, Qt::NoModifier,
                     QPoint(alpha.Right - 20, (alpha.Top + alpha.Bottom) / 2));
  const std::vector<std::string> still = Rows(outline);
  EXPECT_NE(std::find(still.begin(), still.end(), "Inner"), still.end());
  EXPECT_EQ(outline->Directory(), (dir.Path() / "Alpha").string());
  // Names shown in lower case by default; the path keeps the real ones.
  outline->SetTextCase(TOutlineTextCase::tcLowerCase);
  EXPECT_EQ(outline->Item(outline->SelectedItem()).Text, "alpha");
  EXPECT_EQ(outline->Directory(), (dir.Path() / "Alpha").string());
  // A folder that does not exist changes nothing.
  outline->SetDirectory((dir.Path() / "missing").string());
  EXPECT_EQ(outline->Directory(), (dir.Path() / "Alpha").string());
}
