#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/comctrls/ComCtrlsShared.h"

#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ActnList.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/Publish.h"
#include "platform/rtti/Writer.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

// ---------------------------------------------------------------------------------------
// Tool windows, tool buttons, tool bars

namespace {

// How wide a tool button's drop-down arrow is.
constexpr int DropDownArrowWidth = 13;

int EdgeWidth(TEdgeStyle style) { return style == esNone ? 0 : 1; }

}  // namespace

LUMORA_CLASS_IMPL(TToolWindow) {}

TToolWindow::TToolWindow(TComponent* owner) : TWinControl(owner), FEdgeBorders{ebTop} {}

void TToolWindow::SetEdgeBorders(TEdgeBorders value) {
  if (FEdgeBorders == value) return;
  FEdgeBorders = value;
  EdgesChanged();
}

void TToolWindow::SetEdgeInner(TEdgeStyle value) {
  if (FEdgeInner == value) return;
  FEdgeInner = value;
  EdgesChanged();
}

void TToolWindow::SetEdgeOuter(TEdgeStyle value) {
  if (FEdgeOuter == value) return;
  FEdgeOuter = value;
  EdgesChanged();
}

void TToolWindow::EdgesChanged() {
  for (int i = 0; i < ControlCount(); ++i) Controls(i)->UpdateWidgetGeometry();
  AdjustSize();
  Realign();
  Invalidate();
}

TRect TToolWindow::NonClientMargins() const {
  const int edge = EdgeWidth(FEdgeInner) + EdgeWidth(FEdgeOuter);
  TRect m;
  m.Left = FBorderWidth + (FEdgeBorders.Contains(ebLeft) ? edge : 0);
  m.Top = FBorderWidth + (FEdgeBorders.Contains(ebTop) ? edge : 0);
  m.Right = FBorderWidth + (FEdgeBorders.Contains(ebRight) ? edge : 0);
  m.Bottom = FBorderWidth + (FEdgeBorders.Contains(ebBottom) ? edge : 0);
  return m;
}

TRect TToolWindow::ClientRect() const {
  const TRect m = NonClientMargins();
  return Rect(0, 0, std::max(0, FWidth - m.Left - m.Right), std::max(0, FHeight - m.Top - m.Bottom));
}

TPoint TToolWindow::ClientWidgetOffset() const {
  const TRect m = NonClientMargins();
  return Point(m.Left, m.Top);
}

void TToolWindow::PaintEdges(QPainter& painter) {
  const QColor hi = Sys(clBtnHighlight);
  const QColor shadow = Sys(clBtnShadow);
  // Raised: light above and left, dark below and right; lowered the other way round.
  auto sideColor = [&](TEdgeStyle style, bool leadingSide) {
    const bool light = (style == esRaised) == leadingSide;
    return light ? hi : shadow;
  };
  int inset = 0;
  for (TEdgeStyle style : {FEdgeOuter, FEdgeInner}) {
    if (style == esNone) continue;
    if (FEdgeBorders.Contains(ebTop)) HLine(painter, 0, FWidth, inset, sideColor(style, true));
    if (FEdgeBorders.Contains(ebLeft)) VLine(painter, inset, 0, FHeight, sideColor(style, true));
    if (FEdgeBorders.Contains(ebBottom)) HLine(painter, 0, FWidth, FHeight - 1 - inset, sideColor(style, false));
    if (FEdgeBorders.Contains(ebRight)) VLine(painter, FWidth - 1 - inset, 0, FHeight, sideColor(style, false));
    ++inset;
  }
}

// ---- TToolButton

LUMORA_CLASS_IMPL(TToolButton) {
  PublishControlProperties(c, {"Action"});
  c.Property("AllowAllUp", &TToolButton::AllowAllUp, &TToolButton::SetAllowAllUp).Default(false);
  PublishControlProperties(c, {"AutoSize", "Caption"});
  c.Property("Down", &TToolButton::Down, &TToolButton::SetDown).Default(false);
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode"});
  c.Property("DropdownMenu", &TToolButton::DropdownMenu, &TToolButton::SetDropdownMenu);
  PublishControlProperties(c, {"Enabled"});
  c.Property("Grouped", &TToolButton::Grouped, &TToolButton::SetGrouped).Default(false);
  c.Property("Height").Stored(false);
  c.Property("ImageIndex", &TToolButton::ImageIndex, &TToolButton::SetImageIndex).Default(-1);
  c.Property("Indeterminate", &TToolButton::Indeterminate, &TToolButton::SetIndeterminate).Default(false);
  c.Property("Marked", &TToolButton::Marked, &TToolButton::SetMarked).Default(false);
  c.Property("MenuItem", &TToolButton::MenuItem, &TToolButton::SetMenuItem);
  PublishControlProperties(c, {"ParentShowHint", "PopupMenu"});
  c.Property("Wrap", &TToolButton::Wrap, &TToolButton::SetWrap).Default(false);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("Style", &TToolButton::Style, &TToolButton::SetStyle).Default(tbsButton);
  PublishControlProperties(c, {"Visible"});
  c.Property("Width").Stored(&TToolButton::IsWidthStored);
  PublishControlProperties(c, {"OnClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnMouseDown",
                               "OnMouseMove", "OnMouseUp", "OnStartDock", "OnStartDrag"});
}

