// Speed and memory of the form-text editor with a generated form text of 5 MB (20,000
// components, about 150,000 lines) and with the largest corpus forms: loading to a shown,
// interactive editor (text, tree, keywords bold, status bar), a keystroke, a caret move,
// a tree node scrolled to, Compile, Search Again, Replace All of 20,000 matches, and the
// memory the editor holds. Each figure is the time until the window is painted again.
// Targets: load 0.15 s, keystroke, caret and node 16 ms, compile 0.25 s, search 50 ms,
// replace all 1 s, memory 150 MB.

#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "platform/streaming/Streams.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/VclClasses.h"
#include "textedit/DFM_ResEdit.h"

#include <Qsci/qsciscintillabase.h>

#include <QApplication>
#include <QTest>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <malloc.h>
#include <memory>

namespace {

// 20,000 components of the kinds a real form has, about 5 MB and 150,000 lines of text.
std::string GeneratedFormText() {
  std::string text = "object Form1: TForm1\r\n  Left = 192\r\n  Top = 107\r\n  Caption = 'Twenty thousand components'\r\n";
  static const char* const classes[] = {"TButton", "TLabel", "TEdit", "TCheckBox"};
  for (int i = 0; i < 20000; ++i) {
    const std::string n = std::to_string(i);
    const char* cls = classes[i % 4];
    text += "  object ";
    text += cls + 1;
    text += n + ": ";
    text += cls;
    text += "\r\n    Left = " + std::to_string(i % 977) + "\r\n    Top = " + std::to_string((i * 37) % 30011) +
            "\r\n    Width = 75\r\n    Height = 25\r\n    Caption = 'Caption of item " + n +
            " with some words, long enough for a real one to have them'\r\n";
    if (i % 2 == 0) text += "    Hint = 'A hint for the component number " + n + " that says what it does'\r\n";
    text += "  end\r\n";
  }
  text += "end\r\n";
  return text;
}

std::string LargestCorpusFile(const std::string& folder) {
  const std::filesystem::path dir = std::filesystem::path(LUMORA_CORPUS_DIR) / folder;
  std::error_code ec;
  std::filesystem::path best;
  std::uintmax_t bestSize = 0;
  for (const auto& entry : std::filesystem::directory_iterator(dir, ec)) {
    if (entry.is_regular_file() && entry.file_size() > bestSize) {
      bestSize = entry.file_size();
      best = entry.path();
    }
  }
  return best.empty() ? std::string() : ReadFileToString(best.string());
}

long long RssKb() {
  std::FILE* f = std::fopen("/proc/self/status", "r");
  if (!f) return -1;
  char line[256];
  long long value = -1;
  while (std::fgets(line, sizeof line, f)) {
    if (std::strncmp(line, "VmRSS:", 6) == 0) value = std::atoll(line + 6);
  }
  std::fclose(f);
  return value;
}

// A shown window holding an editor with its tree and status bar, as the program has it.
struct TWindow {
  TForm* Form;
  TjoDFM_ResourceEditor* Editor;
  TWindow() {
    Form = new TForm(Application);
    Form->SetBounds(0, 0, 1000, 700);
    Editor = new TjoDFM_ResourceEditor(Form);
    Editor->SetParent(Form);
    Editor->SetAlign(alClient);
    Editor->SetTreeVisible(true);
    Editor->SetStatusBarVisible(true);
    Editor->SetReadOnly(false);
    Form->Show();
    QApplication::setActiveWindow(Form->Widget());
    Editor->RichEdit()->SetFocus();
    QApplication::processEvents();
  }
  ~TWindow() { delete Form; }
  TWindow(const TWindow&) = delete;
  TWindow& operator=(const TWindow&) = delete;
  QWidget* View() const { return Editor->RichEdit()->Widget(); }
  void Load(TStrings* lines) {
    Editor->LoadLines(lines);
    Paint();
  }
  static void Paint() { QApplication::processEvents(); }
};

TStringList& GeneratedLines() {
  static TStringList lines;
  if (lines.Count() == 0) lines.SetText(GeneratedFormText());
  return lines;
}

void Describe(benchmark::State& state, TStrings& lines) {
  state.counters["lines"] = lines.Count();
  state.counters["text_MB"] = static_cast<double>(lines.Text().size()) / 1e6;
}

void BM_LoadLines_Generated(benchmark::State& state) {
  TWindow window;
  TStringList& lines = GeneratedLines();
  for (auto _ : state) window.Load(&lines);
  Describe(state, lines);
  state.counters["nodes"] = window.Editor->Tree()->Items()->Count();
}

void LoadCorpus(benchmark::State& state, const std::string& folder) {
  std::string text = LargestCorpusFile(folder);
  if (text.empty()) {
    state.SkipWithError("no corpus");
    return;
  }
  if (folder == "bin") text = ObjectResourceToText(text);
  TStringList lines;
  lines.SetText(text);
  TWindow window;
  for (auto _ : state) window.Load(&lines);
  Describe(state, lines);
  state.counters["nodes"] = window.Editor->Tree()->Items()->Count();
}
void BM_LoadLines_LargestCorpusBinary(benchmark::State& state) { LoadCorpus(state, "bin"); }
void BM_LoadLines_LargestCorpusText(benchmark::State& state) { LoadCorpus(state, "text"); }

void BM_Keystroke_Middle(benchmark::State& state) {
  TWindow window;
  window.Load(&GeneratedLines());
  window.Editor->RichEdit()->GotoLine(GeneratedLines().Count() / 2);
  window.Paint();
  for (auto _ : state) {
    QTest::keyClick(window.View(), Qt::Key_X);
    window.Paint();
  }
}

void BM_CaretMove(benchmark::State& state) {
  TWindow window;
  window.Load(&GeneratedLines());
  window.Editor->RichEdit()->GotoLine(GeneratedLines().Count() / 2);
  window.Paint();
  bool down = true;
  for (auto _ : state) {
    QTest::keyClick(window.View(), down ? Qt::Key_PageDown : Qt::Key_PageUp);
    window.Paint();
    down = !down;
  }
}

void BM_TreeNodeScroll(benchmark::State& state) {
  TWindow window;
  window.Load(&GeneratedLines());
  TTreeNode* root = window.Editor->Tree()->Items()->GetFirstNode();
  int i = 0;
  for (auto _ : state) {
    window.Editor->Tree()->SetSelected(root->Item((i * 7919) % root->Count()));
    window.Paint();
    ++i;
  }
}

void BM_Compile_Generated(benchmark::State& state) {
  TWindow window;
  window.Load(&GeneratedLines());
  TStrings* lines = window.Editor->RichEdit()->Lines();
  for (auto _ : state) {
    state.PauseTiming();
    lines->SetStrings(2, lines->Strings(2));  // an edit, so that there is something to compile
    state.ResumeTiming();
    window.Editor->Compile();
    window.Paint();
  }
}

// Search Again from the start for a text that is not there: as far as a search looks.
void BM_SearchAgain_NotFound(benchmark::State& state) {
  TWindow window;
  window.Load(&GeneratedLines());
  TjoRichEdit* edit = window.Editor->RichEdit();
  TFindDialog dialog(nullptr);
  dialog.SetFindText("no such words");
  SetUserQuestionHook([](const TUserQuestion&) { return static_cast<int>(mrOk); });
  for (auto _ : state) {
    edit->SetSelStart(0);
    benchmark::DoNotOptimize(edit->SearchAgain(&dialog));
    window.Paint();
  }
  SetUserQuestionHook({});
}

// The text search of the whole 5 MB text, any case.
void BM_FindText_WholeText(benchmark::State& state) {
  TWindow window;
  window.Load(&GeneratedLines());
  TjoRichEdit* edit = window.Editor->RichEdit();
  for (auto _ : state) benchmark::DoNotOptimize(edit->FindText("no such words", 0, edit->GetTextLen(), {}));
  state.counters["text_MB"] = edit->GetTextLen() / 1e6;
}

void BM_ReplaceAll_20000(benchmark::State& state) {
  TWindow window;
  TjoRichEdit* edit = window.Editor->RichEdit();
  for (auto _ : state) {
    state.PauseTiming();
    window.Load(&GeneratedLines());
    edit->SetSelStart(0);
    edit->Replace();
    TReplaceDialog* dialog = TjoRichEdit::SharedReplaceDialog();
    dialog->SetFindText("with some words");
    dialog->SetReplaceText("and other words");
    dialog->SetOptions(TFindOptions{frReplaceAll, frHideUpDown});
    state.ResumeTiming();
    dialog->OnReplace(dialog);
    window.Paint();
  }
  int count = 0;
  for (int from = 0; (from = edit->FindText("and other words", from, edit->GetTextLen(), {})) >= 0; ++from) ++count;
  state.counters["replaced"] = count;
}

// The memory the editor holds with the 5 MB form shown.
void BM_Memory_Generated(benchmark::State& state) {
  TStringList& lines = GeneratedLines();
  for (auto _ : state) {
    state.PauseTiming();
    malloc_trim(0);
    const long long before = RssKb();
    state.ResumeTiming();
    {
      TWindow window;
      window.Load(&lines);
      state.PauseTiming();
      state.counters["editor_MB"] = static_cast<double>(RssKb() - before) / 1024.0;
      state.ResumeTiming();
    }
  }
  state.counters["budget_MB"] = 150;
}

}  // namespace

BENCHMARK(BM_LoadLines_Generated)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(BM_LoadLines_LargestCorpusBinary)->Unit(benchmark::kMillisecond)->MinTime(1);
BENCHMARK(BM_LoadLines_LargestCorpusText)->Unit(benchmark::kMillisecond)->MinTime(1);
BENCHMARK(BM_Keystroke_Middle)->Unit(benchmark::kMillisecond)->MinTime(1);
BENCHMARK(BM_CaretMove)->Unit(benchmark::kMillisecond)->MinTime(1);
BENCHMARK(BM_TreeNodeScroll)->Unit(benchmark::kMillisecond)->MinTime(1);
BENCHMARK(BM_Compile_Generated)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(BM_SearchAgain_NotFound)->Unit(benchmark::kMillisecond)->MinTime(1);
BENCHMARK(BM_FindText_WholeText)->Unit(benchmark::kMillisecond)->MinTime(1);
BENCHMARK(BM_ReplaceAll_20000)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(BM_Memory_Generated)->Unit(benchmark::kMillisecond)->Iterations(1);

int main(int argc, char** argv) {
  if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
  QApplication app(argc, argv);
  Application->Initialize();
  RegisterVclClasses();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
