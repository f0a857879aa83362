#include "platform/vcl/ComCtrls.h"

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
#include <QCalendarWidget>
#include <QDateTimeEdit>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSlider>
#include <QIcon>
#include <QPixmap>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QAbstractTextDocumentLayout>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextList>
#include <QTreeWidget>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace {

bool Loading(const TComponent* c) { return c->ComponentState().Contains(csLoading); }

QColor Sys(TColor c) { return ColorToQColor(c); }

// A line one pixel wide, drawn as a filled rectangle so that it stays on its pixels
// under any transformation.
void HLine(QPainter& p, int x0, int x1, int y, const QColor& c) {
  if (x1 > x0) p.fillRect(QRect(x0, y, x1 - x0, 1), c);
}
void VLine(QPainter& p, int x, int y0, int y1, const QColor& c) {
  if (y1 > y0) p.fillRect(QRect(x, y0, 1, y1 - y0), c);
}

QRect ToQRect(const TRect& r) { return QRect(r.Left, r.Top, r.Width(), r.Height()); }

// The dotted rectangle of the focused item.
void DrawFocusRect(QPainter& p, const QRect& r) {
  QPen pen(Sys(clWindowText));
  pen.setStyle(Qt::DotLine);
  p.save();
  p.setPen(pen);
  p.setBrush(Qt::NoBrush);
  p.drawRect(r.adjusted(0, 0, -1, -1));
  p.restore();
}

}  // namespace

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
    if (selected && focused && !Designing()) DrawFocusRect(painter, area.adjusted(2, 2, -2, -2));
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

// ---------------------------------------------------------------------------------------
// TStatusPanel, TStatusPanels

LUMORA_CLASS_IMPL(TStatusPanel) {
  c.Property("Alignment", &TStatusPanel::Alignment, &TStatusPanel::SetAlignment).Default(taLeftJustify);
  c.Property("Bevel", &TStatusPanel::Bevel, &TStatusPanel::SetBevel).Default(pbLowered);
  c.Property("BiDiMode", &TStatusPanel::BiDiMode, &TStatusPanel::SetBiDiMode).Stored(&TStatusPanel::IsBiDiModeStored);
  c.Property("ParentBiDiMode", &TStatusPanel::ParentBiDiMode, &TStatusPanel::SetParentBiDiMode).Default(true);
  c.Property("Style", &TStatusPanel::Style, &TStatusPanel::SetStyle).Default(psText);
  c.Property("Text", &TStatusPanel::Text, &TStatusPanel::SetText);
  c.Property("Width", &TStatusPanel::Width, &TStatusPanel::SetWidth);
}

// The panel joins its collection once its own fields exist: joining repaints the bar.
TStatusPanel::TStatusPanel(TCollection* collection) : TCollectionItem(nullptr) { SetCollection(collection); }

void TStatusPanel::Assign(TPersistent* source) {
  if (auto* p = dynamic_cast<TStatusPanel*>(source)) {
    FAlignment = p->FAlignment;
    FBevel = p->FBevel;
    FBiDiMode = p->FBiDiMode;
    FParentBiDiMode = p->FParentBiDiMode;
    FStyle = p->FStyle;
    FText = p->FText;
    FWidth = p->FWidth;
    Changed(false);
    return;
  }
  TCollectionItem::Assign(source);
}

std::string TStatusPanel::GetDisplayName() const {
  return FText.empty() ? TCollectionItem::GetDisplayName() : FText;
}

void TStatusPanel::SetAlignment(TAlignment value) {
  if (FAlignment == value) return;
  FAlignment = value;
  Changed(false);
}

void TStatusPanel::SetBevel(TStatusPanelBevel value) {
  if (FBevel == value) return;
  FBevel = value;
  Changed(false);
}

void TStatusPanel::SetBiDiMode(TBiDiMode value) {
  FBiDiMode = value;
  FParentBiDiMode = false;
  Changed(false);
}

void TStatusPanel::SetParentBiDiMode(bool value) {
  FParentBiDiMode = value;
  Changed(false);
}

void TStatusPanel::SetStyle(TStatusPanelStyle value) {
  if (FStyle == value) return;
  FStyle = value;
  Changed(false);
}

void TStatusPanel::SetText(const std::string& value) {
  if (FText == value) return;
  FText = value;
  Changed(false);
}

void TStatusPanel::SetWidth(int value) {
  if (FWidth == value) return;
  FWidth = value;
  Changed(true);
}

LUMORA_CLASS_IMPL(TStatusPanels) {}

TStatusPanels::TStatusPanels(TStatusBar* statusBar) : TCollection(TStatusPanel::StaticClass()), FStatusBar(statusBar) {}

TPersistent* TStatusPanels::GetOwner() { return FStatusBar; }

void TStatusPanels::Update(TCollectionItem*) { FStatusBar->PanelsChanged(); }

// ---------------------------------------------------------------------------------------
// TStatusBar

LUMORA_CLASS_IMPL(TStatusBar) {
  PublishControlProperties(c, {"Action"});
  c.Property("AutoHint", &TStatusBar::AutoHint, &TStatusBar::SetAutoHint).Default(false);
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode", "BorderWidth", "Color", "DragCursor", "DragKind",
                               "DragMode", "Enabled", "Font", "Constraints"});
  c.Property("Panels", &TStatusBar::Panels, &TStatusBar::SetPanels);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentFont", "ParentShowHint", "PopupMenu",
                               "ShowHint"});
  c.Property("SimplePanel", &TStatusBar::SimplePanel, &TStatusBar::SetSimplePanel).NoDefault();
  c.Property("SimpleText", &TStatusBar::SimpleText, &TStatusBar::SetSimpleText);
  c.Property("SizeGrip", &TStatusBar::SizeGrip, &TStatusBar::SetSizeGrip).Default(true);
  c.Property("UseSystemFont", &TStatusBar::UseSystemFont, &TStatusBar::SetUseSystemFont).Default(true);
  PublishControlProperties(c, {"Visible", "OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDock",
                               "OnEndDrag"});
  c.Property("OnHint", &TStatusBar::OnHint, &TStatusBar::OnHint);
  PublishControlProperties(c, {"OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("OnDrawPanel", &TStatusBar::OnDrawPanel, &TStatusBar::OnDrawPanel);
  PublishControlProperties(c, {"OnResize", "OnStartDock", "OnStartDrag"});
  c.Property("Align").Default(alBottom);
  c.Property("Color").Default(clBtnFace);
  c.Property("ParentColor").Default(false);
}

TStatusBar::TStatusBar(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csCaptureMouse, csClickEvents, csDoubleClicks, csOpaque};
  FWidth = 150;
  FHeight = 19;
  FAlign = alBottom;
  FColor = clBtnFace;
  FParentColor = false;
  FPanels = new TStatusPanels(this);
}

TStatusBar::~TStatusBar() {
  DestroyWidget();
  delete FPanels;
  FPanels = nullptr;
}

void TStatusBar::CreateWidget() { AdoptWidget(new TPaintedWidget(this, true)); }

void TStatusBar::PanelsChanged() {
  if (FPanels) Invalidate();
}

void TStatusBar::SetSimplePanel(bool value) {
  if (FSimplePanel == value) return;
  FSimplePanel = value;
  Invalidate();
}

void TStatusBar::SetSimpleText(const std::string& value) {
  if (FSimpleText == value) return;
  FSimpleText = value;
  Invalidate();
}

void TStatusBar::SetSizeGrip(bool value) {
  if (FSizeGrip == value) return;
  FSizeGrip = value;
  Invalidate();
}

bool TStatusBar::GripShowing() const {
  if (!FSizeGrip) return false;
  auto* form = dynamic_cast<TCustomForm*>(FParent);
  if (!form) return false;
  const TFormBorderStyle style = form->BorderStyle();
  return style == bsSizeable || style == bsSizeToolWin;
}

TRect TStatusBar::PanelRect(int index) const {
  const int count = FPanels->Count();
  if (index < 0 || index >= count) return TRect{};
  int left = 0;
  for (int i = 0; i < index; ++i) left += FPanels->Items(i)->Width();
  // Panels are two pixels apart; the last one reaches the end of the bar.
  const int start = index == 0 ? 0 : left + 2;
  const int right = index == count - 1 ? FWidth : left + FPanels->Items(index)->Width();
  return Rect(start, 2, std::max(start, right), FHeight);
}

void TStatusBar::Paint(QPainter& painter) {
  painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor));
  const QColor text = Sys(FFont->Color());
  const QColor hi = Sys(clBtnHighlight);
  const QColor shadow = Sys(clBtnShadow);
  const bool grip = GripShowing();
  auto drawPanel = [&](QRect r, TStatusPanelBevel bevel, const std::string& s, TAlignment alignment) {
    if (bevel != pbNone) {
      QRect edge = r;
      if (bevel == pbLowered) {
        Frame3D(painter, edge, shadow, hi);
      } else {
        Frame3D(painter, edge, hi, shadow);
      }
    }
    TCaptionLayout layout;
    layout.HAlign = alignment == taCenter ? TTextHAlign::Center
                    : alignment == taRightJustify ? TTextHAlign::Right
                                                  : TTextHAlign::Left;
    layout.VAlign = TTextVAlign::Center;
    layout.ShowAccelChar = false;
    painter.save();
    const QRect area = r.adjusted(3, 1, -3, -1);
    painter.setClipRect(area);
    DrawCaption(painter, area, FFont->Handle(), FFont->ToUnicode(s), layout, text);
    painter.restore();
  };
  if (FSimplePanel) {
    drawPanel(QRect(0, 2, FWidth, FHeight - 2), pbLowered, FSimpleText, taLeftJustify);
  } else {
    for (int i = 0; i < FPanels->Count(); ++i) {
      TStatusPanel* panel = FPanels->Items(i);
      QRect r = ToQRect(PanelRect(i));
      if (grip && i == FPanels->Count() - 1) r.setRight(std::max(r.left(), FWidth - 1));
      if (panel->Style() == psOwnerDraw) {
        if (OnDrawPanel) OnDrawPanel(this, panel, PanelRect(i));
        continue;
      }
      drawPanel(r, panel->Bevel(), panel->Text(), panel->Alignment());
    }
  }
  if (grip) {
    // Three pairs of diagonal lines in the corner.
    const int right = FWidth - 1;
    const int bottom = FHeight - 1;
    painter.save();
    for (int k = 0; k < 3; ++k) {
      const int d = 4 * k;
      painter.setPen(hi);
      painter.drawLine(right - 11 + d, bottom, right, bottom - 11 + d);
      painter.setPen(shadow);
      painter.drawLine(right - 10 + d, bottom, right, bottom - 10 + d);
      painter.drawLine(right - 9 + d, bottom, right, bottom - 9 + d);
    }
    painter.restore();
  }
}

// ---------------------------------------------------------------------------------------
// Tree views: the widget

namespace {

// Nodes nest at most this deep in a stream; deeper data is taken as damaged.
constexpr int MaxNodeNesting = 1000;

TTreeNode* NodeFromItem(const QTreeWidgetItem* item) {
  return item ? static_cast<TTreeNode*>(item->data(0, Qt::UserRole).value<void*>()) : nullptr;
}

// Paints a row of a tree view as the classic control does: images, then the text with
// the selection drawn behind the text only.
class TTreeItemDelegate : public QStyledItemDelegate {
public:
  TTreeItemDelegate(TCustomTreeView* tree, QObject* parent) : QStyledItemDelegate(parent), FTree(tree) {}
  void Detach() { FTree = nullptr; }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    if (!FTree) return QStyledItemDelegate::sizeHint(option, index);
    const QFontMetrics fm(option.font);
    int height = fm.height() + 3;
    int width = fm.horizontalAdvance(index.data(Qt::DisplayRole).toString()) + 4;
    if (TCustomImageList* images = FTree->StateImages()) {
      height = std::max(height, images->Height());
      width += images->Width();
    }
    if (TCustomImageList* images = FTree->Images()) {
      height = std::max(height, images->Height());
      width += images->Width() + 1;
    }
    return QSize(width, height);
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    if (!FTree) return;
    auto* item = static_cast<QTreeWidgetItem*>(index.internalPointer());
    TTreeNode* node = item ? NodeFromItem(item) : nullptr;
    if (!node) return;
    const QRect r = option.rect;
    const bool selected = option.state & QStyle::State_Selected;
    const bool active = option.state & QStyle::State_Active && option.state & QStyle::State_HasFocus;
    const bool focusedView = FTree->TreeWidget() && FTree->TreeWidget()->hasFocus();
    int x = r.left();
    if (TCustomImageList* images = FTree->StateImages(); images && node->StateIndex() > 0) {
      images->Draw(*painter, x, r.top() + (r.height() - images->Height()) / 2, node->StateIndex(), FTree->Enabled());
      x += images->Width();
    }
    if (TCustomImageList* images = FTree->Images()) {
      const int image = selected ? node->SelectedIndex() : node->ImageIndex();
      if (image >= 0 && image < images->Count()) {
        images->Draw(*painter, x, r.top() + (r.height() - images->Height()) / 2, image, FTree->Enabled());
      }
      x += images->Width() + 1;
    }
    const QString text = index.data(Qt::DisplayRole).toString();
    const QFontMetrics fm(option.font);
    QRect textRect(x, r.top(), fm.horizontalAdvance(text) + 4, r.height());
    if (FTree->RowSelect()) textRect.setRight(r.right());
    QColor color = ColorToQColor(FTree->Font()->Color());
    if (!FTree->Enabled()) color = ColorToQColor(clGrayText);
    const bool showSelection = selected && (focusedView || !FTree->HideSelection());
    if (showSelection) {
      painter->fillRect(textRect, ColorToQColor(focusedView ? clHighlight : clBtnFace));
      color = ColorToQColor(focusedView ? clHighlightText : clBtnText);
    }
    painter->save();
    painter->setFont(option.font);
    painter->setPen(color);
    painter->drawText(textRect.adjusted(2, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    painter->restore();
    if (selected && focusedView && option.state & QStyle::State_HasFocus) DrawFocusRect(*painter, textRect);
    (void)active;
  }

private:
  TCustomTreeView* FTree;
};

// The tree widget of a tree view: dotted lines and plus/minus boxes in the classic manner,
// and label editing only when the control allows it.
class TClassicTreeWidget : public QTreeWidget {
public:
  explicit TClassicTreeWidget(TCustomTreeView* tree) : FTree(tree) {}
  void Detach() {
    FTree = nullptr;
    if (auto* d = dynamic_cast<TTreeItemDelegate*>(itemDelegate())) d->Detach();
  }
  bool Editing() const { return state() == QAbstractItemView::EditingState; }

protected:
  void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override {
    if (!FTree) return;
    const int indent = indentation();
    int depth = 0;
    for (QModelIndex i = index.parent(); i.isValid(); i = i.parent()) ++depth;
    const bool root = rootIsDecorated();
    const int columns = depth + (root ? 1 : 0);
    const int left = rect.right() + 1 - columns * indent;
    const int midY = rect.top() + rect.height() / 2;
    const QColor line = ColorToQColor(clBtnShadow);
    painter->save();
    painter->fillRect(rect, palette().color(QPalette::Base));
    auto dotV = [&](int x, int y0, int y1) {
      for (int y = y0; y < y1; ++y) {
        if (((x + y) & 1) == 0) painter->fillRect(QRect(x, y, 1, 1), line);
      }
    };
    auto dotH = [&](int x0, int x1, int y) {
      for (int x = x0; x < x1; ++x) {
        if (((x + y) & 1) == 0) painter->fillRect(QRect(x, y, 1, 1), line);
      }
    };
    // Ancestors: a line through the row where an ancestor has a sibling below.
    QModelIndex node = index;
    for (int level = depth; level >= 0; --level) {
      const int column = root ? level : level - 1;
      if (column < 0) break;
      const int cx = left + column * indent + indent / 2;
      const bool hasNext = node.sibling(node.row() + 1, 0).isValid();
      if (level == depth) {
        if (FTree->ShowLines()) {
          const bool first = !node.parent().isValid() && node.row() == 0;
          dotV(cx, first ? midY : rect.top(), hasNext ? rect.bottom() + 1 : midY + 1);
          dotH(cx, left + (column + 1) * indent, midY);
        }
        if (FTree->ShowButtons() && model()->hasChildren(node)) {
          const QRect box(cx - 4, midY - 4, 9, 9);
          painter->fillRect(box, ColorToQColor(clWindow));
          painter->setPen(line);
          painter->drawRect(box.adjusted(0, 0, -1, -1));
          painter->setPen(ColorToQColor(clWindowText));
          painter->drawLine(cx - 2, midY, cx + 2, midY);
          if (!isExpanded(node)) painter->drawLine(cx, midY - 2, cx, midY + 2);
        }
      } else if (FTree->ShowLines() && hasNext) {
        dotV(cx, rect.top(), rect.bottom() + 1);
      }
      node = node.parent();
    }
    painter->restore();
  }

  bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override {
    if (!FTree || trigger == QAbstractItemView::NoEditTriggers) return QTreeWidget::edit(index, trigger, event);
    if (trigger != QAbstractItemView::AllEditTriggers && !(editTriggers() & trigger)) return false;
    TTreeNode* node = NodeFromItem(itemFromIndex(index));
    if (!node || !node->EditText()) return false;
    return QTreeWidget::edit(index, trigger, event);
  }

private:
  TCustomTreeView* FTree;
};

}  // namespace

// ---------------------------------------------------------------------------------------
// TTreeNode

LUMORA_CLASS_IMPL(TTreeNode) {}

TTreeNode::TTreeNode(TTreeNodes* owner) : FOwner(owner) {}

TTreeNode::~TTreeNode() {
  TCustomTreeView* tree = TreeView();
  // The children's widget items go with this node's item.
  for (TTreeNode* child : FChildren) {
    child->FItem = nullptr;
    delete child;
  }
  FChildren.clear();
  if (FItem && tree && tree->ItemsValid()) {
    const bool was = tree->FSyncing;
    tree->FSyncing = true;
    delete FItem;
    tree->FSyncing = was;
  }
  FItem = nullptr;
}

TCustomTreeView* TTreeNode::TreeView() const { return FOwner ? FOwner->Owner() : nullptr; }

QTreeWidgetItem* TTreeNode::WidgetItem() const {
  TCustomTreeView* tree = TreeView();
  return tree && tree->ItemsValid() ? FItem : nullptr;
}

TTreeNode* TTreeNode::Item(int index) const {
  if (index < 0 || index >= Count()) throw EListError(Format("List index out of bounds (%d)", index));
  return FChildren[index];
}

int TTreeNode::Index() const {
  const std::vector<TTreeNode*>& siblings = FParent ? FParent->FChildren : FOwner->FRoots;
  const auto it = std::find(siblings.begin(), siblings.end(), this);
  return it == siblings.end() ? -1 : static_cast<int>(it - siblings.begin());
}

int TTreeNode::AbsoluteIndex() const {
  int index = 0;
  for (const TTreeNode* n = GetPrev(); n; n = n->GetPrev()) ++index;
  return index;
}

int TTreeNode::Level() const {
  int level = 0;
  for (const TTreeNode* p = FParent; p; p = p->FParent) ++level;
  return level;
}

void TTreeNode::SetHasChildren(bool value) {
  FHasChildren = value;
  if (TCustomTreeView* tree = TreeView()) tree->NodeChanged(this);
}

void TTreeNode::SetText(const std::string& value) {
  if (FText == value) return;
  FText = value;
  TCustomTreeView* tree = TreeView();
  if (!tree) return;
  tree->NodeChanged(this);
  if (tree->SortType() == stText || tree->SortType() == stBoth) {
    // The node takes its sorted place among its siblings.
    std::vector<TTreeNode*>& siblings = FOwner->Siblings(FParent);
    siblings.erase(std::find(siblings.begin(), siblings.end(), this));
    const int index = FOwner->SortedIndex(FParent, FText);
    siblings.insert(siblings.begin() + index, this);
    if (QTreeWidgetItem* item = WidgetItem()) {
      const bool was = tree->FSyncing;
      tree->FSyncing = true;
      const bool expanded = item->isExpanded();
      QTreeWidgetItem* parentItem = item->parent();
      QTreeWidget* widget = tree->TreeWidget();
      if (parentItem) {
        parentItem->takeChild(parentItem->indexOfChild(item));
        parentItem->insertChild(index, item);
      } else {
        widget->takeTopLevelItem(widget->indexOfTopLevelItem(item));
        widget->insertTopLevelItem(index, item);
      }
      item->setExpanded(expanded);
      if (tree->Selected() == this) widget->setCurrentItem(item);
      tree->FSyncing = was;
    }
  }
}

void TTreeNode::SetImageIndex(int value) {
  FImageIndex = value;
  if (TCustomTreeView* tree = TreeView()) tree->NodeChanged(this);
}

void TTreeNode::SetSelectedIndex(int value) {
  FSelectedIndex = value;
  if (TCustomTreeView* tree = TreeView()) tree->NodeChanged(this);
}

void TTreeNode::SetStateIndex(int value) {
  FStateIndex = value;
  if (TCustomTreeView* tree = TreeView()) tree->NodeChanged(this);
}

void TTreeNode::SetExpanded(bool value) {
  if (value) {
    Expand(false);
  } else {
    Collapse(false);
  }
}

void TTreeNode::Expand(bool recurse) {
  TCustomTreeView* tree = TreeView();
  if (!FExpanded && HasChildren() && (!tree || tree->CanExpand(this))) {
    FExpanded = true;
    if (tree) {
      if (QTreeWidgetItem* item = WidgetItem()) {
        const bool was = tree->FSyncing;
        tree->FSyncing = true;
        item->setExpanded(true);
        tree->FSyncing = was;
      }
      tree->Expand(this);
    }
  }
  if (recurse) {
    for (TTreeNode* child : FChildren) child->Expand(true);
  }
}

void TTreeNode::Collapse(bool recurse) {
  TCustomTreeView* tree = TreeView();
  if (FExpanded && (!tree || tree->CanCollapse(this))) {
    FExpanded = false;
    if (tree) {
      if (QTreeWidgetItem* item = WidgetItem()) {
        const bool was = tree->FSyncing;
        tree->FSyncing = true;
        item->setExpanded(false);
        tree->FSyncing = was;
      }
      tree->Collapse(this);
    }
  }
  if (recurse) {
    for (TTreeNode* child : FChildren) child->Collapse(true);
  }
}

bool TTreeNode::Selected() const {
  TCustomTreeView* tree = TreeView();
  return tree && tree->Selected() == this;
}

void TTreeNode::SetSelected(bool value) {
  TCustomTreeView* tree = TreeView();
  if (!tree) return;
  if (value) {
    tree->SetSelected(this);
  } else if (tree->Selected() == this) {
    tree->SetSelected(nullptr);
  }
}

bool TTreeNode::IsVisible() const {
  for (const TTreeNode* p = FParent; p; p = p->FParent) {
    if (!p->FExpanded) return false;
  }
  return true;
}

void TTreeNode::MakeVisible() {
  for (TTreeNode* p = FParent; p; p = p->FParent) p->Expand(false);
  if (QTreeWidgetItem* item = WidgetItem()) TreeView()->TreeWidget()->scrollToItem(item);
}

TRect TTreeNode::DisplayRect(bool textOnly) const {
  QTreeWidgetItem* item = WidgetItem();
  if (!item || !IsVisible()) return TRect{};
  QTreeWidget* widget = TreeView()->TreeWidget();
  QRect r = widget->visualItemRect(item);
  if (textOnly) {
    const QFontMetrics fm(widget->font());
    int x = r.left();
    if (TCustomImageList* images = TreeView()->StateImages(); images && FStateIndex > 0) x += images->Width();
    if (TCustomImageList* images = TreeView()->Images()) x += images->Width() + 1;
    r = QRect(x, r.top(), fm.horizontalAdvance(item->text(0)) + 4, r.height());
  }
  return Rect(r.left(), r.top(), r.left() + r.width(), r.top() + r.height());
}

TTreeNode* TTreeNode::GetNextSibling() const {
  const std::vector<TTreeNode*>& siblings = FParent ? FParent->FChildren : FOwner->FRoots;
  const int index = Index();
  return index >= 0 && index + 1 < static_cast<int>(siblings.size()) ? siblings[index + 1] : nullptr;
}

TTreeNode* TTreeNode::GetPrevSibling() const {
  const std::vector<TTreeNode*>& siblings = FParent ? FParent->FChildren : FOwner->FRoots;
  const int index = Index();
  return index > 0 ? siblings[index - 1] : nullptr;
}

TTreeNode* TTreeNode::GetNext() const {
  if (!FChildren.empty()) return FChildren.front();
  for (const TTreeNode* n = this; n; n = n->FParent) {
    if (TTreeNode* next = n->GetNextSibling()) return next;
  }
  return nullptr;
}

TTreeNode* TTreeNode::GetPrev() const {
  TTreeNode* prev = GetPrevSibling();
  if (!prev) return FParent;
  while (!prev->FChildren.empty()) prev = prev->FChildren.back();
  return prev;
}

TTreeNode* TTreeNode::GetNextVisible() const {
  if (!IsVisible()) return nullptr;
  if (FExpanded && !FChildren.empty()) return FChildren.front();
  for (const TTreeNode* n = this; n; n = n->FParent) {
    if (TTreeNode* next = n->GetNextSibling()) return next;
  }
  return nullptr;
}

bool TTreeNode::HasAsParent(const TTreeNode* node) const {
  if (!node) return false;
  for (const TTreeNode* p = FParent; p; p = p->FParent) {
    if (p == node) return true;
  }
  return false;
}

void TTreeNode::Delete() { FOwner->Delete(this); }

void TTreeNode::DeleteChildren() {
  while (!FChildren.empty()) FOwner->Delete(FChildren.back());
}

void TTreeNode::MoveTo(TTreeNode* destination, TNodeAttachMode mode) {
  if (destination == this || (destination && destination->HasAsParent(this))) return;
  TTreeNode* parent = nullptr;
  int index = 0;
  switch (mode) {
    case naAdd:
      parent = destination ? destination->FParent : nullptr;
      index = -1;
      break;
    case naAddFirst:
      parent = destination ? destination->FParent : nullptr;
      index = 0;
      break;
    case naAddChild:
      parent = destination;
      index = -1;
      break;
    case naAddChildFirst:
      parent = destination;
      index = 0;
      break;
    case naInsert:
      parent = destination ? destination->FParent : nullptr;
      index = destination ? destination->Index() : -1;
      break;
  }
  TCustomTreeView* tree = TreeView();
  const bool selected = tree && tree->Selected() == this;
  FOwner->Unlink(this);
  if (index < 0 || index > static_cast<int>(FOwner->Siblings(parent).size())) {
    index = static_cast<int>(FOwner->Siblings(parent).size());
  } else if (mode == naInsert && destination) {
    index = destination->Index();
  }
  FOwner->Link(this, parent, index);
  if (tree && selected && tree->TreeWidget() && WidgetItem()) {
    const bool was = tree->FSyncing;
    tree->FSyncing = true;
    tree->TreeWidget()->setCurrentItem(FItem);
    tree->FSyncing = was;
  }
}

bool TTreeNode::EditText() {
  TCustomTreeView* tree = TreeView();
  if (!tree || tree->ReadOnly() || !tree->CanEdit(this)) return false;
  return true;
}

void TTreeNode::Assign(TPersistent* source) {
  if (auto* node = dynamic_cast<TTreeNode*>(source)) {
    SetText(node->FText);
    FData = node->FData;
    FImageIndex = node->FImageIndex;
    FSelectedIndex = node->FSelectedIndex;
    FStateIndex = node->FStateIndex;
    FOverlayIndex = node->FOverlayIndex;
    FHasChildren = node->FHasChildren;
    if (TCustomTreeView* tree = TreeView()) tree->NodeChanged(this);
    return;
  }
  TPersistent::Assign(source);
}

// ---------------------------------------------------------------------------------------
// TTreeNodes

LUMORA_CLASS_IMPL(TTreeNodes) {}

TTreeNodes::TTreeNodes(TCustomTreeView* owner) : FOwner(owner) {}

TTreeNodes::~TTreeNodes() {
  for (TTreeNode* node : FRoots) {
    node->FItem = nullptr;
    delete node;
  }
  FRoots.clear();
}

TPersistent* TTreeNodes::GetOwner() { return FOwner; }

TTreeNode* TTreeNodes::Item(int index) const {
  if (index < 0 || index >= FCount) throw EListError(Format("List index out of bounds (%d)", index));
  TTreeNode* node = GetFirstNode();
  for (int i = 0; i < index && node; ++i) node = node->GetNext();
  return node;
}

namespace {
int SubtreeSize(const TTreeNode* node) {
  int n = 0;
  std::vector<const TTreeNode*> stack{node};
  while (!stack.empty()) {
    const TTreeNode* t = stack.back();
    stack.pop_back();
    ++n;
    for (int i = 0; i < t->Count(); ++i) stack.push_back(t->Item(i));
  }
  return n;
}
}  // namespace

void TTreeNodes::Unlink(TTreeNode* node) {
  if (FOwner) FOwner->NodeRemoving(node);
  std::vector<TTreeNode*>& siblings = Siblings(node->FParent);
  const auto it = std::find(siblings.begin(), siblings.end(), node);
  if (it != siblings.end()) siblings.erase(it);
  FCount -= SubtreeSize(node);
  TTreeNode* parent = node->FParent;
  node->FParent = nullptr;
  if (parent && parent->FChildren.empty()) {
    parent->FExpanded = false;
    if (FOwner) FOwner->NodeChanged(parent);
  }
}

void TTreeNodes::Link(TTreeNode* node, TTreeNode* parent, int index) {
  std::vector<TTreeNode*>& siblings = Siblings(parent);
  index = std::clamp(index, 0, static_cast<int>(siblings.size()));
  siblings.insert(siblings.begin() + index, node);
  node->FParent = parent;
  FCount += SubtreeSize(node);
  if (FOwner) FOwner->NodeAdded(node);
}

int TTreeNodes::SortedIndex(TTreeNode* parent, const std::string& s) const {
  const std::vector<TTreeNode*>& siblings = parent ? parent->FChildren : FRoots;
  int index = 0;
  while (index < static_cast<int>(siblings.size()) && CompareText(siblings[index]->FText, s) <= 0) ++index;
  return index;
}

TTreeNode* TTreeNodes::InsertNode(TTreeNode* parent, int index, const std::string& s, void* data) {
  auto* node = new TTreeNode(this);
  node->FText = s;
  node->FData = data;
  if (FOwner && (FOwner->SortType() == stText || FOwner->SortType() == stBoth)) index = SortedIndex(parent, s);
  Link(node, parent, index);
  return node;
}

TTreeNode* TTreeNodes::AddObject(TTreeNode* sibling, const std::string& s, void* data) {
  TTreeNode* parent = sibling ? sibling->FParent : nullptr;
  return InsertNode(parent, static_cast<int>(Siblings(parent).size()), s, data);
}

TTreeNode* TTreeNodes::AddObjectFirst(TTreeNode* sibling, const std::string& s, void* data) {
  return InsertNode(sibling ? sibling->FParent : nullptr, 0, s, data);
}

TTreeNode* TTreeNodes::AddChildObject(TTreeNode* parent, const std::string& s, void* data) {
  return InsertNode(parent, static_cast<int>(Siblings(parent).size()), s, data);
}

TTreeNode* TTreeNodes::AddChildObjectFirst(TTreeNode* parent, const std::string& s, void* data) {
  return InsertNode(parent, 0, s, data);
}

TTreeNode* TTreeNodes::InsertObject(TTreeNode* sibling, const std::string& s, void* data) {
  if (!sibling) return AddObject(nullptr, s, data);
  return InsertNode(sibling->FParent, sibling->Index(), s, data);
}

void TTreeNodes::Delete(TTreeNode* node) {
  if (!node || node->FOwner != this) return;
  TCustomTreeView* tree = FOwner;
  const bool destroying = !tree || tree->ComponentState().Contains(csDestroying);
  // The selection moves to a neighbour when its node goes.
  TTreeNode* selected = tree ? tree->FSelected : nullptr;
  TTreeNode* newSelection = selected;
  if (selected && (selected == node || selected->HasAsParent(node))) {
    newSelection = node->GetNextSibling();
    if (!newSelection) newSelection = node->GetPrevSibling();
    if (!newSelection) newSelection = node->FParent;
    tree->FSelected = nullptr;
  }
  if (tree && !destroying && tree->OnDeletion) {
    std::vector<TTreeNode*> doomed;
    std::vector<TTreeNode*> stack{node};
    while (!stack.empty()) {
      TTreeNode* t = stack.back();
      stack.pop_back();
      doomed.push_back(t);
      for (TTreeNode* c : t->FChildren) stack.push_back(c);
    }
    for (auto it = doomed.rbegin(); it != doomed.rend(); ++it) tree->Delete(*it);
  }
  Unlink(node);
  delete node;
  if (tree && !destroying && newSelection != selected) tree->SetSelected(newSelection);
}

void TTreeNodes::Clear() {
  if (FRoots.empty()) return;
  TCustomTreeView* tree = FOwner;
  const bool destroying = !tree || tree->ComponentState().Contains(csDestroying);
  const bool hadSelection = tree && tree->FSelected;
  if (tree) tree->FSelected = nullptr;
  if (tree && !destroying && tree->OnDeletion) {
    for (TTreeNode* n = GetFirstNode(); n; n = n->GetNext()) tree->Delete(n);
  }
  // The widget drops all its items at once; the nodes forget theirs.
  if (tree && tree->ItemsValid()) {
    const bool was = tree->FSyncing;
    tree->FSyncing = true;
    tree->TreeWidget()->clear();
    tree->FSyncing = was;
  }
  std::vector<TTreeNode*> roots;
  roots.swap(FRoots);
  FCount = 0;
  for (TTreeNode* node : roots) {
    node->FItem = nullptr;
    delete node;
  }
  if (hadSelection && !destroying && tree->OnChange) tree->OnChange(tree, nullptr);
}

void TTreeNodes::BeginUpdate() {
  if (FUpdateCount++ == 0 && FOwner && FOwner->TreeWidget()) FOwner->TreeWidget()->setUpdatesEnabled(false);
}

void TTreeNodes::EndUpdate() {
  if (FUpdateCount == 0) return;
  if (--FUpdateCount == 0 && FOwner && FOwner->TreeWidget()) FOwner->TreeWidget()->setUpdatesEnabled(true);
}

void TTreeNodes::Assign(TPersistent* source) {
  if (auto* nodes = dynamic_cast<TTreeNodes*>(source)) {
    TMemoryStream stream;
    nodes->WriteData(stream);
    stream.SetPosition(0);
    ReadData(stream);
    return;
  }
  TPersistent::Assign(source);
}

void TTreeNodes::DefineProperties(TFiler& filer) {
  TPersistent::DefineProperties(filer);
  filer.DefineBinaryProperty(
      "Data", [this](TStream& s) { ReadData(s); }, [this](TStream& s) { WriteData(s); }, FCount > 0);
}

namespace {

std::int32_t GetInt32(const std::string& data, std::size_t& pos) {
  if (data.size() - pos < 4) throw EReadError(RtlConsts::SReadError);
  std::uint32_t v = 0;
  for (int i = 3; i >= 0; --i) v = (v << 8) | static_cast<unsigned char>(data[pos + i]);
  pos += 4;
  return static_cast<std::int32_t>(v);
}

void PutInt32(std::string& out, std::int32_t value) {
  const auto v = static_cast<std::uint32_t>(value);
  for (int i = 0; i < 4; ++i) out += static_cast<char>((v >> (8 * i)) & 0xFF);
}

// A short string (length byte and at most 255 bytes).
std::string GetShortString(const std::string& data, std::size_t& pos) {
  if (pos >= data.size()) throw EReadError(RtlConsts::SReadError);
  const std::size_t length = static_cast<unsigned char>(data[pos]);
  if (data.size() - pos - 1 < length) throw EReadError(RtlConsts::SReadError);
  std::string s = data.substr(pos + 1, length);
  pos += 1 + length;
  return s;
}

void PutShortString(std::string& out, const std::string& s) {
  const std::size_t length = std::min<std::size_t>(s.size(), 255);
  out += static_cast<char>(length);
  out.append(s, 0, length);
}

}  // namespace

void TTreeNodes::ReadData(TStream& stream) {
  // Each node: the size of its record, then image, selected image, state image, overlay,
  // data, number of children and the text as a short string; its children follow it.
  struct TParsed {
    int Parent;
    std::int32_t Image, Selected, State, Overlay, Data;
    std::string Text;
  };
  const std::string data = stream.ReadRest();
  std::size_t pos = 0;
  const std::int32_t rootCount = GetInt32(data, pos);
  if (rootCount < 0) throw EReadError(RtlConsts::SReadError);
  std::vector<TParsed> parsed;
  struct TLevel {
    int Parent;
    std::int32_t Left;
  };
  std::vector<TLevel> stack{{-1, rootCount}};
  while (!stack.empty()) {
    if (stack.back().Left == 0) {
      stack.pop_back();
      continue;
    }
    --stack.back().Left;
    const int parent = stack.back().Parent;
    const std::int32_t size = GetInt32(data, pos);
    // The record is at least six numbers and the text's length byte, at most 255 bytes more.
    if (size < 25 || size > 280 || data.size() - pos < static_cast<std::size_t>(size)) {
      throw EReadError(RtlConsts::SReadError);
    }
    const std::size_t end = pos + static_cast<std::size_t>(size);
    TParsed p;
    p.Parent = parent;
    p.Image = GetInt32(data, pos);
    p.Selected = GetInt32(data, pos);
    p.State = GetInt32(data, pos);
    p.Overlay = GetInt32(data, pos);
    p.Data = GetInt32(data, pos);
    const std::int32_t children = GetInt32(data, pos);
    p.Text = GetShortString(data, pos);
    if (pos > end) throw EReadError(RtlConsts::SReadError);
    pos = end;
    // Every child takes at least 29 bytes: a count beyond that is damage.
    if (children < 0 || static_cast<std::size_t>(children) > (data.size() - pos) / 29) {
      throw EReadError(RtlConsts::SReadError);
    }
    parsed.push_back(std::move(p));
    if (children > 0) {
      if (static_cast<int>(stack.size()) > MaxNodeNesting) throw EReadError(RtlConsts::SReadError);
      stack.push_back({static_cast<int>(parsed.size()) - 1, children});
    }
  }
  // Everything read: only now do the old nodes go.
  BeginUpdate();
  Clear();
  std::vector<TTreeNode*> made;
  made.reserve(parsed.size());
  const TSortType sort = FOwner ? FOwner->SortType() : stNone;
  if (FOwner) FOwner->FSortType = stNone;  // the stream's order stands
  for (const TParsed& p : parsed) {
    TTreeNode* parent = p.Parent >= 0 ? made[p.Parent] : nullptr;
    TTreeNode* node = InsertNode(parent, static_cast<int>(Siblings(parent).size()), p.Text,
                                 reinterpret_cast<void*>(static_cast<std::uintptr_t>(static_cast<std::uint32_t>(p.Data))));
    node->FImageIndex = p.Image;
    node->FSelectedIndex = p.Selected;
    node->FStateIndex = p.State;
    node->FOverlayIndex = p.Overlay;
    made.push_back(node);
  }
  if (FOwner) FOwner->FSortType = sort;
  if (FOwner) FOwner->RebuildItems();
  EndUpdate();
}

void TTreeNodes::WriteData(TStream& stream) const {
  std::string out;
  PutInt32(out, static_cast<std::int32_t>(FRoots.size()));
  std::vector<const TTreeNode*> stack(FRoots.rbegin(), FRoots.rend());
  while (!stack.empty()) {
    const TTreeNode* node = stack.back();
    stack.pop_back();
    const std::size_t length = std::min<std::size_t>(node->FText.size(), 255);
    PutInt32(out, static_cast<std::int32_t>(25 + length));
    PutInt32(out, node->FImageIndex);
    PutInt32(out, node->FSelectedIndex);
    PutInt32(out, node->FStateIndex);
    PutInt32(out, node->FOverlayIndex);
    PutInt32(out, static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(node->FData)));
    PutInt32(out, node->Count());
    PutShortString(out, node->FText);
    for (auto it = node->FChildren.rbegin(); it != node->FChildren.rend(); ++it) stack.push_back(*it);
  }
  stream.WriteBuffer(out);
}

// ---------------------------------------------------------------------------------------
// TCustomTreeView

LUMORA_CLASS_IMPL(TCustomTreeView) {}

TCustomTreeView::TCustomTreeView(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csCaptureMouse, csClickEvents, csDoubleClicks};
  FWidth = 121;
  FHeight = 97;
  FTabStop = true;
  FParentColor = false;
  FColor = clWindow;
  FTreeNodes = new TTreeNodes(this);
}

TCustomTreeView::~TCustomTreeView() {
  Destroying();
  if (auto* w = dynamic_cast<TClassicTreeWidget*>(Widget())) w->Detach();
  FSyncing = true;
  DestroyWidget();
  delete FTreeNodes;
  FTreeNodes = nullptr;
}

QTreeWidget* TCustomTreeView::TreeWidget() const { return qobject_cast<QTreeWidget*>(Widget()); }

TTreeNode* TCustomTreeView::NodeOfItem(QTreeWidgetItem* item) const { return NodeFromItem(item); }

void TCustomTreeView::CreateWidget() {
  auto* w = new TClassicTreeWidget(this);
  w->setFocusPolicy(Qt::StrongFocus);
  w->setHeaderHidden(true);
  w->setColumnCount(1);
  w->setUniformRowHeights(true);
  w->setSelectionMode(QAbstractItemView::SingleSelection);
  w->setExpandsOnDoubleClick(true);
  w->setItemDelegate(new TTreeItemDelegate(this, w));
  w->header()->setStretchLastSection(false);
  w->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  QObject::connect(w, &QTreeWidget::itemSelectionChanged, w, [this] {
    if (FSyncing) return;
    TMessageLoop::Instance().Guarded([&] {
      QTreeWidget* tw = TreeWidget();
      if (!tw) return;
      const QList<QTreeWidgetItem*> items = tw->selectedItems();
      TTreeNode* node = items.isEmpty() ? nullptr : NodeFromItem(items.front());
      if (node == FSelected) return;
      if (!CanChange(node)) {
        // Refused: the old selection comes back.
        FSyncing = true;
        QTreeWidgetItem* old = FSelected ? FSelected->WidgetItem() : nullptr;
        if (old) {
          tw->setCurrentItem(old);
        } else {
          tw->clearSelection();
        }
        FSyncing = false;
        return;
      }
      FSelected = node;
      Change(node);
    });
  });
  QObject::connect(w, &QTreeWidget::itemExpanded, w, [this](QTreeWidgetItem* item) {
    if (FSyncing) return;
    TMessageLoop::Instance().Guarded([&] {
      TTreeNode* node = NodeFromItem(item);
      if (!node || node->FExpanded) return;
      if (!CanExpand(node)) {
        FSyncing = true;
        item->setExpanded(false);
        FSyncing = false;
        return;
      }
      node->FExpanded = true;
      Expand(node);
    });
  });
  QObject::connect(w, &QTreeWidget::itemCollapsed, w, [this](QTreeWidgetItem* item) {
    if (FSyncing) return;
    TMessageLoop::Instance().Guarded([&] {
      TTreeNode* node = NodeFromItem(item);
      if (!node || !node->FExpanded) return;
      if (!CanCollapse(node)) {
        FSyncing = true;
        item->setExpanded(true);
        FSyncing = false;
        return;
      }
      node->FExpanded = false;
      Collapse(node);
    });
  });
  QObject::connect(w, &QTreeWidget::itemChanged, w, [this](QTreeWidgetItem* item, int) {
    if (FSyncing) return;
    TMessageLoop::Instance().Guarded([&] {
      TTreeNode* node = NodeFromItem(item);
      if (!node) return;
      std::string text = FFont->FromUnicode(item->text(0));
      if (text == node->FText) return;
      Edit(node, text);
    });
  });
  AdoptWidget(w);
  RebuildItems();
}

void TCustomTreeView::UpdateWidgetText() {
  QTreeWidget* w = TreeWidget();
  if (!w) return;
  w->setIndentation(FIndent);
  w->setRootIsDecorated(FShowRoot && (FShowLines || FShowButtons));
  w->setFrameShape(FBorderStyle == BorderStyleOf(bsSingle) ? QFrame::StyledPanel : QFrame::NoFrame);
  w->setEditTriggers(FReadOnly ? QAbstractItemView::NoEditTriggers
                               : QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
  w->setMouseTracking(FHotTrack);
  w->viewport()->update();
}

void TCustomTreeView::UpdateWidgetColors() {
  TWinControl::UpdateWidgetColors();
  if (QWidget* w = Widget()) w->update();
}

namespace {
QTreeWidgetItem* MakeItem(TCustomTreeView* tree, TTreeNode* node) {
  auto* item = new QTreeWidgetItem();
  item->setData(0, Qt::UserRole, QVariant::fromValue<void*>(node));
  item->setText(0, tree->Font()->ToUnicode(node->Text()));
  item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable);
  if (node->HasChildren() && node->Count() == 0) item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
  return item;
}
}  // namespace

