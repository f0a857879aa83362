#include "packages/dcldb/DBCtrls.h"

#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/Publish.h"

#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QPlainTextEdit>
#include <QPolygon>

#include <algorithm>

namespace {

void Fill(QPainter& p, const QRect& r, TColor color) { p.fillRect(r, ColorToQColor(color)); }
}  // namespace

// ---------------------------------------------------------------------------------------
// TDataAware

TDataAware::~TDataAware() {
  if (FDataSource) FDataSource->RemoveFreeNotification(FSelf);
  FDataSource = nullptr;
}

void TDataAware::SetDataSource(TDataSource* value) {
  if (ReplaceComponentLink(FSelf, FDataSource, value)) DataDisplayChanged();
}

void TDataAware::SetDataField(const std::string& value) {
  if (FDataField == value) return;
  FDataField = value;
  DataDisplayChanged();
}

TField* TDataAware::Field() const {
  TDataSet* dataSet = DataSetOf(FDataSource);
  return dataSet && !FDataField.empty() ? dataSet->FindField(FDataField) : nullptr;
}

std::string TDataAware::DisplayText() const {
  return FSelf->ComponentState().Contains(csDesigning) ? FSelf->Name() : std::string();
}

void TDataAware::DataNotification(TComponent* component, TOperation operation) {
  if (operation == opRemove && component == FDataSource) {
    FDataSource = nullptr;
    DataDisplayChanged();
  }
}

// ---------------------------------------------------------------------------------------
// TDBText

LUMORA_CLASS_IMPL(TDBText) {
  PublishControlProperties(c, {"Align"});
  c.Property("Alignment", &TDBText::Alignment, &TDBText::SetAlignment).Default(taLeftJustify);
  PublishControlProperties(c, {"Anchors", "AutoSize"});
  c.Property("AutoSize").Default(false);
  PublishControlProperties(c, {"BiDiMode", "Color", "Constraints"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font", "ParentBiDiMode",
                               "ParentColor", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("Transparent", &TDBText::Transparent, &TDBText::SetTransparent).Default(false);
  PublishControlProperties(c, {"ShowHint", "Visible"});
  c.Property("WordWrap", &TDBText::WordWrap, &TDBText::SetWordWrap).Default(false);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag",
                               "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDock", "OnStartDrag"});
}

TDBText::TDBText(TComponent* owner) : TCustomLabel(owner), TDataAware(this) {
  FAutoSize = false;
  SetShowAccelChar(false);
}

void TDBText::DataDisplayChanged() {
  const std::string text = DisplayText();
  if (FText == text) return;
  FText = text;
  AdjustSize();
  Invalidate();
}

void TDBText::Notification(TComponent* component, TOperation operation) {
  TCustomLabel::Notification(component, operation);
  DataNotification(component, operation);
}

void TDBText::SetDesignState(bool designing) {
  TCustomLabel::SetDesignState(designing);
  DataDisplayChanged();
}

void TDBText::Loaded() {
  FText = DisplayText();
  TCustomLabel::Loaded();
}

void TDBText::ChangeName(const std::string& name) {
  TCustomLabel::ChangeName(name);
  if (!Loading(this)) DataDisplayChanged();
}

// ---------------------------------------------------------------------------------------
// TDBEdit

