#pragma once
// What the main window's widget tests share: the program's main window started and ended
// as the entry does, settings in a folder of the test's own, and waiting in the event loop.
#include "shell/mLumora.h"

#include "liveform/PackConfig.h"
#include "tests/support/StandardPackage.h"

#include "foundation/ApEvent.h"
#include "foundation/joIniFile.h"
#include "platform/vcl/Keys.h"
#include "shell/F_WList.h"
#include "tests/support/TempDir.h"

#include <QApplication>
#include <QDropEvent>
#include <QEventLoop>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <sstream>

namespace fs = std::filesystem;

namespace {

std::string gModulePath;
std::string FakeModule() { return gModulePath; }

std::string ReadText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream s;
  s << in.rdbuf();
  return s.str();
}

class MainWindowTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    saved = joModuleFileNameProc;
    gModulePath = dir / "lumora";
    joModuleFileNameProc = &FakeModule;
    SetRelaySocketName(dir / "relay");
    SetParams({});
    FinalizeMainUnit();
    FinalizeApEvent();
    ClearAskedQuestions();
    ClearNextAnswers();
    // The live forms' classes, and a package list of the test's own with nothing in it.
    RegisterVclClasses();
    lumora::test::WriteBytes(dir / "known-packages", "");
    SetPackagesIniFile(dir / "lumora.ini");
    Loader()->SetKnownPackagesFile(dir / "known-packages");
  }
  void TearDown() override {
    Close();
    joModuleFileNameProc = saved;
    SetRelaySocketName("");
    SetUserQuestionHook(nullptr);
    ClearNextAnswers();
    FinalizeMainUnit();
    FinalizeApEvent();
    FinalizePackConfig();
    SetPackagesIniFile("");
  }
  // Starts the program's main window as the entry does.
  void Start(std::vector<std::string> params = {}) {
    SetParams(std::move(params));
    Application->SetTitle("Lumora");
    Application->CreateForm(form);
    form->Show();
    Activate(form);
  }
  // Ends it as the entry does: the window is freed and writes its settings.
  void Close() {
    delete form;
    form = nullptr;
    QCoreApplication::sendPostedEvents(nullptr, 0);
  }
  static void Activate(TCustomForm* f) {
    QApplication::setActiveWindow(f->Widget());
    f->BringToFront();
    QApplication::processEvents();
  }
  static void RunFor(int ms) {
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
  }
  // Runs `action` as soon as `ready` holds, from the event loop (inside modal dialogs too).
  // A window shown modal takes keys and clicks only once the window system has made it
  // active; on a loaded machine that comes some time after it shows.
  static bool ActiveWindow(TCustomForm* window) {
    return window && window->Visible() && QApplication::activeWindow() == window->Widget();
  }
  static void When(std::function<bool()> ready, std::function<void()> action) {
    auto* timer = new QTimer();
    QObject::connect(timer, &QTimer::timeout, [timer, ready, action] {
      if (!ready()) return;
      timer->stop();
      timer->deleteLater();
      action();
    });
    timer->start(5);
  }
  std::string Ini() const { return ReadText(dir / "lumora.ini"); }
  void WriteIni(const std::string& text) { lumora::test::WriteBytes(dir / "lumora.ini", text); }
  // The Qt action of a menu item, as the menu bar shows it.
  static QAction* ActionOf(TMenuItem* item) { return item->QtAction(); }

  lumora::test::TTempDir dir;
  std::string (*saved)() = nullptr;
  TFrm_mLumora* form = nullptr;
};

}  // namespace
