#include "platform/vcl/ExtDlgs.h"

const char* const SDefaultPictureFilter =
    "All (*.jpg;*.jpeg;*.bmp;*.ico;*.emf;*.wmf)|*.jpg;*.jpeg;*.bmp;*.ico;*.emf;*.wmf|"
    "JPEG Image File (*.jpg)|*.jpg|JPEG Image File (*.jpeg)|*.jpeg|Bitmaps (*.bmp)|*.bmp|Icons (*.ico)|*.ico|"
    "Enhanced Metafiles (*.emf)|*.emf|Metafiles (*.wmf)|*.wmf";

LUMORA_CLASS_IMPL(TOpenPictureDialog) {
  c.Property("Filter", &TOpenPictureDialog::Filter, &TOpenPictureDialog::SetFilter)
      .Stored(&TOpenPictureDialog::IsFilterStored);
}

TOpenPictureDialog::TOpenPictureDialog(TComponent* owner) : TOpenDialog(owner) { SetFilter(SDefaultPictureFilter); }

LUMORA_CLASS_IMPL(TSavePictureDialog) {}
