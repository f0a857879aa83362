#include "foundation/joIniFile.h"

#include "foundation/joPropPath.h"
#include "platform/rtti/ClassBuilder.h"
#include "platform/streaming/SysUtils.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <pwd.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

bool IsBlank(const std::string& s) {
  return std::all_of(s.begin(), s.end(), [](char c) { return static_cast<unsigned char>(c) < 33; });
}

// The runtime's Copy: a start below 1 counts as 1, a negative count as none.
std::string CopyStr(const std::string& s, long long index, long long count) {
  if (index < 1) index = 1;
  if (count <= 0 || index > static_cast<long long>(s.size())) return "";
  return s.substr(std::size_t(index - 1), std::size_t(count));
}

bool FileExists(const fs::path& p) {
  std::error_code ec;
  return fs::exists(p, ec) && !fs::is_directory(p, ec);
}

std::string ChangeFileExt(const std::string& name, const std::string& ext) {
  std::size_t slash = name.rfind('/');
  std::size_t dot = name.rfind('.');
  if (dot != std::string::npos && (slash == std::string::npos || dot > slash)) return name.substr(0, dot) + ext;
  return name + ext;
}

std::string ExtractFilePath(const std::string& name) {
  std::size_t slash = name.rfind('/');
  return slash == std::string::npos ? std::string() : name.substr(0, slash + 1);
}

std::string ReadModuleFileName() {
  std::error_code ec;
  fs::path exe = fs::read_symlink("/proc/self/exe", ec);
  return ec ? std::string() : exe.string();
}

}  // namespace

// ---- where the settings file lives ------------------------------------------------

std::string (*joModuleFileNameProc)() = &ReadModuleFileName;

std::string joModuleFileName() {
  return joModuleFileNameProc ? joModuleFileNameProc() : ReadModuleFileName();
}

std::string joConfigDir() {
  std::string base;
  const char* xdg = std::getenv("XDG_CONFIG_HOME");
  if (xdg && xdg[0] == '/') {
    base = xdg;
  } else {
    const char* home = std::getenv("HOME");
    if ((!home || !*home) && getpwuid(getuid())) home = getpwuid(getuid())->pw_dir;
    base = std::string(home ? home : "") + "/.config";
  }
  if (base.empty() || base.back() != '/') base += '/';
  return base + "lumora/";
}

std::string joResolveIniFileName(const std::string& Name) {
  std::string exeDir = ExtractFilePath(joModuleFileName());
  if (IsBlank(Name)) {
    std::string beside = ChangeFileExt(joModuleFileName(), ".ini");
    // An installed program (its data folder share/lumora beside its bin folder) keeps its
    // settings per user, also where it could write beside itself; so does a program that
    // cannot write there. A portable copy keeps its file beside it.
    std::error_code ec;
    const bool installed = !exeDir.empty() && fs::is_directory(fs::path(exeDir) / ".." / "share" / "lumora", ec);
    if (!FileExists(beside) && (installed || !IsWritablePath(exeDir.empty() ? "." : exeDir)))
      return joConfigDir() + "lumora.ini";
    return beside;
  }
  if (FileExists(Name)) return fs::absolute(Name).lexically_normal().string();
  bool relative = Name[0] != '/';
  if (relative) {
    if (FileExists(exeDir + Name)) return exeDir + Name;
    if (FileExists(joConfigDir() + Name)) return joConfigDir() + Name;
    return exeDir + Name;
  }
  return Name;
}

// ---- TjoCustomIniFile -------------------------------------------------------------

LUMORA_CLASS_IMPL(TjoCustomIniFile) {}

TjoCustomIniFile::~TjoCustomIniFile() {
  // From the end towards the start; each section takes itself out of the list.
  while (FSections && !FSections->empty()) delete FSections->back();
}

std::vector<TjoIniFileSection*>& TjoCustomIniFile::NeedSections() {
  if (!FSections) FSections = std::make_unique<std::vector<TjoIniFileSection*>>();
  return *FSections;
}

bool TjoCustomIniFile::ReadSectionNames(const std::string&, TStrings*) {
  return false;
}

bool TjoCustomIniFile::ReadSectionValues(const std::string&, TStrings*) {
  return false;
}

bool TjoCustomIniFile::WriteValue(const std::string&, const std::string&, const Variant&) {
  return false;
}

bool TjoCustomIniFile::ReadValue(const std::string&, const std::string&, Variant&) {
  return false;
}

Variant TjoCustomIniFile::ReadValueDef(const std::string& Section, const std::string& Key, const Variant& Default) {
  Variant value;
  if (ReadValue(Section, Key, value)) return value;
  return Default;
}

TjoIniFileSection* TjoCustomIniFile::GetSection(const std::string& Name) {
  for (TjoIniFileSection* section : NeedSections())
    if (section->Name() == Name) return section;
  return new TjoIniFileSection(Name, this);
}

