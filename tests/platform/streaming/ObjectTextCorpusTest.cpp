// The converters on the real form files. Each test loops over a whole corpus folder
// and names every file that fails, with a summary of what it saw.

#include "platform/streaming/FloatText.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "tests/support/Corpus.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <vector>

namespace fs = std::filesystem;
using lumora::test::CorpusDir;
using lumora::test::CorpusFiles;
using lumora::test::ReadFileBytes;

namespace {

// Runs `f` and returns the error text, or empty when it did not throw.
template <class F>
std::string ErrorOf(F&& f) {
  try {
    f();
  } catch (const Exception& e) {
    return e.Message().empty() ? std::string("(empty message)") : e.Message();
  } catch (const std::exception& e) {
    return std::string("not a runtime error: ") + e.what();
  }
  return {};
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string_view::npos) end = text.size();
    std::string line(text.substr(start, end - start));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
    start = end + 1;
  }
  return lines;
}

std::string WithCrLf(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 16);
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' && (i == 0 || text[i - 1] != '\r')) out += '\r';
    out += text[i];
  }
  return out;
}

std::string RightTrimmed(std::string s) {
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.pop_back();
  return s;
}

std::vector<std::string> BlankInsensitiveLines(std::string_view text) {
  std::vector<std::string> lines = SplitLines(text);
  for (auto& line : lines) line = RightTrimmed(line);
  while (!lines.empty() && lines.back().empty()) lines.pop_back();
  return lines;
}

// "  Name = value": the part before the value, and the value.
bool SplitPropertyLine(const std::string& line, std::string& head, std::string& value) {
  const std::size_t eq = line.find(" = ");
  if (eq == std::string::npos) return false;
  head = line.substr(0, eq + 3);
  value = line.substr(eq + 3);
  return true;
}

// Our float line differs from Delphi's only by the digits needed to read back exactly:
// rounded to Delphi's 15 digits, ours is Delphi's text.
bool IsLosslessFloatOf(const std::string& ours, const std::string& delphi) {
  std::string headOurs, valueOurs, headDelphi, valueDelphi;
  if (!SplitPropertyLine(ours, headOurs, valueOurs) || !SplitPropertyLine(delphi, headDelphi, valueDelphi)) return false;
  if (headOurs != headDelphi) return false;
  std::string suffix;
  if (!valueOurs.empty() && std::string("scd").find(valueOurs.back()) != std::string::npos) {
    suffix = valueOurs.substr(valueOurs.size() - 1);
    valueOurs.pop_back();
  }
  long double v = 0;
  if (!ParseFloatText(valueOurs, v)) return false;
  return FormatGeneral(v, 15) + suffix == valueDelphi && valueOurs != FormatGeneral(v, 15);
}

// A float as a later Delphi writes it: 18 decimals.
bool IsEighteenDecimalFloat(const std::string& value) {
  const std::size_t dot = value.find('.');
  if (dot == std::string::npos) return false;
  std::size_t digits = 0;
  for (std::size_t i = dot + 1; i < value.size() && value[i] >= '0' && value[i] <= '9'; ++i) ++digits;
  return digits == 18;
}

void PrintSummary(const std::string& title, const std::map<std::string, int>& counts) {
  std::cout << "[ corpus   ] " << title << ":";
  for (const auto& [what, n] : counts) std::cout << " " << what << " " << n << ";";
  std::cout << std::endl;
}

// --- binary files -------------------------------------------------------------

TEST(CorpusBinary, EveryBinaryFileComesBackToTheSameBytes) {
  LUMORA_REQUIRE_CORPUS();
  std::vector<fs::path> files = CorpusFiles("bin", ".dfm");
  const std::vector<fs::path> pairs = CorpusFiles("pairs", ".bin.dfm");
  files.insert(files.end(), pairs.begin(), pairs.end());
  ASSERT_GT(files.size(), 2000u);
  std::map<std::string, int> counts;
  std::vector<std::string> failures;
  for (const fs::path& file : files) {
    const std::string data = ReadFileBytes(file);
    std::string stream, text, plain, kept;
    const std::string error = ErrorOf([&] {
      stream = data.substr(ReadResHeader(data));
      text = ObjectBinaryToText(stream);
      plain = ObjectTextToBinary(text);
      kept = ObjectTextToBinary(text, stream);
    });
    const std::string name = file.parent_path().filename().string() + "/" + file.filename().string();
    if (!error.empty()) {
      failures.push_back(name + ": " + error);
      continue;
    }
    // With the original as reference the bytes come back exactly.
    if (kept != stream) failures.push_back(name + ": not the same bytes with the original as reference");
    // Without it, only the value types the text does not show may change: the text stays.
    if (plain == stream) {
      ++counts["same bytes without reference"];
    } else {
      ++counts["other value types without reference"];
      const std::string again = ErrorOf([&] {
        if (ObjectBinaryToText(plain) != text) throw Exception("the text of the plain conversion differs");
      });
      if (!again.empty()) failures.push_back(name + ": " + again);
    }
  }
  counts["files"] = static_cast<int>(files.size());
  PrintSummary("binary round trips", counts);
  for (const auto& f : failures) ADD_FAILURE() << f;
  EXPECT_EQ(failures.size(), 0u);
}

