#pragma once
// The standard controls: labels, edits, memos, buttons, check boxes, radio buttons, list
// and combo boxes, group boxes, scroll bars and static texts. Each publishes what its
// Delphi 4 counterpart publishes, with the same defaults, and shows a Qt widget (labels
// and group boxes paint themselves, as their look depends on the classic metrics).

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"

#include <QPointer>

#include <string>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QScrollBar;

LUMORA_ENUM(TAlignment, taLeftJustify, taRightJustify, taCenter)
LUMORA_ENUM(TTextLayout, tlTop, tlCenter, tlBottom)
LUMORA_ENUM(TEditCharCase, ecNormal, ecUpperCase, ecLowerCase)
LUMORA_ENUM(TScrollStyle, ssNone, ssHorizontal, ssVertical, ssBoth)
LUMORA_ENUM(TCheckBoxState, cbUnchecked, cbChecked, cbGrayed)
LUMORA_ENUM(TListBoxStyle, lbStandard, lbOwnerDrawFixed, lbOwnerDrawVariable)
LUMORA_ENUM(TComboBoxStyle, csDropDown, csSimple, csDropDownList, csOwnerDrawFixed, csOwnerDrawVariable)
LUMORA_ENUM(TStaticBorderStyle, sbsNone, sbsSingle, sbsSunken)
LUMORA_ENUM(TScrollCode, scLineUp, scLineDown, scPageUp, scPageDown, scPosition, scTrack, scTop, scBottom, scEndScroll)

// The Alignment of a check box or radio button takes the names of TAlignment's first two
// values; its type is a type of its own.
enum class TLeftRight : std::uint8_t {};
const TTypeInfo* TypeInfoOf(TLeftRight*);

LUMORA_ENUM(TOwnerDrawStateItem, odSelected, odGrayed, odDisabled, odChecked, odFocused, odDefault, odHotLight,
            odInactive, odNoAccel, odNoFocusRect, odReserved1, odReserved2, odComboBoxEdit)
LUMORA_SET(TOwnerDrawState, TOwnerDrawStateItem)
LUMORA_EVENT(TDrawItemEvent, void(TWinControl* Control, int Index, TRect Rect, TOwnerDrawState State))
LUMORA_EVENT(TMeasureItemEvent, void(TWinControl* Control, int Index, int& Height))
LUMORA_EVENT(TScrollEvent, void(TObject* Sender, TScrollCode ScrollCode, int& ScrollPos))

// ---- Labels

class TCustomLabel : public TGraphicControl {
  LUMORA_CLASS(TCustomLabel, TGraphicControl)
public:
  explicit TCustomLabel(TComponent* owner);
  TAlignment Alignment() const { return FAlignment; }
  void SetAlignment(TAlignment value);
  TTextLayout Layout() const { return FLayout; }
  void SetLayout(TTextLayout value);
  bool ShowAccelChar() const { return FShowAccelChar; }
  void SetShowAccelChar(bool value);
  bool Transparent() const { return FTransparent; }
  void SetTransparent(bool value);
  bool WordWrap() const { return FWordWrap; }
  void SetWordWrap(bool value);
  TWinControl* FocusControl() const { return FFocusControl; }
  void SetFocusControl(TWinControl* value);
  void Paint(QPainter& painter) override;
  void Notification(TComponent* component, TOperation operation) override;
  void Loaded() override;
  bool DialogChar(Word key) override;

protected:
  bool CanAutoSize(int& newWidth, int& newHeight) override;
  void AdjustSize() override;
  void UpdateWidgetColors() override;

private:
  TAlignment FAlignment = taLeftJustify;
  TTextLayout FLayout = tlTop;
  bool FShowAccelChar = true;
  bool FTransparent = false;
  bool FWordWrap = false;
  TWinControl* FFocusControl = nullptr;
};

class TLabel : public TCustomLabel {
  LUMORA_CLASS(TLabel, TCustomLabel)
public:
  explicit TLabel(TComponent* owner) : TCustomLabel(owner) {}
};

// ---- Edits and memos

