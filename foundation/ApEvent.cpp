#include "foundation/ApEvent.h"

#include "platform/rtti/ClassBuilder.h"

#include <iostream>
#include <memory>
#include <unordered_map>

TShowErrorProc ShowErrorHook;
TShowErrorProc DefaultErrorBox;

namespace {

struct TUnitState {
  TjoOnIdleChain* Chain = nullptr;
  TStringList* Errors = nullptr;
  // Where each queued text is, so that a long queue is not searched line by line.
  std::unordered_map<std::string, int> ErrorIndex;
  // The class descriptors are made first, so that they are still there when this ends.
  TUnitState() {
    TjoOnIdleChain::StaticClass();
    TStringList::StaticClass();
  }
  ~TUnitState() { FinalizeApEvent(); }
};

TUnitState& State() {
  static TUnitState state;
  return state;
}

TjoOnIdleChain* NeedChain() {
  TUnitState& s = State();
  if (!s.Chain) s.Chain = new TjoOnIdleChain(nullptr);
  return s.Chain;
}

}  // namespace

// ---- TjoOnIdleChain -------------------------------------------------------------

LUMORA_CLASS_IMPL(TjoOnIdleChain) {}

TjoOnIdleChain::TjoOnIdleChain(TComponent* AOwner) : TCustomMethodChain(AOwner) {}

void TjoOnIdleChain::ChainChanged() {
  // Kept as a place to react to joining and leaving; nothing needs it yet.
}

void TjoOnIdleChain::DoIdle() {
  ++FCurrent;
  if (FCurrent > Count()) FCurrent = 0;
  if (FCurrent < Count()) {
    // The copy keeps a bound lambda alive even when the entry leaves the chain while it runs.
    TjoIdleProc proc(GetMethod(FCurrent));
    proc(GetParam(FCurrent));
  }
}

// ---- unit operations ------------------------------------------------------------

TjoOnIdleChain* ApplicationIdleChain() {
  return State().Chain;
}

void RegisterIdle(const TjoIdleProc& Proc, int Priority, std::intptr_t Param) {
  NeedChain()->Add(Proc.Method(), Param, static_cast<std::int8_t>(Priority));
}

void UnregisterIdle(const TjoIdleProc& Proc, std::intptr_t Param) {
  if (TjoOnIdleChain* chain = State().Chain) chain->Remove(Proc.Method(), Param);
}

void DoApplicationIdle() {
  if (TjoOnIdleChain* chain = State().Chain) chain->DoIdle();
}

int DeferError(const std::string& Text) {
  TUnitState& s = State();
  if (!s.Errors) {
    s.Errors = new TStringList();
    s.ErrorIndex.clear();
    RegisterIdle(MakeProc<&ShowDeferredErrors>(), 0, 0);
  }
  // The queue is public: when it was changed behind our back, the index is made again.
  if (int(s.ErrorIndex.size()) != s.Errors->Count()) {
    s.ErrorIndex.clear();
    for (int i = 0; i < s.Errors->Count(); ++i) s.ErrorIndex.emplace(s.Errors->Strings(i), i);
  }
  if (auto it = s.ErrorIndex.find(Text); it != s.ErrorIndex.end() && it->second < s.Errors->Count() &&
                                         s.Errors->Strings(it->second) == Text)
    return it->second;
  int index = s.Errors->AddObject(Text, reinterpret_cast<TObject*>(std::intptr_t(jecDeferredError)));
  s.ErrorIndex[Text] = index;
  return index;
}

void DeferException(const std::exception& Error) {
  if (auto* e = dynamic_cast<const Exception*>(&Error))
    DeferError(e->Message());
  else
    DeferError(Error.what());
}

void DeferException(std::exception_ptr Error) {
  if (!Error) return;
  try {
    std::rethrow_exception(Error);
  } catch (const std::exception& e) {
    DeferException(e);
  } catch (...) {
    DeferError("Unknown error");
  }
}

TStringList* DeferredErrors() {
  return State().Errors;
}

void ShowDeferredErrors(std::intptr_t) {
  TStringList* errors = State().Errors;
  if (!errors || errors->Count() == 0) return;
  std::string text;
  for (int i = 0; i < errors->Count(); ++i) {
    if (i > 0) text += '\n';
    text += errors->Strings(i);
  }
  // Emptied first: whatever goes wrong while showing is queued for the next report.
  errors->Clear();
  State().ErrorIndex.clear();
  if (ShowErrorHook)
    ShowErrorHook(text);
  else if (DefaultErrorBox)
    DefaultErrorBox(text);
  else
    std::cerr << "Error: " << text << std::endl;
}

void FinalizeApEvent() {
  TUnitState& s = State();
  UnregisterIdle(MakeProc<&ShowDeferredErrors>(), 0);
  delete s.Errors;
  s.Errors = nullptr;
  s.ErrorIndex.clear();
  TjoOnIdleChain* chain = s.Chain;
  s.Chain = nullptr;
  delete chain;
}
