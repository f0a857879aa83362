#pragma once
// A fresh folder for one test, removed with everything in it afterwards (also when the
// test made parts of it read-only).

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace lumora::test {

class TTempDir {
public:
  TTempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "lumora-test-XXXXXX").string();
    if (::mkdtemp(pattern.data())) FPath = pattern;
  }
  ~TTempDir() {
    std::error_code ec;
    if (FPath.empty()) return;
    for (auto& e : std::filesystem::recursive_directory_iterator(FPath, ec))
      std::filesystem::permissions(e.path(), std::filesystem::perms::owner_all,
                                   std::filesystem::perm_options::add, ec);
    std::filesystem::permissions(FPath, std::filesystem::perms::owner_all, std::filesystem::perm_options::add, ec);
    std::filesystem::remove_all(FPath, ec);
  }
  TTempDir(const TTempDir&) = delete;
  TTempDir& operator=(const TTempDir&) = delete;

  const std::filesystem::path& Path() const { return FPath; }
  std::string operator/(const std::string& name) const { return (FPath / name).string(); }

private:
  std::filesystem::path FPath;
};

inline void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << bytes;
}

}  // namespace lumora::test
