#include "platform/rtti/TypInfo.h"

#include "platform/rtti/RttiConsts.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/SysUtils.h"

#include <algorithm>

// ---- TPropAccess: the pairs a property's kind does not use -----------------------------

namespace {
[[noreturn]] void WrongKind() { throw EPropertyError(RtlConsts::SInvalidPropertyValue); }
}  // namespace

std::int64_t TPropAccess::GetOrd(TObject*) const { WrongKind(); }
void TPropAccess::SetOrd(TObject*, std::int64_t) const { WrongKind(); }
std::int64_t TPropAccess::GetInt64(TObject*) const { WrongKind(); }
void TPropAccess::SetInt64(TObject*, std::int64_t) const { WrongKind(); }
long double TPropAccess::GetFloat(TObject*) const { WrongKind(); }
void TPropAccess::SetFloat(TObject*, long double) const { WrongKind(); }
std::string TPropAccess::GetStr(TObject*) const { WrongKind(); }
void TPropAccess::SetStr(TObject*, const std::string&) const { WrongKind(); }
TObject* TPropAccess::GetObject(TObject*) const { WrongKind(); }
bool TPropAccess::SetObject(TObject*, TObject*) const { WrongKind(); }
TMethod TPropAccess::GetMethod(TObject*) const { WrongKind(); }
void TPropAccess::SetMethod(TObject*, const TMethod&) const { WrongKind(); }
Variant TPropAccess::GetVariant(TObject*) const { WrongKind(); }
void TPropAccess::SetVariant(TObject*, const Variant&) const { WrongKind(); }

// ---- Type information of the built-in types ---------------------------------------------

