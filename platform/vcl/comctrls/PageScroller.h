#pragma once
// Page scrollers: a strip that shows part of one wide (or tall) control, with arrow
// buttons at its ends to scroll the rest into view.
// Callers include platform/vcl/ComCtrls.h.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"

LUMORA_ENUM(TPageScrollerOrientation, soHorizontal, soVertical)
LUMORA_ENUM(TPageScrollerButton, sbFirst, sbLast)
LUMORA_EVENT(TPageScrollEvent, void(TObject* Sender, TShiftState Shift, int X, int Y,
                                    TPageScrollerOrientation Orientation, int& Delta))

class TPageScroller : public TWinControl {
  LUMORA_CLASS(TPageScroller, TWinControl)
public:
  explicit TPageScroller(TComponent* owner);

  bool AutoScroll() const { return FAutoScroll; }
  void SetAutoScroll(bool value) { FAutoScroll = value; }
  int ButtonSize() const { return FButtonSize; }
  void SetButtonSize(int value);
  // The control scrolled: it keeps its length along the scroller and fills it across.
  TWinControl* Control() const { return FControl; }
  void SetControl(TWinControl* value);
  int Margin() const { return FMargin; }
  void SetMargin(int value);
  TPageScrollerOrientation Orientation() const { return FOrientation; }
  void SetOrientation(TPageScrollerOrientation value);
  // How far the control is scrolled.
  int Position() const { return FPosition; }
  void SetPosition(int value);
  // Whether the button at that end shows (there is more of the control beyond it).
  bool ButtonVisible(TPageScrollerButton button) const;

  TPageScrollEvent OnScroll;

  void Paint(QPainter& painter) override;
  void CreateWidget() override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void AlignControls(TControl* changing, TRect& rect) override;
  void Notification(TComponent* component, TOperation operation) override;
  void Loaded() override;

protected:
  void Resize() override;

private:
  int Extent() const;     // the scroller's length along its orientation
  int ControlExtent() const;
  void PlaceControl();
  bool FAutoScroll = false;
  int FButtonSize = 12;
  TWinControl* FControl = nullptr;
  int FMargin = 0;
  TPageScrollerOrientation FOrientation = soHorizontal;
  int FPosition = 0;
  bool FPlacing = false;
};
