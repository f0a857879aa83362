#include "platform/vcl/Grids.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/Publish.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QFontMetrics>
#include <QLineEdit>
#include <QMouseEvent>
#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one
#include <QPainter>
#include <QResizeEvent>
#include <QScrollBar>

#include <algorithm>

#include "platform/vcl/Menus.h"

namespace {

// Beyond this many rows or columns a grid refuses to grow.
constexpr int MaxGridExtent = 134217727;

const char* const SGridTooLarge = "Grid too large for operation";
const char* const SIndexOutOfRange = "Grid index out of range";
const char* const SFixedColTooBig = "Fixed column count must be less than column count";
const char* const SFixedRowTooBig = "Fixed row count must be less than row count";
const char* const SInvalidStringGridOp = "Cannot insert or delete rows from grid";

// The scroll area of a grid: the viewport shows the cells, the scroll bars move by cells.
class TGridScrollArea : public QAbstractScrollArea {
public:
  explicit TGridScrollArea(TCustomGrid* grid) : FGrid(grid) {
    setFrameStyle(QFrame::Panel | QFrame::Sunken);
    setLineWidth(2);
    viewport()->setAutoFillBackground(false);
  }
  void Detach() { FGrid = nullptr; }

protected:
  void paintEvent(QPaintEvent*) override {
    if (!FGrid) return;
    QPainter painter(viewport());
    TCustomGrid* grid = FGrid;
    TMessageLoop::Instance().Guarded([&] { grid->Paint(painter); });
  }
  void scrollContentsBy(int, int) override {
    if (!FGrid) return;
    TCustomGrid* grid = FGrid;
    TMessageLoop::Instance().Guarded([&] {
      grid->ScrollBarMoved(true, verticalScrollBar()->value());
      grid->ScrollBarMoved(false, horizontalScrollBar()->value());
    });
  }
  // The grid took the mouse at the viewport; the frame around it does not pass it on.
  void mousePressEvent(QMouseEvent* event) override { event->accept(); }
  void mouseReleaseEvent(QMouseEvent* event) override { event->accept(); }
  void mouseDoubleClickEvent(QMouseEvent* event) override { event->accept(); }
  void mouseMoveEvent(QMouseEvent* event) override { event->accept(); }
  void resizeEvent(QResizeEvent* event) override {
    QAbstractScrollArea::resizeEvent(event);
    if (FGrid) {
      TCustomGrid* grid = FGrid;
      TMessageLoop::Instance().Guarded([&] { grid->UpdateScrollBars(); });
    }
  }

private:
  TCustomGrid* FGrid;
};


}  // namespace

// ---------------------------------------------------------------------------------------
// TInplaceEdit

LUMORA_CLASS_IMPL(TInplaceEdit) {}

TInplaceEdit::TInplaceEdit(TComponent* owner) : TCustomEdit(owner) {
  FBorderStyle = BorderStyleOf(bsNone);
  FAutoSize = false;
  FVisible = false;
  FTabStop = false;
  FParentColor = false;
  FColor = clWindow;
}

void TInplaceEdit::UpdateContents() {
  if (!FGrid) return;
  const bool was = FSyncing;
  FSyncing = true;
  FText = FGrid->GetEditText(FGrid->Col(), FGrid->Row());
  UpdateWidgetText();
  FSyncing = was;
  FModified = false;
}

void TInplaceEdit::Move(const TRect& r) {
  SetBounds(r.Left, r.Top, r.Width(), r.Height());
  SetVisible(true);
}

void TInplaceEdit::Hide() { SetVisible(false); }

void TInplaceEdit::Change() {
  TCustomEdit::Change();
  if (FGrid && !FSyncing) FGrid->UpdateText();
}

void TInplaceEdit::KeyDown(Word& key, TShiftState shift) {
  TCustomEdit::KeyDown(key, shift);
  if (key == 0 || !FGrid) return;
  bool toGrid = false;
  const int length = static_cast<int>(LineEdit() ? LineEdit()->text().size() : 0);
  switch (key) {
    case VK_UP:
    case VK_DOWN:
    case VK_PRIOR:
    case VK_NEXT:
    case VK_ESCAPE:
    case VK_RETURN: toGrid = true; break;
    case VK_TAB: toGrid = FGrid->Options().Contains(goTabs); break;
    case VK_LEFT: toGrid = shift.Contains(ssCtrl) || (SelStart() == 0 && SelLength() == 0); break;
    case VK_RIGHT: toGrid = shift.Contains(ssCtrl) || (SelStart() >= length && SelLength() == 0); break;
    case VK_HOME:
    case VK_END: toGrid = shift.Contains(ssCtrl); break;
    default: break;
  }
  if (toGrid) FGrid->KeyDown(key, shift);
}

void TInplaceEdit::KeyPress(char& key) {
  TCustomEdit::KeyPress(key);
  if (!FGrid) return;
  // Enter and Tab belong to the grid; the edit never types them.
  if (key == 13 || (key == 9 && FGrid->Options().Contains(goTabs))) {
    FGrid->KeyPress(key);
    key = 0;
  }
}

// ---------------------------------------------------------------------------------------
// TCustomGrid

LUMORA_CLASS_IMPL(TCustomGrid) {}

TCustomGrid::TCustomGrid(TComponent* owner) : TCustomControl(owner) {
  FControlStyle = TControlStyle{csCaptureMouse, csOpaque, csDoubleClicks};
  FWidth = 320;
  FHeight = 120;
  FTabStop = true;
  FColor = clWindow;
  FParentColor = false;
  FOptions = TGridOptions{goFixedVertLine, goFixedHorzLine, goVertLine, goHorzLine, goRangeSelect};
}

TCustomGrid::~TCustomGrid() {
  if (auto* area = dynamic_cast<TGridScrollArea*>(Widget())) area->Detach();
}

QAbstractScrollArea* TCustomGrid::ScrollArea() const { return qobject_cast<QAbstractScrollArea*>(Widget()); }

void TCustomGrid::CreateWidget() {
  auto* area = new TGridScrollArea(this);
  area->setFocusPolicy(Qt::StrongFocus);
  AdoptWidget(area);
  UpdateScrollBars();
}

QWidget* TCustomGrid::ClientWidget() const {
  QAbstractScrollArea* area = ScrollArea();
  return area ? area->viewport() : Widget();
}

QWidget* TCustomGrid::InputWidget() const { return ClientWidget(); }

