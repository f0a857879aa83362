#include "platform/vcl/Controls.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ActnList.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/MessageLoop.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHash>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>
#include <QWidget>

#include <algorithm>
#include <climits>

// ---------------------------------------------------------------------------------------
// Names and small helpers

namespace {

struct CursorName {
  int Value;
  const char* Name;
};

constexpr CursorName kCursorNames[] = {
    {0, "crDefault"},     {-1, "crNone"},       {-2, "crArrow"},      {-3, "crCross"},    {-4, "crIBeam"},
    {-22, "crSize"},      {-6, "crSizeNESW"},   {-7, "crSizeNS"},     {-8, "crSizeNWSE"}, {-9, "crSizeWE"},
    {-10, "crUpArrow"},   {-11, "crHourGlass"}, {-12, "crDrag"},      {-13, "crNoDrop"},  {-14, "crHSplit"},
    {-15, "crVSplit"},    {-16, "crMultiDrag"}, {-17, "crSQLWait"},   {-18, "crNo"},      {-19, "crAppStart"},
    {-20, "crHelp"},      {-21, "crHandPoint"}, {-22, "crSizeAll"},
};

QHash<const QObject*, TControl*>& WidgetControls() {
  static QHash<const QObject*, TControl*> map;
  return map;
}

}  // namespace

bool CursorToIdent(long cursor, std::string& ident) {
  for (const auto& c : kCursorNames) {
    if (c.Value == cursor) {
      ident = c.Name;
      return true;
    }
  }
  return false;
}

bool IdentToCursor(std::string_view ident, long& cursor) {
  for (const auto& c : kCursorNames) {
    if (SameText(ident, c.Name)) {
      cursor = c.Value;
      return true;
    }
  }
  return false;
}

namespace {
// Cursor names in streams (Cursor = crHourGlass) work without any class registered.
struct TRegisterCursorNames {
  TRegisterCursorNames() { RegisterIntegerConsts(TypeInfo<TCursor>(), &IdentToCursor, &CursorToIdent); }
} gRegisterCursorNames;
}  // namespace

Qt::CursorShape CursorToQt(TCursor cursor) {
  switch (static_cast<int>(cursor)) {
    case -1: return Qt::BlankCursor;
    case -3: return Qt::CrossCursor;
    case -4: return Qt::IBeamCursor;
    case -6: return Qt::SizeBDiagCursor;
    case -7: return Qt::SizeVerCursor;
    case -8: return Qt::SizeFDiagCursor;
    case -9: return Qt::SizeHorCursor;
    case -10: return Qt::UpArrowCursor;
    case -11: return Qt::WaitCursor;
    case -12: return Qt::DragMoveCursor;
    case -13: return Qt::ForbiddenCursor;
    case -14: return Qt::SplitHCursor;
    case -15: return Qt::SplitVCursor;
    case -16: return Qt::DragCopyCursor;
    case -17: return Qt::WaitCursor;
    case -18: return Qt::ForbiddenCursor;
    case -19: return Qt::BusyCursor;
    case -20: return Qt::WhatsThisCursor;
    case -21: return Qt::PointingHandCursor;
    case -22: return Qt::SizeAllCursor;
    default: return Qt::ArrowCursor;
  }
}

const TTypeInfo* TypeInfoOf(TBorderStyle*) {
  static const TTypeInfo info = ::rtti_detail::MakeEnumInfo("TBorderStyle", "bsNone, bsSingle");
  return &info;
}

TShiftState ShiftStateOf(Qt::KeyboardModifiers modifiers, Qt::MouseButtons buttons) {
  TShiftState s;
  if (modifiers & Qt::ShiftModifier) s += ssShift;
  if (modifiers & Qt::AltModifier) s += ssAlt;
  if (modifiers & Qt::ControlModifier) s += ssCtrl;
  if (buttons & Qt::LeftButton) s += ssLeft;
  if (buttons & Qt::RightButton) s += ssRight;
  if (buttons & Qt::MiddleButton) s += ssMiddle;
  return s;
}

TShiftState KeyDataToShiftState(LPARAM keyData) {
  TShiftState s;
  const Qt::KeyboardModifiers m =
      TMessageLoop::Exists() ? TMessageLoop::Instance().KeyModifiers() : QApplication::keyboardModifiers();
  if (m & Qt::ShiftModifier) s += ssShift;
  if (m & Qt::ControlModifier) s += ssCtrl;
  if (keyData & KF_ALTDOWN_BIT) s += ssAlt;
  return s;
}

QString CaptionToQt(const QString& caption, bool showAccelChar) {
  if (showAccelChar) return caption;  // Qt marks accelerators the same way
  QString s = caption;
  s.replace(QLatin1Char('&'), QLatin1String("&&"));
  return s;
}

QString StripAccelChars(const QString& caption) {
  QString out;
  out.reserve(caption.size());
  for (qsizetype i = 0; i < caption.size(); ++i) {
    if (caption[i] == QLatin1Char('&')) {
      if (i + 1 < caption.size() && caption[i + 1] == QLatin1Char('&')) {
        out += QLatin1Char('&');
        ++i;
      }
      continue;
    }
    out += caption[i];
  }
  return out;
}

bool IsAccel(Word key, const std::string& caption) {
  for (size_t i = 0; i + 1 < caption.size(); ++i) {
    if (caption[i] != '&') continue;
    if (caption[i + 1] == '&') {
      ++i;
      continue;
    }
    return std::toupper(static_cast<unsigned char>(caption[i + 1])) == std::toupper(key & 0xFF);
  }
  return false;
}

// ---------------------------------------------------------------------------------------
// Widgets

void TWidgetBridge::Watch(QWidget* widget) {
  if (widget) widget->installEventFilter(this);
}

bool TWidgetBridge::eventFilter(QObject* watched, QEvent* event) {
  if (!FControl) return false;
  bool swallow = false;
  TControl* control = FControl;
  Guard([&] { swallow = control->WidgetEvent(watched, event); });
  return swallow;
}

TPaintedWidget::TPaintedWidget(TControl* control, bool opaque) : FControl(control) {
  setAttribute(Qt::WA_OpaquePaintEvent, opaque);
  setMouseTracking(false);
}

void TPaintedWidget::paintEvent(QPaintEvent*) {
  if (!FControl) return;
  QPainter painter(this);
  TControl* control = FControl;
  Guard([&] { control->Paint(painter); });
}

void TOwnerDrawButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  option.text.clear();
  option.icon = QIcon();
  style()->drawControl(QStyle::CE_PushButtonBevel, &option, &painter, this);
  if (TControl* control = FControl) Guard([&] { control->Paint(painter); });
}

// ---------------------------------------------------------------------------------------
// TBasicAction

LUMORA_CLASS_IMPL(TBasicAction) {
  c.Property("OnExecute", &TBasicAction::OnExecute, &TBasicAction::OnExecute);
  c.Property("OnUpdate", &TBasicAction::OnUpdate, &TBasicAction::OnUpdate);
}

TBasicAction::TBasicAction(TComponent* owner) : TComponent(owner) {}

TBasicAction::~TBasicAction() {
  const auto clients = FClients;
  for (TComponent* client : clients) {
    if (auto* control = dynamic_cast<TControl*>(client)) control->SetAction(nullptr);
  }
}

bool TBasicAction::Execute() {
  if (!OnExecute) return false;
  OnExecute(this);
  return true;
}

bool TBasicAction::Update() {
  if (!OnUpdate) return false;
  OnUpdate(this);
  return true;
}

void TBasicAction::RegisterClient(TComponent* client) {
  if (std::find(FClients.begin(), FClients.end(), client) == FClients.end()) FClients.push_back(client);
}

void TBasicAction::UnRegisterClient(TComponent* client) {
  FClients.erase(std::remove(FClients.begin(), FClients.end(), client), FClients.end());
}

void TBasicAction::Change() {
  const auto clients = FClients;
  for (TComponent* client : clients) {
    if (auto* control = dynamic_cast<TControl*>(client)) control->ActionChange(this, false);
    if (auto* item = dynamic_cast<TMenuItem*>(client)) item->ActionChange(this, false);
  }
}

// ---------------------------------------------------------------------------------------
// TSizeConstraints

LUMORA_CLASS_IMPL(TSizeConstraints) {
  c.Property("MaxHeight", &TSizeConstraints::MaxHeight, &TSizeConstraints::SetMaxHeight).Default(0);
  c.Property("MaxWidth", &TSizeConstraints::MaxWidth, &TSizeConstraints::SetMaxWidth).Default(0);
  c.Property("MinHeight", &TSizeConstraints::MinHeight, &TSizeConstraints::SetMinHeight).Default(0);
  c.Property("MinWidth", &TSizeConstraints::MinWidth, &TSizeConstraints::SetMinWidth).Default(0);
}

void TSizeConstraints::Assign(TPersistent* source) {
  if (auto* s = dynamic_cast<TSizeConstraints*>(source)) {
    FLimits = s->FLimits;
    Changed();
    return;
  }
  TPersistent::Assign(source);
}

void TSizeConstraints::Changed() {
  if (OnChange) OnChange(this);
}

void TSizeConstraints::SetMaxHeight(int value) {
  value = std::max(value, 0);
  if (value == FLimits.MaxHeight) return;
  FLimits.MaxHeight = value;
  if (value > 0 && value < FLimits.MinHeight) FLimits.MinHeight = value;
  Changed();
}

void TSizeConstraints::SetMaxWidth(int value) {
  value = std::max(value, 0);
  if (value == FLimits.MaxWidth) return;
  FLimits.MaxWidth = value;
  if (value > 0 && value < FLimits.MinWidth) FLimits.MinWidth = value;
  Changed();
}

void TSizeConstraints::SetMinHeight(int value) {
  value = std::max(value, 0);
  if (value == FLimits.MinHeight) return;
  FLimits.MinHeight = value;
  if (FLimits.MaxHeight > 0 && value > FLimits.MaxHeight) FLimits.MaxHeight = value;
  Changed();
}

void TSizeConstraints::SetMinWidth(int value) {
  value = std::max(value, 0);
  if (value == FLimits.MinWidth) return;
  FLimits.MinWidth = value;
  if (FLimits.MaxWidth > 0 && value > FLimits.MaxWidth) FLimits.MaxWidth = value;
  Changed();
}

// ---------------------------------------------------------------------------------------
// TControl

LUMORA_CLASS_IMPL(TControl) {
  c.Property("Left", &TControl::Left, &TControl::SetLeft);
  c.Property("Top", &TControl::Top, &TControl::SetTop);
  c.Property("Width", &TControl::Width, &TControl::SetWidth);
  c.Property("Height", &TControl::Height, &TControl::SetHeight);
  c.Property("Cursor", &TControl::Cursor, &TControl::SetCursor).Default(crDefault);
  c.Property("Hint", &TControl::Hint, &TControl::SetHint);
}

TControl::TControl(TComponent* owner) : TComponent(owner) {
  FFont = new TFont();
  FFont->OnChange = [this](TObject*) { FontChanged(); };
  FConstraints = new TSizeConstraints(this);
  FConstraints->OnChange = [this](TObject*) {
    if (!ComponentState().Contains(csLoading)) SetBounds(FLeft, FTop, FWidth, FHeight);
  };
}

TControl::~TControl() {
  if (FBridge) FBridge->Detach();
  if (FAction) FAction->UnRegisterClient(this);
  if (FParent) FParent->RemoveControl(this);
  DestroyWidget();
  delete FBridge;
  FBridge = nullptr;
  delete FFont;
  delete FConstraints;
}

void TControl::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation != opRemove) return;
  if (component == FPopupMenu) FPopupMenu = nullptr;
  if (component == FAction) {
    FAction = nullptr;
  }
}

void TControl::ChangeName(const std::string& name) {
  TComponent::ChangeName(name);
  if (QWidget* w = Widget()) w->setObjectName(QString::fromStdString(name));
}

TControl* TControl::FindControl(const QObject* widget) {
  auto& map = WidgetControls();
  for (const QObject* o = widget; o; o = o->parent()) {
    auto it = map.find(o);
    if (it != map.end()) return it.value();
    if (o->isWidgetType() && static_cast<const QWidget*>(o)->isWindow()) break;
  }
  return nullptr;
}

// ---- Geometry

bool TControl::CanResize(int& newWidth, int& newHeight) {
  bool resize = true;
  if (OnCanResize && !ComponentState().Contains(csLoading)) OnCanResize(this, newWidth, newHeight, resize);
  if (!resize) return false;
  TSizeLimits limits = FConstraints->Limits();
  if (OnConstrainedResize) {
    ConstrainedResize(limits.MinWidth, limits.MinHeight, limits.MaxWidth, limits.MaxHeight);
  }
  ConstrainSize(limits, newWidth, newHeight);
  return true;
}

