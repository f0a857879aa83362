#pragma once
// An INI file read and written in place: sections in square brackets and key=value
// lines. Section and key names match without regard to case; every read goes to the
// file and every write replaces the file at once (through a temporary file, so a write
// that fails leaves the old file as it was). A missing file or section reads as empty;
// whatever a hand-edited file holds besides (lines without "=", comments, junk) is kept.

#include "platform/streaming/SysUtils.h"

#include <string>
#include <vector>

// A write to the file failed; the message names the file and the reason.
LUMORA_DECLARE_EXCEPTION(EIniFileException, Exception)

// Whether the file or folder exists and may be written. One without any write permission
// counts as read-only also for a user whom the system would let through anyway.
bool IsWritablePath(const std::string& Path);

class TIniFile {
public:
  explicit TIniFile(std::string FileName) : FFileName(std::move(FileName)) {}

  const std::string& FileName() const { return FFileName; }

  // The value of the key, or Default when the file, the section or the key is missing.
  std::string ReadString(const std::string& Section, const std::string& Ident,
                         const std::string& Default) const;
  // A decimal (or $hex) value; Default when missing or not a number.
  int ReadInteger(const std::string& Section, const std::string& Ident, int Default) const;
  // True for any number other than 0; Default when missing or not a number.
  bool ReadBool(const std::string& Section, const std::string& Ident, bool Default) const;

  void WriteString(const std::string& Section, const std::string& Ident, const std::string& Value);
  // Written as decimal text.
  void WriteInteger(const std::string& Section, const std::string& Ident, int Value);
  // Written as 1 or 0.
  void WriteBool(const std::string& Section, const std::string& Ident, bool Value);

  // The key names of the section, in file order.
  std::vector<std::string> ReadSection(const std::string& Section) const;
  // The section's lines as key=value (a line without "=" as it stands), in file order.
  std::vector<std::string> ReadSectionValues(const std::string& Section) const;
  // The names of all sections, in file order.
  std::vector<std::string> ReadSections() const;
  bool SectionExists(const std::string& Section) const;
  bool ValueExists(const std::string& Section, const std::string& Ident) const;

  // Removes the section with all its lines.
  void EraseSection(const std::string& Section);
  void DeleteKey(const std::string& Section, const std::string& Ident);

private:
  std::string FFileName;
};
