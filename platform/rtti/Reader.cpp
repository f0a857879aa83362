#include "platform/rtti/Reader.h"

#include "platform/rtti/ClassBuilder.h"
#include "platform/rtti/Registry.h"
#include "platform/rtti/RttiConsts.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"

#include <algorithm>
#include <unordered_set>

LUMORA_CLASS_IMPL(TReader) {}

// Hears of the destruction of every component the reader made or filled, so that
// neither Loaded nor a fixup ever reaches a component that is gone.
class TReader::TWatcher : public TComponent {
public:
  TWatcher() : TComponent(nullptr) {}
  ~TWatcher() override { Destroying(); }
  void Notification(TComponent* component, TOperation operation) override {
    TComponent::Notification(component, operation);
    if (operation == opRemove) FGone.insert(component);
  }
  std::unordered_set<TComponent*> FGone;
};

namespace {

std::string ObjectNameOf(TPersistent* instance) {
  if (auto* c = dynamic_cast<TComponent*>(instance)) return c->Name();
  return instance ? instance->GetNamePath() : std::string();
}

// The component named by a (dotted) reference, looked up from `root`; "Owner" is the root.
TComponent* FindNestedComponent(TComponent* root, std::string_view name) {
  TComponent* current = root;
  while (current && !name.empty()) {
    const std::size_t dot = name.find('.');
    const std::string_view part = name.substr(0, dot);
    TComponent* next = current->FindComponent(part);
    if (!next && SameText(part, "Owner")) next = current;
    current = next;
    if (dot == std::string_view::npos) break;
    name.remove_prefix(dot + 1);
  }
  return current;
}

}  // namespace

TReader::TReader(std::string_view data) : FReader(data) {}

TReader::TReader(std::string&& data) : FOwnData(std::move(data)), FReader(FOwnData) {}

TReader::TReader(TStream& stream) : FOwnData(stream.ReadRest()), FReader(FOwnData) {}

TReader::~TReader() = default;

bool TReader::Error(const std::string& message) {
  bool handled = false;
  OnError(this, message, handled);
  return handled;
}

void TReader::Abort(const std::string& message) {
  FAborting = true;
  throw EReadError(message);
}

void TReader::Watch(TComponent* component) {
  if (!FWatcher) FWatcher = std::make_unique<TWatcher>();
  if (!component || component == FWatcher.get()) return;
  FWatcher->FGone.erase(component);  // a new component at the address of a freed one
  component->FreeNotification(FWatcher.get());
}

bool TReader::Alive(TComponent* component) const {
  return component && !(FWatcher && FWatcher->FGone.count(component));
}

// ---- Components ------------------------------------------------------------------------------

TComponent* TReader::ReadRootComponent(TComponent* root) {
  FAborting = false;
  FReader.ReadSignature();
  TFilerFlags flags;
  std::int32_t childPos;
  std::string_view classView, nameView;
  FReader.ReadComponentHeader(flags, childPos, classView, nameView);
  const std::string className(classView), name(nameView);
  if (!root) {
    TClass cls = FindComponentClass(className);
    root = cls->CreateComponent(nullptr);
  }
  FRoot = root;
  FLookupRoot = root;
  FOwner = root;
  FParent = nullptr;
  root->IncludeState(csLoading);
  root->IncludeState(csReading);
  if (flags & ffInline) root->SetInline(true);
  Watch(root);
  FLoaded.push_back(root);
  try {
    SetCompName(root, UniqueRootName(root, name));
    root->ReadState(*this);
    FixupReferences();
  } catch (...) {
    Finish(false);
    throw;
  }
  Finish(true);
  return root;
}