TRect TCustomGrid::ClientRect() const {
  if (QAbstractScrollArea* area = ScrollArea()) {
    const QSize s = area->viewport()->size();
    return Rect(0, 0, s.width(), s.height());
  }
  const int frame = FBorderStyle == BorderStyleOf(bsSingle) ? 2 : 0;
  return Rect(0, 0, std::max(0, FWidth - 2 * frame), std::max(0, FHeight - 2 * frame));
}

void TCustomGrid::UpdateWidgetText() {
  QAbstractScrollArea* area = ScrollArea();
  if (!area) return;
  if (FBorderStyle == BorderStyleOf(bsSingle)) {
    area->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    area->setLineWidth(FCtl3D ? 2 : 1);
  } else {
    area->setFrameStyle(QFrame::NoFrame);
  }
  UpdateScrollBars();
  InvalidateGrid();
}

// ---- Extents

int TCustomGrid::ColWidths(int index) const {
  const auto it = FColWidths.find(index);
  return it == FColWidths.end() ? FDefaultColWidth : it->second;
}

int TCustomGrid::RowHeights(int index) const {
  const auto it = FRowHeights.find(index);
  return it == FRowHeights.end() ? FDefaultRowHeight : it->second;
}

int TCustomGrid::ExtentCol(int index) const { return std::max(0, ColWidths(index)); }

int TCustomGrid::ExtentRow(int index) const { return std::max(0, RowHeights(index)); }

void TCustomGrid::SetColWidths(int index, int value) {
  if (index < 0 || index >= FColCount) throw EInvalidGridOperation(SIndexOutOfRange);
  FColWidthsSet = true;
  if (value == FDefaultColWidth) {
    FColWidths.erase(index);
  } else {
    FColWidths[index] = value;
  }
  if (FEditorMode && FInplaceEdit) FInplaceEdit->Move(CellRect(Col(), Row()));
  UpdateScrollBars();
  InvalidateGrid();
}

void TCustomGrid::SetRowHeights(int index, int value) {
  if (index < 0 || index >= FRowCount) throw EInvalidGridOperation(SIndexOutOfRange);
  FRowHeightsSet = true;
  if (value == FDefaultRowHeight) {
    FRowHeights.erase(index);
  } else {
    FRowHeights[index] = value;
  }
  if (FEditorMode && FInplaceEdit) FInplaceEdit->Move(CellRect(Col(), Row()));
  UpdateScrollBars();
  InvalidateGrid();
}

void TCustomGrid::SetDefaultColWidth(int value) {
  if (FDefaultColWidth == value) return;
  // Every column takes the new default.
  FDefaultColWidth = value;
  FColWidths.clear();
  FColWidthsSet = false;
  UpdateScrollBars();
  InvalidateGrid();
}

void TCustomGrid::SetDefaultRowHeight(int value) {
  if (FDefaultRowHeight == value) return;
  FDefaultRowHeight = value;
  FRowHeights.clear();
  FRowHeightsSet = false;
  UpdateScrollBars();
  InvalidateGrid();
}

void TCustomGrid::SetGridLineWidth(int value) {
  if (FGridLineWidth == value) return;
  FGridLineWidth = std::max(value, 0);
  UpdateScrollBars();
  InvalidateGrid();
}

void TCustomGrid::SetOptions(TGridOptions value) {
  if (FOptions == value) return;
  FOptions = value;
  if (!FOptions.Contains(goEditing) || FOptions.Contains(goRowSelect)) HideEditor();
  if (FOptions.Contains(goRowSelect)) {
    FAnchor = FCurrent;
  }
  if (FOptions.Contains(goAlwaysShowEditor) && !Loading(this)) ShowEditor();
  UpdateScrollBars();
  InvalidateGrid();
}

void TCustomGrid::SetScrollBars(TScrollStyle value) {
  FScrollBars = value;
  UpdateScrollBars();
}

void TCustomGrid::SetBorderStyle(TBorderStyle value) {
  FBorderStyle = value;
  UpdateWidgetText();
}

void TCustomGrid::SetFixedColor(TColor value) {
  FFixedColor = value;
  InvalidateGrid();
}

void TCustomGrid::SetDefaultDrawing(bool value) {
  FDefaultDrawing = value;
  InvalidateGrid();
}

// ---- Size

void TCustomGrid::ChangeSize(int colCount, int rowCount) {
  if (colCount > MaxGridExtent || rowCount > MaxGridExtent) throw EInvalidGridOperation(SGridTooLarge);
  const int oldCols = FColCount;
  const int oldRows = FRowCount;
  FColCount = colCount;
  FRowCount = rowCount;
  FColWidths.erase(FColWidths.lower_bound(colCount), FColWidths.end());
  FRowHeights.erase(FRowHeights.lower_bound(rowCount), FRowHeights.end());
  SizeChanged(oldCols, oldRows);
  ClampPositions();
  UpdateScrollBars();
  InvalidateGrid();
}

void TCustomGrid::SizeChanged(int, int) {}

void TCustomGrid::ClampPositions() {
  auto clampX = [this](int x) { return std::clamp(x, std::min(FFixedCols, FColCount - 1), FColCount - 1); };
  auto clampY = [this](int y) { return std::clamp(y, std::min(FFixedRows, FRowCount - 1), FRowCount - 1); };
  FCurrent = {clampX(FCurrent.X), clampY(FCurrent.Y)};
  FAnchor = {clampX(FAnchor.X), clampY(FAnchor.Y)};
  FTopLeft = {clampX(FTopLeft.X), clampY(FTopLeft.Y)};
  if (FEditorMode && FInplaceEdit) FInplaceEdit->Move(CellRect(Col(), Row()));
}

void TCustomGrid::SetColCount(int value) {
  if (value < 1) value = 1;
  if (value == FColCount) return;
  if (value <= FFixedCols) FFixedCols = value - 1;
  ChangeSize(value, FRowCount);
}

void TCustomGrid::SetRowCount(int value) {
  if (value < 1) value = 1;
  if (value == FRowCount) return;
  if (value <= FFixedRows) FFixedRows = value - 1;
  ChangeSize(FColCount, value);
}

void TCustomGrid::SetFixedCols(int value) {
  if (value < 0) throw EInvalidGridOperation(SIndexOutOfRange);
  if (value >= FColCount) throw EInvalidGridOperation(SFixedColTooBig);
  if (FFixedCols == value) return;
  FFixedCols = value;
  HideEditor();
  // The view and the current cell start again at the first cell that is not fixed.
  FTopLeft.X = FCurrent.X = FAnchor.X = value;
  ClampPositions();
  UpdateScrollBars();
  InvalidateGrid();
}