TToolButton::TToolButton(TComponent* owner) : TGraphicControl(owner) {
  FControlStyle = TControlStyle{csCaptureMouse, csClickEvents, csSetCaption};
  FWidth = 23;
  FHeight = 22;
}

TToolButton::~TToolButton() {
  if (TToolBar* bar = ToolBar()) {
    auto& buttons = bar->FButtons;
    buttons.erase(std::remove(buttons.begin(), buttons.end(), static_cast<TControl*>(this)), buttons.end());
    // Leave the bar first, so that the others close up without this one.
    TGraphicControl::SetParent(nullptr);
    if (!bar->ComponentState().Contains(csDestroying)) bar->ArrangeButtons();
  }
}

TToolBar* TToolButton::ToolBar() const { return dynamic_cast<TToolBar*>(FParent); }

int TToolButton::Index() const {
  TToolBar* bar = ToolBar();
  if (!bar) return -1;
  bar->SyncButtons();
  const auto it = std::find(bar->FButtons.begin(), bar->FButtons.end(), this);
  return it == bar->FButtons.end() ? -1 : static_cast<int>(it - bar->FButtons.begin());
}

void TToolButton::SetParent(TWinControl* parent) {
  TToolBar* old = ToolBar();
  TGraphicControl::SetParent(parent);
  if (old && old != parent) old->ArrangeButtons();
  RequestLayout();
}

void TToolButton::RequestLayout() {
  if (TToolBar* bar = ToolBar(); bar && !Loading(this) && !Loading(bar)) bar->ArrangeButtons();
  Invalidate();
}

void TToolButton::SetDown(bool value) {
  if (FDown == value) return;
  FDown = value;
  // Checking a grouped button releases the others of its group.
  if (value && FGrouped && FStyle == tbsCheck) {
    if (TToolBar* bar = ToolBar()) {
      bar->SyncButtons();
      const int index = Index();
      for (int dir : {-1, 1}) {
        for (int i = index + dir; i >= 0 && i < static_cast<int>(bar->FButtons.size()); i += dir) {
          auto* other = dynamic_cast<TToolButton*>(bar->FButtons[i]);
          if (!other || !other->FGrouped || other->FStyle != tbsCheck) break;
          if (other->FDown) {
            other->FDown = false;
            other->Invalidate();
          }
        }
      }
    }
  }
  Invalidate();
}

void TToolButton::SetDropdownMenu(TPopupMenu* value) {
  if (!ReplaceComponentLink(this, FDropdownMenu, value)) return;
}

void TToolButton::SetMenuItem(TMenuItem* value) {
  if (!ReplaceComponentLink(this, FMenuItem, value)) return;
  if (FMenuItem) {
    // The button shows what the menu item shows.
    if (!Loading(this)) {
      SetCaption(FMenuItem->Caption());
      SetEnabled(FMenuItem->Enabled());
    }
  }
}

void TToolButton::Notification(TComponent* component, TOperation operation) {
  TGraphicControl::Notification(component, operation);
  if (operation != opRemove) return;
  if (component == FDropdownMenu) FDropdownMenu = nullptr;
  if (component == FMenuItem) FMenuItem = nullptr;
}

void TToolButton::SetImageIndex(int value) {
  if (FImageIndex == value) return;
  FImageIndex = value;
  Invalidate();
}

void TToolButton::SetIndeterminate(bool value) {
  FIndeterminate = value;
  Invalidate();
}

void TToolButton::SetMarked(bool value) {
  FMarked = value;
  Invalidate();
}

void TToolButton::SetStyle(TToolButtonStyle value) {
  if (FStyle == value) return;
  const bool wasSeparator = FStyle == tbsSeparator || FStyle == tbsDivider;
  FStyle = value;
  const bool separator = value == tbsSeparator || value == tbsDivider;
  if (!Loading(this) && separator && !wasSeparator) FWidth = 8;
  RequestLayout();
}

void TToolButton::SetWrap(bool value) {
  if (FWrap == value) return;
  FWrap = value;
  RequestLayout();
}

void TToolButton::TextChanged() {
  TGraphicControl::TextChanged();
  if (TToolBar* bar = ToolBar(); bar && bar->ShowCaptions()) RequestLayout();
}

void TToolButton::VisibleChanged() {
  TGraphicControl::VisibleChanged();
  RequestLayout();
}

void TToolButton::EnabledChanged() {
  TGraphicControl::EnabledChanged();
  Invalidate();
}

void TToolButton::ActionChange(TBasicAction* sender, bool checkDefaults) {
  TGraphicControl::ActionChange(sender, checkDefaults);
  if (auto* action = dynamic_cast<TCustomAction*>(sender)) {
    if (!checkDefaults || FImageIndex == -1) SetImageIndex(action->ImageIndex());
    if (!checkDefaults || !FDown) SetDown(action->Checked());
  }
}

bool TToolButton::WidgetEvent(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Enter) {
    FHot = true;
    Invalidate();
  } else if (event->type() == QEvent::Leave) {
    FHot = false;
    Invalidate();
  }
  return TGraphicControl::WidgetEvent(watched, event);
}

bool TToolButton::CheckMenuDropdown() {
  if (!FDropdownMenu || Designing()) return false;
  const TPoint p = ClientToScreen(Point(0, FHeight));
  FDropdownMenu->SetPopupComponent(this);
  FDropdownMenu->Popup(p.X, p.Y);
  return true;
}

