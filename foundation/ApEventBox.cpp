#include "foundation/ApEventBox.h"

#include "foundation/ApEvent.h"
#include "platform/vcl/Dialogs.h"

void UseErrorMessageBox() {
  DefaultErrorBox = [](const std::string& text) { MessageBoxQuestion(text, "Error", MB_OK | MB_ICONERROR); };
}

namespace {
// Installed as the library loads, so that linking it is enough.
const bool Installed = [] {
  if (!DefaultErrorBox) UseErrorMessageBox();
  return true;
}();
}  // namespace
