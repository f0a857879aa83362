// The older header: sections drawn side by side and widened by dragging their lines.
#include "platform/vcl/Header.h"

#include "platform/rtti/Writer.h"
#include "platform/vcl/FormRender.h"
#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class HeaderTest : public lumora::test::TFormFixture {
protected:
  THeader* MakeHeader() {
    auto* header = Make<THeader>("Header1", form, 8, 8, 240, 20);
    header->Sections()->Add("Name");
    header->Sections()->Add("Size");
    header->SetSectionWidth(0, 100);
    header->SetSectionWidth(1, 60);
    return header;
  }
  // Presses at `from`, moves with the button held to `to`, releases there.
  static void Drag(QWidget* w, QPoint from, QPoint to) {
    QTest::mousePress(w, Qt::LeftButton, Qt::NoModifier, from);
    QMouseEvent move(QEvent::MouseMove, QPointF(to), w->mapToGlobal(QPointF(to)), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(w, &move);
    QTest::mouseRelease(w, Qt::LeftButton, Qt::NoModifier, to);
  }
};

}  // namespace

TEST_F(HeaderTest, DraggingTheLineAfterASectionWidensIt) {
  THeader* header = MakeHeader();
  int sizing = 0;
  std::pair<int, int> sized{-1, -1};
  header->OnSizing = [&](TObject*, int, int) { ++sizing; };
  header->OnSized = [&](TObject*, int section, int width) { sized = {section, width}; };
  ShowForm();
  Drag(header->Widget(), QPoint(100, 10), QPoint(130, 10));
  EXPECT_EQ(header->SectionWidth(0), 130);
  EXPECT_EQ(header->SectionWidth(1), 60);
  EXPECT_GE(sizing, 1);
  EXPECT_EQ(sized, (std::pair<int, int>{0, 130}));
  // Inside a section nothing is sized.
  Drag(header->Widget(), QPoint(50, 10), QPoint(70, 10));
  EXPECT_EQ(header->SectionWidth(0), 130);
  // Nor when resizing is off.
  header->SetAllowResize(false);
  Drag(header->Widget(), QPoint(190, 10), QPoint(150, 10));
  EXPECT_EQ(header->SectionWidth(1), 60);
}

TEST_F(HeaderTest, SectionsAreCaptionsOnButtonFaceWithLinesBetween) {
  THeader* header = MakeHeader();
  ShowForm();
  const QImage image = header->Widget()->grab().toImage();
  auto rgb = [&](int x, int y) { return QColor(image.pixel(x, y)).rgb() & 0xFFFFFF; };
  auto rgbOf = [](TColor c) { return ColorToQColor(c).rgb() & 0xFFFFFF; };
  EXPECT_EQ(rgb(220, 10), rgbOf(clBtnFace));
  // Text in the first section, none past the last.
  int ink = 0;
  for (int x = 2; x < 98; ++x)
    for (int y = 2; y < 18; ++y) ink += rgb(x, y) == rgbOf(clBtnText) ? 1 : 0;
  EXPECT_GT(ink, 10);
  int past = 0;
  for (int x = 165; x < 236; ++x)
    for (int y = 2; y < 18; ++y) past += rgb(x, y) == rgbOf(clBtnText) ? 1 : 0;
  EXPECT_EQ(past, 0);
  // A dark line ends each section.
  bool line = false;
  for (int x = 96; x <= 101; ++x) line = line || rgb(x, 10) == rgbOf(clBtnShadow) || rgb(x, 10) == rgbOf(clWindowFrame);
  EXPECT_TRUE(line);
}

TEST_F(HeaderTest, SectionsAndTheirWidthsAreReadAndWrittenBack) {
  const std::string text =
      "object TestForm: TForm\n"
      "  Left = 10\n  Top = 10\n  Width = 400\n  Height = 300\n"
      "  object Header1: THeader\n    Left = 8\n    Top = 180\n    Width = 200\n    Height = 20\n"
      "    Sections.Sections = (\n      #0'48'#0'Name'\n      #0'64'#0'Size')\n  end\n"
      "end\n";
  delete form;
  form = new TForm(Application);
  const TFormLoadResult result = LoadFormFile(form, text);
  ASSERT_TRUE(result.Read);
  for (const auto& e : result.Errors) ADD_FAILURE() << e;
  auto* header = dynamic_cast<THeader*>(form->FindComponent("Header1"));
  ASSERT_NE(header, nullptr);
  ASSERT_EQ(header->Sections()->Count(), 2);
  EXPECT_EQ(header->Sections()->Strings(1), "Size");
  EXPECT_EQ(header->SectionWidth(0), 48);
  EXPECT_EQ(header->SectionWidth(1), 64);
  header->SetSectionWidth(1, 70);
  const std::string written = WriteComponentToText(form);
  EXPECT_NE(written.find("#0'48'#0'Name'"), std::string::npos) << written;
  EXPECT_NE(written.find("#0'70'#0'Size'"), std::string::npos) << written;
}
