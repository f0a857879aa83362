#pragma once
// Reading a form file into a live form and drawing it as its window would look on the
// classic desktop: frame, caption bar, menu bar and client area. Used to preview forms
// from scripts and documentation without a screen (the offscreen platform).

#include "platform/streaming/FormFile.h"
#include "platform/vcl/Forms.h"

#include <QImage>

#include <string>
#include <string_view>
#include <vector>

struct TFormLoadResult {
  // Whether the stream could be read at all (a damaged stream stops early).
  bool Read = false;
  // The reader's messages ("Class TFoo not found", "Error reading Button1.Foo: Property
  // Foo does not exist"), each distinct text once, in the order they came.
  std::vector<std::string> Errors;
};

// Reads a form file (a resource file, a bare binary stream or form text) into `form`,
// accepting every error so that the rest of the form is read. Event bindings are
// dropped: the form's class has none of the user's handlers.
TFormLoadResult LoadFormFile(TCustomForm* form, std::string_view data);
// The same for a form file already read.
TFormLoadResult LoadFormFile(TCustomForm* form, TFormFile& file);

// The form drawn as its window: the classic frame and caption around what Qt draws of
// the menu bar and the client area. The form is shown (offscreen) to be drawn.
QImage RenderForm(TCustomForm* form);

// Reads `formFile` with the controls of this layer registered and writes its picture to
// `pngFile` (saved as every file is, see SaveFile.h). Returns false with a message in
// `errors` when the file cannot be read or the picture cannot be written; read errors of the form itself are listed in `errors`
// too but do not make it fail.
bool RenderFormFileToPng(const std::string& formFile, const std::string& pngFile, std::vector<std::string>& errors);
