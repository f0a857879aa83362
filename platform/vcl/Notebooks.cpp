#include "platform/vcl/Notebooks.h"

#include "platform/rtti/Reader.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Publish.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPolygon>

#include <algorithm>

namespace {

constexpr const char* kDefaultPage = "Default";

// A list of page names that tells its owner when the user of the property edits it.
class TPageNames : public TStringList {
public:
  std::function<void()> Edited;
};

TPageNames* NewPageNames(std::function<void()> edited) {
  auto* names = new TPageNames();
  names->Edited = std::move(edited);
  names->OnChange = [names](TObject*) {
    if (names->Edited) names->Edited();
  };
  return names;
}

}  // namespace

// ---------------------------------------------------------------------------------------
// TPage

LUMORA_CLASS_IMPL(TPage) {
  PublishControlProperties(c, {"Caption"});
  c.Property("Height").Stored(false);
  c.Property("TabOrder", &TPage::TabOrder, &TPage::SetTabOrder).Stored(false);
  c.Property("Visible", &TPage::Visible, &TPage::SetVisible).Stored(false);
  c.Property("Width").Stored(false);
}

TPage::TPage(TComponent* owner) : TCustomControl(owner) {
  FControlStyle = TControlStyle{csAcceptsControls};
  FAlign = alClient;
  FVisible = false;
}

TPage::~TPage() {
  if (FNotebook) FNotebook->RemovePage(this);
}

void TPage::SetParent(TWinControl* parent) {
  auto* notebook = dynamic_cast<TNotebook*>(parent);
  if (FNotebook && FNotebook != notebook) FNotebook->RemovePage(this);
  TCustomControl::SetParent(parent);
  if (notebook && FNotebook != notebook) notebook->AddPage(this);
}

// Pages reads the captions afresh each time: a renamed page only has the notebook redrawn.
void TPage::TextChanged() {
  TCustomControl::TextChanged();
  if (FNotebook) FNotebook->Invalidate();
}

void TPage::Paint(QPainter& painter) {
  painter.fillRect(QRect(0, 0, FWidth, FHeight), ColorToQColor(FColor));
  if (Designing()) DrawDesignFrame(painter, FWidth, FHeight);
}

// ---------------------------------------------------------------------------------------
// TNotebook

LUMORA_CLASS_IMPL(TNotebook) {
  c.Property("ActivePage", &TNotebook::ActivePage, &TNotebook::SetActivePage).Stored(false);
  PublishControlProperties(c, {"Align", "Anchors", "Color", "Constraints", "Ctl3D", "DragCursor", "DragKind",
                               "DragMode", "Font", "Enabled"});
  c.Property("PageIndex", &TNotebook::PageIndex, &TNotebook::SetPageIndex).Default(0);
  c.Property("Pages", &TNotebook::Pages, &TNotebook::SetPages).Stored(false);
  PublishControlProperties(c, {"ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint", "PopupMenu", "ShowHint",
                               "TabOrder", "TabStop", "Visible", "OnClick", "OnDblClick", "OnDragDrop",
                               "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnMouseDown",
                               "OnMouseMove", "OnMouseUp"});
  c.Property("OnPageChanged", &TNotebook::OnPageChanged, &TNotebook::OnPageChanged);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
}

TNotebook::TNotebook(TComponent* owner) : TCustomControl(owner) {
  FControlStyle = TControlStyle{};
  FWidth = 150;
  FHeight = 150;
  FPageNames = NewPageNames([this] { PagesEdited(); });
  auto* page = new TPage(this);
  page->SetCaption(kDefaultPage);
  page->SetParent(this);
  SetPageIndex(0);
}

TNotebook::~TNotebook() {
  for (TPage* page : FPages) page->FNotebook = nullptr;
  FPages.clear();
  delete FPageNames;
}

TStrings* TNotebook::Pages() const {
  FSyncing = true;
  FPageNames->BeginUpdate();
  FPageNames->Clear();
  for (TPage* page : FPages) FPageNames->Add(page->Caption());
  FPageNames->EndUpdate();
  FSyncing = false;
  return FPageNames;
}

void TNotebook::SetPages(TStrings* value) {
  Pages();
  FPageNames->Assign(value);
}

