#include "platform/vcl/Spin.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ApplicationInternal.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/Publish.h"

#include <QLineEdit>
#include <QMouseEvent>
#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one
#include <QPainter>

#include "platform/vcl/Menus.h"

#include <climits>

namespace {

constexpr int kButtonWidth = 15;


// A small solid triangle pointing up or down, centred in `r`.
void Arrow(QPainter& p, const QRect& r, bool up, const QColor& ink, int offset) {
  const int cx = r.left() + (r.width() - 1) / 2 + offset;
  const int cy = r.top() + (r.height() - 1) / 2 + offset;
  for (int i = 0; i < 3; ++i) {
    const int y = up ? cy - 1 + i : cy + 1 - i;
    p.fillRect(QRect(cx - i, y, 2 * i + 1, 1), ink);
  }
}


}  // namespace

void DrawSpinButtons(QPainter& painter, const QRect& rect, TSpinPart pressed, bool enabled) {
  const int half = rect.height() / 2;
  const QRect parts[2] = {QRect(rect.left(), rect.top(), rect.width(), half),
                          QRect(rect.left(), rect.top() + half, rect.width(), rect.height() - half)};
  for (int i = 0; i < 2; ++i) {
    const TSpinPart part = i == 0 ? spUp : spDown;
    QRect edge = parts[i];
    painter.fillRect(edge, Sys(clBtnFace));
    if (pressed == part) {
      Frame3D(painter, edge, Sys(clBtnShadow), Sys(clBtnShadow));
    } else {
      Frame3D(painter, edge, Sys(cl3DLight), Sys(cl3DDkShadow));
      Frame3D(painter, edge, Sys(clBtnHighlight), Sys(clBtnShadow));
    }
    Arrow(painter, parts[i], part == spUp, enabled ? Sys(clBtnText) : Sys(clGrayText), pressed == part ? 1 : 0);
  }
}

TSpinPart SpinPartAt(const QSize& size, int x, int y) {
  if (x < 0 || y < 0 || x >= size.width() || y >= size.height()) return spNone;
  return y < size.height() / 2 ? spUp : spDown;
}

// ---------------------------------------------------------------------------------------
// TSpinButton

LUMORA_CLASS_IMPL(TSpinButton) {
  PublishControlProperties(c, {"Align", "Anchors", "Constraints", "Ctl3D", "DragCursor", "DragKind", "DragMode",
                               "Enabled"});
  c.Property("FocusControl", &TSpinButton::FocusControl, &TSpinButton::SetFocusControl);
  PublishControlProperties(c, {"ParentCtl3D", "ParentShowHint", "PopupMenu", "ShowHint", "TabOrder", "TabStop",
                               "Visible"});
  c.Property("OnDownClick", &TSpinButton::OnDownClick, &TSpinButton::OnDownClick);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit",
                               "OnStartDock", "OnStartDrag"});
  c.Property("OnUpClick", &TSpinButton::OnUpClick, &TSpinButton::OnUpClick);
}

TSpinButton::TSpinButton(TComponent* owner) : TWinControl(owner) {
  FWidth = 20;
  FHeight = 25;
}

void TSpinButton::CreateWidget() { AdoptWidget(new TPaintedWidget(this, true)); }

void TSpinButton::SetFocusControl(TWinControl* value) { ReplaceComponentLink(this, FFocusControl, value); }

void TSpinButton::Notification(TComponent* component, TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation == opRemove && component == FFocusControl) FFocusControl = nullptr;
}

void TSpinButton::Paint(QPainter& painter) {
  DrawSpinButtons(painter, QRect(0, 0, FWidth, FHeight), FPressed, FEnabled);
}

void TSpinButton::Click(TSpinPart part) {
  if (part == spUp && OnUpClick) OnUpClick(this);
  if (part == spDown && OnDownClick) OnDownClick(this);
}

void TSpinButton::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  TWinControl::MouseDown(button, shift, x, y);
  if (button != mbLeft || !FEnabled) return;
  if (FFocusControl && FFocusControl->CanFocus()) FFocusControl->SetFocus();
  FPressed = SpinPartAt(QSize(FWidth, FHeight), x, y);
  Invalidate();
  Click(FPressed);
}

void TSpinButton::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  TWinControl::MouseUp(button, shift, x, y);
  if (FPressed == spNone) return;
  FPressed = spNone;
  Invalidate();
}

void TSpinButton::KeyDown(Word& key, TShiftState shift) {
  TWinControl::KeyDown(key, shift);
  if (key == VK_UP) Click(spUp);
  if (key == VK_DOWN) Click(spDown);
}

// ---------------------------------------------------------------------------------------
// TSpinEdit

// The buttons painted inside the edit's right edge.
class TSpinEditButtons : public QWidget {
public:
  TSpinEditButtons(TSpinEdit* edit, QWidget* parent) : QWidget(parent), FEdit(edit) {
    setCursor(Qt::ArrowCursor);
    setAttribute(Qt::WA_OpaquePaintEvent);
    parent->installEventFilter(this);
    Place();
  }
  // Inside the edit's frame, against its right edge.
  void Place() {
    const QSize s = parentWidget()->size();
    setGeometry(s.width() - kButtonWidth - 3, 2, kButtonWidth, std::max(0, s.height() - 5));
  }
  void Detach() { FEdit = nullptr; }

protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == parentWidget() && event->type() == QEvent::Resize) Place();
    return false;
  }
  void paintEvent(QPaintEvent*) override {
    if (!FEdit) return;
    QPainter p(this);
    DrawSpinButtons(p, rect(), FEdit->FPressed, FEdit->Enabled());
  }
  void mousePressEvent(QMouseEvent* e) override {
    if (!FEdit || e->button() != Qt::LeftButton || !FEdit->Enabled()) return;
    TSpinEdit* edit = FEdit;
    const TSpinPart part = SpinPartAt(size(), e->position().toPoint().x(), e->position().toPoint().y());
    edit->FPressed = part;
    update();
    Guard([edit, part] {
      if (part == spUp) edit->StepUp();
      if (part == spDown) edit->StepDown();
    });
  }
  void mouseReleaseEvent(QMouseEvent*) override {
    if (!FEdit) return;
    FEdit->FPressed = spNone;
    update();
  }

