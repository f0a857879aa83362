#include "tests/support/Corpus.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
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

std::map<std::string, TProgramCounts> CorpusProgramCounts() {
  std::map<std::string, TProgramCounts> rows;
  const fs::path root = CorpusDir();
  if (root.empty()) return rows;
  std::ifstream in(root / "pe" / "manifest.tsv");
  std::string line;
  std::getline(in, line);
  std::vector<std::string> columns;
  std::stringstream header(line);
  for (std::string column; std::getline(header, column, '\t');) columns.push_back(column);
  const auto column = [&](const std::string& name) {
    return static_cast<std::size_t>(std::find(columns.begin(), columns.end(), name) - columns.begin());
  };
  const std::size_t id = column("id"), forms = column("forms"), rcdata = column("rcdata");
  if (id == columns.size() || forms == columns.size() || rcdata == columns.size())
    throw std::runtime_error("pe/manifest.tsv lacks its id, forms or rcdata column");
  while (std::getline(in, line)) {
    std::vector<std::string> cells;
    std::stringstream cellsIn(line);
    for (std::string cell; std::getline(cellsIn, cell, '\t');) cells.push_back(cell);
    if (cells.size() != columns.size()) continue;
    rows[cells[id]] = {std::stoi(cells[forms]), std::stoi(cells[rcdata])};
  }
  return rows;
}

std::string ReadFileBytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + path.string());
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

fs::path SourceDir() { return fs::path(LUMORA_SOURCE_DIR); }

}  // namespace lumora::test
