#pragma once
// The main form framework: the program's main form takes over the application's error,
// message and idle events. Every key message of the program passes its KeyPreviewHook
// before any form sees it; the first idle and every idle have their hooks; errors raised
// anywhere are queued (DeferError) and shown together, once, at the next idle.

#include "platform/vcl/Forms.h"

#include <string>

class TCustomMainForm : public TForm {
  LUMORA_CLASS(TCustomMainForm, TForm)
public:
  explicit TCustomMainForm(TComponent* AOwner);
  ~TCustomMainForm() override;

  // Esc pressed in the form closes it when set (False at creation).
  bool CloseOnEsc() const { return FCloseOnEsc; }
  void SetCloseOnEsc(bool Value) { FCloseOnEsc = Value; }
  // True from creation until the first idle.
  bool FirstIdle() const { return FFirstIdle; }

  void KeyDown(Word& Key, TShiftState Shift) override;

protected:
  // Called on every idle event, after the idle chain.
  virtual void IdleHook(bool& Done);
  // Called once, at the first idle event, before anything else runs there.
  virtual void FirstIdleHook();
  // Sees every key message of the program first; clearing Key marks it handled.
  virtual void KeyPreviewHook(Word& Key, TShiftState Shift);

  // What the constructor of the most derived main form class calls: refuses a second main
  // form of the same class, reads the layouts and runs OnCreate.
  void CreateMainForm();
  // Runs OnDestroy once; every destructor of the chain calls it, the most derived first.
  void DestroyMainForm();

private:
  void AppException(TObject* Sender, Exception* E);
  void AppMessage(TMsg& Msg, bool& Handled);
  void AppIdle(TObject* Sender, bool& Done);

  bool FFirstIdle = true;
  bool FCloseOnEsc = false;
  bool FDestroyDone = false;
  // What was installed before this form took the events over; put back when it goes.
  TExceptionEvent FOldOnException;
  TMessageEvent FOldOnMessage;
  TIdleEvent FOldOnIdle;
};

// The display of collected errors that the main form installs: a message box owned by the
// application, the application's title as caption, the text and the stop icon.
void ShowMainFormErrors(const std::string& Text);
