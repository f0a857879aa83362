#pragma once
// Classes with published properties for the property-path and settings tests: an editor
// with a font sub-object, a form with a published field and owned components, objects
// that answer for their own values, and stand-ins for the input controls of the value
// table (they carry the real class names).

#include "platform/rtti/Classes.h"

#include <string>

namespace foundtest {

LUMORA_ENUM(TTestKind, tkPlain, tkFancy, tkOdd)
LUMORA_ENUM(TTestStyleItem, tsBold, tsItalic, tsUnderline)
LUMORA_SET(TTestStyles, TTestStyleItem)

class TTestFont : public TPersistent {
  LUMORA_CLASS(TTestFont, TPersistent)
public:
  TTestFont() = default;
  void Assign(TPersistent* source) override;

  std::string FName = "MS Sans Serif";
  int FSize = 8;
  unsigned char FCharSet = 1;
  TTestStyles FStyle;
};

class TTestEditor : public TComponent {
  LUMORA_CLASS(TTestEditor, TComponent)
public:
  explicit TTestEditor(TComponent* owner);
  ~TTestEditor() override;

  TTestFont* FontEditor() const { return FFontEditor; }
  void SetFontEditor(TTestFont* value) { FFontEditor->Assign(value); }

  int FTreeWidth = 150;
  bool FReadOnly = true;
  TTestKind FKind = tkPlain;
  std::string FCaption;
  double FRatio = 0.5;
  float FScale = 1.0f;
  long long FBig = 0;
  Variant FExtra;
  int FSetCount = 0;  // how often TreeWidth was set
  int TreeWidth() const { return FTreeWidth; }
  void SetTreeWidth(int value) {
    FTreeWidth = value;
    ++FSetCount;
  }
  TNotifyEvent OnChange;

private:
  TTestFont* FFontEditor;
};

class TTestForm : public TComponent {
  LUMORA_CLASS(TTestForm, TComponent)
public:
  explicit TTestForm(TComponent* owner) : TComponent(owner) {}

  int FLeft = 0;
  int FTop = 0;
  TTestEditor* Panel = nullptr;  // published field, set when a component named Panel joins
};

// An object that keeps values under any name through its published SetValue and GetValue.
class TTestValues : public TComponent {
  LUMORA_CLASS(TTestValues, TComponent)
public:
  explicit TTestValues(TComponent* owner) : TComponent(owner) {}
  bool SetValue(const std::string& path, const Variant& value);
  bool GetValue(const std::string& path, Variant& value);
  bool SetValueObject(const Variant& value);

  int FLeft = 0;
  TStringList Stored;       // name=value of what SetValue took
  std::string WholeValue;   // what SetValueObject took
  bool Refuse = false;      // SetValue and GetValue answer False
};

// Input controls, named like the real ones.
class TCustomEdit : public TComponent {
  LUMORA_CLASS(TCustomEdit, TComponent)
public:
  explicit TCustomEdit(TComponent* owner) : TComponent(owner) {}
  std::string FText;
};

class TCustomNumEdit : public TCustomEdit {
  LUMORA_CLASS(TCustomNumEdit, TCustomEdit)
public:
  explicit TCustomNumEdit(TComponent* owner) : TCustomEdit(owner) {}
  double FValue = 0;
};

class TCurrencyEdit : public TCustomNumEdit {
  LUMORA_CLASS(TCurrencyEdit, TCustomNumEdit)
public:
  explicit TCurrencyEdit(TComponent* owner) : TCustomNumEdit(owner) {}
};

class TCustomCheckBox : public TComponent {
  LUMORA_CLASS(TCustomCheckBox, TComponent)
public:
  explicit TCustomCheckBox(TComponent* owner) : TComponent(owner) {}
  bool FChecked = false;
};

class TCheckBox : public TCustomCheckBox {
  LUMORA_CLASS(TCheckBox, TCustomCheckBox)
public:
  explicit TCheckBox(TComponent* owner) : TCustomCheckBox(owner) {}
};

class TTestPlain : public TComponent {
  LUMORA_CLASS(TTestPlain, TComponent)
public:
  explicit TTestPlain(TComponent* owner) : TComponent(owner) {}
};

}  // namespace foundtest
