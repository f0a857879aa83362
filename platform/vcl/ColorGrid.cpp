#include "platform/vcl/ColorGrid.h"

#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/Publish.h"

#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one
#include <QEvent>
#include <QPainter>

#include "platform/vcl/Menus.h"

#include <algorithm>

namespace {

// The sixteen colours of the basic palette: the eight dark ones, then the bright ones.
constexpr TColor kPalette[TColorGrid::kColorCount] = {
    clBlack, clMaroon, clGreen, clOlive, clNavy, clPurple, clTeal, clSilver,
    clGray,  clRed,    clLime,  clYellow, clBlue, clFuchsia, clAqua, clWhite};

bool InRange(int index) { return index >= 0 && index < TColorGrid::kColorCount; }

// Ink that reads on a cell of colour `c`.
QColor MarkInk(const QColor& c) {
  return (c.red() * 30 + c.green() * 59 + c.blue() * 11) / 100 < 128 ? QColor(Qt::white) : QColor(Qt::black);
}

}  // namespace

LUMORA_CLASS_IMPL(TColorGrid) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("BackgroundEnabled", &TColorGrid::BackgroundEnabled, &TColorGrid::SetBackgroundEnabled).Default(true);
  c.Property("BackgroundIndex", &TColorGrid::BackgroundIndex, &TColorGrid::SetBackgroundIndex).Default(0);
  c.Property("ClickEnablesColor", &TColorGrid::ClickEnablesColor, &TColorGrid::SetClickEnablesColor).Default(false);
  PublishControlProperties(c, {"Constraints", "Ctl3D", "DragCursor", "DragKind", "DragMode", "Enabled", "Font"});
  c.Property("ForegroundEnabled", &TColorGrid::ForegroundEnabled, &TColorGrid::SetForegroundEnabled).Default(true);
  c.Property("ForegroundIndex", &TColorGrid::ForegroundIndex, &TColorGrid::SetForegroundIndex).Default(0);
  c.Property("GridOrdering", &TColorGrid::GridOrdering, &TColorGrid::SetGridOrdering).Default(go4x4);
  PublishControlProperties(c, {"ParentCtl3D", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("Selection", &TColorGrid::Selection, &TColorGrid::SetSelection).Default(0);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible"});
  c.Property("OnChange", &TColorGrid::OnChange, &TColorGrid::OnChange);
  PublishControlProperties(c, {"OnClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit",
                               "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnStartDock", "OnStartDrag"});
  c.Property("TabStop").Default(true);
}

TColorGrid::TColorGrid(TComponent* owner) : TCustomControl(owner) {
  FWidth = 100;
  FHeight = 100;
  FTabStop = true;
}

TColor TColorGrid::ColorOf(int index) { return InRange(index) ? kPalette[index] : clBlack; }

int TColorGrid::Columns() const {
  switch (FGridOrdering) {
    case go16x1: return 16;
    case go8x2: return 8;
    case go4x4: return 4;
    case go2x8: return 2;
    case go1x16: return 1;
  }
  return 4;
}

QRect TColorGrid::CellRect(int index) const {
  if (!InRange(index)) return QRect();
  const int cols = Columns();
  const int rows = Rows();
  const int col = index % cols;
  const int row = index / cols;
  // Cells share the width and height; the spare pixels go to the last ones.
  const int left = FWidth * col / cols;
  const int top = FHeight * row / rows;
  return QRect(left, top, FWidth * (col + 1) / cols - left, FHeight * (row + 1) / rows - top);
}

int TColorGrid::CellAt(int x, int y) const {
  if (x < 0 || y < 0 || x >= FWidth || y >= FHeight) return -1;
  const int cols = Columns();
  const int rows = Rows();
  const int col = std::min(cols - 1, x * cols / std::max(1, FWidth));
  const int row = std::min(rows - 1, y * rows / std::max(1, FHeight));
  return row * cols + col;
}

void TColorGrid::SetGridOrdering(TGridOrdering value) {
  FGridOrdering = value;
  Invalidate();
}

// An index outside the palette is not a colour: it is left alone.
void TColorGrid::SetForegroundIndex(int value) {
  if (!InRange(value) || value == FForegroundIndex) return;
  FForegroundIndex = value;
  Invalidate();
  Change();
}

void TColorGrid::SetBackgroundIndex(int value) {
  if (!InRange(value) || value == FBackgroundIndex) return;
  FBackgroundIndex = value;
  Invalidate();
  Change();
}

void TColorGrid::SetForegroundEnabled(bool value) {
  if (value == FForegroundEnabled) return;
  FForegroundEnabled = value;
  Invalidate();
  Change();
}

void TColorGrid::SetBackgroundEnabled(bool value) {
  if (value == FBackgroundEnabled) return;
  FBackgroundEnabled = value;
  Invalidate();
  Change();
}

void TColorGrid::SetSelection(int value) {
  if (!InRange(value)) return;
  FSelection = value;
  Invalidate();
}

void TColorGrid::Change() {
  if (OnChange && !Loading(this)) OnChange(this);
}

void TColorGrid::Paint(QPainter& p) {
  p.fillRect(QRect(0, 0, FWidth, FHeight), Sys(clBtnFace));
  const bool focused = Focused();
  p.setFont(FFont->Handle());
  for (int i = 0; i < kColorCount; ++i) {
    QRect r = CellRect(i);
    if (r.isEmpty()) continue;
    DrawSunkenEdge(p, r);
    const QColor fill = Sys(kPalette[i]);
    p.fillRect(r, fill);
    const bool fore = FForegroundEnabled && i == FForegroundIndex;
    const bool back = FBackgroundEnabled && i == FBackgroundIndex;
    if (fore || back) {
      p.setPen(MarkInk(fill));
      p.drawText(r, Qt::AlignCenter, fore && back ? QStringLiteral("FB") : fore ? QStringLiteral("FG") : QStringLiteral("BG"));
    }
    if (focused && i == FSelection) DrawFocusRect(p, r.adjusted(1, 1, -1, -1), MarkInk(fill));
  }
}

void TColorGrid::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  if (FEnabled && !Designing()) {
    if (FTabStop && Widget()) Widget()->setFocus(Qt::MouseFocusReason);
    const int cell = CellAt(x, y);
    if (cell >= 0) {
      FSelection = cell;
      if (button == mbLeft) {
        if (FClickEnablesColor) SetForegroundEnabled(true);
        SetForegroundIndex(cell);
      } else if (button == mbRight) {
        if (FClickEnablesColor) SetBackgroundEnabled(true);
        SetBackgroundIndex(cell);
      }
      Invalidate();
    }
  }
  TCustomControl::MouseDown(button, shift, x, y);
}

