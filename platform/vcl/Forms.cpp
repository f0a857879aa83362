#include "platform/vcl/Forms.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ActnList.h"
#include "platform/vcl/ApplicationInternal.h"
#include "platform/vcl/ClassicFrame.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/Publish.h"
#include "platform/vcl/StdCtrls.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTextEdit>
#include <QPlainTextEdit>
#include <QWindow>

#include <algorithm>
#include <climits>

namespace {

// Classic window metrics, in pixels.
constexpr int kCaption = 19;      // caption bar with its bottom line
constexpr int kSmallCaption = 16; // caption of a tool window
constexpr int kSizeFrame = 4;     // border of a sizeable window
constexpr int kFixedFrame = 3;    // border of a fixed-size window
constexpr int kMenuBar = 19;

}  // namespace

// The top-level window of a form: the menu bar over the client area.
class TFormWidget : public QWidget {
public:
  explicit TFormWidget(TCustomForm* form) : QWidget(nullptr, Qt::Window), FForm(form) {}
  void Detach() { FForm = nullptr; }

protected:
  void closeEvent(QCloseEvent* e) override {
    e->ignore();
    TCustomForm* f = FForm;
    if (!f) return;
    // The window system's own close of a window whose frame the program draws is the
    // close command of that frame's menu.
    if (e->spontaneous() && f->ClassicFrame()) {
      Guard([f] { f->Perform(WM_SYSCOMMAND, SC_CLOSE); });
    } else {
      Guard([f] { f->WindowCloseRequested(); });
    }
  }
  void resizeEvent(QResizeEvent* e) override {
    QWidget::resizeEvent(e);
    if (TCustomForm* f = FForm) {
      if (TClassicFrame* frame = ClassicFrameOf(f)) frame->setGeometry(rect());
      const QSize inside = f->WindowInsideSize(size());
      const int w = inside.width();
      const int h = inside.height() - f->MenuHeight();
      Guard([f, w, h] { f->WindowResized(w, h); });
    }
  }
  void showEvent(QShowEvent* e) override {
    QWidget::showEvent(e);
    if (TCustomForm* f = FForm; f && !e->spontaneous()) Guard([f] { f->WindowShown(true); });
  }
  void hideEvent(QHideEvent* e) override {
    QWidget::hideEvent(e);
    if (TCustomForm* f = FForm; f && !e->spontaneous()) Guard([f] { f->WindowShown(false); });
  }
  void changeEvent(QEvent* e) override {
    QWidget::changeEvent(e);
    TCustomForm* f = FForm;
    if (!f) return;
    if (e->type() == QEvent::ActivationChange) {
      const bool active = isActiveWindow();
      Guard([f, active] { f->WindowActivated(active); });
    } else if (e->type() == QEvent::WindowStateChange) {
      const TWindowState state = isMinimized() ? wsMinimized : isMaximized() ? wsMaximized : wsNormal;
      Guard([f, state] { f->WindowStateChanged(state); });
    }
  }

private:
  TCustomForm* FForm;
};

// ---------------------------------------------------------------------------------------
// TControlScrollBar

LUMORA_CLASS_IMPL(TControlScrollBar) {
  c.Property("ButtonSize", &TControlScrollBar::ButtonSize, &TControlScrollBar::SetButtonSize).Default(0);
  c.Property("Color", &TControlScrollBar::Color, &TControlScrollBar::SetColor).Default(clBtnHighlight);
  c.Property("Increment", &TControlScrollBar::Increment, &TControlScrollBar::SetIncrement).Default(8);
  c.Property("Margin", &TControlScrollBar::Margin, &TControlScrollBar::SetMargin).Default(0);
  c.Property("ParentColor", &TControlScrollBar::ParentColor, &TControlScrollBar::SetParentColor).Default(true);
  c.Property("Position", &TControlScrollBar::Position, &TControlScrollBar::SetPosition).Default(0);
  c.Property("Range", &TControlScrollBar::Range, &TControlScrollBar::SetRange).Default(0);
  c.Property("Size", &TControlScrollBar::Size, &TControlScrollBar::SetSize).Default(0);
  c.Property("Style", &TControlScrollBar::Style, &TControlScrollBar::SetStyle).Default(ssRegular);
  c.Property("ThumbSize", &TControlScrollBar::ThumbSize, &TControlScrollBar::SetThumbSize).Default(0);
  c.Property("Tracking", &TControlScrollBar::Tracking, &TControlScrollBar::SetTracking).Default(false);
  c.Property("Visible", &TControlScrollBar::Visible, &TControlScrollBar::SetVisible).Default(true);
}

void TControlScrollBar::Assign(TPersistent* source) {
  if (auto* s = dynamic_cast<TControlScrollBar*>(source)) {
    FButtonSize = s->FButtonSize;
    FColor = s->FColor;
    FIncrement = s->FIncrement;
    FMargin = s->FMargin;
    FParentColor = s->FParentColor;
    FPosition = s->FPosition;
    FRange = s->FRange;
    FSize = s->FSize;
    FStyle = s->FStyle;
    FThumbSize = s->FThumbSize;
    FTracking = s->FTracking;
    FVisible = s->FVisible;
    return;
  }
  TPersistent::Assign(source);
}

void TControlScrollBar::SetPosition(int value) {
  FPosition = std::max(value, 0);
  if (auto* box = dynamic_cast<TScrollBox*>(FControl)) box->UpdateScrollRange();
}