void TCustomGrid::SetFixedRows(int value) {
  if (value < 0) throw EInvalidGridOperation(SIndexOutOfRange);
  if (value >= FRowCount) throw EInvalidGridOperation(SFixedRowTooBig);
  if (FFixedRows == value) return;
  FFixedRows = value;
  HideEditor();
  // The view and the current cell start again at the first cell that is not fixed.
  FTopLeft.Y = FCurrent.Y = FAnchor.Y = value;
  ClampPositions();
  UpdateScrollBars();
  InvalidateGrid();
}

// ---- Geometry

TRect TCustomGrid::CellRect(int aCol, int aRow) const {
  if (aCol < 0 || aCol >= FColCount || aRow < 0 || aRow >= FRowCount) return TRect{};
  const TRect client = ClientRect();
  auto position = [this](int index, int fixed, int first, bool cols, int limit, int& start) -> bool {
    int x = 0;
    if (index < fixed) {
      for (int i = 0; i < index; ++i) x += (cols ? ExtentCol(i) : ExtentRow(i)) + FGridLineWidth;
      start = x;
      return true;
    }
    for (int i = 0; i < fixed; ++i) x += (cols ? ExtentCol(i) : ExtentRow(i)) + FGridLineWidth;
    if (index < first) return false;
    for (int i = first; i < index; ++i) {
      x += (cols ? ExtentCol(i) : ExtentRow(i)) + FGridLineWidth;
      if (x >= limit) return false;
    }
    start = x;
    return x < limit;
  };
  int left = 0;
  int top = 0;
  if (!position(aCol, FFixedCols, FTopLeft.X, true, client.Width(), left)) return TRect{};
  if (!position(aRow, FFixedRows, FTopLeft.Y, false, client.Height(), top)) return TRect{};
  return Rect(left, top, left + ExtentCol(aCol), top + ExtentRow(aRow));
}

TGridCoord TCustomGrid::MouseCoord(int x, int y) const {
  TGridCoord c{-1, -1};
  auto find = [this](int p, int fixed, int first, int count, bool cols) {
    int pos = 0;
    for (int i = 0; i < fixed; ++i) {
      const int e = (cols ? ExtentCol(i) : ExtentRow(i)) + FGridLineWidth;
      if (p < pos + e) return i;
      pos += e;
    }
    for (int i = first; i < count; ++i) {
      const int e = (cols ? ExtentCol(i) : ExtentRow(i)) + FGridLineWidth;
      if (p < pos + e) return i;
      pos += e;
      if (pos > 100000) break;
    }
    return -1;
  };
  if (x < 0 || y < 0) return c;
  c.X = find(x, FFixedCols, FTopLeft.X, FColCount, true);
  c.Y = find(y, FFixedRows, FTopLeft.Y, FRowCount, false);
  if (c.X < 0 || c.Y < 0) return TGridCoord{-1, -1};
  return c;
}

void TCustomGrid::MouseToCell(int x, int y, int& aCol, int& aRow) const {
  const TGridCoord c = MouseCoord(x, y);
  aCol = c.X;
  aRow = c.Y;
}

int TCustomGrid::VisibleColCount() const {
  const int width = ClientRect().Width();
  int x = 0;
  for (int i = 0; i < FFixedCols; ++i) x += ExtentCol(i) + FGridLineWidth;
  int n = 0;
  for (int i = FTopLeft.X; i < FColCount; ++i) {
    x += ExtentCol(i);
    if (x > width) break;
    ++n;
    x += FGridLineWidth;
  }
  return n;
}

int TCustomGrid::VisibleRowCount() const {
  const int height = ClientRect().Height();
  int y = 0;
  for (int i = 0; i < FFixedRows; ++i) y += ExtentRow(i) + FGridLineWidth;
  int n = 0;
  for (int i = FTopLeft.Y; i < FRowCount; ++i) {
    y += ExtentRow(i);
    if (y > height) break;
    ++n;
    y += FGridLineWidth;
  }
  return n;
}

int TCustomGrid::MaxTopRow() const {
  int avail = ClientRect().Height();
  for (int i = 0; i < FFixedRows; ++i) avail -= ExtentRow(i) + FGridLineWidth;
  int top = FRowCount;
  int used = 0;
  while (top > FFixedRows) {
    const int e = ExtentRow(top - 1) + FGridLineWidth;
    if (used + e - FGridLineWidth > avail) break;
    used += e;
    --top;
  }
  if (top == FRowCount) top = FRowCount - 1;
  return std::max(top, std::min(FFixedRows, FRowCount - 1));
}

int TCustomGrid::MaxLeftCol() const {
  int avail = ClientRect().Width();
  for (int i = 0; i < FFixedCols; ++i) avail -= ExtentCol(i) + FGridLineWidth;
  int left = FColCount;
  int used = 0;
  while (left > FFixedCols) {
    const int e = ExtentCol(left - 1) + FGridLineWidth;
    if (used + e - FGridLineWidth > avail) break;
    used += e;
    --left;
  }
  if (left == FColCount) left = FColCount - 1;
  return std::max(left, std::min(FFixedCols, FColCount - 1));
}

// ---- Scrolling

