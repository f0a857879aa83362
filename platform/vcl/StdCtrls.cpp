#include "platform/vcl/StdCtrls.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/Publish.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QTextBlock>
#include <QTimer>

#include <algorithm>

namespace {

constexpr TLeftRight taLeftJustifyLR = static_cast<TLeftRight>(0);
constexpr TLeftRight taRightJustifyLR = static_cast<TLeftRight>(1);

// A combo box drawn as on the classic desktop: the field in the control's colour, the
// arrow button always in the button face with a button-text arrow. Qt's classic style
// paints field and button alike in the button colour.
class TComboWidget : public QComboBox {
protected:
  void paintEvent(QPaintEvent*) override {
    QStylePainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    QStyleOptionComboBox opt;
    initStyleOption(&opt);
    QStyleOptionComboBox field = opt;
    const bool enabled = opt.state & QStyle::State_Enabled;
    field.palette.setColor(QPalette::Button, enabled ? palette().color(QPalette::Base) : ColorToQColor(clBtnFace));
    field.subControls = QStyle::SC_ComboBoxFrame | QStyle::SC_ComboBoxEditField;
    painter.drawComplexControl(QStyle::CC_ComboBox, field);
    QStyleOptionComboBox arrow = opt;
    arrow.palette.setColor(QPalette::Button, ColorToQColor(clBtnFace));
    arrow.palette.setColor(QPalette::Active, QPalette::ButtonText, ColorToQColor(clBtnText));
    arrow.palette.setColor(QPalette::Inactive, QPalette::ButtonText, ColorToQColor(clBtnText));
    arrow.subControls = QStyle::SC_ComboBoxArrow;
    painter.drawComplexControl(QStyle::CC_ComboBox, arrow);
    painter.drawControl(QStyle::CE_ComboBoxLabel, opt);
  }
};

// Check boxes and radio buttons react to a click anywhere on them, not only on their
// box and text.
template <class Base>
class TWholeAreaButton : public Base {
protected:
  bool hitButton(const QPoint& pos) const override { return this->rect().contains(pos); }
};

// Buttons show their accelerator but leave the key to the form (Qt would make it a shortcut).
void SetButtonText(QAbstractButton* b, const QString& text) {
  b->setText(text);
  b->setShortcut(QKeySequence());
}

TCaptionLayout LabelLayout(TAlignment alignment, TTextLayout layout, bool wordWrap, bool showAccel, bool disabled) {
  TCaptionLayout l;
  l.HAlign = alignment == taRightJustify ? TTextHAlign::Right : alignment == taCenter ? TTextHAlign::Center : TTextHAlign::Left;
  l.VAlign = layout == tlCenter ? TTextVAlign::Center : layout == tlBottom ? TTextVAlign::Bottom : TTextVAlign::Top;
  l.WordWrap = wordWrap;
  l.ShowAccelChar = showAccel;
  l.Disabled = disabled;
  return l;
}

}  // namespace

const TTypeInfo* TypeInfoOf(TLeftRight*) {
  static const TTypeInfo info = ::rtti_detail::MakeEnumInfo("TLeftRight", "taLeftJustify, taRightJustify");
  return &info;
}

// ---------------------------------------------------------------------------------------
// TCustomLabel, TLabel

LUMORA_CLASS_IMPL(TCustomLabel) {}

TCustomLabel::TCustomLabel(TComponent* owner) : TGraphicControl(owner) {
  FControlStyle += csOpaque;
  FControlStyle += csReplicatable;
  FWidth = 65;
  FHeight = 17;
  FAutoSize = true;
  FColor = clBtnFace;
}

void TCustomLabel::SetAlignment(TAlignment value) {
  if (FAlignment == value) return;
  FAlignment = value;
  Invalidate();
}

void TCustomLabel::SetLayout(TTextLayout value) {
  if (FLayout == value) return;
  FLayout = value;
  Invalidate();
}

void TCustomLabel::SetShowAccelChar(bool value) {
  if (FShowAccelChar == value) return;
  FShowAccelChar = value;
  AdjustSize();
  Invalidate();
}

void TCustomLabel::SetTransparent(bool value) {
  if (FTransparent == value) return;
  FTransparent = value;
  if (value) {
    FControlStyle -= csOpaque;
  } else {
    FControlStyle += csOpaque;
  }
  Invalidate();
}

void TCustomLabel::SetWordWrap(bool value) {
  if (FWordWrap == value) return;
  FWordWrap = value;
  AdjustSize();
  Invalidate();
}

void TCustomLabel::SetFocusControl(TWinControl* value) {
  FFocusControl = value;
  if (value) value->FreeNotification(this);
}

void TCustomLabel::Notification(TComponent* component, TOperation operation) {
  TGraphicControl::Notification(component, operation);
  if (operation == opRemove && component == FFocusControl) FFocusControl = nullptr;
}

bool TCustomLabel::CanAutoSize(int& newWidth, int& newHeight) {
  const QSize s = MeasureText(FFont->Handle(), UnicodeText(),
                              LabelLayout(FAlignment, FLayout, FWordWrap, FShowAccelChar, false), FWordWrap ? FWidth : 0);
  newWidth = s.width();
  newHeight = s.height();
  return true;
}

void TCustomLabel::AdjustSize() {
  if (!FAutoSize || Loading(this)) return;
  int w = FWidth, h = FHeight;
  if (!CanAutoSize(w, h)) return;
  // A right-aligned label keeps its right edge.
  int left = FLeft;
  if (FAlignment == taRightJustify) left += FWidth - w;
  SetBounds(left, FTop, w, h);
}

void TCustomLabel::Loaded() {
  TGraphicControl::Loaded();
  AdjustSize();
}

void TCustomLabel::UpdateWidgetColors() { Invalidate(); }

bool TCustomLabel::DialogChar(Word key) {
  if (!FShowAccelChar || !FFocusControl || !IsAccel(key, FText) || !FFocusControl->CanFocus()) return false;
  FFocusControl->SetFocus();
  return true;
}

void TCustomLabel::Paint(QPainter& painter) {
  const QRect r(0, 0, FWidth, FHeight);
  if (!FTransparent) painter.fillRect(r, ColorToQColor(FColor));
  DrawCaption(painter, r, FFont->Handle(), UnicodeText(),
              LabelLayout(FAlignment, FLayout, FWordWrap, FShowAccelChar, !FEnabled), ColorToQColor(FFont->Color()));
}

