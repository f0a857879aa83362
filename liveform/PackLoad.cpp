#include "liveform/PackLoad.h"

#include "foundation/IniFiles.h"
#include "foundation/joIniFile.h"
#include "platform/vcl/Dialogs.h"
#include "resources/ResStrings.h"

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace {

// Units whose Register procedure is never called.
const char* const kExcludedUnits[] = {"DDEReg", "DBExpt"};

constexpr const char* kPackagesSection = "Packages";
constexpr const char* kRootMacro = "$(LUMORA)";
constexpr const char* kStandardPackage = "dclstd.so";

// The file name without its folder, cut before its first '.'.
std::string BaseName(const std::string& path) {
  std::string name = path.substr(path.find_last_of('/') == std::string::npos ? 0 : path.find_last_of('/') + 1);
  return name.substr(0, name.find('.'));
}

std::string ExtractFileDir(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return {};
  return slash == 0 ? std::string("/") : path.substr(0, slash);
}

// The current folder is changed for a load and put back however the load ends.
class TCurrentDirScope {
public:
  explicit TCurrentDirScope(const std::string& dir) {
    std::error_code ec;
    FPrevious = fs::current_path(ec);
    if (!dir.empty()) fs::current_path(dir, ec);
  }
  ~TCurrentDirScope() {
    std::error_code ec;
    if (!FPrevious.empty()) fs::current_path(FPrevious, ec);
  }
  TCurrentDirScope(const TCurrentDirScope&) = delete;
  TCurrentDirScope& operator=(const TCurrentDirScope&) = delete;

private:
  fs::path FPrevious;
};

// The registration hooks: every class of the array, unless a class of that name is known
// already (the first package to register a name wins). The page is not kept.
void RegisterPackageClasses(const TComponentClasses& classes) {
  for (TClass cls : classes)
    if (cls && !GetClass(cls->ClassName())) RegisterClass(cls);
}

void InstallRegistrationHooks() {
  if (!RegisterComponentsProc)
    RegisterComponentsProc = [](const std::string&, const TComponentClasses& classes) { RegisterPackageClasses(classes); };
  if (!RegisterNoIconProc) RegisterNoIconProc = [](const TComponentClasses& classes) { RegisterPackageClasses(classes); };
  if (!RegisterNonActiveXProc)
    RegisterNonActiveXProc = [](const TComponentClasses& classes, TActiveXRegType) { RegisterPackageClasses(classes); };
}

// Called for each required package and contained unit of a package just loaded.
void UnitInfoProc(const std::string& name, TNameType nameType, std::uint8_t, void* param) {
  auto* item = static_cast<rPackItem*>(param);
  if (nameType == ntRequiresPackage) {
    if (!item->Requires) item->Requires = new TStringList();
    if (item->Requires->IndexOf(name) < 0) item->Requires->Add(name);
    return;
  }
  for (const char* excluded : kExcludedUnits)
    if (SameText(name, excluded)) return;
  if (TRegisterProc registerProc = GetRegisterProc(item->Handle, name)) {
    InstallRegistrationHooks();
    TModuleScope scope(item->Handle);
    registerProc();
  }
}

}  // namespace

// ---- TjoPackageLoader -------------------------------------------------------------------

TjoPackageLoader* TjoPackageLoader::FInstance = nullptr;

TjoPackageLoader::TjoPackageLoader() : TjoPackageLoader(StaticClass()) {}

TjoPackageLoader::TjoPackageLoader(TClass instanceClass) {
  if (FInstance) throw EComponentError(Format(ResStr::SOneInstanceOnly, instanceClass->ClassName()));
  FInstance = this;
  FDirty = false;
}

TjoPackageLoader::~TjoPackageLoader() {
  Clear();
  if (FInstance == this) FInstance = nullptr;
}

int TjoPackageLoader::IndexOf(const std::string& name) const {
  for (int i = 0; i < Count(); ++i)
    if (SameText(FItems[i]->FileName, name)) return i;
  const std::string base = BaseName(name);
  for (int i = 0; i < Count(); ++i)
    if (SameText(BaseName(FItems[i]->FileName), base)) return i;
  return -1;
}

