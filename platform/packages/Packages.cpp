#include "platform/packages/Packages.h"

#include "platform/packages/PackageDecl.h"
#include "platform/packages/PackageInternal.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

// Why a package could not be loaded (the second line of the error).
struct TLoadFailure {
  std::string Reason;
};

struct TLoadedPackage {
  HMODULE Handle = 0;
  void* Library = nullptr;
  std::string Path;
  int Uses = 0;
  std::vector<HMODULE> Required;
};

struct TPackageTable {
  std::vector<TLoadedPackage> Loaded;
  std::vector<std::string> SearchPath;

  TLoadedPackage* Find(HMODULE module) {
    for (auto& p : Loaded)
      if (p.Handle == module) return &p;
    return nullptr;
  }
  TLoadedPackage* FindPath(const std::string& path) {
    for (auto& p : Loaded)
      if (p.Path == path) return &p;
    return nullptr;
  }
};

TPackageTable& Table() {
  static TPackageTable table;
  return table;
}

bool IsFile(const fs::path& p) {
  std::error_code ec;
  return fs::is_regular_file(p, ec);
}

std::string Absolute(const fs::path& p) {
  std::error_code ec;
  fs::path result = fs::weakly_canonical(fs::absolute(p, ec), ec);
  return (ec ? fs::absolute(p) : result).string();
}

// The file a package name stands for, or '' when none is found.
std::string Resolve(const std::string& name, const std::string& besideFolder) {
  if (name.empty()) return {};
  if (name.find('/') != std::string::npos) return IsFile(name) ? Absolute(name) : std::string();
  std::vector<fs::path> folders;
  if (!besideFolder.empty()) folders.emplace_back(besideFolder);
  std::error_code ec;
  folders.push_back(fs::current_path(ec));
  for (const auto& f : Table().SearchPath) folders.emplace_back(f);
  for (const auto& f : folders)
    if (!f.empty() && IsFile(f / name)) return Absolute(f / name);
  return {};
}

std::string PackageFileOf(const std::string& required) {
  return required.size() > 3 && SameText(std::string_view(required).substr(required.size() - 3), ".so")
             ? required
             : required + ".so";
}

void Release(HMODULE module);

void ReleaseAll(const std::vector<HMODULE>& modules) {
  for (auto it = modules.rbegin(); it != modules.rend(); ++it) Release(*it);
}

HMODULE Load(const std::string& name, const std::string& besideFolder, std::vector<std::string>& loading) {
  const std::string path = Resolve(name, besideFolder);
  if (path.empty()) throw TLoadFailure{"The file does not exist."};
  TPackageTable& table = Table();
  if (TLoadedPackage* loaded = table.FindPath(path)) {
    ++loaded->Uses;
    return loaded->Handle;
  }
  if (std::find(loading.begin(), loading.end(), path) != loading.end())
    throw TLoadFailure{"It requires itself through the packages it requires."};
  TPackageDeclaration declaration;
  try {
    declaration = ReadPackageDeclaration(path);
  } catch (const EPackageError& e) {
    throw TLoadFailure{e.Message()};
  }
  loading.push_back(path);
  std::vector<HMODULE> required;
  const std::string folder = fs::path(path).parent_path().string();
  for (const std::string& r : declaration.Requires) {
    try {
      required.push_back(Load(PackageFileOf(r), folder, loading));
    } catch (const TLoadFailure& f) {
      ReleaseAll(required);
      loading.pop_back();
      throw TLoadFailure{Format("The package %s that it requires cannot be loaded: %s", r, f.Reason)};
    }
  }
  loading.pop_back();
  dlerror();
  void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!library) {
    const char* why = dlerror();
    ReleaseAll(required);
    throw TLoadFailure{why ? why : "The library cannot be loaded."};
  }
  TLoadedPackage record;
  record.Handle = reinterpret_cast<HMODULE>(library);
  record.Library = library;
  record.Path = path;
  record.Uses = 1;
  record.Required = std::move(required);
  table.Loaded.push_back(std::move(record));
  return table.Loaded.back().Handle;
}

void Release(HMODULE module) {
  TPackageTable& table = Table();
  TLoadedPackage* p = table.Find(module);
  if (!p || --p->Uses > 0) return;
  // Forms built from the package's classes close (unload procedures) before its code goes.
  UnRegisterModuleClasses(module);
  p = table.Find(module);  // the procedures may have loaded or unloaded packages
  if (!p) return;
  void* library = p->Library;
  const std::vector<HMODULE> required = p->Required;
  table.Loaded.erase(table.Loaded.begin() + (p - table.Loaded.data()));
  dlclose(library);
  ReleaseAll(required);
}

}  // namespace

