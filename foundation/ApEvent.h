#pragma once
// The application's idle chain, run one entry per idle call, and the deferred error
// report: error texts queued while work runs, shown together at the next idle.

#include "foundation/joMChain.h"

#include <exception>
#include <functional>
#include <string>

// A routine of the idle chain: a method or a plain routine taking the entry's parameter.
using TjoIdleProc = TEvent<void(std::intptr_t Param)>;

class TjoOnIdleChain : public TCustomMethodChain {
  LUMORA_CLASS(TjoOnIdleChain, TCustomMethodChain)
public:
  explicit TjoOnIdleChain(TComponent* AOwner);

  // The index of the entry run last; -1 at first.
  int Current() const { return FCurrent; }
  // Runs the next entry, round-robin in priority order; each full round ends with one
  // step that runs nothing.
  void DoIdle();

protected:
  void ChainChanged() override;

private:
  int FCurrent = -1;
};

// The application's idle chain, or none before the first RegisterIdle or DeferError.
TjoOnIdleChain* ApplicationIdleChain();

// Adds Proc to the idle chain (made here on first use); Priority is taken as a signed 8-bit value.
void RegisterIdle(const TjoIdleProc& Proc, int Priority = 0, std::intptr_t Param = 0);
template <auto PMF, class C>
void RegisterIdle(C* Obj, int Priority = 0, std::intptr_t Param = 0);
// Takes Proc out of the idle chain; nothing when there never was one.
void UnregisterIdle(const TjoIdleProc& Proc, std::intptr_t Param = 0);
template <auto PMF, class C>
void UnregisterIdle(C* Obj, std::intptr_t Param = 0);
// One step of the idle chain, when it exists; the main form calls it on every idle call.
void DoApplicationIdle();

// The kind code of a queued error text.
inline constexpr int jecDeferredError = 2;

// Queues an error text for the next idle report, once per distinct text; the index of its line.
int DeferError(const std::string& Text);
// Queues the message of an exception (the application's exception handler).
void DeferException(std::exception_ptr Error);
void DeferException(const std::exception& Error);
// The queue of error texts (the kind code is each line's object), or none before the first error.
TStringList* DeferredErrors();
// The report routine the idle chain runs: the whole queue as one text, then an empty queue.
void ShowDeferredErrors(std::intptr_t Param);

// Shows the collected errors instead of the default message box, when set (the main form sets it).
using TShowErrorProc = std::function<void(const std::string& Text)>;
extern TShowErrorProc ShowErrorHook;
// The default display: a message box titled "Error" with the error icon and an OK button.
// The controls layer sets it (lumora_foundation_gui); without it the text goes to standard error.
extern TShowErrorProc DefaultErrorBox;

// The unit's end: the report leaves the chain, the queue and the chain are freed. Runs at
// program end; tests call it to start again from nothing.
void FinalizeApEvent();

template <auto PMF, class C>
void RegisterIdle(C* Obj, int Priority, std::intptr_t Param) {
  RegisterIdle(MakeMethod<PMF>(Obj), Priority, Param);
  if constexpr (std::is_convertible_v<C*, TComponent*>) ApplicationIdleChain()->FreeNotification(Obj);
}

template <auto PMF, class C>
void UnregisterIdle(C* Obj, std::intptr_t Param) {
  UnregisterIdle(MakeMethod<PMF>(Obj), Param);
}
