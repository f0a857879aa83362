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
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

// ---------------------------------------------------------------------------------------
// TCustomTabControl

LUMORA_CLASS_IMPL(TCustomTabControl) {}

TCustomTabControl::TCustomTabControl(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csAcceptsControls, csDoubleClicks};
  FWidth = 289;
  FHeight = 193;
  FTabStop = true;
  FColor = clBtnFace;
  FParentColor = true;
  FTabs = new TStringList();
  FTabs->OnChange = [this](TObject*) {
    if (FUpdatingTabs) return;
    if (FTabIndex >= FTabs->Count()) FTabIndex = FTabs->Count() > 0 && !Loading(this) ? FTabs->Count() - 1 : FTabIndex;
    TabsChanged();
  };
}

TCustomTabControl::~TCustomTabControl() {
  FTabs->OnChange = nullptr;
  DestroyWidget();
  delete FTabs;
}

void TCustomTabControl::CreateWidget() {
  auto* w = new TPaintedWidget(this, true);
  w->setFocusPolicy(Qt::StrongFocus);
  AdoptWidget(w);
}

void TCustomTabControl::SetTabIndex(int value) {
  if (value < -1) value = -1;
  if (!Loading(this) && value >= FTabs->Count()) return;
  if (FTabIndex == value) return;
  FTabIndex = value;
  TabsChanged();
}

void TCustomTabControl::SetImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FImages, value)) return;
  TabsChanged();
}

void TCustomTabControl::Notification(TComponent* component, TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation == opRemove && component == FImages) {
    FImages = nullptr;
    TabsChanged();
  }
}

void TCustomTabControl::SetMultiLine(bool value) {
  if (FMultiLine == value) return;
  FMultiLine = value;
  TabsChanged();
}

void TCustomTabControl::SetOwnerDraw(bool value) {
  FOwnerDraw = value;
  Invalidate();
}

void TCustomTabControl::SetRaggedRight(bool value) {
  FRaggedRight = value;
  Invalidate();
}

void TCustomTabControl::SetStyle(TTabStyle value) {
  if (FStyle == value) return;
  FStyle = value;
  TabsChanged();
}

void TCustomTabControl::SetTabHeight(short value) {
  if (FTabHeight == value) return;
  FTabHeight = std::max<short>(value, 0);
  TabsChanged();
}

void TCustomTabControl::SetTabPosition(TTabPosition value) {
  if (FTabPosition == value) return;
  FTabPosition = value;
  TabsChanged();
}

void TCustomTabControl::SetTabWidth(short value) {
  if (FTabWidth == value) return;
  FTabWidth = std::max<short>(value, 0);
  TabsChanged();
}

void TCustomTabControl::TabsChanged() {
  if (ComponentState().Contains(csDestroying)) return;
  Realign();
  Invalidate();
}

void TCustomTabControl::FontChanged() {
  TWinControl::FontChanged();
  TabsChanged();
}

void TCustomTabControl::Resize() {
  TWinControl::Resize();
  Invalidate();
}

bool TCustomTabControl::CanChange() {
  bool allow = true;
  if (OnChanging) OnChanging(this, allow);
  return allow;
}

void TCustomTabControl::Change() {
  if (OnChange) OnChange(this);
}

int TCustomTabControl::GetImageIndex(int tabIndex) {
  int index = tabIndex;
  if (OnGetImageIndex) OnGetImageIndex(this, tabIndex, index);
  return index;
}

void TCustomTabControl::SelectTabByUser(int index) {
  if (index < 0 || index >= FTabs->Count() || index == FTabIndex) return;
  if (!CanChange()) return;
  FTabIndex = index;
  Invalidate();
  Change();
}

// ---- Layout
//
// The tabs are laid out in a frame of their own: U runs along the edge the tabs stand on,
// V away from it, from the outer edge towards the pages. Each tab position maps that
// frame onto the control (top: as is; bottom: mirrored; left and right: turned).

