#include "platform/rtti/Strings.h"

#include "platform/rtti/ClassBuilder.h"
#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/SaveFile.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"

#include <algorithm>
#include <numeric>

LUMORA_CLASS_IMPL(TStrings) {}
LUMORA_CLASS_IMPL(TStringList) {}

// ---- TStrings ------------------------------------------------------------------------------

void TStrings::Error(const char* message, int data) const { throw EStringListError(Format(message, data)); }

int TStrings::Add(const std::string& s) {
  const int index = GetCount();
  Insert(index, s);
  return index;
}

int TStrings::AddObject(const std::string& s, TObject* object) {
  const int index = Add(s);
  PutObject(index, object);
  return index;
}

void TStrings::AddStrings(TStrings* strings) {
  if (!strings) return;
  BeginUpdate();
  try {
    for (int i = 0; i < strings->Count(); ++i) AddObject(strings->Get(i), strings->GetObject(i));
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

void TStrings::InsertObject(int index, const std::string& s, TObject* object) {
  Insert(index, s);
  PutObject(index, object);
}

void TStrings::Exchange(int index1, int index2) {
  BeginUpdate();
  try {
    const std::string s = Get(index1);
    TObject* o = GetObject(index1);
    Put(index1, Get(index2));
    PutObject(index1, GetObject(index2));
    Put(index2, s);
    PutObject(index2, o);
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

void TStrings::Move(int curIndex, int newIndex) {
  if (curIndex == newIndex) return;
  BeginUpdate();
  try {
    const std::string s = Get(curIndex);
    TObject* o = GetObject(curIndex);
    if (newIndex < 0 || newIndex >= GetCount()) Error(RtlConsts::SListIndexError, newIndex);
    Delete(curIndex);
    InsertObject(newIndex, s, o);
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

int TStrings::IndexOf(const std::string& s) const {
  for (int i = 0; i < GetCount(); ++i)
    if (SameText(Get(i), s)) return i;
  return -1;
}

int TStrings::IndexOfName(const std::string& name) const {
  for (int i = 0; i < GetCount(); ++i) {
    const std::string s = Get(i);
    const std::size_t eq = s.find('=');
    if (eq != std::string::npos && SameText(std::string_view(s).substr(0, eq), name)) return i;
  }
  return -1;
}

int TStrings::IndexOfObject(TObject* object) const {
  for (int i = 0; i < GetCount(); ++i)
    if (GetObject(i) == object) return i;
  return -1;
}

bool TStrings::Equals(TStrings* strings) const {
  if (!strings || strings->GetCount() != GetCount()) return false;
  for (int i = 0; i < GetCount(); ++i)
    if (Get(i) != strings->Get(i)) return false;
  return true;
}

std::string TStrings::Names(int index) const {
  const std::string s = Get(index);
  const std::size_t eq = s.find('=');
  return eq == std::string::npos ? std::string() : s.substr(0, eq);
}

std::string TStrings::Values(const std::string& name) const {
  const int i = IndexOfName(name);
  if (i < 0) return "";
  const std::string s = Get(i);
  return s.substr(s.find('=') + 1);
}

void TStrings::SetValue(const std::string& name, const std::string& value) {
  int i = IndexOfName(name);
  if (!value.empty()) {
    if (i < 0) i = Add("");
    Put(i, name + "=" + value);
  } else if (i >= 0) {
    Delete(i);
  }
}

std::string TStrings::CommaText() const {
  std::string out;
  for (int i = 0; i < GetCount(); ++i) {
    const std::string s = Get(i);
    bool quote = s.empty();
    for (char ch : s)
      if (static_cast<unsigned char>(ch) <= ' ' || ch == '"' || ch == ',') quote = true;
    if (i > 0) out += ',';
    if (quote) {
      out += '"';
      for (char ch : s) {
        if (ch == '"') out += '"';
        out += ch;
      }
      out += '"';
    } else {
      out += s;
    }
  }
  return out;
}

void TStrings::SetCommaText(std::string_view text) {
  auto blank = [](char ch) { return ch != '\0' && static_cast<unsigned char>(ch) <= ' '; };
  BeginUpdate();
  try {
    Clear();
    std::size_t p = 0;
    while (p < text.size() && blank(text[p])) ++p;
    while (p < text.size()) {
      std::string item;
      if (text[p] == '"') {
        ++p;
        while (p < text.size()) {
          if (text[p] == '"') {
            if (p + 1 < text.size() && text[p + 1] == '"') {
              item += '"';
              p += 2;
              continue;
            }
            ++p;
            break;
          }
          item += text[p++];
        }
      } else {
        const std::size_t start = p;
        while (p < text.size() && !blank(text[p]) && text[p] != ',') ++p;
        item.assign(text.substr(start, p - start));
      }
      Add(item);
      while (p < text.size() && blank(text[p])) ++p;
      if (p < text.size() && text[p] == ',') {
        ++p;
        while (p < text.size() && blank(text[p])) ++p;
      }
    }
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

void TStrings::BeginUpdate() {
  if (FUpdateCount == 0) SetUpdateState(true);
  ++FUpdateCount;
}

void TStrings::EndUpdate() {
  if (FUpdateCount == 0) return;
  --FUpdateCount;
  if (FUpdateCount == 0) SetUpdateState(false);
}

void TStrings::SetUpdateState(bool) {}

TObject* TStrings::GetObject(int) const { return nullptr; }

void TStrings::Put(int index, const std::string& s) {
  TObject* o = GetObject(index);
  Delete(index);
  InsertObject(index, s, o);
}

void TStrings::PutObject(int, TObject*) {}

std::string TStrings::GetTextStr() const {
  std::string out;
  for (int i = 0; i < GetCount(); ++i) {
    out += Get(i);
    out += "\r\n";
  }
  return out;
}

void TStrings::SetTextStr(std::string_view text) {
  BeginUpdate();
  try {
    Clear();
    std::size_t p = 0;
    while (p < text.size()) {
      const std::size_t start = p;
      while (p < text.size() && text[p] != '\r' && text[p] != '\n') ++p;
      Add(std::string(text.substr(start, p - start)));
      if (p < text.size() && text[p] == '\r') ++p;
      if (p < text.size() && text[p] == '\n') ++p;
    }
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

void TStrings::LoadFromStream(TStream& stream) { SetTextStr(stream.ReadRest()); }

void TStrings::SaveToStream(TStream& stream) const { stream.WriteBuffer(GetTextStr()); }

void TStrings::LoadFromFile(const std::string& fileName) { SetTextStr(ReadFileToString(fileName)); }

void TStrings::SaveToFile(const std::string& fileName) const {
  SaveFile(fileName, [this](TStream& stream) { SaveToStream(stream); });
}

void TStrings::Assign(TPersistent* source) {
  if (auto* strings = dynamic_cast<TStrings*>(source)) {
    if (strings == this) return;
    BeginUpdate();
    try {
      Clear();
      AddStrings(strings);
    } catch (...) {
      EndUpdate();
      throw;
    }
    EndUpdate();
    return;
  }
  TPersistent::Assign(source);
}

void TStrings::DefineProperties(TFiler& filer) {
  bool hasData = GetCount() > 0;
  if (auto* ancestor = dynamic_cast<TStrings*>(filer.Ancestor())) hasData = !Equals(ancestor);
  filer.DefineProperty(
      "Strings",
      [this](TReader& reader) {
        reader.ReadListBegin();
        BeginUpdate();
        try {
          Clear();
          while (!reader.EndOfList()) Add(reader.ReadString());
        } catch (...) {
          EndUpdate();
          throw;
        }
        EndUpdate();
        reader.ReadListEnd();
      },
      [this](TWriter& writer) {
        writer.WriteListBegin();
        for (int i = 0; i < GetCount(); ++i) writer.WriteString(Get(i));
        writer.WriteListEnd();
      },
      hasData);
}

// ---- TStringList ----------------------------------------------------------------------------

TStringList::~TStringList() {
  // No change events while going away.
  OnChange = nullptr;
  OnChanging = nullptr;
}

void TStringList::CheckIndex(int index) const {
  if (index < 0 || index >= static_cast<int>(FList.size())) Error(RtlConsts::SListIndexError, index);
}

void TStringList::Changed() {
  if (UpdateCount() == 0) OnChange(this);
}

void TStringList::Changing() {
  if (UpdateCount() == 0) OnChanging(this);
}

void TStringList::SetUpdateState(bool updating) {
  if (updating) Changing();
  else Changed();
}

int TStringList::CompareStrings(const std::string& a, const std::string& b) const {
  if (FCaseSensitive) return a.compare(b) < 0 ? -1 : (a == b ? 0 : 1);
  return CompareText(a, b);
}

bool TStringList::Find(const std::string& s, int& index) const {
  int lo = 0, hi = static_cast<int>(FList.size());
  while (lo < hi) {
    const int mid = lo + (hi - lo) / 2;
    if (CompareStrings(FList[static_cast<std::size_t>(mid)].FString, s) < 0) lo = mid + 1;
    else hi = mid;
  }
  index = lo;
  return lo < static_cast<int>(FList.size()) && CompareStrings(FList[static_cast<std::size_t>(lo)].FString, s) == 0;
}

int TStringList::Add(const std::string& s) { return AddObject(s, nullptr); }

int TStringList::AddObject(const std::string& s, TObject* object) {
  int index;
  if (!FSorted) {
    index = static_cast<int>(FList.size());
  } else if (Find(s, index)) {
    if (FDuplicates == dupIgnore) return index;
    if (FDuplicates == dupError) Error(RtlConsts::SDuplicateString, 0);
  }
  InsertItem(index, s, object);
  return index;
}

void TStringList::Insert(int index, const std::string& s) {
  if (FSorted) Error(RtlConsts::SSortedListError, 0);
  if (index < 0 || index > static_cast<int>(FList.size())) Error(RtlConsts::SListIndexError, index);
  InsertItem(index, s, nullptr);
}

void TStringList::InsertItem(int index, const std::string& s, TObject* object) {
  Changing();
  FList.insert(FList.begin() + index, TStringItem{s, object});
  Changed();
}

void TStringList::Delete(int index) {
  CheckIndex(index);
  Changing();
  FList.erase(FList.begin() + index);
  Changed();
}

void TStringList::Clear() {
  if (FList.empty()) return;
  Changing();
  FList.clear();
  Changed();
}

void TStringList::Exchange(int index1, int index2) {
  CheckIndex(index1);
  CheckIndex(index2);
  Changing();
  std::swap(FList[static_cast<std::size_t>(index1)], FList[static_cast<std::size_t>(index2)]);
  Changed();
}

int TStringList::IndexOf(const std::string& s) const {
  if (!FSorted) {
    for (int i = 0; i < static_cast<int>(FList.size()); ++i)
      if (CompareStrings(FList[static_cast<std::size_t>(i)].FString, s) == 0) return i;
    return -1;
  }
  int index;
  return Find(s, index) ? index : -1;
}

std::string TStringList::Get(int index) const {
  CheckIndex(index);
  return FList[static_cast<std::size_t>(index)].FString;
}

TObject* TStringList::GetObject(int index) const {
  CheckIndex(index);
  return FList[static_cast<std::size_t>(index)].FObject;
}

void TStringList::Put(int index, const std::string& s) {
  if (FSorted) Error(RtlConsts::SSortedListError, 0);
  CheckIndex(index);
  Changing();
  FList[static_cast<std::size_t>(index)].FString = s;
  Changed();
}

void TStringList::PutObject(int index, TObject* object) {
  CheckIndex(index);
  Changing();
  FList[static_cast<std::size_t>(index)].FObject = object;
  Changed();
}

void TStringList::SetTextStr(std::string_view text) {
  // One change event for the whole text, not one per line.
  TStrings::SetTextStr(text);
}

void TStringList::Sort() {
  CustomSort([](TStringList* list, int a, int b) {
    return list->CompareStrings(list->FList[static_cast<std::size_t>(a)].FString, list->FList[static_cast<std::size_t>(b)].FString);
  });
}

void TStringList::CustomSort(const TStringListSortCompare& compare) {
  if (FSorted || FList.size() < 2) return;
  Changing();
  std::vector<int> order(FList.size());
  std::iota(order.begin(), order.end(), 0);
  std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return compare(this, a, b) < 0; });
  std::vector<TStringItem> sorted;
  sorted.reserve(FList.size());
  for (int i : order) sorted.push_back(std::move(FList[static_cast<std::size_t>(i)]));
  FList = std::move(sorted);
  Changed();
}

void TStringList::SetSorted(bool value) {
  if (FSorted == value) return;
  if (value) Sort();
  FSorted = value;
}

void TStringList::SetCaseSensitive(bool value) {
  if (FCaseSensitive == value) return;
  FCaseSensitive = value;
  if (FSorted) {
    FSorted = false;
    Sort();
    FSorted = true;
  }
}