void TToolButton::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  if (button == mbLeft && !Designing() && FEnabled && FStyle != tbsSeparator && FStyle != tbsDivider) {
    if (FStyle == tbsDropDown && x >= FWidth - DropDownArrowWidth) {
      // The arrow shows the menu; the button itself is not clicked.
      FControlState -= csClicked;
      CheckMenuDropdown();
    } else {
      FPressed = true;
      Invalidate();
    }
  }
  TGraphicControl::MouseDown(button, shift, x, y);
}

void TToolButton::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  if (FPressed) {
    FPressed = false;
    Invalidate();
  }
  TGraphicControl::MouseUp(button, shift, x, y);
}

void TToolButton::Click() {
  if (Designing() || !FEnabled || FStyle == tbsSeparator || FStyle == tbsDivider) return;
  if (FStyle == tbsCheck) {
    if (FGrouped) {
      if (!FDown) {
        SetDown(true);
      } else if (FAllowAllUp) {
        SetDown(false);
      }
    } else {
      SetDown(!FDown);
    }
  }
  if (!OnClick && !FAction && FMenuItem) {
    FMenuItem->Click();
    return;
  }
  TGraphicControl::Click();
}

void TToolButton::Paint(QPainter& painter) {
  TToolBar* bar = ToolBar();
  const bool flat = bar ? bar->Flat() : true;
  const QColor hi = Sys(clBtnHighlight);
  const QColor light = Sys(cl3DLight);
  const QColor shadow = Sys(clBtnShadow);
  const QColor dark = Sys(cl3DDkShadow);
  const bool designing = Designing();
  // The bar is drawn below its buttons.
  if (bar && !bar->Transparent()) painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(bar->Color()));
  if (FStyle == tbsSeparator || FStyle == tbsDivider) {
    if (FStyle == tbsDivider || flat) {
      const int x = FWidth / 2 - 1;
      VLine(painter, x, 0, FHeight, shadow);
      VLine(painter, x + 1, 0, FHeight, hi);
    }
    if (designing) DrawDesignFrame(painter, FWidth, FHeight);
    return;
  }
  const int arrow = FStyle == tbsDropDown ? DropDownArrowWidth : 0;
  const bool down = FDown || FPressed;
  QRect body(0, 0, FWidth - arrow, FHeight);
  QRect frame = body;
  if (!flat) {
    if (down) {
      Frame3D(painter, frame, dark, hi);
      Frame3D(painter, frame, shadow, light);
    } else {
      Frame3D(painter, frame, hi, dark);
      Frame3D(painter, frame, light, shadow);
    }
  } else if (down) {
    Frame3D(painter, frame, shadow, hi);
  } else if ((FHot && FEnabled) || designing) {
    Frame3D(painter, frame, hi, shadow);
  }
  if (FDown && !FPressed) {
    // A checked button shows a dithered face.
    painter.fillRect(frame, QBrush(hi, Qt::Dense4Pattern));
  }
  const int offset = down ? 1 : 0;
  // The image, then the caption below it (or beside it in a list bar).
  TCustomImageList* images = bar ? bar->Images() : nullptr;
  bool imageEnabled = FEnabled;
  if (bar && !FEnabled && bar->DisabledImages()) {
    images = bar->DisabledImages();
    imageEnabled = true;
  } else if (bar && FHot && FEnabled && bar->HotImages()) {
    images = bar->HotImages();
  }
  const bool showCaption = bar && bar->ShowCaptions();
  const bool list = bar && bar->List();
  const QString caption = showCaption ? UnicodeText() : QString();
  TCaptionLayout layout;
  layout.HAlign = list ? TTextHAlign::Left : TTextHAlign::Center;
  layout.VAlign = TTextVAlign::Center;
  layout.Disabled = !FEnabled;
  const QSize textSize = showCaption ? MeasureText(FFont->Handle(), caption, layout, 0) : QSize(0, 0);
  const bool hasImage = images && FImageIndex >= 0 && FImageIndex < images->Count();
  const int imageW = images ? images->Width() : 0;
  const int imageH = images ? images->Height() : 0;
  if (list) {
    const int total = (hasImage ? imageW + 4 : 0) + textSize.width();
    int x = std::max(3, (body.width() - total) / 2) + offset;
    if (hasImage) {
      images->Draw(painter, x, (FHeight - imageH) / 2 + offset, FImageIndex, imageEnabled);
      x += imageW + 4;
    }
    if (showCaption) DrawCaption(painter, QRect(x, offset, body.width() - x, FHeight), FFont->Handle(), caption, layout, Sys(FFont->Color()));
  } else {
    const int contentH = (hasImage || !showCaption ? imageH : 0) + (showCaption ? textSize.height() + (hasImage ? 1 : 0) : 0);
    int y = std::max(0, (FHeight - contentH) / 2) + offset;
    if (hasImage) {
      images->Draw(painter, (body.width() - imageW) / 2 + offset, y, FImageIndex, imageEnabled);
    }
    y += imageH + (showCaption && hasImage ? 1 : 0);
    if (showCaption) {
      DrawCaption(painter, QRect(offset, y, body.width(), textSize.height()), FFont->Handle(), caption, layout,
                  Sys(FFont->Color()));
    }
  }
  if (arrow > 0) {
    QRect part(FWidth - arrow, 0, arrow, FHeight);
    if (!flat || down || FHot) {
      QRect f = part;
      Frame3D(painter, f, hi, flat ? shadow : dark);
    }
    const int cx = part.left() + arrow / 2;
    const int cy = FHeight / 2;
    const QColor ink = FEnabled ? Sys(clBtnText) : shadow;
    for (int i = 0; i < 3; ++i) HLine(painter, cx - 2 + i, cx + 3 - i, cy - 1 + i, ink);
  }
}