namespace {

struct TTabFrame {
  TTabPosition Position;
  int W, H;  // the control's size
  int AlongLength() const { return Position == tpLeft || Position == tpRight ? H : W; }
  int Depth() const { return Position == tpLeft || Position == tpRight ? W : H; }
  // A rectangle of the tab frame (u0, v0, u1, v1) in the control's coordinates.
  TRect Map(int u0, int v0, int u1, int v1) const {
    switch (Position) {
      case tpTop: return Rect(u0, v0, u1, v1);
      case tpBottom: return Rect(u0, H - v1, u1, H - v0);
      case tpLeft: return Rect(v0, H - u1, v1, H - u0);
      case tpRight: return Rect(W - v1, u0, W - v0, u1);
    }
    return Rect(u0, v0, u1, v1);
  }
  // The transformation that draws the tab frame onto the control.
  QTransform Transform() const {
    QTransform t;
    switch (Position) {
      case tpTop: break;
      case tpBottom: t = QTransform(1, 0, 0, -1, 0, H); break;
      case tpLeft: t = QTransform(0, -1, 1, 0, 0, H); break;
      case tpRight: t = QTransform(0, 1, -1, 0, W, 0); break;
    }
    return t;
  }
};

}  // namespace

int TCustomTabControl::TabRowHeight() const {
  if (FTabHeight > 0) return FTabHeight;
  const int cell = FontCellHeight(FFont->Handle());
  return Buttons() ? cell + 8 : cell + 5;
}

TCustomTabControl::TTabLayout TCustomTabControl::Layout() const {
  TTabLayout l;
  l.RowHeight = TabRowHeight();
  const TTabFrame frame{FTabPosition, FWidth, FHeight};
  const int count = FTabs->Count();
  const QFontMetrics fm(FFont->Handle());
  const int imageWidth = FImages ? FImages->Width() + 3 : 0;
  const int start = Buttons() ? 0 : 2;
  const int limit = std::max(frame.AlongLength() - (Buttons() ? 0 : 2), start + 1);
  const int gap = Buttons() ? 3 : 0;
  // Widths along the edge, then rows.
  std::vector<int> widths(count);
  for (int i = 0; i < count; ++i) {
    if (FTabWidth > 0) {
      widths[i] = FTabWidth;
    } else {
      const QString caption = StripAccelChars(FFont->ToUnicode(FTabs->Strings(i)));
      widths[i] = fm.horizontalAdvance(caption) + 12 + imageWidth;
    }
  }
  std::vector<std::vector<int>> rows(1);
  int u = start;
  // Tabs at the sides always wrap, as the platform's tab control does.
  const bool wrap = FMultiLine || Vertical();
  for (int i = 0; i < count; ++i) {
    if (wrap && !rows.back().empty() && u + widths[i] > limit) {
      rows.emplace_back();
      u = start;
    }
    rows.back().push_back(i);
    u += widths[i] + gap;
  }
  l.Rows = static_cast<int>(rows.size());
  l.Tabs.assign(count, TRect{});
  l.Row.assign(count, 0);
  // The row of the selected tab lies next to the pages; the others keep their order
  // beyond it, as the rows of a real tab control rotate.
  int selectedRow = 0;
  for (int r = 0; r < l.Rows; ++r) {
    for (int i : rows[r]) {
      if (i == FTabIndex) selectedRow = r;
    }
  }
  for (int r = 0; r < l.Rows; ++r) {
    const int visual = Buttons() ? r : (r - selectedRow + l.Rows) % l.Rows;
    int v0;
    if (Buttons()) {
      v0 = visual * (l.RowHeight + gap);
    } else {
      v0 = 2 + (l.Rows - 1 - visual) * l.RowHeight;
    }
    // Rows of a multi-line control fill the width unless RaggedRight.
    int total = 0;
    for (int i : rows[r]) total += widths[i] + gap;
    const int spare = (l.Rows > 1 && !FRaggedRight) ? std::max(0, limit - start - total) : 0;
    const int n = static_cast<int>(rows[r].size());
    int pos = start;
    for (int k = 0; k < n; ++k) {
      const int i = rows[r][k];
      const int extra = n > 0 ? spare / n + (k < spare % n ? 1 : 0) : 0;
      const int w = widths[i] + extra;
      l.Tabs[i] = Rect(pos, v0, pos + w, v0 + l.RowHeight);
      l.Row[i] = visual;
      pos += w + gap;
    }
  }
  return l;
}