// The names were edited: pages follow them, a page per name.
void TNotebook::PagesEdited() {
  if (FSyncing) return;
  FSyncing = true;
  const int wanted = FPageNames->Count();
  while (PageCount() > wanted) delete FPages.back();
  while (PageCount() < wanted) {
    auto* page = new TPage(this);
    page->SetParent(this);
  }
  for (int i = 0; i < wanted; ++i) FPages[i]->SetCaption(FPageNames->Strings(i));
  FSyncing = false;
  if (FPageIndex >= PageCount()) FPageIndex = PageCount() - 1;
  if (FPageIndex < 0 && PageCount() > 0) FPageIndex = 0;
  ShowActive();
}

TPage* TNotebook::PageAt(int index) const {
  if (index < 0 || index >= PageCount()) throw EListError(Format("List index out of bounds (%d)", index));
  return FPages[index];
}

void TNotebook::AddPage(TPage* page) {
  FPages.push_back(page);
  page->FNotebook = this;
  ShowActive();
}

void TNotebook::RemovePage(TPage* page) {
  const auto it = std::find(FPages.begin(), FPages.end(), page);
  if (it == FPages.end()) return;
  FPages.erase(it);
  page->FNotebook = nullptr;
  if (ComponentState().Contains(csDestroying)) return;
  if (FPageIndex >= PageCount()) FPageIndex = PageCount() - 1;
  ShowActive();
}

void TNotebook::SetPageIndex(int value) {
  if (Loading(this)) {
    FPageIndex = value;
    return;
  }
  if (value < 0 || value >= PageCount() || value == FPageIndex) return;
  FPageIndex = value;
  ShowActive();
  if (OnPageChanged) OnPageChanged(this);
}

const std::string& TNotebook::ActivePage() const {
  static const std::string none;
  return FPageIndex >= 0 && FPageIndex < PageCount() ? FPages[FPageIndex]->Caption() : none;
}

void TNotebook::SetActivePage(const std::string& caption) {
  for (int i = 0; i < PageCount(); ++i)
    if (SameText(FPages[i]->Caption(), caption)) SetPageIndex(i);
}

void TNotebook::ShowActive() {
  if (Loading(this)) return;
  for (int i = 0; i < PageCount(); ++i) {
    TPage* page = FPages[i];
    if (i == FPageIndex) {
      page->BringToFront();
      page->SetVisible(true);
    } else {
      page->SetVisible(false);
    }
  }
}

void TNotebook::ReadState(TReader& reader) {
  // The stream holds every page: the default one goes first.
  while (!FPages.empty()) delete FPages.back();
  TCustomControl::ReadState(reader);
}

void TNotebook::GetChildren(const TGetChildProc& proc, TComponent*) {
  for (TPage* page : FPages) proc(page);
}

void TNotebook::Loaded() {
  TCustomControl::Loaded();
  if (FPageIndex >= PageCount() || FPageIndex < 0) FPageIndex = PageCount() > 0 ? 0 : -1;
  ShowActive();
}

void TNotebook::Paint(QPainter& painter) {
  painter.fillRect(QRect(0, 0, FWidth, FHeight), ColorToQColor(FColor));
  if (Designing()) DrawDesignFrame(painter, FWidth, FHeight);
}

// ---------------------------------------------------------------------------------------
// TTabPage

LUMORA_CLASS_IMPL(TTabPage) {
  PublishControlProperties(c, {"Caption"});
  c.Property("Height").Stored(false);
  c.Property("TabOrder", &TTabPage::TabOrder, &TTabPage::SetTabOrder).Stored(false);
  c.Property("Visible", &TTabPage::Visible, &TTabPage::SetVisible).Stored(false);
  c.Property("Width").Stored(false);
  PublishControlProperties(c, {"OnEnter", "OnExit", "OnResize"});
}

TTabPage::TTabPage(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csAcceptsControls};
  FAlign = alClient;
  FVisible = false;
}

TTabPage::~TTabPage() {
  if (FNotebook) FNotebook->RemovePage(this);
}

void TTabPage::CreateWidget() { AdoptWidget(new TPaintedWidget(this, true)); }