void TControl::ConstrainedResize(int& minWidth, int& minHeight, int& maxWidth, int& maxHeight) {
  if (OnConstrainedResize) OnConstrainedResize(this, minWidth, minHeight, maxWidth, maxHeight);
}

void TControl::SetBounds(int left, int top, int width, int height) {
  if (!CanResize(width, height)) {
    width = FWidth;
    height = FHeight;
  }
  width = std::max(width, 0);
  height = std::max(height, 0);
  const bool moved = left != FLeft || top != FTop;
  const bool sized = width != FWidth || height != FHeight;
  if (!moved && !sized) return;
  FLeft = left;
  FTop = top;
  FWidth = width;
  FHeight = height;
  const bool loading = ComponentState().Contains(csLoading);
  if (!FAnchoring && !loading) UpdateAnchorRules();
  UpdateWidgetGeometry();
  if (sized) Resize();
  if (!FAnchoring && !loading) RequestAlign();
}

void TControl::SetAlignedBounds(const TRect& r) {
  const bool was = FAnchoring;
  FAnchoring = true;
  SetBounds(r.Left, r.Top, r.Width(), r.Height());
  FAnchoring = was;
}

TRect TControl::ClientRect() const { return Rect(0, 0, FWidth, FHeight); }

void TControl::SetClientWidth(int value) { SetWidth(FWidth - ClientWidth() + value); }

void TControl::SetClientHeight(int value) { SetHeight(FHeight - ClientHeight() + value); }

TPoint TControl::ClientToScreen(TPoint p) const {
  QWidget* w = FWidget.data();
  if (!w) return p;
  const QPoint g = w->mapToGlobal(QPoint(p.X, p.Y));
  return Point(g.x(), g.y());
}

TPoint TControl::ScreenToClient(TPoint p) const {
  QWidget* w = FWidget.data();
  if (!w) return p;
  const QPoint l = w->mapFromGlobal(QPoint(p.X, p.Y));
  return Point(l.x(), l.y());
}

void TControl::UpdateAnchorRules() {
  FAnchorBounds = BoundsRect();
  if (FParent) {
    const TRect r = FParent->ClientRect();
    FAnchorParentSize = TSize{r.Width(), r.Height()};
  } else {
    FAnchorParentSize = TSize{};
  }
}

TRect TControl::AnchoredBounds(TSize parentClient) const {
  return AnchorRect(FAnchorBounds, static_cast<TAnchorBits>(FAnchors.Bits()), FAnchorParentSize, parentClient,
                    FConstraints->Limits());
}

void TControl::RequestAlign() {
  if (FParent) FParent->Realign();
}

void TControl::SetAlign(TAlign value) {
  if (FAlign == value) return;
  const TAlign old = FAlign;
  FAlign = value;
  // Aligned controls stick to the edges they are aligned to.
  if (!ComponentState().Contains(csLoading)) {
    switch (value) {
      case alTop: FAnchors = TAnchors{akLeft, akTop, akRight}; break;
      case alBottom: FAnchors = TAnchors{akLeft, akRight, akBottom}; break;
      case alLeft: FAnchors = TAnchors{akLeft, akTop, akBottom}; break;
      case alRight: FAnchors = TAnchors{akRight, akTop, akBottom}; break;
      case alClient: FAnchors = TAnchors{akLeft, akTop, akRight, akBottom}; break;
      default:
        if (old != alNone) FAnchors = TAnchors{akLeft, akTop};
        break;
    }
  }
  RequestAlign();
}

void TControl::SetAnchors(TAnchors value) {
  if (FAnchors == value) return;
  FAnchors = value;
  if (!ComponentState().Contains(csLoading)) UpdateAnchorRules();
}

void TControl::SetAutoSize(bool value) {
  if (FAutoSize == value) return;
  FAutoSize = value;
  if (value) AdjustSize();
}

bool TControl::CanAutoSize(int&, int&) { return false; }

void TControl::AdjustSize() {
  if (!FAutoSize || ComponentState().Contains(csLoading)) return;
  int w = FWidth, h = FHeight;
  if (CanAutoSize(w, h)) SetBounds(FLeft, FTop, w, h);
}

void TControl::Resize() {
  if (OnResize && !ComponentState().Contains(csLoading)) OnResize(this);
}

// ---- Text and looks

void TControl::SetText(const std::string& value) {
  if (FText == value) return;
  FText = value;
  TextChanged();
}

void TControl::TextChanged() {
  UpdateWidgetText();
  AdjustSize();
}

QString TControl::UnicodeText() const { return FFont->ToUnicode(Text()); }

void TControl::SetColor(TColor value) {
  if (FColor == value) {
    FParentColor = false;
    return;
  }
  FColor = value;
  FParentColor = false;
  ColorChanged();
}

void TControl::ColorChanged() { UpdateWidgetColors(); }

void TControl::SetParentColor(bool value) {
  if (FParentColor == value) return;
  FParentColor = value;
  if (value && FParent && !ComponentState().Contains(csLoading)) ParentColorChanged();
}

void TControl::ParentColorChanged() {
  if (!FParentColor || !FParent) return;
  if (FColor != FParent->Color()) {
    FColor = FParent->Color();
    ColorChanged();
  }
}

void TControl::SetParentFont(bool value) {
  if (FParentFont == value) return;
  FParentFont = value;
  if (value && FParent && !ComponentState().Contains(csLoading)) ParentFontChanged();
}

void TControl::ParentFontChanged() {
  if (!FParentFont || !FParent) return;
  FFont->Assign(FParent->Font());
  FParentFont = true;
}

void TControl::FontChanged() {
  FParentFont = false;
  UpdateWidgetFont();
  AdjustSize();
}

void TControl::SetCursor(TCursor value) {
  if (FCursor == value) return;
  FCursor = value;
  if (QWidget* w = Widget()) {
    if (value == crDefault) {
      w->unsetCursor();
    } else {
      w->setCursor(CursorToQt(value));
    }
  }
}

void TControl::SetVisible(bool value) {
  if (FVisible == value) return;
  FVisible = value;
  VisibleChanged();
}

void TControl::VisibleChanged() {
  UpdateWidgetVisibility();
  if (FAlign != alNone || !(FAnchors == TAnchors{akLeft, akTop})) RequestAlign();
}

bool TControl::Showing() const {
  if (!FWidget) return false;
  return FWidget->isVisible();
}