void TControlScrollBar::SetRange(int value) {
  FRange = std::max(value, 0);
  if (auto* box = dynamic_cast<TScrollBox*>(FControl)) box->UpdateScrollRange();
}

void TControlScrollBar::SetVisible(bool value) {
  FVisible = value;
  if (auto* box = dynamic_cast<TScrollBox*>(FControl)) box->UpdateScrollRange();
}

// ---------------------------------------------------------------------------------------
// TScrollingWinControl, TScrollBox, TFrame

LUMORA_CLASS_IMPL(TScrollingWinControl) {}

TScrollingWinControl::TScrollingWinControl(TComponent* owner) : TWinControl(owner) {
  FHorzScrollBar = new TControlScrollBar(this, sbHorizontal);
  FVertScrollBar = new TControlScrollBar(this, sbVertical);
}

TScrollingWinControl::~TScrollingWinControl() {
  delete FHorzScrollBar;
  delete FVertScrollBar;
}

void TScrollingWinControl::SetAutoScroll(bool value) { FAutoScroll = value; }

void TScrollingWinControl::ScrollInView(TControl* control) {
  auto* area = qobject_cast<QScrollArea*>(Widget());
  if (!area || !control || !control->Widget()) return;
  area->ensureWidgetVisible(control->Widget(), 0, 0);
}

