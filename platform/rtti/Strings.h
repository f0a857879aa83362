#pragma once
// TStrings: a list of 8-bit strings, each with an object attached; the abstract base of
// every string list (a list box's items keep theirs in the widget). TStringList keeps
// them in memory and can sort them. Lines read from a stream end in CR LF, LF or CR;
// lines written end in CR LF. Errors: EStringListError "List index out of bounds (%d)",
// "String list does not allow duplicates", "Operation not allowed on sorted string list".

#include "platform/rtti/Persistent.h"
#include "platform/rtti/TypInfo.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class TStream;

class TStrings : public TPersistent {
  LUMORA_CLASS(TStrings, TPersistent)
public:
  TStrings() = default;
  ~TStrings() override = default;

  // ---- Adding and removing
  // Adds `s` and returns its index.
  virtual int Add(const std::string& s);
  virtual int AddObject(const std::string& s, TObject* object);
  void Append(const std::string& s) { Add(s); }
  // Adds every string (with its object) of `strings`.
  virtual void AddStrings(TStrings* strings);
  virtual void Insert(int index, const std::string& s) = 0;
  void InsertObject(int index, const std::string& s, TObject* object);
  virtual void Delete(int index) = 0;
  virtual void Clear() = 0;
  virtual void Exchange(int index1, int index2);
  // Moves the string at `curIndex` to `newIndex`, with its object.
  virtual void Move(int curIndex, int newIndex);

  // ---- Finding
  // The first index of `s` (any case), or -1.
  virtual int IndexOf(const std::string& s) const;
  // The first index whose name (before '=') is `name` (any case), or -1.
  virtual int IndexOfName(const std::string& name) const;
  virtual int IndexOfObject(TObject* object) const;
  // Same count and same strings in the same order (exact case).
  virtual bool Equals(TStrings* strings) const;

  // ---- Values
  int Count() const { return GetCount(); }
  std::string Strings(int index) const { return Get(index); }
  std::string operator[](int index) const { return Get(index); }
  void SetStrings(int index, const std::string& s) { Put(index, s); }
  TObject* Objects(int index) const { return GetObject(index); }
  void SetObjects(int index, TObject* object) { PutObject(index, object); }
  // The part of a "name=value" line before '=' ('' without '=').
  std::string Names(int index) const;
  // The value after "name=", or ''.
  std::string Values(const std::string& name) const;
  // Sets "name=value"; an empty value removes the line.
  void SetValue(const std::string& name, const std::string& value);
  // Every line followed by CR LF.
  std::string Text() const { return GetTextStr(); }
  // Replaces the list with the lines of `text` (CR LF, LF or CR end a line).
  void SetText(std::string_view text) { SetTextStr(text); }
  // The strings joined by ','; a string with a blank, a control character, ',' or '"'
  // is quoted with '"' (inner quotes doubled), an empty string is "".
  std::string CommaText() const;
  // Replaces the list with the items of a comma text: items are separated by ',' or
  // blanks; "quoted" items keep their blanks and commas.
  void SetCommaText(std::string_view text);

  // ---- Updates
  // Counted: only the first BeginUpdate and the last EndUpdate reach SetUpdateState.
  void BeginUpdate();
  void EndUpdate();
  int UpdateCount() const { return FUpdateCount; }

  // ---- Streams and files (8-bit lines)
  virtual void LoadFromStream(TStream& stream);
  virtual void SaveToStream(TStream& stream) const;
  // EFOpenError "Cannot open file %s".
  virtual void LoadFromFile(const std::string& fileName);
  // Saved through SaveToStream (see SaveFile.h); ESaveError "Cannot create file NAME: REASON".
  virtual void SaveToFile(const std::string& fileName) const;

  void Assign(TPersistent* source) override;
  // The lines stream as the defined property "Strings" (a list of strings), written
  // when there are any (or, against an ancestor, when they differ).
  void DefineProperties(TFiler& filer) override;

protected:
  virtual std::string Get(int index) const = 0;
  virtual int GetCount() const = 0;
  virtual TObject* GetObject(int index) const;
  virtual void Put(int index, const std::string& s);
  virtual void PutObject(int index, TObject* object);
  virtual std::string GetTextStr() const;
  virtual void SetTextStr(std::string_view text);
  // Told when updating starts (true) and ends (false).
  virtual void SetUpdateState(bool updating);
  // Raises EStringListError with `message` filled with `data`.
  [[noreturn]] void Error(const char* message, int data) const;

private:
  int FUpdateCount = 0;
};

enum TDuplicates { dupIgnore, dupAccept, dupError };

class TStringList;
// Compares the strings at two indexes of a list: <0, 0, >0.
using TStringListSortCompare = std::function<int(TStringList* list, int index1, int index2)>;

class TStringList : public TStrings {
  LUMORA_CLASS(TStringList, TStrings)
public:
  TStringList() = default;
  ~TStringList() override;

  int Add(const std::string& s) override;
  int AddObject(const std::string& s, TObject* object) override;
  void Insert(int index, const std::string& s) override;
  void Delete(int index) override;
  void Clear() override;
  void Exchange(int index1, int index2) override;
  int IndexOf(const std::string& s) const override;
  // Binary search of a sorted list: true when found; `index` is where `s` is or would go.
  virtual bool Find(const std::string& s, int& index) const;
  // Sorts by CompareStrings (not stable).
  virtual void Sort();
  virtual void CustomSort(const TStringListSortCompare& compare);

  bool Sorted() const { return FSorted; }
  // Sorting on sorts the list at once.
  void SetSorted(bool value);
  TDuplicates Duplicates() const { return FDuplicates; }
  void SetDuplicates(TDuplicates value) { FDuplicates = value; }
  // Comparisons ignore case unless set.
  bool CaseSensitive() const { return FCaseSensitive; }
  void SetCaseSensitive(bool value);

  // Raised after every change (once per update when updating).
  TNotifyEvent OnChange;
  // Raised before every change.
  TNotifyEvent OnChanging;

protected:
  std::string Get(int index) const override;
  int GetCount() const override { return static_cast<int>(FList.size()); }
  TObject* GetObject(int index) const override;
  void Put(int index, const std::string& s) override;
  void PutObject(int index, TObject* object) override;
  void SetUpdateState(bool updating) override;
  void SetTextStr(std::string_view text) override;
  virtual void Changed();
  virtual void Changing();
  virtual int CompareStrings(const std::string& a, const std::string& b) const;
  void InsertItem(int index, const std::string& s, TObject* object);

private:
  struct TStringItem {
    std::string FString;
    TObject* FObject = nullptr;
  };
  void CheckIndex(int index) const;

  std::vector<TStringItem> FList;
  bool FSorted = false;
  bool FCaseSensitive = false;
  TDuplicates FDuplicates = dupIgnore;
};
