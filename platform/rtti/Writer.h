#pragma once
// TWriter: writes live components as a binary form stream. For each component: its
// header (prefix, class name, name), its stored published properties that differ from
// their defaults, the properties its class streams itself (DefineProperties), then its
// children (GetChildren) in order. A property is written when it can be read and
// written back (object properties need no setter: their contents are written, as
// Font.Name, or a collection, or the name of the component they refer to).

#include "platform/rtti/Collection.h"
#include "platform/rtti/Component.h"
#include "platform/rtti/Filer.h"
#include "platform/streaming/Values.h"

#include <string>
#include <string_view>

class TWriter : public TFiler {
  LUMORA_CLASS(TWriter, TFiler)
public:
  // Appends to `output`, which must outlive the writer.
  explicit TWriter(std::string& output);
  // Writes at `stream`'s position (when the root is written, and when the writer goes).
  explicit TWriter(TStream& stream);
  ~TWriter() override;

  // The signature and the root component with everything below it.
  void WriteRootComponent(TComponent* root);
  // One component (TComponent::WriteState calls WriteData).
  void WriteComponent(TComponent* component);
  // A component's header, properties and children.
  void WriteData(TComponent* instance);
  // The stored published properties and the defined properties of `instance`.
  void WriteProperties(TPersistent* instance);
  // One published property, when it differs from its default.
  void WriteProperty(TPersistent* instance, const TPropInfo* prop);
  // The items of a collection (vaCollection ... vaNull).
  void WriteCollection(TCollection* collection);
  // Writes what was buffered to the stream (for a writer on a stream).
  void FlushBuffer();

  // ---- Values, for the properties classes write themselves
  TValueWriter& Values() { return FWriter; }
  void WriteSignature() { FWriter.WriteSignature(); }
  // The name of a property, after the path of the sub-object being written ("Font.").
  void WritePropName(const std::string& name);
  void WriteListBegin() { FWriter.WriteListBegin(); }
  void WriteListEnd() { FWriter.WriteListEnd(); }
  void WriteInteger(std::int64_t value) { FWriter.WriteInteger(value); }
  void WriteString(std::string_view value) { FWriter.WriteString(value); }
  void WriteWideString(std::u16string_view value) { FWriter.WriteWideString(value); }
  void WriteIdent(std::string_view ident) { FWriter.WriteIdent(ident); }
  void WriteBoolean(bool value) { FWriter.WriteBoolean(value); }
  void WriteChar(char value) { FWriter.WriteString(std::string_view(&value, 1)); }
  void WriteFloat(long double value) { FWriter.WriteExtended(value); }
  void WriteSingle(float value) { FWriter.WriteSingle(value); }
  void WriteCurrency(Currency value) { FWriter.WriteCurrency(value.Scaled); }
  void WriteDate(TDateTime value) { FWriter.WriteDate(value.Value); }
  void WriteBinary(std::string_view bytes) { FWriter.WriteBinary(bytes); }
  void WriteVariant(const Variant& value);

  void DefineProperty(const std::string& name, TReaderProc readData, TWriterProc writeData, bool hasData) override;
  void DefineBinaryProperty(const std::string& name, TStreamProc readData, TStreamProc writeData, bool hasData) override;

private:
  // The text that refers to `component` from the root being written.
  std::string ComponentValue(TComponent* component) const;

  std::string FBuffer;
  TStream* FStream = nullptr;
  TValueWriter FWriter;
  std::string FPropPath;
};

// The binary stream ("TPF0" ...) of `root` and everything below it.
std::string WriteComponentToBinary(TComponent* root);
// The form text of `root` and everything below it.
std::string WriteComponentToText(TComponent* root);
// Writes `root` at the stream's position, as the runtime's TStream.WriteComponent.
void WriteComponent(TStream& stream, TComponent* root);
