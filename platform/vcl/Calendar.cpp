#include "platform/vcl/Calendar.h"

#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Publish.h"

#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one
#include <QPainter>

#include "platform/vcl/Menus.h"

#include <algorithm>
#include <cmath>

namespace {

const QDate kDayZero(1899, 12, 30);

const char* const kShortDayNames[7] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};

// Qt counts Monday 1 to Sunday 7; the calendar counts Sunday 0 to Saturday 6.
int WeekDay(const QDate& d) { return d.dayOfWeek() % 7; }

}  // namespace

LUMORA_CLASS_IMPL(TCalendar) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode"});
  c.Property("BorderStyle", &TCalendar::BorderStyle, &TCalendar::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D"});
  // The date itself is never stored: a form shows the day it is opened, or the one set
  // by code.
  c.Property("Day", &TCalendar::Day, &TCalendar::SetDay).Stored(false);
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font"});
  c.Property("GridLineWidth", &TCalendar::GridLineWidth, &TCalendar::SetGridLineWidth).Default(1);
  c.Property("Month", &TCalendar::Month, &TCalendar::SetMonth).Stored(false);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("ReadOnly", &TCalendar::ReadOnly, &TCalendar::SetReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("StartOfWeek", &TCalendar::StartOfWeek, &TCalendar::SetStartOfWeek).NoDefault();
  PublishControlProperties(c, {"TabOrder", "TabStop"});
  c.Property("UseCurrentDate", &TCalendar::UseCurrentDate, &TCalendar::SetUseCurrentDate).Default(true);
  PublishControlProperties(c, {"Visible"});
  c.Property("Year", &TCalendar::Year, &TCalendar::SetYear).Stored(false);
  PublishControlProperties(c, {"OnClick"});
  c.Property("OnChange", &TCalendar::OnChange, &TCalendar::OnChange);
  PublishControlProperties(c, {"OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter",
                               "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnStartDock", "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TCalendar::TCalendar(TComponent* owner) : TCustomGrid(owner) {
  FColCount = 7;
  FRowCount = 7;
  FFixedCols = 0;
  FFixedRows = 1;
  FScrollBars = ssNone;
  FOptions.Exclude(goRangeSelect);
  FOptions.Include(goDrawFocusSelected);
  FCurrent = {0, 1};
  FAnchor = FCurrent;
  FTopLeft = FCurrent;
  FDate = QDate::currentDate();
  FitCells();
  UpdateCalendar();
}

TDateTime TCalendar::CalendarDate() const { return TDateTime(static_cast<double>(kDayZero.daysTo(FDate))); }

void TCalendar::SetCalendarDate(TDateTime value) {
  const double days = std::floor(value.Value);
  const QDate d = kDayZero.addDays(static_cast<qint64>(std::clamp(days, -693593.0, 2958465.0)));
  if (d.isValid()) ChangeDate(d);
}

// A day past the month's end becomes its last day, as when the month is shortened.
void TCalendar::SetDay(int value) {
  if (value <= 0) return;
  ChangeDate(QDate(FDate.year(), FDate.month(), std::min(value, FDate.daysInMonth())));
}

void TCalendar::SetMonth(int value) {
  if (value < 1 || value > 12) return;
  const QDate first(FDate.year(), value, 1);
  ChangeDate(QDate(first.year(), value, std::min(FDate.day(), first.daysInMonth())));
}

void TCalendar::SetYear(int value) {
  if (value < 1 || value > 9999) return;
  const QDate first(value, FDate.month(), 1);
  ChangeDate(QDate(value, FDate.month(), std::min(FDate.day(), first.daysInMonth())));
}

void TCalendar::SetStartOfWeek(int value) {
  if (value < 0 || value > 6) return;
  FStartOfWeek = value;
  UpdateCalendar();
}

void TCalendar::SetGridLineWidth(int value) {
  TCustomGrid::SetGridLineWidth(value);
  FitCells();
  UpdateScrollBars();
  InvalidateGrid();
}

void TCalendar::SetUseCurrentDate(bool value) {
  FUseCurrentDate = value;
  if (value) ChangeDate(QDate::currentDate());
}

void TCalendar::ChangeDate(const QDate& value) {
  if (!value.isValid() || value == FDate) return;
  FDate = value;
  UpdateCalendar();
  Change();
}

void TCalendar::Change() {
  if (OnChange && !Loading(this)) OnChange(this);
}

int TCalendar::MonthOffset() const { return (WeekDay(QDate(FDate.year(), FDate.month(), 1)) - FStartOfWeek + 7) % 7; }

int TCalendar::DayAt(int aCol, int aRow) const {
  if (aRow < 1 || aRow >= 7 || aCol < 0 || aCol >= 7) return 0;
  const int day = (aRow - 1) * 7 + aCol - MonthOffset() + 1;
  return day >= 1 && day <= FDate.daysInMonth() ? day : 0;
}

std::string TCalendar::CellText(int aCol, int aRow) const {
  if (aRow == 0) return aCol >= 0 && aCol < 7 ? kShortDayNames[(FStartOfWeek + aCol) % 7] : std::string();
  const int day = DayAt(aCol, aRow);
  return day > 0 ? std::to_string(day) : std::string();
}

void TCalendar::UpdateCalendar() {
  const int cell = FDate.day() - 1 + MonthOffset();
  FUpdating = true;
  FocusCell(cell % 7, cell / 7 + 1, true);
  FUpdating = false;
  InvalidateGrid();
}

bool TCalendar::SelectCell(int aCol, int aRow) {
  if ((!FUpdating && FReadOnly) || DayAt(aCol, aRow) == 0) return false;
  return TCustomGrid::SelectCell(aCol, aRow);
}

// The cell clicked or reached by the keys is the new day.
void TCalendar::Click() {
  if (FUpdating) return;
  TCustomGrid::Click();
  if (const int day = DayAt(Col(), Row()); day > 0) SetDay(day);
}

void TCalendar::DrawCell(QPainter& painter, int aCol, int aRow, const TRect& rect, TGridDrawState state) {
  const std::string text = CellText(aCol, aRow);
  if (!text.empty()) {
    const bool highlighted = state.Contains(gdSelected) && !state.Contains(gdFixed);
    painter.setPen(Sys(highlighted ? clHighlightText : FFont->Color()));
    painter.setFont(FFont->Handle());
    painter.drawText(QRect(rect.Left, rect.Top, rect.Width(), rect.Height()), Qt::AlignCenter,
                     QString::fromLatin1(text.c_str()));
  }
  TCustomGrid::DrawCell(painter, aCol, aRow, rect, state);
}

// Seven columns and seven rows share the inside of the frame, lines between them. The
// size comes from the bounds, which the scroll area's viewport may not have taken yet.
void TCalendar::FitCells() {
  const int frame = FBorderStyle == BorderStyleOf(bsSingle) ? (FCtl3D ? 2 : 1) : 0;
  FDefaultColWidth = std::max(0, (FWidth - 2 * frame - 6 * FGridLineWidth) / 7);
  FDefaultRowHeight = std::max(0, (FHeight - 2 * frame - 6 * FGridLineWidth) / 7);
}

void TCalendar::Resize() {
  FitCells();
  TCustomGrid::Resize();
  InvalidateGrid();
}

void TCalendar::Loaded() {
  TCustomGrid::Loaded();
  if (FUseCurrentDate) FDate = QDate::currentDate();
  FitCells();
  UpdateCalendar();
}
