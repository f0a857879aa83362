#include "platform/vcl/ControlBar.h"

#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Publish.h"

#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one
#include <QPainter>

#include "platform/vcl/Menus.h"

#include <algorithm>

namespace {
// The grab bar and edge a band adds at the left of its control, and around it.
constexpr int kGrabWidth = 11;
constexpr int kBandEdge = 2;
}  // namespace

LUMORA_CLASS_IMPL(TCustomControlBar) {}

LUMORA_CLASS_IMPL(TControlBar) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("AutoDock", &TControlBar::AutoDock, &TControlBar::SetAutoDock).Default(true);
  c.Property("AutoDrag", &TControlBar::AutoDrag, &TControlBar::SetAutoDrag).Default(true);
  PublishControlProperties(c, {"AutoSize"});
  c.Property("BevelEdges", &TControlBar::BevelEdges, &TControlBar::SetBevelEdges)
      .Default(TBevelEdges{beLeft, beTop, beRight, beBottom});
  c.Property("BevelInner", &TControlBar::BevelInner, &TControlBar::SetBevelInner).Default(bvRaised);
  c.Property("BevelOuter", &TControlBar::BevelOuter, &TControlBar::SetBevelOuter).Default(bvLowered);
  c.Property("BevelKind", &TControlBar::BevelKind, &TControlBar::SetBevelKind).Default(bkTile);
  c.Property("BevelWidth", &TControlBar::BevelWidth, &TControlBar::SetBevelWidth).Default(1);
  PublishControlProperties(c, {"BorderWidth", "Color", "Constraints", "DockSite", "DragCursor", "DragKind",
                               "DragMode", "Enabled", "ParentColor", "ParentFont", "ParentShowHint"});
  c.Property("Picture", &TControlBar::Picture, &TControlBar::SetPicture);
  PublishControlProperties(c, {"PopupMenu"});
  c.Property("RowSize", &TControlBar::RowSize, &TControlBar::SetRowSize).Default(26);
  c.Property("RowSnap", &TControlBar::RowSnap, &TControlBar::SetRowSnap).Default(true);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible"});
  c.Property("OnBandDrag", &TControlBar::OnBandDrag, &TControlBar::OnBandDrag);
  c.Property("OnBandInfo", &TControlBar::OnBandInfo, &TControlBar::OnBandInfo);
  c.Property("OnBandMove", &TControlBar::OnBandMove, &TControlBar::OnBandMove);
  c.Property("OnBandPaint", &TControlBar::OnBandPaint, &TControlBar::OnBandPaint);
  PublishControlProperties(c, {"OnCanResize", "OnClick", "OnConstrainedResize", "OnDockDrop", "OnDockOver",
                               "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter",
                               "OnExit", "OnGetSiteInfo", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("OnPaint", &TControlBar::OnPaint, &TControlBar::OnPaint);
  PublishControlProperties(c, {"OnResize", "OnStartDock", "OnStartDrag", "OnUnDock"});
}

TCustomControlBar::TCustomControlBar(TComponent* owner) : TCustomControl(owner) {
  FControlStyle = TControlStyle{csAcceptsControls, csCaptureMouse, csClickEvents, csDoubleClicks, csOpaque};
  FWidth = 100;
  FHeight = 50;
  FPicture = new TPicture();
  FPicture->OnChange = [this](TObject*) { Invalidate(); };
}

TCustomControlBar::~TCustomControlBar() { delete FPicture; }

void TCustomControlBar::SetBevelEdges(TBevelEdges value) { FBevelEdges = value; Realign(); Invalidate(); }
void TCustomControlBar::SetBevelInner(TBevelCut value) { FBevelInner = value; Realign(); Invalidate(); }
void TCustomControlBar::SetBevelOuter(TBevelCut value) { FBevelOuter = value; Realign(); Invalidate(); }
void TCustomControlBar::SetBevelKind(TBevelKind value) { FBevelKind = value; Realign(); Invalidate(); }
void TCustomControlBar::SetBevelWidth(int value) {
  if (value < 1) return;
  FBevelWidth = value;
  Realign();
  Invalidate();
}
void TCustomControlBar::SetRowSize(int value) {
  if (value < 1) return;
  FRowSize = value;
  Invalidate();
}

int TCustomControlBar::FrameSize() const {
  if (FBevelKind == bkNone) return 0;
  return EdgeSize(FBevelInner) + EdgeSize(FBevelOuter);
}

TRect TCustomControlBar::BandRect(TControl* control) const {
  return Rect(control->Left() - kGrabWidth, control->Top() - kBandEdge, control->Left() + control->Width() + kBandEdge,
              control->Top() + control->Height() + kBandEdge);
}

TControl* TCustomControlBar::BandAt(int x, int y) const {
  const int inset = NonClientInset();
  for (int i = ControlCount() - 1; i >= 0; --i) {
    TControl* c = Controls(i);
    if (!c->Visible()) continue;
    const TRect r = BandRect(c);
    if (x - inset >= r.Left && x - inset < c->Left() && y - inset >= r.Top && y - inset < r.Bottom) return c;
  }
  return nullptr;
}

void TCustomControlBar::Paint(QPainter& p) {
  QRect whole(0, 0, FWidth, FHeight);
  p.fillRect(whole, ColorToQColor(FColor));
  if (TGraphic* g = FPicture->Graphic(); g && !g->Empty() && !g->Image().isNull()) {
    const QImage& tile = g->Image();
    for (int y = 0; y < FHeight; y += tile.height())
      for (int x = 0; x < FWidth; x += tile.width()) p.drawImage(x, y, tile);
  }
  if (FBevelKind != bkNone) {
    // The outer cut along the edge, the inner one inside it.
    auto edge = [&](QRect& r, TBevelCut cut) {
      if (cut == bvNone) return;
      const QColor light = ColorToQColor(clBtnHighlight), dark = ColorToQColor(clBtnShadow);
      for (int i = 0; i < FBevelWidth; ++i) {
        const QColor tl = cut == bvRaised ? light : dark, br = cut == bvRaised ? dark : light;
        p.setPen(tl);
        if (FBevelEdges.Contains(beLeft)) p.drawLine(r.left(), r.top(), r.left(), r.bottom());
        if (FBevelEdges.Contains(beTop)) p.drawLine(r.left(), r.top(), r.right(), r.top());
        p.setPen(br);
        if (FBevelEdges.Contains(beRight)) p.drawLine(r.right(), r.top(), r.right(), r.bottom());
        if (FBevelEdges.Contains(beBottom)) p.drawLine(r.left(), r.bottom(), r.right(), r.bottom());
        r.adjust(1, 1, -1, -1);
      }
    };
    QRect r = whole;
    edge(r, FBevelOuter);
    edge(r, FBevelInner);
  }
  // The bands: a raised edge around each control and two raised lines to grab it by.
  const int inset = NonClientInset();
  for (int i = 0; i < ControlCount(); ++i) {
    TControl* c = Controls(i);
    if (!c->Visible() && !Designing()) continue;
    const TRect b = BandRect(c);
    QRect band(b.Left + inset, b.Top + inset, b.Width(), b.Height());
    DrawRaisedEdge(p, band);
    const int gx = b.Left + inset + 3;
    for (int line = 0; line < 2; ++line) {
      QRect grip(gx + line * 3, b.Top + inset + 3, 3, b.Height() - 6);
      Frame3D(p, grip, ColorToQColor(clBtnHighlight), ColorToQColor(clBtnShadow));
    }
  }
  if (OnPaint) OnPaint(this);
}

void TCustomControlBar::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  TCustomControl::MouseDown(button, shift, x, y);
  if (button != mbLeft || !FAutoDrag) return;
  FDragging = BandAt(x, y);
  if (!FDragging) return;
  bool drag = true;
  if (OnBandDrag) OnBandDrag(this, FDragging, drag);
  if (!drag) {
    FDragging = nullptr;
    return;
  }
  FDragOffset = Point(x - FDragging->Left(), y - FDragging->Top());
}

void TCustomControlBar::MouseMove(TShiftState shift, int x, int y) {
  TCustomControl::MouseMove(shift, x, y);
  if (!FDragging) return;
  int left = std::max(kGrabWidth, x - FDragOffset.X);
  int top = y - FDragOffset.Y;
  // Bands sit on rows.
  if (FRowSnap) top = std::max(0, (top + FRowSize / 2) / FRowSize) * FRowSize + kBandEdge;
  TRect r = Rect(left, top, left + FDragging->Width(), top + FDragging->Height());
  if (OnBandMove) OnBandMove(this, FDragging, r);
  FDragging->SetBounds(r.Left, r.Top, FDragging->Width(), FDragging->Height());
  Invalidate();
}

void TCustomControlBar::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  TCustomControl::MouseUp(button, shift, x, y);
  FDragging = nullptr;
}
