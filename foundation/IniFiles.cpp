#include "foundation/IniFiles.h"

#include "platform/streaming/SaveFile.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

enum class TLineKind { Other, Section, Key };

struct TLine {
  std::string Text;  // without its line end
  std::string End;   // "\n", "\r\n" or empty for a last line without one
  TLineKind Kind = TLineKind::Other;
  std::string Name;   // section or key name, trimmed
  std::string Value;  // key value, trimmed
  bool HasEquals = false;
};

struct TDocument {
  std::vector<TLine> Lines;
  std::string NewLine = "\n";
};

TLine ParseLine(std::string text, std::string end, bool first) {
  TLine line;
  line.Text = std::move(text);
  line.End = std::move(end);
  std::string_view body(line.Text);
  if (first && body.substr(0, 3) == "\xEF\xBB\xBF") body.remove_prefix(3);
  std::string trimmed = Trim(body);
  if (trimmed.empty() || trimmed[0] == ';') return line;
  if (trimmed[0] == '[') {
    std::size_t close = trimmed.find(']');
    line.Kind = TLineKind::Section;
    line.Name = Trim(std::string_view(trimmed).substr(1, close == std::string::npos ? std::string::npos : close - 1));
    return line;
  }
  line.Kind = TLineKind::Key;
  std::size_t eq = trimmed.find('=');
  if (eq == std::string::npos) {
    line.Name = trimmed;
  } else {
    line.HasEquals = true;
    line.Name = Trim(std::string_view(trimmed).substr(0, eq));
    line.Value = Trim(std::string_view(trimmed).substr(eq + 1));
  }
  return line;
}

// A file that cannot be read (missing, a folder, no permission) reads as empty.
TDocument Load(const std::string& fileName) {
  TDocument doc;
  std::error_code ec;
  if (fileName.empty() || !fs::is_regular_file(fileName, ec)) return doc;
  std::ifstream in(fileName, std::ios::binary);
  if (!in) return doc;
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  bool newLineKnown = false;
  std::size_t pos = 0;
  while (pos < bytes.size()) {
    std::size_t lf = bytes.find('\n', pos);
    std::string text, end;
    if (lf == std::string::npos) {
      text = bytes.substr(pos);
      pos = bytes.size();
    } else {
      text = bytes.substr(pos, lf - pos);
      end = "\n";
      pos = lf + 1;
    }
    if (!text.empty() && text.back() == '\r' && !end.empty()) {
      text.pop_back();
      end = "\r\n";
    }
    if (!newLineKnown && !end.empty()) {
      doc.NewLine = end;
      newLineKnown = true;
    }
    doc.Lines.push_back(ParseLine(std::move(text), std::move(end), doc.Lines.empty()));
  }
  return doc;
}

// The lines [first, last) of the first section of that name; nothing when missing.
std::optional<std::pair<std::size_t, std::size_t>> FindSection(const TDocument& doc, const std::string& name) {
  std::string section = Trim(name);
  for (std::size_t i = 0; i < doc.Lines.size(); ++i) {
    const TLine& l = doc.Lines[i];
    if (l.Kind == TLineKind::Section && SameText(l.Name, section)) {
      std::size_t j = i + 1;
      while (j < doc.Lines.size() && doc.Lines[j].Kind != TLineKind::Section) ++j;
      return std::make_pair(i + 1, j);
    }
  }
  return std::nullopt;
}

std::optional<std::size_t> FindKey(const TDocument& doc, const std::string& section, const std::string& ident) {
  auto range = FindSection(doc, section);
  if (!range) return std::nullopt;
  std::string key = Trim(ident);
  for (std::size_t i = range->first; i < range->second; ++i) {
    const TLine& l = doc.Lines[i];
    if (l.Kind == TLineKind::Key && SameText(l.Name, key)) return i;
  }
  return std::nullopt;
}

bool HasLineBreak(const std::string& s) {
  return s.find_first_of("\r\n") != std::string::npos;
}