TComponent* TReader::ReadComponent(TComponent* component) {
  const std::size_t start = FReader.Position();
  TFilerFlags flags;
  std::int32_t childPos;
  std::string_view classView, nameView;
  FReader.ReadComponentHeader(flags, childPos, classView, nameView);
  const std::string className(classView), name(nameView);
  if (FDepth >= MaxReaderNesting) Abort(Format(RttiConsts::SReaderNestingTooDeep, MaxReaderNesting));

  TComponent* result = component;
  bool created = false;
  // An inherited component already exists in its owner; without one it is made afresh.
  if (!result && (flags & ffInherited) && FOwner) result = FOwner->FindComponent(name);
  if (!result) {
    try {
      TClass cls = FindComponentClass(className);
      OnCreateComponent(this, cls, result);
      if (!result) result = cls->CreateComponent(FOwner);
      created = true;
    } catch (const Exception& e) {
      if (FAborting) throw;
      if (!Error(e.Message())) {
        FAborting = true;
        throw;
      }
      FReader.SetPosition(start);
      FReader.SkipComponent();
      return nullptr;
    }
  }

  ++FDepth;
  try {
    result->IncludeState(csLoading);
    result->IncludeState(csReading);
    if (flags & ffInline) result->SetInline(true);
    if (flags & ffInherited) result->IncludeState(csAncestor);
    Watch(result);
    if (std::find(FLoaded.begin(), FLoaded.end(), result) == FLoaded.end()) FLoaded.push_back(result);
    if (created || !(flags & ffInherited)) SetCompName(result, name);
    if (FParent && result->HasParent() && result->GetParentComponent() != FParent) {
      try {
        result->SetParentComponent(FParent);
      } catch (const Exception& e) {
        if (FAborting) throw;
        if (!Error(e.Message())) {
          FAborting = true;
          throw;
        }
      }
    }
    result->ReadState(*this);
    if ((flags & ffChildPos) && FParent && Alive(result)) FParent->SetChildOrder(result, childPos);
  } catch (...) {
    --FDepth;
    throw;
  }
  --FDepth;
  return result;
}

std::string TReader::UniqueRootName(TComponent* root, const std::string& name) {
  // A second window read from the same stream beside the first (two instances of one
  // form) is named Name_1, Name_2, ...; a root being designed keeps its name.
  TComponent* owner = root->Owner();
  if (name.empty() || !owner || root->ComponentState().Contains(csDesigning)) return name;
  TComponent* same = owner->FindComponent(name);
  if (!same || same == root) return name;
  for (int i = 1;; ++i) {
    std::string candidate = name + "_" + std::to_string(i);
    TComponent* other = owner->FindComponent(candidate);
    if (!other || other == root) return candidate;
  }
}

void TReader::SetCompName(TComponent* component, const std::string& name) {
  std::string newName = name;
  OnSetName(this, component, newName);
  try {
    component->SetName(newName);
  } catch (const Exception& e) {
    if (FAborting) throw;
    if (!Error(e.Message())) {
      FAborting = true;
      throw;
    }
  }
}

void TReader::ReadData(TComponent* instance) {
  TComponent* oldCurrent = FCurrent;
  FCurrent = instance;
  while (!FReader.EndOfList()) ReadProperty(instance);
  FReader.ReadListEnd();
  FCurrent = oldCurrent;

  TComponent* oldParent = FParent;
  TComponent* oldOwner = FOwner;
  FParent = instance->GetChildParent();
  FOwner = instance->GetChildOwner();
  if (!FOwner) FOwner = FRoot;
  try {
    while (!FReader.EndOfList()) ReadComponent(nullptr);
    FReader.ReadListEnd();
  } catch (...) {
    FParent = oldParent;
    FOwner = oldOwner;
    throw;
  }
  FParent = oldParent;
  FOwner = oldOwner;
}

TClass TReader::FindComponentClass(const std::string& className) {
  TClass cls = nullptr;
  if (FRoot) cls = FRoot->ClassType()->FindFieldClass(className);
  if (!cls && FLookupRoot && FLookupRoot != FRoot) cls = FLookupRoot->ClassType()->FindFieldClass(className);
  OnFindComponentClass(this, className, cls);
  TClass component = TComponent::StaticClass();
  if (!cls || !cls->InheritsFrom(component)) cls = GetClass(className);
  if (!cls || !cls->InheritsFrom(component)) throw EClassNotFound(Format(RtlConsts::SClassNotFound, className));
  return cls;
}

// ---- Properties ---------------------------------------------------------------------------------

