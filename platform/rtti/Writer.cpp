#include "platform/rtti/Writer.h"

#include "platform/rtti/ClassBuilder.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/Streams.h"

#include <cmath>

LUMORA_CLASS_IMPL(TWriter) {}

TWriter::TWriter(std::string& output) : FWriter(output) {}

TWriter::TWriter(TStream& stream) : FStream(&stream), FWriter(FBuffer) {}

TWriter::~TWriter() {
  try {
    FlushBuffer();
  } catch (...) {
    // A destructor cannot report it; WriteRootComponent has flushed already.
  }
}

void TWriter::FlushBuffer() {
  if (!FStream || FBuffer.empty()) return;
  std::string pending;
  pending.swap(FBuffer);
  FStream->WriteBuffer(pending);
}

void TWriter::WriteRootComponent(TComponent* root) {
  FRoot = root;
  FLookupRoot = root;
  FWriter.WriteSignature();
  WriteComponent(root);
  FlushBuffer();
}

void TWriter::WriteComponent(TComponent* component) {
  component->IncludeState(csWriting);
  try {
    component->WriteState(*this);
  } catch (...) {
    component->ExcludeState(csWriting);
    throw;
  }
  component->ExcludeState(csWriting);
}

void TWriter::WriteData(TComponent* instance) {
  TFilerFlags flags = 0;
  if (instance->ComponentState().Contains(csAncestor)) flags |= ffInherited;
  if (instance->ComponentState().Contains(csInline)) flags |= ffInline;
  FWriter.WriteComponentHeader(flags, -1, instance->ClassName(), instance->Name());
  const std::string oldPath = FPropPath;
  FPropPath.clear();
  WriteProperties(instance);
  FPropPath = oldPath;
  FWriter.WriteListEnd();

  TComponent* oldRoot = FRoot;
  TComponent* oldLookupRoot = FLookupRoot;
  // An inline frame writes the children it owns itself.
  if (instance != FRoot && instance->ComponentState().Contains(csInline)) {
    FRoot = instance;
    FLookupRoot = instance;
  }
  try {
    instance->GetChildren([this](TComponent* child) { WriteComponent(child); }, FRoot);
  } catch (...) {
    FRoot = oldRoot;
    FLookupRoot = oldLookupRoot;
    throw;
  }
  FRoot = oldRoot;
  FLookupRoot = oldLookupRoot;
  FWriter.WriteListEnd();
}

void TWriter::WriteProperties(TPersistent* instance) {
  for (const TPropInfo* prop : instance->ClassType()->Properties())
    if (prop->IsStored(instance)) WriteProperty(instance, prop);
  instance->DefineProperties(*this);
}

void TWriter::WritePropName(const std::string& name) { FWriter.WriteShortString(FPropPath + name); }

std::string TWriter::ComponentValue(TComponent* component) const {
  if (component->Owner() && component->Owner() == FLookupRoot) return component->Name();
  if (component == FLookupRoot) return "Owner";
  if (component->Owner() && !component->Owner()->Name().empty() && !component->Name().empty())
    return component->Owner()->Name() + "." + component->Name();
  if (!component->Name().empty()) return component->Name() + ".Owner";
  return "";
}

