#pragma once
// Version information of a program file, read from the file by name: the product name,
// the file version and other named strings, by their paths in the version data
// ("\StringFileInfo\040904E4\ProductName", "\VarFileInfo\Translation").
//
// Lumora's own programs carry it as a record in an ELF section ("lumora_verinfo") that
// the build writes into each of them (lumora_version_info in cmake/LumoraTargets.cmake):
// a first line "LumoraVersionInfo 1", then one "path=value" line per value, the
// translation as "\VarFileInfo\Translation=LLLL CCCC" (language and code page in
// hexadecimal). A Windows program (.exe, .dll) gives the values of its version resource.
// A file without either (or one that cannot be read) has no values, and every string
// reads as its default.

#include <cstdint>
#include <map>
#include <memory>
#include <string>

// The name of the ELF section that holds a program's version record.
inline constexpr const char* SjoVersionSection = "lumora_verinfo";
// The first line of a version record.
inline constexpr const char* SjoVersionMagic = "LumoraVersionInfo 1";

class TjoVersionInfo {
public:
  // Nothing is read until the first query.
  explicit TjoVersionInfo(const std::string& AFileName);
  ~TjoVersionInfo();
  TjoVersionInfo(const TjoVersionInfo&) = delete;
  TjoVersionInfo& operator=(const TjoVersionInfo&) = delete;

  const std::string& FileName() const { return FFileName; }

  // The value at SubBlock (compared without regard to case), or none: a string value is
  // zero-terminated text, the translation is pairs of 16-bit words (language, code page).
  const void* Query(const std::string& SubBlock);
  // The first language and code-page pair of "\VarFileInfo\Translation", or none.
  const std::uint16_t* Translation();
  // That pair as eight upper-case hexadecimal digits, language first ("040904E4"); empty
  // when there is no translation.
  std::string LangCharset();
  // The string Name of the string table of the first translation, or Default.
  std::string GetString(const std::string& Name, const std::string& Default);
  std::string FileVersion() { return GetString("FileVersion", ""); }
  std::string ProductName() { return GetString("ProductName", ""); }

  // Whether the file had version data (after the first query).
  bool Loaded() const { return FBuffer != nullptr; }

private:
  struct TBuffer;
  void LoadBuffer();
  // The version resource of a Windows program; false when the file is not one.
  bool LoadWindowsVersion();

  std::string FFileName;
  std::unique_ptr<TBuffer> FBuffer;
  std::string FStringPath;
};

// Reads the version record of an ELF file: the record's text, or empty when the file is
// not ELF, has no such section or is damaged. Never raises.
std::string ReadElfVersionRecord(const std::string& FileName);
