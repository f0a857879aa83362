// Month calendars driven by the mouse and the keys, drawn, and read from form text.
#include "platform/vcl/Calendar.h"

#include "platform/rtti/Registry.h"
#include "platform/rtti/Writer.h"
#include "platform/vcl/FormRender.h"
#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QImage>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class CalendarTest : public lumora::test::TFormFixture {
protected:
  void SetUp() override {
    TFormFixture::SetUp();
    if (!GetClass("TCalendar")) RegisterClass(TCalendar::StaticClass());
  }
  // A calendar on March 2021, whose first day is a Monday.
  TCalendar* MakeCalendar() {
    auto* cal = Make<TCalendar>("Calendar1", form, 8, 8, 322, 162);
    cal->SetUseCurrentDate(false);
    cal->SetYear(2021);
    cal->SetMonth(3);
    cal->SetDay(10);
    return cal;
  }
  static QPoint Middle(TCalendar* cal, int col, int row) {
    const TRect r = cal->CellRect(col, row);
    return QPoint((r.Left + r.Right) / 2, (r.Top + r.Bottom) / 2);
  }
};

}  // namespace

TEST_F(CalendarTest, DayNamesHeadTheColumnsFromTheFirstDayOfTheWeek) {
  TCalendar* cal = MakeCalendar();
  // Monday first by default: the 1st of March 2021 opens the first week row.
  EXPECT_EQ(cal->StartOfWeek(), 1);
  EXPECT_EQ(cal->CellText(0, 0), "Mon");
  EXPECT_EQ(cal->CellText(6, 0), "Sun");
  EXPECT_EQ(cal->CellText(0, 1), "1");
  EXPECT_EQ(cal->CellText(2, 2), "10");
  EXPECT_EQ(cal->CellText(2, 5), "31");
  EXPECT_EQ(cal->CellText(3, 5), "");
  EXPECT_EQ(cal->Col(), 2);
  EXPECT_EQ(cal->Row(), 2);
  // Sunday first moves every day one column right.
  cal->SetStartOfWeek(0);
  EXPECT_EQ(cal->CellText(0, 0), "Sun");
  EXPECT_EQ(cal->CellText(0, 1), "");
  EXPECT_EQ(cal->CellText(1, 1), "1");
  EXPECT_EQ(cal->Col(), 3);
  EXPECT_EQ(cal->Day(), 10);
}

TEST_F(CalendarTest, AClickOnADayChoosesItAndAnEmptyCellIsRefused) {
  TCalendar* cal = MakeCalendar();
  int changes = 0;
  cal->OnChange = [&](TObject*) { ++changes; };
  ShowForm();
  QTest::mouseClick(cal->InputWidget(), Qt::LeftButton, Qt::NoModifier, Middle(cal, 4, 3));
  EXPECT_EQ(cal->Day(), 19);
  EXPECT_EQ(changes, 1);
  // Past the 31st there is no day: the choice stays.
  QTest::mouseClick(cal->InputWidget(), Qt::LeftButton, Qt::NoModifier, Middle(cal, 5, 5));
  EXPECT_EQ(cal->Day(), 19);
  EXPECT_EQ(changes, 1);
  // A read-only calendar keeps its day.
  cal->SetReadOnly(true);
  QTest::mouseClick(cal->InputWidget(), Qt::LeftButton, Qt::NoModifier, Middle(cal, 0, 1));
  EXPECT_EQ(cal->Day(), 19);
}

TEST_F(CalendarTest, ArrowKeysWalkTheDaysWithinTheMonth) {
  TCalendar* cal = MakeCalendar();
  ShowForm();
  cal->SetFocus();
  QTest::keyClick(cal->InputWidget(), Qt::Key_Right);
  EXPECT_EQ(cal->Day(), 11);
  QTest::keyClick(cal->InputWidget(), Qt::Key_Down);
  EXPECT_EQ(cal->Day(), 18);
  QTest::keyClick(cal->InputWidget(), Qt::Key_Up);
  QTest::keyClick(cal->InputWidget(), Qt::Key_Up);
  EXPECT_EQ(cal->Day(), 4);
  // Above the first week is the row of names: the day stays.
  QTest::keyClick(cal->InputWidget(), Qt::Key_Up);
  EXPECT_EQ(cal->Day(), 4);
  EXPECT_EQ(cal->Month(), 3);
}

