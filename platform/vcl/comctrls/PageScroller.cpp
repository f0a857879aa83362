#include "platform/vcl/comctrls/PageScroller.h"

#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Publish.h"
#include "platform/vcl/comctrls/ComCtrlsShared.h"

#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one
#include <QRegion>
#include <QWidget>

#include "platform/vcl/Menus.h"

LUMORA_CLASS_IMPL(TPageScroller) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("AutoScroll", &TPageScroller::AutoScroll, &TPageScroller::SetAutoScroll).Default(false);
  PublishControlProperties(c, {"BorderWidth"});
  c.Property("ButtonSize", &TPageScroller::ButtonSize, &TPageScroller::SetButtonSize).Default(12);
  PublishControlProperties(c, {"Color", "Constraints"});
  c.Property("Control", &TPageScroller::Control, &TPageScroller::SetControl);
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font"});
  c.Property("Margin", &TPageScroller::Margin, &TPageScroller::SetMargin).Default(0);
  c.Property("Orientation", &TPageScroller::Orientation, &TPageScroller::SetOrientation).Default(soHorizontal);
  PublishControlProperties(c, {"ParentColor", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("Position", &TPageScroller::Position, &TPageScroller::SetPosition).Default(0);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible", "OnClick", "OnDragDrop", "OnDragOver",
                               "OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnMouseDown", "OnMouseMove",
                               "OnMouseUp", "OnResize"});
  c.Property("OnScroll", &TPageScroller::OnScroll, &TPageScroller::OnScroll);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
}

TPageScroller::TPageScroller(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csAcceptsControls, csCaptureMouse, csClickEvents, csDoubleClicks};
  FWidth = 150;
  FHeight = 45;
}

void TPageScroller::CreateWidget() { AdoptWidget(new TPaintedWidget(this, true)); }

void TPageScroller::SetButtonSize(int value) { FButtonSize = std::max(0, value); PlaceControl(); }
void TPageScroller::SetMargin(int value) { FMargin = std::max(0, value); PlaceControl(); }
void TPageScroller::SetOrientation(TPageScrollerOrientation value) { FOrientation = value; PlaceControl(); }

void TPageScroller::SetControl(TWinControl* value) {
  if (value == this) return;
  if (FControl) FControl->RemoveFreeNotification(this);
  FControl = value;
  if (value) {
    value->FreeNotification(this);
    if (!Loading(this) && value->Parent() != this) value->SetParent(this);
  }
  FPosition = 0;
  PlaceControl();
}

void TPageScroller::Notification(TComponent* component, TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation == opRemove && component == FControl) FControl = nullptr;
}

int TPageScroller::Extent() const { return FOrientation == soHorizontal ? ClientWidth() : ClientHeight(); }

int TPageScroller::ControlExtent() const {
  if (!FControl) return 0;
  return FOrientation == soHorizontal ? FControl->Width() : FControl->Height();
}

bool TPageScroller::ButtonVisible(TPageScrollerButton button) const {
  if (!FControl) return false;
  if (button == sbFirst) return FPosition > 0;
  return FPosition + Extent() < ControlExtent() + (ButtonVisible(sbFirst) ? FButtonSize : 0);
}

void TPageScroller::SetPosition(int value) {
  if (Loading(this)) {
    FPosition = value;
    return;
  }
  const int most = std::max(0, ControlExtent() - Extent() + 2 * FButtonSize);
  value = std::clamp(value, 0, most);
  if (value == FPosition) return;
  FPosition = value;
  PlaceControl();
  Invalidate();
}

void TPageScroller::PlaceControl() {
  if (!FControl || FPlacing || Loading(this) || FControl->Parent() != this) return;
  FPlacing = true;
  const int first = ButtonVisible(sbFirst) ? FButtonSize : 0;
  if (FOrientation == soHorizontal) {
    FControl->SetBounds(first - FPosition, FMargin, FControl->Width(), std::max(0, ClientHeight() - 2 * FMargin));
  } else {
    FControl->SetBounds(FMargin, first - FPosition, std::max(0, ClientWidth() - 2 * FMargin), FControl->Height());
  }
  // The control shows only between the buttons, which lie under it otherwise.
  if (auto* win = dynamic_cast<TWinControl*>(FControl); win && win->Widget()) {
    const int last = ButtonVisible(sbLast) ? FButtonSize : 0;
    const int span = std::max(0, Extent() - first - last);
    const QRect shown = FOrientation == soHorizontal
                            ? QRect(first - FControl->Left(), 0, span, FControl->Height())
                            : QRect(0, first - FControl->Top(), FControl->Width(), span);
    win->Widget()->setMask(QRegion(shown));
  }
  FPlacing = false;
  Invalidate();
}

void TPageScroller::AlignControls(TControl* changing, TRect& rect) {
  TWinControl::AlignControls(changing, rect);
  PlaceControl();
}

void TPageScroller::Resize() {
  TWinControl::Resize();
  PlaceControl();
}

void TPageScroller::Loaded() {
  TWinControl::Loaded();
  PlaceControl();
}

void TPageScroller::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  TWinControl::MouseDown(button, shift, x, y);
  if (button != mbLeft || !FControl) return;
  const int along = FOrientation == soHorizontal ? x : y;
  int delta = 0;
  if (ButtonVisible(sbFirst) && along < FButtonSize) delta = -Extent() / 2;
  if (ButtonVisible(sbLast) && along >= Extent() - FButtonSize) delta = Extent() / 2;
  if (delta == 0) return;
  if (OnScroll) OnScroll(this, shift, x, y, FOrientation, delta);
  SetPosition(FPosition + delta);
}

void TPageScroller::Paint(QPainter& p) {
  p.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor));
  auto arrowButton = [&](QRect r, int direction) {
    QRect edge = r;
    Frame3D(p, edge, Sys(clBtnHighlight), Sys(clBtnShadow));
    p.fillRect(edge, Sys(clBtnFace));
    const int cx = r.left() + r.width() / 2, cy = r.top() + r.height() / 2;
    const QColor ink = FEnabled ? Sys(clBtnText) : Sys(clGrayText);
    for (int i = 0; i < 3; ++i) {
      switch (direction) {
        case 0: HLine(p, cx - i, cx + i + 1, cy - 1 + i, ink); break;   // up
        case 1: HLine(p, cx - i, cx + i + 1, cy + 1 - i, ink); break;   // down
        case 2: VLine(p, cx - 1 + i, cy - i, cy + i + 1, ink); break;   // left
        case 3: VLine(p, cx + 1 - i, cy - i, cy + i + 1, ink); break;   // right
      }
    }
  };
  const bool horizontal = FOrientation == soHorizontal;
  if (ButtonVisible(sbFirst))
    arrowButton(horizontal ? QRect(0, 0, FButtonSize, FHeight) : QRect(0, 0, FWidth, FButtonSize), horizontal ? 2 : 0);
  if (ButtonVisible(sbLast))
    arrowButton(horizontal ? QRect(FWidth - FButtonSize, 0, FButtonSize, FHeight)
                           : QRect(0, FHeight - FButtonSize, FWidth, FButtonSize),
                horizontal ? 3 : 1);
}