TPersistent* TReader::SubObject(TPersistent* instance, const std::string& name) {
  if (const TPropInfo* prop = GetPropInfo(instance, name)) {
    if (prop->Kind() != tkClass) throw EReadError(RtlConsts::SInvalidPropertyPath);
    auto* object = dynamic_cast<TPersistent*>(GetObjectProp(instance, prop));
    if (!object) throw EReadError(RtlConsts::SInvalidPropertyPath);
    return object;
  }
  if (auto* component = dynamic_cast<TComponent*>(instance))
    if (TComponent* owned = component->FindComponent(name)) return owned;
  throw EReadError(Format(RtlConsts::SUnknownProperty, name));
}

void TReader::ReadProperty(TPersistent* instance) {
  const std::string path(FReader.ReadShortString());
  const std::size_t valueStart = FReader.Position();
  std::size_t valueEnd;
  try {
    TValueReader probe(FReader.Data(), valueStart);
    probe.SkipValue();
    valueEnd = probe.Position();
  } catch (...) {
    // The value itself is damaged: there is no next property to go on with.
    FAborting = true;
    throw;
  }

  const std::string oldPath = FCurrentPath;
  const std::string oldObject = FCurrentObject;
  FCurrentPath = path;
  FCurrentObject = ObjectNameOf(instance);
  try {
    TPersistent* target = instance;
    std::string_view rest(path);
    std::size_t dot;
    while ((dot = rest.find('.')) != std::string_view::npos) {
      target = SubObject(target, std::string(rest.substr(0, dot)));
      rest.remove_prefix(dot + 1);
    }
    const std::string last(rest);
    if (const TPropInfo* prop = GetPropInfo(target, last)) {
      ReadPropValue(target, prop);
    } else {
      FPropName = last;
      target->DefineProperties(*this);
      if (!FPropName.empty()) throw EReadError(Format(RtlConsts::SUnknownProperty, last));
    }
    if (FReader.Position() != valueEnd) throw EReadError(RtlConsts::SInvalidPropertyValue);
  } catch (const Exception& e) {
    FPropName.clear();
    FCurrentPath = oldPath;
    FCurrentObject = oldObject;
    if (FAborting) throw;
    const std::string message = Format(RtlConsts::SPropertyException, ObjectNameOf(instance), path, e.Message());
    if (!Error(message)) Abort(message);
    FReader.SetPosition(valueEnd);
    return;
  }
  FCurrentPath = oldPath;
  FCurrentObject = oldObject;
}

char TReader::ReadChar() {
  const std::string s = FReader.ReadString();
  if (s.size() != 1) TValueReader::InvalidValue();
  return s[0];
}