void TCustomTreeView::RebuildItems() {
  QTreeWidget* w = TreeWidget();
  if (!w) return;
  const bool was = FSyncing;
  FSyncing = true;
  w->clear();
  FItemsWidget = w;
  // Items are made top-down, then expanded once they are in the widget.
  std::vector<TTreeNode*> expanded;
  std::vector<std::pair<TTreeNode*, QTreeWidgetItem*>> stack;
  for (auto it = FTreeNodes->FRoots.rbegin(); it != FTreeNodes->FRoots.rend(); ++it) stack.push_back({*it, nullptr});
  QList<QTreeWidgetItem*> tops;
  while (!stack.empty()) {
    auto [node, parentItem] = stack.back();
    stack.pop_back();
    QTreeWidgetItem* item = MakeItem(this, node);
    node->FItem = item;
    if (parentItem) {
      parentItem->addChild(item);
    } else {
      tops.push_back(item);
    }
    if (node->FExpanded) expanded.push_back(node);
    for (auto it = node->FChildren.rbegin(); it != node->FChildren.rend(); ++it) stack.push_back({*it, item});
  }
  w->addTopLevelItems(tops);
  for (TTreeNode* node : expanded) node->FItem->setExpanded(true);
  if (FSelected && FSelected->FItem) w->setCurrentItem(FSelected->FItem);
  FSyncing = was;
}

void TCustomTreeView::NodeAdded(TTreeNode* node) {
  if (!ItemsValid()) return;
  QTreeWidget* w = TreeWidget();
  if (!w) return;
  const bool was = FSyncing;
  FSyncing = true;
  std::vector<TTreeNode*> expanded;
  std::vector<std::pair<TTreeNode*, QTreeWidgetItem*>> stack{{node, nullptr}};
  while (!stack.empty()) {
    auto [n, parentItem] = stack.back();
    stack.pop_back();
    QTreeWidgetItem* item = MakeItem(this, n);
    n->FItem = item;
    if (parentItem) {
      parentItem->addChild(item);
    } else if (n->FParent && n->FParent->FItem) {
      // A node added last (the common case) needs no search for its place.
      QTreeWidgetItem* parentItem = n->FParent->FItem;
      parentItem->insertChild(n->FParent->FChildren.back() == n ? parentItem->childCount() : n->Index(), item);
      parentItem->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
    } else {
      w->insertTopLevelItem(FTreeNodes->FRoots.back() == n ? w->topLevelItemCount() : n->Index(), item);
    }
    if (n->FExpanded) expanded.push_back(n);
    for (auto it = n->FChildren.rbegin(); it != n->FChildren.rend(); ++it) stack.push_back({*it, item});
  }
  for (TTreeNode* n : expanded) n->FItem->setExpanded(true);
  if (node->FParent && node->FParent->FItem) node->FParent->FItem->setExpanded(node->FParent->FExpanded);
  FSyncing = was;
}

void TCustomTreeView::NodeChanged(TTreeNode* node) {
  QTreeWidgetItem* item = node->WidgetItem();
  if (!item) return;
  const bool was = FSyncing;
  FSyncing = true;
  item->setText(0, FFont->ToUnicode(node->FText));
  item->setChildIndicatorPolicy(node->HasChildren() && node->Count() == 0
                                    ? QTreeWidgetItem::ShowIndicator
                                    : QTreeWidgetItem::DontShowIndicatorWhenChildless);
  if (item->isExpanded() != node->FExpanded) item->setExpanded(node->FExpanded);
  FSyncing = was;
  if (QTreeWidget* w = TreeWidget()) w->viewport()->update();
}

void TCustomTreeView::NodeRemoving(TTreeNode* node) {
  QTreeWidgetItem* item = node->WidgetItem();
  if (!item) return;
  const bool was = FSyncing;
  FSyncing = true;
  // The item leaves the widget with its children; the nodes keep none.
  delete item;
  std::vector<TTreeNode*> stack{node};
  while (!stack.empty()) {
    TTreeNode* n = stack.back();
    stack.pop_back();
    n->FItem = nullptr;
    for (TTreeNode* c : n->FChildren) stack.push_back(c);
  }
  FSyncing = was;
}

void TCustomTreeView::SetSelected(TTreeNode* node) {
  if (node && node->FOwner != FTreeNodes) return;
  if (node == FSelected) return;
  if (!CanChange(node)) return;
  FSelected = node;
  if (QTreeWidget* w = TreeWidget()) {
    const bool was = FSyncing;
    FSyncing = true;
    if (node && node->WidgetItem()) {
      w->setCurrentItem(node->FItem);
    } else {
      w->setCurrentItem(nullptr);
    }
    FSyncing = was;
  }
  Change(node);
}

TTreeNode* TCustomTreeView::TopItem() const {
  QTreeWidget* w = TreeWidget();
  if (!w || !ItemsValid()) return FTreeNodes->GetFirstNode();
  return NodeFromItem(w->itemAt(1, 1));
}

TTreeNode* TCustomTreeView::GetNodeAt(int x, int y) const {
  QTreeWidget* w = TreeWidget();
  if (!w || !ItemsValid()) return nullptr;
  return NodeFromItem(w->itemAt(x, y));
}

void TCustomTreeView::FullExpand() {
  for (TTreeNode* node : FTreeNodes->FRoots) node->Expand(true);
}

void TCustomTreeView::FullCollapse() {
  for (TTreeNode* node : FTreeNodes->FRoots) node->Collapse(true);
}

bool TCustomTreeView::AlphaSort() {
  auto compare = [this](TTreeNode* a, TTreeNode* b) {
    if (OnCompare) {
      int result = 0;
      OnCompare(this, a, b, 0, result);
      return result < 0;
    }
    return CompareText(a->FText, b->FText) < 0;
  };
  std::vector<std::vector<TTreeNode*>*> lists{&FTreeNodes->FRoots};
  while (!lists.empty()) {
    std::vector<TTreeNode*>* list = lists.back();
    lists.pop_back();
    std::stable_sort(list->begin(), list->end(), compare);
    for (TTreeNode* n : *list) lists.push_back(&n->FChildren);
  }
  RebuildItems();
  return true;
}

bool TCustomTreeView::IsEditing() const {
  auto* w = dynamic_cast<TClassicTreeWidget*>(Widget());
  return w && w->Editing();
}

void TCustomTreeView::SetBorderStyle(TBorderStyle value) {
  FBorderStyle = value;
  UpdateWidgetText();
}

void TCustomTreeView::SetHideSelection(bool value) {
  FHideSelection = value;
  if (QWidget* w = Widget()) w->update();
}

void TCustomTreeView::SetImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FImages, value)) return;
  if (QTreeWidget* w = TreeWidget()) w->doItemsLayout();
}

void TCustomTreeView::SetStateImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FStateImages, value)) return;
  if (QTreeWidget* w = TreeWidget()) w->doItemsLayout();
}

void TCustomTreeView::Notification(TComponent* component, TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation != opRemove) return;
  // The same list may be both: forget it in both before laying out again.
  bool changed = false;
  if (component == FImages) FImages = nullptr, changed = true;
  if (component == FStateImages) FStateImages = nullptr, changed = true;
  if (QTreeWidget* w = TreeWidget(); w && changed) w->doItemsLayout();
}

void TCustomTreeView::SetIndent(int value) {
  FIndent = std::max(value, 0);
  UpdateWidgetText();
}

void TCustomTreeView::SetReadOnly(bool value) {
  FReadOnly = value;
  UpdateWidgetText();
}

void TCustomTreeView::SetRowSelect(bool value) {
  FRowSelect = value;
  if (QWidget* w = Widget()) w->update();
}

void TCustomTreeView::SetShowButtons(bool value) {
  FShowButtons = value;
  UpdateWidgetText();
}

void TCustomTreeView::SetShowLines(bool value) {
  FShowLines = value;
  UpdateWidgetText();
}

void TCustomTreeView::SetShowRoot(bool value) {
  FShowRoot = value;
  UpdateWidgetText();
}

void TCustomTreeView::SetSortType(TSortType value) {
  if (FSortType == value) return;
  FSortType = value;
  if ((value == stText || value == stBoth) && !Loading(this)) AlphaSort();
}

bool TCustomTreeView::WidgetEvent(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress && FRightClickSelect && !Designing()) {
    auto* e = static_cast<QMouseEvent*>(event);
    if (e->button() == Qt::RightButton && watched == (TreeWidget() ? TreeWidget()->viewport() : nullptr)) {
      if (TTreeNode* node = GetNodeAt(e->position().toPoint().x(), e->position().toPoint().y())) SetSelected(node);
    }
  }
  if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
    if (QTreeWidget* w = TreeWidget()) w->viewport()->update();
  }
  return TWinControl::WidgetEvent(watched, event);
}

bool TCustomTreeView::CanChange(TTreeNode* node) {
  bool allow = true;
  if (OnChanging && !Loading(this)) OnChanging(this, node, allow);
  return allow;
}

void TCustomTreeView::Change(TTreeNode* node) {
  if (OnChange && !Loading(this)) OnChange(this, node);
}

bool TCustomTreeView::CanExpand(TTreeNode* node) {
  bool allow = true;
  if (OnExpanding && !Loading(this)) OnExpanding(this, node, allow);
  return allow;
}

void TCustomTreeView::Expand(TTreeNode* node) {
  if (OnExpanded && !Loading(this)) OnExpanded(this, node);
}

bool TCustomTreeView::CanCollapse(TTreeNode* node) {
  bool allow = true;
  if (OnCollapsing && !Loading(this)) OnCollapsing(this, node, allow);
  return allow;
}

void TCustomTreeView::Collapse(TTreeNode* node) {
  if (OnCollapsed && !Loading(this)) OnCollapsed(this, node);
}

bool TCustomTreeView::CanEdit(TTreeNode* node) {
  bool allow = true;
  if (OnEditing) OnEditing(this, node, allow);
  return allow;
}

void TCustomTreeView::Edit(TTreeNode* node, const std::string& text) {
  std::string s = text;
  if (OnEdited) OnEdited(this, node, s);
  node->SetText(s);
}

void TCustomTreeView::Delete(TTreeNode* node) {
  if (OnDeletion) OnDeletion(this, node);
}

LUMORA_CLASS_IMPL(TTreeView) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("AutoExpand", &TTreeView::AutoExpand, &TTreeView::SetAutoExpand).Default(false);
  PublishControlProperties(c, {"BiDiMode"});
  c.Property("BorderStyle", &TTreeView::BorderStyle, &TTreeView::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"BorderWidth"});
  c.Property("ChangeDelay", &TTreeView::ChangeDelay, &TTreeView::SetChangeDelay).Default(0);
  PublishControlProperties(c, {"Color", "Ctl3D", "Constraints", "DragKind", "DragCursor", "DragMode", "Enabled",
                               "Font"});
  c.Property("HideSelection", &TTreeView::HideSelection, &TTreeView::SetHideSelection).Default(true);
  c.Property("HotTrack", &TTreeView::HotTrack, &TTreeView::SetHotTrack).Default(false);
  c.Property("Images", &TTreeView::Images, &TTreeView::SetImages);
  c.Property("Indent", &TTreeView::Indent, &TTreeView::SetIndent);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu"});
  c.Property("ReadOnly", &TTreeView::ReadOnly, &TTreeView::SetReadOnly).Default(false);
  c.Property("RightClickSelect", &TTreeView::RightClickSelect, &TTreeView::SetRightClickSelect).Default(false);
  c.Property("RowSelect", &TTreeView::RowSelect, &TTreeView::SetRowSelect).Default(false);
  c.Property("ShowButtons", &TTreeView::ShowButtons, &TTreeView::SetShowButtons).Default(true);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("ShowLines", &TTreeView::ShowLines, &TTreeView::SetShowLines).Default(true);
  c.Property("ShowRoot", &TTreeView::ShowRoot, &TTreeView::SetShowRoot).Default(true);
  c.Property("SortType", &TTreeView::SortType, &TTreeView::SetSortType).Default(stNone);
  c.Property("StateImages", &TTreeView::StateImages, &TTreeView::SetStateImages);
  PublishControlProperties(c, {"TabOrder", "TabStop"});
  c.Property("ToolTips", &TTreeView::ToolTips, &TTreeView::SetToolTips).Default(true);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnChange", &TTreeView::OnChange, &TTreeView::OnChange);
  c.Property("OnChanging", &TTreeView::OnChanging, &TTreeView::OnChanging);
  PublishControlProperties(c, {"OnClick"});
  c.Property("OnCollapsed", &TTreeView::OnCollapsed, &TTreeView::OnCollapsed);
  c.Property("OnCollapsing", &TTreeView::OnCollapsing, &TTreeView::OnCollapsing);
  c.Property("OnCompare", &TTreeView::OnCompare, &TTreeView::OnCompare);
  c.Property("OnCustomDraw", &TTreeView::OnCustomDraw, &TTreeView::OnCustomDraw);
  c.Property("OnCustomDrawItem", &TTreeView::OnCustomDrawItem, &TTreeView::OnCustomDrawItem);
  PublishControlProperties(c, {"OnDblClick"});
  c.Property("OnDeletion", &TTreeView::OnDeletion, &TTreeView::OnDeletion);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver"});
  c.Property("OnEdited", &TTreeView::OnEdited, &TTreeView::OnEdited);
  c.Property("OnEditing", &TTreeView::OnEditing, &TTreeView::OnEditing);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit"});
  c.Property("OnExpanding", &TTreeView::OnExpanding, &TTreeView::OnExpanding);
  c.Property("OnExpanded", &TTreeView::OnExpanded, &TTreeView::OnExpanded);
  c.Property("OnGetImageIndex", &TTreeView::OnGetImageIndex, &TTreeView::OnGetImageIndex);
  c.Property("OnGetSelectedIndex", &TTreeView::OnGetSelectedIndex, &TTreeView::OnGetSelectedIndex);
  PublishControlProperties(c, {"OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnStartDock", "OnStartDrag"});
  // The nodes come last: reading them may ask for the image events above.
  c.Property("Items", &TTreeView::Items, &TTreeView::SetItems);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

// ---------------------------------------------------------------------------------------
// Rich edits

// The lines of a rich edit: the paragraphs of its document. A trailing empty paragraph is
// not a line, so that lines added one by one each end with a line break.
class TRichEditStrings : public TStrings {
  LUMORA_CLASS(TRichEditStrings, TStrings)
public:
  explicit TRichEditStrings(TCustomRichEdit* richEdit) : FRichEdit(richEdit) {}

  void Insert(int index, const std::string& s) override {
    const int count = GetCount();
    if (index < 0 || index > count) Error("List index out of bounds (%d)", index);
    QTextDocument* doc = FRichEdit->Document();
    const QString text = FRichEdit->Font()->ToUnicode(s);
    if (index < count) {
      QTextCursor c(doc->findBlockByNumber(index));
      c.insertText(text);
      c.insertBlock();
      return;
    }
    QTextBlock last = doc->lastBlock();
    QTextCursor c(last);
    if (last.text().isEmpty()) {
      c.insertText(text);
      c.insertBlock();
    } else {
      c.movePosition(QTextCursor::End);
      c.insertBlock();
      c.insertText(text);
    }
  }

  void Delete(int index) override {
    const int count = GetCount();
    if (index < 0 || index >= count) Error("List index out of bounds (%d)", index);
    QTextDocument* doc = FRichEdit->Document();
    QTextBlock block = doc->findBlockByNumber(index);
    QTextCursor c(block);
    if (block.next().isValid()) {
      c.setPosition(block.next().position(), QTextCursor::KeepAnchor);
    } else if (block.previous().isValid()) {
      c.setPosition(block.previous().position() + block.previous().length() - 1);
      c.setPosition(block.position() + block.length() - 1, QTextCursor::KeepAnchor);
    } else {
      c.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    }
    c.removeSelectedText();
  }

  void Clear() override { FRichEdit->ReplaceText(QString()); }

  void AddStrings(TStrings* strings) override {
    if (!strings || strings->Count() == 0) return;
    QString text;
    for (int i = 0; i < strings->Count(); ++i) {
      text += FRichEdit->Font()->ToUnicode(strings->Strings(i));
      text += QLatin1Char('\n');
    }
    AppendText(text);
  }

  void Assign(TPersistent* source) override {
    if (auto* strings = dynamic_cast<TStrings*>(source)) {
      if (strings == this) return;
      QString text;
      for (int i = 0; i < strings->Count(); ++i) {
        text += FRichEdit->Font()->ToUnicode(strings->Strings(i));
        text += QLatin1Char('\n');
      }
      FRichEdit->ReplaceText(text);
      return;
    }
    TStrings::Assign(source);
  }

protected:
  std::string Get(int index) const override {
    if (index < 0 || index >= GetCount()) Error("List index out of bounds (%d)", index);
    return FRichEdit->Font()->FromUnicode(FRichEdit->Document()->findBlockByNumber(index).text());
  }

  int GetCount() const override {
    QTextDocument* doc = FRichEdit->Document();
    int count = doc->blockCount();
    if (doc->lastBlock().length() <= 1) --count;
    return std::max(count, 0);
  }

  void Put(int index, const std::string& s) override {
    if (index < 0 || index >= GetCount()) Error("List index out of bounds (%d)", index);
    QTextCursor c(FRichEdit->Document()->findBlockByNumber(index));
    c.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    c.insertText(FRichEdit->Font()->ToUnicode(s));
  }

  std::string GetTextStr() const override {
    std::string out;
    const int count = GetCount();
    QTextBlock block = FRichEdit->Document()->firstBlock();
    for (int i = 0; i < count && block.isValid(); ++i, block = block.next()) {
      out += FRichEdit->Font()->FromUnicode(block.text());
      out += "\r\n";
    }
    return out;
  }

  void SetTextStr(std::string_view text) override {
    QString s = FRichEdit->Font()->ToUnicode(text);
    s.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    s.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    FRichEdit->ReplaceText(s);
  }

  void SetUpdateState(bool updating) override {
    if (QTextEdit* e = FRichEdit->TextEdit()) e->setUpdatesEnabled(!updating);
  }

private:
  void AppendText(const QString& text) {
    QTextDocument* doc = FRichEdit->Document();
    QTextBlock last = doc->lastBlock();
    QTextCursor c(last);
    c.movePosition(QTextCursor::End);
    if (!last.text().isEmpty()) c.insertBlock();
    c.insertText(text.left(text.size() - 1));
    c.insertBlock();
  }

  TCustomRichEdit* FRichEdit;
};

LUMORA_CLASS_IMPL(TRichEditStrings) {}

namespace {

// Where the Windows name and height of a font are kept in a character format.
constexpr int FontNameProperty = QTextFormat::UserProperty + 1;
constexpr int FontHeightProperty = QTextFormat::UserProperty + 2;
constexpr int FontCharsetProperty = QTextFormat::UserProperty + 3;

int ScreenPixelsPerInch() { return 96; }

}  // namespace

// ---- TTextAttributes

LUMORA_CLASS_IMPL(TTextAttributes) {
  c.Property("Charset", &TTextAttributes::Charset, &TTextAttributes::SetCharset);
  c.Property("Color", &TTextAttributes::Color, &TTextAttributes::SetColor);
  c.Property("Name", &TTextAttributes::Name, &TTextAttributes::SetName);
  c.Property("Pitch", &TTextAttributes::Pitch, &TTextAttributes::SetPitch);
  c.Property("Size", &TTextAttributes::Size, &TTextAttributes::SetSize);
  c.Property("Style", &TTextAttributes::Style, &TTextAttributes::SetStyle);
  c.Property("Height", &TTextAttributes::Height, &TTextAttributes::SetHeight);
}

TTextAttributes::TTextAttributes(TCustomRichEdit* richEdit, TAttributeType type) : FRichEdit(richEdit), FType(type) {}

namespace {

// The format the attributes read: at the selection's start (or before the caret), or the
// text's default.
QTextCharFormat ReadFormat(TCustomRichEdit* re, TAttributeType type) {
  if (type == atDefaultText) {
    QTextCharFormat f;
    f.setFont(re->Document()->defaultFont());
    return f;
  }
  QTextCursor c = re->TextEdit() ? re->TextEdit()->textCursor() : QTextCursor(re->Document());
  if (!re->TextEdit()) {
    c.setPosition(std::clamp(re->SelStart(), 0, std::max(0, re->Document()->characterCount() - 1)));
  }
  if (c.hasSelection()) {
    QTextCursor start(re->Document());
    start.setPosition(c.selectionStart() + 1);
    return start.charFormat();
  }
  return re->TextEdit() ? re->TextEdit()->currentCharFormat() : c.charFormat();
}

}  // namespace

// Applies a change of the character format to the selection (with nothing selected: to
// what is typed next), or to the whole text for the default attributes.
static void ApplyFormat(TCustomRichEdit* re, TAttributeType type, const QTextCharFormat& format) {
  QTextDocument* doc = re->Document();
  if (type == atDefaultText) {
    if (format.hasProperty(QTextFormat::FontFamilies) || format.hasProperty(QTextFormat::FontPixelSize) ||
        format.hasProperty(QTextFormat::FontWeight) || format.hasProperty(QTextFormat::FontItalic)) {
      QFont font = doc->defaultFont();
      font = format.font().resolve(font);
      doc->setDefaultFont(font);
    }
    QTextCursor all(doc);
    all.select(QTextCursor::Document);
    all.mergeCharFormat(format);
    if (QTextEdit* e = re->TextEdit()) e->mergeCurrentCharFormat(format);
    return;
  }
  if (QTextEdit* e = re->TextEdit()) {
    e->mergeCurrentCharFormat(format);
    return;
  }
  QTextCursor c(doc);
  const int start = std::clamp(re->SelStart(), 0, std::max(0, doc->characterCount() - 1));
  c.setPosition(start);
  c.setPosition(std::clamp(start + re->SelLength(), 0, std::max(0, doc->characterCount() - 1)), QTextCursor::KeepAnchor);
  c.mergeCharFormat(format);
}

TFontCharset TTextAttributes::Charset() const {
  const QTextCharFormat f = ReadFormat(FRichEdit, FType);
  if (f.hasProperty(FontCharsetProperty)) return static_cast<TFontCharset>(f.intProperty(FontCharsetProperty));
  return FRichEdit->Font()->Charset();
}