LUMORA_CLASS_IMPL(TScrollBox) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("AutoScroll", &TScrollBox::AutoScroll, &TScrollBox::SetAutoScroll).Default(true);
  PublishControlProperties(c, {"AutoSize", "BiDiMode"});
  c.Property("BorderStyle", &TScrollBox::BorderStyle, &TScrollBox::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Constraints", "DockSite", "DragCursor", "DragKind", "DragMode", "Enabled", "Color",
                               "Ctl3D", "Font"});
  c.Property("HorzScrollBar", &TScrollBox::HorzScrollBar, &TScrollBox::SetHorzScrollBar);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu", "ShowHint", "TabOrder", "TabStop"});
  c.Property("VertScrollBar", &TScrollBox::VertScrollBar, &TScrollBox::SetVertScrollBar);
  PublishControlProperties(c, {"Visible", "OnCanResize", "OnClick", "OnConstrainedResize", "OnDblClick",
                               "OnDockDrop", "OnDockOver", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag",
                               "OnEnter", "OnExit", "OnGetSiteInfo", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnResize", "OnStartDock", "OnStartDrag", "OnUnDock"});
  c.Property("ParentColor").Default(false);
}

TScrollBox::TScrollBox(TComponent* owner) : TScrollingWinControl(owner) {
  FControlStyle += csAcceptsControls;
  FWidth = 185;
  FHeight = 41;
  FColor = clBtnFace;
  FParentColor = false;
}

void TScrollBox::SetBorderStyle(TBorderStyle value) {
  if (FBorderStyle == value) return;
  FBorderStyle = value;
  if (auto* area = qobject_cast<QScrollArea*>(Widget())) {
    area->setFrameShape(value == BorderStyleOf(bsSingle) ? QFrame::StyledPanel : QFrame::NoFrame);
  }
  Realign();
}

QWidget* TScrollBox::ClientWidget() const { return FInner.data(); }

int TScrollBox::FrameSize() const { return FBorderStyle == BorderStyleOf(bsSingle) ? (FCtl3D ? 2 : 1) : 0; }

void TScrollBox::CreateWidget() {
  auto* area = new QScrollArea();
  area->setFrameShape(FBorderStyle == BorderStyleOf(bsSingle) ? QFrame::StyledPanel : QFrame::NoFrame);
  area->setFrameShadow(QFrame::Sunken);
  area->setWidgetResizable(false);
  auto* inner = new TPaintedWidget(this, false);
  inner->setAutoFillBackground(true);
  area->setWidget(inner);
  FInner = inner;
  AdoptWidget(area);
  UpdateScrollRange();
}

void TScrollBox::UpdateWidgetColors() {
  TWinControl::UpdateWidgetColors();
  if (FInner) FInner->setPalette(Widget()->palette());
}

void TScrollBox::AlignControls(TControl* changing, TRect& rect) {
  TScrollingWinControl::AlignControls(changing, rect);
  UpdateScrollRange();
}

void TScrollBox::UpdateScrollRange() {
  auto* area = qobject_cast<QScrollArea*>(Widget());
  if (!area || !FInner) return;
  const TRect client = ClientRect();
  int w = client.Width();
  int h = client.Height();
  if (FAutoScroll) {
    for (int i = 0; i < ControlCount(); ++i) {
      TControl* c = Controls(i);
      if (!c->Visible() || c->Align() != alNone) continue;
      w = std::max(w, c->Left() + c->Width());
      h = std::max(h, c->Top() + c->Height());
    }
  }
  w = std::max(w, FHorzScrollBar->Range());
  h = std::max(h, FVertScrollBar->Range());
  FInner->resize(w, h);
  area->setHorizontalScrollBarPolicy(FHorzScrollBar->Visible() ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
  area->setVerticalScrollBarPolicy(FVertScrollBar->Visible() ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
  area->horizontalScrollBar()->setValue(FHorzScrollBar->Position());
  area->verticalScrollBar()->setValue(FVertScrollBar->Position());
}

LUMORA_CLASS_IMPL(TCustomFrame) {}

TCustomFrame::TCustomFrame(TComponent* owner) : TScrollingWinControl(owner) {
  FControlStyle += csAcceptsControls;
  FWidth = 320;
  FHeight = 240;
  FColor = clBtnFace;
  FParentColor = true;
}

void TCustomFrame::GetChildren(const TGetChildProc& proc, TComponent* root) {
  TScrollingWinControl::GetChildren(proc, root);
  // A frame's components that are not controls (menus, lists) are its children too.
  if (root == this) {
    for (int i = 0; i < ComponentCount(); ++i) {
      TComponent* c = Components(i);
      if (!c->HasParent()) proc(c);
    }
  }
}

void TCustomFrame::CreateWidget() {
  auto* w = new TPaintedWidget(this, false);
  w->setAutoFillBackground(true);
  AdoptWidget(w);
}

LUMORA_CLASS_IMPL(TFrame) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("AutoScroll", &TFrame::AutoScroll, &TFrame::SetAutoScroll).Default(true);
  PublishControlProperties(c, {"AutoSize", "BiDiMode", "Constraints", "DockSite", "DragCursor", "DragKind",
                               "DragMode", "Enabled", "Color", "Ctl3D", "Font"});
  c.Property("HorzScrollBar", &TFrame::HorzScrollBar, &TFrame::SetHorzScrollBar);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu", "ShowHint", "TabOrder", "TabStop"});
  c.Property("VertScrollBar", &TFrame::VertScrollBar, &TFrame::SetVertScrollBar);
  PublishControlProperties(c, {"Visible", "OnCanResize", "OnClick", "OnConstrainedResize", "OnDblClick",
                               "OnDockDrop", "OnDockOver", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag",
                               "OnEnter", "OnExit", "OnGetSiteInfo", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnResize", "OnStartDock", "OnStartDrag", "OnUnDock"});
}

// ---------------------------------------------------------------------------------------
// TCustomForm

LUMORA_CLASS_IMPL(TCustomForm) {}

TCustomForm::TCustomForm(TComponent* owner) : TScrollingWinControl(owner) {
  FControlStyle = TControlStyle{csAcceptsControls, csCaptureMouse, csClickEvents, csSetCaption, csDoubleClicks};
  FIcon = new TIcon();
  FIcon->OnChange = [this](TObject*) {
    if (QWidget* w = Widget()) {
      w->setWindowIcon(FIcon->Empty() ? QIcon() : QIcon(QPixmap::fromImage(FIcon->Image())));
    }
    if (TClassicFrame* frame = ClassicFrameOf(this)) frame->update();
  };
  FVisible = false;
  FColor = clBtnFace;
  FParentColor = false;
  FParentFont = false;
  FLeft = 0;
  FTop = 0;
  FWidth = 320;
  FHeight = 240;
  TScreen::Instance()->AddForm(this);
  CreateWidget();
}

TCustomForm::~TCustomForm() {
  if (FModalLoop) FModalLoop->quit();
  Destroying();
  if (auto* fw = dynamic_cast<TFormWidget*>(Widget())) fw->Detach();
  if (TClassicFrame* frame = ClassicFrameOf(this)) frame->Detach();
  DestroyComponents();
  if (gScreen) gScreen->RemoveForm(this);
  if (gApplication && gApplication->MainForm() == this) gApplication->SetMainForm(nullptr);
  delete FIcon;
  FIcon = nullptr;
}

void TCustomForm::Notification(TComponent* component, TOperation operation) {
  TScrollingWinControl::Notification(component, operation);
  if (operation != opRemove) return;
  if (component == FMenu) {
    FMenu = nullptr;
    if (FMenuBar) delete FMenuBar.data();
    LayoutWindow();
  }
  if (component == FActiveControl) FActiveControl = nullptr;
  if (component == FWindowMenu) FWindowMenu = nullptr;
  if (component == FObjectMenuItem) FObjectMenuItem = nullptr;
}

void TCustomForm::CreateWidget() {
  if (HandleAllocated()) return;
  auto* window = new TFormWidget(this);
  auto* client = new TPaintedWidget(this, true);
  client->setParent(window);
  FClient = client;
  window->setAttribute(Qt::WA_QuitOnClose, false);
  AdoptWidget(window);
  if (FBridge) FBridge->Watch(client);
  ApplyWindowFlags();
  if (FMenu) MenuChanged(FMenu);
  LayoutWindow();
}

QWidget* TCustomForm::ClientWidget() const { return FClient.data(); }

QWidget* TCustomForm::InputWidget() const { return FClient.data(); }

int TCustomForm::FrameWidth() const {
  switch (FBorderStyle) {
    case bsNone: return 0;
    case bsSizeable:
    case bsSizeToolWin: return kSizeFrame;
    default: return kFixedFrame;
  }
}

int TCustomForm::CaptionHeight() const {
  switch (FBorderStyle) {
    case bsNone: return 0;
    case bsToolWindow:
    case bsSizeToolWin: return kSmallCaption;
    default: return kCaption;
  }
}

int TCustomForm::MenuHeight() const {
  if (!FMenu || FBorderStyle == bsDialog) return 0;
  for (TMenuItem* item : FMenu->VisibleItems()) {
    if (item->Visible()) return kMenuBar;
  }
  return 0;
}

QPoint TCustomForm::WindowInsideOffset() const {
  if (!FClassicFrame) return QPoint(0, 0);
  const int fw = FrameWidth();
  return QPoint(fw, fw + CaptionHeight());
}

QSize TCustomForm::WindowInsideSize(QSize windowSize) const {
  if (!FClassicFrame) return windowSize;
  const int fw = FrameWidth();
  return QSize(std::max(0, windowSize.width() - 2 * fw), std::max(0, windowSize.height() - 2 * fw - CaptionHeight()));
}

void TCustomForm::SetClassicFrame(bool value) {
  if (FClassicFrame == value) return;
  FClassicFrame = value;
  QWidget* window = Widget();
  if (window) {
    if (value) {
      auto* frame = new TClassicFrame(this, window);
      frame->setGeometry(window->rect());
      frame->lower();
      frame->show();
    } else if (TClassicFrame* frame = ClassicFrameOf(this)) {
      frame->Detach();
      delete frame;
    }
  }
  ApplyWindowFlags();
  LayoutWindow();
}

void TCustomForm::WindowStateChanged(TWindowState state) {
  // The window system minimised, maximised or restored the window.
  if (state == FWindowState || !Widget() || !Widget()->isVisible()) return;
  FWindowState = state;
  if (TClassicFrame* frame = ClassicFrameOf(this)) frame->update();
  if (state == wsNormal) LayoutWindow();
}

QSize TCustomForm::WindowClientSize() const {
  const int fw = FrameWidth();
  return QSize(std::max(0, FWidth - 2 * fw), std::max(0, FHeight - 2 * fw - CaptionHeight() - MenuHeight()));
}

TRect TCustomForm::ClientRect() const {
  const QSize inside = WindowClientSize();
  return Rect(0, 0, std::max(0, inside.width() - 2 * FBorderWidth), std::max(0, inside.height() - 2 * FBorderWidth));
}

void TCustomForm::SetFormClientWidth(int value) {
  if (ComponentState().Contains(csLoading)) {
    FClientWidthRead = value;
    return;
  }
  SetClientWidth(value);
}

void TCustomForm::SetFormClientHeight(int value) {
  if (ComponentState().Contains(csLoading)) {
    FClientHeightRead = value;
    return;
  }
  SetClientHeight(value);
}

void TCustomForm::LayoutWindow() {
  QWidget* window = Widget();
  if (!window || !FClient) return;
  const int menu = MenuHeight();
  const QPoint o = WindowInsideOffset();
  FResizingWindow = true;
  QSize client = WindowClientSize();
  if (FWindowState != wsNormal) {
    // A maximised window keeps the size the window system gave it.
    const QSize inside = WindowInsideSize(window->size());
    client = QSize(inside.width(), std::max(0, inside.height() - menu));
  }
  if (FMenuBar) {
    FMenuBar->setGeometry(o.x(), o.y(), client.width(), menu);
    FMenuBar->setVisible(menu > 0);
  }
  FClient->setGeometry(o.x(), o.y() + menu, client.width(), client.height());
  // With a drawn frame the window is the whole form; otherwise the system's frame is around it.
  const QSize outer = FClassicFrame ? QSize(FWidth, FHeight) : QSize(client.width(), client.height() + menu);
  if (FWindowState == wsNormal) window->resize(outer);
  if (TClassicFrame* frame = ClassicFrameOf(this)) {
    frame->setGeometry(window->rect());
    frame->update();
  }
  if (FBorderStyle != bsSizeable && FBorderStyle != bsSizeToolWin && FBorderStyle != bsNone) {
    window->setFixedSize(outer);
  } else {
    const TSizeLimits& l = FConstraints->Limits();
    const int extraW = FClassicFrame ? 0 : 2 * FrameWidth();
    const int extraH = FClassicFrame ? 0 : 2 * FrameWidth() + CaptionHeight();
    window->setMinimumSize(l.MinWidth > 0 ? std::max(0, l.MinWidth - extraW) : 0,
                           l.MinHeight > 0 ? std::max(0, l.MinHeight - extraH) : 0);
    window->setMaximumSize(l.MaxWidth > 0 ? std::max(0, l.MaxWidth - extraW) : QWIDGETSIZE_MAX,
                           l.MaxHeight > 0 ? std::max(0, l.MaxHeight - extraH) : QWIDGETSIZE_MAX);
  }
  FResizingWindow = false;
}

void TCustomForm::UpdateWidgetGeometry() {
  LayoutWindow();
  if (QWidget* w = Widget(); w && (FPosition == poDesigned || Parent())) w->move(FLeft, FTop);
  for (int i = 0; i < ControlCount(); ++i) Controls(i)->UpdateWidgetGeometry();
}

void TCustomForm::SetBounds(int left, int top, int width, int height) {
  TScrollingWinControl::SetBounds(left, top, width, height);
}

void TCustomForm::WindowResized(int clientWidth, int clientHeight) {
  if (FResizingWindow || FWindowState == wsMinimized) return;
  const QSize client = WindowClientSize();
  if (client.width() == clientWidth && client.height() == clientHeight) return;
  // The window got another size than the form asked for: the form follows it.
  const int fw = FrameWidth();
  const bool was = FAnchoring;
  FAnchoring = true;
  FWidth = clientWidth + 2 * fw;
  FHeight = clientHeight + 2 * fw + CaptionHeight() + MenuHeight();
  FAnchoring = was;
  const QPoint o = WindowInsideOffset();
  if (FMenuBar) FMenuBar->setGeometry(o.x(), o.y(), clientWidth, MenuHeight());
  if (FClient) FClient->setGeometry(o.x(), o.y() + MenuHeight(), clientWidth, clientHeight);
  Resize();
}

void TCustomForm::Resize() {
  TScrollingWinControl::Resize();
}

void TCustomForm::ApplyWindowFlags() {
  QWidget* w = Widget();
  if (!w) return;
  // A form placed inside another control is a child of it, with no window of its own.
  if (Parent()) {
    if (w->isWindow()) w->setWindowFlags(Qt::Widget);
    return;
  }
  Qt::WindowFlags flags = Qt::Window;
  if (FClassicFrame) {
    // The program draws the frame, its buttons and its menu.
    flags |= Qt::FramelessWindowHint;
    if (FFormStyle == fsStayOnTop) flags |= Qt::WindowStaysOnTopHint;
    if (TClassicFrame* frame = ClassicFrameOf(this)) frame->update();
    if (w->windowFlags() != flags) {
      const bool visible = w->isVisible();
      w->setWindowFlags(flags);
      if (visible) w->show();
    }
    return;
  }
  switch (FBorderStyle) {
    case bsNone: flags |= Qt::FramelessWindowHint; break;
    case bsDialog: flags = Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint; break;
    case bsToolWindow:
    case bsSizeToolWin: flags = Qt::Tool | Qt::WindowTitleHint | Qt::WindowCloseButtonHint; break;
    default: flags |= Qt::WindowTitleHint; break;
  }
  if (FBorderStyle != bsNone && FBorderStyle != bsDialog) {
    flags |= Qt::CustomizeWindowHint | Qt::WindowTitleHint;
    if (FBorderIcons.Contains(biSystemMenu)) flags |= Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
    if (FBorderIcons.Contains(biSystemMenu) && FBorderIcons.Contains(biMinimize) &&
        FBorderStyle != bsToolWindow && FBorderStyle != bsSizeToolWin) {
      flags |= Qt::WindowMinimizeButtonHint;
    }
    if (FBorderIcons.Contains(biSystemMenu) && FBorderIcons.Contains(biMaximize) && FBorderStyle == bsSizeable) {
      flags |= Qt::WindowMaximizeButtonHint;
    }
    if (FBorderIcons.Contains(biHelp)) flags |= Qt::WindowContextHelpButtonHint;
  }
  if (FFormStyle == fsStayOnTop) flags |= Qt::WindowStaysOnTopHint;
  const bool visible = w->isVisible();
  w->setWindowFlags(flags);
  if (visible) w->show();
}

void TCustomForm::SetBorderStyle(TFormBorderStyle value) {
  if (FBorderStyle == value) return;
  // The outer size stays; the client area is what changes.
  FBorderStyle = value;
  ApplyWindowFlags();
  LayoutWindow();
  Realign();
}

void TCustomForm::SetBorderIcons(TBorderIcons value) {
  if (FBorderIcons == value) return;
  FBorderIcons = value;
  ApplyWindowFlags();
}

void TCustomForm::SetFormStyle(TFormStyle value) {
  if (FFormStyle == value) return;
  FFormStyle = value;
  ApplyWindowFlags();
}

void TCustomForm::SetWindowState(TWindowState value) {
  if (FWindowState == value) return;
  FWindowState = value;
  QWidget* w = Widget();
  if (!w || !w->isVisible()) return;
  switch (value) {
    case wsMinimized: w->showMinimized(); break;
    case wsMaximized: w->showMaximized(); break;
    default: w->showNormal(); break;
  }
}

void TCustomForm::SetMenu(TMainMenu* value) {
  if (FMenu == value) return;
  if (FMenu && FMenuBar) delete FMenuBar.data();
  FMenu = value;
  if (value) value->FreeNotification(this);
  MenuChanged(value);
  if (!ComponentState().Contains(csLoading)) Realign();
}

void TCustomForm::MenuChanged(TMainMenu* menu) {
  if (menu != FMenu) return;
  if (FMenu && Widget()) FMenuBar = FMenu->CreateMenuBar(Widget());
  LayoutWindow();
}

void TCustomForm::SetActiveControl(TWinControl* value) {
  FActiveControl = value;
  if (value) {
    value->FreeNotification(this);
    if (FActive && !ComponentState().Contains(csLoading) && value->CanFocus()) value->SetFocus();
  }
}

void TCustomForm::SetPixelsPerInch(int value) {
  if (value > 0) FPixelsPerInch = value;
}

void TCustomForm::UpdateWidgetText() {
  if (QWidget* w = Widget()) w->setWindowTitle(UnicodeText());
  if (TClassicFrame* frame = ClassicFrameOf(this)) frame->update();
}

void TCustomForm::UpdateWidgetColors() {
  TScrollingWinControl::UpdateWidgetColors();
  if (FClient) FClient->setPalette(Widget()->palette());
  if (FClient) FClient->update();
}

void TCustomForm::Paint(QPainter& painter) {
  painter.fillRect(QRect(QPoint(0, 0), FClient ? FClient->size() : QSize()), ColorToQColor(FColor));
  if (OnPaint) OnPaint(this);
}

void TCustomForm::UpdateWidgetVisibility() {
  QWidget* w = Widget();
  if (!w) return;
  if (ComponentState().Contains(csLoading)) return;
  const bool show = FVisible;
  if (Parent()) {
    // Hidden explicitly too, so that showing its parent does not show it.
    w->setVisible(show);
    return;
  }
  if (show == w->isVisible()) return;
  if (show) {
    if (!FShownOnce) ApplyPosition();
    switch (FWindowState) {
      case wsMinimized: w->showMinimized(); break;
      case wsMaximized: w->showMaximized(); break;
      default: w->show(); break;
    }
  } else {
    w->hide();
  }
}

void TCustomForm::ApplyPosition() {
  QWidget* w = Widget();
  if (!w) return;
  FShownOnce = true;
  QRect area;
  if (QScreen* s = QGuiApplication::primaryScreen()) area = s->availableGeometry();
  auto centreOn = [&](const QRect& r) {
    const int x = r.x() + (r.width() - FWidth) / 2;
    const int y = r.y() + (r.height() - FHeight) / 2;
    FLeft = x;
    FTop = y;
    w->move(x, y);
  };
  switch (FPosition) {
    case poScreenCenter:
    case poDesktopCenter: centreOn(area); break;
    case poMainFormCenter:
    case poOwnerFormCenter: {
      TCustomForm* other = nullptr;
      if (FPosition == poOwnerFormCenter) other = dynamic_cast<TCustomForm*>(Owner());
      if (!other && gApplication) other = gApplication->MainForm();
      if (other && other != this) {
        centreOn(QRect(other->Left(), other->Top(), other->Width(), other->Height()));
      } else {
        centreOn(area);
      }
      break;
    }
    case poDesigned: w->move(FLeft, FTop); break;
    default: break;
  }
}

void TCustomForm::VisibleChanged() {
  if (ComponentState().Contains(csLoading)) {
    FShowPending = FVisible;
    return;
  }
  UpdateWidgetVisibility();
  if (Parent() && (FAlign != alNone || !(FAnchors == TAnchors{akLeft, akTop}))) RequestAlign();
}

void TCustomForm::Show() {
  SetVisible(true);
  BringToFront();
}

void TCustomForm::Hide() { SetVisible(false); }

void TCustomForm::BringToFront() {
  QWidget* w = Widget();
  if (!w || !w->isVisible()) return;
  // Screens without windows to stack (the offscreen one) have nothing to raise.
  if (QGuiApplication::platformName() != QLatin1String("offscreen")) w->raise();
  if (Parent()) return;  // part of another window, which is the one activated
  w->activateWindow();
  TScreen::Instance()->SetActiveForm(this);
}

void TCustomForm::SetFocus() {
  if (!FVisible || !FEnabled) throw EInvalidOperation("Cannot focus a disabled or invisible window");
  BringToFront();
}

void TCustomForm::WindowShown(bool shown) {
  if (shown) {
    FVisible = true;
    if (FActiveControl && FActiveControl->CanFocus()) {
      FActiveControl->SetFocus();
    } else {
      SelectFirst();
    }
    DoShow();
  } else {
    DoHide();
  }
}

void TCustomForm::WindowActivated(bool active) {
  if (active == FActive) return;
  FActive = active;
  if (active) {
    TScreen::Instance()->SetActiveForm(this);
    Activate();
  } else {
    Deactivate();
  }
}

void TCustomForm::Activate() {
  if (OnActivate) OnActivate(this);
}

void TCustomForm::Deactivate() {
  if (OnDeactivate) OnDeactivate(this);
}

void TCustomForm::DoCreate() {
  if (OnCreate) OnCreate(this);
}

void TCustomForm::DoDestroy() {
  if (OnDestroy) OnDestroy(this);
}

void TCustomForm::DoShow() {
  if (OnShow) OnShow(this);
}

void TCustomForm::DoHide() {
  if (OnHide) OnHide(this);
}

void TCustomForm::DoClose(TCloseAction& action) {
  if (OnClose) OnClose(this, action);
}

bool TCustomForm::CloseQuery() {
  bool canClose = true;
  if (OnCloseQuery) OnCloseQuery(this, canClose);
  return canClose;
}

void TCustomForm::Close() {
  if (FModalLoop) {
    SetModalResult(mrCancel);
    return;
  }
  if (!CloseQuery()) return;
  TCloseAction action = caHide;
  DoClose(action);
  if (action == caNone) return;
  if (gApplication && gApplication->MainForm() == this) {
    gApplication->Terminate();
    Hide();
  } else if (action == caHide) {
    Hide();
  } else if (action == caMinimize) {
    SetWindowState(wsMinimized);
  } else {
    Release();
  }
}

void TCustomForm::WindowCloseRequested() {
  TMessage m;
  m.Msg = WM_CLOSE;
  WndProc(m);
}

void TCustomForm::Release() { ::PostMessage(Widget(), CM_RELEASE); }

void TCustomForm::Dispatch(TMessage& message) {
  switch (message.Msg) {
    case CM_RELEASE:
      delete this;
      return;
    case WM_CLOSE:
      Close();
      return;
    case WM_SYSCOMMAND:
      DefaultSysCommand(this, message.WParam);
      return;
    default: TScrollingWinControl::Dispatch(message);
  }
}

void TCustomForm::SetModalResult(TModalResult value) {
  FModalResult = value;
  if (FModalLoop && value != mrNone) FModalLoop->quit();
}

void TCustomForm::CloseModal() {
  if (!CloseQuery()) {
    FModalResult = mrNone;
    return;
  }
  TCloseAction action = caHide;
  DoClose(action);
  if (action == caNone) FModalResult = mrNone;
}

int TCustomForm::ShowModal() {
  if (FVisible || FModalLoop) throw EInvalidOperation("Cannot make a visible window modal");
  QWidget* w = Widget();
  w->setWindowModality(Qt::ApplicationModal);
  FModalResult = mrNone;
  Show();
  QEventLoop loop;
  FModalLoop = &loop;
  QPointer<QWidget> guard(w);
  while (true) {
    if (FModalResult == mrNone) loop.exec();
    if (!guard) return mrCancel;  // the form was freed while it ran
    if (gApplication && gApplication->Terminated()) FModalResult = mrCancel;
    if (FModalResult != mrNone) CloseModal();
    if (FModalResult != mrNone) break;
  }
  FModalLoop = nullptr;
  Hide();
  w->setWindowModality(Qt::NonModal);
  return FModalResult;
}

void TCustomForm::SelectFirst() {
  std::vector<TWinControl*> order;
  std::function<void(TWinControl*)> collect = [&](TWinControl* parent) {
    for (TWinControl* c : parent->TabList()) {
      order.push_back(c);
      collect(c);
    }
  };
  collect(this);
  for (TWinControl* c : order) {
    if (c->TabStop() && c->CanFocus()) {
      c->SetFocus();
      return;
    }
  }
}

void TCustomForm::SelectNext(TWinControl* current, bool forward) {
  std::vector<TWinControl*> order;
  std::function<void(TWinControl*)> collect = [&](TWinControl* parent) {
    for (TWinControl* c : parent->TabList()) {
      order.push_back(c);
      collect(c);
    }
  };
  collect(this);
  if (order.empty()) return;
  auto it = std::find(order.begin(), order.end(), current);
  const int n = static_cast<int>(order.size());
  int start = it == order.end() ? (forward ? -1 : n) : static_cast<int>(it - order.begin());
  for (int step = 1; step <= n; ++step) {
    const int i = ((start + (forward ? step : -step)) % n + n) % n;
    if (order[i]->TabStop() && order[i]->CanFocus()) {
      order[i]->SetFocus();
      return;
    }
  }
}

bool TCustomForm::IsShortCut(TWMKey& message) {
  bool handled = false;
  if (OnShortCut) OnShortCut(message, handled);
  if (handled) return true;
  const TShiftState shift = KeyDataToShiftState(message.KeyData);
  const TShortCut sc = ::ShortCut(message.CharCode, shift);
  if (FMenu && FWindowState != wsMinimized && FMenu->IsShortCut(sc)) return true;
  for (int i = 0; i < ComponentCount(); ++i) {
    if (auto* list = dynamic_cast<TCustomActionList*>(Components(i)); list && list->IsShortCut(sc)) return true;
  }
  return false;
}

void TCustomForm::SetDesignState(bool designing) {
  SetDesigning(designing, true);
  TScrollingWinControl::SetDesignState(designing);
}

void TCustomForm::Loaded() {
  const bool visible = FShowPending || FVisible;
  FShowPending = false;
  TScrollingWinControl::Loaded();
  if (FClientWidthRead >= 0 || FClientHeightRead >= 0) {
    const TRect client = ClientRect();
    const int w = FClientWidthRead >= 0 ? FClientWidthRead + FWidth - client.Width() : FWidth;
    const int h = FClientHeightRead >= 0 ? FClientHeightRead + FHeight - client.Height() : FHeight;
    FClientWidthRead = FClientHeightRead = -1;
    SetBounds(FLeft, FTop, w, h);
  }
  if (FScaled && FPixelsPerInch != TScreen::Instance()->PixelsPerInch()) {
    const int screenPpi = TScreen::Instance()->PixelsPerInch();
    const TRect client = ClientRect();
    const int cw = MulDiv(client.Width(), screenPpi, FPixelsPerInch);
    const int ch = MulDiv(client.Height(), screenPpi, FPixelsPerInch);
    DisableAlign();
    for (int i = 0; i < ControlCount(); ++i) Controls(i)->ScaleBy(screenPpi, FPixelsPerInch);
    FFont->SetHeight(MulDiv(FFont->Height(), screenPpi, FPixelsPerInch));
    FPixelsPerInch = screenPpi;
    EnableAlign();
    SetBounds(FLeft, FTop, cw + FWidth - ClientRect().Width(), ch + FHeight - ClientRect().Height());
  }
  LayoutWindow();
  if (visible) {
    FVisible = true;
    UpdateWidgetVisibility();
  }
}

void TCustomForm::GetChildren(const TGetChildProc& proc, TComponent* root) {
  TScrollingWinControl::GetChildren(proc, root);
  if (root != this) return;
  for (int i = 0; i < ComponentCount(); ++i) {
    TComponent* c = Components(i);
    if (!c->HasParent()) proc(c);
  }
}

void TCustomForm::DefineProperties(TFiler& filer) {
  TScrollingWinControl::DefineProperties(filer);
  filer.DefineProperty(
      "PixelsPerInch", [this](TReader& r) { SetPixelsPerInch(r.ReadInteger()); },
      [this](TWriter& w) { w.WriteInteger(FPixelsPerInch); }, !FIsControl);
  filer.DefineProperty(
      "TextHeight", [this](TReader& r) { FTextHeight = r.ReadInteger(); },
      [this](TWriter& w) { w.WriteInteger(FontCellHeight(FFont->Handle())); }, !FIsControl);
  filer.DefineProperty("IgnoreFontProperty", [](TReader& r) { r.ReadBoolean(); }, nullptr, false);
}

// ---------------------------------------------------------------------------------------
// TForm's published properties

LUMORA_CLASS_IMPL(TForm) {
  PublishControlProperties(c, {"Action"});
  c.Property("ActiveControl", &TForm::ActiveControl, &TForm::SetActiveControl);
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("AutoScroll", &TForm::AutoScroll, &TForm::SetAutoScroll).Default(true);
  PublishControlProperties(c, {"AutoSize", "BiDiMode"});
  c.Property("BorderIcons", &TForm::BorderIcons, &TForm::SetBorderIcons)
      .Default(TBorderIcons{biSystemMenu, biMinimize, biMaximize});
  c.Property("BorderStyle", &TForm::BorderStyle, &TForm::SetBorderStyle).Default(bsSizeable);
  PublishControlProperties(c, {"BorderWidth", "Caption"});
  c.Property("ClientHeight", &TForm::FormClientHeight, &TForm::SetFormClientHeight).Stored(false);
  c.Property("ClientWidth", &TForm::FormClientWidth, &TForm::SetFormClientWidth).Stored(false);
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D"});
  c.Property("DefaultMonitor", &TForm::DefaultMonitor, &TForm::SetDefaultMonitor).Default(dmActiveForm);
  PublishControlProperties(c, {"DockSite", "DragKind", "DragMode", "Enabled", "ParentFont", "Font"});
  c.Property("ParentFont").Default(false);
  c.Property("FormStyle", &TForm::FormStyle, &TForm::SetFormStyle).Default(fsNormal);
  c.Property("HelpFile", &TForm::HelpFile, &TForm::SetHelpFile);
  c.Property("HorzScrollBar", &TForm::HorzScrollBar, &TForm::SetHorzScrollBar);
  c.Property("Icon", &TForm::Icon, &TForm::SetIcon);
  c.Property("KeyPreview", &TForm::KeyPreview, &TForm::SetKeyPreview).Default(false);
  c.Property("Menu", &TForm::Menu, &TForm::SetMenu);
  c.Property("ObjectMenuItem", &TForm::ObjectMenuItem, &TForm::SetObjectMenuItem);
  c.Property("OldCreateOrder", &TForm::OldCreateOrder, &TForm::SetOldCreateOrder);
  PublishControlProperties(c, {"ParentBiDiMode"});
  c.Property("PixelsPerInch", &TForm::PixelsPerInch, &TForm::SetPixelsPerInch).Stored(false);
  PublishControlProperties(c, {"PopupMenu"});
  c.Property("Position", &TForm::Position, &TForm::SetPosition).Default(poDesigned);
  c.Property("PrintScale", &TForm::PrintScale, &TForm::SetPrintScale).Default(poProportional);
  c.Property("Scaled", &TForm::Scaled, &TForm::SetScaled).Default(true);
  PublishControlProperties(c, {"ShowHint", "UseDockManager"});
  c.Property("VertScrollBar", &TForm::VertScrollBar, &TForm::SetVertScrollBar);
  PublishControlProperties(c, {"Visible"});
  c.Property("Visible").Default(false);
  c.Property("WindowState", &TForm::WindowState, &TForm::SetWindowState).Default(wsNormal);
  c.Property("WindowMenu", &TForm::WindowMenu, &TForm::SetWindowMenu);
  c.Property("OnActivate", &TForm::OnActivate, &TForm::OnActivate);
  PublishControlProperties(c, {"OnCanResize", "OnClick"});
  c.Property("OnClose", &TForm::OnClose, &TForm::OnClose);
  c.Property("OnCloseQuery", &TForm::OnCloseQuery, &TForm::OnCloseQuery);
  PublishControlProperties(c, {"OnConstrainedResize"});
  c.Property("OnCreate", &TForm::OnCreate, &TForm::OnCreate);
  PublishControlProperties(c, {"OnDblClick"});
  c.Property("OnDestroy", &TForm::OnDestroy, &TForm::OnDestroy);
  c.Property("OnDeactivate", &TForm::OnDeactivate, &TForm::OnDeactivate);
  PublishControlProperties(c, {"OnDockDrop", "OnDockOver", "OnDragDrop", "OnDragOver", "OnEndDock", "OnGetSiteInfo"});
  c.Property("OnHide", &TForm::OnHide, &TForm::OnHide);
  PublishControlProperties(c, {"OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("OnMouseWheel", &TForm::OnMouseWheel, &TForm::OnMouseWheel);
  c.Property("OnMouseWheelDown", &TForm::OnMouseWheelDown, &TForm::OnMouseWheelDown);
  c.Property("OnMouseWheelUp", &TForm::OnMouseWheelUp, &TForm::OnMouseWheelUp);
  c.Property("OnPaint", &TForm::OnPaint, &TForm::OnPaint);
  PublishControlProperties(c, {"OnResize"});
  c.Property("OnShortCut", &TForm::OnShortCut, &TForm::OnShortCut);
  c.Property("OnShow", &TForm::OnShow, &TForm::OnShow);
  PublishControlProperties(c, {"OnStartDock", "OnUnDock"});
}

// ---------------------------------------------------------------------------------------

bool PostMessage(TWinControl* control, std::uint32_t msg, WPARAM wParam, LPARAM lParam) {
  return control && ::PostMessage(static_cast<QObject*>(control->Handle()), msg, wParam, lParam);
}

LRESULT SendMessage(TWinControl* control, std::uint32_t msg, WPARAM wParam, LPARAM lParam) {
  if (!control) return 0;
  return control->Perform(msg, wParam, lParam);
}

TControl* FindDragTarget(TPoint pos, bool allowDisabled) {
  QWidget* w = QApplication::widgetAt(pos.X, pos.Y);
  TControl* c = TControl::FindControl(w);
  while (c && !allowDisabled && !c->Enabled()) c = c->Parent();
  return c;
}

void RegisterFormsClasses() {
  RegisterClasses({TControlScrollBar::StaticClass(), TScrollingWinControl::StaticClass(), TScrollBox::StaticClass(),
                   TCustomFrame::StaticClass(), TFrame::StaticClass(), TCustomForm::StaticClass(),
                   TForm::StaticClass()});
}