// ---- TToolBar

LUMORA_CLASS_IMPL(TToolBar) {
  PublishControlProperties(c, {"Align", "Anchors", "AutoSize", "BorderWidth"});
  c.Property("ButtonHeight", &TToolBar::ButtonHeight, &TToolBar::SetButtonHeight).Default(22);
  c.Property("ButtonWidth", &TToolBar::ButtonWidth, &TToolBar::SetButtonWidth).Default(23);
  PublishControlProperties(c, {"Caption", "Color", "Constraints", "Ctl3D"});
  c.Property("DisabledImages", &TToolBar::DisabledImages, &TToolBar::SetDisabledImages);
  PublishControlProperties(c, {"DockSite", "DragCursor", "DragKind", "DragMode"});
  c.Property("EdgeBorders", &TToolBar::EdgeBorders, &TToolBar::SetEdgeBorders).Default(TEdgeBorders{ebTop});
  c.Property("EdgeInner", &TToolBar::EdgeInner, &TToolBar::SetEdgeInner).Default(esRaised);
  c.Property("EdgeOuter", &TToolBar::EdgeOuter, &TToolBar::SetEdgeOuter).Default(esLowered);
  PublishControlProperties(c, {"Enabled"});
  c.Property("Flat", &TToolBar::Flat, &TToolBar::SetFlat).Default(false);
  PublishControlProperties(c, {"Font"});
  c.Property("Height").Default(32);
  c.Property("HotImages", &TToolBar::HotImages, &TToolBar::SetHotImages);
  c.Property("Images", &TToolBar::Images, &TToolBar::SetImages);
  c.Property("Indent", &TToolBar::Indent, &TToolBar::SetIndent).Default(0);
  c.Property("List", &TToolBar::List, &TToolBar::SetList).Default(false);
  PublishControlProperties(c, {"ParentColor", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("ShowCaptions", &TToolBar::ShowCaptions, &TToolBar::SetShowCaptions).Default(false);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop"});
  c.Property("Transparent", &TToolBar::Transparent, &TToolBar::SetTransparent).Default(false);
  PublishControlProperties(c, {"Visible"});
  c.Property("Wrapable", &TToolBar::Wrapable, &TToolBar::SetWrapable).Default(true);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDockDrop", "OnDockOver", "OnDragDrop", "OnDragOver",
                               "OnEndDock", "OnEndDrag", "OnGetSiteInfo", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnResize", "OnStartDock", "OnStartDrag", "OnUnDock"});
  c.Property("Align").Default(alTop);
  c.Property("Color").Default(clBtnFace);
}

TToolBar::TToolBar(TComponent* owner) : TToolWindow(owner) {
  FControlStyle = TControlStyle{csAcceptsControls, csCaptureMouse, csClickEvents, csDoubleClicks, csSetCaption};
  FWidth = 150;
  FHeight = 32;
  FAlign = alTop;
  FColor = clBtnFace;
}

TToolBar::~TToolBar() {
  // The buttons go with the controls of the base, after this part is gone.
  FArranging = true;
  FButtons.clear();
}

void TToolBar::CreateWidget() { AdoptWidget(new TPaintedWidget(this, false)); }

void TToolBar::SyncButtons() {
  FButtons.erase(std::remove_if(FButtons.begin(), FButtons.end(), [this](TControl* c) { return c->Parent() != this; }),
                 FButtons.end());
  std::vector<TControl*> fresh;
  for (int i = 0; i < ControlCount(); ++i) {
    TControl* c = Controls(i);
    if (std::find(FButtons.begin(), FButtons.end(), c) == FButtons.end()) fresh.push_back(c);
  }
  if (fresh.empty()) return;
  // New controls go where they stand: rows from the top, then from the left.
  std::stable_sort(fresh.begin(), fresh.end(), [](TControl* a, TControl* b) {
    return a->Top() != b->Top() ? a->Top() < b->Top() : a->Left() < b->Left();
  });
  for (TControl* c : fresh) {
    if (Loading(this) || Loading(c)) {
      FButtons.push_back(c);
      continue;
    }
    auto at = std::find_if(FButtons.begin(), FButtons.end(), [c](TControl* b) {
      return b->Top() > c->Top() || (b->Top() == c->Top() && b->Left() > c->Left());
    });
    FButtons.insert(at, c);
  }
}

int TToolBar::ButtonCount() const {
  const_cast<TToolBar*>(this)->SyncButtons();
  return static_cast<int>(FButtons.size());
}

TControl* TToolBar::ButtonControls(int index) const {
  const_cast<TToolBar*>(this)->SyncButtons();
  if (index < 0 || index >= static_cast<int>(FButtons.size())) {
    throw EListError(Format("List index out of bounds (%d)", index));
  }
  return FButtons[index];
}

TToolButton* TToolBar::Buttons(int index) const { return dynamic_cast<TToolButton*>(ButtonControls(index)); }

int TToolBar::ButtonExtent(TControl* control) const {
  auto* button = dynamic_cast<TToolButton*>(control);
  if (!button) return control->Width();
  if (button->Style() == tbsSeparator || button->Style() == tbsDivider) return button->Width();
  int width = FButtonWidth;
  if (FShowCaptions && button->AutoSize()) {
    const QFontMetrics fm(FFont->Handle());
    const int text = fm.horizontalAdvance(StripAccelChars(button->UnicodeText())) + 8;
    const int image = FImages ? FImages->Width() + 7 : 0;
    width = FList ? image + text : std::max(image, text);
  }
  if (button->Style() == tbsDropDown) width += DropDownArrowWidth;
  return width;
}

void TToolBar::ArrangeButtons() {
  if (FArranging || ComponentState().Contains(csDestroying)) return;
  FArranging = true;
  SyncButtons();
  const int clientWidth = ClientRect().Width();
  int x = FIndent;
  int y = 0;
  int rows = 1;
  bool wrapNext = false;
  for (TControl* c : FButtons) {
    if (!c->Visible() && !Designing()) continue;
    auto* button = dynamic_cast<TToolButton*>(c);
    const int w = ButtonExtent(c);
    const int h = button ? FButtonHeight : c->Height();
    if (wrapNext || (FWrapable && x > FIndent && x + w > clientWidth)) {
      x = FIndent;
      y += FButtonHeight;
      ++rows;
    }
    wrapNext = button && button->Wrap();
    if (c->Left() != x || c->Top() != y || c->Width() != w || c->Height() != h) c->SetBounds(x, y, w, h);
    x += w;
  }
  FRowCount = rows;
  FArranging = false;
  if (FAutoSize) AdjustSize();
  Invalidate();
}

bool TToolBar::CanAutoSize(int& newWidth, int& newHeight) {
  if (FAlign == alLeft || FAlign == alRight) return false;
  // On a cool bar the band gives the height.
  if (dynamic_cast<TCoolBar*>(Parent())) return false;
  const TRect m = NonClientMargins();
  newHeight = FRowCount * FButtonHeight + m.Top + m.Bottom;
  (void)newWidth;
  return true;
}

void TToolBar::AlignControls(TControl* changing, TRect& rect) {
  if (!ComponentState().Contains(csLoading) && FAlignLevel == 0 && !FAligning) ArrangeButtons();
  TToolWindow::AlignControls(changing, rect);
}

void TToolBar::Loaded() {
  TToolWindow::Loaded();
  ArrangeButtons();
}

void TToolBar::GetChildren(const TGetChildProc& proc, TComponent* root) {
  SyncButtons();
  for (TControl* c : FButtons) {
    if (c->Owner() == root) proc(c);
  }
}

void TToolBar::FontChanged() {
  TToolWindow::FontChanged();
  if (FShowCaptions) ArrangeButtons();
}

void TToolBar::Paint(QPainter& painter) {
  if (!FTransparent) painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor));
  PaintEdges(painter);
}