void TCustomGrid::UpdateScrollBars() {
  QAbstractScrollArea* area = ScrollArea();
  if (!area || FSyncingScroll) return;
  FSyncingScroll = true;
  const bool vert = FScrollBars == ssVertical || FScrollBars == ssBoth;
  const bool horz = FScrollBars == ssHorizontal || FScrollBars == ssBoth;
  area->setVerticalScrollBarPolicy(vert ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
  area->setHorizontalScrollBarPolicy(horz ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
  const int minRow = std::min(FFixedRows, FRowCount - 1);
  const int minCol = std::min(FFixedCols, FColCount - 1);
  QScrollBar* v = area->verticalScrollBar();
  v->setRange(minRow, std::max(minRow, MaxTopRow()));
  v->setPageStep(std::max(1, VisibleRowCount()));
  v->setSingleStep(1);
  v->setValue(FTopLeft.Y);
  QScrollBar* h = area->horizontalScrollBar();
  h->setRange(minCol, std::max(minCol, MaxLeftCol()));
  h->setPageStep(std::max(1, VisibleColCount()));
  h->setSingleStep(1);
  h->setValue(FTopLeft.X);
  FSyncingScroll = false;
}

void TCustomGrid::ScrollBarMoved(bool vertical, int value) {
  if (FSyncingScroll) return;
  if (vertical) {
    if (value != FTopLeft.Y) MoveTopLeft(FTopLeft.X, value);
  } else if (value != FTopLeft.X) {
    MoveTopLeft(value, FTopLeft.Y);
  }
}

void TCustomGrid::MoveTopLeft(int aCol, int aRow) {
  aCol = std::clamp(aCol, std::min(FFixedCols, FColCount - 1), std::max(std::min(FFixedCols, FColCount - 1), MaxLeftCol()));
  aRow = std::clamp(aRow, std::min(FFixedRows, FRowCount - 1), std::max(std::min(FFixedRows, FRowCount - 1), MaxTopRow()));
  if (aCol == FTopLeft.X && aRow == FTopLeft.Y) return;
  FTopLeft = {aCol, aRow};
  UpdateScrollBars();
  InvalidateGrid();
  TopLeftChanged();
}

void TCustomGrid::SetLeftCol(int value) { MoveTopLeft(value, FTopLeft.Y); }

void TCustomGrid::SetTopRow(int value) { MoveTopLeft(FTopLeft.X, value); }

void TCustomGrid::ScrollIntoView(int aCol, int aRow) {
  int left = FTopLeft.X;
  int top = FTopLeft.Y;
  const TRect client = ClientRect();
  if (aCol >= FFixedCols) {
    if (aCol < left) {
      left = aCol;
    } else {
      int avail = client.Width();
      for (int i = 0; i < FFixedCols; ++i) avail -= ExtentCol(i) + FGridLineWidth;
      int used = 0;
      for (int i = left; i <= aCol; ++i) used += ExtentCol(i) + (i < aCol ? FGridLineWidth : 0);
      while (used > avail && left < aCol) {
        used -= ExtentCol(left) + FGridLineWidth;
        ++left;
      }
    }
  }
  if (aRow >= FFixedRows) {
    if (aRow < top) {
      top = aRow;
    } else {
      int avail = client.Height();
      for (int i = 0; i < FFixedRows; ++i) avail -= ExtentRow(i) + FGridLineWidth;
      int used = 0;
      for (int i = top; i <= aRow; ++i) used += ExtentRow(i) + (i < aRow ? FGridLineWidth : 0);
      while (used > avail && top < aRow) {
        used -= ExtentRow(top) + FGridLineWidth;
        ++top;
      }
    }
  }
  MoveTopLeft(left, top);
}

void TCustomGrid::TopLeftChanged() {
  if (FEditorMode && FInplaceEdit) {
    const TRect r = CellRect(Col(), Row());
    if (r.Width() > 0) {
      FInplaceEdit->Move(r);
    } else {
      FInplaceEdit->Hide();
    }
  }
  if (OnTopLeftChanged && !Loading(this)) OnTopLeftChanged(this);
}

void TCustomGrid::Resize() {
  TCustomControl::Resize();
  UpdateScrollBars();
}

void TCustomGrid::FontChanged() {
  TCustomControl::FontChanged();
  InvalidateGrid();
}

void TCustomGrid::InvalidateGrid() {
  if (QAbstractScrollArea* area = ScrollArea()) area->viewport()->update();
}

void TCustomGrid::InvalidateCell(int aCol, int aRow) {
  const TRect r = CellRect(aCol, aRow);
  if (QAbstractScrollArea* area = ScrollArea()) {
    area->viewport()->update(QRect(r.Left, r.Top, r.Width() + FGridLineWidth, r.Height() + FGridLineWidth));
  }
}

// ---- The current cell and the selection

TGridRect TCustomGrid::Selection() const {
  TGridRect r;
  r.Left = std::min(FCurrent.X, FAnchor.X);
  r.Right = std::max(FCurrent.X, FAnchor.X);
  r.Top = std::min(FCurrent.Y, FAnchor.Y);
  r.Bottom = std::max(FCurrent.Y, FAnchor.Y);
  if (FOptions.Contains(goRowSelect)) {
    r.Left = FFixedCols;
    r.Right = FColCount - 1;
  }
  return r;
}

void TCustomGrid::SetSelection(const TGridRect& value) {
  FAnchor = {value.Left, value.Top};
  FCurrent = {value.Right, value.Bottom};
  ClampPositions();
  InvalidateGrid();
}

bool TCustomGrid::SelectCell(int, int) { return true; }

bool TCustomGrid::FocusCell(int aCol, int aRow, bool moveAnchor) {
  aCol = std::clamp(aCol, std::min(FFixedCols, FColCount - 1), FColCount - 1);
  aRow = std::clamp(aRow, std::min(FFixedRows, FRowCount - 1), FRowCount - 1);
  const bool moved = aCol != FCurrent.X || aRow != FCurrent.Y;
  if (moved) {
    if (!SelectCell(aCol, aRow)) return false;
    if (FEditorMode) {
      UpdateText();
      HideEditor();
    }
  }
  FCurrent = {aCol, aRow};
  if (moveAnchor || !FOptions.Contains(goRangeSelect)) FAnchor = FCurrent;
  ScrollIntoView(aCol, aRow);
  InvalidateGrid();
  if (FOptions.Contains(goAlwaysShowEditor)) ShowEditor();
  if (moved && !Loading(this)) Click();
  return true;
}

void TCustomGrid::SetCol(int value) {
  if (value == FCurrent.X) return;
  FocusCell(value, FCurrent.Y, true);
}

void TCustomGrid::SetRow(int value) {
  if (value == FCurrent.Y) return;
  FocusCell(FCurrent.X, value, true);
}

// ---- Editing

std::string TCustomGrid::GetEditText(int, int) { return std::string(); }

void TCustomGrid::SetEditText(int, int, const std::string&) {}

bool TCustomGrid::CanEditShow() {
  return FOptions.Contains(goEditing) && !FOptions.Contains(goRowSelect) && FEnabled && !Designing() &&
         FCurrent.X >= FFixedCols && FCurrent.Y >= FFixedRows && HandleAllocated();
}

TInplaceEdit* TCustomGrid::CreateEditor() { return new TInplaceEdit(this); }

void TCustomGrid::UpdateText() {
  if (FInplaceEdit && FEditorMode) SetEditText(FCurrent.X, FCurrent.Y, FInplaceEdit->Text());
}

void TCustomGrid::ShowEditor() {
  if (!CanEditShow()) return;
  if (!FInplaceEdit) {
    FInplaceEdit = CreateEditor();
    FInplaceEdit->FGrid = this;
    FInplaceEdit->SetParent(this);
  }
  const TRect r = CellRect(FCurrent.X, FCurrent.Y);
  if (r.Width() <= 0) return;
  FEditorMode = true;
  FInplaceEdit->Font()->Assign(FFont);
  FInplaceEdit->UpdateContents();
  FEditOriginal = FInplaceEdit->Text();
  FInplaceEdit->Move(r);
  if (QWidget* w = FInplaceEdit->Widget()) {
    w->setFocus(Qt::OtherFocusReason);
    if (auto* e = qobject_cast<QLineEdit*>(w)) e->selectAll();
  }
}

void TCustomGrid::HideEditor() {
  if (!FEditorMode) return;
  FEditorMode = false;
  if (FInplaceEdit) {
    const bool hadFocus = FInplaceEdit->Widget() && FInplaceEdit->Widget()->hasFocus();
    FInplaceEdit->Hide();
    if (hadFocus && Widget()) Widget()->setFocus(Qt::OtherFocusReason);
  }
  InvalidateGrid();
}

void TCustomGrid::SetEditorMode(bool value) {
  if (value) {
    ShowEditor();
  } else {
    UpdateText();
    HideEditor();
  }
}

void TCustomGrid::ColumnMoved(int fromIndex, int toIndex) {
  if (OnColumnMoved) OnColumnMoved(this, fromIndex, toIndex);
}

void TCustomGrid::RowMoved(int fromIndex, int toIndex) {
  if (OnRowMoved) OnRowMoved(this, fromIndex, toIndex);
}

// ---- Keys

void TCustomGrid::KeyDown(Word& key, TShiftState shift) {
  TCustomControl::KeyDown(key, shift);
  if (key == 0 || Designing()) return;
  const bool extend = shift.Contains(ssShift) && FOptions.Contains(goRangeSelect);
  const bool ctrl = shift.Contains(ssCtrl);
  int col = FCurrent.X;
  int row = FCurrent.Y;
  const int page = std::max(1, VisibleRowCount());
  switch (key) {
    case VK_UP: --row; break;
    case VK_DOWN: ++row; break;
    case VK_LEFT:
      if (FOptions.Contains(goRowSelect)) {
        SetLeftCol(LeftCol() - 1);
        key = 0;
        return;
      }
      --col;
      break;
    case VK_RIGHT:
      if (FOptions.Contains(goRowSelect)) {
        SetLeftCol(LeftCol() + 1);
        key = 0;
        return;
      }
      ++col;
      break;
    case VK_PRIOR:
      row -= page;
      MoveTopLeft(FTopLeft.X, FTopLeft.Y - page);
      break;
    case VK_NEXT:
      row += page;
      MoveTopLeft(FTopLeft.X, FTopLeft.Y + page);
      break;
    case VK_HOME:
      col = FFixedCols;
      if (ctrl) row = FFixedRows;
      break;
    case VK_END:
      col = FColCount - 1;
      if (ctrl) row = FRowCount - 1;
      break;
    case VK_TAB:
      if (!FOptions.Contains(goTabs) || ctrl) return;
      if (shift.Contains(ssShift)) {
        if (--col < FFixedCols) {
          col = FColCount - 1;
          if (--row < FFixedRows) row = FRowCount - 1;
        }
      } else if (++col >= FColCount) {
        col = FFixedCols;
        if (++row >= FRowCount) row = FFixedRows;
      }
      FocusCell(col, row, true);
      key = 0;
      return;
    case VK_ESCAPE:
      // Escape gives the cell back the text it had before editing.
      if (FEditorMode) {
        SetEditText(FCurrent.X, FCurrent.Y, FEditOriginal);
        HideEditor();
        key = 0;
      }
      return;
    case VK_F2:
      if (FOptions.Contains(goEditing)) {
        ShowEditor();
        if (FInplaceEdit && FEditorMode) FInplaceEdit->SetSelStart(static_cast<int>(FInplaceEdit->Text().size()));
        key = 0;
      }
      return;
    default: return;
  }
  FocusCell(col, row, !extend);
  key = 0;
}

void TCustomGrid::KeyPress(char& key) {
  TCustomControl::KeyPress(key);
  if (key == 0 || Designing()) return;
  if (key == 13) {
    if (!FOptions.Contains(goAlwaysShowEditor)) {
      if (FEditorMode) {
        UpdateText();
        HideEditor();
      } else {
        ShowEditor();
      }
    }
    key = 0;
    return;
  }
  if (static_cast<unsigned char>(key) >= 32 && !FEditorMode && FOptions.Contains(goEditing)) {
    // Typing into a cell starts editing it with what was typed.
    ShowEditor();
    if (FEditorMode && FInplaceEdit) {
      FInplaceEdit->SetText(std::string(1, key));
      FInplaceEdit->SetSelStart(1);
    }
    key = 0;
  }
}

// ---- Mouse

int TCustomGrid::SizingCol(int x, int y) const {
  if (!FOptions.Contains(goColSizing)) return -1;
  int fixedHeight = 0;
  for (int i = 0; i < FFixedRows; ++i) fixedHeight += ExtentRow(i) + FGridLineWidth;
  if (y >= fixedHeight) return -1;
  for (int c = 0; c < FColCount; ++c) {
    const TRect r = CellRect(c, 0);
    if (r.Width() == 0 && r.Right == 0) continue;
    if (std::abs(x - r.Right) <= 2) return c;
  }
  return -1;
}

int TCustomGrid::SizingRow(int x, int y) const {
  if (!FOptions.Contains(goRowSizing)) return -1;
  int fixedWidth = 0;
  for (int i = 0; i < FFixedCols; ++i) fixedWidth += ExtentCol(i) + FGridLineWidth;
  if (x >= fixedWidth) return -1;
  for (int r = 0; r < FRowCount; ++r) {
    const TRect rect = CellRect(0, r);
    if (rect.Height() == 0 && rect.Bottom == 0) continue;
    if (std::abs(y - rect.Bottom) <= 2) return r;
  }
  return -1;
}

void TCustomGrid::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  if (button == mbLeft && !Designing() && FEnabled) {
    if (Widget() && !FEditorMode) Widget()->setFocus(Qt::MouseFocusReason);
    if (int c = SizingCol(x, y); c >= 0) {
      FGridState = gsColSizing;
      FSizingIndex = c;
      FSizingOrigin = x;
      FSizingStart = ColWidths(c);
    } else if (int r = SizingRow(x, y); r >= 0) {
      FGridState = gsRowSizing;
      FSizingIndex = r;
      FSizingOrigin = y;
      FSizingStart = RowHeights(r);
    } else {
      const TGridCoord cell = MouseCoord(x, y);
      if (cell.X >= FFixedCols && cell.Y >= FFixedRows) {
        if (cell == FCurrent && !shift.Contains(ssDouble)) {
          if (FOptions.Contains(goEditing) && !FEditorMode) ShowEditor();
        } else {
          FocusCell(cell.X, cell.Y, !(shift.Contains(ssShift) && FOptions.Contains(goRangeSelect)));
        }
        FGridState = gsSelecting;
      }
    }
  }
  TCustomControl::MouseDown(button, shift, x, y);
}

void TCustomGrid::MouseMove(TShiftState shift, int x, int y) {
  if (FGridState == gsSelecting && FOptions.Contains(goRangeSelect)) {
    const TGridCoord cell = MouseCoord(x, y);
    if (cell.X >= FFixedCols && cell.Y >= FFixedRows && !(cell == FCurrent)) FocusCell(cell.X, cell.Y, false);
  } else if (FGridState == gsColSizing) {
    SetColWidths(FSizingIndex, std::max(0, FSizingStart + x - FSizingOrigin));
  } else if (FGridState == gsRowSizing) {
    SetRowHeights(FSizingIndex, std::max(0, FSizingStart + y - FSizingOrigin));
  }
  TCustomControl::MouseMove(shift, x, y);
}

void TCustomGrid::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  FGridState = gsNormal;
  TCustomControl::MouseUp(button, shift, x, y);
}