void TReader::ReadPropValue(TPersistent* instance, const TPropInfo* prop) {
  const TTypeInfo* type = prop->PropType();
  const TTypeKind kind = type->Kind;
  if (kind != tkClass && !prop->CanWrite()) throw EReadError(RtlConsts::SReadOnlyProperty);
  const TValueType next = FReader.NextValue();
  switch (kind) {
    case tkInteger: {
      std::int64_t value;
      if (next == vaIdent) {
        const std::string ident(FReader.ReadIdent());
        TIdentToInt identToInt = FindIdentToInt(type);
        long number;
        if (!identToInt || !identToInt(ident, number)) TValueReader::InvalidValue();
        value = number;
      } else {
        value = FReader.ReadInt64();
      }
      if (value < type->MinValue || value > type->MaxValue) TValueReader::InvalidValue();
      SetOrdProp(instance, prop, value);
      break;
    }
    case tkChar: {
      std::int64_t value;
      if (next == vaInt8 || next == vaInt16 || next == vaInt32) value = FReader.ReadInteger();
      else value = static_cast<unsigned char>(ReadChar());
      if (value < 0 || value > 255) TValueReader::InvalidValue();
      SetOrdProp(instance, prop, value);
      break;
    }
    case tkWChar: {
      std::int64_t value;
      if (next == vaInt8 || next == vaInt16 || next == vaInt32) {
        value = FReader.ReadInteger();
      } else {
        const std::u16string s = FReader.ReadWideString();
        if (s.size() != 1) TValueReader::InvalidValue();
        value = s[0];
      }
      if (value < 0 || value > 65535) TValueReader::InvalidValue();
      SetOrdProp(instance, prop, value);
      break;
    }
    case tkEnumeration: {
      const int value = GetEnumValue(type, FReader.ReadIdent());
      if (value < 0) TValueReader::InvalidValue();
      SetOrdProp(instance, prop, value);
      break;
    }
    case tkSet: {
      FReader.ReadSetBegin();
      const TTypeInfo* element = type->CompType();
      std::int64_t bits = 0;
      bool bad = false;
      for (std::string_view name = FReader.ReadSetElement(); !name.empty(); name = FReader.ReadSetElement()) {
        const int value = GetEnumValue(element, name);
        if (value < 0 || value >= 32) bad = true;
        else bits |= std::int64_t{1} << value;
      }
      if (bad) TValueReader::InvalidValue();
      SetOrdProp(instance, prop, bits);
      break;
    }
    case tkFloat: {
      long double value;
      if (next == vaCurrency) value = static_cast<long double>(FReader.ReadCurrency()) / 10000.0L;
      else if (next == vaDate) value = FReader.ReadDate();
      else value = FReader.ReadFloat();
      SetFloatProp(instance, prop, value);
      break;
    }
    case tkString:
    case tkLString:
    case tkWString: SetStrProp(instance, prop, FReader.ReadString()); break;
    case tkInt64: SetInt64Prop(instance, prop, FReader.ReadInt64()); break;
    case tkClass: {
      if (next == vaNil) {
        FReader.ReadValue();
        SetObjectProp(instance, prop, nullptr);
      } else if (next == vaCollection) {
        FReader.ReadValue();
        auto* collection = dynamic_cast<TCollection*>(GetObjectProp(instance, prop));
        if (!collection) TValueReader::InvalidValue();
        ReadCollection(collection);
      } else if (next == vaIdent) {
        std::string name(FReader.ReadIdent());
        OnReferenceName(this, name);
        if (!prop->CanWrite()) throw EReadError(RtlConsts::SReadOnlyProperty);
        FFixups.push_back(TFixup{instance, FCurrent, prop, name, FLookupRoot, FCurrentObject, FCurrentPath});
      } else {
        TValueReader::InvalidValue();
      }
      break;
    }
    case tkMethod: {
      if (next == vaNil) {
        FReader.ReadValue();
        SetMethodProp(instance, prop, TMethod{});
      } else {
        const TMethod method = FindMethod(std::string(FReader.ReadIdent()), type);
        if (method.Code) SetMethodProp(instance, prop, method);
      }
      break;
    }
    case tkVariant: SetVariantProp(instance, prop, ReadVariant()); break;
    default: throw EReadError(Format(RtlConsts::SInvalidPropertyType, type->Name));
  }
}

TMethod TReader::FindMethod(const std::string& name, const TTypeInfo* eventType) {
  TMethod method;
  bool error = true;
  const TMethodInfo* published = FRoot ? FRoot->ClassType()->FindMethod(name) : nullptr;
  if (published) {
    method.Code = published->Code;
    method.Data = static_cast<void*>(static_cast<TObject*>(FRoot));
    error = false;
  }
  OnFindMethod(this, name, method, error);
  if (error) throw EReadError(Format(RtlConsts::SMethodNotFound, name));
  // A handler of another signature would be called with the wrong arguments.
  if (method.Code && FRoot && eventType && eventType->Signature) {
    const TMethodInfo* target = FRoot->ClassType()->FindMethod(method.Code);
    if (target && target->Signature && *target->Signature != *eventType->Signature)
      throw EReadError(Format(RttiConsts::SMethodTypeMismatch, name, eventType->Name));
  }
  return method;
}

Variant TReader::ReadVariant() {
  switch (FReader.NextValue()) {
    case vaNil: FReader.ReadValue(); return Variant();
    case vaNull: FReader.ReadValue(); return Null();
    case vaInt8:
    case vaInt16:
    case vaInt32: return Variant(FReader.ReadInteger());
    case vaInt64: return Variant(static_cast<long long>(FReader.ReadInt64()));
    case vaExtended:
    case vaDouble: return Variant(static_cast<double>(FReader.ReadFloat()));
    case vaSingle: return Variant(FReader.ReadSingle());
    case vaCurrency: return Variant(Currency::FromScaled(FReader.ReadCurrency()));
    case vaDate: return Variant(TDateTime(FReader.ReadDate()));
    case vaString:
    case vaLString:
    case vaWString:
    case vaUTF8String: return Variant(FReader.ReadString());
    case vaFalse:
    case vaTrue: return Variant(FReader.ReadBoolean());
    default: TValueReader::InvalidValue();
  }
}