class TCustomEdit : public TWinControl {
  LUMORA_CLASS(TCustomEdit, TWinControl)
public:
  explicit TCustomEdit(TComponent* owner);
  bool AutoSelect() const { return FAutoSelect; }
  void SetAutoSelect(bool value) { FAutoSelect = value; }
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle value);
  TEditCharCase CharCase() const { return FCharCase; }
  void SetCharCase(TEditCharCase value);
  bool HideSelection() const { return FHideSelection; }
  void SetHideSelection(bool value) { FHideSelection = value; }
  int MaxLength() const { return FMaxLength; }
  void SetMaxLength(int value);
  bool OEMConvert() const { return FOEMConvert; }
  void SetOEMConvert(bool value) { FOEMConvert = value; }
  char PasswordChar() const { return FPasswordChar; }
  void SetPasswordChar(char value);
  bool ReadOnly() const { return FReadOnly; }
  void SetReadOnly(bool value);
  bool Modified() const { return FModified; }
  void SetModified(bool value) { FModified = value; }

  std::string Text() const override;
  void SetText(const std::string& value) override;
  int SelStart() const;
  void SetSelStart(int value);
  int SelLength() const;
  void SetSelLength(int value);
  std::string SelText() const;
  void SelectAll();
  void Clear() { SetText(std::string()); }
  void ClearSelection();
  void CopyToClipboard();
  void CutToClipboard();
  void PasteFromClipboard();

  TNotifyEvent OnChange;

  void CreateWidget() override;
  void UpdateWidgetText() override;
  bool WidgetEvent(QObject* watched, QEvent* event) override;

protected:
  virtual void Change();
  bool CanAutoSize(int& newWidth, int& newHeight) override;
  void FontChanged() override;
  QLineEdit* LineEdit() const;
  // The widget's text came from the user: take it as bytes.
  void WidgetTextChanged();

  bool FAutoSelect = true;
  TBorderStyle FBorderStyle = BorderStyleOf(bsSingle);
  TEditCharCase FCharCase = ecNormal;
  bool FHideSelection = true;
  int FMaxLength = 0;
  bool FOEMConvert = false;
  char FPasswordChar = 0;
  bool FReadOnly = false;
  bool FModified = false;
  bool FSyncing = false;
};

class TEdit : public TCustomEdit {
  LUMORA_CLASS(TEdit, TCustomEdit)
public:
  explicit TEdit(TComponent* owner) : TCustomEdit(owner) {}
};

class TCustomMemo : public TCustomEdit {
  LUMORA_CLASS(TCustomMemo, TCustomEdit)
public:
  explicit TCustomMemo(TComponent* owner);
  ~TCustomMemo() override;
  TStrings* Lines() const { return FLines; }
  void SetLines(TStrings* value) { FLines->Assign(value); }
  TAlignment Alignment() const { return FAlignment; }
  void SetAlignment(TAlignment value);
  TScrollStyle ScrollBars() const { return FScrollBars; }
  void SetScrollBars(TScrollStyle value);
  bool WantReturns() const { return FWantReturns; }
  void SetWantReturns(bool value) { FWantReturns = value; }
  bool WantTabs() const { return FWantTabs; }
  void SetWantTabs(bool value);
  bool WordWrap() const { return FWordWrap; }
  void SetWordWrap(bool value);

  std::string Text() const override;
  void SetText(const std::string& value) override;
  void CreateWidget() override;
  void UpdateWidgetText() override;

protected:
  bool CanAutoSize(int&, int&) override { return false; }
  QPlainTextEdit* Editor() const;

private:
  void LinesChanged();
  TStringList* FLines;
  TAlignment FAlignment = taLeftJustify;
  TScrollStyle FScrollBars = ssNone;
  bool FWantReturns = true;
  bool FWantTabs = false;
  bool FWordWrap = true;
};

class TMemo : public TCustomMemo {
  LUMORA_CLASS(TMemo, TCustomMemo)
public:
  explicit TMemo(TComponent* owner) : TCustomMemo(owner) {}
};

// ---- Buttons

class TButtonControl : public TWinControl {
  LUMORA_CLASS(TButtonControl, TWinControl)
public:
  explicit TButtonControl(TComponent* owner);

protected:
  // Clicks come from the widget (a key or a mouse press), not from the mouse alone.
  bool ClicksFromMouse() const override { return false; }
  // True while the control changes its own state, so that no click is reported.
  bool FClicksDisabled = false;
};

class TButton : public TButtonControl {
  LUMORA_CLASS(TButton, TButtonControl)
public:
  explicit TButton(TComponent* owner);
  bool Cancel() const { return FCancel; }
  void SetCancel(bool value) { FCancel = value; }
  bool Default() const { return FDefault; }
  void SetDefault(bool value);
  TModalResult ModalResult() const { return FModalResult; }
  void SetModalResult(TModalResult value) { FModalResult = value; }
  // Sets the form's ModalResult, then runs OnClick.
  void Click() override;
  bool DialogChar(Word key) override;
  void CreateWidget() override;
  void UpdateWidgetText() override;

protected:
  QPushButton* PushButton() const;

private:
  bool FCancel = false;
  bool FDefault = false;
  TModalResult FModalResult = mrNone;
};

