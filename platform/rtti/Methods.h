#pragma once
// Method pointers: a routine and the object it is called on. Events are typed method
// pointers. A method counts as set when its Code is set; two methods are equal when
// both Code and Data are, so that lists of callbacks can find and drop them.
//
//   Button1->OnClick = MakeMethod<&TForm1::Button1Click>(this);   // a member function
//   Button1->OnClick = [&](TObject*) { ++clicks; };                // a lambda (its own Data)
//   if (OnClick) OnClick(this);                                     // calling an unset event does nothing

#include <memory>
#include <type_traits>
#include <typeinfo>
#include <utility>

class TObject;

// The identity of a routine; cast back to its real type only by the event that made it.
using TMethodCode = void (*)();

struct TMethod {
  TMethodCode Code = nullptr;
  // The object: for classes derived from TObject, the address of its TObject part.
  void* Data = nullptr;
  // Keeps a bound lambda alive; not part of the method's identity.
  std::shared_ptr<void> Closure;

  bool Assigned() const noexcept { return Code != nullptr; }
  friend bool operator==(const TMethod& a, const TMethod& b) noexcept { return a.Code == b.Code && a.Data == b.Data; }
};

namespace rtti_detail {

template <class C>
void* ToMethodData(C* object) {
  if constexpr (std::is_convertible_v<C*, TObject*>)
    return static_cast<void*>(static_cast<TObject*>(object));
  else
    return static_cast<void*>(object);
}

template <class C>
C* FromMethodData(void* data) {
  if constexpr (std::is_convertible_v<C*, TObject*>)
    return static_cast<C*>(static_cast<TObject*>(data));
  else
    return static_cast<C*>(data);
}

template <class PMF>
struct TMemberFn;
template <class C, class R, class... A>
struct TMemberFn<R (C::*)(A...)> {
  using Class = C;
  using Signature = R(A...);
};
template <class C, class R, class... A>
struct TMemberFn<R (C::*)(A...) const> {
  using Class = C;
  using Signature = R(A...);
};

template <auto PMF, class R, class... A>
R MemberThunk(void* data, A... args) {
  using C = typename TMemberFn<decltype(PMF)>::Class;
  return (FromMethodData<C>(data)->*PMF)(std::forward<A>(args)...);
}

template <auto Fn, class R, class... A>
R ProcThunk(void*, A... args) {
  return Fn(std::forward<A>(args)...);
}

template <class F, class R, class... A>
R ClosureThunk(void* data, A... args) {
  return (*static_cast<F*>(data))(std::forward<A>(args)...);
}

template <auto PMF, class Sig>
struct TThunkOf;
template <auto PMF, class R, class... A>
struct TThunkOf<PMF, R(A...)> {
  static TMethodCode Code() { return reinterpret_cast<TMethodCode>(&MemberThunk<PMF, R, A...>); }
};

}  // namespace rtti_detail

template <class Sig>
class TEvent;

// A typed method pointer: `R(A...)` is the handler's signature, `var` parameters are references.
template <class R, class... A>
class TEvent<R(A...)> {
public:
  using Signature = R(A...);
  using Thunk = R (*)(void*, A...);

  TEvent() = default;
  TEvent(std::nullptr_t) {}
  // Adopts a method whose Code was made for this signature (from a published method or MakeMethod).
  explicit TEvent(TMethod method) : FMethod(std::move(method)) {}
  // Binds a lambda or function object; each binding is a method of its own.
  template <class F,
            class = std::enable_if_t<!std::is_same_v<std::decay_t<F>, TEvent> && !std::is_same_v<std::decay_t<F>, TMethod> &&
                                     !std::is_same_v<std::decay_t<F>, std::nullptr_t> && std::is_invocable_r_v<R, std::decay_t<F>&, A...>>>
  TEvent(F&& function) {
    using Fn = std::decay_t<F>;
    auto holder = std::make_shared<Fn>(std::forward<F>(function));
    FMethod.Code = reinterpret_cast<TMethodCode>(&rtti_detail::ClosureThunk<Fn, R, A...>);
    FMethod.Data = holder.get();
    FMethod.Closure = std::move(holder);
  }

  bool Assigned() const noexcept { return FMethod.Code != nullptr; }
  explicit operator bool() const noexcept { return Assigned(); }
  const TMethod& Method() const noexcept { return FMethod; }
  void* Data() const noexcept { return FMethod.Data; }

  // Calls the handler; an unset event does nothing (and gives R's default value).
  R operator()(A... args) const {
    if (!FMethod.Code) {
      if constexpr (std::is_void_v<R>)
        return;
      else
        return R{};
    }
    return reinterpret_cast<Thunk>(FMethod.Code)(FMethod.Data, std::forward<A>(args)...);
  }

  friend bool operator==(const TEvent& a, const TEvent& b) noexcept { return a.FMethod == b.FMethod; }
  friend bool operator==(const TEvent& a, std::nullptr_t) noexcept { return !a.Assigned(); }

private:
  TMethod FMethod;
};

// An event bound to the member function PMF of `object`.
template <auto PMF, class C>
auto MakeMethod(C* object) {
  using Sig = typename rtti_detail::TMemberFn<decltype(PMF)>::Signature;
  using Owner = typename rtti_detail::TMemberFn<decltype(PMF)>::Class;
  TMethod m;
  m.Code = rtti_detail::TThunkOf<PMF, Sig>::Code();
  m.Data = rtti_detail::ToMethodData<Owner>(object);
  return TEvent<Sig>(std::move(m));
}

// The Code that MakeMethod and published methods use for PMF.
template <auto PMF>
TMethodCode MethodCode() {
  using Sig = typename rtti_detail::TMemberFn<decltype(PMF)>::Signature;
  return rtti_detail::TThunkOf<PMF, Sig>::Code();
}

// An event bound to a plain function (no object: Data stays empty).
template <auto Fn>
auto MakeProc() {
  using F = std::remove_pointer_t<decltype(Fn)>;
  return []<class R, class... A>(R (*)(A...)) {
    TMethod m;
    m.Code = reinterpret_cast<TMethodCode>(&rtti_detail::ProcThunk<Fn, R, A...>);
    return TEvent<R(A...)>(std::move(m));
  }(static_cast<F*>(nullptr));
}
