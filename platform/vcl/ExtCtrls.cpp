#include "platform/vcl/ExtCtrls.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/Publish.h"

#include <QCursor>
#include <QPainter>
#include <QTimer>

#include <algorithm>

void DrawBevel(QPainter& painter, QRect& rect, TBevelCut cut, int width) {
  if (cut == bvNone) return;
  QColor top = ColorToQColor(clBtnHighlight);
  QColor bottom = ColorToQColor(clBtnShadow);
  if (cut == bvLowered) std::swap(top, bottom);
  if (cut == bvSpace) top = bottom = ColorToQColor(clBtnFace);
  Frame3D(painter, rect, top, bottom, width);
}

// ---------------------------------------------------------------------------------------
// TCustomPanel, TPanel

LUMORA_CLASS_IMPL(TCustomPanel) {}

TCustomPanel::TCustomPanel(TComponent* owner) : TCustomControl(owner) {
  FControlStyle = TControlStyle{csAcceptsControls, csCaptureMouse, csClickEvents, csSetCaption, csOpaque,
                                csDoubleClicks, csReplicatable};
  FWidth = 185;
  FHeight = 41;
  FColor = clBtnFace;
  FParentColor = false;
  FUseDockManager = true;
}

int TCustomPanel::FrameSize() const {
  if (FBorderStyle != BorderStyleOf(bsSingle)) return 0;
  return FCtl3D ? 2 : 1;
}

void TCustomPanel::AdjustClientRect(TRect& rect) const {
  TCustomControl::AdjustClientRect(rect);
  int inset = FBorderWidth;
  if (FBevelOuter != bvNone) inset += FBevelWidth;
  if (FBevelInner != bvNone) inset += FBevelWidth;
  rect.Left += inset;
  rect.Top += inset;
  rect.Right -= inset;
  rect.Bottom -= inset;
}

void TCustomPanel::Paint(QPainter& painter) {
  QRect whole(0, 0, FWidth, FHeight);
  painter.fillRect(whole, ColorToQColor(FColor));
  if (FBorderStyle == BorderStyleOf(bsSingle)) {
    if (FCtl3D) {
      DrawSunkenEdge(painter, whole);
    } else {
      Frame3D(painter, whole, ColorToQColor(clWindowFrame), ColorToQColor(clWindowFrame));
    }
  }
  QRect r = whole;
  DrawBevel(painter, r, FBevelOuter, FBevelWidth);
  r.adjust(FBorderWidth, FBorderWidth, -FBorderWidth, -FBorderWidth);
  DrawBevel(painter, r, FBevelInner, FBevelWidth);
  const QString text = UnicodeText();
  if (!text.isEmpty()) {
    TCaptionLayout layout;
    layout.HAlign = FAlignment == taLeftJustify ? TTextHAlign::Left
                    : FAlignment == taRightJustify ? TTextHAlign::Right
                                                   : TTextHAlign::Center;
    layout.VAlign = TTextVAlign::Center;
    layout.Disabled = !FEnabled;
    DrawCaption(painter, r, FFont->Handle(), text, layout, ColorToQColor(FFont->Color()));
  }
}

void TCustomPanel::SetAlignment(TAlignment value) {
  FAlignment = value;
  Invalidate();
}

void TCustomPanel::SetBevelInner(TBevelCut value) {
  if (FBevelInner == value) return;
  FBevelInner = value;
  Realign();
  Invalidate();
}

void TCustomPanel::SetBevelOuter(TBevelCut value) {
  if (FBevelOuter == value) return;
  FBevelOuter = value;
  Realign();
  Invalidate();
}

void TCustomPanel::SetBevelWidth(int value) {
  if (FBevelWidth == value || value < 1) return;
  FBevelWidth = value;
  Realign();
  Invalidate();
}

void TCustomPanel::SetBorderStyle(TBorderStyle value) {
  if (FBorderStyle == value) return;
  FBorderStyle = value;
  for (int i = 0; i < ControlCount(); ++i) Controls(i)->UpdateWidgetGeometry();
  Realign();
  Invalidate();
}

