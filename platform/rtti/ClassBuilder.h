#pragma once
// How a class describes itself: LUMORA_CLASS_IMPL defines the descriptor of a class
// and opens the body of its DescribeClass, where each published property, field and
// method takes one line. See Classes.h for an example.

#include "platform/rtti/Collection.h"
#include "platform/rtti/Component.h"
#include "platform/rtti/TypInfo.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/SysUtils.h"

#include <cmath>
#include <functional>
#include <memory>
#include <string_view>
#include <type_traits>
#include <typeinfo>

namespace rtti_detail {

template <class T>
std::int64_t ToOrd(const T& v) {
  if constexpr (std::is_same_v<T, bool>) return v ? 1 : 0;
  else if constexpr (std::is_enum_v<T>) return static_cast<std::int64_t>(v);
  else if constexpr (TIsSet<T>::value) return static_cast<std::int64_t>(v.Bits());
  else if constexpr (std::is_same_v<T, char>) return static_cast<unsigned char>(v);
  else return static_cast<std::int64_t>(v);
}

template <class T>
T FromOrd(std::int64_t v) {
  if constexpr (std::is_same_v<T, bool>) return v != 0;
  else if constexpr (std::is_enum_v<T>) return static_cast<T>(v);
  else if constexpr (TIsSet<T>::value) return T::FromBits(static_cast<std::uint32_t>(v));
  else if constexpr (std::is_same_v<T, char>) return static_cast<char>(static_cast<unsigned char>(v));
  else return static_cast<T>(v);
}

template <class T>
long double ToFloat(const T& v) {
  if constexpr (std::is_same_v<T, Currency>) return v.Value();
  else if constexpr (std::is_same_v<T, Comp>) return static_cast<long double>(v.Value);
  else if constexpr (std::is_same_v<T, TDateTime>) return v.Value;
  else return static_cast<long double>(v);
}

template <class T>
T FromFloat(long double v) {
  if constexpr (std::is_same_v<T, Currency>) return Currency::FromValue(v);
  else if constexpr (std::is_same_v<T, Comp>) return Comp{static_cast<std::int64_t>(std::llrint(v))};
  else if constexpr (std::is_same_v<T, TDateTime>) return TDateTime(static_cast<double>(v));
  else return static_cast<T>(v);
}

// The ordinal value of a default: numbers, enumerations, booleans, sets.
template <class V>
std::int64_t OrdValueOf(const V& v) {
  return ToOrd<V>(v);
}

// Reads and writes one property of class C whose type is T, through a getter G (a field
// pointer, a member function or a callable taking C*) and a setter S (a field pointer,
// a member function, a callable taking C* and T, or nullptr for none).
template <class C, class T, class G, class S>
class TPropAccessT final : public TPropAccess {
public:
  TPropAccessT(G getter, S setter) : FGet(getter), FSet(setter) {}

  bool CanRead() const override { return true; }
  bool CanWrite() const override { return !std::is_same_v<S, std::nullptr_t>; }

