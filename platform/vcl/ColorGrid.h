#pragma once
// A grid of the sixteen basic colours for choosing a foreground (left button, or F) and
// a background (right button, or B); the chosen cells are marked FG, BG or FB. The arrow
// keys move the selection between cells.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"

#include <QRect>

LUMORA_ENUM(TGridOrdering, go16x1, go8x2, go4x4, go2x8, go1x16)

class TColorGrid : public TCustomControl {
  LUMORA_CLASS(TColorGrid, TCustomControl)
public:
  static constexpr int kColorCount = 16;
  explicit TColorGrid(TComponent* owner);

  TGridOrdering GridOrdering() const { return FGridOrdering; }
  void SetGridOrdering(TGridOrdering value);
  int ForegroundIndex() const { return FForegroundIndex; }
  void SetForegroundIndex(int value);
  int BackgroundIndex() const { return FBackgroundIndex; }
  void SetBackgroundIndex(int value);
  bool ForegroundEnabled() const { return FForegroundEnabled; }
  void SetForegroundEnabled(bool value);
  bool BackgroundEnabled() const { return FBackgroundEnabled; }
  void SetBackgroundEnabled(bool value);
  // Whether choosing a colour by a click enables its side when it was off.
  bool ClickEnablesColor() const { return FClickEnablesColor; }
  void SetClickEnablesColor(bool value) { FClickEnablesColor = value; }
  // The cell with the keyboard's frame.
  int Selection() const { return FSelection; }
  void SetSelection(int value);
  TColor ForegroundColor() const { return ColorOf(FForegroundIndex); }
  TColor BackgroundColor() const { return ColorOf(FBackgroundIndex); }

  static TColor ColorOf(int index);
  int Columns() const;
  int Rows() const { return kColorCount / Columns(); }
  // The cell at a point of the control, -1 outside every cell.
  int CellAt(int x, int y) const;
  QRect CellRect(int index) const;

  TNotifyEvent OnChange;

  void Paint(QPainter& painter) override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void KeyDown(Word& key, TShiftState shift) override;
  void KeyPress(char& key) override;
  bool WidgetEvent(QObject* watched, QEvent* event) override;

protected:
  virtual void Change();

private:
  TGridOrdering FGridOrdering = go4x4;
  int FForegroundIndex = 0;
  int FBackgroundIndex = 0;
  bool FForegroundEnabled = true;
  bool FBackgroundEnabled = true;
  bool FClickEnablesColor = false;
  int FSelection = 0;
};
