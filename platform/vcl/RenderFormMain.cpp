// lumora-form-png OUT.png FILE.dfm: draws a form file as its window would look, without a
// screen. Read errors go to standard error; the picture is written all the same when the
// stream could be read at all.
#include "platform/vcl/FormRender.h"
#include "platform/vcl/MessageLoop.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: lumora-form-png OUT.png FILE.dfm\n");
    return 2;
  }
  if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  TQtApplication app(argc, argv);
  Application->Initialize();
  std::vector<std::string> errors;
  const bool ok = RenderFormFileToPng(argv[2], argv[1], errors);
  for (const std::string& e : errors) std::fprintf(stderr, "%s: %s\n", argv[2], e.c_str());
  TApplication::Done();
  return ok ? 0 : 1;
}