namespace rtti_detail {

namespace {

TTypeInfo Ordinal(TTypeKind kind, const char* name, TOrdType ordType, std::int64_t minValue, std::int64_t maxValue) {
  TTypeInfo t;
  t.Kind = kind;
  t.Name = name;
  t.OrdType = ordType;
  t.MinValue = minValue;
  t.MaxValue = maxValue;
  return t;
}

TTypeInfo Float(const char* name, TFloatType floatType) {
  TTypeInfo t;
  t.Kind = tkFloat;
  t.Name = name;
  t.FloatType = floatType;
  return t;
}

TTypeInfo Simple(TTypeKind kind, const char* name) {
  TTypeInfo t;
  t.Kind = kind;
  t.Name = name;
  return t;
}

}  // namespace

TTypeInfo MakeEnumInfo(const char* name, const char* names) {
  TTypeInfo t;
  t.Kind = tkEnumeration;
  t.Name = name;
  std::string_view rest(names);
  while (!rest.empty()) {
    const std::size_t comma = rest.find(',');
    const std::string item = Trim(rest.substr(0, comma));
    if (!item.empty()) t.EnumNames.push_back(item);
    if (comma == std::string_view::npos) break;
    rest.remove_prefix(comma + 1);
  }
  t.MinValue = 0;
  t.MaxValue = static_cast<std::int64_t>(t.EnumNames.size()) - 1;
  t.OrdType = t.EnumNames.size() <= 256 ? otUByte : otUWord;
  return t;
}

TTypeInfo MakeSetInfo(const char* name, TTypeInfoFn elementType) {
  TTypeInfo t;
  t.Kind = tkSet;
  t.Name = name;
  t.OrdType = otULong;
  t.CompTypeFn = elementType;
  return t;
}

TTypeInfo MakeMethodInfo(const char* name, const std::type_info& signature, const char* paramText) {
  TTypeInfo t;
  t.Kind = tkMethod;
  t.Name = name;
  t.Signature = &signature;
  t.ParamText = paramText;
  return t;
}

const TTypeInfo* BooleanInfo() {
  static const TTypeInfo info = MakeEnumInfo("Boolean", "False, True");
  return &info;
}
const TTypeInfo* CharInfo() {
  static const TTypeInfo info = Ordinal(tkChar, "Char", otUByte, 0, 255);
  return &info;
}
const TTypeInfo* WideCharInfo() {
  static const TTypeInfo info = Ordinal(tkWChar, "WideChar", otUWord, 0, 65535);
  return &info;
}
const TTypeInfo* ShortIntInfo() {
  static const TTypeInfo info = Ordinal(tkInteger, "ShortInt", otSByte, -128, 127);
  return &info;
}
const TTypeInfo* ByteInfo() {
  static const TTypeInfo info = Ordinal(tkInteger, "Byte", otUByte, 0, 255);
  return &info;
}
const TTypeInfo* SmallintInfo() {
  static const TTypeInfo info = Ordinal(tkInteger, "Smallint", otSWord, -32768, 32767);
  return &info;
}
const TTypeInfo* WordInfo() {
  static const TTypeInfo info = Ordinal(tkInteger, "Word", otUWord, 0, 65535);
  return &info;
}
const TTypeInfo* IntegerInfo() {
  static const TTypeInfo info = Ordinal(tkInteger, "Integer", otSLong, std::numeric_limits<std::int32_t>::min(),
                                        std::numeric_limits<std::int32_t>::max());
  return &info;
}
const TTypeInfo* CardinalInfo() {
  static const TTypeInfo info = Ordinal(tkInteger, "Cardinal", otULong, 0, std::numeric_limits<std::uint32_t>::max());
  return &info;
}
const TTypeInfo* Int64Info() {
  static const TTypeInfo info = Ordinal(tkInt64, "Int64", otSLong, std::numeric_limits<std::int64_t>::min(),
                                        std::numeric_limits<std::int64_t>::max());
  return &info;
}
const TTypeInfo* SingleInfo() {
  static const TTypeInfo info = Float("Single", ftSingle);
  return &info;
}
const TTypeInfo* DoubleInfo() {
  static const TTypeInfo info = Float("Double", ftDouble);
  return &info;
}
const TTypeInfo* ExtendedInfo() {
  static const TTypeInfo info = Float("Extended", ftExtended);
  return &info;
}
const TTypeInfo* CompInfo() {
  static const TTypeInfo info = Float("Comp", ftComp);
  return &info;
}
const TTypeInfo* CurrencyInfo() {
  static const TTypeInfo info = Float("Currency", ftCurr);
  return &info;
}
const TTypeInfo* DateTimeInfo() {
  static const TTypeInfo info = Float("TDateTime", ftDouble);
  return &info;
}
const TTypeInfo* StringInfo() {
  static const TTypeInfo info = Simple(tkLString, "string");
  return &info;
}
const TTypeInfo* ShortStringInfo() {
  static const TTypeInfo info = Simple(tkString, "ShortString");
  return &info;
}
const TTypeInfo* VariantInfo() {
  static const TTypeInfo info = Simple(tkVariant, "Variant");
  return &info;
}

}  // namespace rtti_detail

// ---- Class descriptors ----------------------------------------------------------------

TClassDesc::TClassDesc(TRootTag) : FName("TObject") {
  FTypeInfo.Kind = tkClass;
  FTypeInfo.Name = FName;
  FTypeInfo.ClassTypeFn = &TObject::StaticClass;
  FCreateObject = []() -> TObject* { return new TObject; };
}

TClassDesc::~TClassDesc() = default;

bool TClassDesc::InheritsFrom(TClass ancestor) const {
  for (TClass c = this; c; c = c->FParent)
    if (c == ancestor) return true;
  return false;
}

TPropInfo& TClassDesc::AddProperty(std::string_view name) {
  for (auto& own : FOwnProps)
    if (SameText(own->Name, name)) {
      *own = TPropInfo();
      own->Name = std::string(name);
      own->Declarer = this;
      return *own;
    }
  auto prop = std::make_unique<TPropInfo>();
  prop->Name = std::string(name);
  prop->Declarer = this;
  FOwnProps.push_back(std::move(prop));
  return *FOwnProps.back();
}

