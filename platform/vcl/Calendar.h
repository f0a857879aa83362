#pragma once
// A month calendar on a grid: a row of day names over six weeks, the chosen day the
// current cell. Clicking a day or moving with the arrow keys chooses it; the month and
// the year change only through Month, Year, CalendarDate and the Next/Prev operations.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Grids.h"

#include <QDate>

#include <string>

class TCalendar : public TCustomGrid {
  LUMORA_CLASS(TCalendar, TCustomGrid)
public:
  explicit TCalendar(TComponent* owner);

  // Days since 30 December 1899, as dates are kept in form files.
  TDateTime CalendarDate() const;
  void SetCalendarDate(TDateTime value);
  int Day() const { return FDate.day(); }
  void SetDay(int value);
  int Month() const { return FDate.month(); }
  void SetMonth(int value);
  int Year() const { return FDate.year(); }
  void SetYear(int value);
  bool ReadOnly() const { return FReadOnly; }
  void SetReadOnly(bool value) { FReadOnly = value; }
  // The first column's day: 0 Sunday to 6 Saturday.
  int StartOfWeek() const { return FStartOfWeek; }
  void SetStartOfWeek(int value);
  // Thicker or thinner lines share the area out again.
  void SetGridLineWidth(int value);
  bool UseCurrentDate() const { return FUseCurrentDate; }
  void SetUseCurrentDate(bool value);

  // The text of a cell: a day name in the first row, a day number or nothing below.
  std::string CellText(int aCol, int aRow) const;
  // The day a cell holds, 0 when it holds none.
  int DayAt(int aCol, int aRow) const;
  int DaysThisMonth() const { return FDate.daysInMonth(); }
  void NextMonth() { ChangeDate(FDate.addMonths(1)); }
  void PrevMonth() { ChangeDate(FDate.addMonths(-1)); }
  void NextYear() { ChangeDate(FDate.addYears(1)); }
  void PrevYear() { ChangeDate(FDate.addYears(-1)); }
  // Puts the chosen day's cell current and redraws.
  void UpdateCalendar();

  TNotifyEvent OnChange;

  void DrawCell(QPainter& painter, int aCol, int aRow, const TRect& rect, TGridDrawState state) override;
  bool SelectCell(int aCol, int aRow) override;
  void Click() override;

protected:
  void Resize() override;
  void Loaded() override;
  virtual void Change();

private:
  void ChangeDate(const QDate& value);
  // The column of the month's first day in the first week row.
  int MonthOffset() const;
  void FitCells();

  QDate FDate;
  bool FReadOnly = false;
  int FStartOfWeek = 1;
  bool FUseCurrentDate = true;
  bool FUpdating = false;
};