LUMORA_CLASS_IMPL(TLabel) {
  PublishControlProperties(c, {"Align"});
  c.Property("Alignment", &TLabel::Alignment, &TLabel::SetAlignment).Default(taLeftJustify);
  PublishControlProperties(c, {"Anchors", "AutoSize", "BiDiMode", "Caption", "Color", "Constraints", "DragCursor",
                               "DragKind", "DragMode", "Enabled"});
  c.Property("FocusControl", &TLabel::FocusControl, &TLabel::SetFocusControl);
  PublishControlProperties(c, {"Font", "ParentBiDiMode", "ParentColor", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("ShowAccelChar", &TLabel::ShowAccelChar, &TLabel::SetShowAccelChar).Default(true);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("Transparent", &TLabel::Transparent, &TLabel::SetTransparent).Default(false);
  c.Property("Layout", &TLabel::Layout, &TLabel::SetLayout).Default(tlTop);
  PublishControlProperties(c, {"Visible"});
  c.Property("WordWrap", &TLabel::WordWrap, &TLabel::SetWordWrap).Default(false);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag",
                               "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDock", "OnStartDrag"});
  c.Property("AutoSize").Default(true);
}

// ---------------------------------------------------------------------------------------
// TCustomEdit, TEdit

LUMORA_CLASS_IMPL(TCustomEdit) {}

TCustomEdit::TCustomEdit(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csCaptureMouse, csClickEvents, csSetCaption, csDoubleClicks, csFixedHeight};
  FWidth = 121;
  FHeight = 25;
  FTabStop = true;
  FParentColor = false;
  FColor = clWindow;
  FAutoSize = true;
  AdjustSize();
}

QLineEdit* TCustomEdit::LineEdit() const { return qobject_cast<QLineEdit*>(Widget()); }

void TCustomEdit::CreateWidget() {
  auto* e = new QLineEdit();
  e->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(e, &QLineEdit::textChanged, e, [this] { Guard([this] { WidgetTextChanged(); }); });
  AdoptWidget(e);
}

bool TCustomEdit::WidgetEvent(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) {
    auto* fe = static_cast<QFocusEvent*>(event);
    if (FAutoSelect && fe->reason() != Qt::MouseFocusReason && fe->reason() != Qt::PopupFocusReason) {
      if (QLineEdit* e = LineEdit()) QTimer::singleShot(0, e, [e] { e->selectAll(); });
    }
  }
  return TWinControl::WidgetEvent(watched, event);
}

void TCustomEdit::UpdateWidgetText() {
  QLineEdit* e = LineEdit();
  if (!e) return;
  e->setMaxLength(FMaxLength > 0 ? FMaxLength : 32767);
  e->setReadOnly(FReadOnly);
  e->setFrame(FBorderStyle == BorderStyleOf(bsSingle));
  e->setEchoMode(FPasswordChar ? QLineEdit::Password : QLineEdit::Normal);
  const QString text = FFont->ToUnicode(FText);
  if (e->text() != text) {
    FSyncing = true;
    e->setText(text);
    // Text set by the program shows from its start, as an edit's does.
    e->setCursorPosition(0);
    FSyncing = false;
  }
}

void TCustomEdit::WidgetTextChanged() {
  if (FSyncing) return;
  QLineEdit* e = LineEdit();
  if (!e) return;
  QString text = e->text();
  if (FCharCase != ecNormal) {
    const QString cased = FCharCase == ecUpperCase ? text.toUpper() : text.toLower();
    if (cased != text) {
      const int pos = e->cursorPosition();
      FSyncing = true;
      e->setText(cased);
      e->setCursorPosition(pos);
      FSyncing = false;
      text = cased;
    }
  }
  FText = FFont->FromUnicode(text);
  FModified = true;
  Change();
}

std::string TCustomEdit::Text() const { return FText; }

void TCustomEdit::SetText(const std::string& value) {
  if (FText == value) return;
  FText = value;
  UpdateWidgetText();
  Change();
}

void TCustomEdit::Change() {
  if (Loading(this)) return;
  if (OnChange) OnChange(this);
}

void TCustomEdit::SetBorderStyle(TBorderStyle value) {
  if (FBorderStyle == value) return;
  FBorderStyle = value;
  UpdateWidgetText();
  AdjustSize();
}

void TCustomEdit::SetCharCase(TEditCharCase value) {
  if (FCharCase == value) return;
  FCharCase = value;
  if (value != ecNormal) {
    const QString t = FFont->ToUnicode(FText);
    SetText(FFont->FromUnicode(value == ecUpperCase ? t.toUpper() : t.toLower()));
  }
}

void TCustomEdit::SetMaxLength(int value) {
  FMaxLength = std::max(value, 0);
  UpdateWidgetText();
}

void TCustomEdit::SetPasswordChar(char value) {
  FPasswordChar = value;
  UpdateWidgetText();
}

void TCustomEdit::SetReadOnly(bool value) {
  FReadOnly = value;
  UpdateWidgetText();
}

bool TCustomEdit::CanAutoSize(int& newWidth, int& newHeight) {
  newWidth = FWidth;
  newHeight = FontCellHeight(FFont->Handle()) + (FCtl3D ? 8 : 6);
  return true;
}

void TCustomEdit::FontChanged() {
  TWinControl::FontChanged();
  UpdateWidgetText();
}

int TCustomEdit::SelStart() const {
  QLineEdit* e = LineEdit();
  if (!e) return 0;
  return e->hasSelectedText() ? e->selectionStart() : e->cursorPosition();
}

void TCustomEdit::SetSelStart(int value) {
  // The selection shrinks to the caret.
  if (QLineEdit* e = LineEdit()) {
    e->deselect();
    e->setCursorPosition(value);
  }
}

int TCustomEdit::SelLength() const {
  QLineEdit* e = LineEdit();
  return e ? static_cast<int>(e->selectedText().size()) : 0;
}

void TCustomEdit::SetSelLength(int value) {
  if (QLineEdit* e = LineEdit()) e->setSelection(SelStart(), value);
}

std::string TCustomEdit::SelText() const {
  QLineEdit* e = LineEdit();
  return e ? FFont->FromUnicode(e->selectedText()) : std::string();
}

void TCustomEdit::SelectAll() {
  if (QLineEdit* e = LineEdit()) e->selectAll();
}

void TCustomEdit::ClearSelection() {
  if (QLineEdit* e = LineEdit()) e->del();
}

void TCustomEdit::CopyToClipboard() {
  if (QLineEdit* e = LineEdit()) e->copy();
}

void TCustomEdit::CutToClipboard() {
  if (QLineEdit* e = LineEdit()) e->cut();
}

void TCustomEdit::PasteFromClipboard() {
  if (QLineEdit* e = LineEdit()) e->paste();
}