void TControl::SetEnabled(bool value) {
  if (FEnabled == value) return;
  FEnabled = value;
  EnabledChanged();
}

void TControl::EnabledChanged() {
  if (QWidget* w = Widget()) w->setEnabled(FEnabled);
  Invalidate();
}

namespace {
bool EffectiveShowHint(const TControl* c) {
  while (c) {
    if (!c->ParentShowHint() || !c->Parent()) return c->ShowHint();
    c = c->Parent();
  }
  return false;
}

void UpdateToolTips(TControl* c) {
  if (QWidget* w = c->Widget()) {
    const std::string hint = c->Hint().substr(0, c->Hint().find('|'));
    w->setToolTip(EffectiveShowHint(c) && !hint.empty() ? c->Font()->ToUnicode(hint) : QString());
  }
  if (auto* wc = dynamic_cast<TWinControl*>(c)) {
    for (int i = 0; i < wc->ControlCount(); ++i) UpdateToolTips(wc->Controls(i));
  }
}
}  // namespace

void TControl::SetHint(const std::string& value) {
  if (FHint == value) return;
  FHint = value;
  UpdateToolTips(this);
}

void TControl::SetShowHint(bool value) {
  FParentShowHint = false;
  if (FShowHint == value) return;
  FShowHint = value;
  UpdateToolTips(this);
}

void TControl::SetParentShowHint(bool value) {
  if (FParentShowHint == value) return;
  FParentShowHint = value;
  UpdateToolTips(this);
}

void TControl::SetPopupMenu(TPopupMenu* value) {
  if (FPopupMenu == value) return;
  FPopupMenu = value;
  if (value) value->FreeNotification(this);
}

void TControl::SetAction(TBasicAction* value) {
  if (FAction == value) return;
  if (FAction) FAction->UnRegisterClient(this);
  ReplaceComponentLink(this, FAction, value);
  if (value) {
    value->RegisterClient(this);
    ActionChange(value, ComponentState().Contains(csLoading));
  }
}

void TControl::ActionChange(TBasicAction* sender, bool checkDefaults) {
  auto* action = dynamic_cast<TCustomAction*>(sender);
  if (!action) return;
  if (!checkDefaults || FText.empty() || FText == Name()) SetCaption(action->Caption());
  if (!checkDefaults || FEnabled) SetEnabled(action->Enabled());
  if (!checkDefaults || FHint.empty()) SetHint(action->Hint());
  if (!checkDefaults || FVisible) SetVisible(action->Visible());
  if (!checkDefaults || !OnClick) OnClick = action->OnExecute;
}

void TControl::SetBiDiMode(TBiDiMode value) {
  FBiDiMode = value;
  FParentBiDiMode = false;
}

void TControl::SetParentBiDiMode(bool value) { FParentBiDiMode = value; }

// ---- Parent

void TControl::SetParent(TWinControl* parent) {
  if (FParent == parent) return;
  if (parent == this) throw EInvalidOperation("A control cannot have itself as its parent");
  if (FParent) FParent->RemoveControl(this);
  if (parent) parent->InsertControl(this);
}

TComponent* TControl::GetParentComponent() const { return FParent; }

void TControl::SetParentComponent(TComponent* parent) {
  if (auto* wc = dynamic_cast<TWinControl*>(parent)) SetParent(wc);
}

// ---- Widget

QWidget* TControl::Handle() {
  HandleNeeded();
  return Widget();
}

void TControl::HandleNeeded() {
  if (HandleAllocated()) return;
  if (!FParent) return;
  FParent->HandleNeeded();
  if (!FParent->HandleAllocated() || HandleAllocated()) return;
  CreateWidget();
}

void TControl::CreateWidget() {}

void TControl::AdoptWidget(QWidget* widget) {
  FWidget = widget;
  WidgetControls().insert(widget, this);
  if (!FBridge) FBridge = new TWidgetBridge(this);
  FBridge->Watch(widget);
  if (auto* area = qobject_cast<QAbstractScrollArea*>(widget)) FBridge->Watch(area->viewport());
  if (FParent) FParent->AttachChildWidget(this);
  UpdateWidget();
}

void TControl::DestroyWidget() {
  if (QWidget* w = FWidget.data()) {
    WidgetControls().remove(w);
    if (auto* painted = dynamic_cast<TPaintedWidget*>(w)) painted->Detach();
    if (auto* button = dynamic_cast<TOwnerDrawButton*>(w)) button->Detach();
    FWidget = nullptr;
    delete w;
  }
}

bool TControl::WidgetShouldShow() const {
  return FVisible || (Designing() && !FControlStyle.Contains(csNoDesignVisible));
}

void TControl::UpdateWidget() {
  QWidget* w = Widget();
  if (!w) return;
  w->setObjectName(QString::fromStdString(Name()));
  UpdateWidgetFont();
  UpdateWidgetColors();
  UpdateWidgetText();
  UpdateWidgetGeometry();
  w->setEnabled(FEnabled);
  if (FCursor != crDefault) w->setCursor(CursorToQt(FCursor));
  UpdateToolTips(this);
  UpdateWidgetVisibility();
}

void TControl::UpdateWidgetGeometry() {
  QWidget* w = Widget();
  if (!w || !FParent) return;
  const TPoint off = FParent->ClientWidgetOffset();
  w->setGeometry(FLeft + off.X, FTop + off.Y, std::max(FWidth, 0), std::max(FHeight, 0));
}

void TControl::UpdateWidgetVisibility() {
  if (QWidget* w = Widget()) w->setVisible(WidgetShouldShow());
}

void TControl::UpdateWidgetFont() {
  if (QWidget* w = Widget()) w->setFont(FFont->Handle());
  UpdateWidgetColors();
}

void TControl::UpdateWidgetColors() {
  QWidget* w = Widget();
  if (!w) return;
  QPalette pal = w->palette();
  const QColor back = ColorToQColor(FColor);
  const QColor text = ColorToQColor(FFont->Color());
  pal.setColor(QPalette::Window, back);
  pal.setColor(QPalette::Base, back);
  // The text of a disabled control stays grey, whatever the font's colour.
  for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
    pal.setColor(group, QPalette::WindowText, text);
    pal.setColor(group, QPalette::Text, text);
    pal.setColor(group, QPalette::ButtonText, text);
  }
  w->setPalette(pal);
}

void TControl::UpdateWidgetText() { Invalidate(); }