void TReader::ReadCollection(TCollection* collection) {
  if (FDepth >= MaxReaderNesting) Abort(Format(RttiConsts::SReaderNestingTooDeep, MaxReaderNesting));
  ++FDepth;
  collection->BeginUpdate();
  try {
    if (!FReader.EndOfList()) {
      // References recorded for the old items would outlive them.
      FFixups.erase(std::remove_if(FFixups.begin(), FFixups.end(),
                                   [&](const TFixup& f) {
                                     auto* item = dynamic_cast<TCollectionItem*>(f.Instance);
                                     return item && item->Collection() == collection;
                                   }),
                    FFixups.end());
      collection->Clear();
    }
    while (!FReader.EndOfList()) {
      const TValueType next = FReader.NextValue();
      if (next == vaInt8 || next == vaInt16 || next == vaInt32) FReader.ReadInteger();  // order index
      TCollectionItem* item = collection->Add();
      FReader.ReadListBegin();
      while (!FReader.EndOfList()) ReadProperty(item);
      FReader.ReadListEnd();
    }
    FReader.ReadListEnd();
  } catch (...) {
    collection->EndUpdate();
    --FDepth;
    throw;
  }
  collection->EndUpdate();
  --FDepth;
}

void TReader::DefineProperty(const std::string& name, TReaderProc readData, TWriterProc, bool) {
  if (FPropName.empty() || !readData || !SameText(name, FPropName)) return;
  readData(*this);
  FPropName.clear();
}

void TReader::DefineBinaryProperty(const std::string& name, TStreamProc readData, TStreamProc, bool) {
  if (FPropName.empty() || !readData || !SameText(name, FPropName)) return;
  FPropName.clear();
  if (FReader.NextValue() != vaBinary) TValueReader::InvalidValue();
  TCustomMemoryStream bytes(FReader.ReadBinary());
  readData(bytes);
}

// ---- The end of reading -------------------------------------------------------------------------

void TReader::FixupReferences() {
  std::vector<TFixup> fixups;
  fixups.swap(FFixups);
  for (const TFixup& f : fixups) {
    if (f.Component && !Alive(f.Component)) continue;
    TComponent* target = FindNestedComponent(f.LookupRoot ? f.LookupRoot : FRoot, f.Name);
    if (!target && f.Name.find('.') != std::string::npos) continue;  // a component of another form
    try {
      if (!target) throw EReadError(Format(RttiConsts::SUnresolvedReference, f.Name));
      SetObjectProp(f.Instance, f.Prop, target);
    } catch (const Exception& e) {
      const std::string message = Format(RtlConsts::SPropertyException, f.ObjectName, f.PropPath, e.Message());
      if (!Error(message)) Abort(message);
    }
  }
}

void TReader::Finish(bool succeeded) {
  FFixups.clear();
  std::vector<TComponent*> loaded;
  loaded.swap(FLoaded);
  std::exception_ptr first;
  for (TComponent* c : loaded) {
    if (!Alive(c)) continue;
    try {
      c->Loaded();
    } catch (...) {
      if (succeeded && !first) first = std::current_exception();
    }
    if (!Alive(c)) continue;
    c->ExcludeState(csLoading);
    c->ExcludeState(csReading);
  }
  FWatcher.reset();
  FDepth = 0;
  if (first) std::rethrow_exception(first);
}

// ---- Shortcuts -------------------------------------------------------------------------------------

TComponent* ReadComponentFromBinary(TComponent* root, std::string_view stream, const std::function<void(TReader&)>& prepare) {
  TReader reader(stream);
  if (prepare) prepare(reader);
  return reader.ReadRootComponent(root);
}

TComponent* ReadComponentFromText(TComponent* root, std::string_view text, const std::function<void(TReader&)>& prepare) {
  const std::string binary = ObjectTextToBinary(text);
  return ReadComponentFromBinary(root, binary, prepare);
}

TComponent* ReadComponent(TStream& stream, TComponent* root) {
  TReader reader(stream);
  return reader.ReadRootComponent(root);
}
