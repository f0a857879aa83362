#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/comctrls/ComCtrlsShared.h"

#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ActnList.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/Publish.h"
#include "platform/rtti/Writer.h"

#include <QCalendarWidget>
#include <QDateTimeEdit>

#include <algorithm>
#include <cmath>

// ---------------------------------------------------------------------------------------
// Dates

namespace {

const QDate kDayZero(1899, 12, 30);

// Days since 30 December 1899 and the fraction of the day, kept within the calendar.
QDateTime ToQDateTime(double value) {
  if (!std::isfinite(value)) value = 0;
  value = std::clamp(value, -693593.0, 2958465.99999);
  const double days = std::floor(value);
  qint64 ms = std::llround((value - days) * 86400000.0);
  ms = std::clamp<qint64>(ms, 0, 86399999);
  return QDateTime(kDayZero.addDays(static_cast<qint64>(days)), QTime(0, 0).addMSecs(static_cast<int>(ms)));
}

double FromQDateTime(const QDateTime& d) {
  return static_cast<double>(kDayZero.daysTo(d.date())) + d.time().msecsSinceStartOfDay() / 86400000.0;
}

QString DateFormatOf(TDTDateFormat format) {
  return format == dfLong ? QStringLiteral("dddd, MMMM dd, yyyy") : QStringLiteral("M/d/yyyy");
}

}  // namespace

LUMORA_CLASS_IMPL(TMonthCalColors) {
  c.Property("BackColor", &TMonthCalColors::BackColor, &TMonthCalColors::SetBackColor).Default(clWindow);
  c.Property("TextColor", &TMonthCalColors::TextColor, &TMonthCalColors::SetTextColor).Default(clWindowText);
  c.Property("TitleBackColor", &TMonthCalColors::TitleBackColor, &TMonthCalColors::SetTitleBackColor).Default(clActiveCaption);
  c.Property("TitleTextColor", &TMonthCalColors::TitleTextColor, &TMonthCalColors::SetTitleTextColor).Default(clWhite);
  c.Property("MonthBackColor", &TMonthCalColors::MonthBackColor, &TMonthCalColors::SetMonthBackColor).Default(clWhite);
  c.Property("TrailingTextColor", &TMonthCalColors::TrailingTextColor, &TMonthCalColors::SetTrailingTextColor)
      .Default(clInactiveCaptionText);
}

void TMonthCalColors::Assign(TPersistent* source) {
  if (auto* c = dynamic_cast<TMonthCalColors*>(source)) {
    FBackColor = c->FBackColor;
    FTextColor = c->FTextColor;
    FTitleBackColor = c->FTitleBackColor;
    FTitleTextColor = c->FTitleTextColor;
    FMonthBackColor = c->FMonthBackColor;
    FTrailingTextColor = c->FTrailingTextColor;
    return;
  }
  TPersistent::Assign(source);
}

LUMORA_CLASS_IMPL(TCommonCalendar) {}

TCommonCalendar::TCommonCalendar(TComponent* owner) : TWinControl(owner) {
  FTabStop = true;
  FColor = clWindow;
  FCalColors = new TMonthCalColors();
}

TCommonCalendar::~TCommonCalendar() {
  DestroyWidget();
  delete FCalColors;
}

void TCommonCalendar::SetMaxDate(TDateTime value) {
  FMaxDate = value;
  UpdateWidgetText();
}

void TCommonCalendar::SetMinDate(TDateTime value) {
  FMinDate = value;
  UpdateWidgetText();
}

// ---- TDateTimePicker