namespace {
template <class T>
void MoveInList(std::vector<T*>& list, T* item, bool toEnd) {
  auto it = std::find(list.begin(), list.end(), item);
  if (it == list.end()) return;
  list.erase(it);
  if (toEnd) {
    list.push_back(item);
  } else {
    list.insert(list.begin(), item);
  }
}
}  // namespace

void TControl::BringToFront() {
  if (!FParent) return;
  if (auto* wc = dynamic_cast<TWinControl*>(this)) {
    MoveInList(FParent->FWinControls, wc, true);
    if (QWidget* w = Widget()) w->raise();
  } else {
    MoveInList(FParent->FControls, static_cast<TControl*>(this), true);
    if (Widget()) FParent->AttachChildWidget(this);
  }
  RequestAlign();
}

void TControl::SendToBack() {
  if (!FParent) return;
  if (auto* wc = dynamic_cast<TWinControl*>(this)) {
    MoveInList(FParent->FWinControls, wc, false);
  } else {
    MoveInList(FParent->FControls, static_cast<TControl*>(this), false);
  }
  if (QWidget* w = Widget()) w->lower();
  RequestAlign();
}

void TControl::Invalidate() {
  if (QWidget* w = Widget()) w->update();
}

void TControl::Repaint() {
  if (QWidget* w = Widget()) w->repaint();
}

void TControl::Update() {
  if (QWidget* w = Widget()) w->update();
}

void TControl::Paint(QPainter&) {}

// ---- Messages

LRESULT TControl::Perform(std::uint32_t msg, WPARAM wParam, LPARAM lParam) {
  TMessage m;
  m.Msg = msg;
  m.WParam = wParam;
  m.LParam = lParam;
  WndProc(m);
  return m.Result;
}

void TControl::WndProc(TMessage& message) {
  if (Designing()) {
    const bool input = (message.Msg >= WM_KEYFIRST && message.Msg <= WM_KEYLAST) ||
                       (message.Msg >= WM_MOUSEFIRST && message.Msg <= WM_MOUSELAST);
    if (input) {
      // A designer decides what its form's input does; without one it goes nowhere.
      TCustomForm* form = GetParentForm(this);
      if (form && form->Designer()) form->Designer()->IsDesignMsg(this, message);
      return;
    }
  }
  Dispatch(message);
}

namespace {
int LoWordSigned(LPARAM l) { return static_cast<std::int16_t>(l & 0xFFFF); }
int HiWordSigned(LPARAM l) { return static_cast<std::int16_t>((l >> 16) & 0xFFFF); }
constexpr WPARAM MK_LBUTTON = 0x01;
constexpr WPARAM MK_RBUTTON = 0x02;
constexpr WPARAM MK_SHIFT = 0x04;
constexpr WPARAM MK_CONTROL = 0x08;
constexpr WPARAM MK_MBUTTON = 0x10;

TShiftState MouseShift(WPARAM keys) {
  TShiftState s;
  if (keys & MK_SHIFT) s += ssShift;
  if (keys & MK_CONTROL) s += ssCtrl;
  if (keys & MK_LBUTTON) s += ssLeft;
  if (keys & MK_RBUTTON) s += ssRight;
  if (keys & MK_MBUTTON) s += ssMiddle;
  if (QApplication::keyboardModifiers() & Qt::AltModifier) s += ssAlt;
  return s;
}

WPARAM MouseKeys(const QMouseEvent* e) {
  WPARAM k = 0;
  if (e->buttons() & Qt::LeftButton) k |= MK_LBUTTON;
  if (e->buttons() & Qt::RightButton) k |= MK_RBUTTON;
  if (e->buttons() & Qt::MiddleButton) k |= MK_MBUTTON;
  if (e->modifiers() & Qt::ShiftModifier) k |= MK_SHIFT;
  if (e->modifiers() & Qt::ControlModifier) k |= MK_CONTROL;
  return k;
}

LPARAM MakePoint(int x, int y) {
  return static_cast<LPARAM>((static_cast<std::uint32_t>(static_cast<std::uint16_t>(y)) << 16) |
                             static_cast<std::uint16_t>(x));
}
}  // namespace

void TControl::Dispatch(TMessage& m) {
  const int x = LoWordSigned(m.LParam);
  const int y = HiWordSigned(m.LParam);
  switch (m.Msg) {
    case WM_LBUTTONDOWN:
      if (FControlStyle.Contains(csClickEvents)) FControlState += csClicked;
      MouseDown(mbLeft, MouseShift(m.WParam), x, y);
      break;
    case WM_RBUTTONDOWN: MouseDown(mbRight, MouseShift(m.WParam), x, y); break;
    case WM_MBUTTONDOWN: MouseDown(mbMiddle, MouseShift(m.WParam), x, y); break;
    case WM_LBUTTONDBLCLK:
      if (FControlStyle.Contains(csDoubleClicks)) DblClick();
      MouseDown(mbLeft, MouseShift(m.WParam) + ssDouble, x, y);
      break;
    case WM_RBUTTONDBLCLK: MouseDown(mbRight, MouseShift(m.WParam) + ssDouble, x, y); break;
    case WM_MBUTTONDBLCLK: MouseDown(mbMiddle, MouseShift(m.WParam) + ssDouble, x, y); break;
    case WM_LBUTTONUP: {
      const bool clicked = FControlState.Contains(csClicked);
      FControlState -= csClicked;
      if (clicked && x >= 0 && y >= 0 && x < FWidth && y < FHeight && ClicksFromMouse()) Click();
      MouseUp(mbLeft, MouseShift(m.WParam), x, y);
      break;
    }
    case WM_RBUTTONUP: MouseUp(mbRight, MouseShift(m.WParam), x, y); break;
    case WM_MBUTTONUP: MouseUp(mbMiddle, MouseShift(m.WParam), x, y); break;
    case WM_MOUSEMOVE: MouseMove(MouseShift(m.WParam), x, y); break;
    default: break;
  }
}

bool TControl::ClicksFromMouse() const { return true; }