HMODULE LoadPackage(const std::string& name) {
  std::vector<std::string> loading;
  try {
    return Load(name, {}, loading);
  } catch (const TLoadFailure& f) {
    throw EPackageError(Format("Cannot load package %s.\n%s", name, f.Reason));
  }
}

HMODULE SafeLoadPackage(const std::string& name, std::string* reason) {
  try {
    return LoadPackage(name);
  } catch (const EPackageError& e) {
    if (reason) *reason = e.Message();
    return 0;
  }
}

void UnloadPackage(HMODULE module) { Release(module); }

void SetPackageSearchPath(std::vector<std::string> folders) { Table().SearchPath = std::move(folders); }
const std::vector<std::string>& PackageSearchPath() { return Table().SearchPath; }

bool IsPackageLoaded(HMODULE module) { return Table().Find(module) != nullptr; }

std::string PackageFileName(HMODULE module) {
  const TLoadedPackage* p = Table().Find(module);
  return p ? p->Path : std::string();
}

std::vector<HMODULE> LoadedPackages() {
  std::vector<HMODULE> out;
  for (const auto& p : Table().Loaded) out.push_back(p.Handle);
  return out;
}

void GetPackageInfo(HMODULE module, void* param, int& flags, TPackageInfoProc infoProc) {
  const TLoadedPackage* p = Table().Find(module);
  if (!p) throw EPackageError("The handle is not a loaded package.");
  const auto* info = static_cast<const char*>(dlsym(p->Library, "lumora_package_info"));
  if (!info) throw EPackageError("The file holds no package information.");
  // The declaration ends with an empty entry: two NULs in a row.
  std::size_t size = std::strlen(info) + 1;
  while (info[size] != '\0') size += std::strlen(info + size) + 1;
  const TPackageDeclaration declaration = packages_detail::ParseDeclaration(info, size + 1);
  flags = 0;
  if (!infoProc) return;
  for (const auto& r : declaration.Requires) infoProc(r, ntRequiresPackage, 0, param);
  for (const auto& u : declaration.Contains) infoProc(u, ntContainsUnit, 0, param);
}

void* GetProcAddress(HMODULE module, const std::string& procName) {
  const TLoadedPackage* p = Table().Find(module);
  if (!p) return nullptr;
  void* symbol = dlsym(p->Library, procName.c_str());
  if (!symbol) return nullptr;
  // dlsym also searches the libraries the package links; only the package's own counts.
  Dl_info where{};
  link_map* map = nullptr;
  if (dladdr(symbol, &where) && dlinfo(p->Library, RTLD_DI_LINKMAP, &map) == 0 && map && where.dli_fname &&
      map->l_name && std::strcmp(where.dli_fname, map->l_name) != 0)
    return nullptr;
  return symbol;
}

std::string RegisterProcName(std::string_view unitName) {
  std::string name = "Lumora_";
  if (!unitName.empty()) {
    name += UpperCase(unitName.substr(0, 1));
    name += LowerCase(unitName.substr(1, 255));
  }
  return name + "_Register";
}

TRegisterProc GetRegisterProc(HMODULE module, std::string_view unitName) {
  return reinterpret_cast<TRegisterProc>(GetProcAddress(module, RegisterProcName(unitName)));
}

std::function<void(const std::string&, const TComponentClasses&)> RegisterComponentsProc;
std::function<void(const TComponentClasses&)> RegisterNoIconProc;
std::function<void(const TComponentClasses&, TActiveXRegType)> RegisterNonActiveXProc;

namespace {
constexpr const char* SRegisterError = "Invalid component registration";
}

void RegisterComponents(const std::string& page, const TComponentClasses& classes) {
  if (!RegisterComponentsProc) throw EComponentError(SRegisterError);
  RegisterComponentsProc(page, classes);
}

void RegisterComponents(const std::string& page, std::initializer_list<TClass> classes) {
  RegisterComponents(page, TComponentClasses(classes));
}

void RegisterNoIcon(std::initializer_list<TClass> classes) {
  if (!RegisterNoIconProc) throw EComponentError(SRegisterError);
  RegisterNoIconProc(TComponentClasses(classes));
}

void RegisterNonActiveX(std::initializer_list<TClass> classes, TActiveXRegType axRegType) {
  if (!RegisterNonActiveXProc) throw EComponentError(SRegisterError);
  RegisterNonActiveXProc(TComponentClasses(classes), axRegType);
}