LUMORA_CLASS_IMPL(TDBEdit) {
  PublishControlProperties(c, {"Anchors"});
  c.Property("AutoSelect", &TDBEdit::AutoSelect, &TDBEdit::SetAutoSelect).Default(true);
  PublishControlProperties(c, {"AutoSize", "BiDiMode"});
  c.Property("BorderStyle", &TDBEdit::BorderStyle, &TDBEdit::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  c.Property("CharCase", &TDBEdit::CharCase, &TDBEdit::SetCharCase).Default(ecNormal);
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font", "ImeMode", "ImeName"});
  c.Property("MaxLength", &TDBEdit::MaxLength, &TDBEdit::SetMaxLength).Default(0);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint"});
  c.Property("PasswordChar", &TDBEdit::PasswordChar, &TDBEdit::SetPasswordChar).Default('\0');
  PublishControlProperties(c, {"PopupMenu"});
  c.Property("ReadOnly", &TDBEdit::ReadOnly, &TDBEdit::SetReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible"});
  c.Property("OnChange", &TDBEdit::OnChange, &TDBEdit::OnChange);
  PublishControlProperties(c, {LUMORA_STD_WIN_EVENTS});
  c.Property("AutoSize").Default(true);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDBEdit::TDBEdit(TComponent* owner) : TCustomEdit(owner), TDataAware(this) {}

void TDBEdit::DataDisplayChanged() {
  const std::string text = DisplayText();
  if (FText == text) return;
  FText = text;
  UpdateWidgetText();
}

void TDBEdit::UpdateWidgetText() {
  TCustomEdit::UpdateWidgetText();
  if (QLineEdit* e = LineEdit()) e->setReadOnly(true);
}

void TDBEdit::Notification(TComponent* component, TOperation operation) {
  TCustomEdit::Notification(component, operation);
  DataNotification(component, operation);
}

void TDBEdit::SetDesignState(bool designing) {
  TCustomEdit::SetDesignState(designing);
  DataDisplayChanged();
}

void TDBEdit::Loaded() {
  TCustomEdit::Loaded();
  DataDisplayChanged();
}

void TDBEdit::ChangeName(const std::string& name) {
  TCustomEdit::ChangeName(name);
  if (!Loading(this)) DataDisplayChanged();
}

// ---------------------------------------------------------------------------------------
// TDBMemo

LUMORA_CLASS_IMPL(TDBMemo) {
  PublishControlProperties(c, {"Align"});
  c.Property("Alignment", &TDBMemo::Alignment, &TDBMemo::SetAlignment).Default(taLeftJustify);
  PublishControlProperties(c, {"Anchors"});
  c.Property("AutoDisplay", &TDBMemo::AutoDisplay, &TDBMemo::SetAutoDisplay).Default(true);
  PublishControlProperties(c, {"BiDiMode"});
  c.Property("BorderStyle", &TDBMemo::BorderStyle, &TDBMemo::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font", "ImeMode", "ImeName"});
  c.Property("MaxLength", &TDBMemo::MaxLength, &TDBMemo::SetMaxLength).Default(0);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu"});
  c.Property("ReadOnly", &TDBMemo::ReadOnly, &TDBMemo::SetReadOnly).Default(false);
  c.Property("ScrollBars", &TDBMemo::ScrollBars, &TDBMemo::SetScrollBars).Default(ssNone);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible"});
  c.Property("WantReturns", &TDBMemo::WantReturns, &TDBMemo::SetWantReturns).Default(true);
  c.Property("WantTabs", &TDBMemo::WantTabs, &TDBMemo::SetWantTabs).Default(false);
  c.Property("WordWrap", &TDBMemo::WordWrap, &TDBMemo::SetWordWrap).Default(true);
  c.Property("OnChange", &TDBMemo::OnChange, &TDBMemo::OnChange);
  PublishControlProperties(c, {LUMORA_STD_WIN_EVENTS});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDBMemo::TDBMemo(TComponent* owner) : TCustomMemo(owner), TDataAware(this) {}

void TDBMemo::DataDisplayChanged() {
  const std::string text = DisplayText();
  if (Lines()->Text() == (text.empty() ? text : text + "\r\n")) return;
  Lines()->SetText(text);
}

void TDBMemo::UpdateWidgetText() {
  TCustomMemo::UpdateWidgetText();
  if (QPlainTextEdit* e = Editor()) e->setReadOnly(true);
}

void TDBMemo::Notification(TComponent* component, TOperation operation) {
  TCustomMemo::Notification(component, operation);
  DataNotification(component, operation);
}

void TDBMemo::SetDesignState(bool designing) {
  TCustomMemo::SetDesignState(designing);
  DataDisplayChanged();
}

void TDBMemo::Loaded() {
  TCustomMemo::Loaded();
  DataDisplayChanged();
}

void TDBMemo::ChangeName(const std::string& name) {
  TCustomMemo::ChangeName(name);
  if (!Loading(this)) DataDisplayChanged();
}

// ---------------------------------------------------------------------------------------
// TDBImage

LUMORA_CLASS_IMPL(TDBImage) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("AutoDisplay", &TDBImage::FAutoDisplay, &TDBImage::FAutoDisplay).Default(true);
  c.Property("BorderStyle", &TDBImage::BorderStyle, &TDBImage::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  c.Property("Center", &TDBImage::FCenter, &TDBImage::FCenter).Default(true);
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font", "ParentColor", "ParentCtl3D",
                               "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("QuickDraw", &TDBImage::FQuickDraw, &TDBImage::FQuickDraw).Default(true);
  c.Property("ReadOnly", &TDBImage::FReadOnly, &TDBImage::FReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("Stretch", &TDBImage::FStretch, &TDBImage::FStretch).Default(false);
  PublishControlProperties(c, {"TabOrder", "TabStop", "Visible", LUMORA_STD_WIN_EVENTS});
  c.Property("Color").Default(clWindow);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDBImage::TDBImage(TComponent* owner) : TCustomControl(owner), TDataAware(this) {
  FControlStyle = TControlStyle{csOpaque, csReplicatable};
  FWidth = 105;
  FHeight = 105;
  FTabStop = true;
  FParentColor = false;
  FColor = clWindow;
}

void TDBImage::SetBorderStyle(TBorderStyle value) {
  FBorderStyle = value;
  Realign();
  Invalidate();
}

int TDBImage::FrameSize() const {
  if (FBorderStyle != BorderStyleOf(bsSingle)) return 0;
  return FCtl3D ? 2 : 1;
}

void TDBImage::Paint(QPainter& painter) {
  QRect r(0, 0, FWidth, FHeight);
  if (FBorderStyle == BorderStyleOf(bsSingle)) {
    if (FCtl3D) DrawSunkenEdge(painter, r);
    else Frame3D(painter, r, ColorToQColor(clWindowFrame), ColorToQColor(clWindowFrame));
  }
  Fill(painter, r, FColor);
  // The designer names the picture that the field would give.
  if (Designing()) {
    TCaptionLayout layout;
    layout.HAlign = TTextHAlign::Center;
    layout.VAlign = TTextVAlign::Center;
    layout.ShowAccelChar = false;
    DrawCaption(painter, r, FFont->Handle(), FFont->ToUnicode("(" + Name() + ")"), layout,
                ColorToQColor(FFont->Color()));
  }
}

void TDBImage::Notification(TComponent* component, TOperation operation) {
  TCustomControl::Notification(component, operation);
  DataNotification(component, operation);
}

void TDBImage::ChangeName(const std::string& name) {
  TCustomControl::ChangeName(name);
  Invalidate();
}

// ---------------------------------------------------------------------------------------
// TDBListBox

LUMORA_CLASS_IMPL(TDBListBox) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode"});
  c.Property("BorderStyle", &TDBListBox::BorderStyle, &TDBListBox::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font", "ImeMode", "ImeName"});
  c.Property("IntegralHeight", &TDBListBox::IntegralHeight, &TDBListBox::SetIntegralHeight).Default(false);
  c.Property("ItemHeight", &TDBListBox::ItemHeight, &TDBListBox::SetItemHeight);
  c.Property("Items", &TDBListBox::Items, &TDBListBox::SetItems).Stored(true);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu"});
  c.Property("ReadOnly", &TDBListBox::FReadOnly, &TDBListBox::FReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("Style", &TDBListBox::Style, &TDBListBox::SetStyle).Default(lbStandard);
  PublishControlProperties(c, {"TabOrder", "TabStop", "Visible", LUMORA_STD_WIN_EVENTS});
  c.Property("OnDrawItem", &TDBListBox::OnDrawItem, &TDBListBox::OnDrawItem);
  c.Property("OnMeasureItem", &TDBListBox::OnMeasureItem, &TDBListBox::OnMeasureItem);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDBListBox::TDBListBox(TComponent* owner) : TCustomListBox(owner), TDataAware(this) {}

void TDBListBox::Notification(TComponent* component, TOperation operation) {
  TCustomListBox::Notification(component, operation);
  DataNotification(component, operation);
}

// ---------------------------------------------------------------------------------------
// TDBComboBox

LUMORA_CLASS_IMPL(TDBComboBox) {
  c.Property("Style", &TDBComboBox::Style, &TDBComboBox::SetStyle).Default(csDropDown);
  PublishControlProperties(c, {"Anchors", "BiDiMode", "Color", "Constraints", "Ctl3D"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode"});
  c.Property("DropDownCount", &TDBComboBox::DropDownCount, &TDBComboBox::SetDropDownCount).Default(8);
  PublishControlProperties(c, {"Enabled", "Font", "ImeMode", "ImeName"});
  c.Property("ItemHeight", &TDBComboBox::ItemHeight, &TDBComboBox::SetItemHeight);
  c.Property("Items", &TDBComboBox::Items, &TDBComboBox::SetItems);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu"});
  c.Property("ReadOnly", &TDBComboBox::FReadOnly, &TDBComboBox::FReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("Sorted", &TDBComboBox::Sorted, &TDBComboBox::SetSorted).Default(false);
  PublishControlProperties(c, {"TabOrder", "TabStop", "Visible"});
  c.Property("OnChange", &TDBComboBox::OnChange, &TDBComboBox::OnChange);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver"});
  c.Property("OnDrawItem", &TDBComboBox::OnDrawItem, &TDBComboBox::OnDrawItem);
  c.Property("OnDropDown", &TDBComboBox::OnDropDown, &TDBComboBox::OnDropDown);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp"});
  c.Property("OnMeasureItem", &TDBComboBox::OnMeasureItem, &TDBComboBox::OnMeasureItem);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDBComboBox::TDBComboBox(TComponent* owner) : TCustomComboBox(owner), TDataAware(this) {}

void TDBComboBox::DataDisplayChanged() {
  const std::string text = DisplayText();
  FItemIndex = text.empty() ? -1 : FItems->IndexOf(text);
  FText = FItemIndex >= 0 || FStyle == csDropDown || FStyle == csSimple ? text : std::string();
  UpdateWidgetText();
}

void TDBComboBox::Notification(TComponent* component, TOperation operation) {
  TCustomComboBox::Notification(component, operation);
  DataNotification(component, operation);
}

void TDBComboBox::SetDesignState(bool designing) {
  TCustomComboBox::SetDesignState(designing);
  DataDisplayChanged();
}

void TDBComboBox::Loaded() {
  TCustomComboBox::Loaded();
  DataDisplayChanged();
}

void TDBComboBox::ChangeName(const std::string& name) {
  TCustomComboBox::ChangeName(name);
  if (!Loading(this)) DataDisplayChanged();
}

// ---------------------------------------------------------------------------------------
// TDBCheckBox

LUMORA_CLASS_IMPL(TDBCheckBox) {
  c.Property("Alignment", &TDBCheckBox::Alignment, &TDBCheckBox::SetAlignment).Default(static_cast<TLeftRight>(1));
  c.Property("AllowGrayed", &TDBCheckBox::AllowGrayed, &TDBCheckBox::SetAllowGrayed).Default(false);
  PublishControlProperties(c, {"Anchors", "BiDiMode", "Caption", "Color", "Constraints", "Ctl3D"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font", "ParentBiDiMode",
                               "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("ReadOnly", &TDBCheckBox::FReadOnly, &TDBCheckBox::FReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop"});
  c.Property("ValueChecked", &TDBCheckBox::FValueChecked, &TDBCheckBox::FValueChecked)
      .Stored([](TDBCheckBox* b) { return b->FValueChecked != "True"; });
  c.Property("ValueUnchecked", &TDBCheckBox::FValueUnchecked, &TDBCheckBox::FValueUnchecked)
      .Stored([](TDBCheckBox* b) { return b->FValueUnchecked != "False"; });
  PublishControlProperties(c, {"Visible", "OnClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter",
                               "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove",
                               "OnMouseUp", "OnStartDock", "OnStartDrag"});
  c.Property("TabStop").Default(true);
}

TDBCheckBox::TDBCheckBox(TComponent* owner) : TCustomCheckBox(owner), TDataAware(this) {}

void TDBCheckBox::Notification(TComponent* component, TOperation operation) {
  TCustomCheckBox::Notification(component, operation);
  DataNotification(component, operation);
}

// ---------------------------------------------------------------------------------------
// TDBRadioGroup

LUMORA_CLASS_IMPL(TDBRadioGroup) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode", "Caption", "Color"});
  c.Property("Columns", &TDBRadioGroup::Columns, &TDBRadioGroup::SetColumns).Default(1);
  PublishControlProperties(c, {"Constraints", "Ctl3D"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font"});
  c.Property("Items", &TDBRadioGroup::Items, &TDBRadioGroup::SetItems);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu"});
  c.Property("ReadOnly", &TDBRadioGroup::FReadOnly, &TDBRadioGroup::FReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop"});
  c.Property("Values", &TDBRadioGroup::Values, &TDBRadioGroup::SetValues);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnChange", &TDBRadioGroup::OnChange, &TDBRadioGroup::OnChange);
  PublishControlProperties(c, {"OnClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit",
                               "OnStartDock", "OnStartDrag"});
}

TDBRadioGroup::TDBRadioGroup(TComponent* owner)
    : TCustomRadioGroup(owner), TDataAware(this), FValues(new TStringList()) {}

TDBRadioGroup::~TDBRadioGroup() { delete FValues; }

void TDBRadioGroup::Notification(TComponent* component, TOperation operation) {
  TCustomRadioGroup::Notification(component, operation);
  DataNotification(component, operation);
}

// ---------------------------------------------------------------------------------------
// TDBRichEdit

LUMORA_CLASS_IMPL(TDBRichEdit) {
  PublishControlProperties(c, {"Align"});
  c.Property("Alignment", &TDBRichEdit::Alignment, &TDBRichEdit::SetAlignment).Default(taLeftJustify);
  PublishControlProperties(c, {"Anchors", "BiDiMode"});
  c.Property("BorderStyle", &TDBRichEdit::BorderStyle, &TDBRichEdit::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font"});
  c.Property("HideSelection", &TDBRichEdit::HideSelection, &TDBRichEdit::SetHideSelection).Default(true);
  c.Property("HideScrollBars", &TDBRichEdit::HideScrollBars, &TDBRichEdit::SetHideScrollBars).Default(true);
  PublishControlProperties(c, {"ImeMode", "ImeName"});
  c.Property("MaxLength", &TDBRichEdit::MaxLength, &TDBRichEdit::SetMaxLength).Default(0);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint"});
  c.Property("PlainText", &TDBRichEdit::PlainText, &TDBRichEdit::SetPlainText).Default(false);
  PublishControlProperties(c, {"PopupMenu"});
  c.Property("ReadOnly", &TDBRichEdit::ReadOnly, &TDBRichEdit::SetReadOnly).Default(false);
  c.Property("ScrollBars", &TDBRichEdit::ScrollBars, &TDBRichEdit::SetScrollBars).Default(ssNone);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible"});
  c.Property("WantReturns", &TDBRichEdit::WantReturns, &TDBRichEdit::SetWantReturns).Default(true);
  c.Property("WantTabs", &TDBRichEdit::WantTabs, &TDBRichEdit::SetWantTabs).Default(false);
  c.Property("WordWrap", &TDBRichEdit::WordWrap, &TDBRichEdit::SetWordWrap).Default(true);
  c.Property("OnChange", &TDBRichEdit::OnChange, &TDBRichEdit::OnChange);
  PublishControlProperties(c, {LUMORA_STD_WIN_EVENTS});
  c.Property("OnProtectChange", &TDBRichEdit::OnProtectChange, &TDBRichEdit::OnProtectChange);
  c.Property("OnResizeRequest", &TDBRichEdit::OnResizeRequest, &TDBRichEdit::OnResizeRequest);
  c.Property("OnSaveClipboard", &TDBRichEdit::OnSaveClipboard, &TDBRichEdit::OnSaveClipboard);
  c.Property("OnSelectionChange", &TDBRichEdit::OnSelectionChange, &TDBRichEdit::OnSelectionChange);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDBRichEdit::TDBRichEdit(TComponent* owner) : TCustomRichEdit(owner), TDataAware(this) {}

void TDBRichEdit::DataDisplayChanged() {
  const std::string text = DisplayText();
  if (Text() == text) return;
  Lines()->SetText(text);
}

void TDBRichEdit::Notification(TComponent* component, TOperation operation) {
  TCustomRichEdit::Notification(component, operation);
  DataNotification(component, operation);
}

void TDBRichEdit::SetDesignState(bool designing) {
  TCustomRichEdit::SetDesignState(designing);
  DataDisplayChanged();
}

void TDBRichEdit::Loaded() {
  TCustomRichEdit::Loaded();
  DataDisplayChanged();
}

void TDBRichEdit::ChangeName(const std::string& name) {
  TCustomRichEdit::ChangeName(name);
  if (!Loading(this)) DataDisplayChanged();
}

// ---------------------------------------------------------------------------------------
// Lookup controls

LUMORA_CLASS_IMPL(TDBLookupControl) {}

TDBLookupControl::TDBLookupControl(TComponent* owner) : TCustomControl(owner), TDataAware(this) {
  FTabStop = true;
  FParentColor = false;
  FColor = clWindow;
}

TDBLookupControl::~TDBLookupControl() { SetListSource(nullptr); }

void TDBLookupControl::Notification(TComponent* component, TOperation operation) {
  TCustomControl::Notification(component, operation);
  DataNotification(component, operation);
  if (operation == opRemove && component == FListSource) FListSource = nullptr;
}

void TDBLookupControl::SetDesignState(bool designing) {
  TCustomControl::SetDesignState(designing);
  Invalidate();
}

void TDBLookupControl::ChangeName(const std::string& name) {
  TCustomControl::ChangeName(name);
  Invalidate();
}

namespace {
template <class C>
void PublishLookup(TClassBuilder<C>& c, std::string_view name) {
  if (name == "KeyField") c.Property("KeyField", &TDBLookupControl::FKeyField, &TDBLookupControl::FKeyField);
  else if (name == "ListField") c.Property("ListField", &TDBLookupControl::FListField, &TDBLookupControl::FListField);
  else if (name == "ListFieldIndex")
    c.Property("ListFieldIndex", &TDBLookupControl::FListFieldIndex, &TDBLookupControl::FListFieldIndex).Default(0);
  else if (name == "ListSource") c.Property("ListSource", &TDBLookupControl::ListSource, &TDBLookupControl::SetListSource);
  else c.Property("ReadOnly", &TDBLookupControl::FReadOnly, &TDBLookupControl::FReadOnly).Default(false);
}
}  // namespace

LUMORA_CLASS_IMPL(TDBLookupListBox) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode"});
  c.Property("BorderStyle", &TDBLookupListBox::BorderStyle, &TDBLookupListBox::SetBorderStyle)
      .Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode", "Enabled", "Font", "ImeMode", "ImeName"});
  PublishLookup(c, "KeyField");
  PublishLookup(c, "ListField");
  PublishLookup(c, "ListFieldIndex");
  PublishLookup(c, "ListSource");
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu"});
  PublishLookup(c, "ReadOnly");
  c.Property("RowCount", &TDBLookupListBox::RowCount, &TDBLookupListBox::SetRowCount).Stored(false);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible", LUMORA_STD_WIN_EVENTS});
  c.Property("Color").Default(clWindow);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDBLookupListBox::TDBLookupListBox(TComponent* owner) : TDBLookupControl(owner) {
  FWidth = 121;
  FHeight = 97;
}

void TDBLookupListBox::SetBorderStyle(TBorderStyle value) {
  FBorderStyle = value;
  Realign();
  Invalidate();
}

int TDBLookupListBox::FrameSize() const {
  if (FBorderStyle != BorderStyleOf(bsSingle)) return 0;
  return FCtl3D ? 2 : 1;
}

// Rows of the font's height (plus the frame) fill the box.
int TDBLookupListBox::RowCount() const {
  const int row = std::max(1, FontCellHeight(FFont->Handle()));
  return std::max(1, (FHeight - 2 * FrameSize()) / row);
}

void TDBLookupListBox::SetRowCount(int value) {
  const int row = std::max(1, FontCellHeight(FFont->Handle()));
  SetBounds(FLeft, FTop, FWidth, std::max(1, value) * row + 2 * FrameSize());
}

void TDBLookupListBox::Paint(QPainter& painter) { PaintList(painter, FBorderStyle); }

void TDBLookupControl::PaintList(QPainter& painter, TBorderStyle borderStyle) {
  QRect r(0, 0, FWidth, FHeight);
  if (borderStyle == BorderStyleOf(bsSingle)) {
    if (FCtl3D) DrawSunkenEdge(painter, r);
    else Frame3D(painter, r, ColorToQColor(clWindowFrame), ColorToQColor(clWindowFrame));
  }
  Fill(painter, r, FColor);
}

LUMORA_CLASS_IMPL(TDBLookupComboBox) {
  PublishControlProperties(c, {"Anchors", "BiDiMode", "Color", "Constraints", "Ctl3D"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragKind", "DragMode"});
  c.Property("DropDownAlign", &TDBLookupComboBox::FDropDownAlign, &TDBLookupComboBox::FDropDownAlign).Default(daLeft);
  c.Property("DropDownRows", &TDBLookupComboBox::FDropDownRows, &TDBLookupComboBox::FDropDownRows).Default(7);
  c.Property("DropDownWidth", &TDBLookupComboBox::FDropDownWidth, &TDBLookupComboBox::FDropDownWidth).Default(0);
  PublishControlProperties(c, {"Enabled", "Font", "ImeMode", "ImeName"});
  PublishLookup(c, "KeyField");
  PublishLookup(c, "ListField");
  PublishLookup(c, "ListFieldIndex");
  PublishLookup(c, "ListSource");
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint",
                               "PopupMenu"});
  PublishLookup(c, "ReadOnly");
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible", "OnClick"});
  c.Property("OnCloseUp", &TDBLookupComboBox::OnCloseUp, &TDBLookupComboBox::OnCloseUp);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver"});
  c.Property("OnDropDown", &TDBLookupComboBox::OnDropDown, &TDBLookupComboBox::OnDropDown);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp",
                               "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDock", "OnStartDrag"});
  c.Property("Color").Default(clWindow);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDBLookupComboBox::TDBLookupComboBox(TComponent* owner) : TDBLookupControl(owner) {
  FWidth = 145;
  FAutoSize = true;
  FHeight = 21;
}

bool TDBLookupComboBox::CanAutoSize(int& newWidth, int& newHeight) {
  newWidth = FWidth;
  newHeight = FontCellHeight(FFont->Handle()) + 8;
  return true;
}

void TDBLookupComboBox::Paint(QPainter& painter) { PaintCombo(painter); }

void TDBLookupControl::PaintCombo(QPainter& painter) {
  QRect r(0, 0, FWidth, FHeight);
  if (FCtl3D) DrawSunkenEdge(painter, r);
  else Frame3D(painter, r, ColorToQColor(clWindowFrame), ColorToQColor(clWindowFrame));
  Fill(painter, r, FColor);
  // The drop-down button along the right edge.
  const int bw = std::min(r.width(), 16);
  QRect button(r.right() - bw + 1, r.top(), bw, r.height());
  Fill(painter, button, clBtnFace);
  QRect face = button;
  DrawRaisedEdge(painter, face);
  const QPoint c = button.center();
  const QColor arrow = ColorToQColor(FEnabled ? clBtnText : clGrayText);
  for (int i = 0; i < 4; ++i) painter.fillRect(QRect(c.x() - 3 + i, c.y() - 1 + i, 7 - 2 * i, 1), arrow);
  const std::string text = DisplayText();
  if (!text.empty()) {
    TCaptionLayout layout;
    layout.VAlign = TTextVAlign::Center;
    layout.ShowAccelChar = false;
    layout.Disabled = !FEnabled;
    DrawCaption(painter, QRect(r.left() + 1, r.top(), button.left() - r.left() - 1, r.height()), FFont->Handle(),
                FFont->ToUnicode(text), layout, ColorToQColor(FFont->Color()));
  }
}

// ---------------------------------------------------------------------------------------
// TDBNavigator

void DrawNavigatorGlyph(QPainter& p, const QRect& rect, TNavigateBtn button, bool enabled) {
  // Each glyph on an 11 x 11 grid, drawn pixel by pixel as the classic bitmaps are.
  auto draw = [&](const QColor& color, QPoint origin) {
    p.save();
    p.setRenderHint(QPainter::Antialiasing, false);
    p.translate(origin);
    auto px = [&](int x, int y, int w = 1, int h = 1) { p.fillRect(QRect(x, y, w, h), color); };
    // A triangle pointing left (dir -1) or right (dir 1) with its tip at x, centred on row 5.
    auto triangle = [&](int x, int dir) {
      for (int i = 0; i < 5; ++i) px(x + dir * i, 5 - i, 1, 2 * i + 1);
    };
    switch (button) {
      case nbFirst: px(1, 1, 2, 9); triangle(4, 1); break;
      case nbPrior: triangle(3, 1); break;
      case nbNext: triangle(7, -1); break;
      case nbLast: triangle(6, -1); px(8, 1, 2, 9); break;
      case nbInsert: px(4, 1, 3, 9); px(1, 4, 9, 3); break;
      case nbDelete: px(1, 4, 9, 3); break;
      case nbEdit:
        for (int i = 0; i < 5; ++i) px(5 - i, 3 + i, 2 * i + 1, 1);
        break;
      case nbPost:
        for (int i = 0; i < 3; ++i) px(1 + i, 4 + i, 1, 3);
        for (int i = 0; i < 6; ++i) px(4 + i, 6 - i, 1, 3);
        break;
      case nbCancel:
        for (int i = 0; i < 8; ++i) {
          px(1 + i, 1 + i, 2, 1);
          px(8 - i, 1 + i, 2, 1);
        }
        break;
      case nbRefresh: {
        QPen pen(color, 2);
        pen.setCapStyle(Qt::FlatCap);
        p.setPen(pen);
        p.setBrush(Qt::NoBrush);
        p.drawArc(QRect(1, 1, 9, 9), 90 * 16, 270 * 16);
        QPolygon head;
        head << QPoint(5, -1) << QPoint(9, 2) << QPoint(5, 5);
        p.setPen(Qt::NoPen);
        p.setBrush(color);
        p.drawPolygon(head);
        break;
      }
    }
    p.restore();
  };
  const QPoint origin(rect.left() + (rect.width() - 11) / 2, rect.top() + (rect.height() - 11) / 2);
  if (enabled) {
    draw(Qt::black, origin);
  } else {
    draw(ColorToQColor(clBtnHighlight), origin + QPoint(1, 1));
    draw(ColorToQColor(clBtnShadow), origin);
  }
}

LUMORA_CLASS_IMPL(TDBNavigator) {
  c.Property("DataSource", &TDBNavigator::DataSource, &TDBNavigator::SetDataSource);
  c.Property("VisibleButtons", &TDBNavigator::VisibleButtons, &TDBNavigator::SetVisibleButtons)
      .Default(TButtonSet{nbFirst, nbPrior, nbNext, nbLast, nbInsert, nbDelete, nbEdit, nbPost, nbCancel, nbRefresh});
  PublishControlProperties(c, {"Align", "Anchors", "Constraints", "DragCursor", "DragKind", "DragMode", "Enabled"});
  c.Property("Flat", &TDBNavigator::Flat, &TDBNavigator::SetFlat).Default(false);
  PublishControlProperties(c, {"Ctl3D"});
  c.Property("Hints", &TDBNavigator::Hints, &TDBNavigator::SetHints);
  PublishControlProperties(c, {"ParentCtl3D", "ParentShowHint", "PopupMenu"});
  c.Property("ConfirmDelete", &TDBNavigator::FConfirmDelete, &TDBNavigator::FConfirmDelete).Default(true);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible"});
  c.Property("BeforeAction", &TDBNavigator::BeforeAction, &TDBNavigator::BeforeAction);
  c.Property("OnClick", &TDBNavigator::OnNavClick, &TDBNavigator::OnNavClick);
  PublishControlProperties(c, {"OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit",
                               "OnResize", "OnStartDock", "OnStartDrag"});
}

TDBNavigator::TDBNavigator(TComponent* owner)
    : TCustomPanel(owner),
      FVisibleButtons{nbFirst, nbPrior, nbNext, nbLast, nbInsert, nbDelete, nbEdit, nbPost, nbCancel, nbRefresh},
      FHints(new TStringList()) {
  FControlStyle -= csAcceptsControls;
  FControlStyle -= csSetCaption;
  FBevelOuter = bvNone;
  FBevelInner = bvNone;
  FFullRepaint = false;
  FWidth = 241;
  FHeight = 25;
  AdjustWidth();
}

TDBNavigator::~TDBNavigator() {
  SetDataSource(nullptr);
  delete FHints;
}

void TDBNavigator::SetVisibleButtons(TButtonSet value) {
  FVisibleButtons = value;
  AdjustWidth();
  Invalidate();
}

void TDBNavigator::SetFlat(bool value) {
  FFlat = value;
  Invalidate();
}

std::array<TRect, TDBNavigator::kButtonCount> TDBNavigator::ButtonRects() const {
  std::array<TRect, kButtonCount> rects{};
  int count = 0;
  for (int i = 0; i < kButtonCount; ++i)
    if (FVisibleButtons.Contains(static_cast<TNavigateBtn>(i))) ++count;
  if (count == 0) return rects;
  const int width = std::max(FWidth, count * 20);
  const int buttonWidth = width / count;
  int remain = width - count * buttonWidth;
  int step = count / 2;
  int x = 0;
  for (int i = 0; i < kButtonCount; ++i) {
    if (!FVisibleButtons.Contains(static_cast<TNavigateBtn>(i))) continue;
    int space = 0;
    if (remain != 0) {
      step -= remain;
      if (step < 0) {
        step += count;
        space = 1;
      }
    }
    rects[static_cast<std::size_t>(i)] = Rect(x, 0, x + buttonWidth + space, FHeight);
    x += buttonWidth + space;
  }
  return rects;
}

int TDBNavigator::ButtonAt(int x, int y) const {
  const auto rects = ButtonRects();
  for (int i = 0; i < kButtonCount; ++i) {
    const TRect& r = rects[static_cast<std::size_t>(i)];
    if (r.Width() > 0 && x >= r.Left && x < r.Right && y >= r.Top && y < r.Bottom) return i;
  }
  return -1;
}

void TDBNavigator::AdjustWidth() {
  // Not aligned, the navigator is as wide as its whole buttons.
  if (FAdjusting || Loading(this) || FAlign != alNone) return;
  int count = 0;
  for (int i = 0; i < kButtonCount; ++i)
    if (FVisibleButtons.Contains(static_cast<TNavigateBtn>(i))) ++count;
  if (count == 0) return;
  const int width = std::max(FWidth, count * 20) / count * count;
  if (width == FWidth) return;
  FAdjusting = true;
  SetBounds(FLeft, FTop, width, FHeight);
  FAdjusting = false;
}

void TDBNavigator::Resize() {
  TCustomPanel::Resize();
  AdjustWidth();
}

void TDBNavigator::Loaded() {
  TCustomPanel::Loaded();
  AdjustWidth();
}

void TDBNavigator::Paint(QPainter& painter) {
  Fill(painter, QRect(0, 0, FWidth, FHeight), clBtnFace);
  const auto rects = ButtonRects();
  for (int i = 0; i < kButtonCount; ++i) {
    const TRect& b = rects[static_cast<std::size_t>(i)];
    if (b.Width() <= 0) continue;
    QRect r(b.Left, b.Top, b.Width(), b.Height());
    const bool pressed = i == FPressed;
    if (FFlat) {
      if (pressed) Frame3D(painter, r, ColorToQColor(clBtnShadow), ColorToQColor(clBtnHighlight));
    } else if (pressed) {
      Frame3D(painter, r, ColorToQColor(cl3DDkShadow), ColorToQColor(clBtnHighlight));
      Frame3D(painter, r, ColorToQColor(clBtnShadow), ColorToQColor(cl3DLight));
    } else {
      DrawRaisedEdge(painter, r);
    }
    QRect glyph(b.Left, b.Top, b.Width(), b.Height());
    if (pressed) glyph.translate(1, 1);
    DrawNavigatorGlyph(painter, glyph, static_cast<TNavigateBtn>(i), FEnabled);
  }
}

void TDBNavigator::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  TCustomPanel::MouseDown(button, shift, x, y);
  if (button != mbLeft || Designing()) return;
  FPressed = ButtonAt(x, y);
  Invalidate();
}

void TDBNavigator::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  TCustomPanel::MouseUp(button, shift, x, y);
  const int pressed = FPressed;
  if (pressed < 0) return;
  FPressed = -1;
  Invalidate();
  if (ButtonAt(x, y) == pressed) BtnClick(static_cast<TNavigateBtn>(pressed));
}

void TDBNavigator::BtnClick(TNavigateBtn button) {
  // With the data set closed there is nothing to move or edit: only the events run.
  if (BeforeAction) BeforeAction(this, button);
  if (OnNavClick) OnNavClick(this, button);
}

void TDBNavigator::Notification(TComponent* component, TOperation operation) {
  TCustomPanel::Notification(component, operation);
  if (operation == opRemove && component == FDataSource) FDataSource = nullptr;
}
