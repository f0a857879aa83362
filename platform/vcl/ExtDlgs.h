#pragma once
// File dialogs for pictures: open and save dialogs whose filter lists the picture
// formats the program reads unless the form gives a filter of its own.

#include "platform/vcl/Dialogs.h"

// The filter of the picture formats: all of them first, then each one.
extern const char* const SDefaultPictureFilter;

class TOpenPictureDialog : public TOpenDialog {
  LUMORA_CLASS(TOpenPictureDialog, TOpenDialog)
public:
  explicit TOpenPictureDialog(TComponent* owner);
  bool IsFilterStored() const { return Filter() != SDefaultPictureFilter; }
};

class TSavePictureDialog : public TOpenPictureDialog {
  LUMORA_CLASS(TSavePictureDialog, TOpenPictureDialog)
public:
  explicit TSavePictureDialog(TComponent* owner) : TOpenPictureDialog(owner) {}
  bool Saving() const override { return true; }
};
