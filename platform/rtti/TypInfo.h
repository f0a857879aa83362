#pragma once
// Run-time type information: what a published property is (its kind, its type's names
// and range), how to read and write it on an object, and the descriptor every class has
// (name, parent, factory, published properties, fields and methods). TObject is the root
// of every class that has a descriptor. See Classes.h for how to declare a class.

#include "platform/rtti/Methods.h"
#include "platform/rtti/Sets.h"
#include "platform/rtti/SystemTypes.h"
#include "platform/rtti/Variants.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <vector>

// The kinds of types, in the runtime's order.
enum TTypeKind {
  tkUnknown, tkInteger, tkChar, tkEnumeration, tkFloat, tkString, tkSet, tkClass, tkMethod, tkWChar,
  tkLString, tkWString, tkVariant, tkArray, tkRecord, tkInterface, tkInt64, tkDynArray
};
using TTypeKinds = TSet<TTypeKind>;
inline constexpr TTypeKinds tkAny = TTypeKinds::FromBits((1u << (tkDynArray + 1)) - 1);
inline constexpr TTypeKinds tkMethods = TTypeKinds{tkMethod};
inline constexpr TTypeKinds tkProperties = tkAny - tkMethods - TTypeKinds{tkUnknown};

// How an ordinal is stored.
enum TOrdType { otSByte, otUByte, otSWord, otUWord, otSLong, otULong };
// Which float a tkFloat is.
enum TFloatType { ftSingle, ftDouble, ftExtended, ftComp, ftCurr };

class TObject;
class TClassDesc;
class TComponent;
class TCollection;
class TCollectionItem;
template <class C>
class TClassBuilder;

// A class: a pointer to its descriptor, one per class, alive as long as its module.
using TClass = const TClassDesc*;

// A module handle: the program itself is MainInstance, a loaded package its own handle.
using HMODULE = std::uintptr_t;
inline constexpr HMODULE MainInstance = 0;

struct TTypeInfo;
using TTypeInfoFn = const TTypeInfo* (*)();

// One type as the type information knows it. Only the fields of its kind are used.
struct TTypeInfo {
  TTypeKind Kind = tkUnknown;
  std::string Name;
  TOrdType OrdType = otSLong;                 // tkInteger, tkChar, tkWChar, tkEnumeration, tkSet
  std::int64_t MinValue = 0;                  // ordinal kinds and tkInt64
  std::int64_t MaxValue = 0;
  std::vector<std::string> EnumNames;         // tkEnumeration: the names by ordinal value
  TTypeInfoFn CompTypeFn = nullptr;           // tkSet: the element type
  TFloatType FloatType = ftExtended;          // tkFloat
  TClass (*ClassTypeFn)() = nullptr;          // tkClass
  const std::type_info* Signature = nullptr;  // tkMethod: the handler's C++ signature
  std::string ParamText;                      // tkMethod: the signature as declared

  const TTypeInfo* CompType() const { return CompTypeFn ? CompTypeFn() : nullptr; }
  TClass ClassType() const { return ClassTypeFn ? ClassTypeFn() : nullptr; }
};

// The marker of an ordinal property without a default: such a property is always written.
inline constexpr std::int64_t NoDefault = std::numeric_limits<std::int32_t>::min();

// How a property is read and written; made by TClassBuilder for the property's type.
// Only the pair of its kind works: ordinal kinds (integer, char, enumeration, set,
// wide char) use Ord, tkInt64 Int64, tkFloat Float, the string kinds Str, tkClass
// Object, tkMethod Method, tkVariant Variant.
class TPropAccess {
public:
  virtual ~TPropAccess() = default;
  virtual bool CanRead() const = 0;
  virtual bool CanWrite() const = 0;
  virtual std::int64_t GetOrd(TObject* instance) const;
  virtual void SetOrd(TObject* instance, std::int64_t value) const;
  virtual std::int64_t GetInt64(TObject* instance) const;
  virtual void SetInt64(TObject* instance, std::int64_t value) const;
  virtual long double GetFloat(TObject* instance) const;
  virtual void SetFloat(TObject* instance, long double value) const;
  virtual std::string GetStr(TObject* instance) const;
  virtual void SetStr(TObject* instance, const std::string& value) const;
  virtual TObject* GetObject(TObject* instance) const;
  // False when `value` is not of the property's class (nothing is set then).
  virtual bool SetObject(TObject* instance, TObject* value) const;
  virtual TMethod GetMethod(TObject* instance) const;
  virtual void SetMethod(TObject* instance, const TMethod& value) const;
  virtual Variant GetVariant(TObject* instance) const;
  virtual void SetVariant(TObject* instance, const Variant& value) const;
};

