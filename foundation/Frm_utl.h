#pragma once
// Small information windows: shown modelessly, closed by Escape anywhere in them, and
// freed when closed (unless told to only hide).

#include "platform/vcl/Forms.h"

class TInformationForm : public TForm {
  LUMORA_CLASS(TInformationForm, TForm)
public:
  explicit TInformationForm(TComponent* AOwner);

  // Closing frees the form when set (the default), else only hides it.
  bool FreeOnClose() const { return FFreeOnClose; }
  void SetFreeOnClose(bool Value) { FFreeOnClose = Value; }
  // Shows the form without waiting for it.
  void ShowInfo();

  void KeyDown(Word& Key, TShiftState Shift) override;
  void DoClose(TCloseAction& Action) override;

protected:
  // For derived windows, whose own constructor reads the layouts.
  struct TDerived {};
  TInformationForm(TComponent* AOwner, TDerived);

private:
  bool FFreeOnClose = true;
};