private:
  TSpinEdit* FEdit;
};

LUMORA_CLASS_IMPL(TSpinEdit) {
  PublishControlProperties(c, {"Anchors"});
  c.Property("AutoSelect", &TSpinEdit::AutoSelect, &TSpinEdit::SetAutoSelect).Default(true);
  PublishControlProperties(c, {"AutoSize", "Color", "Constraints", "Ctl3D", "DragCursor", "DragMode"});
  c.Property("EditorEnabled", &TSpinEdit::EditorEnabled, &TSpinEdit::SetEditorEnabled).Default(true);
  PublishControlProperties(c, {"Enabled", "Font"});
  c.Property("Increment", &TSpinEdit::Increment, &TSpinEdit::SetIncrement).Default(1);
  c.Property("MaxLength", &TSpinEdit::MaxLength, &TSpinEdit::SetMaxLength).Default(0);
  c.Property("MaxValue", &TSpinEdit::MaxValue, &TSpinEdit::SetMaxValue).Default(0);
  c.Property("MinValue", &TSpinEdit::MinValue, &TSpinEdit::SetMinValue).Default(0);
  PublishControlProperties(c, {"ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("ReadOnly", &TSpinEdit::ReadOnly, &TSpinEdit::SetReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop"});
  c.Property("Value", &TSpinEdit::Value, &TSpinEdit::SetValue).NoDefault();
  PublishControlProperties(c, {"Visible"});
  c.Property("OnChange", &TSpinEdit::OnChange, &TSpinEdit::OnChange);
  PublishControlProperties(c, {LUMORA_STD_WIN_EVENTS});
  c.Property("AutoSize").Default(true);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TSpinEdit::TSpinEdit(TComponent* owner) : TCustomEdit(owner) {
  FWidth = 121;
  FHeight = 22;
  SetText("0");
}

int TSpinEdit::CheckValue(int value) const {
  if (FMaxValue == FMinValue) return value;
  if (value < FMinValue) return FMinValue;
  if (value > FMaxValue) return FMaxValue;
  return value;
}

int TSpinEdit::Value() const {
  long long v = 0;
  if (!TryStrToInt(Trim(Text()), v)) return FMinValue;
  if (v < INT_MIN || v > INT_MAX) return FMinValue;
  return static_cast<int>(v);
}

void TSpinEdit::SetValue(int value) { SetText(IntToStr(Loading(this) ? value : CheckValue(value))); }

void TSpinEdit::SetMinValue(int value) { FMinValue = value; }
void TSpinEdit::SetMaxValue(int value) { FMaxValue = value; }

void TSpinEdit::SetEditorEnabled(bool value) {
  FEditorEnabled = value;
  UpdateWidgetText();
}

void TSpinEdit::StepUp() {
  if (ReadOnly()) return;
  SetValue(Value() + FIncrement);
}

void TSpinEdit::StepDown() {
  if (ReadOnly()) return;
  SetValue(Value() - FIncrement);
}

void TSpinEdit::Loaded() {
  TCustomEdit::Loaded();
  SetValue(Value());
}

void TSpinEdit::CreateWidget() {
  TCustomEdit::CreateWidget();
  if (QLineEdit* e = LineEdit()) {
    auto* buttons = new TSpinEditButtons(this, e);
    buttons->setObjectName("SpinButtons");
    QObject::connect(e, &QObject::destroyed, buttons, [buttons] { buttons->Detach(); });
  }
  UpdateWidgetText();
}

void TSpinEdit::UpdateWidgetText() {
  TCustomEdit::UpdateWidgetText();
  QLineEdit* e = LineEdit();
  if (!e) return;
  if (!FEditorEnabled) e->setReadOnly(true);
  e->setTextMargins(0, 0, kButtonWidth + 1, 0);
  if (auto* buttons = e->findChild<TSpinEditButtons*>()) buttons->update();
}

void TSpinEdit::KeyDown(Word& key, TShiftState shift) {
  if (key == VK_UP) {
    StepUp();
    key = 0;
  } else if (key == VK_DOWN) {
    StepDown();
    key = 0;
  }
  TCustomEdit::KeyDown(key, shift);
}

// Only what a whole number is made of may be typed.
void TSpinEdit::KeyPress(char& key) {
  const bool control = static_cast<unsigned char>(key) < 32;
  if (!control && !(key >= '0' && key <= '9') && key != '-' && key != '+') key = 0;
  if (!FEditorEnabled && !control) key = 0;
  if (key) TCustomEdit::KeyPress(key);
}

void TSpinEdit::DoExit() {
  TCustomEdit::DoExit();
  if (Value() != CheckValue(Value()) || Trim(Text()) != IntToStr(Value())) SetValue(Value());
}