[[noreturn]] void WriteFailed(const std::string& fileName, const std::string& reason) {
  throw EIniFileException(Format("Cannot write the settings file \"%s\": %s", fileName, reason));
}

void CheckNames(const std::string& fileName, const std::string& section, const std::string* ident,
                const std::string* value) {
  if (section.find(']') != std::string::npos || HasLineBreak(section))
    WriteFailed(fileName, Format("the section name \"%s\" cannot be stored", section));
  if (ident) {
    std::string key = Trim(*ident);
    if (key.empty() || key.find('=') != std::string::npos || key[0] == '[' || key[0] == ';' ||
        HasLineBreak(key))
      WriteFailed(fileName, Format("the key name \"%s\" cannot be stored", *ident));
  }
  if (value && HasLineBreak(*value))
    WriteFailed(fileName, Format("the value of \"%s\" holds a line break", ident ? *ident : std::string()));
}

bool IsReadOnly(const std::string& path) {
  struct stat st {};
  return ::stat(path.c_str(), &st) == 0 && !IsWritablePath(path);
}

void Save(const std::string& fileName, const TDocument& doc) {
  if (fileName.empty()) WriteFailed(fileName, "no file name");
  std::error_code ec;
  fs::path target(fileName);
  if (fs::is_symlink(target, ec)) {
    fs::path real = fs::canonical(target, ec);
    if (!ec) target = real;
  }
  if (fs::is_directory(target, ec)) WriteFailed(fileName, "it is a folder");
  fs::path folder = target.parent_path();
  if (folder.empty()) folder = ".";
  if (!fs::exists(folder, ec)) {
    fs::create_directories(folder, ec);
    if (ec) WriteFailed(fileName, Format("its folder cannot be created (%s)", ec.message()));
  }
  if (!fs::is_directory(folder, ec)) WriteFailed(fileName, "its folder is not a folder");
  bool exists = fs::exists(target, ec);
  if (exists && IsReadOnly(target.string())) WriteFailed(fileName, "the file is read-only");
  if (IsReadOnly(folder.string())) WriteFailed(fileName, "its folder is read-only");

  std::string bytes;
  for (const TLine& l : doc.Lines) {
    bytes += l.Text;
    bytes += l.End;
  }

  try {
    SaveFile(target.string(), bytes);
  } catch (const ESaveError& e) {
    WriteFailed(fileName, e.Reason());
  }
}

// Makes sure the last line ends before something is appended after it.
void EndLastLine(TDocument& doc) {
  if (!doc.Lines.empty() && doc.Lines.back().End.empty()) doc.Lines.back().End = doc.NewLine;
}

TLine MakeLine(const TDocument& doc, const std::string& text, bool first) {
  return ParseLine(text, doc.NewLine, first);
}

}  // namespace

