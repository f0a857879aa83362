#include "shell/Entry.h"

#include "platform/vcl/MessageLoop.h"
#include "resources/ResStrings.h"
#include "shell/Relay.h"
#include "shell/mLumora.h"

#include <QCoreApplication>
#include <QIcon>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <sys/socket.h>
#include <unistd.h>
#include <string>
#include <vector>

namespace {

void PrintHelp() {
  std::printf("%s", std::string(ResStr::SCommandLineHelp).c_str());
}

// A signal to end (the session ends, Ctrl+C in a terminal) closes the main window as its
// close box would, so that the settings are written; the handler only writes to a pipe.
int gSignalPipe[2] = {-1, -1};

void OnEndSignal(int) {
  const char byte = 1;
  [[maybe_unused]] const auto written = ::write(gSignalPipe[1], &byte, 1);
}

void CloseOnEndSignals(QObject* parent) {
  if (::socketpair(AF_UNIX, SOCK_STREAM, 0, gSignalPipe) != 0) return;
  auto* notifier = new QSocketNotifier(gSignalPipe[0], QSocketNotifier::Read, parent);
  QObject::connect(notifier, &QSocketNotifier::activated, parent, [] {
    char byte;
    [[maybe_unused]] const auto read = ::read(gSignalPipe[0], &byte, 1);
    if (auto* main = dynamic_cast<TWinControl*>(Application->MainForm())) PostMessage(main, WM_CLOSE);
  });
  struct sigaction action = {};
  action.sa_handler = &OnEndSignal;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  for (int signal : {SIGTERM, SIGINT, SIGHUP}) sigaction(signal, &action, nullptr);
}

QIcon ProgramIcon() {
  QIcon icon;
  for (int size : {16, 24, 32, 48, 64, 128, 256})
    icon.addFile(QStringLiteral(":/lumora/icons/%1x%1/apps/lumora.png").arg(size), QSize(size, size));
  return icon;
}

}  // namespace

int LumoraMain(int argc, char** argv, const std::function<void()>& Started) {
  std::vector<std::string> params;
  bool relay = false;
  bool options = true;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (options && arg == "--") {
      options = false;
    } else if (options && (arg == "-h" || arg == "--help")) {
      PrintHelp();
      return 0;
    } else if (options && (arg == "-V" || arg == "--version")) {
      std::printf("lumora %s\n", LUMORA_VERSION);
      return 0;
    } else if (options && arg == "--relay") {
      relay = true;
    } else if (options && arg.size() > 1 && arg[0] == '-') {
      std::fprintf(stderr, "lumora: %s\n", Format(ResStr::SUnknownOption, arg).c_str());
      return 2;
    } else {
      params.push_back(arg);
    }
  }

  if (relay) {
    if (params.empty()) {
      std::fprintf(stderr, "lumora: %s\n", std::string(ResStr::SRelayNeedsFile).c_str());
      return 2;
    }
    QCoreApplication app(argc, argv);
    std::string error;
    if (!RelaySend(params.front(), error)) {
      std::fprintf(stderr, "lumora: %s\n", error.c_str());
      return 1;
    }
    return 0;
  }

  TQtApplication app(argc, argv);
  QGuiApplication::setWindowIcon(ProgramIcon());
  QGuiApplication::setDesktopFileName(QStringLiteral("lumora"));
  SetParams(params);
  CloseOnEndSignals(&app);
  Application->Initialize();
  Application->SetTitle(std::string(ResStr::SAppTitle));
  TFrm_mLumora* mainForm = nullptr;
  Application->CreateForm(mainForm);
  if (Started) Started();
  Application->Run();
  // The main window is freed here, while the program can still show a message.
  TApplication::Done();
  FinalizeMainUnit();
  return 0;
}
