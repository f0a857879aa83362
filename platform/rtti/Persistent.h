#pragma once
// TPersistent: an object that can copy itself from another (Assign) and that streams
// properties of its own beside the published ones (DefineProperties).

#include "platform/rtti/TypInfo.h"

#include <string>

class TFiler;

class TPersistent : public TObject {
  LUMORA_CLASS(TPersistent, TObject)
public:
  TPersistent() = default;
  ~TPersistent() override = default;

  // Copies `source` into this object. The base asks the source (AssignTo); when
  // neither knows the other, EConvertError "Cannot assign a <source> to a <this>"
  // ("nil" for no source).
  virtual void Assign(TPersistent* source);
  // Copies this object into `dest`; the base fails as Assign does.
  virtual void AssignTo(TPersistent* dest);
  // The object this one belongs to (a collection's owner, a component's owner), or none.
  virtual TPersistent* GetOwner();
  // The name the designer shows: the owner's name path, '.', the class name.
  virtual std::string GetNamePath();
  // Declares properties that the object reads and writes itself (TFiler::DefineProperty).
  virtual void DefineProperties(TFiler& filer);

protected:
  // Raises EConvertError "Cannot assign a %s to a %s".
  [[noreturn]] void AssignError(TPersistent* source);
};