void TjoCustomIniFile::LoadProperties(const std::string& Section, const std::string& Prefix, TObject* Instance) {
  TStringList list;
  if (!ReadSectionValues(Section, &list)) return;
  const std::string match = IsBlank(Prefix) ? std::string() : UpperCase(Prefix + ".");
  const long long matchLen = static_cast<long long>(match.size());
  // Kept from line to line: a line that does not match the prefix goes on with the
  // name of the line before it.
  std::string name;
  for (int i = 0; i < list.Count(); ++i) {
    const std::string line = list[i];
    if (matchLen == 0)
      name = line;
    else if (UpperCase(line).compare(0, match.size(), match) == 0)
      name = CopyStr(line, matchLen + 1, 255);
    if (IsBlank(name)) continue;
    Variant value;
    std::size_t eq = line.find('=');
    if (eq != std::string::npos) {
      long long p = static_cast<long long>(eq) + 1;
      value = Variant(CopyStr(name, p - matchLen + 1, 255));
      name = CopyStr(name, 1, p - matchLen - 1);
    } else if (!ReadValue(Section, name, value)) {
      value = Null();
    }
    if (!value.IsEmpty()) SetValueByPath(Instance, name, value);
  }
}

// ---- TjoIniFile -------------------------------------------------------------------

LUMORA_CLASS_IMPL(TjoIniFile) {}

TjoIniFile::TjoIniFile(const std::string& AFileName) : FFileName("*&") {
  SetFileName(AFileName);
}

TjoIniFile::~TjoIniFile() = default;

void TjoIniFile::SetFileName(const std::string& Value) {
  if (Value == FFileName) return;
  FIniFile.reset();
  FFileName = joResolveIniFileName(Value);
}

TIniFile* TjoIniFile::IniFile() {
  if (!FIniFile) FIniFile = std::make_unique<TIniFile>(FFileName);
  return FIniFile.get();
}

namespace {
bool FillList(TStrings* list, const std::vector<std::string>& lines) {
  if (!list) return false;
  list->BeginUpdate();
  try {
    list->Clear();
    for (const std::string& line : lines) list->Add(line);
  } catch (...) {
    list->EndUpdate();
    throw;
  }
  list->EndUpdate();
  return list->Count() > 0;
}
}  // namespace

bool TjoIniFile::ReadSectionNames(const std::string& Section, TStrings* List) {
  return FillList(List, IniFile()->ReadSection(Section));
}

bool TjoIniFile::ReadSectionValues(const std::string& Section, TStrings* List) {
  return FillList(List, IniFile()->ReadSectionValues(Section));
}

bool TjoIniFile::WriteValue(const std::string& Section, const std::string& Key, const Variant& Value) {
  switch (Value.VarType() & varTypeMask) {
    case varSmallint:
    case varInteger:
    case varSingle:
      // A single-precision value is stored as a whole number, on purpose.
      IniFile()->WriteInteger(Section, Key, Value.AsInteger());
      return true;
    case varBoolean:
      IniFile()->WriteBool(Section, Key, Value.AsBoolean());
      return true;
    case varString:
    case varOleStr:
      IniFile()->WriteString(Section, Key, Value.AsString());
      return true;
    default:
      return false;
  }
}

bool TjoIniFile::ReadValue(const std::string& Section, const std::string& Key, Variant& Value) {
  std::string text = IniFile()->ReadString(Section, Key, SjoIniNoValue);
  if (text != SjoIniNoValue) {
    Value = Variant(text);
    return true;
  }
  Value = Null();
  return false;
}

// ---- TjoIniFileSection ------------------------------------------------------------

LUMORA_CLASS_IMPL(TjoIniFileSection) {
  c.Method<&TjoIniFileSection::SetValue>("SetValue");
  c.Method<&TjoIniFileSection::GetValue>("GetValue");
}

TjoIniFileSection::TjoIniFileSection(const std::string& AName, TjoCustomIniFile* AOwner) : FName(AName) {
  SetOwner(AOwner);
}

TjoIniFileSection::~TjoIniFileSection() {
  SetOwner(nullptr);
}

void TjoIniFileSection::SetOwner(TjoCustomIniFile* Value) {
  if (Value == FOwner) return;
  if (FOwner && FOwner->FSections) {
    auto& list = *FOwner->FSections;
    list.erase(std::remove(list.begin(), list.end(), this), list.end());
  }
  FOwner = Value;
  if (FOwner) {
    auto& list = FOwner->NeedSections();
    if (std::find(list.begin(), list.end(), this) == list.end()) list.push_back(this);
  }
}

bool TjoIniFileSection::SetValue(const std::string& Key, const Variant& Value) {
  if (!FOwner) return false;
  return FOwner->WriteValue(FName, Key, Value);
}

bool TjoIniFileSection::GetValue(const std::string& Key, Variant& Value) {
  if (!FOwner) return false;
  return FOwner->ReadValue(FName, Key, Value);
}

bool TjoIniFileSection::SaveProperty(const std::string& Prefix, TObject* Instance, const std::string& PropPath) {
  if (!FOwner) return false;
  TObject* owner = Instance;
  const TPropInfo* prop = FindPropInfo(owner, PropPath, tkUnknown, false);
  if (!prop) return false;
  std::string key = IsBlank(Prefix) ? PropPath : Prefix + "." + PropPath;
  if (prop->Kind() == tkClass) return false;
  Variant value;
  if (!GetValueByPath(Instance, PropPath, Variant(), value)) return false;
  return FOwner->WriteValue(FName, key, value);
}