// A published property.
struct TPropInfo {
  std::string Name;
  TTypeInfoFn TypeFn = nullptr;
  std::shared_ptr<const TPropAccess> Access;
  std::int64_t Default = NoDefault;           // ordinal kinds only
  bool StoredValue = true;                    // `stored False` when false
  std::function<bool(TObject*)> StoredFn;     // `stored IsXStored`: asked when set
  int NameIndex = 0;                          // position in the class's property list
  TClass Declarer = nullptr;                  // the class that published (or re-published) it

  const TTypeInfo* PropType() const { return TypeFn(); }
  TTypeKind Kind() const { return TypeFn()->Kind; }
  bool HasDefault() const { return Default != NoDefault; }
  bool CanRead() const { return Access && Access->CanRead(); }
  bool CanWrite() const { return Access && Access->CanWrite(); }
  // Whether the writer stores the property of `instance` (its `stored` clause).
  bool IsStored(TObject* instance) const { return StoredFn ? StoredFn(instance) : StoredValue; }
};

// A published field that holds an object (a form's Label1): set by the component model
// when a component of that name joins the form.
struct TFieldInfo {
  std::string Name;
  TClass (*ClassFn)() = nullptr;
  std::function<TObject*(TObject*)> Get;
  // False when `value` is not of the field's class (the field is left alone then).
  std::function<bool(TObject*, TObject*)> Set;
  TClass FieldClass() const { return ClassFn(); }
};

// A published method: an event handler found by name.
struct TMethodInfo {
  std::string Name;
  TMethodCode Code = nullptr;
  const std::type_info* Signature = nullptr;
};

namespace rtti_detail {
template <class C>
struct TDescTag {};
struct TRegistryAccess;
TTypeInfo MakeEnumInfo(const char* name, const char* names);
TTypeInfo MakeSetInfo(const char* name, TTypeInfoFn elementType);
TTypeInfo MakeMethodInfo(const char* name, const std::type_info& signature, const char* paramText);
}  // namespace rtti_detail

// The descriptor of a class. Made once per class by LUMORA_CLASS_IMPL; never copied.
class TClassDesc {
public:
  // Builds the descriptor of C (defined in ClassBuilder.h).
  template <class C>
  TClassDesc(rtti_detail::TDescTag<C>, const char* name);
  TClassDesc(const TClassDesc&) = delete;
  TClassDesc& operator=(const TClassDesc&) = delete;
  ~TClassDesc();

  const std::string& ClassName() const { return FName; }
  TClass ClassParent() const { return FParent; }
  // True for this class and every class derived from it.
  bool InheritsFrom(TClass ancestor) const;
  // The tkClass type information of this class.
  const TTypeInfo* TypeInfo() const { return &FTypeInfo; }

  // Every published property, inherited ones first, in declaration order.
  const std::vector<const TPropInfo*>& Properties() const { return FProps; }
  // The published property of that name (any case), or none.
  const TPropInfo* FindProperty(std::string_view name) const;
  // The published object field of that name (any case), here or in an ancestor, or none.
  const TFieldInfo* FindField(std::string_view name) const;
  // The class of a published field whose class is named `className`, or none.
  TClass FindFieldClass(std::string_view className) const;
  // The published method of that name (any case), here or in an ancestor, or none.
  const TMethodInfo* FindMethod(std::string_view name) const;
  // The published method whose Code is `code`, or none.
  const TMethodInfo* FindMethod(TMethodCode code) const;

  // Whether instances can be made: components with an owner, collection items in a
  // collection, other classes without arguments.
  bool CanCreateComponent() const { return FCreateComponent != nullptr; }
  bool CanCreateItem() const { return FCreateItem != nullptr; }
  bool CanCreateObject() const { return FCreateObject != nullptr; }
  // A new component owned by `owner`; EInvalidOperation when the class cannot make one.
  TComponent* CreateComponent(TComponent* owner) const;
  // A new item added to `collection`; EInvalidOperation when the class cannot make one.
  TCollectionItem* CreateItem(TCollection* collection) const;
  // A new object; EInvalidOperation when the class cannot make one.
  TObject* CreateObject() const;