void TToolBar::SetButtonHeight(int value) {
  if (FButtonHeight == value) return;
  FButtonHeight = std::max(value, 0);
  ArrangeButtons();
}

void TToolBar::SetButtonWidth(int value) {
  if (FButtonWidth == value) return;
  FButtonWidth = std::max(value, 0);
  ArrangeButtons();
}

void TToolBar::SetDisabledImages(TCustomImageList* value) {
  ReplaceComponentLink(this, FDisabledImages, value);
  Invalidate();
  for (TControl* c : FButtons) c->Invalidate();
}

void TToolBar::SetHotImages(TCustomImageList* value) { ReplaceComponentLink(this, FHotImages, value); }

void TToolBar::SetImages(TCustomImageList* value) {
  ReplaceComponentLink(this, FImages, value);
  ArrangeButtons();
  for (TControl* c : FButtons) c->Invalidate();
}

void TToolBar::Notification(TComponent* component, TOperation operation) {
  TToolWindow::Notification(component, operation);
  if (operation != opRemove) return;
  // The same list may serve in several roles: forget it in all before arranging again.
  bool changed = false;
  for (TCustomImageList** field : {&FImages, &FHotImages, &FDisabledImages}) {
    if (component == *field) *field = nullptr, changed = true;
  }
  if (changed) {
    ArrangeButtons();
    Invalidate();
    for (TControl* c : FButtons) c->Invalidate();
  }
  if (auto* c = dynamic_cast<TControl*>(component)) {
    FButtons.erase(std::remove(FButtons.begin(), FButtons.end(), c), FButtons.end());
  }
}

void TToolBar::SetFlat(bool value) {
  if (FFlat == value) return;
  FFlat = value;
  for (TControl* c : FButtons) c->Invalidate();
}

void TToolBar::SetIndent(int value) {
  if (FIndent == value) return;
  FIndent = std::max(value, 0);
  ArrangeButtons();
}

void TToolBar::SetList(bool value) {
  if (FList == value) return;
  FList = value;
  ArrangeButtons();
  for (TControl* c : FButtons) c->Invalidate();
}

void TToolBar::SetShowCaptions(bool value) {
  if (FShowCaptions == value) return;
  FShowCaptions = value;
  ArrangeButtons();
  for (TControl* c : FButtons) c->Invalidate();
}

