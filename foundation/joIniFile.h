#pragma once
// The settings store: named values grouped in sections of one INI file, read and written
// as variants, with a section loadable into the published properties of an object and
// single properties saved under a key.

#include "foundation/IniFiles.h"
#include "platform/rtti/Classes.h"

#include <memory>
#include <string>
#include <vector>

// The text a read falls back on; a key stored with exactly this text reads as absent.
inline constexpr const char* SjoIniNoValue = "@35h{";

class TjoIniFileSection;

// An abstract store of named values grouped in sections.
class TjoCustomIniFile : public TObject {
  LUMORA_CLASS(TjoCustomIniFile, TObject)
public:
  TjoCustomIniFile() = default;
  ~TjoCustomIniFile() override;

  // Fills List with the key names of Section; True when it then holds a line.
  virtual bool ReadSectionNames(const std::string& Section, TStrings* List);
  // Fills List with the section's key=value lines; True when it then holds a line.
  virtual bool ReadSectionValues(const std::string& Section, TStrings* List);
  // Stores one value; False when it was not stored.
  virtual bool WriteValue(const std::string& Section, const std::string& Key, const Variant& Value);
  // Fetches one value; False (and Value null) when there is none.
  virtual bool ReadValue(const std::string& Section, const std::string& Key, Variant& Value);
  // The value read, or a copy of Default.
  virtual Variant ReadValueDef(const std::string& Section, const std::string& Key, const Variant& Default);

  // The section object of exactly that name (case counts), made on first request. Never none.
  TjoIniFileSection* GetSection(const std::string& Name);
  // Copies the values of Section into the published properties of Instance; with a
  // Prefix only the keys "Prefix.path" count.
  void LoadProperties(const std::string& Section, const std::string& Prefix, TObject* Instance);

  int SectionCount() const { return FSections ? int(FSections->size()) : 0; }
  TjoIniFileSection* Sections(int Index) const { return FSections->at(std::size_t(Index)); }

private:
  friend class TjoIniFileSection;
  std::vector<TjoIniFileSection*>& NeedSections();
  std::unique_ptr<std::vector<TjoIniFileSection*>> FSections;
};

// The store backed by an INI file on disk; every read and write goes to the file at once.
class TjoIniFile : public TjoCustomIniFile {
  LUMORA_CLASS(TjoIniFile, TjoCustomIniFile)
public:
  // An empty name means the default file: the program's path with ".ini".
  explicit TjoIniFile(const std::string& AFileName = "");
  ~TjoIniFile() override;

  const std::string& FileName() const { return FFileName; }
  void SetFileName(const std::string& Value);

  bool ReadSectionNames(const std::string& Section, TStrings* List) override;
  bool ReadSectionValues(const std::string& Section, TStrings* List) override;
  bool WriteValue(const std::string& Section, const std::string& Key, const Variant& Value) override;
  bool ReadValue(const std::string& Section, const std::string& Key, Variant& Value) override;

  // The INI file object, made on first use.
  TIniFile* IniFile();

private:
  std::string FFileName;
  std::unique_ptr<TIniFile> FIniFile;
};

// A handle on one section of a store; it reads nothing by itself.
class TjoIniFileSection : public TObject {
  LUMORA_CLASS(TjoIniFileSection, TObject)
public:
  TjoIniFileSection(const std::string& AName, TjoCustomIniFile* AOwner);
  ~TjoIniFileSection() override;

  const std::string& Name() const { return FName; }
  TjoCustomIniFile* Owner() const { return FOwner; }
  // Leaves the old owner's list and joins the new one's.
  void SetOwner(TjoCustomIniFile* Value);

  // Published, so that they are found by name: the section stands wherever an object with
  // values is expected.
  bool SetValue(const std::string& Key, const Variant& Value);
  bool GetValue(const std::string& Key, Variant& Value);
  // Saves the property of Instance at PropPath under the key PropPath (or Prefix.PropPath).
  bool SaveProperty(const std::string& Prefix, TObject* Instance, const std::string& PropPath);

private:
  std::string FName;
  TjoCustomIniFile* FOwner = nullptr;
};

// ---- where the settings file lives ---------------------------------------------------

// The running program's full path (from /proc/self/exe); replaceable so that tests can
// place the program elsewhere.
extern std::string (*joModuleFileNameProc)();
std::string joModuleFileName();
// The user's configuration folder for the program, ending in '/': $XDG_CONFIG_HOME (else
// ~/.config) followed by "lumora/".
std::string joConfigDir();
// The file a store given Name uses (the default file for a blank name).
std::string joResolveIniFileName(const std::string& Name);