TPropInfo& TClassDesc::RedeclareProperty(std::string_view name) {
  for (auto& own : FOwnProps)
    if (SameText(own->Name, name)) return *own;
  const TPropInfo* inherited = FParent ? FParent->FindProperty(name) : nullptr;
  if (!inherited) throw EPropertyError(Format(RtlConsts::SUnknownProperty, name));
  auto prop = std::make_unique<TPropInfo>(*inherited);
  prop->Declarer = this;
  FOwnProps.push_back(std::move(prop));
  return *FOwnProps.back();
}

void TClassDesc::Finish() {
  if (FParent) FProps = FParent->FProps;
  for (const auto& own : FOwnProps) {
    auto same = std::find_if(FProps.begin(), FProps.end(), [&](const TPropInfo* p) { return SameText(p->Name, own->Name); });
    if (same != FProps.end()) {
      own->NameIndex = static_cast<int>(same - FProps.begin());
      *same = own.get();
    } else {
      own->NameIndex = static_cast<int>(FProps.size());
      FProps.push_back(own.get());
    }
  }
}

const TPropInfo* TClassDesc::FindProperty(std::string_view name) const {
  for (const TPropInfo* p : FProps)
    if (SameText(p->Name, name)) return p;
  return nullptr;
}

const TFieldInfo* TClassDesc::FindField(std::string_view name) const {
  for (TClass c = this; c; c = c->FParent)
    for (const TFieldInfo& f : c->FFields)
      if (SameText(f.Name, name)) return &f;
  return nullptr;
}

TClass TClassDesc::FindFieldClass(std::string_view className) const {
  for (TClass c = this; c; c = c->FParent)
    for (const TFieldInfo& f : c->FFields) {
      TClass fieldClass = f.FieldClass();
      if (fieldClass && SameText(fieldClass->ClassName(), className)) return fieldClass;
    }
  return nullptr;
}

const TMethodInfo* TClassDesc::FindMethod(std::string_view name) const {
  for (TClass c = this; c; c = c->FParent)
    for (const TMethodInfo& m : c->FMethods)
      if (SameText(m.Name, name)) return &m;
  return nullptr;
}

const TMethodInfo* TClassDesc::FindMethod(TMethodCode code) const {
  if (!code) return nullptr;
  for (TClass c = this; c; c = c->FParent)
    for (const TMethodInfo& m : c->FMethods)
      if (m.Code == code) return &m;
  return nullptr;
}

TComponent* TClassDesc::CreateComponent(TComponent* owner) const {
  if (!FCreateComponent) throw EInvalidOperation(Format(RttiConsts::SAbstractClass, FName));
  return FCreateComponent(owner);
}

TCollectionItem* TClassDesc::CreateItem(TCollection* collection) const {
  if (!FCreateItem) throw EInvalidOperation(Format(RttiConsts::SAbstractClass, FName));
  return FCreateItem(collection);
}

TObject* TClassDesc::CreateObject() const {
  if (!FCreateObject) throw EInvalidOperation(Format(RttiConsts::SAbstractClass, FName));
  return FCreateObject();
}

// ---- TObject ---------------------------------------------------------------------------

TClass TObject::StaticClass() {
  static const TClassDesc desc{TClassDesc::TRootTag{}};
  return &desc;
}

TClass TObject::ClassType() const { return StaticClass(); }

void TObject::DescribeClass(TClassBuilder<TObject>&) {}

bool TObject::ClassNameIs(std::string_view name) const { return SameText(ClassName(), name); }

TMethodCode TObject::MethodAddress(std::string_view name) const {
  const TMethodInfo* m = ClassType()->FindMethod(name);
  return m ? m->Code : nullptr;
}

std::string TObject::MethodName(TMethodCode code) const {
  const TMethodInfo* m = ClassType()->FindMethod(code);
  return m ? m->Name : std::string();
}

// ---- Enumerations and sets ----------------------------------------------------------------

std::string GetEnumName(const TTypeInfo* typeInfo, std::int64_t value) {
  if (!typeInfo || typeInfo->Kind != tkEnumeration) return IntToStr(value);
  if (value < 0 || value >= static_cast<std::int64_t>(typeInfo->EnumNames.size())) return "";
  return typeInfo->EnumNames[static_cast<std::size_t>(value)];
}