class TCustomCheckBox : public TButtonControl {
  LUMORA_CLASS(TCustomCheckBox, TButtonControl)
public:
  explicit TCustomCheckBox(TComponent* owner);
  TLeftRight Alignment() const { return FAlignment; }
  void SetAlignment(TLeftRight value);
  bool AllowGrayed() const { return FAllowGrayed; }
  void SetAllowGrayed(bool value);
  TCheckBoxState State() const { return FState; }
  void SetState(TCheckBoxState value);
  bool Checked() const { return FState == cbChecked; }
  void SetChecked(bool value) { SetState(value ? cbChecked : cbUnchecked); }
  bool DialogChar(Word key) override;
  void CreateWidget() override;
  void UpdateWidgetText() override;

protected:
  // The next state a click gives (grayed is skipped unless allowed).
  virtual void Toggle();
  QCheckBox* CheckBox() const;

private:
  TLeftRight FAlignment;
  bool FAllowGrayed = false;
  TCheckBoxState FState = cbUnchecked;
};

class TCheckBox : public TCustomCheckBox {
  LUMORA_CLASS(TCheckBox, TCustomCheckBox)
public:
  explicit TCheckBox(TComponent* owner) : TCustomCheckBox(owner) {}
};

class TRadioButton : public TButtonControl {
  LUMORA_CLASS(TRadioButton, TButtonControl)
public:
  explicit TRadioButton(TComponent* owner);
  TLeftRight Alignment() const { return FAlignment; }
  void SetAlignment(TLeftRight value);
  bool Checked() const { return FChecked; }
  // Checking a radio button unchecks the others of its parent.
  void SetChecked(bool value);
  bool DialogChar(Word key) override;
  void CreateWidget() override;
  void UpdateWidgetText() override;

protected:
  QRadioButton* RadioButton() const;

private:
  TLeftRight FAlignment;
  bool FChecked = false;
};

// ---- Lists

class TCustomListBox : public TWinControl {
  LUMORA_CLASS(TCustomListBox, TWinControl)
public:
  explicit TCustomListBox(TComponent* owner);
  ~TCustomListBox() override;
  TStrings* Items() const { return FItems; }
  void SetItems(TStrings* value) { FItems->Assign(value); }
  int ItemIndex() const;
  void SetItemIndex(int value);
  int SelCount() const;
  bool Selected(int index) const;
  void SetSelected(int index, bool value);
  void Clear() { FItems->Clear(); }
  int ItemAtPos(TPoint pos, bool existing) const;
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle value);
  int Columns() const { return FColumns; }
  void SetColumns(int value) { FColumns = value; }
  bool ExtendedSelect() const { return FExtendedSelect; }
  void SetExtendedSelect(bool value);
  bool IntegralHeight() const { return FIntegralHeight; }
  void SetIntegralHeight(bool value) { FIntegralHeight = value; }
  int ItemHeight() const { return FItemHeight; }
  void SetItemHeight(int value) { FItemHeight = value; }
  bool MultiSelect() const { return FMultiSelect; }
  void SetMultiSelect(bool value);
  bool Sorted() const { return FSorted; }
  void SetSorted(bool value);
  TListBoxStyle Style() const { return FStyle; }
  void SetStyle(TListBoxStyle value) { FStyle = value; }
  int TabWidth() const { return FTabWidth; }
  void SetTabWidth(int value) { FTabWidth = value; }
  int TopIndex() const;
  void SetTopIndex(int value);

  TDrawItemEvent OnDrawItem;
  TMeasureItemEvent OnMeasureItem;

  void CreateWidget() override;
  void UpdateWidgetText() override;

protected:
  bool ClicksFromMouse() const override { return false; }
  QListWidget* List() const;
  // Puts the items into the widget again.
  virtual void ItemsChanged();
  // The items as the widget shows them (check list boxes add their check marks).
  virtual void FillWidget();

  TStringList* FItems;
  TBorderStyle FBorderStyle = BorderStyleOf(bsSingle);
  int FColumns = 0;
  bool FExtendedSelect = true;
  bool FIntegralHeight = false;
  int FItemHeight = 16;
  bool FMultiSelect = false;
  bool FSorted = false;
  TListBoxStyle FStyle = lbStandard;
  int FTabWidth = 0;
  int FItemIndex = -1;
  bool FFilling = false;
};

class TListBox : public TCustomListBox {
  LUMORA_CLASS(TListBox, TCustomListBox)
public:
  explicit TListBox(TComponent* owner) : TCustomListBox(owner) {}
};

