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

#include <QPainter>
#include <QLineEdit>
#include <QSlider>

#include <algorithm>
#include <cmath>

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
