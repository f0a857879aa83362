// Start-up of the program: from starting `lumora` (the program's own entry, driven by the
// test driver lumora-e2e) to its banner on the screen, and to a form file shown. Each
// iteration starts a process of its own, on the offscreen screen, and stops the clock when
// the program says what it shows.

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

namespace {

// Runs the driver once; the seconds until it said "shown", or -1.
double StartOnce(const QStringList& programArgs, const QString& scratch) {
  QProcess p;
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  env.insert("QT_QPA_PLATFORM", "offscreen");
  env.insert("XDG_RUNTIME_DIR", scratch);
  p.setProcessEnvironment(env);
  QElapsedTimer clock;
  clock.start();
  p.start(QStringLiteral(LUMORA_E2E_DRIVER), QStringList{"startup", "--"} + programArgs);
  QByteArray out;
  while (!out.contains("shown") && p.waitForReadyRead(30000)) out += p.readAllStandardOutput();
  const double seconds = out.contains("shown") ? clock.nsecsElapsed() / 1e9 : -1;
  p.waitForFinished(30000);
  return seconds;
}

void Startup(benchmark::State& state, QStringList args) {
  QTemporaryDir scratch;
  for (auto _ : state) {
    const double seconds = StartOnce(args, scratch.path());
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
  benchmark::RegisterBenchmark("StartupToBanner", [](benchmark::State& s) { Startup(s, {}); })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond)
      ->Iterations(10);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
