#pragma once
// The data controls: texts, edits, memos, images, lists, combo boxes, check boxes,
// radio groups, lookup lists and combo boxes, rich edits and the navigator. Each shows
// what its Delphi 4 counterpart shows over a closed data set: nothing in a running form,
// and, while the form is designed, the control's name where the field's text would be.
// Their data sets never open, so nothing the user types reaches a field.

#include "packages/dcldb/DB.h"
#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/StdCtrls.h"

#include <array>
#include <string>

// What every data-aware control keeps: the data source it shows and the field of it.
class TDataAware {
public:
  explicit TDataAware(TComponent* self) : FSelf(self) {}
  virtual ~TDataAware();
  TDataAware(const TDataAware&) = delete;
  TDataAware& operator=(const TDataAware&) = delete;

  TDataSource* DataSource() const { return FDataSource; }
  void SetDataSource(TDataSource* value);
  const std::string& DataField() const { return FDataField; }
  void SetDataField(const std::string& value);
  // The persistent field shown (a closed data set still has its persistent fields), or none.
  TField* Field() const;
  // What stands where the field's text would: the control's name while it is designed,
  // else nothing (the data set is closed).
  std::string DisplayText() const;

protected:
  // Shows DisplayText again (after a change of name, design state or link).
  virtual void DataDisplayChanged() {}
  // Forgets the data source when it goes; call from Notification.
  void DataNotification(TComponent* component, TOperation operation);

  TComponent* FSelf;
  TDataSource* FDataSource = nullptr;
  std::string FDataField;
};

class TDBText : public TCustomLabel, public TDataAware {
  LUMORA_CLASS(TDBText, TCustomLabel)
public:
  explicit TDBText(TComponent* owner);
  void Notification(TComponent* component, TOperation operation) override;
  void SetDesignState(bool designing) override;
  void Loaded() override;

protected:
  void DataDisplayChanged() override;
  void ChangeName(const std::string& name) override;
};

class TDBEdit : public TCustomEdit, public TDataAware {
  LUMORA_CLASS(TDBEdit, TCustomEdit)
public:
  explicit TDBEdit(TComponent* owner);
  void Notification(TComponent* component, TOperation operation) override;
  void SetDesignState(bool designing) override;
  void Loaded() override;
  // The field cannot be edited: the text stays what the control shows.
  void UpdateWidgetText() override;

protected:
  void DataDisplayChanged() override;
  void ChangeName(const std::string& name) override;
};

class TDBMemo : public TCustomMemo, public TDataAware {
  LUMORA_CLASS(TDBMemo, TCustomMemo)
public:
  explicit TDBMemo(TComponent* owner);
  bool AutoDisplay() const { return FAutoDisplay; }
  void SetAutoDisplay(bool value) { FAutoDisplay = value; }
  void Notification(TComponent* component, TOperation operation) override;
  void SetDesignState(bool designing) override;
  void Loaded() override;
  void UpdateWidgetText() override;

protected:
  void DataDisplayChanged() override;
  void ChangeName(const std::string& name) override;

private:
  bool FAutoDisplay = true;
};

// A picture from a blob field: over a closed data set, the sunken empty box, with the
// name in parentheses while it is designed.
class TDBImage : public TCustomControl, public TDataAware {
  LUMORA_CLASS(TDBImage, TCustomControl)
public:
  explicit TDBImage(TComponent* owner);
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle value);
  bool FAutoDisplay = true;
  bool FCenter = true;
  bool FQuickDraw = true;
  bool FReadOnly = false;
  bool FStretch = false;
  int FrameSize() const override;
  void Paint(QPainter& painter) override;
  void Notification(TComponent* component, TOperation operation) override;

protected:
  void DataDisplayChanged() override { Invalidate(); }
  void ChangeName(const std::string& name) override;

private:
  TBorderStyle FBorderStyle = BorderStyleOf(bsSingle);
};

class TDBListBox : public TCustomListBox, public TDataAware {
  LUMORA_CLASS(TDBListBox, TCustomListBox)
public:
  explicit TDBListBox(TComponent* owner);
  bool FReadOnly = false;
  void Notification(TComponent* component, TOperation operation) override;
};

class TDBComboBox : public TCustomComboBox, public TDataAware {
  LUMORA_CLASS(TDBComboBox, TCustomComboBox)
public:
  explicit TDBComboBox(TComponent* owner);
  bool FReadOnly = false;
  void Notification(TComponent* component, TOperation operation) override;
  void SetDesignState(bool designing) override;
  void Loaded() override;

protected:
  void DataDisplayChanged() override;
  void ChangeName(const std::string& name) override;
};

class TDBCheckBox : public TCustomCheckBox, public TDataAware {
  LUMORA_CLASS(TDBCheckBox, TCustomCheckBox)
public:
  explicit TDBCheckBox(TComponent* owner);
  bool FReadOnly = false;
  std::string FValueChecked = "True";
  std::string FValueUnchecked = "False";
  void Notification(TComponent* component, TOperation operation) override;

protected:
  // The field cannot change: a click leaves the box as it is.
  void Toggle() override { UpdateWidgetText(); }
};

class TDBRadioGroup : public TCustomRadioGroup, public TDataAware {
  LUMORA_CLASS(TDBRadioGroup, TCustomRadioGroup)
public:
  explicit TDBRadioGroup(TComponent* owner);
  ~TDBRadioGroup() override;
  TStrings* Values() const { return FValues; }
  void SetValues(TStrings* value) { FValues->Assign(value); }
  bool FReadOnly = false;
  TNotifyEvent OnChange;
  void Notification(TComponent* component, TOperation operation) override;

private:
  TStringList* FValues;
};