int TCustomTabControl::RowCount() const { return Layout().Rows; }

TRect TCustomTabControl::DisplayRect() const {
  const TTabFrame frame{FTabPosition, FWidth, FHeight};
  const TTabLayout l = Layout();
  const int depth = frame.Depth();
  const int along = frame.AlongLength();
  if (Buttons()) {
    const int paneTop = FTabs->Count() > 0 ? l.Rows * (l.RowHeight + 3) : 0;
    return frame.Map(0, std::min(paneTop, depth), along, depth);
  }
  const int paneTop = 2 + l.Rows * l.RowHeight;
  TRect r = frame.Map(4, std::min(paneTop + 4, depth), std::max(4, along - 4), std::max(paneTop + 4, depth - 4));
  return r;
}

TRect TCustomTabControl::TabRect(int index) const {
  if (index < 0 || index >= FTabs->Count()) return TRect{};
  const TTabLayout l = Layout();
  const TTabFrame frame{FTabPosition, FWidth, FHeight};
  const TRect& t = l.Tabs[index];
  return frame.Map(t.Left, t.Top, t.Right, t.Bottom);
}

int TCustomTabControl::IndexOfTabAt(int x, int y) const {
  const TTabLayout l = Layout();
  const TTabFrame frame{FTabPosition, FWidth, FHeight};
  for (int i = 0; i < static_cast<int>(l.Tabs.size()); ++i) {
    const TRect& t = l.Tabs[i];
    const TRect r = frame.Map(t.Left, t.Top, t.Right, t.Bottom);
    if (x >= r.Left && x < r.Right && y >= r.Top && y < r.Bottom) return i;
  }
  return -1;
}

void TCustomTabControl::AdjustClientRect(TRect& rect) const {
  rect = DisplayRect();
  TWinControl::AdjustClientRect(rect);
}

// ---- Painting