TEST(CorpusBinary, TextMatchesDelphisForThePairsThatWereNotEdited) {
  LUMORA_REQUIRE_CORPUS();
  const fs::path pairs = CorpusDir() / "pairs";
  std::ifstream list(pairs / "CONVERSIONS.tsv");
  ASSERT_TRUE(list) << "no CONVERSIONS.tsv";
  std::string line;
  std::getline(list, line);  // column names
  std::map<std::string, int> counts;
  std::vector<std::string> failures;
  while (std::getline(list, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::size_t tab = line.find('\t');
    if (tab == std::string::npos) continue;
    const std::string id = line.substr(0, tab);
    const std::string compare = line.substr(tab + 1);
    if (compare != "exact" && compare != "line-ends" && compare != "blanks") {
      ++counts["not compared (" + compare + ")"];
      continue;
    }
    const std::string binary = ReadFileBytes(pairs / (id + ".bin.dfm"));
    const std::string delphi = ReadFileBytes(pairs / (id + ".txt.dfm"));
    std::string ours;
    const std::string error = ErrorOf([&] { ours = ObjectResourceToText(binary); });
    if (!error.empty()) {
      failures.push_back(id + ": " + error);
      continue;
    }
    bool same = false;
    if (compare == "exact") same = ours == delphi;
    if (compare == "line-ends") same = ours == WithCrLf(delphi);
    if (compare == "blanks") same = BlankInsensitiveLines(ours) == BlankInsensitiveLines(delphi);
    if (same) {
      ++counts[compare + " equal"];
      continue;
    }
    // The only difference allowed: floats that 15 digits do not bring back exactly.
    const std::vector<std::string> a = BlankInsensitiveLines(ours);
    const std::vector<std::string> b = BlankInsensitiveLines(WithCrLf(delphi));
    if (a.size() != b.size()) {
      failures.push_back(id + " (" + compare + "): " + std::to_string(a.size()) + " lines, Delphi's " +
                         std::to_string(b.size()));
      continue;
    }
    int floatLines = 0;
    bool other = false;
    for (std::size_t i = 0; i < a.size(); ++i) {
      if (a[i] == b[i]) continue;
      if (IsLosslessFloatOf(a[i], b[i])) {
        ++floatLines;
      } else {
        other = true;
        failures.push_back(id + " (" + compare + "), line " + std::to_string(i + 1) + ": ours [" + a[i] +
                           "], Delphi's [" + b[i] + "]");
        break;
      }
    }
    if (other) continue;
    if (floatLines == 0) {
      failures.push_back(id + " (" + compare + "): differs in line ends or blanks");
      continue;
    }
    ++counts[compare + " equal but for floats written exactly"];
  }
  PrintSummary("pairs against Delphi's text", counts);
  for (const auto& f : failures) ADD_FAILURE() << f;
  EXPECT_EQ(failures.size(), 0u);
  EXPECT_GT(counts["exact equal"], 100);
}

// --- text files -----------------------------------------------------------------

// Text files in the corpus that are not forms, with the error they give.
const std::map<std::string, std::string> NotForms = {
    {"text/2258.dfm", "Identifier expected on line 1"},  // a wizard's template: "object %FORMNAME%: T%FORMNAME%"
};

// Why a text that came back differs from the original, in the order checked.
std::string WhyTextDiffers(const std::string& original, const std::string& ours) {
  if (WithCrLf(original) == ours) return "line ends only (LF in the file)";
  const std::vector<std::string> a = BlankInsensitiveLines(original);
  const std::vector<std::string> b = BlankInsensitiveLines(ours);
  if (a == b) return "line ends, trailing blanks or the end of the file";
  if (a.size() != b.size()) return "lines added or removed (hand edits)";
  bool eighteen = false, other = false, spelling = false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] == b[i]) continue;
    std::string head, value;
    const std::size_t first = a[i].find_first_not_of(' ');
    const std::string valueA = SplitPropertyLine(a[i], head, value) ? value
                               : first == std::string::npos          ? std::string()
                                                                     : a[i].substr(first);
    if (IsEighteenDecimalFloat(valueA)) {
      eighteen = true;
    } else if (SameText(a[i], b[i])) {
      spelling = true;
    } else {
      other = true;
    }
  }
  if (other) return "other changes (hand edits)";
  if (spelling) return "spelling of a keyword value (false / False)";
  if (eighteen) return "floats with 18 decimals";
  return "unknown";
}