bool IsWritablePath(const std::string& Path) {
  struct stat st {};
  if (Path.empty() || ::stat(Path.c_str(), &st) != 0) return false;
  if ((st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) return false;
  return ::access(Path.c_str(), W_OK) == 0;
}

std::string TIniFile::ReadString(const std::string& Section, const std::string& Ident,
                                 const std::string& Default) const {
  TDocument doc = Load(FFileName);
  auto index = FindKey(doc, Section, Ident);
  return index ? doc.Lines[*index].Value : Default;
}

int TIniFile::ReadInteger(const std::string& Section, const std::string& Ident, int Default) const {
  std::string text = ReadString(Section, Ident, "");
  long long value = 0;
  if (text.empty() || !TryStrToInt(text, value) || value < INT32_MIN || value > INT32_MAX) return Default;
  return int(value);
}

bool TIniFile::ReadBool(const std::string& Section, const std::string& Ident, bool Default) const {
  return ReadInteger(Section, Ident, Default ? 1 : 0) != 0;
}

void TIniFile::WriteString(const std::string& Section, const std::string& Ident, const std::string& Value) {
  CheckNames(FFileName, Section, &Ident, &Value);
  TDocument doc = Load(FFileName);
  std::string text = Trim(Ident) + "=" + Value;
  if (auto index = FindKey(doc, Section, Ident)) {
    TLine& old = doc.Lines[*index];
    std::string end = old.End;
    if (*index == 0 && old.Text.compare(0, 3, "\xEF\xBB\xBF") == 0) text = "\xEF\xBB\xBF" + text;
    old = ParseLine(text, end, *index == 0);
  } else if (auto range = FindSection(doc, Section)) {
    // After the section's last non-blank line, so blank lines before the next section stay there.
    std::size_t at = range->second;
    while (at > range->first && doc.Lines[at - 1].Kind == TLineKind::Other && Trim(doc.Lines[at - 1].Text).empty())
      --at;
    if (at > 0 && doc.Lines[at - 1].End.empty()) doc.Lines[at - 1].End = doc.NewLine;
    doc.Lines.insert(doc.Lines.begin() + std::ptrdiff_t(at), MakeLine(doc, text, at == 0));
  } else {
    EndLastLine(doc);
    if (!doc.Lines.empty() && !Trim(doc.Lines.back().Text).empty())
      doc.Lines.push_back(MakeLine(doc, "", false));
    doc.Lines.push_back(MakeLine(doc, "[" + Section + "]", doc.Lines.empty()));
    doc.Lines.push_back(MakeLine(doc, text, false));
  }
  Save(FFileName, doc);
}

void TIniFile::WriteInteger(const std::string& Section, const std::string& Ident, int Value) {
  WriteString(Section, Ident, IntToStr(Value));
}

void TIniFile::WriteBool(const std::string& Section, const std::string& Ident, bool Value) {
  WriteString(Section, Ident, Value ? "1" : "0");
}

std::vector<std::string> TIniFile::ReadSection(const std::string& Section) const {
  std::vector<std::string> names;
  TDocument doc = Load(FFileName);
  if (auto range = FindSection(doc, Section))
    for (std::size_t i = range->first; i < range->second; ++i)
      if (doc.Lines[i].Kind == TLineKind::Key) names.push_back(doc.Lines[i].Name);
  return names;
}

std::vector<std::string> TIniFile::ReadSectionValues(const std::string& Section) const {
  std::vector<std::string> lines;
  TDocument doc = Load(FFileName);
  if (auto range = FindSection(doc, Section))
    for (std::size_t i = range->first; i < range->second; ++i) {
      const TLine& l = doc.Lines[i];
      if (l.Kind == TLineKind::Key) lines.push_back(l.HasEquals ? l.Name + "=" + l.Value : l.Name);
    }
  return lines;
}

std::vector<std::string> TIniFile::ReadSections() const {
  std::vector<std::string> names;
  TDocument doc = Load(FFileName);
  for (const TLine& l : doc.Lines)
    if (l.Kind == TLineKind::Section) names.push_back(l.Name);
  return names;
}

bool TIniFile::SectionExists(const std::string& Section) const {
  TDocument doc = Load(FFileName);
  return FindSection(doc, Section).has_value();
}

bool TIniFile::ValueExists(const std::string& Section, const std::string& Ident) const {
  TDocument doc = Load(FFileName);
  return FindKey(doc, Section, Ident).has_value();
}

void TIniFile::EraseSection(const std::string& Section) {
  TDocument doc = Load(FFileName);
  bool changed = false;
  while (auto range = FindSection(doc, Section)) {
    doc.Lines.erase(doc.Lines.begin() + std::ptrdiff_t(range->first - 1),
                    doc.Lines.begin() + std::ptrdiff_t(range->second));
    changed = true;
  }
  if (changed) Save(FFileName, doc);
}

void TIniFile::DeleteKey(const std::string& Section, const std::string& Ident) {
  TDocument doc = Load(FFileName);
  if (auto index = FindKey(doc, Section, Ident)) {
    doc.Lines.erase(doc.Lines.begin() + std::ptrdiff_t(*index));
    Save(FFileName, doc);
  }
}
