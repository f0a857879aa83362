// The sample forms shipped in samples/: each binary form has its text beside it, the two
// convert into each other exactly, and both survive the round trip.

#include "tools/ConvertTool.h"

#include "platform/streaming/ObjectText.h"
#include "tests/support/Corpus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using lumora::test::ReadFileBytes;

namespace {

// SampleN.dfm (binary) and SampleN.txt.dfm (its text).
struct TSample {
  fs::path Binary;
  fs::path Text;
};

std::vector<TSample> Samples() {
  std::vector<TSample> Result;
  const fs::path Folder = lumora::test::SourceDir() / "samples";
  for (const auto& Entry : fs::directory_iterator(Folder)) {
    const std::string Name = Entry.path().filename().string();
    if (!Name.ends_with(".dfm") || Name.ends_with(".txt.dfm")) continue;
    Result.push_back({Entry.path(), Folder / (Name.substr(0, Name.size() - 4) + ".txt.dfm")});
  }
  std::sort(Result.begin(), Result.end(), [](const TSample& A, const TSample& B) { return A.Binary < B.Binary; });
  return Result;
}

TEST(Samples, EachBinaryFormHasItsText) {
  const auto All = Samples();
  ASSERT_GE(All.size(), 4u);
  EXPECT_EQ(All.front().Binary.filename(), "Sample1.dfm");
  for (const auto& S : All) {
    ASSERT_TRUE(fs::exists(S.Text)) << S.Text;
    EXPECT_EQ(DetectFormFileFormat(ReadFileBytes(S.Binary)), TFormFileFormat::Resource) << S.Binary;
    EXPECT_EQ(DetectFormFileFormat(ReadFileBytes(S.Text)), TFormFileFormat::Text) << S.Text;
  }
}

TEST(Samples, BinaryAndTextConvertIntoEachOtherExactly) {
  for (const auto& S : Samples()) {
    const std::string Binary = ReadFileBytes(S.Binary);
    const std::string Text = ReadFileBytes(S.Text);
    EXPECT_EQ(ObjectResourceToText(Binary), Text) << S.Binary;
    EXPECT_EQ(ObjectTextToResource(Text), Binary) << S.Text;
  }
}

TEST(Samples, EverySamplePassesTheToolsCheck) {
  std::vector<std::string> Args{"--check"};
  for (const auto& S : Samples()) {
    Args.push_back(S.Binary.string());
    Args.push_back(S.Text.string());
  }
  std::ostringstream Out, Err;
  TConvertConsole Console{Out, Err};
  EXPECT_EQ(RunConvertTool(Args, Console), ConvertExitOk) << Out.str() << Err.str();
  const std::string Report = Out.str();
  for (std::size_t I = 1; I < Args.size(); ++I)
    EXPECT_NE(Report.find(Args[I] + ": ok\n"), std::string::npos) << Report;
  const std::string Count = std::to_string(Args.size() - 1);
  EXPECT_NE(Report.find("Checked " + Count + " files: " + Count + " ok, 0 failed.\n"), std::string::npos) << Report;
}

}  // namespace
