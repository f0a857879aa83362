#pragma once
// Pieces shared by the two converters; not for use outside platform/streaming.

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

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

// Counts the names of one component's properties, so that a property written twice gets
// a key for each time. Components hold a few properties: a list is quicker than a table,
// until there are many.
class TPropertyNames {
public:
  // How many properties before this one had `name`.
  int Occurrence(std::string_view name) {
    if (!FMany.empty()) return FMany[std::string(name)]++;
    for (auto& [seen, count] : FFew) {
      if (seen == name) return count++;
    }
    FFew.emplace_back(std::string(name), 1);
    if (FFew.size() > 32) {
      for (auto& [seen, count] : FFew) FMany.emplace(std::move(seen), count);
      FFew.clear();
    }
    return 0;
  }
  void Clear() {
    FFew.clear();
    FMany.clear();
  }

private:
  std::vector<std::pair<std::string, int>> FFew;
  std::unordered_map<std::string, int> FMany;
};

// Counts the names of one parent's children, so that siblings sharing a name get
// keys of their own.
class TSiblingNames {
public:
  // How many siblings before this one had `name`.
  int Occurrence(std::string_view name) { return name.empty() ? 0 : FCounts[name]++; }

private:
  std::unordered_map<std::string_view, int> FCounts;
};

// The property values of a binary stream by component path and property name: one table
// entry per component, its properties sorted by name beside each other.
class TReferenceValues {
public:
  // Indexes `stream`; a damaged stream gives as many values as could be read.
  explicit TReferenceValues(std::string_view stream);
  // The properties of a component: where they start among the entries and how many.
  struct TComponent {
    std::size_t First = 0;
    std::size_t Count = 0;
  };
  // The component at a key (its path of names); no properties when absent.
  TComponent FindComponent(const std::string& key) const;
  // The value bytes of the component's property `name` (the occurrence-th of that name);
  // a null view when absent.
  std::string_view FindProperty(const TComponent& component, std::string_view name, int occurrence) const;

private:
  struct TEntry {
    std::string_view Name;
    int Occurrence;
    std::string_view Value;
  };
  void IndexComponent(class TValueReader& reader, int depth, int index, int occurrence);
  std::vector<TEntry> FEntries;
  std::unordered_map<std::string, TComponent> FComponents;
  std::string FKey;
};