int TjoPackageLoader::Add(const std::string& fileName, bool load) {
  int index = IndexOf(fileName);
  if (index < 0) {
    FDirty = true;
    auto* item = new rPackItem();
    item->FileName = fileName;
    FItems.push_back(item);
    index = Count() - 1;
  }
  SetLoaded(index, load);
  return index;
}

bool TjoPackageLoader::Delete(int index) {
  if (FItems.empty() || index < 0 || index >= Count()) return false;
  SetLoaded(index, false);
  rPackItem* item = FItems[index];
  FItems.erase(FItems.begin() + index);
  delete item->Requires;
  delete item;
  FDirty = true;
  return true;
}

void TjoPackageLoader::SetLoaded(int index, bool load) {
  if (index < 0 || index >= Count() || IsLoaded(index) == load) return;
  FDirty = true;
  DoSetLoaded(index, load);
}

void TjoPackageLoader::DoSetLoaded(int index, bool load) {
  rPackItem* item = FItems[index];
  if (load) {
    TCurrentDirScope dirScope(ExtractFileDir(item->FileName));
    std::string reason;
    item->Handle = SafeLoadPackage(item->FileName, &reason);
    if (item->Handle <= 32) {
      item->Handle = 0;
      std::string text = std::string(ResStr::SCannotLoadPackagePrefix) + item->FileName +
                         std::string(ResStr::SCannotLoadPackageSuffix);
      if (!reason.empty()) text += "\n\n" + reason;
      MessageDlg(text, mtError, MsgDlgButton(mbOK));
      return;
    }
    const std::string description = GetPackageDescription(item->FileName);
    item->Description = description.empty() ? item->FileName : description;
    int flags = 0;
    GetPackageInfo(item->Handle, item, flags, &UnitInfoProc);
    if (item->Requires) {
      // The list may change under us (an index stays valid: loading adds nothing).
      for (int i = 0; i < item->Requires->Count(); ++i) SetLoaded(IndexOf(item->Requires->Strings(i)), true);
    }
    return;
  }
  if (item->Handle > 32) {
    TStringList dependants;
    Dependants(index, &dependants);
    for (int i = dependants.Count() - 1; i >= 0; --i) SetLoaded(ObjectToIndex(dependants.Objects(i)), false);
    const HMODULE handle = item->Handle;
    UnRegisterModuleClasses(handle);
    UnloadPackage(handle);
  }
  item->Handle = 0;
}

bool TjoPackageLoader::IsLoaded(int index) const {
  return index >= 0 && index < Count() && FItems[index]->Handle > 32;
}

std::string TjoPackageLoader::FileName(int index) const {
  return index >= 0 && index < Count() ? FItems[index]->FileName : std::string();
}

std::string TjoPackageLoader::Description(int index) {
  if (index < 0 || index >= Count()) return {};
  rPackItem* item = FItems[index];
  if (item->Description.empty() && !IsLoaded(index)) {
    const std::string description = GetPackageDescription(item->FileName);
    item->Description = description.empty() ? item->FileName : description;
  }
  return item->Description;
}

int TjoPackageLoader::RequiredIndexes(int index, TStrings* into) const {
  into->Clear();
  if (index < 0 || index >= Count() || !FItems[index]->Requires) return 0;
  const TStringList* required = FItems[index]->Requires;
  for (int i = 0; i < required->Count(); ++i) into->AddObject(required->Strings(i), IndexToObject(IndexOf(required->Strings(i))));
  return into->Count();
}

int TjoPackageLoader::Dependants(int index, TStrings* into) const {
  into->Clear();
  if (index < 0 || index >= Count()) return 0;
  const std::string base = BaseName(FItems[index]->FileName);
  for (int i = 0; i < Count(); ++i) {
    const TStringList* required = FItems[i]->Requires;
    if (!required) continue;
    for (int r = 0; r < required->Count(); ++r) {
      if (SameText(required->Strings(r), base)) {
        into->AddObject(FItems[i]->FileName, IndexToObject(i));
        break;
      }
    }
  }
  return into->Count();
}