LUMORA_CLASS_IMPL(TEdit) {
  PublishControlProperties(c, {"Anchors"});
  c.Property("AutoSelect", &TEdit::AutoSelect, &TEdit::SetAutoSelect).Default(true);
  PublishControlProperties(c, {"AutoSize", "BiDiMode"});
  c.Property("BorderStyle", &TEdit::BorderStyle, &TEdit::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  c.Property("CharCase", &TEdit::CharCase, &TEdit::SetCharCase).Default(ecNormal);
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D", "DragCursor", "DragKind", "DragMode", "Enabled",
                               "Font"});
  c.Property("HideSelection", &TEdit::HideSelection, &TEdit::SetHideSelection).Default(true);
  PublishControlProperties(c, {"ImeMode", "ImeName"});
  c.Property("MaxLength", &TEdit::MaxLength, &TEdit::SetMaxLength).Default(0);
  c.Property("OEMConvert", &TEdit::OEMConvert, &TEdit::SetOEMConvert).Default(false);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint"});
  c.Property("PasswordChar", &TEdit::PasswordChar, &TEdit::SetPasswordChar).Default('\0');
  PublishControlProperties(c, {"PopupMenu"});
  c.Property("ReadOnly", &TEdit::ReadOnly, &TEdit::SetReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Text", "Visible"});
  c.Property("OnChange", &TEdit::OnChange, &TEdit::OnChange);
  PublishControlProperties(c, {LUMORA_STD_WIN_EVENTS});
  c.Property("AutoSize").Default(true);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

// ---------------------------------------------------------------------------------------
// TCustomMemo, TMemo

LUMORA_CLASS_IMPL(TCustomMemo) {}

TCustomMemo::TCustomMemo(TComponent* owner) : TCustomEdit(owner) {
  FControlStyle -= csFixedHeight;
  FWidth = 185;
  FHeight = 89;
  FAutoSize = false;
  FLines = new TStringList();
  FLines->OnChange = [this](TObject*) { LinesChanged(); };
}

TCustomMemo::~TCustomMemo() {
  FLines->OnChange = nullptr;
  DestroyWidget();
  delete FLines;
}

QPlainTextEdit* TCustomMemo::Editor() const { return qobject_cast<QPlainTextEdit*>(Widget()); }

void TCustomMemo::CreateWidget() {
  auto* e = new QPlainTextEdit();
  e->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(e, &QPlainTextEdit::textChanged, e, [this] {
    Guard([this] {
      if (FSyncing) return;
      QPlainTextEdit* ed = Editor();
      if (!ed) return;
      FSyncing = true;
      FLines->SetText(FFont->FromUnicode(ed->toPlainText()));
      FSyncing = false;
      FModified = true;
      Change();
    });
  });
  AdoptWidget(e);
}

void TCustomMemo::LinesChanged() {
  if (FSyncing) return;
  UpdateWidgetText();
  Change();
}

void TCustomMemo::UpdateWidgetText() {
  QPlainTextEdit* e = Editor();
  if (!e) return;
  e->setReadOnly(FReadOnly);
  e->setFrameShape(FBorderStyle == BorderStyleOf(bsSingle) ? QFrame::StyledPanel : QFrame::NoFrame);
  e->setLineWrapMode(FWordWrap ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
  const bool vert = FScrollBars == ssVertical || FScrollBars == ssBoth;
  const bool horz = FScrollBars == ssHorizontal || FScrollBars == ssBoth;
  e->setVerticalScrollBarPolicy(vert ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
  e->setHorizontalScrollBarPolicy(horz && !FWordWrap ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
  e->setTabChangesFocus(!FWantTabs);
  QString text;
  for (int i = 0; i < FLines->Count(); ++i) {
    if (i > 0) text += QLatin1Char('\n');
    text += FFont->ToUnicode(FLines->Strings(i));
  }
  if (e->toPlainText() != text) {
    FSyncing = true;
    e->setPlainText(text);
    FSyncing = false;
  }
  if (FAlignment != taLeftJustify) {
    QTextOption option = e->document()->defaultTextOption();
    option.setAlignment(FAlignment == taRightJustify ? Qt::AlignRight : Qt::AlignHCenter);
    e->document()->setDefaultTextOption(option);
  }
}

std::string TCustomMemo::Text() const {
  std::string text;
  for (int i = 0; i < FLines->Count(); ++i) {
    if (i > 0) text += "\r\n";
    text += FLines->Strings(i);
  }
  return text;
}

void TCustomMemo::SetText(const std::string& value) { FLines->SetText(value); }

void TCustomMemo::SetAlignment(TAlignment value) {
  FAlignment = value;
  UpdateWidgetText();
}

void TCustomMemo::SetScrollBars(TScrollStyle value) {
  FScrollBars = value;
  UpdateWidgetText();
}

void TCustomMemo::SetWantTabs(bool value) {
  FWantTabs = value;
  UpdateWidgetText();
}

void TCustomMemo::SetWordWrap(bool value) {
  FWordWrap = value;
  UpdateWidgetText();
}

LUMORA_CLASS_IMPL(TMemo) {
  PublishControlProperties(c, {"Align"});
  c.Property("Alignment", &TMemo::Alignment, &TMemo::SetAlignment).Default(taLeftJustify);
  PublishControlProperties(c, {"Anchors", "BiDiMode"});
  c.Property("BorderStyle", &TMemo::BorderStyle, &TMemo::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D", "DragCursor", "DragKind", "DragMode", "Enabled",
                               "Font"});
  c.Property("HideSelection", &TMemo::HideSelection, &TMemo::SetHideSelection).Default(true);
  PublishControlProperties(c, {"ImeMode", "ImeName"});
  c.Property("Lines", &TMemo::Lines, &TMemo::SetLines);
  c.Property("MaxLength", &TMemo::MaxLength, &TMemo::SetMaxLength).Default(0);
  c.Property("OEMConvert", &TMemo::OEMConvert, &TMemo::SetOEMConvert).Default(false);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu"});
  c.Property("ReadOnly", &TMemo::ReadOnly, &TMemo::SetReadOnly).Default(false);
  c.Property("ScrollBars", &TMemo::ScrollBars, &TMemo::SetScrollBars).Default(ssNone);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible"});
  c.Property("WantReturns", &TMemo::WantReturns, &TMemo::SetWantReturns).Default(true);
  c.Property("WantTabs", &TMemo::WantTabs, &TMemo::SetWantTabs).Default(false);
  c.Property("WordWrap", &TMemo::WordWrap, &TMemo::SetWordWrap).Default(true);
  c.Property("OnChange", &TMemo::OnChange, &TMemo::OnChange);
  PublishControlProperties(c, {LUMORA_STD_WIN_EVENTS});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

// ---------------------------------------------------------------------------------------
// Buttons

LUMORA_CLASS_IMPL(TButtonControl) {}

TButtonControl::TButtonControl(TComponent* owner) : TWinControl(owner) {}

LUMORA_CLASS_IMPL(TButton) {
  PublishControlProperties(c, {"Action", "Anchors", "BiDiMode"});
  c.Property("Cancel", &TButton::Cancel, &TButton::SetCancel).Default(false);
  PublishControlProperties(c, {"Caption", "Constraints"});
  c.Property("Default", &TButton::Default, &TButton::SetDefault).Default(false);
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font"});
  c.Property("ModalResult", &TButton::ModalResult, &TButton::SetModalResult).Default(0);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentFont", "ParentShowHint", "PopupMenu", "ShowHint", "TabOrder",
                               "TabStop", "Visible", "OnClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag",
                               "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove",
                               "OnMouseUp", "OnStartDock", "OnStartDrag"});
  c.Property("TabStop").Default(true);
}

TButton::TButton(TComponent* owner) : TButtonControl(owner) {
  FControlStyle = TControlStyle{csSetCaption, csDoubleClicks};
  FWidth = 75;
  FHeight = 25;
  FTabStop = true;
}

QPushButton* TButton::PushButton() const { return qobject_cast<QPushButton*>(Widget()); }

void TButton::CreateWidget() {
  auto* b = new QPushButton();
  b->setAutoDefault(false);
  b->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(b, &QPushButton::clicked, b, [this] { Guard([this] { Click(); }); });
  AdoptWidget(b);
}

void TButton::UpdateWidgetText() {
  if (QPushButton* b = PushButton()) {
    SetButtonText(b, UnicodeText());
    b->setDefault(FDefault);
  }
}

void TButton::SetDefault(bool value) {
  FDefault = value;
  if (QPushButton* b = PushButton()) b->setDefault(value);
}

bool TButton::DialogChar(Word key) {
  if (!IsAccel(key, FText) || !CanFocus()) return false;
  SetFocus();
  Click();
  return true;
}

void TButton::Click() {
  if (TCustomForm* form = GetParentForm(this)) {
    if (FModalResult != mrNone) form->SetModalResult(FModalResult);
  }
  TButtonControl::Click();
}

// ---- Check boxes

LUMORA_CLASS_IMPL(TCustomCheckBox) {}

TCustomCheckBox::TCustomCheckBox(TComponent* owner) : TButtonControl(owner), FAlignment(taRightJustifyLR) {
  FControlStyle = TControlStyle{csSetCaption, csDoubleClicks};
  FWidth = 97;
  FHeight = 17;
  FTabStop = true;
}

QCheckBox* TCustomCheckBox::CheckBox() const { return qobject_cast<QCheckBox*>(Widget()); }

void TCustomCheckBox::CreateWidget() {
  auto* b = new TWholeAreaButton<QCheckBox>();
  b->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(b, &QCheckBox::clicked, b, [this] {
    Guard([this] {
      if (FClicksDisabled) return;
      Toggle();
    });
  });
  AdoptWidget(b);
}

bool TCustomCheckBox::DialogChar(Word key) {
  if (!IsAccel(key, FText) || !CanFocus()) return false;
  SetFocus();
  Toggle();
  return true;
}

void TCustomCheckBox::Toggle() {
  switch (FState) {
    case cbUnchecked: SetState(FAllowGrayed ? cbGrayed : cbChecked); break;
    case cbChecked: SetState(cbUnchecked); break;
    case cbGrayed: SetState(cbChecked); break;
  }
}

void TCustomCheckBox::UpdateWidgetText() {
  QCheckBox* b = CheckBox();
  if (!b) return;
  FClicksDisabled = true;
  SetButtonText(b, UnicodeText());
  b->setTristate(FAllowGrayed || FState == cbGrayed);
  b->setCheckState(FState == cbChecked ? Qt::Checked : FState == cbGrayed ? Qt::PartiallyChecked : Qt::Unchecked);
  b->setLayoutDirection(FAlignment == taLeftJustifyLR ? Qt::RightToLeft : Qt::LeftToRight);
  FClicksDisabled = false;
}

void TCustomCheckBox::SetState(TCheckBoxState value) {
  if (FState == value) {
    UpdateWidgetText();
    return;
  }
  FState = value;
  UpdateWidgetText();
  if (!Loading(this)) Click();
}

void TCustomCheckBox::SetAllowGrayed(bool value) {
  FAllowGrayed = value;
  if (!value && FState == cbGrayed) FState = cbUnchecked;
  UpdateWidgetText();
}

void TCustomCheckBox::SetAlignment(TLeftRight value) {
  FAlignment = value;
  UpdateWidgetText();
}

LUMORA_CLASS_IMPL(TCheckBox) {
  PublishControlProperties(c, {"Action"});
  c.Property("Alignment", &TCheckBox::Alignment, &TCheckBox::SetAlignment).Default(taRightJustifyLR);
  c.Property("AllowGrayed", &TCheckBox::AllowGrayed, &TCheckBox::SetAllowGrayed).Default(false);
  PublishControlProperties(c, {"Anchors", "BiDiMode", "Caption"});
  c.Property("Checked", &TCheckBox::Checked, &TCheckBox::SetChecked).Stored(false);
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D", "DragCursor", "DragKind", "DragMode", "Enabled",
                               "Font", "ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu", "ShowHint"});
  c.Property("State", &TCheckBox::State, &TCheckBox::SetState).Default(cbUnchecked);
  PublishControlProperties(c, {"TabOrder", "TabStop", "Visible", "OnClick", "OnDragDrop", "OnDragOver", "OnEndDock",
                               "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown",
                               "OnMouseMove", "OnMouseUp", "OnStartDock", "OnStartDrag"});
  c.Property("TabStop").Default(true);
}