void TToolBar::SetTransparent(bool value) {
  FTransparent = value;
  Invalidate();
}

void TToolBar::SetWrapable(bool value) {
  if (FWrapable == value) return;
  FWrapable = value;
  ArrangeButtons();
}

// ---------------------------------------------------------------------------------------
// TCoolBand, TCoolBands, TCoolBar

namespace {
// Left of a band's control: the gripper and the room around it.
constexpr int CoolGripperWidth = 9;
}  // namespace

LUMORA_CLASS_IMPL(TCoolBand) {
  c.Property("Bitmap", &TCoolBand::Bitmap, &TCoolBand::SetBitmap);
  c.Property("BorderStyle", &TCoolBand::BorderStyle, &TCoolBand::SetBorderStyle).Default(BorderStyleOf(bsNone));
  c.Property("Break", &TCoolBand::Break, &TCoolBand::SetBreak).Default(true);
  c.Property("Color", &TCoolBand::Color, &TCoolBand::SetColor).Default(clBtnFace).Stored(&TCoolBand::IsColorStored);
  c.Property("Control", &TCoolBand::Control, &TCoolBand::SetControl);
  c.Property("FixedBackground", &TCoolBand::FixedBackground, &TCoolBand::SetFixedBackground).Default(true);
  c.Property("FixedSize", &TCoolBand::FixedSize, &TCoolBand::SetFixedSize).Default(false);
  c.Property("HorizontalOnly", &TCoolBand::HorizontalOnly, &TCoolBand::SetHorizontalOnly).Default(false);
  c.Property("ImageIndex", &TCoolBand::ImageIndex, &TCoolBand::SetImageIndex).NoDefault();
  c.Property("MinHeight", &TCoolBand::MinHeight, &TCoolBand::SetMinHeight).NoDefault();
  c.Property("MinWidth", &TCoolBand::MinWidth, &TCoolBand::SetMinWidth).Default(0);
  c.Property("ParentColor", &TCoolBand::ParentColor, &TCoolBand::SetParentColor).Default(true);
  c.Property("ParentBitmap", &TCoolBand::ParentBitmap, &TCoolBand::SetParentBitmap).Default(true);
  c.Property("Text", &TCoolBand::Text, &TCoolBand::SetText);
  c.Property("Visible", &TCoolBand::Visible, &TCoolBand::SetVisible).Default(true);
  c.Property("Width", &TCoolBand::Width, &TCoolBand::SetWidth).NoDefault();
}

// The band joins its collection once its own fields exist: joining lays the bar out again.
TCoolBand::TCoolBand(TCollection* collection) : TCollectionItem(nullptr), FBitmap(new TBitmap()) {
  SetCollection(collection);
}

TCoolBand::~TCoolBand() {
  if (FControl) {
    if (TCoolBar* bar = CoolBar()) FControl->RemoveFreeNotification(bar);
  }
  delete FBitmap;
}

TCoolBar* TCoolBand::CoolBar() const {
  auto* bands = dynamic_cast<TCoolBands*>(Collection());
  return bands ? bands->CoolBar() : nullptr;
}

void TCoolBand::Assign(TPersistent* source) {
  if (auto* b = dynamic_cast<TCoolBand*>(source)) {
    FBitmap->Assign(b->FBitmap);
    FBorderStyle = b->FBorderStyle;
    FBreak = b->FBreak;
    FColor = b->FColor;
    FFixedBackground = b->FFixedBackground;
    FFixedSize = b->FFixedSize;
    FHorizontalOnly = b->FHorizontalOnly;
    FImageIndex = b->FImageIndex;
    FMinHeight = b->FMinHeight;
    FMinWidth = b->FMinWidth;
    FParentBitmap = b->FParentBitmap;
    FParentColor = b->FParentColor;
    FText = b->FText;
    FVisible = b->FVisible;
    FWidth = b->FWidth;
    Changed(true);
    return;
  }
  TCollectionItem::Assign(source);
}

std::string TCoolBand::GetDisplayName() const {
  if (!FText.empty()) return FText;
  if (FControl) return FControl->ClassName();
  return TCollectionItem::GetDisplayName();
}

void TCoolBand::SetBorderStyle(TBorderStyle value) {
  FBorderStyle = value;
  Changed(false);
}

void TCoolBand::SetBreak(bool value) {
  FBreak = value;
  Changed(true);
}

void TCoolBand::SetColor(TColor value) {
  FColor = value;
  FParentColor = false;
  Changed(false);
}

void TCoolBand::SetParentColor(bool value) {
  FParentColor = value;
  Changed(false);
}

void TCoolBand::SetControl(TWinControl* value) {
  if (FControl == value) return;
  TCoolBar* bar = CoolBar();
  if (FControl && bar) FControl->RemoveFreeNotification(bar);
  FControl = value;
  if (FControl && bar) {
    FControl->FreeNotification(bar);
    // A control given to a band lives on the bar.
    if (FControl->Parent() != bar && !bar->ComponentState().Contains(csLoading)) FControl->SetParent(bar);
  }
  Changed(true);
}

void TCoolBand::SetFixedSize(bool value) {
  FFixedSize = value;
  Changed(true);
}

void TCoolBand::SetImageIndex(int value) {
  FImageIndex = value;
  Changed(true);
}

