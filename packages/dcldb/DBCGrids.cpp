#include "packages/dcldb/DBCGrids.h"

#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Publish.h"

#include <QPainter>

#include <algorithm>

namespace {
constexpr int kScrollBarSize = 16;
}  // namespace

LUMORA_CLASS_IMPL(TDBCtrlGrid) {
  PublishControlProperties(c, {"Align"});
  c.Property("AllowDelete", &TDBCtrlGrid::FAllowDelete, &TDBCtrlGrid::FAllowDelete).Default(true);
  c.Property("AllowInsert", &TDBCtrlGrid::FAllowInsert, &TDBCtrlGrid::FAllowInsert).Default(true);
  PublishControlProperties(c, {"Anchors"});
  c.Property("ColCount", &TDBCtrlGrid::ColCount, &TDBCtrlGrid::SetColCount);
  PublishControlProperties(c, {"Color", "Constraints"});
  c.Property("DataSource", &TDBCtrlGrid::DataSource, &TDBCtrlGrid::SetDataSource);
  PublishControlProperties(c, {"DragCursor", "DragMode", "Enabled", "Font"});
  c.Property("Orientation", &TDBCtrlGrid::Orientation, &TDBCtrlGrid::SetOrientation).Default(goVertical);
  c.Property("PanelBorder", &TDBCtrlGrid::FPanelBorder, &TDBCtrlGrid::FPanelBorder).Default(gbRaised);
  c.Property("PanelHeight", &TDBCtrlGrid::PanelHeight, &TDBCtrlGrid::SetPanelHeight);
  c.Property("PanelWidth", &TDBCtrlGrid::PanelWidth, &TDBCtrlGrid::SetPanelWidth);
  PublishControlProperties(c, {"ParentColor", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("RowCount", &TDBCtrlGrid::RowCount, &TDBCtrlGrid::SetRowCount);
  c.Property("SelectedColor", &TDBCtrlGrid::FSelectedColor, &TDBCtrlGrid::FSelectedColor);
  c.Property("ShowFocus", &TDBCtrlGrid::FShowFocus, &TDBCtrlGrid::FShowFocus).Default(true);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible", "OnClick", "OnDblClick", "OnDragDrop",
                               "OnDragOver", "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp",
                               "OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("OnPaintPanel", &TDBCtrlGrid::OnPaintPanel, &TDBCtrlGrid::OnPaintPanel);
  PublishControlProperties(c, {"OnStartDrag"});
}

TDBCtrlGrid::TDBCtrlGrid(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csOpaque, csDoubleClicks, csAcceptsControls};
  FTabStop = true;
  FParentColor = true;
  AdjustSize();
}

TDBCtrlGrid::~TDBCtrlGrid() { SetDataSource(nullptr); }

void TDBCtrlGrid::CreateWidget() { AdoptWidget(new TPaintedWidget(this, false)); }

void TDBCtrlGrid::SetColCount(int value) {
  FColCount = std::max(1, value);
  AdjustSize();
}

void TDBCtrlGrid::SetRowCount(int value) {
  FRowCount = std::max(1, value);
  AdjustSize();
}

void TDBCtrlGrid::SetPanelWidth(int value) {
  FPanelWidth = std::max(1, value);
  AdjustSize();
}

void TDBCtrlGrid::SetPanelHeight(int value) {
  FPanelHeight = std::max(1, value);
  AdjustSize();
}

void TDBCtrlGrid::SetOrientation(TDBCtrlGridOrientation value) {
  FOrientation = value;
  AdjustSize();
}

void TDBCtrlGrid::AdjustSize() {
  if (Loading(this)) return;
  const int bar = kScrollBarSize;
  const int w = FColCount * FPanelWidth + (FOrientation == goVertical ? bar : 0);
  const int h = FRowCount * FPanelHeight + (FOrientation == goHorizontal ? bar : 0);
  SetBounds(FLeft, FTop, w, h);
  Invalidate();
}

void TDBCtrlGrid::Loaded() {
  TWinControl::Loaded();
  AdjustSize();
}

void TDBCtrlGrid::Paint(QPainter& painter) {
  painter.fillRect(QRect(0, 0, FWidth, FHeight), ColorToQColor(FColor));
  for (int row = 0; row < FRowCount; ++row) {
    for (int col = 0; col < FColCount; ++col) {
      QRect panel(col * FPanelWidth, row * FPanelHeight, FPanelWidth, FPanelHeight);
      if (FPanelBorder == gbRaised) DrawRaisedEdge(painter, panel);
    }
  }
  // The scroll bar along the panels, with nothing to scroll.
  const bool vertical = FOrientation == goVertical;
  QRect bar = vertical ? QRect(FColCount * FPanelWidth, 0, kScrollBarSize, FHeight)
                       : QRect(0, FRowCount * FPanelHeight, FWidth, kScrollBarSize);
  QBrush dither(ColorToQColor(clBtnHighlight), Qt::Dense4Pattern);
  painter.fillRect(bar, ColorToQColor(clBtnFace));
  painter.fillRect(bar, dither);
  const int arrow = kScrollBarSize;
  for (int end = 0; end < 2; ++end) {
    QRect button = vertical ? QRect(bar.left(), end ? bar.bottom() - arrow + 1 : bar.top(), arrow, arrow)
                            : QRect(end ? bar.right() - arrow + 1 : bar.left(), bar.top(), arrow, arrow);
    painter.fillRect(button, ColorToQColor(clBtnFace));
    QRect face = button;
    DrawRaisedEdge(painter, face);
    const QPoint c = button.center();
    const QColor ink = ColorToQColor(clGrayText);
    for (int i = 0; i < 4; ++i) {
      const int d = end ? i : 3 - i;
      if (vertical) painter.fillRect(QRect(c.x() - d, c.y() - 2 + i, 2 * d + 1, 1), ink);
      else painter.fillRect(QRect(c.x() - 2 + i, c.y() - d, 1, 2 * d + 1), ink);
    }
  }
}

void TDBCtrlGrid::Notification(TComponent* component, TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation == opRemove && component == FDataSource) FDataSource = nullptr;
}