  std::int64_t GetOrd(TObject* o) const override {
    if constexpr (IsOrdinalKind<T>) return ToOrd<T>(Read(o));
    else return TPropAccess::GetOrd(o);
  }
  void SetOrd(TObject* o, std::int64_t v) const override {
    if constexpr (IsOrdinalKind<T>) Write(o, FromOrd<T>(v));
    else TPropAccess::SetOrd(o, v);
  }
  std::int64_t GetInt64(TObject* o) const override {
    if constexpr (KindOf<T>() == tkInt64) return static_cast<std::int64_t>(Read(o));
    else return TPropAccess::GetInt64(o);
  }
  void SetInt64(TObject* o, std::int64_t v) const override {
    if constexpr (KindOf<T>() == tkInt64) Write(o, static_cast<T>(v));
    else TPropAccess::SetInt64(o, v);
  }
  long double GetFloat(TObject* o) const override {
    if constexpr (KindOf<T>() == tkFloat) return ToFloat<T>(Read(o));
    else return TPropAccess::GetFloat(o);
  }
  void SetFloat(TObject* o, long double v) const override {
    if constexpr (KindOf<T>() == tkFloat) Write(o, FromFloat<T>(v));
    else TPropAccess::SetFloat(o, v);
  }
  std::string GetStr(TObject* o) const override {
    if constexpr (std::is_same_v<T, std::string>) return Read(o);
    else if constexpr (std::is_same_v<T, ShortString>) return Read(o).Value;
    else return TPropAccess::GetStr(o);
  }
  void SetStr(TObject* o, const std::string& v) const override {
    if constexpr (std::is_same_v<T, std::string>) Write(o, v);
    else if constexpr (std::is_same_v<T, ShortString>) Write(o, ShortString(v));
    else TPropAccess::SetStr(o, v);
  }
  TObject* GetObject(TObject* o) const override {
    if constexpr (KindOf<T>() == tkClass) return Read(o);
    else return TPropAccess::GetObject(o);
  }
  bool SetObject(TObject* o, TObject* v) const override {
    if constexpr (KindOf<T>() == tkClass) {
      using U = std::remove_cv_t<std::remove_pointer_t<T>>;
      U* typed = nullptr;
      if (v) {
        typed = dynamic_cast<U*>(v);
        if (!typed) return false;
      }
      Write(o, typed);
      return true;
    } else {
      return TPropAccess::SetObject(o, v);
    }
  }
  TMethod GetMethod(TObject* o) const override {
    if constexpr (KindOf<T>() == tkMethod) return Read(o).Method();
    else return TPropAccess::GetMethod(o);
  }
  void SetMethod(TObject* o, const TMethod& v) const override {
    if constexpr (KindOf<T>() == tkMethod) Write(o, T(v));
    else TPropAccess::SetMethod(o, v);
  }
  Variant GetVariant(TObject* o) const override {
    if constexpr (std::is_same_v<T, Variant>) return Read(o);
    else return TPropAccess::GetVariant(o);
  }
  void SetVariant(TObject* o, const Variant& v) const override {
    if constexpr (std::is_same_v<T, Variant>) Write(o, v);
    else TPropAccess::SetVariant(o, v);
  }

private:
  static C* Self(TObject* o) { return static_cast<C*>(o); }
  T Read(TObject* o) const { return static_cast<T>(std::invoke(FGet, Self(o))); }
  void Write(TObject* o, T v) const {
    if constexpr (std::is_same_v<S, std::nullptr_t>) {
      (void)o;
      (void)v;
      throw EPropertyError(RtlConsts::SReadOnlyProperty);
    } else if constexpr (std::is_member_object_pointer_v<S>) {
      Self(o)->*FSet = std::move(v);
    } else {
      std::invoke(FSet, Self(o), std::move(v));
    }
  }

  G FGet;
  S FSet;
};

// The class an accessor works on. A getter or setter that is a member of an ancestor
// keys the accessor on that ancestor, so every class publishing the same inherited
// member shares one accessor type instead of compiling its own.
template <class C, class F>
struct TMemberOwner {
  using type = C;
};
template <class C, class R, class B>
struct TMemberOwner<C, R B::*> {
  using type = std::conditional_t<std::is_base_of_v<TObject, B> && std::is_base_of_v<B, C>, B, C>;
};

template <class C, class G, class S>
struct TAccessOwner {
  using GetOwner = typename TMemberOwner<C, G>::type;
  using SetOwner = std::conditional_t<std::is_same_v<S, std::nullptr_t>, GetOwner, typename TMemberOwner<C, S>::type>;
  // The more derived of the two, when they lie on one line of descent; else C itself.
  using type = std::conditional_t<std::is_base_of_v<GetOwner, SetOwner>, SetOwner,
                                  std::conditional_t<std::is_base_of_v<SetOwner, GetOwner>, GetOwner, C>>;
};

}  // namespace rtti_detail

// Refines a property just published: its default, its `stored` clause.
template <class C>
class TPropBuilder {
public:
  explicit TPropBuilder(TPropInfo& prop) : FProp(prop) {}
  // The default of an ordinal property: a number, an enumeration value, a boolean, a set.
  template <class V>
  TPropBuilder& Default(const V& value) {
    FProp.Default = rtti_detail::OrdValueOf(value);
    return *this;
  }
  // No default: the property is always written.
  TPropBuilder& NoDefault() {
    FProp.Default = ::NoDefault;
    return *this;
  }
  // `stored False` / `stored True`.
  TPropBuilder& Stored(bool stored) {
    FProp.StoredValue = stored;
    FProp.StoredFn = nullptr;
    return *this;
  }
  // `stored IsXStored`: a member predicate or a callable taking C*.
  template <class P, class = std::enable_if_t<std::is_invocable_v<P, C*>>>
  TPropBuilder& Stored(P predicate) {
    FProp.StoredFn = [predicate](TObject* o) { return static_cast<bool>(std::invoke(predicate, static_cast<C*>(o))); };
    return *this;
  }
  const TPropInfo& Info() const { return FProp; }

private:
  TPropInfo& FProp;
};

// Collects what class C publishes; handed to C::DescribeClass.
template <class C>
class TClassBuilder {
public:
  explicit TClassBuilder(TClassDesc& desc) : FDesc(desc) {}