void TWriter::WriteProperty(TPersistent* instance, const TPropInfo* prop) {
  const TTypeInfo* type = prop->PropType();
  const TTypeKind kind = type->Kind;
  if (!prop->CanRead()) return;
  if (kind != tkClass && !prop->CanWrite()) return;
  const TPropAccess& access = *prop->Access;
  switch (kind) {
    case tkInteger:
    case tkChar:
    case tkWChar:
    case tkEnumeration:
    case tkSet: {
      const std::int64_t value = access.GetOrd(instance);
      if (prop->HasDefault() && value == prop->Default) return;
      WritePropName(prop->Name);
      if (kind == tkInteger) {
        std::string ident;
        TIntToIdent intToIdent = FindIntToIdent(type);
        if (intToIdent && intToIdent(static_cast<long>(value), ident)) FWriter.WriteIdent(ident);
        else FWriter.WriteInteger(value);
      } else if (kind == tkChar) {
        WriteChar(static_cast<char>(static_cast<unsigned char>(value)));
      } else if (kind == tkWChar) {
        const char16_t unit = static_cast<char16_t>(value);
        FWriter.WriteWideString(std::u16string_view(&unit, 1));
      } else if (kind == tkEnumeration) {
        FWriter.WriteIdent(GetEnumName(type, value));
      } else {
        const TTypeInfo* element = type->CompType();
        FWriter.WriteSetBegin();
        for (int i = 0; i < 32; ++i)
          if (value & (std::int64_t{1} << i)) FWriter.WriteSetElement(GetEnumName(element, i));
        FWriter.WriteSetEnd();
      }
      return;
    }
    case tkFloat: {
      const long double value = access.GetFloat(instance);
      if (value == 0) return;
      WritePropName(prop->Name);
      if (type->FloatType == ftSingle) FWriter.WriteSingle(static_cast<float>(value));
      else if (type->FloatType == ftCurr) FWriter.WriteCurrency(std::llrint(value * 10000.0L));
      // Date and time properties go out as plain floats, as real form files have them;
      // only variants holding a date are written as dates.
      else FWriter.WriteExtended(value);
      return;
    }
    case tkString:
    case tkLString:
    case tkWString: {
      const std::string value = access.GetStr(instance);
      if (value.empty()) return;
      WritePropName(prop->Name);
      FWriter.WriteString(value);
      return;
    }
    case tkInt64: {
      const std::int64_t value = access.GetInt64(instance);
      if (value == 0) return;
      WritePropName(prop->Name);
      FWriter.WriteInteger(value);
      return;
    }
    case tkMethod: {
      const TMethod method = access.GetMethod(instance);
      if (!method.Code || !FLookupRoot) return;
      // Only a published method of the root can be named in a stream.
      const std::string name = FLookupRoot->MethodName(method.Code);
      if (name.empty()) return;
      WritePropName(prop->Name);
      FWriter.WriteIdent(name);
      return;
    }
    case tkVariant: {
      const Variant value = access.GetVariant(instance);
      if (value.IsEmpty()) return;
      WritePropName(prop->Name);
      WriteVariant(value);
      return;
    }
    case tkClass: {
      TObject* object = access.GetObject(instance);
      if (!object) return;
      if (auto* component = dynamic_cast<TComponent*>(object)) {
        if (!prop->CanWrite()) return;
        const std::string name = ComponentValue(component);
        if (name.empty()) return;
        WritePropName(prop->Name);
        FWriter.WriteIdent(name);
      } else if (auto* collection = dynamic_cast<TCollection*>(object)) {
        WritePropName(prop->Name);
        WriteCollection(collection);
      } else if (auto* persistent = dynamic_cast<TPersistent*>(object)) {
        const std::string oldPath = FPropPath;
        FPropPath += prop->Name + ".";
        try {
          WriteProperties(persistent);
        } catch (...) {
          FPropPath = oldPath;
          throw;
        }
        FPropPath = oldPath;
      }
      return;
    }
    default: return;
  }
}

void TWriter::WriteCollection(TCollection* collection) {
  FWriter.WriteCollectionBegin();
  const std::string oldPath = FPropPath;
  FPropPath.clear();
  try {
    for (int i = 0; i < collection->Count(); ++i) {
      FWriter.WriteListBegin();
      WriteProperties(collection->Items(i));
      FWriter.WriteListEnd();
    }
  } catch (...) {
    FPropPath = oldPath;
    throw;
  }
  FPropPath = oldPath;
  FWriter.WriteListEnd();
}

void TWriter::WriteVariant(const Variant& value) {
  switch (value.VarType()) {
    case varEmpty: FWriter.WriteValue(vaNil); break;
    case varNull: FWriter.WriteValue(vaNull); break;
    case varSmallint:
    case varInteger:
    case varByte:
    case varInt64: FWriter.WriteInteger(value.AsInt64()); break;
    case varSingle: FWriter.WriteSingle(value.AsSingle()); break;
    case varCurrency: FWriter.WriteCurrency(value.AsCurrency().Scaled); break;
    case varDate: FWriter.WriteDate(value.AsDate().Value); break;
    case varBoolean: FWriter.WriteBoolean(value.AsBoolean()); break;
    case varString: FWriter.WriteString(value.AsString()); break;
    default: FWriter.WriteExtended(value.AsExtended()); break;
  }
}

void TWriter::DefineProperty(const std::string& name, TReaderProc, TWriterProc writeData, bool hasData) {
  if (!hasData || !writeData) return;
  WritePropName(name);
  writeData(*this);
}

void TWriter::DefineBinaryProperty(const std::string& name, TStreamProc, TStreamProc writeData, bool hasData) {
  if (!hasData || !writeData) return;
  TMemoryStream bytes;
  writeData(bytes);
  WritePropName(name);
  FWriter.WriteBinary(bytes.View());
}

std::string WriteComponentToBinary(TComponent* root) {
  std::string out;
  TWriter writer(out);
  writer.WriteRootComponent(root);
  return out;
}

std::string WriteComponentToText(TComponent* root) { return ObjectBinaryToText(WriteComponentToBinary(root)); }

void WriteComponent(TStream& stream, TComponent* root) {
  TWriter writer(stream);
  writer.WriteRootComponent(root);
}
