#pragma once
// Pieces shared by the two converters; not for use outside platform/streaming.

#include <string>
#include <string_view>
#include <unordered_map>

// Asks for large pages over a big buffer about to be filled front to back once: most
// of the page faults of touching it go away (they dominate on virtual machines).
void AdviseHugePages(char* data, std::size_t size);

// The text of one value (type byte and payload) as the form text writes it on a
// property line at the outermost level.
std::string ObjectValueToText(std::string_view valueBytes);

// Appends a component's part of a property key: its name, or its position among
// its parent's children when it has none; `occurrence` tells apart siblings that
// share a name (0 for the first).
void AppendComponentKey(std::string& key, std::string_view name, int index, int occurrence);

// Appends to a property key which of the component's properties of that name it is,
// when a component holds the same property more than once (0 for the first).
void AppendPropertyOccurrence(std::string& key, int occurrence);

// Counts the names of one parent's children, so that siblings sharing a name get
// keys of their own.
class TSiblingNames {
public:
  // How many siblings before this one had `name`.
  int Occurrence(std::string_view name) { return name.empty() ? 0 : FCounts[name]++; }

private:
  std::unordered_map<std::string_view, int> FCounts;
};

// The property values of a binary stream by component path and property name.
class TReferenceValues {
public:
  // Indexes `stream`; a damaged stream gives as many values as could be read.
  explicit TReferenceValues(std::string_view stream);
  // The value bytes of a key (component key, '\x01', property name); a null view when absent.
  std::string_view Find(const std::string& key) const;

private:
  void IndexComponent(class TValueReader& reader, int depth, int index, int occurrence);
  std::unordered_map<std::string, std::string_view> FValues;
  std::unordered_map<std::string, int> FCounts;
  std::string FKey;
};