bool TControl::WidgetEvent(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove: {
      auto* e = static_cast<QMouseEvent*>(event);
      QPoint p = e->position().toPoint();
      QWidget* origin = InputWidget();
      if (watched != origin && watched->isWidgetType() && origin) {
        p = origin->mapFromGlobal(static_cast<QWidget*>(watched)->mapToGlobal(p));
      }
      TMessage m;
      m.LParam = MakePoint(p.x(), p.y());
      m.WParam = MouseKeys(e);
      const Qt::MouseButton b = e->button();
      if (type == QEvent::MouseMove) {
        m.Msg = WM_MOUSEMOVE;
      } else if (type == QEvent::MouseButtonPress) {
        m.Msg = b == Qt::RightButton ? WM_RBUTTONDOWN : b == Qt::MiddleButton ? WM_MBUTTONDOWN : WM_LBUTTONDOWN;
      } else if (type == QEvent::MouseButtonDblClick) {
        m.Msg = b == Qt::RightButton ? WM_RBUTTONDBLCLK : b == Qt::MiddleButton ? WM_MBUTTONDBLCLK : WM_LBUTTONDBLCLK;
      } else {
        m.Msg = b == Qt::RightButton ? WM_RBUTTONUP : b == Qt::MiddleButton ? WM_MBUTTONUP : WM_LBUTTONUP;
      }
      WndProc(m);
      return Designing();
    }
    case QEvent::ContextMenu: {
      if (Designing()) return true;
      for (TControl* c = this; c; c = c->Parent()) {
        if (TPopupMenu* menu = c->PopupMenu()) {
          if (!menu->AutoPopup()) return false;
          auto* e = static_cast<QContextMenuEvent*>(event);
          menu->SetPopupComponent(this);
          menu->Popup(e->globalPos().x(), e->globalPos().y());
          return true;
        }
      }
      return false;
    }
    default: return false;
  }
}

bool TControl::DialogChar(Word) { return false; }

void TControl::Click() {
  if (OnClick) {
    OnClick(this);
  } else if (FAction) {
    FAction->Execute();
  }
}

void TControl::DblClick() {
  if (OnDblClick) OnDblClick(this);
}

void TControl::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  if (OnMouseDown) OnMouseDown(this, button, shift, x, y);
}

void TControl::MouseMove(TShiftState shift, int x, int y) {
  if (OnMouseMove) OnMouseMove(this, shift, x, y);
}

void TControl::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  if (OnMouseUp) OnMouseUp(this, button, shift, x, y);
}

// ---- Design state, scaling, loading

void TControl::SetDesignState(bool designing) {
  if (designing) {
    IncludeState(csDesigning);
  } else {
    ExcludeState(csDesigning);
  }
  UpdateWidgetVisibility();
  Invalidate();
}

void TControl::ScaleBy(int m, int d) {
  if (m == d || d == 0) return;
  const int left = MulDiv(FLeft, m, d);
  const int top = MulDiv(FTop, m, d);
  const int width = MulDiv(FLeft + FWidth, m, d) - left;
  const int height = MulDiv(FTop + FHeight, m, d) - top;
  const bool was = FAnchoring;
  FAnchoring = true;
  SetBounds(left, top, width, height);
  FAnchoring = was;
  if (!FParentFont) {
    const bool parentFont = FParentFont;
    FFont->SetHeight(MulDiv(FFont->Height(), m, d));
    FParentFont = parentFont;
  }
  UpdateAnchorRules();
}

void TControl::Loaded() {
  TComponent::Loaded();
  if (FParent) {
    if (FParentColor) ParentColorChanged();
    if (FParentFont) ParentFontChanged();
  }
  UpdateAnchorRules();
  AdjustSize();
  if (Widget()) UpdateWidget();
  if (FAlign != alNone) RequestAlign();
}

void TControl::DefineProperties(TFiler& filer) {
  bool ancestorIsControl = false;
  if (auto* ancestor = dynamic_cast<TControl*>(filer.Ancestor())) ancestorIsControl = ancestor->FIsControl;
  filer.DefineProperty(
      "IsControl", [this](TReader& r) { FIsControl = r.ReadBoolean(); },
      [this](TWriter& w) { w.WriteBoolean(FIsControl); }, FIsControl != ancestorIsControl);
}

// ---------------------------------------------------------------------------------------
// TWinControl

LUMORA_CLASS_IMPL(TWinControl) {
  c.Property("HelpContext", &TWinControl::HelpContext, &TWinControl::SetHelpContext).Default(0);
}

TWinControl::TWinControl(TComponent* owner) : TControl(owner) {}

TWinControl::~TWinControl() {
  if (FBridge) FBridge->Detach();
  // Children go first, so that their widgets leave this one's before it is freed.
  while (ControlCount() > 0) {
    TControl* child = Controls(ControlCount() - 1);
    RemoveControl(child);
    delete child;
  }
  // Leave the parent while still windowed, so that it finds this control in its lists.
  if (FParent) FParent->RemoveControl(this);
}

TControl* TWinControl::Controls(int index) const {
  const int n = static_cast<int>(FControls.size());
  if (index < 0 || index >= ControlCount()) throw EListError(Format("List index out of bounds (%d)", index));
  return index < n ? FControls[index] : FWinControls[index - n];
}

void TWinControl::InsertControl(TControl* control) {
  if (!control || control->FParent == this) return;
  if (auto* wc = dynamic_cast<TWinControl*>(control)) {
    FWinControls.push_back(wc);
    FTabList.push_back(wc);
  } else {
    FControls.push_back(control);
  }
  control->FParent = this;
  if (HandleAllocated()) {
    if (control->HandleAllocated()) {
      AttachChildWidget(control);
      control->UpdateWidgetGeometry();
    } else {
      control->HandleNeeded();
    }
  }
  if (!control->ComponentState().Contains(csLoading)) {
    if (control->FParentFont) control->ParentFontChanged();
    if (control->FParentColor) control->ParentColorChanged();
    control->UpdateAnchorRules();
    if (control->Align() != alNone) Realign();
  }
}

void TWinControl::RemoveControl(TControl* control) {
  if (!control || control->FParent != this) return;
  // Found by address: a control being destroyed no longer knows it is windowed.
  const auto winIt = std::find_if(FWinControls.begin(), FWinControls.end(),
                                  [control](TWinControl* w) { return static_cast<TControl*>(w) == control; });
  const bool windowed = winIt != FWinControls.end();
  if (windowed) {
    TWinControl* wc = *winIt;
    FWinControls.erase(winIt);
    FTabList.erase(std::remove(FTabList.begin(), FTabList.end(), wc), FTabList.end());
  } else {
    FControls.erase(std::remove(FControls.begin(), FControls.end(), control), FControls.end());
  }
  control->FParent = nullptr;
  // A control without a parent has no widget: a parentless widget would be a window.
  if (windowed) {
    std::vector<TControl*> stack;
    auto* wc = static_cast<TWinControl*>(control);
    for (TControl* child : wc->FControls) stack.push_back(child);
    for (TWinControl* child : wc->FWinControls) stack.push_back(child);
    while (!stack.empty()) {
      TControl* c = stack.back();
      stack.pop_back();
      if (auto* w = dynamic_cast<TWinControl*>(c)) {
        for (TControl* child : w->FControls) stack.push_back(child);
        for (TWinControl* child : w->FWinControls) stack.push_back(child);
      }
      c->DestroyWidget();
    }
  }
  control->DestroyWidget();
  if (control->Align() != alNone && !ComponentState().Contains(csDestroying)) Realign();
}

