#include "tests/support/Corpus.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace lumora::test {

fs::path CorpusDir() {
  std::error_code ec;
  if (const char* env = std::getenv("LUMORA_CORPUS"); env && *env) {
    fs::path p(env);
    if (fs::is_directory(p / "bin", ec)) return fs::canonical(p, ec);
  }
  fs::path configured(LUMORA_CORPUS_DIR);
  if (fs::is_directory(configured / "bin", ec)) return fs::canonical(configured, ec);
  return {};
}

std::vector<fs::path> CorpusFiles(const std::string& folder, const std::string& suffix) {
  std::vector<fs::path> files;
  fs::path root = CorpusDir();
  if (root.empty()) return files;
  std::error_code ec;
  for (const auto& entry : fs::directory_iterator(root / folder, ec)) {
    if (!entry.is_regular_file()) continue;
    const std::string name = entry.path().filename().string();
    if (name.size() < suffix.size() || name.compare(name.size() - suffix.size(), suffix.size(), suffix) != 0)
      continue;
    if (name.ends_with(".tsv") || name.ends_with(".md")) continue;
    files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::string ReadFileBytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path.string());
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

fs::path SourceDir() { return fs::path(LUMORA_SOURCE_DIR); }

}  // namespace lumora::test
