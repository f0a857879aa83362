#include "foundation/joMChain.h"

#include "platform/rtti/ClassBuilder.h"

#include <set>
#include <tuple>

void BadMethod(std::intptr_t) {
  throw Exception(SjoCallingBadMethod);
}

LUMORA_CLASS_IMPL(TCustomMethodChain) {}

TCustomMethodChain::TCustomMethodChain(TComponent* AOwner) : TComponent(AOwner) {}

TCustomMethodChain::~TCustomMethodChain() {
  FActive = false;
  delete FItems;
  FItems = nullptr;
}

namespace {
bool Matches(const TMethodChainEntry& e, void* Data, TMethodCode Code, std::intptr_t Param) {
  return (!Data || e.Data == Data) && (!Code || e.Code == Code) && (Param == 0 || e.Param == Param);
}
}  // namespace

TMethodChainEntry& TCustomMethodChain::At(int Index) const {
  return *static_cast<TMethodChainEntry*>(FItems->ItemPtr(Index));
}

int TCustomMethodChain::Count() const {
  return FItems ? FItems->Count() : 0;
}

int TCustomMethodChain::FindMatch(int From, void* Data, TMethodCode Code, std::intptr_t Param) const {
  for (int i = From; i < Count(); ++i)
    if (Matches(At(i), Data, Code, Param)) return i;
  return -1;
}

bool TCustomMethodChain::Add(void* Data, TMethodCode Code, std::intptr_t Param, std::int8_t Priority) {
  return Add(Data, Code, Param, Priority, nullptr);
}

bool TCustomMethodChain::Add(TObject* Data, TMethodCode Code, std::intptr_t Param, std::int8_t Priority) {
  return Add(static_cast<void*>(Data), Code, Param, Priority, dynamic_cast<TComponent*>(Data));
}

bool TCustomMethodChain::Add(const TMethod& Method, std::intptr_t Param, std::int8_t Priority) {
  if (Method.Closure && Method.Data) FClosures.emplace(Method.Data, Method.Closure);
  return Add(Method.Data, Method.Code, Param, Priority, nullptr);
}

bool TCustomMethodChain::Add(void* Data, TMethodCode Code, std::intptr_t Param, std::int8_t Priority,
                             TComponent* Watch) {
  if (Watch) FreeNotification(Watch);
  int index = FindMatch(0, Data, Code, Param);
  bool isNew = index < 0;
  if (isNew) {
    if (!FItems) FItems = new TjoArrSlots(int(sizeof(TMethodChainEntry)));
    index = FItems->Add();
    TMethodChainEntry& e = At(index);
    e.Code = Code;
    e.Data = Data;
    e.Param = Param;
    e.Priority = Priority;
    e.RefCount = 0;
  }
  // Entries are unique by (Data, Code, Param); those handled already are not handled twice
  // when a move puts them past the search point.
  std::set<std::tuple<void*, TMethodCode, std::intptr_t>> handled;
  while (index >= 0) {
    TMethodChainEntry& e = At(index);
    std::int8_t old = e.Priority;
    e.Priority = Priority;
    ++e.RefCount;
    handled.emplace(e.Data, e.Code, e.Param);
    int pos = index;
    bool movedDown = false;
    if (isNew) {
      // Appended at the end: up past every entry of lower priority, so it comes last
      // among the entries of its own priority.
      while (pos > 0 && At(pos - 1).Priority < Priority) {
        FItems->Exchange(pos, pos - 1);
        --pos;
      }
    } else if (Priority < old) {
      // Past every following entry whose priority is not below: it comes last among equals.
      while (pos + 1 < Count() && At(pos + 1).Priority >= Priority) {
        FItems->Exchange(pos, pos + 1);
        ++pos;
        movedDown = true;
      }
    } else {
      while (pos > 0 && At(pos - 1).Priority < Priority) {
        FItems->Exchange(pos, pos - 1);
        --pos;
      }
    }
    if (isNew) break;
    int next = movedDown ? index : index + 1;
    index = -1;
    for (int i = FindMatch(next, Data, Code, Param); i >= 0; i = FindMatch(i + 1, Data, Code, Param)) {
      const TMethodChainEntry& m = At(i);
      if (!handled.count({m.Data, m.Code, m.Param})) {
        index = i;
        break;
      }
    }
  }
  ChainChanged();
  return true;
}

bool TCustomMethodChain::Remove(void* Data, TMethodCode Code, std::intptr_t Param) {
  bool found = false;
  int i = FindMatch(0, Data, Code, Param);
  while (i >= 0) {
    found = true;
    TMethodChainEntry& e = At(i);
    if (--e.RefCount < 1) {
      FItems->Delete(i);
      i = FindMatch(i, Data, Code, Param);
    } else {
      i = FindMatch(i + 1, Data, Code, Param);
    }
  }
  FreeItemsWhenEmpty();
  DropUnusedClosures();
  if (found) ChainChanged();
  return found;
}

bool TCustomMethodChain::RemoveObject(void* Obj) {
  bool removed = false;
  for (int i = Count() - 1; i >= 0; --i)
    if (At(i).Data == Obj) {
      FItems->Delete(i);
      removed = true;
    }
  FreeItemsWhenEmpty();
  DropUnusedClosures();
  if (removed) ChainChanged();
  return removed;
}

TMethod TCustomMethodChain::GetMethod(int Index) const {
  TMethod m;
  if (!FItems) {
    m.Code = MakeProc<&BadMethod>().Method().Code;
    return m;
  }
  const TMethodChainEntry& e = At(Index);
  m.Code = e.Code;
  m.Data = e.Data;
  m.Closure = ClosureOf(e.Data);
  return m;
}

std::intptr_t TCustomMethodChain::GetParam(int Index) const {
  return FItems ? At(Index).Param : 0;
}

const TMethodChainEntry& TCustomMethodChain::Entry(int Index) const {
  if (!FItems) throw Exception("TjoArrSlots: " + Format(SjoListIndexError, Index));
  return At(Index);
}

void TCustomMethodChain::Clear() {
  delete FItems;
  FItems = nullptr;
  FClosures.clear();
  FActive = false;
}

void TCustomMethodChain::Notification(TComponent* AComponent, TOperation Operation) {
  TComponent::Notification(AComponent, Operation);
  if (Operation == opRemove && AComponent) RemoveObject(static_cast<TObject*>(AComponent));
}

std::shared_ptr<void> TCustomMethodChain::ClosureOf(void* Data) const {
  auto it = FClosures.find(Data);
  return it == FClosures.end() ? nullptr : it->second;
}

void TCustomMethodChain::FreeItemsWhenEmpty() {
  if (FItems && FItems->Count() == 0) {
    delete FItems;
    FItems = nullptr;
  }
}

void TCustomMethodChain::DropUnusedClosures() {
  for (auto it = FClosures.begin(); it != FClosures.end();) {
    bool used = false;
    for (int i = 0; i < Count() && !used; ++i) used = At(i).Data == it->first;
    it = used ? std::next(it) : FClosures.erase(it);
  }
}