void TTextAttributes::SetCharset(TFontCharset value) {
  QTextCharFormat f;
  f.setProperty(FontCharsetProperty, static_cast<int>(value));
  ApplyFormat(FRichEdit, FType, f);
}

TColor TTextAttributes::Color() const {
  const QTextCharFormat f = ReadFormat(FRichEdit, FType);
  if (f.hasProperty(QTextFormat::ForegroundBrush)) return QColorToColor(f.foreground().color());
  return FRichEdit->Font()->Color();
}

void TTextAttributes::SetColor(TColor value) {
  QTextCharFormat f;
  f.setForeground(ColorToQColor(value));
  ApplyFormat(FRichEdit, FType, f);
}

TFontName TTextAttributes::Name() const {
  const QTextCharFormat f = ReadFormat(FRichEdit, FType);
  if (f.hasProperty(FontNameProperty)) return f.stringProperty(FontNameProperty).toStdString();
  return FRichEdit->Font()->Name();
}

namespace {
QTextCharFormat FontFormat(const std::string& name, int height, TFontStyles style, TFontCharset charset) {
  TFontRequest request;
  request.Name = name;
  request.Height = -std::abs(height);
  request.Bold = style.Contains(fsBold);
  request.Italic = style.Contains(fsItalic);
  request.Underline = style.Contains(fsUnderline);
  request.StrikeOut = style.Contains(fsStrikeOut);
  request.Charset = charset;
  QTextCharFormat f;
  f.setFont(ResolveFont(request), QTextCharFormat::FontPropertiesAll);
  f.setProperty(FontNameProperty, QString::fromStdString(name));
  f.setProperty(FontHeightProperty, std::abs(height));
  return f;
}
}  // namespace

void TTextAttributes::SetName(const TFontName& value) {
  ApplyFormat(FRichEdit, FType, FontFormat(value, Height(), Style(), Charset()));
}

TFontPitch TTextAttributes::Pitch() const {
  const QTextCharFormat f = ReadFormat(FRichEdit, FType);
  return f.font().fixedPitch() ? fpFixed : fpDefault;
}

void TTextAttributes::SetPitch(TFontPitch value) {
  QTextCharFormat f;
  f.setFontFixedPitch(value == fpFixed);
  ApplyFormat(FRichEdit, FType, f);
}

int TTextAttributes::Height() const {
  const QTextCharFormat f = ReadFormat(FRichEdit, FType);
  if (f.hasProperty(FontHeightProperty)) return f.intProperty(FontHeightProperty);
  return std::abs(MulDiv(FRichEdit->Font()->Size(), ScreenPixelsPerInch(), 72));
}

void TTextAttributes::SetHeight(int value) {
  ApplyFormat(FRichEdit, FType, FontFormat(Name(), value, Style(), Charset()));
}

int TTextAttributes::Size() const { return MulDiv(Height(), 72, ScreenPixelsPerInch()); }

void TTextAttributes::SetSize(int value) { SetHeight(MulDiv(value, ScreenPixelsPerInch(), 72)); }

TFontStyles TTextAttributes::Style() const {
  const QTextCharFormat f = ReadFormat(FRichEdit, FType);
  TFontStyles s;
  const QFont font = f.font();
  if (f.hasProperty(QTextFormat::FontWeight) ? f.fontWeight() >= QFont::Bold : FRichEdit->Font()->Style().Contains(fsBold)) {
    s.Include(fsBold);
  }
  if (f.hasProperty(QTextFormat::FontItalic) ? f.fontItalic() : FRichEdit->Font()->Style().Contains(fsItalic)) {
    s.Include(fsItalic);
  }
  if (f.hasProperty(QTextFormat::TextUnderlineStyle) ? f.fontUnderline()
                                                     : FRichEdit->Font()->Style().Contains(fsUnderline)) {
    s.Include(fsUnderline);
  }
  if (f.hasProperty(QTextFormat::FontStrikeOut) ? f.fontStrikeOut() : FRichEdit->Font()->Style().Contains(fsStrikeOut)) {
    s.Include(fsStrikeOut);
  }
  (void)font;
  return s;
}

void TTextAttributes::SetStyle(TFontStyles value) {
  QTextCharFormat f;
  f.setFontWeight(value.Contains(fsBold) ? QFont::Bold : QFont::Normal);
  f.setFontItalic(value.Contains(fsItalic));
  f.setFontUnderline(value.Contains(fsUnderline));
  f.setFontStrikeOut(value.Contains(fsStrikeOut));
  ApplyFormat(FRichEdit, FType, f);
}

void TTextAttributes::Assign(TPersistent* source) {
  if (auto* font = dynamic_cast<TFont*>(source)) {
    QTextCharFormat f = FontFormat(font->Name(), MulDiv(font->Size(), ScreenPixelsPerInch(), 72), font->Style(),
                                   font->Charset());
    f.setProperty(FontCharsetProperty, static_cast<int>(font->Charset()));
    f.setForeground(ColorToQColor(font->Color()));
    f.setFontWeight(font->Style().Contains(fsBold) ? QFont::Bold : QFont::Normal);
    f.setFontItalic(font->Style().Contains(fsItalic));
    f.setFontUnderline(font->Style().Contains(fsUnderline));
    f.setFontStrikeOut(font->Style().Contains(fsStrikeOut));
    ApplyFormat(FRichEdit, FType, f);
    return;
  }
  if (auto* attributes = dynamic_cast<TTextAttributes*>(source)) {
    QTextCharFormat f = FontFormat(attributes->Name(), attributes->Height(), attributes->Style(), attributes->Charset());
    f.setProperty(FontCharsetProperty, static_cast<int>(attributes->Charset()));
    f.setForeground(ColorToQColor(attributes->Color()));
    const TFontStyles style = attributes->Style();
    f.setFontWeight(style.Contains(fsBold) ? QFont::Bold : QFont::Normal);
    f.setFontItalic(style.Contains(fsItalic));
    f.setFontUnderline(style.Contains(fsUnderline));
    f.setFontStrikeOut(style.Contains(fsStrikeOut));
    ApplyFormat(FRichEdit, FType, f);
    return;
  }
  TPersistent::Assign(source);
}

// ---- TParaAttributes

LUMORA_CLASS_IMPL(TParaAttributes) {}

namespace {

QTextCursor SelectionCursor(TCustomRichEdit* re) {
  if (QTextEdit* e = re->TextEdit()) return e->textCursor();
  QTextCursor c(re->Document());
  const int last = std::max(0, re->Document()->characterCount() - 1);
  c.setPosition(std::clamp(re->SelStart(), 0, last));
  c.setPosition(std::clamp(re->SelStart() + re->SelLength(), 0, last), QTextCursor::KeepAnchor);
  return c;
}

int PointsToPixels(int points) { return MulDiv(points, ScreenPixelsPerInch(), 72); }
int PixelsToPoints(double pixels) { return MulDiv(static_cast<int>(std::lround(pixels)), 72, ScreenPixelsPerInch()); }

}  // namespace

void TParaAttributes::Assign(TPersistent* source) {
  if (auto* p = dynamic_cast<TParaAttributes*>(source)) {
    SetAlignment(p->Alignment());
    SetFirstIndent(p->FirstIndent());
    SetLeftIndent(p->LeftIndent());
    SetRightIndent(p->RightIndent());
    SetNumbering(p->Numbering());
    return;
  }
  TPersistent::Assign(source);
}

TAlignment TParaAttributes::Alignment() const {
  const Qt::Alignment a = SelectionCursor(FRichEdit).blockFormat().alignment();
  if (a & Qt::AlignRight) return taRightJustify;
  if (a & Qt::AlignHCenter) return taCenter;
  return taLeftJustify;
}

void TParaAttributes::SetAlignment(TAlignment value) {
  QTextBlockFormat f;
  f.setAlignment(value == taRightJustify ? Qt::AlignRight : value == taCenter ? Qt::AlignHCenter : Qt::AlignLeft);
  SelectionCursor(FRichEdit).mergeBlockFormat(f);
}

int TParaAttributes::FirstIndent() const { return PixelsToPoints(SelectionCursor(FRichEdit).blockFormat().textIndent()); }

void TParaAttributes::SetFirstIndent(int value) {
  QTextBlockFormat f;
  f.setTextIndent(PointsToPixels(value));
  SelectionCursor(FRichEdit).mergeBlockFormat(f);
}

int TParaAttributes::LeftIndent() const { return PixelsToPoints(SelectionCursor(FRichEdit).blockFormat().leftMargin()); }

void TParaAttributes::SetLeftIndent(int value) {
  QTextBlockFormat f;
  f.setLeftMargin(PointsToPixels(value));
  SelectionCursor(FRichEdit).mergeBlockFormat(f);
}

int TParaAttributes::RightIndent() const { return PixelsToPoints(SelectionCursor(FRichEdit).blockFormat().rightMargin()); }

void TParaAttributes::SetRightIndent(int value) {
  QTextBlockFormat f;
  f.setRightMargin(PointsToPixels(value));
  SelectionCursor(FRichEdit).mergeBlockFormat(f);
}

TNumberingStyle TParaAttributes::Numbering() const {
  return SelectionCursor(FRichEdit).currentList() ? nsBullet : nsNone;
}

void TParaAttributes::SetNumbering(TNumberingStyle value) {
  QTextCursor c = SelectionCursor(FRichEdit);
  if (value == nsBullet) {
    if (!c.currentList()) c.createList(QTextListFormat::ListDisc);
  } else if (QTextList* list = c.currentList()) {
    for (int i = list->count() - 1; i >= 0; --i) list->removeItem(i);
    QTextBlockFormat f;
    f.setIndent(0);
    c.mergeBlockFormat(f);
  }
}

// ---- TCustomRichEdit

LUMORA_CLASS_IMPL(TCustomRichEdit) {}

TCustomRichEdit::TCustomRichEdit(TComponent* owner) : TCustomMemo(owner) {
  FDocument = new QTextDocument();
  FDocument->setDocumentMargin(1);
  FDocument->setDefaultFont(FFont->Handle());
  FDocument->setUndoRedoEnabled(true);
  FLines = new TRichEditStrings(this);
  FSelAttributes = new TTextAttributes(this, atSelected);
  FDefAttributes = new TTextAttributes(this, atDefaultText);
  FParagraph = new TParaAttributes(this);
  QObject::connect(FDocument, &QTextDocument::contentsChanged, FDocument,
                   [this] { TMessageLoop::Instance().Guarded([this] { DocumentChanged(); }); });
}

TCustomRichEdit::~TCustomRichEdit() {
  QObject::disconnect(FDocument, nullptr, nullptr, nullptr);
  DestroyWidget();
  delete FParagraph;
  delete FDefAttributes;
  delete FSelAttributes;
  delete FLines;
  delete FDocument;
}

QTextEdit* TCustomRichEdit::TextEdit() const { return qobject_cast<QTextEdit*>(Widget()); }

void TCustomRichEdit::CreateWidget() {
  auto* e = new QTextEdit();
  e->setDocument(FDocument);
  e->setFocusPolicy(Qt::StrongFocus);
  e->setAcceptRichText(!FPlainText);
  QTextCursor c(FDocument);
  const int last = std::max(0, FDocument->characterCount() - 1);
  c.setPosition(std::clamp(FSelStart, 0, last));
  c.setPosition(std::clamp(FSelStart + FSelLength, 0, last), QTextCursor::KeepAnchor);
  e->setTextCursor(c);
  QObject::connect(e, &QTextEdit::cursorPositionChanged, e,
                   [this] { TMessageLoop::Instance().Guarded([this] { SelectionChange(); }); });
  QObject::connect(e, &QTextEdit::selectionChanged, e,
                   [this] { TMessageLoop::Instance().Guarded([this] { SelectionChange(); }); });
  AdoptWidget(e);
}

void TCustomRichEdit::UpdateWidgetText() {
  QTextEdit* e = TextEdit();
  if (!e) return;
  e->setReadOnly(FReadOnly);
  e->setFrameShape(FBorderStyle == BorderStyleOf(bsSingle) ? QFrame::StyledPanel : QFrame::NoFrame);
  e->setLineWrapMode(WordWrap() ? QTextEdit::WidgetWidth : QTextEdit::NoWrap);
  const TScrollStyle bars = ScrollBars();
  const bool vert = bars == ssVertical || bars == ssBoth;
  const bool horz = (bars == ssHorizontal || bars == ssBoth) && !WordWrap();
  const Qt::ScrollBarPolicy shown = FHideScrollBars ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOn;
  e->setVerticalScrollBarPolicy(vert ? shown : Qt::ScrollBarAlwaysOff);
  e->setHorizontalScrollBarPolicy(horz ? shown : Qt::ScrollBarAlwaysOff);
  e->setTabChangesFocus(!WantTabs());
  e->setAcceptRichText(!FPlainText);
  QTextOption option = FDocument->defaultTextOption();
  const TAlignment alignment = Alignment();
  option.setAlignment(alignment == taRightJustify ? Qt::AlignRight
                      : alignment == taCenter     ? Qt::AlignHCenter
                                                  : Qt::AlignLeft);
  if (option.alignment() != FDocument->defaultTextOption().alignment()) FDocument->setDefaultTextOption(option);
}

void TCustomRichEdit::UpdateWidgetColors() {
  TCustomMemo::UpdateWidgetColors();
  QTextEdit* e = TextEdit();
  if (!e) return;
  QPalette pal = e->palette();
  pal.setColor(QPalette::Active, QPalette::Highlight, ColorToQColor(clHighlight));
  pal.setColor(QPalette::Active, QPalette::HighlightedText, ColorToQColor(clHighlightText));
  // A hidden selection is drawn in the text's own colours while the edit has no focus.
  pal.setColor(QPalette::Inactive, QPalette::Highlight,
               FHideSelection ? pal.color(QPalette::Base) : ColorToQColor(clHighlight));
  pal.setColor(QPalette::Inactive, QPalette::HighlightedText,
               FHideSelection ? pal.color(QPalette::Text) : ColorToQColor(clHighlightText));
  e->setPalette(pal);
}

void TCustomRichEdit::FontChanged() {
  TCustomMemo::FontChanged();
  FDocument->setDefaultFont(FFont->Handle());
}

void TCustomRichEdit::SetHideScrollBars(bool value) {
  FHideScrollBars = value;
  UpdateWidgetText();
}

void TCustomRichEdit::DocumentChanged() {
  if (FChanging) return;
  Change();
}

void TCustomRichEdit::SelectionChange() {
  if (QTextEdit* e = TextEdit()) {
    const QTextCursor c = e->textCursor();
    FSelStart = c.selectionStart();
    FSelLength = c.selectionEnd() - c.selectionStart();
  }
  if (OnSelectionChange && !Loading(this)) OnSelectionChange(this);
}

std::string TCustomRichEdit::Text() const {
  QString text = FDocument->toPlainText();
  text.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
  return FFont->FromUnicode(text);
}

void TCustomRichEdit::SetText(const std::string& value) {
  QString s = FFont->ToUnicode(value);
  s.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  s.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  ReplaceText(s);
}

void TCustomRichEdit::ReplaceText(const QString& text) {
  FDocument->setPlainText(text);
  // A new text puts the caret at its start, scrolled to the top.
  FSelStart = 0;
  FSelLength = 0;
  if (QTextEdit* e = TextEdit()) {
    e->setTextCursor(QTextCursor(FDocument));
    e->verticalScrollBar()->setValue(0);
    e->horizontalScrollBar()->setValue(0);
  }
}

int TCustomRichEdit::GetTextLen() const { return std::max(0, FDocument->characterCount() - 1); }

int TCustomRichEdit::SelStart() const {
  if (QTextEdit* e = TextEdit()) return e->textCursor().selectionStart();
  return std::clamp(FSelStart, 0, GetTextLen());
}

void TCustomRichEdit::SetSelStart(int value) {
  value = std::clamp(value, 0, GetTextLen());
  FSelStart = value;
  FSelLength = 0;
  if (QTextEdit* e = TextEdit()) {
    QTextCursor c = e->textCursor();
    c.setPosition(value);
    e->setTextCursor(c);
  }
}

int TCustomRichEdit::SelLength() const {
  if (QTextEdit* e = TextEdit()) {
    const QTextCursor c = e->textCursor();
    return c.selectionEnd() - c.selectionStart();
  }
  return std::clamp(FSelLength, 0, GetTextLen() - SelStart());
}

void TCustomRichEdit::SetSelLength(int value) {
  const int start = SelStart();
  value = std::clamp(value, 0, GetTextLen() - start);
  FSelLength = value;
  if (QTextEdit* e = TextEdit()) {
    QTextCursor c = e->textCursor();
    c.setPosition(start);
    c.setPosition(start + value, QTextCursor::KeepAnchor);
    e->setTextCursor(c);
  }
}

std::string TCustomRichEdit::SelText() const {
  QTextCursor c = SelectionCursor(const_cast<TCustomRichEdit*>(this));
  QString text = c.selectedText();
  text.replace(QChar::ParagraphSeparator, QLatin1String("\r\n"));
  text.replace(QChar::LineSeparator, QLatin1String("\r\n"));
  return FFont->FromUnicode(text);
}

void TCustomRichEdit::SetSelText(const std::string& value) {
  QString s = FFont->ToUnicode(value);
  s.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  s.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  if (QTextEdit* e = TextEdit()) {
    QTextCursor c = e->textCursor();
    c.insertText(s);
    e->setTextCursor(c);
    return;
  }
  QTextCursor c = SelectionCursor(this);
  c.insertText(s);
  FSelStart = c.position();
  FSelLength = 0;
}

void TCustomRichEdit::SelectAll() {
  SetSelStart(0);
  SetSelLength(GetTextLen());
}

void TCustomRichEdit::ClearSelection() { SetSelText(std::string()); }

void TCustomRichEdit::CopyToClipboard() {
  if (QTextEdit* e = TextEdit()) e->copy();
}

void TCustomRichEdit::CutToClipboard() {
  if (QTextEdit* e = TextEdit(); e && !FReadOnly) e->cut();
}

void TCustomRichEdit::PasteFromClipboard() {
  if (QTextEdit* e = TextEdit(); e && !FReadOnly) e->paste();
}

int TCustomRichEdit::FindText(const std::string& text, int startPos, int length, TSearchTypes options) const {
  if (text.empty()) return -1;
  QTextDocument::FindFlags flags;
  if (options.Contains(stMatchCase)) flags |= QTextDocument::FindCaseSensitively;
  if (options.Contains(stWholeWord)) flags |= QTextDocument::FindWholeWords;
  QString needle = FFont->ToUnicode(text);
  QTextCursor from(FDocument);
  from.setPosition(std::clamp(startPos, 0, GetTextLen()));
  const QTextCursor found = FDocument->find(needle, from, flags);
  if (found.isNull()) return -1;
  const long long limit = static_cast<long long>(startPos) + length;
  if (found.selectionEnd() > limit) return -1;
  return found.selectionStart();
}

bool TCustomRichEdit::Modified() const { return FDocument->isModified(); }

void TCustomRichEdit::SetModified(bool value) { FDocument->setModified(value); }

bool TCustomRichEdit::CanUndo() const { return FDocument->isUndoAvailable(); }

void TCustomRichEdit::Undo() { FDocument->undo(); }

void TCustomRichEdit::ClearUndo() { FDocument->clearUndoRedoStacks(); }

int TCustomRichEdit::LineFromChar(int pos) const {
  pos = std::clamp(pos, 0, GetTextLen());
  return FDocument->findBlock(pos).blockNumber();
}

int TCustomRichEdit::LineIndex(int line) const {
  if (line < 0) line = LineFromChar(SelStart());
  if (line >= FDocument->blockCount()) return -1;
  return FDocument->findBlockByNumber(line).position();
}

int TCustomRichEdit::LineLength(int line) const {
  if (line < 0 || line >= FDocument->blockCount()) return 0;
  return FDocument->findBlockByNumber(line).length() - 1;
}

int TCustomRichEdit::FirstVisibleLine() const {
  QTextEdit* e = TextEdit();
  if (!e) return 0;
  return e->cursorForPosition(QPoint(1, 1)).blockNumber();
}

void TCustomRichEdit::LineScroll(int lines) {
  QTextEdit* e = TextEdit();
  if (!e || lines == 0) return;
  const int target = std::clamp(FirstVisibleLine() + lines, 0, FDocument->blockCount() - 1);
  const QTextBlock block = FDocument->findBlockByNumber(target);
  const QRectF r = FDocument->documentLayout()->blockBoundingRect(block);
  QScrollBar* bar = e->verticalScrollBar();
  bar->setValue(std::clamp(static_cast<int>(r.top()), bar->minimum(), bar->maximum()));
}

int TCustomRichEdit::CharFromPos(TPoint point) const {
  QTextEdit* e = TextEdit();
  if (!e) return 0;
  return e->cursorForPosition(QPoint(point.X, point.Y)).position();
}

LUMORA_CLASS_IMPL(TRichEdit) {
  PublishControlProperties(c, {"Align"});
  c.Property("Alignment", &TRichEdit::Alignment, &TRichEdit::SetAlignment).Default(taLeftJustify);
  PublishControlProperties(c, {"Anchors", "BiDiMode"});
  c.Property("BorderStyle", &TRichEdit::BorderStyle, &TRichEdit::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"BorderWidth", "Color", "Ctl3D", "DragCursor", "DragKind", "Constraints", "DragMode",
                               "Enabled", "Font"});
  c.Property("HideSelection", &TRichEdit::HideSelection, &TRichEdit::SetHideSelection).Default(true);
  c.Property("HideScrollBars", &TRichEdit::HideScrollBars, &TRichEdit::SetHideScrollBars).Default(true);
  PublishControlProperties(c, {"ImeMode", "ImeName"});
  c.Property("Lines", &TRichEdit::Lines, &TRichEdit::SetLines);
  c.Property("MaxLength", &TRichEdit::MaxLength, &TRichEdit::SetMaxLength).Default(0);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint"});
  c.Property("PlainText", &TRichEdit::PlainText, &TRichEdit::SetPlainText).Default(false);
  PublishControlProperties(c, {"PopupMenu"});
  c.Property("ReadOnly", &TRichEdit::ReadOnly, &TRichEdit::SetReadOnly).Default(false);
  c.Property("ScrollBars", &TRichEdit::ScrollBars, &TRichEdit::SetScrollBars).Default(ssNone);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible"});
  c.Property("WantTabs", &TRichEdit::WantTabs, &TRichEdit::SetWantTabs).Default(false);
  c.Property("WantReturns", &TRichEdit::WantReturns, &TRichEdit::SetWantReturns).Default(true);
  c.Property("WordWrap", &TRichEdit::WordWrap, &TRichEdit::SetWordWrap).Default(true);
  c.Property("OnChange", &TRichEdit::OnChange, &TRichEdit::OnChange);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown",
                               "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("OnProtectChange", &TRichEdit::OnProtectChange, &TRichEdit::OnProtectChange);
  c.Property("OnResizeRequest", &TRichEdit::OnResizeRequest, &TRichEdit::OnResizeRequest);
  c.Property("OnSaveClipboard", &TRichEdit::OnSaveClipboard, &TRichEdit::OnSaveClipboard);
  c.Property("OnSelectionChange", &TRichEdit::OnSelectionChange, &TRichEdit::OnSelectionChange);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