int GetEnumValue(const TTypeInfo* typeInfo, std::string_view name) {
  if (!typeInfo || typeInfo->Kind != tkEnumeration) return -1;
  const std::string trimmed = Trim(name);
  for (std::size_t i = 0; i < typeInfo->EnumNames.size(); ++i)
    if (SameText(typeInfo->EnumNames[i], trimmed)) return static_cast<int>(i);
  return -1;
}

namespace {

const TTypeInfo* ElementType(const TTypeInfo* typeInfo) {
  if (typeInfo && typeInfo->Kind == tkSet) return typeInfo->CompType();
  return typeInfo;
}

int ElementCount(const TTypeInfo* element) {
  if (!element) return 0;
  if (element->Kind == tkEnumeration) return static_cast<int>(std::min<std::size_t>(element->EnumNames.size(), 32));
  return static_cast<int>(std::min<std::int64_t>(element->MaxValue + 1, 32));
}

std::string ElementName(const TTypeInfo* element, int value) {
  if (element && element->Kind == tkEnumeration) return GetEnumName(element, value);
  return IntToStr(value);
}

int ElementValue(const TTypeInfo* element, std::string_view name) {
  if (element && element->Kind == tkEnumeration) return GetEnumValue(element, name);
  long long v;
  if (TryStrToInt(name, v) && v >= 0 && v < ElementCount(element)) return static_cast<int>(v);
  return -1;
}

}  // namespace

std::string SetToString(const TTypeInfo* typeInfo, std::int64_t value, bool brackets) {
  const TTypeInfo* element = ElementType(typeInfo);
  std::string out;
  for (int i = 0; i < 32; ++i)
    if (value & (std::int64_t{1} << i)) {
      if (!out.empty()) out += ',';
      out += ElementName(element, i);
    }
  return brackets ? "[" + out + "]" : out;
}

