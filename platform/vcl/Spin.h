#pragma once
// Spin buttons and spin edits: a pair of arrow buttons, one above the other, that step a
// number up or down; the spin edit is an edit of whole numbers with such a pair inside
// its right edge, kept between MinValue and MaxValue unless both are equal.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/StdCtrls.h"

#include <QRect>

LUMORA_ENUM(TSpinPart, spNone, spUp, spDown)

// Draws the two buttons of a spin pair filling `rect`, `pressed` sunk.
void DrawSpinButtons(QPainter& painter, const QRect& rect, TSpinPart pressed, bool enabled);
// The button of a spin pair of `size` at (x, y): the upper half is up.
TSpinPart SpinPartAt(const QSize& size, int x, int y);

class TSpinButton : public TWinControl {
  LUMORA_CLASS(TSpinButton, TWinControl)
public:
  explicit TSpinButton(TComponent* owner);
  // The control that takes the focus when a button is pressed.
  TWinControl* FocusControl() const { return FFocusControl; }
  void SetFocusControl(TWinControl* value);

  TNotifyEvent OnUpClick;
  TNotifyEvent OnDownClick;

  void CreateWidget() override;
  void Paint(QPainter& painter) override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void MouseUp(TMouseButton button, TShiftState shift, int x, int y) override;
  void KeyDown(Word& key, TShiftState shift) override;
  void Notification(TComponent* component, TOperation operation) override;

private:
  void Click(TSpinPart part);
  TWinControl* FFocusControl = nullptr;
  TSpinPart FPressed = spNone;
};

class TSpinEdit : public TCustomEdit {
  LUMORA_CLASS(TSpinEdit, TCustomEdit)
public:
  explicit TSpinEdit(TComponent* owner);

  // The number the text holds; MinValue when it holds none.
  int Value() const;
  void SetValue(int value);
  int MinValue() const { return FMinValue; }
  void SetMinValue(int value);
  int MaxValue() const { return FMaxValue; }
  void SetMaxValue(int value);
  int Increment() const { return FIncrement; }
  void SetIncrement(int value) { FIncrement = value; }
  // Whether the number may be typed (the buttons work either way).
  bool EditorEnabled() const { return FEditorEnabled; }
  void SetEditorEnabled(bool value);
  // The value kept between MinValue and MaxValue, unless both are equal.
  int CheckValue(int value) const;
  // What the up and down buttons and keys do.
  void StepUp();
  void StepDown();

  void CreateWidget() override;
  void UpdateWidgetText() override;
  void KeyDown(Word& key, TShiftState shift) override;
  void KeyPress(char& key) override;
  void DoExit() override;
  void Loaded() override;

private:
  friend class TSpinEditButtons;
  int FMinValue = 0;
  int FMaxValue = 0;
  int FIncrement = 1;
  bool FEditorEnabled = true;
  TSpinPart FPressed = spNone;
};
