#pragma once
// TFiler: what readers and writers of component streams have in common, above all the
// way a class declares the properties it streams itself (DefineProperties).

#include "platform/rtti/TypInfo.h"

#include <functional>
#include <string>

class TComponent;
class TPersistent;
class TReader;
class TWriter;
class TStream;

using TReaderProc = std::function<void(TReader&)>;
using TWriterProc = std::function<void(TWriter&)>;
using TStreamProc = std::function<void(TStream&)>;

class TFiler : public TObject {
  LUMORA_CLASS(TFiler, TObject)
public:
  ~TFiler() override = default;

  // A property the object streams itself: `readData` reads its value when the reader
  // meets `name`; `writeData` writes it, and is called only when `hasData` is true.
  virtual void DefineProperty(const std::string& name, TReaderProc readData, TWriterProc writeData, bool hasData) = 0;
  // The same for a binary value: the callbacks read and write the bytes as a stream.
  virtual void DefineBinaryProperty(const std::string& name, TStreamProc readData, TStreamProc writeData, bool hasData) = 0;

  // The component that owns what is read or written (a form).
  TComponent* Root() const { return FRoot; }
  virtual void SetRoot(TComponent* root) { FRoot = root; }
  // The root that names are looked up in.
  TComponent* LookupRoot() const { return FLookupRoot; }
  // The object whose values count as defaults while writing (inherited forms), or none.
  TPersistent* Ancestor() const { return FAncestor; }
  void SetAncestor(TPersistent* ancestor) { FAncestor = ancestor; }
  // Children are not read or written when set.
  bool IgnoreChildren() const { return FIgnoreChildren; }
  void SetIgnoreChildren(bool value) { FIgnoreChildren = value; }

protected:
  TComponent* FRoot = nullptr;
  TComponent* FLookupRoot = nullptr;
  TPersistent* FAncestor = nullptr;
  bool FIgnoreChildren = false;
};