std::int64_t StringToSet(const TTypeInfo* typeInfo, std::string_view text) {
  const TTypeInfo* element = ElementType(typeInfo);
  std::string t = Trim(text);
  std::string_view rest(t);
  if (!rest.empty() && rest.front() == '[') {
    rest.remove_prefix(1);
    if (!rest.empty() && rest.back() == ']') rest.remove_suffix(1);
  }
  std::int64_t bits = 0;
  while (!rest.empty()) {
    std::size_t end = rest.find_first_of(", \t\r\n");
    const std::string_view name = rest.substr(0, end);
    if (!name.empty()) {
      const int v = ElementValue(element, name);
      if (v < 0 || v >= 32) throw EPropertyError(Format(RtlConsts::SInvalidPropertyElement, name));
      bits |= std::int64_t{1} << v;
    }
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  return bits;
}

// ---- Finding properties -------------------------------------------------------------------

const TPropInfo* GetPropInfo(TClass cls, std::string_view name) { return cls ? cls->FindProperty(name) : nullptr; }

const TPropInfo* GetPropInfo(const TObject* instance, std::string_view name) {
  return instance ? instance->ClassType()->FindProperty(name) : nullptr;
}

const TPropInfo* GetPropInfo(const TObject* instance, std::string_view name, TTypeKinds kinds) {
  const TPropInfo* p = GetPropInfo(instance, name);
  return p && kinds.Contains(p->Kind()) ? p : nullptr;
}

std::vector<const TPropInfo*> GetPropList(TClass cls, TTypeKinds kinds, bool sortList) {
  std::vector<const TPropInfo*> list;
  if (!cls) return list;
  for (const TPropInfo* p : cls->Properties())
    if (kinds.Contains(p->Kind())) list.push_back(p);
  if (sortList)
    std::stable_sort(list.begin(), list.end(), [](const TPropInfo* a, const TPropInfo* b) { return CompareText(a->Name, b->Name) < 0; });
  return list;
}

std::vector<const TPropInfo*> GetPropList(const TObject* instance, TTypeKinds kinds, bool sortList) {
  return GetPropList(instance ? instance->ClassType() : nullptr, kinds, sortList);
}

namespace {

const TPropInfo* Need(const TObject* instance, std::string_view name) {
  const TPropInfo* p = GetPropInfo(instance, name);
  if (!p) throw EPropertyError(Format(RtlConsts::SUnknownProperty, name));
  return p;
}

void CheckKind(const TPropInfo* p, TTypeKinds kinds) {
  if (!kinds.Contains(p->Kind())) throw EPropertyError(Format(RtlConsts::SInvalidPropertyType, p->PropType()->Name));
}

void CheckWrite(const TPropInfo* p) {
  if (!p->CanWrite()) throw EPropertyError(RtlConsts::SReadOnlyProperty);
}

constexpr TTypeKinds OrdinalKinds{tkInteger, tkChar, tkEnumeration, tkSet, tkWChar};
constexpr TTypeKinds StringKinds{tkString, tkLString};

bool IsBoolean(const TTypeInfo* t) { return t == rtti_detail::BooleanInfo(); }

}  // namespace

bool IsPublishedProp(const TObject* instance, std::string_view name) { return GetPropInfo(instance, name) != nullptr; }

bool PropIsType(const TObject* instance, std::string_view name, TTypeKind kind) { return Need(instance, name)->Kind() == kind; }

TTypeKind PropType(const TObject* instance, std::string_view name) { return Need(instance, name)->Kind(); }

bool IsStoredProp(TObject* instance, const TPropInfo* prop) { return prop->IsStored(instance); }
bool IsStoredProp(TObject* instance, std::string_view name) { return IsStoredProp(instance, Need(instance, name)); }

bool IsDefaultPropValue(TObject* instance, const TPropInfo* prop) {
  const TPropAccess& a = *prop->Access;
  switch (prop->Kind()) {
    case tkInteger:
    case tkChar:
    case tkEnumeration:
    case tkSet:
    case tkWChar: return prop->HasDefault() && a.GetOrd(instance) == prop->Default;
    case tkInt64: return a.GetInt64(instance) == 0;
    case tkFloat: return a.GetFloat(instance) == 0;
    case tkString:
    case tkLString: return a.GetStr(instance).empty();
    case tkClass: return a.GetObject(instance) == nullptr;
    case tkMethod: return !a.GetMethod(instance).Assigned();
    case tkVariant: return a.GetVariant(instance).IsEmpty();
    default: return false;
  }
}

// ---- Ordinals -------------------------------------------------------------------------------

std::int64_t GetOrdProp(TObject* instance, const TPropInfo* prop) {
  CheckKind(prop, OrdinalKinds);
  return prop->Access->GetOrd(instance);
}
std::int64_t GetOrdProp(TObject* instance, std::string_view name) { return GetOrdProp(instance, Need(instance, name)); }

void SetOrdProp(TObject* instance, const TPropInfo* prop, std::int64_t value) {
  CheckKind(prop, OrdinalKinds);
  CheckWrite(prop);
  const TTypeInfo* t = prop->PropType();
  if (t->Kind == tkSet) {
    const int count = ElementCount(t->CompType());
    const std::int64_t all = count >= 32 ? 0xFFFFFFFFLL : ((std::int64_t{1} << count) - 1);
    if (value & ~all) throw EPropertyError(RtlConsts::SInvalidPropertyValue);
  } else if (value < t->MinValue || value > t->MaxValue) {
    throw EPropertyError(RtlConsts::SInvalidPropertyValue);
  }
  prop->Access->SetOrd(instance, value);
}
void SetOrdProp(TObject* instance, std::string_view name, std::int64_t value) { SetOrdProp(instance, Need(instance, name), value); }

std::string GetEnumProp(TObject* instance, const TPropInfo* prop) {
  CheckKind(prop, TTypeKinds{tkEnumeration});
  return GetEnumName(prop->PropType(), prop->Access->GetOrd(instance));
}
std::string GetEnumProp(TObject* instance, std::string_view name) { return GetEnumProp(instance, Need(instance, name)); }

void SetEnumProp(TObject* instance, const TPropInfo* prop, std::string_view value) {
  CheckKind(prop, TTypeKinds{tkEnumeration});
  const int v = GetEnumValue(prop->PropType(), value);
  if (v < 0) throw EPropertyError(Format(RtlConsts::SInvalidPropertyElement, value));
  SetOrdProp(instance, prop, v);
}
void SetEnumProp(TObject* instance, std::string_view name, std::string_view value) { SetEnumProp(instance, Need(instance, name), value); }

std::string GetSetProp(TObject* instance, const TPropInfo* prop, bool brackets) {
  CheckKind(prop, TTypeKinds{tkSet});
  return SetToString(prop->PropType(), prop->Access->GetOrd(instance), brackets);
}
std::string GetSetProp(TObject* instance, std::string_view name, bool brackets) { return GetSetProp(instance, Need(instance, name), brackets); }

void SetSetProp(TObject* instance, const TPropInfo* prop, std::string_view value) {
  CheckKind(prop, TTypeKinds{tkSet});
  SetOrdProp(instance, prop, StringToSet(prop->PropType(), value));
}
void SetSetProp(TObject* instance, std::string_view name, std::string_view value) { SetSetProp(instance, Need(instance, name), value); }

// ---- Strings, floats, 64-bit integers ---------------------------------------------------------

std::string GetStrProp(TObject* instance, const TPropInfo* prop) {
  CheckKind(prop, StringKinds);
  return prop->Access->GetStr(instance);
}
std::string GetStrProp(TObject* instance, std::string_view name) { return GetStrProp(instance, Need(instance, name)); }

void SetStrProp(TObject* instance, const TPropInfo* prop, const std::string& value) {
  CheckKind(prop, StringKinds);
  CheckWrite(prop);
  prop->Access->SetStr(instance, value);
}
void SetStrProp(TObject* instance, std::string_view name, const std::string& value) { SetStrProp(instance, Need(instance, name), value); }

long double GetFloatProp(TObject* instance, const TPropInfo* prop) {
  CheckKind(prop, TTypeKinds{tkFloat});
  return prop->Access->GetFloat(instance);
}
long double GetFloatProp(TObject* instance, std::string_view name) { return GetFloatProp(instance, Need(instance, name)); }

void SetFloatProp(TObject* instance, const TPropInfo* prop, long double value) {
  CheckKind(prop, TTypeKinds{tkFloat});
  CheckWrite(prop);
  prop->Access->SetFloat(instance, value);
}
void SetFloatProp(TObject* instance, std::string_view name, long double value) { SetFloatProp(instance, Need(instance, name), value); }

std::int64_t GetInt64Prop(TObject* instance, const TPropInfo* prop) {
  CheckKind(prop, TTypeKinds{tkInt64});
  return prop->Access->GetInt64(instance);
}
std::int64_t GetInt64Prop(TObject* instance, std::string_view name) { return GetInt64Prop(instance, Need(instance, name)); }

void SetInt64Prop(TObject* instance, const TPropInfo* prop, std::int64_t value) {
  CheckKind(prop, TTypeKinds{tkInt64});
  CheckWrite(prop);
  prop->Access->SetInt64(instance, value);
}
void SetInt64Prop(TObject* instance, std::string_view name, std::int64_t value) { SetInt64Prop(instance, Need(instance, name), value); }

// ---- Objects, methods, variants -----------------------------------------------------------------

TObject* GetObjectProp(TObject* instance, const TPropInfo* prop, TClass minClass) {
  CheckKind(prop, TTypeKinds{tkClass});
  TObject* o = prop->Access->GetObject(instance);
  if (o && minClass && !o->InheritsFrom(minClass)) return nullptr;
  return o;
}
TObject* GetObjectProp(TObject* instance, std::string_view name, TClass minClass) {
  return GetObjectProp(instance, Need(instance, name), minClass);
}

void SetObjectProp(TObject* instance, const TPropInfo* prop, TObject* value) {
  CheckKind(prop, TTypeKinds{tkClass});
  CheckWrite(prop);
  if (!prop->Access->SetObject(instance, value)) throw EPropertyError(RtlConsts::SInvalidPropertyValue);
}
void SetObjectProp(TObject* instance, std::string_view name, TObject* value) { SetObjectProp(instance, Need(instance, name), value); }

TMethod GetMethodProp(TObject* instance, const TPropInfo* prop) {
  CheckKind(prop, TTypeKinds{tkMethod});
  return prop->Access->GetMethod(instance);
}
TMethod GetMethodProp(TObject* instance, std::string_view name) { return GetMethodProp(instance, Need(instance, name)); }

void SetMethodProp(TObject* instance, const TPropInfo* prop, const TMethod& value) {
  CheckKind(prop, TTypeKinds{tkMethod});
  CheckWrite(prop);
  prop->Access->SetMethod(instance, value);
}
void SetMethodProp(TObject* instance, std::string_view name, const TMethod& value) { SetMethodProp(instance, Need(instance, name), value); }

Variant GetVariantProp(TObject* instance, const TPropInfo* prop) {
  CheckKind(prop, TTypeKinds{tkVariant});
  return prop->Access->GetVariant(instance);
}
Variant GetVariantProp(TObject* instance, std::string_view name) { return GetVariantProp(instance, Need(instance, name)); }

void SetVariantProp(TObject* instance, const TPropInfo* prop, const Variant& value) {
  CheckKind(prop, TTypeKinds{tkVariant});
  CheckWrite(prop);
  prop->Access->SetVariant(instance, value);
}
void SetVariantProp(TObject* instance, std::string_view name, const Variant& value) { SetVariantProp(instance, Need(instance, name), value); }

// ---- Properties as variants ---------------------------------------------------------------------

Variant GetPropValue(TObject* instance, const TPropInfo* prop, bool preferStrings) {
  const TTypeInfo* t = prop->PropType();
  const TPropAccess& a = *prop->Access;
  switch (t->Kind) {
    case tkInteger:
    case tkChar:
    case tkWChar: return Variant(static_cast<long long>(a.GetOrd(instance))).AsType(t->OrdType == otULong ? varInt64 : varInteger);
    case tkEnumeration:
      if (IsBoolean(t)) return Variant(a.GetOrd(instance) != 0);
      if (preferStrings) return Variant(GetEnumName(t, a.GetOrd(instance)));
      return Variant(static_cast<int>(a.GetOrd(instance)));
    case tkSet:
      if (preferStrings) return Variant(SetToString(t, a.GetOrd(instance)));
      return Variant(static_cast<long long>(a.GetOrd(instance)));
    case tkFloat:
      if (t == rtti_detail::DateTimeInfo()) return Variant(TDateTime(static_cast<double>(a.GetFloat(instance))));
      switch (t->FloatType) {
        case ftSingle: return Variant(static_cast<float>(a.GetFloat(instance)));
        case ftCurr: return Variant(Currency::FromValue(a.GetFloat(instance)));
        case ftComp: return Variant(static_cast<long long>(a.GetFloat(instance)));
        default: return Variant(static_cast<double>(a.GetFloat(instance)));
      }
    case tkString:
    case tkLString: return Variant(a.GetStr(instance));
    case tkInt64: return Variant(static_cast<long long>(a.GetInt64(instance)));
    case tkVariant: return a.GetVariant(instance);
    default: throw EPropertyError(Format(RtlConsts::SInvalidPropertyType, t->Name));
  }
}
Variant GetPropValue(TObject* instance, std::string_view name, bool preferStrings) {
  return GetPropValue(instance, Need(instance, name), preferStrings);
}

void SetPropValue(TObject* instance, const TPropInfo* prop, const Variant& value) {
  const TTypeInfo* t = prop->PropType();
  const bool text = value.VarType() == varString;
  switch (t->Kind) {
    case tkInteger:
    case tkWChar: {
      const std::int64_t v = value.AsInt64();
      if (v < t->MinValue || v > t->MaxValue) throw EVariantError(RttiConsts::SInvalidVarCast);
      SetOrdProp(instance, prop, v);
      return;
    }
    case tkChar: {
      if (text) {
        const std::string s = value.AsString();
        if (s.size() == 1) {
          SetOrdProp(instance, prop, static_cast<unsigned char>(s[0]));
          return;
        }
      }
      const std::int64_t v = value.AsInt64();
      if (v < 0 || v > 255) throw EVariantError(RttiConsts::SInvalidVarCast);
      SetOrdProp(instance, prop, v);
      return;
    }
    case tkEnumeration: {
      if (IsBoolean(t)) {
        SetOrdProp(instance, prop, value.AsBoolean() ? 1 : 0);
        return;
      }
      std::int64_t v = -1;
      if (text) {
        const std::string s = value.AsString();
        v = GetEnumValue(t, s);
        long long number;
        if (v < 0 && TryStrToInt(s, number)) v = number;
        if (v < t->MinValue || v > t->MaxValue) throw EPropertyError(Format(RtlConsts::SInvalidPropertyElement, s));
      } else {
        v = value.AsInt64();
        if (v < t->MinValue || v > t->MaxValue) throw EPropertyError(Format(RtlConsts::SInvalidPropertyElement, IntToStr(v)));
      }
      SetOrdProp(instance, prop, v);
      return;
    }
    case tkSet: {
      if (text) {
        const std::string s = value.AsString();
        long long number;
        if (TryStrToInt(s, number)) SetOrdProp(instance, prop, number);
        else SetSetProp(instance, prop, s);
      } else {
        SetOrdProp(instance, prop, value.AsInt64());
      }
      return;
    }
    case tkFloat:
      if (t == rtti_detail::DateTimeInfo()) SetFloatProp(instance, prop, value.AsDate().Value);
      else if (t->FloatType == ftCurr) SetFloatProp(instance, prop, value.AsCurrency().Value());
      else SetFloatProp(instance, prop, value.AsExtended());
      return;
    case tkString:
    case tkLString:
      if (value.IsNull()) throw EVariantError(RttiConsts::SInvalidVarCast);
      SetStrProp(instance, prop, value.AsString());
      return;
    case tkInt64: SetInt64Prop(instance, prop, value.AsInt64()); return;
    case tkVariant: SetVariantProp(instance, prop, value); return;
    default: throw EPropertyError(Format(RtlConsts::SInvalidPropertyType, t->Name));
  }
}
void SetPropValue(TObject* instance, std::string_view name, const Variant& value) { SetPropValue(instance, Need(instance, name), value); }

// ---- Integer types written by name -----------------------------------------------------------

namespace {

struct TIntConsts {
  const TTypeInfo* Type;
  TIdentToInt IdentToInt;
  TIntToIdent IntToIdent;
};

std::vector<TIntConsts>& IntConstsList() {
  static std::vector<TIntConsts> list;
  return list;
}

const TIntConsts* FindIntConsts(const TTypeInfo* type) {
  if (!type) return nullptr;
  for (const auto& c : IntConstsList())
    if (c.Type == type) return &c;
  for (const auto& c : IntConstsList())
    if (SameText(c.Type->Name, type->Name)) return &c;
  return nullptr;
}

}  // namespace

void RegisterIntegerConsts(const TTypeInfo* intType, TIdentToInt identToInt, TIntToIdent intToIdent) {
  if (!intType) return;
  for (auto& c : IntConstsList())
    if (c.Type == intType) {
      c.IdentToInt = identToInt;
      c.IntToIdent = intToIdent;
      return;
    }
  IntConstsList().push_back(TIntConsts{intType, identToInt, intToIdent});
}

TIdentToInt FindIdentToInt(const TTypeInfo* intType) {
  const TIntConsts* c = FindIntConsts(intType);
  return c ? c->IdentToInt : nullptr;
}

TIntToIdent FindIntToIdent(const TTypeInfo* intType) {
  const TIntConsts* c = FindIntConsts(intType);
  return c ? c->IntToIdent : nullptr;
}