// ---------------------------------------------------------------------------------------
// List views

namespace {

TListItem* ListItemFrom(const QTreeWidgetItem* row) {
  return row ? static_cast<TListItem*>(row->data(0, Qt::UserRole).value<void*>()) : nullptr;
}

QIcon IconOf(TCustomImageList* images, int index) {
  if (!images || index < 0 || index >= images->Count()) return QIcon();
  return QIcon(QPixmap::fromImage(images->Image(index)));
}

Qt::Alignment AlignmentOf(TAlignment a) {
  return (a == taRightJustify ? Qt::AlignRight : a == taCenter ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignVCenter;
}

// Draws the cells of a list view: the selection only on the first column unless the
// whole row is selected, and grid lines between the cells when asked.
class TListCellDelegate : public QStyledItemDelegate {
public:
  TListCellDelegate(TCustomListView* list, QObject* parent) : QStyledItemDelegate(parent), FList(list) {}
  void Detach() { FList = nullptr; }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem opt = option;
    if (FList && !FList->RowSelect() && index.column() > 0) opt.state &= ~QStyle::State_Selected;
    if (FList && FList->HideSelection() && !(opt.state & QStyle::State_HasFocus) && opt.widget &&
        !opt.widget->hasFocus()) {
      opt.state &= ~QStyle::State_Selected;
    }
    opt.state &= ~QStyle::State_HasFocus;
    QStyledItemDelegate::paint(painter, opt, index);
    if (FList && FList->GridLines() && FList->ViewStyle() == vsReport) {
      painter->save();
      painter->setPen(ColorToQColor(clBtnFace));
      const QRect r = option.rect;
      painter->drawLine(r.right(), r.top(), r.right(), r.bottom());
      painter->drawLine(r.left(), r.bottom(), r.right(), r.bottom());
      painter->restore();
    }
  }

private:
  TCustomListView* FList;
};

}  // namespace

// ---- TListColumn, TListColumns

LUMORA_CLASS_IMPL(TListColumn) {
  c.Property("Alignment", &TListColumn::Alignment, &TListColumn::SetAlignment).Default(taLeftJustify);
  c.Property("AutoSize", &TListColumn::AutoSize, &TListColumn::SetAutoSize).Default(false);
  c.Property("Caption", &TListColumn::Caption, &TListColumn::SetCaption);
  c.Property("ImageIndex", &TListColumn::ImageIndex, &TListColumn::SetImageIndex).Default(-1);
  c.Property("MaxWidth", &TListColumn::MaxWidth, &TListColumn::SetMaxWidth).Default(0);
  c.Property("MinWidth", &TListColumn::MinWidth, &TListColumn::SetMinWidth).Default(0);
  c.Property("Tag", &TListColumn::Tag, &TListColumn::SetTag).Default(0);
  c.Property("Width", &TListColumn::Width, &TListColumn::SetWidth).Default(50);
}

// The item joins its collection once its own fields exist: joining tells the list view.
TListColumn::TListColumn(TCollection* collection) : TCollectionItem(nullptr) { SetCollection(collection); }

void TListColumn::Assign(TPersistent* source) {
  if (auto* col = dynamic_cast<TListColumn*>(source)) {
    FAlignment = col->FAlignment;
    FAutoSize = col->FAutoSize;
    FCaption = col->FCaption;
    FImageIndex = col->FImageIndex;
    FMaxWidth = col->FMaxWidth;
    FMinWidth = col->FMinWidth;
    FTag = col->FTag;
    FWidth = col->FWidth;
    Changed(false);
    return;
  }
  TCollectionItem::Assign(source);
}

void TListColumn::DefineProperties(TFiler& filer) {
  TCollectionItem::DefineProperties(filer);
  // A self-sizing column also keeps how it sizes itself.
  filer.DefineProperty(
      "WidthType",
      [this](TReader& reader) {
        if (reader.NextValue() == vaList) {
          reader.ReadListBegin();
          while (!reader.EndOfList()) FWidth = reader.ReadInteger();
          reader.ReadListEnd();
        } else {
          FWidth = reader.ReadInteger();
        }
        Changed(false);
      },
      [this](TWriter& writer) {
        writer.WriteListBegin();
        writer.WriteInteger(FWidth);
        writer.WriteListEnd();
      },
      FWidth < 0);
}

std::string TListColumn::GetDisplayName() const {
  return FCaption.empty() ? TCollectionItem::GetDisplayName() : FCaption;
}

void TListColumn::SetAlignment(TAlignment value) {
  FAlignment = value;
  Changed(false);
}

void TListColumn::SetAutoSize(bool value) {
  FAutoSize = value;
  Changed(false);
}

void TListColumn::SetCaption(const std::string& value) {
  FCaption = value;
  Changed(false);
}

void TListColumn::SetImageIndex(int value) {
  FImageIndex = value;
  Changed(false);
}

void TListColumn::SetMaxWidth(int value) {
  FMaxWidth = std::max(value, 0);
  Changed(false);
}

void TListColumn::SetMinWidth(int value) {
  FMinWidth = std::max(value, 0);
  Changed(false);
}

int TListColumn::Width() const { return FWidth; }

void TListColumn::SetWidth(int value) {
  if (value < ColumnHeaderWidth) value = ColumnHeaderWidth;
  if (value >= 0) {
    if (FMinWidth > 0) value = std::max(value, FMinWidth);
    if (FMaxWidth > 0) value = std::min(value, FMaxWidth);
  }
  FWidth = value;
  Changed(false);
}

LUMORA_CLASS_IMPL(TListColumns) {}

TListColumns::TListColumns(TCustomListView* owner) : TCollection(TListColumn::StaticClass()), FOwner(owner) {}

TPersistent* TListColumns::GetOwner() { return FOwner; }

void TListColumns::Update(TCollectionItem*) { FOwner->ColumnsChanged(); }

// ---- TListItem

LUMORA_CLASS_IMPL(TListItem) {}

TListItem::TListItem(TListItems* owner) : FOwner(owner) {
  FSubItems = new TStringList();
  FSubItems->OnChange = [this](TObject*) { Changed(ctText); };
}

TListItem::~TListItem() {
  FSubItems->OnChange = nullptr;
  delete FSubItems;
}

TCustomListView* TListItem::ListView() const { return FOwner ? FOwner->Owner() : nullptr; }

int TListItem::Index() const { return FOwner ? FOwner->IndexOf(this) : -1; }

void TListItem::Changed(TItemChange change) {
  TCustomListView* list = ListView();
  if (!list || Index() < 0) return;
  list->ItemChanged(this);
  list->Change(this, change);
}

void TListItem::SetCaption(const std::string& value) {
  if (FCaption == value) return;
  FCaption = value;
  Changed(ctText);
  if (TCustomListView* list = ListView(); list && (list->SortType() == stText || list->SortType() == stBoth)) {
    list->AlphaSort();
  }
}

int TListItem::SubItemImages(int index) const {
  return index >= 0 && index < static_cast<int>(FSubItemImages.size()) ? FSubItemImages[index] : -1;
}

void TListItem::SetSubItemImages(int index, int value) {
  if (index < 0 || index >= FSubItems->Count()) throw EListError(Format("List index out of bounds (%d)", index));
  if (static_cast<int>(FSubItemImages.size()) <= index) FSubItemImages.resize(index + 1, -1);
  FSubItemImages[index] = value;
  Changed(ctImage);
}

void TListItem::SetImageIndex(int value) {
  if (FImageIndex == value) return;
  FImageIndex = value;
  Changed(ctImage);
}

void TListItem::SetStateIndex(int value) {
  if (FStateIndex == value) return;
  FStateIndex = value;
  Changed(ctState);
}

void TListItem::SetChecked(bool value) {
  if (FChecked == value) return;
  FChecked = value;
  Changed(ctState);
}

void TListItem::SetSelected(bool value) {
  if (FSelected == value) return;
  TCustomListView* list = ListView();
  if (list && !list->MultiSelect() && value) {
    for (TListItem* other : FOwner->FItems) {
      if (other != this && other->FSelected) other->SetSelected(false);
    }
  }
  FSelected = value;
  if (list) {
    list->ItemChanged(this);
    list->Change(this, ctState);
    list->DoSelectItem(this, value);
  }
}

bool TListItem::Focused() const {
  TCustomListView* list = ListView();
  return list && list->ItemFocused() == this;
}

void TListItem::SetFocused(bool value) {
  TCustomListView* list = ListView();
  if (!list) return;
  if (value) {
    list->SetItemFocused(this);
  } else if (Focused()) {
    list->SetItemFocused(nullptr);
  }
}

void TListItem::Delete() { FOwner->Delete(Index()); }

void TListItem::MakeVisible(bool) {
  TCustomListView* list = ListView();
  if (!list || !list->ListWidget()) return;
  if (QTreeWidgetItem* row = list->ListWidget()->topLevelItem(Index())) list->ListWidget()->scrollToItem(row);
}

TRect TListItem::DisplayRect(TDisplayCode code) const {
  TCustomListView* list = ListView();
  QTreeWidget* w = list ? list->ListWidget() : nullptr;
  if (!w) return TRect{};
  QTreeWidgetItem* row = w->topLevelItem(Index());
  if (!row) return TRect{};
  QRect r = w->visualItemRect(row);
  if (code != drBounds && list->ViewStyle() == vsReport && w->columnCount() > 0) {
    r.setWidth(w->columnWidth(0));
  }
  return Rect(r.left(), r.top(), r.left() + r.width(), r.top() + r.height());
}

void TListItem::Assign(TPersistent* source) {
  if (auto* item = dynamic_cast<TListItem*>(source)) {
    FCaption = item->FCaption;
    FData = item->FData;
    FImageIndex = item->FImageIndex;
    FStateIndex = item->FStateIndex;
    FOverlayIndex = item->FOverlayIndex;
    FSubItemImages = item->FSubItemImages;
    FChecked = item->FChecked;
    FSubItems->Assign(item->FSubItems);
    Changed(ctText);
    return;
  }
  TPersistent::Assign(source);
}

// ---- TListItems

LUMORA_CLASS_IMPL(TListItems) {}

TListItems::TListItems(TCustomListView* owner) : FOwner(owner) {}

TListItems::~TListItems() {
  for (TListItem* item : FItems) delete item;
  FItems.clear();
}

TPersistent* TListItems::GetOwner() { return FOwner; }

TListItem* TListItems::Item(int index) const {
  if (index < 0 || index >= Count()) throw EListError(Format("List index out of bounds (%d)", index));
  return FItems[index];
}

int TListItems::IndexOf(const TListItem* item) const {
  const auto it = std::find(FItems.begin(), FItems.end(), item);
  return it == FItems.end() ? -1 : static_cast<int>(it - FItems.begin());
}

TListItem* TListItems::Add() { return Insert(Count()); }

TListItem* TListItems::Insert(int index) {
  index = std::clamp(index, 0, Count());
  auto* item = new TListItem(this);
  FItems.insert(FItems.begin() + index, item);
  if (FOwner) {
    FOwner->ItemAdded(item);
    FOwner->InsertItem(item);
  }
  return item;
}

void TListItems::Delete(int index) {
  TListItem* item = Item(index);
  if (FOwner) {
    FOwner->Delete(item);
    FOwner->ItemRemoving(item);
  }
  FItems.erase(FItems.begin() + index);
  delete item;
}

void TListItems::Clear() {
  if (FItems.empty()) return;
  if (FOwner && !FOwner->ComponentState().Contains(csDestroying)) {
    for (TListItem* item : FItems) FOwner->Delete(item);
  }
  std::vector<TListItem*> items;
  items.swap(FItems);
  if (FOwner) FOwner->RebuildItems();
  for (TListItem* item : items) delete item;
}

void TListItems::SetCount(int value) {
  value = std::max(value, 0);
  BeginUpdate();
  while (Count() > value) Delete(Count() - 1);
  while (Count() < value) {
    TListItem* item = Add();
    if (FOwner && FOwner->OwnerData() && FOwner->OnData) FOwner->OnData(FOwner, item);
  }
  EndUpdate();
}

void TListItems::BeginUpdate() {
  if (FUpdateCount++ == 0 && FOwner && FOwner->ListWidget()) FOwner->ListWidget()->setUpdatesEnabled(false);
}

void TListItems::EndUpdate() {
  if (FUpdateCount == 0) return;
  if (--FUpdateCount == 0 && FOwner && FOwner->ListWidget()) FOwner->ListWidget()->setUpdatesEnabled(true);
}

void TListItems::Assign(TPersistent* source) {
  if (auto* items = dynamic_cast<TListItems*>(source)) {
    if (items == this) return;
    BeginUpdate();
    Clear();
    for (TListItem* from : items->FItems) Add()->Assign(from);
    EndUpdate();
    return;
  }
  TPersistent::Assign(source);
}

void TListItems::DefineProperties(TFiler& filer) {
  TPersistent::DefineProperties(filer);
  const bool hasData = Count() > 0 && !(FOwner && FOwner->OwnerData());
  filer.DefineBinaryProperty(
      "Data", [this](TStream& s) { ReadData(s); }, [this](TStream& s) { WriteData(s); }, hasData);
}

void TListItems::ReadData(TStream& stream) {
  // The size of the whole value, the number of items, then each item: image, state image,
  // overlay, number of sub-items, data, the caption and the sub-items as short strings.
  // Later versions add the sub-items' images, two bytes each.
  struct TParsed {
    std::int32_t Image, State, Overlay, Data;
    std::string Caption;
    std::vector<std::string> SubItems;
    std::vector<int> SubImages;
  };
  const std::string data = stream.ReadRest();
  std::size_t pos = 0;
  GetInt32(data, pos);  // the size, which the data's own length says as well
  const std::int32_t count = GetInt32(data, pos);
  if (count < 0 || static_cast<std::size_t>(count) > (data.size() - pos) / 21) throw EReadError(RtlConsts::SReadError);
  std::vector<TParsed> parsed(count);
  std::size_t subItems = 0;
  for (TParsed& p : parsed) {
    p.Image = GetInt32(data, pos);
    p.State = GetInt32(data, pos);
    p.Overlay = GetInt32(data, pos);
    const std::int32_t subCount = GetInt32(data, pos);
    p.Data = GetInt32(data, pos);
    p.Caption = GetShortString(data, pos);
    if (subCount < 0 || static_cast<std::size_t>(subCount) > data.size() - pos) throw EReadError(RtlConsts::SReadError);
    for (int j = 0; j < subCount; ++j) p.SubItems.push_back(GetShortString(data, pos));
    subItems += static_cast<std::size_t>(subCount);
  }
  const bool images = subItems > 0 && data.size() - pos == 2 * subItems;
  if (images) {
    for (TParsed& p : parsed) {
      for (std::size_t j = 0; j < p.SubItems.size(); ++j) {
        const auto v = static_cast<std::int16_t>(static_cast<unsigned char>(data[pos]) |
                                                 (static_cast<unsigned char>(data[pos + 1]) << 8));
        p.SubImages.push_back(v);
        pos += 2;
      }
    }
  }
  BeginUpdate();
  Clear();
  FSubItemImagesStreamed = images;
  const TSortType sort = FOwner ? FOwner->FSortType : stNone;
  if (FOwner) FOwner->FSortType = stNone;
  for (TParsed& p : parsed) {
    TListItem* item = new TListItem(this);
    item->FCaption = std::move(p.Caption);
    item->FImageIndex = p.Image;
    item->FStateIndex = p.State;
    item->FOverlayIndex = p.Overlay;
    item->FData = reinterpret_cast<void*>(static_cast<std::uintptr_t>(static_cast<std::uint32_t>(p.Data)));
    item->FSubItems->OnChange = nullptr;
    for (const std::string& s : p.SubItems) item->FSubItems->Add(s);
    item->FSubItems->OnChange = [item](TObject*) { item->Changed(ctText); };
    item->FSubItemImages = std::move(p.SubImages);
    FItems.push_back(item);
  }
  if (FOwner) {
    FOwner->FSortType = sort;
    FOwner->RebuildItems();
  }
  EndUpdate();
}

void TListItems::WriteData(TStream& stream) const {
  std::string body;
  PutInt32(body, Count());
  for (const TListItem* item : FItems) {
    PutInt32(body, item->FImageIndex);
    PutInt32(body, item->FStateIndex);
    PutInt32(body, item->FOverlayIndex);
    PutInt32(body, item->FSubItems->Count());
    PutInt32(body, static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(item->FData)));
    PutShortString(body, item->FCaption);
    for (int j = 0; j < item->FSubItems->Count(); ++j) PutShortString(body, item->FSubItems->Strings(j));
  }
  if (FSubItemImagesStreamed) {
    for (const TListItem* item : FItems) {
      for (int j = 0; j < item->FSubItems->Count(); ++j) {
        const auto v = static_cast<std::uint16_t>(static_cast<std::int16_t>(item->SubItemImages(j)));
        body += static_cast<char>(v & 0xFF);
        body += static_cast<char>(v >> 8);
      }
    }
  }
  std::string out;
  PutInt32(out, static_cast<std::int32_t>(body.size() + 4));
  out += body;
  stream.WriteBuffer(out);
}

// ---- TIconOptions

LUMORA_CLASS_IMPL(TIconOptions) {
  c.Property("Arrangement", &TIconOptions::Arrangement, &TIconOptions::SetArrangement).Default(iaTop);
  c.Property("AutoArrange", &TIconOptions::AutoArrange, &TIconOptions::SetAutoArrange).Default(false);
  c.Property("WrapText", &TIconOptions::WrapText, &TIconOptions::SetWrapText).Default(true);
}

void TIconOptions::Assign(TPersistent* source) {
  if (auto* o = dynamic_cast<TIconOptions*>(source)) {
    FArrangement = o->FArrangement;
    FAutoArrange = o->FAutoArrange;
    FWrapText = o->FWrapText;
    return;
  }
  TPersistent::Assign(source);
}

// ---- TCustomListView

LUMORA_CLASS_IMPL(TCustomListView) {}

TCustomListView::TCustomListView(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csCaptureMouse, csClickEvents, csDoubleClicks};
  FWidth = 250;
  FHeight = 150;
  FTabStop = true;
  FParentColor = false;
  FColor = clWindow;
  FColumns = new TListColumns(this);
  FListItems = new TListItems(this);
  FIconOptions = new TIconOptions(this);
}

TCustomListView::~TCustomListView() {
  Destroying();
  if (QTreeWidget* w = ListWidget()) {
    if (auto* d = dynamic_cast<TListCellDelegate*>(w->itemDelegate())) d->Detach();
  }
  FSyncing = true;
  DestroyWidget();
  delete FListItems;
  FListItems = nullptr;
  delete FColumns;
  FColumns = nullptr;
  delete FIconOptions;
}

QTreeWidget* TCustomListView::ListWidget() const { return qobject_cast<QTreeWidget*>(Widget()); }

void TCustomListView::CreateWidget() {
  auto* w = new QTreeWidget();
  w->setFocusPolicy(Qt::StrongFocus);
  w->setRootIsDecorated(false);
  w->setUniformRowHeights(true);
  w->setItemsExpandable(false);
  w->setAllColumnsShowFocus(true);
  w->setItemDelegate(new TListCellDelegate(this, w));
  w->header()->setStretchLastSection(false);
  w->header()->setSectionsMovable(false);
  w->header()->setSectionsClickable(true);
  QObject::connect(w, &QTreeWidget::itemSelectionChanged, w, [this] {
    if (FSyncing) return;
    TMessageLoop::Instance().Guarded([this] { SelectionFromWidget(); });
  });
  QObject::connect(w, &QTreeWidget::itemChanged, w, [this](QTreeWidgetItem* row, int column) {
    if (FSyncing) return;
    TMessageLoop::Instance().Guarded([&] {
      TListItem* item = ListItemFrom(row);
      if (!item) return;
      if (FCheckboxes && column == 0) {
        const bool checked = row->checkState(0) == Qt::Checked;
        if (checked != item->FChecked) {
          item->FChecked = checked;
          Change(item, ctState);
        }
      }
      const std::string text = FFont->FromUnicode(row->text(0));
      if (column == 0 && text != item->FCaption) Edit(item, text);
    });
  });
  QObject::connect(w->header(), &QHeaderView::sectionClicked, w, [this](int section) {
    TMessageLoop::Instance().Guarded([&] {
      if (section >= 0 && section < FColumns->Count() && FColumnClick && !Designing()) ColClick(FColumns->Items(section));
    });
  });
  AdoptWidget(w);
  ColumnsChanged();
  RebuildItems();
}

