#pragma once
// The class registry: classes known by name, so that a form stream can name the classes
// of its components. Registering a class registers its ancestors up to TPersistent too.
// Each registration remembers the module that made it (the current module, see
// TModuleScope), so that unloading a package can take its classes out again.

#include "platform/rtti/TypInfo.h"

#include <functional>
#include <initializer_list>
#include <string_view>
#include <vector>

// Registers `cls` and its ancestors; a class already registered is left as it is.
// EFilerError "A class named %s already exists" when another class has the name.
void RegisterClass(TClass cls);
void RegisterClasses(std::initializer_list<TClass> classes);
// Registers `cls` under another name too.
void RegisterClassAlias(TClass cls, std::string_view alias);
// The class registered under `name` (any case), or none.
TClass GetClass(std::string_view name);
// The class registered under `name`; EClassNotFound "Class %s not found" when there is none.
TClass FindClass(std::string_view name);
// Takes `cls` out of the registry (under every name it has).
void UnRegisterClass(TClass cls);
void UnRegisterClasses(std::initializer_list<TClass> classes);
// Takes out every registration that `module` made, after telling the module unload
// procedures (when the module has any). Ancestors that classes still registered need
// stay registered, under those classes' modules.
void UnRegisterModuleClasses(HMODULE module);

// Told a module's handle before its classes leave the registry (a designer closes the
// forms built from them): while it runs, a class of the module still has Module() ==
// the handle. Returns a number for RemoveModuleUnloadProc.
using TModuleUnloadProc = std::function<void(HMODULE module)>;
int AddModuleUnloadProc(TModuleUnloadProc proc);
void RemoveModuleUnloadProc(int id);
// The module that registered the class named `name`, or MainInstance.
HMODULE FindClassHInstance(std::string_view name);
// Every registered class, in the order of registration.
std::vector<TClass> RegisteredClasses();

// The module that registrations come from now (MainInstance unless a scope says otherwise).
HMODULE CurrentModule();
// Sets the current module and returns the previous one.
HMODULE SetCurrentModule(HMODULE module);

// Registrations made while it lives come from `module`.
class TModuleScope {
public:
  explicit TModuleScope(HMODULE module) : FPrevious(SetCurrentModule(module)) {}
  ~TModuleScope() { SetCurrentModule(FPrevious); }
  TModuleScope(const TModuleScope&) = delete;
  TModuleScope& operator=(const TModuleScope&) = delete;

private:
  HMODULE FPrevious;
};
