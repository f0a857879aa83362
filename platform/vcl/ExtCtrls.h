#pragma once
// More controls: panels with bevels, bevels, images, shapes, paint boxes, splitters,
// radio groups and timers.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/StdCtrls.h"

#include <QPointer>

#include <string>
#include <vector>

class QTimer;
class TRadioButton;

LUMORA_ENUM(TBevelShape, bsBox, bsFrame, bsTopLine, bsBottomLine, bsLeftLine, bsRightLine, bsSpacer)
LUMORA_ENUM(TBevelStyle, bsLowered, bsRaised)
LUMORA_ENUM(TShapeType, stRectangle, stSquare, stRoundRect, stRoundSquare, stEllipse, stCircle)
LUMORA_ENUM(TProgressStage, psStarting, psRunning, psEnding)
LUMORA_ENUM(TResizeStyle, rsNone, rsLine, rsUpdate, rsPattern)
LUMORA_EVENT(TProgressEvent, void(TObject* Sender, TProgressStage Stage, Byte PercentDone, bool RedrawNow, TRect R,
                                  const std::string& Msg))
LUMORA_EVENT(TCanResizeSplitEvent, void(TObject* Sender, int& NewSize, bool& Accept))

// Draws a raised or lowered 3D edge along the inside of `rect`, which shrinks by it.
void DrawBevel(QPainter& painter, QRect& rect, TBevelCut cut, int width);

class TCustomPanel : public TCustomControl {
  LUMORA_CLASS(TCustomPanel, TCustomControl)
public:
  explicit TCustomPanel(TComponent* owner);
  TAlignment Alignment() const { return FAlignment; }
  void SetAlignment(TAlignment value);
  TBevelCut BevelInner() const { return FBevelInner; }
  void SetBevelInner(TBevelCut value);
  TBevelCut BevelOuter() const { return FBevelOuter; }
  void SetBevelOuter(TBevelCut value);
  int BevelWidth() const { return FBevelWidth; }
  void SetBevelWidth(int value);
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle value);
  bool FullRepaint() const { return FFullRepaint; }
  void SetFullRepaint(bool value) { FFullRepaint = value; }
  bool Locked() const { return FLocked; }
  void SetLocked(bool value) { FLocked = value; }

  void AdjustClientRect(TRect& rect) const override;
  int FrameSize() const override;
  // A panel's border width lies inside its client area, between its bevels.
  int NonClientInset() const override { return FrameSize(); }
  void Paint(QPainter& painter) override;

protected:
  TAlignment FAlignment = taCenter;
  TBevelCut FBevelInner = bvNone;
  TBevelCut FBevelOuter = bvRaised;
  int FBevelWidth = 1;
  TBorderStyle FBorderStyle = BorderStyleOf(bsNone);
  bool FFullRepaint = true;
  bool FLocked = false;
};

class TPanel : public TCustomPanel {
  LUMORA_CLASS(TPanel, TCustomPanel)
public:
  explicit TPanel(TComponent* owner) : TCustomPanel(owner) {}
};

class TBevel : public TGraphicControl {
  LUMORA_CLASS(TBevel, TGraphicControl)
public:
  explicit TBevel(TComponent* owner);
  TBevelShape Shape() const { return FShape; }
  void SetShape(TBevelShape value);
  TBevelStyle Style() const { return FStyle; }
  void SetStyle(TBevelStyle value);
  void Paint(QPainter& painter) override;

private:
  TBevelShape FShape = bsBox;
  TBevelStyle FStyle = bsLowered;
};

class TImage : public TGraphicControl {
  LUMORA_CLASS(TImage, TGraphicControl)
public:
  explicit TImage(TComponent* owner);
  ~TImage() override;
  TPicture* Picture() const { return FPicture; }
  void SetPicture(TPicture* value) { FPicture->Assign(value); }
  bool Center() const { return FCenter; }
  void SetCenter(bool value);
  bool IncrementalDisplay() const { return FIncrementalDisplay; }
  void SetIncrementalDisplay(bool value) { FIncrementalDisplay = value; }
  bool Stretch() const { return FStretch; }
  void SetStretch(bool value);
  bool Transparent() const { return FTransparent; }
  void SetTransparent(bool value);
  TProgressEvent OnProgress;
  void Paint(QPainter& painter) override;

protected:
  bool CanAutoSize(int& newWidth, int& newHeight) override;

private:
  TPicture* FPicture;
  bool FCenter = false;
  bool FIncrementalDisplay = false;
  bool FStretch = false;
  bool FTransparent = false;
};