void TCustomGrid::DblClick() {
  if (FOptions.Contains(goEditing) && !Designing()) ShowEditor();
  TCustomControl::DblClick();
}

bool TCustomGrid::WidgetEvent(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) InvalidateGrid();
  return TCustomControl::WidgetEvent(watched, event);
}

// ---- Painting

void TCustomGrid::DrawCell(QPainter&, int, int, const TRect&, TGridDrawState) {}

void TCustomGrid::Paint(QPainter& painter) {
  const TRect client = ClientRect();
  painter.fillRect(QRect(0, 0, client.Width(), client.Height()), Sys(FColor));
  const TGridRect sel = Selection();
  const bool focused = Widget() && (Widget()->hasFocus() || (FInplaceEdit && FInplaceEdit->Widget() &&
                                                             FInplaceEdit->Widget()->hasFocus()));
  const QColor fixedLine = Sys(cl3DDkShadow);
  const QColor line = Sys(clBtnFace);
  // The columns and rows that show: the fixed ones, then from the top-left cell on.
  std::vector<int> cols;
  std::vector<int> rows;
  {
    int x = 0;
    for (int c = 0; c < FFixedCols && x < client.Width(); ++c) {
      cols.push_back(c);
      x += ExtentCol(c) + FGridLineWidth;
    }
    for (int c = FTopLeft.X; c < FColCount && x < client.Width(); ++c) {
      cols.push_back(c);
      x += ExtentCol(c) + FGridLineWidth;
    }
    int y = 0;
    for (int r = 0; r < FFixedRows && y < client.Height(); ++r) {
      rows.push_back(r);
      y += ExtentRow(r) + FGridLineWidth;
    }
    for (int r = FTopLeft.Y; r < FRowCount && y < client.Height(); ++r) {
      rows.push_back(r);
      y += ExtentRow(r) + FGridLineWidth;
    }
  }
  int y = 0;
  for (int r : rows) {
    const int h = ExtentRow(r);
    int x = 0;
    for (int c : cols) {
      const int w = ExtentCol(c);
      const bool fixed = c < FFixedCols || r < FFixedRows;
      TGridDrawState state;
      if (fixed) state.Include(gdFixed);
      const bool current = c == FCurrent.X && r == FCurrent.Y;
      if (!fixed && c >= sel.Left && c <= sel.Right && r >= sel.Top && r <= sel.Bottom) {
        // The current cell shows as selected only when asked to, or in a selected row.
        if (!current || FOptions.Contains(goDrawFocusSelected) || FOptions.Contains(goRowSelect)) {
          state.Include(gdSelected);
        }
      }
      if (current && focused) state.Include(gdFocused);
      const TRect rect = Rect(x, y, x + w, y + h);
      const QRect qr(x, y, w, h);
      painter.save();
      painter.setClipRect(qr);
      if (FDefaultDrawing) {
        painter.fillRect(qr, fixed ? Sys(FFixedColor) : state.Contains(gdSelected) ? Sys(clHighlight) : Sys(FColor));
        if (fixed && FCtl3D && FGridLineWidth > 0) {
          QRect edge = qr;
          Frame3D(painter, edge, Sys(clBtnHighlight), Sys(clBtnShadow));
        }
      }
      DrawCell(painter, c, r, rect, state);
      if (FDefaultDrawing && current && focused && !fixed && !FEditorMode && !FOptions.Contains(goDrawFocusSelected) &&
          !FOptions.Contains(goRowSelect)) {
        DrawFocusRect(painter, qr, Sys(clWindowText));
      }
      painter.restore();
      // The lines right of and below the cell.
      if (FGridLineWidth > 0 && ColWidths(c) >= 0) {
        const bool vert = fixed ? FOptions.Contains(goFixedVertLine) : FOptions.Contains(goVertLine);
        const bool horz = fixed ? FOptions.Contains(goFixedHorzLine) : FOptions.Contains(goHorzLine);
        const QColor lc = fixed ? fixedLine : line;
        if (vert) painter.fillRect(QRect(x + w, y, FGridLineWidth, h + FGridLineWidth), lc);
        if (horz) painter.fillRect(QRect(x, y + h, w + FGridLineWidth, FGridLineWidth), lc);
      }
      x += w + FGridLineWidth;
    }
    y += h + FGridLineWidth;
  }
}