void TCoolBand::SetMinHeight(int value) {
  FMinHeight = value;
  Changed(true);
}

void TCoolBand::SetMinWidth(int value) {
  FMinWidth = value;
  Changed(true);
}

void TCoolBand::SetText(const std::string& value) {
  FText = value;
  Changed(true);
}

void TCoolBand::SetVisible(bool value) {
  FVisible = value;
  Changed(true);
}

void TCoolBand::SetWidth(int value) {
  FWidth = value;
  Changed(true);
}

LUMORA_CLASS_IMPL(TCoolBands) {}

TCoolBands::TCoolBands(TCoolBar* coolBar) : TCollection(TCoolBand::StaticClass()), FCoolBar(coolBar) {}

TPersistent* TCoolBands::GetOwner() { return FCoolBar; }

TCoolBand* TCoolBands::FindBand(TControl* control) const {
  for (int i = 0; i < Count(); ++i) {
    if (Items(i)->Control() == control) return Items(i);
  }
  return nullptr;
}

void TCoolBands::Update(TCollectionItem*) {
  if (FCoolBar) FCoolBar->ArrangeBands();
}

LUMORA_CLASS_IMPL(TCoolBar) {
  PublishControlProperties(c, {"Align", "Anchors", "AutoSize"});
  c.Property("BandBorderStyle", &TCoolBar::BandBorderStyle, &TCoolBar::SetBandBorderStyle).Default(BorderStyleOf(bsSingle));
  c.Property("Bands", &TCoolBar::Bands, &TCoolBar::SetBands);
  PublishControlProperties(c, {"BorderWidth", "Color", "Constraints", "Ctl3D", "DockSite", "DragCursor", "DragKind",
                               "DragMode"});
  c.Property("EdgeBorders", &TCoolBar::EdgeBorders, &TCoolBar::SetEdgeBorders)
      .Default(TEdgeBorders{ebLeft, ebTop, ebRight, ebBottom});
  c.Property("EdgeInner", &TCoolBar::EdgeInner, &TCoolBar::SetEdgeInner).Default(esRaised);
  c.Property("EdgeOuter", &TCoolBar::EdgeOuter, &TCoolBar::SetEdgeOuter).Default(esLowered);
  PublishControlProperties(c, {"Enabled"});
  c.Property("FixedSize", &TCoolBar::FixedSize, &TCoolBar::SetFixedSize).Default(false);
  c.Property("FixedOrder", &TCoolBar::FixedOrder, &TCoolBar::SetFixedOrder).Default(false);
  PublishControlProperties(c, {"Font"});
  c.Property("Images", &TCoolBar::Images, &TCoolBar::SetImages);
  PublishControlProperties(c, {"ParentColor", "ParentFont", "ParentShowHint"});
  c.Property("Bitmap", &TCoolBar::Bitmap, &TCoolBar::SetBitmap);
  PublishControlProperties(c, {"PopupMenu", "ShowHint"});
  c.Property("ShowText", &TCoolBar::ShowText, &TCoolBar::SetShowText).Default(true);
  c.Property("Vertical", &TCoolBar::Vertical, &TCoolBar::SetVertical).Default(false);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnChange", &TCoolBar::OnChange, &TCoolBar::OnChange);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDockDrop", "OnDockOver", "OnDragDrop", "OnDragOver",
                               "OnEndDock", "OnEndDrag", "OnGetSiteInfo", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnResize", "OnStartDock", "OnStartDrag", "OnUnDock"});
  c.Property("Align").Default(alTop);
}

TCoolBar::TCoolBar(TComponent* owner) : TToolWindow(owner), FBitmap(new TBitmap()) {
  FControlStyle = TControlStyle{csAcceptsControls, csCaptureMouse, csClickEvents, csDoubleClicks, csOpaque};
  FWidth = 150;
  FHeight = 75;
  FAlign = alTop;
  FColor = clBtnFace;
  FEdgeBorders = TEdgeBorders{ebLeft, ebTop, ebRight, ebBottom};
  FBands = new TCoolBands(this);
}

TCoolBar::~TCoolBar() {
  FArranging = true;
  TCoolBands* bands = FBands;
  FBands = nullptr;
  delete bands;
  delete FBitmap;
}

void TCoolBar::CreateWidget() { AdoptWidget(new TPaintedWidget(this, true)); }

void TCoolBar::SetBandBorderStyle(TBorderStyle value) {
  FBandBorderStyle = value;
  ArrangeBands();
}

void TCoolBar::SetFixedSize(bool value) {
  FFixedSize = value;
  ArrangeBands();
}

void TCoolBar::SetImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FImages, value)) return;
  ArrangeBands();
}

void TCoolBar::SetShowText(bool value) {
  FShowText = value;
  ArrangeBands();
}

void TCoolBar::SetVertical(bool value) {
  FVertical = value;
  ArrangeBands();
}

void TCoolBar::Notification(TComponent* component, TOperation operation) {
  TToolWindow::Notification(component, operation);
  if (operation != opRemove || !FBands) return;
  if (component == FImages) FImages = nullptr;
  for (int i = 0; i < FBands->Count(); ++i) {
    TCoolBand* band = FBands->Items(i);
    if (band->FControl == component) band->FControl = nullptr;
  }
}

