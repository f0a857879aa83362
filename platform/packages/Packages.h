#pragma once
// Design packages at run time: loading a package library and the packages it requires,
// listing what it contains, reading its description without running it, finding the
// Register procedures of its units, and the hooks through which those procedures hand
// their component classes to whoever loads the package.
//
// A package is an ELF shared library NAME.so built from a folder under packages/ (see
// PackageDecl.h for how its source declares itself, and lumora_add_package in
// cmake/LumoraTargets.cmake). Its classes are the platform's classes: a package links
// the platform's shared libraries and registers classes that live there (or classes of
// its own), so a class registered by a package is the class the program knows.
//
//   HMODULE h = LoadPackage("/opt/lumora/packages/dclstd.so");  // EPackageError on failure
//   GetPackageInfo(h, &item, flags, &UnitInfoProc);              // units and required packages
//   if (auto proc = GetRegisterProc(h, "StdReg")) { TModuleScope s(h); proc(); }
//   UnRegisterModuleClasses(h);                                  // forms built from them close first
//   UnloadPackage(h);

#include "platform/rtti/Registry.h"
#include "platform/rtti/TypInfo.h"
#include "platform/streaming/SysUtils.h"

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// A package that cannot be loaded: "Cannot load package NAME.\nREASON".
LUMORA_DECLARE_EXCEPTION(EPackageError, Exception)

// ---- Loading ---------------------------------------------------------------------------

// Loads the package `name` and, first, every package it requires, then runs their
// initialisation (their static constructors). `name` with a '/' is a path (relative
// ones from the current folder); a bare file name is looked for in the current folder,
// then in the package search path. Required packages are looked for beside the package
// first. Loading a package that is loaded already counts one more use and gives the
// same handle. EPackageError when the file is missing, is not a package (no package
// information), is damaged, or needs a package or a library that cannot be loaded; then
// nothing stays loaded.
HMODULE LoadPackage(const std::string& name);
// The same, without raising: 0 on failure, with the reason in `reason` when given.
HMODULE SafeLoadPackage(const std::string& name, std::string* reason = nullptr);
// Counts one use less; on the last, the package's classes leave the registry (see
// UnRegisterModuleClasses), the library is closed, then the packages it required are
// unloaded. A handle that is not a loaded package is ignored.
void UnloadPackage(HMODULE module);

// Folders where bare package names (and required packages not found beside the package
// that requires them) are looked for, after the current folder.
void SetPackageSearchPath(std::vector<std::string> folders);
const std::vector<std::string>& PackageSearchPath();

// Whether `module` is a loaded package; its file (absolute) or ''.
bool IsPackageLoaded(HMODULE module);
std::string PackageFileName(HMODULE module);
// The handles of the packages loaded now, in the order they were loaded.
std::vector<HMODULE> LoadedPackages();

// ---- What a package holds ----------------------------------------------------------------

enum TNameType { ntContainsUnit, ntRequiresPackage };

// Called once per required package (first, in declaration order), then once per contained
// unit (in declaration order), with the name, its kind, its flags (0 for now) and `param`.
using TPackageInfoProc = void (*)(const std::string& name, TNameType nameType, std::uint8_t flags, void* param);

// Lists the required packages and contained units of a loaded package. `flags` receives
// the package's own flags (0 for now). EPackageError when `module` is not a loaded package.
void GetPackageInfo(HMODULE module, void* param, int& flags, TPackageInfoProc infoProc);
// The description a package file declares, read from the file without loading it; '' when
// the file cannot be read, is not a package or declares none.
std::string GetPackageDescription(const std::string& fileName);

// What a package file declares, read from the file without running it.
struct TPackageDeclaration {
  std::string Description;
  std::vector<std::string> Requires;
  std::vector<std::string> Contains;
};
// EPackageError (with the reason alone as message) when the file is missing, is not an
// ELF shared library, is damaged or truncated, or holds no package information.
TPackageDeclaration ReadPackageDeclaration(const std::string& fileName);

// The address of an exported symbol of a loaded package, or none.
void* GetProcAddress(HMODULE module, const std::string& procName);

// The exported name of a unit's Register procedure: "Lumora_" + the unit name with its
// first letter in upper case and the rest (at most 255 characters) in lower case +
// "_Register" (the unit StdReg gives Lumora_Stdreg_Register).
std::string RegisterProcName(std::string_view unitName);
using TRegisterProc = void (*)();
// The Register procedure of a unit of a loaded package, or none when the unit has none.
TRegisterProc GetRegisterProc(HMODULE module, std::string_view unitName);

// ---- Registration from a package's Register procedures ------------------------------------

using TComponentClasses = std::vector<TClass>;
enum TActiveXRegType { axrComponentOnly, axrIncludeDescendants };

// Set by whoever loads packages; a Register procedure reaches them through the routines below.
extern std::function<void(const std::string& page, const TComponentClasses& classes)> RegisterComponentsProc;
extern std::function<void(const TComponentClasses& classes)> RegisterNoIconProc;
extern std::function<void(const TComponentClasses& classes, TActiveXRegType axRegType)> RegisterNonActiveXProc;

// Hand component classes to the loader through the hooks above. EComponentError "Invalid
// component registration" when the hook is not set (no loader is listening).
void RegisterComponents(const std::string& page, std::initializer_list<TClass> classes);
void RegisterComponents(const std::string& page, const TComponentClasses& classes);
void RegisterNoIcon(std::initializer_list<TClass> classes);
void RegisterNonActiveX(std::initializer_list<TClass> classes, TActiveXRegType axRegType);