void TColorGrid::KeyDown(Word& key, TShiftState shift) {
  TCustomControl::KeyDown(key, shift);
  const int cols = Columns();
  int next = FSelection;
  switch (key) {
    case VK_LEFT: next = FSelection % cols > 0 ? FSelection - 1 : FSelection; break;
    case VK_RIGHT: next = FSelection % cols < cols - 1 ? FSelection + 1 : FSelection; break;
    case VK_UP: next = FSelection >= cols ? FSelection - cols : FSelection; break;
    case VK_DOWN: next = FSelection + cols < kColorCount ? FSelection + cols : FSelection; break;
    default: return;
  }
  key = 0;
  SetSelection(next);
}

// The selection's frame shows only while the grid has the focus.
bool TColorGrid::WidgetEvent(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) Invalidate();
  return TCustomControl::WidgetEvent(watched, event);
}

// F and B choose the selected cell as the foreground or the background.
void TColorGrid::KeyPress(char& key) {
  TCustomControl::KeyPress(key);
  if (key == 'F' || key == 'f') {
    if (FClickEnablesColor) SetForegroundEnabled(true);
    SetForegroundIndex(FSelection);
    key = 0;
  } else if (key == 'B' || key == 'b') {
    if (FClickEnablesColor) SetBackgroundEnabled(true);
    SetBackgroundIndex(FSelection);
    key = 0;
  }
}