LUMORA_CLASS_IMPL(TRadioButton) {
  PublishControlProperties(c, {"Action"});
  c.Property("Alignment", &TRadioButton::Alignment, &TRadioButton::SetAlignment).Default(taRightJustifyLR);
  PublishControlProperties(c, {"Anchors", "BiDiMode", "Caption"});
  c.Property("Checked", &TRadioButton::Checked, &TRadioButton::SetChecked).Default(false);
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D", "DragCursor", "DragKind", "DragMode", "Enabled",
                               "Font", "ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu", "ShowHint", "TabOrder", "TabStop", "Visible", "OnClick", "OnDblClick",
                               "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown",
                               "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDock",
                               "OnStartDrag"});
}

TRadioButton::TRadioButton(TComponent* owner) : TButtonControl(owner), FAlignment(taRightJustifyLR) {
  FControlStyle = TControlStyle{csSetCaption, csDoubleClicks};
  FWidth = 113;
  FHeight = 17;
}

QRadioButton* TRadioButton::RadioButton() const { return qobject_cast<QRadioButton*>(Widget()); }

void TRadioButton::CreateWidget() {
  auto* b = new TWholeAreaButton<QRadioButton>();
  b->setAutoExclusive(false);
  b->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(b, &QRadioButton::clicked, b, [this] {
    Guard([this] {
      if (FClicksDisabled) return;
      if (FChecked) {
        UpdateWidgetText();  // a checked radio button stays checked when clicked again
        Click();
      } else {
        SetChecked(true);
      }
    });
  });
  AdoptWidget(b);
}