void TTabPage::Paint(QPainter& painter) { painter.fillRect(QRect(0, 0, FWidth, FHeight), ColorToQColor(FColor)); }

void TTabPage::SetParent(TWinControl* parent) {
  auto* notebook = dynamic_cast<TTabbedNotebook*>(parent);
  if (FNotebook && FNotebook != notebook) FNotebook->RemovePage(this);
  TWinControl::SetParent(parent);
  if (notebook && FNotebook != notebook) notebook->AddPage(this);
}

void TTabPage::TextChanged() {
  TWinControl::TextChanged();
  if (FNotebook) FNotebook->UpdateTabs();
}

// ---------------------------------------------------------------------------------------
// TTabbedNotebook

LUMORA_CLASS_IMPL(TTabbedNotebook) {
  c.Property("ActivePage", &TTabbedNotebook::ActivePage, &TTabbedNotebook::SetActivePage).Stored(false);
  PublishControlProperties(c, {"Align", "Anchors", "Constraints", "DragKind", "Enabled"});
  c.Property("PageIndex", &TTabbedNotebook::PageIndex, &TTabbedNotebook::SetPageIndex).Default(0);
  c.Property("Pages", &TTabbedNotebook::Pages, &TTabbedNotebook::SetPages).Stored(false);
  PublishControlProperties(c, {"Font"});
  c.Property("TabsPerRow", &TTabbedNotebook::TabsPerRow, &TTabbedNotebook::SetTabsPerRow).Default(3);
  c.Property("TabFont", &TTabbedNotebook::TabFont, &TTabbedNotebook::SetTabFont);
  PublishControlProperties(c, {"ParentShowHint", "PopupMenu", "ShowHint", "TabOrder", "TabStop", "Visible",
                               "OnClick"});
  c.Property("OnChange", &TTabbedNotebook::OnChange, &TTabbedNotebook::OnChange);
  PublishControlProperties(c, {"OnEnter", "OnExit"});
  c.Property("TabStop").Default(true);
}

TTabbedNotebook::TTabbedNotebook(TComponent* owner) : TCustomTabControl(owner) {
  FWidth = 300;
  FHeight = 250;
  FTabStop = true;
  FTabFont = new TFont();
  FTabFont->OnChange = [this](TObject*) { Invalidate(); };
  SetMultiLine(true);
  FPageNames = NewPageNames([this] { PagesEdited(); });
  auto* page = new TTabPage(this);
  page->SetCaption(kDefaultPage);
  page->SetParent(this);
  SetPageIndex(0);
}

TTabbedNotebook::~TTabbedNotebook() {
  for (TTabPage* page : FPages) page->FNotebook = nullptr;
  FPages.clear();
  delete FPageNames;
  delete FTabFont;
}

TStrings* TTabbedNotebook::Pages() const {
  FSyncing = true;
  FPageNames->BeginUpdate();
  FPageNames->Clear();
  for (TTabPage* page : FPages) FPageNames->Add(page->Caption());
  FPageNames->EndUpdate();
  FSyncing = false;
  return FPageNames;
}

void TTabbedNotebook::SetPages(TStrings* value) {
  Pages();
  FPageNames->Assign(value);
}

void TTabbedNotebook::PagesEdited() {
  if (FSyncing) return;
  FSyncing = true;
  const int wanted = FPageNames->Count();
  while (PageCount() > wanted) delete FPages.back();
  while (PageCount() < wanted) {
    auto* page = new TTabPage(this);
    page->SetParent(this);
  }
  for (int i = 0; i < wanted; ++i) FPages[i]->SetCaption(FPageNames->Strings(i));
  FSyncing = false;
  UpdateTabs();
}

TTabPage* TTabbedNotebook::PageAt(int index) const {
  if (index < 0 || index >= PageCount()) throw EListError(Format("List index out of bounds (%d)", index));
  return FPages[index];
}

void TTabbedNotebook::AddPage(TTabPage* page) {
  FPages.push_back(page);
  page->FNotebook = this;
  UpdateTabs();
}

