#include "resources/Resources.h"

#include <algorithm>
#include <cctype>

namespace {

bool SameText(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

std::vector<TEmbeddedResource>& AddedLayouts() {
  static std::vector<TEmbeddedResource> added;
  return added;
}

}  // namespace

void AddLayout(std::string_view className, std::string_view text) { AddedLayouts().push_back({className, text}); }

std::string_view FindLayout(std::string_view className) {
  for (const TEmbeddedResource& r : AddedLayouts())
    if (SameText(r.Name, className)) return r.Data;
  for (const TEmbeddedResource& r : EmbeddedResources())
    if (SameText(r.Name, className)) return r.Data;
  return {};
}