void TCustomListView::UpdateWidgetText() {
  QTreeWidget* w = ListWidget();
  if (!w) return;
  w->setFrameShape(FBorderStyle == BorderStyleOf(bsSingle) ? QFrame::StyledPanel : QFrame::NoFrame);
  w->setSelectionMode(FMultiSelect ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
  w->setSelectionBehavior(QAbstractItemView::SelectRows);
  w->setEditTriggers(FReadOnly ? QAbstractItemView::NoEditTriggers
                               : QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
  w->setHeaderHidden(FViewStyle != vsReport || !FShowColumnHeaders);
  w->header()->setSectionsClickable(FColumnClick);
  TCustomImageList* images = FViewStyle == vsIcon ? FLargeImages : FSmallImages;
  w->setIconSize(images ? QSize(images->Width(), images->Height()) : QSize(0, 0));
  w->viewport()->update();
}

void TCustomListView::UpdateWidgetColors() {
  TWinControl::UpdateWidgetColors();
  QTreeWidget* w = ListWidget();
  if (!w) return;
  QPalette pal = w->palette();
  pal.setColor(QPalette::Active, QPalette::Highlight, ColorToQColor(clHighlight));
  pal.setColor(QPalette::Active, QPalette::HighlightedText, ColorToQColor(clHighlightText));
  pal.setColor(QPalette::Inactive, QPalette::Highlight, ColorToQColor(clBtnFace));
  pal.setColor(QPalette::Inactive, QPalette::HighlightedText, ColorToQColor(clBtnText));
  w->setPalette(pal);
}

void TCustomListView::ColumnsChanged() {
  QTreeWidget* w = ListWidget();
  if (!w || !FColumns) return;
  const bool was = FSyncing;
  FSyncing = true;
  const int columns = FViewStyle == vsReport ? std::max(1, FColumns->Count()) : 1;
  w->setColumnCount(columns);
  QStringList labels;
  for (int i = 0; i < FColumns->Count() && FViewStyle == vsReport; ++i) {
    TListColumn* col = FColumns->Items(i);
    labels << StripAccelChars(FFont->ToUnicode(col->Caption()));
  }
  if (FViewStyle == vsReport) {
    w->setHeaderLabels(labels);
    for (int i = 0; i < FColumns->Count(); ++i) {
      TListColumn* col = FColumns->Items(i);
      w->headerItem()->setTextAlignment(i, AlignmentOf(col->Alignment()));
      if (col->WidthType() < 0 || col->AutoSize()) {
        w->header()->setSectionResizeMode(i, QHeaderView::ResizeToContents);
      } else {
        w->header()->setSectionResizeMode(i, QHeaderView::Interactive);
        w->setColumnWidth(i, col->Width());
      }
    }
  } else {
    w->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  }
  FSyncing = was;
  // Alignment of the cells follows the columns.
  if (FViewStyle == vsReport) {
    for (int r = 0; r < w->topLevelItemCount(); ++r) {
      for (int i = 0; i < FColumns->Count(); ++i) {
        w->topLevelItem(r)->setTextAlignment(i, AlignmentOf(FColumns->Items(i)->Alignment()));
      }
    }
  }
}

namespace {
void FillRow(TCustomListView* list, QTreeWidgetItem* row, TListItem* item) {
  row->setData(0, Qt::UserRole, QVariant::fromValue<void*>(item));
  row->setText(0, list->Font()->ToUnicode(item->Caption()));
  TCustomImageList* images = list->ViewStyle() == vsIcon ? list->LargeImages() : list->SmallImages();
  row->setIcon(0, IconOf(images, item->ImageIndex()));
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (!list->ReadOnly()) flags |= Qt::ItemIsEditable;
  if (list->Checkboxes()) {
    flags |= Qt::ItemIsUserCheckable;
    row->setCheckState(0, item->Checked() ? Qt::Checked : Qt::Unchecked);
  }
  row->setFlags(flags);
  if (list->ViewStyle() == vsReport) {
    const int columns = std::max(1, list->Columns()->Count());
    for (int j = 1; j < columns; ++j) {
      const QString text = j - 1 < item->SubItems()->Count() ? list->Font()->ToUnicode(item->SubItems()->Strings(j - 1))
                                                             : QString();
      row->setText(j, text);
      row->setIcon(j, IconOf(list->SmallImages(), item->SubItemImages(j - 1)));
      if (j < list->Columns()->Count()) row->setTextAlignment(j, AlignmentOf(list->Columns()->Items(j)->Alignment()));
    }
    if (list->Columns()->Count() > 0) row->setTextAlignment(0, AlignmentOf(list->Columns()->Items(0)->Alignment()));
  }
  row->setSelected(item->Selected());
}
}  // namespace

void TCustomListView::RebuildItems() {
  QTreeWidget* w = ListWidget();
  if (!w || !FListItems) return;
  const bool was = FSyncing;
  FSyncing = true;
  w->clear();
  FItemsWidget = w;
  QList<QTreeWidgetItem*> rows;
  rows.reserve(FListItems->Count());
  for (TListItem* item : FListItems->FItems) {
    auto* row = new QTreeWidgetItem();
    row->setData(0, Qt::UserRole, QVariant::fromValue<void*>(item));
    rows.push_back(row);
  }
  w->addTopLevelItems(rows);
  for (int i = 0; i < rows.size(); ++i) FillRow(this, rows[i], FListItems->FItems[i]);
  FSyncing = was;
}

void TCustomListView::ItemAdded(TListItem* item) {
  QTreeWidget* w = ListWidget();
  if (!w || FItemsWidget.isNull()) return;
  const bool was = FSyncing;
  FSyncing = true;
  auto* row = new QTreeWidgetItem();
  w->insertTopLevelItem(item->Index(), row);
  FillRow(this, row, item);
  FSyncing = was;
}

void TCustomListView::ItemChanged(TListItem* item) {
  QTreeWidget* w = ListWidget();
  if (!w || FItemsWidget.isNull()) return;
  QTreeWidgetItem* row = w->topLevelItem(item->Index());
  if (!row || ListItemFrom(row) != item) return;
  const bool was = FSyncing;
  FSyncing = true;
  FillRow(this, row, item);
  FSyncing = was;
}

void TCustomListView::ItemRemoving(TListItem* item) {
  QTreeWidget* w = ListWidget();
  if (!w || FItemsWidget.isNull()) return;
  const bool was = FSyncing;
  FSyncing = true;
  delete w->takeTopLevelItem(item->Index());
  FSyncing = was;
}

void TCustomListView::SelectionFromWidget() {
  QTreeWidget* w = ListWidget();
  if (!w) return;
  // Items that lose the selection hear of it first, then those that gain it.
  std::vector<TListItem*> lost;
  std::vector<TListItem*> gained;
  for (int i = 0; i < w->topLevelItemCount(); ++i) {
    QTreeWidgetItem* row = w->topLevelItem(i);
    TListItem* item = ListItemFrom(row);
    if (!item) continue;
    if (row->isSelected() != item->FSelected) (row->isSelected() ? gained : lost).push_back(item);
  }
  for (TListItem* item : lost) {
    item->FSelected = false;
    Change(item, ctState);
    DoSelectItem(item, false);
  }
  for (TListItem* item : gained) {
    item->FSelected = true;
    Change(item, ctState);
    DoSelectItem(item, true);
  }
}

TListItem* TCustomListView::Selected() const {
  for (TListItem* item : FListItems->FItems) {
    if (item->FSelected) return item;
  }
  return nullptr;
}

void TCustomListView::SetSelected(TListItem* item) {
  for (TListItem* other : FListItems->FItems) {
    if (other != item && other->FSelected) other->SetSelected(false);
  }
  if (item) item->SetSelected(true);
}

TListItem* TCustomListView::ItemFocused() const {
  QTreeWidget* w = ListWidget();
  if (!w) return Selected();
  return ListItemFrom(w->currentItem());
}

void TCustomListView::SetItemFocused(TListItem* item) {
  QTreeWidget* w = ListWidget();
  if (!w) return;
  const bool was = FSyncing;
  FSyncing = true;
  w->setCurrentItem(item ? w->topLevelItem(item->Index()) : nullptr, 0, QItemSelectionModel::NoUpdate);
  FSyncing = was;
}

int TCustomListView::SelCount() const {
  int n = 0;
  for (TListItem* item : FListItems->FItems) n += item->FSelected ? 1 : 0;
  return n;
}

TListItem* TCustomListView::TopItem() const {
  QTreeWidget* w = ListWidget();
  if (!w) return FListItems->Count() > 0 ? FListItems->Item(0) : nullptr;
  return ListItemFrom(w->itemAt(1, 1));
}

TListItem* TCustomListView::GetItemAt(int x, int y) const {
  QTreeWidget* w = ListWidget();
  if (!w) return nullptr;
  return ListItemFrom(w->itemAt(x, y));
}

TListItem* TCustomListView::FindCaption(int startIndex, const std::string& value, bool partial, bool inclusive,
                                        bool wrap) const {
  const int count = FListItems->Count();
  if (count == 0) return nullptr;
  int i = inclusive ? startIndex : startIndex + 1;
  for (int n = 0; n < count; ++n, ++i) {
    if (i >= count) {
      if (!wrap) return nullptr;
      i = 0;
    }
    if (i < 0) continue;
    const std::string& caption = FListItems->FItems[i]->FCaption;
    if (partial ? CompareText(caption.substr(0, value.size()), value) == 0 : CompareText(caption, value) == 0) {
      return FListItems->FItems[i];
    }
  }
  return nullptr;
}

bool TCustomListView::AlphaSort() {
  std::stable_sort(FListItems->FItems.begin(), FListItems->FItems.end(), [this](TListItem* a, TListItem* b) {
    if (OnCompare) {
      int result = 0;
      OnCompare(this, a, b, 0, result);
      return result < 0;
    }
    return CompareText(a->FCaption, b->FCaption) < 0;
  });
  RebuildItems();
  return true;
}

void TCustomListView::SetBorderStyle(TBorderStyle value) {
  FBorderStyle = value;
  UpdateWidgetText();
}

void TCustomListView::SetCheckboxes(bool value) {
  FCheckboxes = value;
  RebuildItems();
}

void TCustomListView::SetColumnClick(bool value) {
  FColumnClick = value;
  UpdateWidgetText();
}

void TCustomListView::SetGridLines(bool value) {
  FGridLines = value;
  if (QWidget* w = Widget()) w->update();
}

void TCustomListView::SetHideSelection(bool value) {
  FHideSelection = value;
  if (QWidget* w = Widget()) w->update();
}

void TCustomListView::SetLargeImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FLargeImages, value)) return;
  UpdateWidgetText();
  RebuildItems();
}

void TCustomListView::SetSmallImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FSmallImages, value)) return;
  UpdateWidgetText();
  RebuildItems();
}

void TCustomListView::SetStateImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FStateImages, value)) return;
}

void TCustomListView::Notification(TComponent* component, TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation != opRemove) return;
  // One list may serve as several of these: forget it everywhere before redrawing, as
  // it is half destroyed by now.
  bool changed = false;
  if (component == FLargeImages) FLargeImages = nullptr, changed = true;
  if (component == FSmallImages) FSmallImages = nullptr, changed = true;
  if (component == FStateImages) FStateImages = nullptr;
  if (changed) {
    UpdateWidgetText();
    RebuildItems();
  }
}

void TCustomListView::SetMultiSelect(bool value) {
  FMultiSelect = value;
  UpdateWidgetText();
}

void TCustomListView::SetOwnerData(bool value) {
  if (FOwnerData == value) return;
  FOwnerData = value;
  if (value) FListItems->Clear();
}

void TCustomListView::SetReadOnly(bool value) {
  FReadOnly = value;
  UpdateWidgetText();
  RebuildItems();
}

void TCustomListView::SetRowSelect(bool value) {
  FRowSelect = value;
  if (QWidget* w = Widget()) w->update();
}

void TCustomListView::SetShowColumnHeaders(bool value) {
  FShowColumnHeaders = value;
  UpdateWidgetText();
}

void TCustomListView::SetSortType(TSortType value) {
  if (FSortType == value) return;
  FSortType = value;
  if ((value == stText || value == stBoth) && !Loading(this)) AlphaSort();
}

void TCustomListView::SetViewStyle(TViewStyle value) {
  if (FViewStyle == value) return;
  FViewStyle = value;
  UpdateWidgetText();
  ColumnsChanged();
  RebuildItems();
}

void TCustomListView::Loaded() {
  TWinControl::Loaded();
  ColumnsChanged();
  if (FSortType == stText || FSortType == stBoth) AlphaSort();
}

bool TCustomListView::CanChange(TListItem* item, TItemChange change) {
  bool allow = true;
  if (OnChanging && !Loading(this)) OnChanging(this, item, change, allow);
  return allow;
}

void TCustomListView::Change(TListItem* item, TItemChange change) {
  if (OnChange && !Loading(this) && FListItems && FListItems->FUpdateCount == 0) OnChange(this, item, change);
}

void TCustomListView::DoSelectItem(TListItem* item, bool selected) {
  if (OnSelectItem && !Loading(this)) OnSelectItem(this, item, selected);
}

void TCustomListView::ColClick(TListColumn* column) {
  if (OnColumnClick) OnColumnClick(this, column);
}

bool TCustomListView::CanEdit(TListItem* item) {
  bool allow = true;
  if (OnEditing) OnEditing(this, item, allow);
  return allow;
}

void TCustomListView::Edit(TListItem* item, const std::string& text) {
  std::string s = text;
  if (OnEdited) OnEdited(this, item, s);
  item->SetCaption(s);
}

void TCustomListView::Delete(TListItem* item) {
  if (OnDeletion && !ComponentState().Contains(csDestroying)) OnDeletion(this, item);
}

void TCustomListView::InsertItem(TListItem* item) {
  if (OnInsert && !Loading(this)) OnInsert(this, item);
}

LUMORA_CLASS_IMPL(TListView) {
  PublishControlProperties(c, {"Action", "Align"});
  c.Property("AllocBy", &TListView::AllocBy, &TListView::SetAllocBy).Default(0);
  PublishControlProperties(c, {"Anchors", "BiDiMode"});
  c.Property("BorderStyle", &TListView::BorderStyle, &TListView::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"BorderWidth"});
  c.Property("Checkboxes", &TListView::Checkboxes, &TListView::SetCheckboxes).Default(false);
  PublishControlProperties(c, {"Color"});
  c.Property("Columns", &TListView::Columns, &TListView::SetColumns);
  c.Property("ColumnClick", &TListView::ColumnClick, &TListView::SetColumnClick).Default(true);
  PublishControlProperties(c, {"Constraints", "Ctl3D", "DragCursor", "DragKind", "DragMode", "Enabled", "Font"});
  c.Property("FlatScrollBars", &TListView::FlatScrollBars, &TListView::SetFlatScrollBars).Default(false);
  c.Property("FullDrag", &TListView::FullDrag, &TListView::SetFullDrag).Default(false);
  c.Property("GridLines", &TListView::GridLines, &TListView::SetGridLines).Default(false);
  c.Property("HideSelection", &TListView::HideSelection, &TListView::SetHideSelection).Default(true);
  c.Property("HotTrack", &TListView::HotTrack, &TListView::SetHotTrack).Default(false);
  c.Property("HotTrackStyles", &TListView::HotTrackStyles, &TListView::SetHotTrackStyles).NoDefault();
  c.Property("IconOptions", &TListView::IconOptions, &TListView::SetIconOptions);
  c.Property("Items", &TListView::Items, &TListView::SetItems);
  c.Property("LargeImages", &TListView::LargeImages, &TListView::SetLargeImages);
  c.Property("MultiSelect", &TListView::MultiSelect, &TListView::SetMultiSelect).Default(false);
  c.Property("OwnerData", &TListView::OwnerData, &TListView::SetOwnerData).Default(false);
  c.Property("OwnerDraw", &TListView::OwnerDraw, &TListView::SetOwnerDraw).Default(false);
  c.Property("ReadOnly", &TListView::ReadOnly, &TListView::SetReadOnly).Default(false);
  c.Property("RowSelect", &TListView::RowSelect, &TListView::SetRowSelect).Default(false);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("ShowColumnHeaders", &TListView::ShowColumnHeaders, &TListView::SetShowColumnHeaders).Default(true);
  c.Property("ShowWorkAreas", &TListView::ShowWorkAreas, &TListView::SetShowWorkAreas).Default(false);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("SmallImages", &TListView::SmallImages, &TListView::SetSmallImages);
  c.Property("SortType", &TListView::SortType, &TListView::SetSortType).Default(stNone);
  c.Property("StateImages", &TListView::StateImages, &TListView::SetStateImages);
  PublishControlProperties(c, {"TabOrder", "TabStop"});
  c.Property("ViewStyle", &TListView::ViewStyle, &TListView::SetViewStyle).Default(vsIcon);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnChange", &TListView::OnChange, &TListView::OnChange);
  c.Property("OnChanging", &TListView::OnChanging, &TListView::OnChanging);
  PublishControlProperties(c, {"OnClick"});
  c.Property("OnColumnClick", &TListView::OnColumnClick, &TListView::OnColumnClick);
  c.Property("OnColumnDragged", &TListView::OnColumnDragged, &TListView::OnColumnDragged);
  c.Property("OnColumnRightClick", &TListView::OnColumnRightClick, &TListView::OnColumnRightClick);
  c.Property("OnCompare", &TListView::OnCompare, &TListView::OnCompare);
  c.Property("OnCustomDraw", &TListView::OnCustomDraw, &TListView::OnCustomDraw);
  c.Property("OnCustomDrawItem", &TListView::OnCustomDrawItem, &TListView::OnCustomDrawItem);
  c.Property("OnCustomDrawSubItem", &TListView::OnCustomDrawSubItem, &TListView::OnCustomDrawSubItem);
  c.Property("OnData", &TListView::OnData, &TListView::OnData);
  c.Property("OnDataFind", &TListView::OnDataFind, &TListView::OnDataFind);
  c.Property("OnDataHint", &TListView::OnDataHint, &TListView::OnDataHint);
  c.Property("OnDataStateChange", &TListView::OnDataStateChange, &TListView::OnDataStateChange);
  PublishControlProperties(c, {"OnDblClick"});
  c.Property("OnDeletion", &TListView::OnDeletion, &TListView::OnDeletion);
  c.Property("OnDrawItem", &TListView::OnDrawItem, &TListView::OnDrawItem);
  c.Property("OnEdited", &TListView::OnEdited, &TListView::OnEdited);
  c.Property("OnEditing", &TListView::OnEditing, &TListView::OnEditing);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit"});
  c.Property("OnGetImageIndex", &TListView::OnGetImageIndex, &TListView::OnGetImageIndex);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver"});
  c.Property("OnInfoTip", &TListView::OnInfoTip, &TListView::OnInfoTip);
  c.Property("OnInsert", &TListView::OnInsert, &TListView::OnInsert);
  PublishControlProperties(c, {"OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnResize"});
  c.Property("OnSelectItem", &TListView::OnSelectItem, &TListView::OnSelectItem);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

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
    if (designing) DrawFocusRect(painter, QRect(0, 0, FWidth, FHeight));
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
// TProgressBar

LUMORA_CLASS_IMPL(TProgressBar) {
  PublishControlProperties(c, {"Align", "Anchors", "BorderWidth", "Constraints", "DragCursor", "DragKind", "DragMode",
                               "Enabled"});
  c.Property("Min", &TProgressBar::Min, &TProgressBar::SetMin).NoDefault();
  c.Property("Max", &TProgressBar::Max, &TProgressBar::SetMax).NoDefault();
  c.Property("Orientation", &TProgressBar::Orientation, &TProgressBar::SetOrientation).Default(pbHorizontal);
  PublishControlProperties(c, {"ParentShowHint", "PopupMenu"});
  c.Property("Position", &TProgressBar::Position, &TProgressBar::SetPosition).Default(0);
  c.Property("Smooth", &TProgressBar::Smooth, &TProgressBar::SetSmooth).Default(false);
  c.Property("Step", &TProgressBar::Step, &TProgressBar::SetStep).Default(10);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible", "OnDragDrop", "OnDragOver", "OnEndDock",
                               "OnEndDrag", "OnEnter", "OnExit", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnStartDock", "OnStartDrag"});
}

TProgressBar::TProgressBar(TComponent* owner) : TWinControl(owner) {
  FWidth = 150;
  FHeight = 16;
  FColor = clBtnFace;
}

void TProgressBar::CreateWidget() { AdoptWidget(new TPaintedWidget(this, true)); }

void TProgressBar::SetMin(int value) {
  FMin = value;
  if (!Loading(this) && FMax < FMin) FMax = FMin;
  FPosition = std::max(FPosition, FMin);
  Invalidate();
}

void TProgressBar::SetMax(int value) {
  FMax = value;
  if (!Loading(this) && FMin > FMax) FMin = FMax;
  FPosition = std::min(FPosition, std::max(FMax, FMin));
  Invalidate();
}

void TProgressBar::SetPosition(int value) {
  value = Loading(this) ? value : std::clamp(value, std::min(FMin, FMax), std::max(FMin, FMax));
  if (FPosition == value) return;
  FPosition = value;
  Invalidate();
}

void TProgressBar::SetSmooth(bool value) {
  FSmooth = value;
  Invalidate();
}

void TProgressBar::SetOrientation(TProgressBarOrientation value) {
  FOrientation = value;
  Invalidate();
}

void TProgressBar::StepBy(int delta) {
  long long p = static_cast<long long>(FPosition) + delta;
  if (p > FMax) p = FMin + (p - FMax) - 1;
  if (p < FMin) p = FMin;
  FPosition = static_cast<int>(std::clamp<long long>(p, FMin, std::max(FMin, FMax)));
  Invalidate();
}

void TProgressBar::StepIt() { StepBy(FStep); }

int TProgressBar::FilledLength() const {
  const int length = (FOrientation == pbHorizontal ? FWidth : FHeight) - 4;
  if (FMax <= FMin || length <= 0) return 0;
  const double part = static_cast<double>(std::clamp(FPosition, FMin, FMax) - FMin) / (static_cast<double>(FMax) - FMin);
  return static_cast<int>(std::lround(part * length));
}

void TProgressBar::Paint(QPainter& painter) {
  painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor));
  QRect r(0, 0, FWidth, FHeight);
  Frame3D(painter, r, Sys(clBtnShadow), Sys(clBtnHighlight));
  r.adjust(1, 1, -1, -1);
  const int filled = FilledLength();
  if (filled <= 0 || r.width() <= 0 || r.height() <= 0) return;
  const QColor bar = Sys(clHighlight);
  const bool horizontal = FOrientation == pbHorizontal;
  if (FSmooth) {
    painter.fillRect(horizontal ? QRect(r.left(), r.top(), filled, r.height())
                                : QRect(r.left(), r.bottom() + 1 - filled, r.width(), filled),
                     bar);
    return;
  }
  // Blocks two thirds as long as the bar is thick, two pixels apart.
  const int thick = horizontal ? r.height() : r.width();
  const int block = std::max(2, thick * 2 / 3);
  for (int pos = 0; pos < filled; pos += block + 2) {
    const int len = std::min(block, (horizontal ? r.width() : r.height()) - pos);
    if (len <= 0) break;
    painter.fillRect(horizontal ? QRect(r.left() + pos, r.top(), len, r.height())
                                : QRect(r.left(), r.bottom() + 1 - pos - len, r.width(), len),
                     bar);
  }
}

// ---------------------------------------------------------------------------------------
// TTrackBar

