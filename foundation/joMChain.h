#pragma once
// Method chains: ordered, prioritised lists of callbacks that independent parts of the
// program join and leave without knowing of each other. A chain is a component, so an
// entry bound to a component leaves the chain when that component is destroyed.

#include "foundation/joArrs.h"
#include "platform/rtti/Classes.h"

#include <cstdint>
#include <map>
#include <memory>

inline constexpr const char* SjoCallingBadMethod = "Calling BadMethod !!!";

// The routine a chain hands out when it has no entries at all; raises when called.
void BadMethod(std::intptr_t Param);

// One entry of a chain, as it lies in its slot.
struct TMethodChainEntry {
  TMethodCode Code;
  void* Data;
  std::int8_t Priority;
  std::intptr_t Param;
  std::int32_t RefCount;
};

class TCustomMethodChain : public TComponent {
  LUMORA_CLASS(TCustomMethodChain, TComponent)
public:
  explicit TCustomMethodChain(TComponent* AOwner);
  ~TCustomMethodChain() override;

  // Joins or re-joins the chain; always True. A none Data, a none Code or a zero Param
  // matches every entry in that respect, so re-joining may touch several entries.
  bool Add(void* Data, TMethodCode Code, std::intptr_t Param, std::int8_t Priority);
  // An object's routine; a component is watched so that its entries leave with it.
  bool Add(TObject* Data, TMethodCode Code, std::intptr_t Param, std::int8_t Priority);
  // A method pointer (MakeMethod, MakeProc or a bound lambda, which the chain keeps alive).
  bool Add(const TMethod& Method, std::intptr_t Param, std::int8_t Priority);
  // The member function PMF of Obj.
  template <auto PMF, class C>
  bool AddMethod(C* Obj, std::intptr_t Param, std::int8_t Priority) {
    return Add(rtti_detail::ToMethodData<C>(Obj), MethodCode<PMF>(), Param, Priority, WatchOf(Obj));
  }

  // Every matching entry loses one reference and leaves at none; True when any matched.
  bool Remove(void* Data, TMethodCode Code, std::intptr_t Param);
  bool Remove(const TMethod& Method, std::intptr_t Param) { return Remove(Method.Data, Method.Code, Param); }
  // Removes every entry whose Data is Obj, whatever its count; True when any was removed.
  bool RemoveObject(void* Obj);
  bool RemoveObject(TObject* Obj) { return RemoveObject(static_cast<void*>(Obj)); }

  int Count() const;
  // The entry's routine; BadMethod when the chain has no entries at all.
  TMethod GetMethod(int Index) const;
  // The entry's parameter; 0 when the chain has no entries at all.
  std::intptr_t GetParam(int Index) const;
  // The entry itself (for looking at priority and reference count).
  const TMethodChainEntry& Entry(int Index) const;
  // Empties the chain and makes it inactive.
  void Clear();

  bool Active() const { return FActive; }
  void SetActive(bool Value) { FActive = Value; }
  // The slots, or none while the chain is empty.
  TjoArrSlots* Items() const { return FItems; }

  void Notification(TComponent* AComponent, TOperation Operation) override;

protected:
  // Told after every change made through Add or Remove; does nothing here.
  virtual void ChainChanged() {}
  // The bound lambda behind an entry, kept while it is called.
  std::shared_ptr<void> ClosureOf(void* Data) const;

private:
  bool Add(void* Data, TMethodCode Code, std::intptr_t Param, std::int8_t Priority, TComponent* Watch);
  template <class C>
  static TComponent* WatchOf(C* Obj) {
    if constexpr (std::is_convertible_v<C*, TComponent*>)
      return Obj;
    else
      return nullptr;
  }
  int FindMatch(int From, void* Data, TMethodCode Code, std::intptr_t Param) const;
  TMethodChainEntry& At(int Index) const;
  void FreeItemsWhenEmpty();
  void DropUnusedClosures();

  bool FActive = true;
  TjoArrSlots* FItems = nullptr;
  std::map<void*, std::shared_ptr<void>> FClosures;
};