LUMORA_CLASS_IMPL(TDateTimePicker) {
  PublishControlProperties(c, {"Anchors", "BiDiMode"});
  c.Property("CalAlignment", &TDateTimePicker::CalAlignment, &TDateTimePicker::SetCalAlignment).NoDefault();
  c.Property("CalColors", &TDateTimePicker::CalColors, &TDateTimePicker::SetCalColors);
  PublishControlProperties(c, {"Constraints"});
  c.Property("Date", &TDateTimePicker::Date, &TDateTimePicker::SetDate);
  c.Property("Time", &TDateTimePicker::Time, &TDateTimePicker::SetTime);
  c.Property("ShowCheckbox", &TDateTimePicker::ShowCheckbox, &TDateTimePicker::SetShowCheckbox).Default(false);
  c.Property("Checked", &TDateTimePicker::Checked, &TDateTimePicker::SetChecked).Default(true);
  PublishControlProperties(c, {"Color"});
  c.Property("DateFormat", &TDateTimePicker::DateFormat, &TDateTimePicker::SetDateFormat).NoDefault();
  c.Property("DateMode", &TDateTimePicker::DateMode, &TDateTimePicker::SetDateMode).NoDefault();
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font", "ImeMode", "ImeName"});
  c.Property("Kind", &TDateTimePicker::Kind, &TDateTimePicker::SetKind).NoDefault();
  c.Property("MaxDate", &TDateTimePicker::MaxDate, &TDateTimePicker::SetMaxDate);
  c.Property("MinDate", &TDateTimePicker::MinDate, &TDateTimePicker::SetMinDate);
  c.Property("ParseInput", &TDateTimePicker::ParseInput, &TDateTimePicker::SetParseInput).NoDefault();
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentFont", "ParentShowHint", "PopupMenu",
                               "ShowHint", "TabOrder", "TabStop", "Visible", "OnClick"});
  c.Property("OnCloseUp", &TDateTimePicker::OnCloseUp, &TDateTimePicker::OnCloseUp);
  c.Property("OnChange", &TDateTimePicker::OnChange, &TDateTimePicker::OnChange);
  c.Property("OnDropDown", &TDateTimePicker::OnDropDown, &TDateTimePicker::OnDropDown);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit",
                               "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnStartDock", "OnStartDrag"});
  c.Property("OnUserInput", &TDateTimePicker::OnUserInput, &TDateTimePicker::OnUserInput);
  c.Property("Color").Default(clWindow);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDateTimePicker::TDateTimePicker(TComponent* owner) : TCommonCalendar(owner) {
  FWidth = 186;
  FHeight = 25;
  FParentColor = false;
  FDateTime = FromQDateTime(QDateTime::currentDateTime());
}

TDateTimePicker::~TDateTimePicker() { DestroyWidget(); }

QDateTimeEdit* TDateTimePicker::Editor() const { return qobject_cast<QDateTimeEdit*>(Widget()); }

void TDateTimePicker::CreateWidget() {
  auto* e = new QDateTimeEdit();
  e->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(e, &QDateTimeEdit::dateTimeChanged, e, [this](const QDateTime& value) {
    TMessageLoop::Instance().Guarded([&] {
      if (FSyncing) return;
      // The part the control does not show stays as it was.
      const double edited = FromQDateTime(value);
      const double day = std::floor(FDateTime);
      const double next = FKind == dtkDate ? std::floor(edited) + (FDateTime - day) : day + (edited - std::floor(edited));
      if (next == FDateTime) return;
      FDateTime = next;
      if (OnChange && !Loading(this)) OnChange(this);
    });
  });
  AdoptWidget(e);
}

void TDateTimePicker::UpdateWidgetText() {
  QDateTimeEdit* e = Editor();
  if (!e) return;
  FSyncing = true;
  if (FMinDate != 0 || FMaxDate != 0) {
    e->setDateTimeRange(FMinDate != 0 ? ToQDateTime(FMinDate) : ToQDateTime(-693593),
                        FMaxDate != 0 ? ToQDateTime(FMaxDate) : ToQDateTime(2958465.99));
  }
  e->setDisplayFormat(FKind == dtkTime ? QStringLiteral("h:mm:ss AP") : DateFormatOf(FDateFormat));
  e->setCalendarPopup(FKind == dtkDate && FDateMode == dmComboBox);
  e->setDateTime(ToQDateTime(FDateTime));
  FSyncing = false;
}

bool TDateTimePicker::CanAutoSize(int&, int&) { return false; }

void TDateTimePicker::SetDateTime(TDateTime value) {
  if (FDateTime == value) return;
  FDateTime = value;
  UpdateWidgetText();
}

void TDateTimePicker::SetDate(TDateTime value) {
  SetDateTime(std::floor(static_cast<double>(value)) + (FDateTime - std::floor(static_cast<double>(FDateTime))));
}

void TDateTimePicker::SetTime(TDateTime value) {
  const double v = value;
  SetDateTime(std::floor(static_cast<double>(FDateTime)) + (v - std::floor(v)));
}

void TDateTimePicker::SetChecked(bool value) { FChecked = value; }

void TDateTimePicker::SetDateFormat(TDTDateFormat value) {
  FDateFormat = value;
  UpdateWidgetText();
}

void TDateTimePicker::SetDateMode(TDTDateMode value) {
  FDateMode = value;
  UpdateWidgetText();
}