  // The module that registered the class (MainInstance when it is not registered).
  HMODULE Module() const { return FModule; }

private:
  template <class C>
  friend class TClassBuilder;
  friend struct rtti_detail::TRegistryAccess;
  friend class TObject;
  struct TRootTag {};
  explicit TClassDesc(TRootTag);

  TPropInfo& AddProperty(std::string_view name);
  TPropInfo& RedeclareProperty(std::string_view name);
  void Finish();

  std::string FName;
  TClass FParent = nullptr;
  TTypeInfo FTypeInfo;
  std::vector<std::unique_ptr<TPropInfo>> FOwnProps;
  std::vector<const TPropInfo*> FProps;
  std::vector<TFieldInfo> FFields;
  std::vector<TMethodInfo> FMethods;
  TComponent* (*FCreateComponent)(TComponent*) = nullptr;
  TCollectionItem* (*FCreateItem)(TCollection*) = nullptr;
  TObject* (*FCreateObject)() = nullptr;
  mutable HMODULE FModule = MainInstance;
};

// Declares the class machinery; put it first in the body of every class derived from
// TObject, and define it in a source file with LUMORA_CLASS_IMPL (ClassBuilder.h).
#define LUMORA_CLASS(Cls, Parent)                                 \
 public:                                                          \
  using inherited = Parent;                                       \
  static TClass StaticClass();                                    \
  TClass ClassType() const override { return StaticClass(); }     \
  static void DescribeClass(TClassBuilder<Cls>&);                 \
                                                                  \
 private:

// The root of every class with a descriptor.
class TObject {
public:
  TObject() = default;
  TObject(const TObject&) = delete;
  TObject& operator=(const TObject&) = delete;
  virtual ~TObject() = default;

  static TClass StaticClass();
  virtual TClass ClassType() const;
  static void DescribeClass(TClassBuilder<TObject>&);

  const std::string& ClassName() const { return ClassType()->ClassName(); }
  TClass ClassParent() const { return ClassType()->ClassParent(); }
  bool InheritsFrom(TClass ancestor) const { return ClassType()->InheritsFrom(ancestor); }
  bool ClassNameIs(std::string_view name) const;
  // The Code of the published method `name`, or none.
  TMethodCode MethodAddress(std::string_view name) const;
  // The name of the published method whose Code is `code`, or ''.
  std::string MethodName(TMethodCode code) const;
};

// Frees the object and clears the pointer in one step.
template <class T>
void FreeAndNil(T*& object) {
  T* doomed = object;
  object = nullptr;
  delete doomed;
}

// An enumeration with its names: LUMORA_ENUM(TAlign, alNone, alTop, alBottom).
#define LUMORA_ENUM(Name, ...)   \
  enum Name { __VA_ARGS__ };      \
  LUMORA_ENUM_INFO(Name, __VA_ARGS__)

