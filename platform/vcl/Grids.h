#pragma once
// Grids: cells in rows and columns, fixed rows and columns as headers, a current cell
// moved by mouse and keys, and an in-place editor for the current cell. TStringGrid
// keeps a string (and an object) per cell. Classes derived from these change editing
// through the virtual operations (CreateEditor, GetEditText, SetEditText, SelectCell).

#include "platform/rtti/Classes.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/StdCtrls.h"

#include <cstdint>
#include <map>
#include <string>

class QAbstractScrollArea;
class TReader;
class TWriter;

LUMORA_DECLARE_EXCEPTION(EInvalidGridOperation, Exception)

LUMORA_ENUM(TGridOption, goFixedVertLine, goFixedHorzLine, goVertLine, goHorzLine, goRangeSelect,
            goDrawFocusSelected, goRowSizing, goColSizing, goRowMoving, goColMoving, goEditing, goTabs, goRowSelect,
            goAlwaysShowEditor, goThumbTracking)
LUMORA_SET(TGridOptions, TGridOption)
LUMORA_ENUM(TGridDrawStateItem, gdSelected, gdFocused, gdFixed)
LUMORA_SET(TGridDrawState, TGridDrawStateItem)

struct TGridCoord {
  int X = 0;
  int Y = 0;
  bool operator==(const TGridCoord&) const = default;
};

struct TGridRect {
  int Left = 0;
  int Top = 0;
  int Right = 0;
  int Bottom = 0;
};

class TCustomGrid;

// Cell indexes in these events are Longint, a type of their own here, so that the events
// stay apart from others of the same shape with int parameters.
LUMORA_EVENT(TDrawCellEvent, void(TObject* Sender, long ACol, long ARow, TRect Rect, TGridDrawState State))
LUMORA_EVENT(TSelectCellEvent, void(TObject* Sender, long ACol, long ARow, bool& CanSelect))
LUMORA_EVENT(TGetEditEvent, void(TObject* Sender, long ACol, long ARow, std::string& Value))
LUMORA_EVENT(TSetEditEvent, void(TObject* Sender, long ACol, long ARow, const std::string& Value))
LUMORA_EVENT(TMovedEvent, void(TObject* Sender, long FromIndex, long ToIndex))

// The editor over the current cell while it is edited.
class TInplaceEdit : public TCustomEdit {
  LUMORA_CLASS(TInplaceEdit, TCustomEdit)
public:
  explicit TInplaceEdit(TComponent* owner);
  TCustomGrid* Grid() const { return FGrid; }
  // Takes the text of the grid's current cell.
  virtual void UpdateContents();
  // Puts the editor over a cell's rectangle and shows it.
  void Move(const TRect& cellRect);
  void Hide();

protected:
  void Change() override;
  void KeyDown(Word& key, TShiftState shift) override;
  void KeyPress(char& key) override;

private:
  friend class TCustomGrid;
  TCustomGrid* FGrid = nullptr;
};

class TCustomGrid : public TCustomControl {
  LUMORA_CLASS(TCustomGrid, TCustomControl)
public:
  explicit TCustomGrid(TComponent* owner);
  ~TCustomGrid() override;

