#pragma once
// TReader: reads a binary form stream ("TPF0" ...) into live components. The root is
// the component given; its children are created by class name (the root's published
// field classes first, then OnFindComponentClass, then the class registry), their
// properties set by (dotted) name through the type information and the properties
// classes stream themselves, references to components fixed up once the whole stream
// is read, and Loaded called on every component read.
//
// Errors: a problem with one component or property is offered to OnError with its
// message ("Class TFoo not found", "Error reading Button1.Foo: Property Foo does not
// exist"). When the handler sets Handled, reading goes on: an unknown class skips the
// component with everything inside it, a bad property skips its value, a duplicate name
// leaves the component unnamed, an unresolved reference leaves the property alone.
// Otherwise the error is raised (EClassNotFound, EComponentError or EReadError) and
// reading stops; what was read stays where it is. A damaged stream raises EReadError
// at once.

#include "platform/rtti/Collection.h"
#include "platform/rtti/Component.h"
#include "platform/rtti/Filer.h"
#include "platform/streaming/Values.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class TReader;

// The reader met a problem: set `Handled` to go on past it.
using TReaderError = TEvent<void(TReader* Reader, const std::string& Message, bool& Handled)>;
// An event property names a handler: `Method` comes filled with the root's published
// method of that name (Code none when there is none) and `Error` with whether it was
// missing. Change either; an Error left set raises "Method %s not found", a method
// left empty drops the binding.
using TFindMethodEvent = TEvent<void(TReader* Reader, const std::string& MethodName, TMethod& Method, bool& Error)>;
// May choose (or change) the class for a class name.
using TFindComponentClassEvent = TEvent<void(TReader* Reader, const std::string& ClassName, TClass& ComponentClass)>;
// May create the component itself (with the owner it wants); left none, the reader creates it.
using TCreateComponentEvent = TEvent<void(TReader* Reader, TClass ComponentClass, TComponent*& Component)>;
// May change the name a component gets.
using TSetNameEvent = TEvent<void(TReader* Reader, TComponent* Component, std::string& Name)>;
// May change the name a component reference looks for.
using TReferenceNameEvent = TEvent<void(TReader* Reader, std::string& Name)>;

// Components and collections may nest this deep in one stream.
inline constexpr int MaxReaderNesting = 256;

class TReader : public TFiler {
  LUMORA_CLASS(TReader, TFiler)
public:
  // Reads `data`, which must outlive the reader.
  explicit TReader(std::string_view data);
  // Reads `data`, kept by the reader.
  explicit TReader(std::string&& data);
  // Reads `stream` from its position to its end (taken in at once).
  explicit TReader(TStream& stream);
  ~TReader() override;

  TReaderError OnError;
  TFindMethodEvent OnFindMethod;
  TFindComponentClassEvent OnFindComponentClass;
  TCreateComponentEvent OnCreateComponent;
  TSetNameEvent OnSetName;
  TReferenceNameEvent OnReferenceName;

  // Reads the signature and the root component into `root` (created from the stream's
  // class, found as for children, when `root` is none). Returns the root.
  TComponent* ReadRootComponent(TComponent* root);
  // Reads one component at the position (a child of Parent(), owned by Owner()); with
  // `component` given, reads into it. Returns the component, or none when it was skipped.
  TComponent* ReadComponent(TComponent* component);
  // Reads a component's property list and child list (TComponent::ReadState calls it).
  void ReadData(TComponent* instance);
  // Reads one property (its name and value) into `instance`.
  void ReadProperty(TPersistent* instance);
  // Reads a vaCollection's items into `collection` (after the vaCollection byte).
  void ReadCollection(TCollection* collection);
  // Sets every recorded component reference; unresolved plain names are errors.
  void FixupReferences();
  // Offers `message` to OnError; true when it was handled.
  bool Error(const std::string& message);
  // The class for a class name of the stream; EClassNotFound "Class %s not found".
  TClass FindComponentClass(const std::string& className);