void TjoPackageLoader::Clear() {
  for (int i = 0; i < Count(); ++i) SetLoaded(i, false);
  while (!FItems.empty()) {
    rPackItem* item = FItems.back();
    FItems.pop_back();
    delete item->Requires;
    delete item;
  }
  FDirty = true;
}

LUMORA_CLASS_IMPL(TjoPackageLoader) {}

// ---- TjoPackageLoaderSR --------------------------------------------------------------------

TjoPackageLoaderSR::TjoPackageLoaderSR() : TjoPackageLoader(StaticClass()) {}

bool TjoPackageLoaderSR::LoadFromIni(const std::string& iniFileName, const std::string& section) {
  std::error_code ec;
  const bool exists = !iniFileName.empty() && fs::is_regular_file(iniFileName, ec);
  if (exists) {
    const std::string name = section.empty() ? kPackagesSection : section;
    std::vector<int> toLoad;
    {
      TIniFile ini(iniFileName);
      for (const std::string& line : ini.ReadSectionValues(name)) {
        const std::size_t eq = line.find('=');
        if (eq == std::string::npos) continue;
        const std::string key = line.substr(0, eq);
        if (UpperCase(key).rfind("PACKAGE_", 0) != 0) continue;
        const int index = Add(line.substr(eq + 1), false);
        if (index < 0 || index >= Count()) continue;
        const std::string suffix = key.substr(8, 255);
        if (ini.ReadBool(name, "Loaded_" + suffix, false)) toLoad.push_back(index);
      }
    }
    for (int index : toLoad) SetLoaded(index, true);
  }
  if (Count() == 0) return LoadFromKnownPackages();
  return exists;
}

void TjoPackageLoaderSR::SaveToIni(const std::string& iniFileName, const std::string& section) {
  const std::string name = section.empty() ? kPackagesSection : section;
  TIniFile ini(iniFileName);
  ini.EraseSection(name);
  for (int i = 0; i < Count(); ++i) {
    ini.WriteString(name, "Package_" + IntToStr(i), FileName(i));
    ini.WriteBool(name, "Loaded_" + IntToStr(i), IsLoaded(i));
  }
}

bool TjoPackageLoaderSR::LoadFromKnownPackages() {
  std::ifstream list(KnownPackagesFile());
  if (!list) {
    const int index = Add(kStandardPackage, true);
    return index >= 0 && index < Count();
  }
  const std::string root = RootDir();
  bool valid = true;
  std::string line;
  while (valid && std::getline(list, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (Trim(line).empty() || Trim(line)[0] == '#') continue;
    const std::string upper = UpperCase(line);
    const bool load = upper.find(UpperCase(kStandardPackage)) != std::string::npos;
    std::string path = line;
    // The macro is taken to stand at the start: its nine characters go wherever it was.
    if (upper.find(kRootMacro) != std::string::npos) path = root + line.substr(std::min<std::size_t>(9, line.size()), 255);
    const int index = Add(path, load);
    valid = index >= 0 && index < Count();
  }
  return valid;
}

std::string TjoPackageLoaderSR::RootDir() const {
  if (!FRootDir.empty()) return FRootDir;
  const fs::path program(joModuleFileName());
  return program.parent_path().parent_path().string();
}

std::string TjoPackageLoaderSR::KnownPackagesFile() const {
  if (!FKnownPackagesFile.empty()) return FKnownPackagesFile;
  const fs::path beside = fs::path(joModuleFileName()).parent_path() / "known-packages";
  std::error_code ec;
  if (fs::is_regular_file(beside, ec)) return beside.string();
  return (fs::path(RootDir()) / "share" / "lumora" / "known-packages").string();
}

LUMORA_CLASS_IMPL(TjoPackageLoaderSR) {}