void TCustomTabControl::Paint(QPainter& painter) {
  const TTabFrame frame{FTabPosition, FWidth, FHeight};
  painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor));
  const TTabLayout l = Layout();
  const int count = FTabs->Count();
  const int along = frame.AlongLength();
  const int depth = frame.Depth();
  const QColor hi = Sys(clBtnHighlight);
  const QColor light = Sys(cl3DLight);
  const QColor shadow = Sys(clBtnShadow);
  const QColor dark = Sys(cl3DDkShadow);
  const QColor face = Sys(FColor);
  const QColor text = Sys(FFont->Color());
  const bool focused = Widget() && Widget()->hasFocus();

  painter.save();
  painter.setTransform(frame.Transform(), false);
  if (!Buttons()) {
    // The pane: a raised frame around the pages.
    const int top = 2 + l.Rows * l.RowHeight;
    if (top < depth) {
      HLine(painter, 0, along, top, hi);
      VLine(painter, 0, top, depth, hi);
      HLine(painter, 0, along, depth - 1, dark);
      VLine(painter, along - 1, top, depth, dark);
      HLine(painter, 1, along - 1, depth - 2, shadow);
      VLine(painter, along - 2, top + 1, depth - 1, shadow);
    }
  }
  // Tabs further from the pages first, the selected one last so that it overlaps.
  std::vector<int> order;
  for (int i = 0; i < count; ++i) {
    if (i != FTabIndex) order.push_back(i);
  }
  if (FTabIndex >= 0 && FTabIndex < count) order.push_back(FTabIndex);
  for (int i : order) {
    TRect t = l.Tabs[i];
    const bool selected = i == FTabIndex;
    if (Buttons()) {
      QRect r(t.Left, t.Top, t.Width(), t.Height());
      if (FStyle == tsButtons || selected) {
        QRect edge = r;
        if (selected) {
          Frame3D(painter, edge, dark, hi);
          Frame3D(painter, edge, shadow, light);
          painter.fillRect(edge, ColorToQColor(clBtnHighlight).lighter(100));
          painter.fillRect(edge, face);
        } else {
          Frame3D(painter, edge, light, dark);
          Frame3D(painter, edge, hi, shadow);
        }
      }
    } else {
      if (selected) t = Rect(t.Left - 2, t.Top - 2, t.Right + 2, t.Bottom + 1);
      // Left edge, rounded top-left corner, top, rounded top-right corner, right edge.
      painter.fillRect(QRect(t.Left, t.Top + 2, t.Width(), t.Height() - 2), face);
      painter.fillRect(QRect(t.Left + 2, t.Top, t.Width() - 4, 2), face);
      VLine(painter, t.Left, t.Top + 2, t.Bottom, hi);
      painter.fillRect(QRect(t.Left + 1, t.Top + 1, 1, 1), hi);
      HLine(painter, t.Left + 2, t.Right - 2, t.Top, hi);
      painter.fillRect(QRect(t.Right - 2, t.Top + 1, 1, 1), dark);
      VLine(painter, t.Right - 1, t.Top + 2, t.Bottom, dark);
      VLine(painter, t.Right - 2, t.Top + 2, t.Bottom, shadow);
      if (selected) {
        // The selected tab opens into the pane.
        HLine(painter, t.Left + 1, t.Right - 2, t.Bottom - 1, face);
        HLine(painter, t.Left + 1, t.Right - 2, t.Bottom, face);
      }
    }
  }
  painter.restore();

  // Images and captions, upright for tabs above and below, turned with tabs at the sides.
  for (int i = 0; i < count; ++i) {
    const bool selected = i == FTabIndex;
    TRect t = l.Tabs[i];
    if (!Buttons() && selected) t = Rect(t.Left - 2, t.Top - 2, t.Right + 2, t.Bottom);
    int image = FImages ? GetImageIndex(i) : -1;
    if (FOwnerDraw && OnDrawTab) {
      const TRect r = frame.Map(t.Left, t.Top, t.Right, t.Bottom);
      OnDrawTab(this, i, r, selected);
      continue;
    }
    painter.save();
    QRect area;
    if (Vertical()) {
      painter.setTransform(frame.Transform(), false);
      area = QRect(t.Left, t.Top, t.Width(), t.Height());
    } else {
      area = ToQRect(frame.Map(t.Left, t.Top, t.Right, t.Bottom));
    }
    if (!Buttons() && selected) area.adjust(0, FTabPosition == tpBottom ? 1 : 0, 0, FTabPosition == tpBottom ? 0 : -1);
    if (Buttons() && selected && FStyle != tsFlatButtons) area.translate(1, 1);
    const QString caption = FFont->ToUnicode(FTabs->Strings(i));
    TCaptionLayout layout;
    layout.HAlign = TTextHAlign::Center;
    layout.VAlign = TTextVAlign::Center;
    layout.Disabled = !FEnabled;
    QRect textArea = area;
    if (FImages && image >= 0 && image < FImages->Count()) {
      const QSize ts = MeasureText(FFont->Handle(), caption, layout, 0);
      const int total = FImages->Width() + 3 + ts.width();
      const int x = area.left() + std::max(0, (area.width() - total) / 2);
      FImages->Draw(painter, x, area.top() + (area.height() - FImages->Height()) / 2, image, FEnabled);
      textArea.setLeft(x + FImages->Width() + 3);
      layout.HAlign = TTextHAlign::Left;
    }
    DrawCaption(painter, textArea, FFont->Handle(), caption, layout, text);
    if (selected && focused && !Designing()) DrawFocusRect(painter, area.adjusted(2, 2, -2, -2), Sys(clWindowText));
    painter.restore();
  }
}

