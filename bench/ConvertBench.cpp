// Speed and memory of the form converters: a generated form of 20,000 small
// components, one holding 8 MB of picture data, and the largest real files.
// Prints MB/s of input for each direction and the peak heap of one conversion
// against the budget of twice the input plus the output (and, with LUMORA_BENCH_COLD=1,
// the peak resident memory against the same budget).

#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/Values.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <malloc.h>
#include <map>
#include <new>
#include <random>

// Live heap bytes and their peak, to measure one conversion's memory.
static std::atomic<long long> HeapNow{0};
static std::atomic<long long> HeapPeak{0};

static void* CountedAlloc(std::size_t size) {
  void* p = std::malloc(size ? size : 1);
  if (!p) throw std::bad_alloc();
  const long long now = HeapNow.fetch_add(static_cast<long long>(malloc_usable_size(p))) +
                        static_cast<long long>(malloc_usable_size(p));
  long long peak = HeapPeak.load();
  while (now > peak && !HeapPeak.compare_exchange_weak(peak, now)) {
  }
  return p;
}
static void CountedFree(void* p) {
  if (!p) return;
  HeapNow.fetch_sub(static_cast<long long>(malloc_usable_size(p)));
  std::free(p);
}

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif
void* operator new(std::size_t size) { return CountedAlloc(size); }
void* operator new[](std::size_t size) { return CountedAlloc(size); }
void operator delete(void* p) noexcept { CountedFree(p); }
void operator delete[](void* p) noexcept { CountedFree(p); }
void operator delete(void* p, std::size_t) noexcept { CountedFree(p); }
void operator delete[](void* p, std::size_t) noexcept { CountedFree(p); }

namespace {

// With LUMORA_BENCH_COLD set, large blocks always come from and go back to the system:
// every conversion pays for fresh pages, as a program's first conversion does, and the
// resident memory measured around one conversion is that conversion's. Without it the
// allocator recycles memory between runs, as in a program that converts again and again.
const bool FixedMmapThreshold = std::getenv("LUMORA_BENCH_COLD") && mallopt(M_MMAP_THRESHOLD, 128 * 1024) == 1;

// 20,000 small components of the kinds a real form has, about 5 MB as text.
std::string ComponentHeavyStream() {
  std::string out;
  TValueWriter w(out);
  w.WriteSignature();
  w.WriteComponentHeader(0, -1, "TForm1", "Form1");
  for (const auto& [name, value] : {std::pair<const char*, int>{"Left", 192}, {"Top", 107}, {"Width", 1200}, {"Height", 900}}) {
    w.WriteShortString(name);
    w.WriteInteger(value);
  }
  w.WriteShortString("Caption");
  w.WriteString("A form with twenty thousand components");
  w.WriteListEnd();
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    const std::string n = std::to_string(i);
    switch (i % 4) {
      case 0: {
        w.WriteComponentHeader(0, -1, "TButton", "Button" + n);
        break;
      }
      case 1: w.WriteComponentHeader(0, -1, "TLabel", "Label" + n); break;
      case 2: w.WriteComponentHeader(0, -1, "TEdit", "Edit" + n); break;
      default: w.WriteComponentHeader(ffInherited, -1, "TCheckBox", "CheckBox" + n); break;
    }
    w.WriteShortString("Left");
    w.WriteInteger(static_cast<int>(random() % 1000));
    w.WriteShortString("Top");
    w.WriteInteger(static_cast<int>(random() % 30000));
    w.WriteShortString("Width");
    w.WriteInteger(75);
    w.WriteShortString("Height");
    w.WriteInteger(25);
    w.WriteShortString("Caption");
    w.WriteString("Caption of item " + n);
    w.WriteShortString("Font.Charset");
    w.WriteIdent("DEFAULT_CHARSET");
    w.WriteShortString("Font.Color");
    w.WriteIdent("clWindowText");
    w.WriteShortString("Font.Height");
    w.WriteInteger(-11);
    w.WriteShortString("Font.Name");
    w.WriteString("MS Sans Serif");
    w.WriteShortString("Font.Style");
    w.WriteSetBegin();
    if (i % 3 == 0) w.WriteSetElement("fsBold");
    w.WriteSetEnd();
    w.WriteShortString("ParentFont");
    w.WriteBoolean(false);
    w.WriteShortString("TabOrder");
    w.WriteInteger(i % 200);
    if (i % 2 == 0) {
      w.WriteShortString("OnClick");
      w.WriteIdent("Button" + n + "Click");
    }
    if (i % 10 == 0) {
      w.WriteShortString("Hint");
      w.WriteString("A hint long enough to be split over two lines of form text: '" + n + "' and some more words");
    }
    w.WriteListEnd();
    w.WriteListEnd();
  }
  w.WriteListEnd();
  return out;
}

// A few images holding 8 MB of picture data between them.
std::string DataHeavyStream() {
  std::string out;
  TValueWriter w(out);
  w.WriteSignature();
  w.WriteComponentHeader(0, -1, "TForm1", "Form1");
  w.WriteListEnd();
  std::mt19937 random(11);
  for (int i = 0; i < 8; ++i) {
    w.WriteComponentHeader(0, -1, "TImage", "Image" + std::to_string(i));
    w.WriteShortString("Left");
    w.WriteInteger(8);
    w.WriteShortString("Picture.Data");
    std::string data = "\x07TBitmap";
    data.resize(1024 * 1024);
    for (std::size_t k = 8; k < data.size(); ++k) data[k] = static_cast<char>(random() & 0xFF);
    w.WriteBinary(data);
    w.WriteListEnd();
    w.WriteListEnd();
  }
  w.WriteListEnd();
  return out;
}

