// Start-up of the program: from starting `lumora` (the program's own entry, driven by the
// test driver lumora-e2e) to its banner on the screen, and from `lumora FILE` to the file
// shown: a small form and the corpus forms with the most components as live forms (what a
// fresh install does with a file on its command line), and the large ones as text in the
// editor. Messages the program shows on the way (classes no package has) are answered at
// once by the driver. Each iteration starts a process of its own, on the offscreen screen, with the
// settings its first (untimed) start wrote, and stops the clock when the program says it
// shows what was asked.

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

// A copy of the driver of its own in `folder`, so that its settings file (beside it) starts
// empty, with the build's list of known packages beside it as an installed program has it.
QString PlaceProgram(const fs::path& folder) {
  const fs::path driver(LUMORA_E2E_DRIVER);
  const fs::path buildRoot = driver.parent_path().parent_path();
  const fs::path program = folder / "lumora";
  fs::copy_file(driver, program);
  QFile known(QString::fromStdString((buildRoot / "bin" / "known-packages").string()));
  if (known.open(QIODevice::ReadOnly)) {
    QByteArray list = known.readAll();
    list.replace("$(LUMORA)", QByteArray::fromStdString(buildRoot.string()));
    QFile beside(QString::fromStdString((folder / "known-packages").string()));
    if (beside.open(QIODevice::WriteOnly)) beside.write(list);
  }
  return QString::fromStdString(program.string());
}

// Runs the program once; the seconds until it said "shown", or -1. `view` is empty (the
// banner), "form" or "text".
double StartOnce(const QString& program, const QString& view, const QStringList& programArgs, const QString& scratch) {
  QProcess p;
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  env.insert("QT_QPA_PLATFORM", "offscreen");
  env.insert("XDG_RUNTIME_DIR", scratch);
  p.setProcessEnvironment(env);
  QElapsedTimer clock;
  clock.start();
  p.start(program, QStringList{"startup"} + (view.isEmpty() ? QStringList() : QStringList{view}) +
                                                    QStringList{"--"} + programArgs);
  QByteArray out;
  while (!out.contains("shown") && p.waitForReadyRead(30000)) out += p.readAllStandardOutput();
  const double seconds = out.contains("shown") ? clock.nsecsElapsed() / 1e9 : -1;
  p.waitForFinished(30000);
  return seconds;
}

void Startup(benchmark::State& state, const QString& view, const std::string& corpusFile) {
  QStringList args;
  if (!corpusFile.empty()) {
    const fs::path file = fs::path(LUMORA_CORPUS_DIR) / corpusFile;
    if (!fs::is_regular_file(file)) {
      state.SkipWithError("no corpus");
      return;
    }
    args << QString::fromStdString(file.string());
    state.counters["file_KB"] = static_cast<double>(fs::file_size(file)) / 1024;
  }
  QTemporaryDir scratch;
  const QString program = PlaceProgram(fs::path(scratch.path().toStdString()));
  // The first start finds no settings and writes them; the ones timed are later starts.
  StartOnce(program, view, args, scratch.path());
  for (auto _ : state) {
    const double seconds = StartOnce(program, view, args, scratch.path());
    if (seconds < 0) {
      state.SkipWithError("the program did not come up");
      break;
    }
    state.SetIterationTime(seconds);
  }
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  // A button and a memo; the form with the most components in its file (753, nearly all
  // of classes no package has, so its live form is small); the form with the largest live
  // form (312 components); the largest binary and text files (the editor benchmark's).
  const struct {
    const char* Name;
    QString View;
    std::string File;
  } runs[] = {
      {"StartupToBanner", {}, {}},
      {"StartupToLiveForm_Small", "form", "bin/0001.dfm"},
      {"StartupToLiveForm_MostComponents", "form", "bin/1208.dfm"},
      {"StartupToLiveForm_LargestLiveForm", "form", "bin/0826.dfm"},
      {"StartupToText_MostComponents", "text", "bin/1208.dfm"},
      {"StartupToText_LargestBinary", "text", "bin/1201.dfm"},
      {"StartupToText_LargestText", "text", "text/2996.dfm"},
  };
  for (const auto& run : runs) {
    benchmark::RegisterBenchmark(run.Name, [run](benchmark::State& s) { Startup(s, run.View, run.File); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(10);
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