class TCustomComboBox : public TWinControl {
  LUMORA_CLASS(TCustomComboBox, TWinControl)
public:
  explicit TCustomComboBox(TComponent* owner);
  ~TCustomComboBox() override;
  TStrings* Items() const { return FItems; }
  void SetItems(TStrings* value) { FItems->Assign(value); }
  int ItemIndex() const;
  void SetItemIndex(int value);
  TComboBoxStyle Style() const { return FStyle; }
  void SetStyle(TComboBoxStyle value);
  int DropDownCount() const { return FDropDownCount; }
  void SetDropDownCount(int value);
  int ItemHeight() const { return FItemHeight; }
  void SetItemHeight(int value) { FItemHeight = value; }
  int MaxLength() const { return FMaxLength; }
  void SetMaxLength(int value);
  bool Sorted() const { return FSorted; }
  void SetSorted(bool value);
  bool DroppedDown() const;
  void SetDroppedDown(bool value);
  void Clear();

  std::string Text() const override;
  void SetText(const std::string& value) override;

  TNotifyEvent OnChange;
  TNotifyEvent OnDropDown;
  TDrawItemEvent OnDrawItem;
  TMeasureItemEvent OnMeasureItem;

  void CreateWidget() override;
  void UpdateWidgetText() override;

protected:
  bool ClicksFromMouse() const override { return false; }
  bool CanAutoSize(int& newWidth, int& newHeight) override;
  void FontChanged() override;
  QComboBox* Combo() const;
  void ItemsChanged();
  virtual void Change();

  TStringList* FItems;
  TComboBoxStyle FStyle = csDropDown;
  int FDropDownCount = 8;
  int FItemHeight = 16;
  int FMaxLength = 0;
  bool FSorted = false;
  int FItemIndex = -1;
  bool FSyncing = false;
};

class TComboBox : public TCustomComboBox {
  LUMORA_CLASS(TComboBox, TCustomComboBox)
public:
  explicit TComboBox(TComponent* owner) : TCustomComboBox(owner) {}
};

// ---- Group boxes, scroll bars, static texts

class TCustomGroupBox : public TCustomControl {
  LUMORA_CLASS(TCustomGroupBox, TCustomControl)
public:
  explicit TCustomGroupBox(TComponent* owner);
  void AdjustClientRect(TRect& rect) const override;
  bool DialogChar(Word key) override;
  void Paint(QPainter& painter) override;
};

class TGroupBox : public TCustomGroupBox {
  LUMORA_CLASS(TGroupBox, TCustomGroupBox)
public:
  explicit TGroupBox(TComponent* owner) : TCustomGroupBox(owner) {}
};

class TScrollBar : public TWinControl {
  LUMORA_CLASS(TScrollBar, TWinControl)
public:
  explicit TScrollBar(TComponent* owner);
  TScrollBarKind Kind() const { return FKind; }
  void SetKind(TScrollBarKind value);
  int LargeChange() const { return FLargeChange; }
  void SetLargeChange(int value);
  int SmallChange() const { return FSmallChange; }
  void SetSmallChange(int value);
  int Max() const { return FMax; }
  void SetMax(int value) { SetParams(FPosition, FMin, value); }
  int Min() const { return FMin; }
  void SetMin(int value) { SetParams(FPosition, value, FMax); }
  int PageSize() const { return FPageSize; }
  void SetPageSize(int value);
  int Position() const { return FPosition; }
  void SetPosition(int value) { SetParams(value, FMin, FMax); }
  void SetParams(int position, int min, int max);

  TNotifyEvent OnChange;
  TScrollEvent OnScroll;

  void CreateWidget() override;

protected:
  QScrollBar* Bar() const;
  void UpdateBar();

private:
  TScrollBarKind FKind = sbHorizontal;
  int FLargeChange = 1;
  int FSmallChange = 1;
  int FMax = 100;
  int FMin = 0;
  int FPageSize = 0;
  int FPosition = 0;
};

class TCustomStaticText : public TWinControl {
  LUMORA_CLASS(TCustomStaticText, TWinControl)
public:
  explicit TCustomStaticText(TComponent* owner);
  TAlignment Alignment() const { return FAlignment; }
  void SetAlignment(TAlignment value);
  TStaticBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TStaticBorderStyle value);
  TWinControl* FocusControl() const { return FFocusControl; }
  void SetFocusControl(TWinControl* value) { FFocusControl = value; }
  bool ShowAccelChar() const { return FShowAccelChar; }
  void SetShowAccelChar(bool value);
  void Paint(QPainter& painter) override;
  bool DialogChar(Word key) override;

protected:
  bool CanAutoSize(int& newWidth, int& newHeight) override;

private:
  TAlignment FAlignment = taLeftJustify;
  TStaticBorderStyle FBorderStyle = sbsNone;
  TWinControl* FFocusControl = nullptr;
  bool FShowAccelChar = true;
};

class TStaticText : public TCustomStaticText {
  LUMORA_CLASS(TStaticText, TCustomStaticText)
public:
  explicit TStaticText(TComponent* owner) : TCustomStaticText(owner) {}
};