void TTabbedNotebook::RemovePage(TTabPage* page) {
  const auto it = std::find(FPages.begin(), FPages.end(), page);
  if (it == FPages.end()) return;
  FPages.erase(it);
  page->FNotebook = nullptr;
  if (ComponentState().Contains(csDestroying)) return;
  UpdateTabs();
}

void TTabbedNotebook::UpdateTabs() {
  if (FSyncing) return;
  FUpdatingTabs = true;
  FTabs->BeginUpdate();
  FTabs->Clear();
  for (TTabPage* page : FPages) FTabs->AddObject(page->Caption(), page);
  FTabs->EndUpdate();
  FUpdatingTabs = false;
  if (FTabIndex >= PageCount()) FTabIndex = PageCount() - 1;
  if (FTabIndex < 0 && PageCount() > 0 && !Loading(this)) FTabIndex = 0;
  TabsChanged();
  ShowActive();
}

void TTabbedNotebook::SetTabIndex(int value) {
  if (Loading(this)) {
    FPendingTab = value;
    return;
  }
  if (value < 0 || value >= PageCount()) return;
  FTabIndex = value;
  ShowActive();
  Invalidate();
}

void TTabbedNotebook::SetPageIndex(int value) { SetTabIndex(value); }

std::string TTabbedNotebook::ActivePage() const {
  return FTabIndex >= 0 && FTabIndex < PageCount() ? FPages[FTabIndex]->Caption() : std::string();
}

void TTabbedNotebook::SetActivePage(const std::string& caption) {
  for (int i = 0; i < PageCount(); ++i)
    if (SameText(FPages[i]->Caption(), caption)) SetPageIndex(i);
}

void TTabbedNotebook::SetTabsPerRow(int value) {
  if (value < 1 || value == FTabsPerRow) return;
  FTabsPerRow = value;
  Resize();
}

void TTabbedNotebook::Resize() {
  // Tabs of equal width, TabsPerRow of them a row.
  SetTabWidth(static_cast<short>(std::max(1, (FWidth - 4) / std::max(1, FTabsPerRow))));
  TCustomTabControl::Resize();
}

bool TTabbedNotebook::CanChange() {
  // The tab being chosen is asked about in Change, where it is known.
  return true;
}

void TTabbedNotebook::Change() {
  // The base has moved the selection to the tab clicked: OnChange may refuse it.
  const int chosen = FTabIndex;
  bool allow = true;
  if (OnChange) OnChange(this, chosen, allow);
  if (!allow) {
    int previous = -1;
    for (int i = 0; i < PageCount(); ++i)
      if (FPages[i]->Visible()) previous = i;
    FTabIndex = previous;
    Invalidate();
    return;
  }
  ShowActive();
  if (OnClick) OnClick(this);
}

void TTabbedNotebook::ShowActive() {
  if (Loading(this)) return;
  for (int i = 0; i < PageCount(); ++i) {
    TTabPage* page = FPages[i];
    if (i == FTabIndex) {
      page->BringToFront();
      page->SetVisible(true);
    } else {
      page->SetVisible(false);
    }
  }
}

void TTabbedNotebook::ReadState(TReader& reader) {
  while (!FPages.empty()) delete FPages.back();
  TCustomTabControl::ReadState(reader);
}

void TTabbedNotebook::GetChildren(const TGetChildProc& proc, TComponent*) {
  for (TTabPage* page : FPages) proc(page);
}

void TTabbedNotebook::Loaded() {
  TCustomTabControl::Loaded();
  int index = FPendingTab >= 0 ? FPendingTab : 0;
  if (index >= PageCount()) index = PageCount() - 1;
  FPendingTab = -1;
  FTabIndex = index;
  UpdateTabs();
  Resize();
}

// ---------------------------------------------------------------------------------------
// TTabSet