// ---- Input

bool TCustomTabControl::WidgetEvent(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress && watched == Widget() && !Designing()) {
    auto* e = static_cast<QMouseEvent*>(event);
    if (e->button() == Qt::LeftButton) {
      const QPoint p = e->position().toPoint();
      const int index = IndexOfTabAt(p.x(), p.y());
      if (index >= 0) {
        if (FTabStop && Widget()) Widget()->setFocus(Qt::MouseFocusReason);
        SelectTabByUser(index);
      }
    }
  }
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) Invalidate();
  return TWinControl::WidgetEvent(watched, event);
}

void TCustomTabControl::KeyDown(Word& key, TShiftState shift) {
  TWinControl::KeyDown(key, shift);
  const int count = FTabs->Count();
  if (count == 0) return;
  int next = -1;
  if (key == VK_TAB && shift.Contains(ssCtrl)) {
    next = shift.Contains(ssShift) ? (FTabIndex <= 0 ? count - 1 : FTabIndex - 1) : (FTabIndex + 1) % count;
  } else if (shift == TShiftState{} && (key == VK_RIGHT || key == VK_DOWN)) {
    next = std::min(FTabIndex + 1, count - 1);
  } else if (shift == TShiftState{} && (key == VK_LEFT || key == VK_UP)) {
    next = std::max(FTabIndex - 1, 0);
  }
  if (next >= 0) {
    if (next != FTabIndex) SelectTabByUser(next);
    key = 0;
  }
}

LUMORA_CLASS_IMPL(TTabControl) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode", "Constraints", "DockSite", "DragCursor", "DragKind",
                               "DragMode", "Enabled", "Font"});
  c.Property("HotTrack", &TTabControl::HotTrack, &TTabControl::SetHotTrack).Default(false);
  c.Property("Images", &TTabControl::Images, &TTabControl::SetImages);
  c.Property("MultiLine", &TTabControl::MultiLine, &TTabControl::SetMultiLine).Default(false);
  c.Property("MultiSelect", &TTabControl::MultiSelect, &TTabControl::SetMultiSelect).Default(false);
  c.Property("OwnerDraw", &TTabControl::OwnerDraw, &TTabControl::SetOwnerDraw).Default(false);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("RaggedRight", &TTabControl::RaggedRight, &TTabControl::SetRaggedRight).Default(false);
  c.Property("ScrollOpposite", &TTabControl::ScrollOpposite, &TTabControl::SetScrollOpposite).Default(false);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("Style", &TTabControl::Style, &TTabControl::SetStyle).Default(tsTabs);
  c.Property("TabHeight", &TTabControl::TabHeight, &TTabControl::SetTabHeight).Default(0);
  PublishControlProperties(c, {"TabOrder"});
  c.Property("TabPosition", &TTabControl::TabPosition, &TTabControl::SetTabPosition).Default(tpTop);
  c.Property("Tabs", &TTabControl::Tabs, &TTabControl::SetTabs);
  c.Property("TabIndex", &TTabControl::TabIndex, &TTabControl::SetTabIndex).Default(-1);
  PublishControlProperties(c, {"TabStop"});
  c.Property("TabWidth", &TTabControl::TabWidth, &TTabControl::SetTabWidth).Default(0);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnChange", &TTabControl::OnChange, &TTabControl::OnChange);
  c.Property("OnChanging", &TTabControl::OnChanging, &TTabControl::OnChanging);
  PublishControlProperties(c, {"OnDockDrop", "OnDockOver", "OnDragDrop", "OnDragOver"});
  c.Property("OnDrawTab", &TTabControl::OnDrawTab, &TTabControl::OnDrawTab);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit"});
  c.Property("OnGetImageIndex", &TTabControl::OnGetImageIndex, &TTabControl::OnGetImageIndex);
  PublishControlProperties(c, {"OnGetSiteInfo", "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnResize", "OnStartDock",
                               "OnStartDrag", "OnUnDock"});
  c.Property("TabStop").Default(true);
}

