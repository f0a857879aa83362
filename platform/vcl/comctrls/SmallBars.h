#pragma once
// Progress bars, track bars, up-down buttons and hot keys.
// Callers include platform/vcl/ComCtrls.h.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"


class QSlider;

LUMORA_ENUM(TProgressBarOrientation, pbHorizontal, pbVertical)

// A bar that fills from Min to Max as Position grows, in blocks unless Smooth.
class TProgressBar : public TWinControl {
  LUMORA_CLASS(TProgressBar, TWinControl)
public:
  explicit TProgressBar(TComponent* owner);
  int Min() const { return FMin; }
  void SetMin(int value);
  int Max() const { return FMax; }
  void SetMax(int value);
  int Position() const { return FPosition; }
  void SetPosition(int value);
  int Step() const { return FStep; }
  void SetStep(int value) { FStep = value; }
  bool Smooth() const { return FSmooth; }
  void SetSmooth(bool value);
  TProgressBarOrientation Orientation() const { return FOrientation; }
  void SetOrientation(TProgressBarOrientation value);
  // Advances by Step (by `delta`), wrapping to Min past Max as the platform's bar does.
  void StepIt();
  void StepBy(int delta);
  // The part of the bar that shows as done, in pixels along the bar.
  int FilledLength() const;

  void Paint(QPainter& painter) override;
  void CreateWidget() override;

private:
  int FMin = 0;
  int FMax = 100;
  int FPosition = 0;
  int FStep = 10;
  bool FSmooth = false;
  TProgressBarOrientation FOrientation = pbHorizontal;
};

LUMORA_ENUM(TTrackBarOrientation, trHorizontal, trVertical)
LUMORA_ENUM(TTickMark, tmBottomRight, tmTopLeft, tmBoth)
LUMORA_ENUM(TTickStyle, tsNone, tsAuto, tsManual)

// A slider over a range, with tick marks.
class TTrackBar : public TWinControl {
  LUMORA_CLASS(TTrackBar, TWinControl)
public:
  explicit TTrackBar(TComponent* owner);
  int Frequency() const { return FFrequency; }
  void SetFrequency(int value);
  int LineSize() const { return FLineSize; }
  void SetLineSize(int value);
  int Max() const { return FMax; }
  void SetMax(int value);
  int Min() const { return FMin; }
  void SetMin(int value);
  TTrackBarOrientation Orientation() const { return FOrientation; }
  void SetOrientation(TTrackBarOrientation value);
  int PageSize() const { return FPageSize; }
  void SetPageSize(int value);
  int Position() const { return FPosition; }
  void SetPosition(int value);
  int SelEnd() const { return FSelEnd; }
  void SetSelEnd(int value);
  int SelStart() const { return FSelStart; }
  void SetSelStart(int value);
  bool SliderVisible() const { return FSliderVisible; }
  void SetSliderVisible(bool value);
  int ThumbLength() const { return FThumbLength; }
  void SetThumbLength(int value) { FThumbLength = value; }
  TTickMark TickMarks() const { return FTickMarks; }
  void SetTickMarks(TTickMark value);
  TTickStyle TickStyle() const { return FTickStyle; }
  void SetTickStyle(TTickStyle value);

  TNotifyEvent OnChange;

  void CreateWidget() override;
  void UpdateWidgetText() override;
  QSlider* Slider() const;

protected:
  bool ClicksFromMouse() const override { return false; }
  virtual void Changed();

private:
  int FFrequency = 1;
  int FLineSize = 1;
  int FMax = 10;
  int FMin = 0;
  TTrackBarOrientation FOrientation = trHorizontal;
  int FPageSize = 2;
  int FPosition = 0;
  int FSelEnd = 0;
  int FSelStart = 0;
  bool FSliderVisible = true;
  int FThumbLength = 20;
  TTickMark FTickMarks = tmBottomRight;
  TTickStyle FTickStyle = tsAuto;
  bool FSyncing = false;
};

LUMORA_ENUM(TUDAlignButton, udLeft, udRight)
LUMORA_ENUM(TUDOrientation, udHorizontal, udVertical)
LUMORA_ENUM(TUDBtnType, btNext, btPrev)
// (Sender, AllowChange): the shape of TCloseQueryEvent.
using TUDChangingEvent = TCloseQueryEvent;
LUMORA_EVENT(TUDClickEvent, void(TObject* Sender, TUDBtnType Button))