  // ---- Shape
  int ColCount() const { return FColCount; }
  void SetColCount(int value);
  int RowCount() const { return FRowCount; }
  void SetRowCount(int value);
  int FixedCols() const { return FFixedCols; }
  void SetFixedCols(int value);
  int FixedRows() const { return FFixedRows; }
  void SetFixedRows(int value);
  int DefaultColWidth() const { return FDefaultColWidth; }
  void SetDefaultColWidth(int value);
  int DefaultRowHeight() const { return FDefaultRowHeight; }
  void SetDefaultRowHeight(int value);
  int ColWidths(int index) const;
  void SetColWidths(int index, int value);
  int RowHeights(int index) const;
  void SetRowHeights(int index, int value);
  int GridLineWidth() const { return FGridLineWidth; }
  void SetGridLineWidth(int value);
  TGridOptions Options() const { return FOptions; }
  void SetOptions(TGridOptions value);
  TColor FixedColor() const { return FFixedColor; }
  void SetFixedColor(TColor value);
  TScrollStyle ScrollBars() const { return FScrollBars; }
  void SetScrollBars(TScrollStyle value);
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle value);
  bool DefaultDrawing() const { return FDefaultDrawing; }
  void SetDefaultDrawing(bool value);

  // ---- The current cell, the selection and the view
  int Col() const { return FCurrent.X; }
  void SetCol(int value);
  int Row() const { return FCurrent.Y; }
  void SetRow(int value);
  TGridRect Selection() const;
  void SetSelection(const TGridRect& value);
  int TopRow() const { return FTopLeft.Y; }
  void SetTopRow(int value);
  int LeftCol() const { return FTopLeft.X; }
  void SetLeftCol(int value);
  int VisibleRowCount() const;
  int VisibleColCount() const;
  // The cell's rectangle in the client area; empty when it is scrolled out of view.
  TRect CellRect(int aCol, int aRow) const;
  // The cell under a point of the client area; -1, -1 where there is none.
  TGridCoord MouseCoord(int x, int y) const;
  void MouseToCell(int x, int y, int& aCol, int& aRow) const;
  // Makes a cell the current one when SelectCell allows it; `moveAnchor` false extends
  // the selection from its anchor.
  bool FocusCell(int aCol, int aRow, bool moveAnchor);

  // ---- Editing
  bool EditorMode() const { return FEditorMode; }
  void SetEditorMode(bool value);
  TInplaceEdit* InplaceEditor() const { return FInplaceEdit; }
  void ShowEditor();
  void HideEditor();
  void InvalidateCell(int aCol, int aRow);
  void InvalidateGrid();

  TDrawCellEvent OnDrawCell;
  TSelectCellEvent OnSelectCell;
  TGetEditEvent OnGetEditText;
  TGetEditEvent OnGetEditMask;
  TSetEditEvent OnSetEditText;
  TNotifyEvent OnTopLeftChanged;
  TMovedEvent OnColumnMoved;
  TMovedEvent OnRowMoved;
  TMouseWheelUpDownEvent OnMouseWheelDown;
  TMouseWheelUpDownEvent OnMouseWheelUp;

  // The scroll area reports its size and its bars through these.
  void UpdateScrollBars();
  void ScrollBarMoved(bool vertical, int value);

  void Paint(QPainter& painter) override;
  void CreateWidget() override;
  QWidget* ClientWidget() const override;
  QWidget* InputWidget() const override;
  TRect ClientRect() const override;
  void UpdateWidgetText() override;
  bool WidgetEvent(QObject* watched, QEvent* event) override;
  void KeyDown(Word& key, TShiftState shift) override;
  void KeyPress(char& key) override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void MouseMove(TShiftState shift, int x, int y) override;
  void MouseUp(TMouseButton button, TShiftState shift, int x, int y) override;
  void DblClick() override;
  void DefineProperties(TFiler& filer) override;
  void Loaded() override;

  // ---- What derived grids change
  virtual TInplaceEdit* CreateEditor();
  virtual std::string GetEditText(int aCol, int aRow);
  virtual void SetEditText(int aCol, int aRow, const std::string& value);
  // Whether the current cell may move to (aCol, aRow).
  virtual bool SelectCell(int aCol, int aRow);
  virtual void DrawCell(QPainter& painter, int aCol, int aRow, const TRect& rect, TGridDrawState state);
  virtual bool CanEditShow();
  virtual void ColumnMoved(int fromIndex, int toIndex);
  virtual void RowMoved(int fromIndex, int toIndex);
  virtual void TopLeftChanged();
  // After ColCount or RowCount changed.
  virtual void SizeChanged(int oldColCount, int oldRowCount);

