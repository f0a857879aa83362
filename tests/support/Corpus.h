#pragma once
// Where the real form files are. Tests that need them call LUMORA_REQUIRE_CORPUS(),
// which skips the test (shown as skipped, never as passed) when the folder is absent.

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace lumora::test {

// The corpus folder ($LUMORA_CORPUS, else the one configured at build time), or empty when absent.
std::filesystem::path CorpusDir();

// Files of a corpus sub-folder ("bin", "text", "broken", "pairs"), sorted by name;
// `suffix` filters by the end of the file name (".bin.dfm").
std::vector<std::filesystem::path> CorpusFiles(const std::string& folder, const std::string& suffix = "");

// What the manifest of the compiled programs ("pe/manifest.tsv") says of one program:
// how many forms and how many RCDATA resources it holds.
struct TProgramCounts {
  int Forms = -1;
  int RcData = -1;
};
// The manifest's rows by file name ("0001.exe"); empty without the corpus.
std::map<std::string, TProgramCounts> CorpusProgramCounts();

// The whole content of a file as bytes; throws std::runtime_error when it cannot be read.
std::string ReadFileBytes(const std::filesystem::path& path);

// The project's own source folder (for sample forms and resources).
std::filesystem::path SourceDir();

}  // namespace lumora::test

#define LUMORA_REQUIRE_CORPUS()                                                   \
  do {                                                                            \
    if (::lumora::test::CorpusDir().empty())                                      \
      GTEST_SKIP() << "the real form files (../shared/corpus) are not here";      \
  } while (0)
