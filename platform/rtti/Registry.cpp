#include "platform/rtti/Registry.h"

#include "platform/rtti/Persistent.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/SysUtils.h"

#include <algorithm>
#include <string>

struct rtti_detail::TRegistryAccess {
  static void SetModule(TClass cls, HMODULE module) { cls->FModule = module; }
};

namespace {

struct TRegistration {
  std::string Name;
  TClass Class;
  HMODULE Module;
};

struct TRegistry {
  std::vector<TRegistration> Entries;
  HMODULE Current = MainInstance;
  std::vector<std::pair<int, TModuleUnloadProc>> UnloadProcs;
  int LastProcId = 0;

  TRegistration* Find(std::string_view name) {
    for (auto& e : Entries)
      if (SameText(e.Name, name)) return &e;
    return nullptr;
  }
};

TRegistry& Registry() {
  static TRegistry registry;
  return registry;
}

void Add(std::string_view name, TClass cls) {
  TRegistry& r = Registry();
  if (TRegistration* existing = r.Find(name)) {
    if (existing->Class == cls) return;
    throw EFilerError(Format(RtlConsts::SDuplicateClass, name));
  }
  r.Entries.push_back(TRegistration{std::string(name), cls, r.Current});
  rtti_detail::TRegistryAccess::SetModule(cls, r.Current);
}

}  // namespace

void RegisterClass(TClass cls) {
  if (!cls) return;
  TClass persistent = TPersistent::StaticClass();
  std::vector<TClass> chain;
  for (TClass c = cls; c; c = c->ClassParent()) {
    chain.push_back(c);
    if (c == persistent) break;
  }
  // Refuse the whole chain before registering any of it.
  for (TClass c : chain)
    if (const TRegistration* existing = Registry().Find(c->ClassName()); existing && existing->Class != c)
      throw EFilerError(Format(RtlConsts::SDuplicateClass, c->ClassName()));
  for (TClass c : chain) Add(c->ClassName(), c);
}

void RegisterClasses(std::initializer_list<TClass> classes) {
  for (TClass c : classes) RegisterClass(c);
}

void RegisterClassAlias(TClass cls, std::string_view alias) {
  if (cls) Add(alias, cls);
}

TClass GetClass(std::string_view name) {
  const TRegistration* e = Registry().Find(name);
  return e ? e->Class : nullptr;
}

TClass FindClass(std::string_view name) {
  TClass c = GetClass(name);
  if (!c) throw EClassNotFound(Format(RtlConsts::SClassNotFound, name));
  return c;
}

void UnRegisterClass(TClass cls) {
  auto& entries = Registry().Entries;
  entries.erase(std::remove_if(entries.begin(), entries.end(), [&](const TRegistration& e) { return e.Class == cls; }),
                entries.end());
  if (cls) rtti_detail::TRegistryAccess::SetModule(cls, MainInstance);
}

void UnRegisterClasses(std::initializer_list<TClass> classes) {
  for (TClass c : classes) UnRegisterClass(c);
}

void UnRegisterModuleClasses(HMODULE module) {
  TRegistry& r = Registry();
  const auto fromModule = [&](const TRegistration& e) { return e.Module == module; };
  if (std::none_of(r.Entries.begin(), r.Entries.end(), fromModule)) return;
  // A copy: a procedure may add or remove procedures.
  const auto procs = r.UnloadProcs;
  for (const auto& [id, proc] : procs)
    if (proc) proc(module);
  auto& entries = r.Entries;
  for (const auto& e : entries)
    if (e.Module == module) rtti_detail::TRegistryAccess::SetModule(e.Class, MainInstance);
  entries.erase(std::remove_if(entries.begin(), entries.end(), fromModule), entries.end());
  // An ancestor first registered by the module for a class another module registered
  // (both derive from the same control) comes back under that class's module.
  const std::vector<TRegistration> remaining = entries;
  TClass persistent = TPersistent::StaticClass();
  for (const TRegistration& e : remaining) {
    if (e.Name != e.Class->ClassName()) continue;
    for (TClass c = e.Class->ClassParent(); c; c = c->ClassParent()) {
      if (!r.Find(c->ClassName())) {
        entries.push_back(TRegistration{c->ClassName(), c, e.Module});
        rtti_detail::TRegistryAccess::SetModule(c, e.Module);
      }
      if (c == persistent) break;
    }
  }
}

int AddModuleUnloadProc(TModuleUnloadProc proc) {
  TRegistry& r = Registry();
  r.UnloadProcs.emplace_back(++r.LastProcId, std::move(proc));
  return r.LastProcId;
}

void RemoveModuleUnloadProc(int id) {
  auto& procs = Registry().UnloadProcs;
  procs.erase(std::remove_if(procs.begin(), procs.end(), [&](const auto& p) { return p.first == id; }), procs.end());
}

HMODULE FindClassHInstance(std::string_view name) {
  const TRegistration* e = Registry().Find(name);
  return e ? e->Module : MainInstance;
}

std::vector<TClass> RegisteredClasses() {
  std::vector<TClass> out;
  for (const auto& e : Registry().Entries)
    if (std::find(out.begin(), out.end(), e.Class) == out.end()) out.push_back(e.Class);
  return out;
}

HMODULE CurrentModule() { return Registry().Current; }

HMODULE SetCurrentModule(HMODULE module) {
  HMODULE previous = Registry().Current;
  Registry().Current = module;
  return previous;
}