LUMORA_CLASS_IMPL(TTabSet) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("AutoScroll", &TTabSet::AutoScroll, &TTabSet::SetAutoScroll).Default(true);
  c.Property("BackgroundColor", &TTabSet::BackgroundColor, &TTabSet::SetBackgroundColor).Default(clBtnFace);
  PublishControlProperties(c, {"Constraints"});
  c.Property("DitherBackground", &TTabSet::DitherBackground, &TTabSet::SetDitherBackground).Default(true);
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled"});
  c.Property("EndMargin", &TTabSet::EndMargin, &TTabSet::SetEndMargin).Default(5);
  PublishControlProperties(c, {"Font", "ParentShowHint", "PopupMenu", "ShowHint"});
  c.Property("StartMargin", &TTabSet::StartMargin, &TTabSet::SetStartMargin).Default(5);
  c.Property("SelectedColor", &TTabSet::SelectedColor, &TTabSet::SetSelectedColor).Default(clBtnFace);
  c.Property("Style", &TTabSet::Style, &TTabSet::SetStyle).Default(tsStandard);
  c.Property("TabHeight", &TTabSet::TabHeight, &TTabSet::SetTabHeight).Default(20);
  c.Property("Tabs", &TTabSet::Tabs, &TTabSet::SetTabs);
  c.Property("TabIndex", &TTabSet::TabIndex, &TTabSet::SetTabIndex).Default(-1);
  c.Property("UnselectedColor", &TTabSet::UnselectedColor, &TTabSet::SetUnselectedColor).Default(clWindow);
  PublishControlProperties(c, {"Visible", "OnClick"});
  c.Property("OnChange", &TTabSet::OnChange, &TTabSet::OnChange);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver"});
  c.Property("OnDrawTab", &TTabSet::OnDrawTab, &TTabSet::OnDrawTab);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit"});
  c.Property("OnMeasureTab", &TTabSet::OnMeasureTab, &TTabSet::OnMeasureTab);
  PublishControlProperties(c, {"OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDock", "OnStartDrag"});
}

TTabSet::TTabSet(TComponent* owner) : TCustomControl(owner) {
  FWidth = 185;
  FHeight = 21;
  FTabs = new TStringList();
  FTabs->OnChange = [this](TObject*) {
    if (FTabIndex >= FTabs->Count()) FTabIndex = FTabs->Count() - 1;
    Invalidate();
  };
}

TTabSet::~TTabSet() { delete FTabs; }

void TTabSet::SetTabIndex(int value) {
  if (value == FTabIndex) return;
  if (Loading(this)) {
    FTabIndex = value;
    return;
  }
  if (value < -1 || value >= FTabs->Count()) return;
  bool allow = true;
  if (OnChange) OnChange(this, value, allow);
  if (!allow) return;
  FTabIndex = value;
  Invalidate();
  if (OnClick) OnClick(this);
}

void TTabSet::SetAutoScroll(bool value) { FAutoScroll = value; Invalidate(); }
void TTabSet::SetBackgroundColor(TColor value) { FBackgroundColor = value; Invalidate(); }
void TTabSet::SetDitherBackground(bool value) { FDitherBackground = value; Invalidate(); }
void TTabSet::SetEndMargin(int value) { FEndMargin = value; Invalidate(); }
void TTabSet::SetStartMargin(int value) { FStartMargin = value; Invalidate(); }
void TTabSet::SetSelectedColor(TColor value) { FSelectedColor = value; Invalidate(); }
void TTabSet::SetUnselectedColor(TColor value) { FUnselectedColor = value; Invalidate(); }
void TTabSet::SetStyle(TTabStyle31 value) { FStyle = value; Invalidate(); }
void TTabSet::SetTabHeight(int value) { FTabHeight = value; Invalidate(); }
void TTabSet::SetFirstIndex(int value) {
  if (value >= 0 && value < std::max(1, FTabs->Count())) FFirstIndex = value;
  Invalidate();
}

namespace {
// The slant of a tab's sides, in pixels across its height.
constexpr int kTabSlant = 9;
}  // namespace

std::vector<std::pair<int, int>> TTabSet::TabSpans() const {
  std::vector<std::pair<int, int>> spans;
  const QFontMetrics m(FFont->Handle());
  int x = FStartMargin;
  for (int i = FFirstIndex; i < FTabs->Count(); ++i) {
    int w = m.horizontalAdvance(FFont->ToUnicode(FTabs->Strings(i))) + 2 * kTabSlant;
    if (FStyle == tsOwnerDraw && OnMeasureTab) {
      int measured = w - 2 * kTabSlant;
      const_cast<TTabSet*>(this)->OnMeasureTab(const_cast<TTabSet*>(this), i, measured);
      w = measured + 2 * kTabSlant;
    }
    if (x + w > FWidth - FEndMargin && !spans.empty()) break;
    spans.emplace_back(x, x + w);
    x += w - kTabSlant / 2;
  }
  return spans;
}

