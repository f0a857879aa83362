#pragma once
// A control bar: each control placed on it sits in a band of its own with a grab bar at
// its left, the bands in rows of RowSize pixels; a band is moved by its grab bar.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/Graphics.h"

LUMORA_EVENT(TBandDragEvent, void(TObject* Sender, TControl* Control, bool& Drag))
LUMORA_EVENT(TBandInfoEvent, void(TObject* Sender, TControl* Control, TRect& Insets, int& PreferredSize,
                                  int& RowCount))
LUMORA_EVENT(TBandMoveEvent, void(TObject* Sender, TControl* Control, TRect& ARect))
LUMORA_EVENT(TBandPaintEvent, void(TObject* Sender, TControl* Control, void* Canvas, TRect& ARect, int& Options))

class TCustomControlBar : public TCustomControl {
  LUMORA_CLASS(TCustomControlBar, TCustomControl)
public:
  explicit TCustomControlBar(TComponent* owner);
  ~TCustomControlBar() override;

  bool AutoDock() const { return FAutoDock; }
  void SetAutoDock(bool value) { FAutoDock = value; }
  bool AutoDrag() const { return FAutoDrag; }
  void SetAutoDrag(bool value) { FAutoDrag = value; }
  TBevelEdges BevelEdges() const { return FBevelEdges; }
  void SetBevelEdges(TBevelEdges value);
  TBevelCut BevelInner() const { return FBevelInner; }
  void SetBevelInner(TBevelCut value);
  TBevelCut BevelOuter() const { return FBevelOuter; }
  void SetBevelOuter(TBevelCut value);
  TBevelKind BevelKind() const { return FBevelKind; }
  void SetBevelKind(TBevelKind value);
  int BevelWidth() const { return FBevelWidth; }
  void SetBevelWidth(int value);
  TPicture* Picture() const { return FPicture; }
  void SetPicture(TPicture* value) { FPicture->Assign(value); }
  int RowSize() const { return FRowSize; }
  void SetRowSize(int value);
  bool RowSnap() const { return FRowSnap; }
  void SetRowSnap(bool value) { FRowSnap = value; }
  // The band around a control of the bar: its grab bar and edge (in client coordinates).
  TRect BandRect(TControl* control) const;

  TBandDragEvent OnBandDrag;
  TBandInfoEvent OnBandInfo;
  TBandMoveEvent OnBandMove;
  TBandPaintEvent OnBandPaint;
  TNotifyEvent OnPaint;

  int FrameSize() const override;
  void Paint(QPainter& painter) override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void MouseMove(TShiftState shift, int x, int y) override;
  void MouseUp(TMouseButton button, TShiftState shift, int x, int y) override;

private:
  int EdgeSize(TBevelCut cut) const { return cut == bvNone ? 0 : FBevelWidth; }
  TControl* BandAt(int x, int y) const;
  bool FAutoDock = true;
  bool FAutoDrag = true;
  TBevelEdges FBevelEdges = TBevelEdges{beLeft, beTop, beRight, beBottom};
  TBevelCut FBevelInner = bvRaised;
  TBevelCut FBevelOuter = bvLowered;
  TBevelKind FBevelKind = bkTile;
  int FBevelWidth = 1;
  TPicture* FPicture;
  int FRowSize = 26;
  bool FRowSnap = true;
  TControl* FDragging = nullptr;
  TPoint FDragOffset;
};

class TControlBar : public TCustomControlBar {
  LUMORA_CLASS(TControlBar, TCustomControlBar)
public:
  explicit TControlBar(TComponent* owner) : TCustomControlBar(owner) {}
};
