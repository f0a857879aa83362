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

namespace {
// Qt's own notes (no runtime folder when run as root, what the offscreen platform
// cannot do) say nothing about the form; only the form's errors go to standard error.
void QuietQtNotes(QtMsgType type, const QMessageLogContext&, const QString& message) {
  if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "%s\n", message.toLocal8Bit().constData());
}
}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: lumora-form-png OUT.png FILE.dfm\n");
    return 2;
  }
  if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  qInstallMessageHandler(QuietQtNotes);
  TQtApplication app(argc, argv);
  Application->Initialize();
  std::vector<std::string> errors;
  const bool ok = RenderFormFileToPng(argv[2], argv[1], errors);
  for (const std::string& e : errors) std::fprintf(stderr, "%s: %s\n", argv[2], e.c_str());
  TApplication::Done();
  return ok ? 0 : 1;
}