void TRadioButton::UpdateWidgetText() {
  QRadioButton* b = RadioButton();
  if (!b) return;
  FClicksDisabled = true;
  SetButtonText(b, UnicodeText());
  b->setChecked(FChecked);
  b->setLayoutDirection(FAlignment == taLeftJustifyLR ? Qt::RightToLeft : Qt::LeftToRight);
  FClicksDisabled = false;
}

void TRadioButton::SetChecked(bool value) {
  if (FChecked == value) return;
  FChecked = value;
  if (value) {
    FTabStop = true;
    if (FParent) {
      for (int i = 0; i < FParent->ControlCount(); ++i) {
        if (auto* other = dynamic_cast<TRadioButton*>(FParent->Controls(i)); other && other != this) {
          other->SetChecked(false);
        }
      }
    }
  }
  UpdateWidgetText();
  if (value && !Loading(this)) Click();
}

bool TRadioButton::DialogChar(Word key) {
  if (!IsAccel(key, FText) || !CanFocus()) return false;
  SetFocus();
  SetChecked(true);
  return true;
}

void TRadioButton::SetAlignment(TLeftRight value) {
  FAlignment = value;
  UpdateWidgetText();
}

// ---------------------------------------------------------------------------------------
// TCustomListBox, TListBox

LUMORA_CLASS_IMPL(TCustomListBox) {}

TCustomListBox::TCustomListBox(TComponent* owner) : TWinControl(owner) {
  FWidth = 121;
  FHeight = 97;
  FTabStop = true;
  FParentColor = false;
  FColor = clWindow;
  FItems = new TStringList();
  FItems->OnChange = [this](TObject*) { ItemsChanged(); };
}

TCustomListBox::~TCustomListBox() {
  FItems->OnChange = nullptr;
  DestroyWidget();
  delete FItems;
}

QListWidget* TCustomListBox::List() const { return qobject_cast<QListWidget*>(Widget()); }

void TCustomListBox::CreateWidget() {
  auto* l = new QListWidget();
  l->setFocusPolicy(Qt::StrongFocus);
  l->setUniformItemSizes(true);
  // A change of the selection is the user's click (the current row that Qt sets when the
  // list gets the focus selects nothing, as a list box does).
  QObject::connect(l, &QListWidget::itemSelectionChanged, l, [this, l] {
    Guard([this, l] {
      if (FFilling) return;
      FItemIndex = l->currentRow();
      Click();
    });
  });
  QObject::connect(l, &QListWidget::itemDoubleClicked, l, [this] { Guard([this] { DblClick(); }); });
  AdoptWidget(l);
}

void TCustomListBox::FillWidget() {
  QListWidget* l = List();
  l->clear();
  for (int i = 0; i < FItems->Count(); ++i) l->addItem(FFont->ToUnicode(FItems->Strings(i)));
}

void TCustomListBox::UpdateWidgetText() {
  QListWidget* l = List();
  if (!l) return;
  FFilling = true;
  FillWidget();
  l->setSelectionMode(FMultiSelect ? (FExtendedSelect ? QAbstractItemView::ExtendedSelection
                                                      : QAbstractItemView::MultiSelection)
                                   : QAbstractItemView::SingleSelection);
  l->setFrameShape(FBorderStyle == BorderStyleOf(bsSingle) ? QFrame::StyledPanel : QFrame::NoFrame);
  if (FItemIndex >= 0 && FItemIndex < FItems->Count()) l->setCurrentRow(FItemIndex);
  FFilling = false;
}

void TCustomListBox::ItemsChanged() {
  if (FItemIndex >= FItems->Count()) FItemIndex = -1;
  UpdateWidgetText();
}

int TCustomListBox::ItemIndex() const {
  if (QListWidget* l = List()) return l->currentRow();
  return FItemIndex;
}

void TCustomListBox::SetItemIndex(int value) {
  if (value < -1 || value >= FItems->Count()) value = -1;
  FItemIndex = value;
  if (QListWidget* l = List()) {
    FFilling = true;
    l->setCurrentRow(value);
    if (value < 0) l->clearSelection();
    FFilling = false;
  }
}

int TCustomListBox::SelCount() const {
  QListWidget* l = List();
  return l ? static_cast<int>(l->selectedItems().size()) : (FItemIndex >= 0 ? 1 : 0);
}

bool TCustomListBox::Selected(int index) const {
  QListWidget* l = List();
  if (!l) return index == FItemIndex;
  QListWidgetItem* item = l->item(index);
  return item && item->isSelected();
}

void TCustomListBox::SetSelected(int index, bool value) {
  QListWidget* l = List();
  if (!l) return;
  if (QListWidgetItem* item = l->item(index)) item->setSelected(value);
}

int TCustomListBox::ItemAtPos(TPoint pos, bool existing) const {
  QListWidget* l = List();
  if (!l) return -1;
  const int row = l->row(l->itemAt(pos.X, pos.Y));
  if (row < 0 && !existing) return FItems->Count();
  return row;
}

void TCustomListBox::SetBorderStyle(TBorderStyle value) {
  FBorderStyle = value;
  UpdateWidgetText();
}

void TCustomListBox::SetExtendedSelect(bool value) {
  FExtendedSelect = value;
  UpdateWidgetText();
}

void TCustomListBox::SetMultiSelect(bool value) {
  FMultiSelect = value;
  UpdateWidgetText();
}

void TCustomListBox::SetSorted(bool value) {
  if (FSorted == value) return;
  FSorted = value;
  FItems->SetSorted(value);
}

int TCustomListBox::TopIndex() const {
  QListWidget* l = List();
  if (!l) return 0;
  return l->row(l->itemAt(1, 1));
}

void TCustomListBox::SetTopIndex(int value) {
  if (QListWidget* l = List()) {
    if (QListWidgetItem* item = l->item(value)) l->scrollToItem(item, QAbstractItemView::PositionAtTop);
  }
}

