#pragma once
// The design package loader: the list of design packages, each loaded or not. Loading a
// package calls the Register procedure of each of its units, so that its component
// classes join the class registry; unloading it takes them out again, after unloading
// the listed packages that require it. TjoPackageLoaderSR keeps the list in the
// program's INI file and, on first use, takes it from the known-packages list installed
// with Lumora (the file "known-packages"; see LoadFromKnownPackages).

#include "platform/packages/Packages.h"
#include "platform/rtti/Classes.h"

#include <string>
#include <vector>

// One package of the list.
struct rPackItem {
  std::string FileName;     // as given (may be a bare file name)
  std::string Description;  // empty until asked for or loaded
  HMODULE Handle = 0;       // loaded when above 32
  TStringList* Requires = nullptr;  // names of required packages, made on first need
};

class TjoPackageLoader : public TObject {
  LUMORA_CLASS(TjoPackageLoader, TObject)
public:
  // EComponentError "Cannot have more than one instance '%s' per application" while
  // another loader exists.
  TjoPackageLoader();
  ~TjoPackageLoader() override;

  int Count() const { return static_cast<int>(FItems.size()); }
  // The item whose FileName is `name` (any case), else the first whose base name (file
  // name up to its first '.') is name's base name; -1 when none.
  int IndexOf(const std::string& name) const;
  // Adds the file unless listed, then loads or unloads it; the index either way.
  int Add(const std::string& fileName, bool load);
  // Unloads the item (its dependants first) and removes it; false on an empty list.
  bool Delete(int index);
  void SetLoaded(int index, bool load);
  bool IsLoaded(int index) const;
  std::string FileName(int index) const;
  // The stored description, read from the file when empty and not loaded.
  std::string Description(int index);
  // The item's required package names, each with IndexOf(name) attached (-1 when not listed).
  int RequiredIndexes(int index, TStrings* into) const;
  // The FileName of every item requiring this one, each with its index attached.
  int Dependants(int index, TStrings* into) const;
  // Unloads every item, then deletes them all.
  void Clear();

  bool Dirty() const { return FDirty; }
  void SetDirty(bool value) { FDirty = value; }

  // The loader now, or none.
  static TjoPackageLoader* Instance() { return FInstance; }

protected:
  // For derived classes: the class named in the single-instance error.
  explicit TjoPackageLoader(TClass instanceClass);

private:
  void DoSetLoaded(int index, bool load);

  std::vector<rPackItem*> FItems;
  bool FDirty = false;
  static TjoPackageLoader* FInstance;
};

// The loader with its list kept in an INI file.
class TjoPackageLoaderSR : public TjoPackageLoader {
  LUMORA_CLASS(TjoPackageLoaderSR, TjoPackageLoader)
public:
  TjoPackageLoaderSR();

  // Adds the packages listed in the section ("Packages" when empty) and loads those marked
  // so; with no package listed, takes them from LoadFromKnownPackages. Whether the file
  // existed (or what LoadFromKnownPackages returned).
  bool LoadFromIni(const std::string& iniFileName, const std::string& section);
  // Writes the list into the section ("Packages" when empty), replacing it.
  void SaveToIni(const std::string& iniFileName, const std::string& section);
  // Adds every package of the known-packages list, in its order; only the standard
  // package (a path containing "DCLSTD.SO", any case) is loaded. A line containing
  // "$(LUMORA)" becomes RootDir() followed by the line from its tenth character on. With
  // no list, adds the bare "dclstd.so", loaded. Whether the list opened and gave valid indexes.
  bool LoadFromKnownPackages();

  // Lumora's own root: the folder above the program's folder (a build tree: build/).
  std::string RootDir() const;
  void SetRootDir(const std::string& value) { FRootDir = value; }
  // The known-packages list: "known-packages" beside the program (a build tree), else
  // RootDir()/share/lumora/known-packages.
  std::string KnownPackagesFile() const;
  void SetKnownPackagesFile(const std::string& value) { FKnownPackagesFile = value; }

private:
  std::string FRootDir;
  std::string FKnownPackagesFile;
};

// A number attached to a string list's line (the loader index), and back.
inline TObject* IndexToObject(int index) { return reinterpret_cast<TObject*>(static_cast<std::intptr_t>(index)); }
inline int ObjectToIndex(TObject* object) { return static_cast<int>(reinterpret_cast<std::intptr_t>(object)); }