// Two arrow buttons that step a number, shown in an associated control when there is one.
class TCustomUpDown : public TWinControl {
  LUMORA_CLASS(TCustomUpDown, TWinControl)
public:
  explicit TCustomUpDown(TComponent* owner);
  TUDAlignButton AlignButton() const { return FAlignButton; }
  void SetAlignButton(TUDAlignButton value) { FAlignButton = value; }
  bool ArrowKeys() const { return FArrowKeys; }
  void SetArrowKeys(bool value) { FArrowKeys = value; }
  TWinControl* Associate() const { return FAssociate; }
  void SetAssociate(TWinControl* value);
  int Increment() const { return FIncrement; }
  void SetIncrement(int value) { FIncrement = value; }
  int Max() const { return FMax; }
  void SetMax(int value);
  int Min() const { return FMin; }
  void SetMin(int value);
  TUDOrientation Orientation() const { return FOrientation; }
  void SetOrientation(TUDOrientation value);
  int Position() const { return FPosition; }
  void SetPosition(int value);
  bool Thousands() const { return FThousands; }
  void SetThousands(bool value);
  bool Wrap() const { return FWrap; }
  void SetWrap(bool value) { FWrap = value; }
  // The button at a point: btNext is the upper (right) half.
  TUDBtnType ButtonAt(int x, int y) const;
  // What a click on a button does: steps, shows the number, raises OnClick.
  void ButtonClick(TUDBtnType button);

  TUDChangingEvent OnChanging;
  TUDClickEvent OnClick;

  void Paint(QPainter& painter) override;
  void CreateWidget() override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void MouseUp(TMouseButton button, TShiftState shift, int x, int y) override;
  void KeyDown(Word& key, TShiftState shift) override;
  void Notification(TComponent* component, TOperation operation) override;
  void Loaded() override;

protected:
  bool ClicksFromMouse() const override { return false; }
  virtual bool CanChange();
  // Shows the position in the associated control.
  void UpdateAssociate();

private:
  TUDAlignButton FAlignButton = udRight;
  bool FArrowKeys = true;
  TWinControl* FAssociate = nullptr;
  int FIncrement = 1;
  int FMax = 100;
  int FMin = 0;
  TUDOrientation FOrientation = udVertical;
  int FPosition = 0;
  bool FThousands = true;
  bool FWrap = false;
  int FPressed = -1;
};

class TUpDown : public TCustomUpDown {
  LUMORA_CLASS(TUpDown, TCustomUpDown)
public:
  explicit TUpDown(TComponent* owner) : TCustomUpDown(owner) {}
};

LUMORA_ENUM(THKModifier, hkShift, hkCtrl, hkAlt, hkExt)
LUMORA_SET(THKModifiers, THKModifier)
LUMORA_ENUM(THKInvalidKey, hcNone, hcShift, hcCtrl, hcAlt, hcShiftCtrl, hcShiftAlt, hcCtrlAlt, hcShiftCtrlAlt)
LUMORA_SET(THKInvalidKeys, THKInvalidKey)

// An edit that shows a key combination and takes the next one the user presses.
class TCustomHotKey : public TWinControl {
  LUMORA_CLASS(TCustomHotKey, TWinControl)
public:
  explicit TCustomHotKey(TComponent* owner);
  TShortCut HotKey() const { return FHotKey; }
  void SetHotKey(TShortCut value);
  THKInvalidKeys InvalidKeys() const { return FInvalidKeys; }
  void SetInvalidKeys(THKInvalidKeys value) { FInvalidKeys = value; }
  THKModifiers Modifiers() const { return FModifiers; }
  void SetModifiers(THKModifiers value) { FModifiers = value; }

  TNotifyEvent OnChange;

  void CreateWidget() override;
  void UpdateWidgetText() override;
  // The key pressed (with its modifiers) becomes the hot key.
  void KeyDown(Word& key, TShiftState shift) override;

private:
  TShortCut FHotKey = TShortCut(0x8041);
  THKInvalidKeys FInvalidKeys{hcNone, hcShift};
  THKModifiers FModifiers{hkAlt};
};

class THotKey : public TCustomHotKey {
  LUMORA_CLASS(THotKey, TCustomHotKey)
public:
  explicit THotKey(TComponent* owner) : TCustomHotKey(owner) {}
};
