#pragma once
// Date-time pickers and month calendars.
// Callers include platform/vcl/ComCtrls.h.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"

#include <string>

class QDateTimeEdit;

LUMORA_ENUM(TDTCalAlignment, dtaLeft, dtaRight)
LUMORA_ENUM(TDateTimeKind, dtkDate, dtkTime)
LUMORA_ENUM(TDTDateMode, dmComboBox, dmUpDown)
LUMORA_ENUM(TDTDateFormat, dfShort, dfLong)
LUMORA_ENUM(TCalDayOfWeek, dowMonday, dowTuesday, dowWednesday, dowThursday, dowFriday, dowSaturday, dowSunday,
            dowLocaleDefault)
LUMORA_EVENT(TDTParseInputEvent, void(TObject* Sender, const std::string& UserString, TDateTime& DateAndTime,
                                      bool& AllowChange))

// The colours of a month calendar.
class TMonthCalColors : public TPersistent {
  LUMORA_CLASS(TMonthCalColors, TPersistent)
public:
  TMonthCalColors() = default;
  void Assign(TPersistent* source) override;
  TColor BackColor() const { return FBackColor; }
  void SetBackColor(TColor value) { FBackColor = value; }
  TColor TextColor() const { return FTextColor; }
  void SetTextColor(TColor value) { FTextColor = value; }
  TColor TitleBackColor() const { return FTitleBackColor; }
  void SetTitleBackColor(TColor value) { FTitleBackColor = value; }
  TColor TitleTextColor() const { return FTitleTextColor; }
  void SetTitleTextColor(TColor value) { FTitleTextColor = value; }
  TColor MonthBackColor() const { return FMonthBackColor; }
  void SetMonthBackColor(TColor value) { FMonthBackColor = value; }
  TColor TrailingTextColor() const { return FTrailingTextColor; }
  void SetTrailingTextColor(TColor value) { FTrailingTextColor = value; }

private:
  TColor FBackColor = clWindow;
  TColor FTextColor = clWindowText;
  TColor FTitleBackColor = clActiveCaption;
  TColor FTitleTextColor = clWhite;
  TColor FMonthBackColor = clWhite;
  TColor FTrailingTextColor = clInactiveCaptionText;
};

// What date-time pickers and month calendars share: the calendar's colours and the
// range of dates it offers (0: no limit).
class TCommonCalendar : public TWinControl {
  LUMORA_CLASS(TCommonCalendar, TWinControl)
public:
  explicit TCommonCalendar(TComponent* owner);
  ~TCommonCalendar() override;
  TMonthCalColors* CalColors() const { return FCalColors; }
  void SetCalColors(TMonthCalColors* value) { FCalColors->Assign(value); }
  TDateTime MaxDate() const { return FMaxDate; }
  void SetMaxDate(TDateTime value);
  TDateTime MinDate() const { return FMinDate; }
  void SetMinDate(TDateTime value);

protected:
  bool ClicksFromMouse() const override { return false; }

  TMonthCalColors* FCalColors;
  TDateTime FMaxDate;
  TDateTime FMinDate;
  bool FSyncing = false;  // the widget is being set from the control
};

// A date or a time in an edit, with a drop-down calendar or up-down arrows.
class TDateTimePicker : public TCommonCalendar {
  LUMORA_CLASS(TDateTimePicker, TCommonCalendar)
public:
  explicit TDateTimePicker(TComponent* owner);
  ~TDateTimePicker() override;
  // The whole value (days since 30 December 1899; the fraction is the time of day).
  TDateTime DateTime() const { return FDateTime; }
  void SetDateTime(TDateTime value);
  TDateTime Date() const { return FDateTime; }
  // Takes the day of `value`, keeping the time.
  void SetDate(TDateTime value);
  TDateTime Time() const { return FDateTime; }
  // Takes the time of `value`, keeping the day.
  void SetTime(TDateTime value);
  TDTCalAlignment CalAlignment() const { return FCalAlignment; }
  void SetCalAlignment(TDTCalAlignment value) { FCalAlignment = value; }
  bool Checked() const { return FChecked; }
  void SetChecked(bool value);
  TDTDateFormat DateFormat() const { return FDateFormat; }
  void SetDateFormat(TDTDateFormat value);
  TDTDateMode DateMode() const { return FDateMode; }
  void SetDateMode(TDTDateMode value);
  TDateTimeKind Kind() const { return FKind; }
  void SetKind(TDateTimeKind value);
  bool ParseInput() const { return FParseInput; }
  void SetParseInput(bool value) { FParseInput = value; }
  bool ShowCheckbox() const { return FShowCheckbox; }
  void SetShowCheckbox(bool value) { FShowCheckbox = value; }

  TNotifyEvent OnChange;
  TNotifyEvent OnCloseUp;
  TNotifyEvent OnDropDown;
  TDTParseInputEvent OnUserInput;

  void CreateWidget() override;
  void UpdateWidgetText() override;
  QDateTimeEdit* Editor() const;

protected:
  bool CanAutoSize(int& newWidth, int& newHeight) override;

private:
  TDateTime FDateTime;
  TDTCalAlignment FCalAlignment = dtaLeft;
  bool FChecked = true;
  TDTDateFormat FDateFormat = dfShort;
  TDTDateMode FDateMode = dmComboBox;
  TDateTimeKind FKind = dtkDate;
  bool FParseInput = false;
  bool FShowCheckbox = false;
};

// A month's calendar; the user picks a day.
class TMonthCalendar : public TCommonCalendar {
  LUMORA_CLASS(TMonthCalendar, TCommonCalendar)
public:
  explicit TMonthCalendar(TComponent* owner);
  ~TMonthCalendar() override;
  TDateTime Date() const { return FDate; }
  void SetDate(TDateTime value);
  TDateTime EndDate() const { return FEndDate; }
  void SetEndDate(TDateTime value) { FEndDate = value; }
  TCalDayOfWeek FirstDayOfWeek() const { return FFirstDayOfWeek; }
  void SetFirstDayOfWeek(TCalDayOfWeek value);
  int MaxSelectRange() const { return FMaxSelectRange; }
  void SetMaxSelectRange(int value) { FMaxSelectRange = value; }
  bool MultiSelect() const { return FMultiSelect; }
  void SetMultiSelect(bool value) { FMultiSelect = value; }
  bool ShowToday() const { return FShowToday; }
  void SetShowToday(bool value);
  bool ShowTodayCircle() const { return FShowTodayCircle; }
  void SetShowTodayCircle(bool value) { FShowTodayCircle = value; }
  bool WeekNumbers() const { return FWeekNumbers; }
  void SetWeekNumbers(bool value);

  void CreateWidget() override;
  void UpdateWidgetText() override;

private:
  TDateTime FDate;
  TDateTime FEndDate;
  TCalDayOfWeek FFirstDayOfWeek = dowLocaleDefault;
  int FMaxSelectRange = 31;
  bool FMultiSelect = false;
  bool FShowToday = true;
  bool FShowTodayCircle = true;
  bool FWeekNumbers = false;
};