LUMORA_CLASS_IMPL(TPanel) {
  PublishControlProperties(c, {"Align"});
  c.Property("Alignment", &TPanel::Alignment, &TPanel::SetAlignment).Default(taCenter);
  PublishControlProperties(c, {"Anchors", "AutoSize"});
  c.Property("BevelInner", &TPanel::BevelInner, &TPanel::SetBevelInner).Default(bvNone);
  c.Property("BevelOuter", &TPanel::BevelOuter, &TPanel::SetBevelOuter).Default(bvRaised);
  c.Property("BevelWidth", &TPanel::BevelWidth, &TPanel::SetBevelWidth).Default(1);
  PublishControlProperties(c, {"BiDiMode", "BorderWidth"});
  c.Property("BorderStyle", &TPanel::BorderStyle, &TPanel::SetBorderStyle).Default(BorderStyleOf(bsNone));
  PublishControlProperties(c, {"Caption", "Color", "Constraints", "Ctl3D", "UseDockManager", "DockSite",
                               "DragCursor", "DragKind", "DragMode", "Enabled"});
  c.Property("FullRepaint", &TPanel::FullRepaint, &TPanel::SetFullRepaint).Default(true);
  PublishControlProperties(c, {"Font"});
  c.Property("Locked", &TPanel::Locked, &TPanel::SetLocked).Default(false);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu", "ShowHint", "TabOrder", "TabStop", "Visible", "OnCanResize", "OnClick",
                               "OnConstrainedResize", "OnDockDrop", "OnDockOver", "OnDblClick", "OnDragDrop",
                               "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnGetSiteInfo",
                               "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnResize", "OnStartDock", "OnStartDrag",
                               "OnUnDock"});
  c.Property("ParentColor").Default(false);
  c.Property("UseDockManager").Default(true);
}

// ---------------------------------------------------------------------------------------
// TBevel

LUMORA_CLASS_IMPL(TBevel) {
  PublishControlProperties(c, {"Align", "Anchors", "Constraints", "ParentShowHint"});
  c.Property("Shape", &TBevel::Shape, &TBevel::SetShape).Default(bsBox);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("Style", &TBevel::Style, &TBevel::SetStyle).Default(bsLowered);
  PublishControlProperties(c, {"Visible"});
}

TBevel::TBevel(TComponent* owner) : TGraphicControl(owner) {
  FControlStyle += csReplicatable;
  FWidth = 50;
  FHeight = 50;
}

void TBevel::SetShape(TBevelShape value) {
  FShape = value;
  Invalidate();
}

void TBevel::SetStyle(TBevelStyle value) {
  FStyle = value;
  Invalidate();
}

void TBevel::Paint(QPainter& p) {
  QColor c1 = ColorToQColor(clBtnShadow);
  QColor c2 = ColorToQColor(clBtnHighlight);
  if (FStyle == bsRaised) std::swap(c1, c2);
  const int w = FWidth, h = FHeight;
  auto line = [&](int x1, int y1, int x2, int y2, const QColor& c) {
    p.setPen(c);
    p.drawLine(x1, y1, x2, y2);
  };
  switch (FShape) {
    case bsBox: {
      QRect r(0, 0, w, h);
      Frame3D(p, r, c1, c2);
      break;
    }
    case bsFrame: {
      // An etched frame: the second colour offset by a pixel under the first.
      QRect r(1, 1, w - 1, h - 1);
      Frame3D(p, r, c2, c2);
      QRect r2(0, 0, w - 1, h - 1);
      Frame3D(p, r2, c1, c1);
      break;
    }
    case bsTopLine:
      line(0, 0, w - 1, 0, c1);
      line(0, 1, w - 1, 1, c2);
      break;
    case bsBottomLine:
      line(0, h - 2, w - 1, h - 2, c1);
      line(0, h - 1, w - 1, h - 1, c2);
      break;
    case bsLeftLine:
      line(0, 0, 0, h - 1, c1);
      line(1, 0, 1, h - 1, c2);
      break;
    case bsRightLine:
      line(w - 2, 0, w - 2, h - 1, c1);
      line(w - 1, 0, w - 1, h - 1, c2);
      break;
    case bsSpacer:
      if (Designing()) DrawDesignFrame(p, w, h);
      break;
  }
}

// ---------------------------------------------------------------------------------------
// TImage