LUMORA_CLASS_IMPL(TListBox) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode"});
  c.Property("BorderStyle", &TListBox::BorderStyle, &TListBox::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color"});
  c.Property("Columns", &TListBox::Columns, &TListBox::SetColumns).Default(0);
  PublishControlProperties(c, {"Constraints", "Ctl3D", "DragCursor", "DragKind", "DragMode", "Enabled"});
  c.Property("ExtendedSelect", &TListBox::ExtendedSelect, &TListBox::SetExtendedSelect).Default(true);
  PublishControlProperties(c, {"Font", "ImeMode", "ImeName"});
  c.Property("IntegralHeight", &TListBox::IntegralHeight, &TListBox::SetIntegralHeight).Default(false);
  c.Property("ItemHeight", &TListBox::ItemHeight, &TListBox::SetItemHeight).Default(16);
  c.Property("Items", &TListBox::Items, &TListBox::SetItems);
  c.Property("MultiSelect", &TListBox::MultiSelect, &TListBox::SetMultiSelect).Default(false);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu", "ShowHint"});
  c.Property("Sorted", &TListBox::Sorted, &TListBox::SetSorted).Default(false);
  c.Property("Style", &TListBox::Style, &TListBox::SetStyle).Default(lbStandard);
  PublishControlProperties(c, {"TabOrder", "TabStop"});
  c.Property("TabWidth", &TListBox::TabWidth, &TListBox::SetTabWidth).Default(0);
  PublishControlProperties(c, {"Visible", "OnClick", "OnDblClick", "OnDragDrop", "OnDragOver"});
  c.Property("OnDrawItem", &TListBox::OnDrawItem, &TListBox::OnDrawItem);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp"});
  c.Property("OnMeasureItem", &TListBox::OnMeasureItem, &TListBox::OnMeasureItem);
  PublishControlProperties(c, {"OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDock", "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

// ---------------------------------------------------------------------------------------
// TCustomComboBox, TComboBox

LUMORA_CLASS_IMPL(TCustomComboBox) {}

TCustomComboBox::TCustomComboBox(TComponent* owner) : TWinControl(owner) {
  FWidth = 145;
  FHeight = 25;
  FTabStop = true;
  FParentColor = false;
  FColor = clWindow;
  FAutoSize = true;
  FItems = new TStringList();
  FItems->OnChange = [this](TObject*) { ItemsChanged(); };
  AdjustSize();
}

TCustomComboBox::~TCustomComboBox() {
  FItems->OnChange = nullptr;
  DestroyWidget();
  delete FItems;
}

QComboBox* TCustomComboBox::Combo() const { return qobject_cast<QComboBox*>(Widget()); }

void TCustomComboBox::CreateWidget() {
  auto* cb = new TComboWidget();
  cb->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(cb, QOverload<int>::of(&QComboBox::activated), cb, [this](int index) {
    Guard([this, index] {
      if (FSyncing) return;
      FItemIndex = index;
      if (index >= 0 && index < FItems->Count()) FText = FItems->Strings(index);
      Change();
      Click();
    });
  });
  QObject::connect(cb, &QComboBox::editTextChanged, cb, [this](const QString& text) {
    Guard([this, text] {
      if (FSyncing) return;
      FText = FFont->FromUnicode(text);
      FItemIndex = FItems->IndexOf(FText);
      Change();
    });
  });
  AdoptWidget(cb);
}

void TCustomComboBox::UpdateWidgetText() {
  QComboBox* cb = Combo();
  if (!cb) return;
  FSyncing = true;
  const bool editable = FStyle == csDropDown || FStyle == csSimple;
  if (cb->isEditable() != editable) cb->setEditable(editable);
  cb->clear();
  for (int i = 0; i < FItems->Count(); ++i) cb->addItem(FFont->ToUnicode(FItems->Strings(i)));
  cb->setMaxVisibleItems(std::max(1, FDropDownCount));
  if (editable) {
    if (QLineEdit* e = cb->lineEdit()) {
      e->setMaxLength(FMaxLength > 0 ? FMaxLength : 32767);
      if (FBridge) FBridge->Watch(e);
    }
    cb->setCurrentIndex(FItemIndex);
    cb->setEditText(FFont->ToUnicode(FText));
  } else {
    cb->setCurrentIndex(FItemIndex);
  }
  FSyncing = false;
}

void TCustomComboBox::ItemsChanged() {
  // The text of a drop-down list is the chosen item's.
  if (FStyle == csDropDownList || FStyle == csOwnerDrawFixed || FStyle == csOwnerDrawVariable) {
    FItemIndex = FText.empty() ? -1 : FItems->IndexOf(FText);
  } else if (FItemIndex >= FItems->Count()) {
    FItemIndex = -1;
  }
  UpdateWidgetText();
}

std::string TCustomComboBox::Text() const { return FText; }

void TCustomComboBox::SetText(const std::string& value) {
  if (FText == value) return;
  FText = value;
  FItemIndex = FItems->IndexOf(value);
  UpdateWidgetText();
  Change();
}

int TCustomComboBox::ItemIndex() const { return FItemIndex; }

void TCustomComboBox::SetItemIndex(int value) {
  if (value < -1 || value >= FItems->Count()) value = -1;
  FItemIndex = value;
  FText = value >= 0 ? FItems->Strings(value) : std::string();
  UpdateWidgetText();
}

void TCustomComboBox::SetStyle(TComboBoxStyle value) {
  if (FStyle == value) return;
  FStyle = value;
  ItemsChanged();
  AdjustSize();
}

void TCustomComboBox::SetDropDownCount(int value) {
  FDropDownCount = value;
  UpdateWidgetText();
}

void TCustomComboBox::SetMaxLength(int value) {
  FMaxLength = std::max(value, 0);
  UpdateWidgetText();
}

void TCustomComboBox::SetSorted(bool value) {
  if (FSorted == value) return;
  FSorted = value;
  FItems->SetSorted(value);
}

bool TCustomComboBox::DroppedDown() const {
  QComboBox* cb = Combo();
  return cb && cb->view() && cb->view()->isVisible();
}

void TCustomComboBox::SetDroppedDown(bool value) {
  QComboBox* cb = Combo();
  if (!cb) return;
  if (value) {
    if (OnDropDown) OnDropDown(this);
    cb->showPopup();
  } else {
    cb->hidePopup();
  }
}

void TCustomComboBox::Clear() {
  FItems->Clear();
  SetText(std::string());
}

void TCustomComboBox::Change() {
  if (Loading(this)) return;
  if (OnChange) OnChange(this);
}

bool TCustomComboBox::CanAutoSize(int& newWidth, int& newHeight) {
  // The height of a drop-down combo box follows its font; a simple one keeps its own.
  if (FStyle == csSimple) return false;
  newWidth = FWidth;
  newHeight = FontCellHeight(FFont->Handle()) + 8;
  return true;
}

void TCustomComboBox::FontChanged() {
  TWinControl::FontChanged();
  UpdateWidgetText();
}

LUMORA_CLASS_IMPL(TComboBox) {
  c.Property("Style", &TComboBox::Style, &TComboBox::SetStyle).Default(csDropDown);
  PublishControlProperties(c, {"Anchors", "BiDiMode", "Color", "Constraints", "Ctl3D", "DragCursor", "DragKind",
                               "DragMode"});
  c.Property("DropDownCount", &TComboBox::DropDownCount, &TComboBox::SetDropDownCount).Default(8);
  PublishControlProperties(c, {"Enabled", "Font", "ImeMode", "ImeName"});
  c.Property("ItemHeight", &TComboBox::ItemHeight, &TComboBox::SetItemHeight).Default(16);
  c.Property("MaxLength", &TComboBox::MaxLength, &TComboBox::SetMaxLength).Default(0);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu", "ShowHint"});
  c.Property("Sorted", &TComboBox::Sorted, &TComboBox::SetSorted).Default(false);
  PublishControlProperties(c, {"TabOrder", "TabStop", "Text", "Visible"});
  c.Property("OnChange", &TComboBox::OnChange, &TComboBox::OnChange);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver"});
  c.Property("OnDrawItem", &TComboBox::OnDrawItem, &TComboBox::OnDrawItem);
  c.Property("OnDropDown", &TComboBox::OnDropDown, &TComboBox::OnDropDown);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp"});
  c.Property("OnMeasureItem", &TComboBox::OnMeasureItem, &TComboBox::OnMeasureItem);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
  c.Property("Items", &TComboBox::Items, &TComboBox::SetItems);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

// ---------------------------------------------------------------------------------------
// TCustomGroupBox, TGroupBox

LUMORA_CLASS_IMPL(TCustomGroupBox) {}

TCustomGroupBox::TCustomGroupBox(TComponent* owner) : TCustomControl(owner) {
  FControlStyle = TControlStyle{csAcceptsControls, csCaptureMouse, csClickEvents, csSetCaption, csDoubleClicks,
                                csReplicatable};
  FWidth = 185;
  FHeight = 105;
  FColor = clBtnFace;
}

void TCustomGroupBox::AdjustClientRect(TRect& rect) const {
  TCustomControl::AdjustClientRect(rect);
  rect.Top += FontCellHeight(FFont->Handle());
  const int inset = FCtl3D ? 2 : 1;
  rect.Left += inset;
  rect.Top += inset;
  rect.Right -= inset;
  rect.Bottom -= inset;
}

bool TCustomGroupBox::DialogChar(Word key) {
  if (!IsAccel(key, FText) || !CanFocus()) return false;
  // The first control of the group that takes the focus gets it.
  for (TWinControl* c : TabList()) {
    if (c->TabStop() && c->CanFocus()) {
      c->SetFocus();
      return true;
    }
  }
  return false;
}

void TCustomGroupBox::Paint(QPainter& painter) {
  const QFont& font = FFont->Handle();
  const int h = FontCellHeight(font);
  painter.fillRect(QRect(0, 0, FWidth, FHeight), ColorToQColor(FColor));
  if (FCtl3D) {
    QRect r(1, h / 2, FWidth - 1, FHeight - h / 2);
    painter.setPen(ColorToQColor(clBtnHighlight));
    painter.drawRect(r.adjusted(0, 0, -1, -1));
    r.translate(-1, -1);
    painter.setPen(ColorToQColor(clBtnShadow));
    painter.drawRect(r.adjusted(0, 0, -1, -1));
  } else {
    painter.setPen(ColorToQColor(clWindowFrame));
    painter.drawRect(QRect(0, h / 2 - 1, FWidth - 1, FHeight - h / 2));
  }
  const QString text = UnicodeText();
  if (!text.isEmpty()) {
    TCaptionLayout layout;
    layout.Disabled = !FEnabled;
    const QSize size = MeasureText(font, text, layout, 0);
    const QRect tr(8, 0, size.width(), h);
    painter.fillRect(tr, ColorToQColor(FColor));
    DrawCaption(painter, tr, font, text, layout, ColorToQColor(FFont->Color()));
  }
}

LUMORA_CLASS_IMPL(TGroupBox) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode", "Caption", "Color", "Constraints", "Ctl3D", "DockSite",
                               "DragCursor", "DragKind", "DragMode", "Enabled", "Font", "ParentBiDiMode",
                               "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint", "PopupMenu", "ShowHint",
                               "TabOrder", "TabStop", "Visible", "OnClick", "OnDblClick", "OnDockDrop", "OnDockOver",
                               "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit",
                               "OnGetSiteInfo", "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDock", "OnStartDrag",
                               "OnUnDock"});
}

// ---------------------------------------------------------------------------------------
// TScrollBar

LUMORA_CLASS_IMPL(TScrollBar) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode", "Constraints", "Ctl3D", "DragCursor", "DragKind",
                               "DragMode", "Enabled"});
  c.Property("Kind", &TScrollBar::Kind, &TScrollBar::SetKind).Default(sbHorizontal);
  c.Property("LargeChange", &TScrollBar::LargeChange, &TScrollBar::SetLargeChange).Default(1);
  c.Property("Max", &TScrollBar::Max, &TScrollBar::SetMax).Default(100);
  c.Property("Min", &TScrollBar::Min, &TScrollBar::SetMin).Default(0);
  c.Property("PageSize", &TScrollBar::PageSize, &TScrollBar::SetPageSize);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentCtl3D", "ParentShowHint", "PopupMenu"});
  c.Property("Position", &TScrollBar::Position, &TScrollBar::SetPosition).Default(0);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("SmallChange", &TScrollBar::SmallChange, &TScrollBar::SetSmallChange).Default(1);
  PublishControlProperties(c, {"TabOrder", "TabStop", "Visible"});
  c.Property("OnChange", &TScrollBar::OnChange, &TScrollBar::OnChange);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit",
                               "OnKeyDown", "OnKeyPress", "OnKeyUp"});
  c.Property("OnScroll", &TScrollBar::OnScroll, &TScrollBar::OnScroll);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
  c.Property("TabStop").Default(true);
}

