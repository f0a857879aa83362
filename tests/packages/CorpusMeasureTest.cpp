// How much of the real form files the packages Lumora ships can build: every form of the
// corpus is read with every shipped package loaded; the child components built are
// counted against those whose class no package registers (and those skipped inside them).
// Prints the figure and the 20 classes most often missing.
#include "liveform/PackConfig.h"

#include "platform/rtti/Reader.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Forms.h"
#include "tests/support/TempDir.h"
#include "tests/support/Corpus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <regex>
#include <sstream>

namespace {

// The number of child objects a form text declares (every object line but the root's).
int ChildObjects(const std::string& text) {
  static const std::regex objectLine(R"(^\s*(object|inherited|inline)\s+[^\s]+)");
  std::istringstream in(text);
  std::string line;
  int objects = 0;
  while (std::getline(in, line))
    if (std::regex_search(line, objectLine)) ++objects;
  return std::max(0, objects - 1);
}

}  // namespace

TEST(CorpusMeasureTest, ComponentsTheShippedPackagesBuild) {
  LUMORA_REQUIRE_CORPUS();
  Application->Initialize();
  lumora::test::TTempDir dir;
  SetPackagesIniFile(dir / "lumora.ini");
  SetUserQuestionHook([](const TUserQuestion& q) {
    ADD_FAILURE() << q.Text;
    return mrOk;
  });
  Loader()->SetRootDir(LUMORA_BINARY_DIR);
  Loader()->SetKnownPackagesFile(LUMORA_BINARY_DIR "/bin/known-packages");
  const int loaded = LoadKnownPackages();
  ASSERT_GE(loaded, 1);

  auto files = lumora::test::CorpusFiles("bin", ".dfm");
  const auto text = lumora::test::CorpusFiles("text", ".dfm");
  const auto pairs = lumora::test::CorpusFiles("pairs", ".bin.dfm");
  files.insert(files.end(), text.begin(), text.end());
  files.insert(files.end(), pairs.begin(), pairs.end());
  ASSERT_GT(files.size(), 3000u);

  long total = 0, built = 0, missing = 0;
  int forms = 0;
  std::map<std::string, long> missingByClass;
  static const std::regex notFound(R"(^Class (\S+) not found$)");
  for (const auto& path : files) {
    const std::string data = lumora::test::ReadFileBytes(path);
    std::string stream, formText;
    try {
      switch (DetectFormFileFormat(data)) {
        case TFormFileFormat::Resource: stream = data.substr(ReadResHeader(data)); break;
        case TFormFileFormat::Stream: stream = data; break;
        case TFormFileFormat::Text: stream = ObjectTextToBinary(data); break;
        default: continue;
      }
      formText = ObjectBinaryToText(stream);
    } catch (const Exception&) {
      continue;  // not a form (the corpus's own tests say which)
    }
    ++forms;
    total += ChildObjects(formText);
    auto* form = new TForm(Application);
    try {
      ReadComponentFromBinary(form, stream, [&](TReader& reader) {
        reader.OnError = [&](TReader*, const std::string& message, bool& handled) {
          std::smatch m;
          if (std::regex_match(message, m, notFound)) {
            ++missing;
            ++missingByClass[m[1]];
          }
          handled = true;
        };
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
  }
  std::vector<std::pair<std::string, long>> top(missingByClass.begin(), missingByClass.end());
  std::sort(top.begin(), top.end(), [](const auto& a, const auto& b) { return a.second > b.second || (a.second == b.second && a.first < b.first); });
  std::printf("  %d forms, %ld child components: %ld built (%.1f%%), %ld of a class no package registers, %ld inside those\n",
              forms, total, built, total ? 100.0 * built / total : 0.0, missing, total - built - missing);
  std::printf("  most often missing:");
  for (std::size_t i = 0; i < top.size() && i < 20; ++i) std::printf(" %s(%ld)", top[i].first.c_str(), top[i].second);
  std::printf("\n");
  EXPECT_GT(forms, 3000);
  EXPECT_GE(total, built + missing);

  SetUserQuestionHook({});
  Loader()->SetDirty(false);
  FinalizePackConfig();
  SetPackagesIniFile("");
}
