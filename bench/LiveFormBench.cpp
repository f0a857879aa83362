// Speed of the live form view: from a form file to its live window shown and painted,
// the live window read again after a compiled change of its text, the object inspector
// loaded, and one node selected in it. Inputs: the real forms with the most components
// and a generated form of 2,000 controls. Runs on the offscreen platform.

#include "foundation/ApEvent.h"
#include "liveform/PackConfig.h"
#include "liveform/joDesigner.h"
#include "liveform/joObjInsp.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "platform/vcl/MessageLoop.h"
#include "tests/support/StandardPackage.h"
#include "shell/CompRes.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct TInput {
  std::string Name;
  fs::path File;  // a binary form file with its resource header
  int FileComponents = 0;
  int Components = 0;  // what its live form holds
};

std::string ReadFile(const fs::path& p) {
  std::ifstream in(p, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

int CountComponents(const std::string& text) {
  int n = 0;
  std::istringstream lines(text);
  std::string line;
  while (std::getline(lines, line)) {
    const size_t i = line.find_first_not_of(" \t");
    if (i == std::string::npos) continue;
    if (line.compare(i, 7, "object ") == 0 || line.compare(i, 10, "inherited ") == 0 || line.compare(i, 7, "inline ") == 0) ++n;
  }
  return n;
}

// 2,000 controls: rows of labels, edits, buttons and check boxes in panels of twenty.
std::string GeneratedFormText() {
  std::string t = "object Generated: TForm\r\n  Width = 1000\r\n  Height = 760\r\n  Caption = 'Generated'\r\n";
  int made = 0, panel = 0;
  while (made < 2000) {
    t += "  object Panel" + std::to_string(panel) + ": TPanel\r\n    Left = " + std::to_string(8 + (panel % 4) * 245) +
         "\r\n    Top = " + std::to_string(8 + (panel / 4) * 30) + "\r\n    Width = 240\r\n    Height = 28\r\n";
    ++made;
    for (int i = 0; i < 19 && made < 2000; ++i, ++made) {
      static const char* kinds[] = {"TLabel", "TEdit", "TButton", "TCheckBox"};
      const char* kind = kinds[i % 4];
      t += std::string("    object C") + std::to_string(made) + ": " + kind + "\r\n      Left = " +
           std::to_string(2 + i * 12) + "\r\n      Top = 2\r\n      Width = 40\r\n      Height = 21\r\n";
      if (i % 4 != 1) t += "      Caption = 'Item " + std::to_string(made) + "'\r\n";
      t += "    end\r\n";
    }
    t += "  end\r\n";
    ++panel;
  }
  return t + "end\r\n";
}

std::vector<TInput>& Inputs() {
  static std::vector<TInput> inputs = [] {
    std::vector<TInput> list;
    const fs::path dir = fs::temp_directory_path() / "lumora-live-bench";
    fs::create_directories(dir);
    const std::string generated = ObjectTextToResource(GeneratedFormText());
    std::ofstream(dir / "generated.dfm", std::ios::binary) << generated;
    const int generatedCount = CountComponents(GeneratedFormText());
    list.push_back({"Generated2000", dir / "generated.dfm", generatedCount, generatedCount});
    const char* env = std::getenv("LUMORA_CORPUS");
    const fs::path corpus = env && *env ? fs::path(env) : fs::path(LUMORA_CORPUS_DIR);
    std::vector<TInput> real;
    if (fs::is_directory(corpus / "bin")) {
      for (const auto& e : fs::directory_iterator(corpus / "bin")) {
        try {
          const std::string data = ReadFile(e.path());
          real.push_back({e.path().filename().string(), e.path(),
                          CountComponents(ObjectBinaryToText(std::string_view(data).substr(ReadResHeader(data)))), 0});
        } catch (...) {
        }
      }
    }
    // The form with the most components in its file, then the two whose live forms get
    // the most (components of other libraries' classes are left out of a live form).
    auto byFile = [](const TInput& a, const TInput& b) { return a.FileComponents > b.FileComponents; };
    std::sort(real.begin(), real.end(), byFile);
    if (real.size() > 80) real.resize(80);
    for (TInput& in : real) {
      TjoComponentResource document(nullptr);
      document.LoadFromFile(in.File.string());
      auto* form = new TForm(nullptr);
      document.AssignTo(form);
      in.Components = form->ComponentCount() + 1;
      delete form;
    }
    FinalizeApEvent();
    if (!real.empty()) {
      list.push_back(real.front());
      real.erase(real.begin());
    }
    std::sort(real.begin(), real.end(), [](const TInput& a, const TInput& b) { return a.Components > b.Components; });
    for (size_t i = 0; i < real.size() && i < 2; ++i) list.push_back(real[i]);
    for (const TInput& in : list) {
      std::printf("input %-14s %5d components in the file, %5d in its live form\n", in.Name.c_str(), in.FileComponents,
                  in.Components);
    }
    return list;
  }();
  return inputs;
}

// The input a benchmark's argument names, labelled; none (the run marked skipped) when
// the corpus is not there.
const TInput* InputOf(benchmark::State& state) {
  const auto index = static_cast<size_t>(state.range(0));
  if (index >= Inputs().size()) {
    state.SkipWithError("input not available (no corpus)");
    return nullptr;
  }
  state.SetLabel(Inputs()[index].Name);
  return &Inputs()[index];
}

void Settle() { QApplication::processEvents(); }

// File to a shown, painted live window.
void BM_FileToShownLiveForm(benchmark::State& state) {
  const TInput* input = InputOf(state);
  if (!input) return;
  const TInput& in = *input;
  for (auto _ : state) {
    auto* designer = new TjoDesigner();
    designer->Document()->LoadFromFile(in.File.string());
    designer->Show();
    Settle();
    state.PauseTiming();
    delete designer;
    Settle();
    FinalizeApEvent();
    state.ResumeTiming();
  }
}

// A compiled change of the text reaches the document; the shown live form reads it again.
void BM_ReReadAfterCompiledChange(benchmark::State& state) {
  const TInput* input = InputOf(state);
  if (!input) return;
  const TInput& in = *input;
  TjoDesigner designer;
  designer.Document()->LoadFromFile(in.File.string());
  designer.Show();
  Settle();
  TStringList text;
  designer.Document()->AssignTo(&text);
  for (auto _ : state) {
    designer.Document()->Assign(&text);
    Settle();
  }
  FinalizeApEvent();
}

void BM_InspectorLoad(benchmark::State& state) {
  const TInput* input = InputOf(state);
  if (!input) return;
  const TInput& in = *input;
  TjoComponentResource document(nullptr);
  document.LoadFromFile(in.File.string());
  TFrm_DFM_OI inspector(nullptr);
  inspector.Show();
  for (auto _ : state) {
    inspector.Assign(&document);
    Settle();
  }
}

// One node selected: its property text built and shown.
void BM_NodeSelection(benchmark::State& state) {
  const TInput* input = InputOf(state);
  if (!input) return;
  const TInput& in = *input;
  TjoComponentResource document(nullptr);
  document.LoadFromFile(in.File.string());
  TFrm_DFM_OI inspector(nullptr);
  inspector.Show();
  inspector.Assign(&document);
  TTreeNodes* nodes = inspector.CompTree->Items();
  // The form's node holds every line: the largest property text there is.
  TTreeNode* form = nodes->GetFirstNode();
  TTreeNode* node = form;
  for (auto _ : state) {
    node = node->GetNext() ? node->GetNext() : form;
    inspector.CompTree->SetSelected(node);
    Settle();
  }
}

void BM_FormNodeSelection(benchmark::State& state) {
  const TInput* input = InputOf(state);
  if (!input) return;
  const TInput& in = *input;
  TjoComponentResource document(nullptr);
  document.LoadFromFile(in.File.string());
  TFrm_DFM_OI inspector(nullptr);
  inspector.Show();
  inspector.Assign(&document);
  TTreeNode* form = inspector.CompTree->Items()->GetFirstNode();
  TTreeNode* other = form->GetFirstChild() ? form->GetFirstChild() : form;
  bool toForm = true;
  for (auto _ : state) {
    inspector.CompTree->SetSelected(toForm ? form : other);
    toForm = !toForm;
    Settle();
  }
}

// The generated form and the three largest real ones (the inputs are found once the
// application exists, after the benchmarks are registered).
void Args(benchmark::internal::Benchmark* b) { b->DenseRange(0, 3)->Unit(benchmark::kMillisecond); }

}  // namespace

BENCHMARK(BM_FileToShownLiveForm)->Apply(Args)->MinTime(1.0);
BENCHMARK(BM_ReReadAfterCompiledChange)->Apply(Args)->MinTime(1.0);
BENCHMARK(BM_InspectorLoad)->Apply(Args)->MinTime(1.0);
BENCHMARK(BM_NodeSelection)->Apply(Args)->MinTime(0.5);
BENCHMARK(BM_FormNodeSelection)->Apply(Args)->MinTime(0.5);

int main(int argc, char** argv) {
  if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  TQtApplication app(argc, argv);
  Application->Initialize();
  RegisterVclClasses();
  // The controls are registered above; the package list is not read.
  Loader()->Add("dclstd.so", false);
  Loader()->SetDirty(false);
  benchmark::Initialize(&argc, argv);
  Inputs();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  TApplication::Done();
  return 0;
}