TScrollBar::TScrollBar(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csFramed, csDoubleClicks, csOpaque};
  FWidth = 121;
  FHeight = 16;
  FTabStop = true;
}

QScrollBar* TScrollBar::Bar() const { return qobject_cast<QScrollBar*>(Widget()); }

void TScrollBar::CreateWidget() {
  auto* b = new QScrollBar(FKind == sbHorizontal ? Qt::Horizontal : Qt::Vertical);
  QObject::connect(b, &QScrollBar::valueChanged, b, [this](int value) {
    Guard([this, value] {
      if (value == FPosition) return;
      int pos = value;
      if (OnScroll) OnScroll(this, scPosition, pos);
      FPosition = pos;
      if (OnChange) OnChange(this);
    });
  });
  AdoptWidget(b);
  UpdateBar();
}

void TScrollBar::UpdateBar() {
  QScrollBar* b = Bar();
  if (!b) return;
  const QSignalBlocker block(b);
  b->setOrientation(FKind == sbHorizontal ? Qt::Horizontal : Qt::Vertical);
  b->setRange(FMin, std::max(FMin, FMax - std::max(0, FPageSize - 1)));
  b->setPageStep(FPageSize > 0 ? FPageSize : FLargeChange);
  b->setSingleStep(FSmallChange);
  b->setValue(FPosition);
}

