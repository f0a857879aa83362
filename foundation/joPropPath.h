#pragma once
// Reading and writing a value of any object by a dotted path of names ("Editor.FontEditor.Name"),
// as a variant, over the published properties, published fields and owned components.
// Input controls also have "the value" of the control, found without naming a property.

#include "platform/rtti/Classes.h"

#include <string>

// The signatures of the published methods that let an object answer for its own values.
using TjoSetValueMethod = bool(const std::string& Path, const Variant& Value);
using TjoGetValueMethod = bool(const std::string& Path, Variant& Value);
using TjoSetValueObjectMethod = bool(const Variant& Value);

// Whether the object's class or one of its ancestors is named ClassName (any case); False for none.
bool InheritsFromName(const TObject* Obj, const std::string& ClassName);

// The property that holds the value of an input control ("Text" of an edit), or ''.
std::string GetValuePropName(const TObject* Control);

// The published property at Path; Instance becomes the object that owns that property.
// None when the instance is none, the path is blank or a part of it is not found.
const TPropInfo* ResolvePropPath(TObject*& Instance, const std::string& Path);

// As ResolvePropPath, and the property can be written (ForWriting) or read; when Kind is
// not tkUnknown, the property must be of that kind.
const TPropInfo* FindPropInfo(TObject*& Instance, const std::string& Path, TTypeKind Kind, bool ForWriting);

// The object called Name inside Instance: a published object property, else a published
// field, else an owned component of that name. None when there is none.
TObject* GetSubObject(TObject* Instance, const std::string& Name);

// Sets the value at Path, converted to the property's type; a blank path sets the object
// itself (its "SetValueObject" method, else its control value). False when nothing was set.
bool SetValueByPath(TObject* Instance, const std::string& Path, const Variant& Value);

// Fetches the value at Path ("GetValue" method first, then the property); a blank path reads
// the control value. When nothing is found the result is False and Value is a copy of Default.
bool GetValueByPath(TObject* Instance, const std::string& Path, const Variant& Default, Variant& Value);
