#pragma once
// The control grid: panels in rows and columns, one per record, each repeating the
// controls laid out on the first. With the data set closed only the first panel holds
// its controls; the others stand empty.

#include "packages/dcldb/DBCtrls.h"

LUMORA_ENUM(TDBCtrlGridOrientation, goVertical, goHorizontal)
LUMORA_ENUM(TDBCtrlGridBorder, gbNone, gbRaised)
LUMORA_EVENT(TPaintPanelEvent, void(TObject* DBCtrlGrid, int Index))

class TDBCtrlGrid : public TWinControl {
  LUMORA_CLASS(TDBCtrlGrid, TWinControl)
public:
  explicit TDBCtrlGrid(TComponent* owner);
  ~TDBCtrlGrid() override;
  TDataSource* DataSource() const { return FDataSource; }
  void SetDataSource(TDataSource* value) { ReplaceComponentLink(this, FDataSource, value); }
  int ColCount() const { return FColCount; }
  void SetColCount(int value);
  int RowCount() const { return FRowCount; }
  void SetRowCount(int value);
  int PanelWidth() const { return FPanelWidth; }
  void SetPanelWidth(int value);
  int PanelHeight() const { return FPanelHeight; }
  void SetPanelHeight(int value);
  TDBCtrlGridOrientation Orientation() const { return FOrientation; }
  void SetOrientation(TDBCtrlGridOrientation value);
  bool FAllowDelete = true;
  bool FAllowInsert = true;
  TDBCtrlGridBorder FPanelBorder = gbRaised;
  TColor FSelectedColor = clWindow;
  bool FShowFocus = true;
  TPaintPanelEvent OnPaintPanel;

  void CreateWidget() override;
  void Paint(QPainter& painter) override;
  void Notification(TComponent* component, TOperation operation) override;
  void Loaded() override;

private:
  // The whole grid: panels and the scroll bar along them.
  void AdjustSize();
  TDataSource* FDataSource = nullptr;
  int FColCount = 1;
  int FRowCount = 3;
  int FPanelWidth = 200;
  int FPanelHeight = 72;
  TDBCtrlGridOrientation FOrientation = goVertical;
};
