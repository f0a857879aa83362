#include "tests/foundation/FoundTestObjects.h"

#include "platform/rtti/ClassBuilder.h"

using namespace foundtest;

LUMORA_CLASS_IMPL(foundtest::TTestFont) {
  c.Property("Name", &TTestFont::FName, &TTestFont::FName);
  c.Property("Size", &TTestFont::FSize, &TTestFont::FSize).Default(8);
  c.Property("CharSet", &TTestFont::FCharSet, &TTestFont::FCharSet);
  c.Property("Style", &TTestFont::FStyle, &TTestFont::FStyle);
}

void TTestFont::Assign(TPersistent* source) {
  if (auto* f = dynamic_cast<TTestFont*>(source)) {
    FName = f->FName;
    FSize = f->FSize;
    FCharSet = f->FCharSet;
    FStyle = f->FStyle;
    return;
  }
  TPersistent::Assign(source);
}

LUMORA_CLASS_IMPL(foundtest::TTestEditor) {
  c.Property("TreeWidth", &TTestEditor::TreeWidth, &TTestEditor::SetTreeWidth);
  c.Property("FontEditor", &TTestEditor::FontEditor, &TTestEditor::SetFontEditor);
  c.Property("ReadOnly", &TTestEditor::FReadOnly, &TTestEditor::FReadOnly);
  c.Property("Kind", &TTestEditor::FKind, &TTestEditor::FKind);
  c.Property("Caption", &TTestEditor::FCaption, &TTestEditor::FCaption);
  c.Property("Ratio", &TTestEditor::FRatio, &TTestEditor::FRatio);
  c.Property("Scale", &TTestEditor::FScale, &TTestEditor::FScale);
  c.Property("Big", &TTestEditor::FBig, &TTestEditor::FBig);
  c.Property("Extra", &TTestEditor::FExtra, &TTestEditor::FExtra);
  c.Property("Width", &TTestEditor::FTreeWidth);  // read-only
  c.Property("OnChange", &TTestEditor::OnChange, &TTestEditor::OnChange);
}

TTestEditor::TTestEditor(TComponent* owner) : TComponent(owner), FFontEditor(new TTestFont) {}

TTestEditor::~TTestEditor() {
  delete FFontEditor;
}

LUMORA_CLASS_IMPL(foundtest::TTestForm) {
  c.Property("Left", &TTestForm::FLeft, &TTestForm::FLeft);
  c.Property("Top", &TTestForm::FTop, &TTestForm::FTop);
  c.Field("Panel", &TTestForm::Panel);
}

LUMORA_CLASS_IMPL(foundtest::TTestValues) {
  c.Property("Left", &TTestValues::FLeft, &TTestValues::FLeft);
  c.Method<&TTestValues::SetValue>("SetValue");
  c.Method<&TTestValues::GetValue>("GetValue");
  c.Method<&TTestValues::SetValueObject>("SetValueObject");
}

bool TTestValues::SetValue(const std::string& path, const Variant& value) {
  if (Refuse) return false;
  Stored.SetValue(path, VarToStr(value));
  return true;
}

bool TTestValues::GetValue(const std::string& path, Variant& value) {
  if (Refuse || Stored.IndexOfName(path) < 0) return false;
  value = Variant(Stored.Values(path));
  return true;
}

bool TTestValues::SetValueObject(const Variant& value) {
  WholeValue = VarToStr(value);
  return true;
}

LUMORA_CLASS_IMPL(foundtest::TCustomEdit) {
  c.Property("Text", &TCustomEdit::FText, &TCustomEdit::FText);
}

LUMORA_CLASS_IMPL(foundtest::TCustomNumEdit) {
  c.Property("Value", &TCustomNumEdit::FValue, &TCustomNumEdit::FValue);
}

LUMORA_CLASS_IMPL(foundtest::TCurrencyEdit) {}

LUMORA_CLASS_IMPL(foundtest::TCustomCheckBox) {
  c.Property("Checked", &TCustomCheckBox::FChecked, &TCustomCheckBox::FChecked);
}

LUMORA_CLASS_IMPL(foundtest::TCheckBox) {}

LUMORA_CLASS_IMPL(foundtest::TTestPlain) {}