// ---- Streaming

void TCustomGrid::ReadColWidths(TReader& reader) {
  reader.ReadListBegin();
  int i = 0;
  while (!reader.EndOfList()) {
    const int w = reader.ReadInteger();
    if (i < FColCount) SetColWidths(i, w);
    ++i;
  }
  reader.ReadListEnd();
}

void TCustomGrid::WriteColWidths(TWriter& writer) {
  writer.WriteListBegin();
  for (int i = 0; i < FColCount; ++i) writer.WriteInteger(ColWidths(i));
  writer.WriteListEnd();
}

void TCustomGrid::ReadRowHeights(TReader& reader) {
  reader.ReadListBegin();
  int i = 0;
  while (!reader.EndOfList()) {
    const int h = reader.ReadInteger();
    if (i < FRowCount) SetRowHeights(i, h);
    ++i;
  }
  reader.ReadListEnd();
}

void TCustomGrid::WriteRowHeights(TWriter& writer) {
  writer.WriteListBegin();
  for (int i = 0; i < FRowCount; ++i) writer.WriteInteger(RowHeights(i));
  writer.WriteListEnd();
}

void TCustomGrid::DefineProperties(TFiler& filer) {
  TCustomControl::DefineProperties(filer);
  bool cols = FColWidthsSet;
  bool rows = FRowHeightsSet;
  if (auto* ancestor = dynamic_cast<TCustomGrid*>(filer.Ancestor())) {
    cols = rows = false;
    for (int i = 0; i < FColCount; ++i) cols = cols || ColWidths(i) != ancestor->ColWidths(i);
    for (int i = 0; i < FRowCount; ++i) rows = rows || RowHeights(i) != ancestor->RowHeights(i);
    cols = cols || FColCount != ancestor->FColCount;
    rows = rows || FRowCount != ancestor->FRowCount;
  }
  filer.DefineProperty(
      "ColWidths", [this](TReader& r) { ReadColWidths(r); }, [this](TWriter& w) { WriteColWidths(w); }, cols);
  filer.DefineProperty(
      "RowHeights", [this](TReader& r) { ReadRowHeights(r); }, [this](TWriter& w) { WriteRowHeights(w); }, rows);
}

