#include "foundation/Frm_utl.h"

#include "foundation/joLayout.h"
#include "platform/vcl/Keys.h"

LUMORA_CLASS_IMPL(TInformationForm) {}

TInformationForm::TInformationForm(TComponent* AOwner, TDerived) : TForm(AOwner) {
  FFreeOnClose = true;
  SetKeyPreview(true);
}

TInformationForm::TInformationForm(TComponent* AOwner) : TInformationForm(AOwner, TDerived{}) {
  ReadLayouts(this);
  DoCreate();
}

void TInformationForm::ShowInfo() {
  Show();
}

void TInformationForm::KeyDown(Word& Key, TShiftState Shift) {
  if (Key == VK_ESCAPE && Shift.Empty()) {
    Key = 0;
    Close();
    return;
  }
  TForm::KeyDown(Key, Shift);
}

void TInformationForm::DoClose(TCloseAction& Action) {
  Action = FFreeOnClose ? caFree : caHide;
  TForm::DoClose(Action);
}