LUMORA_CLASS_IMPL(TImage) {
  PublishControlProperties(c, {"Align", "Anchors", "AutoSize"});
  c.Property("Center", &TImage::Center, &TImage::SetCenter).Default(false);
  PublishControlProperties(c, {"Constraints", "DragCursor", "DragKind", "DragMode", "Enabled"});
  c.Property("IncrementalDisplay", &TImage::IncrementalDisplay, &TImage::SetIncrementalDisplay).Default(false);
  PublishControlProperties(c, {"ParentShowHint"});
  c.Property("Picture", &TImage::Picture, &TImage::SetPicture);
  PublishControlProperties(c, {"PopupMenu", "ShowHint"});
  c.Property("Stretch", &TImage::Stretch, &TImage::SetStretch).Default(false);
  c.Property("Transparent", &TImage::Transparent, &TImage::SetTransparent).Default(false);
  PublishControlProperties(c, {"Visible", "OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDock",
                               "OnEndDrag", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("OnProgress", &TImage::OnProgress, &TImage::OnProgress);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
}

TImage::TImage(TComponent* owner) : TGraphicControl(owner) {
  FControlStyle += csReplicatable;
  FWidth = 105;
  FHeight = 105;
  FPicture = new TPicture();
  FPicture->OnChange = [this](TObject*) {
    AdjustSize();
    Invalidate();
  };
}

TImage::~TImage() {
  DestroyWidget();
  delete FPicture;
}

void TImage::SetCenter(bool value) {
  FCenter = value;
  Invalidate();
}

void TImage::SetStretch(bool value) {
  FStretch = value;
  Invalidate();
}

void TImage::SetTransparent(bool value) {
  FTransparent = value;
  Invalidate();
}

bool TImage::CanAutoSize(int& newWidth, int& newHeight) {
  TGraphic* g = FPicture->Graphic();
  if (!g || g->Empty() || g->Image().isNull()) return false;
  newWidth = g->Width();
  newHeight = g->Height();
  return true;
}

void TImage::Paint(QPainter& p) {
  if (Designing()) DrawDesignFrame(p, FWidth, FHeight);
  TGraphic* g = FPicture->Graphic();
  if (!g || g->Empty()) return;
  QImage image = g->Image();
  if (image.isNull()) return;
  if (auto* bmp = dynamic_cast<TBitmap*>(g); bmp && (FTransparent || bmp->Transparent())) image = bmp->TransparentImage();
  QRect target(0, 0, image.width(), image.height());
  if (FStretch) {
    target = QRect(0, 0, FWidth, FHeight);
  } else if (FCenter) {
    target.moveTo((FWidth - image.width()) / 2, (FHeight - image.height()) / 2);
  }
  p.drawImage(target, image);
}

// ---------------------------------------------------------------------------------------
// TShape

LUMORA_CLASS_IMPL(TShape) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("Brush", &TShape::Brush, &TShape::SetBrush);
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Constraints", "ParentShowHint"});
  c.Property("Pen", &TShape::Pen, &TShape::SetPen);
  c.Property("Shape", &TShape::Shape, &TShape::SetShape).Default(stRectangle);
  PublishControlProperties(c, {"ShowHint", "Visible", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag",
                               "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDock", "OnStartDrag"});
}

TShape::TShape(TComponent* owner) : TGraphicControl(owner) {
  FControlStyle += csReplicatable;
  FWidth = 65;
  FHeight = 65;
  FBrush = new TBrush();
  FPen = new TPen();
  FBrush->OnChange = [this](TObject*) { Invalidate(); };
  FPen->OnChange = [this](TObject*) { Invalidate(); };
}

TShape::~TShape() {
  DestroyWidget();
  delete FBrush;
  delete FPen;
}

void TShape::SetShape(TShapeType value) {
  FShape = value;
  Invalidate();
}

void TShape::Paint(QPainter& p) {
  p.setRenderHint(QPainter::Antialiasing, false);
  QPen pen(ColorToQColor(FPen->Color()));
  pen.setWidth(std::max(1, FPen->Width()));
  switch (FPen->Style()) {
    case psClear: pen = Qt::NoPen; break;
    case psDash: pen.setStyle(Qt::DashLine); break;
    case psDot: pen.setStyle(Qt::DotLine); break;
    case psDashDot: pen.setStyle(Qt::DashDotLine); break;
    case psDashDotDot: pen.setStyle(Qt::DashDotDotLine); break;
    default: break;
  }
  p.setPen(pen);
  QBrush brush(ColorToQColor(FBrush->Color()));
  switch (FBrush->Style()) {
    case bsClear: brush = Qt::NoBrush; break;
    case bsHorizontal: brush.setStyle(Qt::HorPattern); break;
    case bsVertical: brush.setStyle(Qt::VerPattern); break;
    case bsFDiagonal: brush.setStyle(Qt::FDiagPattern); break;
    case bsBDiagonal: brush.setStyle(Qt::BDiagPattern); break;
    case bsCross: brush.setStyle(Qt::CrossPattern); break;
    case bsDiagCross: brush.setStyle(Qt::DiagCrossPattern); break;
    default: break;
  }
  p.setBrush(brush);
  const int pw = FPen->Style() == psClear ? 0 : std::max(1, FPen->Width());
  int x = pw / 2, y = pw / 2;
  int w = FWidth - pw, h = FHeight - pw;
  if (FShape == stSquare || FShape == stRoundSquare || FShape == stCircle) {
    const int s = std::min(w, h);
    x += (w - s) / 2;
    y += (h - s) / 2;
    w = h = s;
  }
  switch (FShape) {
    case stRectangle:
    case stSquare: p.drawRect(x, y, std::max(0, w), std::max(0, h)); break;
    case stRoundRect:
    case stRoundSquare: {
      const int r = std::min(w, h) / 4;
      p.drawRoundedRect(x, y, std::max(0, w), std::max(0, h), r, r);
      break;
    }
    case stEllipse:
    case stCircle: p.drawEllipse(x, y, std::max(0, w), std::max(0, h)); break;
  }
}

// ---------------------------------------------------------------------------------------
// TPaintBox

LUMORA_CLASS_IMPL(TPaintBox) {
  PublishControlProperties(c, {"Align", "Anchors", "Color", "Constraints", "DragCursor", "DragKind", "DragMode",
                               "Enabled", "Font", "ParentColor", "ParentFont", "ParentShowHint", "PopupMenu",
                               "ShowHint", "Visible", "OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDock",
                               "OnEndDrag", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("OnPaint", &TPaintBox::OnPaint, &TPaintBox::OnPaint);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
}

TPaintBox::TPaintBox(TComponent* owner) : TGraphicControl(owner) {
  FControlStyle += csReplicatable;
  FWidth = 105;
  FHeight = 105;
}

void TPaintBox::Paint(QPainter& p) {
  if (Designing()) DrawDesignFrame(p, FWidth, FHeight);
  if (!OnPaint) return;
  FCanvas = &p;
  try {
    OnPaint(this);
  } catch (...) {
    FCanvas = nullptr;
    throw;
  }
  FCanvas = nullptr;
}

// ---------------------------------------------------------------------------------------
// TSplitter

LUMORA_CLASS_IMPL(TSplitter) {
  PublishControlProperties(c, {"Align"});
  c.Property("Align").Default(alLeft);
  c.Property("AutoSnap", &TSplitter::AutoSnap, &TSplitter::SetAutoSnap).Default(true);
  c.Property("Beveled", &TSplitter::Beveled, &TSplitter::SetBeveled).Default(false);
  PublishControlProperties(c, {"Color", "Constraints"});
  c.Property("Cursor").Default(crHSplit);
  c.Property("MinSize", &TSplitter::MinSize, &TSplitter::SetMinSize).Default(30);
  PublishControlProperties(c, {"ParentColor"});
  c.Property("ResizeStyle", &TSplitter::ResizeStyle, &TSplitter::SetResizeStyle).Default(rsPattern);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnCanResize", &TSplitter::OnCanResize, &TSplitter::OnCanResize);
  c.Property("OnMoved", &TSplitter::OnMoved, &TSplitter::OnMoved);
  c.Property("OnPaint", &TSplitter::OnPaint, &TSplitter::OnPaint);
}

TSplitter::TSplitter(TComponent* owner) : TGraphicControl(owner) {
  FAlign = alLeft;
  FAnchors = TAnchors{akLeft, akTop, akBottom};
  FWidth = 3;
  FHeight = 100;
  FCursor = crHSplit;
}

void TSplitter::SetBeveled(bool value) {
  FBeveled = value;
  Invalidate();
}

void TSplitter::Paint(QPainter& p) {
  p.fillRect(QRect(0, 0, FWidth, FHeight), ColorToQColor(FColor));
  if (FBeveled) {
    QRect r(0, 0, FWidth, FHeight);
    if (FAlign == alLeft || FAlign == alRight) {
      r.adjust(1, 0, -1, 0);
    } else {
      r.adjust(0, 1, 0, -1);
    }
    Frame3D(p, r, ColorToQColor(clBtnHighlight), ColorToQColor(clBtnShadow));
  }
  if (OnPaint) OnPaint(this);
}

TControl* TSplitter::FindControl() const {
  if (!FParent) return nullptr;
  TControl* best = nullptr;
  for (int i = 0; i < FParent->ControlCount(); ++i) {
    TControl* c = FParent->Controls(i);
    if (c == this || !c->Visible() || c->Align() != FAlign) continue;
    // The control whose far edge touches the splitter's near edge.
    bool touches = false;
    switch (FAlign) {
      case alLeft: touches = c->Left() + c->Width() == FLeft; break;
      case alRight: touches = c->Left() == FLeft + FWidth; break;
      case alTop: touches = c->Top() + c->Height() == FTop; break;
      case alBottom: touches = c->Top() == FTop + FHeight; break;
      default: break;
    }
    if (touches) best = c;
  }
  return best;
}

void TSplitter::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  TGraphicControl::MouseDown(button, shift, x, y);
  if (button != mbLeft) return;
  FControl = FindControl();
  if (!FControl) return;
  FDragging = true;
  const QPoint global = QCursor::pos();
  FDownPos = (FAlign == alLeft || FAlign == alRight) ? global.x() : global.y();
  FStartSize = (FAlign == alLeft || FAlign == alRight) ? FControl->Width() : FControl->Height();
}

void TSplitter::MouseMove(TShiftState shift, int x, int y) {
  TGraphicControl::MouseMove(shift, x, y);
  if (!FDragging || !FControl) return;
  const QPoint global = QCursor::pos();
  int delta = ((FAlign == alLeft || FAlign == alRight) ? global.x() : global.y()) - FDownPos;
  if (FAlign == alRight || FAlign == alBottom) delta = -delta;
  int size = std::max(FMinSize, FStartSize + delta);
  bool accept = true;
  if (OnCanResize) OnCanResize(this, size, accept);
  if (!accept) return;
  if (FAlign == alLeft || FAlign == alRight) {
    FControl->SetWidth(size);
  } else {
    FControl->SetHeight(size);
  }
}

void TSplitter::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  TGraphicControl::MouseUp(button, shift, x, y);
  if (!FDragging) return;
  FDragging = false;
  FControl = nullptr;
  if (OnMoved) OnMoved(this);
}

// ---------------------------------------------------------------------------------------
// TCustomRadioGroup, TRadioGroup

LUMORA_CLASS_IMPL(TCustomRadioGroup) {}

TCustomRadioGroup::TCustomRadioGroup(TComponent* owner) : TCustomGroupBox(owner) {
  FControlStyle = TControlStyle{csSetCaption, csDoubleClicks};
  FItems = new TStringList();
  FItems->OnChange = [this](TObject*) {
    if (!Loading(this)) {
      if (FItemIndex >= FItems->Count()) FItemIndex = FItems->Count() - 1;
      UpdateButtons();
    }
  };
}

TCustomRadioGroup::~TCustomRadioGroup() {
  FItems->OnChange = nullptr;
  for (TRadioButton* b : FButtons) delete b;
  FButtons.clear();
  delete FItems;
}

void TCustomRadioGroup::GetChildren(const TGetChildProc&, TComponent*) {}

void TCustomRadioGroup::SetItemIndex(int value) {
  if (Loading(this)) {
    FItemIndex = value;
    return;
  }
  if (value < -1 || value >= FItems->Count()) value = -1;
  FItemIndex = value;
  FUpdating = true;
  for (int i = 0; i < ButtonCount(); ++i) FButtons[i]->SetChecked(i == value);
  FUpdating = false;
}

void TCustomRadioGroup::SetColumns(int value) {
  value = std::clamp(value, 1, 16);
  if (FColumns == value) return;
  FColumns = value;
  ArrangeButtons();
}

void TCustomRadioGroup::UpdateButtons() {
  FUpdating = true;
  while (ButtonCount() > FItems->Count()) {
    delete FButtons.back();
    FButtons.pop_back();
  }
  while (ButtonCount() < FItems->Count()) {
    auto* b = new TRadioButton(this);
    b->SetParent(this);
    b->SetDesignState(Designing());
    b->OnClick = [this, b](TObject*) { ButtonClicked(b); };
    FButtons.push_back(b);
  }
  for (int i = 0; i < ButtonCount(); ++i) {
    FButtons[i]->SetCaption(FItems->Strings(i));
    FButtons[i]->SetEnabled(FEnabled);
    FButtons[i]->SetChecked(i == FItemIndex);
  }
  FUpdating = false;
  ArrangeButtons();
}

void TCustomRadioGroup::ArrangeButtons() {
  if (FButtons.empty()) return;
  const int count = ButtonCount();
  const int perColumn = (count + FColumns - 1) / FColumns;
  const int buttonWidth = (FWidth - 10) / FColumns;
  const int cell = FontCellHeight(FFont->Handle());
  const int room = FHeight - cell - 5;
  const int buttonHeight = room / perColumn;
  const int topMargin = cell + 1 + (room % perColumn) / 2;
  for (int i = 0; i < count; ++i) {
    FButtons[i]->SetBounds((i / perColumn) * buttonWidth + 8, (i % perColumn) * buttonHeight + topMargin, buttonWidth,
                           buttonHeight);
  }
}

void TCustomRadioGroup::ButtonClicked(TRadioButton* button) {
  if (FUpdating) return;
  const auto it = std::find(FButtons.begin(), FButtons.end(), button);
  if (it == FButtons.end()) return;
  const int index = static_cast<int>(it - FButtons.begin());
  if (index == FItemIndex) return;
  FItemIndex = index;
  Click();
}

void TCustomRadioGroup::Loaded() {
  TCustomGroupBox::Loaded();
  if (FItemIndex >= FItems->Count()) FItemIndex = -1;
  UpdateButtons();
}

void TCustomRadioGroup::Resize() {
  TCustomGroupBox::Resize();
  ArrangeButtons();
}

void TCustomRadioGroup::FontChanged() {
  TCustomGroupBox::FontChanged();
  ArrangeButtons();
}

LUMORA_CLASS_IMPL(TRadioGroup) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode", "Caption", "Color"});
  c.Property("Columns", &TRadioGroup::Columns, &TRadioGroup::SetColumns).Default(1);
  PublishControlProperties(c, {"Ctl3D", "DragCursor", "DragKind", "DragMode", "Enabled", "Font"});
  c.Property("ItemIndex", &TRadioGroup::ItemIndex, &TRadioGroup::SetItemIndex).Default(-1);
  c.Property("Items", &TRadioGroup::Items, &TRadioGroup::SetItems);
  PublishControlProperties(c, {"Constraints", "ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont",
                               "ParentShowHint", "PopupMenu", "ShowHint", "TabOrder", "TabStop", "Visible", "OnClick",
                               "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit",
                               "OnStartDock", "OnStartDrag"});
}