void TCustomGrid::Loaded() {
  TCustomControl::Loaded();
  ClampPositions();
  UpdateScrollBars();
  if (FOptions.Contains(goAlwaysShowEditor)) ShowEditor();
}

// ---------------------------------------------------------------------------------------
// TDrawGrid

namespace {

template <class C>
void PublishGrid(TClassBuilder<C>& c) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode"});
  c.Property("BorderStyle", &C::BorderStyle, &C::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color"});
  c.Property("ColCount", &C::ColCount, &C::SetColCount).Default(5);
  PublishControlProperties(c, {"Constraints", "Ctl3D"});
  c.Property("DefaultColWidth", &C::DefaultColWidth, &C::SetDefaultColWidth).Default(64);
  c.Property("DefaultRowHeight", &C::DefaultRowHeight, &C::SetDefaultRowHeight).Default(24);
  c.Property("DefaultDrawing", &C::DefaultDrawing, &C::SetDefaultDrawing).Default(true);
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled"});
  c.Property("FixedColor", &C::FixedColor, &C::SetFixedColor).Default(clBtnFace);
  c.Property("FixedCols", &C::FixedCols, &C::SetFixedCols).Default(1);
  c.Property("RowCount", &C::RowCount, &C::SetRowCount).Default(5);
  c.Property("FixedRows", &C::FixedRows, &C::SetFixedRows).Default(1);
  PublishControlProperties(c, {"Font"});
  c.Property("GridLineWidth", &C::GridLineWidth, &C::SetGridLineWidth).Default(1);
  c.Property("Options", &C::Options, &C::SetOptions)
      .Default(TGridOptions{goFixedVertLine, goFixedHorzLine, goVertLine, goHorzLine, goRangeSelect});
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu"});
  c.Property("ScrollBars", &C::ScrollBars, &C::SetScrollBars).Default(ssBoth);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible", "OnClick"});
  c.Property("OnColumnMoved", &C::OnColumnMoved, &C::OnColumnMoved);
  PublishControlProperties(c, {"OnDblClick", "OnDragDrop", "OnDragOver"});
  c.Property("OnDrawCell", &C::OnDrawCell, &C::OnDrawCell);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit"});
  c.Property("OnGetEditMask", &C::OnGetEditMask, &C::OnGetEditMask);
  c.Property("OnGetEditText", &C::OnGetEditText, &C::OnGetEditText);
  PublishControlProperties(c, {"OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("OnMouseWheelDown", &C::OnMouseWheelDown, &C::OnMouseWheelDown);
  c.Property("OnMouseWheelUp", &C::OnMouseWheelUp, &C::OnMouseWheelUp);
  c.Property("OnRowMoved", &C::OnRowMoved, &C::OnRowMoved);
  c.Property("OnSelectCell", &C::OnSelectCell, &C::OnSelectCell);
  c.Property("OnSetEditText", &C::OnSetEditText, &C::OnSetEditText);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
  c.Property("OnTopLeftChanged", &C::OnTopLeftChanged, &C::OnTopLeftChanged);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

}  // namespace

LUMORA_CLASS_IMPL(TDrawGrid) { PublishGrid(c); }

void TDrawGrid::DrawCell(QPainter& painter, int aCol, int aRow, const TRect& rect, TGridDrawState state) {
  TCustomGrid::DrawCell(painter, aCol, aRow, rect, state);
  if (OnDrawCell) OnDrawCell(this, aCol, aRow, rect, state);
}

bool TDrawGrid::SelectCell(int aCol, int aRow) {
  bool can = TCustomGrid::SelectCell(aCol, aRow);
  if (OnSelectCell && !Loading(this)) OnSelectCell(this, aCol, aRow, can);
  return can;
}

std::string TDrawGrid::GetEditText(int aCol, int aRow) {
  std::string value;
  if (OnGetEditText) OnGetEditText(this, aCol, aRow, value);
  return value;
}

void TDrawGrid::SetEditText(int aCol, int aRow, const std::string& value) {
  if (OnSetEditText) OnSetEditText(this, aCol, aRow, value);
}

// ---------------------------------------------------------------------------------------
// TStringGrid

// A row or a column of a string grid seen as a string list.
class TStringGridStrings : public TStrings {
  LUMORA_CLASS(TStringGridStrings, TStrings)
public:
  TStringGridStrings(TStringGrid* grid, int index, bool row) : FGrid(grid), FIndex(index), FRow(row) {}

  int Add(const std::string& s) override {
    // The first empty cell takes the text.
    for (int i = 0; i < GetCount(); ++i) {
      if (Get(i).empty()) {
        Put(i, s);
        return i;
      }
    }
    throw EInvalidGridOperation(SInvalidStringGridOp);
  }
  void Insert(int, const std::string&) override { throw EInvalidGridOperation(SInvalidStringGridOp); }
  void Delete(int) override { throw EInvalidGridOperation(SInvalidStringGridOp); }
  void Clear() override {
    for (int i = 0; i < GetCount(); ++i) {
      Put(i, std::string());
      PutObject(i, nullptr);
    }
  }

protected:
  std::string Get(int index) const override {
    Check(index);
    return FRow ? FGrid->Cells(index, FIndex) : FGrid->Cells(FIndex, index);
  }
  int GetCount() const override { return FRow ? FGrid->ColCount() : FGrid->RowCount(); }
  TObject* GetObject(int index) const override {
    Check(index);
    return FRow ? FGrid->Objects(index, FIndex) : FGrid->Objects(FIndex, index);
  }
  void Put(int index, const std::string& s) override {
    Check(index);
    if (FRow) {
      FGrid->SetCells(index, FIndex, s);
    } else {
      FGrid->SetCells(FIndex, index, s);
    }
  }
  void PutObject(int index, TObject* object) override {
    Check(index);
    if (FRow) {
      FGrid->SetObjects(index, FIndex, object);
    } else {
      FGrid->SetObjects(FIndex, index, object);
    }
  }

private:
  void Check(int index) const {
    if (index < 0 || index >= GetCount()) throw EInvalidGridOperation(SIndexOutOfRange);
  }
  TStringGrid* FGrid;
  int FIndex;
  bool FRow;
};

LUMORA_CLASS_IMPL(TStringGridStrings) {}

LUMORA_CLASS_IMPL(TStringGrid) { PublishGrid(c); }

TStringGrid::TStringGrid(TComponent* owner) : TDrawGrid(owner) {}

TStringGrid::~TStringGrid() {
  for (auto& [i, s] : FRows) delete s;
  for (auto& [i, s] : FCols) delete s;
}

std::string TStringGrid::Cells(int aCol, int aRow) const {
  const auto it = FCells.find(Key(aCol, aRow));
  return it == FCells.end() ? std::string() : it->second.Text;
}

void TStringGrid::SetCells(int aCol, int aRow, const std::string& value) {
  if (aCol < 0 || aRow < 0 || aCol >= ColCount() || aRow >= RowCount()) throw EInvalidGridOperation(SIndexOutOfRange);
  TCell& cell = FCells[Key(aCol, aRow)];
  cell.Text = value;
  if (cell.Text.empty() && !cell.Object) FCells.erase(Key(aCol, aRow));
  InvalidateCell(aCol, aRow);
  // The editor shows the new text of its cell.
  if (EditorMode() && aCol == Col() && aRow == Row() && FInplaceEdit && FInplaceEdit->Text() != value) {
    FInplaceEdit->UpdateContents();
  }
}

TObject* TStringGrid::Objects(int aCol, int aRow) const {
  const auto it = FCells.find(Key(aCol, aRow));
  return it == FCells.end() ? nullptr : it->second.Object;
}

void TStringGrid::SetObjects(int aCol, int aRow, TObject* value) {
  if (aCol < 0 || aRow < 0 || aCol >= ColCount() || aRow >= RowCount()) throw EInvalidGridOperation(SIndexOutOfRange);
  TCell& cell = FCells[Key(aCol, aRow)];
  cell.Object = value;
  if (cell.Text.empty() && !cell.Object) FCells.erase(Key(aCol, aRow));
}

TStrings* TStringGrid::Rows(int index) {
  if (index < 0 || index >= RowCount()) throw EInvalidGridOperation(SIndexOutOfRange);
  TStrings*& s = FRows[index];
  if (!s) s = new TStringGridStrings(this, index, true);
  return s;
}

TStrings* TStringGrid::Cols(int index) {
  if (index < 0 || index >= ColCount()) throw EInvalidGridOperation(SIndexOutOfRange);
  TStrings*& s = FCols[index];
  if (!s) s = new TStringGridStrings(this, index, false);
  return s;
}

void TStringGrid::SizeChanged(int oldColCount, int oldRowCount) {
  TDrawGrid::SizeChanged(oldColCount, oldRowCount);
  if (ColCount() < oldColCount || RowCount() < oldRowCount) {
    for (auto it = FCells.begin(); it != FCells.end();) {
      const int row = static_cast<int>(it->first >> 32);
      const int col = static_cast<int>(static_cast<std::uint32_t>(it->first & 0xFFFFFFFF));
      if (col >= ColCount() || row >= RowCount()) {
        it = FCells.erase(it);
      } else {
        ++it;
      }
    }
    for (auto* list : {&FRows, &FCols}) {
      const int limit = list == &FRows ? RowCount() : ColCount();
      for (auto it = list->lower_bound(limit); it != list->end();) {
        delete it->second;
        it = list->erase(it);
      }
    }
  }
}

std::string TStringGrid::GetEditText(int aCol, int aRow) {
  std::string value = Cells(aCol, aRow);
  if (OnGetEditText) OnGetEditText(this, aCol, aRow, value);
  return value;
}

void TStringGrid::SetEditText(int aCol, int aRow, const std::string& value) {
  // The cell is not repainted under the editor that shows its text.
  const auto it = FCells.find(Key(aCol, aRow));
  if (it == FCells.end() || it->second.Text != value) {
    TCell& cell = FCells[Key(aCol, aRow)];
    cell.Text = value;
    if (cell.Text.empty() && !cell.Object) FCells.erase(Key(aCol, aRow));
  }
  TDrawGrid::SetEditText(aCol, aRow, value);
}

void TStringGrid::DrawCell(QPainter& painter, int aCol, int aRow, const TRect& rect, TGridDrawState state) {
  if (DefaultDrawing()) {
    const std::string text = Cells(aCol, aRow);
    if (!text.empty()) {
      const bool highlighted = state.Contains(gdSelected) && !state.Contains(gdFixed);
      painter.setPen(Sys(highlighted ? clHighlightText : FFont->Color()));
      painter.setFont(FFont->Handle());
      const QFontMetrics fm(FFont->Handle());
      painter.drawText(rect.Left + 2, rect.Top + 2 + fm.ascent(), FFont->ToUnicode(text));
    }
  }
  TDrawGrid::DrawCell(painter, aCol, aRow, rect, state);
}

// ---------------------------------------------------------------------------------------

void RegisterGridsClasses() { RegisterClasses({TDrawGrid::StaticClass(), TStringGrid::StaticClass()}); }