protected:
  friend class TInplaceEdit;
  enum TGridState { gsNormal, gsSelecting, gsRowSizing, gsColSizing };

  void Resize() override;
  void FontChanged() override;
  QAbstractScrollArea* ScrollArea() const;
  // The editor's text goes into the current cell.
  void UpdateText();
  void MoveTopLeft(int aCol, int aRow);
  void ScrollIntoView(int aCol, int aRow);
  void ChangeSize(int colCount, int rowCount);
  void ClampPositions();
  int ExtentCol(int index) const;
  int ExtentRow(int index) const;
  int MaxTopRow() const;
  int MaxLeftCol() const;
  int SizingCol(int x, int y) const;
  int SizingRow(int x, int y) const;
  void ReadColWidths(TReader& reader);
  void WriteColWidths(TWriter& writer);
  void ReadRowHeights(TReader& reader);
  void WriteRowHeights(TWriter& writer);

  int FColCount = 5;
  int FRowCount = 5;
  int FFixedCols = 1;
  int FFixedRows = 1;
  int FDefaultColWidth = 64;
  int FDefaultRowHeight = 24;
  std::map<int, int> FColWidths;   // the columns whose width is not the default
  std::map<int, int> FRowHeights;  // likewise rows
  bool FColWidthsSet = false;
  bool FRowHeightsSet = false;
  int FGridLineWidth = 1;
  TGridOptions FOptions;
  TColor FFixedColor = clBtnFace;
  TScrollStyle FScrollBars = ssBoth;
  TBorderStyle FBorderStyle = BorderStyleOf(bsSingle);
  bool FDefaultDrawing = true;
  TGridCoord FCurrent{1, 1};
  TGridCoord FAnchor{1, 1};
  TGridCoord FTopLeft{1, 1};
  bool FEditorMode = false;
  TInplaceEdit* FInplaceEdit = nullptr;
  std::string FEditOriginal;  // the cell's text when editing began
  bool FSyncingScroll = false;
  TGridState FGridState = gsNormal;
  int FSizingIndex = -1;
  int FSizingOrigin = 0;
  int FSizingStart = 0;
};

class TDrawGrid : public TCustomGrid {
  LUMORA_CLASS(TDrawGrid, TCustomGrid)
public:
  explicit TDrawGrid(TComponent* owner) : TCustomGrid(owner) {}
  void DrawCell(QPainter& painter, int aCol, int aRow, const TRect& rect, TGridDrawState state) override;
  bool SelectCell(int aCol, int aRow) override;
  std::string GetEditText(int aCol, int aRow) override;
  void SetEditText(int aCol, int aRow, const std::string& value) override;
};

class TStringGrid : public TDrawGrid {
  LUMORA_CLASS(TStringGrid, TDrawGrid)
public:
  explicit TStringGrid(TComponent* owner);
  ~TStringGrid() override;
  std::string Cells(int aCol, int aRow) const;
  void SetCells(int aCol, int aRow, const std::string& value);
  TObject* Objects(int aCol, int aRow) const;
  void SetObjects(int aCol, int aRow, TObject* value);
  // A row or a column as a list of strings owned by the grid.
  TStrings* Rows(int index);
  TStrings* Cols(int index);

  std::string GetEditText(int aCol, int aRow) override;
  void SetEditText(int aCol, int aRow, const std::string& value) override;
  void DrawCell(QPainter& painter, int aCol, int aRow, const TRect& rect, TGridDrawState state) override;
  void SizeChanged(int oldColCount, int oldRowCount) override;

private:
  struct TCell {
    std::string Text;
    TObject* Object = nullptr;
  };
  static std::uint64_t Key(int aCol, int aRow) {
    return (static_cast<std::uint64_t>(static_cast<std::uint32_t>(aRow)) << 32) | static_cast<std::uint32_t>(aCol);
  }
  std::map<std::uint64_t, TCell> FCells;
  std::map<int, TStrings*> FRows;
  std::map<int, TStrings*> FCols;
};