class TShape : public TGraphicControl {
  LUMORA_CLASS(TShape, TGraphicControl)
public:
  explicit TShape(TComponent* owner);
  ~TShape() override;
  TBrush* Brush() const { return FBrush; }
  void SetBrush(TBrush* value) { FBrush->Assign(value); }
  TPen* Pen() const { return FPen; }
  void SetPen(TPen* value) { FPen->Assign(value); }
  TShapeType Shape() const { return FShape; }
  void SetShape(TShapeType value);
  void Paint(QPainter& painter) override;

private:
  TBrush* FBrush;
  TPen* FPen;
  TShapeType FShape = stRectangle;
};

class TPaintBox : public TGraphicControl {
  LUMORA_CLASS(TPaintBox, TGraphicControl)
public:
  explicit TPaintBox(TComponent* owner);
  TNotifyEvent OnPaint;
  // The painter of the paint in progress (for OnPaint handlers), or none.
  QPainter* Canvas() const { return FCanvas; }
  void Paint(QPainter& painter) override;

private:
  QPainter* FCanvas = nullptr;
};

// A bar that resizes the control aligned beside it when dragged.
class TSplitter : public TGraphicControl {
  LUMORA_CLASS(TSplitter, TGraphicControl)
public:
  explicit TSplitter(TComponent* owner);
  bool AutoSnap() const { return FAutoSnap; }
  void SetAutoSnap(bool value) { FAutoSnap = value; }
  bool Beveled() const { return FBeveled; }
  void SetBeveled(bool value);
  int MinSize() const { return FMinSize; }
  void SetMinSize(int value) { FMinSize = value; }
  TResizeStyle ResizeStyle() const { return FResizeStyle; }
  void SetResizeStyle(TResizeStyle value) { FResizeStyle = value; }
  TCanResizeSplitEvent OnCanResize;
  TNotifyEvent OnMoved;
  TNotifyEvent OnPaint;
  void Paint(QPainter& painter) override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void MouseMove(TShiftState shift, int x, int y) override;
  void MouseUp(TMouseButton button, TShiftState shift, int x, int y) override;
  // The control the splitter resizes: the one aligned against its near side.
  TControl* FindControl() const;

private:
  bool FAutoSnap = true;
  bool FBeveled = false;
  int FMinSize = 30;
  TResizeStyle FResizeStyle = rsPattern;
  TControl* FControl = nullptr;
  int FDownPos = 0;
  int FStartSize = 0;
  bool FDragging = false;
};

class TCustomRadioGroup : public TCustomGroupBox {
  LUMORA_CLASS(TCustomRadioGroup, TCustomGroupBox)
public:
  explicit TCustomRadioGroup(TComponent* owner);
  ~TCustomRadioGroup() override;
  TStrings* Items() const { return FItems; }
  void SetItems(TStrings* value) { FItems->Assign(value); }
  int ItemIndex() const { return FItemIndex; }
  void SetItemIndex(int value);
  int Columns() const { return FColumns; }
  void SetColumns(int value);
  // The buttons are the group's own and are never streamed.
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  void Loaded() override;
  void Resize() override;
  void FontChanged() override;
  int ButtonCount() const { return static_cast<int>(FButtons.size()); }
  TRadioButton* Buttons(int index) const { return FButtons.at(index); }

private:
  void UpdateButtons();
  void ArrangeButtons();
  void ButtonClicked(TRadioButton* button);
  TStringList* FItems;
  std::vector<TRadioButton*> FButtons;
  int FItemIndex = -1;
  int FColumns = 1;
  bool FUpdating = false;
};

class TRadioGroup : public TCustomRadioGroup {
  LUMORA_CLASS(TRadioGroup, TCustomRadioGroup)
public:
  explicit TRadioGroup(TComponent* owner) : TCustomRadioGroup(owner) {}
};

// Runs OnTimer every Interval milliseconds while enabled (not while being designed).
class TTimer : public TComponent {
  LUMORA_CLASS(TTimer, TComponent)
public:
  explicit TTimer(TComponent* owner);
  ~TTimer() override;
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool value);
  unsigned Interval() const { return FInterval; }
  void SetInterval(unsigned value);
  TNotifyEvent OnTimer;
  // Sets OnTimer and starts or stops the timer accordingly.
  void SetOnTimer(TNotifyEvent value) {
    OnTimer = std::move(value);
    UpdateTimer();
  }
  // Starts or stops the Qt timer after a change of values or of OnTimer.
  void UpdateTimer();
  void Loaded() override;

private:
  bool FEnabled = true;
  unsigned FInterval = 1000;
  QTimer* FTimer = nullptr;
};