TEST_F(CalendarTest, MonthsAndYearsMoveAndKeepTheDayInsideTheMonth) {
  TCalendar* cal = MakeCalendar();
  cal->SetDay(31);
  cal->NextMonth();
  EXPECT_EQ(cal->Month(), 4);
  EXPECT_EQ(cal->Day(), 30);
  cal->SetMonth(2);
  EXPECT_EQ(cal->Day(), 28);
  EXPECT_EQ(cal->DaysThisMonth(), 28);
  cal->PrevYear();
  EXPECT_EQ(cal->Year(), 2020);
  cal->SetDay(29);
  EXPECT_EQ(cal->Day(), 29);
  // Dates as form files keep them: days since the last days of 1899.
  EXPECT_DOUBLE_EQ(cal->CalendarDate().Value, 43890.0);
  cal->SetCalendarDate(TDateTime(36526.0));
  EXPECT_EQ(cal->Year(), 2000);
  EXPECT_EQ(cal->Month(), 1);
  EXPECT_EQ(cal->Day(), 1);
  // Nonsense is left alone.
  cal->SetMonth(13);
  cal->SetDay(0);
  EXPECT_EQ(cal->Month(), 1);
  EXPECT_EQ(cal->Day(), 1);
}

TEST_F(CalendarTest, TheChosenDayIsHighlightedAndTheNamesSitOnButtonFace) {
  TCalendar* cal = MakeCalendar();
  ShowForm();
  QApplication::processEvents();
  const QImage image = cal->Widget()->grab().toImage();
  auto* area = qobject_cast<QAbstractScrollArea*>(cal->Widget());
  const QPoint origin = area->viewport()->geometry().topLeft();
  auto at = [&](int x, int y) { return QColor(image.pixel(origin + QPoint(x, y))).rgb() & 0xFFFFFF; };
  auto rgbOf = [](TColor c) { return ColorToQColor(c).rgb() & 0xFFFFFF; };
  // Seven columns share the width, thicker lines or not.
  EXPECT_EQ(cal->CellRect(6, 6).Right, cal->CellRect(0, 0).Width() * 7 + 6);
  const int thin = cal->CellRect(0, 0).Width();
  cal->SetGridLineWidth(3);
  EXPECT_EQ(cal->CellRect(0, 0).Width(), (322 - 4 - 18) / 7);
  EXPECT_LT(cal->CellRect(0, 0).Width(), thin);
  cal->SetGridLineWidth(1);
  const TRect name = cal->CellRect(0, 0);
  EXPECT_EQ(at(name.Left + 3, name.Top + 3), rgbOf(clBtnFace));
  const TRect chosen = cal->CellRect(2, 2);
  EXPECT_EQ(at(chosen.Left + 3, chosen.Top + 3), rgbOf(clHighlight));
  const TRect other = cal->CellRect(3, 2);
  EXPECT_EQ(at(other.Left + 3, other.Top + 3), rgbOf(clWindow));
  // The day's number is written in the highlighted cell.
  int ink = 0;
  for (int x = chosen.Left; x < chosen.Right; ++x) {
    for (int y = chosen.Top; y < chosen.Bottom; ++y) ink += at(x, y) == rgbOf(clHighlightText) ? 1 : 0;
  }
  EXPECT_GT(ink, 5);
}

TEST_F(CalendarTest, FormTextKeepsTheSettingsButNeverTheDate) {
  const std::string text =
      "object TestForm: TForm\n"
      "  Left = 10\n  Top = 10\n  Width = 400\n  Height = 300\n"
      "  object Calendar1: TCalendar\n"
      "    Left = 22\n    Top = 41\n    Width = 318\n    Height = 136\n"
      "    ReadOnly = True\n    StartOfWeek = 0\n    TabOrder = 0\n    UseCurrentDate = False\n"
      "  end\n"
      "end\n";
  delete form;
  form = new TForm(Application);
  const TFormLoadResult result = LoadFormFile(form, text);
  ASSERT_TRUE(result.Read);
  for (const auto& e : result.Errors) ADD_FAILURE() << e;
  auto* cal = dynamic_cast<TCalendar*>(form->FindComponent("Calendar1"));
  ASSERT_NE(cal, nullptr);
  EXPECT_EQ(cal->StartOfWeek(), 0);
  EXPECT_TRUE(cal->ReadOnly());
  EXPECT_FALSE(cal->UseCurrentDate());
  EXPECT_EQ(cal->CellText(0, 0), "Sun");
  const std::string written = WriteComponentToText(form);
  EXPECT_NE(written.find("StartOfWeek = 0"), std::string::npos) << written;
  EXPECT_NE(written.find("ReadOnly = True"), std::string::npos) << written;
  EXPECT_NE(written.find("UseCurrentDate = False"), std::string::npos) << written;
  EXPECT_EQ(written.find("Day ="), std::string::npos) << written;
  EXPECT_EQ(written.find("Year ="), std::string::npos) << written;
}