class TDBRichEdit : public TCustomRichEdit, public TDataAware {
  LUMORA_CLASS(TDBRichEdit, TCustomRichEdit)
public:
  explicit TDBRichEdit(TComponent* owner);
  void Notification(TComponent* component, TOperation operation) override;
  void SetDesignState(bool designing) override;
  void Loaded() override;

protected:
  void DataDisplayChanged() override;
  void ChangeName(const std::string& name) override;
};

// ---- Lookup controls

LUMORA_ENUM(TDropDownAlign, daLeft, daRight, daCenter)

// A list of values from another data set: its list source, key and list fields.
class TDBLookupControl : public TCustomControl, public TDataAware {
  LUMORA_CLASS(TDBLookupControl, TCustomControl)
public:
  explicit TDBLookupControl(TComponent* owner);
  ~TDBLookupControl() override;
  TDataSource* ListSource() const { return FListSource; }
  void SetListSource(TDataSource* value) { ReplaceComponentLink(this, FListSource, value); }
  std::string FKeyField;
  std::string FListField;
  int FListFieldIndex = 0;
  bool FReadOnly = false;
  void Notification(TComponent* component, TOperation operation) override;
  void SetDesignState(bool designing) override;

protected:
  void DataDisplayChanged() override { Invalidate(); }
  void ChangeName(const std::string& name) override;
  // The two looks of lookup controls: a sunken list, a field with a drop-down button
  // (showing the name while designed).
  void PaintList(QPainter& painter, TBorderStyle borderStyle);
  void PaintCombo(QPainter& painter);

private:
  TDataSource* FListSource = nullptr;
};

class TDBLookupListBox : public TDBLookupControl {
  LUMORA_CLASS(TDBLookupListBox, TDBLookupControl)
public:
  explicit TDBLookupListBox(TComponent* owner);
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle value);
  int RowCount() const;
  void SetRowCount(int value);
  int FrameSize() const override;
  void Paint(QPainter& painter) override;

private:
  TBorderStyle FBorderStyle = BorderStyleOf(bsSingle);
};

class TDBLookupComboBox : public TDBLookupControl {
  LUMORA_CLASS(TDBLookupComboBox, TDBLookupControl)
public:
  explicit TDBLookupComboBox(TComponent* owner);
  TDropDownAlign FDropDownAlign = daLeft;
  int FDropDownRows = 7;
  int FDropDownWidth = 0;
  TNotifyEvent OnCloseUp;
  TNotifyEvent OnDropDown;
  void Paint(QPainter& painter) override;

protected:
  bool CanAutoSize(int& newWidth, int& newHeight) override;
};

// ---- The navigator

LUMORA_ENUM(TNavigateBtn, nbFirst, nbPrior, nbNext, nbLast, nbInsert, nbDelete, nbEdit, nbPost, nbCancel, nbRefresh)
LUMORA_SET(TButtonSet, TNavigateBtn)
LUMORA_EVENT(TNavClick, void(TObject* Sender, TNavigateBtn Button))

// A row of buttons that move through a data set and edit it. They look ready to be
// pressed; with the data set closed, a press does nothing but raise OnClick.
class TDBNavigator : public TCustomPanel {
  LUMORA_CLASS(TDBNavigator, TCustomPanel)
public:
  static constexpr int kButtonCount = 10;

  explicit TDBNavigator(TComponent* owner);
  ~TDBNavigator() override;
  TDataSource* DataSource() const { return FDataSource; }
  void SetDataSource(TDataSource* value) { ReplaceComponentLink(this, FDataSource, value); }
  TButtonSet VisibleButtons() const { return FVisibleButtons; }
  void SetVisibleButtons(TButtonSet value);
  bool Flat() const { return FFlat; }
  void SetFlat(bool value);
  TStrings* Hints() const { return FHints; }
  void SetHints(TStrings* value) { FHints->Assign(value); }
  bool FConfirmDelete = true;
  TNavClick BeforeAction;
  TNavClick OnNavClick;

  // Where each visible button lies: the width shared out as the original does, the
  // spare pixels spread from the middle.
  std::array<TRect, kButtonCount> ButtonRects() const;
  // The button under a point, or -1.
  int ButtonAt(int x, int y) const;
  // Presses a button as a click does.
  void BtnClick(TNavigateBtn button);

  void Paint(QPainter& painter) override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void MouseUp(TMouseButton button, TShiftState shift, int x, int y) override;
  void Notification(TComponent* component, TOperation operation) override;
  void Loaded() override;

protected:
  void Resize() override;

private:
  // The width the buttons need when the navigator is not aligned (whole buttons).
  void AdjustWidth();
  TDataSource* FDataSource = nullptr;
  TButtonSet FVisibleButtons;
  bool FFlat = false;
  TStringList* FHints;
  int FPressed = -1;
  bool FAdjusting = false;
};

// Draws the glyph of a navigator button centred in `rect` (shared with the data set actions' images).
void DrawNavigatorGlyph(QPainter& painter, const QRect& rect, TNavigateBtn button, bool enabled);

// Publishes DataField and DataSource of a data-aware control.
template <class C>
void PublishDataLink(TClassBuilder<C>& c, std::string_view name) {
  if (name == "DataField") c.Property("DataField", &C::DataField, &C::SetDataField);
  else c.Property("DataSource", &C::DataSource, &C::SetDataSource);
}