bool TWinControl::ContainsControl(TControl* control) const {
  for (TControl* c = control; c; c = c->Parent()) {
    if (c == this) return true;
  }
  return false;
}

TControl* TWinControl::FindChildControl(std::string_view name) const {
  for (int i = 0; i < ControlCount(); ++i) {
    if (SameText(Controls(i)->Name(), name)) return Controls(i);
  }
  return nullptr;
}

void TWinControl::GetChildren(const TGetChildProc& proc, TComponent* root) {
  for (int i = 0; i < ControlCount(); ++i) {
    TControl* c = Controls(i);
    if (c->Owner() == root) proc(c);
  }
}

void TWinControl::SetChildOrder(TComponent* child, int order) {
  if (auto* wc = dynamic_cast<TWinControl*>(child)) {
    wc->SetTabOrder(order);
  } else if (auto* c = dynamic_cast<TControl*>(child); c && c->Parent() == this) {
    auto it = std::find(FControls.begin(), FControls.end(), c);
    if (it == FControls.end()) return;
    FControls.erase(it);
    order = std::clamp(order, 0, static_cast<int>(FControls.size()));
    FControls.insert(FControls.begin() + order, c);
  }
}

// ---- Alignment

void TWinControl::EnableAlign() {
  if (FAlignLevel > 0) --FAlignLevel;
  if (FAlignLevel == 0 && FAlignPending) Realign();
}

void TWinControl::Realign() {
  TRect r = ClientRect();
  AlignControls(nullptr, r);
}

void TWinControl::AdjustClientRect(TRect&) const {}

TRect TWinControl::ClientRect() const {
  const int inset = NonClientInset();
  return Rect(0, 0, std::max(0, FWidth - 2 * inset), std::max(0, FHeight - 2 * inset));
}

TPoint TWinControl::ClientWidgetOffset() const {
  const int inset = NonClientInset();
  return Point(inset, inset);
}

void TWinControl::AlignControls(TControl* changing, TRect& rect) {
  if (FAlignLevel > 0 || ComponentState().Contains(csLoading) || ComponentState().Contains(csDestroying)) {
    FAlignPending = true;
    return;
  }
  if (FAligning) {
    FAlignPending = true;
    return;
  }
  FAligning = true;
  FAlignPending = false;
  const TRect client = ClientRect();
  const TSize clientSize{client.Width(), client.Height()};
  AdjustClientRect(rect);
  std::vector<TAlignItem> items;
  std::vector<TControl*> controls;
  int changingIndex = -1;
  const int n = ControlCount();
  items.reserve(n);
  for (int i = 0; i < n; ++i) {
    TControl* c = Controls(i);
    const bool participates = c->FVisible || (c->Designing() && !c->FControlStyle.Contains(csNoDesignVisible));
    // Unaligned controls anchored to a far edge follow the parent's size.
    if (c->FAlign == alNone && participates && !(c->FAnchors == TAnchors{akLeft, akTop}) &&
        !c->ComponentState().Contains(csLoading)) {
      c->SetAlignedBounds(c->AnchoredBounds(clientSize));
    }
    TAlignItem item;
    item.Align = c->FAlign;
    item.Bounds = c->BoundsRect();
    item.Constraints = c->FConstraints->Limits();
    item.Participates = participates;
    if (c == changing) changingIndex = static_cast<int>(items.size());
    items.push_back(item);
    controls.push_back(c);
  }
  const std::vector<TRect> placed = AlignRects(rect, items, changingIndex);
  for (size_t i = 0; i < controls.size(); ++i) {
    if (items[i].Align != alNone && items[i].Participates && !(placed[i] == items[i].Bounds)) {
      controls[i]->SetAlignedBounds(placed[i]);
    }
  }
  FAligning = false;
  if (FAlignPending) {
    FAlignPending = false;
    TRect again = ClientRect();
    AlignControls(nullptr, again);
  }
}

void TWinControl::SetBorderWidth(int value) {
  if (FBorderWidth == value) return;
  FBorderWidth = std::max(value, 0);
  for (int i = 0; i < ControlCount(); ++i) Controls(i)->UpdateWidgetGeometry();
  Realign();
  Invalidate();
}

void TWinControl::Resize() {
  Realign();
  TControl::Resize();
}

// ---- Focus and tabs

int TWinControl::TabOrder() const {
  if (!FParent || FTabOrderRead >= 0) return FTabOrderRead;
  const auto& list = FParent->FTabList;
  auto it = std::find(list.begin(), list.end(), this);
  return it == list.end() ? -1 : static_cast<int>(it - list.begin());
}

void TWinControl::SetTabOrder(int value) {
  // While reading, siblings come one by one with their final numbers: the parent sorts
  // them once all are there.
  if (!FParent || ComponentState().Contains(csLoading)) {
    FTabOrderRead = value;
    return;
  }
  auto& list = FParent->FTabList;
  auto it = std::find(list.begin(), list.end(), this);
  if (it == list.end()) return;
  list.erase(it);
  const int count = static_cast<int>(list.size());
  if (value < 0 || value > count) value = count;
  list.insert(list.begin() + value, this);
  if (!ComponentState().Contains(csLoading)) FParent->UpdateTabOrder();
}

std::vector<TWinControl*> TWinControl::TabList() const { return FTabList; }

void TWinControl::UpdateTabOrder() {
  QWidget* previous = nullptr;
  for (TWinControl* c : FTabList) {
    QWidget* w = c->Widget();
    if (!w) continue;
    if (previous) QWidget::setTabOrder(previous, w);
    previous = w;
  }
}

void TWinControl::SetTabStop(bool value) {
  FTabStop = value;
  if (QWidget* w = Widget()) {
    if (!value) {
      w->setFocusPolicy(Qt::ClickFocus);
    } else if (w->focusPolicy() == Qt::NoFocus || w->focusPolicy() == Qt::ClickFocus) {
      w->setFocusPolicy(Qt::StrongFocus);
    }
  }
}

