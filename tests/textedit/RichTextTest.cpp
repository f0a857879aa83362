// The form text saved as rich text, read back by a real RTF reader (unrtf): the same text,
// the keywords bold, the characters of the text's code page kept.
#include "tests/support/Corpus.h"
#include "tests/textedit/EditorTestUtil.h"

#include "platform/streaming/ObjectText.h"
#include "platform/vcl/Charsets.h"
#include "tests/support/TempDir.h"

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTextDocument>

using namespace lumora::test;

namespace {

class RichTextTest : public EditorFormTest {
protected:
  void SetUp() override {
    EditorFormTest::SetUp();
    editor = new TjoDFM_ResourceEditor(form);
    editor->SetParent(form);
    editor->SetAlign(alClient);
  }
  // Saves the lines as the "RTF file" command does, and returns the file's bytes.
  std::string SaveRtf() {
    const std::string file = dir / "form.rtf";
    TjoRichEdit* edit = editor->RichEdit();
    const bool plain = edit->PlainText();
    edit->SetPlainText(false);
    edit->Lines()->SaveToFile(file);
    edit->SetPlainText(plain);
    return ReadFileBytes(file);
  }
  // unrtf's HTML rendering of the saved file.
  QString ReadBack() {
    const QString unrtf = QStandardPaths::findExecutable(QStringLiteral("unrtf"));
    if (unrtf.isEmpty()) {
      ADD_FAILURE() << "unrtf is missing: scripts/setup.sh installs it";
      return {};
    }
    QProcess process;
    process.start(unrtf, {QStringLiteral("--html"), QString::fromStdString(dir / "form.rtf")});
    EXPECT_TRUE(process.waitForFinished(30000));
    return QString::fromUtf8(process.readAllStandardOutput());
  }
  // The words the reader shows bold, in order.
  static std::vector<std::string> BoldWords(const QString& html) {
    std::vector<std::string> words;
    QRegularExpression bold(QStringLiteral("<b>(.*?)</b>"));
    for (auto it = bold.globalMatch(html); it.hasNext();) words.push_back(it.next().captured(1).toStdString());
    return words;
  }
  // The text the reader shows, line by line, blanks run together (the reader's own habit).
  static std::vector<QString> ShownLines(const QString& html) {
    QTextDocument doc;
    doc.setHtml(html);
    std::vector<QString> lines;
    for (const QString& line : doc.toPlainText().split(QRegularExpression(QStringLiteral("[\\n\\x{2028}\\x{2029}]"))))
      lines.push_back(line.simplified());
    while (!lines.empty() && lines.back().isEmpty()) lines.pop_back();
    return lines;
  }
  std::vector<QString> ExpectedLines() const {
    std::vector<QString> lines;
    TStrings* text = editor->RichEdit()->Lines();
    for (int i = 0; i < text->Count(); ++i)
      lines.push_back(AnsiToUnicode(text->Strings(i), editor->FontEditor()->Charset()).simplified());
    return lines;
  }
  // The keyword of each line that has one, by the emphasis rule.
  std::vector<std::string> ExpectedBold() const {
    std::vector<std::string> words;
    TStrings* text = editor->RichEdit()->Lines();
    for (int i = 0; i < text->Count(); ++i) {
      const std::string line = text->Strings(i);
      const std::size_t first = line.find_first_not_of(' ');
      if (first == std::string::npos) continue;
      for (const char* keyword : {"object", "end", "item", "inherited"}) {
        const std::string k(keyword);
        if (line.compare(first, k.size(), k) != 0) continue;
        const std::size_t after = first + k.size();
        if (after == line.size() || line[after] == ' ' || line[after] == '>') {
          words.push_back(k);
          break;
        }
      }
    }
    return words;
  }
  TjoDFM_ResourceEditor* editor = nullptr;
  TTempDir dir;
};

std::vector<std::string> LinesOf(TStrings& list) {
  std::vector<std::string> lines;
  for (int i = 0; i < list.Count(); ++i) lines.push_back(list.Strings(i));
  return lines;
}

// Our own reading of the RTF we write: the bytes of each line.
std::vector<std::string> BytesOfRtf(const std::string& rtf) {
  std::vector<std::string> lines(1);
  const std::size_t body = rtf.find("\\fs");
  std::size_t i = rtf.find(' ', body) + 1;
  while (i < rtf.size()) {
    const char c = rtf[i];
    if (c == '}') break;
    if (c == '\r' || c == '\n') {
      ++i;
      continue;
    }
    if (c != '\\') {
      lines.back() += c;
      ++i;
      continue;
    }
    const char next = rtf[i + 1];
    if (next == '\\' || next == '{' || next == '}') {
      lines.back() += next;
      i += 2;
    } else if (next == '\'') {
      lines.back() += static_cast<char>(std::stoi(rtf.substr(i + 2, 2), nullptr, 16));
      i += 4;
    } else {
      std::size_t end = i + 1;
      while (end < rtf.size() && std::isalnum(static_cast<unsigned char>(rtf[end]))) ++end;
      const std::string word = rtf.substr(i + 1, end - i - 1);
      if (end < rtf.size() && rtf[end] == ' ') ++end;
      if (word == "par") lines.emplace_back();
      if (word == "tab") lines.back() += '\t';
      i = end;
    }
  }
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

TEST_F(RichTextTest, TheReaderShowsTheSameTextWithTheKeywordsBold) {
  TStringList lines;
  lines.SetText("object Form1: TForm1\r\n"
                "  Caption = '\xC9t\xE9 \x80 \x93quoted\x94 {braces} back\\slash'\r\n"
                "  object Panel1: TPanel\r\n"
                "    Items = <\r\n"
                "      item\r\n"
                "        Width = 3\r\n"
                "      end>\r\n"
                "    Object Lower: TLabel\r\n"
                "    end\r\n"
                "  end\r\n"
                "end\r\n");
  editor->LoadLines(&lines);
  const std::string rtf = SaveRtf();
  EXPECT_EQ(rtf.rfind("{\\rtf1\\ansi\\ansicpg1252", 0), 0u);
  EXPECT_NE(rtf.find("\\fcharset0 Courier New;"), std::string::npos);
  EXPECT_NE(rtf.find("\\fs22"), std::string::npos);
  EXPECT_EQ(BytesOfRtf(rtf), LinesOf(lines));
  const QString html = ReadBack();
  ASSERT_FALSE(html.isEmpty());
  EXPECT_EQ(BoldWords(html), ExpectedBold());
  EXPECT_EQ(ShownLines(html), ExpectedLines());
  EXPECT_TRUE(html.contains(QStringLiteral("Courier New")));
  // The plain text save is untouched by all this.
  EXPECT_TRUE(editor->RichEdit()->PlainText());
}

TEST_F(RichTextTest, ACyrillicTextReadsBackInItsCodePage) {
  editor->FontEditor()->SetCharset(RUSSIAN_CHARSET);
  TStringList lines;
  lines.SetText("object Form1: TForm1\r\n"
                "  Caption = '\xCF\xF0\xE8\xE2\xE5\xF2 \x80\xA8 \xFF'\r\n"
                "end\r\n");
  editor->LoadLines(&lines);
  const std::string rtf = SaveRtf();
  EXPECT_NE(rtf.find("\\ansicpg1251"), std::string::npos);
  EXPECT_NE(rtf.find("\\fcharset204 "), std::string::npos);
  EXPECT_EQ(BytesOfRtf(rtf), LinesOf(lines));
  const QString html = ReadBack();
  EXPECT_EQ(BoldWords(html), ExpectedBold());
  EXPECT_EQ(ShownLines(html), ExpectedLines());
  EXPECT_TRUE(ShownLines(html)[1].contains(QString::fromUtf8("Привет")));
}

TEST_F(RichTextTest, EveryByteOfAChineseFormIsKept) {
  LUMORA_REQUIRE_CORPUS();
  editor->FontEditor()->SetCharset(GB2312_CHARSET);
  TStringList lines;
  lines.SetText(ReadFileBytes(CorpusDir() / "text" / "2986.dfm"));
  editor->LoadLines(&lines);
  ASSERT_EQ(editor->RichEdit()->Lines()->Text(), lines.Text());
  const std::string rtf = SaveRtf();
  EXPECT_NE(rtf.find("\\ansicpg936"), std::string::npos);
  EXPECT_EQ(BytesOfRtf(rtf), LinesOf(lines));
  // The reader knows no double-byte code page, but the structure is its to read.
  const QString html = ReadBack();
  EXPECT_EQ(BoldWords(html), ExpectedBold());
}

TEST_F(RichTextTest, ALargeCorpusFormReadsBackWhole) {
  LUMORA_REQUIRE_CORPUS();
  const std::string resource = ReadFileBytes(CorpusDir() / "bin" / "1271.dfm");
  TStringList lines;
  lines.SetText(ObjectResourceToText(resource));
  editor->LoadLines(&lines);
  const std::string rtf = SaveRtf();
  EXPECT_EQ(BytesOfRtf(rtf), LinesOf(lines));
  const QString html = ReadBack();
  EXPECT_EQ(BoldWords(html), ExpectedBold());
  EXPECT_EQ(ShownLines(html), ExpectedLines());
}

}  // namespace
