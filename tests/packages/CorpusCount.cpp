#include "tests/packages/CorpusCount.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Registry.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "platform/vcl/Forms.h"
#include "tests/support/Corpus.h"

#include <algorithm>
#include <cstdio>
#include <regex>
#include <sstream>

namespace lumora::test {

namespace fs = std::filesystem;

std::vector<fs::path> CorpusForms() {
  auto files = CorpusFiles("bin", ".dfm");
  for (const auto& more : {CorpusFiles("pairs", ".bin.dfm"), CorpusFiles("text", ".dfm")})
    files.insert(files.end(), more.begin(), more.end());
  return files;
}

namespace {

bool Registered(const std::string& className) {
  TClass cls = GetClass(className);
  return cls && cls->InheritsFrom(TComponent::StaticClass());
}

// Walks the object lines of a form's text by their indentation: every child counted,
// and whether an unknown class encloses it.
void CountText(const std::string& text, TCorpusCount& count) {
  static const std::regex objectLine(R"(^(\s*)(?:object|inherited|inline)\s+(?:[A-Za-z0-9_]+\s*:\s*)?([A-Za-z0-9_]+))");
  struct TAround {
    std::size_t Indent;
    bool Reachable;  // no unknown class on the way up to the root
  };
  std::vector<TAround> around;
  std::istringstream in(text);
  std::string line;
  bool root = true;
  while (std::getline(in, line)) {
    std::smatch m;
    if (!std::regex_search(line, m, objectLine)) continue;
    const std::size_t indent = m[1].length();
    while (!around.empty() && around.back().Indent >= indent) around.pop_back();
    if (root) {
      root = false;
      around.push_back({indent, true});
      continue;
    }
    const std::string cls = m[2];
    const bool known = Registered(cls);
    const bool reachable = around.empty() || around.back().Reachable;
    ++count.Instances;
    if (known) {
      ++count.Known;
      if (!reachable) ++count.KnownInsideUnknown;
    } else {
      ++count.Missing[cls];
    }
    around.push_back({indent, known && reachable});
  }
}

// The components the reader creates from `stream` in a fresh form.
long CountBuilt(const std::string& stream) {
  long built = 0;
  auto* form = new TForm(Application);
  try {
    ReadComponentFromBinary(form, stream, [&](TReader& reader) {
      reader.OnError = [](TReader*, const std::string&, bool& handled) { handled = true; };
      reader.OnFindMethod = [](TReader*, const std::string&, TMethod& method, bool& error) {
        method = TMethod();
        error = false;
      };
      reader.OnCreateComponent = [&](TReader*, TClass, TComponent*&) { ++built; };
    });
  } catch (const Exception&) {
    // A stream that stops early: what was built before counts.
  }
  delete form;
  return built;
}

}  // namespace

TCorpusCount CountCorpusComponents(const std::vector<fs::path>& files) {
  TCorpusCount count;
  for (const auto& path : files) {
    const std::string data = ReadFileBytes(path);
    std::string stream, text;
    try {
      switch (DetectFormFileFormat(data)) {
        case TFormFileFormat::Resource: stream = data.substr(ReadResHeader(data)); break;
        case TFormFileFormat::Stream: stream = data; break;
        case TFormFileFormat::Text: stream = ObjectTextToBinary(data); break;
        default: continue;
      }
      text = ObjectBinaryToText(stream);
    } catch (const Exception&) {
      continue;  // not a form (the converters' corpus tests say which)
    }
    ++count.Forms;
    CountText(text, count);
    count.Built += CountBuilt(stream);
  }
  return count;
}

std::vector<std::pair<std::string, long>> MostFrequentMissing(const TCorpusCount& count, std::size_t n) {
  std::vector<std::pair<std::string, long>> top(count.Missing.begin(), count.Missing.end());
  std::sort(top.begin(), top.end(),
            [](const auto& a, const auto& b) { return a.second > b.second || (a.second == b.second && a.first < b.first); });
  if (top.size() > n) top.resize(n);
  return top;
}

void PrintCorpusCount(const std::string& title, const TCorpusCount& count) {
  auto percent = [&](long n) { return count.Instances ? 100.0 * static_cast<double>(n) / static_cast<double>(count.Instances) : 0.0; };
  std::printf("  %s: %d forms, %ld child components\n", title.c_str(), count.Forms, count.Instances);
  std::printf("    of a known class: %ld (%.1f%%), %ld of them inside a component of an unknown class\n", count.Known,
              percent(count.Known), count.KnownInsideUnknown);
  std::printf("    built: %ld (%.1f%%)\n", count.Built, percent(count.Built));
  std::printf("    the 20 most frequent classes still missing:");
  for (const auto& [cls, n] : MostFrequentMissing(count, 20)) std::printf(" %s(%ld)", cls.c_str(), n);
  std::printf("\n");
}

}  // namespace lumora::test