// ---------------------------------------------------------------------------------------
// TTabSheet

LUMORA_CLASS_IMPL(TTabSheet) {
  PublishControlProperties(c, {"BorderWidth", "Caption", "DragMode", "Enabled", "Font"});
  c.Property("Height").Stored(false);
  c.Property("ImageIndex", &TTabSheet::ImageIndex, &TTabSheet::SetImageIndex).Default(0);
  c.Property("Left").Stored(false);
  PublishControlProperties(c, {"Constraints"});
  c.Property("PageIndex", &TTabSheet::PageIndex, &TTabSheet::SetPageIndex).Stored(false);
  PublishControlProperties(c, {"ParentFont", "ParentShowHint", "PopupMenu", "ShowHint"});
  c.Property("TabVisible", &TTabSheet::TabVisible, &TTabSheet::SetTabVisible).Default(true);
  c.Property("Top").Stored(false);
  PublishControlProperties(c, {"Visible"});
  c.Property("Visible").Stored(false);
  c.Property("Width").Stored(false);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver", "OnEndDrag", "OnEnter", "OnExit"});
  c.Property("OnHide", &TTabSheet::OnHide, &TTabSheet::OnHide);
  PublishControlProperties(c, {"OnMouseDown", "OnMouseMove", "OnMouseUp", "OnResize"});
  c.Property("OnShow", &TTabSheet::OnShow, &TTabSheet::OnShow);
  PublishControlProperties(c, {"OnStartDrag"});
}

TTabSheet::TTabSheet(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csAcceptsControls, csNoDesignVisible};
  FAlign = alClient;
  FVisible = false;
  FWidth = 185;
  FHeight = 41;
}

TTabSheet::~TTabSheet() {
  if (FPageControl) FPageControl->RemovePage(this);
}

void TTabSheet::CreateWidget() { AdoptWidget(new TPaintedWidget(this, true)); }

void TTabSheet::Paint(QPainter& painter) { painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor)); }

void TTabSheet::SetParent(TWinControl* parent) {
  auto* pc = dynamic_cast<TPageControl*>(parent);
  if (FPageControl && FPageControl != pc) FPageControl->RemovePage(this);
  TWinControl::SetParent(parent);
  if (pc && FPageControl != pc) pc->InsertPage(this);
}

void TTabSheet::SetPageControl(TPageControl* value) { SetParent(value); }

int TTabSheet::PageIndex() const {
  if (!FPageControl) return -1;
  const auto& pages = FPageControl->FPages;
  const auto it = std::find(pages.begin(), pages.end(), this);
  return it == pages.end() ? -1 : static_cast<int>(it - pages.begin());
}

void TTabSheet::SetPageIndex(int value) {
  if (FPageControl) FPageControl->MovePage(this, value);
}

int TTabSheet::TabIndex() const {
  if (!FPageControl || !FTabVisible) return -1;
  int index = 0;
  for (TTabSheet* page : FPageControl->FPages) {
    if (page == this) return index;
    if (page->FTabVisible) ++index;
  }
  return -1;
}

void TTabSheet::SetTabVisible(bool value) {
  if (FTabVisible == value) return;
  FTabVisible = value;
  if (FPageControl) FPageControl->UpdateTabs();
}

void TTabSheet::SetImageIndex(int value) {
  if (FImageIndex == value) return;
  FImageIndex = value;
  if (FPageControl) FPageControl->Invalidate();
}

void TTabSheet::TextChanged() {
  TWinControl::TextChanged();
  if (FPageControl) FPageControl->UpdateTabs();
}

void TTabSheet::DoShow() {
  if (!Loading(this) && OnShow) OnShow(this);
}

void TTabSheet::DoHide() {
  if (!Loading(this) && OnHide) OnHide(this);
}

// ---------------------------------------------------------------------------------------
// TPageControl