int TCoolBar::BandIndent(const TCoolBand* band) const {
  int indent = band->FixedSize() || FFixedSize ? 2 : CoolGripperWidth;
  if (FImages && band->ImageIndex() >= 0) indent += FImages->Width() + 2;
  if (FShowText && !band->Text().empty()) {
    const QFontMetrics fm(FFont->Handle());
    indent += fm.horizontalAdvance(FFont->ToUnicode(band->Text())) + 4;
  }
  return indent;
}

void TCoolBar::ArrangeBands() {
  if (FArranging || !FBands || ComponentState().Contains(csLoading) || ComponentState().Contains(csDestroying)) return;
  FArranging = true;
  const int clientWidth = ClientRect().Width();
  const int separator = FBandBorderStyle == BorderStyleOf(bsSingle) ? 2 : 0;
  // Rows: a band that breaks starts a new one.
  std::vector<std::vector<TCoolBand*>> rows;
  for (int i = 0; i < FBands->Count(); ++i) {
    TCoolBand* band = FBands->Items(i);
    if (!band->Visible()) continue;
    if (rows.empty() || (band->Break() && !rows.back().empty())) rows.emplace_back();
    rows.back().push_back(band);
  }
  int y = 0;
  for (const auto& row : rows) {
    int height = 0;
    for (TCoolBand* band : row) {
      int h = band->MinHeight();
      if (band->Control()) h = std::max(h, band->Control()->Height());
      height = std::max(height, h);
    }
    int x = 0;
    for (std::size_t k = 0; k < row.size(); ++k) {
      TCoolBand* band = row[k];
      // The last band of a row takes what is left of it.
      int width = k + 1 == row.size() ? std::max(band->Width(), clientWidth - x) : band->Width();
      if (k + 1 == row.size()) width = std::max(0, clientWidth - x);
      band->FRect = Rect(x, y, x + width, y + height);
      if (TWinControl* control = band->Control(); control && control->Parent() == this) {
        const int indent = BandIndent(band);
        // The band sizes its control: the rest of the band's width, the row's height.
        control->SetBounds(x + indent, y, std::max(0, width - indent - 4), height);
      }
      x += width + separator;
    }
    y += height + separator;
  }
  FRowCount = static_cast<int>(rows.size());
  FArranging = false;
  if (FAutoSize) AdjustSize();
  Invalidate();
}

bool TCoolBar::CanAutoSize(int& newWidth, int& newHeight) {
  if (FVertical) return false;
  const TRect m = NonClientMargins();
  int height = 0;
  const int separator = FBandBorderStyle == BorderStyleOf(bsSingle) ? 2 : 0;
  for (int i = 0; i < FBands->Count(); ++i) {
    const TRect r = FBands->Items(i)->BandRect();
    if (FBands->Items(i)->Visible()) height = std::max(height, r.Bottom);
  }
  (void)separator;
  newHeight = height + m.Top + m.Bottom;
  (void)newWidth;
  return true;
}

// The bands place their controls; the controls' own alignment does not apply here.
void TCoolBar::AlignControls(TControl*, TRect&) {
  if (!ComponentState().Contains(csLoading) && FAlignLevel == 0 && !FAligning) ArrangeBands();
}

void TCoolBar::Loaded() {
  TToolWindow::Loaded();
  ArrangeBands();
}

void TCoolBar::Paint(QPainter& painter) {
  painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor));
  PaintEdges(painter);
  const TPoint off = ClientWidgetOffset();
  const QColor hi = Sys(clBtnHighlight);
  const QColor shadow = Sys(clBtnShadow);
  for (int i = 0; i < FBands->Count(); ++i) {
    TCoolBand* band = FBands->Items(i);
    if (!band->Visible()) continue;
    const TRect r = band->BandRect();
    const int x = r.Left + off.X;
    const int y = r.Top + off.Y;
    if (!band->FixedSize() && !FFixedSize) {
      // The gripper: two raised bars.
      for (int g = 0; g < 2; ++g) {
        const int gx = x + 2 + g * 3;
        VLine(painter, gx, y + 2, y + r.Height() - 2, hi);
        VLine(painter, gx + 1, y + 2, y + r.Height() - 2, shadow);
      }
    }
    int tx = x + (band->FixedSize() || FFixedSize ? 2 : CoolGripperWidth);
    if (FImages && band->ImageIndex() >= 0 && band->ImageIndex() < FImages->Count()) {
      FImages->Draw(painter, tx, y + (r.Height() - FImages->Height()) / 2, band->ImageIndex(), FEnabled);
      tx += FImages->Width() + 2;
    }
    if (FShowText && !band->Text().empty()) {
      TCaptionLayout layout;
      layout.VAlign = TTextVAlign::Center;
      DrawCaption(painter, QRect(tx, y, r.Width() - (tx - x), r.Height()), FFont->Handle(),
                  FFont->ToUnicode(band->Text()), layout, Sys(FFont->Color()));
    }
    if (FBandBorderStyle == BorderStyleOf(bsSingle)) {
      // Etched lines after each band and below each row.
      VLine(painter, x + r.Width(), y, y + r.Height(), shadow);
      VLine(painter, x + r.Width() + 1, y, y + r.Height(), hi);
      HLine(painter, x, x + r.Width() + 2, y + r.Height(), shadow);
      HLine(painter, x, x + r.Width() + 2, y + r.Height() + 1, hi);
    }
  }
}