void CheckTextFiles(const std::vector<fs::path>& files, const std::string& title) {
  std::map<std::string, int> counts;
  std::map<std::string, std::vector<std::string>> examples;
  std::vector<std::string> failures;
  for (const fs::path& file : files) {
    const std::string name = file.parent_path().filename().string() + "/" + file.filename().string();
    const std::string text = ReadFileBytes(file);
    std::string first, ourText, plain, kept, textAgain;
    const std::string error = ErrorOf([&] {
      first = ObjectTextToBinary(text);
      ourText = ObjectBinaryToText(first);
      plain = ObjectTextToBinary(ourText);
      kept = ObjectTextToBinary(ourText, first);
      textAgain = ObjectBinaryToText(plain);
    });
    if (const auto known = NotForms.find(name); known != NotForms.end()) {
      if (error != known->second) failures.push_back(name + ": expected the error \"" + known->second + "\", got \"" + error + "\"");
      ++counts["not a form (clear error)"];
      continue;
    }
    if (!error.empty()) {
      failures.push_back(name + ": " + error);
      continue;
    }
    if (kept != first) failures.push_back(name + ": text -> binary -> text -> binary (with reference) differs");
    if (textAgain != ourText) failures.push_back(name + ": our text does not come back as itself");
    ++counts[plain == first ? "same binary without reference" : "other value types without reference"];
    if (ourText == text) {
      ++counts["same text"];
    } else {
      const std::string why = WhyTextDiffers(text, ourText);
      ++counts["text differs: " + why];
      if (examples[why].size() < 8) examples[why].push_back(name);
    }
  }
  counts["files"] = static_cast<int>(files.size());
  PrintSummary(title, counts);
  for (const auto& [why, names] : examples) {
    std::cout << "[ corpus   ]   e.g. " << why << ":";
    for (const auto& n : names) std::cout << " " << n;
    std::cout << std::endl;
  }
  for (const auto& f : failures) ADD_FAILURE() << f;
  EXPECT_EQ(failures.size(), 0u);
}

TEST(CorpusText, EveryTextFileConvertsAndItsBinaryComesBack) {
  LUMORA_REQUIRE_CORPUS();
  const std::vector<fs::path> files = CorpusFiles("text", ".dfm");
  ASSERT_GT(files.size(), 1000u);
  CheckTextFiles(files, "text files");
}

TEST(CorpusText, EveryPairTextConverts) {
  LUMORA_REQUIRE_CORPUS();
  const std::vector<fs::path> files = CorpusFiles("pairs", ".txt.dfm");
  ASSERT_GT(files.size(), 200u);
  CheckTextFiles(files, "pair texts");
}

// --- damaged files ------------------------------------------------------------------

TEST(CorpusBroken, EveryDamagedFileGivesAClearErrorOrAGoodRead) {
  LUMORA_REQUIRE_CORPUS();
  const std::vector<fs::path> files = CorpusFiles("broken");
  ASSERT_GT(files.size(), 50u);
  std::map<std::string, int> counts;
  std::vector<std::string> failures;
  for (const fs::path& file : files) {
    const std::string name = "broken/" + file.filename().string();
    const std::string data = ReadFileBytes(file);
    std::string text;
    const std::string error = ErrorOf([&] {
      switch (DetectFormFileFormat(data)) {
        case TFormFileFormat::Resource: text = ObjectResourceToText(data); break;
        case TFormFileFormat::Stream: text = ObjectBinaryToText(data); break;
        case TFormFileFormat::Text: ObjectTextToBinary(data); break;
        case TFormFileFormat::Unknown: ObjectResourceToText(data); break;
      }
    });
    if (error.empty()) {
      ++counts["read by accident"];
      // Reading it back is not promised (damage can put line ends into a name), but
      // it must end in the same text or a parser error that says where.
      if (!text.empty()) {
        const std::string again = ErrorOf([&] {
          if (ObjectBinaryToText(ObjectTextToBinary(text)) != text) throw Exception("text does not come back");
        });
        if (!again.empty() && again.find(" on line ") == std::string::npos)
          failures.push_back(name + ": read, but " + again);
      }
      continue;
    }
    if (error.rfind("not a runtime error", 0) == 0) {
      failures.push_back(name + ": " + error);
      continue;
    }
    // Clear: one of the runtime's texts, saying where.
    const bool known = error.rfind("Stream read error", 0) == 0 || error.rfind("Invalid stream format", 0) == 0 ||
                       error.rfind("Invalid property value", 0) == 0 || error.rfind("Invalid value type", 0) == 0 ||
                       error.rfind("Nesting too deep", 0) == 0 || error.find(" on line ") != std::string::npos;
    if (!known) failures.push_back(name + ": unclear error \"" + error + "\"");
    ++counts[error.substr(0, error.find(" at byte"))];
  }
  PrintSummary("damaged files", counts);
  for (const auto& f : failures) ADD_FAILURE() << f;
  EXPECT_EQ(failures.size(), 0u);
}

}  // namespace
