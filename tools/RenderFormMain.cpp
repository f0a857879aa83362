// lumora-form-png OUT.png FILE.dfm: draws a form file as its window would look, without a
// screen; PROGRAM.exe:NAME draws the form NAME inside a program. Read errors go to standard error; the picture is written all the same when the
// stream could be read at all.
#include "platform/vcl/FormRender.h"
#include "platform/vcl/MessageLoop.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {
// Qt's own notes (no runtime folder when run as root, what the offscreen platform
// cannot do) say nothing about the form; only the form's errors go to standard error.
void QuietQtNotes(QtMsgType type, const QMessageLogContext&, const QString& message) {
  if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
}
}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: lumora-form-png OUT.png FILE.dfm|PROGRAM.exe:NAME\n");
    return 2;
  }
  if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  qInstallMessageHandler(QuietQtNotes);
  TQtApplication app(argc, argv);
  Application->Initialize();
  std::vector<std::string> errors;
  const bool ok = RenderFormFileToPng(argv[2], argv[1], errors);
  // Messages that name the file already (it cannot be opened, the program lacks the form)
  // are shown as they are; the form's own read errors are put after its name.
  const std::string file = SplitProgramFormName(argv[2]).File;
  for (const std::string& e : errors) {
    if (e.find(file) != std::string::npos)
      std::fprintf(stderr, "%s\n", e.c_str());
    else
      std::fprintf(stderr, "%s: %s\n", argv[2], e.c_str());
  }
  TApplication::Done();
  return ok ? 0 : 1;
}