  // A read-write property: getter and setter are each a field pointer (&C::FCaption), a
  // member function (&C::GetCaption, &C::SetCaption) or a callable taking C* (and the value).
  template <class G, class S>
  TPropBuilder<C> Property(std::string_view name, G getter, S setter) {
    using T = std::remove_cvref_t<std::invoke_result_t<G&, C*>>;
    static_assert(rtti_detail::KindOf<T>() != tkUnknown, "this type cannot be published; enumerations need LUMORA_ENUM");
    TPropInfo& p = FDesc.AddProperty(name);
    p.TypeFn = &rtti_detail::InfoFn<T>;
    using Owner = typename rtti_detail::TAccessOwner<C, G, S>::type;
    p.Access = std::make_shared<rtti_detail::TPropAccessT<Owner, T, G, S>>(getter, setter);
    return TPropBuilder<C>(p);
  }
  // A read-only property.
  template <class G>
  TPropBuilder<C> Property(std::string_view name, G getter) {
    return Property(name, getter, nullptr);
  }
  // Re-publishes an inherited property, to change its default or `stored` clause.
  TPropBuilder<C> Property(std::string_view name) { return TPropBuilder<C>(FDesc.RedeclareProperty(name)); }

  // A published field holding an object: `Field("Label1", &TForm1::Label1)`.
  template <class B, class F>
  void Field(std::string_view name, F* B::*field) {
    static_assert(std::is_base_of_v<B, C>, "the field must belong to the class or an ancestor");
    static_assert(std::is_base_of_v<TObject, F>, "a published field holds an object");
    TFieldInfo f;
    f.Name = std::string(name);
    f.ClassFn = &F::StaticClass;
    f.Get = [field](TObject* o) -> TObject* { return static_cast<C*>(o)->*field; };
    f.Set = [field](TObject* o, TObject* v) -> bool {
      F* typed = nullptr;
      if (v) {
        typed = dynamic_cast<F*>(v);
        if (!typed) return false;
      }
      static_cast<C*>(o)->*field = typed;
      return true;
    };
    FDesc.FFields.push_back(std::move(f));
  }

  // A published method, found by name to bind events: `Method<&TForm1::Button1Click>("Button1Click")`.
  template <auto PMF>
  void Method(std::string_view name) {
    using Traits = rtti_detail::TMemberFn<decltype(PMF)>;
    static_assert(std::is_base_of_v<typename Traits::Class, C>, "the method must belong to the class or an ancestor");
    TMethodInfo m;
    m.Name = std::string(name);
    m.Code = MethodCode<PMF>();
    m.Signature = &typeid(typename Traits::Signature);
    FDesc.FMethods.push_back(std::move(m));
  }

private:
  TClassDesc& FDesc;
};

template <class C>
TClassDesc::TClassDesc(rtti_detail::TDescTag<C>, const char* name) : FName(name) {
  const std::string_view n(FName);
  if (const std::size_t colons = n.rfind("::"); colons != std::string_view::npos) FName = std::string(n.substr(colons + 2));
  FParent = C::inherited::StaticClass();
  FTypeInfo.Kind = tkClass;
  FTypeInfo.Name = FName;
  FTypeInfo.ClassTypeFn = &C::StaticClass;
  if constexpr (!std::is_abstract_v<C>) {
    if constexpr (std::is_convertible_v<C*, TComponent*> && std::is_constructible_v<C, TComponent*>)
      FCreateComponent = [](TComponent* owner) -> TComponent* { return new C(owner); };
    else if constexpr (std::is_convertible_v<C*, TCollectionItem*> && std::is_constructible_v<C, TCollection*>)
      FCreateItem = [](TCollection* collection) -> TCollectionItem* { return new C(collection); };
    else if constexpr (std::is_default_constructible_v<C>)
      FCreateObject = []() -> TObject* { return new C(); };
  }
  TClassBuilder<C> builder(*this);
  C::DescribeClass(builder);
  Finish();
}

// Defines the descriptor of Cls and opens its DescribeClass body, where `c` is the builder:
//   LUMORA_CLASS_IMPL(TMyButton) {
//     c.Property("Caption", &TMyButton::FCaption, &TMyButton::SetCaption);
//   }
#define LUMORA_CLASS_IMPL(Cls)                                             \
  TClass Cls::StaticClass() {                                               \
    static const TClassDesc desc{::rtti_detail::TDescTag<Cls>{}, #Cls};     \
    return &desc;                                                           \
  }                                                                         \
  void Cls::DescribeClass([[maybe_unused]] TClassBuilder<Cls>& c)