// The largest file of a corpus folder, or empty.
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

struct TInputs {
  std::string componentsBinary, componentsText, dataBinary, dataText, corpusBinary, corpusBinaryText, corpusText;
};

const TInputs& Inputs() {
  static const TInputs inputs = [] {
    TInputs in;
    in.componentsBinary = ComponentHeavyStream();
    in.componentsText = ObjectBinaryToText(in.componentsBinary);
    in.dataBinary = DataHeavyStream();
    in.dataText = ObjectBinaryToText(in.dataBinary);
    const std::string resource = LargestCorpusFile("bin");
    if (!resource.empty()) {
      in.corpusBinary = resource.substr(ReadResHeader(resource));
      in.corpusBinaryText = ObjectBinaryToText(in.corpusBinary);
    }
    in.corpusText = LargestCorpusFile("text");
    return in;
  }();
  return inputs;
}

// A line of /proc/self/status in kB ("VmRSS", "VmHWM"), or -1.
long long StatusKb(const char* field) {
  std::FILE* f = std::fopen("/proc/self/status", "r");
  if (!f) return -1;
  char line[256];
  long long value = -1;
  const std::size_t n = std::strlen(field);
  while (std::fgets(line, sizeof line, f)) {
    if (std::strncmp(line, field, n) == 0 && line[n] == ':') value = std::atoll(line + n + 1);
  }
  std::fclose(f);
  return value;
}

// Resets the process's peak resident size to its current size.
bool ResetPeakRss() {
  std::FILE* f = std::fopen("/proc/self/clear_refs", "w");
  if (!f) return false;
  const bool ok = std::fputs("5", f) >= 0;
  return std::fclose(f) == 0 && ok;
}

// Peak of one conversion, in MB and as a share of the budget (2 x input + output):
// heap bytes allocated (reserved room included) and resident memory actually touched.
template <class F>
void ReportMemory(benchmark::State& state, std::size_t inputSize, F&& convert) {
  const bool rss = FixedMmapThreshold && ResetPeakRss();
  const long long rssBefore = StatusKb("VmRSS");
  const long long before = HeapNow.load();
  HeapPeak = before;
  const std::string output = convert();
  const long long peak = HeapPeak.load() - before;
  if (rss && rssBefore >= 0) {
    const double touched = static_cast<double>(StatusKb("VmHWM") - rssBefore) * 1024.0 + static_cast<double>(inputSize);
    state.counters["rss_MB"] = touched / 1e6;
    state.counters["rss/budget"] =
        touched / (2.0 * static_cast<double>(inputSize) + static_cast<double>(output.size()));
  }
  // The input is held by the caller throughout; count it as the budget does.
  const double used = static_cast<double>(peak) + static_cast<double>(inputSize);
  const double budget = 2.0 * static_cast<double>(inputSize) + static_cast<double>(output.size());
  state.counters["in_MB"] = static_cast<double>(inputSize) / 1e6;
  state.counters["out_MB"] = static_cast<double>(output.size()) / 1e6;
  state.counters["heap_MB"] = used / 1e6;
  state.counters["heap/budget"] = used / budget;
}

void Run(benchmark::State& state, const std::string& input, bool toText) {
  if (input.empty()) {
    state.SkipWithError("input not available (no corpus)");
    return;
  }
  auto convert = [&] { return toText ? ObjectBinaryToText(input) : ObjectTextToBinary(input); };
  for (auto _ : state) {
    std::string out = convert();
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(input.size()));
  ReportMemory(state, input.size(), convert);
}

void BM_BinaryToText_Components(benchmark::State& s) { Run(s, Inputs().componentsBinary, true); }
void BM_TextToBinary_Components(benchmark::State& s) { Run(s, Inputs().componentsText, false); }
void BM_BinaryToText_PictureData(benchmark::State& s) { Run(s, Inputs().dataBinary, true); }
void BM_TextToBinary_PictureData(benchmark::State& s) { Run(s, Inputs().dataText, false); }
void BM_BinaryToText_LargestCorpusBinary(benchmark::State& s) { Run(s, Inputs().corpusBinary, true); }
void BM_TextToBinary_LargestCorpusBinaryAsText(benchmark::State& s) { Run(s, Inputs().corpusBinaryText, false); }
void BM_TextToBinary_LargestCorpusText(benchmark::State& s) { Run(s, Inputs().corpusText, false); }

BENCHMARK(BM_BinaryToText_Components)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_TextToBinary_Components)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_BinaryToText_PictureData)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_TextToBinary_PictureData)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_BinaryToText_LargestCorpusBinary)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_TextToBinary_LargestCorpusBinaryAsText)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(BM_TextToBinary_LargestCorpusText)->Unit(benchmark::kMillisecond)->MinTime(1.0);

}  // namespace

BENCHMARK_MAIN();