bool TWinControl::Focused() const {
  QWidget* w = Widget();
  if (!w) return false;
  QWidget* focus = QApplication::focusWidget();
  return focus && (focus == w || w->isAncestorOf(focus)) && FindControl(focus) == this;
}

bool TWinControl::CanFocus() const {
  for (const TControl* c = this; c; c = c->Parent()) {
    if (!c->Visible() || !c->Enabled()) return false;
  }
  return Widget() != nullptr;
}

void TWinControl::SetFocus() {
  if (QWidget* w = const_cast<TWinControl*>(this)->Handle()) {
    if (QWidget* proxy = w->focusProxy()) w = proxy;
    w->setFocus(Qt::OtherFocusReason);
  }
}

void TWinControl::SetCtl3D(bool value) {
  FParentCtl3D = false;
  if (FCtl3D == value) return;
  FCtl3D = value;
  Invalidate();
}

void TWinControl::SetParentCtl3D(bool value) {
  FParentCtl3D = value;
  if (value && FParent) FCtl3D = FParent->Ctl3D();
}

// ---- Keys

void TWinControl::KeyDown(Word& key, TShiftState shift) {
  if (OnKeyDown) OnKeyDown(this, key, shift);
}

void TWinControl::KeyUp(Word& key, TShiftState shift) {
  if (OnKeyUp) OnKeyUp(this, key, shift);
}

void TWinControl::KeyPress(char& key) {
  if (OnKeyPress) OnKeyPress(this, key);
}

void TWinControl::DoEnter() {
  if (OnEnter) OnEnter(this);
}

void TWinControl::DoExit() {
  if (OnExit) OnExit(this);
}

// ---- Widgets

QWidget* TWinControl::ClientWidget() const { return Widget(); }

void TWinControl::AttachChildWidget(TControl* child) {
  QWidget* w = child->Widget();
  QWidget* host = ClientWidget();
  if (!w || !host) return;
  if (w->parentWidget() != host) w->setParent(host);
  if (dynamic_cast<TWinControl*>(child)) {
    w->raise();
  } else {
    // Graphic controls lie under every windowed sibling, in their own order.
    QWidget* lowestWindowed = nullptr;
    for (TWinControl* wc : FWinControls) {
      if (wc->Widget() && wc->Widget()->parentWidget() == host) {
        lowestWindowed = wc->Widget();
        break;
      }
    }
    if (lowestWindowed) {
      w->stackUnder(lowestWindowed);
    } else {
      w->raise();
    }
  }
  child->UpdateWidgetVisibility();
}

void TWinControl::CreateWidget() { AdoptWidget(new TPaintedWidget(this, false)); }

void TWinControl::UpdateWidget() {
  TControl::UpdateWidget();
  QWidget* w = Widget();
  if (!w) return;
  if (!FTabStop && w->focusPolicy() != Qt::NoFocus) w->setFocusPolicy(Qt::ClickFocus);
  // The children get their widgets once this one exists.
  for (int i = 0; i < ControlCount(); ++i) {
    TControl* c = Controls(i);
    if (c->HandleAllocated()) {
      AttachChildWidget(c);
      c->UpdateWidgetGeometry();
    } else {
      c->CreateWidget();
    }
  }
  UpdateTabOrder();
}

void TWinControl::UpdateWidgetGeometry() {
  TControl::UpdateWidgetGeometry();
  // Children of an inner client widget depend on where that is.
  for (int i = 0; i < ControlCount(); ++i) Controls(i)->UpdateWidgetGeometry();
}

void TWinControl::FontChanged() {
  TControl::FontChanged();
  for (int i = 0; i < ControlCount(); ++i) Controls(i)->ParentFontChanged();
}

void TWinControl::ColorChanged() {
  TControl::ColorChanged();
  for (int i = 0; i < ControlCount(); ++i) Controls(i)->ParentColorChanged();
}

void TWinControl::ParentFontChanged() { TControl::ParentFontChanged(); }

void TWinControl::ParentColorChanged() { TControl::ParentColorChanged(); }

void TWinControl::SetDesignState(bool designing) {
  TControl::SetDesignState(designing);
  for (int i = 0; i < ControlCount(); ++i) Controls(i)->SetDesignState(designing);
  Realign();
}

void TWinControl::ScaleBy(int m, int d) {
  DisableAlign();
  TControl::ScaleBy(m, d);
  for (int i = 0; i < ControlCount(); ++i) Controls(i)->ScaleBy(m, d);
  EnableAlign();
}

void TWinControl::Loaded() {
  TControl::Loaded();
  // The children's tab order as the stream numbered it; unnumbered ones after them.
  std::stable_sort(FTabList.begin(), FTabList.end(), [](TWinControl* a, TWinControl* b) {
    const unsigned ka = a->FTabOrderRead < 0 ? UINT_MAX : static_cast<unsigned>(a->FTabOrderRead);
    const unsigned kb = b->FTabOrderRead < 0 ? UINT_MAX : static_cast<unsigned>(b->FTabOrderRead);
    return ka < kb;
  });
  for (TWinControl* c : FTabList) {
    if (c->FTabOrderRead >= 0 && !c->ComponentState().Contains(csLoading)) c->FTabOrderRead = -1;
  }
  if (FTabOrderRead >= 0 && FParent && !FParent->ComponentState().Contains(csLoading)) {
    const int order = FTabOrderRead;
    FTabOrderRead = -1;
    SetTabOrder(order);
  }
  Realign();
  UpdateTabOrder();
}

// ---------------------------------------------------------------------------------------
// TGraphicControl, TCustomControl

LUMORA_CLASS_IMPL(TGraphicControl) {}

TGraphicControl::TGraphicControl(TComponent* owner) : TControl(owner) {}

void TGraphicControl::CreateWidget() { AdoptWidget(new TPaintedWidget(this, false)); }

LUMORA_CLASS_IMPL(TCustomControl) {}

TCustomControl::TCustomControl(TComponent* owner) : TWinControl(owner) {}

void TCustomControl::CreateWidget() { AdoptWidget(new TPaintedWidget(this, false)); }

// ---------------------------------------------------------------------------------------

TCustomForm* GetParentForm(TControl* control) {
  while (control && control->Parent()) control = control->Parent();
  return dynamic_cast<TCustomForm*>(control);
}