int TTabSet::ItemAtPos(int x, int y) const {
  if (y < 0 || y > FTabHeight) return -1;
  const auto spans = TabSpans();
  // The selected tab lies over its neighbours.
  for (std::size_t i = 0; i < spans.size(); ++i)
    if (FFirstIndex + static_cast<int>(i) == FTabIndex && x >= spans[i].first && x < spans[i].second) return FTabIndex;
  for (std::size_t i = 0; i < spans.size(); ++i)
    if (x >= spans[i].first && x < spans[i].second) return FFirstIndex + static_cast<int>(i);
  return -1;
}

void TTabSet::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  TCustomControl::MouseDown(button, shift, x, y);
  if (button != mbLeft) return;
  const int index = ItemAtPos(x, y);
  if (index >= 0) SetTabIndex(index);
}

void TTabSet::Paint(QPainter& p) {
  const QRect whole(0, 0, FWidth, FHeight);
  p.fillRect(whole, ColorToQColor(FBackgroundColor));
  if (FDitherBackground) p.fillRect(whole, QBrush(ColorToQColor(clWhite), Qt::Dense4Pattern));
  // The line the tabs hang from: the edge of the pages above.
  p.setPen(ColorToQColor(clWindowFrame));
  p.drawLine(0, 0, FWidth - 1, 0);
  const auto spans = TabSpans();
  const int h = std::min(FTabHeight, FHeight - 1);
  auto drawTab = [&](int index, int left, int right) {
    const bool selected = index == FTabIndex;
    QPolygon shape;
    shape << QPoint(left, 0) << QPoint(left + kTabSlant, h) << QPoint(right - kTabSlant, h) << QPoint(right, 0);
    p.setPen(Qt::NoPen);
    p.setBrush(ColorToQColor(selected ? FSelectedColor : FUnselectedColor));
    p.drawPolygon(shape);
    p.setBrush(Qt::NoBrush);
    p.setPen(ColorToQColor(clWindowFrame));
    p.drawLine(left, 0, left + kTabSlant, h);
    p.drawLine(left + kTabSlant, h, right - kTabSlant, h);
    p.drawLine(right - kTabSlant, h, right, 0);
    if (selected) {
      // The selected tab joins the page: no line above it, a shadow inside its right side.
      p.setPen(ColorToQColor(FSelectedColor));
      p.drawLine(left + 1, 0, right - 1, 0);
      p.setPen(ColorToQColor(clBtnShadow));
      p.drawLine(right - kTabSlant - 1, h - 1, right - 1, 1);
    }
    const QRect textRect(left + kTabSlant, 1, right - left - 2 * kTabSlant, h - 1);
    if (FStyle == tsOwnerDraw && OnDrawTab) {
      OnDrawTab(this, &p, Rect(textRect.left(), textRect.top(), textRect.right() + 1, textRect.bottom() + 1), index,
                selected);
      return;
    }
    TCaptionLayout layout;
    layout.HAlign = TTextHAlign::Center;
    layout.VAlign = TTextVAlign::Center;
    layout.ShowAccelChar = false;
    layout.Disabled = !FEnabled;
    DrawCaption(p, textRect, FFont->Handle(), FFont->ToUnicode(FTabs->Strings(index)), layout,
                ColorToQColor(FFont->Color()));
  };
  // Unselected tabs first, from the right, so that each lies over the one after it.
  for (int i = static_cast<int>(spans.size()) - 1; i >= 0; --i)
    if (FFirstIndex + i != FTabIndex) drawTab(FFirstIndex + i, spans[i].first, spans[i].second);
  for (std::size_t i = 0; i < spans.size(); ++i)
    if (FFirstIndex + static_cast<int>(i) == FTabIndex) drawTab(FTabIndex, spans[i].first, spans[i].second);
  if (Designing()) DrawDesignFrame(p, FWidth, FHeight);
}