LUMORA_CLASS_IMPL(TPageControl) {
  c.Property("ActivePage", &TPageControl::ActivePage, &TPageControl::SetActivePage);
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode", "Constraints", "DockSite", "DragCursor", "DragKind",
                               "DragMode", "Enabled", "Font"});
  c.Property("HotTrack", &TPageControl::HotTrack, &TPageControl::SetHotTrack).Default(false);
  c.Property("Images", &TPageControl::Images, &TPageControl::SetImages);
  c.Property("MultiLine", &TPageControl::MultiLine, &TPageControl::SetMultiLine).Default(false);
  c.Property("OwnerDraw", &TPageControl::OwnerDraw, &TPageControl::SetOwnerDraw).Default(false);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("RaggedRight", &TPageControl::RaggedRight, &TPageControl::SetRaggedRight).Default(false);
  c.Property("ScrollOpposite", &TPageControl::ScrollOpposite, &TPageControl::SetScrollOpposite).Default(false);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("Style", &TPageControl::Style, &TPageControl::SetStyle).Default(tsTabs);
  c.Property("TabHeight", &TPageControl::TabHeight, &TPageControl::SetTabHeight).Default(0);
  // Later versions write the selected tab too; it follows the active page.
  c.Property("TabIndex", &TPageControl::TabIndex, &TPageControl::SetTabIndex).Stored(false);
  PublishControlProperties(c, {"TabOrder"});
  c.Property("TabPosition", &TPageControl::TabPosition, &TPageControl::SetTabPosition).Default(tpTop);
  PublishControlProperties(c, {"TabStop"});
  c.Property("TabWidth", &TPageControl::TabWidth, &TPageControl::SetTabWidth).Default(0);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnChange", &TPageControl::OnChange, &TPageControl::OnChange);
  c.Property("OnChanging", &TPageControl::OnChanging, &TPageControl::OnChanging);
  PublishControlProperties(c, {"OnDockDrop", "OnDockOver", "OnDragDrop", "OnDragOver"});
  c.Property("OnDrawTab", &TPageControl::OnDrawTab, &TPageControl::OnDrawTab);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit"});
  c.Property("OnGetImageIndex", &TPageControl::OnGetImageIndex, &TPageControl::OnGetImageIndex);
  PublishControlProperties(c, {"OnGetSiteInfo", "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnResize", "OnStartDock",
                               "OnStartDrag", "OnUnDock"});
  c.Property("TabStop").Default(true);
}

TPageControl::TPageControl(TComponent* owner) : TCustomTabControl(owner) {
  FControlStyle = TControlStyle{csDoubleClicks};
}

TPageControl::~TPageControl() {
  // The pages go with the controls of the base; they must not call back into this part.
  for (TTabSheet* page : FPages) page->FPageControl = nullptr;
  FPages.clear();
  FActivePage = nullptr;
}

TTabSheet* TPageControl::Pages(int index) const {
  if (index < 0 || index >= PageCount()) throw EListError(Format("List index out of bounds (%d)", index));
  return FPages[index];
}

void TPageControl::InsertPage(TTabSheet* page) {
  FPages.push_back(page);
  page->FPageControl = this;
  if (!Loading(this) && !Loading(page) && !FActivePage) {
    // A page added to an empty control in code shows at once, as the first tab.
  }
  UpdateTabs();
}

void TPageControl::RemovePage(TTabSheet* page) {
  const auto it = std::find(FPages.begin(), FPages.end(), page);
  if (it == FPages.end()) return;
  TTabSheet* next = nullptr;
  if (page == FActivePage && !ComponentState().Contains(csDestroying)) {
    next = FindNextPage(page, true, !Designing());
    if (next == page) next = nullptr;
  }
  if (page == FActivePage) {
    FActivePage = nullptr;
  }
  FPages.erase(std::find(FPages.begin(), FPages.end(), page));
  page->FPageControl = nullptr;
  if (ComponentState().Contains(csDestroying)) return;
  if (next) ChangeActivePage(next);
  UpdateTabs();
}