// ---------------------------------------------------------------------------------------
// TTimer

LUMORA_CLASS_IMPL(TTimer) {
  c.Property("Enabled", &TTimer::Enabled, &TTimer::SetEnabled).Default(true);
  c.Property("Interval", &TTimer::Interval, &TTimer::SetInterval).Default(1000);
  c.Property("OnTimer", &TTimer::OnTimer, &TTimer::SetOnTimer);
}

TTimer::TTimer(TComponent* owner) : TComponent(owner) {}

TTimer::~TTimer() { delete FTimer; }

void TTimer::SetEnabled(bool value) {
  if (FEnabled == value) return;
  FEnabled = value;
  UpdateTimer();
}

void TTimer::SetInterval(unsigned value) {
  if (FInterval == value) return;
  FInterval = value;
  UpdateTimer();
}

void TTimer::Loaded() {
  TComponent::Loaded();
  UpdateTimer();
}

void TTimer::UpdateTimer() {
  const bool run = FEnabled && FInterval > 0 && OnTimer && !ComponentState().Contains(csDesigning) &&
                   !ComponentState().Contains(csLoading) && QCoreApplication::instance();
  if (!run) {
    if (FTimer) FTimer->stop();
    return;
  }
  if (!FTimer) {
    FTimer = new QTimer();
    QObject::connect(FTimer, &QTimer::timeout, FTimer, [this] {
      TMessageLoop::Instance().Guarded([this] {
        if (OnTimer) OnTimer(this);
      });
    });
  }
  FTimer->start(static_cast<int>(std::min<unsigned>(FInterval, INT32_MAX)));
}

void RegisterExtCtrlsClasses() {
  RegisterClasses({TCustomPanel::StaticClass(), TPanel::StaticClass(), TBevel::StaticClass(), TImage::StaticClass(),
                   TShape::StaticClass(), TPaintBox::StaticClass(), TSplitter::StaticClass(),
                   TCustomRadioGroup::StaticClass(), TRadioGroup::StaticClass(), TTimer::StaticClass()});
}