void TScrollBar::SetKind(TScrollBarKind value) {
  if (FKind == value) return;
  FKind = value;
  if (!Loading(this)) SetBounds(FLeft, FTop, FHeight, FWidth);
  UpdateBar();
}

void TScrollBar::SetLargeChange(int value) {
  FLargeChange = value;
  UpdateBar();
}

void TScrollBar::SetSmallChange(int value) {
  FSmallChange = value;
  UpdateBar();
}

void TScrollBar::SetPageSize(int value) {
  FPageSize = value;
  UpdateBar();
}

void TScrollBar::SetParams(int position, int min, int max) {
  if (max < min && !Loading(this)) throw EInvalidOperation("Scroll bar property out of range");
  const bool changed = position != FPosition;
  FMin = min;
  FMax = max;
  FPosition = std::clamp(position, min, std::max(min, max));
  UpdateBar();
  if (changed && !Loading(this) && OnChange) OnChange(this);
}

// ---------------------------------------------------------------------------------------
// TCustomStaticText, TStaticText

LUMORA_CLASS_IMPL(TCustomStaticText) {}

TCustomStaticText::TCustomStaticText(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csCaptureMouse, csClickEvents, csSetCaption, csReplicatable, csDoubleClicks};
  FWidth = 65;
  FHeight = 17;
  FAutoSize = true;
  FColor = clBtnFace;
}

void TCustomStaticText::SetAlignment(TAlignment value) {
  FAlignment = value;
  Invalidate();
}

void TCustomStaticText::SetBorderStyle(TStaticBorderStyle value) {
  FBorderStyle = value;
  AdjustSize();
  Invalidate();
}

void TCustomStaticText::SetShowAccelChar(bool value) {
  FShowAccelChar = value;
  AdjustSize();
  Invalidate();
}

bool TCustomStaticText::CanAutoSize(int& newWidth, int& newHeight) {
  TCaptionLayout layout;
  layout.ShowAccelChar = FShowAccelChar;
  const QSize s = MeasureText(FFont->Handle(), UnicodeText(), layout, 0);
  const int border = FBorderStyle == sbsNone ? 0 : FBorderStyle == sbsSingle ? 2 : 2;
  newWidth = s.width() + 2 * border;
  newHeight = s.height() + 2 * border;
  return true;
}

bool TCustomStaticText::DialogChar(Word key) {
  if (!FShowAccelChar || !FFocusControl || !IsAccel(key, FText) || !FFocusControl->CanFocus()) return false;
  FFocusControl->SetFocus();
  return true;
}

void TCustomStaticText::Paint(QPainter& painter) {
  QRect r(0, 0, FWidth, FHeight);
  painter.fillRect(r, ColorToQColor(FColor));
  if (FBorderStyle == sbsSunken) {
    Frame3D(painter, r, ColorToQColor(clBtnShadow), ColorToQColor(clBtnHighlight));
  } else if (FBorderStyle == sbsSingle) {
    Frame3D(painter, r, ColorToQColor(clWindowFrame), ColorToQColor(clWindowFrame));
  }
  TCaptionLayout layout;
  layout.HAlign = FAlignment == taRightJustify ? TTextHAlign::Right
                  : FAlignment == taCenter     ? TTextHAlign::Center
                                               : TTextHAlign::Left;
  layout.ShowAccelChar = FShowAccelChar;
  layout.Disabled = !FEnabled;
  DrawCaption(painter, r, FFont->Handle(), UnicodeText(), layout, ColorToQColor(FFont->Color()));
}

LUMORA_CLASS_IMPL(TStaticText) {
  PublishControlProperties(c, {"Align"});
  c.Property("Alignment", &TStaticText::Alignment, &TStaticText::SetAlignment).Default(taLeftJustify);
  PublishControlProperties(c, {"Anchors", "AutoSize", "BiDiMode"});
  c.Property("BorderStyle", &TStaticText::BorderStyle, &TStaticText::SetBorderStyle).Default(sbsNone);
  PublishControlProperties(c, {"Caption", "Color", "Constraints", "DragCursor", "DragKind", "DragMode", "Enabled"});
  c.Property("FocusControl", &TStaticText::FocusControl, &TStaticText::SetFocusControl);
  PublishControlProperties(c, {"Font", "ParentBiDiMode", "ParentColor", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("ShowAccelChar", &TStaticText::ShowAccelChar, &TStaticText::SetShowAccelChar).Default(true);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible", "OnClick", "OnDblClick", "OnDragDrop",
                               "OnDragOver", "OnEndDock", "OnEndDrag", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnStartDock", "OnStartDrag"});
  c.Property("AutoSize").Default(true);
}

void RegisterStdCtrlsClasses() {
  RegisterClasses({TCustomLabel::StaticClass(), TLabel::StaticClass(), TCustomEdit::StaticClass(),
                   TEdit::StaticClass(), TCustomMemo::StaticClass(), TMemo::StaticClass(),
                   TButtonControl::StaticClass(), TButton::StaticClass(), TCustomCheckBox::StaticClass(),
                   TCheckBox::StaticClass(), TRadioButton::StaticClass(), TCustomListBox::StaticClass(),
                   TListBox::StaticClass(), TCustomComboBox::StaticClass(), TComboBox::StaticClass(),
                   TCustomGroupBox::StaticClass(), TGroupBox::StaticClass(), TScrollBar::StaticClass(),
                   TCustomStaticText::StaticClass(), TStaticText::StaticClass()});
}