void TDateTimePicker::SetKind(TDateTimeKind value) {
  FKind = value;
  UpdateWidgetText();
}

// ---- TMonthCalendar

LUMORA_CLASS_IMPL(TMonthCalendar) {
  PublishControlProperties(c, {"Align", "Anchors", "AutoSize", "BorderWidth", "BiDiMode"});
  c.Property("CalColors", &TMonthCalendar::CalColors, &TMonthCalendar::SetCalColors);
  PublishControlProperties(c, {"Constraints"});
  c.Property("MultiSelect", &TMonthCalendar::MultiSelect, &TMonthCalendar::SetMultiSelect).Default(false);
  c.Property("Date", &TMonthCalendar::Date, &TMonthCalendar::SetDate);
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled"});
  c.Property("EndDate", &TMonthCalendar::EndDate, &TMonthCalendar::SetEndDate);
  c.Property("FirstDayOfWeek", &TMonthCalendar::FirstDayOfWeek, &TMonthCalendar::SetFirstDayOfWeek).Default(dowLocaleDefault);
  PublishControlProperties(c, {"Font", "ImeMode", "ImeName"});
  c.Property("MaxDate", &TMonthCalendar::MaxDate, &TMonthCalendar::SetMaxDate);
  c.Property("MaxSelectRange", &TMonthCalendar::MaxSelectRange, &TMonthCalendar::SetMaxSelectRange).Default(31);
  c.Property("MinDate", &TMonthCalendar::MinDate, &TMonthCalendar::SetMinDate);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentFont", "ParentShowHint", "PopupMenu", "ShowHint"});
  c.Property("ShowToday", &TMonthCalendar::ShowToday, &TMonthCalendar::SetShowToday).Default(true);
  c.Property("ShowTodayCircle", &TMonthCalendar::ShowTodayCircle, &TMonthCalendar::SetShowTodayCircle).Default(true);
  PublishControlProperties(c, {"TabOrder", "TabStop", "Visible"});
  c.Property("WeekNumbers", &TMonthCalendar::WeekNumbers, &TMonthCalendar::SetWeekNumbers).Default(false);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag",
                               "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnStartDock",
                               "OnStartDrag"});
  c.Property("TabStop").Default(true);
}

TMonthCalendar::TMonthCalendar(TComponent* owner) : TCommonCalendar(owner) {
  FWidth = 191;
  FHeight = 154;
  FDate = std::floor(FromQDateTime(QDateTime::currentDateTime()));
}

TMonthCalendar::~TMonthCalendar() { DestroyWidget(); }

void TMonthCalendar::CreateWidget() {
  auto* cal = new QCalendarWidget();
  cal->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(cal, &QCalendarWidget::selectionChanged, cal, [this, cal] {
    TMessageLoop::Instance().Guarded([&] {
      if (FSyncing) return;
      FDate = FromQDateTime(QDateTime(cal->selectedDate(), QTime(0, 0))) + (FDate - std::floor(static_cast<double>(FDate)));
      FEndDate = FDate;
      Click();
    });
  });
  AdoptWidget(cal);
}

void TMonthCalendar::UpdateWidgetText() {
  auto* cal = qobject_cast<QCalendarWidget*>(Widget());
  if (!cal) return;
  FSyncing = true;
  if (FMinDate != 0) cal->setMinimumDate(ToQDateTime(FMinDate).date());
  if (FMaxDate != 0) cal->setMaximumDate(ToQDateTime(FMaxDate).date());
  cal->setSelectedDate(ToQDateTime(FDate).date());
  cal->setVerticalHeaderFormat(FWeekNumbers ? QCalendarWidget::ISOWeekNumbers : QCalendarWidget::NoVerticalHeader);
  if (FFirstDayOfWeek != dowLocaleDefault) cal->setFirstDayOfWeek(static_cast<Qt::DayOfWeek>(FFirstDayOfWeek + 1));
  FSyncing = false;
}

void TMonthCalendar::SetDate(TDateTime value) {
  FDate = value;
  UpdateWidgetText();
}

void TMonthCalendar::SetFirstDayOfWeek(TCalDayOfWeek value) {
  FFirstDayOfWeek = value;
  UpdateWidgetText();
}

void TMonthCalendar::SetShowToday(bool value) { FShowToday = value; }

void TMonthCalendar::SetWeekNumbers(bool value) {
  FWeekNumbers = value;
  UpdateWidgetText();
}
