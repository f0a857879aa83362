// Every real form file read into a root while the class registry knows no classes:
// each child is skipped with "Class ... not found", reading never crashes, and the
// root's own known properties are set from the stream.

#include "platform/rtti/Classes.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "platform/streaming/Values.h"
#include "tests/support/Corpus.h"

#include <gtest/gtest.h>

#include <map>

namespace {

// A root with a few properties every form has.
class TCorpusRoot : public TComponent {
  LUMORA_CLASS(TCorpusRoot, TComponent)
public:
  explicit TCorpusRoot(TComponent* owner) : TComponent(owner) {}
  std::map<std::string, std::int64_t> Ints;
  std::string Caption;
  int LoadedCalls = 0;
  void Loaded() override {
    TComponent::Loaded();
    ++LoadedCalls;
  }
};

const char* const IntNames[] = {"Left", "Top", "Width", "Height", "ClientWidth", "ClientHeight"};

}  // namespace

LUMORA_CLASS_IMPL(TCorpusRoot) {
  for (const char* name : IntNames)
    c.Property(
        name, [n = std::string(name)](TCorpusRoot* r) { return static_cast<int>(r->Ints[n]); },
        [n = std::string(name)](TCorpusRoot* r, int v) { r->Ints[n] = v; });
  c.Property("Caption", &TCorpusRoot::Caption, &TCorpusRoot::Caption);
}

namespace {

struct Expected {
  std::string RootName;
  std::map<std::string, std::int64_t> Ints;
  bool HasCaption = false;
  std::string Caption;
  std::vector<std::string> ChildClassErrors;
};

// What the stream says, found with the plain value reader.
Expected Scan(std::string_view stream) {
  Expected e;
  TValueReader r(stream);
  r.ReadSignature();
  TFilerFlags flags;
  std::int32_t pos;
  std::string_view cls, name;
  r.ReadComponentHeader(flags, pos, cls, name);
  e.RootName = std::string(name);
  while (!r.EndOfList()) {
    const std::string prop(r.ReadShortString());
    const TValueType next = r.NextValue();
    bool known = false;
    for (const char* n : IntNames)
      if (prop == n && (next == vaInt8 || next == vaInt16 || next == vaInt32)) {
        e.Ints[prop] = r.ReadInteger();
        known = true;
      }
    if (!known && prop == "Caption" && (next == vaString || next == vaLString || next == vaWString || next == vaUTF8String)) {
      e.Caption = r.ReadString();
      e.HasCaption = true;
      known = true;
    }
    if (!known) r.SkipValue();
  }
  r.ReadListEnd();
  while (!r.EndOfList()) {
    const std::size_t start = r.Position();
    r.ReadComponentHeader(flags, pos, cls, name);
    e.ChildClassErrors.push_back("Class " + std::string(cls) + " not found");
    r.SetPosition(start);
    r.SkipComponent();
  }
  return e;
}

// Reads a stream as the live view does and checks what a user would see.
void CheckStream(const std::string& label, std::string_view stream, int& forms, int& children) {
  const Expected expected = Scan(stream);
  TCorpusRoot root(nullptr);
  std::vector<std::string> classErrors;
  std::vector<std::string> otherErrors;
  ReadComponentFromBinary(&root, stream, [&](TReader& r) {
    r.OnError = [&](TReader*, const std::string& message, bool& handled) {
      (message.rfind("Class ", 0) == 0 ? classErrors : otherErrors).push_back(message);
      handled = true;
    };
    r.OnFindMethod = [](TReader*, const std::string&, TMethod& method, bool& error) {
      method = TMethod{};
      error = false;
    };
  });
  ++forms;
  children += static_cast<int>(classErrors.size());
  EXPECT_EQ(classErrors, expected.ChildClassErrors) << label;
  EXPECT_EQ(root.ComponentCount(), 0) << label;
  EXPECT_EQ(root.LoadedCalls, 1) << label;
  if (IsValidIdent(expected.RootName) || expected.RootName.empty()) {
    EXPECT_EQ(root.Name(), expected.RootName) << label;
  }
  for (const auto& [name, value] : expected.Ints) EXPECT_EQ(root.Ints[name], value) << label << " " << name;
  if (expected.HasCaption) {
    EXPECT_EQ(root.Caption, expected.Caption) << label;
  }
  for (const std::string& m : otherErrors)
    EXPECT_TRUE(m.rfind("Error reading " + expected.RootName + ".", 0) == 0 || m.find("is not a valid component name") != std::string::npos)
        << label << ": " << m;
}

}  // namespace

TEST(ReaderCorpusTest, EveryBinaryFormWithNoClassesRegistered) {
  LUMORA_REQUIRE_CORPUS();
  ASSERT_TRUE(RegisteredClasses().empty());
  int forms = 0, children = 0;
  auto files = lumora::test::CorpusFiles("bin");
  const auto pairs = lumora::test::CorpusFiles("pairs", ".bin.dfm");
  files.insert(files.end(), pairs.begin(), pairs.end());
  for (const auto& path : files) {
    const std::string data = lumora::test::ReadFileBytes(path);
    const std::string_view stream = std::string_view(data).substr(ReadResHeader(data));
    try {
      CheckStream(path.filename().string(), stream, forms, children);
    } catch (const std::exception& e) {
      ADD_FAILURE() << path.filename().string() << ": " << e.what();
    }
  }
  EXPECT_EQ(forms, static_cast<int>(files.size()));
  EXPECT_GT(children, forms);
  std::printf("%d binary forms read, %d children skipped as unknown classes\n", forms, children);
}

TEST(ReaderCorpusTest, EveryTextFormConvertedAndRead) {
  LUMORA_REQUIRE_CORPUS();
  int forms = 0, children = 0, notForms = 0;
  for (const auto& path : lumora::test::CorpusFiles("text")) {
    std::string binary;
    try {
      binary = ObjectTextToBinary(lumora::test::ReadFileBytes(path));
    } catch (const EParserError&) {
      ++notForms;  // a template with placeholders, not a form
      continue;
    }
    try {
      CheckStream(path.filename().string(), binary, forms, children);
    } catch (const std::exception& e) {
      ADD_FAILURE() << path.filename().string() << ": " << e.what();
    }
  }
  EXPECT_GT(forms, 1000);
  EXPECT_LE(notForms, 2);
}

TEST(ReaderCorpusTest, DamagedFilesGiveAnErrorOrAFormNeverACrash) {
  LUMORA_REQUIRE_CORPUS();
  int raised = 0, read = 0;
  for (const auto& path : lumora::test::CorpusFiles("broken")) {
    const std::string data = lumora::test::ReadFileBytes(path);
    TCorpusRoot root(nullptr);
    try {
      const std::string_view stream = std::string_view(data).substr(ReadResHeader(data));
      ReadComponentFromBinary(&root, stream, [](TReader& r) {
        r.OnError = [](TReader*, const std::string&, bool& handled) { handled = true; };
      });
      ++read;
    } catch (const Exception& e) {
      EXPECT_FALSE(e.Message().empty()) << path.filename().string();
      ++raised;
    }
    EXPECT_FALSE(root.ComponentState().Contains(csLoading)) << path.filename().string();
  }
  EXPECT_GT(raised, 0);
  std::printf("%d damaged files refused with a message, %d readable\n", raised, read);
}