// The names of an enumeration declared elsewhere (its values must be 0, 1, 2, ...).
#define LUMORA_ENUM_INFO(Name, ...)                                                    \
  inline const TTypeInfo* TypeInfoOf(Name*) {                                           \
    static const TTypeInfo info = ::rtti_detail::MakeEnumInfo(#Name, #__VA_ARGS__);     \
    return &info;                                                                       \
  }

// A named set type: LUMORA_SET(TFontStyles, TFontStyle).
#define LUMORA_SET(Name, Enum)                                                                      \
  using Name = TSet<Enum>;                                                                          \
  inline const TTypeInfo* TypeInfoOf(Name*) {                                                       \
    static const TTypeInfo info = ::rtti_detail::MakeSetInfo(#Name, &::rtti_detail::InfoFn<Enum>); \
    return &info;                                                                                   \
  }

// A named event type: LUMORA_EVENT(TNotifyEvent, void(TObject* Sender)).
#define LUMORA_EVENT(Name, ...)                                                                          \
  using Name = TEvent<__VA_ARGS__>;                                                                      \
  inline const TTypeInfo* TypeInfoOf(Name*) {                                                            \
    static const TTypeInfo info = ::rtti_detail::MakeMethodInfo(#Name, typeid(Name::Signature), #__VA_ARGS__); \
    return &info;                                                                                        \
  }

LUMORA_EVENT(TNotifyEvent, void(TObject* Sender))

// ---- Type information of C++ types --------------------------------------------------

namespace rtti_detail {

const TTypeInfo* BooleanInfo();
const TTypeInfo* CharInfo();
const TTypeInfo* WideCharInfo();
const TTypeInfo* ShortIntInfo();
const TTypeInfo* ByteInfo();
const TTypeInfo* SmallintInfo();
const TTypeInfo* WordInfo();
const TTypeInfo* IntegerInfo();
const TTypeInfo* CardinalInfo();
const TTypeInfo* Int64Info();
const TTypeInfo* SingleInfo();
const TTypeInfo* DoubleInfo();
const TTypeInfo* ExtendedInfo();
const TTypeInfo* CompInfo();
const TTypeInfo* CurrencyInfo();
const TTypeInfo* DateTimeInfo();
const TTypeInfo* StringInfo();
const TTypeInfo* ShortStringInfo();
const TTypeInfo* VariantInfo();

template <class T>
struct TIsSet : std::false_type {};
template <class E>
struct TIsSet<TSet<E>> : std::true_type {};
template <class T>
struct TIsEvent : std::false_type {};
template <class S>
struct TIsEvent<TEvent<S>> : std::true_type {};

template <class T>
concept HasTypeInfoOf = requires(T* p) {
  { TypeInfoOf(p) } -> std::convertible_to<const TTypeInfo*>;
};

template <class T>
constexpr bool IsObjectPointer() {
  if constexpr (std::is_pointer_v<T>)
    return std::is_base_of_v<TObject, std::remove_cv_t<std::remove_pointer_t<T>>>;
  else
    return false;
}

template <class T>
constexpr TTypeKind KindOf() {
  if constexpr (std::is_same_v<T, bool> || std::is_enum_v<T>) return tkEnumeration;
  else if constexpr (std::is_same_v<T, char>) return tkChar;
  else if constexpr (std::is_same_v<T, char16_t>) return tkWChar;
  else if constexpr (std::is_same_v<T, long> || std::is_same_v<T, long long>) return tkInt64;
  else if constexpr (std::is_integral_v<T>) return tkInteger;
  else if constexpr (std::is_floating_point_v<T> || std::is_same_v<T, TDateTime> || std::is_same_v<T, Currency> ||
                     std::is_same_v<T, Comp>) return tkFloat;
  else if constexpr (std::is_same_v<T, std::string>) return tkLString;
  else if constexpr (std::is_same_v<T, ShortString>) return tkString;
  else if constexpr (std::is_same_v<T, Variant>) return tkVariant;
  else if constexpr (TIsSet<T>::value) return tkSet;
  else if constexpr (TIsEvent<T>::value) return tkMethod;
  else if constexpr (IsObjectPointer<T>()) return tkClass;
  else return tkUnknown;
}

template <class T>
inline constexpr bool IsOrdinalKind = KindOf<T>() == tkInteger || KindOf<T>() == tkChar || KindOf<T>() == tkWChar ||
                                      KindOf<T>() == tkEnumeration || KindOf<T>() == tkSet;

template <class T>
const TTypeInfo* InfoOf();

template <class T>
const TTypeInfo* InfoFn() {
  return InfoOf<T>();
}

template <class E>
const TTypeInfo* AnonymousSetInfo() {
  static const TTypeInfo info = MakeSetInfo("", &InfoFn<E>);
  return &info;
}

template <class S>
const TTypeInfo* AnonymousEventInfo() {
  static const TTypeInfo info = MakeMethodInfo("", typeid(S), "");
  return &info;
}

template <class T>
const TTypeInfo* InfoOf() {
  if constexpr (HasTypeInfoOf<T>) return TypeInfoOf(static_cast<T*>(nullptr));
  else if constexpr (std::is_same_v<T, bool>) return BooleanInfo();
  else if constexpr (std::is_same_v<T, char>) return CharInfo();
  else if constexpr (std::is_same_v<T, char16_t>) return WideCharInfo();
  else if constexpr (std::is_same_v<T, signed char>) return ShortIntInfo();
  else if constexpr (std::is_same_v<T, unsigned char>) return ByteInfo();
  else if constexpr (std::is_same_v<T, short>) return SmallintInfo();
  else if constexpr (std::is_same_v<T, unsigned short>) return WordInfo();
  else if constexpr (std::is_same_v<T, int>) return IntegerInfo();
  else if constexpr (std::is_same_v<T, unsigned>) return CardinalInfo();
  else if constexpr (std::is_same_v<T, long> || std::is_same_v<T, long long>) return Int64Info();
  else if constexpr (std::is_same_v<T, float>) return SingleInfo();
  else if constexpr (std::is_same_v<T, double>) return DoubleInfo();
  else if constexpr (std::is_same_v<T, long double>) return ExtendedInfo();
  else if constexpr (std::is_same_v<T, Comp>) return CompInfo();
  else if constexpr (std::is_same_v<T, Currency>) return CurrencyInfo();
  else if constexpr (std::is_same_v<T, TDateTime>) return DateTimeInfo();
  else if constexpr (std::is_same_v<T, std::string>) return StringInfo();
  else if constexpr (std::is_same_v<T, ShortString>) return ShortStringInfo();
  else if constexpr (std::is_same_v<T, Variant>) return VariantInfo();
  else if constexpr (TIsSet<T>::value) return AnonymousSetInfo<typename T::Element>();
  else if constexpr (TIsEvent<T>::value) return AnonymousEventInfo<typename T::Signature>();
  else if constexpr (IsObjectPointer<T>()) return std::remove_cv_t<std::remove_pointer_t<T>>::StaticClass()->TypeInfo();
  else static_assert(sizeof(T) == 0, "this type cannot be published; enumerations need LUMORA_ENUM");
}

}  // namespace rtti_detail

// The type information of a C++ type that can be published (TypeInfo<TAlign>()).
template <class T>
const TTypeInfo* TypeInfo() {
  return rtti_detail::InfoOf<T>();
}

// ---- The runtime's type-information routines ------------------------------------------
// Instance arguments must not be none. Routines taking a name raise EPropertyError
// "Property %s does not exist" when there is no such property; routines used on a
// property of another kind raise EPropertyError "Invalid property type: %s".

// The name of an enumeration value ('' outside the type's range).
std::string GetEnumName(const TTypeInfo* typeInfo, std::int64_t value);
// The value of an enumeration name (any case), or -1.
int GetEnumValue(const TTypeInfo* typeInfo, std::string_view name);
// The names of a set's elements joined by ',' ("[fsBold,fsItalic]" with brackets).
// `typeInfo` is the set's type or the element type.
std::string SetToString(const TTypeInfo* typeInfo, std::int64_t value, bool brackets = false);
// The bits of a set written as names, with or without brackets, separated by ',' and
// blanks; EPropertyError "Invalid property element: %s" for an unknown name.
std::int64_t StringToSet(const TTypeInfo* typeInfo, std::string_view text);

const TPropInfo* GetPropInfo(TClass cls, std::string_view name);
const TPropInfo* GetPropInfo(const TObject* instance, std::string_view name);
// Only properties of the given kinds.
const TPropInfo* GetPropInfo(const TObject* instance, std::string_view name, TTypeKinds kinds);
// The published properties of the given kinds, inherited ones first in declaration
// order, or sorted by name.
std::vector<const TPropInfo*> GetPropList(TClass cls, TTypeKinds kinds = tkAny, bool sortList = false);
std::vector<const TPropInfo*> GetPropList(const TObject* instance, TTypeKinds kinds = tkAny, bool sortList = false);
bool IsPublishedProp(const TObject* instance, std::string_view name);
bool PropIsType(const TObject* instance, std::string_view name, TTypeKind kind);
TTypeKind PropType(const TObject* instance, std::string_view name);

bool IsStoredProp(TObject* instance, const TPropInfo* prop);
bool IsStoredProp(TObject* instance, std::string_view name);
// Whether the property holds its default value (the writer leaves such a property out).
bool IsDefaultPropValue(TObject* instance, const TPropInfo* prop);

std::int64_t GetOrdProp(TObject* instance, const TPropInfo* prop);
std::int64_t GetOrdProp(TObject* instance, std::string_view name);
// Raises EPropertyError "Invalid property value" for a value outside the type's range.
void SetOrdProp(TObject* instance, const TPropInfo* prop, std::int64_t value);
void SetOrdProp(TObject* instance, std::string_view name, std::int64_t value);

std::string GetEnumProp(TObject* instance, const TPropInfo* prop);
std::string GetEnumProp(TObject* instance, std::string_view name);
// Raises EPropertyError "Invalid property element: %s" for an unknown name.
void SetEnumProp(TObject* instance, const TPropInfo* prop, std::string_view value);
void SetEnumProp(TObject* instance, std::string_view name, std::string_view value);

std::string GetSetProp(TObject* instance, const TPropInfo* prop, bool brackets = true);
std::string GetSetProp(TObject* instance, std::string_view name, bool brackets = true);
void SetSetProp(TObject* instance, const TPropInfo* prop, std::string_view value);
void SetSetProp(TObject* instance, std::string_view name, std::string_view value);

std::string GetStrProp(TObject* instance, const TPropInfo* prop);
std::string GetStrProp(TObject* instance, std::string_view name);
void SetStrProp(TObject* instance, const TPropInfo* prop, const std::string& value);
void SetStrProp(TObject* instance, std::string_view name, const std::string& value);

long double GetFloatProp(TObject* instance, const TPropInfo* prop);
long double GetFloatProp(TObject* instance, std::string_view name);
void SetFloatProp(TObject* instance, const TPropInfo* prop, long double value);
void SetFloatProp(TObject* instance, std::string_view name, long double value);

std::int64_t GetInt64Prop(TObject* instance, const TPropInfo* prop);
std::int64_t GetInt64Prop(TObject* instance, std::string_view name);
void SetInt64Prop(TObject* instance, const TPropInfo* prop, std::int64_t value);
void SetInt64Prop(TObject* instance, std::string_view name, std::int64_t value);

// The object, or none when it is not of `minClass` (when given).
TObject* GetObjectProp(TObject* instance, const TPropInfo* prop, TClass minClass = nullptr);
TObject* GetObjectProp(TObject* instance, std::string_view name, TClass minClass = nullptr);
// Raises EPropertyError "Invalid property value" when `value` is not of the property's class.
void SetObjectProp(TObject* instance, const TPropInfo* prop, TObject* value);
void SetObjectProp(TObject* instance, std::string_view name, TObject* value);

TMethod GetMethodProp(TObject* instance, const TPropInfo* prop);
TMethod GetMethodProp(TObject* instance, std::string_view name);
// The method's Code must have been made for the event's signature.
void SetMethodProp(TObject* instance, const TPropInfo* prop, const TMethod& value);
void SetMethodProp(TObject* instance, std::string_view name, const TMethod& value);

Variant GetVariantProp(TObject* instance, const TPropInfo* prop);
Variant GetVariantProp(TObject* instance, std::string_view name);
void SetVariantProp(TObject* instance, const TPropInfo* prop, const Variant& value);
void SetVariantProp(TObject* instance, std::string_view name, const Variant& value);

// Any non-object, non-event property as a variant: Boolean as a boolean, enumerations
// and sets as their names when `preferStrings` (else as numbers), dates as dates,
// currency as currency. EPropertyError "Invalid property type: %s" for objects and events.
Variant GetPropValue(TObject* instance, const TPropInfo* prop, bool preferStrings = true);
Variant GetPropValue(TObject* instance, std::string_view name, bool preferStrings = true);
// Sets a property from a variant converted to its type: text converts to numbers,
// booleans ("1", "0", "True", "False"), enumeration names or numbers, sets as names.
// EVariantError "Invalid variant type conversion" when the value does not convert,
// EPropertyError "Invalid property element: %s" for an unknown name.
void SetPropValue(TObject* instance, const TPropInfo* prop, const Variant& value);
void SetPropValue(TObject* instance, std::string_view name, const Variant& value);

// ---- Integer types written by name ----------------------------------------------------
// An integer type of its own (Color, Cursor, Charset) may have a table that turns names
// into numbers and back; the reader and writer use it (Color = clBtnFace).

using TIdentToInt = bool (*)(std::string_view ident, long& value);
using TIntToIdent = bool (*)(long value, std::string& ident);

// Remembers the name table of an integer type; a second registration replaces the first.
void RegisterIntegerConsts(const TTypeInfo* intType, TIdentToInt identToInt, TIntToIdent intToIdent);
// The table's functions for a type (found by its type information or, failing that, by
// its name), or none.
TIdentToInt FindIdentToInt(const TTypeInfo* intType);
TIntToIdent FindIntToIdent(const TTypeInfo* intType);