  // The owner and the parent of the components read now.
  TComponent* Owner() const { return FOwner; }
  void SetOwner(TComponent* owner) { FOwner = owner; }
  TComponent* Parent() const { return FParent; }
  void SetParent(TComponent* parent) { FParent = parent; }

  // ---- Values, for the properties classes read themselves
  std::size_t Position() const { return FReader.Position(); }
  TValueReader& Values() { return FReader; }
  void ReadSignature() { FReader.ReadSignature(); }
  TValueType NextValue() const { return FReader.NextValue(); }
  TValueType ReadValue() { return FReader.ReadValue(); }
  bool EndOfList() const { return FReader.EndOfList(); }
  void ReadListBegin() { FReader.ReadListBegin(); }
  void ReadListEnd() { FReader.ReadListEnd(); }
  int ReadInteger() { return FReader.ReadInteger(); }
  std::int64_t ReadInt64() { return FReader.ReadInt64(); }
  std::string ReadString() { return FReader.ReadString(); }
  std::u16string ReadWideString() { return FReader.ReadWideString(); }
  std::string ReadIdent() { return std::string(FReader.ReadIdent()); }
  bool ReadBoolean() { return FReader.ReadBoolean(); }
  // A one-character string.
  char ReadChar();
  long double ReadFloat() { return FReader.ReadFloat(); }
  float ReadSingle() { return FReader.ReadSingle(); }
  Currency ReadCurrency() { return Currency::FromScaled(FReader.ReadCurrency()); }
  TDateTime ReadDate() { return TDateTime(FReader.ReadDate()); }
  Variant ReadVariant();
  void SkipValue() { FReader.SkipValue(); }

  void DefineProperty(const std::string& name, TReaderProc readData, TWriterProc writeData, bool hasData) override;
  void DefineBinaryProperty(const std::string& name, TStreamProc readData, TStreamProc writeData, bool hasData) override;

private:
  class TWatcher;
  struct TFixup {
    TPersistent* Instance;
    TComponent* Component;  // the component the instance belongs to
    const TPropInfo* Prop;
    std::string Name;
    TComponent* LookupRoot;
    std::string ObjectName;
    std::string PropPath;
  };

  void ReadPropValue(TPersistent* instance, const TPropInfo* prop);
  void SetCompName(TComponent* component, const std::string& name);
  std::string UniqueRootName(TComponent* root, const std::string& name);
  TMethod FindMethod(const std::string& name, const TTypeInfo* eventType);
  TPersistent* SubObject(TPersistent* instance, const std::string& name);
  void Watch(TComponent* component);
  bool Alive(TComponent* component) const;
  void Finish(bool succeeded);
  [[noreturn]] void Abort(const std::string& message);

  std::string FOwnData;
  TValueReader FReader;
  TComponent* FOwner = nullptr;
  TComponent* FParent = nullptr;
  TComponent* FCurrent = nullptr;   // the component whose properties are read
  std::string FCurrentPath;          // the dotted name of the property being read
  std::string FCurrentObject;        // the name of the object it belongs to
  std::string FPropName;             // a defined property still looked for
  std::vector<TComponent*> FLoaded;
  std::vector<TFixup> FFixups;
  std::unique_ptr<TWatcher> FWatcher;
  int FDepth = 0;
  bool FAborting = false;
};

// Reads a binary stream (starting with "TPF0") into `root`; `prepare` may set the reader's
// events before reading. Returns the root.
TComponent* ReadComponentFromBinary(TComponent* root, std::string_view stream,
                                    const std::function<void(TReader&)>& prepare = {});
// Reads form text into `root` (text -> binary -> reader); EParserError for text that does
// not parse. Returns the root.
TComponent* ReadComponentFromText(TComponent* root, std::string_view text,
                                  const std::function<void(TReader&)>& prepare = {});
// Reads a stream from its position into `root`, as the runtime's TStream.ReadComponent.
TComponent* ReadComponent(TStream& stream, TComponent* root);