LUMORA_CLASS_IMPL(TTrackBar) {
  PublishControlProperties(c, {"Align", "Anchors", "BorderWidth", "Ctl3D", "DragCursor", "DragKind", "DragMode",
                               "Enabled", "Constraints"});
  c.Property("LineSize", &TTrackBar::LineSize, &TTrackBar::SetLineSize).Default(1);
  c.Property("Max", &TTrackBar::Max, &TTrackBar::SetMax).Default(10);
  c.Property("Min", &TTrackBar::Min, &TTrackBar::SetMin).Default(0);
  c.Property("Orientation", &TTrackBar::Orientation, &TTrackBar::SetOrientation).NoDefault();
  PublishControlProperties(c, {"ParentCtl3D", "ParentShowHint"});
  c.Property("PageSize", &TTrackBar::PageSize, &TTrackBar::SetPageSize).Default(2);
  PublishControlProperties(c, {"PopupMenu"});
  c.Property("Frequency", &TTrackBar::Frequency, &TTrackBar::SetFrequency).NoDefault();
  c.Property("Position", &TTrackBar::Position, &TTrackBar::SetPosition).NoDefault();
  c.Property("SliderVisible", &TTrackBar::SliderVisible, &TTrackBar::SetSliderVisible).Default(true);
  c.Property("SelEnd", &TTrackBar::SelEnd, &TTrackBar::SetSelEnd).NoDefault();
  c.Property("SelStart", &TTrackBar::SelStart, &TTrackBar::SetSelStart).NoDefault();
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop"});
  c.Property("ThumbLength", &TTrackBar::ThumbLength, &TTrackBar::SetThumbLength).Default(20);
  c.Property("TickMarks", &TTrackBar::TickMarks, &TTrackBar::SetTickMarks).NoDefault();
  c.Property("TickStyle", &TTrackBar::TickStyle, &TTrackBar::SetTickStyle).NoDefault();
  PublishControlProperties(c, {"Visible"});
  c.Property("OnChange", &TTrackBar::OnChange, &TTrackBar::OnChange);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown",
                               "OnKeyPress", "OnKeyUp", "OnStartDock", "OnStartDrag"});
  c.Property("TabStop").Default(true);
}

TTrackBar::TTrackBar(TComponent* owner) : TWinControl(owner) {
  FWidth = 150;
  FHeight = 45;
  FTabStop = true;
  FColor = clBtnFace;
}

QSlider* TTrackBar::Slider() const { return qobject_cast<QSlider*>(Widget()); }

void TTrackBar::CreateWidget() {
  auto* s = new QSlider();
  s->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(s, &QSlider::valueChanged, s, [this](int value) {
    TMessageLoop::Instance().Guarded([&] {
      if (FSyncing || value == FPosition) return;
      FPosition = value;
      Changed();
    });
  });
  AdoptWidget(s);
}

void TTrackBar::UpdateWidgetText() {
  QSlider* s = Slider();
  if (!s) return;
  FSyncing = true;
  const bool vertical = FOrientation == trVertical;
  s->setOrientation(vertical ? Qt::Vertical : Qt::Horizontal);
  // The platform's vertical track bar has its minimum at the top.
  s->setInvertedAppearance(vertical);
  s->setInvertedControls(false);
  s->setRange(std::min(FMin, FMax), std::max(FMin, FMax));
  s->setSingleStep(FLineSize);
  s->setPageStep(FPageSize);
  s->setValue(FPosition);
  s->setTickInterval(std::max(1, FFrequency));
  QSlider::TickPosition ticks = QSlider::NoTicks;
  if (FTickStyle == tsAuto) {
    ticks = FTickMarks == tmBoth      ? QSlider::TicksBothSides
            : FTickMarks == tmTopLeft ? QSlider::TicksAbove
                                      : QSlider::TicksBelow;
  }
  s->setTickPosition(ticks);
  FSyncing = false;
}

void TTrackBar::Changed() {
  if (OnChange && !Loading(this)) OnChange(this);
}

void TTrackBar::SetFrequency(int value) {
  FFrequency = value;
  UpdateWidgetText();
}

void TTrackBar::SetLineSize(int value) {
  FLineSize = value;
  UpdateWidgetText();
}

void TTrackBar::SetMax(int value) {
  FMax = value;
  if (!Loading(this)) {
    if (FMin > FMax) FMin = FMax;
    FPosition = std::clamp(FPosition, FMin, FMax);
  }
  UpdateWidgetText();
}

void TTrackBar::SetMin(int value) {
  FMin = value;
  if (!Loading(this)) {
    if (FMax < FMin) FMax = FMin;
    FPosition = std::clamp(FPosition, FMin, FMax);
  }
  UpdateWidgetText();
}

void TTrackBar::SetOrientation(TTrackBarOrientation value) {
  if (FOrientation == value) return;
  FOrientation = value;
  // Turning the bar swaps its width and height, as the designer does.
  if (!Loading(this)) SetBounds(FLeft, FTop, FHeight, FWidth);
  UpdateWidgetText();
}

void TTrackBar::SetPageSize(int value) {
  FPageSize = value;
  UpdateWidgetText();
}

void TTrackBar::SetPosition(int value) {
  if (!Loading(this)) value = std::clamp(value, std::min(FMin, FMax), std::max(FMin, FMax));
  if (FPosition == value) return;
  FPosition = value;
  UpdateWidgetText();
  Changed();
}

void TTrackBar::SetSelEnd(int value) {
  FSelEnd = value;
  Invalidate();
}

void TTrackBar::SetSelStart(int value) {
  FSelStart = value;
  Invalidate();
}

void TTrackBar::SetSliderVisible(bool value) {
  FSliderVisible = value;
  Invalidate();
}

void TTrackBar::SetTickMarks(TTickMark value) {
  FTickMarks = value;
  UpdateWidgetText();
}

void TTrackBar::SetTickStyle(TTickStyle value) {
  FTickStyle = value;
  UpdateWidgetText();
}

// ---------------------------------------------------------------------------------------
// TCustomUpDown

LUMORA_CLASS_IMPL(TCustomUpDown) {}

TCustomUpDown::TCustomUpDown(TComponent* owner) : TWinControl(owner) {
  FWidth = 15;  // the platform's width of an up-down control
  FHeight = 25;
  FColor = clBtnFace;
}

void TCustomUpDown::CreateWidget() { AdoptWidget(new TPaintedWidget(this, true)); }

void TCustomUpDown::SetAssociate(TWinControl* value) {
  if (!ReplaceComponentLink(this, FAssociate, value)) return;
  if (FAssociate && !Loading(this)) UpdateAssociate();
}

void TCustomUpDown::Notification(TComponent* component, TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation == opRemove && component == FAssociate) FAssociate = nullptr;
}

void TCustomUpDown::Loaded() {
  TWinControl::Loaded();
  UpdateAssociate();
}

void TCustomUpDown::SetMax(int value) {
  FMax = value;
  Invalidate();
}

void TCustomUpDown::SetMin(int value) {
  FMin = value;
  Invalidate();
}

void TCustomUpDown::SetOrientation(TUDOrientation value) {
  FOrientation = value;
  Invalidate();
}

void TCustomUpDown::SetPosition(int value) {
  if (!Loading(this)) value = std::clamp(value, std::min(FMin, FMax), std::max(FMin, FMax));
  FPosition = value;
  if (!Loading(this)) UpdateAssociate();
}

void TCustomUpDown::SetThousands(bool value) {
  FThousands = value;
  if (!Loading(this)) UpdateAssociate();
}

void TCustomUpDown::UpdateAssociate() {
  if (!FAssociate) return;
  std::string digits = std::to_string(FPosition < 0 ? -static_cast<long long>(FPosition) : FPosition);
  if (FThousands) {
    for (int i = static_cast<int>(digits.size()) - 3; i > 0; i -= 3) digits.insert(static_cast<std::size_t>(i), ",");
  }
  FAssociate->SetText((FPosition < 0 ? "-" : "") + digits);
}

bool TCustomUpDown::CanChange() {
  bool allow = true;
  if (OnChanging) OnChanging(this, allow);
  return allow;
}

TUDBtnType TCustomUpDown::ButtonAt(int x, int y) const {
  if (FOrientation == udVertical) return y < FHeight / 2 ? btNext : btPrev;
  return x >= FWidth / 2 ? btNext : btPrev;
}

void TCustomUpDown::ButtonClick(TUDBtnType button) {
  // The number in the associated control counts, in case the user typed one.
  if (FAssociate) {
    std::string text = FAssociate->Text();
    text.erase(std::remove(text.begin(), text.end(), ','), text.end());
    try {
      const int typed = static_cast<int>(StrToInt(Trim(text)));
      FPosition = std::clamp(typed, std::min(FMin, FMax), std::max(FMin, FMax));
    } catch (const EConvertError&) {
    }
  }
  if (CanChange()) {
    const long long step = button == btNext ? FIncrement : -static_cast<long long>(FIncrement);
    long long p = static_cast<long long>(FPosition) + step;
    const int lo = std::min(FMin, FMax);
    const int hi = std::max(FMin, FMax);
    if (p > hi) p = FWrap ? lo : hi;
    if (p < lo) p = FWrap ? hi : lo;
    FPosition = static_cast<int>(p);
    UpdateAssociate();
  }
  if (OnClick) OnClick(this, button);
}

void TCustomUpDown::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  if (button == mbLeft && !Designing() && FEnabled) {
    const TUDBtnType b = ButtonAt(x, y);
    FPressed = b;
    Invalidate();
    ButtonClick(b);
  }
  TWinControl::MouseDown(button, shift, x, y);
}

void TCustomUpDown::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  if (FPressed >= 0) {
    FPressed = -1;
    Invalidate();
  }
  TWinControl::MouseUp(button, shift, x, y);
}

void TCustomUpDown::KeyDown(Word& key, TShiftState shift) {
  TWinControl::KeyDown(key, shift);
  if (!FArrowKeys || key == 0) return;
  if (key == VK_UP || key == VK_RIGHT) {
    ButtonClick(btNext);
    key = 0;
  } else if (key == VK_DOWN || key == VK_LEFT) {
    ButtonClick(btPrev);
    key = 0;
  }
}

void TCustomUpDown::Paint(QPainter& painter) {
  painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(clBtnFace));
  const bool vertical = FOrientation == udVertical;
  const QRect first = vertical ? QRect(0, 0, FWidth, FHeight / 2) : QRect(0, 0, FWidth / 2, FHeight);
  const QRect second = vertical ? QRect(0, FHeight / 2, FWidth, FHeight - FHeight / 2)
                                : QRect(FWidth / 2, 0, FWidth - FWidth / 2, FHeight);
  // The first part is "next" for a vertical control (up), "previous" for a horizontal one (left).
  const TUDBtnType firstType = vertical ? btNext : btPrev;
  auto button = [&](QRect r, TUDBtnType type, int direction) {
    QRect edge = r;
    if (FPressed == type) {
      Frame3D(painter, edge, Sys(clBtnShadow), Sys(clBtnShadow));
    } else {
      Frame3D(painter, edge, Sys(cl3DLight), Sys(cl3DDkShadow));
      Frame3D(painter, edge, Sys(clBtnHighlight), Sys(clBtnShadow));
    }
    // A small arrow: up, down, left or right.
    const QColor ink = FEnabled ? Sys(clBtnText) : Sys(clGrayText);
    const int off = FPressed == type ? 1 : 0;
    const int cx = r.left() + r.width() / 2 + off;
    const int cy = r.top() + r.height() / 2 + off;
    for (int i = 0; i < 3; ++i) {
      switch (direction) {
        case 0: HLine(painter, cx - i, cx + i + 1, cy - 1 + i, ink); break;
        case 1: HLine(painter, cx - i, cx + i + 1, cy + 1 - i, ink); break;
        case 2: VLine(painter, cx - 1 + i, cy - i, cy + i + 1, ink); break;
        case 3: VLine(painter, cx + 1 - i, cy - i, cy + i + 1, ink); break;
      }
    }
  };
  button(first, firstType, vertical ? 0 : 2);
  button(second, vertical ? btPrev : btNext, vertical ? 1 : 3);
}

LUMORA_CLASS_IMPL(TUpDown) {
  c.Property("AlignButton", &TUpDown::AlignButton, &TUpDown::SetAlignButton).Default(udRight);
  PublishControlProperties(c, {"Anchors"});
  c.Property("Associate", &TUpDown::Associate, &TUpDown::SetAssociate);
  c.Property("ArrowKeys", &TUpDown::ArrowKeys, &TUpDown::SetArrowKeys).Default(true);
  PublishControlProperties(c, {"Enabled"});
  c.Property("Min", &TUpDown::Min, &TUpDown::SetMin).NoDefault();
  c.Property("Max", &TUpDown::Max, &TUpDown::SetMax).Default(100);
  c.Property("Increment", &TUpDown::Increment, &TUpDown::SetIncrement).Default(1);
  PublishControlProperties(c, {"Constraints"});
  c.Property("Orientation", &TUpDown::Orientation, &TUpDown::SetOrientation).Default(udVertical);
  PublishControlProperties(c, {"ParentShowHint", "PopupMenu"});
  c.Property("Position", &TUpDown::Position, &TUpDown::SetPosition).NoDefault();
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop"});
  c.Property("Thousands", &TUpDown::Thousands, &TUpDown::SetThousands).Default(true);
  PublishControlProperties(c, {"Visible"});
  c.Property("Wrap", &TUpDown::Wrap, &TUpDown::SetWrap).NoDefault();
  c.Property("OnChanging", &TUpDown::OnChanging, &TUpDown::OnChanging);
  c.Property("OnClick", &TUpDown::OnClick, &TUpDown::OnClick);
  PublishControlProperties(c, {"OnEnter", "OnExit", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
}

// ---------------------------------------------------------------------------------------
// TCustomHotKey

LUMORA_CLASS_IMPL(TCustomHotKey) {}

TCustomHotKey::TCustomHotKey(TComponent* owner) : TWinControl(owner) {
  FWidth = 121;
  FHeight = 25;
  FTabStop = true;
  FParentColor = false;
  FColor = clWindow;
}

void TCustomHotKey::CreateWidget() {
  auto* e = new QLineEdit();
  e->setReadOnly(true);
  e->setFocusPolicy(Qt::StrongFocus);
  e->setContextMenuPolicy(Qt::NoContextMenu);
  AdoptWidget(e);
}

void TCustomHotKey::UpdateWidgetText() {
  auto* e = qobject_cast<QLineEdit*>(Widget());
  if (!e) return;
  const std::string text = FHotKey == 0 ? std::string("None") : ShortCutToText(FHotKey);
  e->setText(QString::fromStdString(text));
}

void TCustomHotKey::SetHotKey(TShortCut value) {
  if (FHotKey == value) return;
  FHotKey = value;
  UpdateWidgetText();
}

void TCustomHotKey::KeyDown(Word& key, TShiftState shift) {
  TWinControl::KeyDown(key, shift);
  if (key == 0 || Designing()) return;
  // Modifiers alone make no hot key; Tab moves on as in any control.
  if (key == VK_SHIFT || key == VK_CONTROL || key == VK_MENU) {
    key = 0;
    return;
  }
  if (key == VK_TAB) return;
  const bool shiftDown = shift.Contains(ssShift);
  const bool ctrl = shift.Contains(ssCtrl);
  const bool alt = shift.Contains(ssAlt);
  TShortCut shortCut = MakeShortCut(key, (shiftDown ? scShift : 0) | (ctrl ? scCtrl : 0) | (alt ? scAlt : 0));
  if ((key == VK_BACK || key == VK_DELETE) && !shiftDown && !ctrl && !alt) shortCut = scNone;
  // A combination of modifiers the control refuses gives way to Modifiers.
  const THKInvalidKey combination = shiftDown && ctrl && alt ? hcShiftCtrlAlt
                                    : ctrl && alt            ? hcCtrlAlt
                                    : shiftDown && alt       ? hcShiftAlt
                                    : shiftDown && ctrl      ? hcShiftCtrl
                                    : alt                    ? hcAlt
                                    : ctrl                   ? hcCtrl
                                    : shiftDown              ? hcShift
                                                             : hcNone;
  if (shortCut != scNone && FInvalidKeys.Contains(combination)) {
    int modifiers = 0;
    if (FModifiers.Contains(hkShift)) modifiers |= scShift;
    if (FModifiers.Contains(hkCtrl)) modifiers |= scCtrl;
    if (FModifiers.Contains(hkAlt)) modifiers |= scAlt;
    shortCut = MakeShortCut(key, modifiers);
  }
  key = 0;
  if (shortCut == FHotKey) return;
  SetHotKey(shortCut);
  if (OnChange && !Loading(this)) OnChange(this);
}

LUMORA_CLASS_IMPL(THotKey) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode", "Constraints", "Enabled"});
  c.Property("HotKey", &THotKey::HotKey, &THotKey::SetHotKey).NoDefault();
  c.Property("InvalidKeys", &THotKey::InvalidKeys, &THotKey::SetInvalidKeys).NoDefault();
  c.Property("Modifiers", &THotKey::Modifiers, &THotKey::SetModifiers).NoDefault();
  PublishControlProperties(c, {"ParentBiDiMode", "ParentShowHint", "PopupMenu", "ShowHint", "TabOrder", "TabStop",
                               "Visible"});
  c.Property("OnChange", &THotKey::OnChange, &THotKey::OnChange);
  PublishControlProperties(c, {"OnEnter", "OnExit", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("TabStop").Default(true);
}

// ---------------------------------------------------------------------------------------
// THeaderSection, THeaderSections, THeaderControl

LUMORA_CLASS_IMPL(THeaderSection) {
  c.Property("AllowClick", &THeaderSection::AllowClick, &THeaderSection::SetAllowClick).Default(true);
  c.Property("Alignment", &THeaderSection::Alignment, &THeaderSection::SetAlignment).Default(taLeftJustify);
  c.Property("AutoSize", &THeaderSection::AutoSize, &THeaderSection::SetAutoSize).Default(false);
  c.Property("BiDiMode", &THeaderSection::BiDiMode, &THeaderSection::SetBiDiMode).Stored(&THeaderSection::IsBiDiModeStored);
  c.Property("ImageIndex", &THeaderSection::ImageIndex, &THeaderSection::SetImageIndex).NoDefault();
  c.Property("MaxWidth", &THeaderSection::MaxWidth, &THeaderSection::SetMaxWidth).Default(10000);
  c.Property("MinWidth", &THeaderSection::MinWidth, &THeaderSection::SetMinWidth).Default(0);
  c.Property("ParentBiDiMode", &THeaderSection::ParentBiDiMode, &THeaderSection::SetParentBiDiMode).Default(true);
  c.Property("Style", &THeaderSection::Style, &THeaderSection::SetStyle).Default(hsText);
  c.Property("Text", &THeaderSection::Text, &THeaderSection::SetText);
  c.Property("Width", &THeaderSection::Width, &THeaderSection::SetWidth);
}

// The section joins its collection once its own fields exist: joining repaints the header.
THeaderSection::THeaderSection(TCollection* collection) : TCollectionItem(nullptr) { SetCollection(collection); }

void THeaderSection::Assign(TPersistent* source) {
  if (auto* s = dynamic_cast<THeaderSection*>(source)) {
    FAllowClick = s->FAllowClick;
    FAlignment = s->FAlignment;
    FAutoSize = s->FAutoSize;
    FBiDiMode = s->FBiDiMode;
    FParentBiDiMode = s->FParentBiDiMode;
    FImageIndex = s->FImageIndex;
    FMaxWidth = s->FMaxWidth;
    FMinWidth = s->FMinWidth;
    FStyle = s->FStyle;
    FText = s->FText;
    FWidth = s->FWidth;
    Changed(false);
    return;
  }
  TCollectionItem::Assign(source);
}

std::string THeaderSection::GetDisplayName() const {
  return FText.empty() ? TCollectionItem::GetDisplayName() : FText;
}

void THeaderSection::SetAlignment(TAlignment value) {
  FAlignment = value;
  Changed(false);
}

void THeaderSection::SetAutoSize(bool value) {
  FAutoSize = value;
  Changed(true);
}

void THeaderSection::SetBiDiMode(TBiDiMode value) {
  FBiDiMode = value;
  FParentBiDiMode = false;
  Changed(false);
}

void THeaderSection::SetImageIndex(int value) {
  FImageIndex = value;
  Changed(false);
}

void THeaderSection::SetMaxWidth(int value) {
  FMaxWidth = value;
  Changed(true);
}

void THeaderSection::SetMinWidth(int value) {
  FMinWidth = value;
  Changed(true);
}

void THeaderSection::SetStyle(THeaderSectionStyle value) {
  FStyle = value;
  Changed(false);
}

void THeaderSection::SetText(const std::string& value) {
  FText = value;
  Changed(false);
}

void THeaderSection::SetWidth(int value) {
  if (Collection() && !static_cast<THeaderSections*>(Collection())->GetOwner()) return;
  value = std::max(value, 0);
  if (FMinWidth > 0) value = std::max(value, FMinWidth);
  if (FMaxWidth > 0) value = std::min(value, FMaxWidth);
  FWidth = value;
  Changed(true);
}

int THeaderSection::Left() const {
  int x = 0;
  if (TCollection* c = Collection()) {
    for (int i = 0; i < Index(); ++i) x += static_cast<THeaderSection*>(c->Items(i))->FWidth;
  }
  return x;
}

LUMORA_CLASS_IMPL(THeaderSections) {}

THeaderSections::THeaderSections(THeaderControl* header) : TCollection(THeaderSection::StaticClass()), FHeader(header) {}

TPersistent* THeaderSections::GetOwner() { return FHeader; }

void THeaderSections::Update(TCollectionItem*) {
  if (FHeader) FHeader->SectionsChanged();
}

LUMORA_CLASS_IMPL(THeaderControl) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode", "BorderWidth", "DragCursor", "DragKind", "DragMode"});
  c.Property("DragReorder", &THeaderControl::DragReorder, &THeaderControl::SetDragReorder).NoDefault();
  PublishControlProperties(c, {"Enabled", "Font"});
  c.Property("FullDrag", &THeaderControl::FullDrag, &THeaderControl::SetFullDrag).Default(true);
  c.Property("HotTrack", &THeaderControl::HotTrack, &THeaderControl::SetHotTrack).Default(false);
  c.Property("Images", &THeaderControl::Images, &THeaderControl::SetImages);
  PublishControlProperties(c, {"Constraints"});
  c.Property("Sections", &THeaderControl::Sections, &THeaderControl::SetSections);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("Style", &THeaderControl::Style, &THeaderControl::SetStyle).Default(hsButtons);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentFont", "ParentShowHint", "PopupMenu", "Visible"});
  c.Property("OnDrawSection", &THeaderControl::OnDrawSection, &THeaderControl::OnDrawSection);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnResize"});
  c.Property("OnSectionClick", &THeaderControl::OnSectionClick, &THeaderControl::OnSectionClick);
  c.Property("OnSectionResize", &THeaderControl::OnSectionResize, &THeaderControl::OnSectionResize);
  c.Property("OnSectionTrack", &THeaderControl::OnSectionTrack, &THeaderControl::OnSectionTrack);
  c.Property("OnSectionDrag", &THeaderControl::OnSectionDrag, &THeaderControl::OnSectionDrag);
  c.Property("OnSectionEndDrag", &THeaderControl::OnSectionEndDrag, &THeaderControl::OnSectionEndDrag);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
  c.Property("Align").Default(alTop);
}

THeaderControl::THeaderControl(TComponent* owner) : TWinControl(owner) {
  FWidth = 150;
  FHeight = 17;
  FAlign = alTop;
  FColor = clBtnFace;
  FSections = new THeaderSections(this);
}

THeaderControl::~THeaderControl() {
  DestroyWidget();
  THeaderSections* sections = FSections;
  FSections = nullptr;
  delete sections;
}

void THeaderControl::CreateWidget() { AdoptWidget(new TPaintedWidget(this, true)); }

void THeaderControl::SectionsChanged() {
  if (FSections) Invalidate();
}

void THeaderControl::SetImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FImages, value)) return;
  Invalidate();
}

