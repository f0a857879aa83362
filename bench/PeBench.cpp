// Forms inside a compiled program: listing the forms of a 5 MB program (read from disk,
// headers and resource tree, each form's root name and class) and extracting all of its
// forms as text, against the converter alone on the same streams. The program is made
// here: the real binary forms of the corpus (or generated ones without it) as RCDATA
// resources, and pictures of random bytes up to 5 MB, as a Delphi program carries them.
// The budget: listing under 5 ms; extracting at the converter's speed.

#include "platform/streaming/ObjectText.h"
#include "platform/streaming/PeImage.h"
#include "platform/streaming/ResHeader.h"
#include "platform/streaming/SaveFile.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/Values.h"
#include "tests/support/PeBuilder.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t ProgramSize = 5 * 1024 * 1024;
constexpr std::size_t FormBytes = 2 * 1024 * 1024;  // of which forms

// Binary form streams: the corpus's, else generated ones.
std::vector<std::string> FormStreams() {
  std::vector<std::string> streams;
  std::size_t total = 0;
  const fs::path bin = fs::path(LUMORA_CORPUS_DIR) / "bin";
  std::error_code ec;
  if (fs::is_directory(bin, ec)) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(bin, ec))
      if (entry.path().extension() == ".dfm") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const fs::path& file : files) {
      if (total >= FormBytes) break;
      const std::string data = ReadFileToString(file.string());
      try {
        std::string stream = data.substr(ReadResHeader(data));
        ObjectBinaryToText(stream);
        total += stream.size();
        streams.push_back(std::move(stream));
      } catch (const Exception&) {
      }
    }
  }
  for (int i = 0; total < FormBytes; ++i) {
    std::string text = "object Form" + std::to_string(i) + ": TForm" + std::to_string(i) + "\r\n  Caption = 'Form'\r\n";
    for (int j = 0; j < 200; ++j)
      text += "  object Button" + std::to_string(j) + ": TButton\r\n    Left = " + std::to_string(j * 8) +
              "\r\n    Top = 16\r\n    Caption = 'Button " + std::to_string(j) + "'\r\n  end\r\n";
    text += "end\r\n";
    streams.push_back(ObjectTextToBinary(text));
    total += streams.back().size();
  }
  return streams;
}

struct TProgram {
  std::string Path;
  std::string Bytes;
  std::size_t Forms = 0;
  std::size_t FormBytes = 0;
};

const TProgram& Program() {
  static const TProgram program = [] {
    std::vector<lumora::test::TBuiltResource> resources;
    std::set<std::string> names;
    TProgram p;
    for (std::string& stream : FormStreams()) {
      std::string name = UpperCase(StreamRootClassName(stream));
      for (int n = 2; !names.insert(name).second; ++n) name = UpperCase(StreamRootClassName(stream)) + std::to_string(n);
      p.FormBytes += stream.size();
      ++p.Forms;
      resources.push_back({"#10", name, 0, std::move(stream)});
    }
    std::mt19937 random(5);
    std::size_t size = p.FormBytes;
    for (int i = 0; size < ProgramSize - 64 * 1024; ++i) {
      // Glyphs, icons and pictures of 1 to 8 KB: several hundred resources in the tree.
      std::string picture(std::min<std::size_t>(1024 + random() % (7 * 1024), ProgramSize - 64 * 1024 - size), '\0');
      for (char& c : picture) c = static_cast<char>(random());
      size += picture.size();
      resources.push_back({"#2", "BITMAP" + std::to_string(i), 0x409, std::move(picture)});
    }
    p.Bytes = lumora::test::BuildPeImage(resources).Bytes;
    p.Path = (fs::temp_directory_path() / ("lumora-pe-bench-" + std::to_string(::getpid()) + ".exe")).string();
    SaveFile(p.Path, p.Bytes);
    return p;
  }();
  return program;
}

// What a listing shows of one form: the resource name, the root's name and class, the size.
struct TListed {
  std::string Resource, Name, ClassName;
  std::size_t Size;
};

std::vector<TListed> ListForms(std::string_view bytes) {
  const TPeImage image(bytes);
  std::vector<TListed> listed;
  for (const TPeResource* form : image.Forms()) {
    TValueReader reader(form->Bytes());
    reader.ReadSignature();
    TFilerFlags flags;
    std::int32_t childPos;
    std::string_view className, name;
    reader.ReadComponentHeader(flags, childPos, className, name);
    listed.push_back({form->Name.Text(), std::string(name), std::string(className), form->Data.size()});
  }
  return listed;
}

void BM_ListFormsOfA5MBProgramFromDisk(benchmark::State& state) {
  const TProgram& program = Program();
  std::size_t forms = 0;
  for (auto _ : state) {
    const std::string bytes = ReadFileToString(program.Path);
    forms = ListForms(bytes).size();
    benchmark::DoNotOptimize(forms);
  }
  if (forms != program.Forms) state.SkipWithError("not every form was listed");
  state.counters["program_MB"] = static_cast<double>(program.Bytes.size()) / 1e6;
  state.counters["forms"] = static_cast<double>(forms);
  state.counters["resources"] = static_cast<double>(TPeImage(program.Bytes).Resources().size());
}

void BM_ListFormsOfA5MBProgramInMemory(benchmark::State& state) {
  const TProgram& program = Program();
  std::size_t forms = 0;
  for (auto _ : state) {
    forms = ListForms(program.Bytes).size();
    benchmark::DoNotOptimize(forms);
  }
  if (forms != program.Forms) state.SkipWithError("not every form was listed");
  state.counters["forms"] = static_cast<double>(forms);
}

// MB/s counts the form streams' bytes, as the converter's figure does.
void BM_ExtractAllFormsAsText(benchmark::State& state) {
  const TProgram& program = Program();
  std::size_t text = 0;
  for (auto _ : state) {
    const TPeImage image(program.Bytes);
    text = 0;
    for (const TPeResource* form : image.Forms()) text += ObjectBinaryToText(form->Bytes()).size();
    benchmark::DoNotOptimize(text);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(program.FormBytes));
  state.counters["forms_MB"] = static_cast<double>(program.FormBytes) / 1e6;
  state.counters["text_MB"] = static_cast<double>(text) / 1e6;
}

// The converter alone on the same streams, already apart.
void BM_ConverterAloneOnTheSameForms(benchmark::State& state) {
  const TProgram& program = Program();
  const TPeImage image(program.Bytes);
  std::vector<std::string> streams;
  for (const TPeResource* form : image.Forms()) streams.emplace_back(form->Bytes());
  for (auto _ : state) {
    std::size_t text = 0;
    for (const std::string& stream : streams) text += ObjectBinaryToText(stream).size();
    benchmark::DoNotOptimize(text);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(program.FormBytes));
}

}  // namespace

BENCHMARK(BM_ListFormsOfA5MBProgramFromDisk)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_ListFormsOfA5MBProgramInMemory)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_ExtractAllFormsAsText)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_ConverterAloneOnTheSameForms)->Unit(benchmark::kMillisecond)->MinTime(1.0);

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  std::error_code ec;
  fs::remove(fs::path(fs::temp_directory_path() / ("lumora-pe-bench-" + std::to_string(::getpid()) + ".exe")), ec);
  return 0;
}