void TPageControl::MovePage(TTabSheet* page, int index) {
  const auto it = std::find(FPages.begin(), FPages.end(), page);
  if (it == FPages.end()) return;
  FPages.erase(it);
  index = std::clamp(index, 0, static_cast<int>(FPages.size()));
  FPages.insert(FPages.begin() + index, page);
  UpdateTabs();
}

void TPageControl::UpdateTabs() {
  FUpdatingTabs = true;
  FTabs->BeginUpdate();
  FTabs->Clear();
  for (TTabSheet* page : FPages) {
    if (page->FTabVisible) FTabs->AddObject(page->Caption(), page);
  }
  FTabs->EndUpdate();
  FUpdatingTabs = false;
  FTabIndex = FActivePage ? FActivePage->TabIndex() : -1;
  TabsChanged();
}

TTabSheet* TPageControl::FindNextPage(TTabSheet* current, bool goForward, bool checkTabVisible) const {
  const int count = PageCount();
  if (count == 0) return nullptr;
  int start = -1;
  for (int i = 0; i < count; ++i) {
    if (FPages[i] == current) start = i;
  }
  if (start < 0) start = goForward ? count - 1 : 0;
  int i = start;
  for (int n = 0; n < count; ++n) {
    i = goForward ? (i + 1) % count : (i + count - 1) % count;
    if (!checkTabVisible || FPages[i]->FTabVisible) return FPages[i];
  }
  return nullptr;
}

void TPageControl::SelectNextPage(bool goForward) {
  TTabSheet* page = FindNextPage(FActivePage, goForward, true);
  if (!page || page == FActivePage) return;
  SelectTabByUser(page->TabIndex());
}

int TPageControl::ActivePageIndex() const { return FActivePage ? FActivePage->PageIndex() : -1; }

void TPageControl::SetActivePageIndex(int value) {
  SetActivePage(value >= 0 && value < PageCount() ? FPages[value] : nullptr);
}

void TPageControl::SetActivePage(TTabSheet* page) {
  if (page && page->FPageControl != this) return;
  ChangeActivePage(page);
}

void TPageControl::ChangeActivePage(TTabSheet* page) {
  if (FActivePage != page) {
    TTabSheet* old = FActivePage;
    FActivePage = page;
    if (page) {
      page->BringToFront();
      page->SetVisible(true);
      page->DoShow();
    }
    if (old) {
      old->SetVisible(false);
      old->DoHide();
    }
  }
  FTabIndex = page ? page->TabIndex() : -1;
  Invalidate();
}

void TPageControl::SetTabIndex(int value) {
  if (value < 0 || value >= FTabs->Count()) return;
  ChangeActivePage(static_cast<TTabSheet*>(FTabs->Objects(value)));
}

void TPageControl::Change() {
  if (FTabIndex >= 0 && FTabIndex < FTabs->Count()) {
    ChangeActivePage(static_cast<TTabSheet*>(FTabs->Objects(FTabIndex)));
  }
  TCustomTabControl::Change();
}

int TPageControl::GetImageIndex(int tabIndex) {
  int index = -1;
  if (tabIndex >= 0 && tabIndex < FTabs->Count()) index = static_cast<TTabSheet*>(FTabs->Objects(tabIndex))->ImageIndex();
  if (OnGetImageIndex) OnGetImageIndex(this, tabIndex, index);
  return index;
}

void TPageControl::GetChildren(const TGetChildProc& proc, TComponent* root) {
  for (TTabSheet* page : FPages) {
    if (page->Owner() == root) proc(page);
  }
}

void TPageControl::SetChildOrder(TComponent* child, int order) {
  if (auto* page = dynamic_cast<TTabSheet*>(child); page && page->FPageControl == this) MovePage(page, order);
}

void TPageControl::Loaded() {
  TCustomTabControl::Loaded();
  UpdateTabs();
}
