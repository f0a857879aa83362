// The real form files in the editor: every binary form loads, compiles without an edit and
// gives back the very stream it came from; every text form that converts loads and
// compiles; a text broken on some line compiles to the parser's message with the caret
// on that line.
#include "tests/support/Corpus.h"
#include "tests/textedit/EditorTestUtil.h"

#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"

#include <filesystem>

using namespace lumora::test;
namespace fs = std::filesystem;

namespace {

class EditorCorpusTest : public EditorFormTest {
protected:
  void SetUp() override {
    EditorFormTest::SetUp();
    editor = new TjoDFM_ResourceEditor(form);
    editor->SetParent(form);
    editor->SetAlign(alClient);
    editor->SetTreeVisible(true);
    editor->SetReadOnly(false);
    ShowForm();
  }
  // An edit that leaves the text as it was, so that Compile has work to do.
  void TouchText() {
    TStrings* lines = editor->RichEdit()->Lines();
    lines->SetStrings(0, lines->Strings(0));
  }
  TjoDFM_ResourceEditor* editor = nullptr;
};

TEST_F(EditorCorpusTest, EveryBinaryFormCompilesWithoutAnEditToTheStreamItCameFrom) {
  LUMORA_REQUIRE_CORPUS();
  std::vector<fs::path> files = CorpusFiles("bin");
  for (const fs::path& p : CorpusFiles("pairs", ".bin.dfm")) files.push_back(p);
  ASSERT_GT(files.size(), 2000u);
  TStringList lines;
  int compiled = 0;
  for (const fs::path& file : files) {
    SCOPED_TRACE(file.string());
    const std::string bytes = ReadFileBytes(file);
    const std::string stream = bytes.substr(ReadResHeader(bytes));
    const std::string text = ObjectBinaryToText(stream);
    lines.SetText(text);
    editor->LoadLines(&lines, stream);
    ASSERT_EQ(editor->RichEdit()->Lines()->Text(), text);
    ASSERT_FALSE(editor->Modified());
    ASSERT_GT(editor->Tree()->Items()->Count(), 0);
    TouchText();
    ASSERT_FALSE(editor->Compiled());
    ASSERT_TRUE(editor->Compile());
    ASSERT_EQ(editor->SourceStream(), stream);
    ASSERT_EQ(editor->RichEdit()->Lines()->Text(), text);
    ++compiled;
  }
  EXPECT_EQ(compiled, static_cast<int>(files.size()));
}

TEST_F(EditorCorpusTest, EveryTextFormThatConvertsLoadsAndCompiles) {
  LUMORA_REQUIRE_CORPUS();
  const std::vector<fs::path> files = CorpusFiles("text");
  ASSERT_GT(files.size(), 1000u);
  TStringList lines;
  int compiled = 0;
  int refused = 0;
  for (const fs::path& file : files) {
    SCOPED_TRACE(file.string());
    const std::string bytes = ReadFileBytes(file);
    lines.SetText(bytes);
    std::string expected;
    try {
      expected = ObjectTextToBinary(lines.Text());
    } catch (const Exception&) {
      ++refused;  // the converters' own tests say why
      continue;
    }
    editor->LoadLines(&lines);
    ASSERT_EQ(editor->RichEdit()->Lines()->Text(), lines.Text());
    TouchText();
    ASSERT_TRUE(editor->Compile());
    ASSERT_EQ(editor->SourceStream(), expected);
    ASSERT_EQ(editor->RichEdit()->Lines()->Text(), ObjectBinaryToText(expected));
    ++compiled;
  }
  EXPECT_GT(compiled, 1000);
  EXPECT_LT(refused, 20);
}

TEST_F(EditorCorpusTest, ATextBrokenOnALineCompilesToTheParsersMessageWithTheCaretThere) {
  LUMORA_REQUIRE_CORPUS();
  const std::string bytes = ReadFileBytes(CorpusDir() / "text" / "2996.dfm");
  TStringList lines;
  lines.SetText(bytes);
  // The first property line somewhere down loses its "=".
  int broken = -1;
  for (int i = lines.Count() / 2; i < lines.Count() && broken < 0; ++i) {
    const std::string line = lines.Strings(i);
    const std::size_t eq = line.find(" = ");
    if (eq != std::string::npos && line.find('\'') == std::string::npos) {
      lines.SetStrings(i, line.substr(0, eq) + " " + line.substr(eq + 3));
      broken = i;
    }
  }
  ASSERT_GT(broken, 0);
  editor->LoadLines(&lines);
  TouchText();
  try {
    editor->Compile();
    FAIL() << "the broken text compiled";
  } catch (const EParserError& e) {
    EXPECT_NE(e.Message().find(" on line " + std::to_string(broken + 1)), std::string::npos) << e.Message();
  }
  EXPECT_EQ(editor->RichEdit()->LineFromChar(editor->RichEdit()->SelStart()), broken);
  EXPECT_EQ(editor->RichEdit()->Lines()->Text(), lines.Text());
  EXPECT_TRUE(editor->Modified());
  EXPECT_FALSE(editor->Compiled());
}

}  // namespace
