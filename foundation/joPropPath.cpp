#include "foundation/joPropPath.h"

#include "platform/streaming/SysUtils.h"

#include <typeinfo>

namespace {

struct TValuePropRow {
  const char* ClassName;
  const char* PropName;
};

// Specialised edits come before the general edit class: the first matching row wins.
const TValuePropRow ValuePropTable[] = {
    {"TIntegerEdit", "AsInteger"},  {"TjoRefControl", "Ident"},      {"TjoEditPanel", "Text"},
    {"TComboCode", "Ident"},        {"TCustomNumEdit", "Value"},     {"TCustomDateEdit", "Date"},
    {"RxSpinEdit", "Value"},        {"SpinEdit", "Value"},           {"TCustomEdit", "Text"},
    {"TCustomLabel", "Caption"},    {"TCustomPanel", "Caption"},     {"TRxCustomLabel", "Caption"},
    {"TRadioButton", "Checked"},    {"TCustomCheckBox", "Checked"},  {"TCustomRadioGroup", "ItemIndex"},
    {"TCustomListBox", "ItemIndex"}, {"TCustomComboBox", "ItemIndex"}, {"TDateTimePicker", "Date"},
};

bool IsBlank(const std::string& s) {
  return Trim(s).empty();
}

// The published method `name` of the object, when it has the signature Sig.
template <class Sig>
bool FindPublishedMethod(TObject* instance, const char* name, TEvent<Sig>& event) {
  const TMethodInfo* m = instance->ClassType()->FindMethod(name);
  if (!m || !m->Code || !m->Signature || *m->Signature != typeid(Sig)) return false;
  TMethod method;
  method.Code = m->Code;
  method.Data = static_cast<void*>(instance);
  event = TEvent<Sig>(method);
  return true;
}

bool CanHoldVariant(const TPropInfo* prop) {
  TTypeKind kind = prop->Kind();
  return kind != tkClass && kind != tkMethod && kind != tkUnknown && kind != tkArray && kind != tkRecord &&
         kind != tkInterface && kind != tkDynArray;
}

// Sets the property at `path` from the variant; a value that does not convert is passed over.
bool SetPropByPath(TObject* instance, const std::string& path, const Variant& value) {
  const TPropInfo* prop = FindPropInfo(instance, path, tkUnknown, true);
  if (!prop || !CanHoldVariant(prop)) return false;
  try {
    SetPropValue(instance, prop, value);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool GetPropByPath(TObject* instance, const std::string& path, Variant& value) {
  const TPropInfo* prop = FindPropInfo(instance, path, tkUnknown, false);
  if (!prop || !CanHoldVariant(prop)) return false;
  try {
    value = GetPropValue(instance, prop, true);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace

bool InheritsFromName(const TObject* Obj, const std::string& ClassName) {
  if (!Obj) return false;
  for (TClass c = Obj->ClassType(); c; c = c->ClassParent())
    if (SameText(c->ClassName(), ClassName)) return true;
  return false;
}

std::string GetValuePropName(const TObject* Control) {
  if (!Control) return "";
  for (const TValuePropRow& row : ValuePropTable)
    if (InheritsFromName(Control, row.ClassName)) return row.PropName;
  return "";
}

const TPropInfo* ResolvePropPath(TObject*& Instance, const std::string& Path) {
  if (!Instance || IsBlank(Path)) return nullptr;
  std::size_t dot = Path.find('.');
  if (dot == std::string::npos) return Instance->ClassType()->FindProperty(Path);
  TObject* sub = GetSubObject(Instance, Path.substr(0, dot));
  if (!sub) return nullptr;
  const TPropInfo* prop = ResolvePropPath(sub, Path.substr(dot + 1, 255));
  if (prop) Instance = sub;
  return prop;
}

const TPropInfo* FindPropInfo(TObject*& Instance, const std::string& Path, TTypeKind Kind, bool ForWriting) {
  TObject* owner = Instance;
  const TPropInfo* prop = ResolvePropPath(owner, Path);
  if (!prop) return nullptr;
  if (ForWriting ? !prop->CanWrite() : !prop->CanRead()) return nullptr;
  if (Kind != tkUnknown && prop->Kind() != Kind) return nullptr;
  Instance = owner;
  return prop;
}

TObject* GetSubObject(TObject* Instance, const std::string& Name) {
  if (!Instance || IsBlank(Name)) return nullptr;
  TClass cls = Instance->ClassType();
  if (const TPropInfo* prop = cls->FindProperty(Name); prop && prop->Kind() == tkClass && prop->CanRead())
    return prop->Access->GetObject(Instance);
  if (const TFieldInfo* field = cls->FindField(Name); field && field->Get)
    if (TObject* held = field->Get(Instance)) return held;
  if (auto* component = dynamic_cast<TComponent*>(Instance)) return component->FindComponent(Name);
  return nullptr;
}

bool SetValueByPath(TObject* Instance, const std::string& Path, const Variant& Value) {
  if (!Instance) return false;
  if (!IsBlank(Path)) {
    TEvent<TjoSetValueMethod> setValue;
    if (FindPublishedMethod(Instance, "SetValue", setValue) && setValue(Path, Value)) return true;
    return SetPropByPath(Instance, Path, Value);
  }
  TEvent<TjoSetValueObjectMethod> setValueObject;
  if (FindPublishedMethod(Instance, "SetValueObject", setValueObject)) return setValueObject(Value);
  std::string valueProp = GetValuePropName(Instance);
  return !valueProp.empty() && SetPropByPath(Instance, valueProp, Value);
}

bool GetValueByPath(TObject* Instance, const std::string& Path, const Variant& Default, Variant& Value) {
  if (Instance) {
    TEvent<TjoGetValueMethod> getValue;
    Variant got;
    if (FindPublishedMethod(Instance, "GetValue", getValue) && getValue(Path, got)) {
      Value = got;
      return true;
    }
    std::string path = IsBlank(Path) ? GetValuePropName(Instance) : Path;
    if (!path.empty() && GetPropByPath(Instance, path, got)) {
      Value = got;
      return true;
    }
  }
  Value = Default;
  return false;
}
