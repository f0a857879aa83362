#pragma once
// Pieces shared by the two converters; not for use outside platform/streaming.

#include <string>
#include <string_view>
#include <unordered_map>

// The text of one value (type byte and payload) as the form text writes it on a
// property line at the outermost level.
std::string ObjectValueToText(std::string_view valueBytes);

// Appends a component's part of a property key: its name, or its position among
// its parent's children when it has none.
void AppendComponentKey(std::string& key, std::string_view name, int index);

// The property values of a binary stream by component path and property name.
class TReferenceValues {
public:
  // Indexes `stream`; a damaged stream gives as many values as could be read.
  explicit TReferenceValues(std::string_view stream);
  // The value bytes of a key (component key, '\x01', property name); a null view when absent.
  std::string_view Find(const std::string& key) const;

private:
  void IndexComponent(class TValueReader& reader, int depth, int index);
  std::unordered_map<std::string, std::string_view> FValues;
  std::string FKey;
};