void THeaderControl::Notification(TComponent* component, TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation == opRemove && component == FImages) {
    FImages = nullptr;
    Invalidate();
  }
}

void THeaderControl::SetStyle(THeaderStyle value) {
  FStyle = value;
  Invalidate();
}

THeaderSection* THeaderControl::SectionAt(int x) const {
  for (int i = 0; i < FSections->Count(); ++i) {
    THeaderSection* s = FSections->Items(i);
    if (x >= s->Left() && x < s->Right()) return s;
  }
  return nullptr;
}

void THeaderControl::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  if (button == mbLeft && !Designing() && FEnabled) {
    // Near a section's right edge: resize it; elsewhere: press it.
    for (int i = 0; i < FSections->Count(); ++i) {
      THeaderSection* s = FSections->Items(i);
      if (std::abs(x - s->Right()) <= 3) {
        FTracking = s;
        FTrackOrigin = x;
        FTrackStart = s->Width();
        if (OnSectionTrack) OnSectionTrack(this, s, s->Width(), tsTrackBegin);
        break;
      }
    }
    if (!FTracking) {
      FPressed = SectionAt(x);
      if (FPressed && !FPressed->AllowClick()) FPressed = nullptr;
      Invalidate();
    }
  }
  TWinControl::MouseDown(button, shift, x, y);
}

void THeaderControl::MouseMove(TShiftState shift, int x, int y) {
  if (FTracking) {
    FTracking->SetWidth(FTrackStart + x - FTrackOrigin);
    if (OnSectionTrack) OnSectionTrack(this, FTracking, FTracking->Width(), tsTrackMove);
  }
  TWinControl::MouseMove(shift, x, y);
}

void THeaderControl::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  if (FTracking) {
    THeaderSection* s = FTracking;
    FTracking = nullptr;
    if (OnSectionTrack) OnSectionTrack(this, s, s->Width(), tsTrackEnd);
    if (OnSectionResize) OnSectionResize(this, s);
  } else if (FPressed) {
    THeaderSection* s = FPressed;
    FPressed = nullptr;
    Invalidate();
    if (SectionAt(x) == s && OnSectionClick) OnSectionClick(this, s);
  }
  TWinControl::MouseUp(button, shift, x, y);
}

void THeaderControl::Paint(QPainter& painter) {
  painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor));
  auto drawButton = [&](QRect r, bool pressed) {
    QRect edge = r;
    if (pressed) {
      Frame3D(painter, edge, Sys(clBtnShadow), Sys(clBtnShadow));
    } else if (FStyle == hsFlat) {
      Frame3D(painter, edge, Sys(clBtnHighlight), Sys(clBtnShadow));
    } else {
      Frame3D(painter, edge, Sys(clBtnHighlight), Sys(cl3DDkShadow));
      Frame3D(painter, edge, Sys(cl3DLight), Sys(clBtnShadow));
    }
  };
  int x = 0;
  for (int i = 0; i < FSections->Count(); ++i) {
    THeaderSection* s = FSections->Items(i);
    const QRect r(x, 0, s->Width(), FHeight);
    const bool pressed = s == FPressed;
    if (s->Style() == hsOwnerDraw && OnDrawSection) {
      OnDrawSection(this, s, Rect(r.left(), r.top(), r.right() + 1, r.bottom() + 1), pressed);
    } else {
      drawButton(r, pressed);
      QRect area = r.adjusted(4, 1, -4, -1);
      if (pressed) area.translate(1, 1);
      if (FImages && s->ImageIndex() >= 0 && s->ImageIndex() < FImages->Count()) {
        FImages->Draw(painter, area.left(), area.top() + (area.height() - FImages->Height()) / 2, s->ImageIndex(), FEnabled);
        area.setLeft(area.left() + FImages->Width() + 2);
      }
      TCaptionLayout layout;
      layout.HAlign = s->Alignment() == taCenter         ? TTextHAlign::Center
                      : s->Alignment() == taRightJustify ? TTextHAlign::Right
                                                         : TTextHAlign::Left;
      layout.VAlign = TTextVAlign::Center;
      layout.ShowAccelChar = false;
      layout.Disabled = !FEnabled;
      painter.save();
      painter.setClipRect(area);
      DrawCaption(painter, area, FFont->Handle(), FFont->ToUnicode(s->Text()), layout, Sys(FFont->Color()));
      painter.restore();
    }
    x += s->Width();
  }
  // What lies beyond the last section is an empty button.
  if (x < FWidth) drawButton(QRect(x, 0, FWidth - x, FHeight), false);
}

// ---------------------------------------------------------------------------------------
// Dates

namespace {

const QDate kDayZero(1899, 12, 30);

// Days since 30 December 1899 and the fraction of the day, kept within the calendar.
QDateTime ToQDateTime(double value) {
  if (!std::isfinite(value)) value = 0;
  value = std::clamp(value, -693593.0, 2958465.99999);
  const double days = std::floor(value);
  qint64 ms = std::llround((value - days) * 86400000.0);
  ms = std::clamp<qint64>(ms, 0, 86399999);
  return QDateTime(kDayZero.addDays(static_cast<qint64>(days)), QTime(0, 0).addMSecs(static_cast<int>(ms)));
}

double FromQDateTime(const QDateTime& d) {
  return static_cast<double>(kDayZero.daysTo(d.date())) + d.time().msecsSinceStartOfDay() / 86400000.0;
}

QString DateFormatOf(TDTDateFormat format) {
  return format == dfLong ? QStringLiteral("dddd, MMMM dd, yyyy") : QStringLiteral("M/d/yyyy");
}

}  // namespace

LUMORA_CLASS_IMPL(TMonthCalColors) {
  c.Property("BackColor", &TMonthCalColors::BackColor, &TMonthCalColors::SetBackColor).Default(clWindow);
  c.Property("TextColor", &TMonthCalColors::TextColor, &TMonthCalColors::SetTextColor).Default(clWindowText);
  c.Property("TitleBackColor", &TMonthCalColors::TitleBackColor, &TMonthCalColors::SetTitleBackColor).Default(clActiveCaption);
  c.Property("TitleTextColor", &TMonthCalColors::TitleTextColor, &TMonthCalColors::SetTitleTextColor).Default(clWhite);
  c.Property("MonthBackColor", &TMonthCalColors::MonthBackColor, &TMonthCalColors::SetMonthBackColor).Default(clWhite);
  c.Property("TrailingTextColor", &TMonthCalColors::TrailingTextColor, &TMonthCalColors::SetTrailingTextColor)
      .Default(clInactiveCaptionText);
}

void TMonthCalColors::Assign(TPersistent* source) {
  if (auto* c = dynamic_cast<TMonthCalColors*>(source)) {
    FBackColor = c->FBackColor;
    FTextColor = c->FTextColor;
    FTitleBackColor = c->FTitleBackColor;
    FTitleTextColor = c->FTitleTextColor;
    FMonthBackColor = c->FMonthBackColor;
    FTrailingTextColor = c->FTrailingTextColor;
    return;
  }
  TPersistent::Assign(source);
}

LUMORA_CLASS_IMPL(TDateTimePicker) {
  PublishControlProperties(c, {"Anchors", "BiDiMode"});
  c.Property("CalAlignment", &TDateTimePicker::CalAlignment, &TDateTimePicker::SetCalAlignment).NoDefault();
  c.Property("CalColors", &TDateTimePicker::CalColors, &TDateTimePicker::SetCalColors);
  PublishControlProperties(c, {"Constraints"});
  c.Property("Date", &TDateTimePicker::Date, &TDateTimePicker::SetDate);
  c.Property("Time", &TDateTimePicker::Time, &TDateTimePicker::SetTime);
  c.Property("ShowCheckbox", &TDateTimePicker::ShowCheckbox, &TDateTimePicker::SetShowCheckbox).Default(false);
  c.Property("Checked", &TDateTimePicker::Checked, &TDateTimePicker::SetChecked).Default(true);
  PublishControlProperties(c, {"Color"});
  c.Property("DateFormat", &TDateTimePicker::DateFormat, &TDateTimePicker::SetDateFormat).NoDefault();
  c.Property("DateMode", &TDateTimePicker::DateMode, &TDateTimePicker::SetDateMode).NoDefault();
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font", "ImeMode", "ImeName"});
  c.Property("Kind", &TDateTimePicker::Kind, &TDateTimePicker::SetKind).NoDefault();
  c.Property("MaxDate", &TDateTimePicker::MaxDate, &TDateTimePicker::SetMaxDate);
  c.Property("MinDate", &TDateTimePicker::MinDate, &TDateTimePicker::SetMinDate);
  c.Property("ParseInput", &TDateTimePicker::ParseInput, &TDateTimePicker::SetParseInput).NoDefault();
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentFont", "ParentShowHint", "PopupMenu",
                               "ShowHint", "TabOrder", "TabStop", "Visible", "OnClick"});
  c.Property("OnCloseUp", &TDateTimePicker::OnCloseUp, &TDateTimePicker::OnCloseUp);
  c.Property("OnChange", &TDateTimePicker::OnChange, &TDateTimePicker::OnChange);
  c.Property("OnDropDown", &TDateTimePicker::OnDropDown, &TDateTimePicker::OnDropDown);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit",
                               "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnStartDock", "OnStartDrag"});
  c.Property("OnUserInput", &TDateTimePicker::OnUserInput, &TDateTimePicker::OnUserInput);
  c.Property("Color").Default(clWindow);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDateTimePicker::TDateTimePicker(TComponent* owner) : TWinControl(owner) {
  FWidth = 186;
  FHeight = 25;
  FTabStop = true;
  FParentColor = false;
  FColor = clWindow;
  FCalColors = new TMonthCalColors();
  FDateTime = FromQDateTime(QDateTime::currentDateTime());
}

TDateTimePicker::~TDateTimePicker() {
  DestroyWidget();
  delete FCalColors;
}

QDateTimeEdit* TDateTimePicker::Editor() const { return qobject_cast<QDateTimeEdit*>(Widget()); }

void TDateTimePicker::CreateWidget() {
  auto* e = new QDateTimeEdit();
  e->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(e, &QDateTimeEdit::dateTimeChanged, e, [this](const QDateTime& value) {
    TMessageLoop::Instance().Guarded([&] {
      if (FSyncing) return;
      // The part the control does not show stays as it was.
      const double edited = FromQDateTime(value);
      const double day = std::floor(FDateTime);
      const double next = FKind == dtkDate ? std::floor(edited) + (FDateTime - day) : day + (edited - std::floor(edited));
      if (next == FDateTime) return;
      FDateTime = next;
      if (OnChange && !Loading(this)) OnChange(this);
    });
  });
  AdoptWidget(e);
}

void TDateTimePicker::UpdateWidgetText() {
  QDateTimeEdit* e = Editor();
  if (!e) return;
  FSyncing = true;
  if (FMinDate != 0 || FMaxDate != 0) {
    e->setDateTimeRange(FMinDate != 0 ? ToQDateTime(FMinDate) : ToQDateTime(-693593),
                        FMaxDate != 0 ? ToQDateTime(FMaxDate) : ToQDateTime(2958465.99));
  }
  e->setDisplayFormat(FKind == dtkTime ? QStringLiteral("h:mm:ss AP") : DateFormatOf(FDateFormat));
  e->setCalendarPopup(FKind == dtkDate && FDateMode == dmComboBox);
  e->setDateTime(ToQDateTime(FDateTime));
  FSyncing = false;
}

bool TDateTimePicker::CanAutoSize(int&, int&) { return false; }

void TDateTimePicker::SetDateTime(TDateTime value) {
  if (FDateTime == value) return;
  FDateTime = value;
  UpdateWidgetText();
}

void TDateTimePicker::SetDate(TDateTime value) {
  SetDateTime(std::floor(static_cast<double>(value)) + (FDateTime - std::floor(static_cast<double>(FDateTime))));
}

void TDateTimePicker::SetTime(TDateTime value) {
  const double v = value;
  SetDateTime(std::floor(static_cast<double>(FDateTime)) + (v - std::floor(v)));
}

void TDateTimePicker::SetChecked(bool value) { FChecked = value; }

void TDateTimePicker::SetDateFormat(TDTDateFormat value) {
  FDateFormat = value;
  UpdateWidgetText();
}

void TDateTimePicker::SetDateMode(TDTDateMode value) {
  FDateMode = value;
  UpdateWidgetText();
}

void TDateTimePicker::SetKind(TDateTimeKind value) {
  FKind = value;
  UpdateWidgetText();
}

void TDateTimePicker::SetMaxDate(TDateTime value) {
  FMaxDate = value;
  UpdateWidgetText();
}

void TDateTimePicker::SetMinDate(TDateTime value) {
  FMinDate = value;
  UpdateWidgetText();
}

// ---- TMonthCalendar

LUMORA_CLASS_IMPL(TMonthCalendar) {
  PublishControlProperties(c, {"Align", "Anchors", "AutoSize", "BorderWidth", "BiDiMode"});
  c.Property("CalColors", &TMonthCalendar::CalColors, &TMonthCalendar::SetCalColors);
  PublishControlProperties(c, {"Constraints"});
  c.Property("MultiSelect", &TMonthCalendar::MultiSelect, &TMonthCalendar::SetMultiSelect).Default(false);
  c.Property("Date", &TMonthCalendar::Date, &TMonthCalendar::SetDate);
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled"});
  c.Property("EndDate", &TMonthCalendar::EndDate, &TMonthCalendar::SetEndDate);
  c.Property("FirstDayOfWeek", &TMonthCalendar::FirstDayOfWeek, &TMonthCalendar::SetFirstDayOfWeek).Default(dowLocaleDefault);
  PublishControlProperties(c, {"Font", "ImeMode", "ImeName"});
  c.Property("MaxDate", &TMonthCalendar::MaxDate, &TMonthCalendar::SetMaxDate);
  c.Property("MaxSelectRange", &TMonthCalendar::MaxSelectRange, &TMonthCalendar::SetMaxSelectRange).Default(31);
  c.Property("MinDate", &TMonthCalendar::MinDate, &TMonthCalendar::SetMinDate);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentFont", "ParentShowHint", "PopupMenu", "ShowHint"});
  c.Property("ShowToday", &TMonthCalendar::ShowToday, &TMonthCalendar::SetShowToday).Default(true);
  c.Property("ShowTodayCircle", &TMonthCalendar::ShowTodayCircle, &TMonthCalendar::SetShowTodayCircle).Default(true);
  PublishControlProperties(c, {"TabOrder", "TabStop", "Visible"});
  c.Property("WeekNumbers", &TMonthCalendar::WeekNumbers, &TMonthCalendar::SetWeekNumbers).Default(false);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag",
                               "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnStartDock",
                               "OnStartDrag"});
  c.Property("TabStop").Default(true);
}

TMonthCalendar::TMonthCalendar(TComponent* owner) : TWinControl(owner) {
  FWidth = 191;
  FHeight = 154;
  FTabStop = true;
  FColor = clWindow;
  FCalColors = new TMonthCalColors();
  FDate = std::floor(FromQDateTime(QDateTime::currentDateTime()));
}

TMonthCalendar::~TMonthCalendar() {
  DestroyWidget();
  delete FCalColors;
}

void TMonthCalendar::CreateWidget() {
  auto* cal = new QCalendarWidget();
  cal->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(cal, &QCalendarWidget::selectionChanged, cal, [this, cal] {
    TMessageLoop::Instance().Guarded([&] {
      if (FSyncing) return;
      FDate = FromQDateTime(QDateTime(cal->selectedDate(), QTime(0, 0))) + (FDate - std::floor(static_cast<double>(FDate)));
      FEndDate = FDate;
      Click();
    });
  });
  AdoptWidget(cal);
}

void TMonthCalendar::UpdateWidgetText() {
  auto* cal = qobject_cast<QCalendarWidget*>(Widget());
  if (!cal) return;
  FSyncing = true;
  if (FMinDate != 0) cal->setMinimumDate(ToQDateTime(FMinDate).date());
  if (FMaxDate != 0) cal->setMaximumDate(ToQDateTime(FMaxDate).date());
  cal->setSelectedDate(ToQDateTime(FDate).date());
  cal->setVerticalHeaderFormat(FWeekNumbers ? QCalendarWidget::ISOWeekNumbers : QCalendarWidget::NoVerticalHeader);
  if (FFirstDayOfWeek != dowLocaleDefault) cal->setFirstDayOfWeek(static_cast<Qt::DayOfWeek>(FFirstDayOfWeek + 1));
  FSyncing = false;
}

void TMonthCalendar::SetDate(TDateTime value) {
  FDate = value;
  UpdateWidgetText();
}

void TMonthCalendar::SetFirstDayOfWeek(TCalDayOfWeek value) {
  FFirstDayOfWeek = value;
  UpdateWidgetText();
}

void TMonthCalendar::SetMaxDate(TDateTime value) {
  FMaxDate = value;
  UpdateWidgetText();
}

void TMonthCalendar::SetMinDate(TDateTime value) {
  FMinDate = value;
  UpdateWidgetText();
}

void TMonthCalendar::SetShowToday(bool value) { FShowToday = value; }

void TMonthCalendar::SetWeekNumbers(bool value) {
  FWeekNumbers = value;
  UpdateWidgetText();
}

// ---------------------------------------------------------------------------------------
// TAnimate

LUMORA_CLASS_IMPL(TAnimate) {
  PublishControlProperties(c, {"Align"});
  c.Property("Active", &TAnimate::Active, &TAnimate::SetActive).NoDefault();
  PublishControlProperties(c, {"Anchors", "AutoSize", "BorderWidth"});
  c.Property("Center", &TAnimate::Center, &TAnimate::SetCenter).Default(true);
  PublishControlProperties(c, {"Color"});
  c.Property("CommonAVI", &TAnimate::CommonAVI, &TAnimate::SetCommonAVI).Default(aviNone);
  PublishControlProperties(c, {"Constraints"});
  c.Property("FileName", &TAnimate::FileName, &TAnimate::SetFileName);
  c.Property("Open", &TAnimate::Open, &TAnimate::SetOpen).Default(false);
  PublishControlProperties(c, {"ParentColor", "ParentShowHint"});
  c.Property("Repetitions", &TAnimate::Repetitions, &TAnimate::SetRepetitions).Default(0);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("StartFrame", &TAnimate::StartFrame, &TAnimate::SetStartFrame).Default(1);
  c.Property("StopFrame", &TAnimate::StopFrame, &TAnimate::SetStopFrame).Default(0);
  c.Property("Timers", &TAnimate::Timers, &TAnimate::SetTimers).Default(false);
  c.Property("Transparent", &TAnimate::Transparent, &TAnimate::SetTransparent).Default(true);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnOpen", &TAnimate::OnOpen, &TAnimate::OnOpen);
  c.Property("OnClose", &TAnimate::OnClose, &TAnimate::OnClose);
  c.Property("OnStart", &TAnimate::OnStart, &TAnimate::OnStart);
  c.Property("OnStop", &TAnimate::OnStop, &TAnimate::OnStop);
  c.Property("AutoSize").Default(true);
}

TAnimate::TAnimate(TComponent* owner) : TWinControl(owner) {
  FWidth = 100;
  FHeight = 80;
  FAutoSize = true;
  FColor = clBtnFace;
}

void TAnimate::CreateWidget() { AdoptWidget(new TPaintedWidget(this, false)); }

void TAnimate::SetActive(bool value) {
  if (FActive == value) return;
  FActive = value;
  if (!Loading(this)) {
    if (value && OnStart) OnStart(this);
    if (!value && OnStop) OnStop(this);
  }
  Invalidate();
}

void TAnimate::SetCommonAVI(TCommonAVI value) {
  FCommonAVI = value;
  if (value != aviNone) FFileName.clear();
  Invalidate();
}

void TAnimate::SetFileName(const std::string& value) {
  FFileName = value;
  if (!value.empty()) FCommonAVI = aviNone;
  Invalidate();
}

void TAnimate::SetOpen(bool value) {
  if (FOpen == value) return;
  FOpen = value;
  if (!Loading(this)) {
    if (value && OnOpen) OnOpen(this);
    if (!value && OnClose) OnClose(this);
  }
}

void TAnimate::SetTransparent(bool value) {
  FTransparent = value;
  Invalidate();
}

void TAnimate::Play(int fromFrame, int toFrame, int count) {
  FStartFrame = fromFrame;
  FStopFrame = toFrame;
  FRepetitions = count;
  SetActive(true);
}

void TAnimate::Stop() { SetActive(false); }

void TAnimate::Loaded() { TWinControl::Loaded(); }

void TAnimate::Paint(QPainter& painter) {
  if (!FTransparent) painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor));
  if (Designing()) DrawFocusRect(painter, QRect(0, 0, FWidth, FHeight));
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

// ---------------------------------------------------------------------------------------

void RegisterComCtrlsClasses() {
  RegisterClasses({TTabControl::StaticClass(), TPageControl::StaticClass(), TTabSheet::StaticClass(),
                   TStatusBar::StaticClass(), TTreeView::StaticClass(), TRichEdit::StaticClass(), TListView::StaticClass(),
                   TToolBar::StaticClass(), TToolButton::StaticClass(), TProgressBar::StaticClass(),
                   TTrackBar::StaticClass(), TUpDown::StaticClass(), THotKey::StaticClass(),
                   THeaderControl::StaticClass(), TDateTimePicker::StaticClass(), TMonthCalendar::StaticClass(),
                   TAnimate::StaticClass(), TCoolBar::StaticClass()});
}
